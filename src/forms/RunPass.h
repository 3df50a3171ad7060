#pragma once
// How a panel runs a long measurement: while the run is in progress the controls that
// would start another (or send words into it) are disabled, the status bar shows the
// progress (point i of n, the time gone and the time still to go) and the run's STOP
// button is live; once per point the panel's pending events run, and the run's fields and
// list are brought up to date a few times a second rather than at every point. A close
// asked for during the run waits for its end. A board lost during the run stops it: the
// points taken stay, and one message says so at its end.

#include "board/USBStuff.h"
#include "registers/RunLog.h"
#include "runs/Measure.h"

#include <QString>

#include <functional>
#include <initializer_list>
#include <vector>

class QLabel;
class QMainWindow;
class QProgressBar;
class QPushButton;
class QWidget;

namespace forms {

class RunPass {
  public:
    // The run log hears of every start and end.
    RunPass(QMainWindow* panel, const qz::USBStuff& usb, qz::RunLog& log);
    ~RunPass();
    RunPass(const RunPass&) = delete;
    RunPass& operator=(const RunPass&) = delete;

    // The controls that stay disabled while a run is in progress.
    void block(std::initializer_list<QWidget*> controls);
    bool running() const { return running_; }

    // Starts a run of this many points on the clock of its waits; stop is its STOP button
    // (none where the panel has a control of its own), show brings the panel's fields up
    // to date with the progress.
    void begin(QPushButton* stop, int points, qz::Clock& clock,
               std::function<void(const qz::RunProgress&)> show);
    // One pass of the panel's events: false once STOP was pressed or the board was lost.
    // The first point shows at once, the others a few times a second of the run's clock.
    bool pass(const qz::RunProgress& progress);
    // The progress as the status bar shows it, empty while no run is in progress.
    QString progressText() const;
    // Ends the run and gives the controls back; true when the panel was asked to close in
    // the meantime, which it should do now.
    bool end();

    void requestStop() { stopAsked_ = true; }
    // A close during a run is remembered until its end.
    void requestClose() { closeAsked_ = true; }

  private:
    QMainWindow* panel_;
    const qz::USBStuff& usb_;
    qz::RunLog& log_;
    void show(const qz::RunProgress& progress);

    QProgressBar* progress_;
    QLabel* text_;
    qz::Clock* clock_ = nullptr;
    double started_ = 0.0, lastShown_ = 0.0;
    int points_ = 0;
    bool shown_ = false;
    std::vector<QWidget*> blocked_;
    QPushButton* stop_ = nullptr;
    std::function<void(const qz::RunProgress&)> show_;
    bool running_ = false;
    bool stopAsked_ = false;
    bool closeAsked_ = false;
    bool lost_ = false;
    int taken_ = 0; // the points the run has passed
};

// A run from its start to its end in one scope: the end comes however the scope is left.
class RunScope {
  public:
    RunScope(RunPass& pass, std::function<void()> close) : pass_(pass), close_(std::move(close)) {}
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;
    ~RunScope() {
        if (pass_.running() && pass_.end() && close_) close_();
    }

  private:
    RunPass& pass_;
    std::function<void()> close_;
};

} // namespace forms
