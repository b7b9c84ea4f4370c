// Native extension classes: how native code is offered to a movie.
//
// A class is registered with a descriptor (ASExtensionClassDescriptor: five operations). The
// movie sees it as a constructor named after the last dot-separated part of its class id; each
// `new` makes one native instance through ConstructInstance. Method handlers are member
// functions of the instance class, called on the script thread with the stage's context, the
// script object the method was called on, the arguments and a result sink.
#ifndef AE_ASEXTENSIONCLASS_H
#define AE_ASEXTENSIONCLASS_H

#include <cstdint>
#include <cstring>

#include "AEArray.h"
#include "ASValue.h"

namespace ae {
namespace stagecraft {

class ASExtensionClass;

// Where a handler leaves its outcome. SetStatus must be called exactly once, last; a value set
// before it becomes the method's return value, otherwise the movie gets the status as a number.
class ASResult {
public:
    virtual void SetValue(const ASValue& value) = 0;
    virtual void SetStatus(int32_t status) = 0;

protected:
    ~ASResult() = default;
};

// A fixed, ordered list of property names for objects made in one step (NewShapedObject).
// `names` must stay valid and unchanged while any stage runs (a static table): the kernel keeps
// what it prepares for a shape under the table's address.
struct ASShape {
    const char* const* names;
    uint32_t count;
};

// One value of a tree built in one step (NewTree), or one property of a shaped object. Besides
// plain values, a field can be a nested object of a shape, an Array of fields or a Date, so a
// whole result tree (a page of titles with their products and assets) is described natively and
// made by the engine at once, without a handle per object. Strings and nested fields are read
// during the call only.
struct ASField {
    enum Kind : int32_t {
        kUndefined,
        kInt,
        kNumber,
        kBoolean,
        kString,
        kValue,
        kObject,
        kArray,
        kDate
    };
    Kind kind;
    int32_t integer;        // kInt, kBoolean; kArray: the element count; kDate: the year
    double number;          // kNumber
    const char* bytes;      // kString; null is ""
    size_t size;            // kString
    const ASValue* value;   // kValue: a live handle of the same stage
    ASShape shape;          // kObject
    const ASField* fields;  // kObject: shape.count fields; kArray: `integer` elements
    int32_t time[5];        // kDate: month (from 0), day, hour, minute, second

    static ASField Int(int32_t v) { return Make(kInt, v); }
    static ASField Number(double v) {
        ASField f = Make(kNumber, 0);
        f.number = v;
        return f;
    }
    static ASField Boolean(bool v) { return Make(kBoolean, v ? 1 : 0); }
    static ASField String(const char* text) { return String(text, text ? std::strlen(text) : 0); }
    static ASField String(const char* bytes, size_t size) {
        ASField f = Make(kString, 0);
        f.bytes = bytes;
        f.size = size;
        return f;
    }
    static ASField Value(const ASValue& v) {
        ASField f = Make(kValue, 0);
        f.value = &v;
        return f;
    }
    // An object of `shape` (a static table, as for NewShapedObject) from shape.count fields.
    static ASField Object(const ASShape& shape, const ASField* fields) {
        ASField f = Make(kObject, 0);
        f.shape = shape;
        f.fields = fields;
        return f;
    }
    static ASField Array(const ASField* elements, uint32_t count) {
        ASField f = Make(kArray, static_cast<int32_t>(count));
        f.fields = elements;
        return f;
    }
    // new Date(year, month0, day, hour, minute, second) in local time.
    static ASField Date(int32_t year, int32_t month0, int32_t day, int32_t hour, int32_t minute,
                        int32_t second) {
        ASField f = Make(kDate, year);
        f.time[0] = month0;
        f.time[1] = day;
        f.time[2] = hour;
        f.time[3] = minute;
        f.time[4] = second;
        return f;
    }

private:
    static ASField Make(Kind kind, int32_t integer) {
        ASField f{};
        f.kind = kind;
        f.integer = integer;
        return f;
    }
};

// The stage as native code sees it. One per window set; valid until the window set is destroyed
// and used on the script thread only.
class ASContext {
public:
    // The value factory. Each returns a new handle (null only when memory runs out).
    virtual ASValue* NewUndefined() = 0;
    virtual ASValue* NewNull() = 0;
    virtual ASValue* NewBoolean(bool value) = 0;
    virtual ASValue* NewNumber(double value) = 0;
    virtual ASValue* NewInt(int32_t value) = 0;
    virtual ASValue* NewString(const char* text) = 0;  // null makes ""
    virtual ASValue* NewString(const char* bytes, size_t size) = 0;
    // `new className(args...)` for a global constructor ("Object", "Array", "Date"); null when
    // there is no such constructor or it threw.
    virtual ASObject* NewInstance(const char* className, uint32_t argc = 0,
                                  const ASValue* const* argv = nullptr) = 0;
    // new Date(year, month0, day, hour, minute, second) in local time.
    virtual ASObject* NewDate(int32_t year, int32_t month0, int32_t day, int32_t hour,
                              int32_t minute, int32_t second) = 0;
    // A new Object whose own properties are shape.names[i] = fields[i], in that order: the same
    // object as NewInstance("Object") followed by one Set per field, made in one engine step.
    // Result trees repeat a few shapes many times; this is the fast way to build them.
    virtual ASObject* NewShapedObject(const ASShape& shape, const ASField* fields) = 0;
    // A new Array of `count` such objects, element i made from fields[i * shape.count ...]: the
    // same as NewInstance("Array") and one push of NewShapedObject per element, in one step.
    virtual ASObject* NewShapedArray(const ASShape& shape, const ASField* fields,
                                     uint32_t count) = 0;
    // The value `root` describes, nested objects, Arrays and Dates included, made in one engine
    // step; null when memory runs out or a kValue field is not a live handle of this stage.
    virtual ASValue* NewTree(const ASField& root) = 0;

