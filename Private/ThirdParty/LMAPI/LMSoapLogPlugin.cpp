#include "LMSoapLogPlugin.h"

#include <cctype>
#include <new>
#include <string>
#include <type_traits>

#include "LMLog.h"
#include "stdsoap2.h"

const char LMSoapLogPlugin::kId[] = "LM-SOAP-LOG/1.0";

static_assert(std::is_same<SOAP_SOCKET, int>::value, "the wrapped fopen returns a socket as int");

namespace {

// The plug-in's record on `soap`, or null once the context was ended and its plug-ins deleted.
template <class Data>
Data* Find(struct soap* soap, const char* id) {
    return static_cast<Data*>(soap_lookup_plugin(soap, id));
}

}  // namespace

int LMSoapLogPlugin::Register(struct soap* soap) {
    if (soap_lookup_plugin(soap, kId) != nullptr) {
        return SOAP_OK;
    }
    return soap_register_plugin(soap, Create);
}

int LMSoapLogPlugin::Create(struct soap* soap, struct soap_plugin* plugin, void* /*arg*/) {
    Data* data =
        new (std::nothrow) Data{soap->fsend,        soap->frecv,  soap->fopen, soap->fclose,
                                soap->fpreparerecv, soap->fparse, false};
    if (data == nullptr) {
        return SOAP_EOM;
    }
    plugin->id = kId;
    plugin->data = data;
    plugin->fcopy = Copy;
    plugin->fdelete = Delete;
    soap->fsend = Send;
    soap->frecv = Recv;
    soap->fopen = Open;
    soap->fclose = Close;
    soap->fpreparerecv = PrepareRecv;
    soap->fparse = Parse;
    return SOAP_OK;
}

// soap_copy_context() copies the callbacks with the context; the copy needs a record of its
// own because each context deletes its plug-in data when it ends.
int LMSoapLogPlugin::Copy(struct soap* /*soap*/, struct soap_plugin* dst, struct soap_plugin* src) {
    Data* data = new (std::nothrow) Data(*static_cast<Data*>(src->data));
    if (data == nullptr) {
        return SOAP_EOM;
    }
    dst->data = data;
    return SOAP_OK;
}

void LMSoapLogPlugin::Delete(struct soap* /*soap*/, struct soap_plugin* plugin) {
    delete static_cast<Data*>(plugin->data);
    plugin->data = nullptr;
}

void LMSoapLogPlugin::SetQuiet(struct soap* soap, bool quiet) {
    if (Data* plugin = Find<Data>(soap, kId)) {
        plugin->quiet = quiet;
    }
}

namespace {

// Logs `length` bytes of `data` on `area` with their secrets hidden. The mask looks at the
// bytes only while the area is on; while it is off, the mask starts afresh.
void LogMasked(int area, LMSecretMask& mask, const char* data, size_t length) {
    if (!LM_Log::GetInstance().Accepts(area, LM_LOG_TRACE)) {
        mask = LMSecretMask();
        return;
    }
    const std::string shown = mask.Mask(data, length);
    LM_LogOutputwithLen(area, LM_LOG_TRACE, shown.data(), static_cast<unsigned>(shown.size()));
}

// Whether an answer's head announces a compressed body ("Content-Encoding: gzip" or "deflate",
// the header name in any case).
bool IsCompressed(const std::string& head) {
    std::string lower(head);
    for (char& c : lower) {
        c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    }
    const size_t at = lower.find("\r\ncontent-encoding:");
    if (at == std::string::npos) {
        return false;
    }
    const size_t eol = lower.find("\r\n", at + 2);
    const std::string value = lower.substr(at + 19, eol - at - 19);
    return value.find("gzip") != std::string::npos || value.find("deflate") != std::string::npos;
}

// While an exchange on `soap` has a deadline: `timeout` (a time-out field of the context) is
// lowered to the seconds left for the time of one transport step, and put back when it ends.
// Passed() says the deadline has passed and the step must not start.
class StepDeadline {
public:
    StepDeadline(struct soap* soap, const std::chrono::steady_clock::time_point& begun,
                 int& timeout)
        : m_Timeout(timeout), m_Saved(timeout) {
        if (soap->transfer_timeout <= 0 || begun == std::chrono::steady_clock::time_point()) {
            return;
        }
        // Whole seconds, rounded up: the exchange ends within its deadline, not after it.
        const auto spent =
            std::chrono::ceil<std::chrono::seconds>(std::chrono::steady_clock::now() - begun)
                .count();
        m_Left = soap->transfer_timeout - static_cast<int>(spent);
        if (m_Left > 0 && (timeout == 0 || (timeout > 0 && timeout > m_Left))) {
            timeout = m_Left;
        }
    }
    ~StepDeadline() { m_Timeout = m_Saved; }
    StepDeadline(const StepDeadline&) = delete;
    StepDeadline& operator=(const StepDeadline&) = delete;
    bool Passed() const { return m_Left <= 0; }

private:
    int& m_Timeout;
    int m_Saved;
    int m_Left = 1;  // no deadline: never passed
};

}  // namespace

void LMSoapLogPlugin::BeginExchange(struct soap* soap) {
    if (Data* plugin = Find<Data>(soap, kId)) {
        plugin->begun = std::chrono::steady_clock::now();
        plugin->onKeptConnection = soap_valid_socket(soap->socket) && soap->keep_alive != 0;
        plugin->opened = false;
        plugin->receivedBytes = 0;
        plugin->head.clear();
        plugin->headEnded = false;
        plugin->compressed = false;
        plugin->bodyBegun = false;
    }
}

