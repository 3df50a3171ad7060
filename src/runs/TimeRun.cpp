#include "runs/TimeRun.h"

#include "levels/NumberText.h"
#include "levels/Numbers.h"
#include "registers/RegisterMap.h"
#include "registers/Session.h"

#include <string_view>

namespace qz {

namespace {

constexpr std::string_view kTimeColumns[] = {"temp", "ADC", "ADC Measured Voltage", "sample time"};
// "Measure", not "Measured", in the current's header.
constexpr std::string_view kMeasuredColumn[2] = {"Measured Voltage", "Measure Current"};

std::string header(int16_t measMode) {
    std::string line;
    for (std::string_view c : kTimeColumns)
        (line += c) += '\t';
    return line + std::string(kMeasuredColumn[measMode == 1]);
}

std::string rangeLine(ValueRange r) {
    return defaultText(r.min) + '\t' + defaultText(r.max);
}

} // namespace

std::optional<Refusal> planTimeRun(General& g, const TimeRequest& r, TimePlan& plan) {
    const std::optional<double> force = parseDecimal(r.force);
    if (!force) return Refusal{Box::txtForceV, kNotValidNumber};
    const DecimalCheck vref = PickVREF(r.reference);
    if (!vref.ok) return Refusal{Box::txtVREF, vref.message};
    g.VREF = vref.value;
    plan.scaling = {vref.value, r.prepared.offsetCode, r.prepared.measGain, r.rsense};
    const std::optional<int32_t> code = plan.scaling.CodeForVolts(*force);
    if (!code || *code < 0 || *code > 0xFFFF)
        return Refusal{Box::txtForceV, voltageOutsideText(vref.value, r.prepared.offsetCode)};
    plan.code = *code;
    plan.measMode = r.measMode;
    plan.sampleDelay = r.sampleDelay;
    plan.tempDelay = r.tempDelay;
    plan.cycleDelay = r.cycleDelay;
    return std::nullopt;
}

TimeOutcome runTime(const RunContext& ctx, const TimePlan& p, MeasureArrays& a) {
    constexpr size_t size = kTimeSamples;
    for (auto* v : {&a.sweepADCVolts, &a.sweepMeasVolts, &a.timeMeasAmps, &a.sampleTimes})
        v->assign(size, 0.0);
    Session& s = ctx.session;
    const int32_t word = writeWord(reg::kFinX1, p.code);
    s.SPIout(word);
    ctx.addLine(header(p.measMode));

    // The ADC's step as a single float: it is exact, so the volts are those of a double.
    const float adcStep = static_cast<float>(Scaling::ADCVolts(1.0));
    TimeOutcome out;
    float time = p.sampleDelay;
    size_t i = 0;
    while (i < size) {
        WaitSeconds(ctx.clock, p.sampleDelay);
        const int32_t c = ReadADCCode(s);
        const double adcVolts = a.sweepADCVolts[i] = c * static_cast<double>(adcStep);
        const double measured = p.measMode == 1
                                    ? (a.timeMeasAmps[i] = p.scaling.MeasuredAmps(c))
                                    : (a.sweepMeasVolts[i] = p.scaling.MeasuredVolts(c));
        out.adcCode = c;
        a.sampleTimes[i] = time;
        ctx.addLine(joinColumns({std::to_string(i), std::to_string(c), defaultText(adcVolts),
                                 defaultText(time), defaultText(measured)}));
        time += p.cycleDelay;
        const bool goOn =
            ctx.eventPass({static_cast<int32_t>(i), static_cast<int32_t>(size), c, word});
        WaitSeconds(ctx.clock, p.tempDelay);
        ++i;
        if (!goOn && i < size) {
            out.stopped = true;
            for (auto* v : {&a.sweepADCVolts, &a.sweepMeasVolts, &a.timeMeasAmps, &a.sampleTimes})
                v->resize(i);
            break;
        }
    }
    out.points = static_cast<int32_t>(i);
    out.range = rangeOf(p.measMode == 1 ? a.timeMeasAmps : a.sweepMeasVolts);
    ctx.addLine(rangeLine(out.range));
    // Volts at the ADC, whatever the words say.
    out.adcRange = rangeOf(a.sweepADCVolts);
    ctx.addLine(joinColumns({"mincode", "maxcode"}));
    ctx.addLine(rangeLine(out.adcRange));
    return out;
}

} // namespace qz
