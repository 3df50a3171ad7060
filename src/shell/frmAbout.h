#pragma once
// "About QZ7740": the program's title, version and where updates can be had, and the way
// to the system information tool.

#include "forms/Navigator.h"
#include "registers/Session.h"
#include "shell/SysInfo.h"

#include <QDialog>

class QLabel;
class QPushButton;

class frmAbout : public QDialog {
public:
    frmAbout(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);

    void Form_Load();
    void cmdOK_Click();
    void cmdSysInfo_Click();
    void StartSysInfo();
    // What StartSysInfo reaches of the system; a test gives its own.
    void useSystem(qz::SysInfoSystem system) { system_ = std::move(system); }

    QLabel* picIcon;
    QLabel* lblTitle;
    QLabel* lblVersion;
    QLabel* lblDescription;
    QLabel* lblDisclaimer;
    QPushButton* cmdOK;
    QPushButton* cmdSysInfo;

private:
    qz::Session& session_;
    forms::Navigator& nav_;
    qz::SysInfoSystem system_;
};
