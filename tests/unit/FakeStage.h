// Small fakes of the runtime contract for unit tests of extension classes: a malloc-based
// kernel, primitive script values, a value factory and a result sink. The test program that
// includes this header (once) gets the kernel the launcher's library gives real programs; the
// allocation operators come from support/AEMemoryForTests.cpp.
#ifndef LM_TESTS_FAKESTAGE_H
#define LM_TESTS_FAKESTAGE_H

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

#include "ae/ASExtensionClass.h"

namespace fake {

class Kernel : public ae::IAEKernel {
public:
    void* Allocate(size_t size) override { return std::malloc(size); }
    void Free(void* block) override { std::free(block); }
    void* MemCopy(void* dst, const void* src, size_t size) override {
        return std::memcpy(dst, src, size);
    }
    void* MemSet(void* dst, int value, size_t size) override {
        return std::memset(dst, value, size);
    }
    void ReportAssert(const char*, const char*, int) override { ++asserts; }
    ae::IAEMutex* CreateMutex() override { return nullptr; }
    void* GetInterface(const char*) override { return nullptr; }
    void ReleaseInterface(const char*, void*) override {}

    int asserts = 0;
};

inline Kernel& TheKernel() {
    static Kernel kernel;
    return kernel;
}

// A primitive value (undefined, boolean, number or string), heap-allocated, freed by Release.
class Value final : public ae::stagecraft::ASValue {
public:
    static Value* Undefined() { return new Value(ae::stagecraft::kASTypeUndefined); }
    static Value* Boolean(bool b) {
        Value* v = new Value(ae::stagecraft::kASTypeBoolean);
        v->number = b ? 1 : 0;
        return v;
    }
    static Value* Number(double n) {
        Value* v = new Value(ae::stagecraft::kASTypeNumber);
        v->number = n;
        return v;
    }
    static Value* String(const std::string& s) {
        Value* v = new Value(ae::stagecraft::kASTypeString);
        v->text = s;
        return v;
    }

    ae::stagecraft::ASValueType GetType() const override { return type; }
    bool ToBoolean() const override {
        return type == ae::stagecraft::kASTypeString ? !text.empty() : number != 0;
    }
    double ToNumber() const override {
        if (type == ae::stagecraft::kASTypeString) {
            char* end = nullptr;
            double n = std::strtod(text.c_str(), &end);
            return end != text.c_str() && *end == '\0' ? n : __builtin_nan("");
        }
        return type == ae::stagecraft::kASTypeUndefined ? __builtin_nan("") : number;
    }
    int32_t ToInt32() const override { return static_cast<int32_t>(ToNumber()); }
    bool ToString(AEString& out) const override {
        if (type == ae::stagecraft::kASTypeString) {
            return out.Assign(text.data(), text.size());
        }
        if (type == ae::stagecraft::kASTypeBoolean) {
            return out.Assign(number != 0 ? "true" : "false");
        }
        if (type == ae::stagecraft::kASTypeUndefined) {
            return out.Assign("undefined");
        }
        std::string n = std::to_string(number);
        return out.Assign(n.c_str());
    }
    ae::stagecraft::ASObject* AsObject() override { return nullptr; }
    ASValue* Clone() const override { return new Value(*this); }
    void Release() override { delete this; }

