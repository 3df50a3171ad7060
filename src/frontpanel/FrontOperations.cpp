// What the front panel does: each selection writes its word at once, through the one
// handler over the control table; the entries force the voltage, set the OFFSET and the
// clamps; the reads show their words; the alarms light their lamps.

#include "frontpanel/frmMain.h"
#include "forms/CrossPanel.h"

#include "board/Wire.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/Lamp.h"
#include "forms/RemoteLocal.h"
#include "forms/MessageBox.h"
#include "forms/Reference.h"
#include "forms/TabControl.h"
#include "levels/Clamps.h"
#include "levels/EntryField.h"
#include "levels/Numbers.h"
#include "levels/Ranges.h"
#include "levels/TransferLaw.h"
#include "registers/FieldOps.h"
#include "registers/RegisterMap.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using forms::Form;
using forms::qtext;

void frmMain::wire() {
    for (QComboBox* l : {cboCurrent, cboMEASURE, cboCompare, IMEASG, MEASOUTG, tempset, cboSysforce})
        forms::swallowKeys(l);
    fields({cboCurrent, cboMEASURE, cboCompare, cboSlave, cboSlew, cboSysforce, IMEASG, MEASOUTG,
            tempset, chkPD, chkENABLECH, chkCLAMPEN, chk10k, chkGPO});
    for (int i = 0; i < 3; ++i)
        forms::onClick(optRef[static_cast<size_t>(i)], [this, i] { return optRef_Click(i); });

    const bool& busy = session.general.entryBusy;
    forms::onEntry(txtV, busy, [this] { return txtV_Enter(); });
    forms::onEntry(OFFSETx1, busy, [this] { return OFFSETx1_Enter(); });
    forms::onEntry(txtclamph, busy, [this] { return txtclamph_Enter(); });
    forms::onEntry(txtClampl, busy, [this] { return txtClampl_Enter(); });
    forms::onEntry(txtEXT1rsense, busy, [this] { return txtEXT1rsense_Enter(); });
    forms::onEntry(txtEXT2Rsense, busy, [this] { return txtEXT2Rsense_Enter(); });

    const std::pair<QPushButton*, void (frmMain::*)()> buttons[] = {
        {readSYS, &frmMain::readSYS_Click},       {Command4, &frmMain::Command4_Click},
        {readDPS2, &frmMain::readDPS2_Click},     {Command5, &frmMain::Command5_Click},
        {readcomp2, &frmMain::readcomp2_Click},   {cmdCheckAlarms, &frmMain::cmdCheckAlarms_Click},
        {cmdCLEAR, &frmMain::cmdCLEAR_Click},     {cmdRESET, &frmMain::cmdRESET_Click},
        {cmdEXIT, &frmMain::cmdEXIT_Click},       {Command6, &frmMain::Command6_Click},
    };
    for (const auto& [button, handler] : buttons)
        forms::onClick(button, [this, h = handler] { (this->*h)(); });
    // The ways to panels this program does not have yet stay closed.
    const std::pair<QPushButton*, Form> ways[] = {
        {Command1, Form::frmMeasure}, {Command2, Form::frmDIAG}, {Command3, Form::frmCompensation}};
    for (const auto& [button, form] : ways) {
        // Going to another panel changes no setting: the operator may do it while remote.
        forms::keepLocal(button);
        button->setEnabled(nav.has(form));
        connect(button, &QPushButton::clicked, this, [this, f = form] { nav.show(f); });
    }
    forms::keepLocal(Command6);
    wireCompensation();
}

void frmMain::Form_Load() {
    qz::General& g = session.general;
    forms::setListIndex(cboCurrent, 3);
    g.VREF = 5.0f;
    g.imeasGain = 20.0f;
    forms::show(UpdateRangeNames());
}

void frmMain::closeEvent(QCloseEvent* event) {
    // The program never runs on without a panel to see: closing this one ends it.
    event->accept();
    forms::endProgram();
}

void frmMain::fields(std::initializer_list<QWidget*> controls) {
    forms::onClicks(controls, [this](const QString& name) { return fieldClick(name); });
}

