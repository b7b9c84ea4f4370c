#include "EVPCipher.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "LMAssert.h"
#include "LMHash.h"

const char EVPCipher::kSymbols[17] = "W4QH7TXB2RM9VD6F";

struct EVPCipher::Impl {
    EVP_CIPHER_CTX* ctx = nullptr;
    const EVP_CIPHER* cipher = nullptr;
    // Sizes in bytes, as the sizes of the buffers they describe.
    size_t key_len = 0;
    size_t iv_len = 0;
    int block_size = 0;
    unsigned char* key = nullptr;
    unsigned char* iv = nullptr;
};

EVPCipher::EVPCipher(bool aes) : m_Impl(new Impl) {
    m_Impl->ctx = EVP_CIPHER_CTX_new();
    m_Impl->cipher = aes ? EVP_aes_128_cbc() : EVP_bf_cbc();
    if (m_Impl->cipher == nullptr) {
        // Blowfish lives in OpenSSL 3's legacy provider; without it fall back to the default.
        m_Impl->cipher = EVP_aes_128_cbc();
    }
    m_Impl->key_len = static_cast<size_t>(EVP_CIPHER_key_length(m_Impl->cipher));
    m_Impl->iv_len = static_cast<size_t>(EVP_CIPHER_iv_length(m_Impl->cipher));
    m_Impl->block_size = EVP_CIPHER_block_size(m_Impl->cipher);
    m_Impl->key = static_cast<unsigned char*>(calloc(1, m_Impl->key_len));
    m_Impl->iv = static_cast<unsigned char*>(calloc(1, m_Impl->iv_len));
}

EVPCipher::~EVPCipher() {
    EVP_CIPHER_CTX_free(m_Impl->ctx);
    if (m_Impl->key != nullptr) {
        OPENSSL_cleanse(m_Impl->key, m_Impl->key_len);
    }
    free(m_Impl->key);
    free(m_Impl->iv);
    delete m_Impl;
}

LMString EVPCipher::GeneratePswd() {
    unsigned char buf[128];
    LM_ASSERT(sizeof(buf) >= m_Impl->key_len);
    if (RAND_status() != 1) {
        // Seed from the C library's generator when OpenSSL has no entropy source of its own.
        srand(static_cast<unsigned>(rand() + time(nullptr)));
        unsigned char seed[128];
        for (unsigned char& b : seed) {
            b = static_cast<unsigned char>(rand());
        }
        RAND_seed(seed, sizeof(seed));
    }
    if (RAND_bytes(buf, static_cast<int>(m_Impl->key_len)) != 1) {
        return LMString();
    }
    LMString key = EncodeSymbols(buf, m_Impl->key_len);
    OPENSSL_cleanse(buf, sizeof(buf));
    return key;
}

bool EVPCipher::SetKey(const LMString& keySymbols) {
    LMString bytes;
    if (!DecodeSymbols(keySymbols, bytes) || bytes.length() != m_Impl->key_len) {
        return false;
    }
    memcpy(m_Impl->key, bytes.c_str(), m_Impl->key_len);
    // The IV is a fixed function of the key; values written earlier depend on it exactly.
    memset(m_Impl->iv, 0x1C, m_Impl->iv_len);
    for (size_t i = 0; i < m_Impl->iv_len && i < m_Impl->key_len; ++i) {
        m_Impl->iv[i] = m_Impl->key[i] & 0x1D;
    }
    return true;
}

LMString EVPCipher::Encrypt(const LMString& plain, const LMString& keySymbols) {
    if (plain.empty() || keySymbols.empty() || !SetKey(keySymbols)) {
        return LMString();
    }
    size_t room = plain.length() + static_cast<size_t>(m_Impl->block_size);
    unsigned char* out = static_cast<unsigned char*>(malloc(room));
    int n1 = 0;
    int n2 = 0;
    bool ok =
        EVP_EncryptInit_ex(m_Impl->ctx, m_Impl->cipher, nullptr, m_Impl->key, m_Impl->iv) == 1 &&
        EVP_EncryptUpdate(m_Impl->ctx, out, &n1,
                          reinterpret_cast<const unsigned char*>(plain.c_str()),
                          static_cast<int>(plain.length())) == 1 &&
        EVP_EncryptFinal_ex(m_Impl->ctx, out + n1, &n2) == 1;
    LMString result = ok ? EncodeSymbols(out, static_cast<size_t>(n1 + n2)) : LMString();
    free(out);
    return result;
}

