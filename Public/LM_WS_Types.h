// Basic types of the LM_WS_* client interface shared by the client library and the cache.
#ifndef LM_WS_TYPES_H
#define LM_WS_TYPES_H

#include <cstdint>

#include "LMString.h"

// Status of every client operation: 0 success, negative failures (see LM_WS_Status codes).
typedef int32_t LM_WS_Status;

// How and what the client caches.
struct LM_WS_CacheParam {
    enum CacheType : uint32_t {
        None = 0,    // no cache at all
        Memory = 1,  // an SQLite database in memory, kept open while the cache is initialised
        File = 2,    // the SQLite database file CachePath, opened per operation
    };
    enum CacheData : uint32_t {
        Service = 1,   // serialized service responses
        BoxArt = 2,    // box-art images
        UserData = 4,  // small per-user values such as wishlist flags
    };

    uint32_t CacheType = None;
    uint32_t CacheData = 0;   // bit set of CacheData values
    uint32_t CacheLimit = 0;  // total size budget in bytes; 0 never evicts
    LMString CachePath;       // database file; its folder also holds box-art files
};

// Box-art size classes. Each has a folder name on the server and a file-name suffix; they are
// equal except for Size135, whose folder is "135s".
enum LM_WS_BoxArtSize {
    LM_WS_BoxArt95 = 0,
    LM_WS_BoxArt175 = 1,
    LM_WS_BoxArt65 = 2,
    LM_WS_BoxArt77 = 3,
    LM_WS_BoxArt102 = 4,
    LM_WS_BoxArt126 = 5,
    LM_WS_BoxArt135 = 6,
    LM_WS_BoxArt137 = 7,
    LM_WS_BoxArt153 = 8,
    LM_WS_BoxArt177 = 9,
    LM_WS_BoxArt203 = 10,
    LM_WS_BoxArt269 = 11,
    LM_WS_BoxArt321 = 12,
};

#endif  // LM_WS_TYPES_H
