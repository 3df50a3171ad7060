// The About dialog's way to the system information tool: a registry value made into
// text, and the order in which the tool is looked for.

#include "shell/SysInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace {

std::string converted(uint32_t type, const std::string& data, std::string keyVal = "before") {
    qz::keyValueText(type, data, keyVal);
    return keyVal;
}

} // namespace

TEST(KeyValue, TextsLoseOneClosingNul) {
    EXPECT_EQ(converted(1, "C:\\Tools\\MSINFO32.EXE\0"s), "C:\\Tools\\MSINFO32.EXE");
    EXPECT_EQ(converted(1, "C:\\Tools"), "C:\\Tools");
    EXPECT_EQ(converted(1, "ab\0\0"s), "ab\0"s) << "one NUL only";
    EXPECT_EQ(converted(1, ""), "");
}

TEST(KeyValue, DoubleWordsReadLastByteFirstAsDecimal) {
    // 0x00000105: the top byte, a NUL, is dropped first; the number stays 261.
    EXPECT_EQ(converted(4, "\x05\x01\x00\x00"s), "261");
    EXPECT_EQ(converted(4, "\x78\x56\x34\x12"s), "305419896");
    EXPECT_EQ(converted(4, "\x0A"s), "10");
    EXPECT_EQ(converted(4, "\x00\x00\x00\x00"s), "0");
    // Eight digits with the top bit set are a negative number.
    EXPECT_EQ(converted(4, "\xFF\xFF\xFF\xFF"s), "-1");
    EXPECT_EQ(converted(4, "\x00\x00\x00\x80"s), "-2147483648");
    EXPECT_THROW(converted(4, "\x01\x02\x03\x04\x05"s), std::invalid_argument) << "more than 32 bits";
    EXPECT_THROW(converted(4, ""), std::invalid_argument);
}

TEST(KeyValue, OtherTypesLeaveTheValueAsItWas) {
    for (uint32_t type : {0u, 2u, 3u, 7u, 11u}) EXPECT_EQ(converted(type, "abc\0"s), "before") << type;
}

namespace {

// A registry with the keys given, a file system with the files given; what was run and
// what was asked is kept.
struct FakeSystem {
    struct Key {
        std::string key, value, data;
    };
    std::vector<Key> keys;
    std::vector<std::string> files, asked, ran;
    bool runs = true, throws = false;

    qz::SysInfoSystem system() {
        qz::SysInfoSystem s;
        s.getKeyValue = [this](uint32_t root, const std::string& key, const std::string& value,
                               std::string& out) {
            asked.push_back(key + "|" + value);
            EXPECT_EQ(root, 0x80000002u);
            if (throws) throw std::invalid_argument("bad value");
            for (const Key& k : keys)
                if (k.key == key && k.value == value) return out = k.data, true;
            out.clear();
            return false;
        };
        s.fileExists = [this](const std::string& p) {
            return std::find(files.begin(), files.end(), p) != files.end();
        };
        s.run = [this](const std::string& p) { return ran.push_back(p), runs; };
        return s;
    }
};

const std::string kPathKey = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO|PATH";
const std::string kLocationKey = "SOFTWARE\\Microsoft\\Shared Tools Location|MSINFO";

} // namespace

TEST(StartSysInfo, ThePathKeyFirstThenTheSharedToolsFolder) {
    FakeSystem a;
    a.keys = {{"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", "C:\\MSInfo\\msinfo32.exe"},
              {"SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO", "C:\\Shared"}};
    EXPECT_TRUE(qz::StartSysInfo(a.system()));
    EXPECT_EQ(a.ran, std::vector<std::string>{"C:\\MSInfo\\msinfo32.exe"});
    EXPECT_EQ(a.asked, std::vector<std::string>{kPathKey});

    FakeSystem b;
    b.keys = {{"SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO", "C:\\Shared"}};
    b.files = {"C:\\Shared\\MSINFO32.EXE"};
    EXPECT_TRUE(qz::StartSysInfo(b.system()));
    EXPECT_EQ(b.ran, std::vector<std::string>{"C:\\Shared\\MSINFO32.EXE"});
    EXPECT_EQ(b.asked, (std::vector<std::string>{kPathKey, kLocationKey}));
}

TEST(StartSysInfo, NoToolAnErrorOrAFailedStartGiveTheMessage) {
    FakeSystem none;
    EXPECT_FALSE(qz::StartSysInfo(none.system()));
    EXPECT_TRUE(none.ran.empty());

    FakeSystem noFile;
    noFile.keys = {{"SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO", "C:\\Shared"}};
    EXPECT_FALSE(qz::StartSysInfo(noFile.system()));
    EXPECT_TRUE(noFile.ran.empty());

    FakeSystem broken;
    broken.throws = true;
    EXPECT_FALSE(qz::StartSysInfo(broken.system()));
    EXPECT_EQ(broken.asked.size(), 1u) << "the error ends the search";

    FakeSystem fails;
    fails.keys = {{"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", "C:\\gone.exe"}};
    fails.runs = false;
    EXPECT_FALSE(qz::StartSysInfo(fails.system()));
}

#ifndef _WIN32
TEST(StartSysInfo, WithoutARegistryEveryKeyIsMissing) {
    std::string value = "before";
    EXPECT_FALSE(qz::GetKeyValue(qz::kHKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO",
                                 "PATH", value));
    EXPECT_TRUE(value.empty());
    EXPECT_FALSE(qz::StartSysInfo());
}
#endif
