// The player class's method table and the stand-in player behind it, driven the way the runtime
// drives them: handlers looked up in the descriptor's table and called with a context, the
// script object, argument handles and a result sink, all of them fakes here.
#include "LMPlayerClass.h"
#include "LMPlayerLibAE.h"
#include "LMPlayerStandIn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

using ae::stagecraft::ASContext;
using ae::stagecraft::ASExtensionClass;
using ae::stagecraft::ASObject;
using ae::stagecraft::ASResult;
using ae::stagecraft::ASValue;
using ae::stagecraft::ASValueType;

namespace {

// ---- A kernel that allocates with malloc and counts the blocks still out

class MallocKernel final : public ae::IAEKernel {
public:
    void* Allocate(size_t size) override {
        void* block = std::malloc(size);
        blocks += block != nullptr;
        return block;
    }
    void Free(void* block) override {
        blocks -= block != nullptr;
        std::free(block);
    }
    void* MemCopy(void* dst, const void* src, size_t size) override {
        return std::memcpy(dst, src, size);
    }
    void* MemSet(void* dst, int value, size_t size) override {
        return std::memset(dst, value, size);
    }
    void ReportAssert(const char*, const char*, int) override { ++asserts; }
    ae::IAEMutex* CreateMutex() override { return nullptr; }
    void* GetInterface(const char*) override { return nullptr; }
    void ReleaseInterface(const char*, void*) override {}

    long blocks = 0;
    int asserts = 0;
};

MallocKernel g_Kernel;

}  // namespace

ae::IAEKernel* ae::AECurrentKernel() {
    return &g_Kernel;
}

namespace {

// ---- Script values: handles onto shared value records that count the handles open on them

struct FakeData {
    ASValueType type = ae::stagecraft::kASTypeUndefined;
    bool boolean = false;
    double number = 0;
    std::string text;
    bool isArray = false;
    bool isFunction = false;
    std::map<std::string, std::shared_ptr<FakeData>> properties;
    std::vector<std::shared_ptr<FakeData>> elements;
    std::vector<std::string> calls;  // a function's calls, each as "arg,arg"
    std::function<void()> onCall;
    int handles = 0;
};
using Data = std::shared_ptr<FakeData>;

int g_Handles = 0;  // handles open on any value

Data Make(ASValueType type) {
    Data d = std::make_shared<FakeData>();
    d->type = type;
    return d;
}
Data Undefined() {
    return Make(ae::stagecraft::kASTypeUndefined);
}
Data Null() {
    return Make(ae::stagecraft::kASTypeNull);
}
Data Bool(bool b) {
    Data d = Make(ae::stagecraft::kASTypeBoolean);
    d->boolean = b;
    return d;
}
Data Num(double n) {
    Data d = Make(ae::stagecraft::kASTypeNumber);
    d->number = n;
    return d;
}
Data Str(const std::string& s) {
    Data d = Make(ae::stagecraft::kASTypeString);
    d->text = s;
    return d;
}
Data Object() {
    return Make(ae::stagecraft::kASTypeObject);
}
Data Array() {
    Data d = Object();
    d->isArray = true;
    return d;
}
Data Function() {
    Data d = Object();
    d->isFunction = true;
    return d;
}
Data Asset(Data url, Data duration = nullptr) {
    Data d = Object();
    d->properties["url"] = std::move(url);
    if (duration)
        d->properties["duration"] = std::move(duration);
    return d;
}

std::string Text(const FakeData& d) {
    char number[32];
    switch (d.type) {
        case ae::stagecraft::kASTypeUndefined:
            return "undefined";
        case ae::stagecraft::kASTypeNull:
            return "null";
        case ae::stagecraft::kASTypeBoolean:
            return d.boolean ? "true" : "false";
        case ae::stagecraft::kASTypeNumber:
            std::snprintf(number, sizeof number, "%g", d.number);
            return number;
        case ae::stagecraft::kASTypeString:
            return d.text;
        case ae::stagecraft::kASTypeObject:
            break;
    }
    return "[object]";
}

class FakeValue final : public ASObject {
public:
    explicit FakeValue(Data d) : m_D(std::move(d)) {
        ++m_D->handles;
        ++g_Handles;
    }
    ~FakeValue() {
        --m_D->handles;
        --g_Handles;
    }
    static const Data& Of(const ASValue& v) { return static_cast<const FakeValue&>(v).m_D; }

