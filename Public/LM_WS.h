/* The LM_WS_* client interface: set-up and teardown of a client handle, the operations that
 * set-up itself relies on, and the catalogue operations.
 *
 * A caller owns an LM_WS_Handle, zero-initialises it, passes it to LM_WS_Setup and, when done,
 * to LM_WS_Teardown. Every operation checks the handle's client context first and returns -1000
 * when it is null (never set up, set-up failed, or torn down). A handle serves one call at a time.
 */
#ifndef LM_WS_H
#define LM_WS_H

#include <stdint.h>

#include "LM_WS_Records.h"
#include "LM_WS_Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Environment chosen by the caller: 0 staging API, 1 staging, 2 production; any larger value
 * asks the service which environment this device belongs to. */
typedef uint32_t LM_WS_EnvNum;
/* The environment in use (may exceed 2 when the service names an unknown one). */
typedef int32_t LM_WS_EnvID;
/* 1 download service, 2 streaming service; anything else asks the service (getFileType). */
typedef int32_t LM_WS_AccessType;

/* What the caller passes to LM_WS_Setup. Texts are NUL-terminated; an absent optional text is a
 * null pointer or "". The fields are read during the call only. */
typedef struct LM_WS_SetupParams {
    enum ContentType { General = 0, Adult = 1 };

    const char* APIKey;              /* required */
    const char* AuthToken;           /* optional */
    const char* DestinationUniqueID; /* required, at most 350 characters */
    int32_t DestinationTypeID;
    const char* UserName;       /* required */
    const char* Password;       /* required */
    const char* ServiceBaseURL; /* carried only: the base URL comes from the environment table */
    int32_t Type;               /* ContentType */
    LM_WS_EnvNum EnvNum;
    uint32_t CacheType;  /* LM_WS_CacheParam::CacheType */
    uint32_t CacheData;  /* bit set of LM_WS_CacheParam::CacheData */
    uint32_t CacheLimit; /* bytes; 0 no limit, else at least 358400 */
    const char* CachePath;
    const char* ProxyHost; /* optional HTTP proxy */
    int32_t ProxyPort;
    const char* ProxyUserName;
    const char* ProxyPassword;
    LM_WS_AccessType AccessType;
    const char* ApplicationRevision; /* optional, goes into the User-Agent */
    const char* firmwareVersion;     /* optional, goes into the User-Agent */
    const char* modelNumber;         /* optional, goes into the User-Agent */
} LM_WS_SetupParams;

/* The client handle: Type points to a heap tag holding 1, Client to the client context. */
typedef struct LM_WS_Handle {
    int32_t* Type;
    void* Client;
} LM_WS_Handle;

/* Validates `params`, resolves the environment, configures the three service proxies and opens
 * the cache. 0 on success; on failure the handle is left without a client and the status says
 * why (-1000 bad parameters, -1911 cache folder, -5000 TLS set-up, -2011 no base URL, -1910
 * cache database). A handle that already holds a client is torn down first. */
LM_WS_Status LM_WS_Setup(LM_WS_Handle* handle, const LM_WS_SetupParams* params);

/* Frees the client and the handle's tag; the handle is empty afterwards. Safe on a handle that
 * was never set up or is already torn down. */
void LM_WS_Teardown(LM_WS_Handle* handle);

/* The User-Agent the client sends, in a length-and-text record (a one-byte "" when empty). */
LM_WS_Status LM_WS_getUserAgent(LM_WS_Handle* handle, LM_WS_LengthAndText* result);

/* The service's catalogue load time text, in a length-and-text record. Only the transport
 * status is returned. */
LM_WS_Status LM_WS_getLastCacheLoadTimeUTC(LM_WS_Handle* handle, LM_WS_LengthAndText* result);

/* The file type of this device's account; on success its access type becomes the client's. */
LM_WS_Status LM_WS_getFileType(LM_WS_Handle* handle, LM_WS_FileType* result);

/* ---- Catalogue ----
 *
 * Each operation fills the caller's record (initialised by the operation itself, released by the
 * caller with LM_WS_FreeResult whatever the status) and returns 0, -1000 when the handle holds no
 * client, a transport status (-2011, -2012, -4000 - n, -5030, -6000 - n) or -1004 when the service
 * answered with a non-zero response code; the record then still holds the converted answer.
 * Operations marked "cached" answer from the client's cache when it holds the same request, and
 * store a fresh successful answer when the matching CacheData bit is set. */

