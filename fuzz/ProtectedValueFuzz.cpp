// Protected settings values are read from files the user can edit: any text must either
// decrypt or be refused, never crash.
#include <cstddef>
#include <cstdint>

#include "EVPCipher.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static EVPCipher cipher;
    const LMString value(reinterpret_cast<const char*>(data), size);
    LMString plain;
    cipher.Unprotect(value, plain);
    LMString bytes;
    EVPCipher::DecodeSymbols(value, bytes);
    // Split the input as key and cipher text directly too, past the check digits.
    if (size > 32) {
        cipher.Decrypt(value.substr(32), value.substr(0, 32));
    }
    return 0;
}
