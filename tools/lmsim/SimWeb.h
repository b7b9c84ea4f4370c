// The simulator's plain-HTTP answers: the device clock, box-art images with revalidation, the
// bandwidth-check file and the environment query. Pure functions of the request, so they are
// tested without sockets; SimHttpServer puts them on the wire.
#ifndef LMSIM_WEB_H
#define LMSIM_WEB_H

#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "SimCatalogue.h"

namespace lmsim {

struct HttpRequest {
    std::string method;
    std::string target;  // path and query as sent
    std::vector<std::pair<std::string, std::string>> headers;
    // The value of a header (case-insensitive name), or "" when absent.
    std::string Header(const std::string& name) const;
};

struct HttpResponse {
    int status = 200;
    std::string reason = "OK";
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    // The whole response: status line, headers, Content-Length, blank line, body.
    std::string Serialize() const;
};

struct WebSettings {
    std::string envDigit = "2";  // the environment query's answer
    std::string boxArtLastModified = "Mon, 23 Nov 2026 06:00:00 GMT";
    size_t bandwidthBytes = 262144;  // size of the bandwidth-check file
    std::string bandwidthPath = "/bandwidth/check.bin";
};

class SimWeb {
public:
    SimWeb(const Catalogue& catalogue, const WebSettings& settings)
        : m_Catalogue(catalogue), m_Settings(settings) {}

    // Routes a GET to one of the answers below; 404 for anything else, 405 for other methods.
    HttpResponse Handle(const HttpRequest& request, time_t now) const;

    // "M/D/YYYY h:mm:ss AM|PM" of `now` in UTC, as the service's clock page writes it.
    static std::string DeviceTimeText(time_t now);
    // "/images/boxart/<folder>/<prefix><suffix>.jpg" -> the image, or 304 / 404.
    HttpResponse BoxArt(const std::string& path, const std::string& ifModifiedSince) const;
    // The image bytes for a prefix and size class (deterministic, JPEG markers at both ends).
    static std::string BoxArtImage(const std::string& prefix, int size);
    // Percent-decodes; false on a malformed escape.
    static bool PercentDecode(const std::string& in, std::string& out);

private:
    const Catalogue& m_Catalogue;
    WebSettings m_Settings;
};

}  // namespace lmsim

#endif  // LMSIM_WEB_H
