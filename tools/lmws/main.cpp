// lmws, the integrators' command-line client: sets up one client from the command line's
// options, runs its operations in order and prints one JSON line per operation on stdout.
// `lmws --help` describes the command line.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "LM_WS.h"
#include "LmwsCommandLine.h"
#include "LmwsRecordJson.h"

namespace {

// The client handle, torn down on every way out.
struct Client {
    LM_WS_Handle handle{};
    Client() = default;
    ~Client() { LM_WS_Teardown(&handle); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
};

// Writes one line and flushes it, so that a reader sees each operation as it ends.
bool Emit(FILE* json, const std::string& line) {
    return fputs(line.c_str(), json) >= 0 && fputc('\n', json) != EOF && fflush(json) == 0;
}

// Sets up the client and runs the calls; the process's exit status.
int Run(const LmwsCommandLine& command, FILE* json) {
    Client client;
    const LM_WS_SetupParams params = command.settings.Params();
    LM_WS_Status status = LM_WS_Setup(&client.handle, &params);
    if (status != LM_WS_OK) {
        Emit(json, LmwsOutputLine("Setup", status, LmwsJson::object()));
        return 1;
    }
    int exitStatus = 0;
    for (const LmwsCall& call : command.calls) {
        LmwsJson result;
        status = call.operation->run(&client.handle, call.args, result);
        if (status != LM_WS_OK) {
            exitStatus = 1;
        }
        if (!Emit(json, LmwsOutputLine(call.operation->name, status, result))) {
            perror("lmws: writing to stdout");
            return 1;
        }
    }
    return exitStatus;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        LmwsCommandLine command;
        std::string error =
            LmwsParseCommandLine(std::vector<std::string>(argv + 1, argv + argc), command);
        if (!error.empty()) {
            fprintf(stderr, "lmws: %s\n(lmws --help lists the options and operations)\n",
                    error.c_str());
            return 2;
        }
        if (command.help) {
            fputs(LmwsHelpText().c_str(), stdout);
            return 0;
        }

        // Callers read stdout line by line as JSON, but the client library writes to stdout as
        // well (the User-Agent banner at set-up, console log lines). The JSON goes to a duplicate
        // of the original stdout; fd 1 is pointed at stderr (with --quiet at /dev/null) for the
        // rest of the process, so nothing the library prints can land between the lines.
        fflush(stdout);
        int jsonFd = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
        int sink = command.quiet ? open("/dev/null", O_WRONLY | O_CLOEXEC) : STDERR_FILENO;
        if (jsonFd < 0 || sink < 0 || dup2(sink, STDOUT_FILENO) < 0) {
            perror("lmws: redirecting stdout");
            return 1;
        }
        if (sink != STDERR_FILENO) {
            close(sink);
        }
        FILE* json = fdopen(jsonFd, "w");
        if (json == nullptr) {
            perror("lmws: opening stdout");
            return 1;
        }
        int exitStatus = Run(command, json);
        if (fclose(json) != 0 && exitStatus == 0) {
            perror("lmws: writing to stdout");
            exitStatus = 1;
        }
        return exitStatus;
    } catch (const std::exception& e) {
        fprintf(stderr, "lmws: %s\n", e.what());
        return 1;
    }
}
