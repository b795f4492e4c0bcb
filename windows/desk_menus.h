#pragma once

#include <QMenu>
#include <QObject>

namespace orvel {

struct CurrentStep;
struct Panels;
class Playlist;

/// The menus that the right mouse button (or the menu key) opens on the grid and on the lists of playlists. Every entry
/// presses what stands on the desk, where that is enabled.
class DeskMenus : public QObject {
    Q_OBJECT

  public:
    /// All of it outlives this.
    DeskMenus(const Panels &panels, const Playlist &playlist, const CurrentStep &step, QObject *parent);

    void fillGridMenu(QMenu &menu) const;
    void fillNewMenu(QMenu &menu) const;
    void fillOkMenu(QMenu &menu) const;

  private:
    const Panels &panels_;
    const Playlist &playlist_;
    const CurrentStep &step_;
};

} // namespace orvel
