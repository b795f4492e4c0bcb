#pragma once

#include "settings/settings.h"

#include <QString>

#include <cstdint>
#include <map>

namespace orvel {

/// Codes of the field `type` that the program tells apart by number.
enum StepType { TrackStep = 1, PresStep = 2, JingleStep = 3 };

/// Name of the style set for rows of a type code: "Track", "Pres", "Jingle", "Tijd", "Event", "Promo"; empty for codes
/// that have none.
QString styleName(int type);

/// What kind of step a type code is, for people: a symbol and a word, "♪ Muziek"; empty for codes that are no kind.
QString kindLabel(int type);

/// Colours as the settings keep them: red in the low byte, blue in the high one.
struct StepStyle {
    std::int32_t back = 0;
    std::int32_t text = 0;

    bool operator==(const StepStyle &) const = default;
};

/// The six style sets by name.
using StepStyles = std::map<QString, StepStyle>;

/// The style sets from the twelve colours of the settings. Advertising's colours are those of "Promo".
StepStyles applyStepStyles(const Settings &settings);

} // namespace orvel
