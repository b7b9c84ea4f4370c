// Value handles and the value factory of the context.
//
// Every operation that can run script code (getters, setters, proxies, toString, calls) or
// allocate in the engine runs as one protected body (duk_safe_call) so that an engine error
// never unwinds through C++ frames. Script errors from getters, setters and calls are reported
// by the stage (the run ends with a script error); failed conversions only return false, NaN
// or 0.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "StageWindowSet.h"

namespace ae {
namespace stagecraft {

namespace {

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
};

ValueOp MakeOp(StageWindowSet* windowSet, const StageValue* target) {
    ValueOp op;
    std::memset(static_cast<void*>(&op), 0, sizeof op);
    op.windowSet = windowSet;
    op.target = target;
    return op;
}

void PushOperand(duk_context* ctx, const ValueOp& op) {
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
duk_ret_t ReturnResult(duk_context* ctx, ValueOp& op) {
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

void PushArguments(duk_context* ctx, const ValueOp& op) {
    duk_require_stack(ctx, static_cast<duk_idx_t>(op.argc) + 2);
    for (uint32_t i = 0; i < op.argc; ++i)
        static_cast<const StageValue*>(op.argv[i])->Push(ctx);
}

duk_ret_t PutBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    PushOperand(ctx, op);
    duk_put_prop_string(ctx, -2, op.name);
    return 0;
}

duk_ret_t GetBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    duk_get_prop_string(ctx, -1, op.name);
    return ReturnResult(ctx, op);
}

duk_ret_t GetIndexBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    duk_get_prop_index(ctx, -1, op.index);
    return ReturnResult(ctx, op);
}

duk_ret_t HasBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    duk_push_boolean(ctx, duk_has_prop_string(ctx, -1, op.name));
    return 1;
}

duk_ret_t LengthBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    duk_size_t length = duk_get_length(ctx, -1);
    duk_push_number(ctx, static_cast<double>(length));
    return 1;
}

duk_ret_t CallMethodBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    duk_get_prop_string(ctx, -1, op.name);
    if (!duk_is_callable(ctx, -1)) {
        op.missing = true;
        return 0;
    }
    duk_dup(ctx, -2);
    PushArguments(ctx, op);
    duk_call_method(ctx, static_cast<duk_idx_t>(op.argc));
    return ReturnResult(ctx, op);
}

duk_ret_t CallBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    if (!duk_is_callable(ctx, -1)) {
        op.missing = true;
        return 0;
    }
    duk_push_undefined(ctx);
    PushArguments(ctx, op);
    duk_call_method(ctx, static_cast<duk_idx_t>(op.argc));
    return ReturnResult(ctx, op);
}

duk_ret_t NewBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_get_global_string(ctx, op.name);
    if (!duk_is_constructable(ctx, -1)) {
        op.missing = true;
        return 0;
    }
    // new Object() and new Array() of the built-in constructors, the common case when native
    // code builds results, need no constructor call.
    if (op.argc == 0) {
        void* constructor = duk_get_heapptr(ctx, -1);
        if (constructor == op.windowSet->BuiltinObject()) {
            duk_push_object(ctx);
            return ReturnResult(ctx, op);
        }
        if (constructor == op.windowSet->BuiltinArray()) {
            duk_push_array(ctx);
            return ReturnResult(ctx, op);
        }
    }
    PushArguments(ctx, op);
    duk_new(ctx, static_cast<duk_idx_t>(op.argc));
    return ReturnResult(ctx, op);
}

duk_ret_t NewDateBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_get_global_string(ctx, "Date");
    duk_push_int(ctx, op.year);
    duk_push_int(ctx, op.month);
    duk_push_int(ctx, op.day);
    duk_push_int(ctx, op.hour);
    duk_push_int(ctx, op.minute);
    duk_push_int(ctx, op.second);
    duk_new(ctx, 6);
    return ReturnResult(ctx, op);
}

