#include "SimWeb.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

namespace lmsim {

namespace {

const char* const kFolders[] = {"95",  "175", "65",  "77",  "102", "126", "135s",
                                "137", "153", "177", "203", "269", "321"};
const char* const kSuffixes[] = {"95",  "175", "65",  "77",  "102", "126", "135",
                                 "137", "153", "177", "203", "269", "321"};

HttpResponse Status(int status, const char* reason) {
    HttpResponse r;
    r.status = status;
    r.reason = reason;
    return r;
}

bool StartsWith(const std::string& s, const char* prefix) {
    return s.compare(0, strlen(prefix), prefix) == 0;
}

}  // namespace

std::string HttpRequest::Header(const std::string& name) const {
    for (const auto& h : headers) {
        if (strcasecmp(h.first.c_str(), name.c_str()) == 0) {
            return h.second;
        }
    }
    return "";
}

std::string HttpResponse::Serialize() const {
    std::string out = "HTTP/1.1 " + std::to_string(status) + " " + reason + "\r\n";
    for (const auto& h : headers) {
        out += h.first + ": " + h.second + "\r\n";
    }
    out += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    out += "Connection: close\r\n\r\n";
    out += body;
    return out;
}

std::string SimWeb::DeviceTimeText(time_t now) {
    struct tm utc;
    gmtime_r(&now, &utc);
    int hour12 = utc.tm_hour % 12 == 0 ? 12 : utc.tm_hour % 12;
    char text[64];
    snprintf(text, sizeof(text), "%d/%d/%d %d:%02d:%02d %s", utc.tm_mon + 1, utc.tm_mday,
             utc.tm_year + 1900, hour12, utc.tm_min, utc.tm_sec, utc.tm_hour < 12 ? "AM" : "PM");
    return text;
}

bool SimWeb::PercentDecode(const std::string& in, std::string& out) {
    out.clear();
    for (size_t i = 0; i < in.size(); ++i) {
        if (in[i] != '%') {
            out += in[i];
            continue;
        }
        if (i + 2 >= in.size() || !isxdigit(static_cast<unsigned char>(in[i + 1])) ||
            !isxdigit(static_cast<unsigned char>(in[i + 2]))) {
            return false;
        }
        out += static_cast<char>(std::stoi(in.substr(i + 1, 2), nullptr, 16));
        i += 2;
    }
    return true;
}

std::string SimWeb::BoxArtImage(const std::string& prefix, int size) {
    // A JPEG start marker, a body that differs per prefix and size, an end marker.
    std::string image("\xFF\xD8\xFF\xE0", 4);
    uint32_t h = 2166136261u + static_cast<uint32_t>(size);
    for (char c : prefix) {
        h = (h ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    size_t length = 1500 + static_cast<size_t>(size) * 300;
    for (size_t i = 0; i < length; ++i) {
        h = h * 1664525u + 1013904223u;
        image += static_cast<char>(h >> 24);
    }
    image += std::string("\xFF\xD9", 2);
    return image;
}

HttpResponse SimWeb::BoxArt(const std::string& path, const std::string& ifModifiedSince) const {
    // /images/boxart/<folder>/<encoded prefix><suffix>.jpg
    const std::string base = "/images/boxart/";
    size_t slash = path.find('/', base.size());
    if (!StartsWith(path, base.c_str()) || slash == std::string::npos || path.size() < 4 ||
        path.compare(path.size() - 4, 4, ".jpg") != 0) {
        return Status(404, "Not Found");
    }
    const std::string folder = path.substr(base.size(), slash - base.size());
    std::string name;
    if (!PercentDecode(path.substr(slash + 1, path.size() - slash - 1 - 4), name)) {
        return Status(400, "Bad Request");
    }
    for (int size = 0; size < 13; ++size) {
        const std::string suffix = kSuffixes[size];
        if (folder != kFolders[size] || name.size() <= suffix.size() ||
            name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0) {
            continue;
        }
        const std::string prefix = name.substr(0, name.size() - suffix.size());
        bool known = false;
        for (const Title& t : m_Catalogue.Titles()) {
            if (t.boxArtPrefix == prefix) {
                known = true;
                break;
            }
        }
        if (!known) {
            break;
        }
        if (ifModifiedSince == m_Settings.boxArtLastModified) {
            HttpResponse r = Status(304, "Not Modified");
            r.headers.push_back({"Last-Modified", m_Settings.boxArtLastModified});
            return r;
        }
        HttpResponse r;
        r.headers.push_back({"Content-Type", "image/jpeg"});
        r.headers.push_back({"Last-Modified", m_Settings.boxArtLastModified});
        r.body = BoxArtImage(prefix, size);
        return r;
    }
    return Status(404, "Not Found");
}

HttpResponse SimWeb::Handle(const HttpRequest& request, time_t now) const {
    if (request.method != "GET") {
        return Status(405, "Method Not Allowed");
    }
    const std::string& target = request.target;
    if (target == "/device/time/") {
        HttpResponse r;
        r.headers.push_back({"Content-Type", "text/plain"});
        r.body = DeviceTimeText(now);
        return r;
    }
    if (StartsWith(target, "/device/env/?")) {
        HttpResponse r;
        r.headers.push_back({"Content-Type", "text/plain"});
        r.body = m_Settings.envDigit;
        return r;
    }
    if (target == m_Settings.bandwidthPath) {
        HttpResponse r;
        r.headers.push_back({"Content-Type", "application/octet-stream"});
        r.body.assign(m_Settings.bandwidthBytes, 'B');
        return r;
    }
    if (StartsWith(target, "/images/boxart/")) {
        return BoxArt(target, request.Header("If-Modified-Since"));
    }
    return Status(404, "Not Found");
}

}  // namespace lmsim
