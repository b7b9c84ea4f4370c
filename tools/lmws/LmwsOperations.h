// The operations lmws offers: one table row per LM_WS_* function, holding the name (the function's
// name without the prefix), its arguments in the function's order for --help and for checking
// the command line, and a runner that makes the call and turns the record into JSON.
#ifndef LMWS_OPERATIONS_H
#define LMWS_OPERATIONS_H

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "LM_WS.h"

// Insertion order is kept so that a result's fields come out in the order the service sends them.
using LmwsJson = nlohmann::ordered_json;

// What a command-line word of an operation must be.
enum class LmwsArgKind {
    Int,      // a 32-bit signed number, decimal or 0x hexadecimal, within the row's range
    UInt,     // a 32-bit unsigned number, decimal or 0x hexadecimal (a bit mask)
    Flag,     // 0, 1, false or true, for a uint8_t flag
    Text,     // any text, "" included (passed on as "", never as absent)
    IntList,  // one or more Int values separated by commas: "12,14,3"
};

struct LmwsParam {
    const char* name;
    LmwsArgKind kind;
    // The values an Int may take: the whole int32_t range unless the function accepts fewer
    // (an enumeration); the other kinds ignore them.
    int32_t min;
    int32_t max;
};

// One parsed argument; only the member its kind names is set.
struct LmwsArg {
    int32_t number = 0;           // Int
    uint32_t unsignedNumber = 0;  // UInt
    uint8_t flag = 0;             // Flag: 0 or 1
    std::string text;             // Text
    std::vector<int32_t> list;    // IntList
};
using LmwsArgs = std::vector<LmwsArg>;

// Calls the operation on a set-up handle (functions that take no handle ignore it) with arguments
// that match the row's parameters, fills `result` with the JSON form of the answer (also on
// failure: what the record then holds) and returns the operation's status.
using LmwsRunner = LM_WS_Status (*)(LM_WS_Handle* handle, const LmwsArgs& args, LmwsJson& result);

struct LmwsOperation {
    const char* name;
    std::vector<LmwsParam> args;
    const char* help;  // one line for --help
    LmwsRunner run;
};

// Every operation, in the order --help lists them.
const std::vector<LmwsOperation>& LmwsOperationTable();

// The row named `name` (exact, case-sensitive), or null.
const LmwsOperation* LmwsFindOperation(const std::string& name);

#endif  // LMWS_OPERATIONS_H
