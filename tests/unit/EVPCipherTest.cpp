#include "EVPCipher.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string>

#include "LMDeviceIdentity.h"
#include "TempDir.h"

namespace {

std::string Hex(const LMString& bytes) {
    std::string out;
    char two[3];
    for (uint32_t i = 0; i < bytes.length(); ++i) {
        snprintf(two, sizeof(two), "%02x", static_cast<unsigned char>(bytes[i]));
        out += two;
    }
    return out;
}

TEST(EVPCipherSymbols, EncodeAndDecodeAreExactInverses) {
    const unsigned char bytes[] = {0x00, 0x0F, 0xF0, 0xFF, 0x5A};
    LMString text = EVPCipher::EncodeSymbols(bytes, sizeof(bytes));
    EXPECT_STREQ(text.c_str(), "WWWFFWFFTM");
    LMString back;
    ASSERT_TRUE(EVPCipher::DecodeSymbols(text, back));
    ASSERT_EQ(back.length(), sizeof(bytes));
    EXPECT_EQ(memcmp(back.c_str(), bytes, sizeof(bytes)), 0);

    LMString untouched("keep");
    EXPECT_FALSE(EVPCipher::DecodeSymbols(LMString("WWW"), untouched));     // odd length
    EXPECT_FALSE(EVPCipher::DecodeSymbols(LMString("ww"), untouched));      // wrong case
    EXPECT_FALSE(EVPCipher::DecodeSymbols(LMString("W0"), untouched));      // not in the table
    EXPECT_FALSE(EVPCipher::DecodeSymbols(LMString("W\0", 2), untouched));  // NUL is no symbol
    EXPECT_STREQ(untouched.c_str(), "keep");
}

TEST(EVPCipherKeys, FreshKeysAreRandomAndTheIVFollowsTheKey) {
    EVPCipher cipher;
    std::set<std::string> seen;
    for (int i = 0; i < 20; ++i) {
        LMString key = cipher.GeneratePswd();
        EXPECT_EQ(key.length(), 32u);
        seen.insert(key.c_str());
    }
    EXPECT_EQ(seen.size(), 20u);

    // All-0xFF key: IV bytes are key & 0x1D.
    LMString key("FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF");
    ASSERT_TRUE(cipher.SetKey(key));
    EXPECT_EQ(Hex(cipher.IVBytes()), "1d1d1d1d1d1d1d1d1d1d1d1d1d1d1d1d");
    EXPECT_FALSE(cipher.SetKey(LMString(std::string(30, 'W').c_str())));
    EXPECT_FALSE(cipher.SetKey(LMString(std::string(34, 'W').c_str())));
}

TEST(EVPCipherRoundTrip, EncryptDecryptAndTheirFailures) {
    EVPCipher cipher;
    LMString key = cipher.GeneratePswd();
    for (const char* text : {"x", "password", "exactly 16 bytes", "Ünïcödé pässwörd ✓"}) {
        LMString sealed = cipher.Encrypt(text, key);
        EXPECT_EQ(sealed.length() % 32, 0u);  // whole AES blocks, two symbols a byte
        EXPECT_STREQ(cipher.Decrypt(sealed, key).c_str(), text);
    }
    EXPECT_TRUE(cipher.Encrypt("", key).empty());
    EXPECT_TRUE(cipher.Encrypt("x", "").empty());
    EXPECT_TRUE(cipher.Encrypt("x", LMString(std::string(30, 'W').c_str())).empty());
    EXPECT_TRUE(cipher.Encrypt("x", LMString(std::string(34, 'W').c_str())).empty());
    LMString sealed = cipher.Encrypt("secret", key);
    EXPECT_TRUE(cipher.Decrypt(sealed, cipher.GeneratePswd()).empty());  // bad padding
    EXPECT_TRUE(cipher.Decrypt(sealed.substr(0, 31), key).empty());
    EXPECT_TRUE(cipher.Decrypt("", key).empty());
}

TEST(EVPCipherProtectedValue, ComposeSplitAndTampering) {
    EVPCipher cipher;
    LMString first = cipher.Protect("my password");
    LMString second = cipher.Protect("my password");
    EXPECT_TRUE(first != second);  // a new key each time
    LMString plain;
    ASSERT_TRUE(cipher.Unprotect(first, plain));
    EXPECT_STREQ(plain.c_str(), "my password");

    LMString key, body;
    ASSERT_EQ(cipher.SplitProtectedValue(first, key, body), 0);
    EXPECT_EQ(key.length(), 32u);
    EXPECT_EQ(body.length(), first.length() - 36);
    EXPECT_TRUE(EVPCipher::ComposeProtectedValue(body, key) == first);

    // Exactly key + check: the cipher text may not be empty.
    LMString tooShort = EVPCipher::ComposeProtectedValue("", key);
    EXPECT_EQ(tooShort.length(), 36u);
    EXPECT_EQ(cipher.SplitProtectedValue(tooShort, key, body), 4);

    // Any single changed symbol fails the check unless it happens to keep the last 4 digits.
    int rejected = 0;
    for (uint32_t i = 0; i < first.length() - 4; ++i) {
        LMString tampered(first);
        tampered[i] = tampered[i] == 'W' ? '4' : 'W';
        rejected += cipher.SplitProtectedValue(tampered, key, body) == 4;
    }
    EXPECT_GE(rejected, static_cast<int>(first.length()) - 4 - 1);
    LMString badCheck(first);
    badCheck[first.length() - 1] = badCheck[first.length() - 1] == '0' ? '1' : '0';
    EXPECT_FALSE(cipher.Unprotect(badCheck, plain));
}

TEST(EVPCipherProtectedValue, CheckDigitsAreTheLastFourOfTheHash) {
    EXPECT_STREQ(EVPCipher::CheckDigits("", 0).c_str(), "0000");  // hash 0 printed "%04u"
    // 'A' = 65: hash = 0 * prime ^ 65 = 65 -> "0065".
    EXPECT_STREQ(EVPCipher::CheckDigits("A", 1).c_str(), "0065");
    // "AB": (65 * 16777619) mod 2^32 ^ 66 = 1090545235 ^ 66 -> ...5217.
    uint32_t h = (65u * 16777619u) ^ 66u;
    char expect[16];
    snprintf(expect, sizeof(expect), "%u", h);
    EXPECT_STREQ(EVPCipher::CheckDigits("AB", 2).c_str(), expect + strlen(expect) - 4);
}

// The stored form must be plain AES-128-CBC with PKCS#7 padding, readable by any implementation.
TEST(EVPCipherInterop, OpensslCommandLineDecryptsAProtectedValue) {
    TempDir dir;
    EVPCipher cipher;
    const char* secret = "Lumora device secret: 1234-ABCD";
    LMString value = cipher.Protect(secret);
    LMString key, body;
    ASSERT_EQ(cipher.SplitProtectedValue(value, key, body), 0);
    ASSERT_TRUE(cipher.SetKey(key));
    LMString cipherBytes;
    ASSERT_TRUE(EVPCipher::DecodeSymbols(body, cipherBytes));
    const std::string in = dir / "cipher.bin";
    std::ofstream(in, std::ios::binary).write(cipherBytes.c_str(), cipherBytes.length());

    std::string cmd = "openssl enc -d -aes-128-cbc -K " + Hex(cipher.KeyBytes()) + " -iv " +
                      Hex(cipher.IVBytes()) + " -in " + in + " 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    ASSERT_NE(p, nullptr);
    char out[256] = {0};
    size_t n = fread(out, 1, sizeof(out) - 1, p);
    int rc = pclose(p);
    EXPECT_EQ(rc, 0) << out;
    EXPECT_EQ(std::string(out, n), secret);
}

TEST(DeviceIdentity, FirstNonZeroAddressIsFormatted) {
    const unsigned char addrs[3][6] = {
        {0, 0, 0, 0, 0, 0}, {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}, {0xFF, 1, 2, 3, 4, 5}};
    EXPECT_STREQ(LM_FormatFirstHardwareAddress(addrs, 3).c_str(), "00-1A-2B-3C-4D-5E");
    EXPECT_TRUE(LM_FormatFirstHardwareAddress(addrs, 1).empty());  // only the loopback
    EXPECT_TRUE(LM_FormatFirstHardwareAddress(addrs, 0).empty());
    // On this machine: either nothing or a well-formed address.
    LMString real = LM_GetHardwareAddress();
    EXPECT_TRUE(real.empty() || real.length() == 17u) << real.c_str();
}

}  // namespace
