#include "SimAccountServices.h"

#include <strings.h>

#include <string>

#include "SimServices.h"

namespace lmsim {

namespace {

std::string Str(const char* s) {
    return s != nullptr ? s : "";
}

template <class T>
T** NewArray(struct soap* soap, size_t count) {
    return static_cast<T**>(soap_malloc(soap, (count == 0 ? 1 : count) * sizeof(T*)));
}

const char* const kProfileNames[] = {"UNKNOWN",
                                     "STANDARD",
                                     "HIGH_DEFINITION",
                                     "PORTABLE",
                                     "PORTABLE_STANDARD",
                                     "TEMP5",
                                     "PORTABLE_WIDE",
                                     "STANDARD_DEFINITION_3D",
                                     "HIGH_DEFINITION_3D",
                                     "STANDARD_DEFINITION_REALD_3D",
                                     "HIGH_DEFINITION_REALD_3D"};
const char* const kAudioNames[] = {"Stereo_Standard",           "Dolby_Stereo_AC3",
                                   "Dolby_Digital_Plus_Stereo", "Dolby_Digital_Plus_51",
                                   "DTS_Express_Stereo",        "DTS_Express_51"};

template <size_t N>
const char* Name(const char* const (&names)[N], int value) {
    return value >= 0 && static_cast<size_t>(value) < N ? names[value] : "UNKNOWN";
}

// The trailer `bonusAssetId` and its title, or null.
const Title* FindBonus(const Catalogue& catalogue, int bonusAssetId, const BonusAsset** bonus) {
    for (const Title& t : catalogue.Titles()) {
        for (const BonusAsset& b : t.bonusAssets) {
            if (b.id == bonusAssetId) {
                *bonus = &b;
                return &t;
            }
        }
    }
    return nullptr;
}

}  // namespace

Caller CallerOf(const struct soap* soap) {
    Caller caller;
    const SOAP_ENV__Header* header = soap->header;
    if (header == nullptr) {
        return caller;
    }
    if (header->wsse__Security != nullptr && header->wsse__Security->UsernameToken != nullptr) {
        const _wsse__UsernameToken* token = header->wsse__Security->UsernameToken;
        caller.user = Str(token->Username);
        caller.password = token->Password != nullptr ? Str(token->Password->__item) : "";
    }
    // Each service has a device header element of its own; all three carry the same fields.
    bool found = false;
    auto take = [&](const auto* device) {
        if (device != nullptr && !found) {
            found = true;
            caller.deviceId = Str(device->DestinationUniqueID);
            caller.token = Str(device->AuthToken);
        }
    };
    take(header->LM1__StreamDeviceRequestSettings_);
    take(header->LM1__DeviceSettings_);
    take(header->LM1__DownloadDeviceRequestSettings_);
    return caller;
}

AccountAnswers::AccountAnswers(struct soap* soap, const SimState& state)
    : m_Soap(soap), m_State(state), m_Accounts(state.accounts), m_Caller(CallerOf(soap)) {}

char* AccountAnswers::Text(const std::string& s) {
    return soap_strdup(m_Soap, s.c_str());
}

std::string AccountAnswers::Url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_State.httpPort) + path;
}

template <class T>
T* AccountAnswers::Standard(T* response, const Outcome& outcome) {
    response->ResponseCode = outcome.code;
    response->ResponseMessage = Text(outcome.message);
    return response;
}

template <class T>
void AccountAnswers::FillPurchased(T* out, const PassView& pass) {
    CatalogueAnswers(m_Soap, m_State).FillListing(out, *pass.title);
    out->TvListingTitleID = pass.title->isTv ? pass.title->id : 0;
    out->PurchaseType = static_cast<LM1__PurchaseType>(pass.product->purchaseType);
    out->Status =
        pass.expired ? LM1__WatchStatusFilter__RentAgain : LM1__WatchStatusFilter__WatchNow;
    out->RentalPeriod = Text(std::to_string(pass.product->rentalPeriodHours));
    out->PassID = pass.passId;
    out->PlayStatus = static_cast<LM1__PlayStatus>(pass.playStatus);
    out->StartTimeSeconds = pass.positionSeconds;
}

