// Cached answers come back from a file on the device's storage: whatever bytes are there, reading
// them must fail cleanly or give a record, never crash or leak.
#include <cstddef>
#include <cstdint>

#include "Serializer.h"
#include "soapH.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Serializer reader(true, false);  // reads gzip and plain XML alike
    LM1__GetTitlesResponse titles;
    reader.Read(LMString(reinterpret_cast<const char*>(data), size), titles);
    reader.Reset();
    LM1__TitleListingResponse listing;
    reader.Read(LMString(reinterpret_cast<const char*>(data), size), listing);
    reader.Reset();
    return 0;
}
