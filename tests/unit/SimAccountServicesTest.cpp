// The simulator's account operations as the SOAP layer serves them, called on the service
// objects with a request header but without sockets.
#include "SimServices.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using lmsim::AccountDefaults;
using lmsim::Code;

const lmsim::Catalogue& Standard() {
    static const lmsim::Catalogue c = lmsim::Catalogue::Build();
    return c;
}

enum class Via { Stream, Browse, Download };

// One served request's context: its header, as the client would send it, and the answers'
// memory.
class Request {
public:
    Request() { soap_set_mode(m_Soap, SOAP_C_UTFSTRING); }
    ~Request() {
        soap_destroy(m_Soap);
        soap_end(m_Soap);
        soap_free(m_Soap);
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    // The WS-Security user and the device header of the service `via`.
    Request& From(Via via, const char* user, const char* device, const std::string& token) {
        SOAP_ENV__Header* h = soap_new_SOAP_ENV__Header(m_Soap);
        h->wsse__Security = soap_new__wsse__Security(m_Soap);
        h->wsse__Security->UsernameToken = soap_new__wsse__UsernameToken(m_Soap);
        h->wsse__Security->UsernameToken->Username = soap_strdup(m_Soap, user);
        h->wsse__Security->UsernameToken->Password = soap_new__wsse__Password(m_Soap);
        h->wsse__Security->UsernameToken->Password->__item = soap_strdup(m_Soap, "pw");
        auto fill = [&](auto* settings) {
            settings->APIKey = soap_strdup(m_Soap, "api-key");
            settings->DestinationUniqueID = soap_strdup(m_Soap, device);
            settings->DestinationTypeID = 7;
            settings->AuthToken = soap_strdup(m_Soap, token.c_str());
            return settings;
        };
        if (via == Via::Stream) {
            h->LM1__StreamDeviceRequestSettings_ =
                fill(soap_new_LM1__StreamDeviceRequestSettings(m_Soap));
        } else if (via == Via::Browse) {
            h->LM1__DeviceSettings_ = fill(soap_new_LM1__DeviceSettings(m_Soap));
        } else {
            h->LM1__DownloadDeviceRequestSettings_ =
                fill(soap_new_LM1__DownloadDeviceRequestSettings(m_Soap));
        }
        m_Soap->header = h;
        return *this;
    }
    struct soap* soap() {
        return m_Soap;
    }
    char* Text(const char* s) { return soap_strdup(m_Soap, s); }

private:
    struct soap* m_Soap = soap_new();
};

class SimAccountServicesTest : public ::testing::Test {
protected:
    // Activates device "box-1" of "ann" through `via`; returns the token.
    std::string Activate(Via via) {
        Request r;
        r.From(via, "ann", "box-1", "");
        _LM1__authorizeDevice in;
        in.Pin = AccountDefaults::kActivationPin;
        _LM1__authorizeDeviceResponse out;
        if (via == Via::Stream) {
            EXPECT_EQ(lmsim::SimStreamAPI(r.soap(), state).authorizeDevice(&in, out), SOAP_OK);
        } else {
            EXPECT_EQ(lmsim::SimDownloadAPI(r.soap(), state).authorizeDevice(&in, out), SOAP_OK);
        }
        const LM1__AuthorizeDeviceResponse* a = out.authorizeDeviceResult;
        EXPECT_NE(a, nullptr);
        if (a == nullptr || a->AuthToken == nullptr) {
            return "";
        }
        EXPECT_EQ(a->ResponseCode, 0);
        EXPECT_STREQ(a->DeviceID, "box-1");
        EXPECT_STREQ(a->EmailAddress, "ann@example.com");
        return a->AuthToken;
    }