    // The native instance behind `value` when it is a live object made by `new X()` of the class
    // registered as `classID`; null for anything else (including an object inheriting from an
    // instance, a static class's constructor, or an instance already finalised). Lets a method
    // take another instance of a class as an argument.
    virtual ASExtensionClass* GetNativeInstance(const ASValue& value, const char* classID) = 0;

    // OnUpdate of `instance` is called on every turn of the stage loop from RequestUpdates until
    // StopUpdates (both idempotent; safe from inside OnUpdate).
    virtual void RequestUpdates(ASExtensionClass& instance) = 0;
    virtual void StopUpdates(ASExtensionClass& instance) = 0;
    // Ends the movie: the run returns once the current script call is finished.
    virtual void Stop() = 0;

protected:
    ~ASContext() = default;
};

class ASExtensionClass {
public:
    typedef void (ASExtensionClass::*MethodHandler)(ASContext& context, ASObject& self,
                                                    AEArray<ASValue*>& args, ASResult& result);

    // One method-table entry: a plain record, copied as a block.
    struct Method {
        const char* name;
        int32_t isStatic;  // 1: called on the constructor, no instance state needed
        MethodHandler handler;
    };

    virtual ~ASExtensionClass() = default;

    // Called on the script thread while updates are requested (ASContext::RequestUpdates).
    virtual void OnUpdate(ASContext& context) { (void)context; }
};

// Turns a derived class's handler into a table entry's handler (the classes derive singly from
// ASExtensionClass, so the conversion needs no this-adjustment).
template <class Derived>
inline ASExtensionClass::MethodHandler AEHandler(void (Derived::*handler)(ASContext&, ASObject&,
                                                                          AEArray<ASValue*>&,
                                                                          ASResult&)) {
    return static_cast<ASExtensionClass::MethodHandler>(handler);
}

// Describes one class to the runtime.
class ASExtensionClassDescriptor {
public:
    virtual const char* GetClassName() = 0;  // the class id, "com.kestrel.LMWSLib"
    // Appends the class's entries in table order after whatever `methods` already holds.
    virtual void GetMethods(AEArray<ASExtensionClass::Method>& methods) = 0;
    virtual bool FiresEvents() = 0;
    // Null refuses the construction (the script's `new` throws).
    virtual ASExtensionClass* ConstructInstance(ASContext& context) = 0;
    virtual void DestructInstance(ASExtensionClass* instance) = 0;

protected:
    ~ASExtensionClassDescriptor() = default;
};

}  // namespace stagecraft
}  // namespace ae

#endif  // AE_ASEXTENSIONCLASS_H
