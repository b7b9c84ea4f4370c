// The window set's side of the value handles (allocation, the registry, handle-table slots)
// and the context's value factory.
#include <cstdio>
#include <cstring>
#include <string>
#include <new>

#include "StageValueOps.h"
#include "StageWindowSet.h"

namespace ae {
namespace stagecraft {

using namespace valueops;

namespace {

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

// Compiles the maker of a shape: function (a0, a1, ...) { return {"name0": a0, ...}; }. An
// object literal defines its properties in one bytecode step, much faster than one property
// write per field.
duk_ret_t CompileShapeBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_compile_lstring(ctx, DUK_COMPILE_FUNCTION, op.bytes, op.size);
    return ReturnResult(ctx, op);
}

void PushField(duk_context* ctx, const StageWindowSet& ws, const ASField& f);

// The object of `shape` from `fields`, left on the stack: one call of the shape's maker, or,
// for a shape that has none, one property definition per field.
void PushObject(duk_context* ctx, const StageWindowSet& ws, const ASShape& shape,
                const ASField* fields) {
    duk_require_stack(ctx, static_cast<duk_idx_t>(shape.count) + 4);
    void* maker = ws.KnownMaker(shape);
    if (maker) {
        duk_push_heapptr(ctx, maker);
        duk_push_undefined(ctx);
        for (uint32_t i = 0; i < shape.count; ++i)
            PushField(ctx, ws, fields[i]);
        duk_call_method(ctx, static_cast<duk_idx_t>(shape.count));
        return;
    }
    // Defined, not assigned: a name such as "__proto__" becomes an own property.
    duk_push_object(ctx);
    for (uint32_t i = 0; i < shape.count; ++i) {
        duk_push_string(ctx, shape.names[i] ? shape.names[i] : "");
        PushField(ctx, ws, fields[i]);
        duk_def_prop(ctx, -3,
                     DUK_DEFPROP_HAVE_VALUE | DUK_DEFPROP_SET_WRITABLE |
                         DUK_DEFPROP_SET_ENUMERABLE | DUK_DEFPROP_SET_CONFIGURABLE);
    }
}

void PushField(duk_context* ctx, const StageWindowSet& ws, const ASField& f) {
    duk_require_stack(ctx, 8);
    switch (f.kind) {
        case ASField::kInt:
            duk_push_int(ctx, f.integer);
            break;
        case ASField::kNumber:
            duk_push_number(ctx, f.number);
            break;
        case ASField::kBoolean:
            duk_push_boolean(ctx, f.integer != 0);
            break;
        case ASField::kString:
            duk_push_lstring(ctx, f.bytes ? f.bytes : "", f.bytes ? f.size : 0);
            break;
        case ASField::kValue:
            static_cast<const StageValue*>(f.value)->Push(ctx);
            break;
        case ASField::kObject:
            PushObject(ctx, ws, f.shape, f.fields);
            break;
        case ASField::kArray:
            duk_push_array(ctx);
            for (int32_t i = 0; i < f.integer; ++i) {
                PushField(ctx, ws, f.fields[i]);
                duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
            }
            break;
        case ASField::kDate:
            duk_get_global_string(ctx, "Date");
            duk_push_int(ctx, f.integer);
            for (int32_t part : f.time)
                duk_push_int(ctx, part);
            duk_new(ctx, 6);
            break;
        default:
            duk_push_undefined(ctx);
            break;
    }
}

duk_ret_t ShapeBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    PushObject(ctx, *op.windowSet, *op.shape, op.fields);
    return ReturnResult(ctx, op);
}

duk_ret_t ShapedArrayBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    duk_push_array(ctx);
    for (uint32_t e = 0; e < op.count; ++e) {
        PushObject(ctx, *op.windowSet, *op.shape, op.fields + size_t(e) * op.shape->count);
        duk_put_prop_index(ctx, -2, e);
    }
    return ReturnResult(ctx, op);
}

duk_ret_t TreeBody(duk_context* ctx, void* udata) {
    auto& op = *static_cast<ValueOp*>(udata);
    PushField(ctx, *op.windowSet, *op.fields);
    return ReturnResult(ctx, op);
}

// The maker's source text, names written as JSON strings; empty when a name cannot go into an
// object literal unchanged ("__proto__" would set the prototype instead).
std::string ShapeSource(const ASShape& shape) {
    std::string source = "function (";
    for (uint32_t i = 0; i < shape.count; ++i)
        source += (i ? ",a" : "a") + std::to_string(i);
    source += ") { return {";
    for (uint32_t i = 0; i < shape.count; ++i) {
        const char* name = shape.names[i];
        if (!name || std::strcmp(name, "__proto__") == 0)
            return std::string();
        source += i ? ",\"" : "\"";
        for (const char* c = name; *c; ++c) {
            auto byte = static_cast<unsigned char>(*c);
            if (byte == '"' || byte == '\\') {
                source += '\\';
                source += *c;
            } else if (byte < 0x20) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", byte);
                source += escape;
            } else {
                source += *c;
            }
        }
        source += "\":a" + std::to_string(i);
    }
    source += "}; }";
    return source;
}

