#pragma once

class QWidget;

namespace orvel {

/// Makes the widgets of this folder known to screen readers: role, value and limits, and on or off, read from the
/// properties `value`, `minimum`, `maximum`, `step`, `valueText` and `lit`. Every widget calls this when it is made.
/// Scroll areas get a plain interface, combo boxes the name of their purpose, sliders the value that is seen: in
/// percent where they have the property `percent`.
void installAccessibility();

/// Tells a screen reader that listens that the widget's value, or its on and off, has changed.
void announceValue(QWidget &widget);
void announceState(QWidget &widget);
/// Tells it that the widget's name is news that cannot wait.
void announceAlert(QWidget &widget);

} // namespace orvel
