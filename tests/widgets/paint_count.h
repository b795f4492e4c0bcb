#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QPaintEvent>
#include <QRegion>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>
#include <utility>

namespace orvel::test {

/// Counts the paint events of a widget from the moment it stands on the screen.
class PaintCount : public QObject {
    Q_OBJECT

  public:
    explicit PaintCount(QWidget &widget) {
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
        settle();
        widget.installEventFilter(this);
    }

    /// Lets what was asked for be painted; gives the number of paint events since the last call.
    int take() {
        settle();
        return std::exchange(count_, 0);
    }

    QRegion lastRegion() const { return region_; }

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint) {
            ++count_;
            region_ = static_cast<QPaintEvent *>(event)->region();
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    static void settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    int count_ = 0;
    QRegion region_;
};

} // namespace orvel::test
