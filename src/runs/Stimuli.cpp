#include "runs/Stimuli.h"

#include "registers/HexText.h"
#include "registers/RegisterMap.h"
#include "registers/Session.h"

namespace qz {

namespace {
constexpr int32_t kFinX1Word = writeWord(reg::kFinX1, 0);
} // namespace

void cboFINREGClick(const General& g, StimulusWords& w, int index) {
    w.finWord1 = rangeWord(g.PMUreg, ~kFinRegClear, index);
}

void cboCurrentClick(General& g, int32_t& word, int index) {
    word = rangeWord(g.PMUreg, kRangeKeep, index);
    if (index >= 0 && index < kSenseRangeCount) g.IRangeIndex = static_cast<int16_t>(index);
}

WriteSetResult cmdWRITESET(Session& s, Clock& clock, StimulusWords& w, int finregIndex,
                           std::string_view firstCode, std::string_view secondCode) {
    WriteSetResult r;
    const FieldCheck first = checkCodeEntry(firstCode);
    if (!first.ok) {
        r.refusal = CodeRefusal{CodeBox::txtFINSET1, first.message};
        return r;
    }
    const FieldCheck second = checkCodeEntry(secondCode);
    if (!second.ok) {
        r.refusal = CodeRefusal{CodeBox::txtFINSET2, second.message};
        return r;
    }

    cboFINREGClick(s.general, w, finregIndex);
    s.SPIout(w.finWord1);
    w.finWord1 = kFinX1Word | first.value;
    w.finWord2 = kFinX1Word | second.value;
    r.Text2 = NumberToHex(w.finWord1, 8);
    r.Text3 = NumberToHex(w.finWord2, 8);
    s.SPIout(w.finWord1);
    WaitSeconds(clock, kStimulusPause);
    s.SPIout(w.finWord2);
    return r;
}

RangeChangeResult cmdRangeChange(Session& s, Clock& clock, StimulusWords& w, int firstRange,
                                 int secondRange, std::string_view codeText) {
    RangeChangeResult r;
    const FieldCheck code = checkCodeEntry(codeText);
    if (!code.ok) {
        r.refusal = CodeRefusal{CodeBox::txtdin, code.message};
        return r;
    }

    const StimulusWords kept = w;
    General& g = s.general;
    cboCurrentClick(g, w.finWord1, firstRange);
    w.fincodeWord = code.value | kFinX1Word;
    s.SPIout(w.finWord1);
    s.SPIout(w.fincodeWord);
    r.txtfincode = NumberToHex(w.fincodeWord, 6);
    r.txtrange1 = NumberToHex(w.finWord1, 6);
    cboCurrentClick(g, w.finWord2, secondRange);
    r.Text1 = NumberToHex(w.finWord2, 6);
    WaitSeconds(clock, kStimulusPause);
    r.txtrange2 = NumberToHex(w.finWord2, 6);
    s.SPIout(w.finWord2);
    w.finWord1 = kept.finWord1;
    w.finWord2 = kept.finWord2;
    return r;
}

} // namespace qz
