#include "LmwsRecordJson.h"

namespace {

// A record that was never filled (the call failed before the answer) holds null texts.
std::string Text(const char* text) {
    return text != nullptr ? text : "";
}

bool Flag(uint8_t flag) {
    return flag != 0;
}

// A Count/Array pair as a JSON array, each element converted by `one`. A negative count or a
// null array (an empty list) gives [].
template <typename T, typename F>
LmwsJson Array(int32_t count, const T* array, F one) {
    LmwsJson out = LmwsJson::array();
    for (int32_t i = 0; array != nullptr && i < count; ++i) {
        out.push_back(one(array[i]));
    }
    return out;
}

LmwsJson WithResponse(int32_t code, const char* message) {
    LmwsJson out = LmwsJson::object();
    out["ResponseCode"] = code;
    out["ResponseMessage"] = Text(message);
    return out;
}

LmwsJson AudioFile(const LM_WS_AudioFile& a) {
    LmwsJson out;
    out["AssetAudioID"] = a.AssetAudioID;
    out["FileLocation"] = Text(a.FileLocation);
    out["ContainsVideo"] = Flag(a.ContainsVideo);
    out["AudioAssetProfile"] = a.AudioAssetProfile;
    return out;
}

LmwsJson Product(const LM_WS_ProductListing& p) {
    LmwsJson out;
    out["SkuID"] = p.SkuID;
    out["PurchaseType"] = p.PurchaseType;
    out["Price"] = Text(p.Price);  // a decimal kept as the service wrote it
    out["AvailableAssets"] = Array(p.AvailableAssets.Count, p.AvailableAssets.Array,
                                   [](int32_t profile) { return LmwsJson(profile); });
    out["ExpireDate"] = Text(p.ExpireDate);
    out["AvailableAudioProfiles"] =
        Array(p.AvailableAudioProfiles.Count, p.AvailableAudioProfiles.Array, AudioFile);
    out["RentalPeriod"] = p.RentalPeriod;
    return out;
}

// The title's fields, added to `out` so that a title's page and a purchased title stay flat.
void AddTitle(LmwsJson& out, const LM_WS_TitleListing& t) {
    out["TitleID"] = t.TitleID;
    out["TitleName"] = Text(t.TitleName);
    out["BoxArtPrefix"] = Text(t.BoxArtPrefix);
    out["TitlePosition"] = t.TitlePosition;
    out["EpisodeNumber"] = t.EpisodeNumber;
    out["BonusAssets"] =
        Array(t.BonusAssets.Count, t.BonusAssets.Array, [](const LM_WS_BonusAsset& b) {
            LmwsJson asset;
            asset["BonusAssetID"] = b.BonusAssetID;
            asset["Profile"] = b.Profile;
            asset["BonusType"] = b.BonusType;
            return asset;
        });
    out["IsTvListing"] = Flag(t.IsTvListing);
    out["MPAARating"] = Text(t.MPAARating);
    out["AvailableProducts"] = Array(t.AvailableProducts.Count, t.AvailableProducts.Array, Product);
    out["IsTHXMediaDirectorEnabled"] = Flag(t.IsTHXMediaDirectorEnabled);
    out["IsTHXMediaDirectorEnabledForTrailer"] = Flag(t.IsTHXMediaDirectorEnabledForTrailer);
    out["CHVRSRating"] = Text(t.CHVRSRating);
    out["LoyaltyPointsForBuy"] = Text(t.LoyaltyPointsForBuy);
    out["LoyaltyPointsForRent"] = Text(t.LoyaltyPointsForRent);
}

LmwsJson Titles(const LM_WS_TitleListingArray& a) {
    return Array(a.Count, a.Array, [](const LM_WS_TitleListing& t) { return LmwsToJson(t); });
}

// A purchased title's fields, added to `out`: the title's, then the purchase's.
void AddPurchased(LmwsJson& out, const LM_WS_TitleListingPurchased& p) {
    AddTitle(out, p.TitleListing);
    out["EpisodeID"] = p.EpisodeID;
    out["TvListingTitleID"] = p.TvListingTitleID;
    out["PurchaseType"] = p.PurchaseType;
    out["Status"] = p.Status;
    out["RentalPeriod"] = Text(p.RentalPeriod);
    out["PassID"] = p.PassID;
    out["PlayStatus"] = p.PlayStatus;
    out["StartTimeSeconds"] = p.StartTimeSeconds;
}

LmwsJson Purchased(const LM_WS_TitleListingPurchased& p) {
    LmwsJson out = LmwsJson::object();
    AddPurchased(out, p);
    return out;
}

}  // namespace

