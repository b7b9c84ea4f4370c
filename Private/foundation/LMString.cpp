#include "LMString.h"

#include <cstdlib>
#include <cstring>

#include "LMAssert.h"

namespace {
// Buffer size for n bytes plus the terminator, rounded so that the size is a multiple of 8.
size_t RoundedSize(size_t n) {
    return (n + 8) & ~static_cast<size_t>(7);
}
}  // namespace

LMString::Rep* LMString::NewRep(size_t bufferSize) {
    // Lengths are 32-bit; a larger string is a programming error, not a recoverable condition.
    LM_ASSERT(bufferSize <= 0xFFFFFFF8u);
    Rep* rep = static_cast<Rep*>(std::malloc(sizeof(Rep)));
    LM_ASSERT(rep != 0);
    rep->buffer = static_cast<char*>(std::malloc(bufferSize));
    LM_ASSERT(rep->buffer != 0);
    rep->buffer[0] = 0;
    rep->length = 0;
    rep->capacity = static_cast<uint32_t>(bufferSize - 1);
    return rep;
}

void LMString::FreeRep(Rep* rep) {
    std::free(rep->buffer);
    std::free(rep);
}

LMString::LMString() : m_Rep(NewRep(8)) {}

LMString::LMString(const char* str) : m_Rep(nullptr) {
    LM_ASSERT(str != 0);
    size_t n = std::strlen(str);
    m_Rep = NewRep(RoundedSize(n));
    std::memcpy(m_Rep->buffer, str, n + 1);
    m_Rep->length = static_cast<uint32_t>(n);
}

LMString::LMString(const char* buf, size_t n) : m_Rep(nullptr) {
    LM_ASSERT(buf != 0);
    m_Rep = NewRep(RoundedSize(n));
    std::memcpy(m_Rep->buffer, buf, n);
    m_Rep->buffer[n] = 0;
    m_Rep->length = static_cast<uint32_t>(n);
}

LMString::LMString(const LMString& other) : m_Rep(NewRep(RoundedSize(other.length()))) {
    std::memcpy(m_Rep->buffer, other.c_str(), other.length() + 1);
    m_Rep->length = other.length();
}

LMString::~LMString() {
    FreeRep(m_Rep);
}

LMString& LMString::operator=(const LMString& other) {
    if (this != &other) {
        assign(other.c_str(), other.length());
    }
    return *this;
}

const char& LMString::operator[](size_t idx) const {
    LM_ASSERT(idx < length());
    return m_Rep->buffer[idx];
}

char& LMString::operator[](size_t idx) {
    LM_ASSERT(idx < length());
    return m_Rep->buffer[idx];
}

uint32_t LMString::find(char ch, size_t pos) const {
    if (pos >= length()) {
        return npos;
    }
    const void* hit = std::memchr(m_Rep->buffer + pos, ch, length() - pos);
    return hit ? static_cast<uint32_t>(static_cast<const char*>(hit) - m_Rep->buffer) : npos;
}

LMString LMString::substr(size_t pos, size_t n) const {
    if (pos >= length()) {
        return LMString();
    }
    size_t rest = length() - pos;
    return LMString(m_Rep->buffer + pos, n < rest ? n : rest);
}

LMString& LMString::assign(const char* buf, size_t n) {
    LM_ASSERT(buf != 0);
    if (n > capacity()) {
        // Grow by half when that is enough for n, else to an exact fit. The old contents are
        // overwritten anyway, but `buf` may point into them: keep them until the copy is done.
        size_t cap = capacity();
        size_t size = (cap / 2 > n / 3) ? RoundedSize(cap + cap / 2) : RoundedSize(n);
        Rep* old = m_Rep;
        m_Rep = NewRep(size);
        std::memcpy(m_Rep->buffer, buf, n);
        FreeRep(old);
    } else {
        std::memmove(m_Rep->buffer, buf, n);
    }
    m_Rep->buffer[n] = 0;
    m_Rep->length = static_cast<uint32_t>(n);
    return *this;
}

LMString& LMString::assign(const char* str) {
    LM_ASSERT(str != 0);
    return assign(str, std::strlen(str));
}

LMString& LMString::append(const char* buf, size_t n) {
    LM_ASSERT(buf != 0);
    if (n == 0) {
        return *this;
    }
    size_t newLength = length() + n;
    Rep* old = nullptr;
    if (newLength > capacity()) {
        // Appends grow to an exact fit. The old buffer lives until the bytes are copied, so
        // appending a string to itself (or a piece of itself) is safe.
        old = m_Rep;
        m_Rep = NewRep(RoundedSize(newLength));
        std::memcpy(m_Rep->buffer, old->buffer, old->length);
        m_Rep->length = old->length;
    }
    std::memmove(m_Rep->buffer + m_Rep->length, buf, n);
    m_Rep->buffer[newLength] = 0;
    m_Rep->length = static_cast<uint32_t>(newLength);
    if (old) {
        FreeRep(old);
    }
    return *this;
}

LMString& LMString::append(const char* str) {
    LM_ASSERT(str != 0);
    return append(str, std::strlen(str));
}

LMString& LMString::append(char ch) {
    return append(&ch, 1);
}

LMString& LMString::append(const LMString& other) {
    return append(other.c_str(), other.length());
}

void LMString::trim() {
    const char* b = m_Rep->buffer;
    size_t begin = 0;
    size_t end = length();
    while (begin < end && b[begin] == ' ') {
        ++begin;
    }
    while (end > begin && b[end - 1] == ' ') {
        --end;
    }
    if (begin != 0 || end != length()) {
        assign(b + begin, end - begin);
    }
}

void LMString::swap(LMString& other) {
    Rep* tmp = m_Rep;
    m_Rep = other.m_Rep;
    other.m_Rep = tmp;
}

bool operator==(const LMString& a, const LMString& b) {
    return a.length() == b.length() && std::memcmp(a.c_str(), b.c_str(), a.length()) == 0;
}

bool operator!=(const LMString& a, const LMString& b) {
    return !(a == b);
}

bool operator<(const LMString& a, const LMString& b) {
    return std::strcmp(a.c_str(), b.c_str()) < 0;
}

bool operator<=(const LMString& a, const LMString& b) {
    return !(b < a);
}

bool operator>=(const LMString& a, const LMString& b) {
    return !(a < b);
}

bool operator==(const LMString& a, const char* b) {
    LM_ASSERT(b != 0);
    return std::strcmp(a.c_str(), b) == 0;
}

bool operator!=(const LMString& a, const char* b) {
    return !(a == b);
}

bool operator!=(const char* a, const LMString& b) {
    return !(b == a);
}

LMString operator+(const LMString& a, const LMString& b) {
    LMString r(a);
    r.append(b);
    return r;
}

LMString operator+(const LMString& a, const char* b) {
    LM_ASSERT(b != 0);
    LMString r(a);
    r.append(b);
    return r;
}

LMString operator+(const char* a, const LMString& b) {
    LM_ASSERT(a != 0);
    LMString r(a);
    r.append(b);
    return r;
}