    ASValueType GetType() const override { return m_D->type; }
    bool ToBoolean() const override { return m_D->boolean || m_D->number != 0; }
    double ToNumber() const override {
        return m_D->type == ae::stagecraft::kASTypeNumber ? m_D->number : std::nan("");
    }
    int32_t ToInt32() const override { return static_cast<int32_t>(ToNumber()); }
    bool ToString(AEString& out) const override { return out.Assign(Text(*m_D).c_str()); }
    ASObject* AsObject() override {
        return m_D->type == ae::stagecraft::kASTypeObject ? this : nullptr;
    }
    ASValue* Clone() const override { return new FakeValue(m_D); }
    void Release() override { delete this; }

    bool IsArray() const override { return m_D->isArray; }
    bool IsDate() const override { return false; }
    bool IsFunction() const override { return m_D->isFunction; }
    ASValue* GetProperty(const char* name) override {
        auto it = m_D->properties.find(name);
        return new FakeValue(it != m_D->properties.end() ? it->second : Undefined());
    }
    // The player only reads properties.
    bool HasProperty(const char*) override { return false; }
    bool SetProperty(const char*, const ASValue&) override { return false; }
    bool SetNumber(const char*, double) override { return false; }
    bool SetInt(const char*, int32_t) override { return false; }
    bool SetBoolean(const char*, bool) override { return false; }
    bool SetString(const char*, const char*) override { return false; }
    bool SetString(const char*, const char*, size_t) override { return false; }
    uint32_t GetLength() override { return static_cast<uint32_t>(m_D->elements.size()); }
    ASValue* GetElement(uint32_t index) override {
        return new FakeValue(index < m_D->elements.size() ? m_D->elements[index] : Undefined());
    }
    // Arrays have push; nothing else has methods.
    bool CallMethod(const char* name, uint32_t argc, const ASValue* const* argv,
                    ASValue** result) override {
        if (!m_D->isArray || std::strcmp(name, "push") != 0)
            return false;
        for (uint32_t i = 0; i < argc; ++i)
            m_D->elements.push_back(Of(*argv[i]));
        if (result)
            *result = new FakeValue(Num(static_cast<double>(m_D->elements.size())));
        return true;
    }
    bool Call(uint32_t argc, const ASValue* const* argv, ASValue** result) override {
        if (!m_D->isFunction)
            return false;
        std::string line;
        for (uint32_t i = 0; i < argc; ++i)
            line += (i ? "," : "") + Text(*Of(*argv[i]));
        m_D->calls.push_back(line);
        if (m_D->onCall)
            m_D->onCall();
        if (result)
            *result = new FakeValue(Undefined());
        return true;
    }

private:
    Data m_D;
};

class FakeContext final : public ASContext {
public:
    ASValue* NewUndefined() override { return new FakeValue(Undefined()); }
    ASValue* NewNull() override { return new FakeValue(Null()); }
    ASValue* NewBoolean(bool value) override { return new FakeValue(Bool(value)); }
    ASValue* NewNumber(double value) override { return new FakeValue(Num(value)); }
    ASValue* NewInt(int32_t value) override { return new FakeValue(Num(value)); }
    ASValue* NewString(const char* text) override { return new FakeValue(Str(text ? text : "")); }
    ASValue* NewString(const char* bytes, size_t size) override {
        return new FakeValue(Str(std::string(bytes, size)));
    }
    ASObject* NewInstance(const char* className, uint32_t, const ASValue* const*) override {
        if (!std::strcmp(className, "Array"))
            return new FakeValue(Array());
        if (!std::strcmp(className, "Object"))
            return new FakeValue(Object());
        return nullptr;
    }
    ASObject* NewDate(int32_t, int32_t, int32_t, int32_t, int32_t, int32_t) override {
        return nullptr;
    }
    ASObject* NewShapedObject(const ae::stagecraft::ASShape&,
                              const ae::stagecraft::ASField*) override {
        return nullptr;  // the player makes no shaped objects
    }
    ae::stagecraft::ASObject* NewShapedArray(const ae::stagecraft::ASShape&,
                                             const ae::stagecraft::ASField*, uint32_t) override {
        return nullptr;
    }
    void RequestUpdates(ASExtensionClass& instance) override { updating = &instance; }
    void StopUpdates(ASExtensionClass& instance) override {
        if (updating == &instance)
            updating = nullptr;
    }
    void Stop() override {}
    ae::stagecraft::ASValue* NewTree(const ae::stagecraft::ASField&) override { return nullptr; }
    ae::stagecraft::ASExtensionClass* GetNativeInstance(const ae::stagecraft::ASValue&,
                                                        const char*) override {
        return nullptr;
    }

