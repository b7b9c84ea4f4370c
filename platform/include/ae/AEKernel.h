// The runtime kernel: what the kernel library hands out once it is loaded.
//
// The kernel is a shared library found by name ("libIAEKernel.so") and reached only through the
// three exported entry points below and the abstract interfaces they return, so the code that
// uses it compiles against these headers and never sees the engine behind it.
#ifndef AE_AEKERNEL_H
#define AE_AEKERNEL_H

#include <cstddef>
#include <cstdint>

namespace ae {

// A non-recursive mutex made by the kernel. Destroy() frees it.
class IAEMutex {
public:
    virtual void Lock() = 0;
    virtual void Unlock() = 0;
    virtual void Destroy() = 0;

protected:
    ~IAEMutex() = default;
};

class IAEKernel {
public:
    // Memory: Allocate returns null when it cannot; Free accepts null.
    virtual void* Allocate(size_t size) = 0;
    virtual void Free(void* block) = 0;
    virtual void* MemCopy(void* dst, const void* src, size_t size) = 0;
    virtual void* MemSet(void* dst, int value, size_t size) = 0;

    // Reports a failed assertion (expression text, source file, line) and returns: the program
    // goes on.
    virtual void ReportAssert(const char* expr, const char* file, int line) = 0;

    virtual IAEMutex* CreateMutex() = 0;

    // Named interfaces ("IStagecraft"); null when the kernel has none of that name. Each
    // successful GetInterface is matched by one ReleaseInterface.
    virtual void* GetInterface(const char* name) = 0;
    virtual void ReleaseInterface(const char* name, void* iface) = 0;

protected:
    ~IAEKernel() = default;
};

}  // namespace ae

// The kernel library's exports, looked up by these names with dlsym.
extern "C" {
typedef ae::IAEKernel* (*IAEModule_IAEKernel_LoadModule_Fn)(void);
typedef int32_t (*IAEModule_IAEKernel_InitializeKernel_Fn)(int argc, const char* const* argv);
typedef void (*IAEModule_IAEKernel_UnloadModule_Fn)(ae::IAEKernel* kernel);
}

#define AE_KERNEL_LIBRARY_NAME "libIAEKernel.so"
#define AE_KERNEL_LOAD_SYMBOL "IAEModule_IAEKernel_LoadModule"
#define AE_KERNEL_INITIALIZE_SYMBOL "IAEModule_IAEKernel_InitializeKernel"
#define AE_KERNEL_UNLOAD_SYMBOL "IAEModule_IAEKernel_UnloadModule"

#endif  // AE_AEKERNEL_H
