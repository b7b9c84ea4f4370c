// The kernel library as the product sees it: loaded with dlopen, extension classes registered
// through IStagecraft, movies written to a temporary folder and run on the test thread.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <functional>
#include <mutex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "StageKernelHarness.h"
#include "TempDir.h"

namespace {

using namespace ae::stagecraft;
using Clock = std::chrono::steady_clock;

// What the probe class saw; reset by each test.
struct ProbeState {
    std::mutex mutex;
    std::vector<std::string> log;
    std::set<ASExtensionClass*> live;
    int constructs = 0;
    int destructs = 0;
    int badDestructs = 0;
    bool refuse = false;
    std::vector<ASValue*> kept;  // handles a test keeps beyond the window set
    std::thread::id scriptThread;
    std::thread::id callbackThread;
    std::thread::id workerThread;
    int updates = 0;
    int updatesAtStop = -1;
    bool callbackResult = true;
};
ProbeState* g_State = nullptr;

std::string Text(const ASValue& value) {
    AEString text;
    if (!value.ToString(text))
        return "<throws>";
    return std::string(text.c_str(), text.length());
}

class Probe : public ASExtensionClass {
public:
    ~Probe() override {
        if (m_Worker.joinable())
            m_Worker.join();
        if (m_Callback)
            m_Callback->Release();
    }

