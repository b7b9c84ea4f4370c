// The service simulator as a process: start-up, TLS catalogue calls through the generated
// proxies, a request written by hand, the plain-HTTP side, fault switches and shutdown.
#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <fstream>
#include <string>

#include "LmsimProcess.h"
#include "soapDownloadAPISoap12Proxy.h"
#include "soapRealTimeBrowseSoap12Proxy.h"
#include "soapStreamAPISoap12Proxy.h"

namespace {

const bool kSigpipeIgnored = (signal(SIGPIPE, SIG_IGN), true);

// A proxy that trusts the simulator's test CA.
template <class Proxy>
void Trust(Proxy& proxy, const LmsimProcess& sim) {
    soap_set_mode(proxy.soap, SOAP_C_UTFSTRING);
    proxy.soap->connect_timeout = proxy.soap->send_timeout = proxy.soap->recv_timeout = 10;
    ASSERT_EQ(soap_ssl_client_context(proxy.soap, SOAP_SSL_DEFAULT, nullptr, nullptr,
                                      sim.CaFile().c_str(), nullptr, nullptr),
              SOAP_OK);
}

int TitlesPage(const LmsimProcess& sim, int genre, int page, int perPage, int* titles) {
    RealTimeBrowseSoap12Proxy proxy;
    Trust(proxy, sim);
    const std::string endpoint = sim.Endpoint("RealTimeBrowse.asmx");
    proxy.soap_endpoint = endpoint.c_str();
    _LM1__getTitlesByNavigation request;
    request.GenreID = genre;
    request.CurrentPageNumber = page;
    request.ItemsPerPage = perPage;
    request.PurchaseType = LM1__PurchaseType__any;
    _LM1__getTitlesByNavigationResponse response;
    int rc = proxy.getTitlesByNavigation(&request, response);
    if (rc == SOAP_OK && titles != nullptr) {
        LM1__GetTitlesResponse* r = response.getTitlesByNavigationResult;
        *titles = r != nullptr && r->Titles != nullptr ? r->Titles->__sizeTitleListing : -1;
    }
    proxy.destroy();
    return rc;
}

// One exchange of raw bytes over TLS, verifying the server against the test CA.
std::string TlsExchange(int port, const std::string& caFile, const std::string& request) {
    SSL_CTX* ctx = SSL_CTX_new(TLS_client_method());
    SSL_CTX_load_verify_locations(ctx, caFile.c_str(), nullptr);
    SSL_CTX_set_verify(ctx, SSL_VERIFY_PEER, nullptr);
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr = {};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(static_cast<uint16_t>(port));
    std::string answer;
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) == 0) {
        SSL* ssl = SSL_new(ctx);
        SSL_set_fd(ssl, fd);
        if (SSL_connect(ssl) == 1 &&
            SSL_write(ssl, request.data(), static_cast<int>(request.size())) > 0) {
            char buf[4096];
            int n;
            while ((n = SSL_read(ssl, buf, sizeof(buf))) > 0) {
                answer.append(buf, static_cast<size_t>(n));
            }
        }
        SSL_free(ssl);
    }
    close(fd);
    SSL_CTX_free(ctx);
    return answer;
}

TEST(Lmsim, StartsServesManyCallsAndStopsOnSigterm) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    RecordProperty("start_ms", std::to_string(static_cast<int>(sim.StartMs())));
    EXPECT_LT(sim.StartMs(), 5000.0);  // readiness, not a performance bound

    for (int i = 0; i < 100; ++i) {
        int titles = 0;
        ASSERT_EQ(TitlesPage(sim, 12, 1 + i % 5, 20, &titles), SOAP_OK) << "call " << i;
        ASSERT_EQ(titles, 20) << "call " << i;
    }
    EXPECT_EQ(sim.Stop(), 0);
}

TEST(Lmsim, AnswersARequestWrittenByHandThatValidatesAgainstTheSchema) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    const std::string element =
        "<LM1:getTitlesByNavigation xmlns:LM1=\"http://www.lumora.example/api/\">"
        "<LM1:GenreID>12</LM1:GenreID><LM1:CurrentPageNumber>2</LM1:CurrentPageNumber>"
        "<LM1:ItemsPerPage>5</LM1:ItemsPerPage><LM1:PurchaseType>rent</LM1:PurchaseType>"
        "</LM1:getTitlesByNavigation>";
    const std::string envelope =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<soap12:Envelope xmlns:soap12=\"http://www.w3.org/2003/05/soap-envelope\">"
        "<soap12:Body>" +
        element + "</soap12:Body></soap12:Envelope>";
    const std::string request =
        "POST /api/RealTimeBrowse.asmx HTTP/1.1\r\nHost: localhost\r\n"
        "Content-Type: application/soap+xml; charset=utf-8; "
        "action=\"http://www.lumora.example/api/getTitlesByNavigation\"\r\n"
        "Content-Length: " +
        std::to_string(envelope.size()) + "\r\nConnection: close\r\n\r\n" + envelope;
    std::string answer = TlsExchange(sim.HttpsPort(), sim.CaFile(), request);
    EXPECT_EQ(answer.find("HTTP/1.1 200 OK\r\n"), 0u) << answer.substr(0, 300);
    EXPECT_NE(answer.find("<LM1:CurrentPageNumber>2</LM1:CurrentPageNumber>"), std::string::npos);
    size_t listings = 0;
    for (size_t at = answer.find("<LM1:TitleListing>"); at != std::string::npos;
         at = answer.find("<LM1:TitleListing>", at + 1)) {
        ++listings;
    }
    EXPECT_EQ(listings, 5u);

    // The same request body is valid by the schema generated from the service description.
    const std::string file = "/tmp/lmsim-request-" + std::to_string(getpid()) + ".xml";
    std::ofstream(file) << element;
    std::string cmd = "xmllint --noout --schema " LMAPI_GEN_DIR "/LM1.xsd " + file + " 2>&1";
    EXPECT_EQ(std::system(cmd.c_str()), 0) << cmd;
    std::remove(file.c_str());
}

