#include "shell/Panels.h"

#include "shell/frmMEASOUTGAIN.h"

namespace qz {

void registerPanels(forms::Navigator& nav, Session& session) {
    nav.registerForm(forms::Form::frmMEASOUTGAIN,
                     [&nav, &session] { return new frmMEASOUTGAIN(session, nav); });
}

} // namespace qz
