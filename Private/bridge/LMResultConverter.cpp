#include "LMResultConverter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

using ae::stagecraft::ASContext;
using ae::stagecraft::ASField;
using ae::stagecraft::ASShape;
using ae::stagecraft::ASValue;

namespace {

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

// ---- The tree ----
//
// A result is described as one tree of fields (nested objects and arrays included) and made by
// the runtime in one step: a page of titles is hundreds of objects, and a handle and an engine
// call for each would cost more than parsing the same data as JSON.

// Holds the tree's fields in blocks that never move, so a field can point at its children.
class Arena {
public:
    // `count` contiguous fields, all undefined; null when memory runs out (then Failed()).
    ASField* Allocate(size_t count) {
        if (count == 0) {
            static ASField none;
            return &none;
        }
        if (m_Used + count > m_Size) {
            const size_t size = std::max<size_t>(count, kBlock);
            std::unique_ptr<ASField[]> block(new (std::nothrow) ASField[size]());
            if (!block) {
                m_Failed = true;
                return nullptr;
            }
            m_Current = block.get();
            m_Blocks.push_back(std::move(block));
            m_Size = size;
            m_Used = 0;
        }
        ASField* fields = m_Current + m_Used;
        m_Used += count;
        return fields;
    }
    bool Failed() const { return m_Failed; }

private:
    static constexpr size_t kBlock = 1024;
    std::vector<std::unique_ptr<ASField[]>> m_Blocks;
    ASField* m_Current = nullptr;
    size_t m_Size = 0;
    size_t m_Used = 0;
    bool m_Failed = false;
};

// The object of `names` from `fields` (one per name), copied into the arena.
template <size_t N>
ASField Object(Arena& arena, const char* const (&names)[N], const ASField (&fields)[N]) {
    ASField* copy = arena.Allocate(N);
    if (copy == nullptr) {
        return ASField{};
    }
    std::copy(fields, fields + N, copy);
    return ASField::Object(ShapeOf(names), copy);
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

// An Array of `make(arena, array[i])` for each of the `count` elements; an empty Array when
// there are none (a negative count or a null array included).
template <class E, class Make>
ASField ArrayOf(Arena& arena, int32_t count, const E* array, Make make) {
    const uint32_t n = array != nullptr && count > 0 ? static_cast<uint32_t>(count) : 0;
    ASField* elements = arena.Allocate(n);
    if (elements == nullptr) {
        return ASField{};
    }
    for (uint32_t i = 0; i < n; ++i) {
        elements[i] = make(arena, array[i]);
    }
    return ASField::Array(elements, n);
}

// ---- The title and its parts ----

ASField BonusAsset(Arena& arena, const LM_WS_BonusAsset& asset) {
    const ASField fields[] = {Int(asset.BonusAssetID), Int(asset.Profile), Int(asset.BonusType)};
    return Object(arena, kBonusAssetNames, fields);
}

ASField FileProfile(Arena& arena, const int32_t& profile) {
    const ASField fields[] = {Int(profile)};
    return Object(arena, kFileProfileNames, fields);
}

ASField AudioFile(Arena& arena, const LM_WS_AudioFile& audio) {
    const ASField fields[] = {Int(audio.AssetAudioID), Text(audio.FileLocation),
                              Flag(audio.ContainsVideo), Int(audio.AudioAssetProfile)};
    return Object(arena, kAudioNames, fields);
}

// The expiry text "YYYY/MM/DD hh:mm:ss" as a Date; the script counts months from 0. Parts the
// text lacks are 0.
ASField ExpiryDate(const char* text) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    std::sscanf(text, "%04d/%02d/%02d %02d:%02d:%02d", &year, &month, &day, &hour, &minute,
                &second);
    return ASField::Date(year, month - 1, day, hour, minute, second);
}

ASField Product(Arena& arena, const LM_WS_ProductListing& product) {
    const ASField fields[] = {
        Int(product.SkuID),
        Int(product.PurchaseType),
        Text(product.Price),
        Int(product.RentalPeriod),
        ArrayOf(arena, product.AvailableAssets.Count, product.AvailableAssets.Array, FileProfile),
        ArrayOf(arena, product.AvailableAudioProfiles.Count, product.AvailableAudioProfiles.Array,
                AudioFile)};
    if (product.ExpireDate == nullptr || product.ExpireDate[0] == 0) {
        return Object(arena, kProductNames, fields);
    }
    const ASField expiring[] = {fields[0],
                                fields[1],
                                fields[2],
                                fields[3],
                                fields[4],
                                fields[5],
                                ExpiryDate(product.ExpireDate)};
    return Object(arena, kExpiringProductNames, expiring);
}

// Writes the title's kTitleCount fields to `fields`.
void TitleFields(Arena& arena, const LM_WS_TitleListing& title, ASField* fields) {
    const ASField own[kTitleCount] = {
        Int(title.TitleID),
        Text(title.TitleName),
        Text(title.BoxArtPrefix),
        Int(title.TitlePosition),
        Int(title.EpisodeNumber),
        Text(title.CHVRSRating),
        Text(title.LoyaltyPointsForBuy),
        Text(title.LoyaltyPointsForRent),
        ArrayOf(arena, title.BonusAssets.Count, title.BonusAssets.Array, BonusAsset),
        Flag(title.IsTvListing),
        Text(title.MPAARating),
        Flag(title.IsTHXMediaDirectorEnabled),
        Flag(title.IsTHXMediaDirectorEnabledForTrailer),
        ArrayOf(arena, title.AvailableProducts.Count, title.AvailableProducts.Array, Product)};
    std::copy(own, own + kTitleCount, fields);
}

ASField Title(Arena& arena, const LM_WS_TitleListing& title) {
    ASField fields[kTitleCount];
    TitleFields(arena, title, fields);
    return Object(arena, kTitleNames, fields);
}

ASField TitleDetail(Arena& arena, const LM_WS_TitleListingResponse& detail) {
    ASField fields[kDetailCount] = {
        Int(detail.ResponseCode), Text(detail.ResponseMessage), Text(detail.Synopsys),
        Int(detail.UserRating),   Text(detail.Directors),       Text(detail.Actors),
        Text(detail.Writers),     Text(detail.Producers),       Text(detail.Copyright),
        Text(detail.RunTime),     Text(detail.RatingReason)};
    TitleFields(arena, detail.TitleListing, fields + kDetailOwnCount);
    return Object(arena, kDetailNames, fields);
}

ASField PurchasedTitle(Arena& arena, const LM_WS_TitleListingPurchased& purchased) {
    ASField fields[kPurchasedCount];
    TitleFields(arena, purchased.TitleListing, fields);
    const ASField own[] = {Int(purchased.EpisodeID),           Int(purchased.TvListingTitleID),
                           Int(purchased.PurchaseType),        Int(purchased.Status),
                           NumberText(purchased.RentalPeriod), Int(purchased.PassID),
                           Int(purchased.PlayStatus),          Int(purchased.StartTimeSeconds)};
    static_assert(kTitleCount + sizeof own / sizeof own[0] == kPurchasedCount, "purchase fields");
    std::copy(std::begin(own), std::end(own), fields + kTitleCount);
    return Object(arena, kPurchasedNames, fields);
}

// ---- Per kind ----

ASField Navigation(Arena& arena, const LM_WS_Navigation& r) {
    return ArrayOf(arena, r.Genres.Count, r.Genres.Array, [](Arena& a, const LM_WS_Genre& genre) {
        const ASField fields[] = {Int(genre.ID), Text(genre.Name), Flag(genre.Visible),
                                  Int(genre.ParentId)};
        return Object(a, kGenreNames, fields);
    });
}

ASField GenreTitles(Arena& arena, const LM_WS_TitlesResponse& r) {
    const ASField fields[] = {
        Int(r.GenreID),          Int(r.CurrentPageNumber),
        Int(r.ItemsPerPage),     Int(r.TotalPages),
        Int(r.TotalItems),       Int(r.ResponseCode),
        Text(r.ResponseMessage), ArrayOf(arena, r.Titles.Count, r.Titles.Array, Title)};
    return Object(arena, kGenreTitlesNames, fields);
}

// A page of purchased titles; the wishlist's page adds its sort order as the last property.
template <class R>
ASField PurchasePage(Arena& arena, const R& r, const int32_t* sortOrder) {
    const ASField fields[] = {Int(r.CurrentPageNumber),
                              Int(r.ItemsPerPage),
                              Int(r.TotalPages),
                              Int(r.TotalItems),
                              Int(r.ResponseCode),
                              Text(r.ResponseMessage),
                              ArrayOf(arena, r.Titles.Count, r.Titles.Array, PurchasedTitle),
                              Int(sortOrder ? *sortOrder : 0)};
    static_assert(sizeof fields / sizeof fields[0] ==
                      sizeof kSortedPurchasesNames / sizeof kSortedPurchasesNames[0],
                  "one field per name");
    if (sortOrder != nullptr) {
        return Object(arena, kSortedPurchasesNames, fields);
    }
    const ASField unsorted[] = {fields[0], fields[1], fields[2], fields[3],
                                fields[4], fields[5], fields[6]};
    return Object(arena, kPurchasesNames, unsorted);
}

// An object of the status, then one array property.
template <class R>
ASField StatusAndArray(Arena& arena, const R& r, const char* const (&names)[3], ASField list) {
    const ASField fields[] = {Int(r.ResponseCode), Text(r.ResponseMessage), list};
    return Object(arena, names, fields);
}

const char* FileExtensionName(int32_t value, char (&buffer)[16]) {
    if (value >= 0 && static_cast<size_t>(value) < sizeof kFileExtensions / sizeof(char*)) {
        return kFileExtensions[value];
    }
    std::snprintf(buffer, sizeof buffer, "%d", static_cast<int>(value));
    return buffer;
}

// The tree of a record of `kind`; `buffer` holds text the tree may point at.
ASField Describe(Arena& arena, uint32_t kind, const void* record, char (&buffer)[16]) {
    switch (kind) {
        case 1:
            return Int(*static_cast<const int32_t*>(record));
        case 2:
            return ASField::Boolean(*static_cast<const bool*>(record));
        case 3: {
            const auto& r = *static_cast<const LM_WS_LengthAndText*>(record);
            return r.Text != nullptr ? ASField::String(r.Text, r.Length) : Text(nullptr);
        }
        case 4:
            return Navigation(arena, *static_cast<const LM_WS_Navigation*>(record));
        case 5:
            return GenreTitles(arena, *static_cast<const LM_WS_TitlesResponse*>(record));
        case 6:
            return TitleDetail(arena, *static_cast<const LM_WS_TitleListingResponse*>(record));
        case 7: {
            // The service's answer carries no adult-verification flag: it reads false here, and
            // the movie asks checkAdultVerificationEnabled when it needs to know.
            const auto& r = *static_cast<const LM_WS_AuthorizeDeviceResponse*>(record);
            const ASField fields[] = {
                Text(r.AuthToken),  Text(r.EmailAddress), ASField::Boolean(false), Text(r.DeviceID),
                Text(r.DeviceName), Int(r.ResponseCode),  Text(r.ResponseMessage)};
            return Object(arena, kAuthorizeNames, fields);
        }
        case 8:
            return PurchasePage(arena, *static_cast<const LM_WS_MyVideosResponse*>(record),
                                nullptr);
        case 9: {
            const auto& r = *static_cast<const LM_WS_StandardResponse*>(record);
            const ASField fields[] = {Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kStatusNames, fields);
        }
        case 10: {
            const auto& r = *static_cast<const LM_WS_RecommendedTitlesResponse*>(record);
            return StatusAndArray(arena, r, kTitlesNames,
                                  ArrayOf(arena, r.Titles.Count, r.Titles.Array, Title));
        }
        case 11: {
            const auto& r = *static_cast<const LM_WS_TranslateSkuIDResponse*>(record);
            const ASField fields[] = {Int(r.ResponseCode), Text(r.ResponseMessage), Int(r.TitleId)};
            return Object(arena, kTitleIDNames, fields);
        }
        case 12: {
            const auto& r = *static_cast<const LM_WS_TvEpisodeList*>(record);
            return StatusAndArray(arena, r, kEpisodeListNames,
                                  ArrayOf(arena, r.Episodes.Count, r.Episodes.Array,
                                          [](Arena& a, const LM_WS_TvEpisode& episode) {
                                              const ASField fields[] = {Int(episode.EpisodeID),
                                                                        Text(episode.EpisodeName),
                                                                        Int(episode.EpisodeNumber)};
                                              return Object(a, kEpisodeNames, fields);
                                          }));
        }
        case 13: {
            const auto& r =
                static_cast<const LM_WS_TitleListingResponses*>(record)->TitleListingResponses;
            const ASField fields[] = {ArrayOf(arena, r.Count, r.Array, TitleDetail)};
            return Object(arena, kListingsNames, fields);
        }
        case 14: {
            const auto& r = *static_cast<const LM_WS_WishlistItemsResponse*>(record);
            const int32_t sortOrder = r.SortOrder;
            return PurchasePage(arena, r, &sortOrder);
        }
        case 15: {
            const auto& r = *static_cast<const LM_WS_PurchaseResponse*>(record);
            const ASField fields[] = {Int(r.PassID), Int(r.TransactionId),
                                      Text(r.TransactionAuthNum), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Object(arena, kPurchaseNames, fields);
        }
        case 16: {
            const auto& r = *static_cast<const LM_WS_StandardResponse*>(record);
            const ASField fields[] = {ASField::Boolean(r.ResponseCode == 0), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Object(arena, kAdultEnabledNames, fields);
        }
        case 17: {
            const auto& r = *static_cast<const LM_WS_AdultVerificationPinResponse*>(record);
            const ASField fields[] = {Flag(r.IsPinVerified), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Object(arena, kPinNames, fields);
        }
        case 18: {
            const auto& r = *static_cast<const LM_WS_GiftCertificateResponse*>(record);
            const ASField fields[] = {Int(r.Balance), Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kBalanceNames, fields);
        }
        case 19: {
            const auto& r = *static_cast<const LM_WS_RentalExpirationResponse*>(record);
            const ASField fields[] = {Flag(r.ShouldDisplay), Int(r.HoursRemaining),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kRentalNames, fields);
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
            return Object(arena, kStreamingNames, fields);
        }
        case 21: {
            const auto& r = *static_cast<const LM_WS_EmailAddressResponse*>(record);
            const ASField fields[] = {Text(r.EmailAddress), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Object(arena, kEmailNames, fields);
        }
        case 22: {
            const auto& r = *static_cast<const LM_WS_BillingInfoResponse*>(record);
            const ASField fields[] = {Text(r.CCLastFour), Int(r.CCTypeId), Text(r.CCType),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kBillingNames, fields);
        }
        case 23: {
            const auto& r = *static_cast<const LM_WS_PPCardBalanceResponse*>(record);
            const ASField fields[] = {Int(r.Balance), Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kBalanceNames, fields);
        }
        case 24: {
            const auto& r = *static_cast<const LM_WS_ConfigResponse*>(record);
            return StatusAndArray(
                arena, r, kConfigNames,
                ArrayOf(arena, r.Count, r.Array, [](Arena& a, const LM_WS_ConfigurationItem& item) {
                    const ASField fields[] = {Text(item.Key), Text(item.Value)};
                    return Object(a, kConfigItemNames, fields);
                }));
        }
        case 25: {
            const auto& r = *static_cast<const LM_WS_SettingsPageInfo*>(record);
            const ASField fields[] = {Text(r.Account), Text(r.DeviceID), Text(r.DeviceName),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kSettingsNames, fields);
        }
        case 26: {
            const auto& r = *static_cast<const LM_WS_FileType*>(record);
            const ASField fields[] = {Int(r.DRMProvider), Int(r.AccessType), Int(r.FileProfile),
                                      Int(r.VideoFormat),
                                      Text(FileExtensionName(r.FileExtension, buffer))};
            return Object(arena, kFileTypeNames, fields);
        }
        case 27: {
            const auto& r = *static_cast<const LMTitleFlags*>(record);
            return ArrayOf(arena, r.Count, r.Flags,
                           [](Arena&, const uint8_t& flag) { return Flag(flag); });
        }
        case 28: {
            const auto& r = *static_cast<const LM_WS_CalcOrderTaxResponse*>(record);
            const ASField fields[] = {Text(r.SubTotal), Text(r.TotalPrice), Text(r.Tax),
                                      Int(r.ResponseCode), Text(r.ResponseMessage)};
            return Object(arena, kOrderTaxNames, fields);
        }
        case 29: {
            const auto& r = *static_cast<const LM_WS_THXMediaDirectorResponse*>(record);
            const ASField fields[] = {Text(r.LongFormat), Text(r.ShortFormat), Int(r.ResponseCode),
                                      Text(r.ResponseMessage)};
            return Object(arena, kMediaDirectorNames, fields);
        }
        default:
            return ASField{};
    }
}

}  // namespace

ASValue* LMResultToScript(ASContext& context, uint32_t kind, const void* record) {
    if (record == nullptr || kind < kLMResultKindFirst || kind > kLMResultKindLast) {
        return nullptr;
    }
    Arena arena;
    char buffer[16];
    const ASField root = Describe(arena, kind, record, buffer);
    return arena.Failed() ? nullptr : context.NewTree(root);
}
