// The launcher under lmhost, end to end: lmhost plays the host application, the launcher runs a
// test movie through the kernel, and each test checks the launcher's lines in their order and
// the messages the host received.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>

#include "TempDir.h"

namespace {

std::string Slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string Quote(const std::string& text) {
    std::string quoted = "'";
    for (char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// Whether the parts occur in `text` in this order.
::testing::AssertionResult InOrder(const std::string& text,
                                   std::initializer_list<std::string> parts) {
    size_t at = 0;
    for (const std::string& part : parts) {
        size_t found = text.find(part, at);
        if (found == std::string::npos)
            return ::testing::AssertionFailure()
                   << "missing, or out of order: \"" << part << "\" in:\n"
                   << text;
        at = found + part.size();
    }
    return ::testing::AssertionSuccess();
}

struct Outcome {
    int status = -1;  // lmhost's
    std::string out;  // lmhost's and the launcher's standard output, as they came
    std::string err;
    double seconds = 0;
};

// One launcher run under lmhost, in a folder of its own that also holds the movie folder.
class Session {
public:
    Session() { mkdir((m_Dir / "movies").c_str(), 0700); }

    // Puts a test movie into the movie folder under the name the launcher's UI row asks for.
    Session& Movie(const std::string& testMovie, const std::string& rowName) {
        std::ifstream in(std::string(LM_TEST_MOVIES) + "/" + testMovie);
        std::ofstream(m_Dir / ("movies/" + rowName)) << in.rdbuf();
        return *this;
    }
    // Writes a movie of the given source text under the row's name.
    Session& MovieText(const std::string& source, const std::string& rowName) {
        std::ofstream(m_Dir / ("movies/" + rowName)) << source;
        return *this;
    }
    Session& Env(const std::string& assignment) {
        m_Env += " " + Quote(assignment);
        return *this;
    }
    const TempDir& Dir() const { return m_Dir; }

    Outcome Start(const std::string& hostOptions, const std::string& command) {
        std::string line = "env -u LM_NETWORK_IPC -u LM_FLASHVARS " +
                           Quote("LM_MOVIE_DIR=" + (m_Dir / "movies")) + m_Env + " " +
                           Quote(LM_LMHOST) + " --timeout 30 " + hostOptions + " -- " + command +
                           " >" + Quote(m_Dir / "out") + " 2>" + Quote(m_Dir / "err");
        auto start = std::chrono::steady_clock::now();
        int raw = std::system(line.c_str());
        Outcome run;
        run.seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
        run.out = Slurp(m_Dir / "out");
        run.err = Slurp(m_Dir / "err");
        return run;
    }

    Outcome Launch(const std::string& hostOptions, const std::string& arguments) {
        return Start(hostOptions, Quote(LM_LMLAUNCHER) + " " + arguments);
    }

private:
    TempDir m_Dir;
    std::string m_Env;
};

const char* const kExited0 = "lmhost: the program exited with status 0";

TEST(Launcher, TheHostAsksAndThePostedQuitKeyEndsTheMovie) {
    Session session;
    session.Movie("hello.js", "lmcesdk2_ke.js");
    Outcome run = session.Launch("--uninit-after 1", "2");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    // The main thread's lines and the listener's interleave; each thread's are in order.
    EXPECT_TRUE(InOrder(
        run.out, {"[LMEDK_1.5]LM UI type = 2 \n", "[LMEDK_1.5]lm_stagecraft_ipc_init enter \n",
                  "[LMEDK_1.5]start_lm_app_ipc_listen_thread create ok! \n",
                  "[LMEDK_1.5]Start LM FLASH Now \n", "key down 0x400100\n",
                  "[LMEDK_1.5]LM FLASH Run Over! \n", "[LMEDK_1.5]LM FLASH Run End \n",
                  "[LMEDK_1.5]Not active exit, release resource \n",
                  "[LMEDK_1.5]Call----> lm_stagecraft_exit_by_bdp_release \n"}));
    EXPECT_TRUE(InOrder(run.out, {"[LMEDK_1.5]Start LM FLASH Now \n", "[LMEDK_1.5]IPC get 3 \n",
                                  "[LMEDK_1.5]NETWORK_MSG_STUB_UNINIT !\n",
                                  "[LMEDK_1.5]Call----> lm_stagecraft_uninit_proc \n",
                                  "[LMEDK_1.5]exit_lm_stagecraft enter! \n",
                                  "[LMEDK_1.5]exit_lm_stagecraft leave! \n",
                                  "[LMEDK_1.5]ipc listener thread main has exit!\n"}));
    EXPECT_TRUE(
        InOrder(run.out, {"[LMEDK_1.5]IPC get 1 \n", "[LMEDK_1.5]NETWORK_MSG_STUB_INIT !\n"}));
    EXPECT_TRUE(Contains(run.out, "lmhost: received 4 UNINIT_RET\n")) << run.out;
    EXPECT_FALSE(Contains(run.out, "Active Exit")) << run.out;
    EXPECT_FALSE(Contains(run.out, "FINALIZE")) << run.out;
    EXPECT_TRUE(Contains(run.err, kExited0)) << run.err;
}

TEST(Launcher, AMovieThatEndsByItselfFinalizesAndIsAnswered) {
    Session session;
    session.Movie("script-error.js", "lmcesdk2_ke.js");
    Outcome run = session.Launch("", "2");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(InOrder(
        run.out,
        {"[LMEDK_1.5]Start LM FLASH Now \n", "[LMEDK_1.5]LM FLASH Run Over! \n",
         "[LMEDK_1.5]lm_stagecraft_finalize_proc calling! Active Exit \n",
         "[LMEDK_1.5]Call----> lm_stagecraft_finalize_proc \n",
         "[LMEDK_1.5]exit_lm_stagecraft leave! \n",
         "[LMEDK_1.5]stop_lm_app_ipc_listen_thread Enter! \n",
         "[LMEDK_1.5]STOP: send FINALIZE msg to BDP \n", "[LMEDK_1.5]LM FLASH Run End \n"}));
    EXPECT_TRUE(Contains(run.out, "lmhost: received 5 FINALIZE\n")) << run.out;
    EXPECT_FALSE(Contains(run.out, "Not active exit")) << run.out;
    EXPECT_FALSE(Contains(run.out, "UNINIT_RET")) << run.out;
    EXPECT_TRUE(Contains(run.err, kExited0)) << run.err;
}

TEST(Launcher, ALinkThatFailsIsTakenAsTheHostsRequest) {
    Session session;
    session.Movie("hello.js", "lmcesdk2_ke.js");
    Outcome run = session.Launch("--drop-link-after 1", "2");
    // The program quits and releases, but the host it would tell is gone.
    EXPECT_EQ(run.status, 1) << run.out << run.err;
    EXPECT_TRUE(InOrder(
        run.out,
        {"[LMEDK_1.5]Start LM FLASH Now \n",
         "[LMEDK_1.5]listener thread main, lm_app_recv_ipc_msg() failed! ERR =-1 ,Release flash "
         "resource \n",
         "[LMEDK_1.5]Call----> lm_stagecraft_uninit_proc \n", "key down 0x400100\n",
         "[LMEDK_1.5]LM FLASH Run Over! \n", "[LMEDK_1.5]Not active exit, release resource \n",
         "[LMEDK_1.5]IPC:,NETWORK_MSG_STUB_UNINIT_RET failed! ERR = \n"}));
    EXPECT_TRUE(Contains(run.out, "[LMEDK_1.5]exit_lm_stagecraft leave! \n")) << run.out;
    EXPECT_FALSE(Contains(run.out, "Active Exit")) << run.out;
    EXPECT_TRUE(Contains(run.err, kExited0)) << run.err;
}

TEST(Launcher, AnEarlyRequestWaitsForTheMovieToStart) {
    Session session;
    // The stage instance is published once the movie is compiled; a movie of some megabytes
    // takes the runtime about a second to compile, so the host's request, sent at once, comes
    // first.
    std::string source = "// slow to compile\n";
    for (int i = 0; i < 60000; ++i)
        source +=
            "function f" + std::to_string(i) + "(a) { return a + " + std::to_string(i) + "; }\n";
    source += "trace(\"ready\");\nsetInterval(function () {}, 50);\n";
    session.MovieText(source, "lmcesdk2_ke.js");
    Outcome run = session.Launch("--uninit-after 0", "2");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(InOrder(run.out,
                        {"[LMEDK_1.5]NETWORK_MSG_STUB_UNINIT !\n",
                         "[LMEDK_1.5]exit_lm_stagecraft: wait stagecraft instance to be created \n",
                         "[LMEDK_1.5]exit_lm_stagecraft leave! \n"}));
    EXPECT_TRUE(
        InOrder(run.out, {"[LMEDK_1.5]Start LM FLASH Now \n", "[LMEDK_1.5]LM FLASH Run Over! \n",
                          "[LMEDK_1.5]Not active exit, release resource \n"}));
    EXPECT_TRUE(Contains(run.out, "lmhost: received 4 UNINIT_RET\n")) << run.out;
}

TEST(Launcher, AnUnpromptedFinalizeDoneEndsTheLinkBeforeTheMovieEnds) {
    Session session;
    session.Movie("error-later.js", "lmcesdk2_ke.js");
    Outcome run = session.Launch("--finalize-done-first", "2");
    // The release report goes out over a closed queue: the host hears nothing.
    EXPECT_EQ(run.status, 1) << run.out << run.err;
    EXPECT_TRUE(InOrder(run.out, {"[LMEDK_1.5]IPC get 6 \n",
                                  "[LMEDK_1.5]listener thread main,lm_app_recv_ipc_msg() "
                                  "NETWORK_MSG_STUB_FINALIZE_DONE!\n",
                                  "[LMEDK_1.5]ipc listener thread main has exit!\n", "ending now\n",
                                  "[LMEDK_1.5]LM FLASH Run Over! \n",
                                  "[LMEDK_1.5]Not active exit, release resource \n",
                                  "[LMEDK_1.5]IPC:,NETWORK_MSG_STUB_UNINIT_RET failed! ERR = \n"}));
    EXPECT_FALSE(Contains(run.out, "Active Exit")) << run.out;
    EXPECT_FALSE(Contains(run.out, "lmhost: received")) << run.out;
    EXPECT_TRUE(Contains(run.err, kExited0)) << run.err;
}

TEST(Launcher, WithoutTheKernelTheHostIsStillToldOfTheRelease) {
    // A copy of the launcher with the message queue library but no kernel beside it.
    Session session;
    const TempDir& dir = session.Dir();
    std::string copy = "mkdir " + Quote(dir / "bin") + " " + Quote(dir / "lib") + " && cp " +
                       Quote(LM_LMLAUNCHER) + " " + Quote(dir / "bin") + " && cp " +
                       Quote(LM_NETWORKIPC_LIBRARY) + " " + Quote(dir / "lib");
    ASSERT_EQ(std::system(copy.c_str()), 0);
    Outcome run = session.Start("", Quote(dir / "bin/lmlauncher") + " 2");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(Contains(run.err, "Failed to load libIAEKernel.so: ")) << run.err;
    EXPECT_TRUE(InOrder(run.out, {"[LMEDK_1.5]LM FLASH Run End \n",
                                  "[LMEDK_1.5]Not active exit, release resource \n",
                                  "[LMEDK_1.5]Call----> lm_stagecraft_exit_by_bdp_release \n"}));
    EXPECT_TRUE(Contains(run.out, "lmhost: received 4 UNINIT_RET\n")) << run.out;
    EXPECT_FALSE(Contains(run.out, "Start LM FLASH Now")) << run.out;
}

TEST(Launcher, AWindowSetThatCannotBeCreatedStillEndsAndTellsTheHost) {
    Session session;
    session.Movie("syntax-error.js", "lmcesdk2_ke.js");
    Outcome run = session.Launch("", "2");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(InOrder(
        run.out,
        {"[LMEDK_1.5]CreateAndConfigureStageWindowSet fail \n",
         "[LMEDK_1.5]lm_stagecraft_finalize_proc calling! Active Exit \n",
         "[LMEDK_1.5]exit_lm_stagecraft enter! \n",
         "[LMEDK_1.5]exit_lm_stagecraft: no stagecraft instance any more, no key to post \n",
         "[LMEDK_1.5]STOP: send FINALIZE msg to BDP \n", "[LMEDK_1.5]LM FLASH Run End \n"}));
    EXPECT_TRUE(Contains(run.out, "lmhost: received 5 FINALIZE\n")) << run.out;
    EXPECT_FALSE(Contains(run.out, "Start LM FLASH Now")) << run.out;
    EXPECT_FALSE(Contains(run.out, "wait stagecraft instance")) << run.out;
    EXPECT_LT(run.seconds, 10);
}

TEST(Launcher, FlashvarsFromTheEnvironmentReachTheRowsMovieWhole) {
    Session session;
    session.Movie("hello.js", "lmcesdk2_ke.js").Env("LM_FLASHVARS=modelNumber=999&onlyThis=1");
    Outcome run = session.Launch("--uninit-after 1", "2");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(InOrder(
        run.out, {"[LMEDK_1.5]** modelNumber=999&onlyThis=1 **\n", "[LMEDK_1.5]LM UI type = 2 \n",
                  "flashvars: 2\n", "  modelNumber = 999\n", "  onlyThis = 1\n"}));
}

TEST(Launcher, OnlyTheFirstCharacterCountsAndRowThreeMixesItsCodes) {
    Session session;
    session.Movie("hello.js", "lmcesdk2_ut.js");
    Outcome run = session.Launch("--uninit-after 1", "3abc");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(
        InOrder(run.out, {"[LMEDK_1.5]LM UI type = 3 \n",
                          "  configurationFile = /var/local/misc/lumora/umcredentials.xml\n",
                          "  settingsFile = /var/local/misc/lumora/umpreference.xml\n"}));
    EXPECT_FALSE(Contains(run.out, "**")) << run.out;
}

TEST(Launcher, WithoutArgumentsTheProgramNameGivesTheDigit) {
    Session session;
    session.Movie("hello.js", "lmcesdk2_ke.js");
    const TempDir& dir = session.Dir();
    ASSERT_EQ(symlink(LM_LMLAUNCHER, (dir / "2launcher").c_str()), 0);
    // Found through PATH, so that the program name is just "2launcher".
    session.Env("PATH=" + dir.path() + ":" + std::getenv("PATH"));
    Outcome run = session.Start("--uninit-after 1", "2launcher");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(
        InOrder(run.out, {"[LMEDK_1.5]LM UI type = 2 \n",
                          "  configurationFile = /var/local/misc/lumora/kecredentials.xml\n",
                          "lmhost: received 4 UNINIT_RET\n"}));
}

TEST(Launcher, AUITypeOutsideTheTableRunsNothingAndTellsTheHost) {
    Session session;
    Outcome run = session.Launch("", "9");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(InOrder(run.out, {"[LMEDK_1.5]LM UI type = 9 \n",
                                  "[LMEDK_1.5]LM UI type 9 is out of range 0-5, no movie to run \n",
                                  "[LMEDK_1.5]Not active exit, release resource \n"}));
    EXPECT_TRUE(Contains(run.out, "lmhost: received 4 UNINIT_RET\n")) << run.out;
    EXPECT_FALSE(Contains(run.err, "Failed to load")) << run.err;
}

// lmhost's own verdicts, with programs that are not the launcher.
TEST(LMHost, AProgramThatNeverToldTheHostFails) {
    Session session;
    Outcome run = session.Start("", "true");
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_TRUE(Contains(run.err, kExited0)) << run.err;
}

TEST(LMHost, TheTimeOutKillsTheProgram) {
    Session session;
    Outcome run = session.Start("--timeout 0.5", "sleep 20");
    EXPECT_EQ(run.status, 124) << run.err;
    EXPECT_LT(run.seconds, 10);
}

TEST(LMHost, BadArgumentsAreRefused) {
    Session session;
    EXPECT_EQ(session.Start("--uninit-after soon", "true").status, 2);
    EXPECT_EQ(session.Start("--bogus", "true").status, 2);
    EXPECT_EQ(session.Start("", "").status, 2);
}

}  // namespace
