// The stage interface of the runtime kernel ("IStagecraft", from IAEKernel::GetInterface).
//
// Registration first, then one window set at a time: create it from the runtime's argument
// vector, run it on the calling thread until the movie ends, destroy it. Key posts are safe from
// any thread.
#ifndef AE_ISTAGECRAFT_H
#define AE_ISTAGECRAFT_H

#include <cstdint>

#include "AEError.h"
#include "ASExtensionClass.h"

namespace ae {
namespace stagecraft {

class StageWindowSet;  // opaque to its users

// How the last run of a window set ended.
enum ASRunEnd {
    kASRunNotRun,
    kASRunStopped,      // ASContext::Stop (quitFlash)
    kASRunQuitKey,      // key code 0x400100 pressed
    kASRunScriptError,  // an uncaught script error (file:line and message were printed)
    kASRunExitCall,     // lmstageQuit(code), only with the test hook enabled
};

constexpr uint32_t kASQuitKeyCode = 0x400100;

class IStagecraft {
public:
    // The descriptor must live until the kernel is unloaded. Classes registered after a window
    // set was created appear only in later window sets.
    virtual AEError RegisterExtensionClass(ASExtensionClassDescriptor& descriptor) = 0;

    // argv[0] is the program name; options: --bgalpha A, --astrace, --outputdims W,H,
    // --keymap FILE, --flashvars K=V&..., and --lmstage-hooks (adds lmstageQuit). The last entry
    // is the movie path (".swf" is looked up as the ".js" of the same base name under
    // LM_MOVIE_DIR when that is set). `flags` bit 0: the window set runs on the creating thread.
    // On failure *windowSet is null and a message was printed on stderr.
    virtual AEError CreateAndConfigureStageWindowSet(IStagecraft& self, StageWindowSet** windowSet,
                                                     int argc, const char* const* argv,
                                                     int32_t flags) = 0;
    // Runs the movie until it ends. OK for a stop, the quit key or lmstageQuit; Generic for a
    // script error.
    virtual AEError RunStageWindowSet(StageWindowSet* windowSet) = 0;
    virtual void DestroyStageWindowSet(StageWindowSet* windowSet) = 0;

    virtual ASRunEnd GetRunEnd(StageWindowSet* windowSet, int32_t* exitCode) = 0;

    // From any thread. A key posted after creation and before the run is kept; one posted when no
    // window set is running or being created is dropped.
    virtual void PostKeyPress(uint32_t keyCode) = 0;
    virtual void PostKeyRelease(uint32_t keyCode) = 0;

protected:
    ~IStagecraft() = default;
};

}  // namespace stagecraft
}  // namespace ae

#endif  // AE_ISTAGECRAFT_H
