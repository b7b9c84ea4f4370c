// IStagecraft: class registration, window set life cycle and key posting.
//
// Runtime arguments: argv[0] is the program name and the last entry the movie. In between,
// --bgalpha A, --outputdims W,H, --keymap FILE and --flashvars STRING take a value;
// --astrace (trace() prints) and --lmstage-hooks (adds lmstageQuit) do not. Any other entry is
// skipped on its own, and a keymap that does not exist is ignored.
#include "Stagecraft.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "StageArgs.h"
#include "StageKernel.h"
#include "StageWindowSet.h"

namespace ae {
namespace stagecraft {

// 0, or the errno of the failure.
int ReadWholeFile(const std::string& path, std::string& contents) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return errno;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        int error = S_ISDIR(st.st_mode) ? EISDIR : errno ? errno : EINVAL;
        ::close(fd);
        return error;
    }
    contents.resize(static_cast<size_t>(st.st_size));
    size_t done = 0;
    while (done < contents.size()) {
        ssize_t n = ::read(fd, &contents[done], contents.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            int error = n < 0 ? errno : 0;
            ::close(fd);
            if (error)
                return error;
            contents.resize(done);  // shorter than it said
            return 0;
        }
        done += size_t(n);
    }
    ::close(fd);
    return 0;
}

Stagecraft::Stagecraft(StageKernel& kernel) : m_Kernel(kernel) {}

Stagecraft::~Stagecraft() {
    // Window sets left at unload go with the stage.
    for (StageWindowSet* windowSet : std::vector<StageWindowSet*>(m_WindowSets))
        DestroyStageWindowSet(windowSet);
}

AEError Stagecraft::RegisterExtensionClass(ASExtensionClassDescriptor& descriptor) {
    try {
        const char* name = descriptor.GetClassName();
        if (!name || !*name)
            return AEError_InvalidParameters;
        auto cls = std::make_unique<StageClass>();
        cls->descriptor = &descriptor;
        cls->classId = name;
        size_t dot = cls->classId.rfind('.');
        cls->shortName = dot == std::string::npos ? cls->classId : cls->classId.substr(dot + 1);
        if (cls->shortName.empty())
            return AEError_InvalidParameters;
        descriptor.GetMethods(cls->methods);
        std::lock_guard<std::mutex> lock(m_RegistryMutex);
        m_Classes.push_back(std::move(cls));
        return AEError_OK;
    } catch (const std::bad_alloc&) {
        return AEError_NoMemory;
    } catch (...) {
        return AEError_Generic;
    }
}

AEError Stagecraft::CreateAndConfigureStageWindowSet(IStagecraft& self, StageWindowSet** windowSet,
                                                     int argc, const char* const* argv,
                                                     int32_t flags) {
    (void)self;
    (void)flags;  // window sets always run on the thread that calls RunStageWindowSet
    if (!windowSet)
        return AEError_InvalidParameters;
    *windowSet = nullptr;
    try {
        StageOptions options;
        if (!ParseStageArguments(argc, argv, options)) {
            std::fprintf(stderr, "stage: no movie given (usage: %s [options] movie)\n",
                         options.programName.empty() ? "stage" : options.programName.c_str());
            return AEError_Usage;
        }
        std::string path = ResolveMoviePath(options.moviePath);
        std::string source;
        if (int error = ReadWholeFile(path, source)) {
            std::fprintf(stderr, "stage: cannot open movie %s: %s\n", path.c_str(),
                         std::strerror(error));
            return AEError_NotFound;
        }
        std::vector<const StageClass*> classes;
        {
            std::lock_guard<std::mutex> lock(m_RegistryMutex);
            for (const auto& cls : m_Classes)
                classes.push_back(cls.get());
        }
        std::unique_ptr<StageWindowSet> made(
            new StageWindowSet(*this, std::move(options), std::move(classes)));
        AEError opened = made->Open(path, source);
        if (opened != AEError_OK)
            return opened;
        m_WindowSets.push_back(made.get());
        std::lock_guard<std::mutex> lock(m_PostMutex);
        m_Current = made.get();
        m_Current->SetAcceptsKeysLocked(true);
        *windowSet = made.release();
        return AEError_OK;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "stage: out of memory creating a window set\n");
        return AEError_NoMemory;
    } catch (...) {
        std::fprintf(stderr, "stage: cannot create a window set\n");
        return AEError_Generic;
    }
}

AEError Stagecraft::RunStageWindowSet(StageWindowSet* windowSet) {
    if (!windowSet)
        return AEError_InvalidParameters;
    try {
        return windowSet->Run();
    } catch (...) {
        std::fprintf(stderr, "stage: the run failed with an exception\n");
        return AEError_Generic;
    }
}

void Stagecraft::DetachLocked(StageWindowSet* windowSet) {
    windowSet->SetAcceptsKeysLocked(false);
    if (m_Current == windowSet)
        m_Current = nullptr;
}

void Stagecraft::DestroyStageWindowSet(StageWindowSet* windowSet) {
    if (!windowSet)
        return;
    {
        // Key posts never see it again.
        std::lock_guard<std::mutex> lock(m_PostMutex);
        DetachLocked(windowSet);
    }
    m_WindowSets.erase(std::remove(m_WindowSets.begin(), m_WindowSets.end(), windowSet),
                       m_WindowSets.end());
    delete windowSet;
}

ASRunEnd Stagecraft::GetRunEnd(StageWindowSet* windowSet, int32_t* exitCode) {
    if (!windowSet) {
        if (exitCode)
            *exitCode = 0;
        return kASRunNotRun;
    }
    return windowSet->GetRunEnd(exitCode);
}

void Stagecraft::PostKey(uint32_t keyCode, bool press) {
    std::lock_guard<std::mutex> lock(m_PostMutex);
    if (m_Current && m_Current->AcceptsKeysLocked())
        m_Current->QueueKeyLocked(keyCode, press);
}

void Stagecraft::PostKeyPress(uint32_t keyCode) {
    PostKey(keyCode, true);
}

void Stagecraft::PostKeyRelease(uint32_t keyCode) {
    PostKey(keyCode, false);
}

}  // namespace stagecraft
}  // namespace ae
