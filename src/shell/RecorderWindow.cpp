#include "shell/RecorderWindow.h"

#include "forms/Build.h"
#include "forms/Entry.h"
#include "forms/SaveData.h"
#include "remote/Script.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileDevice>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace {

using qz::remote::Step;

// A client's lines are shown, not kept: past this many the oldest goes, so a long session
// of a script does not grow the window without end. Recorded steps always stay.
constexpr int kTrafficKept = 2000;
// Marks a traffic line among the view's items; a step's first line carries its number.
constexpr int kTrafficRole = Qt::UserRole + 1;
constexpr int kNumberRole = Qt::UserRole + 2;

const QColor kTrafficColour(0x80, 0x80, 0x80);

// Draws each step's number in a margin left of its line: the number a saved script gives
// the step when it reports it failed.
class NumberMargin : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const int margin = width(option);
        const QVariant number = index.data(kNumberRole);
        if (number.isValid()) {
            painter->save();
            painter->setFont(option.font);
            painter->setPen(kTrafficColour);
            painter->drawText(option.rect.adjusted(0, 0, margin - option.rect.width() - 8, 0),
                              Qt::AlignRight | Qt::AlignVCenter, number.toString());
            painter->restore();
        }
        QStyleOptionViewItem line(option);
        line.rect.setLeft(line.rect.left() + margin);
        QStyledItemDelegate::paint(painter, line, index);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(width(option), 0);
    }

  private:
    static int width(const QStyleOptionViewItem& option) {
        return option.fontMetrics.horizontalAdvance(QStringLiteral("0000")) + 14;
    }
};

// The record key's mark: a red dot while it starts a recording, a square while it stops one.
QIcon keyMark(bool recording) {
    QPixmap p(12, 12);
    p.fill(Qt::transparent);
    QPainter painter(&p);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(recording ? QColor(0x40, 0x40, 0x40) : QColor(0xc8, 0x1e, 0x1e));
    if (recording)
        painter.drawRect(2, 2, 8, 8);
    else
        painter.drawEllipse(1, 1, 10, 10);
    return QIcon(p);
}