// ---- Devices and the account ----

LM1__AuthorizeDeviceResponse* AccountAnswers::Authorize(int pin) {
    Authorization a = m_Accounts.Authorize(m_Caller, pin);
    LM1__AuthorizeDeviceResponse* r = Standard(soap_new_LM1__AuthorizeDeviceResponse(m_Soap), a);
    if (a.ok()) {
        r->AuthToken = Text(a.token);
        r->EmailAddress = Text(a.email);
        r->DeviceID = Text(a.deviceId);
        r->DeviceName = Text(a.deviceName);
    }
    return r;
}

LM1__StandardResponse* AccountAnswers::Deactivate() {
    return Standard(soap_new_LM1__StandardResponse(m_Soap), m_Accounts.Deactivate(m_Caller));
}

bool AccountAnswers::TokenValid() const {
    return m_Accounts.TokenValid(m_Caller);
}

LM1__BillingInfoResponse* AccountAnswers::Billing() {
    AccountInfo info = m_Accounts.Info(m_Caller);
    LM1__BillingInfoResponse* r = Standard(soap_new_LM1__BillingInfoResponse(m_Soap), info);
    if (info.ok()) {
        r->CCLastFour = Text(info.ccLastFour);
        r->CCTypeId = info.ccTypeId;
        r->CCType = Text(info.ccType);
    }
    return r;
}

LM1__PPCardBalanceResponse* AccountAnswers::PrepaidBalance() {
    AccountInfo info = m_Accounts.Info(m_Caller);
    LM1__PPCardBalanceResponse* r = Standard(soap_new_LM1__PPCardBalanceResponse(m_Soap), info);
    r->Balance = info.balanceCents;
    return r;
}

LM1__BillingInfoAndPPCBalanceResponse* AccountAnswers::BillingAndBalance() {
    LM1__BillingInfoAndPPCBalanceResponse* r =
        soap_new_LM1__BillingInfoAndPPCBalanceResponse(m_Soap);
    r->BillingInfo = Billing();
    r->PPCardBalance = PrepaidBalance();
    return r;
}

LM1__GetEmailAddressResponse* AccountAnswers::Email() {
    AccountInfo info = m_Accounts.Info(m_Caller);
    LM1__GetEmailAddressResponse* r = Standard(soap_new_LM1__GetEmailAddressResponse(m_Soap), info);
    if (info.ok()) {
        r->EmailAddress = Text(info.email);
    }
    return r;
}

LM1__SettingsPageInfo* AccountAnswers::Settings() {
    AccountInfo info = m_Accounts.Info(m_Caller);
    LM1__SettingsPageInfo* r = Standard(soap_new_LM1__SettingsPageInfo(m_Soap), info);
    if (info.ok()) {
        r->Account = Text(info.user);
        r->DeviceID = Text(info.deviceId);
        r->DeviceName = Text(info.deviceName);
    }
    return r;
}

LM1__GiftCertificateResponse* AccountAnswers::RedeemGiftCertificate(const char* certificate) {
    Balance b = m_Accounts.RedeemGiftCertificate(m_Caller, Str(certificate));
    LM1__GiftCertificateResponse* r = Standard(soap_new_LM1__GiftCertificateResponse(m_Soap), b);
    r->Balance = b.cents;
    return r;
}

LM1__CheckAdultVerificationEnabledResponse* AccountAnswers::AdultVerificationEnabled() {
    return Standard(soap_new_LM1__CheckAdultVerificationEnabledResponse(m_Soap),
                    m_Accounts.AdultVerificationEnabled(m_Caller));
}

