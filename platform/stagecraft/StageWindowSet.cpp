// The window set's heap: set-up and tear-down, the globals the movie sees, and the loop that
// runs the movie (keys, timers, updates) until it ends.
#include "StageWindowSet.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "StageKernel.h"
#include "Stagecraft.h"

namespace ae {
namespace stagecraft {

namespace {

constexpr auto kTurnWait = std::chrono::milliseconds(10);
// An interval shorter than this would keep the loop from ever sleeping.
constexpr auto kMinInterval = std::chrono::milliseconds(1);

// A fatal engine error leaves the heap unusable; there is no way on but out.
void FatalHandler(void* udata, const char* message) {
    auto* windowSet = static_cast<StageWindowSet*>(udata);
    if (windowSet)
        windowSet->ReportAssert(message ? message : "fatal script engine error", "duktape", 0);
    else
        std::fprintf(stderr, "stage: fatal script engine error: %s\n", message ? message : "?");
    std::abort();
}

struct KeyDispatch {
    uint32_t code;
    bool press;
};

duk_ret_t DispatchKeyBody(duk_context* ctx, void* udata) {
    auto* key = static_cast<KeyDispatch*>(udata);
    duk_get_global_string(ctx, key->press ? "onKeyDown" : "onKeyUp");
    if (!duk_is_callable(ctx, -1))
        return 0;
    duk_push_uint(ctx, key->code);
    duk_call(ctx, 1);
    return 0;
}

struct TimerFire {
    void* table;
    uint32_t id;
    bool oneShot;
};

duk_ret_t FireTimerBody(duk_context* ctx, void* udata) {
    auto* fire = static_cast<TimerFire*>(udata);
    duk_push_heapptr(ctx, fire->table);
    duk_get_prop_index(ctx, -1, fire->id);  // [table entry]
    if (fire->oneShot)
        duk_del_prop_index(ctx, -2, fire->id);
    if (!duk_is_object(ctx, -1))
        return 0;
    duk_uarridx_t count = static_cast<duk_uarridx_t>(duk_get_length(ctx, -1));
    if (count == 0)
        return 0;
    duk_require_stack(ctx, static_cast<duk_idx_t>(count) + 2);
    duk_idx_t entry = duk_get_top_index(ctx);
    duk_get_prop_index(ctx, entry, 0);
    duk_push_undefined(ctx);
    for (duk_uarridx_t i = 1; i < count; ++i)
        duk_get_prop_index(ctx, entry, i);
    duk_call_method(ctx, static_cast<duk_idx_t>(count - 1));
    return 0;
}

duk_ret_t RunMovieBody(duk_context* ctx, void* udata) {
    duk_push_heapptr(ctx, udata);  // the keep table
    duk_get_prop_string(ctx, -1, "movie");
    duk_del_prop_string(ctx, -2, "movie");
    duk_call(ctx, 0);
    return 0;
}

struct StoreMovie {
    void* keep;
};

duk_ret_t StoreMovieBody(duk_context* ctx, void* udata) {
    duk_push_heapptr(ctx, static_cast<StoreMovie*>(udata)->keep);
    duk_dup(ctx, -2);
    duk_put_prop_string(ctx, -2, "movie");
    return 0;
}

// "<file>:<line>: <error>" for errors that know where they come from, otherwise
// "<movie>: uncaught <value>".
duk_ret_t FormatErrorBody(duk_context* ctx, void* udata) {
    const char* movie = static_cast<const char*>(udata);
    duk_idx_t err = duk_normalize_index(ctx, -1);
    duk_dup(ctx, err);
    const char* text = duk_safe_to_string(ctx, -1);
    if (duk_is_object(ctx, err)) {
        duk_get_prop_string(ctx, err, "fileName");
        duk_get_prop_string(ctx, err, "lineNumber");
        if (duk_is_string(ctx, -2) && duk_is_number(ctx, -1)) {
            duk_push_sprintf(ctx, "%s:%ld: %s", duk_get_string(ctx, -2),
                             static_cast<long>(duk_get_int(ctx, -1)), text);
            return 1;
        }
    }
    duk_push_sprintf(ctx, "%s: uncaught %s", movie, text);
    return 1;
}

}  // namespace

StageWindowSet::StageWindowSet(Stagecraft& stage, StageOptions options,
                               std::vector<const StageClass*> classes)
    : m_Stage(stage), m_Options(std::move(options)) {
    m_Flashvars = DecodeFlashvars(m_Options.flashvars);
    m_Classes.reserve(classes.size());
    for (const StageClass* cls : classes) {
        ClassSlot slot;
        slot.cls = cls;
        m_Classes.push_back(slot);
    }
    // Method functions find their entry by their magic number, a 16-bit value.
    for (uint32_t c = 0; c < m_Classes.size(); ++c) {
        const auto& methods = m_Classes[c].cls->methods;
        for (uint32_t m = 0; m < methods.GetCount(); ++m) {
            const ASExtensionClass::Method& method = methods.GetData()[m];
            if (!method.name || !method.handler)
                continue;
            if (m_Methods.size() >= 32767) {
                ReportAssert("at most 32767 native methods per window set", __FILE__, __LINE__);
                break;
            }
            m_Methods.push_back(MethodSlot{c, &method});
        }
    }
}

StageWindowSet::~StageWindowSet() {
    CloseHeap();
    // Handles that outlive the stage can still be released; nothing else works on them.
    for (StageValue* value = m_LiveValues; value;) {
        StageValue* next = value->m_Next;
        value->m_Owner = nullptr;
        value->m_Prev = value->m_Next = nullptr;
        value = next;
    }
    m_LiveValues = nullptr;
    while (m_FreeValues) {
        StageValue* next = m_FreeValues->m_Next;
        delete m_FreeValues;
        m_FreeValues = next;
    }
}

StageWindowSet* StageWindowSet::Of(duk_context* ctx) {
    duk_memory_functions functions;
    duk_get_memory_functions(ctx, &functions);
    return static_cast<StageWindowSet*>(functions.udata);
}

void StageWindowSet::ReportAssert(const char* expr, const char* file, int line) {
    m_Stage.Kernel().ReportAssert(expr, file, line);
}

AEError StageWindowSet::Open(const std::string& moviePath, const std::string& source) {
    m_MoviePath = moviePath;
    m_MainCtx = duk_create_heap(nullptr, nullptr, nullptr, this, FatalHandler);
    if (!m_MainCtx) {
        std::fprintf(stderr, "stage: cannot create the script heap for %s\n", moviePath.c_str());
        return AEError_NoMemory;
    }
    m_Ctx = m_MainCtx;

    if (duk_safe_call(m_Ctx, InstallGlobalsBody, this, 0, 1) != DUK_EXEC_SUCCESS) {
        std::fprintf(stderr, "stage: cannot set up the globals of %s: %s\n", moviePath.c_str(),
                     duk_safe_to_string(m_Ctx, -1));
        CloseHeap();
        return AEError_Generic;
    }
    duk_pop(m_Ctx);

    duk_push_lstring(m_Ctx, moviePath.data(), moviePath.size());
    if (duk_pcompile_lstring_filename(m_Ctx, 0, source.data(), source.size()) != 0) {
        std::fprintf(stderr, "stage: movie %s does not compile: %s\n", moviePath.c_str(),
                     duk_safe_to_string(m_Ctx, -1));
        CloseHeap();
        return AEError_Generic;
    }
    StoreMovie store{m_KeepTable};
    if (duk_safe_call(m_Ctx, StoreMovieBody, &store, 1, 1) != DUK_EXEC_SUCCESS) {
        std::fprintf(stderr, "stage: cannot keep the movie %s\n", moviePath.c_str());
        CloseHeap();
        return AEError_NoMemory;
    }
    duk_pop(m_Ctx);
    return AEError_OK;
}

duk_ret_t StageWindowSet::InstallGlobalsBody(duk_context* ctx, void* udata) {
    auto* self = static_cast<StageWindowSet*>(udata);

    // The handle table (objects held by value handles, by slot), the timer table (callback
    // and arguments, by timer id) and the keep table (constructors, the finalizer, the
    // compiled movie). Tables without a prototype: nothing the movie does to Array.prototype
    // reaches them.
    duk_push_heap_stash(ctx);
    duk_push_bare_array(ctx);
    self->m_HandleTable = duk_get_heapptr(ctx, -1);
    duk_put_prop_string(ctx, -2, STAGE_KEY_HANDLES);
    duk_push_bare_array(ctx);
    self->m_TimerTable = duk_get_heapptr(ctx, -1);
    duk_put_prop_string(ctx, -2, STAGE_KEY_TIMERS);
    duk_push_bare_object(ctx);
    self->m_KeepTable = duk_get_heapptr(ctx, -1);
    duk_put_prop_string(ctx, -2, STAGE_KEY_KEEP);
    duk_pop(ctx);

    duk_push_heapptr(ctx, self->m_KeepTable);
    duk_push_c_function(ctx, InstanceFinalizer, 2);
    self->m_Finalizer = duk_get_heapptr(ctx, -1);
    duk_put_prop_string(ctx, -2, "finalizer");
    duk_pop(ctx);

    // The built-in constructors, kept in the keep table: the movie may replace the globals.
    duk_push_heapptr(ctx, self->m_KeepTable);
    duk_get_global_string(ctx, "Object");
    self->m_BuiltinObject = duk_get_heapptr(ctx, -1);
    duk_put_prop_string(ctx, -2, "Object");
    duk_get_global_string(ctx, "Array");
    self->m_BuiltinArray = duk_get_heapptr(ctx, -1);
    duk_put_prop_string(ctx, -2, "Array");
    duk_pop(ctx);

    self->InstallClasses(ctx);

    // flashvars: decoded before the heap was made (DecodeFlashvars allocates and may throw,
    // which must not happen in here), one string property per variable.
    duk_push_object(ctx);
    for (size_t i = 0; i < self->m_Flashvars.size(); ++i) {
        const auto& var = self->m_Flashvars[i];
        duk_push_lstring(ctx, var.second.data(), var.second.size());
        duk_put_prop_lstring(ctx, -2, var.first.data(), var.first.size());
    }
    duk_put_global_string(ctx, "flashvars");

    duk_push_c_function(ctx, TraceNative, 1);
    duk_put_global_string(ctx, "trace");
    duk_push_c_function(ctx, SetTimeoutNative, DUK_VARARGS);
    duk_set_magic(ctx, -1, 0);
    duk_put_global_string(ctx, "setTimeout");
    duk_push_c_function(ctx, SetTimeoutNative, DUK_VARARGS);
    duk_set_magic(ctx, -1, 1);
    duk_put_global_string(ctx, "setInterval");
    duk_push_c_function(ctx, ClearTimerNative, 1);
    duk_put_global_string(ctx, "clearTimeout");
    duk_push_c_function(ctx, ClearTimerNative, 1);
    duk_put_global_string(ctx, "clearInterval");
    if (self->m_Options.hooks) {
        duk_push_c_function(ctx, QuitNative, 1);
        duk_put_global_string(ctx, "lmstageQuit");
        duk_push_c_function(ctx, LoadNative, 1);
        duk_put_global_string(ctx, "lmstageLoad");
    }
    return 0;
}

void StageWindowSet::CloseHeap() {
    if (!m_MainCtx)
        return;
    DestroyClassInstances();
    // Destroying the heap runs the finalizers of the instances still around; their
    // DestructInstance may release handles, which then leave the dying heap alone.
    m_HeapDying = true;
    duk_context* heap = m_MainCtx;
    duk_destroy_heap(heap);
    m_MainCtx = m_Ctx = nullptr;
    // Instances whose script object never got its finalizer.
    while (!m_Instances.empty())
        DestructInstance(m_Instances.begin()->second);
    m_Updates.clear();
    m_Timers.clear();
}

AEError StageWindowSet::Run() {
    if (!m_MainCtx || m_HasRun) {
        std::fprintf(stderr, "stage: a window set runs once\n");
        return AEError_Usage;
    }
    m_HasRun = true;
    RunTopLevel();
    while (!Ended()) {
        DrainKeys();
        if (Ended())
            break;
        FireTimers();
        if (Ended())
            break;
        RunUpdates();
        if (Ended())
            break;
        WaitForWork();
    }
    {
        std::lock_guard<std::mutex> lock(m_Stage.PostMutex());
        m_Stage.DetachLocked(this);
    }
    return m_End == kASRunScriptError ? AEError_Generic : AEError_OK;
}

bool StageWindowSet::RunTopLevel() {
    if (!Protected(RunMovieBody, m_KeepTable, true))
        return false;
    duk_pop(m_Ctx);
    return true;
}

ASRunEnd StageWindowSet::GetRunEnd(int32_t* exitCode) const {
    if (exitCode)
        *exitCode = m_ExitCode;
    return m_End;
}

void StageWindowSet::End(ASRunEnd end, int32_t exitCode) {
    if (m_End != kASRunNotRun)
        return;  // the first end is the one reported
    m_End = end;
    m_ExitCode = exitCode;
}

void StageWindowSet::Stop() {
    End(kASRunStopped, 0);
}

bool StageWindowSet::Protected(duk_safe_call_function body, void* udata, bool report) {
    duk_context* ctx = m_Ctx;
    if (duk_safe_call(ctx, body, udata, 0, 1) == DUK_EXEC_SUCCESS)
        return true;
    if (report)
        ReportError(ctx);
    else
        duk_pop(ctx);
    return false;
}

void StageWindowSet::ReportError(duk_context* ctx) {
    if (duk_safe_call(ctx, FormatErrorBody, const_cast<char*>(m_MoviePath.c_str()), 1, 1) ==
        DUK_EXEC_SUCCESS)
        std::fprintf(stderr, "%s\n", duk_get_string(ctx, -1));
    else
        std::fprintf(stderr, "%s: uncaught error\n", m_MoviePath.c_str());
    std::fflush(stderr);
    duk_pop(ctx);
    End(kASRunScriptError, 0);
}

// --- keys ---

void StageWindowSet::SetAcceptsKeysLocked(bool accepts) {
    m_AcceptsKeys = accepts;
    if (!accepts)
        m_Keys.clear();
}

void StageWindowSet::QueueKeyLocked(uint32_t code, bool press) {
    try {
        m_Keys.push_back(KeyEvent{code, press});
    } catch (...) {
        return;  // out of memory: the key is lost
    }
    m_Wake.notify_one();
}

void StageWindowSet::DrainKeys() {
    std::vector<KeyEvent> keys;
    {
        std::lock_guard<std::mutex> lock(m_Stage.PostMutex());
        keys.swap(m_Keys);
    }
    for (const KeyEvent& key : keys) {
        if (Ended())
            return;
        KeyDispatch dispatch{key.code, key.press};
        if (Protected(DispatchKeyBody, &dispatch, true))
            duk_pop(m_Ctx);
        // The quit key reaches the movie first, then ends it.
        if (key.press && key.code == kASQuitKeyCode)
            End(kASRunQuitKey, 0);
    }
}

void StageWindowSet::WaitForWork() {
    Clock::time_point deadline = Clock::now() + kTurnWait;
    for (const auto& timer : m_Timers)
        deadline = std::min(deadline, timer.second.due);
    std::unique_lock<std::mutex> lock(m_Stage.PostMutex());
    m_Wake.wait_until(lock, deadline, [this] { return !m_Keys.empty(); });
}

// --- timers ---

uint32_t StageWindowSet::AddTimer(double delayMs, bool repeat) {
    if (!(delayMs > 0))
        delayMs = 0;  // also NaN
    delayMs = std::min(delayMs, 1e12);
    auto delay = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double, std::milli>(delayMs));
    Timer timer{Clock::now() + delay, std::max<Clock::duration>(delay, kMinInterval), repeat};
    uint32_t id = m_NextTimerId;
    if (++m_NextTimerId == 0)
        m_NextTimerId = 1;
    try {
        m_Timers[id] = timer;
    } catch (...) {
        return 0;
    }
    return id;
}

void StageWindowSet::FireTimers() {
    if (m_Timers.empty())
        return;
    Clock::time_point now = Clock::now();
    std::vector<std::pair<Clock::time_point, uint32_t>> due;
    for (const auto& timer : m_Timers) {
        if (timer.second.due <= now)
            due.emplace_back(timer.second.due, timer.first);
    }
    std::sort(due.begin(), due.end());
    for (const auto& entry : due) {
        if (Ended())
            return;
        auto it = m_Timers.find(entry.second);
        if (it == m_Timers.end())
            continue;  // cleared by a callback fired before it
        TimerFire fire{m_TimerTable, entry.second, !it->second.repeat};
        if (fire.oneShot)
            m_Timers.erase(it);
        else
            it->second.due = now + it->second.interval;
        if (Protected(FireTimerBody, &fire, true))
            duk_pop(m_Ctx);
    }
}

duk_ret_t StageWindowSet::SetTimeoutNative(duk_context* ctx) {
    bool repeat = duk_get_current_magic(ctx) == 1;
    duk_idx_t argc = duk_get_top(ctx);
    if (argc < 1 || !duk_is_callable(ctx, 0))
        duk_error_raw(ctx, DUK_ERR_TYPE_ERROR, nullptr, 0, "%s: the callback is not a function",
                      repeat ? "setInterval" : "setTimeout");
    double delay = argc >= 2 ? duk_to_number(ctx, 1) : 0;
    StageWindowSet* self = Of(ctx);
    uint32_t id = self->AddTimer(delay, repeat);
    if (id == 0)
        duk_error_raw(ctx, DUK_ERR_RANGE_ERROR, nullptr, 0, "out of memory for a timer");

    // [callback, extra arguments...] under the timer's id.
    duk_push_heapptr(ctx, self->m_TimerTable);
    duk_push_bare_array(ctx);
    duk_dup(ctx, 0);
    duk_put_prop_index(ctx, -2, 0);
    for (duk_idx_t i = 2; i < argc; ++i) {
        duk_dup(ctx, i);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i - 1));
    }
    duk_put_prop_index(ctx, -2, id);
    duk_push_uint(ctx, id);
    return 1;
}

