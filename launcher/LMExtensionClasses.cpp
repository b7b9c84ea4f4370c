#include "LMExtensionClasses.h"

#include "LMCfgLibAE.h"
#include "LMPlayerClass.h"

bool LMRegisterExtensionClasses(ae::stagecraft::IStagecraft& stagecraft) {
    // The web-service class comes first once it is built in, then the configuration class; the
    // player is always last.
    ae::stagecraft::ASExtensionClassDescriptor* classes[] = {&LMCfgLibAEDescriptor(),
                                                             &LMPlayerClassDescriptor()};
    bool all = true;
    for (ae::stagecraft::ASExtensionClassDescriptor* descriptor : classes)
        all = stagecraft.RegisterExtensionClass(*descriptor) == AEError_OK && all;
    return all;
}