    lmsim::SimAccounts accounts{Standard()};
    lmsim::SimState state{Standard(), accounts, 2, 8123, "/bandwidth/check.bin"};
};

bool InWishlist(const lmsim::SimState& state, const std::string& token, int titleId) {
    Request r;
    r.From(Via::Browse, "ann", "box-1", token);
    _LM1__getTitleListing in;
    in.TitleID = titleId;
    _LM1__getTitleListingResponse out;
    EXPECT_EQ(lmsim::SimRealTimeBrowse(r.soap(), state).getTitleListing(&in, out), SOAP_OK);
    return out.getTitleListingResult->IsAvailInUserWishList;
}

TEST_F(SimAccountServicesTest, OneActivationServesAllThreeServices) {
    const std::string token = Activate(Via::Download);
    ASSERT_FALSE(token.empty());
    const int listed = Standard().Titles()[10].id;
    {
        Request r;
        r.From(Via::Stream, "ann", "box-1", token);
        _LM1__addItemToWishlist in;
        in.TitleID = listed;
        _LM1__addItemToWishlistResponse out;
        ASSERT_EQ(lmsim::SimStreamAPI(r.soap(), state).addItemToWishlist(&in, out), SOAP_OK);
        EXPECT_EQ(out.addItemToWishlistResult->ResponseCode, 0);
    }
    EXPECT_TRUE(InWishlist(state, token, listed));
    EXPECT_FALSE(InWishlist(state, token, Standard().Titles()[11].id));
    EXPECT_FALSE(InWishlist(state, "", listed));
    EXPECT_FALSE(InWishlist(state, token, 42));

    Request r;
    r.From(Via::Download, "ann", "box-1", token);
    _LM1__getWishlistItems in;
    in.sortOrder = 0;
    in.CurrentPageNumber = 1;
    in.ItemsPerPage = 10;
    in.TitleType = LM1__TitleType__any;
    _LM1__getWishlistItemsResponse out;
    ASSERT_EQ(lmsim::SimDownloadAPI(r.soap(), state).getWishlistItems(&in, out), SOAP_OK);
    const LM1__GetWishlistItemsResponse* w = out.getWishlistItemsResult;
    EXPECT_EQ(w->ResponseCode, 0);
    EXPECT_EQ(w->TotalItems, 1);
    ASSERT_EQ(w->Titles->__sizeTitleListingPurchased, 1);
    EXPECT_EQ(w->Titles->TitleListingPurchased[0]->TitleID, listed);
    EXPECT_EQ(w->Titles->TitleListingPurchased[0]->PassID, 0);
    EXPECT_STREQ(w->Titles->TitleListingPurchased[0]->TitleName,
                 Standard().Titles()[10].name.c_str());
}

// Refusals come back as answers with a response code, never as faults, and requests without
// their optional texts are answered too.
TEST_F(SimAccountServicesTest, RefusalsAreAnswersWithAResponseCode) {
    Request r;  // no header at all
    lmsim::SimStreamAPI stream(r.soap(), state);
    lmsim::SimDownloadAPI download(r.soap(), state);
    auto code = [](int rc, const auto* result) {
        EXPECT_EQ(rc, SOAP_OK);
        return result != nullptr ? result->ResponseCode : -1;
    };
#define LMSIM_CALL(service, op)              \
    [&] {                                    \
        _LM1__##op in;                       \
        _LM1__##op##Response out;            \
        const int rc = service.op(&in, out); \
        return code(rc, out.op##Result);     \
    }()
    EXPECT_EQ(LMSIM_CALL(stream, doPurchaseSavedbilling), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, doPurchaseSavedbilling), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, getBillingInfo), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, getEmailAddress), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, getSettingsPageInfo), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, showPrePaidCardBalance), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, assignGiftCertificateToUser), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, getWishlistItems), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, addItemToWishlist), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, removeAllItemsFromWishList), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, manageStreamInstanceStatus), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, getStreamingAssetLocation), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, getBonusAssetLocation), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, calcOrderTax), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, removeAllMyPurchases), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, deactivateDevice), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, getMyVideos), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, getMyStreamingVideos), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, checkRentalExpiration), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, getTHXMediaDirector), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, setAudioDefaultProperty), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, checkAdultVerificationPin), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(download, getBonusAssetURL), Code::kNotAuthorised);
    EXPECT_EQ(LMSIM_CALL(stream, ReturnError), 1);
    EXPECT_EQ(LMSIM_CALL(stream, getConfig), 0);
    EXPECT_EQ(LMSIM_CALL(download, authorizeDevice), Code::kNoDeviceId);
