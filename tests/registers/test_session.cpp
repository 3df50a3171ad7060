#include "registers/Session.h"
#include "support/FakeLibrary.h"

#include <gtest/gtest.h>

TEST(Session, SPIoutShowsTheWordBeforeItGoesOutAndLinkListenersHearChanges) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    qz::Session s(std::move(fake));
    std::vector<std::string> events;
    s.showWordSent = [&](const std::string& hex) {
        events.push_back(hex + " after " + std::to_string(lib->calls.size()));
    };
    int heard = 0;
    for (int k = 0; k < 2; ++k)
        s.addLinkListener([&](qz::LinkState st) { heard += st == qz::LinkState::Lost; });
    s.SPIout(0x812345);
    lib->link = qz::LinkState::Lost;
    s.SPIout(0);
    EXPECT_EQ(events, (std::vector<std::string>{"812345 after 0", "000000 after 1"}));
    ASSERT_EQ(lib->calls.size(), 2u);
    EXPECT_EQ(lib->calls[0].value, 0x2345);
    EXPECT_EQ(lib->calls[0].index, 0x81);
    EXPECT_EQ(heard, 2) << "every listener, once";
}
