#include "widgets/desktop_theme.h"

#include <QSettings>

namespace orvel {

std::optional<ThemeVariant> desktopTheme() {
    const QSettings personal(R"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize)",
                             QSettings::NativeFormat);
    const QVariant light = personal.value("AppsUseLightTheme");
    if (!light.isValid()) {
        return std::nullopt;
    }
    return light.toBool() ? ThemeVariant::Light : ThemeVariant::Dark;
}

} // namespace orvel
