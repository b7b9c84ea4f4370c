// The network probes and box art on loopback: a scripted server for answers a real server would
// not give (cut bodies, oversized heads, held connections, error pages holding another answer,
// heads in two segments), and nginx as a real web host for box-art downloads and revalidation.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <mutex>
#include <sstream>
#include <thread>
#include <vector>

#include "BoxArtDownloader.h"
#include "LMWSTestSupport.h"
#include "stdsoap2.h"

namespace {

using namespace lmws_test;

const bool kSigpipeIgnored = (signal(SIGPIPE, SIG_IGN), true);

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::string Text(const LM_WS_LengthAndText& r) {
    return r.Text != nullptr ? std::string(r.Text, r.Length) : std::string();
}

int Listener(int& port) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof addr;
    bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
    getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len);
    port = ntohs(addr.sin_port);
    return fd;
}

// Answers the n-th connection with the n-th reply: its pieces, each after its pause, then holds
// the connection until the client hangs up (at most `holdMs`), so that a client reading more
// than it should waits and then sees the stream end.
class ScriptedServer {
public:
    struct Reply {
        std::vector<std::pair<int, std::string>> pieces;  // pause in ms, bytes
        int holdMs = 3000;
    };
    explicit ScriptedServer(std::vector<Reply> replies) : m_Replies(std::move(replies)) {
        m_Fd = Listener(m_Port);
        listen(m_Fd, 8);
        m_Thread = std::thread([this] { Run(); });
    }
    ~ScriptedServer() {
        shutdown(m_Fd, SHUT_RDWR);
        m_Thread.join();
        close(m_Fd);
    }
    int Port() const { return m_Port; }
    std::vector<std::string> Requests() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Requests;
    }

private:
    void Run() {
        char buffer[4096];
        for (size_t n = 0;; ++n) {
            int client = accept(m_Fd, nullptr, nullptr);
            if (client < 0) {
                return;
            }
            std::string request;
            ssize_t got = 0;
            while (request.find("\r\n\r\n") == std::string::npos &&
                   (got = recv(client, buffer, sizeof buffer, 0)) > 0) {
                request.append(buffer, static_cast<size_t>(got));
            }
            {
                std::lock_guard<std::mutex> lock(m_Mutex);
                m_Requests.push_back(request);
            }
            const Reply reply = n < m_Replies.size() ? m_Replies[n] : Reply();
            for (const auto& piece : reply.pieces) {
                std::this_thread::sleep_for(std::chrono::milliseconds(piece.first));
                if (send(client, piece.second.data(), piece.second.size(), MSG_NOSIGNAL) < 0) {
                    break;  // the client has gone
                }
            }
            pollfd p = {client, POLLIN, 0};
            if (poll(&p, 1, reply.holdMs) > 0) {
                (void)recv(client, buffer, sizeof buffer, 0);
            }
            close(client);
        }
    }

    std::vector<Reply> m_Replies;
    int m_Fd = -1;
    int m_Port = 0;
    std::thread m_Thread;
    std::mutex m_Mutex;
    std::vector<std::string> m_Requests;
};

ScriptedServer::Reply Whole(const std::string& bytes, int holdMs = 3000) {
    return ScriptedServer::Reply{{{0, bytes}}, holdMs};
}
std::string Ok(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}
// The length comes after the first 2047 bytes of the head.
std::string OversizedHead(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nX-Pad: " + std::string(3000, 'p') + "\r\n" + Ok(body).substr(17);
}
const char kNotFound[] = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
// An error page whose body is another answer: only the first line is the status.
std::string ErrorPageHolding(const std::string& answer) {
    return "HTTP/1.1 500 Internal Server Error\r\nContent-Length: " +
           std::to_string(answer.size()) + "\r\n\r\n" + answer;
}
// The first `at` bytes, then the rest after a pause, as a head cut into two segments arrives.
ScriptedServer::Reply InTwoSegments(const std::string& bytes, size_t at) {
    return ScriptedServer::Reply{{{0, bytes.substr(0, at)}, {150, bytes.substr(at)}}};
}

