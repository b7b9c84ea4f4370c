// Settings files can be edited or replaced by anyone with access to the device's storage: any
// text must read as a value or a code, and a value written over it must read back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "CfgXMLFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const LMString text(reinterpret_cast<const char*>(data), size);
    LMString value;
    CfgXMLFile::ReadText(text, "AuthToken", value, true);
    CfgXMLFile::ReadText(text, "XMLVersion", value, false);
    LMString out;
    if (CfgXMLFile::WriteText(text, "DestinationUniqueID", "id-1", false, out) == CfgXMLFile::kOK) {
        LMString back;
        if (CfgXMLFile::ReadText(out, "DestinationUniqueID", back, false) != CfgXMLFile::kOK ||
            back != "id-1") {
            std::abort();
        }
    }
    return 0;
}