TEST(Lmsim, PlainHttpAndEnvironmentQuery) {
    LmsimProcess sim({"--env-digit", "1"});
    ASSERT_TRUE(sim.Ready());
    std::string env = TlsExchange(sim.HttpsPort(), sim.CaFile(),
                                  "GET /device/env/?d=dev%201&dt=7 HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_NE(env.find("HTTP/1.1 200 OK\r\n"), std::string::npos);
    EXPECT_NE(env.find("Content-Length: 1\r\n"), std::string::npos);
    EXPECT_EQ(env.substr(env.size() - 5), "\r\n\r\n1");
}

TEST(Lmsim, FaultSwitchesReachTheClient) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    ASSERT_TRUE(sim.ArmFault("http-status", "500"));
    EXPECT_EQ(TitlesPage(sim, 12, 1, 5, nullptr), 500);
    EXPECT_EQ(TitlesPage(sim, 12, 1, 5, nullptr), SOAP_OK);  // armed for one answer only

    ASSERT_TRUE(sim.ArmFault("close-mid-body"));
    EXPECT_EQ(TitlesPage(sim, 12, 1, 5, nullptr), SOAP_EOF);

    // A broken answer fails the call; the toolkit reports one that came with HTTP 200 as 200.
    ASSERT_TRUE(sim.ArmFault("malformed-xml"));
    EXPECT_EQ(TitlesPage(sim, 12, 1, 5, nullptr), 200);

    // The envelope is complete, so a SOAP reader stops at its end and never waits for the
    // missing bytes; this fault is for the raw-HTTP readers.
    ASSERT_TRUE(sim.ArmFault("bad-content-length"));
    EXPECT_EQ(TitlesPage(sim, 12, 1, 5, nullptr), SOAP_OK);

    // Unknown ids answer a service response code, not a fault.
    StreamAPISoap12Proxy stream;
    Trust(stream, sim);
    const std::string endpoint = sim.Endpoint("StreamAPI.asmx");
    stream.soap_endpoint = endpoint.c_str();
    _LM1__getTitleListing request;
    request.TitleID = 42;
    _LM1__getTitleListingResponse response;
    ASSERT_EQ(stream.getTitleListing(&request, response), SOAP_OK);
    ASSERT_NE(response.getTitleListingResult, nullptr);
    EXPECT_EQ(response.getTitleListingResult->ResponseCode, 1);
    stream.destroy();

    // A known title answered as if the service had refused it, once.
    ASSERT_TRUE(sim.ArmFault("response-code", "7"));
    request.TitleID = 100016;
    ASSERT_EQ(stream.getTitleListing(&request, response), SOAP_OK);
    ASSERT_NE(response.getTitleListingResult, nullptr);
    EXPECT_EQ(response.getTitleListingResult->ResponseCode, 7);
    stream.destroy();
    ASSERT_EQ(stream.getTitleListing(&request, response), SOAP_OK);
    EXPECT_EQ(response.getTitleListingResult->ResponseCode, 0);
    stream.destroy();
    EXPECT_FALSE(sim.ArmFault("response-code", "10")) << "one digit only";
}

// A test that dies without stopping its simulator (a crash, SIGKILL) takes the simulator along.
TEST(Lmsim, EndsWhenTheTestProcessThatStartedItDies) {
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    const pid_t test = fork();
    if (test == 0) {
        close(pipeFds[0]);
        LmsimProcess sim;
        const pid_t pid = sim.Ready() ? sim.Pid() : 0;
        (void)!write(pipeFds[1], &pid, sizeof pid);
        raise(SIGKILL);  // no destructor runs
    }
    close(pipeFds[1]);
    pid_t sim = 0;
    (void)!read(pipeFds[0], &sim, sizeof sim);
    close(pipeFds[0]);
    waitpid(test, nullptr, 0);
    ASSERT_GT(sim, 0);
    // Gone, or a zombie waiting for whoever adopted it.
    auto alive = [sim] {
        std::ifstream stat("/proc/" + std::to_string(sim) + "/stat");
        std::string pid, name, state;
        return stat >> pid >> name >> state && state != "Z";
    };
    for (int i = 0; i < 50 && alive(); ++i) {
        usleep(100 * 1000);
    }
    EXPECT_FALSE(alive());
    if (alive()) {
        kill(sim, SIGKILL);
    }
}

