// The network probes (download rate, the service's clock) and the small device helpers beside
// them (md5sum of a file, copy, delete, the local IPv4 address, cache refresh).
//
// The probes speak plain HTTP over a raw connection of a toolkit context (LMRawHttp). They log
// nothing: the status says what happened.
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <memory>
#include <new>
#include <string>

#include "LMDeployment.h"
#include "LMFile.h"
#include "LMProxySupport.h"
#include "LMRawHttp.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LM_WS.h"

namespace {

// Statuses of the probes beyond those of LM_WS_Types.h.
const LM_WS_Status kCopyFailed = -1900;
const LM_WS_Status kNotFound = -1901;
const LM_WS_Status kNoBandwidthURL = -1920;
const LM_WS_Status kBadBandwidthURL = -1921;

// The bandwidth probe reads at most this much of the file.
const uint32_t kBandwidthCap = 204800;

// The configuration item naming the bandwidth-check file, spelt as the service spells it.
const char kBandwidthKey[] = "BandwithCheckURL";

// Milliseconds of a clock that never steps back, in 32 bits: differences stay right across the
// wrap-around.
uint32_t NowMs() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<uint32_t>(static_cast<uint64_t>(ts.tv_sec) * 1000u +
                                 static_cast<uint64_t>(ts.tv_nsec) / 1000000u);
}

// The context's HTTP proxy is set aside while it lives: the probe always goes straight to the
// host (the connection callback would otherwise tunnel a TLS connection through the proxy).
class ProxySuspended {
public:
    explicit ProxySuspended(struct soap* soap) : m_Soap(soap), m_Host(soap->proxy_host) {
        soap->proxy_host = nullptr;
    }
    ~ProxySuspended() { m_Soap->proxy_host = m_Host; }
    ProxySuspended(const ProxySuspended&) = delete;
    ProxySuspended& operator=(const ProxySuspended&) = delete;

private:
    struct soap* m_Soap;
    const char* m_Host;
};

// Asks the service's configuration for the bandwidth-check URL and keeps the first match in the
// parameter block. The configuration call's failure is returned as it is.
LM_WS_Status FetchBandwidthURL(LM_WS_Handle* handle, LMWSClient& client) {
    LM_WS_ConfigResponse config{};
    LM_WS_Status status = LM_WS_getConfig(handle, &config);
    if (status == LM_WS_OK) {
        for (int32_t i = 0; config.Array != nullptr && i < config.Count; ++i) {
            const LM_WS_ConfigurationItem& item = config.Array[i];
            if (item.Key != nullptr && strcasecmp(item.Key, kBandwidthKey) == 0) {
                client.m_Params.BandwidthCheckURL = item.Value != nullptr ? item.Value : "";
                break;
            }
        }
    }
    LM_WS_FreeResult(&config);
    return status;
}

// Host and path of "scheme://host/path": the host is what lies between the first "//" and the
// next "/", the path everything after that "/". False when either is empty.
bool SplitURL(const LMString& url, LMString& host, int& port, LMString& path) {
    const char* text = url.c_str();
    const char* start = strstr(text, "//");
    if (start == nullptr) {
        return false;
    }
    start += 2;
    const char* slash = strchr(start, '/');
    if (slash == nullptr || slash == start || slash[1] == 0) {
        return false;
    }
    host.assign(start, static_cast<size_t>(slash - start));
    path.assign(slash + 1);
    // "host:port": the URL names its port itself.
    port = 0;
    const char* colon = strchr(host.c_str(), ':');
    if (colon != nullptr) {
        char* end = nullptr;
        long value = strtol(colon + 1, &end, 10);
        if (end == colon + 1 || *end != 0 || value < 1 || value > 65535) {
            return false;
        }
        port = static_cast<int>(value);
        host.assign(host.c_str(), static_cast<size_t>(colon - host.c_str()));
    }
    return !host.empty();
}

// The GET of the bandwidth probe on an open connection: the rate in bits per second.
LM_WS_Status MeasureBandwidth(LMRawHttp::Connection& connection, const LMString& host,
                              const LMString& path, uint32_t& bitsPerSecond) {
    const LMString request =
        LMString("GET /") + path + " HTTP/1.1\r\nHost: " + host + "\r\nUser-Agent: LMWSLib\r\n\r\n";
    char block[LMRawHttp::kFirstBlock + 1];
    size_t received = 0;
    LMRawHttp::Head head;
    if (!LMRawHttp::Exchange(connection, request, block, received, head)) {
        return LM_WS_SEND_RECV_FAILED;
    }
    if (head.status == LMRawHttp::Status::NotFound) {
        return kNotFound;
    }
    if (!head.complete) {
        return LM_WS_SEND_RECV_FAILED;
    }
    // The clock starts once the head is in: the rate is that of the body alone.
    const uint32_t measured = std::min(head.contentLength, kBandwidthCap);
    const uint32_t start = NowMs();
    const size_t arrived = received - head.bodyOffset;
    size_t remaining = arrived < measured ? measured - arrived : 0;
    char chunk[LMRawHttp::kChunk];
    while (remaining > 0) {
        const size_t n = connection.Receive(chunk, std::min(remaining, sizeof(chunk)));
        if (n == 0) {
            return LM_WS_SEND_RECV_FAILED;
        }
        remaining -= std::min(n, remaining);
    }
    uint32_t elapsed = NowMs() - start;
    if (elapsed == 0) {
        elapsed = 1;  // a transfer within one millisecond counts as one
    }
    bitsPerSecond = 8000u * measured / elapsed;
    return LM_WS_OK;
}