LM1__CheckAdultVerificationPinResponse* AccountAnswers::CheckAdultPin(const char* pin) {
    PinCheck check = m_Accounts.CheckAdultPin(m_Caller, Str(pin));
    LM1__CheckAdultVerificationPinResponse* r =
        Standard(soap_new_LM1__CheckAdultVerificationPinResponse(m_Soap), check);
    r->IsPinVerified = check.verified;
    return r;
}

LM1__GetConfigResponse* AccountAnswers::Config() {
    // The bandwidth file's URL names no port: the client reaches the service's plain-HTTP side
    // on the port of its deployment, which is where this simulator serves the file.
    const std::pair<const char*, std::string> items[] = {
        {"BandwithCheckURL", "http://127.0.0.1" + m_State.bandwidthPath},
        {"HeartbeatPollInSeconds", "60"},
        {"StoreName", "Lumora"},
        {"SupportURL", Url("/support")},
    };
    const size_t count = sizeof(items) / sizeof(items[0]);
    LM1__GetConfigResponse* r = Standard(soap_new_LM1__GetConfigResponse(m_Soap), Outcome());
    r->ConfigurationSet = soap_new_LM1__ArrayOfConfigurationItemOfString(m_Soap);
    r->ConfigurationSet->__sizeConfiguration = static_cast<int>(count);
    r->ConfigurationSet->Configuration = NewArray<LM1__ConfigurationItemOfString>(m_Soap, count);
    for (size_t i = 0; i < count; ++i) {
        LM1__ConfigurationItemOfString* item = soap_new_LM1__ConfigurationItemOfString(m_Soap);
        item->Key = Text(items[i].first);
        item->Value = Text(items[i].second);
        r->ConfigurationSet->Configuration[i] = item;
    }
    return r;
}

int AccountAnswers::CountryId() const {
    return m_Accounts.Info(m_Caller).countryId;
}

LM1__AudioSetting AccountAnswers::AudioSetting() const {
    return static_cast<LM1__AudioSetting>(m_Accounts.Info(m_Caller).audioSetting);
}

LM1__StandardResponse* AccountAnswers::SetAudioSetting(int setting) {
    return Standard(soap_new_LM1__StandardResponse(m_Soap),
                    m_Accounts.SetAudioSetting(m_Caller, setting));
}

LM1__StandardResponse* AccountAnswers::RequestedError() {
    Outcome error;
    error.Refuse(1, "The error this operation always answers");
    return Standard(soap_new_LM1__StandardResponse(m_Soap), error);
}

// ---- Wishlist ----

LM1__GetWishlistItemsResponse* AccountAnswers::Wishlist(int sortOrder, int page, int perPage,
                                                        int titleType) {
    WishlistPage w = m_Accounts.Wishlist(m_Caller, sortOrder, page, perPage, titleType);
    LM1__GetWishlistItemsResponse* r = Standard(soap_new_LM1__GetWishlistItemsResponse(m_Soap), w);
    r->SortOrder = w.sortOrder;
    r->CurrentPageNumber = static_cast<short>(w.page.currentPage);
    r->ItemsPerPage = static_cast<short>(w.page.itemsPerPage);
    r->TotalPages = static_cast<short>(w.page.totalPages);
    r->TotalItems = static_cast<short>(w.page.totalItems);
    const size_t count = w.page.items.size();
    r->Titles = soap_new_LM1__ArrayOfTitleListingPurchased(m_Soap);
    r->Titles->__sizeTitleListingPurchased = static_cast<int>(count);
    r->Titles->TitleListingPurchased = NewArray<LM1__TitleListingPurchased>(m_Soap, count);
    for (size_t i = 0; i < count; ++i) {
        const Title& title = *w.page.items[i];
        LM1__TitleListingPurchased* t = soap_new_LM1__TitleListingPurchased(m_Soap);
        CatalogueAnswers(m_Soap, m_State).FillListing(t, title);
        t->TitlePosition = static_cast<short>((w.page.currentPage - 1) * w.page.itemsPerPage +
                                              static_cast<int>(i) + 1);
        t->TvListingTitleID = title.isTv ? title.id : 0;
        // Listed, not bought: no pass, no watch status.
        t->PurchaseType = LM1__PurchaseType__any;
        t->Status = LM1__WatchStatusFilter__Undefined;
        int rentalHours = 0;
        for (const Product& p : title.products) {
            if (p.purchaseType == kRent) {
                rentalHours = p.rentalPeriodHours;
            }
        }
        t->RentalPeriod = Text(std::to_string(rentalHours));
        t->PlayStatus = LM1__PlayStatus__stopped;
        r->Titles->TitleListingPurchased[i] = t;
    }
    return r;
}

