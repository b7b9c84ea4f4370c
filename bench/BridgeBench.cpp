// The web-service class as a movie feels it, against the service simulator over TLS:
//
// - BM_TitlesPageToScript / BM_TitlesPageJSONParse: a real 50-title getTitles answer turned into
//   script objects by the result converter, against JSON.parse of the same tree's JSON text in
//   the same heap. The ratio is the figure of interest.
// - BM_GetTitlesRoundTrip: movie -> handler -> worker -> cache hit -> OnUpdate -> completion, for
//   a page already in the file cache.
// - BM_NextPage/prefetched and BM_NextPage/fetched: "next page" (getTitles of page 2) to its
//   completion, once after the page was fetched ahead and once on an instance without
//   prefetching, where it goes to the service.
//
// The asynchronous cases run their loop in the movie and time each call with the native clock;
// the benchmark then reports those times (manual time), one iteration per call.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "LMResultConverter.h"
#include "LMWSLibAE.h"
#include "LMWSTestSupport.h"
#include "LM_WS.h"
#include "LmsimProcess.h"
#include "StageKernelHarness.h"

namespace {

using namespace ae::stagecraft;

benchmark::State* g_State = nullptr;
LM_WS_TitlesResponse g_Page;  // the 50-title answer the conversion benchmarks use
std::vector<double> g_Times;  // seconds per call, recorded by the movie
std::string g_RequestLog;     // the simulator's request log
std::string g_Failure;        // what went wrong in a movie

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class Bench : public ASExtensionClass {
public:
    void Stop(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        context.Stop();
        result.SetStatus(0);
    }
    // Bench.convert(): the timing loop over converting the page.
    void Convert(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        for (auto _ : *g_State) {
            ASValue* value = LMResultToScript(context, 5, &g_Page);
            benchmark::DoNotOptimize(value);
            value->Release();
        }
        result.SetStatus(0);
    }
    // Bench.page(): the page once, for the movie to make the JSON text of.
    void Page(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        ASValue* value = LMResultToScript(context, 5, &g_Page);
        result.SetValue(*value);
        result.SetStatus(0);
        value->Release();
    }
    // Bench.parse(JSON, text): the timing loop over JSON.parse(text).
    void Parse(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASObject* json = args[0]->AsObject();
        const ASValue* text = args[1];
        for (auto _ : *g_State) {
            ASValue* tree = nullptr;
            if (!json->CallMethod("parse", 1, &text, &tree)) {
                g_State->SkipWithError("JSON.parse failed");
                break;
            }
            tree->Release();
        }
        result.SetStatus(0);
    }
    // Bench.now(): seconds on the monotonic clock.
    void Clock(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        ASValue* now = context.NewNumber(Now());
        result.SetValue(*now);
        result.SetStatus(0);
        now->Release();
    }
    // Bench.record(seconds): one call's time.
    void Record(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        g_Times.push_back(args[0]->ToNumber());
        result.SetStatus(0);
    }
    // Bench.fail(text): the movie could not do its part.
    void Fail(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        AEString text;
        args[0]->ToString(text);
        g_Failure = text.c_str();
        context.Stop();
        result.SetStatus(0);
    }
    // Bench.seen(text, n): true once the simulator's request log has n lines holding text.
    void Seen(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        AEString text;
        args[0]->ToString(text);
        std::istringstream log(ReadFile(g_RequestLog));
        int lines = 0;
        for (std::string line; std::getline(log, line);) {
            lines += line.find(text.c_str()) != std::string::npos ? 1 : 0;
        }
        ASValue* seen = context.NewBoolean(lines >= args[1]->ToInt32());
        result.SetValue(*seen);
        result.SetStatus(0);
        seen->Release();
    }
};

class BenchDescriptor : public ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return "com.kestrel.bench.Bench"; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        methods.Append({"stop", 1, AEHandler(&Bench::Stop)});
        methods.Append({"convert", 1, AEHandler(&Bench::Convert)});
        methods.Append({"page", 1, AEHandler(&Bench::Page)});
        methods.Append({"parse", 1, AEHandler(&Bench::Parse)});
        methods.Append({"now", 1, AEHandler(&Bench::Clock)});
        methods.Append({"record", 1, AEHandler(&Bench::Record)});
        methods.Append({"fail", 1, AEHandler(&Bench::Fail)});
        methods.Append({"seen", 1, AEHandler(&Bench::Seen)});
    }
    bool FiresEvents() override { return false; }
    ASExtensionClass* ConstructInstance(ASContext&) override { return new Bench(); }
    void DestructInstance(ASExtensionClass* instance) override { delete instance; }
};

