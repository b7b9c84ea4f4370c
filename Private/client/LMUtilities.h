// Helpers shared by the client operations: the status mapping, URL encoding, bounded formatting,
// box-art names and the cache file name.
#ifndef LM_UTILITIES_H
#define LM_UTILITIES_H

#include <cstddef>

#include "LMString.h"
#include "LM_WS_Records.h"
#include "LM_WS_Types.h"

// ---- Wire types of the service answers, for the record converters below (LMConverters.cpp). ----
// Declared, not included, so that users of this header need no generated code.
class LM1__StandardResponse;
class LM1__Genre;
class LM1__ArrayOfGenre;
class LM1__GenreRequest;
class LM1__GetGenreLabelResponse;
class LM1__TitleListing;
class LM1__ArrayOfTitleListing;
class LM1__GetTitlesResponse;
class LM1__ArrayOfGetTitlesResponse;
class LM1__RecommendedTitlesResponse;
class LM1__TitleListingResponse;
class LM1__ArrayOfTitleListingResponse;
class LM1__TvEpisode;
class LM1__ArrayOfTvEpisode;
class LM1__TvEpisodeList;
class LM1__TranslatedRecboxExternalIdResponse;
class LM1__TranslateSkuIdResponse;
class LM1__TitleListingPurchased;
class LM1__ArrayOfTitleListingPurchased;
class LM1__GetMyVideosResponse;
class LM1__GetConfigResponse;
class LM1__AuthorizeDeviceResponse;
class LM1__PurchaseResponse;
class LM1__GetWishlistItemsResponse;
class LM1__WishListActionResponse;
class LM1__CheckAdultVerificationEnabledResponse;
class LM1__CheckRentalExpirationResponse;
class LM1__CheckAdultVerificationPinResponse;
class LM1__GiftCertificateResponse;
class LM1__GetEmailAddressResponse;
class LM1__BillingInfoResponse;
class LM1__PPCardBalanceResponse;
class LM1__BillingInfoAndPPCBalanceResponse;
class LM1__SettingsPageInfo;
class LM1__CalcOrderTaxResponse;
class LM1__GetStreamingAssetLocationResponse;
class LM1__THXMediaDirectorResponse;
class LM1__ArrayOfTitleListingPurchasedForPass;
struct soap;

struct LMDeployment;

class LMUtilities {
public:
    // The status of an operation from the SOAP runtime's error code, the service's response code
    // and the operation's name ("LM_WS_authorizeDevice"; null for operations whose non-zero
    // response codes are all -1004).
    static LM_WS_Status MakeStatus(int soapError, int responseCode, const char* operation);

    // Letters, digits and "-_.!~*'()" pass; every other byte becomes "%XX" (upper case).
    static LMString URLEncode(const char* text);

    // vsnprintf into `buf`, always terminated; returns the length of what was written.
    static int safe_snprintf(char* buf, size_t bufsize, const char* format, ...)
        __attribute__((format(printf, 3, 4)));

    // A new device unique id: a random (version 4) UUID, 36 characters of lower-case hex digits
    // and dashes ("0f8e3c5a-9b1d-4e2f-8a7b-6c5d4e3f2a1b"), from the OpenSSL random generator.
    // Empty when the generator fails.
    static LMString GenerateUniqueID();

    // path + boxartprefix + size suffix + ".jpg".
    static LMString GetBoxArtImageFileName(const char* path, const char* boxartprefix, int size);
    // "http://" + host + "/images/boxart/" + size folder + "/" + encoded prefix + suffix + ".jpg".
    static LMString GetBoxArtImageURL(const LMString& host, int size, const char* boxartprefix);

    // The cache file for one combination of account, device and cache settings: `cachePath`
    // ("." when empty) with a trailing "/", then hashes of the settings, then ".lm". The secrets
    // themselves never appear in the name.
    static LMString CacheFileName(const LMString& cachePath, const LMString& serviceBaseURL,
                                  const LMString& destinationUniqueID, int destinationTypeID,
                                  const LMString& apiKey, const LMString& userName,
                                  const LMString& password, unsigned cacheData,
                                  unsigned cacheLimit);

