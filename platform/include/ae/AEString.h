// The runtime's byte string, held in kernel memory. Never null: an empty string reads "".
// Bytes may include NULs; the buffer always has a terminator after the last byte.
#ifndef AE_AESTRING_H
#define AE_AESTRING_H

#include <cstdint>
#include <cstring>
#include <utility>

#include "AEMemory.h"

class AEString {
public:
    AEString() = default;
    explicit AEString(const char* text) { Assign(text); }
    AEString(const char* bytes, size_t size) { Assign(bytes, size); }
    AEString(const AEString& other) { Assign(other.c_str(), other.m_Size); }
    AEString(AEString&& other) noexcept
        : m_Data(std::exchange(other.m_Data, nullptr)), m_Size(std::exchange(other.m_Size, 0)) {}
    AEString& operator=(const AEString& other) {
        if (this != &other)
            Assign(other.c_str(), other.m_Size);
        return *this;
    }
    AEString& operator=(AEString&& other) noexcept {
        if (this != &other) {
            ae::AEFree(m_Data);
            m_Data = std::exchange(other.m_Data, nullptr);
            m_Size = std::exchange(other.m_Size, 0);
        }
        return *this;
    }
    ~AEString() { ae::AEFree(m_Data); }

    // False (string unchanged) when memory runs out.
    bool Assign(const char* text) { return Assign(text, text ? std::strlen(text) : 0); }
    bool Assign(const char* bytes, size_t size) {
        char* data = nullptr;
        if (size) {
            data = static_cast<char*>(ae::AEMalloc(size + 1));
            if (!data)
                return false;
            std::memcpy(data, bytes, size);
            data[size] = '\0';
        }
        ae::AEFree(m_Data);
        m_Data = data;
        m_Size = size;
        return true;
    }

    const char* c_str() const { return m_Data ? m_Data : ""; }
    size_t length() const { return m_Size; }
    bool empty() const { return m_Size == 0; }
    bool operator==(const char* text) const {
        size_t n = text ? std::strlen(text) : 0;
        return n == m_Size && std::memcmp(c_str(), text ? text : "", n) == 0;
    }

private:
    char* m_Data = nullptr;
    size_t m_Size = 0;
};

#endif  // AE_AESTRING_H
