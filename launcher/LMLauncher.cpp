#include "LMLauncher.h"

#include <sys/select.h>

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "LMExtensionClasses.h"
#include "LMHostIPC.h"
#include "LMRuntimeKernel.h"
#include "LMStageSlot.h"

std::atomic<bool> g_LMPreExitKey{false};

namespace {

// Rows 0 and 1 differ only in country and folder; row 3 keeps its files under "um" and its
// movie under "ut" on purpose.
const LMUIVariant kUIVariants[kLMUIVariantCount] = {
    {"modelNumber=123456&firmwareVersion=FW_123456&configurationFile=/var/local/misc/lumora/AXO/"
     "1_00/axocredentials.xml&settingsFile=/var/local/misc/lumora/AXO/1_00/"
     "axopreference.xml&defaultCountryID=1&defaultRegionCode=00",
     "/usr/share/lumora/lmcesdk2_axo.swf"},
    {"modelNumber=123456&firmwareVersion=FW_123456&configurationFile=/var/local/misc/lumora/AXO/"
     "41_00/axocredentials.xml&settingsFile=/var/local/misc/lumora/AXO/41_00/"
     "axopreference.xml&defaultCountryID=41&defaultRegionCode=00",
     "/usr/share/lumora/lmcesdk2_axo.swf"},
    {"modelNumber=123456&firmwareVersion=FW_123456&configurationFile=/var/local/misc/lumora/"
     "kecredentials.xml&settingsFile=/var/local/misc/lumora/kepreference.xml",
     "/usr/share/lumora/lmcesdk2_ke.swf"},
    {"modelNumber=123456&firmwareVersion=FW_123456&configurationFile=/var/local/misc/lumora/"
     "umcredentials.xml&settingsFile=/var/local/misc/lumora/umpreference.xml",
     "/usr/share/lumora/lmcesdk2_ut.swf"},
    {"modelNumber=123456&firmwareVersion=FW_123456&configurationFile=/var/local/misc/lumora/"
     "picredentials.xml&settingsFile=/var/local/misc/lumora/pipreference.xml",
     "/usr/share/lumora/lmcesdk2_pi.swf"},
    {"modelNumber=123456&firmwareVersion=FW_123456&configurationFile=/var/local/misc/lumora/"
     "enocredentials.xml&settingsFile=/var/local/misc/lumora/enopreference.xml",
     "/usr/share/lumora/lmcesdk2_eno.swf"},
};

// Set when the launcher itself started the finalize procedure; only the main thread uses it.
bool g_ActiveExit = false;

// The end of every path that did not finalize: the host learns that the program is gone.
void ReportReleaseToHost() {
    LMLauncherPrint("[LMEDK_1.5]Not active exit, release resource \n");
    lm_stagecraft_exit_by_bdp_release();
}

}  // namespace

void LMLauncherPrint(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::vprintf(format, args);
    va_end(args);
    std::fflush(stdout);
}

const LMUIVariant* LMFindUIVariant(int uiType) {
    if (uiType < 0 || uiType >= kLMUIVariantCount)
        return nullptr;
    return &kUIVariants[uiType];
}

int LMUITypeFromCommandLine(int argc, const char* const* argv) {
    if (argc < 1 || !argv[argc - 1])
        return -1;
    return argv[argc - 1][0] - '0';
}

LMRuntimeArguments LMBuildRuntimeArguments(const LMUIVariant& variant, const char* flashvars) {
    return {"stagecraft",
            "--bgalpha",
            "0",
            "--astrace",
            "--outputdims",
            "1280,720",
            "--keymap",
            "/usr/local/bin/lumora/keymap.xml",
            "--flashvars",
            flashvars ? flashvars : variant.flashvars,
            variant.movie};
}

void LMSleep(int count) {
    LMLauncherPrint("[LMEDK_1.5]In Sleep FUNCTION, delay time is :%d ms\n", count);
    timeval wait{0, count};
    select(0, nullptr, nullptr, nullptr, &wait);
}

void LMRunRuntime(int argc, const char* const* argv) {
    g_ActiveExit = false;
    LMStageSlot& slot = LMLauncherStage();

    ae::stagecraft::IStagecraft* stage = nullptr;
    bool haveKernel = LMAcquireKernel(argc, argv) != nullptr;
    if (haveKernel) {
        stage = LMAcquireStagecraft();
        if (!stage) {
            LMReleaseKernel();
            haveKernel = false;
        }
    }

    if (stage) {
        LMRegisterExtensionClasses(*stage);
        ae::stagecraft::StageWindowSet* windowSet = nullptr;
        AEError created =
            stage->CreateAndConfigureStageWindowSet(*stage, &windowSet, argc, argv, 1);
        if (created == AEError_OK) {
            LMLauncherPrint("[LMEDK_1.5]Start LM FLASH Now \n");
            slot.Publish(stage);
            stage->RunStageWindowSet(windowSet);
            LMLauncherPrint("[LMEDK_1.5]LM FLASH Run Over! \n");
        } else {
            LMLauncherPrint("[LMEDK_1.5]CreateAndConfigureStageWindowSet fail \n");
            // No instance will be published: an exit routine waiting for one gives up instead of
            // waiting forever (see exit_lm_stagecraft).
            slot.Withdraw();
        }
        if (!LMHostIPCEnded()) {
            LMLauncherPrint("[LMEDK_1.5]lm_stagecraft_finalize_proc calling! Active Exit \n");
            g_ActiveExit = true;
            lm_stagecraft_finalize_proc();
        }
        if (windowSet)
            stage->DestroyStageWindowSet(windowSet);
    }

    // Withdrawn before the release so that no key is posted through a stage being released.
    slot.Withdraw();
    if (stage)
        LMReleaseStagecraft();
    if (haveKernel)
        LMReleaseKernel();
    LMLauncherPrint("[LMEDK_1.5]LM FLASH Run End \n");

    // The host must hear that the program is gone. The active exit tells it with FINALIZE, but
    // when the host's UNINIT arrived between the movie's end and that message, no FINALIZE went
    // out (the link was already over) and the host waits for UNINIT_RET: send it then too.
    if (!g_ActiveExit || !LMHostFinalizeSent())
        ReportReleaseToHost();
}

int LMLauncherMain(int argc, const char* const* argv) {
    // A host that went away must fail a send, not kill the program.
    std::signal(SIGPIPE, SIG_IGN);

    const char* flashvars = std::getenv("LM_FLASHVARS");
    if (flashvars)
        LMLauncherPrint("[LMEDK_1.5]** %s **\n", flashvars);

    int uiType = LMUITypeFromCommandLine(argc, argv);
    LMLauncherPrint("[LMEDK_1.5]LM UI type = %d \n", uiType);
    const LMUIVariant* variant = LMFindUIVariant(uiType);

    lm_stagecraft_ipc_init();
    start_lm_stagecraft_ipc_listen_thread();

    if (variant) {
        LMRuntimeArguments args = LMBuildRuntimeArguments(*variant, flashvars);
        LMRunRuntime(kLMRuntimeArgc, args.data());
    } else {
        // There is no movie for this digit; the host must still learn that the program is gone.
        LMLauncherPrint("[LMEDK_1.5]LM UI type %d is out of range 0-%d, no movie to run \n", uiType,
                        kLMUIVariantCount - 1);
        LMLauncherStage().Withdraw();
        ReportReleaseToHost();
    }
    LMJoinEndedListener();
    return 0;
}
