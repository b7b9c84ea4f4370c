// Script values as native code sees them.
//
// A value handle refers to one script value and keeps it alive until Release(). Handles are used
// on the script thread only. A handle that outlives its stage stays safe to release; every other
// operation on it then fails quietly (undefined, false, null).
//
// Objects are values too: AsObject() gives the object view of the same handle (null for
// primitives). Property and method names are NUL-terminated UTF-8.
#ifndef AE_ASVALUE_H
#define AE_ASVALUE_H

#include <cstdint>

#include "AEString.h"

namespace ae {
namespace stagecraft {

class ASObject;

enum ASValueType {
    kASTypeUndefined,
    kASTypeNull,
    kASTypeBoolean,
    kASTypeNumber,
    kASTypeString,
    kASTypeObject,  // including arrays, dates and functions
};

class ASValue {
public:
    virtual ASValueType GetType() const = 0;
    bool IsUndefined() const { return GetType() == kASTypeUndefined; }
    bool IsObject() const { return GetType() == kASTypeObject; }

    // The script's own conversions (ToBoolean, ToNumber, ToInt32 with wrap-around, ToString).
    virtual bool ToBoolean() const = 0;
    virtual double ToNumber() const = 0;
    virtual int32_t ToInt32() const = 0;
    virtual bool ToString(AEString& out) const = 0;  // false when the conversion throws

    // Object view of this handle; null for a primitive. Owned by this handle.
    virtual ASObject* AsObject() = 0;

    // A second handle to the same value, with its own lifetime (to keep an argument beyond the
    // call, for example a completion function).
    virtual ASValue* Clone() const = 0;
    virtual void Release() = 0;

protected:
    ~ASValue() = default;
};

class ASObject : public ASValue {
public:
    virtual bool IsArray() const = 0;
    virtual bool IsDate() const = 0;
    virtual bool IsFunction() const = 0;

    // Property by name: a new handle (undefined when missing), null only when the stage is gone
    // or reading threw.
    virtual ASValue* GetProperty(const char* name) = 0;
    virtual bool HasProperty(const char* name) = 0;
    virtual bool SetProperty(const char* name, const ASValue& value) = 0;
    virtual bool SetNumber(const char* name, double value) = 0;
    virtual bool SetInt(const char* name, int32_t value) = 0;
    virtual bool SetBoolean(const char* name, bool value) = 0;
    virtual bool SetString(const char* name, const char* value) = 0;  // null sets ""
    virtual bool SetString(const char* name, const char* bytes, size_t size) = 0;

    // Arrays: "length" and element by index (a new handle).
    virtual uint32_t GetLength() = 0;
    virtual ASValue* GetElement(uint32_t index) = 0;

    // Calls a method of this object by name ("push"), or this object as a function (with
    // `this` undefined). `result`, when given, receives a new handle to the return value. False
    // when the callee is missing or threw; a throw is reported by the stage, not propagated.
    virtual bool CallMethod(const char* name, uint32_t argc, const ASValue* const* argv,
                            ASValue** result = nullptr) = 0;
    virtual bool Call(uint32_t argc, const ASValue* const* argv, ASValue** result = nullptr) = 0;

protected:
    ~ASObject() = default;
};

}  // namespace stagecraft
}  // namespace ae

#endif  // AE_ASVALUE_H
