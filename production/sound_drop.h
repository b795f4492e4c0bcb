#pragma once

#include "production/import_desk.h"
#include "production/sound_import.h"

#include <QCoreApplication>

#include <memory>

namespace orvel {

class ProgressSign;

/// A sound file that is dropped on a step becomes that step's voice track, whichever step is selected: an import like
/// any other, but one that asks before it replaces what the step has.
class SoundDrop {
    Q_DECLARE_TR_FUNCTIONS(SoundDrop)

  public:
    explicit SoundDrop(ImportDesk desk);
    SoundDrop(const SoundDrop &) = delete;
    SoundDrop &operator=(const SoundDrop &) = delete;
    SoundDrop(SoundDrop &&) = delete;
    SoundDrop &operator=(SoundDrop &&) = delete;
    ~SoundDrop();

    /// Why these files cannot be imported into the step of a row (-1 for none), as a sentence; empty when they can.
    [[nodiscard]] QString refusal(const QStringList &paths, int row) const;
    /// What letting go of them would do, as a sentence.
    [[nodiscard]] QString forecast(const QStringList &paths, int row) const;
    /// Imports, or tells why not. Throws what the disk and the playlist throw.
    void drop(const QStringList &paths, int row);

  private:
    [[nodiscard]] bool mayReplace(const SoundImport::Job &job) const;
    /// False when the file is none, or the presenter did not wait for it.
    [[nodiscard]] bool isSound(const QString &path);
    void import(const SoundImport::Job &job);

    ImportDesk desk_;
    SoundImport import_;
    std::unique_ptr<ProgressSign> sign_;
};

} // namespace orvel
