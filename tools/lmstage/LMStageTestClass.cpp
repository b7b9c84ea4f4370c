// Methods (instance unless marked static):
//   echo(v)              returns v
//   describe(v)          returns "type|ToNumber|ToInt32|ToBoolean|ToString" of v as native code
//   sees it makeTree()           returns an Object holding numbers, a string, a boolean, an Array,
//   a Date
//                        and a nested Object, built through the value factory
//   makeShaped(which)    returns an Object made in one step from a shape: 0 a plain shape with
//                        every kind of field, 1 a shape the fast path cannot take ("__proto__")
//   makeShapedArray(n)   returns an Array of n shaped objects {index, label} made in one step
//   startWork(fn, ms)    a native worker thread sleeps `ms` and finishes; OnUpdate then calls
//                        fn({value, workerThreadDiffers, deliveredOnScriptThread}); -2 while busy
//   throwNative()        throws a C++ exception out of the handler
//   quit()               stops the movie
//   static version()     returns "LMStageTest 1"
//   static status(n)     gives status n and no value
#include "LMStageTestClass.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using ae::stagecraft::ASContext;
using ae::stagecraft::ASExtensionClass;
using ae::stagecraft::ASObject;
using ae::stagecraft::ASResult;
using ae::stagecraft::ASValue;

namespace {

typedef AEArray<ASValue*> Args;

// Releases a handle at the end of a scope.
struct Held {
    explicit Held(ASValue* v) : value(v) {}
    ~Held() {
        if (value)
            value->Release();
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ASValue* value;
};

class LMStageTest : public ASExtensionClass {
public:
    ~LMStageTest() override {
        if (m_Worker.joinable())
            m_Worker.join();
        if (m_Callback)
            m_Callback->Release();
    }

    void echo(ASContext&, ASObject&, Args& args, ASResult& result) {
        if (args.GetCount() != 1)
            return result.SetStatus(-3);
        result.SetValue(*args[0]);
        result.SetStatus(0);
    }

    void describe(ASContext& context, ASObject&, Args& args, ASResult& result) {
        if (args.GetCount() != 1)
            return result.SetStatus(-3);
        static const char* const kTypes[] = {"undefined", "null",   "boolean",
                                             "number",    "string", "object"};
        const ASValue& v = *args[0];
        AEString text;
        std::string out = kTypes[v.GetType()];
        if (ASObject* o = const_cast<ASValue&>(v).AsObject())
            out += o->IsFunction() ? "/function"
                   : o->IsDate()   ? "/date"
                   : o->IsArray()  ? "/array"
                                   : "";
        out += "|" + std::to_string(v.ToNumber()) + "|" + std::to_string(v.ToInt32()) + "|" +
               (v.ToBoolean() ? "true" : "false") + "|" +
               (v.ToString(text) ? text.c_str() : "<throws>");
        Held value(context.NewString(out.data(), out.size()));
        result.SetValue(*value.value);
        result.SetStatus(0);
    }

    void makeTree(ASContext& context, ASObject&, Args&, ASResult& result) {
        Held tree(context.NewInstance("Object"));
        Held list(context.NewInstance("Array"));
        Held date(context.NewDate(2026, 10, 23, 22, 55, 27));
        Held nested(context.NewInstance("Object"));
        Held one(context.NewInt(1));
        Held two(context.NewString("two"));
        Held no(context.NewBoolean(false));
        ASObject* t = tree.value->AsObject();
        ASObject* l = list.value->AsObject();
        for (const ASValue* element : {one.value, two.value, no.value})
            l->CallMethod("push", 1, &element);
        nested.value->AsObject()->SetString("inner", "x");
        t->SetInt("count", 3);
        t->SetNumber("ratio", 0.5);
        t->SetString("name", "tree");
        t->SetString("bytes", "a\0b", 3);
        t->SetBoolean("ok", true);
        t->SetProperty("list", *list.value);
        t->SetProperty("when", *date.value);
        t->SetProperty("nested", *nested.value);
        result.SetValue(*tree.value);
        result.SetStatus(0);
    }

    void makeShaped(ASContext& context, ASObject&, Args& args, ASResult& result) {
        static const char* const kPlain[] = {"count",        "ratio", "ok",  "name",
                                             "say \"hi\"\\", "list",  "none"};
        static const char* const kOdd[] = {"first", "__proto__", "last"};
        Held list(context.NewInstance("Array"));
        ae::stagecraft::ASField plain[] = {
            ae::stagecraft::ASField::Int(-7),
            ae::stagecraft::ASField::Number(2.5),
            ae::stagecraft::ASField::Boolean(true),
            ae::stagecraft::ASField::String("a\0b", 3),
            ae::stagecraft::ASField::String("quoted"),
            ae::stagecraft::ASField::Value(*list.value),
            ae::stagecraft::ASField{},
        };
        ae::stagecraft::ASField odd[] = {ae::stagecraft::ASField::Int(1),
                                         ae::stagecraft::ASField::String("own"),
                                         ae::stagecraft::ASField::Int(3)};
        bool isOdd = args.GetCount() == 1 && args[0]->ToInt32() == 1;
        ae::stagecraft::ASShape shape =
            isOdd ? ae::stagecraft::ASShape{kOdd, 3} : ae::stagecraft::ASShape{kPlain, 7};
        Held made(context.NewShapedObject(shape, isOdd ? odd : plain));
        if (!made.value)
            return result.SetStatus(-1);
        result.SetValue(*made.value);
        result.SetStatus(0);
    }

