/* Client records of the service operations.
 *
 * Every answer of the service is copied into one of these plain C structs so that callers never
 * see the SOAP toolkit's objects and the toolkit's memory can be released as soon as a call ends.
 *
 * Layout rules shared by all records:
 * - A record starts with `Type`, a pointer to a heap 32-bit tag naming its kind (LM_WS_ResultType).
 *   The tag lets LM_WS_FreeResult release any record without knowing its C type. Result records
 *   (those an operation hands back) continue with the service's ResponseCode and ResponseMessage,
 *   then the payload members in the order the service sends them.
 * - Texts are heap copies (malloc) and never null once a record has been filled: an absent text is
 *   a one-byte "". Only the length-and-text record may hold a null text (an unreadable file).
 * - Numbers keep their width on the wire: 32-bit ids, 16-bit paging numbers, enumerations as
 *   int32_t. Flags are uint8_t holding 0 or 1.
 * - A list the release routine frees on its own is a tagged array (Type, Count, Array). Lists that
 *   only ever live inside a title (bonus assets, products, file profiles, audio files) are plain
 *   Count/Array pairs owned by that title.
 *
 * A record is owned by its caller: initialise it with LM_WS_InitResult (the operations do this
 * first, so that even a failed call leaves a record that can be released) and release it with
 * LM_WS_FreeResult.
 */
#ifndef LM_WS_RECORDS_H
#define LM_WS_RECORDS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Kinds of record, the value of the heap tag each record points to. */
typedef enum LM_WS_ResultType {
    LM_WS_ResultLengthAndText = 2,              /* LM_WS_LengthAndText */
    LM_WS_ResultStandardResponse = 3,           /* LM_WS_StandardResponse */
    LM_WS_ResultGenreArray = 4,                 /* LM_WS_GenreArray, inside a navigation */
    LM_WS_ResultNavigation = 5,                 /* LM_WS_Navigation */
    LM_WS_ResultGenreLabel = 6,                 /* LM_WS_GenreLabelResponse */
    LM_WS_ResultTitleListing = 8,               /* LM_WS_TitleListing, one title */
    LM_WS_ResultTitleListingResponse = 13,      /* LM_WS_TitleListingResponse, one title's page */
    LM_WS_ResultTitleListingArray = 15,         /* LM_WS_TitleListingArray */
    LM_WS_ResultTitleListingResponseArray = 16, /* LM_WS_TitleListingResponseArray */
    LM_WS_ResultTitleListingResponses = 17,     /* LM_WS_TitleListingResponses: all TV episodes */
    LM_WS_ResultTitles = 18,                    /* LM_WS_TitlesResponse: a page of titles */
    LM_WS_ResultTitlesArray = 19,     /* LM_WS_TitlesResponseArray: pages of many genres */
    LM_WS_ResultTvEpisode = 20,       /* LM_WS_TvEpisode */
    LM_WS_ResultTvEpisodeArray = 21,  /* LM_WS_TvEpisodeArray */
    LM_WS_ResultTvEpisodeList = 22,   /* LM_WS_TvEpisodeList */
    LM_WS_ResultAuthorizeDevice = 23, /* LM_WS_AuthorizeDeviceResponse */
    LM_WS_ResultTitleListingPurchasedArray = 25, /* LM_WS_TitleListingPurchasedArray */
    LM_WS_ResultMyVideos = 26,                   /* LM_WS_MyVideosResponse */
    LM_WS_ResultAdultVerificationPin = 30,       /* LM_WS_AdultVerificationPinResponse */
    LM_WS_ResultStreamingAssetLocation = 32,     /* LM_WS_StreamingAssetLocationResponse */
    LM_WS_ResultBillingInfoAndPPCBalance = 36,   /* LM_WS_BillingInfoAndPPCBalanceResponse */
    LM_WS_ResultRecommendedTitles = 40,          /* LM_WS_RecommendedTitlesResponse */
    LM_WS_ResultPurchase = 41,                   /* LM_WS_PurchaseResponse */
    LM_WS_ResultWishlistItems = 42,              /* LM_WS_WishlistItemsResponse */
    LM_WS_ResultRentalExpiration = 43,           /* LM_WS_RentalExpirationResponse */
    LM_WS_ResultGiftCertificate = 44,            /* LM_WS_GiftCertificateResponse */
    LM_WS_ResultEmailAddress = 45,               /* LM_WS_EmailAddressResponse */
    LM_WS_ResultBillingInfo = 46,                /* LM_WS_BillingInfoResponse */
    LM_WS_ResultPPCardBalance = 47,              /* LM_WS_PPCardBalanceResponse */
    LM_WS_ResultSettingsPageInfo = 48,           /* LM_WS_SettingsPageInfo */
    LM_WS_ResultCalcOrderTax = 49,               /* LM_WS_CalcOrderTaxResponse */
    LM_WS_ResultTHXMediaDirector = 50,           /* LM_WS_THXMediaDirectorResponse */
    LM_WS_ResultTitlesPurchasedForPasses = 51,   /* LM_WS_TitlesPurchasedForPassesResponse */
    LM_WS_ResultTranslateRecboxExternalID = 53,  /* LM_WS_TranslateRecboxExternalIDResponse */
    LM_WS_ResultTranslateSkuID = 54,             /* LM_WS_TranslateSkuIDResponse */
    LM_WS_ResultConfig = 60                      /* LM_WS_ConfigResponse */
} LM_WS_ResultType;

