#pragma once
// The two stimuli for an oscilloscope: a step of the FIN DAC between two codes, and a
// change of current range at one FIN code. Each is a short fixed series of words with a
// pause of 200 ms inside; neither reads anything, and no events run during the pause.

#include "runs/Measure.h"

#include <optional>
#include <string>
#include <string_view>

namespace qz {

// Scratch words: what they hold carries no meaning from one operation to the next.
struct StimulusWords {
    int32_t finWord1 = 0;
    int32_t finWord2 = 0;
    int32_t fincodeWord = 0;
};

inline constexpr double kStimulusPause = 0.2; // seconds between the writes

// cboFINREG: finWord1 is PMUreg with the range of list index in place of its own range
// field and with bits 3..0 cleared.
void cboFINREGClick(const General& g, StimulusWords& w, int index);
// cboCurrent1 and cboCurrent2: word is PMUreg with the range of list index, and
// IRangeIndex follows the list.
void cboCurrentClick(General& g, int32_t& word, int index);

// The stimulus boxes a button may refuse.
enum class CodeBox { txtFINSET1, txtFINSET2, txtdin };
struct CodeRefusal {
    CodeBox box;
    std::string text;
};

struct WriteSetResult {
    std::optional<CodeRefusal> refusal; // nothing is sent then
    std::string Text2, Text3;           // the two FIN words, eight digits
};
// "WRITE DAC CODES": the DPS1 word with the chosen range, the first FIN code, 200 ms, the
// second. The words stay in the scratch words.
WriteSetResult cmdWRITESET(Session& s, Clock& clock, StimulusWords& w, int finregIndex,
                           std::string_view firstCode, std::string_view secondCode);

struct RangeChangeResult {
    std::optional<CodeRefusal> refusal;
    std::string Text1; // the second range's word, composed last
    std::string txtfincode, txtrange1, txtrange2;
};
// "UPDATE": the first range, the FIN code, 200 ms, the second range. finWord1 and
// finWord2 are put back afterwards; fincodeWord stays.
RangeChangeResult cmdRangeChange(Session& s, Clock& clock, StimulusWords& w, int firstRange,
                                 int secondRange, std::string_view code);

} // namespace qz
