// lmws, the command-line client, run as a child process: usage errors stop it before any
// network use, set-up and operation failures set the exit status without hiding the other
// lines, and against the simulator it prints pages of titles, also from its cache file once the
// service is gone.
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "LmsimProcess.h"
#include "LmwsOperations.h"

namespace {

using nlohmann::json;

// A fresh folder, removed with its contents at the end of the test.
struct TempDir {
    std::string path;
    TempDir() {
        char templ[] = "/tmp/lmwstestXXXXXX";
        path = mkdtemp(templ);
    }
    ~TempDir() { (void)std::system(("rm -rf '" + path + "'").c_str()); }
};

// Every service host is 127.0.0.1 at the given ports; `caFile` "" trusts no extra CA.
void PointAt(int httpsPort, int httpPort, const std::string& caFile) {
    for (const char* name :
         {"LM_WS_PRODUCTION_HOST", "LM_WS_STAGING_HOST", "LM_WS_STAGING_API_HOST",
          "LM_WS_ADULT_PRODUCTION_HOST", "LM_WS_ADULT_STAGING_HOST", "LM_WS_WEB_HOST"}) {
        setenv(name, "127.0.0.1", 1);
    }
    setenv("LM_WS_HTTPS_PORT", std::to_string(httpsPort).c_str(), 1);
    setenv("LM_WS_HTTP_PORT", std::to_string(httpPort).c_str(), 1);
    if (caFile.empty()) {
        unsetenv("LM_WS_CAFILE");
    } else {
        setenv("LM_WS_CAFILE", caFile.c_str(), 1);
    }
}

// Nothing listens on port 1: connections are refused at once.
void NoServer() {
    PointAt(1, 1, "");
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// What one run of lmws left: exit status, stdout, stderr and, with `jsonLines`, stdout's lines
// parsed as JSON (a line that is not JSON then fails the test).
struct LmwsRun {
    int status = -1;
    std::string out;
    std::string err;
    std::vector<json> lines;
};

LmwsRun Lmws(const std::vector<std::string>& args, bool jsonLines = true) {
    TempDir dir;
    const std::string outPath = dir.path + "/out";
    const std::string errPath = dir.path + "/err";
    pid_t pid = fork();
    if (pid == 0) {
        int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        std::vector<std::string> all = {LMWS_PATH};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& a : all) {
            argv.push_back(&a[0]);
        }
        argv.push_back(nullptr);
        execv(LMWS_PATH, argv.data());
        _exit(127);
    }
    LmwsRun run;
    // A hung client fails the test instead of hanging it.
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    int status = 0;
    while (waitpid(pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
            ADD_FAILURE() << "lmws did not end within 60 s";
            return run;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = ReadFile(outPath);
    run.err = ReadFile(errPath);
    std::istringstream lines(run.out);
    for (std::string line; jsonLines && std::getline(lines, line);) {
        json parsed = json::parse(line, nullptr, false);
        EXPECT_FALSE(parsed.is_discarded()) << "not JSON on stdout: " << line;
        run.lines.push_back(parsed);
    }
    return run;
}

// A loopback port that accepts and drops every connection, counting them: shows whether a run
// used the network at all.
class ConnectionCounter {
public:
    ConnectionCounter() {
        m_Socket = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t len = sizeof(addr);
        if (bind(m_Socket, reinterpret_cast<sockaddr*>(&addr), len) != 0 ||
            listen(m_Socket, 16) != 0 ||
            getsockname(m_Socket, reinterpret_cast<sockaddr*>(&addr), &len) != 0) {
            return;
        }
        m_Port = ntohs(addr.sin_port);
        m_Thread = std::thread([this] {
            pollfd p = {m_Socket, POLLIN, 0};
            while (!m_Stop.load(std::memory_order_acquire)) {
                if (poll(&p, 1, 20) > 0) {
                    int c = accept(m_Socket, nullptr, nullptr);
                    if (c >= 0) {
                        m_Count.fetch_add(1, std::memory_order_release);
                        close(c);
                    }
                }
            }
        });
    }
    ~ConnectionCounter() {
        m_Stop.store(true, std::memory_order_release);
        if (m_Thread.joinable()) {
            m_Thread.join();
        }
        close(m_Socket);
    }
    ConnectionCounter(const ConnectionCounter&) = delete;
    ConnectionCounter& operator=(const ConnectionCounter&) = delete;

    int Port() const { return m_Port; }
    int Count() const { return m_Count.load(std::memory_order_acquire); }

private:
    int m_Socket = -1;
    int m_Port = 0;
    std::atomic<bool> m_Stop{false};
    std::atomic<int> m_Count{0};
    std::thread m_Thread;
};

// ---- The command line (no service) ----

TEST(LmwsCommandLine, UsageErrorsNameTheArgumentAndStayOffTheNetwork) {
    ConnectionCounter counter;
    ASSERT_GT(counter.Port(), 0);
    PointAt(counter.Port(), counter.Port(), "");
    struct Case {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{}, "no operation given"},
        {{"--bogus", "getNavigation"}, "unknown option '--bogus'"},
        {{"getNavigation", "--api-key"}, "getNavigation: expects 0 argument(s) (), got 1"},
        {{"--api-key"}, "--api-key: missing value"},
        {{"--quiet=1", "getNavigation"}, "--quiet takes no value"},
        {{"--cache-type", "x", "getNavigation"}, "--cache-type: 'x' is not a number"},
        {{"--cache-type=3", "getNavigation"}, "--cache-type: 3 is out of range (0..2)"},
        {{"--proxy-port=0x10000", "getNavigation"}, "--proxy-port: 0x10000 is out of range"},
        {{"--env", "-1", "getNavigation"}, "--env: -1 is out of range"},
        {{"--device-type", "99999999999999999999", "getNavigation"},
         "--device-type: 99999999999999999999 is out of range"},
        {{"--env", "2 ", "getNavigation"}, "--env: '2 ' is not a number"},
        {{"getNothing"}, "unknown operation 'getNothing'"},
        {{"getTitles", "12", "1", "20"},
         "getTitles: expects 4 argument(s) (genreID page itemsPerPage purchaseType), got 3"},
        // The first operation is fine; nothing runs because the second is not.
        {{"getNavigation", "--", "getTitles", "12", "x", "20", "2"},
         "getTitles: page: 'x' is not a number"},
        {{"getGenreLabel", "2147483648"}, "getGenreLabel: genreID: 2147483648 is out of range"},
        {{"getTitlesByGenreIDs", "12,,13", "1", "20", "2"},
         "genreIDs: '12,,13' is not a comma-separated list of numbers"},
        {{"getNavigation", "--"}, "operation is missing"},
        {{"--", "getNavigation"}, "operation is missing"},
    };
    for (const Case& c : cases) {
        std::string line;
        for (const std::string& a : c.args) {
            line += "[" + a + "]";
        }
        LmwsRun run = Lmws(c.args);
        EXPECT_EQ(run.status, 2) << line;
        EXPECT_EQ(run.out, "") << line;
        EXPECT_NE(run.err.find(c.message), std::string::npos) << line << "\n" << run.err;
    }
    EXPECT_EQ(counter.Count(), 0);

    // The same port sees a valid line's set-up ask for the file type: the count above means
    // something.
    LmwsRun valid = Lmws({"getUserAgent"});
    EXPECT_EQ(valid.status, 0) << valid.err;
    EXPECT_GT(counter.Count(), 0);
}

TEST(LmwsCommandLine, HelpListsEveryOptionWithItsDefaultAndEveryOperation) {
    LmwsRun run = Lmws({"--help"}, false);
    EXPECT_EQ(run.status, 0);
    const char* options[] = {
        "api-key",    "auth-token", "device-id",  "device-type", "user",           "password",
        "base-url",   "type",       "env",        "cache-type",  "cache-data",     "cache-limit",
        "cache-path", "proxy-host", "proxy-port", "proxy-user",  "proxy-password", "access-type",
        "revision",   "firmware",   "model"};
    for (const char* name : options) {
        size_t at = run.out.find(std::string("  --") + name + " ");
        ASSERT_NE(at, std::string::npos) << name;
        size_t next = run.out.find("\n  -", at + 1);
        EXPECT_NE(run.out.substr(at, next - at).find("(default "), std::string::npos) << name;
    }
    // Each operation's line names its arguments in the function's order.
    for (const LmwsOperation& op : LmwsOperationTable()) {
        size_t at = run.out.find(std::string("\n  ") + op.name + (op.args.empty() ? "\n" : " "));
        ASSERT_NE(at, std::string::npos) << op.name;
        std::string line = run.out.substr(at + 1, run.out.find('\n', at + 1) - at - 1);
        size_t from = 0;
        for (const LmwsParam& a : op.args) {
            from = line.find(std::string(" ") + a.name + ":", from);
            ASSERT_NE(from, std::string::npos) << line << " lacks " << a.name;
        }
    }
}

// ---- Without the service: set-up options that need no network ----

TEST(LmwsOffline, TextOptionsReachTheClientAndInvalidUtf8IsReplaced) {
    NoServer();
    // Both option forms; the firmware text is not UTF-8.
    LmwsRun run =
        Lmws({"--access-type", "2", "--revision=r1", "--firmware", "fw\xff", "getUserAgent"});
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(run.lines.size(), 1u) << run.out;
    EXPECT_EQ(run.lines[0]["operation"], "getUserAgent");
    EXPECT_EQ(run.lines[0]["status"], 0);
    EXPECT_EQ(run.lines[0]["result"]["Text"], "LMSDK: fw\xEF\xBF\xBD|r1");
}

TEST(LmwsOffline, FailedSetupIsReportedAndNothingRuns) {
    NoServer();
    TempDir dir;
    LmwsRun run = Lmws({"--access-type=2", "--cache-type=2", "--cache-path", dir.path,
                        "--cache-limit", "1000", "getUserAgent", "--", "getUserAgent"});
    EXPECT_EQ(run.status, 1);
    ASSERT_EQ(run.lines.size(), 1u) << run.out;
    EXPECT_EQ(run.lines[0]["operation"], "Setup");
    EXPECT_EQ(run.lines[0]["status"], -1000);
}

// ---- Against the simulator ----

class LmwsAgainstLmsim : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_Sim.Ready());
        PointAt(m_Sim.HttpsPort(), m_Sim.HttpPort(), m_Sim.CaFile());
    }
    LmsimProcess m_Sim;
};

