// The service of the operations that StreamAPI and DownloadAPI both offer: DownloadAPI for the
// download access type (1), StreamAPI for every other one. This is the one place that choice is
// made; every operation that depends on the access type goes through Dispatch. The facade owns
// neither proxy.
#ifndef LM_STREAM_DOWNLOAD_API_H
#define LM_STREAM_DOWNLOAD_API_H

#include <type_traits>

#include "DownloadAPI.h"
#include "LMAssert.h"
#include "LMString.h"
#include "LM_WS.h"
#include "LM_WS_SetupParams2.h"
#include "StreamAPI.h"

class StreamDownloadAPI {
public:
    StreamDownloadAPI() : m_StreamAPI(nullptr), m_DownloadAPI(nullptr), m_AccessType(0) {}
    StreamDownloadAPI(const StreamDownloadAPI&) = delete;
    StreamDownloadAPI& operator=(const StreamDownloadAPI&) = delete;

    void Init(StreamAPI* stapi, DownloadAPI* dlapi, LM_WS_AccessType accessType);
    int SetParams(const LM_WS_SetupParams2* params);
    int Setup(const LMString& operation);
    // The context of the proxy in use, on which the shared operations are called.
    operator soap&();

    LM_WS_AccessType AccessType() const { return m_AccessType; }
    bool UsesDownloadAPI() const { return m_AccessType == 1; }

    // Calls `f` with the proxy in use (DownloadAPI& or StreamAPI&) and returns what it returns.
    // Operations whose request differs between the services tell them apart with IsDownloadAPI.
    template <class F>
    decltype(auto) Dispatch(F&& f) {
        if (UsesDownloadAPI()) {
            LM_ASSERT(m_DownloadAPI != 0);
            return f(*m_DownloadAPI);
        }
        LM_ASSERT(m_StreamAPI != 0);
        return f(*m_StreamAPI);
    }

    // True for the download service's proxy type, as Dispatch hands it to `f`.
    template <class Proxy>
    static constexpr bool IsDownloadAPI = std::is_same_v<std::decay_t<Proxy>, DownloadAPI>;

private:
    StreamAPI* m_StreamAPI;
    DownloadAPI* m_DownloadAPI;
    LM_WS_AccessType m_AccessType;
};

#endif  // LM_STREAM_DOWNLOAD_API_H
