// LMString: the system's byte string, with an explicit length and a growable buffer.
//
// Buffers are allocated in multiples of 8 bytes, so capacity (buffer size - 1) is always 7 mod 8.
// Length-based operations (construction with a size, assign/append with a size, equality of two
// strings) carry embedded NULs; the `const char*` forms stop at the first NUL.
#ifndef LM_STRING_H
#define LM_STRING_H

#include <cstddef>
#include <cstdint>

class LMString {
public:
    static constexpr uint32_t npos = 0xFFFFFFFFu;

    LMString();
    LMString(const char* str);  // NOLINT(google-explicit-constructor): used like a literal
    LMString(const char* buf, size_t n);
    LMString(const LMString& other);
    ~LMString();

    LMString& operator=(const LMString& other);
    LMString& operator=(const char* str) { return assign(str); }

    const char* c_str() const { return m_Rep->buffer; }
    uint32_t length() const { return m_Rep->length; }
    uint32_t capacity() const { return m_Rep->capacity; }
    bool empty() const { return m_Rep->length == 0; }

    const char& operator[](size_t idx) const;
    char& operator[](size_t idx);

    // Index of the first `ch` at or after `pos`, or npos.
    uint32_t find(char ch, size_t pos = 0) const;
    // Up to `n` bytes from `pos`; "" when pos >= length.
    LMString substr(size_t pos, size_t n = npos) const;

    LMString& assign(const char* buf, size_t n);
    LMString& assign(const char* str);
    LMString& append(const char* buf, size_t n);
    LMString& append(const char* str);
    LMString& append(char ch);
    LMString& append(const LMString& other);

    // Removes leading and trailing spaces (0x20 only).
    void trim();
    void swap(LMString& other);

private:
    struct Rep {
        uint32_t length;
        uint32_t capacity;
        char* buffer;
    };
    static Rep* NewRep(size_t bufferSize);
    static void FreeRep(Rep* rep);

    Rep* m_Rep;
};

bool operator==(const LMString& a, const LMString& b);
bool operator!=(const LMString& a, const LMString& b);
bool operator<(const LMString& a, const LMString& b);
bool operator<=(const LMString& a, const LMString& b);
bool operator>=(const LMString& a, const LMString& b);
bool operator==(const LMString& a, const char* b);
bool operator!=(const LMString& a, const char* b);
bool operator!=(const char* a, const LMString& b);
LMString operator+(const LMString& a, const LMString& b);
LMString operator+(const LMString& a, const char* b);
LMString operator+(const char* a, const LMString& b);

#endif  // LM_STRING_H
