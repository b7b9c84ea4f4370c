// The asynchronous operations of LMWSLibAE, one table row each: the parameter keys the handler
// reads from the movie's parameter object, the client call the worker makes and the kind of
// record it leaves behind.
#ifndef LM_WSLIBAE_OPERATIONS_H
#define LM_WSLIBAE_OPERATIONS_H

#include <vector>

#include "LMWSLibAE.h"

// kLMWSIntList: an Array whose elements are read as integers.
enum LMWSParamType { kLMWSInt, kLMWSString, kLMWSBool, kLMWSIntList };

struct LMWSParam {
    const char* key;
    LMWSParamType type;
};

// One parameter value as the handler read it.
struct LMWSArg {
    int32_t number = 0;  // integers and booleans (0 or 1)
    LMString text;
    std::vector<int32_t> list;
};

enum { kLMWSMaxParams = 5 };

// The set-up keys of init, read in this order (LMWSLibAE.cpp names them).
enum { kLMWSInitKeyCount = 21 };

struct LMWSLibAE::SetupParams {
    LMWSArg args[kLMWSInitKeyCount];
};

struct LMWSLibAE::Operation {
    const char* name;
    uint32_t kind;
    LMWSParam params[kLMWSMaxParams];  // ends at the first null key
    // `flags` holds the per-title flags a kind 27 record points to; it lives in the instance.
    LM_WS_Status (*call)(LM_WS_Handle* handle, const LMWSArg* args, LMWSRecord& record,
                         std::vector<uint8_t>& flags);
};

struct LMWSLibAE::Call {
    LMWSLibAE* owner = nullptr;
    const Operation* operation = nullptr;
    LMWSArg args[kLMWSMaxParams];
};

// The row of an asynchronous method; null for a method that is not asynchronous or not
// available yet.
const LMWSLibAE::Operation* LMWSFindOperation(const char* method);

// True when records of `kind` own memory that LM_WS_FreeResult releases.
bool LMWSKindOwnsMemory(uint32_t kind);

#endif  // LM_WSLIBAE_OPERATIONS_H
