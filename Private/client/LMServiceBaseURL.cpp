// The environment table and the service's environment query.
#include <cstdio>
#include <cstring>

#include "LMAssert.h"
#include "LMDeployment.h"
#include "LMUtilities.h"
#include "stdsoap2.h"

namespace {

// Six base URLs indexed by content type * 3 + environment id.
struct EnvironmentTable {
    LMString url[6];

    explicit EnvironmentTable(const LMDeployment& d) {
        auto https = [&d](const LMString& host) {
            return LMString("https://") + LMDeployment::HostHeader(host, d.httpsPort, true);
        };
        url[0] = https(d.stagingApiHost) + "/api/";
        url[1] = https(d.stagingHost) + "/api/";
        url[2] = https(d.productionHost) + "/api/";
        url[3] = https(d.stagingApiHost) + "/aac/api/";
        url[4] = https(d.adultStagingHost) + "/api/";
        url[5] = https(d.adultProductionHost) + "/api/";
    }
};

// The environment id of an answer: "HTTP/1.1 200 OK", then a one-byte body announced by
// "Content-Length: 1", whose digit is the id. Anything else is production.
int EnvironmentOf(const char* answer) {
    const char* status = strstr(answer, "HTTP/1.1 200 OK\r\n");
    const char* length = status != nullptr ? strstr(status, "Content-Length: 1\r\n") : nullptr;
    const char* body = length != nullptr ? strstr(length, "\r\n\r\n") : nullptr;
    if (body == nullptr || body[4] == 0) {
        return 2;
    }
    return body[4] - '0';
}

}  // namespace

LMString LMUtilities::QueryServiceBaseURL(const LMDeployment& deployment, int type, struct soap* so,
                                          const char* DestinationUniqueID, int DestinationTypeID,
                                          unsigned EnvNum, int& envID) {
    const EnvironmentTable table(deployment);
    const int column = type == 1 ? 1 : 0;

    if (EnvNum <= 2) {
        envID = static_cast<int>(EnvNum);
        const LMString& url = table.url[column * 3 + envID];
        printf("\n=======>Content type:%d, envID:%d, endpoint URL:%s\n", type, envID, url.c_str());
        return url;
    }

    LM_ASSERT(so != 0);
    LM_ASSERT(DestinationUniqueID != 0);
    const LMString id = URLEncode(DestinationUniqueID);
    const LMString host =
        LMDeployment::HostHeader(deployment.productionHost, deployment.httpsPort, true);
    char url[2048];
    safe_snprintf(url, sizeof(url), "https://%s/device/env/?d=%s&dt=%d", host.c_str(), id.c_str(),
                  DestinationTypeID);
    SOAP_SOCKET socket =
        so->fopen(so, url, deployment.productionHost.c_str(), deployment.httpsPort);
    if (!soap_valid_socket(socket)) {
        return LMString();
    }
    so->socket = socket;

    char request[2048];
    int length = safe_snprintf(request, sizeof(request), "GET /device/env/?d=%s&dt=%d HTTP/1.1\r\n",
                               id.c_str(), DestinationTypeID);
    const LMString headers = LMString("User-Agent: LMWSLib\r\nHost: ") + host + "\r\n\r\n";
    int found = 2;
    if (so->fsend(so, request, static_cast<size_t>(length)) == SOAP_OK &&
        so->fsend(so, headers.c_str(), headers.length()) == SOAP_OK) {
        char answer[2048];
        size_t received = so->frecv(so, answer, sizeof(answer) - 1);
        answer[received] = 0;
        found = EnvironmentOf(answer);
    }
    so->fclose(so);
    so->socket = SOAP_INVALID_SOCKET;

    envID = found;
    const int entry = found == 0 ? 0 : (found == 1 ? 1 : 2);
    const LMString& base = table.url[column * 3 + entry];
    printf("\n---> End-Point URL: %s <---\n\n", base.c_str());
    return base;
}
