#pragma once

#include "widgets/led_label.h"

namespace orvel {

/// A one-line LED display for names; the same widget as the scrolling label.
using LedText = LedLabel;

} // namespace orvel
