#include "SimSoapServer.h"

#include <openssl/ssl.h>
#include <poll.h>
#include <zlib.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

namespace lmsim {

// Per-connection state reached through soap->user.
struct SimConnection {
    const SimWeb* web;
    SimFaults* faults;
    Fault fault;
    int (*send)(struct soap*, const char*, size_t);  // the context's own send
    bool headerDone = false;
    size_t announced = 0;  // the answer's Content-Length, once its header went out
    size_t bodySent = 0;
    size_t (*recv)(struct soap*, char*, size_t) = nullptr;  // the context's own receive
    std::string received;                                   // the request, for the log
};

namespace {

using Connection = SimConnection;

// Receives through the real callback, keeping what came for the request log.
size_t LoggingRecv(struct soap* soap, char* data, size_t length) {
    Connection* c = static_cast<Connection*>(soap->user);
    size_t n = c->recv(soap, data, length);
    if (c->received.size() < (256u << 10)) {
        c->received.append(data, n);
    }
    return n;
}

bool EndsWith(const char* s, const char* tail) {
    size_t n = strlen(s);
    size_t m = strlen(tail);
    return n >= m && strcmp(s + n - m, tail) == 0;
}

// Sends through the real callback with the armed fault applied to the HTTP answer.
int FaultySend(struct soap* soap, const char* data, size_t length) {
    Connection* c = static_cast<Connection*>(soap->user);
    std::string chunk(data, length);
    size_t bodyAt = 0;
    if (!c->headerDone) {
        size_t end = chunk.find("\r\n\r\n");
        if (end == std::string::npos) {
            return c->send(soap, data, length);
        }
        c->headerDone = true;
        bodyAt = end + 4;
        size_t length = chunk.find("Content-Length: ");
        if (length != std::string::npos && length < end) {
            c->announced = strtoul(chunk.c_str() + length + 16, nullptr, 10);
        }
        const size_t extra = c->fault.kind == FaultKind::BadContentLength ? 100
                             : c->fault.kind == FaultKind::HugeText
                                 ? static_cast<size_t>(c->fault.value) << 20
                                 : 0;
        if (extra > 0) {
            size_t at = chunk.find("Content-Length: ");
            if (at != std::string::npos && at < end) {
                size_t eol = chunk.find("\r\n", at);
                long announced = strtol(chunk.c_str() + at + 16, nullptr, 10);
                chunk.replace(at, eol - at, "Content-Length: " + std::to_string(announced + extra));
                bodyAt = chunk.find("\r\n\r\n") + 4;
            }
        }
    }
    if (c->fault.kind == FaultKind::HugeText) {
        // The text goes at the start of the answer's first text (a title's name, say), streamed
        // so that the simulator itself never holds it; it stops when the client has gone.
        size_t cut = std::string::npos;
        for (size_t i = std::max<size_t>(bodyAt, 1); i < chunk.size(); ++i) {
            if (chunk[i - 1] == '>' && chunk[i] != '<' &&
                !isspace(static_cast<unsigned char>(chunk[i]))) {
                cut = i;
                break;
            }
        }
        if (cut != std::string::npos) {
            if (c->send(soap, chunk.data(), cut) != SOAP_OK) {
                return soap->error;
            }
            const std::string piece(64 << 10, 'x');
            for (size_t left = static_cast<size_t>(c->fault.value) << 20; left > 0;) {
                const size_t n = std::min(left, piece.size());
                if (c->send(soap, piece.data(), n) != SOAP_OK) {
                    return soap->error;
                }
                left -= n;
            }
            c->fault.kind = FaultKind::None;
            return c->send(soap, chunk.data() + cut, chunk.size() - cut);
        }
    }
    if (c->fault.kind == FaultKind::MalformedXml) {
        // Same length, an opening tag whose closing tag no longer matches: not well-formed,
        // and not the response the reader expects. (A renamed closing tag alone would pass:
        // the toolkit checks closing names only in strict mode.)
        for (size_t at = chunk.find("Response>", bodyAt); at != std::string::npos;
             at = chunk.find("Response>", at + 9)) {
            size_t open = chunk.rfind('<', at);
            if (open != std::string::npos && open + 1 < chunk.size() && chunk[open + 1] != '/') {
                chunk[at + 6] = '$';
            }
        }
    }
    if (c->fault.kind == FaultKind::ResponseCode) {
        // The answer as the service would send it with a status of its own: one digit for
        // another, so the announced length still holds. Only the first code changes (a purchase
        // check's lookups carry one each).
        static const char kZero[] = "ResponseCode>0<";
        size_t at = chunk.find(kZero, bodyAt);
        if (at != std::string::npos) {
            chunk[at + sizeof(kZero) - 3] = static_cast<char>('0' + c->fault.value);
            c->fault.kind = FaultKind::None;
        }
    }
    if (c->fault.kind == FaultKind::CloseMidBody) {
        // Half the announced body, so the reader is inside the XML when the connection ends.
        const size_t limit = c->announced > 0 ? c->announced / 2 : 64;
        size_t body = chunk.size() - bodyAt;
        size_t allowed = c->bodySent >= limit ? 0 : limit - c->bodySent;
        if (body > allowed) {
            chunk.resize(bodyAt + allowed);
            c->send(soap, chunk.data(), chunk.size());
            return SOAP_EOF;  // the runtime gives up and closes the connection
        }
        c->bodySent += body;
    }
    if (c->fault.kind == FaultKind::Drip) {
        // A server that never stalls long enough for a receive to time out, yet never ends.
        // It stops when the client has gone.
        for (char byte : chunk) {
            usleep(static_cast<useconds_t>(c->fault.value) * 1000);
            if (c->send(soap, &byte, 1) != SOAP_OK) {
                return soap->error;
            }
        }
        return SOAP_OK;
    }
    return c->send(soap, chunk.data(), chunk.size());
}

// "GET /device/env/?d=..&dt=.." and any other GET on the HTTPS port. It takes a fault like any
// answer; of the faults only a delay and a hang-up apply to it. The connection closes after it.
int HttpGet(struct soap* soap) {
    Connection* c = static_cast<Connection*>(soap->user);
    c->fault = c->faults->Take();
    soap->keep_alive = 0;
    if (c->fault.kind == FaultKind::Delay) {
        usleep(static_cast<useconds_t>(c->fault.value) * 1000);
    } else if (c->fault.kind == FaultKind::HangUp) {
        return SOAP_STOP;
    }
    HttpRequest request;
    request.method = "GET";
    request.target = soap->path;
    std::string wire = c->web->Handle(request, time(nullptr)).Serialize();
    if (c->send(soap, wire.data(), wire.size()) != SOAP_OK) {
        return soap->error;
    }
    return SOAP_OK;
}

// A SOAP answer whose gzip body inflates to `mib` MiB: an envelope padded with blanks, which the
// reader skips without keeping anything. Compressed on the fly, a few KB per 1 MiB; the body ends
// with the connection. False when the client has gone.
bool SendGzipBomb(struct soap* soap, int mib) {
    Connection* c = static_cast<Connection*>(soap->user);
    const std::string head =
        "HTTP/1.1 200 OK\r\nContent-Type: application/soap+xml; charset=utf-8\r\n"
        "Content-Encoding: gzip\r\nConnection: close\r\n\r\n";
    if (c->send(soap, head.data(), head.size()) != SOAP_OK) {
        return false;
    }
    z_stream z = {};
    if (deflateInit2(&z, 1, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        return false;
    }
    const std::string open =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><SOAP-ENV:Envelope "
        "xmlns:SOAP-ENV=\"http://www.w3.org/2003/05/soap-envelope\"><SOAP-ENV:Body>";
    const std::string blanks(1 << 20, ' ');
    const std::string close = "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
    std::vector<unsigned char> out(64 << 10);
    bool ok = true;
    auto feed = [&](const std::string& text, int flush) {
        z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
        z.avail_in = static_cast<uInt>(text.size());
        do {
            z.next_out = out.data();
            z.avail_out = static_cast<uInt>(out.size());
            deflate(&z, flush);
            const size_t n = out.size() - z.avail_out;
            ok = ok && (n == 0 || c->send(soap, reinterpret_cast<char*>(out.data()), n) == SOAP_OK);
        } while (ok && z.avail_out == 0);
    };
    feed(open, Z_NO_FLUSH);
    for (int i = 0; ok && i < mib; ++i) {
        feed(blanks, Z_NO_FLUSH);
    }
    if (ok) {
        feed(close, Z_FINISH);
    }
    deflateEnd(&z);
    return ok;
}

// Waits up to `ms` for the client's next request on a kept connection: bytes the TLS layer holds
// already, or the socket turning readable (which is also how a close shows). Gives up early once
// `running` turns false, so that stopping the server does not wait out idle connections.
bool AwaitRequest(struct soap* conn, int ms, const std::atomic<bool>& running) {
    if (conn->ssl != nullptr && SSL_pending(conn->ssl) > 0) {
        return true;
    }
    pollfd p = {conn->socket, POLLIN, 0};
    for (int left = ms; left > 0 && running.load(); left -= 100) {
        if (poll(&p, 1, std::min(left, 100)) != 0) {
            return true;  // readable, or an error the next read reports
        }
    }
    return false;
}

}  // namespace

SimSoapServer::SimSoapServer(const SimState& state, const SimWeb& web, SimFaults& faults,
                             const KeepAlive& keepAlive)
    : m_State(state),
      m_Web(web),
      m_Faults(faults),
      m_KeepAlive(keepAlive),
      m_Master(soap_new1(SOAP_C_UTFSTRING | SOAP_IO_KEEPALIVE)) {}

SimSoapServer::~SimSoapServer() {
    Stop();
    soap_destroy(m_Master);
    soap_end(m_Master);
    soap_free(m_Master);
}

bool SimSoapServer::Listen(const std::string& tlsDir, int port, std::string& error) {
    const std::string cert = tlsDir + "/server.pem";
    const std::string key = tlsDir + "/server.key";
    // The chain is loaded once, here, and sent as it stands: no trust store is consulted per
    // handshake (the server asks for no client certificate). The session id context turns the
    // session cache on, so a client that comes back resumes its session.
    const char* sessionContext = m_KeepAlive.resumption ? "lmsim" : nullptr;
    if (soap_ssl_server_context(m_Master, SOAP_SSL_NO_AUTHENTICATION | SOAP_SSL_NO_DEFAULT_CA_PATH,
                                nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                sessionContext) != SOAP_OK ||
        SSL_CTX_use_certificate_chain_file(m_Master->ctx, cert.c_str()) != 1 ||
        SSL_CTX_use_PrivateKey_file(m_Master->ctx, key.c_str(), SSL_FILETYPE_PEM) != 1) {
        error = "cannot load " + cert + " and " + key;
        return false;
    }
    SSL_CTX_set_mode(m_Master->ctx, SSL_MODE_NO_AUTO_CHAIN);
    if (!m_KeepAlive.resumption) {
        SSL_CTX_set_options(m_Master->ctx, SSL_OP_NO_TICKET);
    }
    m_Master->bind_flags = SO_REUSEADDR;
    m_Master->accept_timeout = -100000;  // 100 ms: the loop looks at m_Running in between
    if (!soap_valid_socket(soap_bind(m_Master, "127.0.0.1", port, 64))) {
        char text[256];
        soap_sprint_fault(m_Master, text, sizeof(text));
        error = text;
        return false;
    }
    sockaddr_storage addr = {};
    socklen_t len = sizeof(addr);
    getsockname(m_Master->master, reinterpret_cast<sockaddr*>(&addr), &len);
    m_Port = ntohs(reinterpret_cast<sockaddr_in*>(&addr)->sin_port);
    return true;
}

void SimSoapServer::Start() {
    m_Running.store(true);
    m_Thread = std::thread(&SimSoapServer::AcceptLoop, this);
}

void SimSoapServer::Stop() {
    if (!m_Running.exchange(false)) {
        return;
    }
    if (m_Thread.joinable()) {
        m_Thread.join();
    }
    std::unique_lock<std::mutex> lock(m_Lock);
    m_Idle.wait(lock, [this] { return m_Active == 0; });
}

void SimSoapServer::AcceptLoop() {
    while (m_Running.load()) {
        if (!soap_valid_socket(soap_accept(m_Master))) {
            continue;  // time-out: look at m_Running again
        }
        struct soap* conn = soap_copy(m_Master);
        m_Master->socket = SOAP_INVALID_SOCKET;  // the copy owns the connection now
        if (conn == nullptr) {
            continue;
        }
        bool keep = false;
        {
            std::lock_guard<std::mutex> lock(m_Lock);
            keep = ++m_Active <= m_KeepAlive.maxConnections;
        }
        m_Stats.connections++;
        std::thread([this, conn, keep] {
            Serve(conn, keep);
            std::lock_guard<std::mutex> lock(m_Lock);
            if (--m_Active == 0) {
                m_Idle.notify_all();
            }
        }).detach();
    }
}

void SimSoapServer::Serve(struct soap* conn, bool keep) {
    conn->recv_timeout = 10;
    conn->send_timeout = 10;
    Connection c{&m_Web, &m_Faults, Fault(), conn->fsend, false, 0, 0, nullptr, std::string()};
    conn->user = &c;
    conn->fsend = FaultySend;
    conn->fget = HttpGet;
    if (m_Log != nullptr) {
        c.recv = conn->frecv;
        conn->frecv = LoggingRecv;
    }
    if (soap_ssl_accept(conn) == SOAP_OK) {
        if (SSL_session_reused(conn->ssl) == 1) {
            m_Stats.resumed++;
        }
        for (int served = 0; served == 0 || AwaitRequest(conn, m_KeepAlive.idleMs, m_Running);
             ++served) {
            c.fault = Fault();
            c.headerDone = false;
            c.announced = c.bodySent = 0;
            c.received.clear();
            if (!ServeOne(conn, c, keep && served + 1 < m_KeepAlive.maxRequests)) {
                break;
            }
            soap_destroy(conn);
            soap_end(conn);
        }
    }
    soap_destroy(conn);
    soap_end(conn);
    soap_free(conn);
}

bool SimSoapServer::ServeOne(struct soap* conn, SimConnection& c, bool keep) {
    soap_clr_omode(conn, SOAP_ENC_ZLIB);
    if (soap_begin_serve(conn) != SOAP_OK) {
        if (conn->error < SOAP_STOP) {
            soap_send_fault(conn);
        }
        return false;  // nothing more comes, or a GET that closes the connection
    }
    m_Stats.requests++;
    c.fault = m_Faults.Take();
    if (c.fault.kind == FaultKind::HangUp) {
        return false;
    }
    if (c.fault.kind == FaultKind::GzipBomb) {
        SendGzipBomb(conn, c.fault.value);
        return false;
    }
    if (c.fault.kind == FaultKind::Delay) {
        usleep(static_cast<useconds_t>(c.fault.value) * 1000);
    }
    // A harmed answer closes its connection, as a broken server's would. An unharmed one goes
    // compressed when the client accepts it (faults work on the plain bytes).
    if (c.fault.kind != FaultKind::None || !keep) {
        conn->keep_alive = 0;
    }
    if (c.fault.kind == FaultKind::None && conn->zlib_out != SOAP_ZLIB_NONE) {
        // The fastest level: repetitive XML shrinks some twenty times even so.
        soap_set_omode(conn, SOAP_ENC_ZLIB);
        conn->z_level = 1;
        m_Stats.compressed++;
    }
    if (c.fault.kind == FaultKind::HttpStatus) {
        soap_send_empty_response(conn, c.fault.value);
        return false;
    }
    // Service objects built on a borrowed context leave it to us to free.
    SimRealTimeBrowse browse(conn, m_State);
    SimStreamAPI stream(conn, m_State);
    SimDownloadAPI download(conn, m_State);
    int rc = SOAP_NO_METHOD;
    const char* path = conn->path;
    if (EndsWith(path, "/RealTimeBrowse.asmx")) {
        rc = browse.dispatch(conn);
    } else if (EndsWith(path, "/StreamAPI.asmx")) {
        rc = stream.dispatch(conn);
    } else if (EndsWith(path, "/DownloadAPI.asmx")) {
        rc = download.dispatch(conn);
    } else {
        soap_send_empty_response(conn, 404);
        rc = SOAP_OK;
    }
    if (rc != SOAP_OK && conn->error < SOAP_STOP) {
        soap_send_fault(conn);
    }
    if (m_Log != nullptr) {
        m_Log->Write(SimRequestLog::SoapLine(c.received));
    }
    return rc == SOAP_OK && conn->keep_alive != 0 && soap_valid_socket(conn->socket);
}

}  // namespace lmsim
