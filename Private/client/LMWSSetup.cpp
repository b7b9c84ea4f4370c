// Set-up and teardown of the client, and the operations set-up itself calls.
#include <arpa/inet.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <signal.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "LMCall.h"
#include "LMDeployment.h"
#include "LMFile.h"
#include "LMLog.h"
#include "LMProxySupport.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LM_WS.h"
#include "cacerts.h"

namespace {

LMLogArea g_LogArea(LMWS_SoapProxyLOG_AREA_NAME);

const uint32_t kMaxDestinationUniqueID = 350;
const uint32_t kMinCacheLimit = 358400;
const uint32_t kSetupRefreshMask = LM_WS_CacheParam::Service | LM_WS_CacheParam::UserData;

// The TLS library is initialised once per process. A peer that drops a TLS connection raises
// SIGPIPE on the next write; the device client must survive that, so the signal is ignored here
// too. OpenSSL releases its own state at process exit.
struct TlsLibrary {
    TlsLibrary() {
        signal(SIGPIPE, SIG_IGN);
        soap_ssl_init();
    }
};

void InitTlsOnce() {
    static const TlsLibrary library;
    (void)library;
}

bool IsEmpty(const char* text) {
    return text == nullptr || text[0] == 0;
}

LMString Text(const char* text) {
    return LMString(text != nullptr ? text : "");
}

// Verification of the server's own certificate (depth 0) on top of the chain's: the host name
// the connection asked for (its SNI name) must be one of the certificate's subjectAltNames. The
// subject's common name never counts: a certificate that names its host only there is refused,
// as browsers do. (The toolkit's own host check would fall back to the common name.) A
// connection to an address sends no SNI name; the toolkit matches addresses against the
// subjectAltNames alone.
int VerifyAgainstSubjectAltNames(int ok, X509_STORE_CTX* store) {
    if (!ok || X509_STORE_CTX_get_error_depth(store) != 0) {
        return ok;
    }
    SSL* ssl =
        static_cast<SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    const char* host =
        ssl != nullptr ? SSL_get_servername(ssl, TLSEXT_NAMETYPE_host_name) : nullptr;
    X509* cert = X509_STORE_CTX_get_current_cert(store);
    if (host == nullptr || cert == nullptr) {
        return ok;
    }
    unsigned char address[16];
    const bool isAddress =
        inet_pton(AF_INET, host, address) == 1 || inet_pton(AF_INET6, host, address) == 1;
    const int matched = isAddress ? X509_check_ip_asc(cert, host, 0)
                                  : X509_check_host(cert, host, strlen(host),
                                                    X509_CHECK_FLAG_NEVER_CHECK_SUBJECT, nullptr);
    if (matched != 1) {
        X509_STORE_CTX_set_error(store, X509_V_ERR_HOSTNAME_MISMATCH);
        return 0;
    }
    return 1;
}

// The certificates a TLS client trusts: the toolkit's built-in public roots and, when the
// deployment names one, every certificate of an extra PEM file. They are parsed once per process
// (per extra file), which is most of what a set-up costs, and every client context gets a store of
// its own holding those same certificates. The store itself is not shared: a store caches its
// lookups, and OpenSSL 3.0 releases have had races when handshakes on several threads use one.
class TrustedCertificates {
public:
    // The certificates for `caFile` ("" for the roots alone), null when the file holds none.
    // The process keeps them to its end.
    static const STACK_OF(X509) * Get(const LMString& caFile) {
        static std::mutex lock;
        static auto* parsed = new std::map<std::string, STACK_OF(X509)*>;
        std::lock_guard<std::mutex> hold(lock);
        auto found = parsed->find(caFile.c_str());
        if (found != parsed->end()) {
            return found->second;
        }
        STACK_OF(X509)* certs = Parse(caFile);
        if (certs != nullptr) {
            (*parsed)[caFile.c_str()] = certs;
        }
        return certs;  // null is not remembered: a file put right later is read then
    }

private:
    static STACK_OF(X509) * Parse(const LMString& caFile) {
        // The toolkit's roots come with a context; the certificates outlive it.
        struct soap* scratch = soap_new();
        STACK_OF(X509)* certs = nullptr;
        if (scratch != nullptr && soap_ssl_client_cacerts(scratch) == SOAP_OK &&
            scratch->ctx != nullptr) {
            certs = X509_STORE_get1_all_certs(SSL_CTX_get_cert_store(scratch->ctx));
        }
        if (scratch != nullptr) {
            soap_free(scratch);
        }
        if (certs != nullptr && !caFile.empty() && !AddFile(certs, caFile)) {
            sk_X509_pop_free(certs, X509_free);
            certs = nullptr;
        }
        return certs;
    }