// The simulator for the whole run.
LmsimProcess& Sim() {
    static LmsimProcess* sim = [] {
        g_RequestLog = "/tmp/lmbridgebench-requests-" + std::to_string(getpid());
        auto* s = new LmsimProcess({"--request-log", g_RequestLog});
        lmws_test::PointAt(*s);
        return s;
    }();
    return *sim;
}

const char kSettings[] =
    "function settings(cacheData, folder) { return {"
    " APIKey: 'api-key', UserName: 'user@example', Password: 'secret', DestinationTypeID: 7,"
    " AuthToken: '', DestinationUniqueID: 'bench device', ServiceBaseURL: '', Type: 0,"
    " CacheType: 2, CacheData: cacheData, CachePath: folder, CacheLimit: 0, ProxyHost: '',"
    " ProxyUserName: '', ProxyPort: 0, ProxyPassword: '', AccessType: 2,"
    " ApplicationRevision: '1.0', EnvNum: 2, firmwareVersion: 'fw', modelNumber: 'model' }; }"
    "function page(n, size) { return {genreid: 12, CurrentPageNumber: n, ItemsPerPage: size,"
    " purchasetype: 2}; }\n";

// Runs `source` with the bench class and the web-service class registered.
void RunMovie(benchmark::State& state, const std::string& source) {
    static BenchDescriptor descriptor;
    static bool registered = false;
    IStagecraft& stage = *stagetest::Kernel().stage;
    if (!registered) {
        stage.RegisterExtensionClass(descriptor);
        stage.RegisterExtensionClass(LMWSLibAEDescriptor());
        registered = true;
    }
    char path[] = "/tmp/lmbridgebenchXXXXXX.js";
    int fd = mkstemps(path, 3);
    if (fd < 0) {
        state.SkipWithError("no temporary file");
        return;
    }
    close(fd);
    std::ofstream(path) << kSettings << source;
    stagetest::StageArgv args({}, path);
    StageWindowSet* ws = nullptr;
    g_State = &state;
    g_Failure.clear();
    if (stage.CreateAndConfigureStageWindowSet(stage, &ws, args.argc(), args.argv(), 1) !=
        AEError_OK) {
        state.SkipWithError("the movie does not start");
    } else {
        if (stage.RunStageWindowSet(ws) != AEError_OK) {
            state.SkipWithError("the movie failed");
        }
        stage.DestroyStageWindowSet(ws);
    }
    g_State = nullptr;
    std::remove(path);
    if (!g_Failure.empty()) {
        state.SkipWithError(g_Failure.c_str());
    }
}

// Reports the times the movie recorded, one iteration each.
void ReportTimes(benchmark::State& state) {
    size_t i = 0;
    for (auto _ : state) {
        state.SetIterationTime(i < g_Times.size() ? g_Times[i] : 0);
        ++i;
    }
    if (g_Times.size() < static_cast<size_t>(state.iterations())) {
        state.SkipWithError("the movie recorded fewer calls than asked");
    }
}

std::string TempFolder() {
    char folder[] = "/tmp/lmbridgebenchXXXXXX";
    return std::string(mkdtemp(folder)) + "/";
}

void BM_TitlesPageToScript(benchmark::State& state) {
    RunMovie(state, "Bench.convert(); Bench.stop();");
}

void BM_TitlesPageJSONParse(benchmark::State& state) {
    RunMovie(state,
             "var text = JSON.stringify(Bench.page()); Bench.parse(JSON, text); Bench.stop();");
}

constexpr int kRoundTrips = 200;
constexpr int kNextPages = 8;

void BM_GetTitlesRoundTrip(benchmark::State& state) {
    g_Times.clear();
    const std::string folder = TempFolder();
    RunMovie(
        state,
        "var ws = new LMWSLib(), left = " + std::to_string(kRoundTrips) +
            ", start = 0;"
            "function again() {"
            "  start = Bench.now();"
            "  ws.getTitles([done, page(1, 50)]);"
            "}"
            "function done(status, value) {"
            "  if (status !== 0 || value.Titles.length !== 50) Bench.fail('getTitles ' + status);"
            "  if (left-- < " +
            std::to_string(kRoundTrips) +
            ") Bench.record(Bench.now() - start);"
            "  if (left > 0) again(); else Bench.stop();"
            "}"
            "ws.init([function (s) { if (s !== 0) Bench.fail('init ' + s); again(); },"
            " settings(0, '" +
            folder + "')]);");
    (void)std::system(("rm -rf '" + folder + "'").c_str());
    ReportTimes(state);
}

