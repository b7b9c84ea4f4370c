// Movies use the web-service class through lmstage against the service simulator on loopback.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "LmsimProcess.h"
#include "TempDir.h"

namespace {

struct StageRun {
    int status = -1;
    std::string out;
    double seconds = 0;
};

// Every service host of the client processes started from here is `sim`.
void PointClientAt(const LmsimProcess& sim) {
    setenv("LM_WS_PRODUCTION_HOST", "127.0.0.1", 1);
    setenv("LM_WS_STAGING_HOST", "127.0.0.1", 1);
    setenv("LM_WS_STAGING_API_HOST", "127.0.0.1", 1);
    setenv("LM_WS_HTTPS_PORT", std::to_string(sim.HttpsPort()).c_str(), 1);
    setenv("LM_WS_HTTP_PORT", std::to_string(sim.HttpPort()).c_str(), 1);
    setenv("LM_WS_CAFILE", sim.CaFile().c_str(), 1);
}

// Runs lmstage with the movie against `sim`; `options` go on lmstage's command line as they are.
StageRun RunMovie(const LmsimProcess& sim, const std::string& movie,
                  const std::string& options = "") {
    PointClientAt(sim);
    TempDir dir;
    std::string command = std::string("'") + LM_LMSTAGE + "' '" + LM_TEST_MOVIES + "/" + movie +
                          "' --timeout 30 " + options + " >'" + (dir / "out") + "' 2>&1";
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

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The lines of `log` that start with `prefix`.
std::vector<std::string> LinesStarting(const std::string& log, const std::string& prefix) {
    std::vector<std::string> lines;
    std::istringstream in(log);
    for (std::string line; std::getline(in, line);) {
        if (line.compare(0, prefix.size(), prefix) == 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

// Waits until `path` has not grown for `quietMs`, at most `limitMs`.
void WaitUntilQuiet(const std::string& path, int quietMs, int limitMs) {
    size_t size = ReadFile(path).size();
    int quiet = 0;
    for (int waited = 0; waited < limitMs && quiet < quietMs; waited += 50) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        size_t now = ReadFile(path).size();
        quiet = now == size ? quiet + 50 : 0;
        size = now;
    }
}

TEST(WSMovies, BrowseFromInitToTheStreamOfABoughtTitle) {
    TempDir dir;
    LmsimProcess sim({"--request-log", dir / "requests"});
    ASSERT_TRUE(sim.Ready());
    StageRun run = RunMovie(sim, "ws-browse.js");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("browse done, failures 0\n"), std::string::npos) << run.out;
    // Only the one-argument trace prints.
    EXPECT_EQ(Count(run.out, "FLASH TRACE == "), 1u) << run.out;
    EXPECT_NE(run.out.find("FLASH TRACE == one argument\n"), std::string::npos) << run.out;
    // Without a file cache nothing is fetched ahead: the one page the movie asked for.
    sim.Stop();
    const std::string requests = ReadFile(dir / "requests");
    EXPECT_EQ(LinesStarting(requests, "SOAP getTitlesByNavigation").size(), 1u) << requests;
}

// A movie that checks for itself ran through: exit 0, no "FAIL" line, and its closing line.
void ExpectPassed(const StageRun& run, const std::string& closingLine) {
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(closingLine + "\n"), std::string::npos) << run.out;
}

// Every asynchronous method once, each result checked property by property against its shape.
TEST(WSMovies, EveryAsynchronousMethodDeliversItsShape) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    TempDir cache;
    ExpectPassed(RunMovie(sim, "ws-shapes.js", "--flashvars 'cache=" + cache.path() + "/'"),
                 "shapes done, methods 46, failures 0");
}

TEST(WSMovies, CloneSysInfoAndClearingTheCache) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    TempDir cache;
    ExpectPassed(RunMovie(sim, "ws-clone.js", "--flashvars 'cache=" + cache.path() + "/'"),
                 "clone done, failures 0");
    EXPECT_EQ(std::system(("ls '" + cache.path() + "' | grep -q '[.]lm$'").c_str()) == 0, false)
        << "the cache database is still there";
}

TEST(WSMovies, PagesAroundTheOneShownAndTheirBoxArtAreFetchedAhead) {
    TempDir dir;
    const std::string log = dir / "requests";
    LmsimProcess sim({"--request-log", log});
    ASSERT_TRUE(sim.Ready());
    const std::string cache = dir / "cache";
    const std::string go = dir / "go";
    ASSERT_EQ(std::system(("mkdir '" + cache + "'").c_str()), 0);
    StageRun run;
    std::thread movie([&] {
        run = RunMovie(sim, "ws-prefetch.js", "--flashvars 'cache=" + cache + "/&go=" + go + "'");
    });
    // The movie shows page 1 and goes idle; the prefetch runs until the log stays quiet.
    for (int i = 0; i < 200 && LinesStarting(ReadFile(log), "SOAP getTitles").size() < 2; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    WaitUntilQuiet(log, 1500, 20000);
    sim.Stop();
    std::ofstream(go).put('\n');
    movie.join();
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("prefetch done, failures 0\n"), std::string::npos) << run.out;

    // The probe's page, then page 1 and the eight pages around it, next and previous in turn,
    // each asked for once.
    const std::string text = ReadFile(log);
    std::vector<std::string> pages;
    for (const std::string& line : LinesStarting(text, "SOAP getTitlesByNavigation")) {
        size_t at = line.find("CurrentPageNumber=");
        pages.push_back(line.substr(at + 18, line.find(' ', at) - at - 18));
    }
    EXPECT_EQ(pages, (std::vector<std::string>{"1", "1", "2", "10", "3", "9", "4", "8", "5", "7"}))
        << text;
    // The box art of the eight prefetched pages, each image once, is on disk.
    const std::vector<std::string> images = LinesStarting(text, "GET /images/boxart/");
    EXPECT_GE(images.size(), 8u) << text;
    std::vector<std::string> unique(images);
    std::sort(unique.begin(), unique.end());
    EXPECT_EQ(std::unique(unique.begin(), unique.end()), unique.end()) << text;
    const std::string count = "ls '" + cache + "' | grep -c '[.]jpg$' > '" + (dir / "n") + "'";
    (void)std::system(count.c_str());
    EXPECT_EQ(std::stoul("0" + ReadFile(dir / "n")), images.size());
}

