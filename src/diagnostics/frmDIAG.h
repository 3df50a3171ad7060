#pragma once
// The diagnostics panel: the diagnostic register, which brings an internal node onto the
// MEASOUT path, switches force amplifier stages out for test and routes a point of the
// thermal array to GPO, each selection written at once; its read-back; and the board's
// temperature sensor with its logged run.

#include "forms/Panel.h"

#include <array>

class QGroupBox;

class frmDIAG : public forms::Panel {
public:
    frmDIAG(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);

    void Form_Load();

    // The diagnostic word's selections, as the operator's click runs them.
    void optDIAGA_Click(int index);
    void optDIAGB_Click(int index);
    void optTESTFORCE_Click(int index);
    void optTSENSE_Click(int index);
    void optMEASAB_Click(int index);
    void cmdWRITEDIAGREG_Click();
    void cmdREADDIAG_Click();
    void cmdRESET_Click();
    void cmdEXIT_Click();
    void SSTab2_Click(int previousTab);

    // The mirrors of this panel, on a copy of the word they are given.
    void DecToBinDIAG(int32_t word);
    void DecToBinRDIAG(int32_t word);

    // Fixed beside the pages.
    QGroupBox* frmwrite;
    QLineEdit* Text1;
    QLineEdit* lblREADSPI;
    QGroupBox* frmDiagREG;
    forms::BitRow* txtCP1;
    QGroupBox* frmDIAGA;
    std::array<QRadioButton*, 25> optTSENSE{};
    forms::TabControl* SSTab2;
    QPushButton* cmdRESET;
    QPushButton* cmdEXIT;

    // "DIAGNOSTIC REGISTER"
    std::array<QRadioButton*, 12> optDIAGA{};
    std::array<QRadioButton*, 12> optDIAGB{};
    std::array<QRadioButton*, 8> optTESTFORCE{}; // no index 5
    std::array<QRadioButton*, 2> optMEASAB{};
    QPushButton* cmdWRITEDIAGREG;

    // "READ DIAGNOSTIC REGISTER"
    QPushButton* cmdREADDIAG;
    forms::BitRow* txtRD1;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* buildWordFrame();
    QWidget* buildRegisterFrame();
    QWidget* buildThermalFrame();
    QWidget* buildSelectPage();
    QWidget* buildReadPage();
    QWidget* buildNodeFrame(const char* title, const char* name, std::array<QRadioButton*, 12>& options,
                            bool bankB);
    QWidget* buildStageFrame();
    QWidget* buildPathFrame();

    // One selection of the diagnostic word: the mask first, then (unless an entry is busy)
    // the bits, the word out, shown and mirrored.
    void select(int32_t mask, int32_t bits);
    void showWord();
};
