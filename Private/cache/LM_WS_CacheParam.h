// How and what the client caches: the cache part of the set-up parameters, as the cache reads it.
#ifndef LM_WS_CACHE_PARAM_H
#define LM_WS_CACHE_PARAM_H

#include <cstdint>

#include "LMString.h"

struct LM_WS_CacheParam {
    enum CacheType : uint32_t {
        None = 0,    // no cache at all
        Memory = 1,  // an SQLite database in memory, kept open while the cache is initialised
        File = 2,    // the SQLite database file CachePath, shared with other processes
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

#endif  // LM_WS_CACHE_PARAM_H