    // Static: Probe.log(x) records String(x).
    void Log(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        std::lock_guard<std::mutex> lock(g_State->mutex);
        g_State->log.push_back(args.GetCount() ? Text(*args[0]) : "<none>");
        result.SetStatus(0);
    }
    void Refuse(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        g_State->refuse = args.GetCount() && args[0]->ToBoolean();
        result.SetStatus(0);
    }
    void Stop(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        context.Stop();
        result.SetStatus(0);
    }
    void Count(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        result.SetStatus(g_State->constructs);
    }
    // Types and values of the arguments, "type:value" joined with "|".
    void Describe(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        static const char* const kNames[] = {"undefined", "null",   "boolean",
                                             "number",    "string", "object"};
        std::string out;
        for (uint32_t i = 0; i < args.GetCount(); ++i) {
            ASValue& arg = *args[i];
            out += i ? "|" : "";
            out += kNames[arg.GetType()];
            if (ASObject* object = arg.AsObject()) {
                out += object->IsArray()      ? ":array" + std::to_string(object->GetLength())
                       : object->IsDate()     ? std::string(":date")
                       : object->IsFunction() ? std::string(":function")
                                              : std::string();
            } else {
                out += ":" + Text(arg) + "/" + std::to_string(arg.ToInt32()) +
                       (arg.ToBoolean() ? "/t" : "/f");
            }
        }
        std::lock_guard<std::mutex> lock(g_State->mutex);
        g_State->log.push_back(out);
        result.SetStatus(0);
    }
    void Echo(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        if (args.GetCount())
            result.SetValue(*args[0]);
        result.SetStatus(0);
    }
    void Status(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        result.SetStatus(args.GetCount() ? args[0]->ToInt32() : -1);
    }
    void NoStatus(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult&) {}
    void TwoStatuses(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        result.SetStatus(1);
        result.SetStatus(2);
    }
    void Throw(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult&) {
        throw std::runtime_error("native failure");
    }
    void Self(ASContext&, ASObject& self, AEArray<ASValue*>&, ASResult& result) {
        result.SetValue(self);
        result.SetStatus(0);
    }
    // An object made through the factory: every kind of property.
    // nested(): one tree in one step: {n, list: [true, {"__proto__", when}, []], kept}; a tree
    // nested deeper than the kernel allows gives null.
    void Nested(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        static const char* const kInner[] = {"__proto__", "when"};
        static const char* const kOuter[] = {"n", "list", "kept"};
        ASValue* kept = context.NewString("handle");
        const ASField inner[] = {ASField::String("own"), ASField::Date(2012, 2, 5, 23, 59, 0)};
        const ASField list[] = {ASField::Boolean(true), ASField::Object({kInner, 2}, inner),
                                ASField::Array(nullptr, 0)};
        const ASField outer[] = {ASField::Int(7), ASField::Array(list, 3), ASField::Value(*kept)};
        ASValue* tree = context.NewTree(ASField::Object({kOuter, 3}, outer));
        kept->Release();
        std::vector<ASField> chain(100);
        for (size_t i = 0; i + 1 < chain.size(); ++i)
            chain[i] = ASField::Array(&chain[i + 1], 1);
        EXPECT_EQ(context.NewTree(chain[0]), nullptr);
        ASValue* scalar = context.NewTree(ASField::Int(5));
        EXPECT_EQ(scalar->ToInt32(), 5);
        scalar->Release();
        result.SetValue(*tree);
        tree->Release();
        result.SetStatus(0);
    }
    void MakeTree(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        ASObject* tree = context.NewInstance("Object");
        tree->SetInt("i", -7);
        tree->SetNumber("n", 2.5);
        tree->SetBoolean("b", true);
        tree->SetString("s", "hi");
        tree->SetString("z", "a\0b", 3);
        tree->SetString("e", nullptr);
        ASValue* null = context.NewNull();
        tree->SetProperty("nul", *null);
        null->Release();
        ASObject* list = context.NewInstance("Array");
        for (int i = 0; i < 3; ++i) {
            ASValue* item = context.NewInt(i * 10);
            EXPECT_TRUE(list->CallMethod("push", 1, &item));
            item->Release();
        }
        tree->SetProperty("list", *list);
        list->Release();
        ASObject* date = context.NewDate(2024, 1, 29, 13, 45, 30);
        tree->SetProperty("date", *date);
        date->Release();
        ASValue* two = context.NewInt(2);
        ASObject* sized = context.NewInstance("Array", 1, &two);
        two->Release();
        tree->SetProperty("sized", *sized);
        sized->Release();
        EXPECT_EQ(context.NewInstance("NoSuchClass"), nullptr);
        result.SetValue(*tree);
        tree->Release();
        result.SetStatus(0);
    }
    // Reads a script object: o.a, o.list (length and elements), "has" and a throwing getter.
    void Inspect(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASObject* object = args[0]->AsObject();
        std::string out;
        ASValue* a = object->GetProperty("a");
        out += "a=" + Text(*a);
        a->Release();
        ASValue* missing = object->GetProperty("missing");
        out += missing->IsUndefined() ? " missing" : " ?";
        missing->Release();
        out += object->HasProperty("list") ? " has" : " hasnt";
        ASValue* listValue = object->GetProperty("list");
        ASObject* list = listValue->AsObject();
        out += " len=" + std::to_string(list->GetLength());
        for (uint32_t i = 0; i < list->GetLength(); ++i) {
            ASValue* item = list->GetElement(i);
            out += " " + Text(*item);
            item->Release();
        }
        listValue->Release();
        std::lock_guard<std::mutex> lock(g_State->mutex);
        g_State->log.push_back(out);
        result.SetStatus(0);
    }
    void Touch(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASValue* bad = args[0]->AsObject()->GetProperty("bad");
        std::lock_guard<std::mutex> lock(g_State->mutex);
        g_State->log.push_back(bad ? "got" : "null");
        if (bad)
            bad->Release();
        result.SetStatus(0);
    }
    // callBack(fn, x): fn(x) called from native; logs "ok <result>" or "failed".
    void CallBack(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASValue* out = nullptr;
        bool ok = args[0]->AsObject()->Call(1, &args[1], &out);
        std::lock_guard<std::mutex> lock(g_State->mutex);
        g_State->log.push_back(ok ? "ok " + Text(*out) : "failed");
        if (out)
            out->Release();
        result.SetStatus(ok ? 0 : 1);
    }
    // same(x): logs what GetNativeInstance makes of x: "this", "other" (another Probe), "none".
    void Same(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASExtensionClass* native = context.GetNativeInstance(*args[0], "com.kestrel.test.Probe");
        ASExtensionClass* wrongClass = context.GetNativeInstance(*args[0], "com.kestrel.test.X");
        std::lock_guard<std::mutex> lock(g_State->mutex);
        g_State->log.push_back(wrongClass       ? "wrong class"
                               : native == this ? "this"
                               : native         ? "other"
                                                : "none");
        result.SetStatus(0);
    }
    // Keeps copies of the arguments in the test state, past the window set.
    void Keep(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        for (uint32_t i = 0; i < args.GetCount(); ++i)
            g_State->kept.push_back(args[i]->Clone());
        result.SetStatus(0);
    }
    // later(fn): a worker thread finishes; OnUpdate sees it and calls fn on the script thread.
    void Later(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        g_State->scriptThread = std::this_thread::get_id();
        m_Callback = args[0]->Clone();
        m_Worker = std::thread([this] {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            g_State->workerThread = std::this_thread::get_id();
            m_Done.store(true);
        });
        context.RequestUpdates(*this);
        context.RequestUpdates(*this);  // idempotent
        result.SetStatus(0);
    }
    void OnUpdate(ASContext& context) override {
        ++g_State->updates;
        if (!m_Done.load())
            return;
        m_Worker.join();
        context.StopUpdates(*this);
        g_State->updatesAtStop = g_State->updates;
        g_State->callbackThread = std::this_thread::get_id();
        ASValue* text = context.NewString("done");
        g_State->callbackResult = m_Callback->AsObject()->Call(1, &text);
        text->Release();
    }

private:
    ASValue* m_Callback = nullptr;
    std::thread m_Worker;
    std::atomic<bool> m_Done{false};
};

class ProbeDescriptor : public ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return "com.kestrel.test.Probe"; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        methods.Append({"log", 1, AEHandler(&Probe::Log)});
        methods.Append({"stop", 1, AEHandler(&Probe::Stop)});
        methods.Append({"refuse", 1, AEHandler(&Probe::Refuse)});
        methods.Append({"count", 1, AEHandler(&Probe::Count)});
        methods.Append({"describe", 0, AEHandler(&Probe::Describe)});
        methods.Append({"echo", 0, AEHandler(&Probe::Echo)});
        methods.Append({"status", 0, AEHandler(&Probe::Status)});
        methods.Append({"noStatus", 0, AEHandler(&Probe::NoStatus)});
        methods.Append({"twoStatuses", 0, AEHandler(&Probe::TwoStatuses)});
        methods.Append({"fail", 0, AEHandler(&Probe::Throw)});
        methods.Append({"self", 0, AEHandler(&Probe::Self)});
        methods.Append({"makeTree", 0, AEHandler(&Probe::MakeTree)});
        methods.Append({"inspect", 0, AEHandler(&Probe::Inspect)});
        methods.Append({"touch", 0, AEHandler(&Probe::Touch)});
        methods.Append({"callBack", 0, AEHandler(&Probe::CallBack)});
        methods.Append({"keep", 0, AEHandler(&Probe::Keep)});
        methods.Append({"later", 0, AEHandler(&Probe::Later)});
        methods.Append({"same", 0, AEHandler(&Probe::Same)});
        methods.Append({"nested", 0, AEHandler(&Probe::Nested)});
    }
    bool FiresEvents() override { return false; }
    ASExtensionClass* ConstructInstance(ASContext&) override {
        if (g_State->refuse)
            return nullptr;
        auto* probe = new Probe();
        ++g_State->constructs;
        g_State->live.insert(probe);
        return probe;
    }
    void DestructInstance(ASExtensionClass* instance) override {
        if (g_State->live.erase(instance) == 0)
            ++g_State->badDestructs;
        ++g_State->destructs;
        delete instance;
    }
};

