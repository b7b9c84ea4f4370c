#include "LMLog.h"

#include <sys/time.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

const char* const LMWS_SoapProxyLOG_AREA_NAME = "soap_proxy";
const char* const LMWS_SoapRecvLOG_AREA_NAME = "soap_recv";
const char* const LMWS_SoapSentLOG_AREA_NAME = "soap_sent";
const char* const LMWS_SoapTestLOG_AREA_NAME = "soap_test";

// No area until logging is configured: id 0 is whichever area registered first, and the bytes of
// every exchange must not go there (nor cost their masking) in a process that never asked.
extern "C" {
int RECV_LMLogAreaID = -1;
int SENT_LMLogAreaID = -1;
int TEST_LMLogAreaID = -1;
}

LM_Log& LM_Log::GetInstance() {
    static LM_Log instance;
    return instance;
}

int LM_Log::RegisterArea(const char* name, int& id) {
    id = -1;
    std::lock_guard<std::mutex> lock(m_RegisterMutex);
    int count = m_Count.load(std::memory_order_relaxed);
    for (int i = 0; i < count; ++i) {
        if (m_Areas[i].name == name) {
            id = i;
            return 0;
        }
    }
    if (count >= kMaxAreas) {
        return 1;
    }
    Area& area = m_Areas[count];
    area.name.assign(name);
    area.active.store(1, std::memory_order_relaxed);
    area.mask.store(0xFFFFFFFFu, std::memory_order_relaxed);
    // Publish the record only once it is complete: writers on other threads read m_Count first.
    m_Count.store(count + 1, std::memory_order_release);
    id = count;
    return 0;
}

bool LM_Log::Accepts(int area, int severity) const {
    if (area < 0 || area >= m_Count.load(std::memory_order_acquire)) {
        return false;
    }
    const Area& a = m_Areas[area];
    return a.active.load(std::memory_order_relaxed) != 0 &&
           (static_cast<unsigned>(severity) & a.mask.load(std::memory_order_relaxed)) != 0;
}

void LM_Log::Output(int area, int severity, const char* text) {
    if (text != nullptr && Accepts(area, severity)) {
        Emit(area, text, 0, false);
    }
}

void LM_Log::Output(int area, int severity, const char* text, unsigned length) {
    if (text != nullptr && Accepts(area, severity)) {
        Emit(area, text, length, true);
    }
}

void LM_Log::Emit(int area, const char* text, unsigned length, bool withLength) {
    LMString line("[");
    line.append(GetCurrentTime());
    line.append('-');
    line.append(m_Areas[area].name);
    line.append("] ", 2);
    if (withLength) {
        line.append(text, length);
    } else {
        line.append(text);
    }

    LM_LogTarget fn;
    void* context;
    {
        std::lock_guard<std::mutex> lock(m_TargetMutex);
        fn = m_TargetFn;
        context = m_TargetContext;
    }
    if (fn != nullptr) {
        // The text form lets the target measure the line itself.
        fn(line.c_str(), withLength ? line.length() : 0, context);
    }
}

void LM_Log::SetAreaSeverityMask(int area, int mask) {
    if (area >= 0 && area < m_Count.load(std::memory_order_acquire)) {
        m_Areas[area].mask.store(static_cast<unsigned>(mask), std::memory_order_relaxed);
    }
}

void LM_Log::ActivateArea(int area, bool on) {
    if (area >= 0 && area < m_Count.load(std::memory_order_acquire)) {
        m_Areas[area].active.store(on ? 1 : 0, std::memory_order_relaxed);
    }
}

void LM_Log::SetTarget(LM_LogTarget target, void* context) {
    std::lock_guard<std::mutex> lock(m_TargetMutex);
    m_TargetFn = target;
    m_TargetContext = context;
}

LMString LM_Log::GetCurrentTime() {
    // Seconds and milliseconds come from two readings, so a line written right at a second
    // boundary may show the next second's milliseconds.
    time_t now = time(nullptr);
    struct tm local;
    localtime_r(&now, &local);
    char clock[11] = {0};
    strftime(clock, sizeof(clock), "%X", &local);
    struct timeval tv;
    gettimeofday(&tv, nullptr);
    char stamp[32];
    snprintf(stamp, sizeof(stamp), "%s.%03lu", clock,
             static_cast<unsigned long>(tv.tv_usec) / 1000);
    return LMString(stamp);
}

int LMLogArea::Id() {
    int id = m_Id.load(std::memory_order_acquire);
    if (id < 0 && LM_Log::GetInstance().RegisterArea(m_Name, id) == 0) {
        m_Id.store(id, std::memory_order_release);
    }
    return id;
}

LM_LogScope::LM_LogScope(const char* className, const char* methodName, int area)
    : m_Class(className), m_Method(methodName), m_Area(area) {
    LM_LogOutput(m_Area, LM_LOG_TRACE, "Entering %s::%s\n", m_Class.c_str(), m_Method.c_str());
}

LM_LogScope::~LM_LogScope() {
    LM_LogOutput(m_Area, LM_LOG_TRACE, "Exiting %s::%s\n", m_Class.c_str(), m_Method.c_str());
}

// ---- C-callable front ----