    static bool AddFile(STACK_OF(X509) * certs, const LMString& caFile) {
        BIO* bio = BIO_new_file(caFile.c_str(), "r");
        if (bio == nullptr) {
            return false;
        }
        int added = 0;
        while (X509* cert = PEM_read_bio_X509(bio, nullptr, nullptr, nullptr)) {
            if (sk_X509_push(certs, cert) > 0) {
                ++added;
            } else {
                X509_free(cert);
            }
        }
        ERR_clear_error();  // the end of the file reads as an error
        BIO_free(bio);
        return added > 0;
    }
};

// A TLS client context that trusts the process's parsed certificates and nothing else (not
// even the system's folder). Peer verification stays on, host names are matched against
// subjectAltNames only.
bool TrustRoots(struct soap* soap, const LMString& caFile) {
    const STACK_OF(X509)* certs = TrustedCertificates::Get(caFile);
    if (certs == nullptr ||
        soap_ssl_client_context(soap, SOAP_SSL_DEFAULT | SOAP_SSL_NO_DEFAULT_CA_PATH, nullptr,
                                nullptr, nullptr, nullptr, nullptr) != SOAP_OK ||
        soap->ctx == nullptr) {
        return false;
    }
    X509_STORE* store = SSL_CTX_get_cert_store(soap->ctx);
    for (int i = 0; i < sk_X509_num(certs); ++i) {
        // Takes a reference: the parsed certificate is shared, not copied.
        X509_STORE_add_cert(store, sk_X509_value(certs, i));
    }
    ERR_clear_error();  // a root listed twice reads as an error
    SSL_CTX_set_verify(soap->ctx, SSL_VERIFY_PEER, VerifyAgainstSubjectAltNames);
    return true;
}

LMString BuildUserAgent(const LM_WS_SetupParams2& p) {
    LMString agent;
    if (!p.ApplicationRevision.empty() || !p.firmwareVersion.empty()) {
        agent = LMString("LMSDK: ") + p.firmwareVersion + "|" + p.ApplicationRevision;
    }
    if (!p.modelNumber.empty()) {
        agent.append(" LMMODEL:");
        agent.append(p.modelNumber);
    }
    return agent;
}

// Steps 2 to 14 of the set-up on a freshly allocated client.
LM_WS_Status Build(LM_WS_Handle* handle, LMWSClient& client, const LM_WS_SetupParams& in) {
    LM_WS_SetupParams2& p = client.m_Params;

    if (IsEmpty(in.APIKey) || IsEmpty(in.DestinationUniqueID) || IsEmpty(in.UserName) ||
        IsEmpty(in.Password) ||
        (in.CacheType == LM_WS_CacheParam::File && in.CachePath == nullptr)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    if (strlen(in.DestinationUniqueID) > kMaxDestinationUniqueID) {
        return LM_WS_INVALID_ARGUMENT;
    }
    if (in.CacheType != LM_WS_CacheParam::None) {
        if (in.CacheLimit != 0 && in.CacheLimit < kMinCacheLimit) {
            return LM_WS_INVALID_ARGUMENT;
        }
        if (in.CacheType == LM_WS_CacheParam::File) {
            const char* folder = in.CachePath[0] != 0 ? in.CachePath : ".";
            // A cache folder the client makes is its owner's alone, like what it keeps there.
            if (!LMFile::FolderExist(folder) && !LMFile::CreateFolder(folder, 0700)) {
                return LM_WS_CACHE_FOLDER_FAILED;
            }
        }
    }

    p.APIKey = in.APIKey;
    p.AuthToken = Text(in.AuthToken);
    p.DestinationUniqueID = in.DestinationUniqueID;
    p.DestinationTypeID = in.DestinationTypeID;
    p.UserName = in.UserName;
    p.Password = in.Password;
    p.SendTimeout = 30;
    p.RecvTimeout = 88;
    if (!IsEmpty(in.ProxyHost)) {
        p.ProxyHost = in.ProxyHost;
        p.ProxyPort = in.ProxyPort;
        p.ProxyUserName = Text(in.ProxyUserName);
        p.ProxyPassword = Text(in.ProxyPassword);
    }
    p.Cache.CacheType = in.CacheType;
    p.Cache.CacheData = in.CacheData;
    p.Cache.CacheLimit = in.CacheLimit;

    if (in.CacheType == LM_WS_CacheParam::File) {
        // The base URL is not known yet, so its hash in the name is that of "" (0).
        p.Cache.CachePath = LMUtilities::CacheFileName(
            LMString(in.CachePath), p.ServiceBaseURL, p.DestinationUniqueID, p.DestinationTypeID,
            p.APIKey, p.UserName, p.Password, p.Cache.CacheData, p.Cache.CacheLimit);
    }

    InitTlsOnce();
    p.Deployment = LMDeployment::FromEnvironment();
    struct soap* contexts[] = {client.m_RealTimeBrowse.soap, client.m_StreamAPI.soap,
                               client.m_DownloadAPI.soap};
    for (struct soap* soap : contexts) {
        if (!TrustRoots(soap, p.Deployment.caFile)) {
            return LM_WS_SSL_SETUP_FAILED;
        }
        // The environment query below runs before SetParams: bound its waits as well. The input
        // limits and the call deadline are set here once for every exchange of the context (the
        // service clients' log plug-in, there from their construction, holds the deadline).
        soap->connect_timeout = soap->send_timeout = p.SendTimeout;
        soap->recv_timeout = p.RecvTimeout;
        LMProxySupport::Bound(soap, p.Deployment.callDeadline);
    }

    p.ServiceBaseURL = LMUtilities::QueryServiceBaseURL(
        p.Deployment, in.Type, client.m_StreamAPI.soap, in.DestinationUniqueID,
        in.DestinationTypeID, in.EnvNum, p.EnvID);
    if (p.ServiceBaseURL.empty()) {
        return LM_WS_NO_CONNECTION;
    }

    p.ApplicationRevision = Text(in.ApplicationRevision);
    p.firmwareVersion = Text(in.firmwareVersion);
    p.modelNumber = Text(in.modelNumber);
    p.UserAgent = BuildUserAgent(p);
    if (!p.UserAgent.empty()) {
        printf("\n***---> User-Agent = %s", p.UserAgent.c_str());
    }

    int rc = client.m_RealTimeBrowse.SetParams(&p);
    if (rc == SOAP_OK) {
        rc = client.m_StreamAPI.SetParams(&p);
    }
    if (rc == SOAP_OK) {
        rc = client.m_DownloadAPI.SetParams(&p);
    }
    if (rc != SOAP_OK) {
        return LMUtilities::MakeStatus(rc, 0, nullptr);
    }

    LM_WS_AccessType access = in.AccessType;
    if (access != 1 && access != 2) {
        LM_WS_FileType fileType;
        access = LM_WS_getFileType(handle, &fileType) == LM_WS_OK ? fileType.AccessType : 0;
    }
    client.SetAccessType(access);

    if (p.Cache.CacheType == LM_WS_CacheParam::None) {
        return LM_WS_OK;
    }

    client.m_CacheMgr = new CacheMgr();
    if (client.m_CacheMgr->Init(p.Cache) != 0) {
        const char* file = p.Cache.CachePath.c_str();
        if (p.Cache.CachePath.empty() || !LMFile::Exist(file) || !LMFile::Remove(file) ||
            client.m_CacheMgr->Init(p.Cache) != 0) {
            return LM_WS_CACHE_OPEN_FAILED;
        }
    }
    client.RefreshCache(kSetupRefreshMask, handle);
    return LM_WS_OK;
}

}  // namespace

void LMWSClient::RefreshCache(uint32_t mask, LM_WS_Handle* handle) {
    if (m_CacheMgr == nullptr || m_Params.Cache.CacheType == LM_WS_CacheParam::None ||
        (mask & m_Params.Cache.CacheData) == 0) {
        return;
    }
    const uint32_t bits = mask & m_Params.Cache.CacheData;
    if (bits & LM_WS_CacheParam::Service) {
        LM_WS_LengthAndText time;
        if (LM_WS_getLastCacheLoadTimeUTC(handle, &time) == LM_WS_OK) {
            m_CacheMgr->SetLastLoadTime(LMString(time.Text, time.Length));
        }
        LM_WS_FreeResult(&time);
    }
    if (bits & LM_WS_CacheParam::BoxArt) {
        m_CacheMgr->InvalidateBoxArt();
    }
    if (bits & LM_WS_CacheParam::UserData) {
        m_CacheMgr->ClearUserData(LMString(LMCacheNames::kAllUserData));
    }
}

extern "C" {

LM_WS_Status LM_WS_Setup(LM_WS_Handle* handle, const LM_WS_SetupParams* params) {
    if (handle == nullptr || params == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    LM_WS_Teardown(handle);
    handle->Type = static_cast<int32_t*>(malloc(sizeof(int32_t)));
    if (handle->Type == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *handle->Type = 1;
    LMWSClient* client = new LMWSClient();
    handle->Client = client;
    LM_WS_Status status = Build(handle, *client, *params);
    if (status != LM_WS_OK) {
        LM_WS_Teardown(handle);
    }
    return status;
}

void LM_WS_Teardown(LM_WS_Handle* handle) {
    if (handle == nullptr) {
        return;
    }
    delete static_cast<LMWSClient*>(handle->Client);
    handle->Client = nullptr;
    free(handle->Type);
    handle->Type = nullptr;
}

LM_WS_Status LM_WS_getUserAgent(LM_WS_Handle* handle, LM_WS_LengthAndText* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultLengthAndText);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    LMUtilities::String2LM_WS_LengthAndText(client->m_Params.UserAgent.c_str(), result);
    LM_LogOutput(g_LogArea.Id(), LM_LOG_TRACE, "%s,User Agent:%s\n", "LM_WS_getUserAgent",
                 result->Text);
    return LM_WS_OK;
}

LM_WS_Status LM_WS_getLastCacheLoadTimeUTC(LM_WS_Handle* handle, LM_WS_LengthAndText* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultLengthAndText);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    int rc = LMCall::ValueCall<_LM1__getLastCacheLoadTimeUTCResponse>(
        proxy, "getLastCacheLoadTimeUTC",
        [&](_LM1__getLastCacheLoadTimeUTCResponse& response) {
            _LM1__getLastCacheLoadTimeUTC request;
            return proxy.getLastCacheLoadTimeUTC(&request, response);
        },
        [&](const _LM1__getLastCacheLoadTimeUTCResponse& response) {
            LMUtilities::String2LM_WS_LengthAndText(response.getLastCacheLoadTimeUTCResult, result);
        });
    LM_WS_Status status = LMUtilities::MakeStatus(rc, 0, nullptr);
    LM_LogOutput(g_LogArea.Id(), LM_LOG_TRACE, "%s, ret:%d,utctime:%s\n",
                 "LM_WS_getLastCacheLoadTimeUTC", rc, result->Text != nullptr ? result->Text : "");
    return status;
}

LM_WS_Status LM_WS_getFileType(LM_WS_Handle* handle, LM_WS_FileType* result) {
    if (result == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    memset(result, 0, sizeof(*result));
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    bool answered = false;
    int rc = LMCall::ValueCall<_LM1__getFileTypeResponse>(
        proxy, "getFileType",
        [&](_LM1__getFileTypeResponse& response) {
            _LM1__getFileType request;
            return proxy.getFileType(&request, response);
        },
        [&](const _LM1__getFileTypeResponse& response) {
            const LM1__FileType* t = response.getFileTypeResult;
            if (t == nullptr) {
                return;
            }
            answered = true;
            result->DRMProvider = t->File_USCOREDRMProvider;
            result->AccessType = t->File_USCOREAccessType;
            result->FileProfile = t->File_USCOREFileProfile;
            result->VideoFormat = t->File_USCOREVideoFormat;
            result->FileExtension = t->File_USCOREFileExtension;
        });
    LM_WS_Status status = LMUtilities::MakeStatus(rc, 0, nullptr);
    if (rc == SOAP_OK && !answered) {
        status = LM_WS_RESPONSE_CODE;  // an answer without a file type
    } else if (answered) {
        client->SetAccessType(result->AccessType);
    }
    LM_LogOutput(g_LogArea.Id(), LM_LOG_TRACE, "%s, ret:%d\n", "LM_WS_getFileType", rc);
    return status;
}

}  // extern "C"
