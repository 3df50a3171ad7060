#include "registers/RunLog.h"

namespace qz {

void RunLog::began() {
    ++depth_;
    if (onChange) onChange();
}

void RunLog::ended() {
    if (depth_ > 0) --depth_;
    if (onChange) onChange();
}

void RunLog::record(RunRecord r) {
    (r.kind == RunKind::Sweep ? sweep_ : time_) = std::move(r);
}

const RunRecord* RunLog::last(RunKind kind) const {
    if (inProgress()) return nullptr;
    const std::optional<RunRecord>& r = kind == RunKind::Sweep ? sweep_ : time_;
    return r ? &*r : nullptr;
}

} // namespace qz
