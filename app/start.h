#pragma once

namespace orvel {

class frmMain;
class frmSplash;

/// Loads the main window while the splash is the only thing on the screen, then shows it. What loading lets through is
/// reported. False when the program must end at once; the window is not shown then.
bool startUnderSplash(frmMain &window, frmSplash &splash);

} // namespace orvel