/* Length and text (tag 2): a text answer, or the bytes of a file read whole. `Text` is a heap
 * copy terminated by a NUL that `Length` does not count; for a file that is empty or could not be
 * read completely, Length is 0 and Text is null. */
typedef struct LM_WS_LengthAndText {
    int32_t* Type;
    uint32_t Length;
    char* Text;
} LM_WS_LengthAndText;

/* Response code and message only (tag 3). */
typedef struct LM_WS_StandardResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
} LM_WS_StandardResponse;

/* ---- Navigation ---- */

typedef struct LM_WS_Genre {
    int32_t ID;
    char* Name;
    uint8_t Visible;
    int32_t ParentId;
} LM_WS_Genre;

typedef struct LM_WS_GenreArray {
    int32_t* Type; /* 4 */
    int32_t Count;
    LM_WS_Genre* Array;
} LM_WS_GenreArray;

/* The navigation tree (tag 5). The service sends no status with it: ResponseCode stays 0 and
 * ResponseMessage "". */
typedef struct LM_WS_Navigation {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_GenreArray Genres;
} LM_WS_Navigation;

/* A genre's label (tag 6). */
typedef struct LM_WS_GenreLabelResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* Label;
    char* LabelMessage;
} LM_WS_GenreLabelResponse;

/* ---- One title ---- */

typedef struct LM_WS_BonusAsset {
    int32_t BonusAssetID;
    int32_t Profile;   /* file profile */
    int32_t BonusType; /* bonus asset type */
} LM_WS_BonusAsset;

typedef struct LM_WS_BonusAssetArray {
    int32_t Count;
    LM_WS_BonusAsset* Array;
} LM_WS_BonusAssetArray;

typedef struct LM_WS_FileProfileArray {
    int32_t Count;
    int32_t* Array; /* file profiles */
} LM_WS_FileProfileArray;

typedef struct LM_WS_AudioFile {
    int32_t AssetAudioID;
    char* FileLocation;
    uint8_t ContainsVideo;
    int32_t AudioAssetProfile; /* audio setting */
} LM_WS_AudioFile;

typedef struct LM_WS_AudioFileArray {
    int32_t Count;
    LM_WS_AudioFile* Array;
} LM_WS_AudioFileArray;