// Captures what is written to a file descriptor (1 or 2) while it lives.
class CaptureFd {
public:
    explicit CaptureFd(int fd) : m_Fd(fd), m_File(std::tmpfile()) {
        std::fflush(nullptr);
        m_Saved = dup(fd);
        dup2(fileno(m_File), fd);
    }
    ~CaptureFd() { Finish(); }
    std::string Finish() {
        if (m_Saved >= 0) {
            std::fflush(nullptr);
            dup2(m_Saved, m_Fd);
            close(m_Saved);
            m_Saved = -1;
            std::rewind(m_File);
            char buffer[4096];
            size_t n;
            while ((n = std::fread(buffer, 1, sizeof buffer, m_File)) > 0)
                m_Text.append(buffer, n);
            std::fclose(m_File);
        }
        return m_Text;
    }

private:
    int m_Fd;
    FILE* m_File;
    int m_Saved = -1;
    std::string m_Text;
};

struct RunResult {
    AEError created;
    AEError ran;
    ASRunEnd end = kASRunNotRun;
    int32_t exitCode = 0;
    std::string out;
    std::string err;
};

class StageTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static ProbeDescriptor descriptor;
        g_State = new ProbeState();
        ASSERT_EQ(Stage().RegisterExtensionClass(descriptor), AEError_OK);
    }
    void SetUp() override {
        delete g_State;
        g_State = new ProbeState();
    }
    static IStagecraft& Stage() { return *stagetest::Kernel().stage; }

    std::string WriteMovie(const std::string& name, const std::string& source) {
        std::string path = m_Dir / name;
        std::ofstream(path) << source;
        return path;
    }

    // Creates, runs and destroys a window set for `source`. `beforeRun` runs between creation
    // and the run. A watchdog presses the quit key should the movie not end by itself.
    RunResult Run(const std::string& source, const std::vector<std::string>& options = {},
                  const std::function<void()>& beforeRun = {}) {
        return RunPath(WriteMovie("movie.js", source), options, beforeRun);
    }
    RunResult RunPath(const std::string& path, const std::vector<std::string>& options = {},
                      const std::function<void()>& beforeRun = {}) {
        RunResult r;
        CaptureFd out(1);
        CaptureFd err(2);
        stagetest::StageArgv args(options, path);
        StageWindowSet* ws = nullptr;
        r.created =
            Stage().CreateAndConfigureStageWindowSet(Stage(), &ws, args.argc(), args.argv(), 1);
        if (ws) {
            if (beforeRun)
                beforeRun();
            std::mutex mutex;
            std::condition_variable finished;
            bool done = false;
            std::thread watchdog([&] {
                std::unique_lock<std::mutex> lock(mutex);
                if (!finished.wait_for(lock, std::chrono::seconds(10), [&] { return done; }))
                    Stage().PostKeyPress(kASQuitKeyCode);
            });
            r.ran = Stage().RunStageWindowSet(ws);
            {
                std::lock_guard<std::mutex> lock(mutex);
                done = true;
            }
            finished.notify_one();
            watchdog.join();
            r.end = Stage().GetRunEnd(ws, &r.exitCode);
            Stage().DestroyStageWindowSet(ws);
        }
        r.out = out.Finish();
        r.err = err.Finish();
        return r;
    }
    std::vector<std::string> Log() { return g_State->log; }

    TempDir m_Dir;
};

