#pragma once

#include <QString>

#include <span>

class QWidget;

namespace orvel {

/// Where the manual (docs/handleiding.md) tells about a window or a part of one.
struct ManualSection {
    const char *className; ///< of the window or the part, without its namespace
    const char *anchor;    ///< of a heading in the manual
};

/// Every window, and every part of the main window that has a heading of its own.
std::span<const ManualSection> manualSections();

/// The anchor for the innermost part around a control that the manual tells about; empty where there is none.
QString manualAnchorOf(const QWidget &control);

/// What links call a heading: in lower case, a hyphen for every blank, without other signs.
QString anchorOfHeading(const QString &heading);

} // namespace orvel
