// The kernel's native boundary: building a result tree through value handles against the
// engine's own JSON.parse of the same data, and the cost of one native method call.
//
// Each benchmark runs a small movie whose one static call runs the timing loop inside the
// native method, so only the work itself is measured. Run by hand; the ratio of
// BM_ResultTreeJSONParse to BM_ResultTreeNative is the figure of interest.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "StageKernelHarness.h"

namespace {

using namespace ae::stagecraft;

constexpr int kElements = 50;
constexpr int kIntProps = 20;
constexpr int kStringProps = 10;

benchmark::State* g_State = nullptr;

const char* const kNames[] = {"Prop00", "Prop01", "Prop02", "Prop03", "Prop04", "Prop05",
                              "Prop06", "Prop07", "Prop08", "Prop09", "Prop10", "Prop11",
                              "Prop12", "Prop13", "Prop14", "Prop15", "Prop16", "Prop17",
                              "Prop18", "Prop19", "Prop20", "Prop21", "Prop22", "Prop23",
                              "Prop24", "Prop25", "Prop26", "Prop27", "Prop28", "Prop29"};
const char* const kStrings[] = {"alpha",   "bravo", "charlie", "delta", "echo",
                                "foxtrot", "golf",  "hotel",   "india", "juliett"};

// The same tree as JSON text, built by the movie for the JSON.parse run.
const char* const kBuildJson = R"(
    var names = ['alpha', 'bravo', 'charlie', 'delta', 'echo',
                 'foxtrot', 'golf', 'hotel', 'india', 'juliett'];
    var tree = [];
    for (var e = 0; e < 50; ++e) {
        var o = {};
        for (var k = 0; k < 30; ++k) {
            var name = 'Prop' + (k < 10 ? '0' : '') + k;
            o[name] = k < 20 ? e * 100 + k : names[k - 20];
        }
        tree.push(o);
    }
    var text = JSON.stringify(tree);
)";

class Bench : public ASExtensionClass {
public:
    void Nop(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult& result) { result.SetStatus(0); }

    void Stop(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        context.Stop();
        result.SetStatus(0);
    }

    // Bench.build(): the timing loop over building the tree through the handles.
    void Build(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        for (auto _ : *g_State) {
            ASObject* list = context.NewInstance("Array");
            for (int e = 0; e < kElements; ++e) {
                ASObject* item = context.NewInstance("Object");
                for (int k = 0; k < kIntProps; ++k)
                    item->SetInt(kNames[k], e * 100 + k);
                for (int k = 0; k < kStringProps; ++k)
                    item->SetString(kNames[kIntProps + k], kStrings[k]);
                const ASValue* arg = item;
                list->CallMethod("push", 1, &arg);
                item->Release();
            }
            benchmark::DoNotOptimize(list);
            list->Release();
        }
        result.SetStatus(0);
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

    // Bench.repeat(fn): the timing loop over calling fn, which calls Bench.nop 1000 times.
    void Repeat(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASObject* fn = args[0]->AsObject();
        for (auto _ : *g_State)
            fn->Call(0, nullptr);
        g_State->SetItemsProcessed(g_State->iterations() * 1000);
        result.SetStatus(0);
    }
};

class BenchDescriptor : public ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return "com.kestrel.bench.Bench"; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        methods.Append({"nop", 1, AEHandler(&Bench::Nop)});
        methods.Append({"stop", 1, AEHandler(&Bench::Stop)});
        methods.Append({"build", 1, AEHandler(&Bench::Build)});
        methods.Append({"parse", 1, AEHandler(&Bench::Parse)});
        methods.Append({"repeat", 1, AEHandler(&Bench::Repeat)});
    }
    bool FiresEvents() override { return false; }
    ASExtensionClass* ConstructInstance(ASContext&) override { return new Bench(); }
    void DestructInstance(ASExtensionClass* instance) override { delete instance; }
};

void RunMovie(benchmark::State& state, const std::string& source) {
    static BenchDescriptor descriptor;
    static bool registered = false;
    IStagecraft& stage = *stagetest::Kernel().stage;
    if (!registered) {
        stage.RegisterExtensionClass(descriptor);
        registered = true;
    }
    char path[] = "/tmp/lmstagebenchXXXXXX.js";
    int fd = mkstemps(path, 3);
    if (fd < 0) {
        state.SkipWithError("no temporary file");
        return;
    }
    close(fd);
    std::ofstream(path) << source;
    stagetest::StageArgv args({}, path);
    StageWindowSet* ws = nullptr;
    g_State = &state;
    if (stage.CreateAndConfigureStageWindowSet(stage, &ws, args.argc(), args.argv(), 1) !=
        AEError_OK) {
        state.SkipWithError("the movie does not start");
    } else {
        if (stage.RunStageWindowSet(ws) != AEError_OK)
            state.SkipWithError("the movie failed");
        stage.DestroyStageWindowSet(ws);
    }
    g_State = nullptr;
    std::remove(path);
}

void BM_ResultTreeNative(benchmark::State& state) {
    RunMovie(state, "Bench.build(); Bench.stop();");
}

void BM_ResultTreeJSONParse(benchmark::State& state) {
    RunMovie(state, std::string(kBuildJson) + "Bench.parse(JSON, text); Bench.stop();");
}

void BM_NativeMethodCall(benchmark::State& state) {
    RunMovie(state,
             "Bench.repeat(function () { for (var i = 0; i < 1000; ++i) Bench.nop(); });"
             "Bench.stop();");
}

}  // namespace

BENCHMARK(BM_ResultTreeNative)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ResultTreeJSONParse)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NativeMethodCall)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
