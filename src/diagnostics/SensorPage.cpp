// The temperature sensor's page: one reading of both channels, raw access to the sensor's
// registers, and the logged run into the chart and the list.

#include "diagnostics/frmDIAG.h"

#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/MessageBox.h"
#include "forms/ResultList.h"
#include "forms/SaveData.h"
#include "forms/StripChart.h"
#include "levels/EntryField.h"
#include "levels/Messages.h"
#include "levels/NumberText.h"
#include "levels/Numbers.h"
#include "forms/RunPass.h"
#include "registers/HexText.h"
#include "runs/SavedRun.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>
#include <ctime>

using forms::makeButton;
using forms::makeCaption;
using forms::qtext;

namespace {

// An entry of the sensor's page with its captions: a heading above, "HEX" or a unit after.
QLineEdit* labelled(QGridLayout* g, int row, int column, const char* caption, const char* name,
                    const char* text, const char* after) {
    QWidget* parent = g->parentWidget();
    g->addWidget(makeCaption(caption, parent), row, column);
    QLineEdit* box = forms::makeHexBox(QString::fromLatin1(name), QString::fromLatin1(text), 6, parent);
    g->addWidget(box, row + 1, column);
    g->addWidget(makeCaption(after, parent), row + 1, column + 1);
    return box;
}

// A reading in degrees as the sensor's boxes show it.
QString degrees(double value) { return qtext(qz::formatNumber(value, "00.00")); }

} // namespace

