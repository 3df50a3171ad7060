#include "runs/Sweep.h"

#include "levels/NumberText.h"
#include "levels/Numbers.h"
#include "levels/TransferLaw.h"
#include "registers/RegisterMap.h"
#include "registers/Session.h"

#include <cmath>
#include <string_view>

namespace qz {

namespace {

constexpr int32_t kFinX1Word = writeWord(reg::kFinX1, 0);
constexpr int32_t kAddressField = 0xF0000;
constexpr int kVoltageReadings = 8; // averaged in measMode 0

constexpr std::string_view kSweepColumns[] = {"temp",    "SWEEPDAC", "DACCODE(TEMP)",
                                              "Voltage", "ADC",      "ADC Measured Voltage"};
constexpr std::string_view kMeasuredColumn[2] = {"Measured Voltage", "Measured Current"};
constexpr std::string_view kTimeColumn = "sample time";

std::string header(int16_t measMode) {
    std::string line;
    for (std::string_view c : kSweepColumns)
        (line += c) += '\t';
    return line + std::string(kMeasuredColumn[measMode == 1]) + '\t' + std::string(kTimeColumn);
}

bool inCodes(std::optional<int32_t> code) {
    return code && *code >= 0 && *code <= 0xFFFF;
}

} // namespace

std::optional<Refusal> planSweep(General& g, const SweepRequest& r, SweepPlan& plan) {
    const std::optional<double> start = parseDecimal(r.start);
    const std::optional<double> end = parseDecimal(r.end);
    if (!start) return Refusal{Box::txtstartV, kNotValidNumber};
    if (!end) return Refusal{Box::txtendV, kNotValidNumber};
    // Equal ends give no line to step along, so they are refused as a start above the end.
    if (*start >= *end) return Refusal{Box::txtstartV, kStartAboveEnd};
    const std::optional<float> step = parseSingle(r.step);
    if (!step) return Refusal{Box::txtstep, kNotValidNumber};
    const DecimalCheck vref = PickVREF(r.reference);
    if (!vref.ok) return Refusal{Box::txtVREF, vref.message};
    g.VREF = vref.value;

    plan.scaling = {vref.value, r.prepared.offsetCode, r.prepared.measGain, r.rsense};
    const std::optional<int32_t> startCode = plan.scaling.CodeForVolts(*start);
    const std::optional<int32_t> endCode = plan.scaling.CodeForVolts(*end);
    const std::string outside = voltageOutsideText(vref.value, r.prepared.offsetCode);
    if (!inCodes(startCode)) return Refusal{Box::txtstartV, outside};
    if (!inCodes(endCode)) return Refusal{Box::txtendV, outside};
    // The Enter check of txtstep is not repeated: a step typed without Enter runs as its
    // text says, 2000 mV included. The run needs a whole number of codes, one at least.
    const std::optional<int32_t> stepCode = qz::stepCode(*step, vref.value);
    if (!stepCode || *step < 0.0f) return Refusal{Box::txtstep, kStepOutside};
    if (*stepCode < 1) return Refusal{Box::txtstep, stepTooSmallText(vref.value)};

    plan.measMode = r.measMode;
    plan.startCode = *startCode;
    plan.endCode = *endCode;
    plan.stepCode = *stepCode;
    plan.n = static_cast<int32_t>(
        roundHalfEven(static_cast<double>(plan.endCode - plan.startCode) / plan.stepCode));
    plan.sampleDelay = r.sampleDelay;
    plan.tempDelay = r.tempDelay;
    plan.cycleDelay = r.cycleDelay;
    return std::nullopt;
}

SweepOutcome runSweep(const RunContext& ctx, const SweepPlan& p, MeasureArrays& a) {
    const size_t size = static_cast<size_t>(p.n) + 1;
    for (auto* v : {&a.sweepCodes, &a.sweepVolts, &a.sweepADCVolts, &a.sweepMeasVolts,
                    &a.sweepMeasAmps, &a.sweepDeviation})
        v->assign(size, 0.0);
    a.sweepCodes[0] = p.startCode;
    ctx.addLine(header(p.measMode));

    Session& s = ctx.session;
    const Scaling& sc = p.scaling;
    SweepOutcome out;
    int32_t code = p.startCode;
    int32_t word = kFinX1Word | p.startCode;
    float time = p.sampleDelay;

    // One point: the word out, the wait, the readings, the arrays and the list line.
    auto measure = [&](size_t i, int readings) {
        s.SPIout(word);
        WaitSeconds(ctx.clock, p.sampleDelay);
        double c = 0.0;
        if (readings == 1) {
            c = ReadADCCode(s);
        } else {
            int32_t sum = 0;
            for (int k = 0; k < readings; ++k)
                sum += ReadADCCode(s);
            c = sum / static_cast<double>(readings);
        }
        const double adcVolts = a.sweepADCVolts[i] = Scaling::ADCVolts(c);
        const double measured = p.measMode == 1 ? (a.sweepMeasAmps[i] = sc.MeasuredAmps(c))
                                                : (a.sweepMeasVolts[i] = sc.MeasuredVolts(c));
        out.adcCode = static_cast<int32_t>(roundHalfEven(c));
        ctx.addLine(
            joinColumns({std::to_string(i), std::to_string(word), defaultText(a.sweepCodes[i]),
                         defaultText(a.sweepVolts[i]), defaultText(c), defaultText(adcVolts),
                         defaultText(measured), defaultText(time)}));
    };
    // The end of a point: the panel's events once, then the wait after the sample.
    auto pass = [&](size_t i) {
        const bool goOn =
            ctx.eventPass({static_cast<int32_t>(i), static_cast<int32_t>(size), out.adcCode, word});
        WaitSeconds(ctx.clock, p.tempDelay);
        return goOn;
    };

    size_t i = 0;
    const int readings = p.measMode == 1 ? 1 : kVoltageReadings;
    for (int64_t counter = p.startCode; counter <= p.endCode && i < size; counter += p.stepCode) {
        a.sweepCodes[i] = code;
        a.sweepVolts[i] = sc.VoltsForCode(code);
        code += p.stepCode;
        measure(i, readings);
        time += p.cycleDelay;
        if (code > p.endCode) {
            code = p.endCode;
            word = (word & kAddressField) | p.endCode;
        } else {
            word += p.stepCode;
        }
        const bool goOn = pass(i);
        ++i;
        if (!goOn) {
            out.stopped = true;
            break;
        }
    }
    // A quotient that rounded up leaves the last index to the end code itself.
    if (!out.stopped && i == static_cast<size_t>(p.n)) {
        code = p.endCode;
        word = (word & kAddressField) | p.endCode;
        a.sweepCodes[i] = p.endCode;
        a.sweepVolts[i] = sc.VoltsForCode(p.endCode);
        measure(i, 1);
        pass(i); // the run is complete: a stop asked for now changes nothing
        i = size;
    }
    if (i < size)
        for (auto* v : {&a.sweepCodes, &a.sweepVolts, &a.sweepADCVolts, &a.sweepMeasVolts,
                        &a.sweepMeasAmps, &a.sweepDeviation})
            v->resize(i);
    out.points = static_cast<int32_t>(i);
    out.word = word;
    out.range = rangeOf(p.measMode == 1 ? a.sweepMeasAmps : a.sweepMeasVolts);
    return out;
}

void FitDeviation(MeasureArrays& a, int32_t startCode, int32_t endCode,
                  const std::function<void(std::string)>& addLine) {
    const size_t size = a.sweepCodes.size();
    if (size == 0 || a.sweepADCVolts.size() != size) return;
    const double first = a.sweepADCVolts.front();
    const double last = a.sweepADCVolts.back();
    // From endCode even when the last point fell short of it.
    const double slope = (last - first) / static_cast<double>(endCode - startCode);
    addLine(defaultText(first));
    if (!std::isfinite(slope) || slope == 0.0) return;
    a.sweepDeviation.resize(size);
    for (size_t i = 0; i < size; ++i) {
        a.sweepDeviation[i] =
            (a.sweepADCVolts[i] - (first + (a.sweepCodes[i] - a.sweepCodes[0]) * slope)) / slope;
        addLine(defaultText(a.sweepCodes[i]) + '\t' + defaultText(a.sweepDeviation[i]));
    }
}

} // namespace qz