    ASExtensionClass* updating = nullptr;
};

class FakeResult final : public ASResult {
public:
    void SetValue(const ASValue& v) override {
        valueAfterStatus |= statuses > 0;
        value = FakeValue::Of(v);
    }
    void SetStatus(int32_t s) override {
        ++statuses;
        status = s;
    }

    Data value;
    int statuses = 0;
    bool valueAfterStatus = false;
    int32_t status = 0;
};

// ---- The player class's table

TEST(LMPlayerClass, AppendsTheNineteenMethodsInTableOrderAfterExistingEntries) {
    struct Expected {
        const char* name;
        int32_t isStatic;
    };
    const Expected expected[] = {
        {"Initialize", 0},
        {"Shutdown", 0},
        {"GetVersion", 0},
        {"CreatePlayer", 0},
        {"ReleasePlayer", 0},
        {"Play", 0},
        {"Pause", 0},
        {"Stop", 0},
        {"GetPlaybackTime", 0},
        {"GetPlaybackState", 0},
        {"GetDuration", 0},
        {"GetCurrentBandwidth", 0},
        {"RegisterEventHandler", 0},
        {"THX_ProcessContentDescriptors", 1},
        {"THX_IsSupportedOnDevice", 1},
        {"getSupported3DFormats", 1},
        {"getConfigured3DFormat", 0},
        {"set3DMode", 0},
        {"SetLogAreaIDsConfig", 1},
    };
    AEArray<ASExtensionClass::Method> methods;
    ASSERT_TRUE(methods.Append(ASExtensionClass::Method{"Earlier", 1, nullptr}));
    LMPlayerClassDescriptor().GetMethods(methods);

    ASSERT_EQ(methods.GetCount(), 20u);
    EXPECT_STREQ(methods[0].name, "Earlier");
    EXPECT_TRUE(methods[0].handler == nullptr);
    for (uint32_t i = 0; i < 19; ++i) {
        const ASExtensionClass::Method& m = methods[i + 1];
        EXPECT_STREQ(m.name, expected[i].name);
        EXPECT_EQ(m.isStatic, expected[i].isStatic) << m.name;
        EXPECT_TRUE(m.handler != nullptr) << m.name;
        for (uint32_t j = 1; j <= i; ++j)
            EXPECT_TRUE(m.handler != methods[j].handler)
                << m.name << " repeats " << methods[j].name;
    }
}

TEST(LMPlayerClass, NamesTheClassAndFiresNoEvents) {
    EXPECT_STREQ(LMPlayerClassDescriptor().GetClassName(), "com.kestrel.LMPlayerLibAE");
    EXPECT_FALSE(LMPlayerClassDescriptor().FiresEvents());
    EXPECT_EQ(&LMPlayerClassDescriptor(), &LMPlayerClassDescriptor());
}

// ---- The stand-in player, through the table

std::chrono::steady_clock::time_point g_Now;

struct Answer {
    int32_t status;
    Data value;  // null when the handler set none
};

class PlayerTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_Now = {};
        lmplayer::SetStandInClock([] { return g_Now; });
        m_BlocksBefore = g_Kernel.blocks;
        m_HandlesBefore = g_Handles;
        LMPlayerClassDescriptor().GetMethods(m_Methods);
        m_Player = LMPlayerClassDescriptor().ConstructInstance(m_Context);
        ASSERT_NE(m_Player, nullptr);
    }

    // Destroying the instance gives back everything it held: handles and kernel blocks.
    void TearDown() override {
        LMPlayerClassDescriptor().DestructInstance(m_Player);
        m_Methods.Clear();
        lmplayer::SetStandInClock(nullptr);
        EXPECT_EQ(g_Handles, m_HandlesBefore) << "script value handles left open";
        EXPECT_EQ(g_Kernel.blocks, m_BlocksBefore) << "kernel blocks left allocated";
        EXPECT_EQ(g_Kernel.asserts, 0);
    }

    // Calls the table's handler `name` as the runtime would, with new handles onto `args` that
    // are released afterwards; every call must set its status exactly once, after any value.
    Answer Invoke(const char* name, const std::vector<Data>& args = {}) {
        const ASExtensionClass::Method* method = nullptr;
        for (uint32_t i = 0; i < m_Methods.GetCount(); ++i) {
            if (!std::strcmp(m_Methods[i].name, name))
                method = &m_Methods[i];
        }
        if (!method) {
            ADD_FAILURE() << "no method " << name;
            return {};
        }
        AEArray<ASValue*> argv;
        for (const Data& d : args)
            argv.Append(new FakeValue(d));
        FakeValue self(Object());
        FakeResult result;
        (m_Player->*method->handler)(m_Context, self, argv, result);
        for (uint32_t i = 0; i < argv.GetCount(); ++i)
            argv[i]->Release();
        EXPECT_EQ(result.statuses, 1) << name;
        EXPECT_FALSE(result.valueAfterStatus) << name;
        return {result.status, result.value};
    }
    int32_t Status(const char* name, const std::vector<Data>& args = {}) {
        return Invoke(name, args).status;
    }
    double Number(const char* name) {
        Answer a = Invoke(name);
        EXPECT_EQ(a.status, 0) << name;
        EXPECT_TRUE(a.value && a.value->type == ae::stagecraft::kASTypeNumber) << name;
        return a.value ? a.value->number : std::nan("");
    }
    double Time() { return Number("GetPlaybackTime"); }
    double State() { return Number("GetPlaybackState"); }

    void CreatePlayer() {
        ASSERT_EQ(Status("Initialize"), 0);
        ASSERT_EQ(Status("CreatePlayer"), 0);
    }
    void Advance(double seconds) {
        g_Now += std::chrono::duration_cast<std::chrono::steady_clock::duration>(
            std::chrono::duration<double>(seconds));
    }
    void Update() { m_Player->OnUpdate(m_Context); }
    bool Updating() const { return m_Context.updating == m_Player; }

    const Data kUrl = Str("http://media.test/film.mpd");

    FakeContext m_Context;
    AEArray<ASExtensionClass::Method> m_Methods;
    ASExtensionClass* m_Player = nullptr;
    long m_BlocksBefore = 0;
    int m_HandlesBefore = 0;
};

