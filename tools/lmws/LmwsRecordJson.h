// JSON forms of the client records, for lmws.
//
// Fields carry the names the service gives them on the wire. Nested lists become arrays named
// by their wrapper element ("Titles", "Genres", "BonusAssets", "ConfigurationSet"); a record that
// is a list itself names its array after the element the service repeats ("GetTitlesResponse",
// "TitleListingResponse", "TitleListingPurchasedForPass"). Nested records are objects under
// their element's name ("BillingInfo", "PPCardBalance"). A title's page and a purchased title are
// flat objects, as on the wire: the title's fields first, then the rest. Numbers stay numbers
// (16-bit paging numbers too), decimals stay the service's texts, flags are booleans, and a text
// the record does not hold (a failed call) is "".
#ifndef LMWS_RECORD_JSON_H
#define LMWS_RECORD_JSON_H

#include "LM_WS_Records.h"
#include "LmwsOperations.h"

// {"Length": N, "Text": "..."}; Text is null when the record holds none.
LmwsJson LmwsToJson(const LM_WS_LengthAndText& r);
// {"File_DRMProvider", "File_AccessType", "File_FileProfile", "File_VideoFormat",
// "File_FileExtension"}.
LmwsJson LmwsToJson(const LM_WS_FileType& r);
LmwsJson LmwsToJson(const LM_WS_StandardResponse& r);
LmwsJson LmwsToJson(const LM_WS_Navigation& r);
LmwsJson LmwsToJson(const LM_WS_GenreLabelResponse& r);
LmwsJson LmwsToJson(const LM_WS_TitleListing& r);
LmwsJson LmwsToJson(const LM_WS_TitleListingResponse& r);
LmwsJson LmwsToJson(const LM_WS_TitleListingResponses& r);
LmwsJson LmwsToJson(const LM_WS_TitlesResponse& r);
LmwsJson LmwsToJson(const LM_WS_TitlesResponseArray& r);
LmwsJson LmwsToJson(const LM_WS_RecommendedTitlesResponse& r);
LmwsJson LmwsToJson(const LM_WS_TvEpisodeList& r);
LmwsJson LmwsToJson(const LM_WS_TranslateRecboxExternalIDResponse& r);
LmwsJson LmwsToJson(const LM_WS_TranslateSkuIDResponse& r);
LmwsJson LmwsToJson(const LM_WS_MyVideosResponse& r);
LmwsJson LmwsToJson(const LM_WS_ConfigResponse& r);
LmwsJson LmwsToJson(const LM_WS_AuthorizeDeviceResponse& r);
LmwsJson LmwsToJson(const LM_WS_PurchaseResponse& r);
LmwsJson LmwsToJson(const LM_WS_WishlistItemsResponse& r);
LmwsJson LmwsToJson(const LM_WS_RentalExpirationResponse& r);
LmwsJson LmwsToJson(const LM_WS_AdultVerificationPinResponse& r);
LmwsJson LmwsToJson(const LM_WS_GiftCertificateResponse& r);
LmwsJson LmwsToJson(const LM_WS_EmailAddressResponse& r);
LmwsJson LmwsToJson(const LM_WS_BillingInfoResponse& r);
LmwsJson LmwsToJson(const LM_WS_PPCardBalanceResponse& r);
LmwsJson LmwsToJson(const LM_WS_BillingInfoAndPPCBalanceResponse& r);
LmwsJson LmwsToJson(const LM_WS_SettingsPageInfo& r);
LmwsJson LmwsToJson(const LM_WS_CalcOrderTaxResponse& r);
LmwsJson LmwsToJson(const LM_WS_StreamingAssetLocationResponse& r);
LmwsJson LmwsToJson(const LM_WS_THXMediaDirectorResponse& r);
LmwsJson LmwsToJson(const LM_WS_TitlesPurchasedForPassesResponse& r);

// One output line (without the newline): {"operation": NAME, "status": N, "result": {...}}.
// Bytes that are not UTF-8 (a server's text, a command-line argument) become U+FFFD instead of
// failing the dump.
std::string LmwsOutputLine(const std::string& operation, LM_WS_Status status,
                           const LmwsJson& result);

#endif  // LMWS_RECORD_JSON_H