LM1__WishListActionResponse* AccountAnswers::AddToWishlist(int titleId) {
    return Standard(soap_new_LM1__WishListActionResponse(m_Soap),
                    m_Accounts.AddToWishlist(m_Caller, titleId));
}

LM1__WishListActionResponse* AccountAnswers::RemoveFromWishlist(int titleId) {
    return Standard(soap_new_LM1__WishListActionResponse(m_Soap),
                    m_Accounts.RemoveFromWishlist(m_Caller, titleId));
}

LM1__WishListActionResponse* AccountAnswers::ClearWishlist() {
    return Standard(soap_new_LM1__WishListActionResponse(m_Soap),
                    m_Accounts.ClearWishlist(m_Caller));
}

bool AccountAnswers::InWishlist(int titleId) const {
    return m_Accounts.InWishlist(m_Caller, titleId);
}

// ---- Purchases ----

LM1__PurchaseResponse* AccountAnswers::Buy(int skuId, const char* usePrepaidFunds) {
    const bool prepaid = usePrepaidFunds != nullptr && strcasecmp(usePrepaidFunds, "yes") == 0;
    Purchase p = m_Accounts.Buy(m_Caller, skuId, prepaid);
    LM1__PurchaseResponse* r = Standard(soap_new_LM1__PurchaseResponse(m_Soap), p);
    if (p.ok()) {
        r->PassID = p.passId;
        r->TransactionId = p.transactionId;
        r->TransactionAuthNum = Text(p.authNum);
    }
    return r;
}

LM1__CalcOrderTaxResponse* AccountAnswers::OrderTax(int skuId) {
    Tax t = m_Accounts.OrderTax(m_Caller, skuId);
    LM1__CalcOrderTaxResponse* r = Standard(soap_new_LM1__CalcOrderTaxResponse(m_Soap), t);
    r->SubTotal = Text(t.ok() ? t.subTotal : "0.00");
    r->Tax = Text(t.ok() ? t.tax : "0.00");
    r->TotalPrice = Text(t.ok() ? t.total : "0.00");
    return r;
}

LM1__GetMyVideosResponse* AccountAnswers::MyVideos(int page, int perPage, int purchaseType,
                                                   int titleType, int watchStatus) {
    PassPage passes =
        m_Accounts.Passes(m_Caller, page, perPage, purchaseType, titleType, watchStatus);
    LM1__GetMyVideosResponse* r = Standard(soap_new_LM1__GetMyVideosResponse(m_Soap), passes);
    r->CurrentPageNumber = static_cast<short>(passes.currentPage);
    r->ItemsPerPage = static_cast<short>(passes.itemsPerPage);
    r->TotalPages = static_cast<short>(passes.totalPages);
    r->TotalItems = static_cast<short>(passes.totalItems);
    const size_t count = passes.passes.size();
    r->Titles = soap_new_LM1__ArrayOfTitleListingPurchased(m_Soap);
    r->Titles->__sizeTitleListingPurchased = static_cast<int>(count);
    r->Titles->TitleListingPurchased = NewArray<LM1__TitleListingPurchased>(m_Soap, count);
    for (size_t i = 0; i < count; ++i) {
        LM1__TitleListingPurchased* t = soap_new_LM1__TitleListingPurchased(m_Soap);
        FillPurchased(t, passes.passes[i]);
        t->TitlePosition = static_cast<short>((passes.currentPage - 1) * passes.itemsPerPage +
                                              static_cast<int>(i) + 1);
        r->Titles->TitleListingPurchased[i] = t;
    }
    return r;
}