forms::Outcome frmMain::fieldClick(const QString& name) {
    const qz::ControlOps* ops = qz::findControl(name.toStdString());
    QWidget* control = findChild<QWidget*>(name);
    if (!ops || !control) return {};
    const int item = forms::itemOf(control);
    const bool inList = item >= 0 && item < ops->items;

    using qz::FieldEffect;
    qz::General& g = session.general;
    if (ops->effect == FieldEffect::GainWarning && item == 1) nav.show(Form::frmMEASOUTGAIN);
    int32_t& word = qz::shadowWord(g, ops->shadow);
    word = qz::applyField(word, *ops, item);
    if (inList) {
        if (ops->effect == FieldEffect::CurrentGain) g.imeasGain = qz::currentGainOf(item);
        forms::setTwin(nav, Form::frmMAINQZ7740, name, item);
        if (ops->effect == FieldEffect::CurrentRange) {
            g.IRangeIndex = static_cast<int16_t>(item);
            if (const qz::CurrentRange* range = qz::currentRange(item))
                lblmA->setText(QString::fromLatin1(range->lblmA));
        }
    }
    if (ops->effect == FieldEffect::CurrentGain) {
        // The gain goes out before it is shown, and the range names follow it.
        session.SPIout(word);
        showWrite(word);
        return UpdateRangeNames();
    }
    showWrite(word);
    session.SPIout(word);
    return {};
}

void frmMain::showWrite(int32_t word) { txtWrite->setText(forms::hexText(word, 6)); }

forms::Outcome frmMain::optRef_Click(int index) {
    forms::Outcome o;
    const std::optional<float> vref = forms::pickReference(index, txtVREF, optRef, refIndex_, o);
    if (!vref) return o;
    session.general.VREF = *vref;
    forms::followReference(nav, index, txtVREF, {Form::frmMAINQZ7740, Form::frmMeasure});
    o += UpdateOutputLimits();
    o += UpdateRangeNames();
    return o;
}

forms::Outcome frmMain::UpdateRangeNames() {
    const qz::RangeNamesUpdate u = qz::UpdateRangeNames(session.general.VREF, session.general.imeasGain);
    if (u.what == qz::RangeNaming::Names) {
        for (int i = 0; i < qz::kCurrentRangeCount; ++i)
            cboCurrent->setItemText(i, QString::fromUtf8((*u.names)[static_cast<size_t>(i)]));
    } else if (u.what == qz::RangeNaming::Warning) {
        return forms::noted({u.title, u.text, qz::MsgIcon::Exclamation});
    }
    return {};
}

std::optional<std::array<int32_t, 3>> frmMain::codes(forms::Outcome& o) {
    auto* m = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleFinM);
    auto* c = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleFinC);
    std::optional<int32_t> offset, mCode, cCode;
    if (!m || !c || !(offset = forms::readCode(OFFSETx1, o)) || !(mCode = forms::readCode(m, o)) ||
        !(cCode = forms::readCode(c, o)))
        return std::nullopt;
    return std::array<int32_t, 3>{*offset, *mCode, *cCode};
}

forms::Outcome frmMain::UpdateOutputLimits() {
    forms::Outcome o;
    const auto k = codes(o);
    if (!k) return o;
    qz::General& g = session.general;
    const qz::OutputLimits limits = qz::UpdateOutputLimits(g.VREF, (*k)[0], (*k)[1], (*k)[2]);
    if (!limits.ok) return forms::refused(txtVREF, qz::kNotValidNumber);
    g.VoutMax = limits.VoutMax;
    g.VoutMin = limits.VoutMin;
    // The console's x1 box shows the code of 0 V; the chip keeps the code it has.
    if (auto* x1 = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleFinX1))
        x1->setText(qtext(limits.txtFINx1));
    txtOutputVh->setText(qtext(limits.txtOutputVh));
    txtOutputVl->setText(qtext(limits.txtOutputVl));
    return {};
}