    void makeShapedArray(ASContext& context, ASObject&, Args& args, ASResult& result) {
        static const char* const kNames[] = {"index", "label"};
        uint32_t count = args.GetCount() == 1 ? static_cast<uint32_t>(args[0]->ToInt32()) : 0;
        std::vector<ae::stagecraft::ASField> fields;
        std::vector<std::string> labels(count);
        for (uint32_t i = 0; i < count; ++i) {
            labels[i] = "item " + std::to_string(i);
            fields.push_back(ae::stagecraft::ASField::Int(static_cast<int32_t>(i)));
            fields.push_back(ae::stagecraft::ASField::String(labels[i].c_str()));
        }
        Held made(context.NewShapedArray({kNames, 2}, fields.data(), count));
        if (!made.value)
            return result.SetStatus(-1);
        result.SetValue(*made.value);
        result.SetStatus(0);
    }

    void startWork(ASContext& context, ASObject&, Args& args, ASResult& result) {
        if (args.GetCount() != 2 || !args[0]->AsObject() || !args[0]->AsObject()->IsFunction())
            return result.SetStatus(-3);
        if (m_Callback)
            return result.SetStatus(-2);
        m_Callback = args[0]->Clone();
        int delay = args[1]->ToInt32();
        m_ScriptThread = std::this_thread::get_id();
        m_Worker = std::thread([this, delay] {
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            m_WorkerThread = std::this_thread::get_id();
            m_Value = delay * 2;
            m_Done.store(true, std::memory_order_release);
        });
        context.RequestUpdates(*this);
        result.SetStatus(0);
    }

    void OnUpdate(ASContext& context) override {
        if (!m_Done.load(std::memory_order_acquire))
            return;
        context.StopUpdates(*this);
        m_Worker.join();
        m_Done.store(false, std::memory_order_relaxed);
        ASValue* callback = m_Callback;
        m_Callback = nullptr;
        Held held(callback);
        Held answer(context.NewInstance("Object"));
        ASObject* a = answer.value->AsObject();
        a->SetInt("value", m_Value);
        a->SetBoolean("workerThreadDiffers", m_WorkerThread != m_ScriptThread);
        a->SetBoolean("deliveredOnScriptThread", std::this_thread::get_id() == m_ScriptThread);
        const ASValue* argv[] = {answer.value};
        callback->AsObject()->Call(1, argv);
    }

    void throwNative(ASContext&, ASObject&, Args&, ASResult&) {
        throw std::runtime_error("native failure");
    }

    void quit(ASContext& context, ASObject&, Args&, ASResult& result) {
        context.Stop();
        result.SetStatus(0);
    }

    void version(ASContext& context, ASObject&, Args&, ASResult& result) {
        Held v(context.NewString("LMStageTest 1"));
        result.SetValue(*v.value);
        result.SetStatus(0);
    }

    void status(ASContext&, ASObject&, Args& args, ASResult& result) {
        result.SetStatus(args.GetCount() == 1 ? args[0]->ToInt32() : -3);
    }

private:
    ASValue* m_Callback = nullptr;
    std::thread m_Worker;
    std::atomic<bool> m_Done{false};
    std::thread::id m_ScriptThread;
    std::thread::id m_WorkerThread;
    int m_Value = 0;
};

class Descriptor : public ae::stagecraft::ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return "com.kestrel.test.LMStageTest"; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        using ae::stagecraft::AEHandler;
        const ASExtensionClass::Method table[] = {
            {"echo", 0, AEHandler(&LMStageTest::echo)},
            {"describe", 0, AEHandler(&LMStageTest::describe)},
            {"makeTree", 0, AEHandler(&LMStageTest::makeTree)},
            {"makeShaped", 0, AEHandler(&LMStageTest::makeShaped)},
            {"makeShapedArray", 0, AEHandler(&LMStageTest::makeShapedArray)},
            {"startWork", 0, AEHandler(&LMStageTest::startWork)},
            {"throwNative", 0, AEHandler(&LMStageTest::throwNative)},
            {"quit", 0, AEHandler(&LMStageTest::quit)},
            {"version", 1, AEHandler(&LMStageTest::version)},
            {"status", 1, AEHandler(&LMStageTest::status)},
        };
        for (const ASExtensionClass::Method& m : table)
            methods.Append(m);
    }
    bool FiresEvents() override { return false; }
    ASExtensionClass* ConstructInstance(ASContext&) override { return AE_NEW LMStageTest(); }
    void DestructInstance(ASExtensionClass* instance) override { AE_DELETE(instance); }
};

}  // namespace

ae::stagecraft::ASExtensionClassDescriptor& LMStageTestClassDescriptor() {
    static Descriptor descriptor;
    return descriptor;
}
