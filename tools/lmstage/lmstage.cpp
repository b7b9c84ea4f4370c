// lmstage: runs one UI movie against the runtime kernel with the program's extension classes.
//
// The movie developers' runner and the e2e test runner. It loads the kernel the way the launcher
// does, registers the extension classes, and runs the movie with trace output on. Exit status:
// 0 the movie ended by quitFlash or the quit key, 1 a script error or the movie could not be
// started, 124 the time-out, or the code a test movie gave lmstageQuit(code).
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "LMExtensionClasses.h"
#include "LMRuntimeKernel.h"

#ifdef LMSTAGE_TEST_CLASS
#include "LMStageTestClass.h"
#endif

namespace {

constexpr int kExitTimeout = 124;

void Usage(FILE* out) {
    std::fprintf(
        out,
        "usage: lmstage MOVIE.js [--flashvars STRING] [--timeout SECONDS] [--quit-after SECONDS]\n"
        "\n"
        "Runs one movie with the extension classes registered and trace output on.\n"
        "  --flashvars STRING    the movie's flashvars, \"k=v&k=v\"\n"
        "  --timeout SECONDS     give up after this long: exit 124 (default 60, 0 = never)\n"
        "  --quit-after SECONDS  post the quit key from another thread after this long\n"
        "Exit status: 0 quitFlash or the quit key, 1 script error or start failure,\n"
        "124 time-out, N when a test movie calls lmstageQuit(N).\n");
}

bool ParseSeconds(const char* text, double& seconds) {
    char* end = nullptr;
    seconds = std::strtod(text, &end);
    return end != text && *end == '\0' && seconds >= 0 && seconds < 1e6;
}

// Waits up to `seconds` unless the run ends first; says whether the time ran out.
class RunClock {
public:
    bool WaitFor(double seconds) {
        std::unique_lock<std::mutex> lock(m_Lock);
        return !m_Cond.wait_for(lock, std::chrono::duration<double>(seconds),
                                [this] { return m_Over; });
    }
    void End() {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Over = true;
        m_Cond.notify_all();
    }

private:
    std::mutex m_Lock;
    std::condition_variable m_Cond;
    bool m_Over = false;
};

int RunMovie(std::vector<const char*>& args, double timeout, double quitAfter) {
    ae::IAEKernel* kernel = LMAcquireKernel(static_cast<int>(args.size()), args.data());
    if (!kernel)
        return 1;
    ae::stagecraft::IStagecraft* stage = LMAcquireStagecraft();
    if (!stage) {
        std::fprintf(stderr, "lmstage: the kernel has no IStagecraft interface\n");
        LMReleaseKernel();
        return 1;
    }
    LMRegisterExtensionClasses(*stage);
#ifdef LMSTAGE_TEST_CLASS
    stage->RegisterExtensionClass(LMStageTestClassDescriptor());
#endif

    int status = 1;
    ae::stagecraft::StageWindowSet* windowSet = nullptr;
    AEError created = stage->CreateAndConfigureStageWindowSet(
        *stage, &windowSet, static_cast<int>(args.size()), args.data(), 1);
    if (created == AEError_OK && windowSet) {
        RunClock clock;
        std::thread watchdog;
        if (timeout > 0) {
            watchdog = std::thread([&clock, timeout] {
                if (clock.WaitFor(timeout)) {
                    std::fprintf(stderr, "lmstage: time-out after %g s\n", timeout);
                    std::fflush(stdout);
                    _exit(kExitTimeout);
                }
            });
        }
        std::thread quitter;
        if (quitAfter >= 0) {
            quitter = std::thread([&clock, stage, quitAfter] {
                if (clock.WaitFor(quitAfter)) {
                    stage->PostKeyPress(ae::stagecraft::kASQuitKeyCode);
                    stage->PostKeyRelease(ae::stagecraft::kASQuitKeyCode);
                }
            });
        }
        stage->RunStageWindowSet(windowSet);
        clock.End();
        if (quitter.joinable())
            quitter.join();
        if (watchdog.joinable())
            watchdog.join();

        int32_t exitCode = 0;
        switch (stage->GetRunEnd(windowSet, &exitCode)) {
            case ae::stagecraft::kASRunStopped:
            case ae::stagecraft::kASRunQuitKey:
                status = 0;
                break;
            case ae::stagecraft::kASRunExitCall:
                status = exitCode;
                break;
            default:
                status = 1;
                break;
        }
        stage->DestroyStageWindowSet(windowSet);
    } else {
        std::fprintf(stderr, "lmstage: the movie could not be started (%s)\n", created.GetName());
    }
    LMReleaseStagecraft();
    LMReleaseKernel();
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const char* movie = nullptr;
    const char* flashvars = nullptr;
    double timeout = 60;
    double quitAfter = -1;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        bool hasValue = i + 1 < argc;
        if (!std::strcmp(arg, "--help") || !std::strcmp(arg, "-h")) {
            Usage(stdout);
            return 0;
        } else if (!std::strcmp(arg, "--flashvars") && hasValue) {
            flashvars = argv[++i];
        } else if (!std::strcmp(arg, "--timeout") && hasValue) {
            if (!ParseSeconds(argv[++i], timeout)) {
                std::fprintf(stderr, "lmstage: bad --timeout value '%s'\n", argv[i]);
                return 2;
            }
        } else if (!std::strcmp(arg, "--quit-after") && hasValue) {
            if (!ParseSeconds(argv[++i], quitAfter)) {
                std::fprintf(stderr, "lmstage: bad --quit-after value '%s'\n", argv[i]);
                return 2;
            }
        } else if (arg[0] == '-' || movie) {
            std::fprintf(stderr, "lmstage: unexpected argument '%s'\n", arg);
            Usage(stderr);
            return 2;
        } else {
            movie = arg;
        }
    }
    if (!movie) {
        Usage(stderr);
        return 2;
    }

    std::vector<const char*> args = {"lmstage", "--astrace", "--lmstage-hooks"};
    if (flashvars) {
        args.push_back("--flashvars");
        args.push_back(flashvars);
    }
    args.push_back(movie);
    int status = RunMovie(args, timeout, quitAfter);
    std::fflush(stdout);
    return status;
}
