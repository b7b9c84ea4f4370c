// EVPCipher: protects text values for the settings files.
//
// Binary values (keys, cipher text) are written two symbols per byte, high nibble first, in a
// 16-symbol alphabet of the system's own. A protected value is
//   key symbols | cipher symbols | four check digits over both,
// with a fresh random key for every value. The IV is derived from the key and never stored.
// The cipher is AES-128-CBC with standard PKCS#7 padding, so any AES implementation can read
// a value once its key and IV are decoded.
#ifndef LM_EVPCIPHER_H
#define LM_EVPCIPHER_H

#include "LMString.h"

class EVPCipher {
public:
    // The symbol alphabet: nibble n is written as kSymbols[n]. Fixed for the life of the
    // product: values written with one table cannot be read with another.
    static const char kSymbols[17];

    // `aes` true selects AES-128-CBC (what the system uses), false Blowfish-CBC.
    explicit EVPCipher(bool aes = true);
    ~EVPCipher();
    EVPCipher(const EVPCipher&) = delete;
    EVPCipher& operator=(const EVPCipher&) = delete;

    // A new random key, 2 x key length symbols.
    LMString GeneratePswd();
    // Decodes the key symbols into the key and derives the IV; false unless exactly key length.
    bool SetKey(const LMString& keySymbols);
    // Cipher text in symbols; empty on any failure or for empty input.
    LMString Encrypt(const LMString& plain, const LMString& keySymbols);
    // Plain text (cut at an embedded NUL); empty on any failure or for empty input.
    LMString Decrypt(const LMString& cipherSymbols, const LMString& keySymbols);

    // The raw key and IV bytes of the last SetKey, for interoperability checks.
    LMString KeyBytes() const;
    LMString IVBytes() const;

    static LMString EncodeSymbols(const unsigned char* bytes, size_t count);
    // False for an odd length or a character outside the alphabet (case-sensitive).
    static bool DecodeSymbols(const LMString& symbols, LMString& bytes);

    static LMString ComposeProtectedValue(const LMString& cipherSymbols,
                                          const LMString& keySymbols);
    // 0 with the key and cipher symbols, or 4 when the value is too short or its check fails.
    int SplitProtectedValue(const LMString& value, LMString& keySymbols, LMString& cipherSymbols);

    // The last four digits of the check hash over `text`.
    static LMString CheckDigits(const char* text, size_t length);

    // Protects `plain` with a fresh key: the form kept in a settings file (empty on failure).
    LMString Protect(const LMString& plain);
    // Reads a protected value back; false when it is malformed or does not decrypt.
    bool Unprotect(const LMString& value, LMString& plain);

private:
    struct Impl;
    Impl* m_Impl;
};

#endif  // LM_EVPCIPHER_H