forms::Outcome frmMain::ForceVoltage() {
    const std::optional<double> V = qz::parseDecimal(txtV->text().toStdString());
    if (!V) return forms::refused(txtV, qz::kNotValidNumber);
    forms::Outcome o = UpdateOutputLimits();
    if (!o) return o;
    const auto k = codes(o);
    if (!k) return o;
    qz::General& g = session.general;
    const qz::ForceResult r = qz::ForceVoltage(*V, g.VREF, (*k)[0], (*k)[1], (*k)[2]);
    if (r.refusal != qz::LawRefusal::None) return forms::refused(txtV, r.message);
    txtDaccode->setText(qtext(r.txtDaccode));
    if (auto* x1 = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleFinX1))
        x1->setText(qtext(r.txtDaccode));
    txtOutputV->setText(qtext(r.txtOutputV));
    g.DAClast = r.DAClast;
    session.SPIout(g.DAClast);
    txtWrite->setText(qtext(r.txtWrite));
    return o;
}

forms::Outcome frmMain::forceCheck(const std::string& text) {
    const std::optional<float> v = qz::parseSingle(text);
    const std::optional<double> V = qz::parseDecimal(text);
    if (!v || !V) return forms::refused(txtV, qz::kNotValidNumber);
    forms::Outcome o;
    const auto k = codes(o);
    if (!k) return o;
    const float VREF = session.general.VREF;
    const qz::OutputLimits limits = qz::UpdateOutputLimits(VREF, (*k)[0], (*k)[1], (*k)[2]);
    if (!limits.ok) return forms::refused(txtVREF, qz::kNotValidNumber);
    if (!(*v <= limits.VoutMax && *v >= limits.VoutMin)) return forms::refused(txtV, qz::kVoltageOutsideLimits);
    const qz::ForceResult r = qz::ForceVoltage(*V, VREF, (*k)[0], (*k)[1], (*k)[2]);
    if (r.refusal != qz::LawRefusal::None) return forms::refused(txtV, r.message);
    return {};
}

forms::Outcome frmMain::txtV_Enter() {
    const std::string text = txtV->text().toStdString();
    if (!qz::parseSingle(text)) return forms::refused(txtV, qz::kNotValidNumber);
    // The range goes out again, and the word once more, before the level.
    forms::Outcome o = forms::operate(cboCurrent);
    session.SPIout(session.general.PMUreg);
    o += UpdateOutputLimits();
    if (!o) return o;
    o += forceCheck(text);
    if (!o) return o;
    o += ForceVoltage();
    if (o) {
        txtV->setText(txtV->text().toUpper());
        forms::markAccepted(txtV);
    }
    return o;
}

forms::Outcome frmMain::OFFSETx1_Enter() {
    const qz::HexField field = qz::hexField(qz::HexFieldId::frmMain_OFFSETx1);
    const qz::FieldCheck c = qz::checkHexField(field, OFFSETx1->text().toStdString());
    if (forms::Outcome o = forms::take(OFFSETx1, c); !o) return o;
    qz::General& g = session.general;
    g.DAClast = qz::composeDACLOAD(c.value, field.addressWord).word;
    showWrite(g.DAClast);
    session.SPIout(g.DAClast);
    // One way only: the console's box follows this one, never the other way round.
    if (auto* console = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleOffset))
        console->setText(OFFSETx1->text());
    return UpdateOutputLimits();
}

forms::Outcome frmMain::txtclamph_Enter() { return clampEntry(txtclamph, true); }

forms::Outcome frmMain::txtClampl_Enter() { return clampEntry(txtClampl, false); }

forms::Outcome frmMain::clampEntry(QLineEdit* box, bool high) {
    qz::General& g = session.general;
    const qz::ClampResult r =
        qz::computeClamp(high ? qz::ClampSide::High : qz::ClampSide::Low, box->text().toStdString(),
                         g.IRangeIndex, txtEXT1rsense->text().toStdString(),
                         txtEXT2Rsense->text().toStdString(), g.imeasGain, g.VREF);
    if (!r.ok) {
        QLineEdit* blamed = box;
        if (r.blame == qz::ClampBlame::txtEXT1rsense) blamed = txtEXT1rsense;
        if (r.blame == qz::ClampBlame::txtEXT2Rsense) blamed = txtEXT2Rsense;
        return forms::refused(blamed, r.message);
    }
    g.DAClast = r.DAClast;
    txtWrite->setText(qtext(r.txtWrite));
    session.SPIout(g.DAClast);
    forms::markAccepted(box);
    clampSet_[high ? 1 : 0] = qz::ClampLevel{r.current, r.R, g.imeasGain, g.VREF};
    return {};
}