LM1__ArrayOfGetMyVideosResponse* AccountAnswers::MyVideosList(int page, int perPage) {
    LM1__ArrayOfGetMyVideosResponse* r = soap_new_LM1__ArrayOfGetMyVideosResponse(m_Soap);
    r->__sizeGetMyVideosResponse = 1;
    r->GetMyVideosResponse = NewArray<LM1__GetMyVideosResponse>(m_Soap, 1);
    // Every pass of the account, in force or not.
    r->GetMyVideosResponse[0] = MyVideos(page, perPage, kAnyPurchase, kAnyTitle, 3);
    return r;
}

bool AccountAnswers::OwnsTitle(int titleId) const {
    return m_Accounts.OwnsTitle(m_Caller, titleId);
}

bool AccountAnswers::OwnsSku(int skuId) const {
    return m_Accounts.OwnsSku(m_Caller, skuId);
}

LM1__CheckRentalExpirationResponse* AccountAnswers::RentalExpiration(int passId) {
    PassLookup found = m_Accounts.FindPass(m_Caller, passId);
    LM1__CheckRentalExpirationResponse* r =
        Standard(soap_new_LM1__CheckRentalExpirationResponse(m_Soap), found);
    if (found.ok()) {
        // A rental always has an expiry to show; a bought title has none.
        r->ShouldDisplay = found.pass.product->purchaseType == kRent;
        r->HoursRemaining = found.pass.hoursRemaining;
    }
    return r;
}

LM1__TitleListingPurchasedForPass* AccountAnswers::TitleForPass(int passId) {
    PassLookup found = m_Accounts.FindPass(m_Caller, passId);
    LM1__TitleListingPurchasedForPass* r =
        Standard(soap_new_LM1__TitleListingPurchasedForPass(m_Soap), found);
    if (found.ok()) {
        FillPurchased(r, found.pass);
    } else {
        r->PassID = passId;
    }
    return r;
}

LM1__ArrayOfTitleListingPurchasedForPass* AccountAnswers::TitlesForPasses(
    const LM1__ArrayOfInt* passIds) {
    const std::vector<int> ids = CatalogueAnswers::Ints(passIds);
    LM1__ArrayOfTitleListingPurchasedForPass* r =
        soap_new_LM1__ArrayOfTitleListingPurchasedForPass(m_Soap);
    r->__sizeTitleListingPurchasedForPass = static_cast<int>(ids.size());
    r->TitleListingPurchasedForPass =
        NewArray<LM1__TitleListingPurchasedForPass>(m_Soap, ids.size());
    for (size_t i = 0; i < ids.size(); ++i) {
        r->TitleListingPurchasedForPass[i] = TitleForPass(ids[i]);
    }
    return r;
}

LM1__StandardResponse* AccountAnswers::RemoveAllPurchases(const char* password) {
    return Standard(soap_new_LM1__StandardResponse(m_Soap),
                    m_Accounts.RemoveAllPurchases(m_Caller, Str(password)));
}

// ---- Streaming ----

LM1__GetStreamingAssetLocationResponse* AccountAnswers::Location(const Stream& stream) {
    LM1__GetStreamingAssetLocationResponse* r =
        Standard(soap_new_LM1__GetStreamingAssetLocationResponse(m_Soap), stream);
    if (!stream.ok()) {
        return r;
    }
    const int assetId = stream.pass.title->assetId;
    r->StreamingAssetLocation = Text(Url("/stream/" + std::to_string(assetId) + "-" +
                                         std::to_string(stream.fileProfile) + ".mp4"));
    r->AssetID = assetId;
    r->StreamID = Text(stream.streamId);
    r->DRMServerURL = Text(Url("/drm/license"));
    r->DRMACKServerURL = Text(Url("/drm/ack"));
    r->Status = static_cast<LM1__PlayStatus>(stream.pass.playStatus);
    r->StartTimeSeconds = stream.pass.positionSeconds;
    r->HeartbeatURL = Text(Url("/stream/heartbeat"));
    r->HeartbeatPollInSeconds = 60;
    return r;
}

