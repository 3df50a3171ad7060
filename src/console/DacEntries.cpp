// The entry fields of the console's DAC page. Nothing happens until Enter; then the
// field's check gives the value and its tidied text, or the refusal the panel shows.

#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/MessageBox.h"
#include "forms/Reference.h"
#include "levels/EntryField.h"
#include "levels/Numbers.h"
#include "levels/TransferLaw.h"
#include "registers/BitMirror.h"

#include <QLineEdit>
#include <QRadioButton>

using forms::qtext;

void frmMAINQZ7740::wireDacEntries() {
    using qz::HexFieldId;
    auto entry = [this](QLineEdit* box, HexFieldId id, int index) {
        forms::onEntry(box, session.general.entryBusy, [this, box, id, index] { return hexEntry(box, id, index); });
    };
    entry(OFFSETx1, HexFieldId::OFFSETx1, 0);
    entry(txtDGS, HexFieldId::txtDGS, 0);
    entry(txtstart, HexFieldId::txtstart, 0);
    entry(txtRAMP, HexFieldId::txtRAMP, 0);
    entry(txtRampStep, HexFieldId::txtRampStep, 0);
    entry(txtRCLKDiv, HexFieldId::txtRCLKDiv, 0);
    entry(txtFINx1, HexFieldId::txtFINx1, 0);
    entry(txtFINM, HexFieldId::txtFINM, 0);
    entry(txtFINC, HexFieldId::txtFINC, 0);
    entry(txtCLLx1, HexFieldId::txtCLLx1, 0);
    entry(txtCLLM, HexFieldId::txtCLLM, 0);
    entry(txtCLLC, HexFieldId::txtCLLC, 0);
    entry(txtCLHx1, HexFieldId::txtCLHx1, 0);
    entry(txtCLHM, HexFieldId::txtCLHM, 0);
    entry(txtCLHC, HexFieldId::txtCLHC, 0);
    for (int i = 0; i < 8; ++i) {
        const auto k = static_cast<size_t>(i);
        entry(txtCPLx1[k], HexFieldId::txtCPLx1, i);
        entry(txtCPLM[k], HexFieldId::txtCPLM, i);
        entry(txtCPLC[k], HexFieldId::txtCPLC, i);
        entry(txtCPHx1[k], HexFieldId::txtCPHx1, i);
        entry(txtCPHM[k], HexFieldId::txtCPHM, i);
        entry(txtCPHC[k], HexFieldId::txtCPHC, i);
    }
    for (int i = 0; i < 3; ++i)
        forms::onClick(optRef[static_cast<size_t>(i)], [this, i] { return optRef_Click(i); });
}

QLineEdit* frmMAINQZ7740::x1BoxOf(qz::HexFieldId id) const {
    return id == qz::HexFieldId::txtCLLx1 ? txtCLLx1 : txtCLHx1;
}

forms::Outcome frmMAINQZ7740::hexEntry(QLineEdit* box, qz::HexFieldId id, int index) {
    const qz::HexField field = qz::hexField(id, index);
    if (id == qz::HexFieldId::txtFINx1) {
        const qz::FieldCheck c = qz::checkFINx1Entry(box->text().toStdString(), OFFSETx1->text().toStdString());
        if (!c.ok) return forms::refused(box, c.message);
        // The output shown is that of the text as typed; then the text is tidied.
        if (forms::Outcome o = outputV(); !o) return o;
        box->setText(qtext(c.text));
        forms::markAccepted(box);
        DACLOAD(c.value, field.addressWord);
        return {};
    }
    const qz::FieldCheck c = qz::checkHexField(field, box->text().toStdString());
    if (!c.ok) return forms::refused(box, c.message);
    // The m and c of CLL and CLH write x1 again after them, as its box reads now (its own
    // bounds are its Enter key's business). A box that holds no number stops both words.
    forms::Outcome o;
    std::optional<int32_t> x1Code;
    if (field.step == qz::FurtherStep::ReloadX1 && !(x1Code = forms::readCode(x1BoxOf(field.reload), o)))
        return o;
    // The output an OFFSET gives is worked out before its word leaves, so that FIN codes
    // that hold no number stop the entry with nothing sent.
    std::optional<QString> shownOutput;
    if (field.step == qz::FurtherStep::OutputV && !(shownOutput = outputVText(o))) return o;
    box->setText(qtext(c.text));
    forms::markAccepted(box);
    switch (field.step) {
    case qz::FurtherStep::RampWrite: {
        rampWord = qz::composeRampWrite(c.value, field.addressWord).word;
        showWord(rampWord);
        session.SPIout(rampWord);
        txtDAC->mirror(rampWord, qz::kDecToBin);
        return {};
    }
    case qz::FurtherStep::ReloadX1: {
        DACLOAD(c.value, field.addressWord);
        // The chip takes a new m or c only with the next write of x1.
        DACLOAD(*x1Code, qz::hexField(field.reload).addressWord);
        return {};
    }
    case qz::FurtherStep::OutputV:
        DACLOAD(c.value, field.addressWord);
        txtOutputV->setText(*shownOutput);
        return {};
    default:
        DACLOAD(c.value, field.addressWord);
        return {};
    }
}

std::optional<QString> frmMAINQZ7740::outputVText(forms::Outcome& o) {
    std::optional<int32_t> offset, m, c;
    if (!(offset = forms::readCode(OFFSETx1, o)) || !(m = forms::readCode(txtFINM, o)) ||
        !(c = forms::readCode(txtFINC, o)))
        return std::nullopt;
    // txtFINx1 checks its own text on its Enter key. Here it may be empty (after a refusal,
    // or a read-back without a board): there is then no FIN code whose output could be
    // shown, and the output box says nothing rather than stopping an OFFSET or a reference.
    const std::optional<int32_t> x1 = qz::readDacCode(txtFINx1->text().toStdString());
    const qz::OutputVResult r = qz::outputV(session.general.VREF, *offset, *m, *c, x1.value_or(0));
    if (!r.ok) {
        o += forms::refused(txtVREF, r.message);
        return std::nullopt;
    }
    return x1 ? qtext(r.txtOutputV) : QString();
}

forms::Outcome frmMAINQZ7740::outputV() {
    forms::Outcome o;
    const std::optional<QString> text = outputVText(o);
    if (text) txtOutputV->setText(*text);
    return o;
}

forms::Outcome frmMAINQZ7740::optRef_Click(int index) {
    qz::General& g = session.general;
    if (g.entryBusy) return {};
    forms::Outcome o;
    const std::optional<float> vref = forms::pickReference(index, txtVREF, optRef, refIndex_, o);
    if (!vref) return o;
    g.VREF = *vref;
    forms::followReference(nav, index, txtVREF, {forms::Form::frmMain, forms::Form::frmMeasure});
    o += outputV();
    return o;
}
