// A 50-title getTitles page answered from the client's cache against the same call to the service
// simulator over TLS on loopback, both in one run.
//
// The service path is what a page costs on a cache miss: a TLS connection (the client does not
// keep connections alive between calls), the request, the simulator building and writing the
// answer, and the conversion into the caller's record. The cache path is a database read, the
// decompression and deserialisation of the stored answer and the same conversion.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdio>
#include <string>

#include "LMAnswerMemo.h"
#include "LM_WS_CacheParam.h"
#include "LM_WS.h"
#include "LmsimProcess.h"

namespace {

const int32_t kGenre = 1;
const LM_WS_Page kPage = {1, 50};
const int32_t kAnyPurchase = 2;
// Full pages cycled through to defeat the client's memo of decoded entries (it keeps fewer):
// the first eight pages of genre 1, then the first page of genre 2.
const int kDecodedPages = static_cast<int>(LMAnswerMemo::kCapacity) + 1;
struct Request {
    int32_t genre;
    LM_WS_Page page;
};
Request Nth(int n) {
    return n < 8 ? Request{kGenre, {n + 1, kPage.ItemsPerPage}}
                 : Request{kGenre + 1, {n - 7, kPage.ItemsPerPage}};
}

struct Fixture {
    LmsimProcess sim;
    std::string cacheDir;
    LM_WS_Handle cached{};
    LM_WS_Handle direct{};
    bool ready = false;

    Fixture() {
        if (!sim.Ready()) {
            return;
        }
        for (const char* host :
             {"LM_WS_PRODUCTION_HOST", "LM_WS_STAGING_HOST", "LM_WS_STAGING_API_HOST",
              "LM_WS_ADULT_PRODUCTION_HOST", "LM_WS_ADULT_STAGING_HOST"}) {
            setenv(host, "127.0.0.1", 1);
        }
        setenv("LM_WS_HTTPS_PORT", std::to_string(sim.HttpsPort()).c_str(), 1);
        setenv("LM_WS_HTTP_PORT", std::to_string(sim.HttpPort()).c_str(), 1);
        setenv("LM_WS_CAFILE", sim.CaFile().c_str(), 1);
        char templ[] = "/tmp/lmcatbenchXXXXXX";
        cacheDir = mkdtemp(templ);

        LM_WS_SetupParams p{};
        p.APIKey = "bench";
        p.DestinationUniqueID = "bench-device";
        p.UserName = "bench@lumora.example";
        p.Password = "bench";
        p.EnvNum = 2;
        p.AccessType = 2;
        if (LM_WS_Setup(&direct, &p) != LM_WS_OK) {
            return;
        }
        p.CacheType = LM_WS_CacheParam::File;
        p.CacheData = LM_WS_CacheParam::Service;
        p.CachePath = cacheDir.c_str();
        if (LM_WS_Setup(&cached, &p) != LM_WS_OK) {
            return;
        }
        // Fill the cache once; every later call with the same request is a hit.
        ready = true;
        for (int n = 0; n < kDecodedPages; ++n) {
            LM_WS_TitlesResponse page;
            Request r = Nth(n);
            ready = ready &&
                    LM_WS_getTitles(&cached, r.genre, r.page, kAnyPurchase, &page) == LM_WS_OK &&
                    page.Titles.Count == kPage.ItemsPerPage;
            LM_WS_FreeResult(&page);
        }
    }
    ~Fixture() {
        LM_WS_Teardown(&cached);
        LM_WS_Teardown(&direct);
        if (!cacheDir.empty()) {
            (void)std::system(("rm -rf '" + cacheDir + "'").c_str());
        }
    }
};

Fixture& Shared() {
    static Fixture fixture;
    return fixture;
}

void GetTitles(benchmark::State& state, LM_WS_Handle* handle, int pages = 1) {
    int n = 0;
    for (auto _ : state) {
        LM_WS_TitlesResponse page;
        Request r = Nth(n++ % pages);
        LM_WS_Status status = LM_WS_getTitles(handle, r.genre, r.page, kAnyPurchase, &page);
        if (status != LM_WS_OK || page.Titles.Count != kPage.ItemsPerPage) {
            state.SkipWithError("getTitles did not answer a full page");
        }
        LM_WS_FreeResult(&page);
    }
}

void BM_GetTitlesFromCache(benchmark::State& state) {
    Fixture& f = Shared();
    if (!f.ready) {
        state.SkipWithError("the simulator or the client did not start");
        return;
    }
    GetTitles(state, &f.cached);
}
BENCHMARK(BM_GetTitlesFromCache)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Every read decodes the stored XML: what a page costs the first time it is read from the cache.
void BM_GetTitlesFromCacheDecoded(benchmark::State& state) {
    Fixture& f = Shared();
    if (!f.ready) {
        state.SkipWithError("the simulator or the client did not start");
        return;
    }
    GetTitles(state, &f.cached, kDecodedPages);
}
BENCHMARK(BM_GetTitlesFromCacheDecoded)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_GetTitlesFromService(benchmark::State& state) {
    Fixture& f = Shared();
    if (!f.ready) {
        state.SkipWithError("the simulator or the client did not start");
        return;
    }
    GetTitles(state, &f.direct);
}
BENCHMARK(BM_GetTitlesFromService)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
