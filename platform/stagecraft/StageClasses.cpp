// Extension classes in the movie: constructors, method calls, native instances and their
// updates.
//
// Each registered class becomes a global constructor. `new X()` makes one native instance
// (ConstructInstance) whose pointer lives in a hidden property of the script object; a
// finalizer set on that object (not on the prototype, which would be finalized too) destructs
// it exactly once, at the latest when the heap is destroyed. Instance methods live on the
// prototype and work only on such objects.
//
// Static methods need an instance to be called on as well: each class gets one "class
// instance" per window set, constructed with ConstructInstance the first time one of its
// static methods is called and destructed when the window set is destroyed.
//
// Native frames and engine errors: a trampoline first does what can throw (argument
// conversion), then calls a C++ member that never lets an engine error escape (engine calls
// that may throw run protected), and only once that member has returned, with nothing left
// to destroy, does it throw the script error the member asked for.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <new>

#include "StageValue.h"
#include "StageWindowSet.h"
#include "Stagecraft.h"

namespace ae {
namespace stagecraft {

namespace {

// The handler's outcome. The movie gets the value given to SetValue if any, else the status
// given to SetStatus, else undefined. SetStatus is due exactly once: a handler that never
// calls it, or calls it again, is reported through ReportAssert and the first status stands.
class StageResult final : public ASResult {
public:
    StageResult(StageWindowSet& windowSet, duk_context* ctx, duk_idx_t slot)
        : m_WindowSet(windowSet), m_Ctx(ctx), m_Slot(slot) {}

    void SetValue(const ASValue& value) override {
        const auto& handle = static_cast<const StageValue&>(value);
        if (handle.Owner() != &m_WindowSet || !m_WindowSet.EngineUsable())
            return;
        if (m_WindowSet.Protected(PushBody, const_cast<StageValue*>(&handle), false)) {
            duk_replace(m_Ctx, m_Slot);
            m_HasValue = true;
        }
    }
    void SetStatus(int32_t status) override {
        if (m_StatusCount++ == 0)
            m_Status = status;
    }

    bool HasValue() const { return m_HasValue; }
    int StatusCount() const { return m_StatusCount; }
    int32_t Status() const { return m_Status; }

private:
    static duk_ret_t PushBody(duk_context* ctx, void* udata) {
        static_cast<const StageValue*>(udata)->Push(ctx);
        return 1;
    }

    StageWindowSet& m_WindowSet;
    duk_context* m_Ctx;
    duk_idx_t m_Slot;
    bool m_HasValue = false;
    int m_StatusCount = 0;
    int32_t m_Status = 0;
};

// Borrowed argument handles of one call: a few inline, more from the heap.
class CallHandles {
public:
    explicit CallHandles(StageWindowSet& windowSet) : m_WindowSet(windowSet) {}
    ~CallHandles() {
        for (uint32_t i = 0; i < m_Count; ++i)
            m_WindowSet.FreeValue(m_Handles[i]);
        if (m_Handles != m_Inline)
            delete[] m_Handles;
    }
    CallHandles(const CallHandles&) = delete;
    CallHandles& operator=(const CallHandles&) = delete;