LmwsJson LmwsToJson(const LM_WS_LengthAndText& r) {
    LmwsJson out;
    out["Length"] = r.Length;
    out["Text"] = r.Text != nullptr ? LmwsJson(std::string(r.Text, r.Length)) : LmwsJson();
    return out;
}

LmwsJson LmwsToJson(const LM_WS_FileType& r) {
    LmwsJson out;
    out["File_DRMProvider"] = r.DRMProvider;
    out["File_AccessType"] = r.AccessType;
    out["File_FileProfile"] = r.FileProfile;
    out["File_VideoFormat"] = r.VideoFormat;
    out["File_FileExtension"] = r.FileExtension;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_StandardResponse& r) {
    return WithResponse(r.ResponseCode, r.ResponseMessage);
}

LmwsJson LmwsToJson(const LM_WS_Navigation& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Genres"] = Array(r.Genres.Count, r.Genres.Array, [](const LM_WS_Genre& g) {
        LmwsJson genre;
        genre["ID"] = g.ID;
        genre["Name"] = Text(g.Name);
        genre["Visible"] = Flag(g.Visible);
        genre["ParentId"] = g.ParentId;
        return genre;
    });
    return out;
}

LmwsJson LmwsToJson(const LM_WS_GenreLabelResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Label"] = Text(r.Label);
    out["LabelMessage"] = Text(r.LabelMessage);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TitleListing& r) {
    LmwsJson out = LmwsJson::object();
    AddTitle(out, r);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TitleListingResponse& r) {
    LmwsJson out = LmwsJson::object();
    AddTitle(out, r.TitleListing);
    out["ResponseCode"] = r.ResponseCode;
    out["ResponseMessage"] = Text(r.ResponseMessage);
    out["Synopsys"] = Text(r.Synopsys);
    out["UserRating"] = r.UserRating;
    out["Directors"] = Text(r.Directors);
    out["Actors"] = Text(r.Actors);
    out["Writers"] = Text(r.Writers);
    out["Producers"] = Text(r.Producers);
    out["Copyright"] = Text(r.Copyright);
    out["RunTime"] = Text(r.RunTime);
    out["IsAvailInUserWishList"] = Flag(r.IsAvailInUserWishList);
    out["RatingReason"] = Text(r.RatingReason);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TitleListingResponses& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["TitleListingResponse"] =
        Array(r.TitleListingResponses.Count, r.TitleListingResponses.Array,
              [](const LM_WS_TitleListingResponse& t) { return LmwsToJson(t); });
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TitlesResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["GenreID"] = r.GenreID;
    out["CurrentPageNumber"] = r.CurrentPageNumber;
    out["ItemsPerPage"] = r.ItemsPerPage;
    out["TotalPages"] = r.TotalPages;
    out["TotalItems"] = r.TotalItems;
    out["Titles"] = Titles(r.Titles);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TitlesResponseArray& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["GetTitlesResponse"] =
        Array(r.Count, r.Array, [](const LM_WS_TitlesResponse& t) { return LmwsToJson(t); });
    return out;
}

LmwsJson LmwsToJson(const LM_WS_RecommendedTitlesResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Titles"] = Titles(r.Titles);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TvEpisodeList& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Episodes"] = Array(r.Episodes.Count, r.Episodes.Array, [](const LM_WS_TvEpisode& e) {
        LmwsJson episode;
        episode["EpisodeID"] = e.EpisodeID;
        episode["EpisodeName"] = Text(e.EpisodeName);
        episode["EpisodeNumber"] = e.EpisodeNumber;
        return episode;
    });
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TranslateRecboxExternalIDResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["RecboxExternalId"] = Text(r.RecboxExternalId);
    out["TitleId"] = r.TitleId;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TranslateSkuIDResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["TitleId"] = r.TitleId;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_MyVideosResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Titles"] = Array(r.Titles.Count, r.Titles.Array, Purchased);
    out["CurrentPageNumber"] = r.CurrentPageNumber;
    out["ItemsPerPage"] = r.ItemsPerPage;
    out["TotalPages"] = r.TotalPages;
    out["TotalItems"] = r.TotalItems;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_ConfigResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["ConfigurationSet"] = Array(r.Count, r.Array, [](const LM_WS_ConfigurationItem& item) {
        LmwsJson one;
        one["Key"] = Text(item.Key);
        one["Value"] = Text(item.Value);
        return one;
    });
    return out;
}

