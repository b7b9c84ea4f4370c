// The process-wide logger: named areas with an on/off switch and a severity mask, one output
// target (console, file or any callback), and a C-callable front used by every module and by
// the SOAP layer.
//
// A line reads "[" time "-" area "] " text, the time being strftime "%X" plus ".%03lu"
// milliseconds. Every message text carries its own "\n".
#ifndef LM_LOG_H
#define LM_LOG_H

#include <atomic>
#include <mutex>

#include "LMString.h"

// Severity bits tested against an area's mask.
enum {
    LM_LOG_ERROR = 1,   // failures worth a look in the field
    LM_LOG_TRACE = 4,   // normal trace, entry/exit lines
    LM_LOG_PARAMS = 8,  // detailed parameter dumps
};

typedef void (*LM_LogTarget)(const char* line, unsigned length, void* context);

// Names of the areas the SOAP layer writes to.
extern const char* const LMWS_SoapProxyLOG_AREA_NAME;  // "soap_proxy"
extern const char* const LMWS_SoapRecvLOG_AREA_NAME;   // "soap_recv"
extern const char* const LMWS_SoapSentLOG_AREA_NAME;   // "soap_sent"
extern const char* const LMWS_SoapTestLOG_AREA_NAME;   // "soap_test"

extern "C" {
// Area ids the SOAP runtime writes raw received/sent bytes and debug trace with; read at every
// call. ConfigureLogging sets them to the ids of "soap_recv", "soap_sent" and "soap_test".
extern int RECV_LMLogAreaID;
extern int SENT_LMLogAreaID;
extern int TEST_LMLogAreaID;

int LM_LogRegisterArea(const char* name, int* id);
// Formats with printf rules into a 512-byte buffer: at most 511 characters survive.
void LM_LogOutput(int area, int severity, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
// Writes exactly `length` bytes of `text` (which need not be NUL-terminated).
void LM_LogOutputwithLen(int area, int severity, const char* text, unsigned length);
void LM_LogSetAreaSeverityMask(int area, int mask);
void LM_LogActivateArea(int area, bool on);
void LM_LogSetTarget(LM_LogTarget target, void* context);

int LM_LogGetConsoleTarget(LM_LogTarget* fn, void** context);
void LM_LogReleaseConsoleTarget(LM_LogTarget fn, void* context);
// Opens `path` with "wb". maxSize 0 means unlimited; with `wrap` a full file starts again at
// offset 0. Returns 0, or 2 (null path or open failure) with both outputs null.
int LM_LogGetFileTarget(const char* path, LM_LogTarget* fn, void** context, unsigned maxSize,
                        bool wrap);
void LM_LogReleaseFileTarget(void* ignored, void* fileTarget);
}

class LM_Log {
public:
    enum { kMaxAreas = 50 };

    static LM_Log& GetInstance();

    // 0 on success with `id` set, 1 when the table is full (`id` is then -1). A name already
    // registered gives its first id.
    int RegisterArea(const char* name, int& id);
    // True when a line for this area and severity would reach the target.
    bool Accepts(int area, int severity) const;
    void Output(int area, int severity, const char* text);
    void Output(int area, int severity, const char* text, unsigned length);
    void SetAreaSeverityMask(int area, int mask);
    void ActivateArea(int area, bool on);
    void SetTarget(LM_LogTarget target, void* context);
    static LMString GetCurrentTime();

    LM_Log(const LM_Log&) = delete;
    LM_Log& operator=(const LM_Log&) = delete;

private:
    LM_Log() = default;
    void Emit(int area, const char* text, unsigned length, bool withLength);

    struct Area {
        LMString name;
        std::atomic<int> active{0};
        std::atomic<unsigned> mask{0};
    };
    Area m_Areas[kMaxAreas];
    std::atomic<int> m_Count{0};
    std::mutex m_RegisterMutex;  // registration is rare; lookups read m_Count with acquire
    // The target is copied under this lock for each line and called outside it, so a line is
    // never paired with another target's context while SetTarget runs.
    std::mutex m_TargetMutex;
    LM_LogTarget m_TargetFn = nullptr;
    void* m_TargetContext = nullptr;
};

// A module's own area, registered on its first use. A failed registration is retried on the
// next use; the line of the failed use is dropped.
class LMLogArea {
public:
    explicit constexpr LMLogArea(const char* name) : m_Name(name) {}
    int Id();

private:
    const char* m_Name;
    std::atomic<int> m_Id{-1};
};

// Writes "Entering %s::%s\n" on construction and "Exiting %s::%s\n" on destruction, severity 4.
class LM_LogScope {
public:
    LM_LogScope(const char* className, const char* methodName, int area);
    ~LM_LogScope();
    LM_LogScope(const LM_LogScope&) = delete;
    LM_LogScope& operator=(const LM_LogScope&) = delete;

private:
    LMString m_Class;
    LMString m_Method;
    int m_Area;
};

// Registers the six known areas in order, switches each by its bit of `areaBits` (0x100
// "LM_WSAE", 0x200 "LM_WSCFGAE", 0x400 "soap_proxy", 0x800 "soap_recv", 0x1000 "soap_sent",
// 0x2000 "soap_test") and sets the target: bit 1 console, else bit 2 the file "log.txt" in
// `directory` (which ends in "/"; empty or null means "./log.txt"). Returns 0, 1 when no target
// was chosen, 2 when the log file could not be opened.
int ConfigureLogging(unsigned areaBits, unsigned targetBits, const char* directory);

#endif  // LM_LOG_H
