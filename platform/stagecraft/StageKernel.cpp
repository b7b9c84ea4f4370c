// The library's exports and the kernel singleton.
#include "StageKernel.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Stagecraft.h"

#define STAGE_EXPORT extern "C" __attribute__((visibility("default")))

namespace ae {
namespace stagecraft {

namespace {

class StageMutex final : public IAEMutex {
public:
    void Lock() override { m_Mutex.lock(); }
    void Unlock() override { m_Mutex.unlock(); }
    void Destroy() override { delete this; }

private:
    std::mutex m_Mutex;
};

std::mutex g_KernelMutex;  // serialises load and unload
std::atomic<StageKernel*> g_Kernel{nullptr};

}  // namespace

StageKernel::StageKernel() = default;

StageKernel::~StageKernel() {
    delete m_Stagecraft;
}

void* StageKernel::Allocate(size_t size) {
    return std::malloc(size ? size : 1);
}

void StageKernel::Free(void* block) {
    std::free(block);
}

void* StageKernel::MemCopy(void* dst, const void* src, size_t size) {
    return size ? std::memcpy(dst, src, size) : dst;
}

void* StageKernel::MemSet(void* dst, int value, size_t size) {
    return size ? std::memset(dst, value, size) : dst;
}

void StageKernel::ReportAssert(const char* expr, const char* file, int line) {
    std::fprintf(stderr, "assertion %s failed at %s:%d\n", expr ? expr : "?", file ? file : "?",
                 line);
    std::fflush(stderr);
}

IAEMutex* StageKernel::CreateMutex() {
    return new (std::nothrow) StageMutex();
}

void* StageKernel::GetInterface(const char* name) {
    if (!name || std::strcmp(name, "IStagecraft") != 0)
        return nullptr;
    std::lock_guard<std::mutex> lock(m_InterfaceMutex);
    if (!m_Stagecraft) {
        m_Stagecraft = new (std::nothrow) Stagecraft(*this);
        if (!m_Stagecraft)
            return nullptr;
    }
    ++m_StagecraftRefs;
    return static_cast<IStagecraft*>(m_Stagecraft);
}

void StageKernel::ReleaseInterface(const char* name, void* iface) {
    if (!name || std::strcmp(name, "IStagecraft") != 0 || !iface)
        return;
    std::lock_guard<std::mutex> lock(m_InterfaceMutex);
    if (iface != static_cast<IStagecraft*>(m_Stagecraft) || m_StagecraftRefs <= 0) {
        ReportAssert("ReleaseInterface matches a GetInterface", __FILE__, __LINE__);
        return;
    }
    // The stage stays until the kernel is unloaded: registered descriptors and window sets may
    // outlive the last reference a caller holds.
    --m_StagecraftRefs;
}

}  // namespace stagecraft

// This image's kernel is the singleton itself.
IAEKernel* AECurrentKernel() {
    return stagecraft::g_Kernel.load(std::memory_order_acquire);
}

}  // namespace ae

STAGE_EXPORT ae::IAEKernel* IAEModule_IAEKernel_LoadModule(void) {
    std::lock_guard<std::mutex> lock(ae::stagecraft::g_KernelMutex);
    if (!ae::stagecraft::g_Kernel.load())
        ae::stagecraft::g_Kernel.store(new (std::nothrow) ae::stagecraft::StageKernel());
    return ae::stagecraft::g_Kernel.load();
}

STAGE_EXPORT int32_t IAEModule_IAEKernel_InitializeKernel(int argc, const char* const* argv) {
    (void)argc;
    (void)argv;
    // Every Date made in local time asks the C library for the zone. Without TZ it looks the
    // zone file up again on each call (several file-system calls per Date, a third of the time
    // a page of titles takes to reach the movie); naming the same file reads it once. Done here,
    // before the program starts threads, and only when the device has not chosen a zone.
    if (!std::getenv("TZ"))
        setenv("TZ", ":/etc/localtime", 0);
    return AEError_OK.GetCode();
}

STAGE_EXPORT void IAEModule_IAEKernel_UnloadModule(ae::IAEKernel* kernel) {
    std::lock_guard<std::mutex> lock(ae::stagecraft::g_KernelMutex);
    ae::stagecraft::StageKernel* current = ae::stagecraft::g_Kernel.load();
    if (!kernel || kernel != current)
        return;
    // Deleted while still current: the stage's tear-down frees AEArray storage through
    // AECurrentKernel().
    delete current;
    ae::stagecraft::g_Kernel.store(nullptr);
}
