// IStagecraft: the registered extension classes, the window sets and key posting.
#ifndef STAGECRAFT_STAGECRAFT_H
#define STAGECRAFT_STAGECRAFT_H

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "ae/IStagecraft.h"

namespace ae {
namespace stagecraft {

class StageKernel;

// A registered class: the descriptor (not owned) and what it told us at registration.
struct StageClass {
    ASExtensionClassDescriptor* descriptor = nullptr;
    std::string classId;    // "com.kestrel.LMWSLib"
    std::string shortName;  // "LMWSLib": the constructor's global name
    AEArray<ASExtensionClass::Method> methods;
};

class Stagecraft final : public IStagecraft {
public:
    explicit Stagecraft(StageKernel& kernel);
    ~Stagecraft();
    Stagecraft(const Stagecraft&) = delete;
    Stagecraft& operator=(const Stagecraft&) = delete;

    AEError RegisterExtensionClass(ASExtensionClassDescriptor& descriptor) override;
    AEError CreateAndConfigureStageWindowSet(IStagecraft& self, StageWindowSet** windowSet,
                                             int argc, const char* const* argv,
                                             int32_t flags) override;
    AEError RunStageWindowSet(StageWindowSet* windowSet) override;
    void DestroyStageWindowSet(StageWindowSet* windowSet) override;
    ASRunEnd GetRunEnd(StageWindowSet* windowSet, int32_t* exitCode) override;
    void PostKeyPress(uint32_t keyCode) override;
    void PostKeyRelease(uint32_t keyCode) override;

    StageKernel& Kernel() { return m_Kernel; }

    // Guards which window set is current for key posts, and every window set's key queue.
    std::mutex& PostMutex() { return m_PostMutex; }
    // Called with PostMutex held.
    void DetachLocked(StageWindowSet* windowSet);

private:
    void PostKey(uint32_t keyCode, bool press);

    StageKernel& m_Kernel;
    std::mutex m_RegistryMutex;
    std::vector<std::unique_ptr<StageClass>> m_Classes;
    std::mutex m_PostMutex;
    StageWindowSet* m_Current = nullptr;        // guarded by m_PostMutex
    std::vector<StageWindowSet*> m_WindowSets;  // live ones, for tear-down at unload
};

// Reads the regular file `path` whole into `contents`: 0, or the errno of the failure.
int ReadWholeFile(const std::string& path, std::string& contents);

}  // namespace stagecraft
}  // namespace ae

#endif  // STAGECRAFT_STAGECRAFT_H