// Under the sanitizer builds this is the leak and race check of the call cycle: every record,
// parameter block, worker and callback handle of 1,000 calls is released.
TEST(WSMovies, AThousandCallsInTurnOnOneInstance) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    TempDir cache;
    StageRun run =
        RunMovie(sim, "ws-thousand.js", "--timeout 240 --flashvars 'cache=" + cache.path() + "/'");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out.find("FAIL"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("calls 1000 in "), std::string::npos) << run.out;
}

// Answers before the failing one: the probe's page, the movie client's cache check, page 1, the
// prefetch client's cache check, pages 2 and 10. Page 3 fails.
TEST(WSMovies, AFailingPageEndsThePrefetchAndTheEarlierPagesStay) {
    TempDir dir;
    const std::string log = dir / "requests";
    LmsimProcess sim({"--request-log", log});
    ASSERT_TRUE(sim.Ready());
    ASSERT_TRUE(sim.ArmFault("http-status", "500", 1, 6));
    const std::string cache = dir / "cache";
    const std::string go = dir / "go";
    ASSERT_EQ(std::system(("mkdir '" + cache + "'").c_str()), 0);
    StageRun run;
    std::thread movie([&] {
        run = RunMovie(sim, "ws-prefetch.js",
                       "--flashvars 'cache=" + cache + "/&go=" + go + "&last=2'");
    });
    for (int i = 0; i < 200 && LinesStarting(ReadFile(log), "SOAP getTitles").size() < 2; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    WaitUntilQuiet(log, 1500, 20000);
    sim.Stop();
    std::ofstream(go).put('\n');
    movie.join();
    // Page 2, fetched before the failure, still comes from the cache.
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("page 2 from the cache"), std::string::npos) << run.out;
    const std::string text = ReadFile(log);
    std::vector<std::string> pages;
    for (const std::string& line : LinesStarting(text, "SOAP getTitlesByNavigation")) {
        size_t at = line.find("CurrentPageNumber=");
        pages.push_back(line.substr(at + 18, line.find(' ', at) - at - 18));
    }
    EXPECT_EQ(pages, (std::vector<std::string>{"1", "1", "2", "10"})) << text;
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

// The device demo as the host runs it: lmhost starts lmlauncher with UI type 2 and its movie,
// which walks the simulator's catalogue up to a stream location.
StageRun RunDeviceDemo(const LmsimProcess& sim, const std::string& hostOptions,
                       const std::string& extraFlashvars, const TempDir& dir) {
    PointClientAt(sim);
    std::string flashvars = "modelNumber=BD-TEST&firmwareVersion=FW_TEST&configurationFile=" +
                            (dir / "kecredentials.xml") +
                            "&settingsFile=" + (dir / "kepreference.xml") + extraFlashvars;
    std::string command = "env LM_MOVIE_DIR='" + std::string(LM_SOURCE_DIR) + "/movies' " +
                          "LM_FLASHVARS='" + flashvars + "' '" + LM_LMHOST + "' --timeout 60 " +
                          hostOptions + " -- '" + LM_LMLAUNCHER + "' 2 >'" + (dir / "out") +
                          "' 2>&1";
    int raw = std::system(command.c_str());
    StageRun run;
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    std::ifstream in(dir / "out");
    std::stringstream text;
    text << in.rdbuf();
    run.out = text.str();
    return run;
}

TEST(DeviceDemo, WalksTheCatalogueAndLeavesWhenTheHostAsks) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    TempDir dir;
    StageRun run = RunDeviceDemo(sim, "--uninit-after 10", "", dir);
    EXPECT_EQ(run.status, 0) << run.out;
    for (const char* line :
         {"demo: genre 12 is Spy\n", "token stored, protected\n",
          "demo: stream location http://127.0.0.1:", "demo: the walk is over",
          "[LMEDK_1.5]Not active exit, release resource \n", "lmhost: received 4 UNINIT_RET\n"})
        EXPECT_NE(run.out.find(line), std::string::npos) << line << "\n" << run.out;
    // The token the movie stored is protected: the settings file never holds it in plain text.
    std::ifstream settings(dir / "kepreference.xml");
    std::stringstream text;
    text << settings.rdbuf();
    EXPECT_NE(text.str().find("AuthToken"), std::string::npos);
    EXPECT_EQ(text.str().find("LMT-"), std::string::npos) << text.str();
}

TEST(DeviceDemo, QuitsByItselfThroughTheActivePath) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    TempDir dir;
    StageRun run = RunDeviceDemo(sim, "", "&autoquit=1", dir);
    EXPECT_EQ(run.status, 0) << run.out;
    for (const char* line :
         {"demo: the walk is over, quitting\n", "Active Exit \n", "lmhost: received 5 FINALIZE\n"})
        EXPECT_NE(run.out.find(line), std::string::npos) << line << "\n" << run.out;
    EXPECT_EQ(run.out.find("UNINIT_RET"), std::string::npos) << run.out;
}

}  // namespace
