// The simulator's request log: one line per request served, written as it is answered, so that
// a test can tell which requests reached the service (and which were answered from a cache).
//
//   SOAP getTitlesByNavigation NavigationID=12 PageNumber=2 ItemsPerPage=5 ...
//   GET /images/boxart/large/tt0001_l.jpg
#ifndef LMSIM_SIMREQUESTLOG_H
#define LMSIM_SIMREQUESTLOG_H

#include <cstdio>
#include <mutex>
#include <string>

namespace lmsim {

class SimRequestLog {
public:
    SimRequestLog() = default;
    ~SimRequestLog();
    SimRequestLog(const SimRequestLog&) = delete;
    SimRequestLog& operator=(const SimRequestLog&) = delete;

    // Appends to `path`; false when it cannot be opened.
    bool Open(const std::string& path);
    // Writes one line (a newline is added); nothing when no file is open. Thread-safe.
    void Write(const std::string& line);

    // The line of a SOAP request body: the operation (the first element inside the Body) and
    // each leaf element as name=value, in document order. Empty when there is no Body.
    static std::string SoapLine(const std::string& body);

private:
    std::mutex m_Lock;
    FILE* m_File = nullptr;
};

}  // namespace lmsim

#endif  // LMSIM_SIMREQUESTLOG_H
