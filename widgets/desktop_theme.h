#pragma once

#include "widgets/theme.h"

#include <optional>

namespace orvel {

/// Whether the desktop asks for light or dark windows; nothing when it has no opinion.
std::optional<ThemeVariant> desktopTheme();

} // namespace orvel
