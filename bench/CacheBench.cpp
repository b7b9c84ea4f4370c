// Cost of cache reads and writes on a file database (write-ahead log, shared with other
// processes) and on a memory database.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "CacheMgr.h"

namespace {

const uint32_t kAll =
    LM_WS_CacheParam::Service | LM_WS_CacheParam::BoxArt | LM_WS_CacheParam::UserData;

struct Fixture {
    explicit Fixture(uint32_t type) {
        char templ[] = "/tmp/lmbenchXXXXXX";
        dir = mkdtemp(templ);
        LM_WS_CacheParam p;
        p.CacheType = type;
        p.CacheData = kAll;
        p.CacheLimit = 0;
        p.CachePath = (dir + "/cache.db").c_str();
        cache.Init(p);
        // A compressed 50-title page is a few kilobytes.
        value = LMString(std::string(6000, 'v').c_str());
        for (int i = 0; i < 200; ++i) {
            cache.SetServiceData("getTitles", std::to_string(i).c_str(), value);
        }
    }
    ~Fixture() {
        cache.Uninit();
        std::remove((dir + "/cache.db").c_str());
        rmdir(dir.c_str());
    }
    std::string dir;
    CacheMgr cache;
    LMString value;
};

void BM_CacheGet(benchmark::State& state) {
    Fixture f(static_cast<uint32_t>(state.range(0)));
    LMString out;
    int i = 0;
    for (auto _ : state) {
        bool hit = f.cache.GetServiceData("getTitles", std::to_string(i++ % 200).c_str(), out);
        benchmark::DoNotOptimize(hit);
    }
}

void BM_CacheSet(benchmark::State& state) {
    Fixture f(static_cast<uint32_t>(state.range(0)));
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            f.cache.SetServiceData("getTitles", std::to_string(i++ % 200).c_str(), f.value));
    }
}

// Argument: 1 memory, 2 file.
BENCHMARK(BM_CacheGet)->Arg(LM_WS_CacheParam::Memory)->Arg(LM_WS_CacheParam::File);
BENCHMARK(BM_CacheSet)->Arg(LM_WS_CacheParam::Memory)->Arg(LM_WS_CacheParam::File);

}  // namespace

BENCHMARK_MAIN();
