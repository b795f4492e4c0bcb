#include "windows/drop_target.h"

#include "platform/guarded.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

namespace orvel {

namespace {

constexpr int noneYet = -2;

QStringList pathsOf(const QMimeData &data) {
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        paths << (url.isLocalFile() ? url.toLocalFile() : url.toString());
    }
    return paths;
}

} // namespace

DropTarget::DropTarget(QAbstractItemView &view, Handler hovers, Handler dropped)
    : QObject(&view), view_(view), hovers_(std::move(hovers)), dropped_(std::move(dropped)) {
    view.viewport()->setAcceptDrops(true);
    view.viewport()->installEventFilter(this);
}

int DropTarget::rowAt(const QPoint &place) const {
    return view_.indexAt(place).row();
}

void DropTarget::move(const QDropEvent &event) {
    const int row = rowAt(event.position().toPoint());
    if (std::exchange(row_, row) != row) {
        hovers_(pathsOf(*event.mimeData()), row);
    }
}

void DropTarget::drop(const QDropEvent &event) {
    row_ = noneYet;
    QTimer::singleShot(0, this, [this, paths = pathsOf(*event.mimeData()), row = rowAt(event.position().toPoint())] {
        guarded([&] { dropped_(paths, row); });
    });
}

bool DropTarget::eventFilter(QObject *watched, QEvent *event) {
    const bool isDrag = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    if (event->type() == QEvent::DragLeave) {
        row_ = noneYet;
    }
    if (!isDrag && event->type() != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto *dropped = static_cast<QDropEvent *>(event);
    if (!dropped->mimeData()->hasUrls() || QApplication::activeModalWidget() != nullptr) {
        dropped->ignore();
        return true;
    }
    dropped->setDropAction(Qt::CopyAction); // the file stays where it is
    dropped->accept();
    guarded([&] { isDrag ? move(*dropped) : drop(*dropped); });
    return true;
}

} // namespace orvel