// ---- Every call method of every proxy, against the simulator ----

template <class Proxy>
struct ProxyCall {
    const char* name;
    int (*call)(Proxy&);
};
#include "ProxyCalls.inc"

// Keeps what a context sends, on the way to the real send callback.
struct SentBytes {
    int (*send)(struct soap*, const char*, size_t);
    std::string bytes;
    static int Send(struct soap* soap, const char* data, size_t length) {
        SentBytes* self = static_cast<SentBytes*>(soap->user);
        self->bytes.append(data, length);
        return self->send(soap, data, length);
    }
};

// The request element of a sent envelope, made a document of its own for schema validation.
std::string RequestElement(const std::string& sent) {
    const std::string open = "<SOAP-ENV:Body>";
    size_t begin = sent.find(open);
    size_t end = sent.find("</SOAP-ENV:Body>");
    if (begin == std::string::npos || end == std::string::npos) {
        return "";
    }
    std::string element = sent.substr(begin + open.size(), end - begin - open.size());
    size_t nameEnd = element.find_first_of(" />", 1);
    element.insert(nameEnd,
                   " xmlns:LM1=\"http://www.lumora.example/api/\""
                   " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"");
    return element;
}

template <class Proxy, size_t N>
void CallEveryMethod(const LmsimProcess& sim, const char* service,
                     const ProxyCall<Proxy> (&calls)[N], const std::string& dir,
                     std::vector<std::string>& files) {
    // Answers read as plain trees on a kept connection, as the client's service clients do.
    Proxy proxy(SOAP_C_UTFSTRING | SOAP_XML_TREE | SOAP_IO_KEEPALIVE);
    Trust(proxy, sim);
    const std::string endpoint = sim.Endpoint(service);
    proxy.soap_endpoint = endpoint.c_str();
    SentBytes sent{proxy.soap->fsend, ""};
    proxy.soap->user = &sent;
    proxy.soap->fsend = SentBytes::Send;
    for (const ProxyCall<Proxy>& c : calls) {
        sent.bytes.clear();
        EXPECT_EQ(c.call(proxy), SOAP_OK) << service << " " << c.name;
        // The action names the operation as on the wire: "_USCORE" is a plain underscore.
        std::string op = c.name;
        for (size_t at = op.find("_USCORE"); at != std::string::npos; at = op.find("_USCORE")) {
            op.replace(at, 7, "_");
        }
        EXPECT_NE(sent.bytes.find("action=\"http://www.lumora.example/api/" + op + "\""),
                  std::string::npos)
            << c.name;
        std::string element = RequestElement(sent.bytes);
        EXPECT_FALSE(element.empty()) << c.name;
        files.push_back(dir + "/" + service + "-" + c.name + ".xml");
        std::ofstream(files.back()) << element;
        proxy.destroy();
    }
}

TEST(Lmsim, EveryCallMethodOfEveryProxyRoundTripsWithSchemaValidRequests) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    char templ[] = "/tmp/lmrequestsXXXXXX";
    const std::string dir = mkdtemp(templ);
    std::vector<std::string> files;
    CallEveryMethod(sim, "RealTimeBrowse.asmx", kRealTimeBrowseSoap12Calls, dir, files);
    CallEveryMethod(sim, "StreamAPI.asmx", kStreamAPISoap12Calls, dir, files);
    CallEveryMethod(sim, "DownloadAPI.asmx", kDownloadAPISoap12Calls, dir, files);
    ASSERT_EQ(files.size(), 20u + 49u + 27u);
    EXPECT_EQ(sim.Stat("connections"), 3) << "one kept connection per proxy";
    EXPECT_EQ(sim.Stat("requests"), 96);

    std::string cmd = "xmllint --noout --schema " LMAPI_GEN_DIR "/LM1.xsd";
    for (const std::string& f : files) {
        cmd += " '" + f + "'";
    }
    FILE* p = popen((cmd + " 2>&1").c_str(), "r");
    ASSERT_NE(p, nullptr);
    std::string out;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof(buf), p)) > 0) {
        out.append(buf, n);
    }
    EXPECT_EQ(pclose(p), 0) << out;
    size_t valid = 0;
    for (size_t at = out.find(" validates"); at != std::string::npos;
         at = out.find(" validates", at + 1)) {
        ++valid;
    }
    EXPECT_EQ(valid, files.size()) << out;
    (void)std::system(("rm -rf '" + dir + "'").c_str());
}

}  // namespace
