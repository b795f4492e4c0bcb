#pragma once

#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvel {

class AudioFiles;

/// How long sound files are, measured on a thread of its own: files on a share that gives no answer hold nobody up.
class SoundLengths {
  public:
    /// Instead of a length.
    static constexpr std::int32_t notYet = -2;
    static constexpr std::int32_t unreadable = -1;

    explicit SoundLengths(AudioFiles &files);
    ~SoundLengths();
    SoundLengths(const SoundLengths &) = delete;
    SoundLengths &operator=(const SoundLengths &) = delete;
    SoundLengths(SoundLengths &&) = delete;
    SoundLengths &operator=(SoundLengths &&) = delete;

    /// Begins with these files; those before are forgotten. paths: full ones, numbered from 0.
    void measure(const QStringList &paths);
    /// In milliseconds, or one of the values above; notYet for a number that there is not.
    [[nodiscard]] std::int32_t of(std::size_t number) const;
    /// Whether every file is measured.
    [[nodiscard]] bool areKnown() const;

  private:
    struct Work;

    void forget();

    AudioFiles &files_;
    std::shared_ptr<Work> work_; ///< with the thread, which may outlive this
};

} // namespace orvel
