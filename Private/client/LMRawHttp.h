// Plain HTTP/1.1 GETs over a raw connection of a toolkit context: box art, the bandwidth probe,
// the device clock and the environment query. The connection is opened, written and read through
// the context's transport callbacks (fopen, fsend, frecv, fclose), so the context's time-outs and
// TLS set-up apply. The answer's head must fit in one block of at most 2047 bytes: these answers
// come from our own service, whose heads are short.
#ifndef LM_RAW_HTTP_H
#define LM_RAW_HTTP_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "LMSoapLogPlugin.h"
#include "LMString.h"
#include "stdsoap2.h"

namespace LMRawHttp {

// The head is read into a block of at most this many bytes, in a buffer one byte larger.
const size_t kFirstBlock = 2047;
// Every receive of the body after that block reads at most this many bytes.
const size_t kChunk = 2048;

// One connection on `soap`, closed through the context's close callback when it ends. A socket
// that an earlier call kept alive is closed first, because the connection callback replaces the
// context's socket and the transport callbacks only ever use that one. The context must carry
// the log plug-in: its transport wrappers hold the exchange to the context's transfer time-out,
// counted from Open, however slowly the server sends.
class Connection {
public:
    explicit Connection(struct soap* soap) : m_Soap(soap) {}
    ~Connection() { Close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool Open(const LMString& url, const LMString& host, int port) {
        if (soap_valid_socket(m_Soap->socket)) {
            m_Soap->fclose(m_Soap);
            m_Soap->socket = SOAP_INVALID_SOCKET;
        }
        // The toolkit's own transfer time-out, and the wrappers' deadline, count from here (a
        // SOAP exchange sets `start` when it starts; ours would otherwise count from the
        // context's last SOAP call).
        m_Soap->start = static_cast<ULONG64>(time(nullptr));
        LMSoapLogPlugin::BeginExchange(m_Soap);
        SOAP_SOCKET socket = m_Soap->fopen(m_Soap, url.c_str(), host.c_str(), port);
        if (!soap_valid_socket(socket)) {
            return false;
        }
        m_Soap->socket = socket;
        m_Open = true;
        return true;
    }
    bool Send(const LMString& text) {
        return m_Soap->fsend(m_Soap, text.c_str(), text.length()) == SOAP_OK;
    }
    // 0 means end of stream, time-out or failure alike.
    size_t Receive(char* buffer, size_t size) { return m_Soap->frecv(m_Soap, buffer, size); }
    void Close() {
        if (m_Open) {
            m_Soap->fclose(m_Soap);
            m_Soap->socket = SOAP_INVALID_SOCKET;
            m_Open = false;
        }
    }

private:
    struct soap* m_Soap;
    bool m_Open = false;
};

// The status lines the callers tell apart.
enum class Status { OK, NotFound, NotModified, Other };

// What the head of an answer says. Matches are exact and case-sensitive, as our service writes
// them, and anchored: the status line counts only as the block's first line, a header only at
// the start of a line of the head.
struct Head {
    Status status = Status::Other;  // from the first line alone
    LMString lastModified;          // "" when a 200 answer has none
    LMString lengthText;            // the Content-Length value as written; "" when refused
    uint32_t contentLength = 0;     // positive when `complete`
    bool ended = false;             // the empty line ending the head is in the block
    bool complete = false;          // a 200 answer with a positive length and the end of its head
    size_t bodyOffset = 0;          // where the body starts in the block, when `ended`
};

// The first `text` in [begin, end), or nullptr.
inline const char* Find(const char* begin, const char* end, const char* text) {
    const size_t n = strlen(text);
    for (const char* p = begin; end - p >= static_cast<ptrdiff_t>(n); ++p) {
        if (memcmp(p, text, n) == 0) {
            return p;
        }
    }
    return nullptr;
}

// True when [begin, end) starts with `text`.
inline bool StartsWith(const char* begin, const char* end, const char* text) {
    const size_t n = strlen(text);
    return static_cast<size_t>(end - begin) >= n && memcmp(begin, text, n) == 0;
}

// True when `text` can stand in a header line as it is: no control character (CR and LF would
// end the line early and let a server write headers of its own into our next request).
inline bool IsHeaderValue(const char* text, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c < 0x20 || c == 0x7F) {
            return false;
        }
    }
    return true;
}

// A decimal number followed by nothing but blanks; false for anything else, for 0 and for a
// value beyond 32 bits.
inline bool ParseLength(const char* begin, const char* end, uint32_t& value) {
    uint64_t n = 0;
    const char* p = begin;
    for (; p < end && *p >= '0' && *p <= '9'; ++p) {
        n = n * 10 + static_cast<uint64_t>(*p - '0');
        if (n > UINT32_MAX) {
            return false;
        }
    }
    if (p == begin) {
        return false;
    }
    for (; p < end; ++p) {
        if (*p != ' ' && *p != '\t') {
            return false;
        }
    }
    value = static_cast<uint32_t>(n);
    return value > 0;
}

