#include "LMProxySupport.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "LMAnswerKeeper.h"
#include "LMDeployment.h"
#include "LMSoapLogPlugin.h"
#include "soapH.h"
#include "wsaapi.h"
#include "wsseapi.h"

namespace {

const char kAnonymous[] = "http://schemas.xmlsoap.org/ws/2004/08/addressing/role/anonymous";
const char kDefaultUserAgent[] = "gSOAP/2.7";
const char kAcceptEncoding[] = "gzip, deflate";

// Replaces the values of the "User-Agent" and "Accept-Encoding" headers that the toolkit's HTTP
// writer sends itself (its own agent name must never reach the service). Being a plug-in, it
// follows the context through copy().
class UserAgentPlugin {
public:
    static const char kId[];

    static int Register(struct soap* soap, const char* userAgent) {
        if (soap_lookup_plugin(soap, kId) != nullptr) {
            return SOAP_OK;
        }
        return soap_register_plugin_arg(soap, Create, const_cast<char*>(userAgent));
    }

private:
    struct Data {
        int (*fposthdr)(struct soap*, const char*, const char*);
        char* userAgent;  // heap copy
    };

    static int Create(struct soap* soap, struct soap_plugin* plugin, void* arg) {
        char* copy = strdup(static_cast<const char*>(arg));
        Data* data = copy != nullptr ? new (std::nothrow) Data{soap->fposthdr, copy} : nullptr;
        if (data == nullptr) {
            free(copy);
            return SOAP_EOM;
        }
        plugin->id = kId;
        plugin->data = data;
        plugin->fcopy = Copy;
        plugin->fdelete = Delete;
        soap->fposthdr = PostHeader;
        return SOAP_OK;
    }

    static int Copy(struct soap*, struct soap_plugin* dst, struct soap_plugin* src) {
        const Data* from = static_cast<const Data*>(src->data);
        char* copy = strdup(from->userAgent);
        Data* data = copy != nullptr ? new (std::nothrow) Data{from->fposthdr, copy} : nullptr;
        if (data == nullptr) {
            free(copy);
            return SOAP_EOM;
        }
        dst->data = data;
        return SOAP_OK;
    }

    static void Delete(struct soap*, struct soap_plugin* plugin) {
        Data* data = static_cast<Data*>(plugin->data);
        if (data != nullptr) {
            free(data->userAgent);
            delete data;
        }
        plugin->data = nullptr;
    }

    static int PostHeader(struct soap* soap, const char* key, const char* value) {
        const Data* data = static_cast<const Data*>(soap_lookup_plugin(soap, kId));
        if (data == nullptr) {
            return soap->error = SOAP_PLUGIN_ERROR;
        }
        if (key != nullptr && value != nullptr) {
            if (strcmp(key, "User-Agent") == 0) {
                value = data->userAgent;
            } else if (strcmp(key, "Accept-Encoding") == 0) {
                value = kAcceptEncoding;
            }
        }
        return data->fposthdr(soap, key, value);
    }
};

const char UserAgentPlugin::kId[] = "LM-USER-AGENT/1.0";

}  // namespace

namespace LMProxySupport {

const char* WireUserAgent(const LMString& userAgent) {
    return userAgent.empty() ? kDefaultUserAgent : userAgent.c_str();
}

void Bound(struct soap* soap, int deadlineSeconds) {
    soap->recv_maxlength = 8u << 20;
    soap->maxlength = 1L << 20;
    soap->maxlevel = 64;
    soap->maxoccurs = 20000;
    soap->transfer_timeout = deadlineSeconds;
}

int Configure(struct soap* soap, const LM_WS_SetupParams2& params) {
    if (!params.ProxyHost.empty()) {
        soap->proxy_http_version = "1.1";
        soap->proxy_host = params.ProxyHost.c_str();
        soap->proxy_port = params.ProxyPort;
        soap->proxy_userid = params.ProxyUserName.empty() ? nullptr : params.ProxyUserName.c_str();
        soap->proxy_passwd = params.ProxyPassword.empty() ? nullptr : params.ProxyPassword.c_str();
    }
    int rc = UserAgentPlugin::Register(soap, WireUserAgent(params.UserAgent));
    if (rc != SOAP_OK) {
        return rc;
    }
    soap->send_timeout = params.SendTimeout;
    soap->connect_timeout = params.SendTimeout;
    soap->recv_timeout = params.RecvTimeout;
    if (soap_lookup_plugin(soap, SOAP_WSA_ID) == nullptr) {
        rc = soap_register_plugin(soap, soap_wsa);
    }
    if (rc == SOAP_OK && soap_lookup_plugin(soap, SOAP_WSSE_ID) == nullptr) {
        rc = soap_register_plugin(soap, soap_wsse);
    }
    if (rc == SOAP_OK) {
        rc = LMAnswerKeeper::Register(soap);
    }
    if (rc == SOAP_OK) {
        rc = LMSoapLogPlugin::Register(soap);
    }
    return rc;
}

int PrepareCall(struct soap* soap, const LM_WS_SetupParams2& params, const char* endpoint,
                const LMString& operation) {
    LMSoapLogPlugin::BeginExchange(soap);
    soap->header = nullptr;
    LMString id = LMString("uuid:") + operation;
    LMString action = LMString("http://" LM_WS_SCHEMA_HOST "/api/") + operation;
    int rc = soap_wsa_request(soap, id.c_str(), endpoint, action.c_str());
    if (rc == SOAP_OK) {
        rc = soap_wsa_add_ReplyTo(soap, kAnonymous);
    }
    if (rc == SOAP_OK) {
        rc = soap_wsse_add_UsernameTokenText(soap, "User", params.UserName.c_str(),
                                             params.Password.c_str());
    }
    return rc;
}

}  // namespace LMProxySupport