duk_ret_t IsDateBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    duk_get_global_string(ctx, "Date");
    duk_push_boolean(ctx, duk_instanceof(ctx, -2, -1));
    return 1;
}

duk_ret_t CloneBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_heapptr(ctx, op.target->HeapPtr());
    return ReturnResult(ctx, op);
}

duk_ret_t ToStringBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    op.target->Push(ctx);
    duk_to_string(ctx, -1);
    return 1;
}

duk_ret_t ToNumberBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    op.target->Push(ctx);
    duk_to_number(ctx, -1);
    return 1;
}

}  // namespace

// --- the handle ---

StageValue::~StageValue() {
    FreeBytes();
}

bool StageValue::AssignBytes(const char* bytes, size_t size) {
    FreeBytes();
    if (size >= sizeof m_Inline) {
        auto* copy = static_cast<char*>(std::malloc(size + 1));
        if (!copy)
            return false;
        m_Bytes = copy;
    }
    if (size)
        std::memcpy(m_Bytes, bytes, size);
    m_Bytes[size] = '\0';
    m_Size = size;
    return true;
}

void StageValue::FreeBytes() {
    if (m_Bytes != m_Inline)
        std::free(m_Bytes);
    m_Bytes = m_Inline;
    m_Size = 0;
}

bool StageValue::Usable() const {
    return m_Owner && m_Owner->EngineUsable();
}

void StageValue::Push(duk_context* ctx) const {
    switch (m_Type) {
        case kASTypeUndefined:
            duk_push_undefined(ctx);
            break;
        case kASTypeNull:
            duk_push_null(ctx);
            break;
        case kASTypeBoolean:
            duk_push_boolean(ctx, m_Bool);
            break;
        case kASTypeNumber:
            duk_push_number(ctx, m_Number);
            break;
        case kASTypeString:
            duk_push_lstring(ctx, m_Bytes, m_Size);
            break;
        case kASTypeObject:
            duk_push_heapptr(ctx, m_Object);
            break;
    }
}

ASValueType StageValue::GetType() const {
    return m_Owner ? m_Type : kASTypeUndefined;
}

bool StageValue::ToBoolean() const {
    switch (GetType()) {
        case kASTypeBoolean:
            return m_Bool;
        case kASTypeNumber:
            return m_Number != 0 && !std::isnan(m_Number);
        case kASTypeString:
            return m_Size != 0;
        case kASTypeObject:
            return true;
        default:
            return false;
    }
}

double StageValue::ToNumber() const {
    switch (GetType()) {
        case kASTypeUndefined:
            return std::numeric_limits<double>::quiet_NaN();
        case kASTypeNull:
            return 0;
        case kASTypeBoolean:
            return m_Bool ? 1 : 0;
        case kASTypeNumber:
            return m_Number;
        default:
            break;
    }
    if (!Usable())
        return std::numeric_limits<double>::quiet_NaN();
    ValueOp op = MakeOp(m_Owner, this);
    if (!m_Owner->Protected(ToNumberBody, &op, false))
        return std::numeric_limits<double>::quiet_NaN();
    double number = duk_get_number(m_Owner->Ctx(), -1);
    duk_pop(m_Owner->Ctx());
    return number;
}

double StageValue::ToInt32Of(double number) {
    if (!std::isfinite(number))
        return 0;
    double wrapped = std::fmod(std::trunc(number), 4294967296.0);
    if (wrapped < 0)
        wrapped += 4294967296.0;
    if (wrapped >= 2147483648.0)
        wrapped -= 4294967296.0;
    return wrapped;
}

int32_t StageValue::ToInt32() const {
    return static_cast<int32_t>(ToInt32Of(ToNumber()));
}