QFrame* separator(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

RecorderWindow::RecorderWindow(qz::remote::Recorder& recorder, QWidget* parent)
    : QWidget(parent, Qt::Window), recorder_(recorder) {
    setObjectName(QStringLiteral("frmRecorder"));
    setWindowTitle(QStringLiteral("QZ7740 Recorder"));

    cmdRecord = forms::makeButton(QStringLiteral("cmdRecord"), QStringLiteral("Record"), this);
    cmdClear = forms::makeButton(QStringLiteral("cmdClear"), QStringLiteral("Clear"), this);
    cmdCopy = forms::makeButton(QStringLiteral("cmdCopy"), QStringLiteral("Copy"), this);
    cmdCopy->setToolTip(QStringLiteral("The recorded commands, a line each, to the clipboard"));
    cmdSavePython = forms::makeButton(QStringLiteral("cmdSavePython"),
                                      QStringLiteral("Save as Python..."), this);
    cmdSavePython->setToolTip(QStringLiteral("A script for PyVISA that sends the recording again"));
    cmdSavePymeasure = forms::makeButton(QStringLiteral("cmdSavePymeasure"),
                                         QStringLiteral("Save for pymeasure..."), this);
    cmdSavePymeasure->setToolTip(
        QStringLiteral("A script that sends the recording through the QZ7740 class"));
    // Both captions fit the key, whichever it shows.
    cmdRecord->setMinimumWidth(
        cmdRecord->fontMetrics().horizontalAdvance(QStringLiteral("Record")) +
        cmdRecord->iconSize().width() + 36);

    auto* keys = new QHBoxLayout;
    keys->addWidget(cmdRecord);
    keys->addWidget(cmdClear);
    keys->addSpacing(6);
    keys->addWidget(separator(this));
    keys->addSpacing(6);
    keys->addWidget(cmdCopy);
    keys->addWidget(cmdSavePython);
    keys->addWidget(cmdSavePymeasure);
    keys->addStretch(1);

    QLabel* legend = forms::makeNote(
        "The steps recorded from the panels, as the commands that repeat them, numbered as the "
        "saved scripts count them. In grey, a client's traffic, shown and not recorded: "
        "\u2192 what it sent, \u2190 what the program answered.",
        this);
    legend->setObjectName(QStringLiteral("lblLegend"));

    lstRecorded = new QListWidget(this);
    lstRecorded->setObjectName(QStringLiteral("lstRecorded"));
    lstRecorded->setFont(forms::hexFont());
    lstRecorded->setUniformItemSizes(true);
    lstRecorded->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lstRecorded->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lstRecorded->setItemDelegate(new NumberMargin(lstRecorded));

    lblRecState = forms::makeStatus(QStringLiteral("lblRecState"), QString(), this);

    auto* column = new QVBoxLayout(this);
    column->addLayout(keys);
    column->addWidget(legend);
    column->addWidget(lstRecorded, 1);
    column->addWidget(lblRecState);

    connect(cmdRecord, &QPushButton::clicked, this, [this] { cmdRecord_Click(); });
    connect(cmdClear, &QPushButton::clicked, this, [this] { cmdClear_Click(); });
    connect(cmdCopy, &QPushButton::clicked, this, [this] { cmdCopy_Click(); });
    connect(cmdSavePython, &QPushButton::clicked, this, [this] { cmdSavePython_Click(); });
    connect(cmdSavePymeasure, &QPushButton::clicked, this, [this] { cmdSavePymeasure_Click(); });

    // A recording made while the window was away shows at once.
    for (const Step& s : recorder_.steps())
        addStep(s);
    recorder_.onStep = [this](const Step& s) {
        addStep(s);
        showState();
    };
    recorder_.onState = [this](bool) { showState(); };
    recorder_.onTraffic = [this](const std::string& peer, const std::string& line,
                                 bool fromClient) { addTraffic(peer, line, fromClient); };
    showState();
    resize(720, 440);
}

RecorderWindow::~RecorderWindow() {
    recorder_.onStep = nullptr;
    recorder_.onState = nullptr;
    recorder_.onTraffic = nullptr;
}

void RecorderWindow::cmdRecord_Click() {
    if (recorder_.recording())
        recorder_.stop();
    else
        recorder_.start();
    showState();
}

void RecorderWindow::cmdClear_Click() {
    recorder_.clear();
    lstRecorded->clear();
    trafficLines_ = 0;
    stepsShown_ = 0;
    showState();
}

void RecorderWindow::cmdCopy_Click() {
    QApplication::clipboard()->setText(
        QString::fromStdString(qz::remote::commandList(recorder_.steps())));
}

void RecorderWindow::cmdSavePython_Click() {
    save(false);
}

void RecorderWindow::cmdSavePymeasure_Click() {
    save(true);
}

void RecorderWindow::save(bool pymeasure) {
    const QString path = forms::chooseSaveFile(
        this, pymeasure ? QStringLiteral("Save for pymeasure") : QStringLiteral("Save as Python"),
        pymeasure ? QStringLiteral("recording_pymeasure.py") : QStringLiteral("recording.py"),
        QStringLiteral("Python scripts (*.py)"));
    if (path.isEmpty()) return;
    const qz::remote::ScriptHeader header{
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")).toStdString(),
        QCoreApplication::applicationVersion().toStdString()};
    const std::string text = pymeasure ? qz::remote::pymeasureScript(recorder_.steps(), header)
                                       : qz::remote::pyvisaScript(recorder_.steps(), header);
    forms::writeWhole(path, [&text](QIODevice& device) {
        if (device.write(text.data(), static_cast<qint64>(text.size())) !=
            static_cast<qint64>(text.size()))
            return false;
        // Made runnable before it takes the name, so no moment shows the script without it.
        auto* file = qobject_cast<QFileDevice*>(&device);
        return !file || file->setPermissions(file->permissions() | QFileDevice::ExeOwner |
                                             QFileDevice::ExeUser);
    });
}

void RecorderWindow::addStep(const Step& step) {
    QString tip = QString::fromStdString(step.note);
    if (step.kind == Step::Kind::Fetch)
        tip += QStringLiteral(" (to %1)").arg(QString::fromStdString(step.file));
    ++stepsShown_;
    if (step.kind != Step::Kind::Fetch)
        return addLine(QString::fromStdString(step.message), false, tip, stepsShown_);
    for (size_t i = 0; i < step.queries.size(); ++i)
        addLine(QString::fromStdString(step.queries[i]), false, tip, i == 0 ? stepsShown_ : 0);
}

void RecorderWindow::addTraffic(const std::string& peer, const std::string& line, bool fromClient) {
    addLine(QString::fromStdString(peer) +
                (fromClient ? QStringLiteral(" \u2192 ") : QStringLiteral(" \u2190 ")) +
                QString::fromStdString(line),
            true);
    if (++trafficLines_ <= kTrafficKept) return;
    for (int row = 0; row < lstRecorded->count(); ++row) {
        if (lstRecorded->item(row)->data(kTrafficRole).toBool()) {
            delete lstRecorded->takeItem(row);
            --trafficLines_;
            break;
        }
    }
}

void RecorderWindow::addLine(const QString& text, bool traffic, const QString& tip, int number) {
    // The view follows the newest line unless the operator has scrolled back to read.
    QScrollBar* bar = lstRecorded->verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    auto* item = new QListWidgetItem(text);
    if (traffic) {
        item->setData(kTrafficRole, true);
        item->setForeground(kTrafficColour);
    }
    if (!tip.isEmpty()) item->setToolTip(tip);
    if (number > 0) item->setData(kNumberRole, number);
    lstRecorded->addItem(item);
    if (atEnd) lstRecorded->scrollToBottom();
}

void RecorderWindow::showState() {
    const bool recording = recorder_.recording();
    const size_t n = recorder_.steps().size();
    cmdRecord->setText(recording ? QStringLiteral("Stop") : QStringLiteral("Record"));
    cmdRecord->setIcon(keyMark(recording));
    const bool any = n > 0;
    cmdCopy->setEnabled(any);
    cmdSavePython->setEnabled(any);
    cmdSavePymeasure->setEnabled(any);
    lblRecState->setText((recording ? QStringLiteral("Recording: ") : QStringLiteral("Stopped: ")) +
                         (n == 1 ? QStringLiteral("1 step") : QStringLiteral("%1 steps").arg(n)));
}
