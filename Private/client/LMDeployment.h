// Deployment configuration: the service's host names and ports. Defaults are compiled in; the
// environment overrides them (read once, at client set-up):
//   LM_WS_PRODUCTION_HOST, LM_WS_STAGING_HOST, LM_WS_STAGING_API_HOST,
//   LM_WS_ADULT_PRODUCTION_HOST, LM_WS_ADULT_STAGING_HOST, LM_WS_WEB_HOST (box art; defaults to
//   the production host), LM_WS_HTTPS_PORT, LM_WS_HTTP_PORT, LM_WS_CAFILE (extra trusted roots),
//   LM_WS_CALL_DEADLINE (seconds one call may take in all, 1 to 120; 120 by default).
// The schema host of namespace URIs and SOAP actions is not a deployment value.
#ifndef LM_DEPLOYMENT_H
#define LM_DEPLOYMENT_H

#include "LMString.h"

#define LM_WS_SCHEMA_HOST "www.lumora.example"
#define LM_WS_DEFAULT_PRODUCTION_HOST "www.lumora.example"
#define LM_WS_DEFAULT_STAGING_HOST "stg.lumora.example"
#define LM_WS_DEFAULT_STAGING_API_HOST "stgapi.lumora.example"
#define LM_WS_DEFAULT_ADULT_PRODUCTION_HOST "adult.lumora.example"
#define LM_WS_DEFAULT_ADULT_STAGING_HOST "stg-adult.lumora.example"

struct LMDeployment {
    LMString productionHost;
    LMString stagingHost;
    LMString stagingApiHost;
    LMString adultProductionHost;
    LMString adultStagingHost;
    LMString webHost;
    int httpsPort = 443;
    int httpPort = 80;
    LMString caFile;  // empty: only the built-in roots
    // However the server behaves, a call (connect, send, receive) ends after this many seconds.
    int callDeadline = kMaxCallDeadline;
    static constexpr int kMaxCallDeadline = 120;

    // The compiled-in defaults with the environment's overrides applied. A port that is not a
    // number from 1 to 65535 keeps its default.
    static LMDeployment FromEnvironment();

    // "host" or "host:port" when the port is not the scheme's default, for "Host:" headers and
    // URLs.
    static LMString HostHeader(const LMString& host, int port, bool tls);
};

#endif  // LM_DEPLOYMENT_H