// --- extension classes ---

TEST_F(StageTest, MethodsSeeEachArgumentTypeAndReturnValuesOrStatuses) {
    RunResult r = Run(R"(
        var p = new Probe();
        p.describe(undefined, null, true, -1.5, "a\u0000b", 4294967297, "12", {}, [1, 2],
                   function () {}, new Date(0));
        var o = {k: 1};
        Probe.log(p.echo(o) === o);
        Probe.log(p.echo("text"));
        Probe.log(p.echo());  // no value: the status
        Probe.log(p.status(7));
        Probe.log(p.self() === p);
        Probe.stop();)");
    EXPECT_EQ(r.created, AEError_OK);
    EXPECT_EQ(r.ran, AEError_OK);
    EXPECT_EQ(r.end, kASRunStopped);
    std::vector<std::string> expected = {
        "undefined:undefined/0/f|null:null/0/f|boolean:true/1/t|number:-1.5/-1/t|"
        "string:a" +
            std::string(1, '\0') +
            "b/0/t|number:4294967297/1/t|string:12/12/t|object|object:array2|"
            "object:function|object:date",
        "true",
        "text",
        "0",
        "7",
        "true"};
    EXPECT_EQ(Log(), expected);
}

TEST_F(StageTest, StatusMustBeSetExactlyOnce) {
    RunResult r = Run(R"(
        var p = new Probe();
        Probe.log(p.twoStatuses());
        Probe.log(typeof p.noStatus());
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK);
    EXPECT_EQ(Log(), (std::vector<std::string>{"1", "undefined"}));
    // Both handlers are reported, and the program went on.
    EXPECT_NE(r.err.find("calls ASResult::SetStatus only once"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("calls ASResult::SetStatus failed"), std::string::npos) << r.err;
}

TEST_F(StageTest, FactoryObjectsArraysAndDatesReadBackInTheMovie) {
    RunResult r = Run(R"(
        var t = new Probe().makeTree();
        Probe.log([typeof t.i, t.i, t.n, t.b, t.s, t.z.length, t.z.charCodeAt(1),
                   JSON.stringify(t.e), t.nul === null, Array.isArray(t.list),
                   t.list.join('/'), t.sized.length, t.date instanceof Date,
                   t.date.getFullYear(), t.date.getMonth(), t.date.getDate(),
                   t.date.getHours(), t.date.getMinutes(), t.date.getSeconds()].join(','));
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(),
              (std::vector<std::string>{
                  "number,-7,2.5,true,hi,3,0,\"\",true,true,0/10/20,2,true,2024,1,29,13,45,30"}));
}

TEST_F(StageTest, ATreeOfObjectsArraysAndDatesIsMadeInOneStep) {
    RunResult r = Run(R"(
        var t = new Probe().nested(), inner = t.list[1];
        Probe.log([Object.keys(t).join('/'), t.n, t.list.length, t.list[0],
                   Object.keys(inner).join('/'), Object.getPrototypeOf(inner) === Object.prototype,
                   Object.getOwnPropertyDescriptor(inner, '__proto__').value,
                   inner.when.getMonth(), inner.when.getDate(), Array.isArray(t.list[2]),
                   t.list[2].length, t.kept].join(','));
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{
                         "n/list/kept,7,3,true,__proto__/when,true,own,2,5,true,0,handle"}));
}

