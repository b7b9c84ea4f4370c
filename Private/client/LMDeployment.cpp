#include "LMDeployment.h"

#include <cstdio>
#include <cstdlib>

namespace {

LMString FromEnv(const char* name, const char* fallback) {
    const char* value = getenv(name);
    return LMString(value != nullptr && value[0] != 0 ? value : fallback);
}

// The whole number in `name` when it lies in [low, high], else `fallback`.
int NumberFromEnv(const char* name, long low, long high, int fallback) {
    const char* value = getenv(name);
    if (value == nullptr || value[0] == 0) {
        return fallback;
    }
    char* end = nullptr;
    long number = strtol(value, &end, 10);
    return (*end == 0 && number >= low && number <= high) ? static_cast<int>(number) : fallback;
}

}  // namespace

LMDeployment LMDeployment::FromEnvironment() {
    LMDeployment d;
    d.productionHost = FromEnv("LM_WS_PRODUCTION_HOST", LM_WS_DEFAULT_PRODUCTION_HOST);
    d.stagingHost = FromEnv("LM_WS_STAGING_HOST", LM_WS_DEFAULT_STAGING_HOST);
    d.stagingApiHost = FromEnv("LM_WS_STAGING_API_HOST", LM_WS_DEFAULT_STAGING_API_HOST);
    d.adultProductionHost =
        FromEnv("LM_WS_ADULT_PRODUCTION_HOST", LM_WS_DEFAULT_ADULT_PRODUCTION_HOST);
    d.adultStagingHost = FromEnv("LM_WS_ADULT_STAGING_HOST", LM_WS_DEFAULT_ADULT_STAGING_HOST);
    d.webHost = FromEnv("LM_WS_WEB_HOST", d.productionHost.c_str());
    d.httpsPort = NumberFromEnv("LM_WS_HTTPS_PORT", 1, 65535, 443);
    d.httpPort = NumberFromEnv("LM_WS_HTTP_PORT", 1, 65535, 80);
    d.callDeadline = NumberFromEnv("LM_WS_CALL_DEADLINE", 1, kMaxCallDeadline, kMaxCallDeadline);
    d.caFile = FromEnv("LM_WS_CAFILE", "");
    return d;
}

LMString LMDeployment::HostHeader(const LMString& host, int port, bool tls) {
    if (port == (tls ? 443 : 80)) {
        return host;
    }
    char suffix[16];
    snprintf(suffix, sizeof(suffix), ":%d", port);
    return host + suffix;
}
