#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace orvel {

class FileSystem;

/// How much later than the sound server says a recording card hears what the output plays, by the cards' names; only
/// of cards where that was measured. In the section [Delays] of the settings file: each card's milliseconds, a blank
/// and its name, under a number. What there cannot be read is as good as not measured.
class CardDelays {
  public:
    CardDelays(FileSystem &files, QString programFolder);

    /// Reads the settings file anew.
    void load();
    /// In milliseconds, below 0 where the card hears it before.
    [[nodiscard]] std::optional<double> of(const QString &card) const;
    /// Keeps it and writes it, to a tenth of a millisecond. Throws what FileSystem::write() throws.
    void keep(const QString &card, double milliseconds);

  private:
    struct Measured {
        QString key; ///< of its line in the file
        QString card;
        double milliseconds = 0;
    };

    FileSystem &files_;
    QString programFolder_;
    std::vector<Measured> measured_;
};

} // namespace orvel
