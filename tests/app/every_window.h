#pragma once

#include "station.h"
#include "widgets/theme.h"
#include "windows/frm_keys.h"

#include <QFont>

#include <functional>

namespace orvel {

/// A station with playlists, stations of a network and takes, whose every window is looked at, one after the other, in
/// the shapes in which a presenter meets it.
class EveryWindow : public Station {
  protected:
    ~EveryWindow() override;

    using Look = std::function<void(QWidget &shown, const QString &shape)>;

    /// Letters of that size, or what a screen of that size has room for, and that theme, for the windows that are
    /// opened from now on.
    void dress(double points, ThemeVariant theme, const QSize &screen);
    /// Starts at a station with a network, opens the demo playlist and selects its first slot.
    void openDemo();
    void visitAll(const Look &look);

    /// The window of that kind, which must be in sight.
    template <class Window>
    Window *shownWindow() {
        auto *shown = window->findChild<Window *>();
        EXPECT_TRUE(shown != nullptr && shown->isVisible());
        return shown;
    }
    /// Presses the key of the main window.
    void key(const QKeySequence &keys);

  private:
    template <class Window>
    void visit(const Look &look, const QString &shape = {});
    void visitMain(const Look &look);
    void visitDialogs(const Look &look);
    void visitUnfiled(const Look &look);

    QFont font_ = QApplication::font();
};

} // namespace orvel
