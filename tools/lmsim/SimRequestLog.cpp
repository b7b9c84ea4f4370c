#include "SimRequestLog.h"

namespace lmsim {

namespace {

// The name of the tag starting at `open` (just after '<'), without its namespace prefix.
std::string LocalName(const std::string& text, size_t open) {
    size_t end = text.find_first_of(" \t\r\n/>", open);
    std::string name = text.substr(open, end == std::string::npos ? std::string::npos : end - open);
    size_t colon = name.find(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

}  // namespace

SimRequestLog::~SimRequestLog() {
    if (m_File != nullptr) {
        fclose(m_File);
    }
}

bool SimRequestLog::Open(const std::string& path) {
    std::lock_guard<std::mutex> lock(m_Lock);
    m_File = fopen(path.c_str(), "a");
    return m_File != nullptr;
}

void SimRequestLog::Write(const std::string& line) {
    std::lock_guard<std::mutex> lock(m_Lock);
    if (m_File != nullptr) {
        fprintf(m_File, "%s\n", line.c_str());
        fflush(m_File);
    }
}

std::string SimRequestLog::SoapLine(const std::string& body) {
    // The Body's opening tag, whatever its prefix.
    size_t at = std::string::npos;
    for (size_t lt = body.find('<'); lt != std::string::npos; lt = body.find('<', lt + 1)) {
        if (body[lt + 1] != '/' && LocalName(body, lt + 1) == "Body") {
            at = body.find('>', lt);
            break;
        }
    }
    if (at == std::string::npos) {
        return std::string();
    }
    size_t op = body.find('<', at);
    if (op == std::string::npos || body[op + 1] == '/') {
        return std::string();
    }
    std::string line = "SOAP " + LocalName(body, op + 1);
    // Leaf elements: an opening tag followed by text and its closing tag.
    for (size_t lt = body.find('<', op + 1); lt != std::string::npos; lt = body.find('<', lt + 1)) {
        if (body[lt + 1] == '/' || body[lt + 1] == '?' || body[lt + 1] == '!') {
            continue;
        }
        size_t gt = body.find('>', lt);
        if (gt == std::string::npos) {
            break;
        }
        if (body[gt - 1] == '/') {
            line += " " + LocalName(body, lt + 1) + "=";
            continue;
        }
        size_t next = body.find('<', gt);
        if (next != std::string::npos && body[next + 1] == '/') {
            line += " " + LocalName(body, lt + 1) + "=" + body.substr(gt + 1, next - gt - 1);
        }
    }
    return line;
}

}  // namespace lmsim
