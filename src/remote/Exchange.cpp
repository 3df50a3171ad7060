#include "remote/Exchange.h"

#include <utility>

namespace qz::remote {

Exchange::Exchange(Instrument& instrument) : in_(instrument) {
    in_.messageWaiting = [this] { return !fields_.empty() || !output_.empty(); };
}

Exchange::~Exchange() { in_.messageWaiting = nullptr; }

void Exchange::addLine(std::string_view line) {
    std::vector<MessageUnit> units = parseMessage(line);
    for (size_t i = 0; i < units.size(); ++i) {
        Pending p{std::move(units[i].parsed), i + 1 == units.size()};
        if (p.last) {
            p.bytes = line.size();
            queuedBytes_ += p.bytes;
        }
        // Behind a unit that waits, a stop or a clear cannot wait too: it would hold the
        // very run it is meant to end.
        if (waiting_ && p.unit.unit && in_.actsAtOnce(*p.unit.unit)) {
            in_.execute(*p.unit.unit);
            p.skip = true;
        }
        queue_.push_back(std::move(p));
    }
}

std::string Exchange::run() {
    // A unit's handler that serves events may let more lines in: they join the queue,
    // and this loop takes them.
    if (busy_) return {};
    busy_ = true;
    while (!queue_.empty()) {
        const Pending p = queue_.front();
        bool failed = p.skip;
        std::string answer;
        if (!p.skip) {
            if (p.unit.unit) {
                const Instrument::Outcome o = in_.execute(*p.unit.unit);
                if (o.kind == Instrument::Outcome::Kind::Wait) {
                    waiting_ = true;
                    break;
                }
                failed = o.kind == Instrument::Outcome::Kind::Failed;
                answer = o.answer;
            } else {
                in_.raise(p.unit.error);
                failed = true;
            }
        }
        waiting_ = false;
        // The queue may have been cleared meanwhile (a device clear from another connection).
        if (queue_.empty()) break;
        queuedBytes_ -= queue_.front().bytes;
        queue_.pop_front();
        if (p.unit.query) fields_.push_back(std::move(answer));
        if (failed && !p.skip && !p.last)
            for (Pending& later : queue_) {
                later.skip = true;
                if (later.last) break;
            }
        if (p.last) {
            if (!fields_.empty()) {
                for (size_t i = 0; i < fields_.size(); ++i) {
                    if (i) output_ += ';';
                    output_ += fields_[i];
                }
                output_ += '\n';
            }
            fields_.clear();
        }
    }
    busy_ = false;
    return std::exchange(output_, {});
}

void Exchange::clear() {
    queue_.clear();
    fields_.clear();
    output_.clear();
    queuedBytes_ = 0;
    waiting_ = false;
}

} // namespace qz::remote