using Calls = std::vector<std::string>;

TEST_F(PlayerTest, PlayerCallsNeedAnInitialisedLibraryAndACreatedPlayer) {
    EXPECT_EQ(Status("CreatePlayer"), LMPlayerLibAE::kStatusNoPlayer);
    ASSERT_EQ(Status("Initialize"), 0);
    for (const char* name : {"ReleasePlayer", "Play", "Pause", "Stop", "GetPlaybackTime",
                             "GetPlaybackState", "GetDuration", "GetCurrentBandwidth"}) {
        Answer a = Invoke(name, {kUrl});
        EXPECT_EQ(a.status, LMPlayerLibAE::kStatusNoPlayer) << name;
        EXPECT_EQ(a.value, nullptr) << name;
    }
    EXPECT_EQ(Status("CreatePlayer"), 0);
    EXPECT_EQ(Status("CreatePlayer"), LMPlayerLibAE::kStatusWrongState);
    EXPECT_EQ(Status("ReleasePlayer"), 0);
    EXPECT_EQ(Status("GetPlaybackState"), LMPlayerLibAE::kStatusNoPlayer);
}

TEST_F(PlayerTest, ShutdownReleasesThePlayerAndTheHandler) {
    CreatePlayer();
    Data fn = Function();
    ASSERT_EQ(Status("RegisterEventHandler", {fn}), 0);
    ASSERT_EQ(Status("Play", {kUrl}), 0);

    EXPECT_EQ(Status("Shutdown"), 0);
    EXPECT_EQ(fn->handles, 0);
    EXPECT_FALSE(Updating());
    EXPECT_EQ(Status("CreatePlayer"), LMPlayerLibAE::kStatusNoPlayer);

    CreatePlayer();
    EXPECT_EQ(Number("GetDuration"), 0);
    EXPECT_EQ(State(), LMPlayerLibAE::kStateStopped);
    Update();
    EXPECT_TRUE(fn->calls.empty());
}

