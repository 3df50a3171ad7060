#pragma once
// The panels and dialogs of the program, by name. A panel reaches another through these
// names only, so that a misspelt panel does not compile.

#include <QString>

namespace forms {

enum class Form {
    frmMAINQZ7740,   // the register console, the start form
    frmMain,         // the front panel
    frmMeasure,      // measurements
    frmDIAG,         // diagnostics
    frmCompensation, // the compensation registers
    frmAbout,
    frmMEASOUTGAIN,  // the MEASOUT gain warning
};

inline constexpr Form kAllForms[] = {Form::frmMAINQZ7740, Form::frmMain,         Form::frmMeasure,
                                     Form::frmDIAG,       Form::frmCompensation, Form::frmAbout,
                                     Form::frmMEASOUTGAIN};

// The panel's name, which is also its objectName.
QString formName(Form form);

// "name(k)", the name of a member of a control array.
inline QString member(const char* name, int k) {
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(name)).arg(k);
}

} // namespace forms