// A client without cache whose plain-HTTP port is `port`, its bandwidth-check URL preset as if
// the configuration had named it.
struct ProbeClient : Client {
    ProbeClient(int port, const char* url, const char* proxyHost = nullptr) {
        NoServer();
        setenv("LM_WS_HTTP_PORT", std::to_string(port).c_str(), 1);
        Params params;
        params.p.ProxyHost = proxyHost;
        params.p.ProxyPort = atoi(kClosedPort);
        EXPECT_EQ(0, Setup(params));
        Context()->m_Params.BandwidthCheckURL = url;
    }
};

TEST(CheckBandwidth, Reads204800BytesAtMostAndRatesThem) {
    // A megabyte announced, 204800 bytes sent, the connection held: reading on would hang.
    ScriptedServer server(
        {{{{0, "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n" + std::string(4096, 'b')},
           {200, std::string(204800 - 4096, 'b')}},
          5000}});
    ProbeClient client(server.Port(), "http://127.0.0.1/bw/check.bin");
    uint32_t bps = 0;
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(0, LM_WS_checkBandwidth(&client.h, &bps));
    const double ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    ASSERT_LT(ms, 4000) << "read past the cap";
    // The server pauses 200 ms before the rest of the body, but the probe's clock starts only
    // once the head has arrived, a little after that pause began: the measured time is a little
    // under 200 ms, and well over 100 ms unless the pause was skipped.
    EXPECT_LE(bps, 8000u * 204800u / 100u);
    EXPECT_GE(bps, static_cast<uint32_t>(8000.0 * 204800 / (ms + 1)));
    EXPECT_EQ("GET /bw/check.bin HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) +
                  "\r\nUser-Agent: LMWSLib\r\n\r\n",
              server.Requests().at(0));
}

TEST(CheckBandwidth, ATransferWithinOneMillisecondCountsAsOne) {
    ScriptedServer server({Whole(Ok(std::string(100, 'b')))});
    ProbeClient client(server.Port(), "http://127.0.0.1/small.bin");
    uint32_t bps = 0;
    ASSERT_EQ(0, LM_WS_checkBandwidth(&client.h, &bps));
    EXPECT_EQ(800000u, bps);
}

TEST(CheckBandwidth, APortInTheURLIsTheOneUsed) {
    ScriptedServer server({Whole(Ok(std::string(100, 'b')))});
    const std::string url = "http://127.0.0.1:" + std::to_string(server.Port()) + "/small.bin";
    ProbeClient client(atoi(kClosedPort), url.c_str());
    uint32_t bps = 0;
    ASSERT_EQ(0, LM_WS_checkBandwidth(&client.h, &bps));
    EXPECT_EQ("GET /small.bin HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) +
                  "\r\nUser-Agent: LMWSLib\r\n\r\n",
              server.Requests().at(0));
    for (const char* bad : {"http://127.0.0.1:/x", "http://127.0.0.1:http/x", "http://:80/x"}) {
        client.Context()->m_Params.BandwidthCheckURL = bad;
        EXPECT_EQ(-1921, LM_WS_checkBandwidth(&client.h, &bps)) << bad;
    }
}

TEST(CheckBandwidth, FailuresGiveTheirStatusAndNoRate) {
    ScriptedServer server({Whole(kNotFound), Whole(OversizedHead("xyz")),
                           Whole("HTTP/1.1 200 OK\r\nContent-Length: 9000\r\n\r\nabc", 0),
                           Whole(ErrorPageHolding(kNotFound)), Whole(ErrorPageHolding(Ok("xyz")))});
    ProbeClient client(server.Port(), "http://127.0.0.1/check.bin");
    for (LM_WS_Status expected : {-1901, -1001, -1001, -1001, -1001}) {
        uint32_t bps = 7;
        EXPECT_EQ(expected, LM_WS_checkBandwidth(&client.h, &bps));
        EXPECT_EQ(0u, bps);
    }
    client.Context()->m_Params.BandwidthCheckURL = "http://127.0.0.1/";
    uint32_t bps = 7;
    EXPECT_EQ(-1921, LM_WS_checkBandwidth(&client.h, &bps));
}

TEST(CheckBandwidth, GoesStraightToTheHostAndRestoresTheProxy) {
    ScriptedServer server({Whole(Ok("0123456789"))});
    ProbeClient client(server.Port(), "http://127.0.0.1/check.bin", "127.0.0.1");
    struct soap* soap = client.Context()->m_RealTimeBrowse.soap;
    const char* proxy = soap->proxy_host;
    uint32_t bps = 0;
    EXPECT_EQ(0, LM_WS_checkBandwidth(&client.h, &bps));
    EXPECT_EQ(proxy, soap->proxy_host);
}

