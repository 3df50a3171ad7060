#pragma once
// A console started on the virtual board, on the tab a test works on, with the trace
// read from that point.

#include "console/frmMAINQZ7740.h"
#include "forms/TabControl.h"
#include "support/Harness.h"

namespace qztest {

class ConsoleFixture : public ::testing::Test {
protected:
    explicit ConsoleFixture(int tab = -1) : tab_(tab) {}

    void SetUp() override {
        f = h.startConsole<frmMAINQZ7740>();
        if (tab_ >= 0) f->QZ7740->setCurrentIndex(tab_);
        h.trace.fresh();
    }
    // The words sent since the last look.
    std::vector<int> sent() { return wordsSent(h.trace.fresh()); }

    Harness h;
    std::unique_ptr<frmMAINQZ7740> f;
    qz::General& g = h.session->general;

private:
    int tab_;
};

} // namespace qztest
