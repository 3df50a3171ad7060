// Every entry check of the level engine and of the runs on any text: a value that lies
// within what the field takes, or a refusal in one of the field's own words, never a crash.
// The first byte of the input chooses the check, the second an array index or a range;
// the rest is the text, split at line ends where a check reads several boxes.

#include "Check.h"
#include "levels/Clamps.h"
#include "levels/EntryField.h"
#include "levels/Messages.h"
#include "levels/Numbers.h"
#include "levels/Reference.h"
#include "runs/Measure.h"
#include "runs/Sweep.h"
#include "runs/TimeRun.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

bool is(const std::string& message, const char* text) {
    return text && message == text;
}

std::vector<std::string> lines(std::string_view text, size_t count) {
    std::vector<std::string> out;
    while (out.size() + 1 < count) {
        const size_t end = text.find('\n');
        if (end == std::string_view::npos) break;
        out.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    out.emplace_back(text);
    out.resize(count);
    return out;
}

void hexField(int id, int index, const std::string& text) {
    const qz::HexField f = qz::hexField(static_cast<qz::HexFieldId>(id), index);
    const qz::FieldCheck r = qz::checkHexField(f, text);
    if (r.ok) {
        FUZZ_CHECK(r.value >= 0 && r.value <= f.upper);
        FUZZ_CHECK(!f.tooSmall || r.value >= f.lower);
        FUZZ_CHECK(qz::parseHex(r.text) == r.value); // the box shows what is sent
    } else {
        FUZZ_CHECK(is(r.message, qz::kNotValidNumber) || is(r.message, f.tooLarge) ||
                   is(r.message, f.tooSmall));
    }
}

void decimalField(const qz::DecimalField& f, const std::string& text) {
    const qz::DecimalCheck r = qz::checkDecimalField(f, text);
    if (r.ok)
        FUZZ_CHECK(r.value >= f.lower && r.value <= f.upper);
    else
        FUZZ_CHECK(is(r.message, qz::kNotValidNumber) || is(r.message, f.outside));
}

void clamp(int side, int range, const std::vector<std::string>& t) {
    const qz::ClampResult r = qz::computeClamp(side ? qz::ClampSide::Low : qz::ClampSide::High, t[0],
                                               range, t[1], t[2], 20.0f, 5.0f);
    if (!r.ok) {
        FUZZ_CHECK(!r.message.empty() && r.blame != qz::ClampBlame::None);
        return;
    }
    FUZZ_CHECK(r.code >= 0 && r.code <= 0xFFFF);
    FUZZ_CHECK(side ? r.code <= 0x8000 : r.code >= 0x8000);
    FUZZ_CHECK((r.DAClast & 0xFFFF) == r.code);
    FUZZ_CHECK((r.DAClast >> 16) == (side ? 0x0D : 0x10));
}

void sweep(const std::vector<std::string>& t) {
    qz::General g;
    qz::SweepRequest r;
    r.start = t[0];
    r.end = t[1];
    r.step = t[2];
    r.reference = {2, t[3]};
    r.prepared = {0x8000, 20.0f};
    qz::SweepPlan plan;
    if (qz::planSweep(g, r, plan)) return;
    // What a run needs to hold, whatever the boxes said.
    FUZZ_CHECK(plan.startCode >= 0 && plan.startCode <= plan.endCode && plan.endCode <= 0xFFFF);
    FUZZ_CHECK(plan.stepCode >= 1);
    FUZZ_CHECK(plan.n >= 0 && plan.n <= 0xFFFF);
}

void timeRun(const std::vector<std::string>& t) {
    qz::General g;
    qz::TimeRequest r;
    r.force = t[0];
    r.reference = {2, t[1]};
    r.prepared = {0x8000, 20.0f};
    qz::TimePlan plan;
    if (qz::planTimeRun(g, r, plan)) return;
    FUZZ_CHECK(plan.code >= 0 && plan.code <= 0xFFFF);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const int which = data[0] % 12;
    const int index = data[1];
    const std::string text(reinterpret_cast<const char*>(data + 2), size - 2);
    switch (which) {
    case 0: hexField(index % qz::kHexFieldCount, (index >> 5) % 8, text); break;
    case 1: {
        const auto t = lines(text, 2);
        const qz::FieldCheck r = qz::checkFINx1Entry(t[0], t[1]);
        FUZZ_CHECK(r.ok || !r.message.empty());
        break;
    }
    case 2: {
        const qz::FieldCheck r = qz::checkWordOnLeave(text);
        FUZZ_CHECK(r.ok ? qz::parseHex(text) == r.value : is(r.message, qz::kNotValidNumber));
        break;
    }
    case 3: decimalField(index % 2 ? qz::ktxtEXT1rsense : qz::ktxtEXT2Rsense, text); break;
    case 4: {
        const qz::DecimalCheck r = qz::checkVoltageEntry(text, -12.81f, 12.81f);
        if (r.ok) FUZZ_CHECK(r.value >= -12.81f && r.value <= 12.81f);
        break;
    }
    case 5: clamp(index % 2, index / 2 % 9 - 1, lines(text, 3)); break;
    case 6: {
        const qz::DecimalCheck r = qz::checkReference(text);
        // The whole volts are checked; the fraction goes along ("5.4" gives 5.4).
        if (r.ok) FUZZ_CHECK(r.value >= 1.5f && r.value <= 5.5f);
        break;
    }
    case 7: {
        const qz::DecimalCheck r = qz::checkForceEntry(text, 5.0f, index * 257);
        FUZZ_CHECK(r.ok || !r.message.empty());
        break;
    }
    case 8: {
        const qz::DecimalCheck r = qz::checkStepEntry(text);
        if (r.ok) FUZZ_CHECK(r.value >= 0.0f && r.value <= 1000.0f);
        break;
    }
    case 9: {
        const qz::FieldCheck r = qz::checkCodeEntry(text);
        if (r.ok) FUZZ_CHECK(r.value >= 0 && r.value <= 0xFFFF && qz::parseHex(r.text) == r.value);
        break;
    }
    case 10: sweep(lines(text, 4)); break;
    default: timeRun(lines(text, 2)); break;
    }
    return 0;
}