// The GET of the clock page on an open connection.
LM_WS_Status ReadDeviceTime(LMRawHttp::Connection& connection, const LMString& host,
                            int32_t& utcSeconds) {
    const LMString request =
        LMString("GET /device/time/ HTTP/1.1\r\nUser-Agent: LMWSLib\r\nHost: ") + host + "\r\n\r\n";
    char block[LMRawHttp::kFirstBlock + 1];
    size_t received = 0;
    LMRawHttp::Head head;
    if (!LMRawHttp::Exchange(connection, request, block, received, head) ||
        head.status != LMRawHttp::Status::OK || !head.complete) {
        return LM_WS_SEND_RECV_FAILED;
    }
    // The page is short: all of it comes with the head, or the answer is unusable.
    if (received - head.bodyOffset < head.contentLength) {
        return LM_WS_RESPONSE_CODE;
    }
    const std::string body(block + head.bodyOffset, head.contentLength);
    return LMRawHttp::ParseDeviceTime(body, utcSeconds) ? LM_WS_OK : LM_WS_RESPONSE_CODE;
}

// A toolkit context of its own, released at the end of the scope.
struct PrivateContext {
    struct soap* soap = soap_new1(SOAP_C_UTFSTRING);
    PrivateContext() = default;
    ~PrivateContext() {
        if (soap != nullptr) {
            soap_destroy(soap);
            soap_end(soap);
            soap_free(soap);
        }
    }
    PrivateContext(const PrivateContext&) = delete;
    PrivateContext& operator=(const PrivateContext&) = delete;
};

bool PathExists(const char* path) {
    struct stat st;
    return stat(path, &st) == 0;
}

}  // namespace

