#include "LMSoapProxyTrace.h"

#include "LMLog.h"

namespace {
// Registered on the first traced call.
LMLogArea s_ProxyArea(LMWS_SoapProxyLOG_AREA_NAME);
}  // namespace

LMSoapProxyTrace::LMSoapProxyTrace(const char* method) : m_Method(method) {
    LM_LogOutput(s_ProxyArea.Id(), LM_LOG_TRACE, "Entering %s\n", m_Method);
}

LMSoapProxyTrace::~LMSoapProxyTrace() {
    LM_LogOutput(s_ProxyArea.Id(), LM_LOG_TRACE, "Exiting %s\n", m_Method);
}