QWidget* frmDIAG::buildSensorPage() {
    QVBoxLayout* v;
    QWidget* p = forms::makePage(this, v);
    auto* top = new QHBoxLayout;

    auto* temps = new QGridLayout;
    cmdReadI2C = makeButton(QStringLiteral("cmdReadI2C"), QStringLiteral("READ TEMPS"), p);
    temps->addWidget(cmdReadI2C, 0, 0, 1, 2);
    auto* holder = new QWidget(p);
    auto* hg = new QGridLayout(holder);
    hg->setContentsMargins(0, 0, 0, 0);
    txtLocal = labelled(hg, 0, 0, "TH2260 Local Temp", "txtLocal", "", "degC");
    txtExt = labelled(hg, 2, 0, "QZ7740 Thermal Array", "txtExt", "", "degC");
    for (QLineEdit* box : {txtLocal, txtExt}) box->setReadOnly(true);
    temps->addWidget(holder, 1, 0, 1, 2);
    top->addLayout(temps);

    QGroupBox* readFrame = forms::makeFrame(QStringLiteral("READ ACCESS OF TH2260 REGISTERS"), p);
    auto* rg = new QGridLayout(readFrame);
    txtAddrPtr = labelled(rg, 0, 0, "ADDRESS PTR", "txtAddrPtr", "", "HEX");
    txttempdata = labelled(rg, 2, 0, "DATA", "txttempdata", "", "HEX");
    txttempdata->setReadOnly(true);
    cmdREADTempSensor = makeButton(QStringLiteral("cmdREADTempSensor"), QStringLiteral("READ FROM"), readFrame);
    rg->addWidget(cmdREADTempSensor, 4, 0, 1, 2);
    top->addWidget(readFrame);

    QGroupBox* writeFrame = forms::makeFrame(QStringLiteral("WRITE ACCESS TO TH2260 REGISTERS"), p);
    auto* wg = new QGridLayout(writeFrame);
    txtPTR = labelled(wg, 0, 0, "ADDRESS PTR", "txtPTR", "", "HEX");
    txtdata = labelled(wg, 2, 0, "DATA", "txtdata", "0", "HEX");
    cmdwriteTempSensor = makeButton(QStringLiteral("cmdwriteTempSensor"), QStringLiteral("WRITE TO"), writeFrame);
    wg->addWidget(cmdwriteTempSensor, 4, 0, 1, 2);
    top->addWidget(writeFrame);
    top->addStretch(1);
    v->addLayout(top);

    auto* runRow = new QHBoxLayout;
    cmdPLOTTEMP = makeButton(QStringLiteral("cmdPLOTTEMP"), QStringLiteral("TAKE TEMP READINGS"), p);
    runRow->addWidget(cmdPLOTTEMP);
    auto* delay = new QVBoxLayout;
    delay->addWidget(forms::makeLabel(QStringLiteral("Label10"), QStringLiteral("Input delay betw readings"), p));
    cboDelay = forms::makeList(QStringLiteral("cboDelay"), forms::itemsOf(qz::kTempDelays, &qz::TempDelay::item),
                               QStringLiteral("100ms"), p);
    delay->addWidget(cboDelay);
    runRow->addLayout(delay);
    auto* count = new QVBoxLayout;
    count->addWidget(forms::makeLabel(QStringLiteral("Label9"), QStringLiteral("# of readings (1000max)"), p));
    txtcount = forms::makeOutBox(QStringLiteral("txtcount"), p, 6);
    txtcount->setText(QStringLiteral("0"));
    count->addWidget(txtcount);
    runRow->addLayout(count);
    Check1 = forms::makeCheck(QStringLiteral("Check1"), QStringLiteral("STOP"), false, p);
    Check2 = forms::makeCheck(QStringLiteral("Check2"), QStringLiteral("No Handles"), true, p);
    runRow->addWidget(Check1);
    runRow->addWidget(Check2);
    runRow->addStretch(1);
    Label29 = forms::makeLink(QStringLiteral("Label29"), QStringLiteral("?"), p);
    runRow->addWidget(Label29);
    v->addLayout(runRow);

    auto* results = new QHBoxLayout;
    auto* chartColumn = new QVBoxLayout;
    Strip1 = new forms::StripChart(QStringLiteral("Strip1"), p);
    Strip1->setMinimumSize(460, 260);
    chartColumn->addWidget(Strip1, 1);
    chartColumn->addWidget(buildHelpFrame(p));
    results->addLayout(chartColumn, 3);
    auto* listColumn = new QVBoxLayout;
    List2 = new forms::ResultList(QStringLiteral("List2"), p);
    listColumn->addWidget(List2, 1);
    cmdCopy = makeButton(QStringLiteral("cmdCopy"), QStringLiteral("COPY PLOT DATA TO CLIPBOARD"), p);
    cmdSave = makeButton(QStringLiteral("cmdSave"), QStringLiteral("SAVE DATA..."), p);
    auto* listButtons = new QHBoxLayout;
    listButtons->addWidget(cmdCopy);
    listButtons->addWidget(cmdSave);
    listColumn->addLayout(listButtons);
    QGroupBox* xy = forms::makeFrame(QStringLiteral("PLOT XY Coordinates"), p);
    auto* xg = new QGridLayout(xy);
    txtX = labelled(xg, 0, 0, "X", "txtX", "", "seconds");
    txtY = labelled(xg, 0, 2, "Y", "txtY", "", "deg C");
    for (QLineEdit* box : {txtX, txtY}) box->setReadOnly(true);
    listColumn->addWidget(xy);
    results->addLayout(listColumn, 2);
    v->addLayout(results, 1);
    return p;
}

QWidget* frmDIAG::buildHelpFrame(QWidget* parent) {
    FrmHELP = forms::makeFrame(QStringLiteral("HELP!?"), parent);
    FrmHELP->setObjectName(QStringLiteral("FrmHELP"));
    auto* v = new QVBoxLayout(FrmHELP);
    // The buttons and boxes the texts speak of, shown as they look; they do nothing here.
    auto inert = [](QWidget* w) {
        w->setEnabled(false);
        return w;
    };
    auto* start = new QHBoxLayout;
    start->addWidget(forms::makeNote("1000 temp readings can be made in one go. Start temp readings by clicking ", FrmHELP), 1);
    start->addWidget(inert(new QPushButton(QStringLiteral("TAKE TEMP READINGS"), FrmHELP)));
    v->addLayout(start);
    auto* copy = new QHBoxLayout;
    copy->addWidget(forms::makeNote("1000 temp readings can be made in one go. Gathered array may be copied to "
                                    "clipboard and ported into Excel for analysis - At end of readings Click :",
                                    FrmHELP),
                    1);
    copy->addWidget(inert(new QPushButton(QStringLiteral("COPY PLOT DATA TO CLIPBOARD"), FrmHELP)));
    v->addLayout(copy);
    auto* stop = new QHBoxLayout;
    stop->addWidget(forms::makeNote("To Stop measurements, click STOP, to START, Click START and then click TAKE "
                                    "TEMP READINGS",
                                    FrmHELP),
                    1);
    stop->addWidget(inert(new QCheckBox(QStringLiteral("STOP"), FrmHELP)));
    stop->addWidget(inert(new QCheckBox(QStringLiteral("START"), FrmHELP)));
    v->addLayout(stop);
    Label30 = forms::makeLink(QStringLiteral("Label30"), QStringLiteral("Close X"), FrmHELP);
    v->addWidget(Label30, 0, Qt::AlignRight);
    FrmHELP->hide();
    return FrmHELP;
}