typedef struct LM_WS_ProductListing {
    int32_t SkuID;
    int32_t PurchaseType;
    char* Price; /* decimal, kept as the service's text */
    LM_WS_FileProfileArray AvailableAssets;
    /* The expiry text exactly as the service sent it, or "" when it sent none. The service
     * writes "YYYY/MM/DD hh:mm:ss", but the client neither checks nor converts it. */
    char* ExpireDate;
    LM_WS_AudioFileArray AvailableAudioProfiles;
    int32_t RentalPeriod;
} LM_WS_ProductListing;

typedef struct LM_WS_ProductListingArray {
    int32_t Count;
    LM_WS_ProductListing* Array;
} LM_WS_ProductListingArray;

/* One title (tag 8): the element of every title list, and the common part of a title's page and
 * of a purchased title. */
typedef struct LM_WS_TitleListing {
    int32_t* Type;
    int32_t TitleID;
    char* TitleName;
    char* BoxArtPrefix;
    int16_t TitlePosition;
    int32_t EpisodeNumber;
    LM_WS_BonusAssetArray BonusAssets;
    uint8_t IsTvListing;
    char* MPAARating;
    LM_WS_ProductListingArray AvailableProducts;
    uint8_t IsTHXMediaDirectorEnabled;
    uint8_t IsTHXMediaDirectorEnabledForTrailer;
    char* CHVRSRating;
    char* LoyaltyPointsForBuy;
    char* LoyaltyPointsForRent;
} LM_WS_TitleListing;

typedef struct LM_WS_TitleListingArray {
    int32_t* Type; /* 15 */
    int32_t Count;
    LM_WS_TitleListing* Array;
} LM_WS_TitleListingArray;

/* A title's own page (tag 13): the details, then the title itself. */
typedef struct LM_WS_TitleListingResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* Synopsys; /* the service's spelling */
    int32_t UserRating;
    char* Directors;
    char* Actors;
    char* Writers;
    char* Producers;
    char* Copyright;
    char* RunTime;
    uint8_t IsAvailInUserWishList;
    char* RatingReason;
    LM_WS_TitleListing TitleListing;
} LM_WS_TitleListingResponse;

typedef struct LM_WS_TitleListingResponseArray {
    int32_t* Type; /* 16 */
    int32_t Count;
    LM_WS_TitleListingResponse* Array;
} LM_WS_TitleListingResponseArray;

/* Every episode page of a series (tag 17). The service sends the list alone: ResponseCode stays 0
 * and ResponseMessage "". */
typedef struct LM_WS_TitleListingResponses {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_TitleListingResponseArray TitleListingResponses;
} LM_WS_TitleListingResponses;

/* ---- Title lists ---- */

/* A page of titles of one genre, or of a search (tag 18). Without titles in the answer,
 * Titles.Count is 0 and Titles.Array null; the paging numbers are filled all the same. */
typedef struct LM_WS_TitlesResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t GenreID;
    int16_t CurrentPageNumber;
    int16_t ItemsPerPage;
    int16_t TotalPages;
    int16_t TotalItems;
    LM_WS_TitleListingArray Titles;
} LM_WS_TitlesResponse;

/* One page per genre asked for (tag 19); the service sends the list alone: ResponseCode stays 0
 * and ResponseMessage "". Each element is a full titles record with its own tags. */
typedef struct LM_WS_TitlesResponseArray {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t Count;
    LM_WS_TitlesResponse* Array;
} LM_WS_TitlesResponseArray;

/* Titles recommended beside one title (tag 40). */
typedef struct LM_WS_RecommendedTitlesResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_TitleListingArray Titles;
} LM_WS_RecommendedTitlesResponse;

/* ---- TV episodes ---- */

typedef struct LM_WS_TvEpisode {
    int32_t* Type; /* 20 */
    int32_t EpisodeID;
    char* EpisodeName;
    int32_t EpisodeNumber;
} LM_WS_TvEpisode;

