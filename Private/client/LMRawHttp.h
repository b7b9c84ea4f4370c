// Plain HTTP/1.1 GETs over a raw connection of a toolkit context: box art, the bandwidth probe
// and the device clock. The connection is opened, written and read through the context's
// transport callbacks (fopen, fsend, frecv, fclose), so the context's time-outs and TLS set-up
// apply. The answer's head is taken from the first block received (at most 2047 bytes) only:
// these answers come from our own service, whose heads are short.
#ifndef LM_RAW_HTTP_H
#define LM_RAW_HTTP_H

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "LMString.h"
#include "stdsoap2.h"

namespace LMRawHttp {

// The first receive reads at most this many bytes, into a buffer one byte larger.
const size_t kFirstBlock = 2047;
// Every later receive reads at most this many bytes.
const size_t kChunk = 2048;

// One connection on `soap`, closed through the context's close callback when it ends. A socket
// that an earlier call kept alive is closed first, because the connection callback replaces the
// context's socket and the transport callbacks only ever use that one.
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

// What the first block of an answer says.
struct Head {
    Status status = Status::Other;
    LMString lastModified;       // "" when the 200 answer has none
    uint32_t contentLength = 0;  // positive when `complete`
    bool complete = false;       // a 200 answer with a positive length and the end of its head
    size_t bodyOffset = 0;       // where the body starts in the block, when `complete`
};

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

// Parses the first block of an answer, NUL-terminated at the number of bytes received. Matches
// are exact and case-sensitive, as our service writes them: "HTTP/1.1 200 OK\r\n" (else the 404
// and 304 lines are told apart), then "Last-Modified: " up to its "\r\n" when present, then
// "Content-Length: " up to its "\r\n", then the blank line ending the head.
inline Head ParseHead(const char* block) {
    Head head;
    const char* ok = strstr(block, "HTTP/1.1 200 OK\r\n");
    if (ok == nullptr) {
        if (strstr(block, "HTTP/1.1 404 Not Found\r\n") != nullptr) {
            head.status = Status::NotFound;
        } else if (strstr(block, "HTTP/1.1 304 Not Modified\r\n") != nullptr) {
            head.status = Status::NotModified;
        }
        return head;
    }
    head.status = Status::OK;
    static const char kLastModified[] = "Last-Modified: ";
    if (const char* at = strstr(ok, kLastModified)) {
        const char* value = at + sizeof(kLastModified) - 1;
        if (const char* eol = strstr(value, "\r\n")) {
            head.lastModified.assign(value, static_cast<size_t>(eol - value));
        }
    }
    static const char kContentLength[] = "Content-Length: ";
    const char* at = strstr(ok, kContentLength);
    const char* value = at != nullptr ? at + sizeof(kContentLength) - 1 : nullptr;
    const char* eol = value != nullptr ? strstr(value, "\r\n") : nullptr;
    if (eol == nullptr || !ParseLength(value, eol, head.contentLength)) {
        head.contentLength = 0;
        return head;
    }
    // Searched from the length line's own "\r\n": it may be the last header.
    const char* end = strstr(eol, "\r\n\r\n");
    if (end == nullptr) {
        return head;
    }
    head.bodyOffset = static_cast<size_t>(end + 4 - block);
    head.complete = true;
    return head;
}

// Receives the first block of an answer into `block`, NUL-terminated, and parses its head.
// `received` is 0 when nothing arrived (end of stream, time-out or failure).
inline Head ReceiveHead(Connection& connection, char (&block)[kFirstBlock + 1], size_t& received) {
    received = connection.Receive(block, kFirstBlock);
    block[received] = 0;
    return ParseHead(block);
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
