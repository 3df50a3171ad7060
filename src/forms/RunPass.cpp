#include "forms/RunPass.h"

#include "forms/MessageBox.h"
#include "runs/Progress.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>

#include <algorithm>

namespace forms {

namespace {
// The fields of a run are shown anew this often, by the run's clock; every point would
// cost more than the point itself on the virtual board.
constexpr double kShowEvery = 0.05;
} // namespace

RunPass::RunPass(QMainWindow* panel, const qz::USBStuff& usb, qz::RunLog& log)
    : panel_(panel), usb_(usb), log_(log), progress_(new QProgressBar(panel)), text_(new QLabel(panel)) {
    progress_->setObjectName(QStringLiteral("runProgress"));
    progress_->setMaximumWidth(160);
    progress_->setTextVisible(false);
    progress_->hide();
    text_->setObjectName(QStringLiteral("runProgressText"));
    text_->hide();
    panel->statusBar()->addWidget(progress_);
    panel->statusBar()->addWidget(text_);
}

RunPass::~RunPass() {
    // A panel that goes in mid-run takes its run with it.
    if (running_) log_.ended();
}

void RunPass::block(std::initializer_list<QWidget*> controls) {
    blocked_.insert(blocked_.end(), controls.begin(), controls.end());
}

void RunPass::begin(QPushButton* stop, int points, qz::Clock& clock,
                    std::function<void(const qz::RunProgress&)> show) {
    // A run begins in two steps (its head, then its points): the log hears of it once.
    if (!running_) log_.began();
    running_ = true;
    stopAsked_ = false;
    lost_ = false;
    taken_ = 0;
    for (QWidget* w : blocked_)
        w->setEnabled(false);
    stop_ = stop;
    if (stop_) stop_->setEnabled(true);
    show_ = std::move(show);
    clock_ = &clock;
    started_ = clock.seconds();
    points_ = points;
    shown_ = false;
    progress_->setRange(0, std::max(points, 1));
    progress_->setValue(0);
    text_->setText(points > 0 ? QString::fromStdString(qz::progressText(0, points, 0.0)) : QString());
    progress_->show();
    text_->show();
}

void RunPass::show(const qz::RunProgress& p) {
    const int done = p.point + 1;
    progress_->setValue(std::min(done, progress_->maximum()));
    text_->setText(
        QString::fromStdString(qz::progressText(done, points_, clock_->seconds() - started_)));
    if (show_) show_(p);
    shown_ = true;
    lastShown_ = clock_->seconds();
}

bool RunPass::pass(const qz::RunProgress& p) {
    taken_ = p.point + 1;
    if (!shown_ || clock_->seconds() - lastShown_ >= kShowEvery) show(p);
    QCoreApplication::processEvents();
    // A lost board fails every request at once: the run stops rather than fill its list
    // with readings that are none.
    if (!lost_ && usb_.linkState() == qz::LinkState::Lost) lost_ = stopAsked_ = true;
    return !stopAsked_;
}

QString RunPass::progressText() const {
    return running_ ? text_->text() : QString();
}

bool RunPass::end() {
    if (running_) log_.ended();
    running_ = false;
    for (QWidget* w : blocked_)
        w->setEnabled(true);
    if (stop_) stop_->setEnabled(false);
    stop_ = nullptr;
    show_ = nullptr;
    progress_->hide();
    text_->hide();
    clock_ = nullptr;
    if (lost_) {
        lost_ = false;
        forms::message(qz::kAppTitle,
                       "The evaluation board was lost during the run. The run stopped; the " +
                           std::to_string(taken_) + " points it took are kept.",
                       qz::MsgIcon::Exclamation);
    }
    const bool close = closeAsked_;
    closeAsked_ = false;
    return close;
}

} // namespace forms
