// A libFuzzer target: the first byte chooses between database and statement. Start it with the fixtures as a corpus:
//   fuzz_jet -max_len=400000 corpus/ tests/data/databases/
#include "tests/platform/jet/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    if (!bytes.empty() && bytes.front() == 0) {
        orvel::test::exerciseDatabase(bytes);
    } else {
        orvel::test::exerciseStatement(bytes);
    }
    return 0;
}