LM1__GetStreamingAssetLocationResponse* AccountAnswers::StartStream(int passId, int fileProfile) {
    return Location(m_Accounts.StartStream(m_Caller, passId, fileProfile));
}

LM1__GetStreamingAssetLocationResponse* AccountAnswers::LastStream(int passId, int fileProfile) {
    return Location(m_Accounts.LastStream(m_Caller, passId, fileProfile));
}

LM1__GetStreamingAssetLocationResponse* AccountAnswers::BonusStream(int bonusAssetId) {
    Outcome outcome = m_Accounts.Authorised(m_Caller);
    const BonusAsset* bonus = nullptr;
    if (outcome.ok() && FindBonus(m_State.catalogue, bonusAssetId, &bonus) == nullptr) {
        outcome.Refuse(Code::kNotFound, "Unknown bonus asset");
    }
    LM1__GetStreamingAssetLocationResponse* r =
        Standard(soap_new_LM1__GetStreamingAssetLocationResponse(m_Soap), outcome);
    if (outcome.ok()) {
        // Trailers are free and start at the beginning: no stream session to report on.
        r->StreamingAssetLocation = Text(Url("/trailer/" + std::to_string(bonusAssetId) + "-" +
                                             std::to_string(bonus->profile) + ".mp4"));
        r->AssetID = bonusAssetId;
        r->StreamID = Text("");
        r->Status = LM1__PlayStatus__stopped;
    }
    return r;
}

LM1__URLForStreamingFileResponse* AccountAnswers::BonusURL(int bonusAssetId) {
    LM1__GetStreamingAssetLocationResponse* stream = BonusStream(bonusAssetId);
    LM1__URLForStreamingFileResponse* r = soap_new_LM1__URLForStreamingFileResponse(m_Soap);
    r->ResponseCode = stream->ResponseCode;
    r->ResponseMessage = stream->ResponseMessage;
    r->URL = stream->StreamingAssetLocation;
    return r;
}

LM1__StandardResponse* AccountAnswers::ReportStream(const char* streamId, int playStatus,
                                                    int stopSeconds) {
    return Standard(soap_new_LM1__StandardResponse(m_Soap),
                    m_Accounts.ReportStream(m_Caller, Str(streamId), playStatus, stopSeconds));
}

LM1__THXMediaDirectorResponse* AccountAnswers::MediaDirector(int passId, int fileProfile,
                                                             int audioSetting) {
    PassLookup found = m_Accounts.FindPass(m_Caller, passId);
    if (found.ok() && !found.pass.title->thx) {
        found.Refuse(Code::kNoMediaDirector, "The title has no THX media director data");
    }
    LM1__THXMediaDirectorResponse* r =
        Standard(soap_new_LM1__THXMediaDirectorResponse(m_Soap), found);
    if (found.ok()) {
        const Title& title = *found.pass.title;
        r->LongFormat =
            Text("THX Media Director: " + title.name + ", " + Name(kProfileNames, fileProfile) +
                 ", " + Name(kAudioNames, audioSetting));
        r->ShortFormat = Text("THX|" + std::to_string(title.assetId) + "|" +
                              std::to_string(fileProfile) + "|" + std::to_string(audioSetting));
    }
    return r;
}