void frmDIAG::wireSensorPage() {
    const bool& busy = session.general.entryBusy;
    for (QLineEdit* box : {txtAddrPtr, txtPTR, txtdata})
        forms::onEntry(box, busy, [this, box] { return sensorEntry(box); });
    forms::onClick(cmdReadI2C, [this] { cmdReadI2C_Click(); });
    forms::onClick(cmdREADTempSensor, [this] { cmdREADTempSensor_Click(); });
    forms::onClick(cmdwriteTempSensor, [this] { cmdwriteTempSensor_Click(); });
    forms::onClick(cmdPLOTTEMP, [this] { cmdPLOTTEMP_Click(); });
    forms::onClick(cmdCopy, [this] { cmdCopy_Click(); });
    forms::onClick(cmdSave, [this] { cmdSave_Click(); });
    forms::onClick(cboDelay, [this] { cboDelay_Click(); });
    forms::onClick(Check1, [this] { Check1_Click(); });
    forms::onClick(Check2, [this] { Check2_Click(); });
    Strip1->onCursorMoved([this](double x) { Strip1_CursorMoved(x); });
    connect(Label29, &QPushButton::clicked, FrmHELP, &QWidget::show);
    connect(Label30, &QPushButton::clicked, FrmHELP, &QWidget::hide);
    // A run blocks a second run and the saving of a list still growing. The rest of the
    // panel stays live: its requests go out in the event pass, between two readings.
    run_->block({cmdPLOTTEMP, cmdSave});
}

forms::Outcome frmDIAG::sensorEntry(QLineEdit* box) {
    const qz::HexFieldId id = box == txtAddrPtr ? qz::HexFieldId::txtAddrPtr
                              : box == txtPTR   ? qz::HexFieldId::txtPTR
                                                : qz::HexFieldId::txtdata;
    return forms::take(box, qz::checkHexField(qz::hexField(id), box->text().toStdString()));
}

std::optional<int32_t> frmDIAG::sensorByte(QLineEdit* box) {
    const auto v = qz::parseHex(box->text().toStdString());
    if (!v || *v < 0) {
        forms::refuseEntry(box, qz::kNotValidNumber);
        return std::nullopt;
    }
    if (*v > 0xFF) {
        forms::refuseEntry(box, qz::kByteTooLarge);
        return std::nullopt;
    }
    return *v;
}

void frmDIAG::cmdReadI2C_Click() { readTemperature(); }

std::optional<int32_t> frmDIAG::readTemperature() {
    cmdWRITEDIAGREG_Click();
    qz::USBStuff& usb = session.usb;
    // The sensor is polled for a second at the most: a sensor that stays busy is no reading.
    const double until = clock_->seconds() + 1.0;
    while (usb.ReadI2C(qz::sensor::kStatus) >= qz::sensor::kReady) {
        if (clock_->seconds() >= until) {
            txtLocal->setText(QStringLiteral("not ready"));
            txtExt->setText(QStringLiteral("not ready"));
            return std::nullopt;
        }
        clock_->sleep(0.001);
    }
    const int32_t local = usb.ReadI2C(qz::sensor::kLocal);
    txtLocal->setText(QString::number(local));
    const int32_t high = usb.ReadI2C(qz::sensor::kExternal);
    txtExt->setText(QString::number(high));
    txtExt->setText(degrees(qz::externalDegrees(high, usb.ReadI2C(qz::sensor::kFraction))));
    lblREADSPI->setText(forms::hexText(high, 1));
    return local;
}

