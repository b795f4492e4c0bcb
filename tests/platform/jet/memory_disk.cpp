#include "tests/platform/jet/memory_disk.h"

#include "platform/jet/error.h"
#include "platform/runtime_error.h"

#include <algorithm>
#include <utility>

namespace orvel::test {

namespace {

class MemoryFile : public jet::RawFile {
  public:
    explicit MemoryFile(MemoryDisk &disk) : disk_(disk) {}

    [[nodiscard]] std::uint64_t size() const override { return disk_.content.size(); }
    [[nodiscard]] FileIdentity identity() const override { return {.device = 1, .file = 1}; }

    void read(std::uint64_t at, std::span<std::uint8_t> into) const override {
        if (at > disk_.content.size() || into.size() > disk_.content.size() - at) {
            throw jet::Error(jet::Fault::Damaged, "te kort");
        }
        std::copy_n(disk_.content.begin() + static_cast<std::ptrdiff_t>(at), into.size(), into.begin());
    }

    void write(std::uint64_t at, std::span<const std::uint8_t> bytes) override {
        const auto fails = std::exchange(disk_.writeFailsAfter, std::nullopt);
        const std::size_t count = std::exchange(disk_.forgetsWrites, false) ? 0 : fails.value_or(bytes.size());
        std::copy_n(bytes.begin(), count, disk_.content.begin() + static_cast<std::ptrdiff_t>(at));
        if (fails) {
            throw RuntimeError(ErrorNumber::DiskFull);
        }
    }

    void sync() override {
        ++disk_.syncs;
        if (std::exchange(disk_.syncFails, false)) {
            throw RuntimeError(ErrorNumber::DeviceError);
        }
    }

    void lock() override {}

  private:
    MemoryDisk &disk_;
};

} // namespace

jet::FileOpener MemoryDisk::opener() {
    return [this](const std::filesystem::path &, jet::RawFile::Mode) -> std::unique_ptr<jet::RawFile> {
        return std::make_unique<MemoryFile>(*this);
    };
}

} // namespace orvel::test
