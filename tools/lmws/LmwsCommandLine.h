// lmws's command line: set-up options (one per LM_WS_SetupParams field, with defaults that work
// against a configured simulator), then operations with their arguments separated by "--".
//
//   lmws [set-up options] OPERATION [ARGS...] [-- OPERATION [ARGS...]]...
//
// The whole line is checked before anything runs, so a usage error never reaches the network.
#ifndef LMWS_COMMAND_LINE_H
#define LMWS_COMMAND_LINE_H

#include <cstdint>
#include <string>
#include <vector>

#include "LM_WS.h"
#include "LmwsOperations.h"

// The set-up options' values. Texts an option leaves empty are passed as "" (the library reads
// "" as absent for its optional texts).
struct LmwsSettings {
    std::string apiKey = "lmws";
    std::string authToken;
    std::string deviceId = "lmws-device";
    int64_t deviceType = 1;
    std::string user = "demo@lumora.example";
    std::string password = "demo";
    std::string baseUrl;
    int64_t type = LM_WS_ContentGeneral;
    int64_t env = 2;  // production
    int64_t cacheType = 0;
    int64_t cacheData = 7;  // service answers, box art, user data
    int64_t cacheLimit = 0;
    std::string cachePath;
    std::string proxyHost;
    int64_t proxyPort = 0;
    std::string proxyUser;
    std::string proxyPassword;
    int64_t accessType = 0;  // ask the service
    std::string revision;
    std::string firmware;
    std::string model;

    // The library's parameter block; its texts point into this object.
    LM_WS_SetupParams Params() const;
};

struct LmwsCall {
    const LmwsOperation* operation;
    LmwsArgs args;
};

struct LmwsCommandLine {
    LmwsSettings settings;
    bool help = false;
    bool quiet = false;
    std::vector<LmwsCall> calls;
};

// Parses the words after the program name into `out`. Returns "" when the line is usable (a
// --help line needs nothing else), else one line naming the bad argument and what is wrong
// with it.
std::string LmwsParseCommandLine(const std::vector<std::string>& words, LmwsCommandLine& out);

// The --help text: every option with its default, every operation with its arguments.
std::string LmwsHelpText();

#endif  // LMWS_COMMAND_LINE_H