LMString EVPCipher::Decrypt(const LMString& cipherSymbols, const LMString& keySymbols) {
    if (cipherSymbols.empty() || keySymbols.empty() || !SetKey(keySymbols)) {
        return LMString();
    }
    LMString in;
    if (!DecodeSymbols(cipherSymbols, in)) {
        return LMString();
    }
    size_t room = in.length() + static_cast<size_t>(m_Impl->block_size) + 1;
    unsigned char* out = static_cast<unsigned char*>(malloc(room));
    int n1 = 0;
    int n2 = 0;
    bool ok =
        EVP_DecryptInit_ex(m_Impl->ctx, m_Impl->cipher, nullptr, m_Impl->key, m_Impl->iv) == 1 &&
        EVP_DecryptUpdate(m_Impl->ctx, out, &n1, reinterpret_cast<const unsigned char*>(in.c_str()),
                          static_cast<int>(in.length())) == 1 &&
        EVP_DecryptFinal_ex(m_Impl->ctx, out + n1, &n2) == 1;
    LMString result;
    if (ok) {
        out[n1 + n2] = 0;
        result.assign(reinterpret_cast<const char*>(out));
    }
    OPENSSL_cleanse(out, room);
    free(out);
    return result;
}

LMString EVPCipher::KeyBytes() const {
    return LMString(reinterpret_cast<const char*>(m_Impl->key), m_Impl->key_len);
}

LMString EVPCipher::IVBytes() const {
    return LMString(reinterpret_cast<const char*>(m_Impl->iv), m_Impl->iv_len);
}

LMString EVPCipher::EncodeSymbols(const unsigned char* bytes, size_t count) {
    LMString out;
    for (size_t i = 0; i < count; ++i) {
        char pair[2] = {kSymbols[bytes[i] >> 4], kSymbols[bytes[i] & 0x0F]};
        out.append(pair, 2);
    }
    return out;
}

bool EVPCipher::DecodeSymbols(const LMString& symbols, LMString& bytes) {
    if (symbols.length() % 2 != 0) {
        return false;
    }
    LMString out;
    for (uint32_t i = 0; i < symbols.length(); i += 2) {
        // A NUL would match the alphabet's terminator: reject it explicitly.
        const char* hi = symbols[i] != 0 ? strchr(kSymbols, symbols[i]) : nullptr;
        const char* lo = symbols[i + 1] != 0 ? strchr(kSymbols, symbols[i + 1]) : nullptr;
        if (hi == nullptr || lo == nullptr) {
            return false;
        }
        out.append(static_cast<char>(((hi - kSymbols) << 4) | (lo - kSymbols)));
    }
    bytes.swap(out);
    return true;
}

LMString EVPCipher::CheckDigits(const char* text, size_t length) {
    char digits[16];
    int n = snprintf(digits, sizeof(digits), "%04u", LMHash32(text, length));
    return LMString(digits + n - 4);
}

LMString EVPCipher::ComposeProtectedValue(const LMString& cipherSymbols,
                                          const LMString& keySymbols) {
    LMString value = keySymbols + cipherSymbols;
    value.append(CheckDigits(value.c_str(), value.length()));
    return value;
}

int EVPCipher::SplitProtectedValue(const LMString& value, LMString& keySymbols,
                                   LMString& cipherSymbols) {
    const uint32_t keyChars = 2 * static_cast<uint32_t>(m_Impl->key_len);
    if (value.length() <= keyChars + 4) {
        return 4;
    }
    const uint32_t body = value.length() - 4;
    if (CheckDigits(value.c_str(), body) != value.substr(body)) {
        return 4;
    }
    keySymbols = value.substr(0, keyChars);
    cipherSymbols = value.substr(keyChars, body - keyChars);
    return 0;
}

LMString EVPCipher::Protect(const LMString& plain) {
    LMString key = GeneratePswd();
    LMString cipher = Encrypt(plain, key);
    return cipher.empty() ? LMString() : ComposeProtectedValue(cipher, key);
}

bool EVPCipher::Unprotect(const LMString& value, LMString& plain) {
    LMString key;
    LMString cipher;
    if (SplitProtectedValue(value, key, cipher) != 0) {
        return false;
    }
    LMString text = Decrypt(cipher, key);
    if (text.empty()) {
        return false;
    }
    plain.swap(text);
    return true;
}
