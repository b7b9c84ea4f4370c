// BoxArtDownloader: fetches one box-art image from the service's web host with a hand-written
// HTTP/1.1 GET, optionally conditional ("If-Modified-Since"), into memory or into a file.
//
// The images are plain files on the web host, "/images/boxart/<size folder>/<prefix><size
// suffix>.jpg", outside the SOAP services; the downloader borrows a toolkit context only for its
// transport callbacks (and so for its time-outs). It logs nothing: every outcome is its result.
#ifndef LM_BOXART_DOWNLOADER_H
#define LM_BOXART_DOWNLOADER_H

#include <cstdint>

#include "LMDeployment.h"
#include "LMString.h"
#include "LM_WS_Types.h"

struct soap;

class BoxArtDownloader {
public:
    // `soap` must stay valid while the downloader is used. The web host and the plain-HTTP port
    // come from `deployment`.
    BoxArtDownloader(struct soap* soap, const LMDeployment& deployment);
    BoxArtDownloader(const BoxArtDownloader&) = delete;
    BoxArtDownloader& operator=(const BoxArtDownloader&) = delete;

    // Downloads the image of `prefix` in `size`. With a non-empty `ifModifiedSince` (the
    // Last-Modified of the copy held) the server may answer that the copy is current. With
    // `toFile` the image replaces the file named by `target`, and only after it arrived whole;
    // otherwise `target` receives the image bytes. Results:
    //   0      the image arrived (ContentLength and LastModified describe it)
    //   -1901  the server has no such image (404)
    //   -1902  the held copy is current (304); the target is left as it was
    //   -1001  a send or receive failed, the answer could not be read or is over the size limit
    //   -1900  the file could not be written or put in place
    //   -2011  no connection
    LM_WS_Status Download(const LMString& prefix, LM_WS_BoxArtSize size,
                          const LMString& ifModifiedSince, bool toFile, LMString& target);

    // The largest image taken: an answer announcing more is refused (-1001) before anything is
    // written. 16 MiB unless set; a device sets the box-art share of its cache budget.
    static constexpr uint32_t kDefaultSizeLimit = 16u << 20;
    void SetSizeLimit(uint32_t bytes) { m_SizeLimit = bytes; }

    // The Content-Length of the last answer (0 when it had none).
    uint32_t ContentLength() const { return m_ContentLength; }
    // The Last-Modified of the last 200 answer ("" when it had none).
    const LMString& LastModified() const { return m_LastModified; }

private:
    // Everything but the temporary file's fate: the exchange, writing to `sink` or `memory`.
    LM_WS_Status Fetch(const LMString& prefix, LM_WS_BoxArtSize size,
                       const LMString& ifModifiedSince, const LMString* sink, LMString* memory);

    struct soap* m_Soap;
    uint32_t m_ContentLength;
    LMString m_LastModified;
    LMString m_WebHost;
    int m_HttpPort;
    uint32_t m_SizeLimit = kDefaultSizeLimit;
};

#endif  // LM_BOXART_DOWNLOADER_H
