#pragma once
// The module variables that every panel shares.

namespace qz {

struct General {
    // Raised by an entry field while it handles Enter; entry fields and many buttons do
    // nothing while it is set.
    bool entryBusy = false;
};

} // namespace qz
