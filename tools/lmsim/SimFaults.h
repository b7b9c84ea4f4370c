// Fault switches of the simulator: a fault armed for the next N answers (or for good), shared by
// the HTTPS and the plain-HTTP side. An answer takes its fault once its request has been read, so
// a kept-alive connection that stays idle uses none. Armed at start-up (--fault) or per request
// through the control path "/__lmsim/fault?kind=K&value=V&count=N&skip=M" on the plain-HTTP port.
#ifndef LMSIM_FAULTS_H
#define LMSIM_FAULTS_H

#include <mutex>
#include <string>

namespace lmsim {

enum class FaultKind {
    None,
    Delay,             // wait `value` milliseconds, then answer normally
    CloseMidBody,      // send the headers and half of the body, then close
    HttpStatus,        // answer with HTTP status `value` and no body
    MalformedXml,      // corrupt the XML of a SOAP answer
    BadContentLength,  // announce more body bytes than are sent, then close
    ResponseCode,      // a SOAP answer's first ResponseCode 0 becomes `value` (1 to 9)
    Drip,              // send the answer a byte at a time, `value` milliseconds apart
    HugeText,          // the answer's first text gets `value` MiB more
    HangUp,            // close the connection once the request is read, without answering
    GzipBomb,          // a gzip answer of a few KB that inflates to `value` MiB of XML
};

struct Fault {
    FaultKind kind = FaultKind::None;
    int value = 0;
};

class SimFaults {
public:
    // Arms `fault` for `count` answers after the next `skip` (which go out unharmed); count < 0
    // keeps it until changed.
    void Arm(const Fault& fault, int count, int skip = 0);
    // The fault for the answer about to be sent (None when nothing is armed); uses one count.
    Fault Take();

    // "delay", "close-mid-body", "http-status", "malformed-xml", "bad-content-length",
    // "response-code", "drip", "huge-text", "hang-up", "gzip-bomb", "none".
    static bool Parse(const std::string& name, FaultKind& kind);
    // "KIND" or "KIND:VALUE" as given on the command line.
    static bool ParseFault(const std::string& text, Fault& fault);

private:
    std::mutex m_Lock;
    Fault m_Fault;
    int m_Remaining = 0;
    int m_Skip = 0;
};

}  // namespace lmsim

#endif  // LMSIM_FAULTS_H
