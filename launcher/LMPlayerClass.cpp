#include "LMPlayerClass.h"

#include "LMPlayerLibAE.h"
#include "ae/AEMemory.h"

using ae::stagecraft::AEHandler;
using ae::stagecraft::ASContext;
using ae::stagecraft::ASExtensionClass;

const char* LMPlayerClass::GetClassName() {
    return "com.kestrel.LMPlayerLibAE";
}

void LMPlayerClass::GetMethods(AEArray<ASExtensionClass::Method>& methods) {
    const ASExtensionClass::Method table[] = {
        {"Initialize", 0, AEHandler(&LMPlayerLibAE::Initialize)},
        {"Shutdown", 0, AEHandler(&LMPlayerLibAE::Shutdown)},
        {"GetVersion", 0, AEHandler(&LMPlayerLibAE::GetVersion)},
        {"CreatePlayer", 0, AEHandler(&LMPlayerLibAE::CreatePlayer)},
        {"ReleasePlayer", 0, AEHandler(&LMPlayerLibAE::ReleasePlayer)},
        {"Play", 0, AEHandler(&LMPlayerLibAE::Play)},
        {"Pause", 0, AEHandler(&LMPlayerLibAE::Pause)},
        {"Stop", 0, AEHandler(&LMPlayerLibAE::Stop)},
        {"GetPlaybackTime", 0, AEHandler(&LMPlayerLibAE::GetPlaybackTime)},
        {"GetPlaybackState", 0, AEHandler(&LMPlayerLibAE::GetPlaybackState)},
        {"GetDuration", 0, AEHandler(&LMPlayerLibAE::GetDuration)},
        {"GetCurrentBandwidth", 0, AEHandler(&LMPlayerLibAE::GetCurrentBandwidth)},
        {"RegisterEventHandler", 0, AEHandler(&LMPlayerLibAE::RegisterEventHandler)},
        {"THX_ProcessContentDescriptors", 1,
         AEHandler(&LMPlayerLibAE::THX_ProcessContentDescriptors)},
        {"THX_IsSupportedOnDevice", 1, AEHandler(&LMPlayerLibAE::THX_IsSupportedOnDevice)},
        {"getSupported3DFormats", 1, AEHandler(&LMPlayerLibAE::getSupported3DFormats)},
        {"getConfigured3DFormat", 0, AEHandler(&LMPlayerLibAE::getConfigured3DFormat)},
        {"set3DMode", 0, AEHandler(&LMPlayerLibAE::set3DMode)},
        {"SetLogAreaIDsConfig", 1, AEHandler(&LMPlayerLibAE::SetLogAreaIDsConfig)},
    };
    // Room for all of them first, so that running out of memory leaves no half table.
    if (!methods.Reserve(methods.GetCount() + sizeof table / sizeof table[0]))
        return;
    for (const ASExtensionClass::Method& method : table)
        methods.Append(method);
}

bool LMPlayerClass::FiresEvents() {
    return false;
}

ASExtensionClass* LMPlayerClass::ConstructInstance(ASContext&) {
    return AE_NEW LMPlayerLibAE();
}

void LMPlayerClass::DestructInstance(ASExtensionClass* instance) {
    AE_DELETE(static_cast<LMPlayerLibAE*>(instance));
}

ae::stagecraft::ASExtensionClassDescriptor& LMPlayerClassDescriptor() {
    static LMPlayerClass descriptor;
    return descriptor;
}
