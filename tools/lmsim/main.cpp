// lmsim: the Lumora service simulator. Serves the three SOAP services and the environment query
// over HTTPS, and the device clock, box art and bandwidth file over plain HTTP, on loopback.
#include <signal.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "SimAccounts.h"
#include "SimCatalogue.h"
#include "SimFaults.h"
#include "SimHttpServer.h"
#include "SimSoapServer.h"
#include "SimWeb.h"

namespace {

using lmsim::AccountDefaults;
using lmsim::Code;

void Usage(FILE* out) {
    fprintf(out,
            "usage: lmsim --tls-dir DIR [--https-port P] [--http-port Q] [options]\n"
            "\n"
            "Serves the Lumora SOAP services (RealTimeBrowse, StreamAPI, DownloadAPI) and the\n"
            "environment query over HTTPS, and the device clock, box art and the bandwidth file\n"
            "over plain HTTP, on 127.0.0.1. Prints 'lmsim listening https=P http=Q' when ready\n"
            "and runs until SIGINT or SIGTERM.\n"
            "\n"
            "  --tls-dir DIR          server.pem and server.key (see scripts/make-test-certs)\n"
            "  --https-port P         HTTPS port, 0 picks a free one (default 0)\n"
            "  --http-port Q          plain HTTP port, 0 picks a free one (default 0)\n"
            "  --env-digit D          the environment query's answer (default 2, production)\n"
            "  --access-type N        what getFileType answers: 1 download, 2 stream (default 2)\n"
            "  --bandwidth-bytes N    size of the bandwidth-check file (default 262144)\n"
            "  --request-log FILE     append one line per request served: 'SOAP operation\n"
            "                         name=value ...' or 'GET path'\n"
            "  --fault KIND[:VALUE]   arm a fault for every answer: delay:MS, close-mid-body,\n"
            "                         http-status:CODE, malformed-xml, bad-content-length,\n"
            "                         response-code:N (the answer's first ResponseCode 0 is N,\n"
            "                         1 to 9), drip:MS (the answer a byte every MS ms),\n"
            "                         huge-text:MIB (MIB MiB more of the answer's first text),\n"
            "                         hang-up (close once the request is read, no answer),\n"
            "                         gzip-bomb:MIB (a few KB of gzip inflating to MIB MiB)\n"
            "  --idle-ms MS           close a kept-alive HTTPS connection after MS ms without\n"
            "                         a request (default 5000)\n"
            "  --max-connections N    keep at most N HTTPS connections alive at once; more\n"
            "                         are served one request each (default 32)\n"
            "  --max-requests N       close an HTTPS connection after N requests (default 1000)\n"
            "  --no-resumption        no TLS session resumption: every connection makes a full\n"
            "                         handshake\n"
            "  --help                 this text\n"
            "\n"
            "Faults can also be armed per request: GET /__lmsim/fault?kind=K&value=V&count=N on\n"
            "the plain HTTP port applies K to the next N answers of either port; &skip=M\n"
            "lets M answers through first. A harmed answer closes its connection. Answers go\n"
            "gzip-compressed when the request accepts it. GET /__lmsim/stats tells the HTTPS\n"
            "side's counts: 'connections=N resumed=M requests=K compressed=C'.\n"
            "\n"
            "Catalogue: a product's ExpireDate reads \"YYYY/12/31 23:59:59\"; bought SD\n"
            "  copies have none; SKU %d (title 100000's first) ended \"2012/03/05 23:59:00\".\n"
            "\n"
            "Accounts (in memory, lost at exit; ids and tokens count up in request order):\n"
            "  authorizeDevice with Pin %d activates the device the header names\n"
            "    (DestinationUniqueID) for the WS-Security user's account, created on first use\n"
            "    (\"%s\" without a user name); its answer's AuthToken goes in the device header\n"
            "    of later calls. Any other Pin answers ResponseCode %d, no device id %d.\n"
            "  Every account, wishlist, purchase and streaming call needs that token, current\n"
            "  and of the same device; otherwise it answers ResponseCode %d (checkAuthToken\n"
            "  answers false; getConfig and GetCountryID need no token).\n"
            "  A new account: e-mail USER@example.com (or the user name when it is one), card\n"
            "    %s ending %s, prepaid balance %d cents, adult PIN \"%04d\", country %d.\n"
            "  Purchases: SKU %d is always declined (ResponseCode %d); paying with prepaid funds\n"
            "    beyond the balance answers %d; an unknown SKU %d; a SKU with a pass in force %d.\n"
            "    Orders are taxed at %d%%; rentals end after their RentalPeriod.\n"
            "  Gift certificates: \"GIFT-<cents>-<anything>\" (at most %d cents) is worth its\n"
            "    cents once; an unknown code answers %d, a used one %d.\n"
            "  removeAllMyPurchases wants the password of the request that created the account.\n",
            lmsim::kFirstSku, AccountDefaults::kActivationPin, AccountDefaults::kDemoUser,
            Code::kWrongPin, Code::kNoDeviceId, Code::kNotAuthorised, AccountDefaults::kCardType,
            AccountDefaults::kCardLastFour, AccountDefaults::kPrepaidCents,
            AccountDefaults::kAdultPin, AccountDefaults::kCountryId, AccountDefaults::kDecliningSku,
            Code::kDeclined, Code::kInsufficientFunds, Code::kUnknownSku, Code::kAlreadyOwned,
            AccountDefaults::kTaxPercent, AccountDefaults::kGiftCentsLimit, Code::kGiftInvalid,
            Code::kGiftUsed);
}

bool ParseInt(const char* text, long lo, long hi, long& out) {
    char* end = nullptr;
    long v = strtol(text, &end, 10);
    if (end == text || *end != 0 || v < lo || v > hi) {
        return false;
    }
    out = v;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::string tlsDir;
    long httpsPort = 0;
    long httpPort = 0;
    long accessType = 2;
    long bandwidth = 262144;
    lmsim::WebSettings web;
    lmsim::Fault fault;
    std::string requestLogPath;
    lmsim::SimSoapServer::KeepAlive keepAlive;
    long idleMs = keepAlive.idleMs;
    long maxConnections = keepAlive.maxConnections;
    long maxRequests = keepAlive.maxRequests;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            Usage(stdout);
            return 0;
        }
        if (arg == "--no-resumption") {
            keepAlive.resumption = false;
            continue;
        }
        if (i + 1 >= argc) {
            fprintf(stderr, "lmsim: %s needs a value (see --help)\n", arg.c_str());
            return 2;
        }
        const char* value = argv[++i];
        bool ok = true;
        if (arg == "--tls-dir") {
            tlsDir = value;
        } else if (arg == "--https-port") {
            ok = ParseInt(value, 0, 65535, httpsPort);
        } else if (arg == "--http-port") {
            ok = ParseInt(value, 0, 65535, httpPort);
        } else if (arg == "--env-digit") {
            ok = strlen(value) == 1 && value[0] >= '0' && value[0] <= '9';
            web.envDigit = value;
        } else if (arg == "--access-type") {
            ok = ParseInt(value, 0, 2, accessType);
        } else if (arg == "--bandwidth-bytes") {
            ok = ParseInt(value, 1, 64L << 20, bandwidth);
        } else if (arg == "--request-log") {
            requestLogPath = value;
        } else if (arg == "--idle-ms") {
            ok = ParseInt(value, 0, 600000, idleMs);
        } else if (arg == "--max-connections") {
            ok = ParseInt(value, 0, 4096, maxConnections);
        } else if (arg == "--max-requests") {
            ok = ParseInt(value, 1, 1000000, maxRequests);
        } else if (arg == "--fault") {
            ok = lmsim::SimFaults::ParseFault(value, fault);
        } else {
            fprintf(stderr, "lmsim: unknown option %s (see --help)\n", arg.c_str());
            return 2;
        }
        if (!ok) {
            fprintf(stderr, "lmsim: bad value for %s: %s\n", arg.c_str(), value);
            return 2;
        }
    }
    if (tlsDir.empty()) {
        fprintf(stderr, "lmsim: --tls-dir is required (see --help)\n");
        return 2;
    }
    web.bandwidthBytes = static_cast<size_t>(bandwidth);
    keepAlive.idleMs = static_cast<int>(idleMs);
    keepAlive.maxConnections = static_cast<int>(maxConnections);
    keepAlive.maxRequests = static_cast<int>(maxRequests);

    // Block the stop signals in every thread; the main thread waits for them below. A peer
    // that drops its connection must not kill the simulator.
    sigset_t stop;
    sigemptyset(&stop);
    sigaddset(&stop, SIGINT);
    sigaddset(&stop, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stop, nullptr);
    signal(SIGPIPE, SIG_IGN);

    soap_ssl_init();
    const lmsim::Catalogue catalogue = lmsim::Catalogue::Build();
    lmsim::SimAccounts accounts(catalogue);
    lmsim::SimWeb simWeb(catalogue, web);
    lmsim::SimFaults faults;
    if (fault.kind != lmsim::FaultKind::None) {
        faults.Arm(fault, -1);
    }
    lmsim::SimRequestLog requestLog;
    if (!requestLogPath.empty() && !requestLog.Open(requestLogPath)) {
        fprintf(stderr, "lmsim: cannot open the request log %s\n", requestLogPath.c_str());
        return 1;
    }
    // The plain-HTTP port first: the SOAP answers name URLs on it.
    lmsim::SimHttpServer http(simWeb, faults);
    http.SetRequestLog(&requestLog);
    std::string error;
    if (!http.Listen(static_cast<int>(httpPort), error)) {
        fprintf(stderr, "lmsim: HTTP: %s\n", error.c_str());
        return 1;
    }
    lmsim::SimState state{catalogue, accounts, static_cast<int>(accessType), http.Port(),
                          web.bandwidthPath};
    lmsim::SimSoapServer https(state, simWeb, faults, keepAlive);
    https.SetRequestLog(&requestLog);
    http.SetStats(&https.Stats());
    if (!https.Listen(tlsDir, static_cast<int>(httpsPort), error)) {
        fprintf(stderr, "lmsim: HTTPS: %s\n", error.c_str());
        return 1;
    }
    https.Start();
    http.Start();
    printf("lmsim listening https=%d http=%d\n", https.Port(), http.Port());
    fflush(stdout);

    int sig = 0;
    sigwait(&stop, &sig);
    http.Stop();
    https.Stop();
    return 0;
}
