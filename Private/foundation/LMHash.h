// The system's 32-bit text hash: for each byte, multiply by 16777619 (mod 2^32) and XOR the byte
// in, starting from 0 (not FNV's usual offset basis). Stored check digits and cache file names
// depend on it exactly, and the empty text hashes to 0.
#ifndef LM_HASH_H
#define LM_HASH_H

#include <cstddef>
#include <cstdint>

inline uint32_t LMHash32(const char* bytes, size_t length) {
    uint32_t hash = 0;
    for (size_t i = 0; i < length; ++i) {
        hash = (hash * 16777619u) ^ static_cast<unsigned char>(bytes[i]);
    }
    return hash;
}

#endif  // LM_HASH_H
