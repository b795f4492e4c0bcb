#include "widgets/style_sheet.h"

#include "widgets/theme.h"

#include <QFont>
#include <QFontInfo>
#include <QFontMetricsF>

#include <array>
#include <utility>

namespace orvel {

namespace {

constexpr double large = 1.45; // a title beside normal text

// A thicker frame takes the place of the margin, so that nothing moves when the focus comes.
constexpr auto sheet = R"(
QPushButton, QToolButton {
    background: @raised; color: @text; border: 1px solid @border; border-radius: 4px; margin: 1px;
    padding: 0.35em 0.9em; outline: none;
}
QToolButton { padding: 0.3em 0.45em; }
QDialogButtonBox QPushButton { min-width: 4.5em; }
QPushButton:default { border-color: @accent; }
QPushButton:hover, QToolButton:hover { background: @hover; }
QPushButton:pressed, QToolButton:pressed, QPushButton:checked, QToolButton:checked { background: @line; }
QPushButton:focus, QToolButton:focus { border: 2px solid @accent; margin: 0px; }
QPushButton:disabled, QToolButton:disabled { background: @panel; color: @disabled; border: 1px dashed @line; }
QToolBar QToolButton { background: transparent; border-color: transparent; }
QToolBar QToolButton:hover { background: @raised; border-color: @border; }
QToolBar QToolButton:pressed { background: @line; }
QToolBar QToolButton:focus { border: 2px solid @accent; }
QToolBar QToolButton:disabled { border: 1px solid transparent; }

QPushButton[role="primary"] { border: 2px solid @accent; margin: 0px; font-weight: bold; }
QPushButton[role="primary"]:hover { border-color: @text; }
QPushButton[role="primary"]:focus { border: 2px solid @text; }
QPushButton[role="low"] { padding: 0px 0.9em; }
QPushButton[role="quiet"] { background: transparent; border-color: transparent; }
QPushButton[role="quiet"]:hover { background: @raised; border-color: @border; }
QPushButton[role="quiet"]:focus { border: 2px solid @accent; }
QPushButton[role="primary"]:disabled, QPushButton[role="quiet"]:disabled {
    background: @panel; color: @disabled; border: 1px dashed @line;
}
QPushButton[role="record"] {
    background: @raised; color: @text; border: 3px solid @record; border-radius: 8px; margin: 2px;
    padding: 0.45em 0.9em; font-weight: bold; font-size: @largept; icon-size: @iconpx;
}
QPushButton[role="record"]:hover { background: @hover; }
QPushButton[role="record"]:pressed { background: @record; color: @recordText; }
QPushButton[role="record"]:focus { border: 5px solid @record; margin: 0px; }
QPushButton[role="record"][recording="true"] { background: @record; color: @recordText; border-color: @record; }
QPushButton[role="record"][recording="true"]:focus { border: 5px solid @recordText; }
QPushButton[role="record"]:disabled { background: @panel; color: @disabled; border: 3px dashed @line; }

QLabel[role="title"] { font-size: @largept; font-weight: bold; }
QLabel[role="muted"] { color: @muted; }
QLabel[role="value"] { font-weight: bold; }
QLabel[urgent="true"] { color: @attention; }
QLabel[role="attention"] { color: @attention; font-weight: bold; }
QLabel[role="alarm"] {
    background: @record; color: @recordText; font-size: @largept; font-weight: bold; border-radius: 4px; padding: 0.15em;
}
QLabel:disabled { color: @disabled; }

QGroupBox {
    background: @panel; border: 1px solid @line; border-radius: 6px; margin: 0px;
    padding: 1.9em 0.2em 0.2em 0.2em;
}
QGroupBox[dense="true"] { padding: 0.2em; }
QGroupBox::title {
    subcontrol-origin: border; subcontrol-position: top left; left: 0.7em; top: 0.5em; color: @muted;
}
QGroupBox::title:disabled { color: @disabled; }

QTabWidget::pane { background: @panel; border: 1px solid @line; border-radius: 6px; top: -1px; }
QTabBar { qproperty-drawBase: 0; }
QTabBar::tab {
    background: @window; color: @muted; border: 1px solid @line; border-bottom: none; border-top: 3px solid @line;
    border-top-left-radius: 5px; border-top-right-radius: 5px; padding: 0.35em 1em 0.4em 1em; margin-right: 2px;
}
QTabBar::tab:hover { color: @text; }
QTabBar::tab:selected { background: @panel; color: @text; border-top-color: @accent; }
QTabBar::tab:selected:focus { background: @raised; border: 2px solid @accent; border-top-width: 3px; }
QTabBar::tab:disabled { color: @disabled; border-top-color: @line; }

QLineEdit, QPlainTextEdit, QTextEdit {
    background: @field; color: @text; border: 1px solid @border; border-radius: 4px; margin: 1px;
    padding: 0.25em 0.35em; selection-background-color: @accent; selection-color: @accentText;
}
QLineEdit:focus, QPlainTextEdit:focus, QTextEdit:focus { border: 2px solid @accent; margin: 0px; }
QComboBox QLineEdit, QComboBox QLineEdit:focus { border: none; margin: 0px; padding: 0px; background: transparent; }
QLineEdit[problem="true"] { border: 2px solid @attention; margin: 0px; color: @attention; }
QLineEdit:disabled, QPlainTextEdit:disabled, QTextEdit:disabled {
    background: @panel; color: @disabled; border-color: @line;
}

QAbstractItemView {
    background: @field; color: @text; border: 1px solid @line; gridline-color: @line;
    selection-background-color: @accent; selection-color: @accentText;
}
QListView, QTreeView, QTableView { border-radius: 4px; }
QListView:focus, QTreeView:focus, QTableView:focus { border: 1px solid @accent; }
QAbstractItemView:disabled { color: @disabled; background: @panel; }
QHeaderView { background: @raised; border: none; }
QHeaderView::section {
    background: @raised; color: @text; border: none; border-right: 1px solid @line; border-bottom: 1px solid @line;
    padding: 0.3em 0.5em; font-weight: bold;
}
QHeaderView::section:disabled { color: @disabled; }
QTableCornerButton::section { background: @raised; border: none; }

QScrollBar { background: transparent; border: none; margin: 0px; }
QScrollBar:vertical { width: 0.9em; }
QScrollBar:horizontal { height: 0.9em; }
QScrollBar::handle { background: @border; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 2em; }
QScrollBar::handle:horizontal { min-width: 2em; }
QScrollBar::handle:hover { background: @muted; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }

QToolBar { background: @panel; border: none; border-bottom: 1px solid @line; padding: 0.25em; spacing: 0.2em; }
QToolBar::separator { background: @line; width: 1px; margin: 0.3em 0.4em; }
QStatusBar { background: @panel; color: @muted; border-top: 1px solid @line; }
QStatusBar::item { border: none; }
QStatusBar QLabel { padding: 0.1em 0.4em; }
QToolTip { background: @raised; color: @text; border: 1px solid @border; padding: 0.25em; }
QMenu { background: @panel; color: @text; border: 1px solid @border; padding: 0.2em; }
QMenu::item { padding: 0.3em 1.4em; border-radius: 3px; }
QMenu::item:selected { background: @accent; color: @accentText; }
QMenu::item:disabled { color: @disabled; }
QMenu::separator { height: 1px; background: @line; margin: 0.2em; }
QProgressBar {
    background: @field; color: @text; border: 1px solid @border; border-radius: 4px; text-align: center;
}
QProgressBar::chunk { background: @accent; border-radius: 3px; }
QSplitter::handle { background: @window; }
QSplitter::handle:hover { background: @accent; }
)";

} // namespace

