#pragma once
// The register console: every register composed field by field in its shadow word, sent
// with a WRITE button or typed as a whole word, and read back.

#include "forms/MessageBox.h"
#include "forms/Panel.h"
#include "levels/FieldTable.h"

#include <array>
#include <initializer_list>
#include <optional>

class frmMAINQZ7740 : public forms::Panel {
public:
    frmMAINQZ7740(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);

    // The start of the program: the board session and the power-on words.
    void Form_Load();
    // The load after the board's search: the fixed series of words that brings the chip
    // into the program's start state, the panels it needs loaded, the front panel shown.
    void PowerOn();

    // Outside the tabs.
    void Text1_KeyPress(int keyAscii);
    void Text1_LostFocus();
    void cmdREADADC_Click();
    void cmdRESET_Click();
    void cmdEXIT_Click();
    void Check1_Click();
    void optComp0_Click(int index);
    void QZ7740_Click(int previousTab);

    // Write tabs.
    void fieldClick(const QString& control);
    void cmdWRITESYS_Click();
    void cmdWRITEPMU_Click();
    void cmdWriteDPS2_Click();
    void cmdALAM_Click();
    void Command1_Click();
    void chkHWINHB_Click();
    void chkCLEN_Click();

    // Read tabs.
    void readSYS_Click();
    void READPMU_Click();
    void cmdReadDPS2_Click();
    void READCOMP_Click();
    void READALARM_Click();

    // The bit mirrors of this panel, on a copy of the word they are given.
    void DecToBinSYS(int32_t word);
    void DecToBinPMU(int32_t word);
    void DecToBinDPS2(int32_t word);

    // Always visible.
    QLineEdit* Text1;
    QLineEdit* lblREADSPI;
    QPushButton* cmdREADADC;
    QPushButton* cmdRESET;
    QPushButton* cmdEXIT;
    QCheckBox* Check1;
    std::array<QRadioButton*, 4> optComp0{};
    forms::TabControl* QZ7740;

    // "WRITE SYSTEM CONTROL REG"
    forms::BitRow* txtSYS;
    QCheckBox* chkPD;
    QCheckBox* chkFINGND;
    QCheckBox* CPEN;
    QComboBox* MEASOUTG;
    QComboBox* IMEASG;
    QComboBox* tempset;
    QPushButton* cmdWRITESYS;
    QPushButton* Command1;
    QLineEdit* Text2;

    // "WRITE DPS1 REG"
    forms::BitRow* txtPMU;
    QCheckBox* chkHWINHB;
    QCheckBox* chkENABLECH;
    QComboBox* cboCurrent;
    QComboBox* cboMEASURE;
    QComboBox* cboCompare;
    QCheckBox* chkMEASOUT;
    QCheckBox* chkCLEN;
    QCheckBox* chkCLAMPEN;
    QPushButton* cmdWRITEPMU;

    // "WRITE DPS2 REG"
    forms::BitRow* txtDPS2;
    QComboBox* cboSlave;
    QCheckBox* chkGPO;
    QComboBox* cboSlew;
    QComboBox* cboSysforce;
    QCheckBox* chk10k;
    QCheckBox* Check2;
    QPushButton* cmdWriteDPS2;

    // "ALARM SETUP REG"
    forms::BitRow* txtWALM;
    std::array<QCheckBox*, 11> chk{};  // chk[1] .. chk[10]
    QPushButton* cmdALAM;

    // "READ SYSTEM CONTROL REG"
    QPushButton* readSYS;
    QLabel* lbltemp;
    QLabel* lblGAIN1;
    QLabel* lblGAIN0;
    QLabel* lblfin;
    QLabel* lblcpo;
    QLabel* lblPD;
    forms::BitRow* txtRSYS;

    // "READ DPS1 REG"
    QPushButton* READPMU;
    std::array<QLabel*, 6> RPMU{};
    forms::BitRow* txtRPMU;

    // "READ DPS2 REG"
    QPushButton* cmdReadDPS2;
    forms::BitRow* txtRDPS2;

    // "READ ALARM STATUS"
    QPushButton* READCOMP;
    QPushButton* READALARM;
    std::array<forms::Lamp*, 2> cmdTEMP{};
    forms::BitRow* txtALM;

