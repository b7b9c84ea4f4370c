// The program's entry: the UI variant, the runtime's argument vector, and one run of the movie
// with the exit path that tells the host why the program stops.
#ifndef LM_LAUNCHER_H
#define LM_LAUNCHER_H

#include <array>
#include <atomic>

// Every launcher and host-IPC line goes to standard output, flushed at once.
void LMLauncherPrint(const char* format, ...) __attribute__((format(printf, 1, 2)));

// One row of the UI-variant table.
struct LMUIVariant {
    const char* flashvars;  // the default flashvars
    const char* movie;      // the UI movie
};

constexpr int kLMUIVariantCount = 6;

// The row of a UI type; null outside 0 to 5.
const LMUIVariant* LMFindUIVariant(int uiType);

// The first character of the last argument as a digit (argv[0] when there is no other). May lie
// outside 0 to 5, or even 0 to 9.
int LMUITypeFromCommandLine(int argc, const char* const* argv);

constexpr int kLMRuntimeArgc = 11;
using LMRuntimeArguments = std::array<const char*, kLMRuntimeArgc>;

// The runtime's argument vector: `flashvars` (LM_FLASHVARS) replaces the row's default when it
// is non-null; the movie is always the row's.
LMRuntimeArguments LMBuildRuntimeArguments(const LMUIVariant& variant, const char* flashvars);

// Logs the count, then waits that many microseconds (the line says "ms"; hosts read it as is).
void LMSleep(int count);

// Set when the exit routine is to send the pre-exit key before the quit key. Nothing in the
// program sets it.
extern std::atomic<bool> g_LMPreExitKey;

// Loads the runtime, runs the movie and takes the exit path. The vector must stay valid.
void LMRunRuntime(int argc, const char* const* argv);

// The whole program: start-up, host link, run, exit path. Returns 0.
int LMLauncherMain(int argc, const char* const* argv);

#endif  // LM_LAUNCHER_H
