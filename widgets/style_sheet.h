#pragma once

#include <QString>

#include <functional>

class QFont;

namespace orvel {

enum class ThemeRole;

/// The application's style sheet. `colour` gives a role's colour as "#rrggbb"; `font` is the normal text's.
QString styleSheet(const std::function<QString(ThemeRole)> &colour, const QFont &font);

} // namespace orvel
