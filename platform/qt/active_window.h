#pragma once

class QWidget;

namespace orvel {

/// The window that a box belongs to, also while another program has the focus: a box without one could stay behind it.
/// Null before there is any.
QWidget *activeWindow();

} // namespace orvel
