// Movies run through lmstage as a movie developer runs them: exit status, trace output and
// error text are what the tests look at.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>

#include "TempDir.h"

namespace {

struct StageRun {
    int status = -1;
    std::string out;
    std::string err;
    double seconds = 0;
};

std::string Slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs `runner` with the movie (relative to movies/tests) and the extra arguments.
StageRun Stage(const char* runner, const std::string& movie, const std::string& extra = "") {
    TempDir dir;
    std::string command = std::string("'") + runner + "' '" + LM_TEST_MOVIES + "/" + movie + "' " +
                          extra + " >'" + (dir / "out") + "' 2>'" + (dir / "err") + "'";
    auto start = std::chrono::steady_clock::now();
    int raw = std::system(command.c_str());
    StageRun run;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    run.out = Slurp(dir / "out");
    run.err = Slurp(dir / "err");
    return run;
}

StageRun TestStage(const std::string& movie, const std::string& extra = "") {
    return Stage(LM_LMSTAGE_TEST, movie, extra);
}

TEST(StageMovies, QuitKeyFromAnotherThreadEndsTheHelloMovie) {
    StageRun run =
        Stage(LM_LMSTAGE, "hello.js",
              "--quit-after 1 --flashvars 'modelNumber=123456&path=%2Fvar%2Fx&plus=a+b&bare'");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("  bare = \n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  modelNumber = 123456\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  path = /var/x\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  plus = a+b\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("3D formats: 2D\n"), std::string::npos) << run.out;
    // The quit key reaches the movie before the movie ends.
    EXPECT_NE(run.out.find("key down 0x400100\n"), std::string::npos) << run.out;
}

TEST(StageMovies, ValuesCrossBetweenMovieAndNativeCodeWithTheirTypes) {
    StageRun run = TestStage("values.js");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
}

TEST(StageMovies, WorkerCompletionArrivesOnTheScriptThread) {
    StageRun run = TestStage("async.js");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_NE(run.out.find("started 0, second call -2\n"), std::string::npos) << run.out;
}

TEST(StageMovies, TimersFireInOrderAndCancel) {
    StageRun run = TestStage("timers.js");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
}

TEST(StageMovies, StopFromNativeCodeEndsTheRunAfterTheCurrentCall) {
    StageRun run = TestStage("quit.js");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("stopping\nstill running the current call\n"), std::string::npos)
        << run.out;
}

TEST(StageMovies, UncaughtScriptErrorNamesFileAndLineAndFails) {
    StageRun run = TestStage("script-error.js");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("about to fail\n"), std::string::npos) << run.out;
    EXPECT_NE(run.err.find("script-error.js:4"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("undefinedFunction"), std::string::npos) << run.err;
}

TEST(StageMovies, TimeOutGives124) {
    StageRun run = TestStage("forever.js", "--timeout 0.5");
    EXPECT_EQ(run.status, 124) << run.err;
    EXPECT_LT(run.seconds, 10);
}

TEST(StageMovies, MissingMovieAndBadArgumentsAreClearFailures) {
    StageRun missing = TestStage("no-such-movie.js");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("no-such-movie.js"), std::string::npos) << missing.err;

    StageRun bad = TestStage("forever.js", "--timeout soon");
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.err.find("--timeout"), std::string::npos) << bad.err;
}

// A settings document as another program would write it: one value, no indentation.
void WriteVersion(const std::string& path, const char* version) {
    std::ofstream(path) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<LMWSLib xmlns:LM1=\"http://www.lumora.example/api/\">"
                           "<LM1:Configuration Key=\"XMLVersion\"><LM1:Value>"
                        << version << "</LM1:Value></LM1:Configuration></LMWSLib>\n";
}

size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++n;
    }
    return n;
}

TEST(StageMovies, ConfigurationClassKeepsTheTokenProtectedThroughAnUpgrade) {
    TempDir dir;
    const std::string credentials = dir / "kecredentials.xml";
    const std::string preferences = dir / "kepreference.xml";
    const std::string token = "tok-e2e-5d1c0a";
    WriteVersion(credentials, "1.5");
    auto first = Stage(LM_LMSTAGE, "config.js",
                       "--flashvars 'mode=write&configurationFile=" + credentials +
                           "&settingsFile=" + preferences + "&token=" + token + "'");
    EXPECT_EQ(first.status, 0) << first.out << first.err;
    EXPECT_NE(first.out.find("config write done, failures 0\n"), std::string::npos) << first.out;
    std::string written = Slurp(preferences);
    EXPECT_EQ(written.find(token), std::string::npos) << written;
    EXPECT_EQ(Count(written, "Key=\"AuthToken\""), 1u) << written;
    EXPECT_EQ(Count(written, "Key=\"Volume\""), 1u) << written;

    // The firmware brings a newer configuration file: the next start keeps only three values.
    WriteVersion(credentials, "2.0");
    setenv("LMCFG_E2E_CREDENTIALS", credentials.c_str(), 1);
    setenv("LMCFG_E2E_PREFERENCES", preferences.c_str(), 1);
    auto second = Stage(LM_LMSTAGE, "config.js", "--flashvars 'mode=check&token=" + token + "'");
    unsetenv("LMCFG_E2E_CREDENTIALS");
    unsetenv("LMCFG_E2E_PREFERENCES");
    EXPECT_EQ(second.status, 0) << second.out << second.err;
    const size_t idAt = first.out.find("device id ");
    ASSERT_NE(idAt, std::string::npos) << first.out;
    EXPECT_NE(second.out.find(first.out.substr(idAt, 47)), std::string::npos) << second.out;
    std::string upgraded = Slurp(preferences);
    EXPECT_EQ(upgraded.find(token), std::string::npos) << upgraded;
    EXPECT_EQ(Count(upgraded, "Key="), 3u) << upgraded;
    for (const char* key : {"XMLVersion", "AuthToken", "DestinationUniqueID"}) {
        EXPECT_EQ(Count(upgraded, std::string("Key=\"") + key + "\""), 1u) << upgraded;
    }
}

}  // namespace
