#include "widgets/theme.h"

#include "widgets/console_style.h"
#include "widgets/desktop_theme.h"
#include "widgets/style_sheet.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPalette>
#include <QPixmapCache>
#include <QSize>
#include <QStyle>
#include <QVariant>
#include <QWidget>

#include <algorithm>

namespace orvel {

namespace {

struct Tone {
    QRgb dark;
    QRgb light;
};

Tone toneOf(ThemeRole role) {
    switch (role) {
    case ThemeRole::Window:
        return {0xff1b1f24, 0xffe6e9ed};
    case ThemeRole::Panel:
        return {0xff242a31, 0xfff4f6f8};
    case ThemeRole::Raised:
        return {0xff333b45, 0xfffdfdfe};
    case ThemeRole::Field:
        return {0xff15181c, 0xffffffff};
    case ThemeRole::Hover:
        return {0xff414b57, 0xffe3ebf2};
    case ThemeRole::Border:
        return {0xff78869a, 0xff7b8794};
    case ThemeRole::Line:
        return {0xff3b444f, 0xffc8cfd7};
    case ThemeRole::Text:
        return {0xffe8ebef, 0xff1a1f25};
    case ThemeRole::MutedText:
        return {0xffaab5c2, 0xff4c5763};
    case ThemeRole::DisabledText:
        return {0xff838e9a, 0xff737d88};
    case ThemeRole::Accent:
        return {0xff62b4e8, 0xff0f6ea8};
    case ThemeRole::AccentText:
        return {0xff0c1a24, 0xffffffff};
    case ThemeRole::Record:
        return {0xffd62f2f, 0xffc81e1e};
    case ThemeRole::RecordText:
        return {0xffffffff, 0xffffffff};
    case ThemeRole::Attention:
        return {0xffff7b70, 0xffb81515};
    }
    return {0xff000000, 0xffffffff};
}

ThemeVariant &variantInUse() {
    static ThemeVariant variant = ThemeVariant::Dark;
    return variant;
}

QPalette themePalette() {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, ThemeRole normal, ThemeRole disabled) {
        palette.setColor(QPalette::All, role, themeColour(normal));
        palette.setColor(QPalette::Disabled, role, themeColour(disabled));
    };
    set(QPalette::Window, ThemeRole::Window, ThemeRole::Window);
    set(QPalette::WindowText, ThemeRole::Text, ThemeRole::DisabledText);
    set(QPalette::Base, ThemeRole::Field, ThemeRole::Panel);
    set(QPalette::AlternateBase, ThemeRole::Panel, ThemeRole::Panel);
    set(QPalette::Text, ThemeRole::Text, ThemeRole::DisabledText);
    set(QPalette::PlaceholderText, ThemeRole::MutedText, ThemeRole::DisabledText);
    set(QPalette::Button, ThemeRole::Raised, ThemeRole::Panel);
    set(QPalette::ButtonText, ThemeRole::Text, ThemeRole::DisabledText);
    set(QPalette::BrightText, ThemeRole::Attention, ThemeRole::DisabledText);
    set(QPalette::ToolTipBase, ThemeRole::Raised, ThemeRole::Raised);
    set(QPalette::ToolTipText, ThemeRole::Text, ThemeRole::Text);
    set(QPalette::Highlight, ThemeRole::Accent, ThemeRole::Line);
    set(QPalette::HighlightedText, ThemeRole::AccentText, ThemeRole::MutedText);
    set(QPalette::Link, ThemeRole::Accent, ThemeRole::DisabledText);
    set(QPalette::LinkVisited, ThemeRole::Accent, ThemeRole::DisabledText);
    set(QPalette::Light, ThemeRole::Hover, ThemeRole::Hover);
    set(QPalette::Midlight, ThemeRole::Raised, ThemeRole::Raised);
    set(QPalette::Mid, ThemeRole::Border, ThemeRole::Line);
    set(QPalette::Dark, ThemeRole::Line, ThemeRole::Line);
    set(QPalette::Shadow, ThemeRole::Field, ThemeRole::Field);
    return palette;
}

} // namespace

ThemeVariant chooseTheme(const QString &wish, std::optional<ThemeVariant> desktop) {
    if (wish.compare(QLatin1String("light"), Qt::CaseInsensitive) == 0) {
        return ThemeVariant::Light;
    }
    if (wish.compare(QLatin1String("dark"), Qt::CaseInsensitive) == 0) {
        return ThemeVariant::Dark;
    }
    return desktop.value_or(ThemeVariant::Dark);
}

QFont fittingFont(QFont wanted, const QSize &screen) {
    // What the main window takes where it is arranged densely, in lines of text.
    constexpr double widthInLines = 52;
    constexpr double heightInLines = 33;
    constexpr double titleBar = 30; // pixels
    const double room = std::min(screen.width() / widthInLines, (screen.height() - titleBar) / heightInLines);
    const double line = QFontMetricsF(wanted).height();
    if (room <= 0 || line <= room) {
        return wanted;
    }
    if (wanted.pointSizeF() > 0) {
        wanted.setPointSizeF(wanted.pointSizeF() * room / line);
    } else {
        wanted.setPixelSize(static_cast<int>(wanted.pixelSize() * room / line));
    }
    return wanted;
}

void applyTheme(QApplication &application) {
    applyTheme(application, chooseTheme(qEnvironmentVariable("ORVEL_THEME"), desktopTheme()));
}

void applyTheme(QApplication &application, ThemeVariant variant) {
    variantInUse() = variant;
    QApplication::setStyle(new ConsoleStyle);
    QApplication::setPalette(themePalette());
    QPixmapCache::clear(); // of icons in the other theme's tone
    application.setStyleSheet(
        styleSheet([](ThemeRole role) { return themeColour(role).name(); }, QApplication::font()));
}

ThemeVariant currentTheme() {
    return variantInUse();
}

QColor themeColour(ThemeRole role) {
    const Tone tone = toneOf(role);
    return QColor::fromRgb(currentTheme() == ThemeVariant::Dark ? tone.dark : tone.light);
}

void setRecording(QWidget &button, bool recording) {
    setStyleProperty(button, "recording", recording ? QStringLiteral("true") : QStringLiteral("false"));
}

void setStyleProperty(QWidget &widget, const char *name, const QString &value) {
    if (widget.property(name).toString() == value) {
        return;
    }
    widget.setProperty(name, value);
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
    widget.update();
}

} // namespace orvel