/* Two paging numbers: the page wanted (counted from 1) and the number of titles on a page. */
typedef struct LM_WS_Page {
    int32_t CurrentPageNumber;
    int32_t ItemsPerPage;
} LM_WS_Page;

/* The genre tree. Cached (CacheData bit 1). */
LM_WS_Status LM_WS_getNavigation(LM_WS_Handle* handle, LM_WS_Navigation* result);

/* The label of a genre. Never cached. */
LM_WS_Status LM_WS_getGenreLabel(LM_WS_Handle* handle, int32_t genreID,
                                 LM_WS_GenreLabelResponse* result);

/* A page of the titles of a genre, for a purchase type (0 rent, 1 buy, 2 any). Cached. */
LM_WS_Status LM_WS_getTitles(LM_WS_Handle* handle, int32_t genreID, LM_WS_Page page,
                             int32_t purchaseType, LM_WS_TitlesResponse* result);

/* The same page of each of `count` genres. Never cached. */
LM_WS_Status LM_WS_getTitlesByGenreIDs(LM_WS_Handle* handle, const int32_t* genreIDs, int32_t count,
                                       LM_WS_Page page, int32_t purchaseType,
                                       LM_WS_TitlesResponseArray* result);

/* One title's page. Cached. */
LM_WS_Status LM_WS_getTitleListing(LM_WS_Handle* handle, int32_t titleID,
                                   LM_WS_TitleListingResponse* result);

/* One TV episode's page. Cached. */
LM_WS_Status LM_WS_getTvEpisodeListing(LM_WS_Handle* handle, int32_t episodeID,
                                       LM_WS_TitleListingResponse* result);

/* The episodes of a series. Cached. */
LM_WS_Status LM_WS_getTvEpisodeListByTitleID(LM_WS_Handle* handle, int32_t titleID,
                                             LM_WS_TvEpisodeList* result);

/* Every episode page of a series. Cached. */
LM_WS_Status LM_WS_getAllTvEpisodeListings(LM_WS_Handle* handle, int32_t titleID,
                                           LM_WS_TitleListingResponses* result);

/* The title of a recording box's external id. Cached. */
LM_WS_Status LM_WS_translateRecboxExternalID(LM_WS_Handle* handle, const char* externalID,
                                             LM_WS_TranslateRecboxExternalIDResponse* result);

/* The title a product (SKU) belongs to. Cached. */
LM_WS_Status LM_WS_translateSkuID(LM_WS_Handle* handle, int32_t skuID,
                                  LM_WS_TranslateSkuIDResponse* result);

/* A page of the titles whose names match `query`, for a purchase type and a title type
 * (0 any, 1 TV, 2 movies). Cached. */
LM_WS_Status LM_WS_searchForTitle(LM_WS_Handle* handle, LM_WS_Page page, int32_t purchaseType,
                                  int32_t titleType, const char* query,
                                  LM_WS_TitlesResponse* result);

/* As LM_WS_searchForTitle, matching the titles' details too. Cached. */
LM_WS_Status LM_WS_searchForTitleDetail(LM_WS_Handle* handle, LM_WS_Page page, int32_t purchaseType,
                                        int32_t titleType, const char* query,
                                        LM_WS_TitlesResponse* result);

/* Asks whether a cache loaded at `utcTime` is out of date; *shouldUpdate is 1 when it is. -1000
 * for an empty time. Only the transport status is returned. */
LM_WS_Status LM_WS_shouldUpdateCache(LM_WS_Handle* handle, const char* utcTime,
                                     uint8_t* shouldUpdate);

/* Titles recommended beside a title. Cached. */
LM_WS_Status LM_WS_getRecommendedTitles(LM_WS_Handle* handle, int32_t titleID,
                                        LM_WS_RecommendedTitlesResponse* result);

/* A page of the account's bought and rented titles, for a purchase type, a title type and a
 * watch status filter. With the streaming service it is cached among the user data
 * (CacheData bit 4); with the download service it always asks the service. */
LM_WS_Status LM_WS_getMyVideos(LM_WS_Handle* handle, LM_WS_Page page, int32_t purchaseType,
                               int32_t titleType, int32_t watchStatus,
                               LM_WS_MyVideosResponse* result);

#ifdef __cplusplus
}
#endif

#endif /* LM_WS_H */