    // ---- Service base URL (LMServiceBaseURL.cpp) ----
    //
    // The base URL for content type `type` (1 adult catalogue, else general). EnvNum 0, 1 and 2
    // pick the environment table's entry directly, without the network. Any other EnvNum asks
    // the service over `so`'s connection callback (TLS and proxy settings apply): the one-digit
    // answer names the environment, anything else means production (2). `envID` receives the
    // environment used; when no connection can be made the result is "" and `envID` is left
    // alone. The hosts and the HTTPS port come from `deployment`, read once at set-up.
    static LMString QueryServiceBaseURL(const LMDeployment& deployment, int type, struct soap* so,
                                        const char* DestinationUniqueID, int DestinationTypeID,
                                        unsigned EnvNum, int& envID);

    // ---- Conversion of service answers into client records (LMConverters.cpp) ----
    //
    // Each converter copies the wire object `t` (never null: a null is a programming error and
    // fails the assertion "t != 0") into the record `r`, which must be cleared or fresh from
    // LM_WS_InitResult: tags already in `r` are kept, missing ones are allocated, every other
    // member is overwritten. Texts become heap copies ("" for an absent text); nested lists are
    // converted element by element. A record with a status but no status on the wire (navigation,
    // the list of all episode pages, the titles of many genres) gets code 0 and message "".

    // A heap copy of `text`, or a one-byte "" when it is null.
    static char* CopyText(const char* text);
    // 1 exactly when `text` is "true" in any mix of case; 0 for anything else or null.
    static int TextIsTrue(const char* text);
    // A text answer into the length-and-text record; a null text gives "" and length 0.
    static void String2LM_WS_LengthAndText(const char* t, LM_WS_LengthAndText* r);

