#include "SimFaults.h"

#include <cstdlib>

namespace lmsim {

void SimFaults::Arm(const Fault& fault, int count, int skip) {
    std::lock_guard<std::mutex> lock(m_Lock);
    m_Fault = fault;
    m_Remaining = fault.kind == FaultKind::None ? 0 : count;
    m_Skip = skip > 0 ? skip : 0;
}

Fault SimFaults::Take() {
    std::lock_guard<std::mutex> lock(m_Lock);
    if (m_Remaining == 0) {
        return Fault();
    }
    if (m_Skip > 0) {
        --m_Skip;
        return Fault();
    }
    if (m_Remaining > 0) {
        --m_Remaining;
    }
    return m_Fault;
}

bool SimFaults::Parse(const std::string& name, FaultKind& kind) {
    static const struct {
        const char* name;
        FaultKind kind;
    } kNames[] = {{"none", FaultKind::None},
                  {"delay", FaultKind::Delay},
                  {"close-mid-body", FaultKind::CloseMidBody},
                  {"http-status", FaultKind::HttpStatus},
                  {"malformed-xml", FaultKind::MalformedXml},
                  {"bad-content-length", FaultKind::BadContentLength},
                  {"response-code", FaultKind::ResponseCode},
                  {"drip", FaultKind::Drip},
                  {"huge-text", FaultKind::HugeText},
                  {"hang-up", FaultKind::HangUp},
                  {"gzip-bomb", FaultKind::GzipBomb}};
    for (const auto& n : kNames) {
        if (name == n.name) {
            kind = n.kind;
            return true;
        }
    }
    return false;
}

bool SimFaults::ParseFault(const std::string& text, Fault& fault) {
    size_t colon = text.find(':');
    if (!Parse(text.substr(0, colon), fault.kind)) {
        return false;
    }
    fault.value = 0;
    if (colon != std::string::npos) {
        char* end = nullptr;
        long value = strtol(text.c_str() + colon + 1, &end, 10);
        if (*end != 0 || value < 0 || value > 600000) {
            return false;
        }
        fault.value = static_cast<int>(value);
    }
    if (fault.kind == FaultKind::HttpStatus && (fault.value < 100 || fault.value > 599)) {
        return false;
    }
    // One digit, so that the answer keeps its length.
    if (fault.kind == FaultKind::ResponseCode && (fault.value < 1 || fault.value > 9)) {
        return false;
    }
    return true;
}

}  // namespace lmsim
