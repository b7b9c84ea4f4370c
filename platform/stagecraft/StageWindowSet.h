// One window set: a script heap running one movie, with its timers, key queue, extension
// class bindings and value handles. It is also the movie's ASContext.
#ifndef STAGECRAFT_STAGEWINDOWSET_H
#define STAGECRAFT_STAGEWINDOWSET_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "StageArgs.h"
#include "StageEngine.h"
#include "StageValue.h"
#include "ae/IStagecraft.h"

namespace ae {
namespace stagecraft {

class Stagecraft;
struct StageClass;

class StageWindowSet final : public ASContext {
public:
    using Clock = std::chrono::steady_clock;

    StageWindowSet(Stagecraft& stage, StageOptions options, std::vector<const StageClass*> classes);
    ~StageWindowSet();
    StageWindowSet(const StageWindowSet&) = delete;
    StageWindowSet& operator=(const StageWindowSet&) = delete;

    // Makes the heap, installs the globals and compiles the movie. On failure the message has
    // been printed and the heap is gone.
    AEError Open(const std::string& moviePath, const std::string& source);
    AEError Run();
    ASRunEnd GetRunEnd(int32_t* exitCode) const;

    // Key posting, with the stage's post mutex held.
    bool AcceptsKeysLocked() const { return m_AcceptsKeys; }
    void SetAcceptsKeysLocked(bool accepts);
    void QueueKeyLocked(uint32_t code, bool press);

    // ASContext
    ASValue* NewUndefined() override;
    ASValue* NewNull() override;
    ASValue* NewBoolean(bool value) override;
    ASValue* NewNumber(double value) override;
    ASValue* NewInt(int32_t value) override;
    ASValue* NewString(const char* text) override;
    ASValue* NewString(const char* bytes, size_t size) override;
    ASObject* NewInstance(const char* className, uint32_t argc,
                          const ASValue* const* argv) override;
    ASObject* NewDate(int32_t year, int32_t month0, int32_t day, int32_t hour, int32_t minute,
                      int32_t second) override;
    ASObject* NewShapedObject(const ASShape& shape, const ASField* fields) override;
    ASObject* NewShapedArray(const ASShape& shape, const ASField* fields, uint32_t count) override;
    ASValue* NewTree(const ASField& root) override;
    ASExtensionClass* GetNativeInstance(const ASValue& value, const char* classID) override;
    void RequestUpdates(ASExtensionClass& instance) override;
    void StopUpdates(ASExtensionClass& instance) override;
    void Stop() override;

    // --- used by the handles and the native trampolines ---

    // The context script calls go to: the main one, or the one of the native call in progress.
    duk_context* Ctx() const { return m_Ctx; }
    bool EngineUsable() const { return m_Ctx && !m_HeapDying; }
    static StageWindowSet* Of(duk_context* ctx);

    // Handles.
    StageValue* AllocValue();
    void FreeValue(StageValue* value);
    uint32_t ReserveSlot();
    void UnreserveSlot(uint32_t slot);
    void ForgetSlot(uint32_t slot);  // drops the object in the handle table
    // A handle for the value at `idx`; borrowed handles skip the handle table.
    StageValue* BorrowValue(duk_context* ctx, duk_idx_t idx);
    // A handle for the value on top of the stack (popped), using `slot` when it is an object
    // that the protected body has already put in the handle table.
    StageValue* AdoptTop(duk_context* ctx, uint32_t slot, bool stashed);
    void* HandleTable() const { return m_HandleTable; }
    // The engine's own Object and Array constructors (held in the keep table).
    void* BuiltinObject() const { return m_BuiltinObject; }
    void* BuiltinArray() const { return m_BuiltinArray; }

    // Runs `body` protected on Ctx(); on success its one result is left on top. On a throw the
    // error is reported (printed, the run ends with kASRunScriptError) when `report`, and
    // popped; false then.
    bool Protected(duk_safe_call_function body, void* udata, bool report);
    // Prints an uncaught error (on top of `ctx`, popped) and ends the run with a script error.
    void ReportError(duk_context* ctx);
    void End(ASRunEnd end, int32_t exitCode);
    bool Ended() const { return m_End != kASRunNotRun; }
    void ReportAssert(const char* expr, const char* file, int line);

