// The client context behind an LM_WS_Handle: the three service proxies, the facade over StreamAPI
// and DownloadAPI, the parameter block they share, and the cache manager (null without a cache).
#ifndef LM_WS_CLIENT_H
#define LM_WS_CLIENT_H

#include "CacheMgr.h"
#include "DownloadAPI.h"
#include "LMAnswerMemo.h"
#include "LM_WS.h"
#include "LM_WS_Records.h"
#include "LM_WS_SetupParams2.h"
#include "RealTimeBrowse.h"
#include "StreamAPI.h"
#include "StreamDownloadAPI.h"

enum : uint8_t { kLMWSDuplicateDeviceFlag = 0x10 };  // bit 4 of LM_WS_SetupParams2::Flag
enum : int32_t { kLMWSRegisteredTwice = 2 };

struct LMWSClient {
    RealTimeBrowse m_RealTimeBrowse;
    StreamAPI m_StreamAPI;
    DownloadAPI m_DownloadAPI;
    StreamDownloadAPI m_StreamDownloadAPI;
    LM_WS_SetupParams2 m_Params;
    CacheMgr* m_CacheMgr = nullptr;
    LMAnswerMemo m_AnswerMemo;  // decoded copies of recently read cache entries
    // The token validity the last LM_WS_checkAuthToken saw: user data is dropped when it changes.
    bool m_AuthTokenValid = false;
    // Which registration of this device the service uses: 0 not known, 1 its own,
    // kLMWSRegisteredTwice when its unique id is registered a second time and that one is used
    // (the web-service class then keeps the device's set-up token). Only meaningful with
    // kLMWSDuplicateDeviceFlag in m_Params.Flag; set-up clears both.
    int32_t m_RegistrationState = 0;

    // The facade is usable from the start (with StreamAPI) and follows SetAccessType.
    LMWSClient() { m_StreamDownloadAPI.Init(&m_StreamAPI, &m_DownloadAPI, m_Params.AccessType); }
    ~LMWSClient() { delete m_CacheMgr; }
    LMWSClient(const LMWSClient&) = delete;
    LMWSClient& operator=(const LMWSClient&) = delete;

    // The client of a handle, or null when the handle holds none.
    static LMWSClient* From(LM_WS_Handle* handle) {
        return handle != nullptr ? static_cast<LMWSClient*>(handle->Client) : nullptr;
    }

    // The first step of every operation: clear the caller's record and give it its tag (so that
    // even a failed call leaves a record that can be released), then find the handle's client.
    // Null when the record or the client is missing; the operation then returns -1000.
    static LMWSClient* Begin(LM_WS_Handle* handle, void* result, LM_WS_ResultType type) {
        if (result == nullptr) {
            return nullptr;
        }
        LM_WS_InitResult(result, type);
        return From(handle);
    }

    // The access type in use, kept in the parameter block and in the facade that picks the
    // service of the shared operations: they must never disagree.
    void SetAccessType(LM_WS_AccessType type) {
        m_Params.AccessType = type;
        m_StreamDownloadAPI.Init(&m_StreamAPI, &m_DownloadAPI, type);
    }

    // Refreshes the cache for the bits of `mask` that CacheData has: 1 the catalogue load time,
    // 2 box art to revalidate, 4 user data dropped.
    void RefreshCache(uint32_t mask, LM_WS_Handle* handle);
};

#endif  // LM_WS_CLIENT_H