QString styleSheet(const std::function<QString(ThemeRole)> &colour, const QFont &font) {
    // A name that begins with another one comes before it.
    const std::array<std::pair<const char *, ThemeRole>, 15> names = {{
        {"@accentText", ThemeRole::AccentText},
        {"@accent", ThemeRole::Accent},
        {"@attention", ThemeRole::Attention},
        {"@border", ThemeRole::Border},
        {"@disabled", ThemeRole::DisabledText},
        {"@field", ThemeRole::Field},
        {"@hover", ThemeRole::Hover},
        {"@line", ThemeRole::Line},
        {"@muted", ThemeRole::MutedText},
        {"@panel", ThemeRole::Panel},
        {"@raised", ThemeRole::Raised},
        {"@recordText", ThemeRole::RecordText},
        {"@record", ThemeRole::Record},
        {"@text", ThemeRole::Text},
        {"@window", ThemeRole::Window},
    }};
    QString result = QString::fromLatin1(sheet);
    for (const auto &[name, role] : names) {
        result.replace(QLatin1String(name), colour(role));
    }
    const double largePoints = QFontInfo(font).pointSizeF() * large;
    const int iconPixels = qRound(QFontMetricsF(font).height() * large);
    result.replace(QLatin1String("@large"), QString::number(largePoints, 'f', 1));
    return result.replace(QLatin1String("@icon"), QString::number(iconPixels));
}

} // namespace orvel
