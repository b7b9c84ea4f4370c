#include "LMResultConverter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>

using ae::stagecraft::ASContext;
using ae::stagecraft::ASField;
using ae::stagecraft::ASObject;
using ae::stagecraft::ASShape;
using ae::stagecraft::ASValue;

namespace {

// Owns one value handle and releases it when it goes.
class Held {
public:
    Held() = default;
    explicit Held(ASValue* value) : m_Value(value) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { Reset(nullptr); }

    void Reset(ASValue* value) {
        if (m_Value != nullptr) {
            m_Value->Release();
        }
        m_Value = value;
    }
    ASValue* Get() const { return m_Value; }
    ASValue* Take() { return std::exchange(m_Value, nullptr); }
    explicit operator bool() const { return m_Value != nullptr; }

private:
    ASValue* m_Value = nullptr;
};

// ---- Property names ----
//
// One table per kind of object; the kernel prepares each table once and keeps it by address, so
// they are static and never change. Objects that extend another repeat its names through the
// macros, so the shared part is spelled once.

#define LM_STATUS_NAMES "ResponseCode", "ResponseMessage"

#define LM_TITLE_NAMES                                                                             \
    "TitleID", "TitleName", "BoxArtPrefix", "TitlePosition", "EpisodeNumber", "CHVRSRating",       \
        "LoyaltyPointsForBuy", "LoyaltyPointsForRent", "BonusAssets", "IsTvListing", "MPAARating", \
        "IsTHXMediaDirectorEnabled", "IsTHXMediaDirectorEnabledForTrailer", "AvailableProducts"

#define LM_PRODUCT_NAMES \
    "SkuID", "PurchaseType", "Price", "RentalPeriod", "AvailableAssets", "AvailableAudioProfiles"

#define LM_PAGING_NAMES "CurrentPageNumber", "ItemsPerPage", "TotalPages", "TotalItems"

const char* const kTitleNames[] = {LM_TITLE_NAMES};
constexpr uint32_t kTitleCount = sizeof kTitleNames / sizeof kTitleNames[0];

const char* const kDetailNames[] = {LM_STATUS_NAMES, "Synopsis",     "UserRating",  "Directors",
                                    "Actors",        "Writers",      "Producers",   "Copyright",
                                    "RunTime",       "RatingReason", LM_TITLE_NAMES};
constexpr uint32_t kDetailCount = sizeof kDetailNames / sizeof kDetailNames[0];
constexpr uint32_t kDetailOwnCount = kDetailCount - kTitleCount;
static_assert(kDetailOwnCount == 11, "TitleDetail fills the detail's own fields by position");

const char* const kPurchasedNames[] = {LM_TITLE_NAMES, "EpisodeID",  "TvListingTitleID",
                                       "PurchaseType", "Status",     "RentalPeriod",
                                       "PassID",       "PlayStatus", "StartTimeSeconds"};
constexpr uint32_t kPurchasedCount = sizeof kPurchasedNames / sizeof kPurchasedNames[0];

const char* const kBonusAssetNames[] = {"BonusAssetID", "Profile", "BonusType"};
const char* const kProductNames[] = {LM_PRODUCT_NAMES};
const char* const kExpiringProductNames[] = {LM_PRODUCT_NAMES, "ExpireDate"};
const char* const kFileProfileNames[] = {"FileProfile"};
const char* const kAudioNames[] = {"AssetAudioID", "FileLocation", "ContainsVideo",
                                   "AudioAssetProfile"};
const char* const kGenreNames[] = {"ID", "Name", "Visible", "ParentID"};
const char* const kGenreTitlesNames[] = {"GenreID", LM_PAGING_NAMES, LM_STATUS_NAMES, "Titles"};
const char* const kPurchasesNames[] = {LM_PAGING_NAMES, LM_STATUS_NAMES, "Titles"};
const char* const kSortedPurchasesNames[] = {LM_PAGING_NAMES, LM_STATUS_NAMES, "Titles",
                                             "SortOrder"};
const char* const kAuthorizeNames[] = {"AuthToken", "EmailAddress", "IsAdultVerificationEnabled",
                                       "DeviceID",  "DeviceName",   LM_STATUS_NAMES};
const char* const kStatusNames[] = {LM_STATUS_NAMES};
const char* const kTitlesNames[] = {LM_STATUS_NAMES, "Titles"};
const char* const kTitleIDNames[] = {LM_STATUS_NAMES, "TitleID"};
const char* const kEpisodeListNames[] = {LM_STATUS_NAMES, "Episodes"};
const char* const kEpisodeNames[] = {"EpisodeID", "EpisodeName", "EpisodeNumber"};
const char* const kListingsNames[] = {"TitleListingResponse"};
const char* const kPurchaseNames[] = {"PassID", "TransactionID", "TransactionAuthNum",
                                      LM_STATUS_NAMES};
const char* const kAdultEnabledNames[] = {"IsAdultVerificationEnabled", LM_STATUS_NAMES};
const char* const kPinNames[] = {"IsPinVerified", LM_STATUS_NAMES};
const char* const kBalanceNames[] = {"Balance", LM_STATUS_NAMES};
const char* const kRentalNames[] = {"ShouldDisplay", "HoursRemaining", LM_STATUS_NAMES};
const char* const kStreamingNames[] = {
    "StreamingAssetLocation", "AssetID",      "StreamID",         "DRMServerURL",
    "DRMACKServerURL",        "Status",       "StartTimeSeconds", "HeartbeatURL",
    "HeartbeatPollInSeconds", LM_STATUS_NAMES};
const char* const kEmailNames[] = {"EmailAddress", LM_STATUS_NAMES};
const char* const kBillingNames[] = {"CCLastFour", "CCTypeID", "CCType", LM_STATUS_NAMES};
const char* const kConfigNames[] = {LM_STATUS_NAMES, "ConfigurationItem"};
const char* const kConfigItemNames[] = {"Key", "Value"};
const char* const kSettingsNames[] = {"Account", "DeviceID", "DeviceName", LM_STATUS_NAMES};
const char* const kFileTypeNames[] = {"DRMProvider", "AccessType", "FileProfile", "VideoFormat",
                                      "FileExtension"};
const char* const kOrderTaxNames[] = {"SubTotal", "TotalPrice", "Tax", LM_STATUS_NAMES};
const char* const kMediaDirectorNames[] = {"LongFormat", "ShortFormat", LM_STATUS_NAMES};

#undef LM_STATUS_NAMES
#undef LM_TITLE_NAMES
#undef LM_PRODUCT_NAMES
#undef LM_PAGING_NAMES

// The service's names of the file extensions, by enumeration value.
const char* const kFileExtensions[] = {"AUTOPOPULATE", "UNKNOWN", "WMV", "MPEG", "MP4", "FLUX",
                                       "AVI",          "QT",      "FLV", "RM",   "DIVX"};

template <size_t N>
constexpr ASShape ShapeOf(const char* const (&names)[N]) {
    return ASShape{names, static_cast<uint32_t>(N)};
}

// Makes the object of `names` from `fields`, which must hold one field per name.
template <size_t N>
ASValue* Shaped(ASContext& context, const char* const (&names)[N], const ASField (&fields)[N]) {
    return context.NewShapedObject(ShapeOf(names), fields);
}

// ---- Fields ----

ASField Int(int32_t value) {
    return ASField::Int(value);
}
ASField Flag(uint8_t value) {
    return ASField::Boolean(value != 0);
}
ASField Text(const char* text) {
    return ASField::String(text != nullptr ? text : "");
}
// A number the service sends as text; anything that is not a number gives 0.
ASField NumberText(const char* text) {
    return ASField::Int(text != nullptr ? static_cast<int32_t>(std::strtol(text, nullptr, 10)) : 0);
}

// ---- Arrays ----

// An Array of `make(context, array[i])` for each of the `count` elements; an empty Array when
// there are none (a negative count or a null array included).
template <class E, class Make>
ASValue* ArrayOf(ASContext& context, int32_t count, const E* array, Make make) {
    Held list(context.NewInstance("Array"));
    ASObject* object = list ? list.Get()->AsObject() : nullptr;
    if (object == nullptr) {
        return nullptr;
    }
    for (int32_t i = 0; array != nullptr && i < count; ++i) {
        Held element(make(context, array[i]));
        const ASValue* argument = element.Get();
        if (!element || !object->CallMethod("push", 1, &argument)) {
            return nullptr;
        }
    }
    return list.Take();
}

// ---- The title and its parts ----

ASValue* BonusAsset(ASContext& context, const LM_WS_BonusAsset& asset) {
    const ASField fields[] = {Int(asset.BonusAssetID), Int(asset.Profile), Int(asset.BonusType)};
    return Shaped(context, kBonusAssetNames, fields);
}

ASValue* FileProfile(ASContext& context, const int32_t& profile) {
    const ASField fields[] = {Int(profile)};
    return Shaped(context, kFileProfileNames, fields);
}

ASValue* AudioFile(ASContext& context, const LM_WS_AudioFile& audio) {
    const ASField fields[] = {Int(audio.AssetAudioID), Text(audio.FileLocation),
                              Flag(audio.ContainsVideo), Int(audio.AudioAssetProfile)};
    return Shaped(context, kAudioNames, fields);
}

// The expiry text "YYYY/MM/DD hh:mm:ss" as a Date; the script counts months from 0. Parts the
// text lacks are 0.
ASValue* ExpiryDate(ASContext& context, const char* text) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    std::sscanf(text, "%04d/%02d/%02d %02d:%02d:%02d", &year, &month, &day, &hour, &minute,
                &second);
    return context.NewDate(year, month - 1, day, hour, minute, second);
}

