#pragma once

#include "platform/storage/storage.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>

namespace orvel::jet {

/// A file read and written at positions in bytes. What the disk refuses throws RuntimeError; what is wrong with the
/// file or its use, Error.
class RawFile {
  public:
    enum class Mode { Read, Write };

    virtual ~RawFile() = default;

    [[nodiscard]] virtual std::uint64_t size() const = 0;
    [[nodiscard]] virtual FileIdentity identity() const = 0;
    /// Reads exactly this many bytes; a file that ends before throws Damaged.
    virtual void read(std::uint64_t at, std::span<std::uint8_t> into) const = 0;
    virtual void write(std::uint64_t at, std::span<const std::uint8_t> bytes) = 0;
    /// Returns when the disk has the bytes.
    virtual void sync() = 0;
    /// Keeps others from writing until the file is closed. Throws Locked when somebody holds the file.
    virtual void lock() = 0;
};

/// How a file is opened; tests put a failing disk here. Opens an existing ordinary file (others throw NotADatabase).
/// Write mode throws PermissionDenied for a file marked read-only, whoever asks.
using FileOpener = std::function<std::unique_ptr<RawFile>(const std::filesystem::path &, RawFile::Mode)>;

/// storage: outlives the files.
FileOpener storageOpener(Storage &storage);

/// Whether this file is open or locked elsewhere at the moment.
bool isHeld(const std::filesystem::path &path);

} // namespace orvel::jet
