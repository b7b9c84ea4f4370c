#include "SimHttpServer.h"
#include "SimWeb.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

namespace {

using lmsim::HttpRequest;
using lmsim::HttpResponse;

const lmsim::Catalogue& Standard() {
    static const lmsim::Catalogue c = lmsim::Catalogue::Build();
    return c;
}

HttpRequest Get(const std::string& target, const std::string& ifModifiedSince = "") {
    HttpRequest r;
    r.method = "GET";
    r.target = target;
    if (!ifModifiedSince.empty()) {
        r.headers.push_back({"If-Modified-Since", ifModifiedSince});
    }
    return r;
}

TEST(SimWeb, DeviceTimeUsesTwelveHourClockInUtc) {
    EXPECT_EQ(lmsim::SimWeb::DeviceTimeText(1300107909), "3/14/2011 1:05:09 PM");
    EXPECT_EQ(lmsim::SimWeb::DeviceTimeText(1300060800), "3/14/2011 12:00:00 AM");
    EXPECT_EQ(lmsim::SimWeb::DeviceTimeText(1300104000), "3/14/2011 12:00:00 PM");
}

TEST(SimWeb, BoxArtIsServedRevalidatedAndRefused) {
    lmsim::WebSettings settings;
    lmsim::SimWeb web(Standard(), settings);
    const lmsim::Title* awkward = nullptr;
    for (const lmsim::Title& t : Standard().Titles()) {
        if (t.boxArtPrefix.find(" & ") != std::string::npos) {
            awkward = &t;
            break;
        }
    }
    ASSERT_NE(awkward, nullptr);
    std::string encoded;
    for (char c : awkward->boxArtPrefix) {
        encoded += c == ' '   ? std::string("%20")
                   : c == '&' ? std::string("%26")
                              : std::string(1, c);
    }
    // Size 6 lives in the "135s" folder but its file name ends in "135".
    HttpResponse ok = web.Handle(Get("/images/boxart/135s/" + encoded + "135.jpg"), 0);
    EXPECT_EQ(ok.status, 200);
    EXPECT_EQ(ok.body, lmsim::SimWeb::BoxArtImage(awkward->boxArtPrefix, 6));
    EXPECT_EQ(ok.body.substr(0, 2), "\xFF\xD8");

    HttpResponse again = web.Handle(
        Get("/images/boxart/135s/" + encoded + "135.jpg", settings.boxArtLastModified), 0);
    EXPECT_EQ(again.status, 304);
    EXPECT_TRUE(again.body.empty());
    EXPECT_EQ(web.Handle(Get("/images/boxart/135/" + encoded + "135.jpg"), 0).status, 404);
    EXPECT_EQ(web.Handle(Get("/images/boxart/95/unknown95.jpg"), 0).status, 404);
    EXPECT_EQ(web.Handle(Get("/images/boxart/95/bad%2escape%z95.jpg"), 0).status, 400);
    EXPECT_EQ(web.Handle(Get("/nowhere"), 0).status, 404);

    HttpRequest post = Get("/device/time/");
    post.method = "POST";
    EXPECT_EQ(web.Handle(post, 0).status, 405);
    EXPECT_EQ(web.Handle(Get("/device/env/?d=abc&dt=7"), 0).body, "2");
    EXPECT_EQ(web.Handle(Get(settings.bandwidthPath), 0).body.size(), settings.bandwidthBytes);
}

// Sends one raw request to the server and returns everything it answered.
std::string Exchange(int port, const std::string& request) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr = {};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(static_cast<uint16_t>(port));
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) != 0) {
        close(fd);
        return "";
    }
    send(fd, request.data(), request.size(), MSG_NOSIGNAL);
    std::string answer;
    char buf[4096];
    ssize_t n;
    while ((n = recv(fd, buf, sizeof(buf), 0)) > 0) {
        answer.append(buf, static_cast<size_t>(n));
    }
    close(fd);
    return answer;
}