// Shapes with more fields than this are built property by property (the engine limits a
// function's arguments).
constexpr uint32_t kMaxShapeFields = 200;

// Trees deeper than this are refused rather than risking the native stack.
constexpr int kMaxTreeDepth = 64;

}  // namespace

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

void* StageWindowSet::ShapeMaker(const ASShape& shape) {
    auto key = std::make_pair(static_cast<const void*>(shape.names), shape.count);
    auto found = m_ShapeMakers.find(key);
    if (found != m_ShapeMakers.end())
        return found->second;
    void* maker = nullptr;
    try {
        std::string source = shape.count <= kMaxShapeFields ? ShapeSource(shape) : std::string();
        if (!source.empty()) {
            ValueOp op = MakeOp(this, nullptr);
            op.bytes = source.data();
            op.size = source.size();
            op.slot = ReserveSlot();  // held for the life of the heap
            if (Protected(CompileShapeBody, &op, false) && op.stashed) {
                maker = duk_get_heapptr(m_Ctx, -1);
                duk_pop(m_Ctx);
            } else {
                if (op.stashed)
                    duk_pop(m_Ctx);
                UnreserveSlot(op.slot);
            }
        }
        m_ShapeMakers.emplace(key, maker);
    } catch (...) {
        return nullptr;  // out of memory: the slow path, and try again next time
    }
    return maker;
}

void* StageWindowSet::KnownMaker(const ASShape& shape) const {
    auto found =
        m_ShapeMakers.find(std::make_pair(static_cast<const void*>(shape.names), shape.count));
    return found != m_ShapeMakers.end() ? found->second : nullptr;
}

bool StageWindowSet::PrepareFields(const ASField* fields, size_t count, int depth) {
    if (count && !fields)
        return false;
    for (size_t i = 0; i < count; ++i) {
        const ASField& f = fields[i];
        switch (f.kind) {
            case ASField::kValue:
                if (!ArgumentsUsable(this, 1, reinterpret_cast<const ASValue* const*>(&f.value)))
                    return false;
                break;
            case ASField::kObject:
                if (depth >= kMaxTreeDepth || !PrepareShape(f.shape, f.fields, 1))
                    return false;
                if (!PrepareFields(f.fields, f.shape.count, depth + 1))
                    return false;
                break;
            case ASField::kArray:
                if (depth >= kMaxTreeDepth || f.integer < 0 ||
                    !PrepareFields(f.fields, static_cast<size_t>(f.integer), depth + 1))
                    return false;
                break;
            default:
                break;
        }
    }
    return true;
}

// Checks the shape and prepares its maker (none is fine: the slow path); the fields themselves
// are checked by PrepareFields.
bool StageWindowSet::PrepareShape(const ASShape& shape, const ASField* fields, uint32_t count) {
    if (!EngineUsable() || (shape.count && count && (!shape.names || !fields)))
        return false;
    ShapeMaker(shape);
    return true;
}

ASObject* StageWindowSet::NewShapedObject(const ASShape& shape, const ASField* fields) {
    if (!PrepareShape(shape, fields, 1) || !PrepareFields(fields, shape.count, 1))
        return nullptr;
    ValueOp op = MakeOp(this, nullptr);
    op.shape = &shape;
    op.fields = fields;
    op.slot = ReserveSlot();
    if (!Protected(ShapeBody, &op, true)) {
        UnreserveSlot(op.slot);
        return nullptr;
    }
    StageValue* value = AdoptTop(m_Ctx, op.slot, op.stashed);
    return value ? value->AsObject() : nullptr;
}

ASObject* StageWindowSet::NewShapedArray(const ASShape& shape, const ASField* fields,
                                         uint32_t count) {
    if (!PrepareShape(shape, fields, count) ||
        !PrepareFields(fields, size_t(shape.count) * count, 1))
        return nullptr;
    ValueOp op = MakeOp(this, nullptr);
    op.shape = &shape;
    op.fields = fields;
    op.count = count;
    op.slot = ReserveSlot();
    if (!Protected(ShapedArrayBody, &op, true)) {
        UnreserveSlot(op.slot);
        return nullptr;
    }
    StageValue* value = AdoptTop(m_Ctx, op.slot, op.stashed);
    return value ? value->AsObject() : nullptr;
}

ASValue* StageWindowSet::NewTree(const ASField& root) {
    if (!EngineUsable() || !PrepareFields(&root, 1, 0))
        return nullptr;
    ValueOp op = MakeOp(this, nullptr);
    op.fields = &root;
    op.slot = ReserveSlot();
    if (!Protected(TreeBody, &op, true)) {
        UnreserveSlot(op.slot);
        return nullptr;
    }
    return AdoptTop(m_Ctx, op.slot, op.stashed);
}

}  // namespace stagecraft
}  // namespace ae
