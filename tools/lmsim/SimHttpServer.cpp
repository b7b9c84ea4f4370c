#include "SimHttpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace lmsim {

namespace {

bool SendAll(int fd, const char* data, size_t length) {
    while (length > 0) {
        ssize_t n = send(fd, data, length, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            return false;
        }
        data += n;
        length -= static_cast<size_t>(n);
    }
    return true;
}

std::string QueryValue(const std::string& target, const std::string& key) {
    size_t q = target.find('?');
    if (q == std::string::npos) {
        return "";
    }
    std::string query = "&" + target.substr(q + 1);
    size_t at = query.find("&" + key + "=");
    if (at == std::string::npos) {
        return "";
    }
    size_t start = at + key.size() + 2;
    return query.substr(start, query.find('&', start) - start);
}

}  // namespace

bool SimHttpServer::Listen(int port, std::string& error) {
    m_Listen = socket(AF_INET, SOCK_STREAM, 0);
    if (m_Listen < 0) {
        error = strerror(errno);
        return false;
    }
    int one = 1;
    setsockopt(m_Listen, SOL_SOCKET, SO_REUSEADDR, &one, sizeof(one));
    sockaddr_in addr = {};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(static_cast<uint16_t>(port));
    socklen_t len = sizeof(addr);
    if (bind(m_Listen, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) != 0 ||
        listen(m_Listen, 64) != 0 ||
        getsockname(m_Listen, reinterpret_cast<sockaddr*>(&addr), &len) != 0) {
        error = strerror(errno);
        close(m_Listen);
        m_Listen = -1;
        return false;
    }
    m_Port = ntohs(addr.sin_port);
    return true;
}

void SimHttpServer::Start() {
    m_Running.store(true);
    m_Thread = std::thread(&SimHttpServer::AcceptLoop, this);
}

void SimHttpServer::Stop() {
    if (m_Running.exchange(false) && m_Thread.joinable()) {
        m_Thread.join();
    }
    if (m_Listen >= 0) {
        close(m_Listen);
        m_Listen = -1;
    }
}

void SimHttpServer::AcceptLoop() {
    while (m_Running.load()) {
        // Wake up now and then to notice Stop.
        pollfd p = {m_Listen, POLLIN, 0};
        if (poll(&p, 1, 100) <= 0) {
            continue;
        }
        int fd = accept(m_Listen, nullptr, nullptr);
        if (fd < 0) {
            continue;
        }
        // Requests are small and answered at once; one at a time keeps the simulator simple
        // and its answers in order. A stalled client is cut off by the receive time-out.
        timeval timeout = {5, 0};
        setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
        Serve(fd);
        close(fd);
    }
}

bool SimHttpServer::ReadRequest(int fd, HttpRequest& request) {
    std::string head;
    char buf[2048];
    while (head.find("\r\n\r\n") == std::string::npos) {
        if (head.size() > 16384) {
            return false;
        }
        ssize_t n = recv(fd, buf, sizeof(buf), 0);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            return false;
        }
        head.append(buf, static_cast<size_t>(n));
    }
    size_t lineEnd = head.find("\r\n");
    std::string line = head.substr(0, lineEnd);
    size_t s1 = line.find(' ');
    size_t s2 = line.find(' ', s1 + 1);
    if (s1 == std::string::npos || s2 == std::string::npos) {
        return false;
    }
    request.method = line.substr(0, s1);
    request.target = line.substr(s1 + 1, s2 - s1 - 1);
    size_t at = lineEnd + 2;
    while (true) {
        size_t end = head.find("\r\n", at);
        if (end == std::string::npos || end == at) {
            break;
        }
        std::string h = head.substr(at, end - at);
        size_t colon = h.find(':');
        if (colon != std::string::npos) {
            size_t v = h.find_first_not_of(' ', colon + 1);
            request.headers.push_back(
                {h.substr(0, colon), v == std::string::npos ? "" : h.substr(v)});
        }
        at = end + 2;
    }
    return true;
}

void SimHttpServer::WriteResponse(int fd, const HttpResponse& response, const Fault& fault) {
    HttpResponse r = response;
    switch (fault.kind) {
        case FaultKind::Delay:
            usleep(static_cast<useconds_t>(fault.value) * 1000);
            break;
        case FaultKind::HangUp:
            return;
        case FaultKind::HttpStatus:
            r = HttpResponse();
            r.status = fault.value;
            r.reason = "Simulated";
            break;
        default:
            break;
    }
    std::string wire = r.Serialize();
    size_t bodyStart = wire.size() - r.body.size();
    if (fault.kind == FaultKind::CloseMidBody) {
        wire.resize(bodyStart + r.body.size() / 2);
    } else if (fault.kind == FaultKind::BadContentLength) {
        std::string announced = "Content-Length: " + std::to_string(r.body.size());
        size_t at = wire.find(announced);
        wire.replace(at, announced.size(),
                     "Content-Length: " + std::to_string(r.body.size() + 100));
    }
    SendAll(fd, wire.data(), wire.size());
}

HttpResponse SimHttpServer::Control(const HttpRequest& request) {
    Fault fault;
    std::string count = QueryValue(request.target, "count");
    std::string value = QueryValue(request.target, "value");
    std::string wanted = QueryValue(request.target, "kind") + (value.empty() ? "" : ":" + value);
    HttpResponse r;
    if (!SimFaults::ParseFault(wanted, fault)) {
        r.status = 400;
        r.reason = "Bad Request";
        r.body = "unknown fault: " + wanted + "\n";
        return r;
    }
    const std::string skip = QueryValue(request.target, "skip");
    m_Faults.Arm(fault, count.empty() ? 1 : atoi(count.c_str()), atoi(skip.c_str()));
    r.body = "armed " + wanted + "\n";
    return r;
}

void SimHttpServer::Serve(int fd) {
    HttpRequest request;
    if (!ReadRequest(fd, request)) {
        return;
    }
    if (request.target.compare(0, 14, "/__lmsim/fault") == 0) {
        WriteResponse(fd, Control(request), Fault());
        return;
    }
    if (request.target == "/__lmsim/stats") {
        HttpResponse r;
        r.body = m_Stats != nullptr ? m_Stats->Text() : std::string();
        WriteResponse(fd, r, Fault());
        return;
    }
    if (m_Log != nullptr) {
        m_Log->Write(request.method + " " + request.target);
    }
    WriteResponse(fd, m_Web.Handle(request, time(nullptr)), m_Faults.Take());
}

}  // namespace lmsim