#undef LMSIM_CALL

    _LM1__checkAuthToken check;
    _LM1__checkAuthTokenResponse valid;
    valid.checkAuthTokenResult = true;
    ASSERT_EQ(stream.checkAuthToken(&check, valid), SOAP_OK);
    EXPECT_FALSE(valid.checkAuthTokenResult);
    _LM1__GetCountryID country;
    _LM1__GetCountryIDResponse countryId;
    ASSERT_EQ(download.GetCountryID(&country, countryId), SOAP_OK);
    EXPECT_EQ(countryId.GetCountryIDResult, AccountDefaults::kCountryId);
    _LM1__getTitleListingsPurchasedForPasses none;
    _LM1__getTitleListingsPurchasedForPassesResponse empty;
    ASSERT_EQ(stream.getTitleListingsPurchasedForPasses(&none, empty), SOAP_OK);
    EXPECT_EQ(empty.getTitleListingsPurchasedForPassesResult->__sizeTitleListingPurchasedForPass,
              0);
}

TEST_F(SimAccountServicesTest, TheConfigurationNamesTheBandwidthFile) {
    for (Via via : {Via::Stream, Via::Download}) {
        Request r;
        _LM1__getConfig in;
        _LM1__getConfigResponse out;
        ASSERT_EQ(via == Via::Stream ? lmsim::SimStreamAPI(r.soap(), state).getConfig(&in, out)
                                     : lmsim::SimDownloadAPI(r.soap(), state).getConfig(&in, out),
                  SOAP_OK);
        const LM1__ArrayOfConfigurationItemOfString* items = out.getConfigResult->ConfigurationSet;
        ASSERT_NE(items, nullptr);
        std::string url;
        for (int i = 0; i < items->__sizeConfiguration; ++i) {
            if (strcmp(items->Configuration[i]->Key, "BandwithCheckURL") == 0) {
                url = items->Configuration[i]->Value;
            }
        }
        EXPECT_EQ(url, "http://127.0.0.1/bandwidth/check.bin");
    }
}

