#include "shell/Panels.h"

#include "compensation/frmCompensation.h"
#include "diagnostics/frmDIAG.h"
#include "frontpanel/frmMain.h"
#include "measure/frmMeasure.h"
#include "shell/frmAbout.h"
#include "shell/frmMEASOUTGAIN.h"

namespace qz {

void registerPanels(forms::Navigator& nav, Session& session) {
    nav.registerForm(
        forms::Form::frmMain, [&nav, &session] { return new frmMain(session, nav); },
        [](QWidget* f) { static_cast<frmMain*>(f)->Form_Load(); });
    nav.registerForm(
        forms::Form::frmCompensation, [&nav, &session] { return new frmCompensation(session, nav); },
        [](QWidget* f) { static_cast<frmCompensation*>(f)->Form_Load(); });
    nav.registerForm(
        forms::Form::frmMeasure, [&nav, &session] { return new frmMeasure(session, nav); },
        [](QWidget* f) { static_cast<frmMeasure*>(f)->Form_Load(); });
    nav.registerForm(
        forms::Form::frmDIAG, [&nav, &session] { return new frmDIAG(session, nav); },
        [](QWidget* f) { static_cast<frmDIAG*>(f)->Form_Load(); });
    nav.registerForm(
        forms::Form::frmAbout, [&nav, &session] { return new frmAbout(session, nav); },
        [](QWidget* f) { static_cast<frmAbout*>(f)->Form_Load(); });
    nav.registerForm(forms::Form::frmMEASOUTGAIN,
                     [&nav, &session] { return new frmMEASOUTGAIN(session, nav); });
}

} // namespace qz
