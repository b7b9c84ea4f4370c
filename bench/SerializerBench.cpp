// A cached answer's whole path: serialize a 50-title page with compression, store it, load it
// and deserialize it again, on a memory and on a file cache.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "CacheMgr.h"
#include "Serializer.h"
#include "TitlesPage.h"
#include "soapH.h"

namespace {

// What a miss adds (serialize and store) and what a hit costs (load and deserialize).
struct RoundTrip {
    explicit RoundTrip(uint32_t type)
        : ctx(SOAP_C_UTFSTRING), writer(true, false), reader(true, false) {
        page = MakeTitles(&ctx, 50);
        char templ[] = "/tmp/lmbenchXXXXXX";
        dir = mkdtemp(templ);
        LM_WS_CacheParam p;
        p.CacheType = type;
        p.CacheData = LM_WS_CacheParam::Service;
        p.CachePath = (dir + "/cache.db").c_str();
        cache.Init(p);
    }
    ~RoundTrip() {
        cache.Uninit();
        std::remove((dir + "/cache.db").c_str());
        rmdir(dir.c_str());
        soap_destroy(&ctx);
        soap_end(&ctx);
    }
    void Store() {
        writer.Write(*page);
        cache.SetServiceData("getTitles", "12,1,50,2", writer.GetBuffer());
    }
    bool Load() {
        LMString loaded;
        cache.GetServiceData("getTitles", "12,1,50,2", loaded);
        LM1__GetTitlesResponse back;
        bool ok = reader.Read(loaded, back);
        reader.Reset();
        return ok;
    }
    struct soap ctx;
    LM1__GetTitlesResponse* page;
    std::string dir;
    CacheMgr cache;
    Serializer writer;
    Serializer reader;
};

void BM_SerializeAndStore(benchmark::State& state) {
    RoundTrip rt(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        rt.Store();
    }
    state.counters["stored_bytes"] = rt.writer.GetBuffer().length();
}

void BM_LoadAndDeserialize(benchmark::State& state) {
    RoundTrip rt(static_cast<uint32_t>(state.range(0)));
    rt.Store();
    for (auto _ : state) {
        benchmark::DoNotOptimize(rt.Load());
    }
}

void BM_CachedAnswerRoundTrip(benchmark::State& state) {
    RoundTrip rt(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        rt.Store();
        benchmark::DoNotOptimize(rt.Load());
    }
}

// Argument: 1 memory, 2 file.
BENCHMARK(BM_SerializeAndStore)->Arg(LM_WS_CacheParam::Memory)->Arg(LM_WS_CacheParam::File);
BENCHMARK(BM_LoadAndDeserialize)->Arg(LM_WS_CacheParam::Memory)->Arg(LM_WS_CacheParam::File);
BENCHMARK(BM_CachedAnswerRoundTrip)->Arg(LM_WS_CacheParam::Memory)->Arg(LM_WS_CacheParam::File);

}  // namespace

BENCHMARK_MAIN();