ASValue* Product(ASContext& context, const LM_WS_ProductListing& product) {
    Held assets(ArrayOf(context, product.AvailableAssets.Count, product.AvailableAssets.Array,
                        FileProfile));
    Held audio(ArrayOf(context, product.AvailableAudioProfiles.Count,
                       product.AvailableAudioProfiles.Array, AudioFile));
    if (!assets || !audio) {
        return nullptr;
    }
    const bool expires = product.ExpireDate != nullptr && product.ExpireDate[0] != 0;
    Held expiry(expires ? ExpiryDate(context, product.ExpireDate) : nullptr);
    if (expires && !expiry) {
        return nullptr;
    }
    const ASField fields[] = {Int(product.SkuID),
                              Int(product.PurchaseType),
                              Text(product.Price),
                              Int(product.RentalPeriod),
                              ASField::Value(*assets.Get()),
                              ASField::Value(*audio.Get()),
                              expires ? ASField::Value(*expiry.Get()) : ASField{}};
    return expires ? context.NewShapedObject(ShapeOf(kExpiringProductNames), fields)
                   : context.NewShapedObject(ShapeOf(kProductNames), fields);
}

// The arrays a title's fields refer to; they must live until its object is made.
struct TitleParts {
    Held bonusAssets;
    Held products;
};

