#include "app/start.h"

#include "platform/guarded.h"
#include "windows/frm_main.h"
#include "windows/frm_splash.h"

namespace orvel {

bool startUnderSplash(frmMain &window, frmSplash &splash) {
    window.setSplash(&splash);
    bool goesOn = false;
    guarded([&] { goesOn = window.Form_Load(); });
    splash.close();
    if (goesOn) {
        window.show();
        guarded([&] { window.showFirstSetup(); });
        guarded([&] { window.showUnfiled(); });
    }
    return goesOn;
}

} // namespace orvel
