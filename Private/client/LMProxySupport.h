// What the three service proxies share: configuring a context once from the client's parameter
// block, and the per-call WS-Addressing and WS-Security headers.
#ifndef LM_PROXY_SUPPORT_H
#define LM_PROXY_SUPPORT_H

#include "LMAssert.h"
#include "LMSoapLogPlugin.h"
#include "LMString.h"
#include "LM_WS_SetupParams2.h"
#include "soapH.h"

namespace LMProxySupport {

// Proxy settings, User-Agent and accepted encodings, time-outs, then the WS-Addressing,
// WS-Security, answer-keeping (LMAnswerKeeper.h) and raw-byte logging plug-ins. SOAP_OK or the
// toolkit's error code.
int Configure(struct soap* soap, const LM_WS_SetupParams2& params);

// Bounds what one exchange on `soap` may cost, whatever the server sends: an answer of at most
// 8 MiB (a 200-title page is under 1 MiB), strings of at most 1 MiB, XML nested at most 64 deep,
// at most 20,000 repetitions of an element, and `deadlineSeconds` for the whole exchange
// (connect, send and receive) on top of the per-receive time-outs.
void Bound(struct soap* soap, int deadlineSeconds);

// Starts a fresh request header (the previous call left the answer's header in soap->header)
// with MessageID "uuid:" + operation, To = endpoint, the action of the operation, the anonymous
// ReplyTo and a plain-text UsernameToken "User". The caller adds its device element.
int PrepareCall(struct soap* soap, const LM_WS_SetupParams2& params, const char* endpoint,
                const LMString& operation);

// The User-Agent value on the wire for a built User-Agent (the toolkit's old default when empty).
const char* WireUserAgent(const LMString& userAgent);

}  // namespace LMProxySupport

// The client of one service: the generated proxy `Proxy` configured from the client's parameter
// block, with the per-call headers. `Device` is the service's device element, made with `New`
// in the call's context and hung on the header at `Slot`. RealTimeBrowse, StreamAPI and
// DownloadAPI differ only in these and in their endpoint's file name.
template <class Proxy, class Device, Device* (*New)(struct soap*, int),
          Device* SOAP_ENV__Header::*Slot>
class LMServiceClient : public Proxy {
public:
    explicit LMServiceClient(const char* endpointFile)
        : Proxy(kMode), m_EndpointFile(endpointFile), m_Params(nullptr) {
        // From the start, so that the environment query made before SetParams is logged too.
        LMSoapLogPlugin::Register(this->soap);
    }
    LMServiceClient(const LMServiceClient&) = delete;
    LMServiceClient& operator=(const LMServiceClient&) = delete;

    // Once per client: endpoint = base URL + the service's file, proxy, User-Agent, time-outs
    // and plug-ins. SOAP_OK or the toolkit's error code.
    int SetParams(const LM_WS_SetupParams2* params) {
        LM_ASSERT(params != 0);
        LM_ASSERT(m_Params == 0);
        m_Params = params;
        m_Endpoint = params->ServiceBaseURL + m_EndpointFile;
        this->soap_endpoint = m_Endpoint.c_str();
        return LMProxySupport::Configure(this->soap, *params);
    }

    // Before every call: WS-Addressing, WS-Security and the device element, all allocated in
    // the call's context. SOAP_OK or the toolkit's error code.
    int Setup(const LMString& operation) {
        LM_ASSERT(m_Params != 0);
        struct soap* soap = this->soap;
        int rc = LMProxySupport::PrepareCall(soap, *m_Params, this->soap_endpoint, operation);
        if (rc != SOAP_OK) {
            return rc;
        }
        Device* device = New(soap, -1);
        if (device == nullptr) {
            return soap->error = SOAP_EOM;
        }
        device->APIKey = soap_strdup(soap, m_Params->APIKey.c_str());
        device->DestinationUniqueID = soap_strdup(soap, m_Params->DestinationUniqueID.c_str());
        device->DestinationTypeID = m_Params->DestinationTypeID;
        device->AuthToken = soap_strdup(soap, m_Params->AuthToken.c_str());
        soap->header->*Slot = device;
        return SOAP_OK;
    }

    const LMString& Endpoint() const { return m_Endpoint; }

    // UTF-8 strings; the connection stays open between calls while the server keeps it; answers
    // are read as plain trees: document/literal answers carry no id/href references, so the
    // toolkit's reference bookkeeping would only cost time.
    static constexpr soap_mode kMode = SOAP_C_UTFSTRING | SOAP_IO_KEEPALIVE | SOAP_XML_TREE;

private:
    const char* m_EndpointFile;
    const LM_WS_SetupParams2* m_Params;
    LMString m_Endpoint;
};

#endif  // LM_PROXY_SUPPORT_H
