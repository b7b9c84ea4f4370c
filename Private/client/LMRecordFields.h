// The members of every client record (LM_WS_Records.h), named in one place.
//
// LMRecordFields::Visit(record, visitor) calls the visitor once per member of the record, in the
// order the service sends them and with the names it gives them. That is the record's own order,
// except in a title's page: the wire sends the title's members first (the page extends the
// title), the record keeps the title last. Initialisation and release, lmws's JSON and the
// tests' dumps all walk records this way, so a new member is added to its record's list below and
// nowhere else.
//
// The record may be const (reading it) or not (releasing or filling it). A visitor provides, with
// N an integer type of any width, S a record type, L a tagged array, E an element record, each
// member possibly const:
//   Tag(int32_t*& type, LM_WS_ResultType kind)     the record's heap tag and the kind it names
//   Number(const char* name, N& value)
//   Flag(const char* name, uint8_t& value)         0 or 1
//   Text(const char* name, char*& text)            a heap text
//   Bytes(const char* name, char*& text, uint32_t length)
//                                                  the length-and-text record's text: `length`
//                                                  bytes that may hold NULs, null when unreadable
//   Record(const char* name, S& part)              an embedded record, an element of its own on
//                                                  the wire
//   Flatten(S& part)                               an embedded record whose members the wire
//                                                  sends as this record's own
//   List(const char* name, L& list)                an embedded tagged array {Type, Count, Array},
//                                                  a record of its own: Tag, then Records
//   Records(const char* name, int32_t& count, E*& array)
//   Numbers(const char* name, int32_t& count, N*& array)
//                                                  a Count/Array pair of records or numbers
// A visitor may derive from NoOp or IntoParts and declare only the members it handles.
#ifndef LM_RECORD_FIELDS_H
#define LM_RECORD_FIELDS_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "LM_WS_Records.h"

namespace LMRecordFields {

// Fields<R>::Visit(record, visitor) names the members of R. A tagged record also has kKind, the
// value of its tag.
template <class R>
struct Fields;

template <class R, class V>
void Visit(R& record, V&& visitor) {
    Fields<std::remove_const_t<R>>::Visit(record, visitor);
}

// Whether records of type R start with a heap tag.
template <class R, class = void>
struct IsTagged : std::false_type {};
template <class R>
struct IsTagged<R, std::void_t<decltype(Fields<R>::kKind)>> : std::true_type {};

// Ignores every member; a visitor that derives from it hides the kinds of member it handles.
struct NoOp {
    template <class P>
    void Tag(P&, LM_WS_ResultType) {}
    template <class N>
    void Number(const char*, N&) {}
    template <class F>
    void Flag(const char*, F&) {}
    template <class T>
    void Text(const char*, T&) {}
    template <class T>
    void Bytes(const char*, T&, uint32_t) {}
    template <class S>
    void Record(const char*, S&) {}
    template <class S>
    void Flatten(S&) {}
    template <class L>
    void List(const char*, L&) {}
    template <class C, class A>
    void Records(const char*, C&, A&) {}
    template <class C, class A>
    void Numbers(const char*, C&, A&) {}
};

// Walks the embedded parts (Record, Flatten, List) with the derived visitor V, as if their members
// were the record's own, and ignores the rest; V hides the kinds of member it handles.
template <class V>
struct IntoParts : NoOp {
    template <class S>
    void Record(const char*, S& part) {
        Visit(part, static_cast<V&>(*this));
    }
    template <class S>
    void Flatten(S& part) {
        Visit(part, static_cast<V&>(*this));
    }
    template <class L>
    void List(const char*, L& list) {
        Visit(list, static_cast<V&>(*this));
    }
};

// The head of a result record: its tag, then the service's status of the answer.
template <class R, class V>
void Response(R& r, V& v, LM_WS_ResultType kind) {
    v.Tag(r.Type, kind);
    v.Number("ResponseCode", r.ResponseCode);
    v.Text("ResponseMessage", r.ResponseMessage);
}

template <>
struct Fields<LM_WS_LengthAndText> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultLengthAndText;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Number("Length", r.Length);
        v.Bytes("Text", r.Text, r.Length);
    }
};