// The checks of one getTitles 12 1 20 2 line.
void ExpectSpyPageOne(const json& line) {
    EXPECT_EQ(line["operation"], "getTitles");
    EXPECT_EQ(line["status"], 0);
    const json& result = line["result"];
    EXPECT_EQ(result["ResponseCode"], 0);
    EXPECT_EQ(result["GenreID"], 12);
    EXPECT_EQ(result["CurrentPageNumber"], 1);
    EXPECT_EQ(result["ItemsPerPage"], 20);
    EXPECT_GE(result["TotalItems"].get<int>(), 20);
    ASSERT_EQ(result["Titles"].size(), 20u);
    for (size_t i = 0; i < 20; ++i) {
        const json& title = result["Titles"][i];
        EXPECT_GE(title["TitleID"].get<int>(), 100000);
        EXPECT_EQ(title["TitlePosition"], i + 1);
        EXPECT_TRUE(title["IsTvListing"].is_boolean());
        EXPECT_TRUE(title["AvailableProducts"].is_array());
    }
}

TEST_F(LmwsAgainstLmsim, PrintsAPageOfTitlesAsTheOnlyLineOnStdout) {
    LmwsRun run = Lmws({"--env", "2", "getTitles", "12", "1", "20", "2"});
    EXPECT_EQ(run.status, 0) << run.err;
    // The library's own console output went to stderr, not between the JSON lines.
    ASSERT_EQ(run.lines.size(), 1u) << run.out;
    ExpectSpyPageOne(run.lines[0]);
}