TEST_F(StageTest, NativeCodeReadsScriptObjects) {
    RunResult r = Run(R"(
        var p = new Probe();
        p.inspect({a: 5, list: [1, 'x', true]});
        p.touch({get bad() { throw new Error('getter'); }});
        Probe.log('after');
        Probe.stop();)");
    // A throwing getter is reported and ends the run once the script call returns.
    EXPECT_EQ(r.ran, AEError_Generic);
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_EQ(Log(), (std::vector<std::string>{"a=5 missing has len=3 1 x true", "null", "after"}));
    EXPECT_NE(r.err.find("movie.js:4: Error: getter"), std::string::npos) << r.err;
}

TEST_F(StageTest, MethodsCheckWhatTheyAreCalledOn) {
    RunResult r = Run(R"(
        function attempt(f) { try { f(); return 'no error'; } catch (e) { return e.name; } }
        var p = new Probe();
        Probe.log(attempt(function () { Probe.prototype.echo.call({}, 1); }));
        Probe.log(attempt(function () { Probe.prototype.echo.call(Object.create(p), 1); }));
        Probe.log(attempt(function () { Probe.prototype.echo.call(undefined, 1); }));
        Probe.log(attempt(function () { Probe(); }));
        Probe.log(typeof Probe.echo + ' ' + typeof p.log + ' ' + (p.constructor === Probe));
        var log = Probe.log; log('unbound static');
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{"TypeError", "TypeError", "TypeError", "TypeError",
                                               "undefined undefined true", "unbound static"}));
}

TEST_F(StageTest, NativeCodeFindsTheInstanceBehindAnObject) {
    RunResult r = Run(R"(
        var p = new Probe(), q = new Probe();
        p.same(p); p.same(q); p.same(Object.create(q)); p.same(Probe); p.same({}); p.same(3);
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{"this", "other", "none", "none", "none", "none"}));
}

