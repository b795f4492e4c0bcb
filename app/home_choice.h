#pragma once

#include "station/homes.h"

#include <memory>

class QWidget;

namespace orvel {

class FileSystem;
class Prompts;

/// Where this user's homes are remembered, where new ones are made, and where the samples lie that came with the
/// program in `programFolder`.
[[nodiscard]] HomePlaces homePlaces(const FileSystem &files, const QString &programFolder);

/// Which home the program works in: the one that is given, the one used last, or what the presenter says.
class HomeChoice {
  public:
    HomeChoice(Prompts &prompts, std::unique_ptr<FileSystem> files);
    HomeChoice(const HomeChoice &) = delete;
    HomeChoice(HomeChoice &&) = delete;
    HomeChoice &operator=(const HomeChoice &) = delete;
    HomeChoice &operator=(HomeChoice &&) = delete;
    ~HomeChoice();

    /// The user's folder for what programs remember; answers always.
    [[nodiscard]] static QString configFolder();

    /// Whether the presenter has no say.
    [[nodiscard]] bool isGiven() const { return !given_.isEmpty(); }
    /// The home to start in; empty when the presenter wants none.
    [[nodiscard]] QString first();
    /// Another home than the current one; empty for none.
    [[nodiscard]] QString ask(const QString &current, QWidget *parent);
    /// The program has started in it. That it cannot be remembered is reported, and no more.
    void workedIn(const QString &home);

  private:
    Prompts &prompts_;
    std::unique_ptr<FileSystem> files_;
    QString given_;
    Homes homes_;
};

} // namespace orvel
