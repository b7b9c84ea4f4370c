#include "BoxArtDownloader.h"

#include <algorithm>

#include "LMAssert.h"
#include "LMBoxArt.h"
#include "LMFile.h"
#include "LMRawHttp.h"
#include "LMUtilities.h"
#include "stdsoap2.h"

namespace {

// Where the body goes: the temporary file or the caller's memory.
class Sink {
public:
    Sink(LMFile* file, LMString* memory) : m_File(file), m_Memory(memory) {}
    // True when all `n` bytes were taken.
    bool Put(const char* data, size_t n) {
        if (m_File == nullptr) {
            m_Memory->append(data, n);
            return true;
        }
        return m_File->Write(data, static_cast<lm_int64>(n)) == static_cast<lm_int64>(n);
    }

private:
    LMFile* m_File;
    LMString* m_Memory;
};

}  // namespace

BoxArtDownloader::BoxArtDownloader(struct soap* soap, const LMDeployment& deployment)
    : m_Soap(soap),
      m_ContentLength(0),
      m_WebHost(deployment.webHost),
      m_HttpPort(deployment.httpPort) {}

LM_WS_Status BoxArtDownloader::Download(const LMString& prefix, LM_WS_BoxArtSize size,
                                        const LMString& ifModifiedSince, bool toFile,
                                        LMString& target) {
    LM_ASSERT(m_Soap != 0);
    m_LastModified.assign("");
    m_ContentLength = 0;
    if (!toFile) {
        target.assign("");
        return Fetch(prefix, size, ifModifiedSince, nullptr, &target);
    }
    // The image is written beside the destination and put in its place only when complete, so
    // a failed download leaves an earlier image as it was.
    const LMString temp = LMFile::CreateTempFileName(target.c_str());
    LM_WS_Status status = Fetch(prefix, size, ifModifiedSince, &temp, nullptr);
    if (status == LM_WS_OK) {
        LMFile::Remove(target.c_str());
        if (!LMFile::Rename(temp.c_str(), target.c_str())) {
            status = LM_WS_BOXART_FILE_FAILED;
        }
    }
    if (status != LM_WS_OK) {
        LMFile::Remove(temp.c_str());
    }
    return status;
}

LM_WS_Status BoxArtDownloader::Fetch(const LMString& prefix, LM_WS_BoxArtSize size,
                                     const LMString& ifModifiedSince, const LMString* sink,
                                     LMString* memory) {
    const LMString path = LMString("/images/boxart/") + LMBoxArtFolder(size) + "/" +
                          LMUtilities::URLEncode(prefix.c_str()) + LMBoxArtSuffix(size) + ".jpg";
    const LMString host = LMDeployment::HostHeader(m_WebHost, m_HttpPort, false);

    LMRawHttp::Connection connection(m_Soap);
    if (!connection.Open(LMString("http://") + host + path, m_WebHost, m_HttpPort)) {
        return LM_WS_NO_CONNECTION;
    }
    LMString request = LMString("GET ") + path + " HTTP/1.1\r\n";
    // A stored value is sent back only when it cannot break the request (one stored by an
    // earlier version of the client may hold anything the server sent).
    if (!ifModifiedSince.empty() &&
        LMRawHttp::IsHeaderValue(ifModifiedSince.c_str(), ifModifiedSince.length())) {
        request.append("If-Modified-Since: ");
        request.append(ifModifiedSince);
        request.append("\r\n");
    }
    request.append("User-Agent: LMWSLib\r\nHost: ");
    request.append(host);
    request.append("\r\n\r\n");
    char block[LMRawHttp::kFirstBlock + 1];
    size_t received = 0;
    LMRawHttp::Head head;
    if (!LMRawHttp::Exchange(connection, request, block, received, head)) {
        return LM_WS_SEND_RECV_FAILED;
    }
    switch (head.status) {
        case LMRawHttp::Status::OK:
            break;
        case LMRawHttp::Status::NotFound:
            return LM_WS_BOXART_NOT_FOUND;
        case LMRawHttp::Status::NotModified:
            return LM_WS_BOXART_NOT_MODIFIED;
        default:
            return LM_WS_SEND_RECV_FAILED;
    }
    m_LastModified = head.lastModified;
    m_ContentLength = head.contentLength;
    if (!head.complete || head.contentLength > m_SizeLimit) {
        return LM_WS_SEND_RECV_FAILED;
    }

    LMFile file;
    if (sink != nullptr && !file.Open(sink->c_str(), "wb")) {
        return LM_WS_SEND_RECV_FAILED;
    }
    Sink out(sink != nullptr ? &file : nullptr, memory);
    // Bytes beyond the announced length would belong to nothing we asked for.
    const size_t first = std::min<size_t>(received - head.bodyOffset, head.contentLength);
    if (first > 0 && !out.Put(block + head.bodyOffset, first)) {
        return LM_WS_BOXART_FILE_FAILED;
    }
    size_t remaining = head.contentLength - first;
    char chunk[LMRawHttp::kChunk];
    while (remaining > 0) {
        const size_t n = connection.Receive(chunk, std::min(remaining, sizeof(chunk)));
        if (n == 0) {
            return LM_WS_SEND_RECV_FAILED;
        }
        remaining -= std::min(n, remaining);
        // A short write of the last piece still counts as a download, as it always has; any
        // earlier one fails it.
        if (!out.Put(chunk, n) && remaining > 0) {
            return LM_WS_BOXART_FILE_FAILED;
        }
    }
    connection.Close();
    // Buffered bytes that cannot be written (a full disk) show up here, not in the writes.
    if (sink != nullptr && !file.Flush()) {
        return LM_WS_BOXART_FILE_FAILED;
    }
    return LM_WS_OK;
}
