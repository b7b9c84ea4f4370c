// Protected operations on value handles: the record one engine call works on and the
// helpers the bodies share. Internal to the kernel library.
#ifndef STAGECRAFT_STAGEVALUEOPS_H
#define STAGECRAFT_STAGEVALUEOPS_H

#include <cstring>

#include "StageWindowSet.h"

namespace ae {
namespace stagecraft {
namespace valueops {
enum OperandKind { kOperandNumber, kOperandInt, kOperandBool, kOperandBytes, kOperandValue };

// One protected operation on a handle: its inputs, and what it produced.
struct ValueOp {
    StageWindowSet* windowSet;
    const StageValue* target;
    const char* name;
    OperandKind kind;
    double number;
    int32_t integer;
    bool boolean;
    const char* bytes;
    size_t size;
    const StageValue* value;
    uint32_t index;
    uint32_t argc;
    const ASValue* const* argv;
    uint32_t slot;  // handle-table slot for an object result (0: no handle wanted)
    bool stashed;   // the result was put in the handle table
    bool missing;   // no such function
    int32_t year, month, day, hour, minute, second;
    const ASShape* shape;
    const ASField* fields;
    void* maker;     // the shape's compiled maker function
    uint32_t count;  // shaped arrays: elements
};

inline ValueOp MakeOp(StageWindowSet* windowSet, const StageValue* target) {
    ValueOp op;
    std::memset(static_cast<void*>(&op), 0, sizeof op);
    op.windowSet = windowSet;
    op.target = target;
    return op;
}

inline void PushOperand(duk_context* ctx, const ValueOp& op) {
    switch (op.kind) {
        case kOperandNumber:
            duk_push_number(ctx, op.number);
            break;
        case kOperandInt:
            duk_push_int(ctx, op.integer);
            break;
        case kOperandBool:
            duk_push_boolean(ctx, op.boolean);
            break;
        case kOperandBytes:
            duk_push_lstring(ctx, op.bytes, op.size);
            break;
        case kOperandValue:
            op.value->Push(ctx);
            break;
    }
}

// Ends a body that produces a value: an object result goes into the handle table under the
// reserved slot so that its handle keeps it alive.
inline duk_ret_t ReturnResult(duk_context* ctx, ValueOp& op) {
    if (op.slot == 0)
        return 1;
    duk_int_t type = duk_get_type(ctx, -1);
    if (type == DUK_TYPE_LIGHTFUNC || type == DUK_TYPE_BUFFER) {
        duk_to_object(ctx, -1);
        type = DUK_TYPE_OBJECT;
    }
    if (type == DUK_TYPE_OBJECT) {
        duk_push_heapptr(ctx, op.windowSet->HandleTable());
        duk_dup(ctx, -2);
        duk_put_prop_index(ctx, -2, op.slot);
        duk_pop(ctx);
        op.stashed = true;
    }
    return 1;
}

inline void PushArguments(duk_context* ctx, const ValueOp& op) {
    duk_require_stack(ctx, static_cast<duk_idx_t>(op.argc) + 2);
    for (uint32_t i = 0; i < op.argc; ++i)
        static_cast<const StageValue*>(op.argv[i])->Push(ctx);
}

// Arguments must be live handles of the same window set.
inline bool ArgumentsUsable(const StageWindowSet* owner, uint32_t argc,
                            const ASValue* const* argv) {
    if (argc && !argv)
        return false;
    for (uint32_t i = 0; i < argc; ++i) {
        const auto* arg = static_cast<const StageValue*>(argv[i]);
        if (!arg || arg->Owner() != owner ||
            (arg->GetType() == kASTypeObject && !arg->IsLiveObject()))
            return false;
    }
    return true;
}

}  // namespace valueops
}  // namespace stagecraft
}  // namespace ae

#endif  // STAGECRAFT_STAGEVALUEOPS_H
