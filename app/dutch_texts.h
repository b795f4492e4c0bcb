#pragma once

class QObject;

namespace orvel {

/// Standard dialogs speak Dutch, whatever language the desktop has: Qt's own translation, and for what that leaves in
/// English a table of ours. Lasts as long as the owner.
void speakDutch(QObject &owner);

} // namespace orvel
