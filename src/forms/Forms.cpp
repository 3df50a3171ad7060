#include "forms/Forms.h"

namespace forms {

QString formName(Form form) {
    switch (form) {
    case Form::frmMAINQZ7740: return QStringLiteral("frmMAINQZ7740");
    case Form::frmMain: return QStringLiteral("frmMain");
    case Form::frmMeasure: return QStringLiteral("frmMeasure");
    case Form::frmDIAG: return QStringLiteral("frmDIAG");
    case Form::frmCompensation: return QStringLiteral("frmCompensation");
    case Form::frmAbout: return QStringLiteral("frmAbout");
    case Form::frmMEASOUTGAIN: return QStringLiteral("frmMEASOUTGAIN");
    }
    return {};
}

} // namespace forms
