// Value handles: the one implementation of ASValue and ASObject.
//
// Primitives are held in the handle itself (strings as a private copy of their bytes, which
// may include NULs). An object is reached through its heap pointer; an owned handle keeps it
// alive with an entry in the heap stash's handle table, while a borrowed handle (the arguments
// and `this` of a native method call) relies on the value stack of that call and is given back
// when the call returns. Every live handle is on its window set's registry so that the window
// set can cut them loose when it is destroyed; after that a handle can only be released.
#ifndef STAGECRAFT_STAGEVALUE_H
#define STAGECRAFT_STAGEVALUE_H

#include <cstddef>
#include <cstdint>

#include "StageEngine.h"
#include "ae/ASValue.h"

namespace ae {
namespace stagecraft {

class StageWindowSet;

class StageValue final : public ASObject {
public:
    ASValueType GetType() const override;
    bool ToBoolean() const override;
    double ToNumber() const override;
    int32_t ToInt32() const override;
    bool ToString(AEString& out) const override;
    ASObject* AsObject() override;
    ASValue* Clone() const override;
    void Release() override;

    bool IsArray() const override;
    bool IsDate() const override;
    bool IsFunction() const override;
    ASValue* GetProperty(const char* name) override;
    bool HasProperty(const char* name) override;
    bool SetProperty(const char* name, const ASValue& value) override;
    bool SetNumber(const char* name, double value) override;
    bool SetInt(const char* name, int32_t value) override;
    bool SetBoolean(const char* name, bool value) override;
    bool SetString(const char* name, const char* value) override;
    bool SetString(const char* name, const char* bytes, size_t size) override;
    uint32_t GetLength() override;
    ASValue* GetElement(uint32_t index) override;
    bool CallMethod(const char* name, uint32_t argc, const ASValue* const* argv,
                    ASValue** result) override;
    bool Call(uint32_t argc, const ASValue* const* argv, ASValue** result) override;

    // Kernel side.
    StageWindowSet* Owner() const { return m_Owner; }
    bool IsLiveObject() const { return m_Owner && m_Type == kASTypeObject && m_Object; }
    void* HeapPtr() const { return m_Object; }
    // Pushes the value; throws (longjmp) only when the engine runs out of memory.
    void Push(duk_context* ctx) const;
    static double ToInt32Of(double number);

private:
    friend class StageWindowSet;
    StageValue() = default;
    ~StageValue();
    StageValue(const StageValue&) = delete;
    StageValue& operator=(const StageValue&) = delete;

    // Copies the string bytes; false when memory runs out.
    bool AssignBytes(const char* bytes, size_t size);
    void FreeBytes();
    bool Usable() const;

    StageWindowSet* m_Owner = nullptr;  // null once the window set is gone
    StageValue* m_Prev = nullptr;       // registry links (free list: m_Next only)
    StageValue* m_Next = nullptr;
    ASValueType m_Type = kASTypeUndefined;
    bool m_Borrowed = false;
    uint32_t m_Slot = 0;  // handle-table index of an owned object
    union {
        bool m_Bool;
        double m_Number;
        void* m_Object = nullptr;
    };
    char* m_Bytes = m_Inline;
    size_t m_Size = 0;
    char m_Inline[24] = {};
};

}  // namespace stagecraft
}  // namespace ae

#endif  // STAGECRAFT_STAGEVALUE_H