template <>
struct Fields<LM_WS_StandardResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultStandardResponse;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
    }
};

// ---- Navigation ----

template <>
struct Fields<LM_WS_Genre> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Number("ID", r.ID);
        v.Text("Name", r.Name);
        v.Flag("Visible", r.Visible);
        v.Number("ParentId", r.ParentId);
    }
};

template <>
struct Fields<LM_WS_GenreArray> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultGenreArray;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Records("Genre", r.Count, r.Array);
    }
};

template <>
struct Fields<LM_WS_Navigation> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultNavigation;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.List("Genres", r.Genres);
    }
};

template <>
struct Fields<LM_WS_GenreLabelResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultGenreLabel;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("Label", r.Label);
        v.Text("LabelMessage", r.LabelMessage);
    }
};

// ---- One title ----

template <>
struct Fields<LM_WS_BonusAsset> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Number("BonusAssetID", r.BonusAssetID);
        v.Number("Profile", r.Profile);
        v.Number("BonusType", r.BonusType);
    }
};

template <>
struct Fields<LM_WS_AudioFile> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Number("AssetAudioID", r.AssetAudioID);
        v.Text("FileLocation", r.FileLocation);
        v.Flag("ContainsVideo", r.ContainsVideo);
        v.Number("AudioAssetProfile", r.AudioAssetProfile);
    }
};

template <>
struct Fields<LM_WS_ProductListing> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Number("SkuID", r.SkuID);
        v.Number("PurchaseType", r.PurchaseType);
        v.Text("Price", r.Price);
        v.Numbers("AvailableAssets", r.AvailableAssets.Count, r.AvailableAssets.Array);
        v.Text("ExpireDate", r.ExpireDate);
        v.Records("AvailableAudioProfiles", r.AvailableAudioProfiles.Count,
                  r.AvailableAudioProfiles.Array);
        v.Number("RentalPeriod", r.RentalPeriod);
    }
};

template <>
struct Fields<LM_WS_TitleListing> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitleListing;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Number("TitleID", r.TitleID);
        v.Text("TitleName", r.TitleName);
        v.Text("BoxArtPrefix", r.BoxArtPrefix);
        v.Number("TitlePosition", r.TitlePosition);
        v.Number("EpisodeNumber", r.EpisodeNumber);
        v.Records("BonusAssets", r.BonusAssets.Count, r.BonusAssets.Array);
        v.Flag("IsTvListing", r.IsTvListing);
        v.Text("MPAARating", r.MPAARating);
        v.Records("AvailableProducts", r.AvailableProducts.Count, r.AvailableProducts.Array);
        v.Flag("IsTHXMediaDirectorEnabled", r.IsTHXMediaDirectorEnabled);
        v.Flag("IsTHXMediaDirectorEnabledForTrailer", r.IsTHXMediaDirectorEnabledForTrailer);
        v.Text("CHVRSRating", r.CHVRSRating);
        v.Text("LoyaltyPointsForBuy", r.LoyaltyPointsForBuy);
        v.Text("LoyaltyPointsForRent", r.LoyaltyPointsForRent);
    }
};

template <>
struct Fields<LM_WS_TitleListingArray> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitleListingArray;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Records("TitleListing", r.Count, r.Array);
    }
};

template <>
struct Fields<LM_WS_TitleListingResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitleListingResponse;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Flatten(r.TitleListing);  // first on the wire, last in the record
        v.Number("ResponseCode", r.ResponseCode);
        v.Text("ResponseMessage", r.ResponseMessage);
        v.Text("Synopsys", r.Synopsys);
        v.Number("UserRating", r.UserRating);
        v.Text("Directors", r.Directors);
        v.Text("Actors", r.Actors);
        v.Text("Writers", r.Writers);
        v.Text("Producers", r.Producers);
        v.Text("Copyright", r.Copyright);
        v.Text("RunTime", r.RunTime);
        v.Flag("IsAvailInUserWishList", r.IsAvailInUserWishList);
        v.Text("RatingReason", r.RatingReason);
    }
};