TEST_F(StageTest, InstancesAreDestructedExactlyOnce) {
    RunResult r = Run(R"(
        var kept = [];
        for (var i = 0; i < 200; ++i) {
            var p = new Probe();
            if (i % 10 == 0) kept.push(p);
        }
        p = null;
        Duktape.gc();
        Probe.log(Probe.count());
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    // 200 instances and the class instance for the static calls.
    EXPECT_EQ(Log(), (std::vector<std::string>{"201"}));
    EXPECT_EQ(g_State->constructs, 201);
    EXPECT_EQ(g_State->destructs, 201);
    EXPECT_EQ(g_State->badDestructs, 0);
    EXPECT_TRUE(g_State->live.empty());
}

TEST_F(StageTest, NativeExceptionsBecomeScriptErrors) {
    RunResult r = Run(R"(
        var p = new Probe();
        try { p.fail(); } catch (e) { Probe.log('caught ' + e.name + ': ' + e.message); }
        p.fail();
        Probe.log('not reached');)");
    EXPECT_EQ(r.ran, AEError_Generic);
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_EQ(
        Log(),
        (std::vector<std::string>{"caught Error: Probe.fail failed with a native exception"}));
    EXPECT_NE(r.err.find("movie.js:4: Error: Probe.fail failed"), std::string::npos) << r.err;
}

TEST_F(StageTest, RefusedConstructionThrowsInTheMovie) {
    RunResult r = Run(R"(
        Probe.refuse(true);
        try { new Probe(); } catch (e) { Probe.log('refused ' + e.name + ': ' + e.message); }
        Probe.refuse(false);
        Probe.log(typeof new Probe());
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(),
              (std::vector<std::string>{"refused Error: Probe: construction refused", "object"}));

    // Static methods need the class instance: without it they throw.
    g_State->refuse = true;
    r = Run("try { Probe.stop(); } catch (e) { lmstageQuit(7); }", {"--lmstage-hooks"});
    EXPECT_EQ(r.end, kASRunExitCall) << r.err;
    EXPECT_EQ(r.exitCode, 7);
}

TEST_F(StageTest, ClassesRegisteredLaterAppearOnlyInLaterWindowSets) {
    struct Late : ASExtensionClassDescriptor {
        const char* GetClassName() override { return "com.kestrel.test.Late"; }
        void GetMethods(AEArray<ASExtensionClass::Method>&) override {}
        bool FiresEvents() override { return false; }
        ASExtensionClass* ConstructInstance(ASContext&) override { return nullptr; }
        void DestructInstance(ASExtensionClass*) override {}
    };
    static Late late;
    const char* movie = "Probe.log(typeof Late); Probe.stop();";
    Run(movie, {}, [] { EXPECT_EQ(Stage().RegisterExtensionClass(late), AEError_OK); });
    Run(movie);
    EXPECT_EQ(Log(), (std::vector<std::string>{"undefined", "function"}));
}

// --- globals ---

TEST_F(StageTest, FlashvarsAreDecoded) {
    RunResult r = Run(R"(
        var keys = Object.keys(flashvars).sort();
        Probe.log(keys.map(function (k) { return k + '=[' + flashvars[k] + ']'; }).join(' '));
        Probe.log(typeof flashvars.a);
        Probe.stop();)",
                      {"--flashvars", "a=1&b=x%20y+z&&flag&eq=p=q&pct=%41%zz%&%6B=v"});
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{"a=[1] b=[x y+z] eq=[p=q] flag=[] k=[v] pct=[A%zz%]",
                                               "string"}));

    g_State->log.clear();
    r = Run("Probe.log(Object.keys(flashvars).length); Probe.stop();");
    EXPECT_EQ(Log(), (std::vector<std::string>{"0"}));
}

TEST_F(StageTest, TracePrintsOnlyWithAsTrace) {
    const char* movie =
        "trace('one'); trace(2); trace({toString: function () { return 'three'; }});"
        "Probe.stop();";
    RunResult quiet = Run(movie, {"--bgalpha", "0.5", "--unknown", "--keymap", "/nonexistent"});
    EXPECT_EQ(quiet.ran, AEError_OK) << quiet.err;
    EXPECT_EQ(quiet.out, "");
    RunResult traced = Run(movie, {"--astrace", "--outputdims", "1280,720"});
    EXPECT_EQ(traced.ran, AEError_OK) << traced.err;
    EXPECT_EQ(traced.out, "one\n2\nthree\n");
}

TEST_F(StageTest, TimersFireInDueOrderAndClearStopsThem) {
    RunResult r = Run(R"(
        var ticks = 0;
        setTimeout(function () { Probe.log('late'); Probe.stop(); }, 120);
        setTimeout(function (a, b) { Probe.log('first ' + a + b); }, 10, 'x', 'y');
        setTimeout(function () { Probe.log('second'); }, 10);
        var cleared = setTimeout(function () { Probe.log('cleared one fired'); }, 20);
        clearTimeout(cleared);
        var id = setInterval(function () {
            Probe.log('tick ' + (++ticks));
            if (ticks == 3) clearInterval(id);
        }, 15);
        Probe.log(typeof id + ' ' + (id > 0) + ' ' + (cleared != id));)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{"number true true", "first xy", "second", "tick 1",
                                               "tick 2", "tick 3", "late"}));
}