TEST_F(PlayerTest, TimeRunsOnlyWhilePlaying) {
    CreatePlayer();
    ASSERT_EQ(Status("Play", {kUrl}), 0);
    Advance(10);
    EXPECT_DOUBLE_EQ(Time(), 10);
    EXPECT_EQ(State(), LMPlayerLibAE::kStatePlaying);

    ASSERT_EQ(Status("Pause"), 0);
    Advance(100);
    EXPECT_DOUBLE_EQ(Time(), 10);
    EXPECT_EQ(State(), LMPlayerLibAE::kStatePaused);

    ASSERT_EQ(Status("Play"), 0);  // resumes where it paused
    Advance(5);
    EXPECT_DOUBLE_EQ(Time(), 15);

    ASSERT_EQ(Status("Stop"), 0);
    Advance(20);
    EXPECT_DOUBLE_EQ(Time(), 0);
    EXPECT_EQ(State(), LMPlayerLibAE::kStateStopped);

    ASSERT_EQ(Status("Play"), 0);  // the stopped media again, from the start
    Advance(3);
    EXPECT_DOUBLE_EQ(Time(), 3);
    EXPECT_EQ(Number("GetCurrentBandwidth"), 8000);
    ASSERT_EQ(Status("Pause"), 0);
    EXPECT_EQ(Number("GetCurrentBandwidth"), 0);
}

TEST_F(PlayerTest, UpdatesAreRequestedWhileTimeRunsOrEventsWait) {
    CreatePlayer();
    EXPECT_FALSE(Updating());
    ASSERT_EQ(Status("Play", {kUrl}), 0);
    EXPECT_TRUE(Updating());
    ASSERT_EQ(Status("Pause"), 0);
    EXPECT_TRUE(Updating());  // the pause event waits
    Update();
    EXPECT_FALSE(Updating());
    ASSERT_EQ(Status("Play"), 0);
    Update();
    EXPECT_TRUE(Updating());
    ASSERT_EQ(Status("ReleasePlayer"), 0);
    EXPECT_FALSE(Updating());
}

TEST_F(PlayerTest, DurationIsTheDefaultOrTheOneGiven) {
    CreatePlayer();
    ASSERT_EQ(Status("Play", {kUrl}), 0);
    EXPECT_EQ(Number("GetDuration"), 5400);
    ASSERT_EQ(Status("Play", {kUrl, Num(30)}), 0);
    EXPECT_EQ(Number("GetDuration"), 30);
    ASSERT_EQ(Status("Play", {Asset(kUrl, Num(12.5))}), 0);
    EXPECT_EQ(Number("GetDuration"), 12.5);
    ASSERT_EQ(Status("Play", {Asset(kUrl)}), 0);
    EXPECT_EQ(Number("GetDuration"), 5400);
}

TEST_F(PlayerTest, PlayRejectsWrongArgumentsAndKeepsPlaying) {
    CreatePlayer();
    EXPECT_EQ(Status("Play"), LMPlayerLibAE::kStatusBadArguments);  // nothing to play again
    EXPECT_EQ(State(), LMPlayerLibAE::kStateStopped);

    ASSERT_EQ(Status("Play", {kUrl, Num(60)}), 0);
    Advance(4);
    const std::vector<std::vector<Data>> wrong = {
        {Num(1)},          {Bool(true)},    {Null()},
        {Str("")},         {Function()},    {Array()},
        {Object()},        {Asset(Num(7))}, {Asset(kUrl, Str("60"))},
        {kUrl, Num(0)},    {kUrl, Num(-5)}, {kUrl, Num(std::nan(""))},
        {kUrl, Str("60")},
    };
    for (size_t i = 0; i < wrong.size(); ++i)
        EXPECT_EQ(Status("Play", wrong[i]), LMPlayerLibAE::kStatusBadArguments) << "case " << i;
    EXPECT_EQ(State(), LMPlayerLibAE::kStatePlaying);
    EXPECT_DOUBLE_EQ(Time(), 4);
    EXPECT_EQ(Number("GetDuration"), 60);
}

