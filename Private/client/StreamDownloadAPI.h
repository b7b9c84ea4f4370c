// The service of the operations that StreamAPI and DownloadAPI both offer: DownloadAPI for the
// download access type (1), StreamAPI for every other one. The facade owns neither proxy.
#ifndef LM_STREAM_DOWNLOAD_API_H
#define LM_STREAM_DOWNLOAD_API_H

#include "DownloadAPI.h"
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

private:
    StreamAPI* m_StreamAPI;
    DownloadAPI* m_DownloadAPI;
    LM_WS_AccessType m_AccessType;
};

#endif  // LM_STREAM_DOWNLOAD_API_H
