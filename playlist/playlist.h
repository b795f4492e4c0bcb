#pragma once

#include "platform/database.h"
#include "playlist/step_fields.h"

#include <QString>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

namespace orvel {

/// The open playlist: its steps in running order, the time tables, the number of presentation slots. Steps are
/// addressed by row (from 0) and grid column; the fields are found by name.
class Playlist {
  public:
    static constexpr int lastTableIndex = 150;

    /// beforeFirstWrite: called with the playlist's path before it is changed for the first time since it was opened.
    Playlist(DatabaseEngine &databases, std::function<void(const QString &)> beforeFirstWrite);

    /// Opens newPath + "\" + name. Throws what the database layer throws, ItemNotFound for a missing field,
    /// TypeMismatch for a null intro or outro, SubscriptOutOfRange for step 151; no playlist is usable then.
    void open(const QString &newPath, const QString &name);
    void close();
    [[nodiscard]] bool isOpen() const { return steps_ != nullptr; }

    [[nodiscard]] QString fileName() const { return fileName_; }
    [[nodiscard]] QString fullPath() const { return fullPath_; }
    /// Number of presentation slots; a playlist without any leaves the number of the one before.
    [[nodiscard]] std::int16_t presCount() const { return presCount_; }
    /// Lengths in milliseconds by step number, 0 to 150. Throws SubscriptOutOfRange.
    [[nodiscard]] std::int32_t intro(int stap) const { return tableEntry(intro_, stap); }
    [[nodiscard]] std::int32_t outtro(int stap) const { return tableEntry(outtro_, stap); }

    [[nodiscard]] int stepCount() const { return steps_ ? steps_->recordCount() : 0; }
    [[nodiscard]] QVariant value(int row, int column) const;
    /// Stores a yes/no or a number at once. What another program changed meanwhile is read first; where it changed this
    /// very value, DatabaseLocked says so and nothing is stored. Throws what RecordSet::update() throws.
    void setValue(int row, int column, const QVariant &value);
    /// Reads the file again.
    void refresh();
    /// The first row whose `Imported` is false; -1 when every step is done.
    [[nodiscard]] int firstUnfinished() const;

  private:
    void store(int row, int column, const QVariant &value);
    void storeAfterChange(int row, int column, const QVariant &value);
    using TimeTable = std::array<std::int32_t, lastTableIndex + 1>;

    [[nodiscard]] std::int32_t tableEntry(const TimeTable &table, int stap) const;
    void countPresentations(Database &database);
    void findFields();
    void fillTimeTables();

    DatabaseEngine &databases_;
    std::function<void(const QString &)> beforeFirstWrite_;
    std::unique_ptr<RecordSet> steps_;
    std::array<int, StepColumnCount> fields_{};
    QString fileName_;
    QString fullPath_;
    TimeTable intro_{};
    TimeTable outtro_{};
    std::int16_t presCount_ = 0;
    bool written_ = false;
};

} // namespace orvel