    ae::stagecraft::ASValueType type;
    double number = 0;
    std::string text;

private:
    explicit Value(ae::stagecraft::ASValueType t) : type(t) {}
    Value(const Value&) = default;
    ~Value() = default;
};

// The script object a method is called on: the configuration class never looks at it.
class Self : public ae::stagecraft::ASObject {
public:
    ae::stagecraft::ASValueType GetType() const override { return ae::stagecraft::kASTypeObject; }
    bool ToBoolean() const override { return true; }
    double ToNumber() const override { return __builtin_nan(""); }
    int32_t ToInt32() const override { return 0; }
    bool ToString(AEString& out) const override { return out.Assign("[object]"); }
    ae::stagecraft::ASObject* AsObject() override { return this; }
    ASValue* Clone() const override { return nullptr; }
    void Release() override {}
    bool IsArray() const override { return false; }
    bool IsDate() const override { return false; }
    bool IsFunction() const override { return false; }
    ASValue* GetProperty(const char*) override { return nullptr; }
    bool HasProperty(const char*) override { return false; }
    bool SetProperty(const char*, const ASValue&) override { return false; }
    bool SetNumber(const char*, double) override { return false; }
    bool SetInt(const char*, int32_t) override { return false; }
    bool SetBoolean(const char*, bool) override { return false; }
    bool SetString(const char*, const char*) override { return false; }
    bool SetString(const char*, const char*, size_t) override { return false; }
    uint32_t GetLength() override { return 0; }
    ASValue* GetElement(uint32_t) override { return nullptr; }
    bool CallMethod(const char*, uint32_t, const ASValue* const*, ASValue**) override {
        return false;
    }
    bool Call(uint32_t, const ASValue* const*, ASValue**) override { return false; }
};

// The value factory: primitives only.
class Context : public ae::stagecraft::ASContext {
public:
    ae::stagecraft::ASValue* NewUndefined() override { return Value::Undefined(); }
    ae::stagecraft::ASValue* NewNull() override { return Value::Undefined(); }
    ae::stagecraft::ASValue* NewBoolean(bool value) override { return Value::Boolean(value); }
    ae::stagecraft::ASValue* NewNumber(double value) override { return Value::Number(value); }
    ae::stagecraft::ASValue* NewInt(int32_t value) override { return Value::Number(value); }
    ae::stagecraft::ASValue* NewString(const char* text) override {
        return Value::String(text ? text : "");
    }
    ae::stagecraft::ASValue* NewString(const char* bytes, size_t size) override {
        return Value::String(std::string(bytes, size));
    }
    ae::stagecraft::ASObject* NewInstance(const char*, uint32_t,
                                          const ae::stagecraft::ASValue* const*) override {
        return nullptr;
    }
    ae::stagecraft::ASObject* NewDate(int32_t, int32_t, int32_t, int32_t, int32_t,
                                      int32_t) override {
        return nullptr;
    }
    ae::stagecraft::ASObject* NewShapedObject(const ae::stagecraft::ASShape&,
                                              const ae::stagecraft::ASField*) override {
        return nullptr;
    }
    ae::stagecraft::ASObject* NewShapedArray(const ae::stagecraft::ASShape&,
                                             const ae::stagecraft::ASField*, uint32_t) override {
        return nullptr;
    }
    void RequestUpdates(ae::stagecraft::ASExtensionClass&) override {}
    void StopUpdates(ae::stagecraft::ASExtensionClass&) override {}
    void Stop() override {}
    ae::stagecraft::ASValue* NewTree(const ae::stagecraft::ASField&) override { return nullptr; }
    ae::stagecraft::ASExtensionClass* GetNativeInstance(const ae::stagecraft::ASValue&,
                                                        const char*) override {
        return nullptr;
    }
};

// Keeps a copy of the value given and counts the statuses.
class Result : public ae::stagecraft::ASResult {
public:
    void SetValue(const ae::stagecraft::ASValue& v) override {
        const Value& given = static_cast<const Value&>(v);
        hasValue = true;
        type = given.type;
        number = given.number;
        text = given.text;
    }
    void SetStatus(int32_t s) override {
        status = s;
        ++statusCalls;
    }

    bool hasValue = false;
    ae::stagecraft::ASValueType type = ae::stagecraft::kASTypeUndefined;
    double number = 0;
    std::string text;
    int32_t status = -999;
    int statusCalls = 0;
};

// An argument list that releases its values.
class Args {
public:
    Args(std::initializer_list<Value*> values) {
        for (Value* v : values) {
            list.Append(v);
        }
    }
    ~Args() {
        for (uint32_t i = 0; i < list.GetCount(); ++i) {
            list[i]->Release();
        }
    }
    Args(const Args&) = delete;
    Args& operator=(const Args&) = delete;

    AEArray<ae::stagecraft::ASValue*> list;
};

}  // namespace fake

// What the launcher's kernel library supplies to real programs.
ae::IAEKernel* ae::AECurrentKernel() {
    return &fake::TheKernel();
}

#endif  // LM_TESTS_FAKESTAGE_H
