#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace orvel {

/// How a field of a step is shown.
enum class StepLook {
    Text,    ///< as stored
    Number,  ///< as stored, to the right
    Seconds, ///< milliseconds as seconds with one decimal, to the right
    Tick,    ///< a yes/no as a check mark
    MixType, ///< a mix type's name; the presenter may choose another one
};

/// A field of a playlist's table `Steps`, which is a column of the step grid.
struct StepField {
    const char *name;    ///< as a playlist spells it; matched without regard to case
    const char *caption; ///< of the grid's column
    StepLook look = StepLook::Text;
    bool isHidden = false;         ///< in the grid
    const char *toolTip = nullptr; ///< of the column, where its caption needs one
    const char *printed = nullptr; ///< a second name that a printed running order may call the value by
};

/// The fields in the order of the grid's columns: the one list of them. Another field is another row here.
inline constexpr std::array stepFields = {
    StepField{.name = "Imported", .caption = "OK", .look = StepLook::Tick},
    StepField{.name = "stap", .caption = "Stap", .look = StepLook::Number, .printed = "number"},
    StepField{.name = "tijd", .caption = "Tijd", .printed = "time"},
    StepField{.name = "artiest", .caption = "Uitvoerder", .printed = "performer"},
    StepField{.name = "Titel", .caption = "Titel", .printed = "title"},
    StepField{.name = "Jaartal", .caption = "Jaar", .look = StepLook::Number},
    StepField{.name = "LengteMin", .caption = "Min", .look = StepLook::Number},
    StepField{.name = "LengteSec", .caption = "Sec", .look = StepLook::Number},
    StepField{.name = "Intro",
              .caption = "Intro",
              .look = StepLook::Seconds,
              .toolTip = "Zo lang kan er over het begin gepraat worden, in seconden"},
    StepField{.name = "Outtro",
              .caption = "Outtro",
              .look = StepLook::Seconds,
              .toolTip = "Zo lang kan er over het einde gepraat worden, in seconden"},
    StepField{.name = "mixtype",
              .caption = "Mixtype",
              .look = StepLook::MixType,
              .toolTip = "Hoe de uitzending de stap mengt"},
    StepField{.name = "CueStart",
              .caption = "CueStart",
              .look = StepLook::Number,
              .toolTip = "Waar het geluid begint, voor de uitzending"},
    StepField{.name = "Cue", .caption = "Cue", .look = StepLook::Number, .toolTip = "Cuepunt, voor de uitzending"},
    StepField{.name = "Mix", .caption = "Mix", .look = StepLook::Number, .toolTip = "Mengpunt, voor de uitzending"},
    StepField{.name = "Atrack", .caption = "Atrack", .toolTip = "Naam van het geluidsbestand"},
    StepField{.name = "id", .caption = "id", .isHidden = true},
    StepField{.name = "trackid", .caption = "trackid", .isHidden = true},
    StepField{.name = "type", .caption = "type", .isHidden = true},
};

inline constexpr int StepColumnCount = static_cast<int>(stepFields.size());

constexpr const StepField &stepField(int column) {
    return stepFields.at(static_cast<std::size_t>(column));
}

/// Grid column of a field; a name that is not in the table does not compile.
consteval int stepColumn(std::string_view name) {
    int column = 0;
    while (name != stepField(column).name) {
        ++column;
    }
    return column;
}

/// The fields that the program itself looks at.
inline constexpr int ImportedColumn = stepColumn("Imported");
inline constexpr int StapColumn = stepColumn("stap");
inline constexpr int LengteMinColumn = stepColumn("LengteMin");
inline constexpr int LengteSecColumn = stepColumn("LengteSec");
inline constexpr int IntroColumn = stepColumn("Intro");
inline constexpr int OuttroColumn = stepColumn("Outtro");
inline constexpr int MixtypeColumn = stepColumn("mixtype");
inline constexpr int AtrackColumn = stepColumn("Atrack");
inline constexpr int TrackidColumn = stepColumn("trackid");
inline constexpr int TypeColumn = stepColumn("type");

} // namespace orvel