// Writes the title's kTitleCount fields to `fields`; false when the runtime failed.
bool TitleFields(ASContext& context, const LM_WS_TitleListing& title, TitleParts& parts,
                 ASField* fields) {
    parts.bonusAssets.Reset(
        ArrayOf(context, title.BonusAssets.Count, title.BonusAssets.Array, BonusAsset));
    parts.products.Reset(
        ArrayOf(context, title.AvailableProducts.Count, title.AvailableProducts.Array, Product));
    if (!parts.bonusAssets || !parts.products) {
        return false;
    }
    const ASField own[kTitleCount] = {Int(title.TitleID),
                                      Text(title.TitleName),
                                      Text(title.BoxArtPrefix),
                                      Int(title.TitlePosition),
                                      Int(title.EpisodeNumber),
                                      Text(title.CHVRSRating),
                                      Text(title.LoyaltyPointsForBuy),
                                      Text(title.LoyaltyPointsForRent),
                                      ASField::Value(*parts.bonusAssets.Get()),
                                      Flag(title.IsTvListing),
                                      Text(title.MPAARating),
                                      Flag(title.IsTHXMediaDirectorEnabled),
                                      Flag(title.IsTHXMediaDirectorEnabledForTrailer),
                                      ASField::Value(*parts.products.Get())};
    std::copy(own, own + kTitleCount, fields);
    return true;
}

ASValue* Title(ASContext& context, const LM_WS_TitleListing& title) {
    TitleParts parts;
    ASField fields[kTitleCount];
    if (!TitleFields(context, title, parts, fields)) {
        return nullptr;
    }
    return Shaped(context, kTitleNames, fields);
}

