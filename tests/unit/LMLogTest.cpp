#include "LMLog.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "TempDir.h"

namespace {

// Collects what reaches the target: each call's line and the length it was given.
struct Capture {
    std::vector<std::string> lines;
    std::vector<unsigned> lengths;
    static void Target(const char* line, unsigned length, void* context) {
        Capture* self = static_cast<Capture*>(context);
        self->lines.push_back(length == 0 ? std::string(line) : std::string(line, length));
        self->lengths.push_back(length);
    }
};

class LogTest : public ::testing::Test {
protected:
    void SetUp() override { LM_LogSetTarget(Capture::Target, &m_Capture); }
    void TearDown() override { LM_LogSetTarget(nullptr, nullptr); }
    int Area(const char* name) {
        int id = -1;
        EXPECT_EQ(LM_LogRegisterArea(name, &id), 0);
        LM_LogActivateArea(id, true);
        LM_LogSetAreaSeverityMask(id, -1);
        return id;
    }
    Capture m_Capture;
};

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST_F(LogTest, LineCarriesTimeStampAreaAndTextExactly) {
    int id = Area("LM_WSAE");
    LM_LogOutput(id, LM_LOG_TRACE, "text %d\n", 42);
    ASSERT_EQ(m_Capture.lines.size(), 1u);
    EXPECT_TRUE(std::regex_match(m_Capture.lines[0],
                                 std::regex(R"(\[\d\d:\d\d:\d\d\.\d{3}-LM_WSAE\] text 42\n)")))
        << m_Capture.lines[0];
    EXPECT_EQ(m_Capture.lengths[0], 0u);  // the text form lets the target measure the line
}

TEST_F(LogTest, LengthFormWritesExactBytesAndPassesTheFullLength) {
    int id = Area("lenform");
    const char raw[] = {'a', 0, 'b', 'X', 'X'};
    LM_LogOutputwithLen(id, LM_LOG_TRACE, raw, 3);
    ASSERT_EQ(m_Capture.lines.size(), 1u);
    const std::string& line = m_Capture.lines[0];
    EXPECT_EQ(m_Capture.lengths[0], line.size());
    EXPECT_EQ(line.substr(line.size() - 3), std::string(raw, 3));
}

TEST_F(LogTest, LongMessagesAreCutTo511Characters) {
    int id = Area("long");
    LM_LogOutput(id, LM_LOG_ERROR, "%s", std::string(600, 'm').c_str());
    ASSERT_EQ(m_Capture.lines.size(), 1u);
    const std::string& line = m_Capture.lines[0];
    size_t text = line.find("] ") + 2;
    EXPECT_EQ(line.size() - text, 511u);
}

TEST_F(LogTest, RejectedLinesNeverReachTheTarget) {
    int id = Area("filtered");
    LM_LogOutput(-1, LM_LOG_TRACE, "no area\n");
    LM_LogOutput(LM_Log::kMaxAreas + 3, LM_LOG_TRACE, "unregistered\n");
    LM_LogSetAreaSeverityMask(id, LM_LOG_ERROR);
    LM_LogOutput(id, LM_LOG_TRACE, "masked\n");
    LM_LogOutput(id, LM_LOG_PARAMS, "masked too\n");
    LM_LogOutput(id, LM_LOG_ERROR, "error passes\n");
    LM_LogActivateArea(id, false);
    LM_LogOutput(id, LM_LOG_ERROR, "inactive\n");
    LM_LogOutputwithLen(id, LM_LOG_ERROR, "inactive", 8);
    // Out-of-range ids are ignored by the setters too.
    LM_LogActivateArea(-5, true);
    LM_LogSetAreaSeverityMask(999, 0);
    ASSERT_EQ(m_Capture.lines.size(), 1u);
    EXPECT_NE(m_Capture.lines[0].find("error passes"), std::string::npos);
}

TEST_F(LogTest, RegistrationReusesNamesAndFailsPastFiftyAreas) {
    int first = Area("dup-area");
    int again = -1;
    EXPECT_EQ(LM_LogRegisterArea("dup-area", &again), 0);
    EXPECT_EQ(again, first);
    // Filling the table would disturb the other tests in this process: do it in a child.
    EXPECT_EXIT(
        {
            int id = 0;
            for (int i = 0; i < LM_Log::kMaxAreas; ++i) {
                LM_LogRegisterArea(("fill" + std::to_string(i)).c_str(), &id);
            }
            bool full = LM_LogRegisterArea("one-too-many", &id) == 1 && id == -1;
            bool known = LM_LogRegisterArea("dup-area", &id) == 0 && id == first;
            exit(full && known ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(LogTest, ScopeWritesEnteringAndExitingLines) {
    int id = Area("scope");
    { LM_LogScope scope("LMWSLibAE", "getSysInfo", id); }
    ASSERT_EQ(m_Capture.lines.size(), 2u);
    EXPECT_NE(m_Capture.lines[0].find("] Entering LMWSLibAE::getSysInfo\n"), std::string::npos);
    EXPECT_NE(m_Capture.lines[1].find("] Exiting LMWSLibAE::getSysInfo\n"), std::string::npos);
}

TEST(LogFileTarget, WithoutWrapKeepsTheFirstBytesExactly) {
    TempDir dir;
    const std::string path = dir / "t.log";
    LM_LogTarget fn = nullptr;
    void* ctx = nullptr;
    ASSERT_EQ(LM_LogGetFileTarget(path.c_str(), &fn, &ctx, 100, false), 0);
    for (char c : std::string("abcdefgh")) {
        std::string l(30, c);
        fn(l.c_str(), 0, ctx);
    }
    LM_LogReleaseFileTarget(nullptr, ctx);
    EXPECT_EQ(ReadFile(path), std::string(30, 'a') + std::string(30, 'b') + std::string(30, 'c') +
                                  std::string(10, 'd'));
}

TEST(LogFileTarget, WithWrapStartsAgainAtTheBeginningWithoutTruncating) {
    TempDir dir;
    const std::string path = dir / "t.log";
    LM_LogTarget fn = nullptr;
    void* ctx = nullptr;
    ASSERT_EQ(LM_LogGetFileTarget(path.c_str(), &fn, &ctx, 100, true), 0);
    fn(std::string(60, 'a').c_str(), 0, ctx);
    fn(std::string(30, 'b').c_str(), 30, ctx);
    fn(std::string(20, 'c').c_str(), 0, ctx);   // 110 > 100: rewind, write at 0
    fn(std::string(150, 'd').c_str(), 0, ctx);  // longer than the maximum: clipped to it
    LM_LogReleaseFileTarget(nullptr, ctx);
    EXPECT_EQ(ReadFile(path), std::string(100, 'd'));

    ASSERT_EQ(LM_LogGetFileTarget(path.c_str(), &fn, &ctx, 100, true), 0);  // "wb" empties it
    fn(std::string(90, 'a').c_str(), 0, ctx);
    fn(std::string(20, 'c').c_str(), 0, ctx);
    LM_LogReleaseFileTarget(nullptr, ctx);
    EXPECT_EQ(ReadFile(path), std::string(20, 'c') + std::string(70, 'a'));
}

TEST(LogFileTarget, UnopenablePathsAndNullRecords) {
    LM_LogTarget fn = LM_LogTarget(1);
    void* ctx = &fn;
    EXPECT_EQ(LM_LogGetFileTarget(nullptr, &fn, &ctx, 0, false), 2);
    EXPECT_EQ(fn, nullptr);
    EXPECT_EQ(ctx, nullptr);
    EXPECT_EQ(LM_LogGetFileTarget("/nonexistent-dir/x.log", &fn, &ctx, 0, false), 2);
    LM_LogReleaseFileTarget(nullptr, nullptr);  // ignored
}

TEST(LogConfigure, TargetsDirectoriesAndExportedAreaIds) {
    TempDir dir;
    const std::string prefix = dir.path() + "/";
    std::ofstream(prefix + "log.txt") << "stale text from the last run";
    ASSERT_EQ(ConfigureLogging(0x100 | 0x800, 2, prefix.c_str()), 0);
    EXPECT_EQ(ReadFile(prefix + "log.txt"), "");  // emptied at every start

    int wsae = -1, cfg = -1, recv = -1, sent = -1;
    LM_LogRegisterArea("LM_WSAE", &wsae);
    LM_LogRegisterArea("LM_WSCFGAE", &cfg);
    LM_LogRegisterArea("soap_recv", &recv);
    LM_LogRegisterArea("soap_sent", &sent);
    EXPECT_EQ(RECV_LMLogAreaID, recv);
    EXPECT_EQ(SENT_LMLogAreaID, sent);
    LM_LogOutput(wsae, LM_LOG_TRACE, "to the file\n");
    LM_LogOutput(cfg, LM_LOG_TRACE, "area switched off\n");
    LM_LogOutputwithLen(RECV_LMLogAreaID, LM_LOG_TRACE, "<raw/>\n", 7);
    LM_LogOutputwithLen(SENT_LMLogAreaID, LM_LOG_TRACE, "<off/>\n", 7);
    fflush(nullptr);  // the file stays open for the process: read what stdio has flushed
    std::string content = ReadFile(prefix + "log.txt");
    EXPECT_NE(content.find("-LM_WSAE] to the file\n"), std::string::npos) << content;
    EXPECT_NE(content.find("-soap_recv] <raw/>\n"), std::string::npos) << content;
    EXPECT_EQ(content.find("switched off"), std::string::npos);
    EXPECT_EQ(content.find("<off/>"), std::string::npos);

    EXPECT_EQ(ConfigureLogging(0x100, 2, "/nonexistent-dir/"), 2);
    EXPECT_EQ(ConfigureLogging(0x100, 0, ""), 1);

    // Console wins over the file when both bits are set.
    testing::internal::CaptureStdout();
    EXPECT_EQ(ConfigureLogging(0x100, 3, prefix.c_str()), 0);
    LM_LogOutput(wsae, LM_LOG_TRACE, "to the console\n");
    fflush(stdout);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_NE(out.find("-LM_WSAE] to the console\n"), std::string::npos);
    LM_LogSetTarget(nullptr, nullptr);
}

TEST(LogConfigure, NoDirectoryMeansTheWorkingFolder) {
    TempDir dir;
    EXPECT_EXIT(
        {
            if (chdir(dir.path().c_str()) != 0)
                exit(3);
            int rc = ConfigureLogging(0x100, 2, "");
            int id = -1;
            LM_LogRegisterArea("LM_WSAE", &id);
            LM_LogOutput(id, LM_LOG_TRACE, "here\n");
            fflush(nullptr);
            exit(rc == 0 && ReadFile("log.txt").find("here") != std::string::npos ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

}  // namespace
