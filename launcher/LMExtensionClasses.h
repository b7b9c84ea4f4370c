// The extension classes the program offers to its movies, registered in a fixed order.
#ifndef LM_EXTENSIONCLASSES_H
#define LM_EXTENSIONCLASSES_H

#include "ae/IStagecraft.h"

// Registers every class built into this program; false when the runtime refused one (the others
// are still registered).
bool LMRegisterExtensionClasses(ae::stagecraft::IStagecraft& stagecraft);

#endif  // LM_EXTENSIONCLASSES_H