duk_ret_t StageWindowSet::ClearTimerNative(duk_context* ctx) {
    double id = duk_get_number_default(ctx, 0, 0);
    if (!(id >= 1 && id <= 4294967295.0) || id != std::floor(id))
        return 0;
    StageWindowSet* self = Of(ctx);
    auto key = static_cast<uint32_t>(id);
    self->m_Timers.erase(key);
    duk_push_heapptr(ctx, self->m_TimerTable);
    duk_del_prop_index(ctx, -1, key);
    return 0;
}

// --- other globals ---

duk_ret_t StageWindowSet::TraceNative(duk_context* ctx) {
    if (!Of(ctx)->m_Options.asTrace)
        return 0;
    duk_size_t size = 0;
    const char* text = duk_to_lstring(ctx, 0, &size);
    std::fwrite(text, 1, size, stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
    return 0;
}

duk_ret_t StageWindowSet::QuitNative(duk_context* ctx) {
    int32_t code = duk_to_int32(ctx, 0);
    Of(ctx)->End(kASRunExitCall, code);
    return 0;
}

// lmstageLoad(name): runs the script file `name` (relative to the movie's folder unless it
// starts with "/") as global code, so test movies can share a library. The path and the text
// live in a member while the engine copies them: a script error raised from here unwinds
// without running destructors, so no local may own memory at that point.
duk_ret_t StageWindowSet::LoadNative(duk_context* ctx) {
    StageWindowSet* self = Of(ctx);
    const char* name = duk_require_string(ctx, 0);
    int error = 0;
    try {
        std::string path = name;
        if (name[0] != '/') {
            size_t slash = self->m_MoviePath.rfind('/');
            path = (slash == std::string::npos ? std::string(".")
                                               : self->m_MoviePath.substr(0, slash)) +
                   "/" + name;
        }
        std::string source;
        error = ReadWholeFile(path, source);
        self->m_LoadScratch = path;
        self->m_LoadScratch.push_back('\0');
        self->m_LoadScratch += source;
    } catch (...) {
        error = ENOMEM;
    }
    if (error) {
        self->m_LoadScratch.clear();
        return duk_error(ctx, DUK_ERR_ERROR, "lmstageLoad: cannot read %s: %s", name,
                         std::strerror(error));
    }
    const char* text = self->m_LoadScratch.c_str();
    const size_t pathSize = std::strlen(text);
    duk_push_lstring(ctx, text + pathSize + 1, self->m_LoadScratch.size() - pathSize - 1);
    duk_push_lstring(ctx, text, pathSize);
    self->m_LoadScratch.clear();
    if (duk_pcompile(ctx, 0) != 0)
        return duk_throw(ctx);
    duk_call(ctx, 0);
    return 0;
}

}  // namespace stagecraft
}  // namespace ae
