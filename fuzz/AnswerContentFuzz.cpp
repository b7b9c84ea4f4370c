// The body of a service answer comes from the network: whatever its bytes, finding the response
// in it must fail cleanly or give a slice of it, and what is stored from that slice must read
// back without crashing or leaking.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "LMAnswerKeeper.h"
#include "Serializer.h"
#include "soapH.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string body(reinterpret_cast<const char*>(data), size);
    LMAnswerContent content;
    if (!FindAnswerContent(body, content)) {
        return 0;
    }
    if (content.begin > content.end || content.end > body.size()) {
        abort();
    }
    Serializer writer(true, false);
    if (writer.WriteContent(content.declarations, body.data() + content.begin,
                            content.end - content.begin)) {
        Serializer reader(true, false);
        LM1__GetTitlesResponse titles;
        reader.Read(writer.GetBuffer(), titles);
    }
    return 0;
}
