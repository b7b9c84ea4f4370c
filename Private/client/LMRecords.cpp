// Initialisation and release of the client records (LM_WS_Records.h).
//
// Records are plain C structs that callers may hold across threads and free long after the SOAP
// call that filled them; everything in them is malloc'ed and released here by walking the record
// that its tag names, member by member (LMRecordFields.h).
#include "LM_WS_Records.h"

#include <cstdlib>
#include <cstring>

#include "LMAssert.h"
#include "LMRecordFields.h"

namespace {

// Byte size of the struct a tag names; 0 for a tag this library does not know.
size_t RecordSize(int32_t type) {
    size_t size = 0;
    LMRecordFields::WithKind(type,
                             [&size](auto as) { size = sizeof(typename decltype(as)::Record); });
    return size;
}

int32_t* NewTag(int32_t type) {
    int32_t* tag = static_cast<int32_t*>(std::malloc(sizeof(int32_t)));
    LM_ASSERT(tag != 0);
    *tag = type;
    return tag;
}

// Every record starts with its tag pointer; reading it through this view is how the release
// routine learns what it holds.
struct TaggedHead {
    int32_t* Type;
};

// Calls `visitor` on `record` seen as the struct that `type` names.
template <class Visitor>
void VisitAs(int32_t type, void* record, Visitor visitor) {
    LMRecordFields::WithKind(type, [record, &visitor](auto as) {
        LMRecordFields::Visit(*static_cast<typename decltype(as)::Record*>(record), visitor);
    });
}

template <class Part>
void Release(Part& part);

// Frees what a record owns. Its own tag is left to LM_WS_FreeResult; a negative count or a null
// array is an empty list.
struct ReleaseFields : LMRecordFields::NoOp {
    void Text(const char*, char* text) { std::free(text); }
    void Bytes(const char*, char* text, uint32_t) { std::free(text); }
    template <class Part>
    void Record(const char*, Part& part) {
        Release(part);
    }
    template <class Part>
    void Flatten(Part& part) {
        Release(part);
    }
    template <class Tagged>
    void List(const char*, Tagged& list) {
        Release(list);
    }
    template <class N>
    void Numbers(const char*, int32_t, N* array) {
        std::free(array);
    }
    template <class Element>
    void Records(const char*, int32_t count, Element* array) {
        for (int32_t i = 0; array != nullptr && i < count; ++i) {
            Release(array[i]);
        }
        std::free(array);
    }
};

// A tagged part is a record of its own, released by its tag like the caller's record (a part
// whose tag is null is left alone); an untagged part is released member by member.
template <class Part>
void Release(Part& part) {
    if constexpr (LMRecordFields::IsTagged<Part>::value) {
        LM_WS_FreeResult(&part);
    } else {
        LMRecordFields::Visit(part, ReleaseFields());
    }
}

// Gives a cleared record its tag and the tags of the tagged parts embedded in it, so that a
// record released without ever being filled is as complete as a filled one.
struct InitFields : LMRecordFields::IntoParts<InitFields> {
    void Tag(int32_t*& type, LM_WS_ResultType kind) { type = NewTag(kind); }
};

}  // namespace

void LM_WS_InitResult(void* record, LM_WS_ResultType type) {
    LM_ASSERT(record != 0);
    size_t size = RecordSize(type);
    LM_ASSERT(size != 0);
    std::memset(record, 0, size);
    VisitAs(type, record, InitFields());
}

void LM_WS_FreeResult(void* record) {
    if (record == nullptr) {
        return;
    }
    int32_t* tag = static_cast<TaggedHead*>(record)->Type;
    if (tag == nullptr) {
        return;
    }
    int32_t type = *tag;
    size_t size = RecordSize(type);
    // A tag we do not know means the pointer is not one of our records: freeing by guess would
    // corrupt the heap.
    LM_ASSERT(size != 0);
    VisitAs(type, record, ReleaseFields());
    std::free(tag);
    std::memset(record, 0, size);
}