std::optional<float> frmMain::presentRsense() const {
    const qz::CurrentRange* range = qz::currentRange(session.general.IRangeIndex);
    if (!range) return std::nullopt;
    if (range->rsenseBox == qz::RsenseBox::None) return range->rsense;
    const QLineEdit* box = range->rsenseBox == qz::RsenseBox::EXT1 ? txtEXT1rsense : txtEXT2Rsense;
    const std::optional<float> R = qz::parseSingle(box->text().toStdString());
    if (!R || !(*R > 0.0f)) return std::nullopt;
    return R;
}

std::optional<double> frmMain::clampAmps(bool high) const {
    const std::optional<qz::ClampLevel>& set = clampSet_[high ? 1 : 0];
    const std::optional<float> R = presentRsense();
    if (!set || !R) return std::nullopt;
    return qz::clampAmpsNow(*set, *R, session.general.imeasGain, session.general.VREF);
}

std::optional<std::pair<float, float>> frmMain::outputRange() {
    auto* m = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleFinM);
    auto* c = forms::controlOf<QLineEdit>(nav, forms::ref::kConsoleFinC);
    if (!m || !c) return std::nullopt;
    const auto offset = qz::readDacCode(OFFSETx1->text().toStdString());
    const auto mCode = qz::readDacCode(m->text().toStdString());
    const auto cCode = qz::readDacCode(c->text().toStdString());
    if (!offset || !mCode || !cCode) return std::nullopt;
    const qz::OutputLimits limits = qz::UpdateOutputLimits(session.general.VREF, *offset, *mCode, *cCode);
    if (!limits.ok) return std::nullopt;
    return std::pair{limits.VoutMin, limits.VoutMax};
}

forms::Outcome frmMain::txtEXT1rsense_Enter() {
    return forms::take(txtEXT1rsense, qz::checkDecimalField(qz::ktxtEXT1rsense, txtEXT1rsense->text().toStdString()));
}

forms::Outcome frmMain::txtEXT2Rsense_Enter() {
    return forms::take(txtEXT2Rsense, qz::checkDecimalField(qz::ktxtEXT2Rsense, txtEXT2Rsense->text().toStdString()));
}

void frmMain::readButton(int address) {
    const int32_t command = qz::readCommandOf(address);
    const int32_t r = session.readWord(command);
    showWrite(command);
    txtRead->setText(forms::hexText(r, 6));
}

void frmMain::readSYS_Click() { readButton(qz::reg::kSystemControl); }
void frmMain::Command4_Click() { readButton(qz::reg::kDPS1); }
void frmMain::readDPS2_Click() { readButton(qz::reg::kDPS2); }
void frmMain::Command5_Click() { readButton(qz::reg::kComp1); }
void frmMain::readcomp2_Click() { readButton(qz::reg::kComp2); }

int32_t frmMain::alarmRead(int address) {
    const int32_t command = qz::readCommandOf(address);
    const int32_t r = session.readAlarmStatus(command);
    txtRead->setText(forms::hexText(r, 6));
    showWrite(command);
    forms::showAlarms(this, r);
    return r;
}

int32_t frmMain::readAlarms(bool clear) {
    return alarmRead(clear ? qz::reg::kAlarmStatusClear : qz::reg::kAlarmStatus);
}

void frmMain::cmdCheckAlarms_Click() { readAlarms(false); }
void frmMain::cmdCLEAR_Click() { readAlarms(true); }

void frmMain::cmdRESET_Click() {
    if (session.general.entryBusy) return;
    session.usb.SendRequest(qz::wire::kChipReset);
    // Reading the alarm status with clear drops the alarms the reset left latched.
    session.SPIout(qz::readCommandOf(qz::reg::kAlarmStatusClear));
}

void frmMain::cmdEXIT_Click() { forms::endProgram(); }

void frmMain::Command6_Click() {
    nav.show(Form::frmMAINQZ7740);
    // Tab 4 of the console: "WRITE DAC REG".
    if (auto* tabs = forms::controlOf<forms::TabControl>(nav, forms::ref::kConsoleTabs))
        tabs->setCurrentIndex(4);
}
