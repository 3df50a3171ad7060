#include "runs/TempRun.h"

#include "levels/NumberText.h"
#include "registers/Session.h"

namespace qz {

double externalDegrees(int32_t whole, int32_t fraction) {
    return whole + ((fraction >> 6) & 3) * 0.25;
}

int32_t runTemperatures(const RunContext& ctx, bool stopped, TempArrays& a, const TempShow& show) {
    for (auto* v : {&a.local, &a.externalWhole, &a.external, &a.time}) v->assign(kTempReadings, 0.0);
    ctx.addLine(joinColumns({"time", "local temp sensor", "QZ7740 Thermal Array"}));
    USBStuff& usb = ctx.session.usb;
    const float& tempDelay = ctx.session.general.tempDelay;
    std::string time; // the first row's time field stands empty
    float elapsed = 0.0f;
    int32_t i = 0;
    for (; i < kTempReadings && !stopped; ++i) {
        const int32_t local = usb.ReadI2C(sensor::kLocal);
        a.local[static_cast<size_t>(i)] = local;
        if (show.local) show.local(local);
        const int32_t whole = usb.ReadI2C(sensor::kExternal);
        a.externalWhole[static_cast<size_t>(i)] = whole;
        const double external = externalDegrees(whole, usb.ReadI2C(sensor::kFraction));
        a.external[static_cast<size_t>(i)] = external;
        if (show.point) show.point(external);
        ctx.addLine(joinColumns({time, defaultText(static_cast<double>(local)), defaultText(external)}));
        a.time[static_cast<size_t>(i)] = elapsed;
        elapsed += tempDelay;
        time = defaultText(elapsed);
        const double start = ctx.clock.seconds();
        RunProgress progress;
        progress.point = i;
        progress.points = kTempReadings;
        stopped = !ctx.eventPass(progress);
        if (show.reading) show.reading(i, external);
        WaitSeconds(ctx.clock, start + tempDelay - ctx.clock.seconds());
    }
    return i;
}

} // namespace qz
