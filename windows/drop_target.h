#pragma once

#include <QAbstractItemView>
#include <QObject>
#include <QStringList>

#include <functional>

namespace orvel {

/// Lets files be dropped on the rows of a list or table.
class DropTarget : public QObject {
    Q_OBJECT

  public:
    /// row: under the pointer, -1 for none. paths: full ones; what lies on no disk keeps its address.
    using Handler = std::function<void(const QStringList &paths, int row)>;

    /// hovers: while files are held over the view. dropped: they were let go of; it runs when the program that they
    /// come from has them back, so it may ask. Nothing is taken while a modal window is open.
    DropTarget(QAbstractItemView &view, Handler hovers, Handler dropped);

    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    [[nodiscard]] int rowAt(const QPoint &place) const;
    void move(const QDropEvent &event);
    void drop(const QDropEvent &event);

    QAbstractItemView &view_;
    Handler hovers_;
    Handler dropped_;
    int row_ = -2; ///< that was told of last
};

} // namespace orvel