TEST_F(StageTest, LmstageQuitOnlyWithTheHooks) {
    RunResult r = Run("lmstageQuit(258.9);", {"--lmstage-hooks"});
    EXPECT_EQ(r.ran, AEError_OK);
    EXPECT_EQ(r.end, kASRunExitCall);
    EXPECT_EQ(r.exitCode, 258);
    r = Run("lmstageQuit(1);");
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_NE(r.err.find("movie.js:1: ReferenceError"), std::string::npos) << r.err;
}

// --- keys ---

TEST_F(StageTest, QuitKeyFromAnotherThreadReachesTheMovieFirst) {
    std::thread poster;
    RunResult r = Run(
        R"(
        function onKeyDown(code) { Probe.log('down ' + code.toString(16)); }
        function onKeyUp(code) { Probe.log('up ' + code.toString(16)); })",
        {}, [&] {
            Stage().PostKeyPress(0x25);  // before the run: kept
            poster = std::thread([] {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                Stage().PostKeyRelease(0x25);
                Stage().PostKeyPress(kASQuitKeyCode);
                Stage().PostKeyPress(0x26);  // after the quit key: never delivered
            });
        });
    poster.join();
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(r.end, kASRunQuitKey);
    EXPECT_EQ(Log(), (std::vector<std::string>{"down 25", "up 25", "down 400100"}));
}

TEST_F(StageTest, KeysPostedWhenNoMovieRunsAreDropped) {
    auto started = Clock::now();
    Stage().PostKeyPress(0x30);  // no window set at all
    RunResult r = Run("Probe.stop();");
    EXPECT_EQ(r.end, kASRunStopped);
    Stage().PostKeyPress(0x31);  // the last window set has finished its run
    EXPECT_LT(Clock::now() - started, std::chrono::seconds(2));
    r = Run(R"(
        function onKeyDown(code) { Probe.log('down ' + code); }
        setTimeout(function () { Probe.stop(); }, 40);)");
    EXPECT_EQ(r.end, kASRunStopped);
    EXPECT_EQ(Log(), (std::vector<std::string>{}));
}

// --- errors ---

TEST_F(StageTest, UncaughtErrorsEndTheRunWithFileAndLine) {
    RunResult r = Run("var a = 1;\n\nnull.x;\n");
    EXPECT_EQ(r.created, AEError_OK);
    EXPECT_EQ(r.ran, AEError_Generic);
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_NE(r.err.find("movie.js:3: TypeError"), std::string::npos) << r.err;

    r = Run("setTimeout(function () {\n  throw new Error('in a timer');\n}, 1);");
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_NE(r.err.find("movie.js:2: Error: in a timer"), std::string::npos) << r.err;

    r = Run("function onKeyDown() {\n  undefinedFunction();\n}", {},
            [] { Stage().PostKeyPress(1); });
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_NE(r.err.find("movie.js:2: ReferenceError"), std::string::npos) << r.err;

    r = Run("throw 42;");
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_NE(r.err.find("uncaught 42"), std::string::npos) << r.err;
}

TEST_F(StageTest, ScriptFunctionsCalledFromNativeCode) {
    RunResult r = Run(R"(
        var p = new Probe();
        p.callBack(function (x) { return x * 2; }, 21);
        p.callBack(function (x) {
            throw new Error('from callback ' + x);
        }, 1);
        Probe.log('rest of the call');)");
    EXPECT_EQ(r.ran, AEError_Generic);
    EXPECT_EQ(r.end, kASRunScriptError);
    EXPECT_EQ(Log(), (std::vector<std::string>{"ok 42", "failed", "rest of the call"}));
    EXPECT_NE(r.err.find("movie.js:5: Error: from callback 1"), std::string::npos) << r.err;
}

