#pragma once

#include <QColor>
#include <QFont>

#include <optional>

class QApplication;
class QPalette;
class QSize;
class QString;
class QWidget;

namespace orvel {

enum class ThemeVariant { Dark, Light };

enum class ThemeRole {
    Window,       ///< behind everything
    Panel,        ///< group boxes, tab pages, bars
    Raised,       ///< buttons, headers
    Field,        ///< things to type in, lists
    Hover,        ///< a button under the pointer
    Border,       ///< outlines of things that can be operated
    Line,         ///< quiet separators
    Text,         ///< normal text
    MutedText,    ///< captions, hints
    DisabledText, ///< on things that cannot be operated now
    Accent,       ///< focus and selection
    AccentText,   ///< text on Accent
    Record,       ///< the record button while recording, the recording lamp
    RecordText,   ///< text on Record
    Attention,    ///< texts that must be seen: recording, processing
};

/// Dark, unless the user or the desktop says light: `wish` (the environment's ORVEL_THEME: "light" or "dark", in any
/// case of letters) comes before what the desktop says.
ThemeVariant chooseTheme(const QString &wish, std::optional<ThemeVariant> desktop);

/// The font that the desktop wants; where its letters are too large for the main window to fit on a screen with so much
/// room (pixels, without the desktop's bars), the same one as small as it takes.
QFont fittingFont(QFont wanted, const QSize &screen);

/// Style, palette and style sheet of the whole application. Call once, after the application object and its font.
///
/// Dynamic properties that the style sheet knows:
/// - QPushButton `role`: "record" (the large record button; see setRecording), "primary" (the one main action of a
///   window), "quiet" (a button without a frame), "low" (no higher than a tab);
/// - QLabel `role`: "title", "muted", "value" (a figure that matters), "attention" (in red, bold), "alarm" (large, on
///   the recording's red).
void applyTheme(QApplication &application);
void applyTheme(QApplication &application, ThemeVariant variant);

ThemeVariant currentTheme();
QColor themeColour(ThemeRole role);

/// Turns a button with the role "record" red (or back).
void setRecording(QWidget &button, bool recording);
/// Sets a dynamic property and lets the style sheet see it.
void setStyleProperty(QWidget &widget, const char *name, const QString &value);

} // namespace orvel
