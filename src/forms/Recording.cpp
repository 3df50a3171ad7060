#include "forms/Recording.h"

namespace forms {

Recording& recording() {
    static Recording r;
    return r;
}

Outcome Recording::act(const Action& action, const std::function<Outcome()>& op) {
    if (remoteDepth_ > 0 || !began) return op();
    began(action);
    const Outcome outcome = op();
    if (ended) ended(action, outcome);
    return outcome;
}

void Recording::setActive(bool active) {
    if (active_ == active) return;
    active_ = active;
    emit changed();
}

Recording::RemoteScope::RemoteScope() { ++recording().remoteDepth_; }
Recording::RemoteScope::~RemoteScope() { --recording().remoteDepth_; }

} // namespace forms
