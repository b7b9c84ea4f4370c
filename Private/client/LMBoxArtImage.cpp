// LM_WS_getBoxArtImage: a title's box art as a local file, kept current against the web host.
//
// Images are files beside the cache database, one per prefix and size class, named as the
// cache's eviction expects (LMUtilities::GetBoxArtImageFileName with the database's folder); the
// BoxArt table holds their Last-Modified, their size (for the size budget) and the NeedUpdate
// mark that a cache refresh with bit 2 sets. A marked image is revalidated with a conditional
// request before it is handed out again.
//
// Without a file cache (no cache, a cache in memory, or box art not among the cached data) there
// is no place for a file whose name could be handed out, and an image in memory is of no use to
// callers that load images by name or address. The image's address on the service is then the
// answer, without any request: the caller's image loader fetches it itself.
#include <sys/stat.h>

#include "BoxArtDownloader.h"
#include "LMBoxArt.h"
#include "LMFile.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LM_WS.h"

namespace {

bool FileExists(const LMString& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool HasFileCache(const LMWSClient& client) {
    const LM_WS_CacheParam& cache = client.m_Params.Cache;
    return client.m_CacheMgr != nullptr && cache.CacheType == LM_WS_CacheParam::File &&
           (cache.CacheData & LM_WS_CacheParam::BoxArt) != 0;
}

// The image's address on the service: the host that serves box art (the production host unless
// the deployment names another), with its port when that is not 80.
LMString FallbackURL(const LMDeployment& deployment, LM_WS_BoxArtSize size, const char* prefix) {
    return LMUtilities::GetBoxArtImageURL(
        LMDeployment::HostHeader(deployment.webHost, deployment.httpPort, false), size, prefix);
}

// Brings the file `file` of (prefix, size) up to date. 0 when the file is current afterwards.
LM_WS_Status Refresh(LMWSClient& client, const LMString& prefix, LM_WS_BoxArtSize size,
                     const LMString& file) {
    CacheMgr& cache = *client.m_CacheMgr;
    unsigned bytes = 0;
    LMString lastModified, data;
    bool needUpdate = false;
    const bool known = cache.GetBoxArt(prefix, size, bytes, lastModified, needUpdate, data) != 0;
    const bool present = FileExists(file);
    if (known && present && !needUpdate) {
        return LM_WS_OK;
    }
    // A row whose file has gone (removed behind the cache's back) is fetched anew.
    const bool revalidate = known && present;
    BoxArtDownloader downloader(client.m_RealTimeBrowse.soap, client.m_Params.Deployment);
    // No image may be larger than the whole box-art share of a set budget.
    if (cache.BoxArtLimit() != 0) {
        downloader.SetSizeLimit(cache.BoxArtLimit());
    }
    LMString target(file);
    const LM_WS_Status status =
        downloader.Download(prefix, size, revalidate ? lastModified : LMString(), true, target);
    if (status == LM_WS_OK) {
        // The file is in place whatever the table says: a failed row only means the image is
        // fetched again next time.
        cache.SetBoxArt(prefix, size, downloader.ContentLength(), downloader.LastModified(), false,
                        LMString());
        return LM_WS_OK;
    }
    if (revalidate && status == LM_WS_BOXART_NOT_MODIFIED) {
        cache.SetBoxArt(prefix, size, bytes, lastModified, false, LMString());
        return LM_WS_OK;
    }
    if (revalidate && status == LM_WS_BOXART_NOT_FOUND) {
        // The service no longer has the image: neither should we.
        LMFile::Remove(file.c_str());
        cache.SetBoxArt(prefix, size, 0, LMString(), true, LMString());
        return status;
    }
    if (revalidate) {
        // The service could not be asked (no connection, a broken answer): the copy held is the
        // best there is, and it stays marked so that the next call asks again.
        return LM_WS_OK;
    }
    return status;
}

}  // namespace

extern "C" {

LM_WS_Status LM_WS_getBoxArtImage(LM_WS_Handle* handle, LM_WS_BoxArtSize size, const char* prefix,
                                  LM_WS_LengthAndText* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultLengthAndText);
    if (client == nullptr || prefix == nullptr || prefix[0] == 0 || size < LM_WS_BoxArt95 ||
        size > LM_WS_BoxArt321) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const LMDeployment& deployment = client->m_Params.Deployment;
    if (!HasFileCache(*client)) {
        LMUtilities::String2LM_WS_LengthAndText(FallbackURL(deployment, size, prefix).c_str(),
                                                result);
        return LM_WS_OK;
    }
    const LMString folder = LMFile::GetFolderName(client->m_Params.Cache.CachePath.c_str());
    const LMString file = LMUtilities::GetBoxArtImageFileName(folder.c_str(), prefix, size);
    const LM_WS_Status status = Refresh(*client, LMString(prefix), size, file);
    const LMString answer = status == LM_WS_OK ? file : FallbackURL(deployment, size, prefix);
    LMUtilities::String2LM_WS_LengthAndText(answer.c_str(), result);
    return status;
}

}  // extern "C"