bool StageValue::ToString(AEString& out) const {
    switch (GetType()) {
        case kASTypeUndefined:
            return m_Owner && out.Assign("undefined");
        case kASTypeNull:
            return out.Assign("null");
        case kASTypeBoolean:
            return out.Assign(m_Bool ? "true" : "false");
        case kASTypeString:
            return out.Assign(m_Bytes, m_Size);
        default:
            break;
    }
    if (!Usable())
        return false;
    ValueOp op = MakeOp(m_Owner, this);
    if (!m_Owner->Protected(ToStringBody, &op, false))
        return false;
    duk_size_t size = 0;
    const char* text = duk_get_lstring(m_Owner->Ctx(), -1, &size);
    bool ok = out.Assign(text, size);
    duk_pop(m_Owner->Ctx());
    return ok;
}

ASObject* StageValue::AsObject() {
    return GetType() == kASTypeObject ? this : nullptr;
}

ASValue* StageValue::Clone() const {
    if (!m_Owner)
        return nullptr;
    if (m_Type != kASTypeObject) {
        StageValue* copy = m_Owner->AllocValue();
        if (!copy)
            return nullptr;
        copy->m_Type = m_Type;
        if (m_Type == kASTypeBoolean)
            copy->m_Bool = m_Bool;
        else if (m_Type == kASTypeNumber)
            copy->m_Number = m_Number;
        if (m_Type == kASTypeString && !copy->AssignBytes(m_Bytes, m_Size)) {
            copy->Release();
            return nullptr;
        }
        return copy;
    }
    if (!Usable())
        return nullptr;
    ValueOp op = MakeOp(m_Owner, this);
    op.slot = m_Owner->ReserveSlot();
    if (!m_Owner->Protected(CloneBody, &op, false)) {
        m_Owner->UnreserveSlot(op.slot);
        return nullptr;
    }
    return m_Owner->AdoptTop(m_Owner->Ctx(), op.slot, op.stashed);
}

void StageValue::Release() {
    if (m_Owner)
        m_Owner->FreeValue(this);
    else
        delete this;
}

bool StageValue::IsArray() const {
    if (!IsLiveObject() || !Usable())
        return false;
    duk_context* ctx = m_Owner->Ctx();
    duk_push_heapptr(ctx, m_Object);
    bool array = duk_is_array(ctx, -1);
    duk_pop(ctx);
    return array;
}

bool StageValue::IsFunction() const {
    if (!IsLiveObject() || !Usable())
        return false;
    duk_context* ctx = m_Owner->Ctx();
    duk_push_heapptr(ctx, m_Object);
    bool function = duk_is_function(ctx, -1);
    duk_pop(ctx);
    return function;
}

bool StageValue::IsDate() const {
    if (!IsLiveObject() || !Usable())
        return false;
    ValueOp op = MakeOp(m_Owner, this);
    if (!m_Owner->Protected(IsDateBody, &op, false))
        return false;
    bool date = duk_get_boolean(m_Owner->Ctx(), -1);
    duk_pop(m_Owner->Ctx());
    return date;
}

ASValue* StageValue::GetProperty(const char* name) {
    if (!name || !IsLiveObject() || !Usable())
        return nullptr;
    ValueOp op = MakeOp(m_Owner, this);
    op.name = name;
    op.slot = m_Owner->ReserveSlot();
    if (!m_Owner->Protected(GetBody, &op, true)) {
        m_Owner->UnreserveSlot(op.slot);
        return nullptr;
    }
    return m_Owner->AdoptTop(m_Owner->Ctx(), op.slot, op.stashed);
}

ASValue* StageValue::GetElement(uint32_t index) {
    if (!IsLiveObject() || !Usable())
        return nullptr;
    ValueOp op = MakeOp(m_Owner, this);
    op.index = index;
    op.slot = m_Owner->ReserveSlot();
    if (!m_Owner->Protected(GetIndexBody, &op, true)) {
        m_Owner->UnreserveSlot(op.slot);
        return nullptr;
    }
    return m_Owner->AdoptTop(m_Owner->Ctx(), op.slot, op.stashed);
}