ASValue* TitleDetail(ASContext& context, const LM_WS_TitleListingResponse& detail) {
    TitleParts parts;
    ASField fields[kDetailCount] = {
        Int(detail.ResponseCode), Text(detail.ResponseMessage), Text(detail.Synopsys),
        Int(detail.UserRating),   Text(detail.Directors),       Text(detail.Actors),
        Text(detail.Writers),     Text(detail.Producers),       Text(detail.Copyright),
        Text(detail.RunTime),     Text(detail.RatingReason)};
    if (!TitleFields(context, detail.TitleListing, parts, fields + kDetailOwnCount)) {
        return nullptr;
    }
    return Shaped(context, kDetailNames, fields);
}

ASValue* PurchasedTitle(ASContext& context, const LM_WS_TitleListingPurchased& purchased) {
    TitleParts parts;
    ASField fields[kPurchasedCount];
    if (!TitleFields(context, purchased.TitleListing, parts, fields)) {
        return nullptr;
    }
    const ASField own[] = {Int(purchased.EpisodeID),           Int(purchased.TvListingTitleID),
                           Int(purchased.PurchaseType),        Int(purchased.Status),
                           NumberText(purchased.RentalPeriod), Int(purchased.PassID),
                           Int(purchased.PlayStatus),          Int(purchased.StartTimeSeconds)};
    static_assert(kTitleCount + sizeof own / sizeof own[0] == kPurchasedCount, "purchase fields");
    std::copy(std::begin(own), std::end(own), fields + kTitleCount);
    return Shaped(context, kPurchasedNames, fields);
}

// ---- Per kind ----

ASValue* Navigation(ASContext& context, const LM_WS_Navigation& r) {
    return ArrayOf(context, r.Genres.Count, r.Genres.Array,
                   [](ASContext& c, const LM_WS_Genre& genre) {
                       const ASField fields[] = {Int(genre.ID), Text(genre.Name),
                                                 Flag(genre.Visible), Int(genre.ParentId)};
                       return Shaped(c, kGenreNames, fields);
                   });
}

ASValue* GenreTitles(ASContext& context, const LM_WS_TitlesResponse& r) {
    Held titles(ArrayOf(context, r.Titles.Count, r.Titles.Array, Title));
    if (!titles) {
        return nullptr;
    }
    const ASField fields[] = {Int(r.GenreID),          Int(r.CurrentPageNumber),
                              Int(r.ItemsPerPage),     Int(r.TotalPages),
                              Int(r.TotalItems),       Int(r.ResponseCode),
                              Text(r.ResponseMessage), ASField::Value(*titles.Get())};
    return Shaped(context, kGenreTitlesNames, fields);
}

// A page of purchased titles; the wishlist's page adds its sort order as the last property.
template <class R>
ASValue* PurchasePage(ASContext& context, const R& r, const int32_t* sortOrder) {
    Held titles(ArrayOf(context, r.Titles.Count, r.Titles.Array, PurchasedTitle));
    if (!titles) {
        return nullptr;
    }
    const ASField fields[] = {Int(r.CurrentPageNumber),
                              Int(r.ItemsPerPage),
                              Int(r.TotalPages),
                              Int(r.TotalItems),
                              Int(r.ResponseCode),
                              Text(r.ResponseMessage),
                              ASField::Value(*titles.Get()),
                              Int(sortOrder ? *sortOrder : 0)};
    static_assert(sizeof fields / sizeof fields[0] ==
                      sizeof kSortedPurchasesNames / sizeof kSortedPurchasesNames[0],
                  "one field per name");
    return context.NewShapedObject(
        sortOrder ? ShapeOf(kSortedPurchasesNames) : ShapeOf(kPurchasesNames), fields);
}

ASValue* Purchases(ASContext& context, const LM_WS_MyVideosResponse& r) {
    return PurchasePage(context, r, nullptr);
}

ASValue* SortedPurchases(ASContext& context, const LM_WS_WishlistItemsResponse& r) {
    const int32_t sortOrder = r.SortOrder;
    return PurchasePage(context, r, &sortOrder);
}

// An object of the status, then one array property made by `makeArray`.
template <class R, class MakeArray>
ASValue* StatusAndArray(ASContext& context, const R& r, const char* const (&names)[3],
                        MakeArray makeArray) {
    Held list(makeArray());
    if (!list) {
        return nullptr;
    }
    const ASField fields[] = {Int(r.ResponseCode), Text(r.ResponseMessage),
                              ASField::Value(*list.Get())};
    return Shaped(context, names, fields);
}