LmwsJson LmwsToJson(const LM_WS_AuthorizeDeviceResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["AuthToken"] = Text(r.AuthToken);
    out["EmailAddress"] = Text(r.EmailAddress);
    out["DeviceID"] = Text(r.DeviceID);
    out["DeviceName"] = Text(r.DeviceName);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_PurchaseResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["PassID"] = r.PassID;
    out["TransactionId"] = r.TransactionId;
    out["TransactionAuthNum"] = Text(r.TransactionAuthNum);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_WishlistItemsResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Titles"] = Array(r.Titles.Count, r.Titles.Array, Purchased);
    out["CurrentPageNumber"] = r.CurrentPageNumber;
    out["ItemsPerPage"] = r.ItemsPerPage;
    out["TotalPages"] = r.TotalPages;
    out["TotalItems"] = r.TotalItems;
    out["SortOrder"] = r.SortOrder;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_RentalExpirationResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["ShouldDisplay"] = Flag(r.ShouldDisplay);
    out["HoursRemaining"] = r.HoursRemaining;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_AdultVerificationPinResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["IsPinVerified"] = Flag(r.IsPinVerified);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_GiftCertificateResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Balance"] = r.Balance;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_EmailAddressResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["EmailAddress"] = Text(r.EmailAddress);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_BillingInfoResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["CCLastFour"] = Text(r.CCLastFour);
    out["CCTypeId"] = r.CCTypeId;
    out["CCType"] = Text(r.CCType);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_PPCardBalanceResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Balance"] = r.Balance;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_BillingInfoAndPPCBalanceResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["BillingInfo"] = LmwsToJson(r.BillingInfo);
    out["PPCardBalance"] = LmwsToJson(r.PPCardBalance);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_SettingsPageInfo& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["Account"] = Text(r.Account);
    out["DeviceID"] = Text(r.DeviceID);
    out["DeviceName"] = Text(r.DeviceName);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_CalcOrderTaxResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    // Decimals kept as the service wrote them, like a product's price.
    out["SubTotal"] = Text(r.SubTotal);
    out["TotalPrice"] = Text(r.TotalPrice);
    out["Tax"] = Text(r.Tax);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_StreamingAssetLocationResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["StreamingAssetLocation"] = Text(r.StreamingAssetLocation);
    out["AssetID"] = r.AssetID;
    out["StreamID"] = Text(r.StreamID);
    out["DRMServerURL"] = Text(r.DRMServerURL);
    out["DRMACKServerURL"] = Text(r.DRMACKServerURL);
    out["Status"] = r.Status;
    out["StartTimeSeconds"] = r.StartTimeSeconds;
    out["HeartbeatURL"] = Text(r.HeartbeatURL);
    out["HeartbeatPollInSeconds"] = r.HeartbeatPollInSeconds;
    return out;
}

LmwsJson LmwsToJson(const LM_WS_THXMediaDirectorResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["LongFormat"] = Text(r.LongFormat);
    out["ShortFormat"] = Text(r.ShortFormat);
    return out;
}

LmwsJson LmwsToJson(const LM_WS_TitlesPurchasedForPassesResponse& r) {
    LmwsJson out = WithResponse(r.ResponseCode, r.ResponseMessage);
    out["TitleListingPurchasedForPass"] =
        Array(r.Count, r.Array, [](const LM_WS_TitleListingPurchasedForPass& p) {
            // Flat as on the wire: the purchased title, then the status of its own lookup.
            LmwsJson one = LmwsJson::object();
            AddPurchased(one, p.Purchased);
            one["ResponseCode"] = p.ResponseCode;
            one["ResponseMessage"] = Text(p.ResponseMessage);
            return one;
        });
    return out;
}

std::string LmwsOutputLine(const std::string& operation, LM_WS_Status status,
                           const LmwsJson& result) {
    LmwsJson line;
    line["operation"] = operation;
    line["status"] = status;
    line["result"] = result.is_null() ? LmwsJson::object() : result;
    return line.dump(-1, ' ', false, LmwsJson::error_handler_t::replace);
}