namespace {

void ConsoleWriter(const char* line, unsigned length, void*) {
    if (length == 0) {
        printf("%s", line);
    } else {
        fwrite(line, 1, length, stdout);
    }
}

struct FileTarget {
    FILE* stream;
    unsigned maxSize;  // 0 = unlimited
    unsigned written;
    bool wrap;
    // Lines come from several threads; the size accounting and the rewind must not interleave.
    std::mutex lock;
};

void FileWriter(const char* line, unsigned length, void* context) {
    FileTarget* target = static_cast<FileTarget*>(context);
    if (target == nullptr || target->stream == nullptr) {
        return;
    }
    std::lock_guard<std::mutex> guard(target->lock);
    if (target->maxSize == 0) {
        fwrite(line, 1, length == 0 ? strlen(line) : length, target->stream);
        return;
    }
    if (length == 0) {
        length = static_cast<unsigned>(strlen(line));
    }
    if (static_cast<unsigned long long>(target->written) + length > target->maxSize) {
        if (target->wrap) {
            // Start again at the beginning; older text past the new end stays in the file.
            rewind(target->stream);
            target->written = 0;
            if (length > target->maxSize) {
                length = target->maxSize;
            }
        } else {
            length = target->maxSize - target->written;
        }
    }
    if (length > 0) {
        fwrite(line, 1, length, target->stream);
        target->written += length;
    }
}

}  // namespace

extern "C" {

int LM_LogRegisterArea(const char* name, int* id) {
    int local = -1;
    int result = LM_Log::GetInstance().RegisterArea(name, local);
    if (id != nullptr) {
        *id = local;
    }
    return result;
}

void LM_LogOutput(int area, int severity, const char* format, ...) {
    LM_Log& log = LM_Log::GetInstance();
    // A rejected line costs no formatting.
    if (format == nullptr || !log.Accepts(area, severity)) {
        return;
    }
    char text[512] = {0};
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof(text), format, args);
    va_end(args);
    log.Output(area, severity, text);
}

void LM_LogOutputwithLen(int area, int severity, const char* text, unsigned length) {
    LM_Log::GetInstance().Output(area, severity, text, length);
}

void LM_LogSetAreaSeverityMask(int area, int mask) {
    LM_Log::GetInstance().SetAreaSeverityMask(area, mask);
}

void LM_LogActivateArea(int area, bool on) {
    LM_Log::GetInstance().ActivateArea(area, on);
}

void LM_LogSetTarget(LM_LogTarget target, void* context) {
    LM_Log::GetInstance().SetTarget(target, context);
}

int LM_LogGetConsoleTarget(LM_LogTarget* fn, void** context) {
    if (fn != nullptr) {
        *fn = ConsoleWriter;
    }
    if (context != nullptr) {
        *context = nullptr;
    }
    return 0;
}

void LM_LogReleaseConsoleTarget(LM_LogTarget, void*) {}

int LM_LogGetFileTarget(const char* path, LM_LogTarget* fn, void** context, unsigned maxSize,
                        bool wrap) {
    FILE* stream = path != nullptr ? fopen(path, "wb") : nullptr;
    if (stream == nullptr) {
        if (fn != nullptr) {
            *fn = nullptr;
        }
        if (context != nullptr) {
            *context = nullptr;
        }
        return 2;
    }
    FileTarget* target = new FileTarget;
    target->stream = stream;
    target->maxSize = maxSize;
    target->written = 0;
    target->wrap = wrap;
    if (fn != nullptr) {
        *fn = FileWriter;
    }
    if (context != nullptr) {
        *context = target;
    } else {
        fclose(stream);
        delete target;
    }
    return 0;
}

void LM_LogReleaseFileTarget(void*, void* fileTarget) {
    FileTarget* target = static_cast<FileTarget*>(fileTarget);
    if (target == nullptr) {
        return;
    }
    if (target->stream != nullptr) {
        fclose(target->stream);
    }
    delete target;
}

}  // extern "C"

namespace {

struct KnownArea {
    const char* name;
    unsigned bit;
    int* exportedId;  // the SOAP runtime's id variable, when the area has one
};

const KnownArea kKnownAreas[] = {
    {"LM_WSAE", 0x100, nullptr},
    {"LM_WSCFGAE", 0x200, nullptr},
    {"soap_proxy", 0x400, nullptr},
    {"soap_recv", 0x800, &RECV_LMLogAreaID},
    {"soap_sent", 0x1000, &SENT_LMLogAreaID},
    {"soap_test", 0x2000, &TEST_LMLogAreaID},
};

// File targets chosen by configuration live for the rest of the process. A later configuration
// does not close the one it replaces: a line being written on another thread may still hold it.
std::mutex g_FileTargetsLock;
std::vector<void*>* g_FileTargets = new std::vector<void*>();

}  // namespace

int ConfigureLogging(unsigned areaBits, unsigned targetBits, const char* directory) {
    LM_Log& log = LM_Log::GetInstance();
    for (const KnownArea& known : kKnownAreas) {
        int id = -1;
        log.RegisterArea(known.name, id);
        log.ActivateArea(id, (areaBits & known.bit) != 0);
        if (known.exportedId != nullptr && id >= 0) {
            *known.exportedId = id;
        }
    }

    LM_LogTarget fn = nullptr;
    void* context = nullptr;
    if (targetBits & 1) {
        LM_LogGetConsoleTarget(&fn, &context);
        log.SetTarget(fn, context);
        return 0;
    }
    if (targetBits & 2) {
        char path[256];
        if (directory == nullptr || directory[0] == 0) {
            snprintf(path, sizeof(path), "./log.txt");
        } else {
            snprintf(path, sizeof(path), "%s%s", directory, "log.txt");
        }
        if (LM_LogGetFileTarget(path, &fn, &context, 0, true) != 0) {
            return 2;
        }
        {
            std::lock_guard<std::mutex> lock(g_FileTargetsLock);
            g_FileTargets->push_back(context);
        }
        log.SetTarget(fn, context);
        return 0;
    }
    return 1;
}