TEST_F(StageTest, CreationFailures) {
    RunResult r = RunPath(m_Dir / "absent.js");
    EXPECT_EQ(r.created, AEError_NotFound);
    EXPECT_NE(r.err.find("stage: cannot open movie " + (m_Dir / "absent.js") +
                         ": No such file or directory"),
              std::string::npos)
        << r.err;

    r = Run("var a = 1;\nvar b = ;\n");
    EXPECT_EQ(r.created, AEError_Generic);
    EXPECT_NE(r.err.find("movie.js does not compile: SyntaxError"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("line 2"), std::string::npos) << r.err;

    StageWindowSet* ws = reinterpret_cast<StageWindowSet*>(1);
    const char* noMovie[] = {"lmstage", "--astrace"};
    CaptureFd err(2);
    EXPECT_EQ(Stage().CreateAndConfigureStageWindowSet(Stage(), &ws, 2, noMovie, 1), AEError_Usage);
    EXPECT_EQ(ws, nullptr);
    EXPECT_NE(err.Finish().find("no movie"), std::string::npos);
}

TEST_F(StageTest, SwfPathsAreLookedUpUnderTheMovieDirectory) {
    WriteMovie("lmcesdk2_axo.js", "Probe.log('found'); Probe.stop();");
    setenv("LM_MOVIE_DIR", m_Dir.path().c_str(), 1);
    RunResult r = RunPath("/usr/share/lumora/lmcesdk2_axo.swf");
    unsetenv("LM_MOVIE_DIR");
    EXPECT_EQ(r.created, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{"found"}));
    r = RunPath("/usr/share/lumora/lmcesdk2_axo.swf");
    EXPECT_EQ(r.created, AEError_NotFound);
}

// --- updates and threads ---

TEST_F(StageTest, WorkerCompletionIsDeliveredOnTheScriptThreadThroughOnUpdate) {
    RunResult r = Run(R"(
        // Kept in a variable: an instance nobody refers to is destructed, updates and all.
        var p = new Probe();
        p.later(function (text) {
            Probe.log(text);
            setTimeout(function () { Probe.stop(); }, 50);
        });)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    EXPECT_EQ(Log(), (std::vector<std::string>{"done"}));
    EXPECT_TRUE(g_State->callbackResult);
    EXPECT_EQ(g_State->callbackThread, std::this_thread::get_id());
    EXPECT_EQ(g_State->scriptThread, std::this_thread::get_id());
    EXPECT_NE(g_State->workerThread, std::this_thread::get_id());
    EXPECT_GT(g_State->updatesAtStop, 1);
    // No update after StopUpdates, though the movie ran on for several turns.
    EXPECT_EQ(g_State->updates, g_State->updatesAtStop);
}

TEST_F(StageTest, HandlesOutlivingTheWindowSetCanOnlyBeReleased) {
    RunResult r = Run(R"(
        new Probe().keep({a: 1}, 'a long string that is not held inline', 3, [1, 2]);
        Probe.stop();)");
    EXPECT_EQ(r.ran, AEError_OK) << r.err;
    ASSERT_EQ(g_State->kept.size(), 4u);
    for (ASValue* value : g_State->kept) {
        EXPECT_EQ(value->GetType(), kASTypeUndefined);
        EXPECT_EQ(value->AsObject(), nullptr);
        EXPECT_EQ(value->Clone(), nullptr);
        AEString text;
        EXPECT_FALSE(value->ToString(text));
        value->Release();
    }
    g_State->kept.clear();
}

TEST(StageKernel, KernelServices) {
    ae::IAEKernel& kernel = *stagetest::Kernel().kernel;
    EXPECT_EQ(kernel.GetInterface("INoSuchThing"), nullptr);
    void* stage = kernel.GetInterface("IStagecraft");
    EXPECT_EQ(stage, stagetest::Kernel().stage);
    kernel.ReleaseInterface("IStagecraft", stage);

    ae::IAEMutex* mutex = kernel.CreateMutex();
    ASSERT_NE(mutex, nullptr);
    mutex->Lock();
    mutex->Unlock();
    mutex->Destroy();

    CaptureFd err(2);
    kernel.ReportAssert("x > 0", "file.cpp", 12);
    EXPECT_EQ(err.Finish(), "assertion x > 0 failed at file.cpp:12\n");

    struct Nameless : ASExtensionClassDescriptor {
        const char* GetClassName() override { return ""; }
        void GetMethods(AEArray<ASExtensionClass::Method>&) override {}
        bool FiresEvents() override { return false; }
        ASExtensionClass* ConstructInstance(ASContext&) override { return nullptr; }
        void DestructInstance(ASExtensionClass*) override {}
    } nameless;
    EXPECT_EQ(stagetest::Kernel().stage->RegisterExtensionClass(nameless),
              AEError_InvalidParameters);
}

}  // namespace
