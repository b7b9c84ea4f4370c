// Records with every member set, for tests of what walks records (release, JSON): filled member by
// member through the record's field list (LMRecordFields.h).
#ifndef LM_TESTS_FILLED_RECORD_H
#define LM_TESTS_FILLED_RECORD_H

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "LMRecordFields.h"

// Each number gets a value of its own (counting up from 1 in visiting order), each flag 1, each
// text a heap copy of its member's name, each list two elements filled alike, each tag its kind
// (a tag the record already has, from LM_WS_InitResult, is kept). The record then owns heap
// memory as one filled from the service does and is released with LM_WS_FreeResult.
class FillFields : public LMRecordFields::IntoParts<FillFields> {
public:
    void Tag(int32_t*& type, LM_WS_ResultType kind) {
        if (type == nullptr) {
            type = static_cast<int32_t*>(std::malloc(sizeof(int32_t)));
            *type = kind;
        }
    }
    template <class N>
    void Number(const char*, N& value) {
        value = static_cast<N>(++m_Last);
    }
    void Flag(const char*, uint8_t& value) { value = 1; }
    void Text(const char* name, char*& text) { text = Repeat(name, std::strlen(name)); }
    // The length was filled just before.
    void Bytes(const char* name, char*& text, uint32_t length) { text = Repeat(name, length); }
    template <class N>
    void Numbers(const char* name, int32_t& count, N*& array) {
        count = 2;
        array = static_cast<N*>(std::calloc(count, sizeof(N)));
        for (int32_t i = 0; i < count; ++i) {
            Number(name, array[i]);
        }
    }
    template <class E>
    void Records(const char*, int32_t& count, E*& array) {
        count = 2;
        array = static_cast<E*>(std::calloc(count, sizeof(E)));
        for (int32_t i = 0; i < count; ++i) {
            LMRecordFields::Visit(array[i], *this);
        }
    }

private:
    // A heap text of `length` bytes, `name` over and over, then a NUL.
    static char* Repeat(const char* name, size_t length) {
        char* text = static_cast<char*>(std::malloc(length + 1));
        for (size_t i = 0; i < length; ++i) {
            text[i] = name[i % std::strlen(name)];
        }
        text[length] = 0;
        return text;
    }

    int m_Last = 0;
};

// Fills every member of `record` (see FillFields).
template <class R>
void FillRecord(R& record) {
    FillFields fill;
    LMRecordFields::Visit(record, fill);
}

#endif  // LM_TESTS_FILLED_RECORD_H
