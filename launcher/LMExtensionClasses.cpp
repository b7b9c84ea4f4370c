#include "LMExtensionClasses.h"

#include "LMCfgLibAE.h"
#include "LMPlayerClass.h"
#include "LMWSLibAE.h"

bool LMRegisterExtensionClasses(ae::stagecraft::IStagecraft& stagecraft) {
    // The web-service class comes first, then the configuration class; the player is always
    // last.
    ae::stagecraft::ASExtensionClassDescriptor* classes[] = {
        &LMWSLibAEDescriptor(), &LMCfgLibAEDescriptor(), &LMPlayerClassDescriptor()};
    bool all = true;
    for (ae::stagecraft::ASExtensionClassDescriptor* descriptor : classes)
        all = stagecraft.RegisterExtensionClass(*descriptor) == AEError_OK && all;
    return all;
}