TEST_F(PlayerTest, ReachingTheDurationEndsPlaybackOnce) {
    CreatePlayer();
    Data fn = Function();
    ASSERT_EQ(Status("RegisterEventHandler", {fn}), 0);
    ASSERT_EQ(Status("Play", {kUrl, Num(60)}), 0);
    Update();
    Advance(59.5);
    Update();
    EXPECT_EQ(fn->calls, Calls{"play,1"});

    Advance(1);
    Update();
    EXPECT_EQ(fn->calls, (Calls{"play,1", "ended,3"}));
    EXPECT_EQ(State(), LMPlayerLibAE::kStateEnded);
    EXPECT_DOUBLE_EQ(Time(), 60);
    EXPECT_FALSE(Updating());
    EXPECT_EQ(Status("Pause"), LMPlayerLibAE::kStatusWrongState);
    Advance(10);
    Update();
    EXPECT_EQ(fn->calls.size(), 2u);

    ASSERT_EQ(Status("Play"), 0);  // from the start again
    EXPECT_DOUBLE_EQ(Time(), 0);
    EXPECT_EQ(State(), LMPlayerLibAE::kStatePlaying);
}

TEST_F(PlayerTest, AQueryAfterTheEndSeesItBeforeTheNextUpdate) {
    CreatePlayer();
    ASSERT_EQ(Status("Play", {kUrl, Num(10)}), 0);
    Data fn = Function();
    ASSERT_EQ(Status("RegisterEventHandler", {fn}), 0);
    Advance(11);
    EXPECT_EQ(State(), LMPlayerLibAE::kStateEnded);
    EXPECT_DOUBLE_EQ(Time(), 10);
    EXPECT_TRUE(Updating());  // the ended event waits
    Update();
    Update();
    EXPECT_EQ(fn->calls, (Calls{"play,1", "ended,3"}));
}

TEST_F(PlayerTest, EventsArriveInOrderOnTheNextUpdate) {
    CreatePlayer();
    Data fn = Function();
    ASSERT_EQ(Status("RegisterEventHandler", {fn}), 0);
    ASSERT_EQ(Status("Play", {kUrl}), 0);
    ASSERT_EQ(Status("Pause"), 0);
    ASSERT_EQ(Status("Pause"), 0);  // already paused: no event
    ASSERT_EQ(Status("Play"), 0);
    ASSERT_EQ(Status("Stop"), 0);
    ASSERT_EQ(Status("Stop"), 0);  // already stopped: no event
    EXPECT_TRUE(fn->calls.empty());
    Update();
    EXPECT_EQ(fn->calls, (Calls{"play,1", "pause,2", "play,1", "stop,0"}));
}

TEST_F(PlayerTest, AHandlersOwnCallsDoNotReenterIt) {
    CreatePlayer();
    Data fn = Function();
    FakeData* raw = fn.get();
    int depth = 0, deepest = 0;
    fn->onCall = [&, raw] {
        deepest = std::max(deepest, ++depth);
        if (raw->calls.back() == "play,1") {
            EXPECT_EQ(Status("Stop"), 0);
        }
        --depth;
    };
    ASSERT_EQ(Status("RegisterEventHandler", {fn}), 0);
    ASSERT_EQ(Status("Play", {kUrl}), 0);
    Update();
    EXPECT_EQ(fn->calls, Calls{"play,1"});
    EXPECT_EQ(State(), LMPlayerLibAE::kStateStopped);
    EXPECT_TRUE(Updating());
    Update();
    EXPECT_EQ(fn->calls, (Calls{"play,1", "stop,0"}));
    EXPECT_EQ(deepest, 1);
    fn->onCall = nullptr;
}