    bool Reserve(uint32_t count) {
        if (count <= kInline)
            return true;
        m_Handles = new (std::nothrow) StageValue*[count];
        if (!m_Handles)
            m_Handles = m_Inline;
        return m_Handles != m_Inline;
    }
    void Add(StageValue* value) { m_Handles[m_Count++] = value; }

private:
    static constexpr uint32_t kInline = 8;
    StageWindowSet& m_WindowSet;
    StageValue* m_Inline[kInline];
    StageValue** m_Handles = m_Inline;
    uint32_t m_Count = 0;
};

}  // namespace

void StageWindowSet::SetThrow(ThrowKind kind, const char* format, ...) {
    m_Throw = kind;
    va_list args;
    va_start(args, format);
    std::vsnprintf(m_ThrowText, sizeof m_ThrowText, format, args);
    va_end(args);
}

void StageWindowSet::InstallClasses(duk_context* ctx) {
    for (uint32_t c = 0; c < m_Classes.size(); ++c) {
        ClassSlot& slot = m_Classes[c];
        duk_push_c_function(ctx, ConstructTrampoline, DUK_VARARGS);
        duk_set_magic(ctx, -1, static_cast<duk_int_t>(c));
        duk_idx_t ctor = duk_get_top_index(ctx);
        slot.constructor = duk_get_heapptr(ctx, ctor);
        // Kept alive here too: the movie may overwrite the global.
        duk_push_heapptr(ctx, m_KeepTable);
        duk_dup(ctx, ctor);
        duk_put_prop_index(ctx, -2, c);
        duk_pop(ctx);

        duk_push_object(ctx);
        duk_idx_t proto = duk_get_top_index(ctx);
        for (uint32_t m = 0; m < m_Methods.size(); ++m) {
            if (m_Methods[m].classIndex != c)
                continue;
            const ASExtensionClass::Method& method = *m_Methods[m].method;
            duk_push_c_function(ctx, MethodTrampoline, DUK_VARARGS);
            duk_set_magic(ctx, -1, static_cast<duk_int_t>(m));
            duk_put_prop_string(ctx, method.isStatic ? ctor : proto, method.name);
        }
        duk_push_string(ctx, "constructor");
        duk_dup(ctx, ctor);
        duk_def_prop(ctx, proto,
                     DUK_DEFPROP_HAVE_VALUE | DUK_DEFPROP_SET_WRITABLE |
                         DUK_DEFPROP_SET_CONFIGURABLE | DUK_DEFPROP_CLEAR_ENUMERABLE);
        duk_put_prop_string(ctx, ctor, "prototype");
        duk_put_global_string(ctx, slot.cls->shortName.c_str());
    }
}

duk_ret_t StageWindowSet::ConstructTrampoline(duk_context* ctx) {
    StageWindowSet* self = Of(ctx);
    auto classIndex = static_cast<uint32_t>(duk_get_current_magic(ctx));
    if (!duk_is_constructor_call(ctx))
        duk_error_raw(ctx, DUK_ERR_TYPE_ERROR, nullptr, 0, "%s is a constructor: call it with new",
                      self->m_Classes[classIndex].cls->shortName.c_str());
    duk_push_this(ctx);
    Instance* made = nullptr;
    if (self->Construct(ctx, classIndex, &made) != kThrowNone)
        duk_error_raw(ctx, DUK_ERR_ERROR, nullptr, 0, "%s", self->m_ThrowText);
    duk_idx_t object = duk_get_top_index(ctx);
    duk_push_pointer(ctx, made);
    duk_put_prop_string(ctx, object, STAGE_KEY_INSTANCE);
    duk_push_heapptr(ctx, self->m_Finalizer);
    duk_set_finalizer(ctx, object);
    return 0;
}

StageWindowSet::ThrowKind StageWindowSet::Construct(duk_context* ctx, uint32_t classIndex,
                                                    Instance** made) {
    m_Throw = kThrowNone;
    const StageClass& cls = *m_Classes[classIndex].cls;
    auto* instance = new (std::nothrow) Instance{classIndex, nullptr, nullptr, 0, false};
    if (!instance) {
        SetThrow(kThrowError, "%s: out of memory", cls.shortName.c_str());
        return m_Throw;
    }
    duk_context* saved = m_Ctx;
    m_Ctx = ctx;
    bool threw = false;
    try {
        instance->native = cls.descriptor->ConstructInstance(*this);
    } catch (...) {
        threw = true;
    }
    m_Ctx = saved;
    if (!instance->native) {
        delete instance;
        SetThrow(kThrowError,
                 threw ? "%s: construction failed with an exception" : "%s: construction refused",
                 cls.shortName.c_str());
        return m_Throw;
    }
    instance->object = duk_get_heapptr(ctx, -1);
    try {
        m_Instances.emplace(instance->native, instance);
    } catch (...) {
        DestructNative(classIndex, instance->native);
        delete instance;
        SetThrow(kThrowError, "%s: out of memory", cls.shortName.c_str());
        return m_Throw;
    }
    *made = instance;
    return kThrowNone;
}

duk_ret_t StageWindowSet::MethodTrampoline(duk_context* ctx) {
    StageWindowSet* self = Of(ctx);
    duk_idx_t argc = duk_get_top(ctx);
    // Lightweight functions and plain buffers become full objects, which handles expect.
    for (duk_idx_t i = 0; i < argc; ++i) {
        duk_int_t type = duk_get_type(ctx, i);
        if (type == DUK_TYPE_LIGHTFUNC || type == DUK_TYPE_BUFFER)
            duk_to_object(ctx, i);
    }
    duk_push_this(ctx);       // argc
    duk_push_undefined(ctx);  // argc + 1: the result
    ThrowKind kind =
        self->InvokeMethod(ctx, static_cast<uint32_t>(duk_get_current_magic(ctx)), argc);
    if (kind == kThrowTypeError)
        duk_error_raw(ctx, DUK_ERR_TYPE_ERROR, nullptr, 0, "%s", self->m_ThrowText);
    if (kind != kThrowNone)
        duk_error_raw(ctx, DUK_ERR_ERROR, nullptr, 0, "%s", self->m_ThrowText);
    return 1;
}

StageWindowSet::ThrowKind StageWindowSet::InvokeMethod(duk_context* ctx, uint32_t methodIndex,
                                                       duk_idx_t argc) {
    m_Throw = kThrowNone;
    const duk_idx_t thisIndex = argc;
    const duk_idx_t resultIndex = argc + 1;
    const MethodSlot& entry = m_Methods[methodIndex];
    ClassSlot& slot = m_Classes[entry.classIndex];
    const ASExtensionClass::Method& method = *entry.method;
    const char* className = slot.cls->shortName.c_str();

    ASExtensionClass* native = nullptr;
    Instance* instance = nullptr;
    if (!method.isStatic) {
        if (duk_is_object(ctx, thisIndex)) {
            duk_get_prop_string(ctx, thisIndex, STAGE_KEY_INSTANCE);
            instance = static_cast<Instance*>(duk_get_pointer(ctx, -1));
            duk_pop(ctx);
        }
        // The hidden property is only ever read off the object it was put on: an object
        // inheriting from an instance is not one.
        if (!instance || instance->object != duk_get_heapptr(ctx, thisIndex) ||
            instance->classIndex != entry.classIndex || instance->finalized) {
            SetThrow(kThrowTypeError, "%s.%s called on an object that is not a %s", className,
                     method.name, className);
            return m_Throw;
        }
        native = instance->native;
    } else {
        native = ClassInstance(slot);
        if (!native) {
            SetThrow(kThrowError, "%s.%s: the class instance cannot be constructed", className,
                     method.name);
            return m_Throw;
        }
        // A static method called without an object is called on its constructor.
        if (!duk_is_object(ctx, thisIndex)) {
            duk_push_heapptr(ctx, slot.constructor);
            duk_replace(ctx, thisIndex);
        }
    }

    bool threw = false;
    int statusCount = 0;
    {
        CallHandles handles(*this);
        AEArray<ASValue*> args;
        StageValue* thisValue = nullptr;
        if (!handles.Reserve(static_cast<uint32_t>(argc) + 1) ||
            !args.Reserve(static_cast<uint32_t>(argc)) ||
            !(thisValue = BorrowValue(ctx, thisIndex))) {
            SetThrow(kThrowError, "%s.%s: out of memory", className, method.name);
            return m_Throw;
        }
        handles.Add(thisValue);
        for (duk_idx_t i = 0; i < argc; ++i) {
            StageValue* arg = BorrowValue(ctx, i);
            if (!arg) {
                SetThrow(kThrowError, "%s.%s: out of memory", className, method.name);
                return m_Throw;
            }
            handles.Add(arg);
            args.Append(arg);
        }
        StageResult result(*this, ctx, resultIndex);
        duk_context* saved = m_Ctx;
        m_Ctx = ctx;
        if (instance)
            ++instance->busy;
        try {
            (native->*method.handler)(*this, *thisValue, args, result);
        } catch (...) {
            threw = true;
        }
        if (instance && --instance->busy == 0 && instance->finalized)
            DestructInstance(instance);
        m_Ctx = saved;
        statusCount = result.StatusCount();
        if (!threw) {
            if (result.HasValue())
                duk_dup(ctx, resultIndex);
            else if (statusCount > 0)
                duk_push_int(ctx, result.Status());
            else
                duk_push_undefined(ctx);
        }
    }
    if (threw) {
        SetThrow(kThrowError, "%s.%s failed with a native exception", className, method.name);
        return m_Throw;
    }
    if (statusCount != 1)
        ReportAssert(statusCount == 0 ? "a method handler calls ASResult::SetStatus"
                                      : "a method handler calls ASResult::SetStatus only once",
                     method.name, 0);
    return kThrowNone;
}

ASExtensionClass* StageWindowSet::ClassInstance(ClassSlot& slot) {
    if (slot.classInstance || !EngineUsable())
        return slot.classInstance;
    try {
        slot.classInstance = slot.cls->descriptor->ConstructInstance(*this);
    } catch (...) {
        slot.classInstance = nullptr;
    }
    return slot.classInstance;
}

duk_ret_t StageWindowSet::InstanceFinalizer(duk_context* ctx) {
    duk_get_prop_string(ctx, 0, STAGE_KEY_INSTANCE);
    auto* instance = static_cast<Instance*>(duk_get_pointer(ctx, -1));
    duk_pop(ctx);
    // The engine also calls the finalizer for objects that inherit from an instance; they
    // see its hidden property through the prototype, and are no instance.
    if (!instance || instance->object != duk_get_heapptr(ctx, 0))
        return 0;
    // Gone from the object first: should the object come back to life, it is no instance.
    duk_del_prop_string(ctx, 0, STAGE_KEY_INSTANCE);
    Of(ctx)->FinalizeInstance(instance);
    return 0;
}

void StageWindowSet::FinalizeInstance(Instance* instance) {
    instance->finalized = true;
    // An instance whose handler or OnUpdate is running goes when that returns.
    if (instance->busy == 0)
        DestructInstance(instance);
}

void StageWindowSet::DestructInstance(Instance* instance) {
    m_Instances.erase(instance->native);
    m_Updates.erase(std::remove(m_Updates.begin(), m_Updates.end(), instance->native),
                    m_Updates.end());
    DestructNative(instance->classIndex, instance->native);
    delete instance;
}

void StageWindowSet::DestructNative(uint32_t classIndex, ASExtensionClass* native) {
    try {
        m_Classes[classIndex].cls->descriptor->DestructInstance(native);
    } catch (...) {
        ReportAssert("DestructInstance does not throw", m_Classes[classIndex].cls->classId.c_str(),
                     0);
    }
}

void StageWindowSet::DestroyClassInstances() {
    for (uint32_t c = 0; c < m_Classes.size(); ++c) {
        ASExtensionClass* native = m_Classes[c].classInstance;
        if (!native)
            continue;
        m_Classes[c].classInstance = nullptr;
        m_Updates.erase(std::remove(m_Updates.begin(), m_Updates.end(), native), m_Updates.end());
        DestructNative(c, native);
    }
}

// --- updates ---

void StageWindowSet::RequestUpdates(ASExtensionClass& instance) {
    if (std::find(m_Updates.begin(), m_Updates.end(), &instance) != m_Updates.end())
        return;
    try {
        m_Updates.push_back(&instance);
    } catch (...) {
        ReportAssert("RequestUpdates has memory", __FILE__, __LINE__);
    }
}

void StageWindowSet::StopUpdates(ASExtensionClass& instance) {
    m_Updates.erase(std::remove(m_Updates.begin(), m_Updates.end(), &instance), m_Updates.end());
}

void StageWindowSet::RunUpdates() {
    if (m_Updates.empty())
        return;
    // Handlers may start and stop updates, or destroy instances, while the turn goes on: walk
    // a copy and skip whatever has left the list meanwhile.
    std::vector<ASExtensionClass*> turn(m_Updates);
    for (ASExtensionClass* native : turn) {
        if (Ended())
            return;
        if (std::find(m_Updates.begin(), m_Updates.end(), native) == m_Updates.end())
            continue;
        auto found = m_Instances.find(native);
        Instance* instance = found == m_Instances.end() ? nullptr : found->second;
        if (instance)
            ++instance->busy;
        try {
            native->OnUpdate(*this);
        } catch (...) {
            ReportAssert("OnUpdate does not throw", __FILE__, __LINE__);
        }
        if (instance && --instance->busy == 0 && instance->finalized)
            DestructInstance(instance);
    }
}

ASExtensionClass* StageWindowSet::GetNativeInstance(const ASValue& value, const char* classID) {
    // Every value handle of this kernel is a StageValue.
    const auto& handle = static_cast<const StageValue&>(value);
    if (!classID || handle.Owner() != this || !handle.IsLiveObject())
        return nullptr;
    // Few instances live at a time: a walk is cheaper than another index to keep in step.
    for (const auto& entry : m_Instances) {
        const Instance& instance = *entry.second;
        if (instance.object == handle.HeapPtr() && !instance.finalized &&
            m_Classes[instance.classIndex].cls->classId == classID)
            return instance.native;
    }
    return nullptr;
}

}  // namespace stagecraft
}  // namespace ae
