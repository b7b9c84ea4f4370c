#include "LMRuntimeKernel.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdio>
#include <mutex>

#include "ae/AEMemory.h"

namespace {

struct KernelState {
    std::mutex lock;
    void* library = nullptr;
    IAEModule_IAEKernel_UnloadModule_Fn unload = nullptr;
    int kernelUses = 0;
    ae::stagecraft::IStagecraft* stagecraft = nullptr;
    int stagecraftUses = 0;
};

KernelState& State() {
    static KernelState state;
    return state;
}

// Read by every allocation of the extension classes, from any thread.
std::atomic<ae::IAEKernel*> g_Kernel{nullptr};

template <class Fn>
Fn LookUp(void* library, const char* name) {
    return reinterpret_cast<Fn>(dlsym(library, name));
}

}  // namespace

ae::IAEKernel* ae::AECurrentKernel() {
    return g_Kernel.load(std::memory_order_acquire);
}

ae::IAEKernel* LMAcquireKernel(int argc, const char* const* argv) {
    KernelState& s = State();
    std::lock_guard<std::mutex> guard(s.lock);
    if (s.kernelUses > 0) {
        ++s.kernelUses;
        return g_Kernel.load(std::memory_order_relaxed);
    }
    void* library = dlopen(AE_KERNEL_LIBRARY_NAME, RTLD_NOW | RTLD_GLOBAL);
    if (!library) {
        std::fprintf(stderr, "Failed to load %s: %s\n", AE_KERNEL_LIBRARY_NAME, dlerror());
        return nullptr;
    }
    auto load = LookUp<IAEModule_IAEKernel_LoadModule_Fn>(library, AE_KERNEL_LOAD_SYMBOL);
    auto init =
        LookUp<IAEModule_IAEKernel_InitializeKernel_Fn>(library, AE_KERNEL_INITIALIZE_SYMBOL);
    auto unload = LookUp<IAEModule_IAEKernel_UnloadModule_Fn>(library, AE_KERNEL_UNLOAD_SYMBOL);
    ae::IAEKernel* kernel = (load && init && unload) ? load() : nullptr;
    if (!kernel) {
        dlclose(library);
        return nullptr;
    }
    init(argc, argv);
    s.library = library;
    s.unload = unload;
    s.kernelUses = 1;
    g_Kernel.store(kernel, std::memory_order_release);
    return kernel;
}

void LMReleaseKernel() {
    KernelState& s = State();
    std::lock_guard<std::mutex> guard(s.lock);
    if (s.kernelUses == 0 || --s.kernelUses > 0)
        return;
    ae::IAEKernel* kernel = g_Kernel.exchange(nullptr, std::memory_order_acq_rel);
    s.unload(kernel);
    dlclose(s.library);
    s.library = nullptr;
    s.unload = nullptr;
}

ae::stagecraft::IStagecraft* LMAcquireStagecraft() {
    KernelState& s = State();
    std::lock_guard<std::mutex> guard(s.lock);
    ae::IAEKernel* kernel = g_Kernel.load(std::memory_order_relaxed);
    if (!kernel)
        return nullptr;
    if (s.stagecraftUses == 0) {
        s.stagecraft =
            static_cast<ae::stagecraft::IStagecraft*>(kernel->GetInterface("IStagecraft"));
        if (!s.stagecraft)
            return nullptr;
    }
    ++s.stagecraftUses;
    return s.stagecraft;
}

void LMReleaseStagecraft() {
    KernelState& s = State();
    std::lock_guard<std::mutex> guard(s.lock);
    if (s.stagecraftUses == 0 || --s.stagecraftUses > 0)
        return;
    ae::IAEKernel* kernel = g_Kernel.load(std::memory_order_relaxed);
    if (kernel)
        kernel->ReleaseInterface("IStagecraft", s.stagecraft);
    s.stagecraft = nullptr;
}
