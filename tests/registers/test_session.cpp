#include "registers/Session.h"
#include "support/FakeLibrary.h"

#include <gtest/gtest.h>

TEST(Session, SPIoutShowsTheWordBeforeItGoesOut) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    qz::Session s(std::move(fake));
    std::vector<std::string> events;
    s.showWordSent = [&](const std::string& hex) {
        events.push_back("show " + hex + " after " + std::to_string(lib->calls.size()));
    };
    s.SPIout(0x812345);
    s.SPIout(0);
    ASSERT_EQ(lib->calls.size(), 2u);
    EXPECT_EQ(events, (std::vector<std::string>{"show 812345 after 0", "show 000000 after 1"}));
    EXPECT_EQ(lib->calls[0].value, 0x2345);
    EXPECT_EQ(lib->calls[0].index, 0x81);
}

TEST(Session, LinkListenersHearChanges) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    qz::Session s(std::move(fake));
    int heard = 0;
    s.addLinkListener([&](qz::LinkState st) { heard += st == qz::LinkState::Lost; });
    s.addLinkListener([&](qz::LinkState st) { heard += st == qz::LinkState::Lost; });
    lib->link = qz::LinkState::Lost;
    s.SPIout(1);
    EXPECT_EQ(heard, 2);
}