// Parses the head at the start of the `size` bytes of `block`. The first line must be
// "HTTP/1.1 200 OK\r\n", "HTTP/1.1 404 Not Found\r\n" or "HTTP/1.1 304 Not Modified\r\n"; a
// status text anywhere else (in the body of an error page, say) is no status. For a 200 answer
// the lines after it, up to the first empty line, are its headers: "Last-Modified: " (the first
// one counts) and "Content-Length: ", which must occur once; a second one makes the length
// ambiguous, so the answer is refused. Lines after the empty line are body. While the empty line
// has not arrived, the complete lines so far are read as headers, but the head is not complete.
inline Head ParseHead(const char* block, size_t size) {
    Head head;
    const char* const end = block + size;
    const char* const empty = Find(block, end, "\r\n\r\n");
    head.ended = empty != nullptr;
    if (head.ended) {
        head.bodyOffset = static_cast<size_t>(empty + 4 - block);
    }
    static const char kOk[] = "HTTP/1.1 200 OK\r\n";
    if (StartsWith(block, end, "HTTP/1.1 404 Not Found\r\n")) {
        head.status = Status::NotFound;
    } else if (StartsWith(block, end, "HTTP/1.1 304 Not Modified\r\n")) {
        head.status = Status::NotModified;
    } else if (StartsWith(block, end, kOk)) {
        head.status = Status::OK;
    }
    if (head.status != Status::OK) {
        return head;
    }
    static const char kLastModified[] = "Last-Modified: ";
    static const char kContentLength[] = "Content-Length: ";
    // The headers end with the "\r\n" of the last one, which the empty line starts with.
    const char* const headers = block + sizeof(kOk) - 1;
    const char* const headersEnd = head.ended ? empty + 2 : end;
    bool lastModifiedSeen = false;
    int lengths = 0;
    for (const char* line = headers; line < headersEnd;) {
        const char* eol = Find(line, headersEnd, "\r\n");
        if (eol == nullptr) {
            break;  // a line still arriving
        }
        if (!lastModifiedSeen && StartsWith(line, eol, kLastModified)) {
            // A value with a control character in it is dropped: it is never stored, so it is
            // never sent back in an If-Modified-Since.
            const char* value = line + sizeof(kLastModified) - 1;
            if (IsHeaderValue(value, static_cast<size_t>(eol - value))) {
                head.lastModified.assign(value, static_cast<size_t>(eol - value));
            }
            lastModifiedSeen = true;
        } else if (StartsWith(line, eol, kContentLength)) {
            const char* value = line + sizeof(kContentLength) - 1;
            head.lengthText.assign(value, static_cast<size_t>(eol - value));
            ++lengths;
        }
        line = eol + 2;
    }
    if (lengths != 1 ||
        !ParseLength(head.lengthText.c_str(), head.lengthText.c_str() + head.lengthText.length(),
                     head.contentLength)) {
        head.lengthText.assign("");
        head.contentLength = 0;
        return head;
    }
    head.complete = head.ended;
    return head;
}

// Receives the head of an answer into `block`, NUL-terminated, and parses it. Over a network a
// short head can arrive in several segments: receives go on into the same block until the head's
// empty line is there, the block's 2047 bytes are full or the peer sends no more. They stop
// early once the first line is there and is not "HTTP/1.1 200 OK": nothing after it changes
// what the callers do with such an answer. Body bytes that came with the head follow it in the
// block. `received` is 0 when nothing arrived (end of stream, time-out or failure).
inline Head ReceiveHead(Connection& connection, char (&block)[kFirstBlock + 1], size_t& received) {
    received = 0;
    Head head;
    while (received < kFirstBlock) {
        const size_t n = connection.Receive(block + received, kFirstBlock - received);
        if (n == 0) {
            break;
        }
        received += n;
        head = ParseHead(block, received);
        if (head.ended ||
            (head.status != Status::OK && Find(block, block + received, "\r\n") != nullptr)) {
            break;
        }
    }
    block[received] = 0;
    return head;
}

// Sends `request` on `connection` and receives the answer's head (ReceiveHead). False when the
// request could not be sent or no answer came back.
inline bool Exchange(Connection& connection, const LMString& request,
                     char (&block)[kFirstBlock + 1], size_t& received, Head& head) {
    received = 0;
    block[0] = 0;
    if (!connection.Send(request)) {
        return false;
    }
    head = ReceiveHead(connection, block, received);
    return received > 0;
}

// The environment id in the answer of the service's environment query: a complete 200 head whose
// length is written exactly "1", and that one body byte in the block; the id is the byte minus
// "0" (a digit above 2 keeps its value). Anything else is production, 2: so is a NUL byte, as the
// block is read as text.
inline int EnvironmentId(const Head& head, const char* block, size_t received) {
    if (!head.complete || head.lengthText != "1" || received <= head.bodyOffset ||
        block[head.bodyOffset] == 0) {
        return 2;
    }
    return block[head.bodyOffset] - '0';
}

// The body of the service's clock page, "M/D/YYYY h:mm:ss AM" or "... PM" in UTC, as seconds
// since 1970-01-01. 12 is added to the hour whenever the marker is "PM", so "12:..:.. PM" gives
// hour 24 and rolls over into the next day, while "12:..:.. AM" stays hour 12: the service's
// clients have always read the page this way, and the service writes it for them. False when
// fewer than the seven fields are there.
inline bool ParseDeviceTime(const std::string& body, int32_t& utcSeconds) {
    int month = 0, day = 0, year = 0, hour = 0, minute = 0, second = 0;
    char marker[3] = {0};
    if (sscanf(body.c_str(), "%d/%d/%d %d:%d:%d %2s", &month, &day, &year, &hour, &minute, &second,
               marker) < 7) {
        return false;
    }
    struct tm t = {};
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_year = year - 1900;
    t.tm_hour = strcmp(marker, "PM") == 0 ? hour + 12 : hour;
    t.tm_min = minute;
    t.tm_sec = second;
    utcSeconds = static_cast<int32_t>(timegm(&t));
    return true;
}

}  // namespace LMRawHttp

#endif  // LM_RAW_HTTP_H
