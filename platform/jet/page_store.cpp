#include "platform/jet/page_store.h"

#include "platform/jet/file_header.h"
#include "platform/jet/rc4.h"

#include <algorithm>
#include <array>

namespace orvel::jet {

namespace {

Format formatOf(const RawFile &file) {
    if (file.size() < headerSize) {
        throw Error(Fault::NotADatabase, "");
    }
    std::array<std::uint8_t, headerSize> start{};
    file.read(0, start);
    return readFormat(start);
}

} // namespace

PageStore::PageStore(const FileOpener &open, const std::filesystem::path &path, RawFile::Mode mode)
    : file_(open(path, mode)), format_(formatOf(*file_)), codePage_(format_.codePage) {
    // A row pointer has three bytes for the page, which is also the largest file there can be.
    pages_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(file_->size() / format_.pageSize, 0x1000000)));
}

std::uint64_t PageStore::position(std::uint32_t number) const {
    return std::uint64_t{number} * format_.pageSize;
}

void PageStore::code(std::uint32_t number, std::span<std::uint8_t> bytes) const {
    if (format_.key != 0 && number != 0) {
        rc4(format_.key ^ number, bytes);
    }
}

ByteView PageStore::page(std::uint32_t number) {
    if (number >= pages_.size()) {
        damaged(number, "het bestand heeft deze pagina niet");
    }
    auto &kept = pages_[number];
    if (!kept) {
        auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(format_.pageSize);
        const std::span<std::uint8_t> view(bytes.get(), format_.pageSize);
        file_->read(position(number), view);
        code(number, view);
        kept = std::move(bytes);
    }
    return {std::span<const std::uint8_t>(kept.get(), format_.pageSize), number};
}

void PageStore::write(std::uint32_t number, std::span<const std::uint8_t> decoded) {
    std::vector<std::uint8_t> bytes(decoded.begin(), decoded.end());
    code(number, bytes);
    file_->write(position(number), bytes);
}

void PageStore::replace(std::uint32_t number, std::span<const std::uint8_t> decoded) {
    const ByteView there = page(number);
    if (decoded.size() == there.size()) {
        std::ranges::copy(decoded, pages_[number].get());
    }
}

} // namespace orvel::jet
