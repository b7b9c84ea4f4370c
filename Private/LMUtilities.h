// Helpers shared by the client operations: the status mapping, URL encoding, bounded formatting,
// box-art names and the cache file name.
#ifndef LM_UTILITIES_H
#define LM_UTILITIES_H

#include <cstddef>

#include "LMString.h"
#include "LM_WS_Types.h"

class LMUtilities {
public:
    // The status of an operation from the SOAP runtime's error code, the service's response code
    // and the operation's name ("LM_WS_authorizeDevice"; null for operations whose non-zero
    // response codes are all -1004).
    static LM_WS_Status MakeStatus(int soapError, int responseCode, const char* operation);

    // Letters, digits and "-_.!~*'()" pass; every other byte becomes "%XX" (upper case).
    static LMString URLEncode(const char* text);

    // vsnprintf into `buf`, always terminated; returns the length of what was written.
    static int safe_snprintf(char* buf, size_t bufsize, const char* format, ...)
        __attribute__((format(printf, 3, 4)));

    // path + boxartprefix + size suffix + ".jpg".
    static LMString GetBoxArtImageFileName(const char* path, const char* boxartprefix, int size);
    // "http://" + host + "/images/boxart/" + size folder + "/" + encoded prefix + suffix + ".jpg".
    static LMString GetBoxArtImageURL(const LMString& host, int size, const char* boxartprefix);

    // The cache file for one combination of account, device and cache settings: `cachePath`
    // ("." when empty) with a trailing "/", then hashes of the settings, then ".lm". The secrets
    // themselves never appear in the name.
    static LMString CacheFileName(const LMString& cachePath, const LMString& serviceBaseURL,
                                  const LMString& destinationUniqueID, int destinationTypeID,
                                  const LMString& apiKey, const LMString& userName,
                                  const LMString& password, unsigned cacheData,
                                  unsigned cacheLimit);
};

#endif  // LM_UTILITIES_H