typedef struct LM_WS_TvEpisodeArray {
    int32_t* Type; /* 21 */
    int32_t Count;
    LM_WS_TvEpisode* Array;
} LM_WS_TvEpisodeArray;

/* The episodes of a series (tag 22). */
typedef struct LM_WS_TvEpisodeList {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_TvEpisodeArray Episodes;
} LM_WS_TvEpisodeList;

/* ---- Translations ---- */

/* Tag 53. */
typedef struct LM_WS_TranslateRecboxExternalIDResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* RecboxExternalId;
    int32_t TitleId;
} LM_WS_TranslateRecboxExternalIDResponse;

/* Tag 54. */
typedef struct LM_WS_TranslateSkuIDResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t TitleId;
} LM_WS_TranslateSkuIDResponse;

/* ---- Purchases ---- */

/* A title the account bought or rented: the title, then the purchase. */
typedef struct LM_WS_TitleListingPurchased {
    LM_WS_TitleListing TitleListing;
    int32_t EpisodeID;
    int32_t TvListingTitleID;
    int32_t PurchaseType;
    int32_t Status;     /* watch status */
    char* RentalPeriod; /* the service sends it as text */
    int32_t PassID;
    int32_t PlayStatus;
    int32_t StartTimeSeconds;
} LM_WS_TitleListingPurchased;

typedef struct LM_WS_TitleListingPurchasedArray {
    int32_t* Type; /* 25 */
    int32_t Count;
    LM_WS_TitleListingPurchased* Array;
} LM_WS_TitleListingPurchasedArray;

/* A page of the account's videos (tag 26). */
typedef struct LM_WS_MyVideosResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_TitleListingPurchasedArray Titles;
    int16_t CurrentPageNumber;
    int16_t ItemsPerPage;
    int16_t TotalPages;
    int16_t TotalItems;
} LM_WS_MyVideosResponse;

/* ---- Account and device ---- */

/* Device authorisation (tag 23): the token the client sends from now on, and the account. */
typedef struct LM_WS_AuthorizeDeviceResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* AuthToken;
    char* EmailAddress;
    char* DeviceID;
    char* DeviceName;
} LM_WS_AuthorizeDeviceResponse;

/* A purchase with the saved billing details (tag 41). */
typedef struct LM_WS_PurchaseResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t PassID;
    int32_t TransactionId;
    char* TransactionAuthNum;
} LM_WS_PurchaseResponse;

/* A page of the wishlist (tag 42). */
typedef struct LM_WS_WishlistItemsResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_TitleListingPurchasedArray Titles;
    int16_t CurrentPageNumber;
    int16_t ItemsPerPage;
    int16_t TotalPages;
    int16_t TotalItems;
    int32_t SortOrder;
} LM_WS_WishlistItemsResponse;

/* Whether a rental's expiry should be shown, and the hours left (tag 43). */
typedef struct LM_WS_RentalExpirationResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    uint8_t ShouldDisplay;
    int32_t HoursRemaining;
} LM_WS_RentalExpirationResponse;

/* The adult PIN check (tag 30). */
typedef struct LM_WS_AdultVerificationPinResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    uint8_t IsPinVerified;
} LM_WS_AdultVerificationPinResponse;

/* A gift certificate credited to the account: the new balance (tag 44). */
typedef struct LM_WS_GiftCertificateResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t Balance;
} LM_WS_GiftCertificateResponse;

/* Tag 45. */
typedef struct LM_WS_EmailAddressResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* EmailAddress;
} LM_WS_EmailAddressResponse;

/* The saved card (tag 46). */
typedef struct LM_WS_BillingInfoResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* CCLastFour;
    int32_t CCTypeId;
    char* CCType;
} LM_WS_BillingInfoResponse;

/* The prepaid balance (tag 47). */
typedef struct LM_WS_PPCardBalanceResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t Balance;
} LM_WS_PPCardBalanceResponse;

/* Both of the above in one answer (tag 36). The service sends no status of its own: ResponseCode
 * is the first non-zero code of the two parts, ResponseMessage that part's message. */