    // "WRITE DAC REG"
    forms::BitRow* txtDAC;
    forms::TabControl* tabDACS;
    QLineEdit* txtstart;
    QLineEdit* txtRAMP;
    QLineEdit* txtRampStep;
    QLineEdit* txtRCLKDiv;
    QPushButton* cmdENRAMP;
    QPushButton* cmdINTRAMP;
    QPushButton* cmdReadEnableRamp;
    QLineEdit* txtRampStatus;
    QLineEdit* txtFINx1;
    QLineEdit* txtFINM;
    QLineEdit* txtFINC;
    QLineEdit* txtOutputV;
    QLineEdit* txtCLLx1;  // each of the clamp arrays holds one box, index 0
    QLineEdit* txtCLLM;
    QLineEdit* txtCLLC;
    QLineEdit* txtCLHx1;
    QLineEdit* txtCLHM;
    QLineEdit* txtCLHC;
    std::array<QLineEdit*, 8> txtCPLx1{};
    std::array<QLineEdit*, 8> txtCPLM{};
    std::array<QLineEdit*, 8> txtCPLC{};
    std::array<QLineEdit*, 8> txtCPHx1{};
    std::array<QLineEdit*, 8> txtCPHM{};
    std::array<QLineEdit*, 8> txtCPHC{};
    QLineEdit* OFFSETx1;  // index 0 of its array
    QLineEdit* txtDGS;
    std::array<QRadioButton*, 3> optRef{};
    QLineEdit* txtVREF;

    // "READ DAC REG"
    QComboBox* cboDAC;
    QPushButton* cmdREADDAC;
    QLineEdit* txtDaccode;
    QLineEdit* txtOFFSET;
    QLineEdit* txtRDGS;
    QComboBox* cboCLAMPS;
    QPushButton* cmdREADCLAMPDACs;
    QLineEdit* txtDACC;
    QComboBox* cboCOMPDACs;
    QComboBox* cboCurrentRange;
    QComboBox* Combo2;
    QPushButton* cmdREADCOMPDACs;
    QLineEdit* txtDACcomp;
    QPushButton* cmdREADRAMPREGS;
    QLineEdit* txtRRampEnd;
    QLineEdit* txtRRCLKDiv;
    QLineEdit* txtRRampStep;
    forms::BitRow* txtRDAC;

    // DAC pages.
    void DACLOAD(int32_t lx, int32_t dacadd);
    // Shows the output of the FIN codes in txtOutputV; false when a code or VREF is
    // refused (the refusal shown on its box).
    forms::Outcome outputV();
    std::optional<QString> outputVText(forms::Outcome& outcome); // refused on the box that holds no code
    forms::Outcome optRef_Click(int index);
    void tabDACS_Click(int previousTab);
    void cmdENRAMP_Click();
    void cmdINTRAMP_Click();
    void cmdReadEnableRamp_Click();
    void cboDAC_Click();
    void cboCLAMPS_Click();
    void cboCOMPDACs_Click();
    void cboCurrentRange_Click();
    void Combo2_Click();
    void cmdREADDAC_Click();
    void cmdREADCLAMPDACs_Click();
    void cmdREADCOMPDACs_Click();
    void cmdREADRAMPREGS_Click();

    // Module words of the console.
    int32_t rampWord = 0;
    int32_t compDACread = 0x930000;
    float compDACsel = 0.0f;
    int32_t compRangeRead = 0;
    int32_t compFullRead = 0;
    int32_t clampRead = 0;
    int32_t dacRead = 0;

private:
    int refIndex_ = 0;  // the reference option whose VREF is in use

    QWidget* buildWriteSystemTab();
    QWidget* buildWriteDPS1Tab();
    QWidget* buildWriteDPS2Tab();
    QWidget* buildAlarmSetupTab();
    QWidget* buildReadSystemTab();
    QWidget* buildReadDPS1Tab();
    QWidget* buildReadDPS2Tab();
    QWidget* buildReadAlarmTab();
    QWidget* buildWriteDacTab();
    QWidget* buildRampPage();
    QWidget* buildFinPage();
    QWidget* buildClampPage();
    QWidget* buildComparatorPage();
    QWidget* buildReadDacTab();
    void wireDacPages();
    void wireDacEntries();
    forms::Outcome hexEntry(QLineEdit* box, qz::HexFieldId id, int index);
    QLineEdit* x1BoxOf(qz::HexFieldId id) const;
    QWidget* buildWordBar();
    QWidget* buildSwitchPanel();

    // Ties the field controls of the write tabs to fieldClick.
    void fields(std::initializer_list<QWidget*> controls);
    void showWord(int32_t word);
    // One read of the chip, its reply shown in lblREADSPI; the DAC page's side reads go
    // through session.readWord and leave that box alone.
    int32_t readRegister(int32_t command);
    void alarmRead(int32_t command);
};