LM1__THXMediaDirectorResponse* AccountAnswers::BonusMediaDirector(int bonusAssetId, int fileProfile,
                                                                  int bonusType) {
    Outcome outcome = m_Accounts.Authorised(m_Caller);
    const BonusAsset* bonus = nullptr;
    const Title* title =
        outcome.ok() ? FindBonus(m_State.catalogue, bonusAssetId, &bonus) : nullptr;
    if (outcome.ok() && title == nullptr) {
        outcome.Refuse(Code::kNotFound, "Unknown bonus asset");
    } else if (outcome.ok() && !title->thx) {
        outcome.Refuse(Code::kNoMediaDirector, "The trailer has no THX media director data");
    }
    LM1__THXMediaDirectorResponse* r =
        Standard(soap_new_LM1__THXMediaDirectorResponse(m_Soap), outcome);
    if (outcome.ok()) {
        r->LongFormat = Text("THX Media Director: " + title->name + " (trailer), " +
                             Name(kProfileNames, fileProfile));
        r->ShortFormat = Text("THX|" + std::to_string(bonusAssetId) + "|" +
                              std::to_string(fileProfile) + "|trailer" + std::to_string(bonusType));
    }
    return r;
}

// ---- The operations only the streaming service has ----

int SimStreamAPI::getMyStreamingVideosList(_LM1__getMyStreamingVideosList* in,
                                           _LM1__getMyStreamingVideosListResponse& out) {
    out.getMyStreamingVideosListResult =
        Accounts().MyVideosList(in->CurrentPageNumber, in->ItemsPerPage);
    return SOAP_OK;
}

int SimStreamAPI::getMyStreamingVideos(_LM1__getMyStreamingVideos* in,
                                       _LM1__getMyStreamingVideosResponse& out) {
    out.getMyStreamingVideosResult =
        Accounts().MyVideos(in->CurrentPageNumber, in->ItemsPerPage, in->PurchaseType,
                            in->TitleType, in->WatchStatusFilter);
    return SOAP_OK;
}

int SimStreamAPI::getTitleListingsPurchasedForPasses(
    _LM1__getTitleListingsPurchasedForPasses* in,
    _LM1__getTitleListingsPurchasedForPassesResponse& out) {
    out.getTitleListingsPurchasedForPassesResult = Accounts().TitlesForPasses(in->Passes);
    return SOAP_OK;
}

int SimStreamAPI::getTitleListingPurchasedForPass(
    _LM1__getTitleListingPurchasedForPass* in, _LM1__getTitleListingPurchasedForPassResponse& out) {
    out.getTitleListingPurchasedForPassResult = Accounts().TitleForPass(in->PassID);
    return SOAP_OK;
}

int SimStreamAPI::checkForPurchasedStreamByTitleID(
    _LM1__checkForPurchasedStreamByTitleID* in,
    _LM1__checkForPurchasedStreamByTitleIDResponse& out) {
    out.checkForPurchasedStreamByTitleIDResult = Accounts().OwnsTitle(in->TitleID);
    return SOAP_OK;
}

int SimStreamAPI::checkForPurchasedStream(_LM1__checkForPurchasedStream* in,
                                          _LM1__checkForPurchasedStreamResponse& out) {
    out.checkForPurchasedStreamResult = Accounts().OwnsSku(in->SkuID);
    return SOAP_OK;
}

int SimStreamAPI::getBillingInfoAndPPCBalance(_LM1__getBillingInfoAndPPCBalance*,
                                              _LM1__getBillingInfoAndPPCBalanceResponse& out) {
    out.getBillingInfoAndPPCBalanceResult = Accounts().BillingAndBalance();
    return SOAP_OK;
}

int SimStreamAPI::manageStreamInstanceStatus(_LM1__manageStreamInstanceStatus* in,
                                             _LM1__manageStreamInstanceStatusResponse& out) {
    out.manageStreamInstanceStatusResult =
        Accounts().ReportStream(in->StreamID, in->Status, in->StopTimeSeconds);
    return SOAP_OK;
}

int SimStreamAPI::getStreamingAssetLocation(_LM1__getStreamingAssetLocation* in,
                                            _LM1__getStreamingAssetLocationResponse& out) {
    out.getStreamingAssetLocationResult = Accounts().StartStream(in->PassID, in->FileProfile);
    return SOAP_OK;
}

