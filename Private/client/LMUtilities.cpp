#include "LMUtilities.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <openssl/rand.h>

#include "LMAssert.h"
#include "LMBoxArt.h"
#include "LMFile.h"
#include "LMHash.h"

namespace {

// Response code range [lo, hi] of one operation maps to first, first - step, ...
struct StatusRange {
    const char* operation;
    int lo;
    int hi;
    int first;
    int step;
};

const StatusRange kStatusTable[] = {
    {"LM_WS_authorizeDevice", 1, 2, -1005, 1},
    {"LM_WS_doPurchaseSavedBilling", 1, 12, -1007, 1},
    {"LM_WS_doPurchaseSavedBilling", 20, 20, -1028, 0},
    {"LM_WS_doPurchaseSavedBilling", 21, 22, -1021, 1},
    {"LM_WS_getBillingInfo", 1, 1, -1008, 0},
    {"LM_WS_getBillingInfo", 2, 2, -1017, 0},
    {"LM_WS_getBillingInfo", 3, 4, -1011, 1},
    {"LM_WS_assignGiftCertificateToUser", 1, 2, -1019, 1},
    {"LM_WS_sendDownloadStatus", 1, 6, -1051, 1},
    {"LM_WS_loginUser", 1, 3, -1100, 1},
    {"LM_WS_registerUser", 1, 3, -1103, 1},
    {"LM_WS_registerUser", 4, 4, -1102, 0},
    {"LM_WS_setUserBillingInfo", 1, 1, -1106, 0},
    {"LM_WS_emailPassword", 1, 4, -1107, 1},
    {"LM_WS_setUserPassword", 1, 1, -1111, 0},
    {"LM_WS_setUserPassword", 2, 2, -1108, 0},
    {"LM_WS_setUserPassword", 3, 3, -1102, 0},
    {"LM_WS_calcOrderTax", 1, 3, -1023, 1},
    {"LM_WS_calcOrderTax", 11, 12, -1026, 1},
    {"LM_WS_calcOrderTax", 20, 20, -1028, 0},
};

// Runtime errors that are SOAP or XML failures: -6000 - n.
const int kSoapErrors[] = {1, 2, 3, 5, 6, 8, 9, 12, 13, 23, 24, 25, 26, 39, 42, 43, 44, 45};

const int kSoapTcpError = 28;
const int kSoapEOF = -1;
const int kSoapHttpError = 29;
const int kSoapSslError = 30;

}  // namespace

LM_WS_Status LMUtilities::MakeStatus(int soapError, int responseCode, const char* operation) {
    if (soapError == 0) {
        if (responseCode == 0) {
            return LM_WS_OK;
        }
        if (operation != nullptr) {
            for (const StatusRange& r : kStatusTable) {
                if (responseCode >= r.lo && responseCode <= r.hi &&
                    strcmp(operation, r.operation) == 0) {
                    return r.first - r.step * (responseCode - r.lo);
                }
            }
        }
        return LM_WS_RESPONSE_CODE;
    }
    if (soapError == kSoapTcpError) {
        return LM_WS_NO_CONNECTION;
    }
    if (soapError == kSoapEOF) {
        return LM_WS_CONNECTION_ENDED;
    }
    if ((soapError >= 14 && soapError <= 19) || soapError == kSoapHttpError ||
        (soapError >= 100 && soapError <= 599)) {
        return LM_WS_HTTP_BASE - soapError;
    }
    if (soapError == kSoapSslError) {
        return LM_WS_SSL_FAILED;
    }
    for (int code : kSoapErrors) {
        if (soapError == code) {
            return LM_WS_SOAP_BASE - soapError;
        }
    }
    return LM_WS_RESPONSE_CODE;
}

LMString LMUtilities::URLEncode(const char* text) {
    static const char kHex[] = "0123456789ABCDEF";
    LMString out;
    if (text == nullptr) {
        return out;
    }
    for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p != 0; ++p) {
        unsigned char c = *p;
        bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                     strchr("-_.!~*'()", c) != nullptr;
        if (plain) {
            out.append(static_cast<char>(c));
        } else {
            char escaped[3] = {'%', kHex[c >> 4], kHex[c & 0x0F]};
            out.append(escaped, 3);
        }
    }
    return out;
}

int LMUtilities::safe_snprintf(char* buf, size_t bufsize, const char* format, ...) {
    LM_ASSERT((buf != 0) && (format != 0) && (bufsize > 1));
    va_list args;
    va_start(args, format);
    int n = vsnprintf(buf, bufsize, format, args);
    va_end(args);
    buf[bufsize - 1] = 0;
    if (n < 0) {
        buf[0] = 0;
        return 0;
    }
    return static_cast<size_t>(n) >= bufsize ? static_cast<int>(bufsize - 1) : n;
}

LMString LMUtilities::GetBoxArtImageFileName(const char* path, const char* boxartprefix, int size) {
    return LMBoxArtFileName(path, boxartprefix, size);
}

LMString LMUtilities::GetBoxArtImageURL(const LMString& host, int size, const char* boxartprefix) {
    LMString url("http://");
    url.append(host);
    url.append("/images/boxart/");
    url.append(LMBoxArtFolder(size));
    url.append('/');
    url.append(URLEncode(boxartprefix));
    url.append(LMBoxArtSuffix(size));
    url.append(".jpg");
    return url;
}

LMString LMUtilities::CacheFileName(const LMString& cachePath, const LMString& serviceBaseURL,
                                    const LMString& destinationUniqueID, int destinationTypeID,
                                    const LMString& apiKey, const LMString& userName,
                                    const LMString& password, unsigned cacheData,
                                    unsigned cacheLimit) {
    LMString name(cachePath.empty() ? LMString(".") : cachePath);
    if (name[name.length() - 1] != LMFile::PATH_SEPERATOR) {
        name.append(LMFile::PATH_SEPERATOR);
    }
    auto hash = [](const LMString& s) { return LMHash32(s.c_str(), s.length()); };
    char part[100];
    safe_snprintf(part, sizeof(part), "%u_%u_%d_%u_%u_%u_%u_%u_%u", hash(serviceBaseURL),
                  hash(destinationUniqueID), destinationTypeID, hash(apiKey), hash(userName),
                  hash(password), cacheData, cacheLimit, 1u);
    name.append(part);
    name.append(".lm");
    return name;
}

LMString LMUtilities::GenerateUniqueID() {
    unsigned char bytes[16];
    if (RAND_bytes(bytes, sizeof(bytes)) != 1) {
        return LMString();
    }
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);  // version 4: random
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);  // the RFC 4122 variant
    char text[37];
    snprintf(text, sizeof(text),
             "%02x%02x%02x%02x-%02x%02x-%02x%02x-%02x%02x-%02x%02x%02x%02x%02x%02x", bytes[0],
             bytes[1], bytes[2], bytes[3], bytes[4], bytes[5], bytes[6], bytes[7], bytes[8],
             bytes[9], bytes[10], bytes[11], bytes[12], bytes[13], bytes[14], bytes[15]);
    return LMString(text);
}