// Each call asks page 2 of a page size not asked before, so "fetched" goes to the service and
// "prefetched" finds what the prefetch of page 1's neighbours left in the cache. The simulator
// answers after kLatencyMs, as a service across the internet would; on loopback a request costs
// a few milliseconds and fetching ahead would have little to win.
constexpr int kLatencyMs = 80;

void BM_NextPage(benchmark::State& state) {
    g_Times.clear();
    const bool prefetch = state.range(0) == 1;
    const std::string folder = TempFolder();
    // A log of its own, so that requests of earlier runs are not counted.
    const std::string shared = g_RequestLog;
    g_RequestLog = folder + "requests";
    LmsimProcess distant(
        {"--request-log", g_RequestLog, "--fault", "delay:" + std::to_string(kLatencyMs)});
    lmws_test::PointAt(distant);
    RunMovie(state,
             "var ws = new LMWSLib(), round = 0, start = 0, size = 0;"
             "function next() {"
             "  if (round === " +
                 std::to_string(kNextPages) +
                 ") { Bench.stop(); return; }"
                 "  size = 11 + round++;"
                 "  ws.getTitles([shown, page(1, size)]);"
                 "}"
                 "var requests = 1;"
                 "function shown(status, value) {"
                 "  if (status !== 0) Bench.fail('page 1: ' + status);"
                 "  requests = " +
                 std::string(prefetch ? "1 + Math.min(8, value.TotalPages - 1)" : "1") +
                 ";"
                 "  ws.idle();"
                 "  waitForPrefetch();"
                 "}"
                 // Page 1 and, with prefetching, the pages around it (eight at most).
                 "function waitForPrefetch() {"
                 "  if (!Bench.seen('ItemsPerPage=' + size + ' ', requests)) {"
                 "    setTimeout(waitForPrefetch, 20);"
                 "    return;"
                 "  }"
                 "  start = Bench.now();"
                 "  ws.getTitles([function (status) {"
                 "    Bench.record(Bench.now() - start);"
                 "    if (status !== 0) Bench.fail('page 2: ' + status);"
                 "    ws.idle();"
                 "    next();"
                 "  }, page(2, size)]);"
                 "}"
                 "ws.init([function (s) { if (s !== 0) Bench.fail('init ' + s); next(); },"
                 " settings(" +
                 std::string(prefetch ? "1" : "0") + ", '" + folder + "')]);");
    lmws_test::PointAt(Sim());
    g_RequestLog = shared;
    (void)std::system(("rm -rf '" + folder + "'").c_str());
    ReportTimes(state);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (!Sim().Ready()) {
        std::fprintf(stderr, "lmsim does not start\n");
        return 1;
    }
    // The page the conversion benchmarks use: a real answer of the simulator.
    lmws_test::Params params;
    LM_WS_Handle handle{};
    if (LM_WS_Setup(&handle, params.Get()) != 0 ||
        LM_WS_getTitles(&handle, 12, LM_WS_Page{1, 50}, 2, &g_Page) != 0 ||
        g_Page.Titles.Count != 50) {
        std::fprintf(stderr, "no 50-title page from lmsim\n");
        return 1;
    }
    benchmark::RegisterBenchmark("BM_TitlesPageToScript", BM_TitlesPageToScript)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("BM_TitlesPageJSONParse", BM_TitlesPageJSONParse)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("BM_GetTitlesRoundTrip", BM_GetTitlesRoundTrip)
        ->UseManualTime()
        ->Iterations(kRoundTrips - 1)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BM_NextPage", BM_NextPage)
        ->ArgName("prefetched")
        ->Arg(0)
        ->Arg(1)
        ->UseManualTime()
        ->Iterations(kNextPages)
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    LM_WS_FreeResult(&g_Page);
    LM_WS_Teardown(&handle);
    delete &Sim();
    std::remove(g_RequestLog.c_str());
    return 0;
}
