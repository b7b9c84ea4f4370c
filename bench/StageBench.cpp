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

benchmark::State* g_State = nullptr;

enum Kind { kNumber, kBoolean, kString };
struct Property {
    const char* name;
    Kind kind;
    const char* text;  // strings only
};

// Shape 0: compact values, the engine's worst case for native building (short keys and values
// make JSON cheap to scan): 20 integers and 10 short strings.
const Property kCompact[] = {
    {"Prop00", kNumber, nullptr}, {"Prop01", kNumber, nullptr},   {"Prop02", kNumber, nullptr},
    {"Prop03", kNumber, nullptr}, {"Prop04", kNumber, nullptr},   {"Prop05", kNumber, nullptr},
    {"Prop06", kNumber, nullptr}, {"Prop07", kNumber, nullptr},   {"Prop08", kNumber, nullptr},
    {"Prop09", kNumber, nullptr}, {"Prop10", kNumber, nullptr},   {"Prop11", kNumber, nullptr},
    {"Prop12", kNumber, nullptr}, {"Prop13", kNumber, nullptr},   {"Prop14", kNumber, nullptr},
    {"Prop15", kNumber, nullptr}, {"Prop16", kNumber, nullptr},   {"Prop17", kNumber, nullptr},
    {"Prop18", kNumber, nullptr}, {"Prop19", kNumber, nullptr},   {"Prop20", kString, "alpha"},
    {"Prop21", kString, "bravo"}, {"Prop22", kString, "charlie"}, {"Prop23", kString, "delta"},
    {"Prop24", kString, "echo"},  {"Prop25", kString, "foxtrot"}, {"Prop26", kString, "golf"},
    {"Prop27", kString, "hotel"}, {"Prop28", kString, "india"},   {"Prop29", kString, "juliett"},
};

// Shape 1: what a movie really receives, a page of titles with their detail fields (13 numbers,
// 3 booleans, 14 texts of the lengths a catalogue has).
const Property kTitle[] = {
    {"TitleID", kNumber, nullptr},
    {"TitleName", kString, "The Long Way Round the Harbour"},
    {"BoxArtPrefix", kString, "lwrh_2009_01"},
    {"TitlePosition", kNumber, nullptr},
    {"EpisodeNumber", kNumber, nullptr},
    {"CHVRSRating", kString, "14A"},
    {"LoyaltyPointsForBuy", kString, "120"},
    {"LoyaltyPointsForRent", kString, "40"},
    {"IsTvListing", kBoolean, nullptr},
    {"MPAARating", kString, "PG-13"},
    {"IsTHXMediaDirectorEnabled", kBoolean, nullptr},
    {"IsTHXMediaDirectorEnabledForTrailer", kBoolean, nullptr},
    {"ResponseCode", kNumber, nullptr},
    {"ResponseMessage", kString, "Success"},
    {"Synopsis", kString,
     "A retired ferry captain agrees to take one last passenger across the bay, a young woman "
     "who will not say why she must reach the far shore before dawn. As the fog closes in, old "
     "debts surface and the crossing becomes the longest night of both their lives."},
    {"UserRating", kNumber, nullptr},
    {"Directors", kString, "Marta Lindqvist"},
    {"Actors", kString, "Owen Hale, Priya Raman, Tomas Berg, Ada Whitcombe, Felix Moreau"},
    {"Writers", kString, "Marta Lindqvist, Jonah Pike"},
    {"Producers", kString, "Harbour Light Pictures"},
    {"Copyright", kString, "(c) 2009 Harbour Light Pictures. All rights reserved."},
    {"RunTime", kString, "1:52:00"},
    {"EpisodeID", kNumber, nullptr},
    {"TvListingTitleID", kNumber, nullptr},
    {"PurchaseType", kNumber, nullptr},
    {"Status", kNumber, nullptr},
    {"RentalPeriod", kNumber, nullptr},
    {"PassID", kNumber, nullptr},
    {"PlayStatus", kNumber, nullptr},
    {"StartTimeSeconds", kNumber, nullptr},
};

struct Shape {
    const Property* properties;
    size_t count;
};
const Shape kShapes[] = {{kCompact, sizeof kCompact / sizeof kCompact[0]},
                         {kTitle, sizeof kTitle / sizeof kTitle[0]}};

// The tree through the value handles: an Array of kElements Objects of the shape's properties.
ASObject* BuildTree(ASContext& context, const Shape& shape) {
    ASObject* list = context.NewInstance("Array");
    for (int e = 0; e < kElements; ++e) {
        ASObject* item = context.NewInstance("Object");
        for (size_t k = 0; k < shape.count; ++k) {
            const Property& p = shape.properties[k];
            if (p.kind == kNumber)
                item->SetInt(p.name, e * 100 + static_cast<int>(k));
            else if (p.kind == kBoolean)
                item->SetBoolean(p.name, (e + k) % 2 == 0);
            else
                item->SetString(p.name, p.text);
        }
        const ASValue* arg = item;
        list->CallMethod("push", 1, &arg);
        item->Release();
    }
    return list;
}

