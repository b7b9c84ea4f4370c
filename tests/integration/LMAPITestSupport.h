// Helpers of the wire-layer tests: a loopback server around a generated service class, a
// canned-answer HTTP server for input the service classes cannot produce, and log capture.
#ifndef LMAPI_TEST_SUPPORT_H
#define LMAPI_TEST_SUPPORT_H

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "LMLog.h"
#include "stdsoap2.h"

namespace lmapi_test {

// A peer that drops the connection must not kill the test process.
inline const bool kSigpipeIgnored = (signal(SIGPIPE, SIG_IGN), true);

// UTF-8 text, answers read as plain trees and connections kept, as the client's service
// clients have them, and bounded waits on every context of these tests.
inline void PrepareContext(struct soap* soap) {
    soap_set_mode(soap, SOAP_C_UTFSTRING | SOAP_XML_TREE | SOAP_IO_KEEPALIVE);
    soap->connect_timeout = 5;
    soap->send_timeout = 5;
    soap->recv_timeout = 5;
}

inline int LocalPort(int fd) {
    sockaddr_storage addr{};
    socklen_t len = sizeof addr;
    if (getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) != 0) {
        return -1;
    }
    if (addr.ss_family == AF_INET6) {
        return ntohs(reinterpret_cast<sockaddr_in6*>(&addr)->sin6_port);
    }
    return ntohs(reinterpret_cast<sockaddr_in*>(&addr)->sin_port);
}

// Serves one generated service class on 127.0.0.1 at a free port, one request per connection,
// from its own thread until destroyed.
template <class Service>
class LoopbackServer {
public:
    explicit LoopbackServer(Service& service) : m_Service(service) {
        PrepareContext(service.soap);
        service.soap->bind_flags = SO_REUSEADDR;
        service.soap->accept_timeout = -100000;  // 100 ms, so that the loop sees m_Stop
        SOAP_SOCKET master = service.bind("127.0.0.1", 0, 16);
        if (soap_valid_socket(master)) {
            m_Port = LocalPort(master);
            m_Thread = std::thread([this] { Run(); });
        }
    }
    ~LoopbackServer() {
        m_Stop = true;
        if (m_Thread.joinable()) {
            m_Thread.join();
        }
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    int Port() const { return m_Port; }
    std::string Endpoint(const char* path) const {
        return "http://127.0.0.1:" + std::to_string(m_Port) + path;
    }

private:
    void Run() {
        while (!m_Stop) {
            if (!soap_valid_socket(m_Service.accept())) {
                continue;  // time-out: look at m_Stop again
            }
            m_Service.serve();
            m_Service.destroy();
        }
    }

    Service& m_Service;
    int m_Port = -1;
    std::atomic<bool> m_Stop{false};
    std::thread m_Thread;
};

// Answers every request with one fixed HTTP response and keeps the raw requests.
class CannedHttpServer {
public:
    explicit CannedHttpServer(std::string soapBody) {
        m_Response =
            "HTTP/1.1 200 OK\r\n"
            "Content-Type: application/soap+xml; charset=utf-8\r\n"
            "Content-Length: " +
            std::to_string(soapBody.size()) + "\r\nConnection: close\r\n\r\n" + soapBody;
        m_Fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (m_Fd >= 0 && bind(m_Fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
            listen(m_Fd, 8) == 0) {
            m_Port = LocalPort(m_Fd);
            m_Thread = std::thread([this] { Run(); });
        }
    }
    ~CannedHttpServer() {
        m_Stop = true;
        if (m_Fd >= 0) {
            shutdown(m_Fd, SHUT_RDWR);
        }
        if (m_Thread.joinable()) {
            m_Thread.join();
        }
        if (m_Fd >= 0) {
            close(m_Fd);
        }
    }
    CannedHttpServer(const CannedHttpServer&) = delete;
    CannedHttpServer& operator=(const CannedHttpServer&) = delete;

    std::string Endpoint() const { return "http://127.0.0.1:" + std::to_string(m_Port) + "/api/"; }

    std::vector<std::string> Requests() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        return m_Requests;
    }

private:
    void Run() {
        while (!m_Stop) {
            int client = accept(m_Fd, nullptr, nullptr);
            if (client < 0) {
                return;  // listening socket shut down
            }
            std::string request = ReadRequest(client);
            {
                std::lock_guard<std::mutex> lock(m_Mutex);
                m_Requests.push_back(request);
            }
            size_t sent = 0;
            while (sent < m_Response.size()) {
                ssize_t n = send(client, m_Response.data() + sent, m_Response.size() - sent, 0);
                if (n <= 0) {
                    break;
                }
                sent += static_cast<size_t>(n);
            }
            close(client);
        }
    }

    // Head up to the blank line, then Content-Length bytes of body.
    static std::string ReadRequest(int fd) {
        std::string data;
        char buffer[4096];
        size_t expected = std::string::npos;
        while (expected == std::string::npos || data.size() < expected) {
            ssize_t n = recv(fd, buffer, sizeof buffer, 0);
            if (n <= 0) {
                break;
            }
            data.append(buffer, static_cast<size_t>(n));
            size_t headEnd = data.find("\r\n\r\n");
            if (expected == std::string::npos && headEnd != std::string::npos) {
                size_t length = 0;
                size_t at = data.find("Content-Length: ");
                if (at != std::string::npos && at < headEnd) {
                    length = std::stoul(data.substr(at + 16));
                }
                expected = headEnd + 4 + length;
            }
        }
        return data;
    }

    std::string m_Response;
    int m_Fd = -1;
    int m_Port = -1;
    std::atomic<bool> m_Stop{false};
    std::thread m_Thread;
    std::mutex m_Mutex;
    std::vector<std::string> m_Requests;
};

// Collects the log lines of the SOAP areas while alive.
class LogCapture {
public:
    LogCapture() {
        ConfigureLogging(0x400 | 0x800 | 0x1000 | 0x2000, 0, nullptr);
        LM_LogSetTarget(&LogCapture::Target, this);
    }
    ~LogCapture() { LM_LogSetTarget(nullptr, nullptr); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    // Every captured text (the part after "] ") of one area, concatenated.
    std::string Text(const char* area) {
        std::string tag = std::string("-") + area + "] ";
        std::string all;
        std::lock_guard<std::mutex> lock(m_Mutex);
        for (const std::string& line : m_Lines) {
            size_t at = line.find(tag);
            if (at != std::string::npos && line.compare(0, 1, "[") == 0) {
                all += line.substr(at + tag.size());
            }
        }
        return all;
    }

private:
    static void Target(const char* line, unsigned length, void* context) {
        auto* self = static_cast<LogCapture*>(context);
        std::lock_guard<std::mutex> lock(self->m_Mutex);
        self->m_Lines.emplace_back(line, length != 0 ? length : std::strlen(line));
    }

    std::mutex m_Mutex;
    std::vector<std::string> m_Lines;
};

}  // namespace lmapi_test

#endif  // LMAPI_TEST_SUPPORT_H