void frmDIAG::cmdREADTempSensor_Click() {
    if (const auto pointer = sensorByte(txtAddrPtr))
        txttempdata->setText(forms::hexText(session.usb.ReadI2C(*pointer), 1));
}

void frmDIAG::cmdwriteTempSensor_Click() {
    const auto pointer = sensorByte(txtPTR);
    if (!pointer) return;
    if (const auto data = sensorByte(txtdata)) session.usb.WriteI2C(*data, *pointer);
}

void frmDIAG::txtAddrPtr_Enter() { forms::pressEnter(txtAddrPtr); }
void frmDIAG::txtPTR_Enter() { forms::pressEnter(txtPTR); }
void frmDIAG::txtdata_Enter() { forms::pressEnter(txtdata); }

void frmDIAG::cboDelay_Click() {
    const int i = cboDelay->currentIndex();
    if (i >= 0 && i < static_cast<int>(qz::kTempDelays.size()))
        session.general.tempDelay = qz::kTempDelays[static_cast<size_t>(i)].seconds;
}

void frmDIAG::Check1_Click() {
    if (session.general.entryBusy) return;
    // The caption names what the next click does.
    tempStopped = Check1->isChecked() ? 1 : 0;
    Check1->setText(tempStopped ? QStringLiteral("START") : QStringLiteral("STOP"));
    if (!tempStopped) txtcount->clear();
}

void frmDIAG::Check2_Click() { Strip1->setHandleStyle(Check2->isChecked() ? 0 : 3); }

void frmDIAG::cmdPLOTTEMP_Click() {
    if (run_->running()) return;
    forms::RunScope scope(*run_, [this] { nav.unload(form); });
    List2->clear();
    Strip1->clearChart();
    cboDelay_Click();
    Strip1->clearChart();
    Strip1->setTraceColor(0xFF0000);
    Strip1->setPointCount(1000);
    Strip1->setXAxisMin(0);
    Strip1->setXAxisMax(1000);
    Strip1->setPointCount(1000);
    Strip1->setYScaleTop(140);
    Strip1->setYScaleBottom(25);
    Strip1->setYAxisMax(140);
    Strip1->setYAxisMin(25);
    const float delay = session.general.tempDelay;
    tempHeader_ = qz::headerLines(
        "QZ7740 temperature readings",
        qz::tempSettings({std::time(nullptr), session.usb.linkState()}, cboDelay->currentText().toStdString(), delay));
    run_->begin(nullptr, qz::kTempReadings, *clock_, [this](const qz::RunProgress&) { List2->flush(); });
    const qz::RunContext ctx{session, *clock_,
                             [this](const qz::RunProgress& p) {
                                 return run_->pass(p) && tempStopped == 0;
                             },
                             [this](std::string line) { List2->addLine(std::move(line)); }};
    qz::TempShow show;
    show.local = [this](int32_t local) { txtLocal->setText(QString::number(local)); };
    show.point = [this](double external) { Strip1->addPoint(external); };
    show.reading = [this](int32_t i, double external) {
        txtcount->setText(QString::number(i));
        txtExt->setText(degrees(external));
    };
    tempCount = qz::runTemperatures(ctx, tempStopped != 0, temps, show);
    List2->flush();
    Strip1->flush();
    QCoreApplication::processEvents();
    Strip1->setCursorMode(2);
}

void frmDIAG::cmdCopy_Click() { List2->copyToClipboard(); }

void frmDIAG::cmdSave_Click() { forms::saveData(this, QStringLiteral("temperatures.txt"), tempHeader_, *List2); }

void frmDIAG::Strip1_CursorMoved(double x) {
    // Outside the readings of the last run the boxes keep what they show.
    const double k = qz::roundHalfEven(x - 1.0);
    if (!(k >= 0.0 && k < static_cast<double>(tempCount))) return;
    const auto i = static_cast<size_t>(k);
    txtY->setText(degrees(temps.external[i]));
    txtX->setText(qtext(qz::formatNumber(temps.time[i], "00.0000")));
}
