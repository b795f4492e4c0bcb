#pragma once

#include <QString>

#include <functional>

namespace orvel {

enum class ThemeRole;

/// The application's style sheet. `colour` gives a role's colour as "#rrggbb"; `pointSize` is the normal text's.
QString styleSheet(const std::function<QString(ThemeRole)> &colour, double pointSize);

} // namespace orvel
