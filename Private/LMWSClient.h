// The client context behind an LM_WS_Handle: the three service proxies, the facade over StreamAPI
// and DownloadAPI, the parameter block they share, and the cache manager (null without a cache).
#ifndef LM_WS_CLIENT_H
#define LM_WS_CLIENT_H

#include "CacheMgr.h"
#include "DownloadAPI.h"
#include "LM_WS.h"
#include "LM_WS_SetupParams2.h"
#include "RealTimeBrowse.h"
#include "StreamAPI.h"
#include "StreamDownloadAPI.h"

struct LMWSClient {
    RealTimeBrowse m_RealTimeBrowse;
    StreamAPI m_StreamAPI;
    DownloadAPI m_DownloadAPI;
    StreamDownloadAPI m_StreamDownloadAPI;
    LM_WS_SetupParams2 m_Params;
    CacheMgr* m_CacheMgr = nullptr;

    LMWSClient() = default;
    ~LMWSClient() { delete m_CacheMgr; }
    LMWSClient(const LMWSClient&) = delete;
    LMWSClient& operator=(const LMWSClient&) = delete;

    // The client of a handle, or null when the handle holds none.
    static LMWSClient* From(LM_WS_Handle* handle) {
        return handle != nullptr ? static_cast<LMWSClient*>(handle->Client) : nullptr;
    }

    // Refreshes the cache for the bits of `mask` that CacheData has: 1 the catalogue load time,
    // 2 box art to revalidate, 4 user data dropped.
    void RefreshCache(uint32_t mask, LM_WS_Handle* handle);
};

#endif  // LM_WS_CLIENT_H