TEST(DeviceTime, ReadsTheClockPageOrSaysWhyNot) {
    ScriptedServer server(
        {Whole(Ok("3/14/2011 1:05:09 PM")),
         Whole("HTTP/1.1 200 OK\r\nContent-Length: 40\r\n\r\n3/14/2011 1:05:09 PM"),  // short
         Whole(OversizedHead("3/14/2011 1:05:09 PM")), Whole(kNotFound),
         Whole(ErrorPageHolding(Ok("3/14/2011 1:05:09 PM")))});
    NoServer();
    setenv("LM_WS_HTTP_PORT", std::to_string(server.Port()).c_str(), 1);
    int32_t t = 0;
    ASSERT_EQ(0, LM_WS_getDeviceTime(&t));
    EXPECT_EQ(1300107909, t);
    EXPECT_EQ("GET /device/time/ HTTP/1.1\r\nUser-Agent: LMWSLib\r\nHost: 127.0.0.1:" +
                  std::to_string(server.Port()) + "\r\n\r\n",
              server.Requests().at(0));
    for (LM_WS_Status expected : {-1004, -1001, -1001, -1001}) {
        EXPECT_EQ(expected, LM_WS_getDeviceTime(&t));
        EXPECT_EQ(-1, t);
    }
}

// A box-art downloader on a toolkit context of its own, its web host on loopback port `port`.
class LoopbackDownloader {
public:
    explicit LoopbackDownloader(int port) : m_Soap(soap_new()), m_Downloader(m_Soap, Web(port)) {
        m_Soap->recv_timeout = 5;
    }
    ~LoopbackDownloader() { soap_free(m_Soap); }
    LoopbackDownloader(const LoopbackDownloader&) = delete;
    LoopbackDownloader& operator=(const LoopbackDownloader&) = delete;
    BoxArtDownloader* operator->() { return &m_Downloader; }

private:
    static LMDeployment Web(int port) {
        LMDeployment web;
        web.webHost = "127.0.0.1";
        web.httpPort = port;
        return web;
    }
    struct soap* m_Soap;
    BoxArtDownloader m_Downloader;
};

TEST(BoxArtDownloader, AFailedDownloadLeavesTheEarlierFileAndNoTemporaryFile) {
    TempDir dir;
    const std::string file = dir.path + "/p95.jpg";
    std::ofstream(file) << "earlier";
    ScriptedServer server(
        {Whole("HTTP/1.1 200 OK\r\n\r\nimage"),  // no length
         Whole("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"), Whole(OversizedHead("image")),
         Whole("HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\nabc", 0),
         Whole(ErrorPageHolding(Ok("image"))), Whole(ErrorPageHolding(kNotFound)),
         Whole("HTTP/1.1 304 Not Modified\r\n\r\n"), Whole("HTTP/1.1 304 Not Modified\r\n\r\n")});
    LoopbackDownloader downloader(server.Port());
    for (LM_WS_Status expected : {-1001, -1001, -1001, -1001, -1001, -1001, -1902}) {
        LMString target(file.c_str());
        EXPECT_EQ(expected, downloader->Download("p", LM_WS_BoxArt95, "", true, target));
        EXPECT_EQ("earlier", ReadAll(file));
    }
    LMString memory("stale");
    EXPECT_EQ(-1902, downloader->Download("p", LM_WS_BoxArt95, "date", false, memory));
    EXPECT_TRUE(memory.empty());
    FILE* ls = popen(("ls '" + dir.path + "' | wc -l").c_str(), "r");
    int files = 0;
    EXPECT_EQ(1, fscanf(ls, "%d", &files));
    pclose(ls);
    EXPECT_EQ(1, files);
}