template <>
struct Fields<LM_WS_TitleListingResponseArray> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitleListingResponseArray;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Records("TitleListingResponse", r.Count, r.Array);
    }
};

template <>
struct Fields<LM_WS_TitleListingResponses> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitleListingResponses;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.List("TitleListingResponse", r.TitleListingResponses);
    }
};

// ---- Title lists ----

template <>
struct Fields<LM_WS_TitlesResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitles;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Number("GenreID", r.GenreID);
        v.Number("CurrentPageNumber", r.CurrentPageNumber);
        v.Number("ItemsPerPage", r.ItemsPerPage);
        v.Number("TotalPages", r.TotalPages);
        v.Number("TotalItems", r.TotalItems);
        v.List("Titles", r.Titles);
    }
};

template <>
struct Fields<LM_WS_TitlesResponseArray> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitlesArray;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Records("GetTitlesResponse", r.Count, r.Array);
    }
};

template <>
struct Fields<LM_WS_RecommendedTitlesResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultRecommendedTitles;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.List("Titles", r.Titles);
    }
};

// ---- TV episodes ----

template <>
struct Fields<LM_WS_TvEpisode> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTvEpisode;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Number("EpisodeID", r.EpisodeID);
        v.Text("EpisodeName", r.EpisodeName);
        v.Number("EpisodeNumber", r.EpisodeNumber);
    }
};

template <>
struct Fields<LM_WS_TvEpisodeArray> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTvEpisodeArray;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Records("TvEpisode", r.Count, r.Array);
    }
};

template <>
struct Fields<LM_WS_TvEpisodeList> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTvEpisodeList;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.List("Episodes", r.Episodes);
    }
};

// ---- Translations ----

template <>
struct Fields<LM_WS_TranslateRecboxExternalIDResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTranslateRecboxExternalID;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("RecboxExternalId", r.RecboxExternalId);
        v.Number("TitleId", r.TitleId);
    }
};

template <>
struct Fields<LM_WS_TranslateSkuIDResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTranslateSkuID;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Number("TitleId", r.TitleId);
    }
};

// ---- Purchases ----

template <>
struct Fields<LM_WS_TitleListingPurchased> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Flatten(r.TitleListing);
        v.Number("EpisodeID", r.EpisodeID);
        v.Number("TvListingTitleID", r.TvListingTitleID);
        v.Number("PurchaseType", r.PurchaseType);
        v.Number("Status", r.Status);
        v.Text("RentalPeriod", r.RentalPeriod);
        v.Number("PassID", r.PassID);
        v.Number("PlayStatus", r.PlayStatus);
        v.Number("StartTimeSeconds", r.StartTimeSeconds);
    }
};

template <>
struct Fields<LM_WS_TitleListingPurchasedArray> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitleListingPurchasedArray;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Tag(r.Type, kKind);
        v.Records("TitleListingPurchased", r.Count, r.Array);
    }
};

template <>
struct Fields<LM_WS_MyVideosResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultMyVideos;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.List("Titles", r.Titles);
        v.Number("CurrentPageNumber", r.CurrentPageNumber);
        v.Number("ItemsPerPage", r.ItemsPerPage);
        v.Number("TotalPages", r.TotalPages);
        v.Number("TotalItems", r.TotalItems);
    }
};

// ---- Account and device ----

template <>
struct Fields<LM_WS_AuthorizeDeviceResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultAuthorizeDevice;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("AuthToken", r.AuthToken);
        v.Text("EmailAddress", r.EmailAddress);
        v.Text("DeviceID", r.DeviceID);
        v.Text("DeviceName", r.DeviceName);
    }
};

