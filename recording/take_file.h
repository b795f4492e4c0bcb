#pragma once

#include <QString>

namespace orvel {

class Places;
class Playlist;
struct Settings;

/// Where the take of a slot can be heard: the recorded file, or the filed voice track of a step that is done. row: -1
/// for none. Whether it is there is not looked at. Throws BadFileName for a name that would leave its folder.
[[nodiscard]] QString audibleTake(const Playlist &playlist, int row, const QString &name, const Places &places,
                                  const Settings &settings);

} // namespace orvel
