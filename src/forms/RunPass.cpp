#include "forms/RunPass.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>

namespace forms {

namespace {
// The fields of a run are shown anew this often; every point would cost more than the
// point itself on the virtual board.
constexpr qint64 kShowEveryMs = 50;
} // namespace

RunPass::RunPass(QMainWindow* panel) : panel_(panel), progress_(new QProgressBar(panel)) {
    progress_->setObjectName(QStringLiteral("runProgress"));
    progress_->setMaximumWidth(240);
    progress_->setFormat(QStringLiteral("point %v of %m"));
    progress_->hide();
    panel->statusBar()->addWidget(progress_);
}

void RunPass::block(std::initializer_list<QWidget*> controls) {
    blocked_.insert(blocked_.end(), controls.begin(), controls.end());
}

void RunPass::begin(QPushButton* stop, int points,
                    std::function<void(const qz::RunProgress&)> show) {
    running_ = true;
    stopAsked_ = false;
    for (QWidget* w : blocked_)
        w->setEnabled(false);
    stop_ = stop;
    if (stop_) stop_->setEnabled(true);
    show_ = std::move(show);
    progress_->setRange(0, points);
    progress_->setValue(0);
    progress_->show();
    sinceShown_.start();
}

bool RunPass::pass(const qz::RunProgress& p) {
    if (sinceShown_.elapsed() >= kShowEveryMs) {
        progress_->setValue(p.point + 1);
        if (show_) show_(p);
        sinceShown_.restart();
    }
    QCoreApplication::processEvents();
    return !stopAsked_;
}

bool RunPass::end() {
    running_ = false;
    for (QWidget* w : blocked_)
        w->setEnabled(true);
    if (stop_) stop_->setEnabled(false);
    stop_ = nullptr;
    show_ = nullptr;
    progress_->hide();
    const bool close = closeAsked_;
    closeAsked_ = false;
    return close;
}

} // namespace forms