typedef struct LM_WS_BillingInfoAndPPCBalanceResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    LM_WS_BillingInfoResponse BillingInfo;
    LM_WS_PPCardBalanceResponse PPCardBalance;
} LM_WS_BillingInfoAndPPCBalanceResponse;

/* What the settings page shows (tag 48). */
typedef struct LM_WS_SettingsPageInfo {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* Account;
    char* DeviceID;
    char* DeviceName;
} LM_WS_SettingsPageInfo;

/* The tax of an order (tag 49); amounts are the service's decimal texts. */
typedef struct LM_WS_CalcOrderTaxResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* SubTotal;
    char* TotalPrice;
    char* Tax;
} LM_WS_CalcOrderTaxResponse;

/* ---- Streaming ---- */

/* Where to stream a title or bonus asset from, and where its last playback stopped (tag 32). */
typedef struct LM_WS_StreamingAssetLocationResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* StreamingAssetLocation;
    int32_t AssetID;
    char* StreamID;
    char* DRMServerURL;
    char* DRMACKServerURL;
    int32_t Status; /* play status */
    int32_t StartTimeSeconds;
    char* HeartbeatURL;
    int32_t HeartbeatPollInSeconds;
} LM_WS_StreamingAssetLocationResponse;

/* Media-director data of a title or bonus asset (tag 50). */
typedef struct LM_WS_THXMediaDirectorResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    char* LongFormat;
    char* ShortFormat;
} LM_WS_THXMediaDirectorResponse;

/* A title bought through a pass, with the status of its own lookup. */
typedef struct LM_WS_TitleListingPurchasedForPass {
    LM_WS_TitleListingPurchased Purchased;
    int32_t ResponseCode;
    char* ResponseMessage;
} LM_WS_TitleListingPurchasedForPass;

/* The titles of a list of passes (tag 51); the service sends the list alone: ResponseCode stays
 * 0 and ResponseMessage "". */
typedef struct LM_WS_TitlesPurchasedForPassesResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t Count;
    LM_WS_TitleListingPurchasedForPass* Array;
} LM_WS_TitlesPurchasedForPassesResponse;

/* ---- Configuration ---- */

typedef struct LM_WS_ConfigurationItem {
    char* Key;
    char* Value;
} LM_WS_ConfigurationItem;

/* The service's configuration (tag 60): key and value pairs in the service's order. */
typedef struct LM_WS_ConfigResponse {
    int32_t* Type;
    int32_t ResponseCode;
    char* ResponseMessage;
    int32_t Count;
    LM_WS_ConfigurationItem* Array;
} LM_WS_ConfigResponse;

/* ---- File type ----
 *
 * The file type of an account (LM_WS_getFileType). It owns nothing and carries no tag: the
 * caller keeps it by value and never passes it to LM_WS_InitResult or LM_WS_FreeResult. The
 * members hold the service's enumeration values as they are. */
typedef struct LM_WS_FileType {
    int32_t DRMProvider;
    int32_t AccessType; /* 1 download, 2 stream, 0 unknown */
    int32_t FileProfile;
    int32_t VideoFormat;
    int32_t FileExtension;
} LM_WS_FileType;
/* ---- end of file type ---- */

/* Clears `record` and allocates its tag and the tag of its tagged array, if it has one, so that
 * the record can be released whatever happens next. `record` must point to the struct that
 * `type` names; anything it held before is overwritten, not released. */
void LM_WS_InitResult(void* record, LM_WS_ResultType type);

/* Releases everything `record` owns (texts, nested arrays and their elements, the tags) and
 * clears it, so the tag pointer is null afterwards. A null record, or one whose tag pointer is
 * null (never initialised with a tag, or already released), is left alone. */
void LM_WS_FreeResult(void* record);

#ifdef __cplusplus
}
#endif

#endif /* LM_WS_RECORDS_H */
