#pragma once
// The warning that comes up when the MEASOUT gain of 1 is chosen: the board's link 4
// must come out. The panel that shows it does not wait for it.

#include "forms/Navigator.h"
#include "registers/Session.h"

#include <QDialog>

class QPushButton;

class frmMEASOUTGAIN : public QDialog {
public:
    frmMEASOUTGAIN(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);

    void cmdOK_Click();
    void cmdSysInfo_Click();

    QPushButton* cmdOK;
    QPushButton* cmdSysInfo;

private:
    void showOnConsole();

    qz::Session& session_;
    forms::Navigator& nav_;
};
