#include "LmwsOperations.h"

#include <limits>
#include <type_traits>

#include "LmwsRecordJson.h"

namespace {

LmwsParam Int(const char* name) {
    return {name, LmwsArgKind::Int, std::numeric_limits<int32_t>::min(),
            std::numeric_limits<int32_t>::max()};
}
// An Int the function only accepts from min to max; anything else is a usage error.
LmwsParam IntIn(const char* name, int32_t min, int32_t max) {
    return {name, LmwsArgKind::Int, min, max};
}
LmwsParam UInt(const char* name) {
    return {name, LmwsArgKind::UInt, 0, 0};
}
LmwsParam Flag(const char* name) {
    return {name, LmwsArgKind::Flag, 0, 0};
}
LmwsParam Text(const char* name) {
    return {name, LmwsArgKind::Text, 0, 0};
}
LmwsParam IntList(const char* name) {
    return {name, LmwsArgKind::IntList, 0, 0};
}

// Two Int arguments from `first` on: the page wanted, then the titles per page.
LM_WS_Page Page(const LmwsArgs& args, size_t first) {
    return {args[first].number, args[first + 1].number};
}

// A list argument as the (pointer, count) pair the functions take.
int32_t Count(const std::vector<int32_t>& list) {
    return static_cast<int32_t>(list.size());
}

// A tagged record is released whatever the status; a record without a tag owns nothing.
void Release(void* record) {
    LM_WS_FreeResult(record);
}
void Release(LM_WS_FileType*) {}

// Makes `call` fill a fresh record of type R, converts what the record then holds (a failed call
// leaves it initialised, so this is safe) and releases it.
template <typename R, typename Call>
LM_WS_Status Fetch(LmwsJson& result, Call call) {
    R record{};
    LM_WS_Status status = call(&record);
    result = LmwsToJson(record);
    Release(&record);
    return status;
}

// Makes `call` write back one value of type T and gives it as {name: value}; a uint8_t is a flag
// and comes out as a boolean. What the function leaves in the value on failure is shown as is
// (0 when it writes nothing).
template <typename T, typename Call>
LM_WS_Status Value(LmwsJson& result, const char* name, Call call) {
    T value{};
    LM_WS_Status status = call(&value);
    result = LmwsJson::object();
    if constexpr (std::is_same_v<T, uint8_t>) {
        result[name] = value != 0;
    } else {
        result[name] = value;
    }
    return status;
}

// For functions that hand back nothing but their status: the result is {}.
LM_WS_Status StatusOnly(LmwsJson& result, LM_WS_Status status) {
    result = LmwsJson::object();
    return status;
}

// To add an operation: declare it in Public/, then add a row here (and the members of the record
// it brings, if new, in LMRecordFields.h).
std::vector<LmwsOperation> BuildTable() {
    return {
        // ---- Client ----
        {"getUserAgent",
         {},
         "the User-Agent the client sends",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(out,
                                               [&](auto* r) { return LM_WS_getUserAgent(h, r); });
         }},
        {"getLastCacheLoadTimeUTC",
         {},
         "when the service's catalogue was last loaded",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(
                 out, [&](auto* r) { return LM_WS_getLastCacheLoadTimeUTC(h, r); });
         }},
        {"getFileType",
         {},
         "the account's file type (sets the client's access type)",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_FileType>(out, [&](auto* r) { return LM_WS_getFileType(h, r); });
         }},

        // ---- Catalogue ----
        {"getNavigation",
         {},
         "the genre tree",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_Navigation>(out,
                                            [&](auto* r) { return LM_WS_getNavigation(h, r); });
         }},
        {"getGenreLabel",
         {Int("genreID")},
         "the label of a genre",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_GenreLabelResponse>(
                 out, [&](auto* r) { return LM_WS_getGenreLabel(h, a[0].number, r); });
         }},
        {"getTitles",
         {Int("genreID"), Int("page"), Int("itemsPerPage"), Int("purchaseType")},
         "a page of a genre's titles (purchaseType 0 rent, 1 buy, 2 any)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitlesResponse>(out, [&](auto* r) {
                 return LM_WS_getTitles(h, a[0].number, Page(a, 1), a[3].number, r);
             });
         }},
        {"getTitlesByGenreIDs",
         {IntList("genreIDs"), Int("page"), Int("itemsPerPage"), Int("purchaseType")},
         "the same page of each genre of a comma-separated list",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             const std::vector<int32_t>& ids = a[0].list;
             return Fetch<LM_WS_TitlesResponseArray>(out, [&](auto* r) {
                 return LM_WS_getTitlesByGenreIDs(h, ids.data(), Count(ids), Page(a, 1),
                                                  a[3].number, r);
             });
         }},
        {"getTitleListing",
         {Int("titleID")},
         "one title's page",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitleListingResponse>(
                 out, [&](auto* r) { return LM_WS_getTitleListing(h, a[0].number, r); });
         }},
        {"getTvEpisodeListing",
         {Int("episodeID")},
         "one TV episode's page",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitleListingResponse>(
                 out, [&](auto* r) { return LM_WS_getTvEpisodeListing(h, a[0].number, r); });
         }},
        {"getTvEpisodeListByTitleID",
         {Int("titleID")},
         "the episodes of a series",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TvEpisodeList>(
                 out, [&](auto* r) { return LM_WS_getTvEpisodeListByTitleID(h, a[0].number, r); });
         }},
        {"getAllTvEpisodeListings",
         {Int("titleID")},
         "every episode page of a series",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitleListingResponses>(
                 out, [&](auto* r) { return LM_WS_getAllTvEpisodeListings(h, a[0].number, r); });
         }},
        {"translateRecboxExternalID",
         {Text("externalID")},
         "the title of a recording box's external id",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TranslateRecboxExternalIDResponse>(out, [&](auto* r) {
                 return LM_WS_translateRecboxExternalID(h, a[0].text.c_str(), r);
             });
         }},
        {"translateSkuID",
         {Int("skuID")},
         "the title a product (SKU) belongs to",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TranslateSkuIDResponse>(
                 out, [&](auto* r) { return LM_WS_translateSkuID(h, a[0].number, r); });
         }},
        {"searchForTitle",
         {Int("page"), Int("itemsPerPage"), Int("purchaseType"), Int("titleType"), Text("query")},
         "a page of the titles whose names match (titleType 0 any, 1 TV, 2 movies)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitlesResponse>(out, [&](auto* r) {
                 return LM_WS_searchForTitle(h, Page(a, 0), a[2].number, a[3].number,
                                             a[4].text.c_str(), r);
             });
         }},
        {"searchForTitleDetail",
         {Int("page"), Int("itemsPerPage"), Int("purchaseType"), Int("titleType"), Text("query")},
         "as searchForTitle, matching the titles' details too",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitlesResponse>(out, [&](auto* r) {
                 return LM_WS_searchForTitleDetail(h, Page(a, 0), a[2].number, a[3].number,
                                                   a[4].text.c_str(), r);
             });
         }},
        {"shouldUpdateCache",
         {Text("utcTime")},
         "whether a cache loaded at utcTime is out of date",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             uint8_t shouldUpdate = 0;
             LM_WS_Status status = LM_WS_shouldUpdateCache(h, a[0].text.c_str(), &shouldUpdate);
             out = LmwsJson::object();
             out["shouldUpdateCacheResult"] = shouldUpdate != 0;
             return status;
         }},
        {"getRecommendedTitles",
         {Int("titleID")},
         "titles recommended beside a title",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_RecommendedTitlesResponse>(
                 out, [&](auto* r) { return LM_WS_getRecommendedTitles(h, a[0].number, r); });
         }},
        {"getMyVideos",
         {Int("page"), Int("itemsPerPage"), Int("purchaseType"), Int("titleType"),
          Int("watchStatus")},
         "a page of the account's bought and rented titles",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_MyVideosResponse>(out, [&](auto* r) {
                 return LM_WS_getMyVideos(h, Page(a, 0), a[2].number, a[3].number, a[4].number, r);
             });
         }},

        // ---- Configuration ----
        {"getConfig",
         {},
         "the service's configuration items (key and value pairs)",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_ConfigResponse>(out,
                                                [&](auto* r) { return LM_WS_getConfig(h, r); });
         }},

        // ---- Account, device, wishlist and purchases ----
        {"authorizeDevice",
         {Int("pin")},
         "authorises this device with the activation pin of the account's web page",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_AuthorizeDeviceResponse>(
                 out, [&](auto* r) { return LM_WS_authorizeDevice(h, a[0].number, r); });
         }},
        {"deactivateDevice",
         {},
         "deactivates this device",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_deactivateDevice(h, r); });
         }},
        {"checkAuthToken",
         {},
         "whether the client's token is valid: {\"valid\": flag}",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Value<uint8_t>(out, "valid",
                                   [&](auto* v) { return LM_WS_checkAuthToken(h, v); });
         }},
        {"doPurchaseSavedBilling",
         {Int("skuID"), Text("ipAddress"), Flag("usePrePaidFunds")},
         "buys a product with the saved billing details (the prepaid balance first when the flag "
         "is set)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_PurchaseResponse>(out, [&](auto* r) {
                 return LM_WS_doPurchaseSavedBilling(h, a[0].number, a[1].text.c_str(), a[2].flag,
                                                     r);
             });
         }},
        {"getWishlistItems",
         {Int("sortOrder"), Int("page"), Int("itemsPerPage"), Int("titleType")},
         "a page of the wishlist in a sort order (titleType 0 any, 1 TV, 2 movies)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_WishlistItemsResponse>(out, [&](auto* r) {
                 return LM_WS_getWishlistItems(h, a[0].number, Page(a, 1), a[3].number, r);
             });
         }},
        {"addItemToWishlist",
         {Int("titleID")},
         "adds a title to the wishlist",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_addItemToWishlist(h, a[0].number, r); });
         }},
        {"removeItemFromWishlist",
         {Int("titleID")},
         "removes a title from the wishlist",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_removeItemFromWishlist(h, a[0].number, r); });
         }},
        {"removeAllItemsFromWishlist",
         {},
         "empties the wishlist",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_removeAllItemsFromWishlist(h, r); });
         }},
        {"checkTitleInWishlist",
         {Int("titleID")},
         "whether a title is on the wishlist: {\"inWishlist\": flag}",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Value<uint8_t>(out, "inWishlist", [&](auto* v) {
                 return LM_WS_checkTitleInWishlist(h, a[0].number, v);
             });
         }},
        {"checkTitlesInWishlist",
         {IntList("titleIDs"), Int("titleType")},
         "whether each title is on the wishlist: {\"titles\": [{\"titleID\", \"inWishlist\"}...]}",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             const std::vector<int32_t>& ids = a[0].list;
             std::vector<uint8_t> flags(ids.size(), 0);
             LM_WS_Status status =
                 LM_WS_checkTitlesInWishlist(h, ids.data(), Count(ids), a[1].number, flags.data());
             LmwsJson titles = LmwsJson::array();
             for (size_t i = 0; i < ids.size(); ++i) {
                 LmwsJson title;
                 title["titleID"] = ids[i];
                 title["inWishlist"] = flags[i] != 0;
                 titles.push_back(title);
             }
             out = LmwsJson::object();
             out["titles"] = titles;
             return status;
         }},
        {"checkForPurchasedTitle",
         {Int("titleID")},
         "whether the account bought or rented a title: {\"purchased\": flag}",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Value<uint8_t>(out, "purchased", [&](auto* v) {
                 return LM_WS_checkForPurchasedTitle(h, a[0].number, v);
             });
         }},
        {"checkForPurchasedSku",
         {Int("skuID")},
         "whether the account bought or rented a product: {\"purchased\": flag}",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Value<uint8_t>(out, "purchased", [&](auto* v) {
                 return LM_WS_checkForPurchasedSku(h, a[0].number, v);
             });
         }},
        {"checkRentalExpiration",
         {Int("passID")},
         "whether a rental's expiry should be shown, and the hours left",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_RentalExpirationResponse>(
                 out, [&](auto* r) { return LM_WS_checkRentalExpiration(h, a[0].number, r); });
         }},
        {"checkAdultVerificationEnabled",
         {},
         "whether adult verification is enabled (response code 0 when it is)",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_checkAdultVerificationEnabled(h, r); });
         }},
        {"checkAdultVerificationPin",
         {Int("pin")},
         "checks the adult PIN",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_AdultVerificationPinResponse>(
                 out, [&](auto* r) { return LM_WS_checkAdultVerificationPin(h, a[0].number, r); });
         }},
        {"assignGiftCertificateToUser",
         {Text("code")},
         "credits a gift certificate to the account",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_GiftCertificateResponse>(out, [&](auto* r) {
                 return LM_WS_assignGiftCertificateToUser(h, a[0].text.c_str(), r);
             });
         }},
        {"getEmailAddress",
         {},
         "the account's e-mail address",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_EmailAddressResponse>(
                 out, [&](auto* r) { return LM_WS_getEmailAddress(h, r); });
         }},
        {"getBillingInfo",
         {},
         "the account's saved card",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_BillingInfoResponse>(
                 out, [&](auto* r) { return LM_WS_getBillingInfo(h, r); });
         }},
        {"getSettingsPageInfo",
         {},
         "what the settings page shows",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_SettingsPageInfo>(
                 out, [&](auto* r) { return LM_WS_getSettingsPageInfo(h, r); });
         }},
        {"getPrePaidCardBalance",
         {},
         "the prepaid balance",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_PPCardBalanceResponse>(
                 out, [&](auto* r) { return LM_WS_getPrePaidCardBalance(h, r); });
         }},
        {"getCountryID",
         {},
         "the account's country: {\"countryID\": N}",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Value<int32_t>(out, "countryID",
                                   [&](auto* v) { return LM_WS_getCountryID(h, v); });
         }},
        {"setAudioDefaultProperty",
         {Int("audioSetting")},
         "sets the account's default audio setting",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_setAudioDefaultProperty(h, a[0].number, r); });
         }},
        {"getAudioDefaultProperty",
         {},
         "the account's default audio setting: {\"audioSetting\": N}",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Value<int32_t>(out, "audioSetting",
                                   [&](auto* v) { return LM_WS_getAudioDefaultProperty(h, v); });
         }},
        {"calcOrderTax",
         {Int("skuID")},
         "the tax of buying a product",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_CalcOrderTaxResponse>(
                 out, [&](auto* r) { return LM_WS_calcOrderTax(h, a[0].number, r); });
         }},

        // ---- Streaming ----
        {"getStreamingAssetLocation",
         {Int("passID"), Int("fileProfile")},
         "where to stream a pass's title, and where its playback last stopped",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StreamingAssetLocationResponse>(out, [&](auto* r) {
                 return LM_WS_getStreamingAssetLocation(h, a[0].number, a[1].number, r);
             });
         }},
        {"getStreamingBonusAssetLocation",
         {Int("bonusAssetID")},
         "where to stream a bonus asset",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StreamingAssetLocationResponse>(out, [&](auto* r) {
                 return LM_WS_getStreamingBonusAssetLocation(h, a[0].number, r);
             });
         }},
        {"loadLastStreamingAssetLocation",
         {Int("passID"), Int("fileProfile")},
         "as getStreamingAssetLocation, resuming the last playback",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StreamingAssetLocationResponse>(out, [&](auto* r) {
                 return LM_WS_loadLastStreamingAssetLocation(h, a[0].number, a[1].number, r);
             });
         }},
        {"manageStreamingInstanceStatus",
         {Text("streamID"), Int("status"), Int("stopTimeSeconds")},
         "reports a stream's state (0 play, 1 stopped, 2 paused, 3 resumed, 4 error) and position",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(out, [&](auto* r) {
                 return LM_WS_manageStreamingInstanceStatus(h, a[0].text.c_str(), a[1].number,
                                                            a[2].number, r);
             });
         }},
        {"getTHXMediaDirector",
         {Int("passID"), Int("fileProfile"), Int("audioSetting")},
         "media-director data of a pass's title",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_THXMediaDirectorResponse>(out, [&](auto* r) {
                 return LM_WS_getTHXMediaDirector(h, a[0].number, a[1].number, a[2].number, r);
             });
         }},
        {"getTHXMediaDirectorBonusAsset",
         {Int("bonusAssetID"), Int("fileProfile"), Int("bonusAssetType")},
         "media-director data of a bonus asset",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_THXMediaDirectorResponse>(out, [&](auto* r) {
                 return LM_WS_getTHXMediaDirectorBonusAsset(h, a[0].number, a[1].number,
                                                            a[2].number, r);
             });
         }},
        {"getTitleListingsPurchasedForPasses",
         {IntList("passIDs")},
         "the titles bought through each pass of a comma-separated list",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             const std::vector<int32_t>& ids = a[0].list;
             return Fetch<LM_WS_TitlesPurchasedForPassesResponse>(out, [&](auto* r) {
                 return LM_WS_getTitleListingsPurchasedForPasses(h, ids.data(), Count(ids), r);
             });
         }},
        {"getBillingInfoAndPPCBalance",
         {},
         "the saved card and the prepaid balance in one call",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_BillingInfoAndPPCBalanceResponse>(
                 out, [&](auto* r) { return LM_WS_getBillingInfoAndPPCBalance(h, r); });
         }},
        {"removeAllMyPurchases",
         {Text("password")},
         "removes every purchase of the account (an operator's test service)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(
                 out, [&](auto* r) { return LM_WS_removeAllMyPurchases(h, a[0].text.c_str(), r); });
         }},
        {"ReturnError",
         {},
         "the service's error answer (a test of the error path)",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_StandardResponse>(out,
                                                  [&](auto* r) { return LM_WS_ReturnError(h, r); });
         }},

        // ---- Network probes and device helpers ----
        {"checkBandwidth",
         {},
         "the download rate from the service's bandwidth-check file: {\"bitsPerSecond\": N}",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Value<uint32_t>(out, "bitsPerSecond",
                                    [&](auto* v) { return LM_WS_checkBandwidth(h, v); });
         }},
        {"getDeviceTime",
         {},
         "the service's clock in seconds since 1970 UTC: {\"utcSeconds\": N}",
         [](LM_WS_Handle*, const LmwsArgs&, LmwsJson& out) {
             return Value<int32_t>(out, "utcSeconds",
                                   [&](auto* v) { return LM_WS_getDeviceTime(v); });
         }},
        {"md5sum",
         {Text("path")},
         "the system's md5sum output for a file",
         [](LM_WS_Handle*, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(
                 out, [&](auto* r) { return LM_WS_md5sum(a[0].text.c_str(), r); });
         }},
        {"copyFile",
         {Text("source"), Text("destination")},
         "copies a file unless the destination exists already: {}",
         [](LM_WS_Handle*, const LmwsArgs& a, LmwsJson& out) {
             return StatusOnly(out, LM_WS_copyFile(a[0].text.c_str(), a[1].text.c_str()));
         }},
        {"deleteFile",
         {Text("path")},
         "deletes a file when it exists: {}",
         [](LM_WS_Handle*, const LmwsArgs& a, LmwsJson& out) {
             return StatusOnly(out, LM_WS_deleteFile(a[0].text.c_str()));
         }},
        {"getLocalIPAddr",
         {},
         "the IPv4 address of the first network interface that is up, not the loopback",
         [](LM_WS_Handle*, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(out,
                                               [&](auto* r) { return LM_WS_getLocalIPAddr(r); });
         }},
        {"updateLocalCache",
         {UInt("mask")},
         "refreshes the cache (mask bits: 1 catalogue, 2 box art, 4 user data): {}",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return StatusOnly(out, LM_WS_updateLocalCache(h, a[0].unsignedNumber));
         }},
        {"getBoxArtImage",
         {IntIn("size", LM_WS_BoxArt95, LM_WS_BoxArt321), Text("prefix")},
         "a title's box art file, or its address when there is no file; size picks the class 95, "
         "175, 65, 77, 102, 126, 135, 137, 153, 177, 203, 269 or 321, in that order from 0",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(out, [&](auto* r) {
                 return LM_WS_getBoxArtImage(h, static_cast<LM_WS_BoxArtSize>(a[0].number),
                                             a[1].text.c_str(), r);
             });
         }},
    };
}

}  // namespace

const std::vector<LmwsOperation>& LmwsOperationTable() {
    static const std::vector<LmwsOperation> table = BuildTable();
    return table;
}

const LmwsOperation* LmwsFindOperation(const std::string& name) {
    for (const LmwsOperation& op : LmwsOperationTable()) {
        if (name == op.name) {
            return &op;
        }
    }
    return nullptr;
}
