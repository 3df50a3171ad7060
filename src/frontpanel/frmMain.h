#pragma once
// The front panel: the force voltage, the current range and clamps, the MEASOUT source and
// the channel settings in the operator's terms, each selection written to the chip at
// once; the alarms; the ways to the other panels. Its lists and check boxes have twins of
// the same name on the console, and the two stay equal.

#include "forms/AutoComp.h"
#include "forms/MessageBox.h"
#include "forms/Panel.h"
#include "levels/Clamps.h"

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

namespace qz {
struct CompSelection;
}

class frmMain : public forms::Panel {
public:
    frmMain(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);

    void Form_Load();

    // A list or check box of the selection table, as the operator's pick runs it: the
    // shadow word changes, the twin on the console follows and the word goes out.
    forms::Outcome fieldClick(const QString& control);
    forms::Outcome optRef_Click(int index);

    // The entries, on Enter.
    forms::Outcome txtV_Enter();
    forms::Outcome OFFSETx1_Enter();
    forms::Outcome txtclamph_Enter();
    forms::Outcome txtClampl_Enter();
    forms::Outcome txtEXT1rsense_Enter();
    forms::Outcome txtEXT2Rsense_Enter();

    // The limits of the present codes into VoutMin, VoutMax and their boxes; refused on a
    // code box that holds no code.
    forms::Outcome UpdateOutputLimits();
    // The request of txtV to the FIN DAC.
    forms::Outcome ForceVoltage();
    // The one check of a force voltage, for the panel's Enter and the remote alike: what
    // an Enter of this text in txtV would refuse once the range words are out, worked out
    // without a word sent or a box changed.
    forms::Outcome forceCheck(const std::string& text);
    // VoutMin and VoutMax of the codes the boxes hold, worked out without a word sent or
    // a box changed; nothing when a code box holds no code.
    std::optional<std::pair<float, float>> outputRange();
    // The sense resistor of the present range: the table's, or the number in the external
    // range's box; nothing when that box holds none.
    std::optional<float> presentRsense() const;
    // The current the chip's clamp code stands for now, in amperes: the last clamp set,
    // carried to the present range, gain and VREF. Nothing before the first.
    std::optional<double> clampAmps(bool high) const;
    forms::Outcome UpdateRangeNames();
    // The alarm status word, read as "Check Alarm Status" (or "CLEAR") reads and shows it.
    int32_t readAlarms(bool clear);

    // Reads, each showing the command in txtWrite and the reply in txtRead.
    void readSYS_Click();
    void Command4_Click();
    void readDPS2_Click();
    void Command5_Click();
    void readcomp2_Click();
    void cmdCheckAlarms_Click();
    void cmdCLEAR_Click();

    void cmdRESET_Click();
    void cmdEXIT_Click();
    void Command6_Click();

    // "COMPENSATION": mode, ESR and load capacitance of register 1, each written at once.
    void Option2_Click(int index);
    void cboRC_Click();
    void cboCR_Click();
    void cmdManualComp_Click();

    // "FORCE VOLTAGE"
    QLineEdit* txtV;
    QLineEdit* OFFSETx1;  // index 0 of its array
    QLineEdit* txtDaccode;
    QLineEdit* txtOutputV;
    QLineEdit* txtOutputVl;
    QLineEdit* txtOutputVh;
    std::array<QRadioButton*, 3> optRef{};
    QLineEdit* txtVREF;

    // The channel.
    QComboBox* cboCurrent;
    QCheckBox* chkPD;
    QCheckBox* chkENABLECH;
    QCheckBox* chkCLAMPEN;
    QLineEdit* txtclamph;
    QLineEdit* txtClampl;
    QLabel* lblmA;
    QLineEdit* txtEXT1rsense;
    QLineEdit* txtEXT2Rsense;
    QComboBox* cboMEASURE;
    QComboBox* cboCompare;
    QComboBox* cboSlave;
    QComboBox* cboSlew;
    QComboBox* cboSysforce;
    QCheckBox* chk10k;
    QCheckBox* chkGPO;
    QComboBox* IMEASG;
    QComboBox* MEASOUTG;
    QComboBox* tempset;

    // Words.
    QLineEdit* txtWrite;
    QLineEdit* txtRead;
    QPushButton* readSYS;
    QPushButton* Command4;
    QPushButton* readDPS2;
    QPushButton* Command5;
    QPushButton* readcomp2;

    // "ALARMS"
    std::array<forms::Lamp*, 2> cmdTEMP{};
    std::array<forms::Lamp*, 2> cmdosalm{};
    std::array<forms::Lamp*, 2> cmddut{};
    std::array<forms::Lamp*, 2> cmdclamp{};
    std::array<forms::Lamp*, 2> cmdguard{};
    std::array<forms::Lamp*, 2> cmdcpo{};
    QPushButton* cmdCheckAlarms;
    QPushButton* cmdCLEAR;

    // "COMPENSATION"
    forms::AutoCompControls autoComp; // Option2, cboRC, cboCR and their units
    QPushButton* cmdManualComp;

    // Ways out.
    QPushButton* Command1;
    QPushButton* Command2;
    QPushButton* Command3;
    QPushButton* Command6;
    QPushButton* cmdRESET;
    QPushButton* cmdEXIT;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    int refIndex_ = 0; // the reference option whose VREF is in use
    std::array<std::optional<qz::ClampLevel>, 2> clampSet_; // low, high

    QWidget* buildForceFrame();
    QWidget* buildChannelFrame();
    QWidget* buildClampFrame();
    QWidget* buildMeasureFrame();
    QWidget* buildSystemFrame();
    QWidget* buildAlarmFrame();
    QWidget* buildCompensationFrame();
    QWidget* buildWordBar();
    void wire();
    void wireCompensation();
    void compSelect(const qz::CompSelection& selection, int item);

    void fields(std::initializer_list<QWidget*> controls);
    forms::Outcome clampEntry(QLineEdit* box, bool high);
    void readButton(int address);
    int32_t alarmRead(int command);
    void showWrite(int32_t word);
    // OFFSET of this panel, m and c of the console, each read from its box.
    std::optional<std::array<int32_t, 3>> codes(forms::Outcome& outcome);
};
