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
/* The catalogue a client serves (LM_WS_SetupParams.Type). */
typedef enum LM_WS_ContentType {
    LM_WS_ContentGeneral = 0,
    LM_WS_ContentAdult = 1
} LM_WS_ContentType;

typedef struct LM_WS_SetupParams {
    const char* APIKey;              /* required */
    const char* AuthToken;           /* optional */
    const char* DestinationUniqueID; /* required, at most 350 characters */
    int32_t DestinationTypeID;
    const char* UserName;       /* required */
    const char* Password;       /* required */
    const char* ServiceBaseURL; /* carried only: the base URL comes from the environment table */
    int32_t Type;               /* LM_WS_ContentType */
    LM_WS_EnvNum EnvNum;
    uint32_t CacheType;  /* 0 none, 1 memory, 2 file */
    uint32_t CacheData;  /* bits: 1 responses, 2 box art, 4 user data */
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

/* ---- Configuration ---- */

/* The service's configuration items (key and value pairs), among them "BandwithCheckURL". */
LM_WS_Status LM_WS_getConfig(LM_WS_Handle* handle, LM_WS_ConfigResponse* result);

/* ---- Account, device, wishlist and purchases ----
 *
 * These go to the download service when the client's access type is 1 and to the streaming
 * service otherwise, unless said otherwise. Statuses as for the catalogue; a response code with a
 * status of its own (wrong activation pin -1005, the purchase, billing, gift-certificate and tax
 * codes) comes back as that status. Operations that change the account drop the cached user data
 * they affect (CacheData bit 4). */

/* Authorises this device with the activation pin shown on the account's web page; on success the
 * returned token is sent with every later call of this client and the cached user data is
 * dropped. -1005 wrong pin, -1006 too many devices. */
LM_WS_Status LM_WS_authorizeDevice(LM_WS_Handle* handle, int32_t pin,
                                   LM_WS_AuthorizeDeviceResponse* result);

/* Deactivates this device; on success the client's token becomes empty. */
LM_WS_Status LM_WS_deactivateDevice(LM_WS_Handle* handle, LM_WS_StandardResponse* result);

/* Whether the client's token is valid (*valid 1). A change of validity drops the cached user
 * data. Only the transport status is returned. */
LM_WS_Status LM_WS_checkAuthToken(LM_WS_Handle* handle, uint8_t* valid);

/* Buys a product (SKU) with the account's saved billing details, from the prepaid balance first
 * when `usePrePaidFunds` is non-zero. Clears the cached wishlist and its flags on success. */
LM_WS_Status LM_WS_doPurchaseSavedBilling(LM_WS_Handle* handle, int32_t skuID,
                                          const char* ipAddress, uint8_t usePrePaidFunds,
                                          LM_WS_PurchaseResponse* result);

/* A page of the wishlist in a sort order, for a title type (0 any, 1 TV, 2 movies). Cached among
 * the user data (bit 4). */
LM_WS_Status LM_WS_getWishlistItems(LM_WS_Handle* handle, int32_t sortOrder, LM_WS_Page page,
                                    int32_t titleType, LM_WS_WishlistItemsResponse* result);

/* Adds a title to / removes a title from / empties the wishlist, keeping the cached wishlist
 * flags in step. */
LM_WS_Status LM_WS_addItemToWishlist(LM_WS_Handle* handle, int32_t titleID,
                                     LM_WS_StandardResponse* result);
LM_WS_Status LM_WS_removeItemFromWishlist(LM_WS_Handle* handle, int32_t titleID,
                                          LM_WS_StandardResponse* result);
LM_WS_Status LM_WS_removeAllItemsFromWishlist(LM_WS_Handle* handle, LM_WS_StandardResponse* result);

/* Whether a title is on the wishlist (*inWishlist 1): answered from the cached flag when there
 * is one, otherwise from the title's page (and the flag is cached). */
LM_WS_Status LM_WS_checkTitleInWishlist(LM_WS_Handle* handle, int32_t titleID, uint8_t* inWishlist);

/* One flag per title of `titleIDs[0..count)`: 1 when the title is on the wishlist (of the given
 * title type). The flags found are cached. */
LM_WS_Status LM_WS_checkTitlesInWishlist(LM_WS_Handle* handle, const int32_t* titleIDs,
                                         int32_t count, int32_t titleType, uint8_t* flags);

/* Whether the account bought or rented a title / a product (*purchased 1). Only the transport
 * status is returned. The product check always asks the streaming service. */
LM_WS_Status LM_WS_checkForPurchasedTitle(LM_WS_Handle* handle, int32_t titleID,
                                          uint8_t* purchased);
LM_WS_Status LM_WS_checkForPurchasedSku(LM_WS_Handle* handle, int32_t skuID, uint8_t* purchased);

/* Whether the expiry of a rental (pass) should be shown, and the hours left. */
LM_WS_Status LM_WS_checkRentalExpiration(LM_WS_Handle* handle, int32_t passID,
                                         LM_WS_RentalExpirationResponse* result);

/* Whether adult verification is enabled for the account (response code 0 when it is). */
LM_WS_Status LM_WS_checkAdultVerificationEnabled(LM_WS_Handle* handle,
                                                 LM_WS_StandardResponse* result);

/* Checks the adult PIN (sent as four digits, never stored or logged). */
LM_WS_Status LM_WS_checkAdultVerificationPin(LM_WS_Handle* handle, int32_t pin,
                                             LM_WS_AdultVerificationPinResponse* result);

/* Credits a gift certificate to the account. -1000 for an empty code. */
LM_WS_Status LM_WS_assignGiftCertificateToUser(LM_WS_Handle* handle, const char* code,
                                               LM_WS_GiftCertificateResponse* result);

/* The account's e-mail address, saved card and settings-page texts; cached among the user data
 * (bit 4). */
LM_WS_Status LM_WS_getEmailAddress(LM_WS_Handle* handle, LM_WS_EmailAddressResponse* result);
LM_WS_Status LM_WS_getBillingInfo(LM_WS_Handle* handle, LM_WS_BillingInfoResponse* result);
LM_WS_Status LM_WS_getSettingsPageInfo(LM_WS_Handle* handle, LM_WS_SettingsPageInfo* result);

/* The prepaid balance. */
LM_WS_Status LM_WS_getPrePaidCardBalance(LM_WS_Handle* handle, LM_WS_PPCardBalanceResponse* result);

/* The account's country. Only the transport status is returned. */
LM_WS_Status LM_WS_getCountryID(LM_WS_Handle* handle, int32_t* countryID);

/* The account's default audio setting (streaming service). */
LM_WS_Status LM_WS_setAudioDefaultProperty(LM_WS_Handle* handle, int32_t audioSetting,
                                           LM_WS_StandardResponse* result);
LM_WS_Status LM_WS_getAudioDefaultProperty(LM_WS_Handle* handle, int32_t* audioSetting);

/* The tax of buying a product (streaming service). */
LM_WS_Status LM_WS_calcOrderTax(LM_WS_Handle* handle, int32_t skuID,
                                LM_WS_CalcOrderTaxResponse* result);

/* ---- Streaming (streaming service, never cached) ---- */

/* Where to stream a pass's title in a file profile, and where its playback last stopped. */
LM_WS_Status LM_WS_getStreamingAssetLocation(LM_WS_Handle* handle, int32_t passID,
                                             int32_t fileProfile,
                                             LM_WS_StreamingAssetLocationResponse* result);
LM_WS_Status LM_WS_getStreamingBonusAssetLocation(LM_WS_Handle* handle, int32_t bonusAssetID,
                                                  LM_WS_StreamingAssetLocationResponse* result);
LM_WS_Status LM_WS_loadLastStreamingAssetLocation(LM_WS_Handle* handle, int32_t passID,
                                                  int32_t fileProfile,
                                                  LM_WS_StreamingAssetLocationResponse* result);

/* Reports the state of a stream (play status 0 play, 1 stopped, 2 paused, 3 resumed, 4 error)
 * and the position in seconds. -1000 for an empty stream id (nothing is sent). */
LM_WS_Status LM_WS_manageStreamingInstanceStatus(LM_WS_Handle* handle, const char* streamID,
                                                 int32_t status, int32_t stopTimeSeconds,
                                                 LM_WS_StandardResponse* result);

/* Media-director data of a pass's title or of a bonus asset. */
LM_WS_Status LM_WS_getTHXMediaDirector(LM_WS_Handle* handle, int32_t passID, int32_t fileProfile,
                                       int32_t audioSetting,
                                       LM_WS_THXMediaDirectorResponse* result);
LM_WS_Status LM_WS_getTHXMediaDirectorBonusAsset(LM_WS_Handle* handle, int32_t bonusAssetID,
                                                 int32_t fileProfile, int32_t bonusAssetType,
                                                 LM_WS_THXMediaDirectorResponse* result);

/* The titles bought through passes[0..count). -1000 for no passes. */
LM_WS_Status LM_WS_getTitleListingsPurchasedForPasses(
    LM_WS_Handle* handle, const int32_t* passes, int32_t count,
    LM_WS_TitlesPurchasedForPassesResponse* result);

/* The saved card and the prepaid balance in one call. */
LM_WS_Status LM_WS_getBillingInfoAndPPCBalance(LM_WS_Handle* handle,
                                               LM_WS_BillingInfoAndPPCBalanceResponse* result);

/* Removes every purchase of the account (a test service of the operator). -1000 for an empty
 * password. */
LM_WS_Status LM_WS_removeAllMyPurchases(LM_WS_Handle* handle, const char* password,
                                        LM_WS_StandardResponse* result);

/* Asks the service for its error answer (a test of the error path). */
LM_WS_Status LM_WS_ReturnError(LM_WS_Handle* handle, LM_WS_StandardResponse* result);

/* ---- Network probes and device helpers ---- */

/* Measures the download rate from the service's bandwidth-check file (its URL comes from the
 * configuration item "BandwithCheckURL", fetched once per client): at most 204800 bytes are read;
 * *bitsPerSecond is 0 on failure. -1920 when no URL is configured, -1921 when it has no host or
 * path, -2011 no connection, -1901 file not found, -1001 a failed or malformed exchange. */
LM_WS_Status LM_WS_checkBandwidth(LM_WS_Handle* handle, uint32_t* bitsPerSecond);

/* The service's clock (seconds since 1970-01-01 UTC) from the production host's device-time page;
 * *utcSeconds is -1 on failure. -2011 no connection, -1001 a failed or malformed exchange, -1004
 * an incomplete or unreadable body. */
LM_WS_Status LM_WS_getDeviceTime(int32_t* utcSeconds);

/* The output of the system's md5sum tool for `path` (digest, separator, file name). -1000 for a
 * null path, -1004 when the tool cannot be started. */
LM_WS_Status LM_WS_md5sum(const char* path, LM_WS_LengthAndText* result);

/* Copies `source` to `destination` unless the destination exists already (then 0, untouched).
 * -1000 for a null argument, -1900 when reading or writing fails. */
LM_WS_Status LM_WS_copyFile(const char* source, const char* destination);

/* Deletes `path` when it exists. -1000 for a null path, otherwise 0. */
LM_WS_Status LM_WS_deleteFile(const char* path);

/* The IPv4 address of the first network interface that is up and not the loopback, as text.
 * -1004 when there is none. */
LM_WS_Status LM_WS_getLocalIPAddr(LM_WS_LengthAndText* result);

/* Refreshes the client's cache for the bits of `mask` that its CacheData has: 1 the catalogue
 * (its load time is asked and, when it changed, the cached answers dropped), 2 box art marked for
 * revalidation, 4 user data dropped. -1000 without a client; 0 otherwise, also without a cache. */
LM_WS_Status LM_WS_updateLocalCache(LM_WS_Handle* handle, uint32_t mask);

/* The local file of a title's box art in `size`, fetched from the service's web host when the
 * client holds no current copy (a copy marked for revalidation is asked for with its
 * Last-Modified). The result is the local file name; when no copy can be had, the image's address
 * on the web host, and the status says why (-1901 not found, -2011 no connection, -1001, -1900). */
LM_WS_Status LM_WS_getBoxArtImage(LM_WS_Handle* handle, LM_WS_BoxArtSize size, const char* prefix,
                                  LM_WS_LengthAndText* result);

#ifdef __cplusplus
}
#endif

#endif /* LM_WS_H */