TEST_F(LmwsAgainstLmsim, FileCacheAnswersOnceTheServiceIsGone) {
    TempDir cache;
    const std::vector<std::string> args = {
        "--env", "2", "--cache-type", "2", "--cache-path", cache.path, "getTitles",
        "12",    "1", "20",           "2"};
    LmwsRun online = Lmws(args);
    EXPECT_EQ(online.status, 0) << online.err;
    ASSERT_EQ(online.lines.size(), 1u) << online.out;
    ExpectSpyPageOne(online.lines[0]);

    m_Sim.Stop();
    LmwsRun offline = Lmws(args);
    EXPECT_EQ(offline.status, 0) << offline.err;
    ASSERT_EQ(offline.lines.size(), 1u) << offline.out;
    EXPECT_EQ(offline.lines[0], online.lines[0]);

    // Without the cache the same line now fails: the page above did come from the file.
    LmwsRun uncached = Lmws({"--env", "2", "getTitles", "12", "1", "20", "2"});
    EXPECT_EQ(uncached.status, 1);
    ASSERT_EQ(uncached.lines.size(), 1u) << uncached.out;
    EXPECT_NE(uncached.lines[0]["status"], 0);
}

TEST_F(LmwsAgainstLmsim, FailedOperationSetsTheExitStatusAndTheOthersStillRun) {
    LmwsRun run = Lmws({"-q", "getGenreLabel", "12", "--", "getGenreLabel", "99999", "--",
                        "getTitlesByGenreIDs", "12,13", "1", "5", "2"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");  // --quiet: the library's console output is dropped
    ASSERT_EQ(run.lines.size(), 3u) << run.out;

    EXPECT_EQ(run.lines[0]["operation"], "getGenreLabel");
    EXPECT_EQ(run.lines[0]["status"], 0);
    EXPECT_EQ(run.lines[0]["result"]["Label"], "Spy");

    EXPECT_EQ(run.lines[1]["operation"], "getGenreLabel");
    EXPECT_EQ(run.lines[1]["status"], -1004);
    EXPECT_NE(run.lines[1]["result"]["ResponseCode"], 0);
    EXPECT_NE(run.lines[1]["result"]["ResponseMessage"], "");

    EXPECT_EQ(run.lines[2]["operation"], "getTitlesByGenreIDs");
    EXPECT_EQ(run.lines[2]["status"], 0);
    const json& pages = run.lines[2]["result"]["GetTitlesResponse"];
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0]["GenreID"], 12);
    EXPECT_EQ(pages[1]["GenreID"], 13);
    EXPECT_EQ(pages[1]["Titles"].size(), 5u);
}

}  // namespace
