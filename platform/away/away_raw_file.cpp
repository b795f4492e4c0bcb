#include "platform/away/away_raw_file.h"

#include "platform/away/away_file_system.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <memory>
#include <vector>

namespace orvel {

namespace {

/// Read at once: a server answers a long question as soon as a short one, and catalogues are read from end to end.
constexpr std::size_t chunkBytes = 256UL * 1024;

class AwayRawFile : public jet::RawFile {
  public:
    AwayRawFile(std::shared_ptr<RawFile> real, AwayWork &work, QString place)
        : real_(std::move(real)), work_(work), place_(std::move(place)),
          size_(away([](RawFile &file) { return file.size(); })) {}
    AwayRawFile(const AwayRawFile &) = delete;
    AwayRawFile(AwayRawFile &&) = delete;
    AwayRawFile &operator=(const AwayRawFile &) = delete;
    AwayRawFile &operator=(AwayRawFile &&) = delete;
    ~AwayRawFile() override {
        // Closing may hang as well.
        work_.post(place_, [real = std::move(real_)] {});
    }

    [[nodiscard]] std::uint64_t size() const override {
        return away([](RawFile &file) { return file.size(); });
    }

    [[nodiscard]] FileIdentity identity() const override {
        return away([](RawFile &file) { return file.identity(); });
    }

    void read(std::uint64_t at, std::span<std::uint8_t> into) const override {
        const bool isKept = at >= keptAt_ && at + into.size() <= keptAt_ + kept_.size();
        if (!isKept) {
            fetch(at, into.size());
        }
        std::copy_n(kept_.begin() + static_cast<std::ptrdiff_t>(at - keptAt_), into.size(), into.begin());
    }

    void write(std::uint64_t at, std::span<const std::uint8_t> bytes) override {
        kept_.clear();
        away([at, copy = std::vector<std::uint8_t>(bytes.begin(), bytes.end())](RawFile &file) {
            file.write(at, copy);
        });
    }

    void sync() override {
        kept_.clear(); // what is read from here on comes from the disk
        away([](RawFile &file) { file.sync(); });
    }

    void lock() override {
        away([](RawFile &file) { file.lock(); });
    }

  private:
    template <class Job>
    auto away(Job job) const -> decltype(job(std::declval<RawFile &>())) {
        return work_.run(place_, [real = real_, job = std::move(job)] { return job(*real); });
    }

    void fetch(std::uint64_t at, std::size_t least) const {
        const std::uint64_t left = size_ > at ? size_ - at : 0;
        const std::size_t wanted = std::max(least, static_cast<std::size_t>(std::min<std::uint64_t>(left, chunkBytes)));
        kept_ = away([at, wanted](RawFile &file) {
            std::vector<std::uint8_t> bytes(wanted);
            file.read(at, bytes);
            return bytes;
        });
        keptAt_ = at;
    }

    std::shared_ptr<RawFile> real_;
    AwayWork &work_;
    QString place_;
    std::uint64_t size_;
    mutable std::vector<std::uint8_t> kept_;
    mutable std::uint64_t keptAt_ = 0;
};

} // namespace

jet::FileOpener awayOpener(AwayWork &work, const QString &station, Storage &storage) {
    const QString home = QDir::cleanPath(station);
    return [&work, home, open = jet::storageOpener(storage)](const std::filesystem::path &path,
                                                             jet::RawFile::Mode mode) -> std::unique_ptr<jet::RawFile> {
        if (!isOutside(QFile::decodeName(path.c_str()), home)) {
            return open(path, mode);
        }
        const QString place = QFile::decodeName(path.parent_path().c_str());
        auto real = work.run(place, [open, path, mode] { return std::shared_ptr(open(path, mode)); });
        return std::make_unique<AwayRawFile>(std::move(real), work, place);
    };
}

} // namespace orvel
