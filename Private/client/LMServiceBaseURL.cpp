// The environment table and the service's environment query.
#include <cstdio>

#include "LMAssert.h"
#include "LMDeployment.h"
#include "LMRawHttp.h"
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
    LMRawHttp::Connection connection(so);
    if (!connection.Open(url, deployment.productionHost, deployment.httpsPort)) {
        return LMString();
    }

    char request[2048];
    int length = safe_snprintf(request, sizeof(request), "GET /device/env/?d=%s&dt=%d HTTP/1.1\r\n",
                               id.c_str(), DestinationTypeID);
    const LMString headers = LMString("User-Agent: LMWSLib\r\nHost: ") + host + "\r\n\r\n";
    char block[LMRawHttp::kFirstBlock + 1];
    size_t received = 0;
    LMRawHttp::Head head;
    int found = 2;
    if (LMRawHttp::Exchange(connection, LMString(request, static_cast<size_t>(length)) + headers,
                            block, received, head)) {
        found = LMRawHttp::EnvironmentId(head, block, received);
    }
    connection.Close();

    envID = found;
    const int entry = found == 0 ? 0 : (found == 1 ? 1 : 2);
    const LMString& base = table.url[column * 3 + entry];
    printf("\n---> End-Point URL: %s <---\n\n", base.c_str());
    return base;
}