extern "C" {

LM_WS_Status LM_WS_checkBandwidth(LM_WS_Handle* handle, uint32_t* bitsPerSecond) {
    if (bitsPerSecond == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *bitsPerSecond = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    LM_WS_SetupParams2& params = client->m_Params;
    if (params.BandwidthCheckURL.empty()) {
        LM_WS_Status status = FetchBandwidthURL(handle, *client);
        if (status != LM_WS_OK) {
            return status;
        }
        if (params.BandwidthCheckURL.empty()) {
            return kNoBandwidthURL;
        }
    }
    LMString host, path;
    int urlPort = 0;
    if (!SplitURL(params.BandwidthCheckURL, host, urlPort, path)) {
        return kBadBandwidthURL;
    }

    struct soap* soap = client->m_RealTimeBrowse.soap;
    ProxySuspended direct(soap);
    // The URL's own port when it names one; else 443 for an https URL and 80 otherwise, unless
    // the deployment moved the service's HTTPS or plain-HTTP port (as the tests do, with the
    // simulator on loopback ports): then the bandwidth-check file is served on the moved port too.
    const bool tls = soap_tag_cmp(params.BandwidthCheckURL.c_str(), "https:*") == 0;
    const int port = urlPort != 0 ? urlPort
                     : tls        ? params.Deployment.httpsPort
                                  : params.Deployment.httpPort;
    LMRawHttp::Connection connection(soap);
    if (!connection.Open(params.BandwidthCheckURL, host, port)) {
        return LM_WS_NO_CONNECTION;
    }
    uint32_t rate = 0;
    LM_WS_Status status =
        MeasureBandwidth(connection, LMDeployment::HostHeader(host, port, tls), path, rate);
    if (status == LM_WS_OK) {
        *bitsPerSecond = rate;
    }
    return status;
}

LM_WS_Status LM_WS_getDeviceTime(int32_t* utcSeconds) {
    if (utcSeconds == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *utcSeconds = -1;
    PrivateContext context;
    struct soap* soap = context.soap;
    if (soap == nullptr) {
        return LM_WS_NO_CONNECTION;
    }
    soap->recv_timeout = 88;
    soap->send_timeout = 30;
    soap->connect_timeout = 30;
    soap->socket_flags = MSG_NOSIGNAL;  // a peer that hangs up must not end the process

    // Read here, not at set-up: this probe needs no client.
    const LMDeployment deployment = LMDeployment::FromEnvironment();
    LMProxySupport::Bound(soap, deployment.callDeadline);
    if (LMSoapLogPlugin::Register(soap) != SOAP_OK) {  // its wrappers hold the deadline
        return LM_WS_NO_CONNECTION;
    }
    const LMString& host = deployment.productionHost;
    const LMString hostHeader = LMDeployment::HostHeader(host, deployment.httpPort, false);
    LMRawHttp::Connection connection(soap);
    if (!connection.Open(LMString("http://") + hostHeader + "/device/time/", host,
                         deployment.httpPort)) {
        return LM_WS_NO_CONNECTION;
    }
    int32_t seconds = -1;
    LM_WS_Status status = ReadDeviceTime(connection, hostHeader, seconds);
    if (status == LM_WS_OK) {
        *utcSeconds = seconds;
    }
    return status;
}

LM_WS_Status LM_WS_md5sum(const char* path, LM_WS_LengthAndText* result) {
    if (result == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    LM_WS_InitResult(result, LM_WS_ResultLengthAndText);
    if (path == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    // The path is quoted for the shell: a name with blanks stays one argument, and quotes,
    // semicolons or "$(...)" in it are never run as commands. A command that does not fit the
    // buffer would name another file, so it is refused.
    std::string quoted = "'";
    for (const char* c = path; *c != 0; ++c) {
        quoted += *c == '\'' ? std::string("'\\''") : std::string(1, *c);
    }
    quoted += "'";
    char command[1024];
    if (snprintf(command, sizeof(command), "md5sum %s", quoted.c_str()) >=
        static_cast<int>(sizeof(command))) {
        return LM_WS_INVALID_ARGUMENT;
    }
    FILE* pipe = popen(command, "r");
    if (pipe == nullptr) {
        return LM_WS_RESPONSE_CODE;
    }
    LMString output;
    char line[1024];
    while (fgets(line, sizeof(line), pipe) != nullptr) {
        output.append(line);
    }
    pclose(pipe);
    LMUtilities::String2LM_WS_LengthAndText(output.c_str(), result);
    return LM_WS_OK;
}

LM_WS_Status LM_WS_copyFile(const char* source, const char* destination) {
    if (source == nullptr || destination == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    // Whatever is there already stays: an unreadable destination is not overwritten either.
    if (PathExists(destination)) {
        return LM_WS_OK;
    }
    // The whole source goes through one buffer of its size. A folder opens for reading with a
    // size near 2^63, and a file larger than the address space (4 GiB on a 32-bit player) cannot
    // be held: both fail here rather than in the allocation.
    LMFile in;
    if (!in.Open(source, "rb") || !in.IsRegularFile()) {
        return kCopyFailed;
    }
    const lm_int64 size = in.GetSize();
    if (size < 0 || static_cast<uint64_t>(size) >= std::numeric_limits<size_t>::max()) {
        return kCopyFailed;
    }
    std::unique_ptr<char[]> data(new (std::nothrow) char[static_cast<size_t>(size) + 1]);
    if (data == nullptr || in.Read(data.get(), size) != size) {
        return kCopyFailed;
    }
    in.Close();
    LMFile out;
    if (!out.Open(destination, "wb")) {
        return kCopyFailed;
    }
    const bool written = out.Write(data.get(), size) == size && out.Flush();
    out.Close();
    if (!written) {
        // A partial copy would pass for a finished one at the next attempt.
        LMFile::Remove(destination);
        return kCopyFailed;
    }
    return LM_WS_OK;
}

LM_WS_Status LM_WS_deleteFile(const char* path) {
    if (path == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    if (PathExists(path)) {
        LMFile::Remove(path);
    }
    return LM_WS_OK;
}

LM_WS_Status LM_WS_getLocalIPAddr(LM_WS_LengthAndText* result) {
    if (result == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    LM_WS_InitResult(result, LM_WS_ResultLengthAndText);
    struct ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) {
        return LM_WS_RESPONSE_CODE;
    }
    LM_WS_Status status = LM_WS_RESPONSE_CODE;
    for (const struct ifaddrs* i = list; i != nullptr; i = i->ifa_next) {
        if (i->ifa_addr == nullptr || i->ifa_addr->sa_family != AF_INET ||
            (i->ifa_flags & IFF_UP) == 0 || (i->ifa_flags & IFF_LOOPBACK) != 0) {
            continue;
        }
        char text[INET_ADDRSTRLEN];
        const auto* addr = reinterpret_cast<const struct sockaddr_in*>(i->ifa_addr);
        if (inet_ntop(AF_INET, &addr->sin_addr, text, sizeof(text)) != nullptr) {
            LMUtilities::String2LM_WS_LengthAndText(text, result);
            status = LM_WS_OK;
        }
        break;
    }
    freeifaddrs(list);
    return status;
}

LM_WS_Status LM_WS_updateLocalCache(LM_WS_Handle* handle, uint32_t mask) {
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    client->RefreshCache(mask, handle);
    return LM_WS_OK;
}

}  // extern "C"