bool StageValue::HasProperty(const char* name) {
    if (!name || !IsLiveObject() || !Usable())
        return false;
    ValueOp op = MakeOp(m_Owner, this);
    op.name = name;
    if (!m_Owner->Protected(HasBody, &op, true))
        return false;
    bool has = duk_get_boolean(m_Owner->Ctx(), -1);
    duk_pop(m_Owner->Ctx());
    return has;
}

uint32_t StageValue::GetLength() {
    if (!IsLiveObject() || !Usable())
        return 0;
    ValueOp op = MakeOp(m_Owner, this);
    if (!m_Owner->Protected(LengthBody, &op, true))
        return 0;
    double length = duk_get_number(m_Owner->Ctx(), -1);
    duk_pop(m_Owner->Ctx());
    return length > 4294967295.0 ? UINT32_MAX : static_cast<uint32_t>(length);
}

// The property-setting path is the hot one when native code builds results: one protected
// body, no allocation, the name handed to the engine as it is.
#define STAGE_PUT(setup)                         \
    if (!name || !IsLiveObject() || !Usable())   \
        return false;                            \
    ValueOp op = MakeOp(m_Owner, this);          \
    op.name = name;                              \
    setup;                                       \
    if (!m_Owner->Protected(PutBody, &op, true)) \
        return false;                            \
    duk_pop(m_Owner->Ctx());                     \
    return true

bool StageValue::SetProperty(const char* name, const ASValue& value) {
    const auto& handle = static_cast<const StageValue&>(value);
    if (handle.m_Owner != m_Owner || (handle.m_Type == kASTypeObject && !handle.m_Object))
        return false;
    STAGE_PUT((op.kind = kOperandValue, op.value = &handle));
}

bool StageValue::SetNumber(const char* name, double value) {
    STAGE_PUT((op.kind = kOperandNumber, op.number = value));
}

bool StageValue::SetInt(const char* name, int32_t value) {
    STAGE_PUT((op.kind = kOperandInt, op.integer = value));
}

bool StageValue::SetBoolean(const char* name, bool value) {
    STAGE_PUT((op.kind = kOperandBool, op.boolean = value));
}

bool StageValue::SetString(const char* name, const char* value) {
    STAGE_PUT((op.kind = kOperandBytes, op.bytes = value ? value : "",
               op.size = value ? std::strlen(value) : 0));
}

bool StageValue::SetString(const char* name, const char* bytes, size_t size) {
    STAGE_PUT((op.kind = kOperandBytes, op.bytes = bytes ? bytes : "", op.size = bytes ? size : 0));
}

#undef STAGE_PUT