    // Native trampolines (StageClasses.cpp).
    static duk_ret_t ConstructTrampoline(duk_context* ctx);
    static duk_ret_t MethodTrampoline(duk_context* ctx);
    static duk_ret_t InstanceFinalizer(duk_context* ctx);

private:
    struct ClassSlot {
        const StageClass* cls = nullptr;
        void* constructor = nullptr;                // heap pointer, kept alive by the keep table
        ASExtensionClass* classInstance = nullptr;  // what static handlers get
        bool classInstanceFailed = false;
    };
    struct MethodSlot {
        uint32_t classIndex;
        const ASExtensionClass::Method* method;
    };
    // A native instance made by `new X()`.
    struct Instance {
        uint32_t classIndex;
        ASExtensionClass* native;
        void* object;  // its script object (identity only)
        int busy;      // handler or OnUpdate of it in progress
        bool finalized;
    };
    struct Timer {
        Clock::time_point due;
        Clock::duration interval;
        bool repeat;
    };
    struct KeyEvent {
        uint32_t code;
        bool press;
    };
    enum ThrowKind { kThrowNone, kThrowError, kThrowTypeError };

    // Heap set-up (StageWindowSet.cpp).
    static duk_ret_t InstallGlobalsBody(duk_context* ctx, void* udata);
    static duk_ret_t CompileBody(duk_context* ctx, void* udata);
    void InstallClasses(duk_context* ctx);  // inside InstallGlobalsBody
    void CloseHeap();

    // Loop.
    bool RunTopLevel();
    void DrainKeys();
    void FireTimers();
    void RunUpdates();
    void WaitForWork();

    // Globals.
    static duk_ret_t TraceNative(duk_context* ctx);
    static duk_ret_t SetTimeoutNative(duk_context* ctx);
    static duk_ret_t ClearTimerNative(duk_context* ctx);
    static duk_ret_t QuitNative(duk_context* ctx);
    static duk_ret_t LoadNative(duk_context* ctx);
    uint32_t AddTimer(double delayMs, bool repeat);  // 0 when memory runs out

    // Extension classes (StageClasses.cpp).
    ThrowKind Construct(duk_context* ctx, uint32_t classIndex, Instance** made);
    ThrowKind InvokeMethod(duk_context* ctx, uint32_t methodIndex, duk_idx_t argc);
    ASExtensionClass* ClassInstance(ClassSlot& slot);
    void FinalizeInstance(Instance* instance);
    void DestructInstance(Instance* instance);
    void DestructNative(uint32_t classIndex, ASExtensionClass* native);
    void DestroyClassInstances();
    void SetThrow(ThrowKind kind, const char* format, ...) __attribute__((format(printf, 3, 4)));

    Stagecraft& m_Stage;
    StageOptions m_Options;
    std::string m_MoviePath;
    std::string m_LoadScratch;  // a loaded script's path and text while the engine takes them
    std::vector<std::pair<std::string, std::string>> m_Flashvars;
    std::vector<ClassSlot> m_Classes;
    std::vector<MethodSlot> m_Methods;

    duk_context* m_MainCtx = nullptr;
    duk_context* m_Ctx = nullptr;
    bool m_HeapDying = false;
    void* m_HandleTable = nullptr;
    void* m_TimerTable = nullptr;
    void* m_KeepTable = nullptr;
    void* m_Finalizer = nullptr;
    void* m_BuiltinObject = nullptr;
    void* m_BuiltinArray = nullptr;
    bool m_HasRun = false;

    // Handles: the live registry (doubly linked), released ones kept for reuse, and the
    // handle-table slots that are free.
    StageValue* m_LiveValues = nullptr;
    StageValue* m_FreeValues = nullptr;
    uint32_t m_FreeCount = 0;
    static constexpr uint32_t kMaxFreeValues = 256;
    std::vector<uint32_t> m_FreeSlots;
    uint32_t m_NextSlot = 1;  // 0: no slot

    std::unordered_map<ASExtensionClass*, Instance*> m_Instances;
    std::vector<ASExtensionClass*> m_Updates;

    // Compiled makers of shaped objects by names table and count (null: use the slow path).
    void* ShapeMaker(const ASShape& shape);
    // Checks `count` fields and everything nested in them (live handles of this stage, sane
    // counts, bounded depth) and prepares the makers of their shapes; false when unusable.
    bool PrepareFields(const ASField* fields, size_t count, int depth);
    bool PrepareShape(const ASShape& shape, const ASField* fields, uint32_t count);

public:
    // The maker prepared for `shape`, or null (then the object is built property by property).
    void* KnownMaker(const ASShape& shape) const;

private:
    std::map<std::pair<const void*, uint32_t>, void*> m_ShapeMakers;

    std::map<uint32_t, Timer> m_Timers;
    uint32_t m_NextTimerId = 1;

    ASRunEnd m_End = kASRunNotRun;
    int32_t m_ExitCode = 0;

    // Guarded by the stage's post mutex.
    std::condition_variable m_Wake;
    std::vector<KeyEvent> m_Keys;
    bool m_AcceptsKeys = false;

    ThrowKind m_Throw = kThrowNone;
    char m_ThrowText[256] = {};
};

}  // namespace stagecraft
}  // namespace ae

#endif  // STAGECRAFT_STAGEWINDOWSET_H
