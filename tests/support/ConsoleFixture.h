#pragma once
// The two panels as the program starts them on the virtual board: the console, hidden
// behind the front panel, and the front panel. A test brings up the panel it works on;
// the trace is read from that point.

#include "console/frmMAINQZ7740.h"
#include "forms/TabControl.h"
#include "frontpanel/frmMain.h"
#include "support/Harness.h"

namespace qztest {

class ConsoleFixture : public ::testing::Test {
protected:
    explicit ConsoleFixture(int tab = -1) : tab_(tab) {}

    void SetUp() override {
        f = h.startConsole<frmMAINQZ7740>();
        m = static_cast<frmMain*>(h.nav.loaded(forms::Form::frmMain));
        ASSERT_NE(m, nullptr);
        // The console hides at start behind the front panel; the operator brings it up.
        Harness::activate(f.get());
        if (tab_ >= 0) f->QZ7740->setCurrentIndex(tab_);
        h.trace.fresh();
    }
    // The words sent since the last look.
    std::vector<int> sent() { return wordsSent(h.trace.fresh()); }

    Harness h;
    std::unique_ptr<frmMAINQZ7740> f;
    frmMain* m = nullptr;
    qz::General& g = h.session->general;

private:
    int tab_;
};

} // namespace qztest