const char* FileExtensionName(int32_t value, char (&buffer)[16]) {
    if (value >= 0 && static_cast<size_t>(value) < sizeof kFileExtensions / sizeof(char*)) {
        return kFileExtensions[value];
    }
    std::snprintf(buffer, sizeof buffer, "%d", static_cast<int>(value));
    return buffer;
}

ASValue* Convert(ASContext& context, uint32_t kind, const void* record) {
    switch (kind) {
        case 1:
            return context.NewInt(*static_cast<const int32_t*>(record));
        case 2:
            return context.NewBoolean(*static_cast<const bool*>(record));
        case 3: {
            const auto& r = *static_cast<const LM_WS_LengthAndText*>(record);
            return r.Text != nullptr ? context.NewString(r.Text, r.Length) : context.NewString("");
        }
        case 4:
            return Navigation(context, *static_cast<const LM_WS_Navigation*>(record));
        case 5:
            return GenreTitles(context, *static_cast<const LM_WS_TitlesResponse*>(record));
        case 6:
            return TitleDetail(context, *static_cast<const LM_WS_TitleListingResponse*>(record));
        case 7: {
            // The service's answer carries no adult-verification flag: it reads false here, and
            // the movie asks checkAdultVerificationEnabled when it needs to know.
            const auto& r = *static_cast<const LM_WS_AuthorizeDeviceResponse*>(record);
            const ASField fields[] = {
                Text(r.AuthToken),  Text(r.EmailAddress), ASField::Boolean(false), Text(r.DeviceID),
                Text(r.DeviceName), Int(r.ResponseCode),  Text(r.ResponseMessage)};
            return Shaped(context, kAuthorizeNames, fields);
        }
        case 8:
            return Purchases(context, *static_cast<const LM_WS_MyVideosResponse*>(record));
        case 9: {
            const auto& r = *static_cast<const LM_WS_StandardResponse*>(record);
            const ASField fields[] = {Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kStatusNames, fields);
        }
        case 10: {
            const auto& r = *static_cast<const LM_WS_RecommendedTitlesResponse*>(record);
            return StatusAndArray(context, r, kTitlesNames, [&] {
                return ArrayOf(context, r.Titles.Count, r.Titles.Array, Title);
            });
        }
        case 11: {
            const auto& r = *static_cast<const LM_WS_TranslateSkuIDResponse*>(record);
            const ASField fields[] = {Int(r.ResponseCode), Text(r.ResponseMessage), Int(r.TitleId)};
            return Shaped(context, kTitleIDNames, fields);
        }
        case 12: {
            const auto& r = *static_cast<const LM_WS_TvEpisodeList*>(record);
            return StatusAndArray(context, r, kEpisodeListNames, [&] {
                return ArrayOf(context, r.Episodes.Count, r.Episodes.Array,
                               [](ASContext& c, const LM_WS_TvEpisode& episode) {
                                   const ASField fields[] = {Int(episode.EpisodeID),
                                                             Text(episode.EpisodeName),
                                                             Int(episode.EpisodeNumber)};
                                   return Shaped(c, kEpisodeNames, fields);
                               });
            });
        }
        case 13: {
            const auto& r =
                static_cast<const LM_WS_TitleListingResponses*>(record)->TitleListingResponses;
            Held listings(ArrayOf(context, r.Count, r.Array, TitleDetail));
            if (!listings) {
                return nullptr;
            }
            const ASField fields[] = {ASField::Value(*listings.Get())};
            return Shaped(context, kListingsNames, fields);
        }
        case 14:
            return SortedPurchases(context,
                                   *static_cast<const LM_WS_WishlistItemsResponse*>(record));
        case 15: {
            const auto& r = *static_cast<const LM_WS_PurchaseResponse*>(record);
            const ASField fields[] = {Int(r.PassID), Int(r.TransactionId),
                                      Text(r.TransactionAuthNum), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Shaped(context, kPurchaseNames, fields);
        }
        case 16: {
            const auto& r = *static_cast<const LM_WS_StandardResponse*>(record);
            const ASField fields[] = {ASField::Boolean(r.ResponseCode == 0), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Shaped(context, kAdultEnabledNames, fields);
        }
        case 17: {
            const auto& r = *static_cast<const LM_WS_AdultVerificationPinResponse*>(record);
            const ASField fields[] = {Flag(r.IsPinVerified), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Shaped(context, kPinNames, fields);
        }
        case 18: {
            const auto& r = *static_cast<const LM_WS_GiftCertificateResponse*>(record);
            const ASField fields[] = {Int(r.Balance), Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kBalanceNames, fields);
        }
        case 19: {
            const auto& r = *static_cast<const LM_WS_RentalExpirationResponse*>(record);
            const ASField fields[] = {Flag(r.ShouldDisplay), Int(r.HoursRemaining),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kRentalNames, fields);
        }
        case 20: {
            const auto& r = *static_cast<const LM_WS_StreamingAssetLocationResponse*>(record);
            const ASField fields[] = {Text(r.StreamingAssetLocation),
                                      Int(r.AssetID),
                                      Text(r.StreamID),
                                      Text(r.DRMServerURL),
                                      Text(r.DRMACKServerURL),
                                      Int(r.Status),
                                      Int(r.StartTimeSeconds),
                                      Text(r.HeartbeatURL),
                                      Int(r.HeartbeatPollInSeconds),
                                      Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Shaped(context, kStreamingNames, fields);
        }
        case 21: {
            const auto& r = *static_cast<const LM_WS_EmailAddressResponse*>(record);
            const ASField fields[] = {Text(r.EmailAddress), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Shaped(context, kEmailNames, fields);
        }
        case 22: {
            const auto& r = *static_cast<const LM_WS_BillingInfoResponse*>(record);
            const ASField fields[] = {Text(r.CCLastFour), Int(r.CCTypeId), Text(r.CCType),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kBillingNames, fields);
        }
        case 23: {
            const auto& r = *static_cast<const LM_WS_PPCardBalanceResponse*>(record);
            const ASField fields[] = {Int(r.Balance), Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kBalanceNames, fields);
        }
        case 24: {
            const auto& r = *static_cast<const LM_WS_ConfigResponse*>(record);
            return StatusAndArray(context, r, kConfigNames, [&] {
                return ArrayOf(context, r.Count, r.Array,
                               [](ASContext& c, const LM_WS_ConfigurationItem& item) {
                                   const ASField fields[] = {Text(item.Key), Text(item.Value)};
                                   return Shaped(c, kConfigItemNames, fields);
                               });
            });
        }
        case 25: {
            const auto& r = *static_cast<const LM_WS_SettingsPageInfo*>(record);
            const ASField fields[] = {Text(r.Account), Text(r.DeviceID), Text(r.DeviceName),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kSettingsNames, fields);
        }
        case 26: {
            const auto& r = *static_cast<const LM_WS_FileType*>(record);
            char buffer[16];
            const ASField fields[] = {Int(r.DRMProvider), Int(r.AccessType), Int(r.FileProfile),
                                      Int(r.VideoFormat),
                                      Text(FileExtensionName(r.FileExtension, buffer))};
            return Shaped(context, kFileTypeNames, fields);
        }
        case 27: {
            const auto& r = *static_cast<const LMTitleFlags*>(record);
            return ArrayOf(context, r.Count, r.Flags, [](ASContext& c, const uint8_t& flag) {
                return c.NewBoolean(flag != 0);
            });
        }
        case 28: {
            const auto& r = *static_cast<const LM_WS_CalcOrderTaxResponse*>(record);
            const ASField fields[] = {Text(r.SubTotal), Text(r.TotalPrice), Text(r.Tax),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Shaped(context, kOrderTaxNames, fields);
        }
        case 29: {
            const auto& r = *static_cast<const LM_WS_THXMediaDirectorResponse*>(record);
            const ASField fields[] = {Text(r.LongFormat), Text(r.ShortFormat), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Shaped(context, kMediaDirectorNames, fields);
        }
        default:
            return nullptr;
    }
}

}  // namespace

ASValue* LMResultToScript(ASContext& context, uint32_t kind, const void* record) {
    if (record == nullptr || kind < kLMResultKindFirst || kind > kLMResultKindLast) {
        return nullptr;
    }
    return Convert(context, kind, record);
}
