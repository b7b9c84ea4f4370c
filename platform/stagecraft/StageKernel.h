// The kernel object behind IAEModule_IAEKernel_LoadModule: memory, assertion reports, mutexes
// and the named interfaces (the stage).
#ifndef STAGECRAFT_STAGEKERNEL_H
#define STAGECRAFT_STAGEKERNEL_H

#include <mutex>

#include "ae/AEKernel.h"

namespace ae {
namespace stagecraft {

class Stagecraft;

class StageKernel final : public IAEKernel {
public:
    StageKernel();
    ~StageKernel();
    StageKernel(const StageKernel&) = delete;
    StageKernel& operator=(const StageKernel&) = delete;

    void* Allocate(size_t size) override;
    void Free(void* block) override;
    void* MemCopy(void* dst, const void* src, size_t size) override;
    void* MemSet(void* dst, int value, size_t size) override;
    void ReportAssert(const char* expr, const char* file, int line) override;
    IAEMutex* CreateMutex() override;
    void* GetInterface(const char* name) override;
    void ReleaseInterface(const char* name, void* iface) override;

private:
    std::mutex m_InterfaceMutex;
    Stagecraft* m_Stagecraft = nullptr;  // made on the first GetInterface("IStagecraft")
    int m_StagecraftRefs = 0;
};

}  // namespace stagecraft
}  // namespace ae

#endif  // STAGECRAFT_STAGEKERNEL_H