// The same tree with each element made in one step from its shape.
ASObject* BuildShapedTree(ASContext& context, const Shape& shape, const ASShape& names) {
    ASObject* list = context.NewInstance("Array");
    ASField fields[32];
    for (int e = 0; e < kElements; ++e) {
        for (size_t k = 0; k < shape.count; ++k) {
            const Property& p = shape.properties[k];
            if (p.kind == kNumber)
                fields[k] = ASField::Int(e * 100 + static_cast<int>(k));
            else if (p.kind == kBoolean)
                fields[k] = ASField::Boolean((e + k) % 2 == 0);
            else
                fields[k] = ASField::String(p.text);
        }
        ASObject* item = context.NewShapedObject(names, fields);
        const ASValue* arg = item;
        list->CallMethod("push", 1, &arg);
        item->Release();
    }
    return list;
}

class Bench : public ASExtensionClass {
public:
    void Nop(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult& result) { result.SetStatus(0); }

    void Stop(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        context.Stop();
        result.SetStatus(0);
    }

    // Bench.tree(shape): one tree, for the movie to turn into JSON text.
    void Tree(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASObject* tree = BuildTree(context, kShapes[args[0]->ToInt32()]);
        result.SetValue(*tree);
        tree->Release();
        result.SetStatus(0);
    }

    // Bench.build(shape): the timing loop over building the tree through the handles.
    void Build(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        const Shape& shape = kShapes[args[0]->ToInt32()];
        for (auto _ : *g_State) {
            ASObject* tree = BuildTree(context, shape);
            benchmark::DoNotOptimize(tree);
            tree->Release();
        }
        result.SetStatus(0);
    }

    // Bench.buildShaped(shape): the same through shaped objects.
    void BuildShaped(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        const Shape& shape = kShapes[args[0]->ToInt32()];
        static const char* names[2][32];
        const char** table = names[args[0]->ToInt32()];
        for (size_t k = 0; k < shape.count; ++k)
            table[k] = shape.properties[k].name;
        const ASShape shapeNames = {table, static_cast<uint32_t>(shape.count)};
        for (auto _ : *g_State) {
            ASObject* tree = BuildShapedTree(context, shape, shapeNames);
            benchmark::DoNotOptimize(tree);
            tree->Release();
        }
        result.SetStatus(0);
    }

    // Bench.buildShapedArray(shape): the whole Array in one step.
    void BuildShapedArray(ASContext& context, ASObject&, AEArray<ASValue*>& args,
                          ASResult& result) {
        const Shape& shape = kShapes[args[0]->ToInt32()];
        static const char* names[2][32];
        const char** table = names[args[0]->ToInt32()];
        for (size_t k = 0; k < shape.count; ++k)
            table[k] = shape.properties[k].name;
        const ASShape shapeNames = {table, static_cast<uint32_t>(shape.count)};
        static ASField fields[kElements * 32];
        for (auto _ : *g_State) {
            for (int e = 0; e < kElements; ++e) {
                for (size_t k = 0; k < shape.count; ++k) {
                    const Property& p = shape.properties[k];
                    ASField& f = fields[e * shape.count + k];
                    if (p.kind == kNumber)
                        f = ASField::Int(e * 100 + static_cast<int>(k));
                    else if (p.kind == kBoolean)
                        f = ASField::Boolean((e + k) % 2 == 0);
                    else
                        f = ASField::String(p.text);
                }
            }
            ASObject* tree = context.NewShapedArray(shapeNames, fields, kElements);
            benchmark::DoNotOptimize(tree);
            tree->Release();
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
        methods.Append({"tree", 1, AEHandler(&Bench::Tree)});
        methods.Append({"buildShaped", 1, AEHandler(&Bench::BuildShaped)});
        methods.Append({"buildShapedArray", 1, AEHandler(&Bench::BuildShapedArray)});
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

// Argument: the shape (0 compact values, 1 title page).
void BM_ResultTreeNative(benchmark::State& state) {
    RunMovie(state, "Bench.build(" + std::to_string(state.range(0)) + "); Bench.stop();");
}

void BM_ResultTreeShaped(benchmark::State& state) {
    RunMovie(state, "Bench.buildShaped(" + std::to_string(state.range(0)) + "); Bench.stop();");
}

void BM_ResultTreeShapedArray(benchmark::State& state) {
    RunMovie(state,
             "Bench.buildShapedArray(" + std::to_string(state.range(0)) + "); Bench.stop();");
}

void BM_ResultTreeJSONParse(benchmark::State& state) {
    RunMovie(state, "var text = JSON.stringify(Bench.tree(" + std::to_string(state.range(0)) +
                        "));"
                        "Bench.parse(JSON, text); Bench.stop();");
}

void BM_NativeMethodCall(benchmark::State& state) {
    RunMovie(state,
             "Bench.repeat(function () { for (var i = 0; i < 1000; ++i) Bench.nop(); });"
             "Bench.stop();");
}

}  // namespace

BENCHMARK(BM_ResultTreeNative)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ResultTreeShaped)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ResultTreeShapedArray)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ResultTreeJSONParse)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_NativeMethodCall)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
