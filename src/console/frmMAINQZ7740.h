#pragma once
// The register console: every register composed, sent and read back word by word.

#include "forms/Panel.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace forms {
class BitRow;
class TabControl;
} // namespace forms

class frmMAINQZ7740 : public forms::Panel {
public:
    explicit frmMAINQZ7740(qz::Session& session, QWidget* parent = nullptr);

    // What the console does when it is first loaded: the board session.
    void Form_Load();

    // The word box.
    void Text1_KeyPress(int keyAscii);
    void Text1_LostFocus();
    void cmdREADADC_Click();
    void cmdEXIT_Click();
    void readSYS_Click();

    // Always visible.
    QLineEdit* Text1;
    QLineEdit* lblREADSPI;
    QPushButton* cmdREADADC;
    QPushButton* cmdEXIT;
    forms::TabControl* QZ7740;

    // "READ SYSTEM CONTROL REG"
    QPushButton* readSYS;
    QLabel* lbltemp;
    QLabel* lblGAIN1;
    QLabel* lblGAIN0;
    QLabel* lblfin;
    QLabel* lblcpo;
    QLabel* lblPD;
    forms::BitRow* txtRSYS;

private:
    QWidget* buildReadSystemTab();
    QWidget* buildWordBar();
};
