// The parts of the probes that need no server: the clock page's text, the head of an answer,
// md5sum and copying onto an existing file.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "LMFile.h"
#include "LMRawHttp.h"
#include "LM_WS.h"
#include "TempDir.h"

namespace {

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

TEST(DeviceTimeBody, PMAddsTwelveHoursAlsoToTwelveOClock) {
    int32_t t = 0;
    ASSERT_TRUE(LMRawHttp::ParseDeviceTime("3/14/2011 1:05:09 PM", t));
    EXPECT_EQ(1300107909, t);  // 2011-03-14 13:05:09 UTC
    ASSERT_TRUE(LMRawHttp::ParseDeviceTime("3/14/2011 12:00:00 PM", t));
    EXPECT_EQ(1300147200, t);  // hour 24: 2011-03-15 00:00:00 UTC
    ASSERT_TRUE(LMRawHttp::ParseDeviceTime("3/14/2011 12:30:00 AM", t));
    EXPECT_EQ(1300105800, t);  // stays 2011-03-14 12:30:00 UTC
}

TEST(DeviceTimeBody, FewerThanSevenFieldsAreRefused) {
    int32_t t = 42;
    EXPECT_FALSE(LMRawHttp::ParseDeviceTime("3/14/2011 1:05:09", t));
    EXPECT_FALSE(LMRawHttp::ParseDeviceTime("2011-03-14T13:05:09Z", t));
    EXPECT_EQ(42, t);
}

TEST(RawHttpHead, ALengthThatIsNotAPositive32BitNumberLeavesTheHeadIncomplete) {
    for (const char* length : {"0", "-5", "12ab", "4294967296", ""}) {
        const std::string block =
            std::string("HTTP/1.1 200 OK\r\nContent-Length: ") + length + "\r\n\r\nbody";
        EXPECT_FALSE(LMRawHttp::ParseHead(block.c_str()).complete) << length;
    }
    const std::string block = "HTTP/1.1 200 OK\r\nContent-Length: 4294967295\r\n\r\nbody";
    LMRawHttp::Head head = LMRawHttp::ParseHead(block.c_str());
    EXPECT_TRUE(head.complete);
    EXPECT_EQ(4294967295u, head.contentLength);
    EXPECT_EQ(block.size() - 4, head.bodyOffset);
}

TEST(Md5sum, ReturnsTheToolsWholeOutput) {
    TempDir dir;
    std::ofstream(dir / "abc") << "abc";
    LM_WS_LengthAndText r;
    ASSERT_EQ(0, LM_WS_md5sum((dir / "abc").c_str(), &r));
    EXPECT_EQ(LM_WS_ResultLengthAndText, *r.Type);
    EXPECT_EQ("900150983cd24fb0d6963f7d28e17f72  " + (dir / "abc") + "\n",
              std::string(r.Text, r.Length));
    LM_WS_FreeResult(&r);

    // A name with blanks, a quote and shell syntax is one file to the tool, never a command.
    const std::string odd = dir / "it's $(touch pwned); x";
    std::ofstream(odd) << "abc";
    ASSERT_EQ(0, LM_WS_md5sum(odd.c_str(), &r));
    EXPECT_EQ(0, std::string(r.Text, r.Length).find("900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_FALSE(std::ifstream(dir / "pwned").good());
    EXPECT_FALSE(std::ifstream("pwned").good());
    LM_WS_FreeResult(&r);
}

TEST(CopyFile, AnExistingDestinationIsLeftUntouched) {
    TempDir dir;
    std::ofstream(dir / "src", std::ios::binary) << std::string("new\0content", 11);
    std::ofstream(dir / "dst") << "old";
    EXPECT_EQ(0, LM_WS_copyFile((dir / "src").c_str(), (dir / "dst").c_str()));
    EXPECT_EQ("old", ReadAll(dir / "dst"));
    EXPECT_EQ(0, LM_WS_copyFile((dir / "src").c_str(), (dir / "copy").c_str()));
    EXPECT_EQ(std::string("new\0content", 11), ReadAll(dir / "copy"));
    EXPECT_EQ(-1900, LM_WS_copyFile((dir / "none").c_str(), (dir / "copy2").c_str()));
}

// A folder opens for reading and reports a size near 2^63: it must fail as a copy, not as an
// allocation that throws out of the C interface, and leave no destination behind.
TEST(CopyFile, AFolderAsTheSourceFailsAndWritesNothing) {
    TempDir dir;
    EXPECT_EQ(-1900, LM_WS_copyFile(dir.path().c_str(), (dir / "copy").c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / "copy").c_str()));
    EXPECT_FALSE(LMFile::Copy(dir.path().c_str(), (dir / "copy").c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / "copy").c_str()));
}

}  // namespace
