#include "LMExtensionClasses.h"

#include "LMPlayerClass.h"

bool LMRegisterExtensionClasses(ae::stagecraft::IStagecraft& stagecraft) {
    // The web-service and configuration classes come first once they are built in; the player
    // is always last.
    ae::stagecraft::ASExtensionClassDescriptor* classes[] = {&LMPlayerClassDescriptor()};
    bool all = true;
    for (ae::stagecraft::ASExtensionClassDescriptor* descriptor : classes)
        all = stagecraft.RegisterExtensionClass(*descriptor) == AEError_OK && all;
    return all;
}
