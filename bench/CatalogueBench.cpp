// A 50-title getTitles page answered from the client's cache against the same call to the service
// simulator over TLS on loopback, both in one run.
//
// The service path is what a page costs without a cache: the request over TLS, the simulator
// building and writing the answer, and the conversion into the caller's record. The
// cache path is a database read, the decompression and deserialisation of the stored answer and
// the same conversion. A miss is the service path plus the database read that found nothing and
// the serialisation, compression and write of the answer.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "CacheMgr.h"
#include "LMAnswerMemo.h"
#include "LM_WS_CacheParam.h"
#include "LM_WS.h"
#include "LMWSTestSupport.h"
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
    lmws_test::TempDir cacheDir;
    LM_WS_Handle cached{};
    LM_WS_Handle direct{};
    // A second manager of the cached client's file, to drop stored answers between calls.
    CacheMgr other;
    bool ready = false;

    Fixture() {
        if (!sim.Ready()) {
            return;
        }
        lmws_test::PointAt(sim);
        lmws_test::Params params;
        if (LM_WS_Setup(&direct, params.Get()) != LM_WS_OK) {
            return;
        }
        params.p.CacheType = LM_WS_CacheParam::File;
        params.p.CacheData = LM_WS_CacheParam::Service;
        params.cachePath = cacheDir.path;
        if (LM_WS_Setup(&cached, params.Get()) != LM_WS_OK) {
            return;
        }
        LM_WS_CacheParam param;
        param.CacheType = LM_WS_CacheParam::File;
        param.CacheData = LM_WS_CacheParam::Service;
        // The one database file the cached client made in its folder.
        param.CachePath = LMWSClient::From(&cached)->m_Params.Cache.CachePath;
        if (param.CachePath.empty() || other.Init(param) != 0) {
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
        other.Uninit();
        LM_WS_Teardown(&cached);
        LM_WS_Teardown(&direct);
    }
};

Fixture& Shared() {
    static Fixture fixture;
    return fixture;
}

// The shared fixture, or null with the benchmark skipped when it did not start.
Fixture* Started(benchmark::State& state) {
    Fixture& f = Shared();
    if (!f.ready) {
        state.SkipWithError("the simulator or the client did not start");
        return nullptr;
    }
    return &f;
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
    Fixture* f = Started(state);
    if (f == nullptr) {
        return;
    }
    GetTitles(state, &f->cached);
}
BENCHMARK(BM_GetTitlesFromCache)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Every read decodes the stored XML: what a page costs the first time it is read from the cache.
void BM_GetTitlesFromCacheDecoded(benchmark::State& state) {
    Fixture* f = Started(state);
    if (f == nullptr) {
        return;
    }
    GetTitles(state, &f->cached, kDecodedPages);
}
BENCHMARK(BM_GetTitlesFromCacheDecoded)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_GetTitlesFromService(benchmark::State& state) {
    Fixture* f = Started(state);
    if (f == nullptr) {
        return;
    }
    GetTitles(state, &f->direct);
}
BENCHMARK(BM_GetTitlesFromService)->Unit(benchmark::kMicrosecond)->UseRealTime();

// A page the cache does not hold: before each call a new catalogue load time drops every stored
// answer, so the call reads nothing, asks the service and stores the answer. Each round also makes
// the same call on the client without a cache, so both are timed side by side in one run:
// `service_us` is that call, `miss_per_service` the ratio of the two.
void BM_GetTitlesCacheMiss(benchmark::State& state) {
    Fixture* f = Started(state);
    if (f == nullptr) {
        return;
    }
    using Clock = std::chrono::steady_clock;
    const Request r = Nth(0);
    auto call = [&](LM_WS_Handle* handle) {
        const Clock::time_point start = Clock::now();
        LM_WS_TitlesResponse page;
        LM_WS_Status status = LM_WS_getTitles(handle, r.genre, r.page, kAnyPurchase, &page);
        const bool full = status == LM_WS_OK && page.Titles.Count == kPage.ItemsPerPage;
        LM_WS_FreeResult(&page);
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        return full ? seconds : -1.0;
    };
    double missSeconds = 0;
    double serviceSeconds = 0;
    int rounds = 0;
    static int loads = 0;  // the load times given so far, over every run of this function
    for (auto _ : state) {
        unsigned stored = 0;
        ++rounds;
        if (f->other.SetLastLoadTime(std::to_string(++loads).c_str()) != 1 ||
            f->other.ExecuteSQL("SELECT COUNT(*) FROM Service", stored) != 0 || stored != 0) {
            state.SkipWithError("the stored answers were not dropped");
            break;
        }
        const double miss = call(&f->cached);
        const double service = call(&f->direct);
        if (miss < 0 || service < 0 ||
            f->other.ExecuteSQL("SELECT COUNT(*) FROM Service", stored) != 0 || stored != 1) {
            state.SkipWithError("getTitles did not answer a full page, or stored nothing");
            break;
        }
        state.SetIterationTime(miss);
        missSeconds += miss;
        serviceSeconds += service;
    }
    if (rounds > 0 && serviceSeconds > 0) {
        state.counters["service_us"] = serviceSeconds * 1e6 / rounds;
        state.counters["miss_per_service"] = missSeconds / serviceSeconds;
    }
}
BENCHMARK(BM_GetTitlesCacheMiss)->Unit(benchmark::kMicrosecond)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