template <>
struct Fields<LM_WS_PurchaseResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultPurchase;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Number("PassID", r.PassID);
        v.Number("TransactionId", r.TransactionId);
        v.Text("TransactionAuthNum", r.TransactionAuthNum);
    }
};

template <>
struct Fields<LM_WS_WishlistItemsResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultWishlistItems;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.List("Titles", r.Titles);
        v.Number("CurrentPageNumber", r.CurrentPageNumber);
        v.Number("ItemsPerPage", r.ItemsPerPage);
        v.Number("TotalPages", r.TotalPages);
        v.Number("TotalItems", r.TotalItems);
        v.Number("SortOrder", r.SortOrder);
    }
};

template <>
struct Fields<LM_WS_RentalExpirationResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultRentalExpiration;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Flag("ShouldDisplay", r.ShouldDisplay);
        v.Number("HoursRemaining", r.HoursRemaining);
    }
};

template <>
struct Fields<LM_WS_AdultVerificationPinResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultAdultVerificationPin;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Flag("IsPinVerified", r.IsPinVerified);
    }
};

template <>
struct Fields<LM_WS_GiftCertificateResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultGiftCertificate;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Number("Balance", r.Balance);
    }
};

template <>
struct Fields<LM_WS_EmailAddressResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultEmailAddress;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("EmailAddress", r.EmailAddress);
    }
};

template <>
struct Fields<LM_WS_BillingInfoResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultBillingInfo;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("CCLastFour", r.CCLastFour);
        v.Number("CCTypeId", r.CCTypeId);
        v.Text("CCType", r.CCType);
    }
};

template <>
struct Fields<LM_WS_PPCardBalanceResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultPPCardBalance;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Number("Balance", r.Balance);
    }
};

template <>
struct Fields<LM_WS_BillingInfoAndPPCBalanceResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultBillingInfoAndPPCBalance;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Record("BillingInfo", r.BillingInfo);
        v.Record("PPCardBalance", r.PPCardBalance);
    }
};

template <>
struct Fields<LM_WS_SettingsPageInfo> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultSettingsPageInfo;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("Account", r.Account);
        v.Text("DeviceID", r.DeviceID);
        v.Text("DeviceName", r.DeviceName);
    }
};

template <>
struct Fields<LM_WS_CalcOrderTaxResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultCalcOrderTax;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("SubTotal", r.SubTotal);
        v.Text("TotalPrice", r.TotalPrice);
        v.Text("Tax", r.Tax);
    }
};

// ---- Streaming ----

template <>
struct Fields<LM_WS_StreamingAssetLocationResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultStreamingAssetLocation;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("StreamingAssetLocation", r.StreamingAssetLocation);
        v.Number("AssetID", r.AssetID);
        v.Text("StreamID", r.StreamID);
        v.Text("DRMServerURL", r.DRMServerURL);
        v.Text("DRMACKServerURL", r.DRMACKServerURL);
        v.Number("Status", r.Status);
        v.Number("StartTimeSeconds", r.StartTimeSeconds);
        v.Text("HeartbeatURL", r.HeartbeatURL);
        v.Number("HeartbeatPollInSeconds", r.HeartbeatPollInSeconds);
    }
};

template <>
struct Fields<LM_WS_THXMediaDirectorResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTHXMediaDirector;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Text("LongFormat", r.LongFormat);
        v.Text("ShortFormat", r.ShortFormat);
    }
};

template <>
struct Fields<LM_WS_TitleListingPurchasedForPass> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Flatten(r.Purchased);
        v.Number("ResponseCode", r.ResponseCode);
        v.Text("ResponseMessage", r.ResponseMessage);
    }
};

template <>
struct Fields<LM_WS_TitlesPurchasedForPassesResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultTitlesPurchasedForPasses;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Records("TitleListingPurchasedForPass", r.Count, r.Array);
    }
};

