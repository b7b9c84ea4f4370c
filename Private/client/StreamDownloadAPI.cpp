#include "StreamDownloadAPI.h"

#include "LMAssert.h"

void StreamDownloadAPI::Init(StreamAPI* stapi, DownloadAPI* dlapi, LM_WS_AccessType accessType) {
    LM_ASSERT(stapi != 0);
    LM_ASSERT(dlapi != 0);
    m_StreamAPI = stapi;
    m_DownloadAPI = dlapi;
    m_AccessType = accessType;
}

int StreamDownloadAPI::SetParams(const LM_WS_SetupParams2* params) {
    if (UsesDownloadAPI()) {
        LM_ASSERT(m_DownloadAPI != 0);
        return m_DownloadAPI->SetParams(params);
    }
    LM_ASSERT(m_StreamAPI != 0);
    return m_StreamAPI->SetParams(params);
}

int StreamDownloadAPI::Setup(const LMString& operation) {
    if (UsesDownloadAPI()) {
        LM_ASSERT(m_DownloadAPI != 0);
        return m_DownloadAPI->Setup(operation);
    }
    LM_ASSERT(m_StreamAPI != 0);
    return m_StreamAPI->Setup(operation);
}

StreamDownloadAPI::operator soap&() {
    if (UsesDownloadAPI()) {
        LM_ASSERT(m_DownloadAPI != 0);
        return *m_DownloadAPI->soap;
    }
    LM_ASSERT(m_StreamAPI != 0);
    return *m_StreamAPI->soap;
}
