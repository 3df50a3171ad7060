#pragma once
// The compensation registers: register 1 (mode, ESR, load capacitance) and register 2 (the
// manual network) composed field by field in their shadow words, loaded, and read back. A
// selection changes only the shadow word and the word box: nothing reaches the chip until
// a LOAD button.

#include "forms/AutoComp.h"
#include "forms/Panel.h"

#include <array>

class CompNetwork;

namespace qz {
struct CompSelection;
}

class frmCompensation : public forms::Panel {
public:
    frmCompensation(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);

    // Runs each time the panel is created: both shadow words back to their base words.
    void Form_Load();

    // "COMPENSATION REGISTER 1"
    void Option2_Click(int index);
    void cboRC_Click();
    void cboCR_Click();
    void cmdWriteCOMP1_Click();
    void cmdREADC1_Click();

    // "COMPENSATION REGISTER 2"
    void chkManualMode_Click();
    void cboRZ_Click();
    void cboRp_Click();
    void cboGM_Click();
    void chkCc1_Click();
    void chkCc2_Click();
    void chkCc3_Click();
    void Option1_Click(int index);
    void cmdWriteCOMP2_Click();
    void cmdREADC2_Click();

    void cmdRESET_Click();
    void cmdEXIT_Click();

    // The bit mirrors, on a copy of the word: the shadow keeps its value.
    void DecToBinComp1(int32_t word);
    void DecToBinComp2(int32_t word);

    forms::TabControl* SSTab1;
    QLineEdit* Text1;
    QLineEdit* lblREADSPI;
    QPushButton* cmdRESET;
    QPushButton* cmdEXIT;

    forms::BitRow* txtCP1;
    forms::AutoCompControls autoComp; // Option2, cboRC, cboCR and their units
    QPushButton* cmdWriteCOMP1;
    QPushButton* cmdREADC1;

    forms::BitRow* txtCP2;
    QCheckBox* chkManualMode;
    QComboBox* cboRZ;
    QComboBox* cboRp;
    QComboBox* cboGM;
    std::array<QCheckBox*, 3> chkCc{}; // chkCc1 .. chkCc3
    std::array<QRadioButton*, 7> Option1{};
    CompNetwork* network;
    QPushButton* cmdWriteCOMP2;
    QPushButton* cmdREADC2;

protected:
    // The window's frame closes the panel as "Close" does: its next showing loads afresh.
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* buildRegister1Page();
    QWidget* buildRegister2Page();
    QWidget* buildWordBar();
    void wire();

    // A selection: the mask and the field into the shadow word, the mirror's box, the word.
    void select(const qz::CompSelection& selection, int item);
    void chkCcClick(int i);
    void showWord(int32_t word);
    void setAutoListsEnabled(bool enabled);
    // The read command out, the reply fetched, both shown; gives the reply.
    int32_t readRegister(int address);
};
