#pragma once

#include "settings/settings.h"

#include <QGroupBox>
#include <QLabel>

#include <functional>

namespace orvel {

class Prompts;

/// The colours of the playlist's items: a panel for each that shows them, and two buttons that change them.
class ColourPage : public QGroupBox {
    Q_OBJECT

  public:
    /// A chosen colour goes into the settings at once; changed is called then.
    ColourPage(Prompts &prompts, Settings &settings, std::function<void()> changed, QWidget *parent = nullptr);

    /// Paints the panels.
    void showColours();

  private:
    struct Item;
    void addItem(int row, const Item &item);
    void choose(std::int32_t Settings::*field);

    Prompts &prompts_;
    Settings &settings_;
    std::function<void()> changed_;
    std::vector<std::pair<QLabel *, const Item *>> panels_;
};

} // namespace orvel
