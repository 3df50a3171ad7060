#pragma once
// The measurement panel: the FIN DAC swept from a start to an end voltage with a MEASOUT
// reading at each step, one voltage forced and MEASOUT read 101 times, and two stimuli for
// an oscilloscope; each run fills its list, its Min/Max fields and its chart, whose cursor
// reads the points back, and a list goes to the clipboard as text or to a file with the
// settings of its run.

#include "forms/MessageBox.h"
#include "forms/Panel.h"
#include "registers/RunLog.h"
#include "runs/Measure.h"
#include "runs/Stimuli.h"

#include <array>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace qz {
struct ChartBounds;
struct MeasureChoices;
struct RunStamp;
}

class frmMeasure : public forms::Panel {
  public:
    frmMeasure(qz::Session& session, forms::Navigator& navigator, QWidget* parent = nullptr);
    ~frmMeasure() override;

    void Form_Load();
    // The clock of the runs and their waits; a test gives one that moves only when waited on.
    void useClock(qz::Clock& clock) { clock_ = &clock; }
    bool running() const;

    // Beside the tabs.
    forms::Outcome optRef_Click(int index);
    forms::Outcome txtVREF_Enter();
    void cboSweepI_Click();
    void cboMeasureVI_Click();
    void cboDela_Click();
    void cboMDelay_Click();
    void Check1_Click();
    void SSTab1_Click(int previousTab);
    void cmdEXIT_Click();
    void mnuClose_Click();

    // "SWEEP VOLTAGE MEASURE CURRENT/VOLTAGE"
    void cmdPlot_Click();
    // The sweep and the time run as the buttons run them, their outcome given back (the
    // buttons show it).
    forms::Outcome plotSweep();
    forms::Outcome plotTime();
    // The sweep itself, after the head of cmdPlot; a refused field ends it before its
    // first word.
    forms::Outcome SweepV(float Rsense, int32_t offsetCode);
    forms::Outcome txtstartV_Enter();
    forms::Outcome txtendV_Enter();
    forms::Outcome txtstep_Enter();
    void cmdCOPYTOCLIP_Click();
    void cmdSave_Click();
    void Strip1_CursorMoved(double x);

    // "MEASURE CURRENT/VOLTAGE VERSUS TIME"
    void cmdPlotit_Click();
    forms::Outcome SweepandMeasure(float Rsense, int32_t offsetCode);
    forms::Outcome txtForceV_Enter();
    void cmdCopy_Click();
    void cmdSaveit_Click();
    void Strip2_CursorMoved(double x);

    // Both runs: STOP ends the run after its point.
    void cmdStop_Click();

    // "SETTLING TIMES/RANGE CHANGE TRANSIENTS"
    void cboFINREG_Click();
    void cboCurrent1_Click();
    void cboCurrent2_Click();
    forms::Outcome txtFINSET1_Enter();
    forms::Outcome txtFINSET2_Enter();
    forms::Outcome txtdin_Enter();
    void cmdWRITESET_Click();
    void cmdRangeChange_Click();

    // The results of the last runs, which the chart cursors read.
    qz::MeasureArrays arrays;
    qz::StimulusWords words;

    forms::TabControl* SSTab1;
    forms::TabControl* SSTab2;

    // Beside the tabs.
    QGroupBox* frmVref;
    std::array<QRadioButton*, 3> optRef{};
    QLineEdit* txtVREF;
    QGroupBox* Frame1;
    QComboBox* cboSweepI;
    QGroupBox* Frame2;
    QComboBox* cboDela;
    QGroupBox* Frame3;
    QComboBox* cboMDelay;
    QGroupBox* Frame16;
    QComboBox* cboMeasureVI;
    QCheckBox* Check1;
    QLineEdit* lblREADSPI;
    QLineEdit* Text1;
    QPushButton* cmdEXIT;

    // The sweep.
    QLineEdit* txtstartV;
    QLineEdit* txtendV;
    QLineEdit* txtstep;
    QLineEdit* txtstart;
    QLineEdit* txtend;
    QLineEdit* txtstepcode;
    QPushButton* cmdPlot;
    QPushButton* cmdStop;
    forms::ResultList* List1;
    QLineEdit* txtmin;
    QLineEdit* txtMax;
    QLineEdit* txtdifff;
    QLineEdit* Text2;
    QLineEdit* Text3;
    QPushButton* cmdCOPYTOCLIP;
    QPushButton* cmdSave; // "SAVE DATA..."
    forms::StripChart* Strip1;
    QWidget* FrmHELP;
    QPushButton* Label16; // shows FrmHELP
    QPushButton* Label30; // "Close X"

    // The time run.
    QLineEdit* txtForceV;
    QLineEdit* txtForceC;
    QPushButton* cmdPlotit;
    QPushButton* cmdStopit;
    forms::ResultList* List2;
    QLineEdit* txtmin1;
    QLineEdit* txtmax1;
    QLineEdit* txtdiff;
    QLineEdit* txtX;
    QLineEdit* txtY;
    QPushButton* cmdCopy;
    QPushButton* cmdSaveit; // "SAVE DATA..."
    forms::StripChart* Strip2;
    QWidget* Frame9;
    QPushButton* Label29; // shows Frame9
    QPushButton* Label17; // "Close X"

    // The stimuli.
    QComboBox* cboFINREG;
    QLineEdit* txtFINSET1;
    QLineEdit* txtFINSET2;
    QPushButton* cmdWRITESET;
    QComboBox* cboCurrent1;
    QComboBox* cboCurrent2;
    QLineEdit* txtdin;
    QPushButton* cmdRangeChange;
    QLineEdit* txtrange1;
    QLineEdit* txtrange2;
    QLineEdit* txtfincode;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    // The head of both PLOT buttons: the chip's gain and OFFSET, the lists' words out, the
    // run's list and fields emptied; gives what the head read of the chip.
    qz::Prepared plotHead(bool sweep, forms::ResultList* list, std::initializer_list<QLineEdit*> cleared);
    QWidget* buildSide();
    QWidget* buildSweepTab();
    QWidget* buildTimeTab();
    QWidget* buildStimulusTab();
    QWidget* buildHelp(const QString& name, const char* text, QPushButton*& close);
    void wire();

    qz::ReferenceChoice referenceChoice() const;
    // The settings both runs take from the panel and the session.
    void settings(qz::RunSettings& r, int32_t offsetCode, float Rsense) const;
    // When a run starts and on what, and the lists' items it runs with, for its saved file.
    qz::RunStamp stamp() const;
    qz::MeasureChoices choices() const;
    qz::RunContext context(forms::ResultList* list);
    void showProgress(const qz::RunProgress& p, bool sweep);
    forms::Outcome refuse(qz::Box box, const std::string& text);
    forms::Outcome voltageEntry(QLineEdit* box);
    void ShowChartAxes(const qz::ChartBounds& b, int points, const std::vector<double>& d);
    void ShowTimeChart(const qz::ChartBounds& b, const std::vector<double>& d);
    void finishRun();
    // The points a run took, for whoever fetches them once it has ended.
    void recordRun(qz::RunKind kind, int points, const std::vector<double>& forced,
                   const std::vector<double>& readings, bool amps);

    qz::Clock* clock_;
    std::unique_ptr<forms::RunPass> run_;
    int refIndex_ = 0;       // the reference option whose VREF is in use
    float measGain_ = 20.0f; // the current-sense gain read before the last run
    // The "#" lines of each list's saved file: the settings of the run that filled it.
    std::vector<std::string> sweepHeader_, timeHeader_;
};
