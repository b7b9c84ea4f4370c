// Movies use the web-service class through lmstage against the service simulator on loopback.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "LmsimProcess.h"
#include "TempDir.h"

namespace {

struct StageRun {
    int status = -1;
    std::string out;
    double seconds = 0;
};

// Runs lmstage with the movie, every service host pointing at `sim`.
StageRun RunMovie(const LmsimProcess& sim, const std::string& movie) {
    setenv("LM_WS_PRODUCTION_HOST", "127.0.0.1", 1);
    setenv("LM_WS_STAGING_HOST", "127.0.0.1", 1);
    setenv("LM_WS_STAGING_API_HOST", "127.0.0.1", 1);
    setenv("LM_WS_HTTPS_PORT", std::to_string(sim.HttpsPort()).c_str(), 1);
    setenv("LM_WS_HTTP_PORT", std::to_string(sim.HttpPort()).c_str(), 1);
    setenv("LM_WS_CAFILE", sim.CaFile().c_str(), 1);
    TempDir dir;
    std::string command = std::string("'") + LM_LMSTAGE + "' '" + LM_TEST_MOVIES + "/" + movie +
                          "' --timeout 30 >'" + (dir / "out") + "' 2>&1";
    auto start = std::chrono::steady_clock::now();
    int raw = std::system(command.c_str());
    StageRun run;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    std::ifstream in(dir / "out");
    std::stringstream text;
    text << in.rdbuf();
    run.out = text.str();
    return run;
}

size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++n;
    }
    return n;
}

TEST(WSMovies, BrowseFromInitToTheStreamOfABoughtTitle) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    StageRun run = RunMovie(sim, "ws-browse.js");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("browse done, failures 0\n"), std::string::npos) << run.out;
    // Only the one-argument trace prints.
    EXPECT_EQ(Count(run.out, "FLASH TRACE == "), 1u) << run.out;
    EXPECT_NE(run.out.find("FLASH TRACE == one argument\n"), std::string::npos) << run.out;
}

TEST(WSMovies, QuitWhileAWorkerRunsWaitsForIt) {
    LmsimProcess sim({"--fault", "delay:1500"});
    ASSERT_TRUE(sim.Ready());
    StageRun run = RunMovie(sim, "ws-quit.js");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("init 0\nstarted 0\n"), std::string::npos) << run.out;
    // The answer is held back 1.5 s: the run ends only once the worker has it.
    EXPECT_GE(run.seconds, 1.5);
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
}

}  // namespace
