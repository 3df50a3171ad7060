#pragma once
// The diagnostics panel: the diagnostic register, which brings an internal node onto the
// MEASOUT path, switches force amplifier stages out for test and routes a point of the
// thermal array to GPO, each selection written at once; its read-back; and the board's
// temperature sensor with its logged run.

#include "forms/MessageBox.h"
#include "forms/Panel.h"
#include "runs/TempRun.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class frmDIAG : public forms::Panel {
public:
    frmDIAG(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);
    ~frmDIAG() override;

    void Form_Load();
    // The clock of the temperature run and of the sensor's wait; a test gives its own.
    void useClock(qz::Clock& clock) { clock_ = &clock; }
    bool running() const;
    // The node option chosen in both banks when the panel opens.
    static constexpr int kStartNode = 11;
    // Ends the temperature run in progress after its present reading.
    void stopRun();

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

    // "TH2260 TEMP SENSOR"
    void cmdReadI2C_Click();
    // The sensor's reading as "READ TEMP SENSOR" takes and shows it: the local
    // temperature in degrees, nothing when the sensor stays busy.
    std::optional<int32_t> readTemperature();
    void cmdREADTempSensor_Click();
    void cmdwriteTempSensor_Click();
    void txtAddrPtr_Enter();
    void txtPTR_Enter();
    void txtdata_Enter();
    void cmdPLOTTEMP_Click();
    void cboDelay_Click();
    void Check1_Click();
    void Check2_Click();
    void cmdCopy_Click();
    void cmdSave_Click();
    void Strip1_CursorMoved(double x);

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

    // "TH2260 TEMP SENSOR"
    QPushButton* cmdReadI2C;
    QLineEdit* txtLocal;
    QLineEdit* txtExt;
    QLineEdit* txtAddrPtr;
    QPushButton* cmdREADTempSensor;
    QLineEdit* txttempdata;
    QLineEdit* txtPTR;
    QLineEdit* txtdata;
    QPushButton* cmdwriteTempSensor;
    QPushButton* cmdPLOTTEMP;
    QComboBox* cboDelay;
    QLineEdit* txtcount;
    QCheckBox* Check1;
    QCheckBox* Check2;
    forms::StripChart* Strip1;
    forms::ResultList* List2;
    QPushButton* cmdCopy;
    QPushButton* cmdSave; // "SAVE DATA..."
    QLineEdit* txtX;
    QLineEdit* txtY;
    QPushButton* Label29;
    QGroupBox* FrmHELP;
    QPushButton* Label30;

    // The readings of the last run, for the chart's cursor.
    qz::TempArrays temps;
    int32_t tempCount = 0; // readings the last run took
    int16_t tempStopped = 0;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* buildSensorPage();
    QWidget* buildHelpFrame(QWidget* parent);
    void wireSensorPage();
    // The byte of a sensor entry box as its buttons read it; a box that holds none is refused.
    std::optional<int32_t> sensorByte(QLineEdit* box);
    forms::Outcome sensorEntry(QLineEdit* box);

    qz::Clock* clock_;
    std::unique_ptr<forms::RunPass> run_;
    // The "#" lines of List2's saved file: the settings of the run that filled it.
    std::vector<std::string> tempHeader_;

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