TEST_F(PlayerTest, ReleasingThePlayerFromTheHandlerDropsTheRemainingEvents) {
    CreatePlayer();
    Data fn = Function();
    fn->onCall = [this] { EXPECT_EQ(Status("ReleasePlayer"), 0); };
    ASSERT_EQ(Status("RegisterEventHandler", {fn}), 0);
    ASSERT_EQ(Status("Play", {kUrl}), 0);
    ASSERT_EQ(Status("Pause"), 0);
    Update();
    EXPECT_EQ(fn->calls, Calls{"play,1"});
    EXPECT_FALSE(Updating());
    fn->onCall = nullptr;
}

TEST_F(PlayerTest, RegisteringKeepsOneHandleToTheLatestFunction) {
    CreatePlayer();
    Data first = Function(), second = Function();
    ASSERT_EQ(Status("RegisterEventHandler", {first}), 0);
    EXPECT_EQ(first->handles, 1);
    ASSERT_EQ(Status("RegisterEventHandler", {second}), 0);
    EXPECT_EQ(first->handles, 0);
    EXPECT_EQ(second->handles, 1);

    for (const Data& wrong : {Num(3), Str("onEvent"), Object(), Array()})
        EXPECT_EQ(Status("RegisterEventHandler", {wrong}), LMPlayerLibAE::kStatusBadArguments);
    EXPECT_EQ(second->handles, 1);

    ASSERT_EQ(Status("Play", {kUrl}), 0);
    Update();
    EXPECT_TRUE(first->calls.empty());
    EXPECT_EQ(second->calls, Calls{"play,1"});

    ASSERT_EQ(Status("RegisterEventHandler", {Null()}), 0);
    EXPECT_EQ(second->handles, 0);
    // The last one is released with the instance (TearDown counts the open handles).
    ASSERT_EQ(Status("RegisterEventHandler", {Function()}), 0);
}

TEST_F(PlayerTest, ThreeDIsTwoDOnly) {
    Answer formats = Invoke("getSupported3DFormats");
    EXPECT_EQ(formats.status, 0);
    ASSERT_TRUE(formats.value && formats.value->isArray);
    ASSERT_EQ(formats.value->elements.size(), 1u);
    EXPECT_EQ(Text(*formats.value->elements[0]), "2D");
    EXPECT_EQ(formats.value->elements[0]->type, ae::stagecraft::kASTypeString);

    Answer configured = Invoke("getConfigured3DFormat");
    EXPECT_EQ(configured.status, 0);
    ASSERT_TRUE(configured.value);
    EXPECT_EQ(configured.value->text, "2D");

    EXPECT_EQ(Status("set3DMode", {Str("2D")}), 0);
    for (const Data& wrong : {Str("3D"), Str("2d"), Num(2), Undefined()})
        EXPECT_EQ(Status("set3DMode", {wrong}), LMPlayerLibAE::kStatusBadArguments);
    EXPECT_EQ(Status("set3DMode"), LMPlayerLibAE::kStatusBadArguments);
}

TEST_F(PlayerTest, TheOtherFeaturesAnswerWithoutAPlayer) {
    for (const char* name : {"THX_ProcessContentDescriptors", "THX_IsSupportedOnDevice"}) {
        Answer a = Invoke(name, {Str("descriptor")});
        EXPECT_EQ(a.status, 0) << name;
        ASSERT_TRUE(a.value) << name;
        EXPECT_EQ(a.value->type, ae::stagecraft::kASTypeBoolean) << name;
        EXPECT_FALSE(a.value->boolean) << name;
    }
    EXPECT_EQ(Status("SetLogAreaIDsConfig", {Str("player"), Num(3)}), 0);
    EXPECT_EQ(Status("SetLogAreaIDsConfig"), 0);

    Answer version = Invoke("GetVersion");
    EXPECT_EQ(version.status, 0);
    ASSERT_TRUE(version.value);
    EXPECT_EQ(version.value->type, ae::stagecraft::kASTypeString);
    EXPECT_FALSE(version.value->text.empty());
}

}  // namespace
