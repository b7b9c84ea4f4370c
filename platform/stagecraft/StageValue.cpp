// Value handles: the operations of ASValue and ASObject on one script value.
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

#include "StageValueOps.h"
#include "StageWindowSet.h"

namespace ae {
namespace stagecraft {

using namespace valueops;

namespace {

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

}  // namespace stagecraft
}  // namespace ae
