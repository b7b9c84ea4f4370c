// The descriptor of the player's script class, "com.kestrel.LMPlayerLibAE", registered with the
// runtime by the launcher.
#ifndef LM_LAUNCHER_LMPLAYERCLASS_H
#define LM_LAUNCHER_LMPLAYERCLASS_H

#include "ae/ASExtensionClass.h"

class LMPlayerClass final : public ae::stagecraft::ASExtensionClassDescriptor {
public:
    const char* GetClassName() override;
    // Appends the 19 player methods in table order; entries already in `methods` stay.
    void GetMethods(AEArray<ae::stagecraft::ASExtensionClass::Method>& methods) override;
    bool FiresEvents() override;
    // A new LMPlayerLibAE in kernel memory; null when there is none left.
    ae::stagecraft::ASExtensionClass* ConstructInstance(
        ae::stagecraft::ASContext& context) override;
    void DestructInstance(ae::stagecraft::ASExtensionClass* instance) override;
};

// The process-wide descriptor (it must outlive the kernel's use of it).
ae::stagecraft::ASExtensionClassDescriptor& LMPlayerClassDescriptor();

#endif  // LM_LAUNCHER_LMPLAYERCLASS_H
