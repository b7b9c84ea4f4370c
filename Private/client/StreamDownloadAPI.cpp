#include "StreamDownloadAPI.h"

void StreamDownloadAPI::Init(StreamAPI* stapi, DownloadAPI* dlapi, LM_WS_AccessType accessType) {
    LM_ASSERT(stapi != 0);
    LM_ASSERT(dlapi != 0);
    m_StreamAPI = stapi;
    m_DownloadAPI = dlapi;
    m_AccessType = accessType;
}

int StreamDownloadAPI::SetParams(const LM_WS_SetupParams2* params) {
    return Dispatch([params](auto& proxy) { return proxy.SetParams(params); });
}

int StreamDownloadAPI::Setup(const LMString& operation) {
    return Dispatch([&operation](auto& proxy) { return proxy.Setup(operation); });
}

StreamDownloadAPI::operator soap&() {
    return Dispatch([](auto& proxy) -> soap& { return *proxy.soap; });
}