TEST(SimHttpServer, ServesAndAppliesArmedFaultsOnce) {
    lmsim::WebSettings settings;
    settings.bandwidthBytes = 1000;
    lmsim::SimWeb web(Standard(), settings);
    lmsim::SimFaults faults;
    lmsim::SimHttpServer server(web, faults);
    std::string error;
    ASSERT_TRUE(server.Listen(0, error)) << error;
    server.Start();
    const std::string get = "GET " + settings.bandwidthPath + " HTTP/1.1\r\nHost: x\r\n\r\n";

    std::string normal = Exchange(server.Port(), get);
    EXPECT_EQ(normal.find("HTTP/1.1 200 OK\r\n"), 0u);
    EXPECT_NE(normal.find("Content-Length: 1000\r\n"), std::string::npos);
    EXPECT_EQ(normal.size() - normal.find("\r\n\r\n") - 4, 1000u);

    EXPECT_NE(Exchange(server.Port(), "GET /__lmsim/fault?kind=close-mid-body HTTP/1.1\r\n\r\n")
                  .find("armed"),
              std::string::npos);
    std::string cut = Exchange(server.Port(), get);
    EXPECT_EQ(cut.size() - cut.find("\r\n\r\n") - 4, 500u);

    Exchange(server.Port(), "GET /__lmsim/fault?kind=bad-content-length&count=1 HTTP/1.1\r\n\r\n");
    EXPECT_NE(Exchange(server.Port(), get).find("Content-Length: 1100\r\n"), std::string::npos);

    Exchange(server.Port(), "GET /__lmsim/fault?kind=http-status&value=500 HTTP/1.1\r\n\r\n");
    EXPECT_EQ(Exchange(server.Port(), get).find("HTTP/1.1 500 "), 0u);
    EXPECT_EQ(Exchange(server.Port(), get).find("HTTP/1.1 200 OK"), 0u);  // used up

    EXPECT_EQ(Exchange(server.Port(), "GET /__lmsim/fault?kind=bogus HTTP/1.1\r\n\r\n")
                  .find("HTTP/1.1 400"),
              0u);
    EXPECT_EQ(Exchange(server.Port(), "garbage\r\n\r\n"), "");  // no request line: just closed
    server.Stop();
}

TEST(SimFaults, SpecsAreValidated) {
    lmsim::Fault f;
    EXPECT_TRUE(lmsim::SimFaults::ParseFault("delay:250", f));
    EXPECT_EQ(f.value, 250);
    EXPECT_TRUE(lmsim::SimFaults::ParseFault("malformed-xml", f));
    EXPECT_FALSE(lmsim::SimFaults::ParseFault("http-status", f));  // a status is required
    EXPECT_FALSE(lmsim::SimFaults::ParseFault("http-status:42", f));
    EXPECT_FALSE(lmsim::SimFaults::ParseFault("delay:soon", f));
    EXPECT_FALSE(lmsim::SimFaults::ParseFault("explode", f));
    lmsim::SimFaults faults;
    faults.Arm({lmsim::FaultKind::Delay, 5}, -1);  // for good
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::Delay);
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::Delay);
    faults.Arm({lmsim::FaultKind::None, 0}, 3);
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::None);
    // Two answers go through, the third gets the fault, the fourth is normal again.
    faults.Arm({lmsim::FaultKind::HttpStatus, 500}, 1, 2);
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::None);
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::None);
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::HttpStatus);
    EXPECT_EQ(faults.Take().kind, lmsim::FaultKind::None);
}

}  // namespace

TEST(SimRequestLog, SoapLineNamesTheOperationAndItsLeafArguments) {
    const std::string request =
        "POST /api/RealTimeBrowse.asmx HTTP/1.1\r\nHost: x\r\n\r\n"
        "<?xml version=\"1.0\"?><SOAP-ENV:Envelope xmlns:SOAP-ENV=\"e\"><SOAP-ENV:Header>"
        "<wsse:Password>secret</wsse:Password></SOAP-ENV:Header><SOAP-ENV:Body>"
        "<LM1:getTitlesByNavigation><LM1:NavigationID>12</LM1:NavigationID><LM1:Page>"
        "<LM1:PageNumber>2</LM1:PageNumber><LM1:Empty/></LM1:Page><LM1:Query></LM1:Query>"
        "</LM1:getTitlesByNavigation></SOAP-ENV:Body></SOAP-ENV:Envelope>";
    // The header (and its secrets) stays out; nested and empty elements are leaves too.
    EXPECT_EQ(lmsim::SimRequestLog::SoapLine(request),
              "SOAP getTitlesByNavigation NavigationID=12 PageNumber=2 Empty= Query=");
    EXPECT_EQ(lmsim::SimRequestLog::SoapLine("GET / HTTP/1.1\r\n\r\n"), "");
    EXPECT_EQ(lmsim::SimRequestLog::SoapLine("<Envelope><Body></Body></Envelope>"), "");
}
