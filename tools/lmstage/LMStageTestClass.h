// A small extension class for the runtime's own tests ("com.kestrel.test.LMStageTest", seen by
// movies as `new LMStageTest()`). Only the test build of lmstage registers it.
#ifndef LM_STAGETESTCLASS_H
#define LM_STAGETESTCLASS_H

#include "ae/ASExtensionClass.h"

ae::stagecraft::ASExtensionClassDescriptor& LMStageTestClassDescriptor();

#endif  // LM_STAGETESTCLASS_H