TEST_F(SimAccountServicesTest, PurchaseStreamAndResumeOnTheWire) {
    const std::string token = Activate(Via::Stream);
    const lmsim::Title* title = nullptr;
    const lmsim::Product* product = nullptr;
    for (const lmsim::Title& t : Standard().Titles()) {
        for (const lmsim::Product& p : t.products) {
            if (product == nullptr && !t.isTv && p.purchaseType == lmsim::kRent &&
                p.price == "3.99" && p.fileProfiles.size() == 2) {
                title = &t;
                product = &p;
            }
        }
    }
    ASSERT_NE(product, nullptr);
    Request r;
    r.From(Via::Stream, "ann", "box-1", token);
    lmsim::SimStreamAPI stream(r.soap(), state);

    _LM1__calcOrderTax taxIn;
    taxIn.SKUID = product->skuId;
    _LM1__calcOrderTaxResponse tax;
    ASSERT_EQ(stream.calcOrderTax(&taxIn, tax), SOAP_OK);
    EXPECT_STREQ(tax.calcOrderTaxResult->SubTotal, "3.99");
    EXPECT_STREQ(tax.calcOrderTaxResult->Tax, "0.32");
    EXPECT_STREQ(tax.calcOrderTaxResult->TotalPrice, "4.31");

    // "YES" pays with the prepaid balance, whatever its case.
    _LM1__doPurchaseSavedbilling buyIn;
    buyIn.SkuID = product->skuId;
    buyIn.IPAddress = r.Text("192.0.2.7");
    buyIn.UsePrePaidFunds = r.Text("YES");
    _LM1__doPurchaseSavedbillingResponse bought;
    ASSERT_EQ(stream.doPurchaseSavedbilling(&buyIn, bought), SOAP_OK);
    const LM1__PurchaseResponse* purchase = bought.doPurchaseSavedbillingResult;
    ASSERT_EQ(purchase->ResponseCode, 0) << purchase->ResponseMessage;
    const int pass = purchase->PassID;
    EXPECT_GT(purchase->TransactionId, 0);
    EXPECT_NE(purchase->TransactionAuthNum, nullptr);
    _LM1__getBillingInfoAndPPCBalance billingIn;
    _LM1__getBillingInfoAndPPCBalanceResponse billing;
    ASSERT_EQ(stream.getBillingInfoAndPPCBalance(&billingIn, billing), SOAP_OK);
    EXPECT_EQ(billing.getBillingInfoAndPPCBalanceResult->PPCardBalance->Balance,
              AccountDefaults::kPrepaidCents - 431);
    EXPECT_STREQ(billing.getBillingInfoAndPPCBalanceResult->BillingInfo->CCLastFour,
                 AccountDefaults::kCardLastFour);

    _LM1__getStreamingAssetLocation locIn;
    locIn.PassID = pass;
    locIn.FileProfile = LM1__FileProfile__UNKNOWN;
    _LM1__getStreamingAssetLocationResponse loc;
    ASSERT_EQ(stream.getStreamingAssetLocation(&locIn, loc), SOAP_OK);
    const LM1__GetStreamingAssetLocationResponse* where = loc.getStreamingAssetLocationResult;
    ASSERT_EQ(where->ResponseCode, 0) << where->ResponseMessage;
    EXPECT_EQ(std::string(where->StreamingAssetLocation).rfind("http://127.0.0.1:8123/", 0), 0u);
    EXPECT_EQ(where->AssetID, title->assetId);
    EXPECT_EQ(where->StartTimeSeconds, 0);
    ASSERT_NE(where->StreamID, nullptr);
    const std::string streamId = where->StreamID;

    _LM1__manageStreamInstanceStatus report;
    report.StreamID = r.Text(streamId.c_str());
    report.Status = LM1__PlayStatus__stopped;
    report.StopTimeSeconds = 600;
    _LM1__manageStreamInstanceStatusResponse reported;
    ASSERT_EQ(stream.manageStreamInstanceStatus(&report, reported), SOAP_OK);
    EXPECT_EQ(reported.manageStreamInstanceStatusResult->ResponseCode, 0);
    report.StreamID = r.Text("STR-unknown");
    ASSERT_EQ(stream.manageStreamInstanceStatus(&report, reported), SOAP_OK);
    EXPECT_EQ(reported.manageStreamInstanceStatusResult->ResponseCode, Code::kNotFound);

    _LM1__loadLastStreamingAssetLocationForPass lastIn;
    lastIn.PassID = pass;
    lastIn.FileProfile = LM1__FileProfile__UNKNOWN;
    _LM1__loadLastStreamingAssetLocationForPassResponse last;
    ASSERT_EQ(stream.loadLastStreamingAssetLocationForPass(&lastIn, last), SOAP_OK);
    EXPECT_EQ(last.loadLastStreamingAssetLocationForPassResult->StartTimeSeconds, 600);
    EXPECT_EQ(last.loadLastStreamingAssetLocationForPassResult->Status, LM1__PlayStatus__stopped);
    EXPECT_EQ(streamId, last.loadLastStreamingAssetLocationForPassResult->StreamID);

    _LM1__getMyStreamingVideos mineIn;
    mineIn.CurrentPageNumber = 1;
    mineIn.ItemsPerPage = 10;
    mineIn.PurchaseType = LM1__PurchaseType__any;
    mineIn.TitleType = LM1__TitleType__any;
    mineIn.WatchStatusFilter = LM1__WatchStatusFilter__WatchNow;
    _LM1__getMyStreamingVideosResponse mine;
    ASSERT_EQ(stream.getMyStreamingVideos(&mineIn, mine), SOAP_OK);
    const LM1__GetMyVideosResponse* videos = mine.getMyStreamingVideosResult;
    ASSERT_EQ(videos->Titles->__sizeTitleListingPurchased, 1);
    const LM1__TitleListingPurchased* video = videos->Titles->TitleListingPurchased[0];
    EXPECT_EQ(video->TitleID, title->id);
    EXPECT_EQ(video->PassID, pass);
    EXPECT_EQ(video->StartTimeSeconds, 600);
    EXPECT_EQ(video->PurchaseType, LM1__PurchaseType__rent);
    EXPECT_EQ(video->Status, LM1__WatchStatusFilter__WatchNow);
    EXPECT_STREQ(video->RentalPeriod, "48");

    LM1__ArrayOfInt* ids = soap_new_LM1__ArrayOfInt(r.soap());
    int passIds[] = {pass, 4242};
    ids->__sizeint = 2;
    ids->int_ = passIds;
    _LM1__getTitleListingsPurchasedForPasses forIn;
    forIn.Passes = ids;
    _LM1__getTitleListingsPurchasedForPassesResponse forPasses;
    ASSERT_EQ(stream.getTitleListingsPurchasedForPasses(&forIn, forPasses), SOAP_OK);
    const LM1__ArrayOfTitleListingPurchasedForPass* listings =
        forPasses.getTitleListingsPurchasedForPassesResult;
    ASSERT_EQ(listings->__sizeTitleListingPurchasedForPass, 2);
    EXPECT_EQ(listings->TitleListingPurchasedForPass[0]->ResponseCode, 0);
    EXPECT_EQ(listings->TitleListingPurchasedForPass[0]->TitleID, title->id);
    EXPECT_EQ(listings->TitleListingPurchasedForPass[1]->ResponseCode, Code::kNotFound);

    _LM1__checkRentalExpiration rentalIn;
    rentalIn.PassId = pass;
    _LM1__checkRentalExpirationResponse rental;
    ASSERT_EQ(stream.checkRentalExpiration(&rentalIn, rental), SOAP_OK);
    EXPECT_TRUE(rental.checkRentalExpirationResult->ShouldDisplay);
    EXPECT_EQ(rental.checkRentalExpirationResult->HoursRemaining, 48);

    _LM1__checkForPurchasedStream skuIn;
    skuIn.SkuID = product->skuId;
    _LM1__checkForPurchasedStreamResponse owned;
    ASSERT_EQ(stream.checkForPurchasedStream(&skuIn, owned), SOAP_OK);
    EXPECT_TRUE(owned.checkForPurchasedStreamResult);
    skuIn.SkuID = product->skuId + 1;
    ASSERT_EQ(stream.checkForPurchasedStream(&skuIn, owned), SOAP_OK);
    EXPECT_FALSE(owned.checkForPurchasedStreamResult);
}