namespace {

// Arguments must be live handles of the same window set.
bool ArgumentsUsable(const StageWindowSet* owner, uint32_t argc, const ASValue* const* argv) {
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

}  // namespace

bool StageValue::CallMethod(const char* name, uint32_t argc, const ASValue* const* argv,
                            ASValue** result) {
    if (result)
        *result = nullptr;
    if (!name || !IsLiveObject() || !Usable() || !ArgumentsUsable(m_Owner, argc, argv))
        return false;
    ValueOp op = MakeOp(m_Owner, this);
    op.name = name;
    op.argc = argc;
    op.argv = argv;
    op.slot = result ? m_Owner->ReserveSlot() : 0;
    if (!m_Owner->Protected(CallMethodBody, &op, true) || op.missing) {
        if (op.missing)
            duk_pop(m_Owner->Ctx());
        if (op.slot)
            m_Owner->UnreserveSlot(op.slot);
        return false;
    }
    if (result)
        *result = m_Owner->AdoptTop(m_Owner->Ctx(), op.slot, op.stashed);
    else
        duk_pop(m_Owner->Ctx());
    return true;
}

bool StageValue::Call(uint32_t argc, const ASValue* const* argv, ASValue** result) {
    if (result)
        *result = nullptr;
    if (!IsLiveObject() || !Usable() || !ArgumentsUsable(m_Owner, argc, argv))
        return false;
    ValueOp op = MakeOp(m_Owner, this);
    op.argc = argc;
    op.argv = argv;
    op.slot = result ? m_Owner->ReserveSlot() : 0;
    if (!m_Owner->Protected(CallBody, &op, true) || op.missing) {
        if (op.missing)
            duk_pop(m_Owner->Ctx());
        if (op.slot)
            m_Owner->UnreserveSlot(op.slot);
        return false;
    }
    if (result)
        *result = m_Owner->AdoptTop(m_Owner->Ctx(), op.slot, op.stashed);
    else
        duk_pop(m_Owner->Ctx());
    return true;
}

// --- the window set's side of the handles ---

StageValue* StageWindowSet::AllocValue() {
    StageValue* value = m_FreeValues;
    if (value) {
        m_FreeValues = value->m_Next;
        --m_FreeCount;
    } else {
        value = new (std::nothrow) StageValue();
        if (!value)
            return nullptr;
    }
    value->m_Owner = this;
    value->m_Type = kASTypeUndefined;
    value->m_Borrowed = false;
    value->m_Slot = 0;
    value->m_Object = nullptr;
    value->m_Prev = nullptr;
    value->m_Next = m_LiveValues;
    if (m_LiveValues)
        m_LiveValues->m_Prev = value;
    m_LiveValues = value;
    return value;
}

void StageWindowSet::FreeValue(StageValue* value) {
    if (value->m_Prev)
        value->m_Prev->m_Next = value->m_Next;
    else
        m_LiveValues = value->m_Next;
    if (value->m_Next)
        value->m_Next->m_Prev = value->m_Prev;
    if (value->m_Slot)
        ForgetSlot(value->m_Slot);
    value->FreeBytes();
    value->m_Slot = 0;
    value->m_Owner = nullptr;
    value->m_Prev = nullptr;
    if (m_FreeCount >= kMaxFreeValues) {
        delete value;
        return;
    }
    value->m_Next = m_FreeValues;
    m_FreeValues = value;
    ++m_FreeCount;
}

uint32_t StageWindowSet::ReserveSlot() {
    if (!m_FreeSlots.empty()) {
        uint32_t slot = m_FreeSlots.back();
        m_FreeSlots.pop_back();
        return slot;
    }
    return m_NextSlot++;
}

void StageWindowSet::UnreserveSlot(uint32_t slot) {
    if (slot == 0)
        return;
    try {
        m_FreeSlots.push_back(slot);
    } catch (...) {
        // The slot is not used again; nothing else is lost.
    }
}

void StageWindowSet::ForgetSlot(uint32_t slot) {
    if (EngineUsable()) {
        duk_push_heapptr(m_Ctx, m_HandleTable);
        duk_del_prop_index(m_Ctx, -1, slot);
        duk_pop(m_Ctx);
    }
    UnreserveSlot(slot);
}

StageValue* StageWindowSet::BorrowValue(duk_context* ctx, duk_idx_t idx) {
    StageValue* value = AllocValue();
    if (!value)
        return nullptr;
    switch (duk_get_type(ctx, idx)) {
        case DUK_TYPE_NULL:
            value->m_Type = kASTypeNull;
            break;
        case DUK_TYPE_BOOLEAN:
            value->m_Type = kASTypeBoolean;
            value->m_Bool = duk_get_boolean(ctx, idx);
            break;
        case DUK_TYPE_NUMBER:
            value->m_Type = kASTypeNumber;
            value->m_Number = duk_get_number(ctx, idx);
            break;
        case DUK_TYPE_STRING: {
            duk_size_t size = 0;
            const char* bytes = duk_get_lstring(ctx, idx, &size);
            if (!value->AssignBytes(bytes, size)) {
                FreeValue(value);
                return nullptr;
            }
            value->m_Type = kASTypeString;
            break;
        }
        case DUK_TYPE_OBJECT:
            value->m_Type = kASTypeObject;
            value->m_Object = duk_get_heapptr(ctx, idx);
            value->m_Borrowed = true;
            break;
        default:
            break;  // undefined, and what the script cannot hold (pointers)
    }
    return value;
}

StageValue* StageWindowSet::AdoptTop(duk_context* ctx, uint32_t slot, bool stashed) {
    StageValue* value = nullptr;
    if (stashed) {
        value = AllocValue();
        if (value) {
            value->m_Type = kASTypeObject;
            value->m_Object = duk_get_heapptr(ctx, -1);
            value->m_Slot = slot;
        } else {
            ForgetSlot(slot);
        }
    } else {
        UnreserveSlot(slot);
        if (duk_get_type(ctx, -1) != DUK_TYPE_OBJECT) {
            value = BorrowValue(ctx, -1);  // a primitive: held in the handle
            if (value)
                value->m_Borrowed = false;
        }
    }
    duk_pop(ctx);
    return value;
}

// --- the factory ---

ASValue* StageWindowSet::NewUndefined() {
    return EngineUsable() ? AllocValue() : nullptr;
}

ASValue* StageWindowSet::NewNull() {
    StageValue* value = EngineUsable() ? AllocValue() : nullptr;
    if (value)
        value->m_Type = kASTypeNull;
    return value;
}

ASValue* StageWindowSet::NewBoolean(bool flag) {
    StageValue* value = EngineUsable() ? AllocValue() : nullptr;
    if (value) {
        value->m_Type = kASTypeBoolean;
        value->m_Bool = flag;
    }
    return value;
}

ASValue* StageWindowSet::NewNumber(double number) {
    StageValue* value = EngineUsable() ? AllocValue() : nullptr;
    if (value) {
        value->m_Type = kASTypeNumber;
        value->m_Number = number;
    }
    return value;
}

ASValue* StageWindowSet::NewInt(int32_t number) {
    return NewNumber(number);
}

ASValue* StageWindowSet::NewString(const char* text) {
    return NewString(text ? text : "", text ? std::strlen(text) : 0);
}

ASValue* StageWindowSet::NewString(const char* bytes, size_t size) {
    StageValue* value = EngineUsable() ? AllocValue() : nullptr;
    if (!value)
        return nullptr;
    if (!value->AssignBytes(bytes ? bytes : "", bytes ? size : 0)) {
        FreeValue(value);
        return nullptr;
    }
    value->m_Type = kASTypeString;
    return value;
}

ASObject* StageWindowSet::NewInstance(const char* className, uint32_t argc,
                                      const ASValue* const* argv) {
    if (!className || !EngineUsable() || !ArgumentsUsable(this, argc, argv))
        return nullptr;
    ValueOp op = MakeOp(this, nullptr);
    op.name = className;
    op.argc = argc;
    op.argv = argv;
    op.slot = ReserveSlot();
    if (!Protected(NewBody, &op, true) || op.missing) {
        if (op.missing)
            duk_pop(m_Ctx);
        UnreserveSlot(op.slot);
        return nullptr;
    }
    StageValue* value = AdoptTop(m_Ctx, op.slot, op.stashed);
    return value ? value->AsObject() : nullptr;
}

ASObject* StageWindowSet::NewDate(int32_t year, int32_t month0, int32_t day, int32_t hour,
                                  int32_t minute, int32_t second) {
    if (!EngineUsable())
        return nullptr;
    ValueOp op = MakeOp(this, nullptr);
    op.year = year;
    op.month = month0;
    op.day = day;
    op.hour = hour;
    op.minute = minute;
    op.second = second;
    op.slot = ReserveSlot();
    if (!Protected(NewDateBody, &op, true)) {
        UnreserveSlot(op.slot);
        return nullptr;
    }
    StageValue* value = AdoptTop(m_Ctx, op.slot, op.stashed);
    return value ? value->AsObject() : nullptr;
}

}  // namespace stagecraft
}  // namespace ae