TEST(PlainHttpHead, AHeadInTwoSegmentsIsAccepted) {
    const std::string clock = Ok("3/14/2011 1:05:09 PM");
    ScriptedServer server({InTwoSegments(clock, clock.find("\r\n\r\n") + 3),
                           InTwoSegments(Ok("image"), 10),
                           InTwoSegments(Ok(std::string(100, 'b')), 25)});
    NoServer();
    setenv("LM_WS_HTTP_PORT", std::to_string(server.Port()).c_str(), 1);
    int32_t t = 0;
    EXPECT_EQ(0, LM_WS_getDeviceTime(&t));
    EXPECT_EQ(1300107909, t);

    LoopbackDownloader downloader(server.Port());
    LMString memory;
    EXPECT_EQ(0, downloader->Download("p", LM_WS_BoxArt95, "", false, memory));
    EXPECT_STREQ("image", memory.c_str());

    ProbeClient client(server.Port(), "http://127.0.0.1/check.bin");
    uint32_t bps = 0;
    EXPECT_EQ(0, LM_WS_checkBandwidth(&client.h, &bps));
    EXPECT_GT(bps, 0u);
}

// nginx on a free loopback port serving `www`, as a child process writing only into its own
// folder. Its access log has one line per request: status, body bytes, request line, Host.
class Nginx {
public:
    static constexpr const char* kBinary = "/usr/sbin/nginx";
    Nginx() {
        const std::string& d = m_Dir.path;
        mkdir((d + "/tmp").c_str(), 0755);
        close(Listener(m_Port));
        std::ofstream(d + "/nginx.conf")
            << "daemon off; master_process off; pid " << d << "/nginx.pid; error_log " << d
            << "/error.log;\nevents {}\nhttp {\n"
            << "  log_format probe '$status $body_bytes_sent \"$request\" $http_host';\n"
            << "  access_log " << d << "/access.log probe;\n  client_body_temp_path " << d
            << "/tmp/b; proxy_temp_path " << d << "/tmp/p; fastcgi_temp_path " << d
            << "/tmp/f; uwsgi_temp_path " << d << "/tmp/u; scgi_temp_path " << d << "/tmp/s;\n"
            << "  server { listen 127.0.0.1:" << m_Port << "; root " << d << "/www; }\n}\n";
        const pid_t parent = getpid();
        m_Pid = fork();
        if (m_Pid == 0) {
            // Ends with the test process, like the simulator (LmsimProcess.h).
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (getppid() != parent) {
                _exit(127);
            }
            execl(kBinary, kBinary, "-p", d.c_str(), "-c", (d + "/nginx.conf").c_str(), "-e",
                  (d + "/error.log").c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        for (int i = 0; i < 100 && !Up(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
    ~Nginx() {
        kill(m_Pid, SIGTERM);
        waitpid(m_Pid, nullptr, 0);
    }
    bool Up() const {
        int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_port = htons(static_cast<uint16_t>(m_Port));
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bool up = connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
        close(fd);
        return up;
    }
    int Port() const { return m_Port; }
    // Puts `data` at images/boxart/<folder>/<name>; returns the file's path.
    std::string Put(const std::string& folder, const std::string& name, const std::string& data) {
        const std::string dir = m_Dir.path + "/www/images/boxart/" + folder;
        (void)std::system(("mkdir -p '" + dir + "'").c_str());
        std::ofstream(dir + "/" + name, std::ios::binary) << data;
        return dir + "/" + name;
    }
    // The access log's lines, once it has at least `count` (for up to 2 s): nginx writes a
    // request's line after the answer went out, so the client can have it before the line is
    // there.
    std::vector<std::string> Log(size_t count = 0) const {
        std::vector<std::string> lines;
        for (int wait = 0; wait < 400; ++wait) {
            lines.clear();
            std::istringstream in(ReadAll(m_Dir.path + "/access.log"));
            for (std::string line; std::getline(in, line);) {
                lines.push_back(line);
            }
            if (lines.size() >= count) {
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return lines;
    }

private:
    TempDir m_Dir;
    pid_t m_Pid = -1;
    int m_Port = 0;
};

// A client that keeps box art in a file cache, its web host on loopback.
class BoxArtCacheTest : public ::testing::Test {
protected:
    // Sets the client up with its web and production host on `port`, a cache of `limit` bytes
    // (0: none) in `folder` (the test's own folder unless given).
    void Connect(int port, uint32_t limit = 0, const std::string& folder = "") {
        m_Host = "127.0.0.1:" + std::to_string(port);
        NoServer();
        setenv("LM_WS_HTTP_PORT", std::to_string(port).c_str(), 1);
        m_Params.p.CacheType = LM_WS_CacheParam::File;
        m_Params.p.CacheData = LM_WS_CacheParam::BoxArt;
        m_Params.p.CacheLimit = limit;
        m_Params.cachePath = folder.empty() ? m_Cache.path : folder;
        ASSERT_EQ(0, m_Client.Setup(m_Params));
    }
    LM_WS_Status Get(LM_WS_BoxArtSize size, const char* prefix, std::string& answer) {
        LM_WS_LengthAndText r;
        LM_WS_Status status = LM_WS_getBoxArtImage(&m_Client.h, size, prefix, &r);
        answer = Text(r);
        LM_WS_FreeResult(&r);
        return status;
    }
    bool NeedsUpdate(const char* prefix, LMString& lastModified) {
        unsigned size = 0;
        bool needUpdate = false;
        LMString data;
        EXPECT_EQ(1, m_Client.Context()->m_CacheMgr->GetBoxArt(prefix, 0, size, lastModified,
                                                               needUpdate, data));
        return needUpdate;
    }

    TempDir m_Cache;
    std::string m_Host;
    Params m_Params;
    Client m_Client;
};

TEST_F(BoxArtCacheTest, AnErrorPageNeitherReplacesNorRemovesTheImageHeld) {
    const std::string date = "Mon, 14 Mar 2011 13:05:09 GMT";
    ScriptedServer server(
        {Whole("HTTP/1.1 200 OK\r\nLast-Modified: " + date + "\r\nContent-Length: 4\r\n\r\nheld"),
         Whole(ErrorPageHolding(kNotFound)), Whole(ErrorPageHolding(Ok("planted")))});
    ASSERT_NO_FATAL_FAILURE(Connect(server.Port()));
    std::string file;
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", file));
    EXPECT_EQ("held", ReadAll(file));
    ASSERT_EQ(0, LM_WS_updateLocalCache(&m_Client.h, LM_WS_CacheParam::BoxArt));
    // Each revalidation meets an error page: the copy held is the answer and stays marked.
    for (int i = 0; i < 2; ++i) {
        std::string again;
        EXPECT_EQ(0, Get(LM_WS_BoxArt95, "t", again));
        EXPECT_EQ(file, again);
        EXPECT_EQ("held", ReadAll(file));
        LMString lastModified;
        EXPECT_TRUE(NeedsUpdate("t", lastModified));
        EXPECT_STREQ(date.c_str(), lastModified.c_str());
    }
    const std::vector<std::string> requests = server.Requests();
    ASSERT_EQ(3u, requests.size());
    EXPECT_NE(std::string::npos, requests[2].find("\r\nIf-Modified-Since: " + date + "\r\n"));
}

TEST_F(BoxArtCacheTest, ALastModifiedWithAControlCharacterIsNeitherKeptNorSent) {
    ScriptedServer server(
        {Whole("HTTP/1.1 200 OK\r\nLast-Modified: Mon, 14 Mar 2011\nX-Injected: 1\r\n"
               "Content-Length: 4\r\n\r\nheld"),
         Whole("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nnext")});
    ASSERT_NO_FATAL_FAILURE(Connect(server.Port()));
    std::string file;
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", file));
    LMString lastModified("unset");
    EXPECT_FALSE(NeedsUpdate("t", lastModified));
    EXPECT_STREQ("", lastModified.c_str());
    // A value stored by an earlier client, CR LF and all, is not sent back either.
    ASSERT_EQ(1, m_Client.Context()->m_CacheMgr->SetBoxArt("t", 0, 4, "Mon\r\nX-Evil: 1", true,
                                                           LMString()));
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", file));
    EXPECT_EQ("next", ReadAll(file));
    const std::vector<std::string> requests = server.Requests();
    ASSERT_EQ(2u, requests.size());
    EXPECT_EQ(std::string::npos, requests[1].find("If-Modified-Since")) << requests[1];
    EXPECT_EQ(std::string::npos, requests[1].find("X-Evil")) << requests[1];
}

// An image larger than the box-art share of the budget (here all of the smallest budget) is
// refused from its announced length, though it would arrive whole, and nothing is written; one
// of exactly the share is kept.
TEST_F(BoxArtCacheTest, AnImageOverTheBoxArtShareIsRefusedBeforeAnythingIsWritten) {
    const size_t share = 358400;
    ScriptedServer server(
        {Whole(Ok(std::string(share + 1, 'o'))), Whole(Ok(std::string(share, 'i')))});
    ASSERT_NO_FATAL_FAILURE(Connect(server.Port(), share));
    std::string answer;
    EXPECT_EQ(-1001, Get(LM_WS_BoxArt95, "t", answer));
    FILE* ls = popen(("ls '" + m_Cache.path + "' | grep -c jpg").c_str(), "r");
    int images = -1;
    EXPECT_EQ(1, fscanf(ls, "%d", &images));
    pclose(ls);
    EXPECT_EQ(0, images);
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", answer));
    EXPECT_EQ(share, ReadAll(answer).size());
}

// A server that sends the body a byte at a time, each in time for the per-receive time-out:
// the exchange still ends at the call's deadline (counted in whole seconds), and not before.
TEST_F(BoxArtCacheTest, AServerThatDripsIsCutOffAtTheCallDeadline) {
    ScriptedServer::Reply drip{{{0, "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n"}}, 0};
    for (int i = 0; i < 40; ++i) {
        drip.pieces.push_back({500, "x"});
    }
    ScriptedServer server({drip});
    setenv("LM_WS_CALL_DEADLINE", "3", 1);
    ASSERT_NO_FATAL_FAILURE(Connect(server.Port()));
    unsetenv("LM_WS_CALL_DEADLINE");
    const auto start = std::chrono::steady_clock::now();
    std::string answer;
    EXPECT_EQ(-1001, Get(LM_WS_BoxArt95, "t", answer));
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_GE(seconds, 1.5);
    EXPECT_LT(seconds, 4.5);
}

// What the client creates is its owner's alone: the cache folder, the database (and so its log
// and index, which take the database's permissions) and the images, whatever the umask lets by.
TEST_F(BoxArtCacheTest, TheFilesOfTheCacheAreTheOwnersAlone) {
    const mode_t umaskWas = umask(022);
    ScriptedServer server({Whole(Ok("held"))});
    const std::string folder = m_Cache.path + "/new/cache";
    ASSERT_NO_FATAL_FAILURE(Connect(server.Port(), 0, folder));
    std::string image;
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", image));
    umask(umaskWas);
    auto modeOf = [](const std::string& path) {
        struct stat st {};
        return stat(path.c_str(), &st) == 0 ? static_cast<int>(st.st_mode & 0777) : -1;
    };
    EXPECT_EQ(0700, modeOf(folder));
    EXPECT_EQ(0600, modeOf(image));
    FILE* ls = popen(("ls '" + folder + "' | grep -v jpg").c_str(), "r");
    char name[256] = {};
    ASSERT_EQ(1, fscanf(ls, "%255s", name));
    pclose(ls);
    const std::string database = folder + "/" + name;
    // The client keeps the database open, so its log and index are there to look at.
    for (const char* suffix : {"", "-wal", "-shm"}) {
        EXPECT_EQ(0600, modeOf(database + suffix)) << database << suffix;
    }
}

// The same with nginx as the web host.
class BoxArtTest : public BoxArtCacheTest {
protected:
    void SetUp() override {
        if (access(Nginx::kBinary, X_OK) != 0) {
            GTEST_SKIP() << Nginx::kBinary << " is not installed";
        }
        m_Nginx = std::make_unique<Nginx>();
        ASSERT_TRUE(m_Nginx->Up());
        ASSERT_NO_FATAL_FAILURE(Connect(m_Nginx->Port()));
    }

    std::unique_ptr<Nginx> m_Nginx;
};

TEST_F(BoxArtTest, DownloadsKeepsAndRevalidatesAnImage) {
    std::string image(30000, 0);
    for (size_t i = 0; i < image.size(); ++i) {
        image[i] = static_cast<char>(i * 31);
    }
    const std::string served = m_Nginx->Put("95", "t95.jpg", image);
    std::string file;
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", file));
    EXPECT_EQ(m_Cache.path + "/t95.jpg", file);
    EXPECT_EQ(image, ReadAll(file));
    const std::string request = "\"GET /images/boxart/95/t95.jpg HTTP/1.1\" " + m_Host;
    EXPECT_EQ("200 30000 " + request, m_Nginx->Log(1).at(0));
    LMString lastModified;
    EXPECT_FALSE(NeedsUpdate("t", lastModified));

    std::string again;  // current: no request
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", again));
    EXPECT_EQ(file, again);
    EXPECT_EQ(1u, m_Nginx->Log().size());

    // Marked: revalidated with its Last-Modified, 304 without a body, the file kept as it is.
    struct stat before, after;
    ASSERT_EQ(0, stat(file.c_str(), &before));
    ASSERT_EQ(0, LM_WS_updateLocalCache(&m_Client.h, LM_WS_CacheParam::BoxArt));
    EXPECT_TRUE(NeedsUpdate("t", lastModified));
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", again));
    EXPECT_EQ("304 0 " + request, m_Nginx->Log(2).at(1));
    ASSERT_EQ(0, stat(file.c_str(), &after));
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(image, ReadAll(file));
    EXPECT_FALSE(NeedsUpdate("t", lastModified));

    // Changed on the server: the revalidation brings the new image and its date.
    std::ofstream(served) << "newer";
    struct utimbuf later = {before.st_mtime + 3600, before.st_mtime + 3600};
    ASSERT_EQ(0, utime(served.c_str(), &later));
    const LMString earlier = lastModified;
    ASSERT_EQ(1, m_Client.Context()->m_CacheMgr->InvalidateBoxArt());
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "t", again));
    EXPECT_EQ("200 5 " + request, m_Nginx->Log(3).at(2));
    EXPECT_EQ("newer", ReadAll(file));
    EXPECT_FALSE(NeedsUpdate("t", lastModified));
    EXPECT_NE(earlier, lastModified);
}

TEST_F(BoxArtTest, EncodesThePrefixAndUsesTheFolderOfTheSize) {
    m_Nginx->Put("135s", "Tom & Jerry135.jpg", "tj");
    std::string file;
    ASSERT_EQ(0, Get(LM_WS_BoxArt135, "Tom & Jerry", file));
    EXPECT_EQ(m_Cache.path + "/Tom & Jerry135.jpg", file);
    EXPECT_EQ("tj", ReadAll(file));
    EXPECT_EQ("200 2 \"GET /images/boxart/135s/Tom%20%26%20Jerry135.jpg HTTP/1.1\" " + m_Host,
              m_Nginx->Log(1).at(0));
}

TEST_F(BoxArtTest, WithoutAnImageTheAnswerIsItsAddress) {
    std::string answer;
    EXPECT_EQ(-1901, Get(LM_WS_BoxArt175, "a b", answer));
    EXPECT_EQ("http://" + m_Host + "/images/boxart/175/a%20b175.jpg", answer);

    // Unreachable: a copy held is still handed out (and stays marked); otherwise the address.
    m_Nginx->Put("95", "held95.jpg", "held");
    ASSERT_EQ(0, Get(LM_WS_BoxArt95, "held", answer));
    ASSERT_EQ(0, LM_WS_updateLocalCache(&m_Client.h, LM_WS_CacheParam::BoxArt));
    m_Nginx.reset();
    EXPECT_EQ(0, Get(LM_WS_BoxArt95, "held", answer));
    EXPECT_EQ("held", ReadAll(answer));
    LMString lastModified;
    EXPECT_TRUE(NeedsUpdate("held", lastModified));
    EXPECT_EQ(-2011, Get(LM_WS_BoxArt95, "new", answer));
    EXPECT_EQ("http://" + m_Host + "/images/boxart/95/new95.jpg", answer);
}

TEST(BoxArtWithoutFileCache, AnswersTheAddressWithoutARequest) {
    ScriptedServer server({});
    NoServer();
    setenv("LM_WS_HTTP_PORT", std::to_string(server.Port()).c_str(), 1);
    for (uint32_t type : {LM_WS_CacheParam::None, LM_WS_CacheParam::Memory}) {
        Params params;
        params.p.CacheType = type;
        params.p.CacheData = LM_WS_CacheParam::BoxArt;
        Client client;
        ASSERT_EQ(0, client.Setup(params));
        LM_WS_LengthAndText r;
        EXPECT_EQ(0, LM_WS_getBoxArtImage(&client.h, LM_WS_BoxArt95, "t", &r));
        EXPECT_EQ("http://127.0.0.1:" + std::to_string(server.Port()) + "/images/boxart/95/t95.jpg",
                  Text(r));
        LM_WS_FreeResult(&r);
    }
    EXPECT_TRUE(server.Requests().empty());
}

}  // namespace
