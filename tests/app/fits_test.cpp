// Every window fits the smallest screen with the smallest and the largest letters, and cuts nothing off.
#include "every_window.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QSplitter>
#include <QTabBar>
#include <QTableView>
#include <QToolButton>

namespace orvel {

namespace {

constexpr QSize smallest(1000, 640);
constexpr int leastRows = 3; // the slot and its two neighbours

/// Notes what does not fit in a window, in one line each.
class Ruler {
  public:
    QStringList problems;
    int measured = 0;

    void measure(const QWidget &shown) {
        for (const QWidget *part : shown.findChildren<QWidget *>()) {
            if (part->isVisible() && part->window() == &shown && !isQtsOwn(*part)) {
                measurePlace(*part);
                measureText(*part);
            }
        }
    }

  private:
    /// The parts of a view or a scroll bar lie where it puts them.
    static bool isQtsOwn(const QWidget &part) {
        return part.objectName().startsWith(QStringLiteral("qt_")) ||
               qobject_cast<const QAbstractScrollArea *>(part.parentWidget()) != nullptr;
    }
    /// What scrolls or shows a part of itself needs less than it likes to have.
    static bool isContainer(const QWidget &part) {
        return qobject_cast<const QAbstractScrollArea *>(&part) != nullptr ||
               qobject_cast<const QTabWidget *>(&part) != nullptr || qobject_cast<const QSplitter *>(&part) != nullptr;
    }
    static bool isScrolled(const QWidget &part) {
        for (const QWidget *above = part.parentWidget(); above != nullptr; above = above->parentWidget()) {
            if (qobject_cast<const QAbstractScrollArea *>(above) != nullptr) {
                return true;
            }
        }
        return false;
    }
    void measurePlace(const QWidget &part) {
        // A corner of tabs is as high as it likes, and the tabs are below it.
        const bool isCorner = qobject_cast<const QTabWidget *>(part.parentWidget()) != nullptr;
        if (!isCorner && !isScrolled(part) && !part.parentWidget()->rect().contains(part.geometry())) {
            note(part, QStringLiteral("in %1 reaches out of its place").arg(part.parentWidget()->objectName()));
        }
    }
    void measureText(const QWidget &part) {
        if (const auto *label = qobject_cast<const QLabel *>(&part)) {
            measureLabel(*label);
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(&part)) {
            expectRoom(*button, button->text(), button->sizeHint());
        } else if (const auto *box = qobject_cast<const QComboBox *>(&part)) {
            expectRoom(*box, box->currentText(), box->minimumSizeHint());
        } else if (const auto *tabs = qobject_cast<const QTabBar *>(&part)) {
            measureTabs(*tabs);
        } else if (const auto *header = qobject_cast<const QHeaderView *>(&part)) {
            measureHeader(*header);
        } else if (part.layout() == nullptr && !isContainer(part)) {
            expectRoom(part, part.accessibleName(), part.minimumSizeHint());
        }
    }
    void measureLabel(const QLabel &label) {
        const bool isElided = label.text().endsWith(u'…') || qobject_cast<const ElidedLabel *>(&label) != nullptr;
        if (isElided) {
            const int text = label.fontMetrics().horizontalAdvance(label.text());
            if ((label.text().endsWith(u'…') || text > label.contentsRect().width()) && label.toolTip().isEmpty()) {
                note(label, QStringLiteral("is shortened, and nothing tells the whole of it"));
            }
            expectRoom(label, label.text(), {0, label.minimumSizeHint().height()});
            return;
        }
        const int height = label.wordWrap() ? label.heightForWidth(label.width()) : label.sizeHint().height();
        expectRoom(label, label.text(), {label.wordWrap() ? 0 : label.sizeHint().width(), height});
    }
    void expectRoom(const QWidget &part, const QString &text, const QSize &wanted) {
        ++measured;
        if (!text.isEmpty() && (part.width() < wanted.width() || part.height() < wanted.height())) {
            note(part, QStringLiteral("\"%1\" wants %2 x %3 and has %4 x %5")
                           .arg(text)
                           .arg(wanted.width())
                           .arg(wanted.height())
                           .arg(part.width())
                           .arg(part.height()));
        }
    }
    void measureTabs(const QTabBar &tabs) {
        for (int tab = 0; tab < tabs.count(); ++tab) {
            ++measured;
            const QRect place = tabs.tabRect(tab);
            const int text = tabs.fontMetrics().horizontalAdvance(tabs.tabText(tab));
            if (!tabs.rect().contains(place) || place.width() < text) {
                note(tabs, QStringLiteral("the tab \"%1\" is cut off").arg(tabs.tabText(tab)));
            }
        }
    }
    void measureHeader(const QHeaderView &header) {
        for (int section = 0; section < header.count(); ++section) {
            const QVariant caption = header.model()->headerData(section, header.orientation());
            const bool isWide =
                header.isSectionHidden(section) || header.sectionSize(section) >= header.sectionSizeHint(section);
            ++measured;
            if (!isWide && header.model()->headerData(section, header.orientation(), Qt::ToolTipRole).isNull()) {
                note(header, QStringLiteral("the caption \"%1\" is cut off").arg(caption.toString()));
            }
        }
    }
    void note(const QWidget &part, const QString &what) {
        problems << QStringLiteral("%1 %2 %3")
                        .arg(QString::fromLatin1(part.metaObject()->className()), part.objectName(), what);
    }
};

class EveryWindowFits : public EveryWindow, public testing::WithParamInterface<double> {
  protected:
    static void settle() {
        // A layout that gives way to another one takes two rounds.
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        }
    }
    static void expectFits(QWidget &shown, const QString &shape) {
        SCOPED_TRACE((shown.objectName() + u' ' + shape).toStdString());
        settle();
        expectWhole(shown);
        const QSize opened = shown.size();
        shown.resize(smallest);
        settle();
        EXPECT_LE(shown.width(), smallest.width());
        EXPECT_LE(shown.height(), smallest.height());
        expectWhole(shown);
        shown.resize(opened);
        settle();
    }
    static void expectWhole(const QWidget &shown) {
        Ruler ruler;
        ruler.measure(shown);
        EXPECT_TRUE(ruler.problems.isEmpty()) << ruler.problems.join(u'\n').toStdString();
        EXPECT_GE(ruler.measured, 2);
    }
    /// Rows that are wholly in sight.
    [[nodiscard]] int rows() const {
        const QTableView &grid = *window->panels().gridPanel->dbgLijst;
        return grid.viewport()->height() / grid.verticalHeader()->defaultSectionSize();
    }
};

} // namespace

TEST_P(EveryWindowFits, TheSmallestScreenAndCutsNothingOff) {
    dress(GetParam(), ThemeVariant::Dark, smallest);
    visitAll([this](QWidget &shown, const QString &shape) {
        if (&shown == window.get()) {
            shown.resize(smallest);
            settle();
            EXPECT_TRUE(!window->workplace().datList.isOpen() || rows() >= leastRows)
                << shape.toStdString() << ": " << rows() << " rows";
        }
        expectFits(shown, shape);
    });
}

INSTANTIATE_TEST_SUITE_P(Points, EveryWindowFits, testing::Values(9.0, 12.0, 16.0),
                         [](const auto &test) { return std::to_string(static_cast<int>(test.param)); });

} // namespace orvel