int SimStreamAPI::getBonusAssetLocation(_LM1__getBonusAssetLocation* in,
                                        _LM1__getBonusAssetLocationResponse& out) {
    out.getBonusAssetLocationResult = Accounts().BonusStream(in->BonusAssetID);
    return SOAP_OK;
}

int SimStreamAPI::loadLastStreamingAssetLocationForPass(
    _LM1__loadLastStreamingAssetLocationForPass* in,
    _LM1__loadLastStreamingAssetLocationForPassResponse& out) {
    out.loadLastStreamingAssetLocationForPassResult =
        Accounts().LastStream(in->PassID, in->FileProfile);
    return SOAP_OK;
}

int SimStreamAPI::removeAllMyPurchases(_LM1__removeAllMyPurchases* in,
                                       _LM1__removeAllMyPurchasesResponse& out) {
    out.removeAllMyPurchasesResult = Accounts().RemoveAllPurchases(in->password);
    return SOAP_OK;
}

int SimStreamAPI::ReturnError(_LM1__ReturnError*, _LM1__ReturnErrorResponse& out) {
    out.ReturnErrorResult = Accounts().RequestedError();
    return SOAP_OK;
}

int SimStreamAPI::calcOrderTax(_LM1__calcOrderTax* in, _LM1__calcOrderTaxResponse& out) {
    out.calcOrderTaxResult = Accounts().OrderTax(in->SKUID);
    return SOAP_OK;
}

int SimStreamAPI::getAudioDefaultProperty(_LM1__getAudioDefaultProperty*,
                                          _LM1__getAudioDefaultPropertyResponse& out) {
    out.getAudioDefaultPropertyResult = Accounts().AudioSetting();
    return SOAP_OK;
}

int SimStreamAPI::setAudioDefaultProperty(_LM1__setAudioDefaultProperty* in,
                                          _LM1__setAudioDefaultPropertyResponse& out) {
    out.setAudioDefaultPropertyResult = Accounts().SetAudioSetting(in->AudioSetting);
    return SOAP_OK;
}

int SimStreamAPI::getTHXMediaDirector(_LM1__getTHXMediaDirector* in,
                                      _LM1__getTHXMediaDirectorResponse& out) {
    out.getTHXMediaDirectorResult =
        Accounts().MediaDirector(in->PassID, in->FileProfile, in->AudioSetting);
    return SOAP_OK;
}

int SimStreamAPI::getTHXMediaDirectorBonusAsset(_LM1__getTHXMediaDirectorBonusAsset* in,
                                                _LM1__getTHXMediaDirectorBonusAssetResponse& out) {
    out.getTHXMediaDirectorBonusAssetResult =
        Accounts().BonusMediaDirector(in->BonusAssetID, in->FileProfile, in->BonusAssetType);
    return SOAP_OK;
}

// ---- The operations only the download service has ----

int SimDownloadAPI::getMyVideos(_LM1__getMyVideos* in, _LM1__getMyVideosResponse& out) {
    out.getMyVideosResult =
        Accounts().MyVideos(in->CurrentPageNumber, in->ItemsPerPage, in->PurchaseType,
                            in->TitleType, in->WatchStatusFilter);
    return SOAP_OK;
}

int SimDownloadAPI::checkForPurchasedTitle(_LM1__checkForPurchasedTitle* in,
                                           _LM1__checkForPurchasedTitleResponse& out) {
    out.checkForPurchasedTitleResult = Accounts().OwnsTitle(in->TitleID);
    return SOAP_OK;
}

int SimDownloadAPI::getBonusAssetURL(_LM1__getBonusAssetURL* in,
                                     _LM1__getBonusAssetURLResponse& out) {
    out.getBonusAssetURLResult = Accounts().BonusURL(in->BonusAssetID);
    return SOAP_OK;
}

}  // namespace lmsim