TEST_F(SimAccountServicesTest, MediaDirectorAndAdultPin) {
    const std::string token = Activate(Via::Stream);
    Request r;
    r.From(Via::Stream, "ann", "box-1", token);
    lmsim::SimStreamAPI stream(r.soap(), state);
    const lmsim::Caller ann{"ann", "pw", "box-1", token};
    int withThx = 0;
    int withoutThx = 0;
    for (const lmsim::Title& t : Standard().Titles()) {
        const lmsim::Product& hd = t.products.back();  // SD comes first, HD last
        if (withThx == 0 && t.thx && hd.fileProfiles.size() == 2) {
            withThx = accounts.Buy(ann, hd.skuId, false).passId;
        } else if (withoutThx == 0 && !t.thx) {
            withoutThx = accounts.Buy(ann, hd.skuId, false).passId;
        }
    }
    ASSERT_GT(withThx, 0);
    _LM1__getTHXMediaDirector in;
    in.PassID = withThx;
    in.FileProfile = LM1__FileProfile__HIGH_USCOREDEFINITION;
    in.AudioSetting = LM1__AudioSetting__Dolby_USCOREDigital_USCOREPlus_USCORE51;
    _LM1__getTHXMediaDirectorResponse out;
    ASSERT_EQ(stream.getTHXMediaDirector(&in, out), SOAP_OK);
    EXPECT_EQ(out.getTHXMediaDirectorResult->ResponseCode, 0);
    const std::string longFormat = out.getTHXMediaDirectorResult->LongFormat;
    EXPECT_NE(longFormat.find("HIGH_DEFINITION"), std::string::npos) << longFormat;
    EXPECT_NE(longFormat.find("Dolby_Digital_Plus_51"), std::string::npos) << longFormat;
    EXPECT_NE(out.getTHXMediaDirectorResult->ShortFormat, nullptr);
    in.PassID = withoutThx;
    ASSERT_EQ(stream.getTHXMediaDirector(&in, out), SOAP_OK);
    EXPECT_EQ(out.getTHXMediaDirectorResult->ResponseCode, Code::kNoMediaDirector);

    _LM1__checkAdultVerificationPin pinIn;
    pinIn.Pin = r.Text("0042");
    _LM1__checkAdultVerificationPinResponse pin;
    ASSERT_EQ(stream.checkAdultVerificationPin(&pinIn, pin), SOAP_OK);
    EXPECT_TRUE(pin.checkAdultVerificationPinResult->IsPinVerified);
    pinIn.Pin = r.Text("42");
    ASSERT_EQ(stream.checkAdultVerificationPin(&pinIn, pin), SOAP_OK);
    EXPECT_FALSE(pin.checkAdultVerificationPinResult->IsPinVerified);
}

}  // namespace