bool LMSoapLogPlugin::KeptConnectionDropped(struct soap* soap) {
    const Data* plugin = Find<const Data>(soap, kId);
    if (plugin == nullptr || !plugin->onKeptConnection || plugin->opened ||
        plugin->receivedBytes > 0) {
        return false;
    }
    if (soap->error != SOAP_EOF && soap->error != SOAP_TCP_ERROR && soap->error != SOAP_SSL_ERROR) {
        return false;
    }
    // The deadline's own check, on a time-out field of no consequence: nothing is waited for.
    int unused = 0;
    return !StepDeadline(soap, plugin->begun, unused).Passed();
}

int LMSoapLogPlugin::Send(struct soap* soap, const char* data, size_t length) {
    Data* plugin = Find<Data>(soap, kId);
    if (plugin == nullptr) {
        return soap->error = SOAP_PLUGIN_ERROR;
    }
    StepDeadline deadline(soap, plugin->begun, soap->send_timeout);
    if (deadline.Passed()) {
        LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap send: past the call's deadline\n");
        return soap->error = SOAP_EOF;
    }
    if (!plugin->quiet) {
        LogMasked(SENT_LMLogAreaID, plugin->sent, data, length);
    }
    const int rc = plugin->fsend(soap, data, length);
    LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap send: %zu bytes, error %d\n", length, rc);
    return rc;
}

size_t LMSoapLogPlugin::Recv(struct soap* soap, char* buffer, size_t length) {
    Data* plugin = Find<Data>(soap, kId);
    if (plugin == nullptr) {
        return 0;
    }
    StepDeadline deadline(soap, plugin->begun, soap->recv_timeout);
    const size_t received = deadline.Passed() ? 0 : plugin->frecv(soap, buffer, length);
    plugin->receivedBytes += received;
    if (received > 0) {
        LogReceived(*plugin, buffer, received);
    }
    if (received > 0) {
        LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap recv: %zu bytes\n", received);
    } else {
        LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap recv: end of stream or time-out\n");
    }
    return received;
}

int LMSoapLogPlugin::Open(struct soap* soap, const char* endpoint, const char* host, int port) {
    Data* plugin = Find<Data>(soap, kId);
    if (plugin == nullptr) {
        return SOAP_INVALID_SOCKET;
    }
    plugin->opened = true;
    StepDeadline deadline(soap, plugin->begun, soap->connect_timeout);
    if (deadline.Passed()) {
        soap->error = SOAP_TCP_ERROR;
        return SOAP_INVALID_SOCKET;
    }
    const int socket = plugin->fopen(soap, endpoint, host, port);
    if (soap_valid_socket(socket)) {
        LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap open: %s (%s:%d), socket %d\n",
                     endpoint != nullptr ? endpoint : "", host != nullptr ? host : "", port,
                     socket);
    } else {
        LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap open: %s (%s:%d) failed, error %d\n",
                     endpoint != nullptr ? endpoint : "", host != nullptr ? host : "", port,
                     soap->error);
    }
    return socket;
}

int LMSoapLogPlugin::Close(struct soap* soap) {
    const Data* plugin = Find<const Data>(soap, kId);
    if (plugin == nullptr) {
        return SOAP_OK;
    }
    // The context's error at close is the outcome of the exchange that used the connection.
    LM_LogOutput(TEST_LMLogAreaID, LM_LOG_TRACE, "soap close: socket %d, error %d\n",
                 static_cast<int>(soap->socket), soap->error);
    return plugin->fclose(soap);
}

void LMSoapLogPlugin::LogReceived(Data& plugin, const char* data, size_t length) {
    size_t head = 0;  // how much of `data` belongs to the head
    if (!plugin.headEnded) {
        // The head is short; one that never ends within 64 KiB is logged as body.
        const size_t before = plugin.head.size();
        plugin.head.append(data, length);
        const size_t end = plugin.head.find("\r\n\r\n");
        if (end != std::string::npos || plugin.head.size() > (64u << 10)) {
            plugin.headEnded = true;
            head = end != std::string::npos ? end + 4 - before : length;
            plugin.compressed =
                end != std::string::npos && IsCompressed(plugin.head.substr(0, before + head));
            plugin.head.clear();
        } else {
            head = length;
        }
    }
    if (plugin.quiet) {
        return;
    }
    if (head > 0) {
        LogMasked(RECV_LMLogAreaID, plugin.received, data, head);
    }
    if (!plugin.compressed && head < length) {
        LogMasked(RECV_LMLogAreaID, plugin.received, data + head, length - head);
    }
}

int LMSoapLogPlugin::PrepareRecv(struct soap* soap, const char* data, size_t length) {
    Data* plugin = Find<Data>(soap, kId);
    if (plugin == nullptr) {
        return SOAP_OK;
    }
    // The toolkit hands over the head too, before it reads it; Recv logged that already.
    if (plugin->compressed && plugin->bodyBegun && !plugin->quiet) {
        LogMasked(RECV_LMLogAreaID, plugin->received, data, length);
    }
    return plugin->fpreparerecv != nullptr ? plugin->fpreparerecv(soap, data, length) : SOAP_OK;
}

int LMSoapLogPlugin::Parse(struct soap* soap) {
    Data* plugin = Find<Data>(soap, kId);
    if (plugin == nullptr) {
        return SOAP_PLUGIN_ERROR;
    }
    const int rc = plugin->fparse(soap);
    plugin->bodyBegun = true;
    return rc;
}
