#pragma once
// The recorder's window: starts and stops a recording, shows each step as it is recorded
// and a client's traffic beside it, and gives the recording away as the plain command list
// (clipboard) or as a Python script (PyVISA, or the program's pymeasure class).

#include "remote/Recorder.h"

#include <QWidget>

#include <string>

class QLabel;
class QListWidget;
class QPushButton;

class RecorderWindow : public QWidget {
  public:
    explicit RecorderWindow(qz::remote::Recorder& recorder, QWidget* parent = nullptr);
    ~RecorderWindow() override;
    RecorderWindow(const RecorderWindow&) = delete;
    RecorderWindow& operator=(const RecorderWindow&) = delete;

    void cmdRecord_Click();
    void cmdClear_Click();
    void cmdCopy_Click();
    void cmdSavePython_Click();
    void cmdSavePymeasure_Click();

    QPushButton* cmdRecord;
    QPushButton* cmdClear;
    QPushButton* cmdCopy;
    QPushButton* cmdSavePython;
    QPushButton* cmdSavePymeasure;
    QListWidget* lstRecorded;
    QLabel* lblRecState;

  private:
    void addStep(const qz::remote::Step& step);
    void addTraffic(const std::string& peer, const std::string& line, bool fromClient);
    // A line of the view; number > 0 marks the first line of that step.
    void addLine(const QString& text, bool traffic, const QString& tip = {}, int number = 0);
    void showState();
    void save(bool pymeasure);

    qz::remote::Recorder& recorder_;
    int trafficLines_ = 0;
    int stepsShown_ = 0;
};