// ---- Configuration ----

template <>
struct Fields<LM_WS_ConfigurationItem> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Text("Key", r.Key);
        v.Text("Value", r.Value);
    }
};

template <>
struct Fields<LM_WS_ConfigResponse> {
    static constexpr LM_WS_ResultType kKind = LM_WS_ResultConfig;
    template <class R, class V>
    static void Visit(R& r, V& v) {
        Response(r, v, kKind);
        v.Records("ConfigurationSet", r.Count, r.Array);
    }
};

// ---- File type (no tag, owns nothing) ----

template <>
struct Fields<LM_WS_FileType> {
    template <class R, class V>
    static void Visit(R& r, V& v) {
        v.Number("File_DRMProvider", r.DRMProvider);
        v.Number("File_AccessType", r.AccessType);
        v.Number("File_FileProfile", r.FileProfile);
        v.Number("File_VideoFormat", r.VideoFormat);
        v.Number("File_FileExtension", r.FileExtension);
    }
};

// ---- From a tag to its record ----

template <class R>
struct As {
    using Record = R;
};

template <class... R>
struct RecordList {};

// Every record that has a tag: the kinds LM_WS_InitResult and LM_WS_FreeResult accept.
using TaggedRecords =
    RecordList<LM_WS_LengthAndText, LM_WS_StandardResponse, LM_WS_GenreArray, LM_WS_Navigation,
               LM_WS_GenreLabelResponse, LM_WS_TitleListing, LM_WS_TitleListingResponse,
               LM_WS_TitleListingArray, LM_WS_TitleListingResponseArray,
               LM_WS_TitleListingResponses, LM_WS_TitlesResponse, LM_WS_TitlesResponseArray,
               LM_WS_TvEpisode, LM_WS_TvEpisodeArray, LM_WS_TvEpisodeList,
               LM_WS_AuthorizeDeviceResponse, LM_WS_TitleListingPurchasedArray,
               LM_WS_MyVideosResponse, LM_WS_AdultVerificationPinResponse,
               LM_WS_StreamingAssetLocationResponse, LM_WS_BillingInfoAndPPCBalanceResponse,
               LM_WS_RecommendedTitlesResponse, LM_WS_PurchaseResponse, LM_WS_WishlistItemsResponse,
               LM_WS_RentalExpirationResponse, LM_WS_GiftCertificateResponse,
               LM_WS_EmailAddressResponse, LM_WS_BillingInfoResponse, LM_WS_PPCardBalanceResponse,
               LM_WS_SettingsPageInfo, LM_WS_CalcOrderTaxResponse, LM_WS_THXMediaDirectorResponse,
               LM_WS_TitlesPurchasedForPassesResponse, LM_WS_TranslateRecboxExternalIDResponse,
               LM_WS_TranslateSkuIDResponse, LM_WS_ConfigResponse>;

template <class F, class... R>
bool WithKindOf(int32_t kind, F& f, RecordList<R...>) {
    return ((static_cast<int32_t>(Fields<R>::kKind) == kind && (f(As<R>()), true)) || ...);
}

// Calls f(As<R>()) for the tagged record R whose tag value is `kind`. False, and f not called,
// when no record has that kind.
template <class F>
bool WithKind(int32_t kind, F&& f) {
    return WithKindOf(kind, f, TaggedRecords());
}

template <class... R>
constexpr bool KindsDiffer(RecordList<R...>) {
    const int32_t kinds[] = {Fields<R>::kKind...};
    for (size_t i = 0; i < sizeof...(R); ++i) {
        for (size_t j = i + 1; j < sizeof...(R); ++j) {
            if (kinds[i] == kinds[j]) {
                return false;
            }
        }
    }
    return true;
}
static_assert(KindsDiffer(TaggedRecords()), "two records share a tag value");

}  // namespace LMRecordFields

#endif  // LM_RECORD_FIELDS_H