    static void LM1__StandardResponse2LM_WS_StandardResponse(const LM1__StandardResponse* t,
                                                             LM_WS_StandardResponse* r);
    static void LM1__Genre2LM_WS_Genre(const LM1__Genre* t, LM_WS_Genre* r);
    static void LM1__ArrayOfGenre2LM_WS_GenreArray(const LM1__ArrayOfGenre* t, LM_WS_GenreArray* r);
    static void LM1__GenreRequest2LM_WS_Navigation(const LM1__GenreRequest* t, LM_WS_Navigation* r);
    static void LM1__GetGenreLabelResponse2LM_WS_GenreLabelResponse(
        const LM1__GetGenreLabelResponse* t, LM_WS_GenreLabelResponse* r);
    static void LM1__TitleListing2LM_WS_TitleListing(const LM1__TitleListing* t,
                                                     LM_WS_TitleListing* r);
    static void LM1__ArrayOfTitleListing2LM_WS_TitleListingArray(const LM1__ArrayOfTitleListing* t,
                                                                 LM_WS_TitleListingArray* r);
    static void LM1__GetTitlesResponse2LM_WS_TitlesResponse(const LM1__GetTitlesResponse* t,
                                                            LM_WS_TitlesResponse* r);
    static void LM1__ArrayOfGetTitlesResponse2LM_WS_TitlesResponseArray(
        const LM1__ArrayOfGetTitlesResponse* t, LM_WS_TitlesResponseArray* r);
    static void LM1__RecommendedTitlesResponse2LM_WS_RecommendedTitlesResponse(
        const LM1__RecommendedTitlesResponse* t, LM_WS_RecommendedTitlesResponse* r);
    static void LM1__TitleListingResponse2LM_WS_TitleListingResponse(
        const LM1__TitleListingResponse* t, LM_WS_TitleListingResponse* r);
    static void LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponseArray(
        const LM1__ArrayOfTitleListingResponse* t, LM_WS_TitleListingResponseArray* r);
    static void LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponses(
        const LM1__ArrayOfTitleListingResponse* t, LM_WS_TitleListingResponses* r);
    static void LM1__TvEpisode2LM_WS_TvEpisode(const LM1__TvEpisode* t, LM_WS_TvEpisode* r);
    static void LM1__ArrayOfTvEpisode2LM_WS_TvEpisodeArray(const LM1__ArrayOfTvEpisode* t,
                                                           LM_WS_TvEpisodeArray* r);
    static void LM1__TvEpisodeList2LM_WS_TvEpisodeList(const LM1__TvEpisodeList* t,
                                                       LM_WS_TvEpisodeList* r);
    static void LM1__TranslateRecboxExternalIDResponse2LM_WS_TranslateRecboxExternalIDResponse(
        const LM1__TranslatedRecboxExternalIdResponse* t,
        LM_WS_TranslateRecboxExternalIDResponse* r);
    static void LM1__TranslateSkuIdResponse2LM_WS_TranslateSkuIDResponse(
        const LM1__TranslateSkuIdResponse* t, LM_WS_TranslateSkuIDResponse* r);
    static void LM1__TitleListingPurchased2LM_WS_TitleListingPurchased(
        const LM1__TitleListingPurchased* t, LM_WS_TitleListingPurchased* r);
    static void LM1__ArrayOfTitleListingPurchased2LM_WS_TitleListingPurchasedArray(
        const LM1__ArrayOfTitleListingPurchased* t, LM_WS_TitleListingPurchasedArray* r);
    static void LM1__GetMyVideosResponse2LM_WS_MyVideosResponse(const LM1__GetMyVideosResponse* t,
                                                                LM_WS_MyVideosResponse* r);
    static void LM1__GetConfigResponse2LM_WS_ConfigResponse(const LM1__GetConfigResponse* t,
                                                            LM_WS_ConfigResponse* r);
    static void LM1__AuthorizeDeviceResponse2LM_WS_AuthorizeDeviceResponse(
        const LM1__AuthorizeDeviceResponse* t, LM_WS_AuthorizeDeviceResponse* r);
    static void LM1__PurchaseResponse2LM_WS_PurchaseResponse(const LM1__PurchaseResponse* t,
                                                             LM_WS_PurchaseResponse* r);
    static void LM1__GetWishlistItemsResponse2LM_WS_WishlistItemsResponse(
        const LM1__GetWishlistItemsResponse* t, LM_WS_WishlistItemsResponse* r);
    static void LM1__WishListActionResponse2LM_WS_StandardResponse(
        const LM1__WishListActionResponse* t, LM_WS_StandardResponse* r);
    static void LM1__CheckAdultVerificationEnabledResponse2LM_WS_StandardResponse(
        const LM1__CheckAdultVerificationEnabledResponse* t, LM_WS_StandardResponse* r);
    static void LM1__CheckRentalExpirationResponse2LM_WS_RentalExpirationResponse(
        const LM1__CheckRentalExpirationResponse* t, LM_WS_RentalExpirationResponse* r);
    static void LM1__CheckAdultVerificationPinResponse2LM_WS_AdultVerificationPinResponse(
        const LM1__CheckAdultVerificationPinResponse* t, LM_WS_AdultVerificationPinResponse* r);
    static void LM1__GiftCertificateResponse2LM_WS_GiftCertificateResponse(
        const LM1__GiftCertificateResponse* t, LM_WS_GiftCertificateResponse* r);
    static void LM1__GetEmailAddressResponse2LM_WS_EmailAddressResponse(
        const LM1__GetEmailAddressResponse* t, LM_WS_EmailAddressResponse* r);
    static void LM1__BillingInfoResponse2LM_WS_BillingInfoResponse(
        const LM1__BillingInfoResponse* t, LM_WS_BillingInfoResponse* r);
    static void LM1__PPCardBalanceResponse2LM_WS_PPCardBalanceResponse(
        const LM1__PPCardBalanceResponse* t, LM_WS_PPCardBalanceResponse* r);
    static void LM1__BillingInfoAndPPCBalanceResponse2LM_WS_BillingInfoAndPPCBalanceResponse(
        const LM1__BillingInfoAndPPCBalanceResponse* t, LM_WS_BillingInfoAndPPCBalanceResponse* r);
    static void LM1__SettingsPageInfo2LM_WS_SettingsPageInfo(const LM1__SettingsPageInfo* t,
                                                             LM_WS_SettingsPageInfo* r);
    static void LM1__CalcOrderTaxResponse2LM_WS_CalcOrderTaxResponse(
        const LM1__CalcOrderTaxResponse* t, LM_WS_CalcOrderTaxResponse* r);
    static void LM1__GetStreamingAssetLocationResponse2LM_WS_StreamingAssetLocationResponse(
        const LM1__GetStreamingAssetLocationResponse* t, LM_WS_StreamingAssetLocationResponse* r);
    static void LM1__THXMediaDirectorResponse2LM_WS_THXMediaDirectorResponse(
        const LM1__THXMediaDirectorResponse* t, LM_WS_THXMediaDirectorResponse* r);
    static void LM1__ArrayOfTitleListingPurchasedForPass2LM_WS_TitlesPurchasedForPassesResponse(
        const LM1__ArrayOfTitleListingPurchasedForPass* t,
        LM_WS_TitlesPurchasedForPassesResponse* r);
};

#endif  // LM_UTILITIES_H
