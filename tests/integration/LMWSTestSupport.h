// Helpers of the client-library tests: set-up parameters that need no network, a handle torn
// down at the end of a test, pointing the deployment hosts at the simulator or at nothing, and a
// throwaway folder.
#ifndef LMWS_TEST_SUPPORT_H
#define LMWS_TEST_SUPPORT_H

#include <stdlib.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "LMString.h"
#include "LMWSClient.h"
#include "LM_WS.h"
#include "LmsimProcess.h"

namespace lmws_test {

// A port on which nothing listens: connections to it are refused at once.
inline const char kClosedPort[] = "1";

// Settings that need no network: a fixed environment, a fixed access type, no cache.
struct Params {
    std::string apiKey = "api-key";
    std::string uniqueId = "device 0001";
    std::string userName = "user@example";
    std::string password = "secret";
    std::string cachePath;
    std::string revision, firmware, model;
    LM_WS_SetupParams p{};

    Params() {
        p.DestinationTypeID = 7;
        p.Type = LM_WS_ContentGeneral;
        p.EnvNum = 2;
        p.CacheType = LM_WS_CacheParam::None;
        p.AccessType = 2;
    }
    // The text fields point into this object: call after changing them.
    const LM_WS_SetupParams* Get() {
        p.APIKey = apiKey.c_str();
        p.DestinationUniqueID = uniqueId.c_str();
        p.UserName = userName.c_str();
        p.Password = password.c_str();
        p.CachePath = p.CacheType == LM_WS_CacheParam::File ? cachePath.c_str() : nullptr;
        p.ApplicationRevision = revision.c_str();
        p.firmwareVersion = firmware.c_str();
        p.modelNumber = model.c_str();
        return &p;
    }
};

// A result record of type R, zeroed, released with LM_WS_FreeResult whatever happens in the
// test; `&record` is the record itself, as the operations take it.
template <class R>
struct Record {
    R r;
    Record() { std::memset(static_cast<void*>(&r), 0, sizeof r); }
    ~Record() { LM_WS_FreeResult(&r); }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
    R* operator->() { return &r; }
    R* operator&() { return &r; }
};

// A handle that is torn down when the test ends.
struct Client {
    LM_WS_Handle h{};
    ~Client() { LM_WS_Teardown(&h); }
    LM_WS_Status Setup(Params& params) { return LM_WS_Setup(&h, params.Get()); }
    LMWSClient* Context() { return LMWSClient::From(&h); }
    const LM_WS_SetupParams2& Block() { return Context()->m_Params; }
};

inline void SetHosts(const char* production, const char* staging, const char* stagingApi,
                     const char* adultProduction, const char* adultStaging) {
    setenv("LM_WS_PRODUCTION_HOST", production, 1);
    setenv("LM_WS_STAGING_HOST", staging, 1);
    setenv("LM_WS_STAGING_API_HOST", stagingApi, 1);
    setenv("LM_WS_ADULT_PRODUCTION_HOST", adultProduction, 1);
    setenv("LM_WS_ADULT_STAGING_HOST", adultStaging, 1);
}

// Every host on loopback, nothing listening.
inline void NoServer() {
    SetHosts("127.0.0.1", "127.0.0.1", "127.0.0.1", "127.0.0.1", "127.0.0.1");
    setenv("LM_WS_HTTPS_PORT", kClosedPort, 1);
    setenv("LM_WS_HTTP_PORT", kClosedPort, 1);
    unsetenv("LM_WS_CAFILE");
}

// Every host is the simulator; its test CA is trusted unless `trust` is false.
inline void PointAt(const LmsimProcess& sim, bool trust = true) {
    SetHosts("127.0.0.1", "127.0.0.1", "127.0.0.1", "127.0.0.1", "127.0.0.1");
    setenv("LM_WS_HTTPS_PORT", std::to_string(sim.HttpsPort()).c_str(), 1);
    setenv("LM_WS_HTTP_PORT", std::to_string(sim.HttpPort()).c_str(), 1);
    if (trust) {
        setenv("LM_WS_CAFILE", sim.CaFile().c_str(), 1);
    } else {
        unsetenv("LM_WS_CAFILE");
    }
}

// A fresh folder, removed with its contents at the end of the test.
struct TempDir {
    std::string path;
    TempDir() {
        char templ[] = "/tmp/lmwssetupXXXXXX";
        path = mkdtemp(templ);
    }
    ~TempDir() { (void)std::system(("rm -rf '" + path + "'").c_str()); }
};

inline std::string Str(const LMString& s) {
    return std::string(s.c_str(), s.length());
}

// How often `part` occurs in `text`, overlaps included.
inline size_t Count(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++n;
    }
    return n;
}

}  // namespace lmws_test

#endif  // LMWS_TEST_SUPPORT_H
