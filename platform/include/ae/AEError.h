// The runtime's error record: a name of at most 31 characters and a signed 32-bit code.
//
// Runtime calls return one of the seven constants below. Success is tested by comparing codes
// with AEError_OK (names are informative only). The constants are per translation unit: each
// unit that includes this header builds its own copies at start-up, so no unit depends on
// another unit's static initialisation order.
#ifndef AE_AEERROR_H
#define AE_AEERROR_H

#include <cstddef>
#include <cstdint>

class AEError {
public:
    AEError() noexcept { Set("AEError_OK", 0); }
    AEError(const char* name, int32_t code) noexcept { Set(name, code); }
    AEError(const AEError& other) noexcept { Set(other.m_Name, other.m_Code); }
    AEError& operator=(const AEError& other) noexcept {
        if (this != &other)
            Set(other.m_Name, other.m_Code);
        return *this;
    }
    virtual ~AEError() = default;

    const char* GetName() const noexcept { return m_Name; }
    int32_t GetCode() const noexcept { return m_Code; }
    bool operator==(const AEError& other) const noexcept { return m_Code == other.m_Code; }
    bool operator!=(const AEError& other) const noexcept { return m_Code != other.m_Code; }

    static constexpr size_t kNameCapacity = 32;  // 31 characters and the terminator

private:
    void Set(const char* name, int32_t code) noexcept {
        size_t i = 0;
        for (; name && name[i] && i + 1 < kNameCapacity; ++i)
            m_Name[i] = name[i];
        m_Name[i] = '\0';
        m_Code = code;
    }

    char m_Name[kNameCapacity];
    int32_t m_Code;
};

static const AEError AEError_OK("AEError_OK", 0);
static const AEError AEError_NoMemory("AEError_NoMemory", 1);
static const AEError AEError_Timeout("AEError_Timeout", 2);
static const AEError AEError_Generic("AEError_Generic", 3);
static const AEError AEError_NotFound("AEError_NotFound", 4);
static const AEError AEError_Usage("AEError_Usage", 5);
static const AEError AEError_InvalidParameters("AEError_InvalidParameters", 6);

#endif  // AE_AEERROR_H
