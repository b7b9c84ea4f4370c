// The account, wishlist, purchase and streaming operations of the client against the simulator's
// account model: a user's whole flow on one client, the statuses of refused requests, what the
// cache keeps of the user's data, and what never reaches the wire or the log.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "LMAPITestSupport.h"
#include "LMLog.h"
#include "LMWSTestSupport.h"

using namespace lmws_test;

namespace {

const int32_t kSpyGenre = 12;
const int32_t kActivationPin = 1234;  // the simulator's
const int32_t kDecliningSku = 700099;
// Statuses of the service's refusals.
const LM_WS_Status kWrongPin = -1005;
const LM_WS_Status kPurchaseDeclined = -1007;  // the purchase's response code 1
const LM_WS_Status kGiftInvalid = -1019;       // the gift certificate's response code 1
const uint32_t kEverything =
    LM_WS_CacheParam::Service | LM_WS_CacheParam::BoxArt | LM_WS_CacheParam::UserData;

// A client of the simulator with a file cache of everything, on the streaming service.
class LMWSAccount : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_Sim.Ready());
        PointAt(m_Sim);
        m_Params.p.CacheType = LM_WS_CacheParam::File;
        m_Params.p.CacheData = kEverything;
        m_Params.cachePath = m_Dir.path;
        ASSERT_EQ(m_Client.Setup(m_Params), LM_WS_OK);
    }
    LM_WS_Handle* H() { return &m_Client.h; }
    std::string Token() { return Str(m_Client.Block().AuthToken); }

    // The first title of the Spy genre's first page, with its first product and file profile.
    void PickTitle(int32_t& title, int32_t& sku, int32_t& profile) {
        Record<LM_WS_TitlesResponse> page;
        ASSERT_EQ(LM_WS_getTitles(H(), kSpyGenre, LM_WS_Page{1, 5}, 2, &page), LM_WS_OK);
        ASSERT_GT(page->Titles.Count, 0);
        const LM_WS_TitleListing& t = page->Titles.Array[0];
        ASSERT_GT(t.AvailableProducts.Count, 0);
        const LM_WS_ProductListing& product = t.AvailableProducts.Array[0];
        ASSERT_GT(product.AvailableAssets.Count, 0);
        title = t.TitleID;
        sku = product.SkuID;
        profile = product.AvailableAssets.Array[0];
    }

    LmsimProcess m_Sim;
    TempDir m_Dir;
    Params m_Params;
    Client m_Client;
};

TEST_F(LMWSAccount, AUsersWholeFlow) {
    // A wrong pin is refused with its own status and leaves the client without a token.
    Record<LM_WS_AuthorizeDeviceResponse> refused;
    EXPECT_EQ(LM_WS_authorizeDevice(H(), 9999, &refused), kWrongPin);
    EXPECT_NE(refused->ResponseCode, 0);
    EXPECT_EQ(Token(), "");

    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(H(), kActivationPin, &device), LM_WS_OK);
    ASSERT_STRNE(device->AuthToken, "");
    EXPECT_EQ(Token(), device->AuthToken) << "later calls carry the new token";
    uint8_t valid = 0;
    ASSERT_EQ(LM_WS_checkAuthToken(H(), &valid), LM_WS_OK);
    EXPECT_EQ(valid, 1);

    int32_t title = 0, sku = 0, profile = 0;
    PickTitle(title, sku, profile);

    Record<LM_WS_StandardResponse> added;
    ASSERT_EQ(LM_WS_addItemToWishlist(H(), title, &added), LM_WS_OK);
    // The flag is answered from the cache: with a failure armed for the next answer, the check
    // still succeeds, and the failure is left for the next call that does go out.
    ASSERT_TRUE(m_Sim.ArmFault("http-status", "500"));
    uint8_t inWishlist = 0;
    EXPECT_EQ(LM_WS_checkTitleInWishlist(H(), title, &inWishlist), LM_WS_OK);
    EXPECT_EQ(inWishlist, 1);
    int32_t country = 0;
    EXPECT_EQ(LM_WS_getCountryID(H(), &country), LM_WS_HTTP_BASE - 500);

    Record<LM_WS_WishlistItemsResponse> wishlist;
    ASSERT_EQ(LM_WS_getWishlistItems(H(), 0, LM_WS_Page{1, 10}, 0, &wishlist), LM_WS_OK);
    ASSERT_EQ(wishlist->Titles.Count, 1);
    EXPECT_EQ(wishlist->Titles.Array[0].TitleListing.TitleID, title);

    Record<LM_WS_PurchaseResponse> purchase;
    ASSERT_EQ(LM_WS_doPurchaseSavedBilling(H(), sku, "127.0.0.1", 0, &purchase), LM_WS_OK);
    const int32_t pass = purchase->PassID;
    EXPECT_GT(pass, 0);
    EXPECT_STRNE(purchase->TransactionAuthNum, "");

    // The purchase dropped the cached wishlist and its flags: both are asked for again, and the
    // service no longer lists the bought title.
    Record<LM_WS_WishlistItemsResponse> after;
    ASSERT_EQ(LM_WS_getWishlistItems(H(), 0, LM_WS_Page{1, 10}, 0, &after), LM_WS_OK);
    EXPECT_EQ(after->Titles.Count, 0);
    ASSERT_EQ(LM_WS_checkTitleInWishlist(H(), title, &inWishlist), LM_WS_OK);
    EXPECT_EQ(inWishlist, 0);

    uint8_t purchased = 0;
    ASSERT_EQ(LM_WS_checkForPurchasedTitle(H(), title, &purchased), LM_WS_OK);
    EXPECT_EQ(purchased, 1);
    Record<LM_WS_MyVideosResponse> videos;
    ASSERT_EQ(LM_WS_getMyVideos(H(), LM_WS_Page{1, 10}, 2, 0, 3, &videos), LM_WS_OK);
    ASSERT_EQ(videos->Titles.Count, 1);
    EXPECT_EQ(videos->Titles.Array[0].TitleListing.TitleID, title);
    EXPECT_EQ(videos->Titles.Array[0].PassID, pass);

    Record<LM_WS_StreamingAssetLocationResponse> location;
    ASSERT_EQ(LM_WS_getStreamingAssetLocation(H(), pass, profile, &location), LM_WS_OK);
    EXPECT_STRNE(location->StreamingAssetLocation, "");
    ASSERT_STRNE(location->StreamID, "");
    Record<LM_WS_StandardResponse> stopped;
    ASSERT_EQ(LM_WS_manageStreamingInstanceStatus(H(), location->StreamID, 1, 600, &stopped),
              LM_WS_OK);
    Record<LM_WS_StreamingAssetLocationResponse> last;
    ASSERT_EQ(LM_WS_loadLastStreamingAssetLocation(H(), pass, profile, &last), LM_WS_OK);
    EXPECT_EQ(last->StartTimeSeconds, 600);

    // Deactivation empties the token; the service then refuses the old one.
    Record<LM_WS_StandardResponse> gone;
    ASSERT_EQ(LM_WS_deactivateDevice(H(), &gone), LM_WS_OK);
    EXPECT_EQ(Token(), "");
    ASSERT_EQ(LM_WS_checkAuthToken(H(), &valid), LM_WS_OK);
    EXPECT_EQ(valid, 0);
}

TEST_F(LMWSAccount, RefusedRequestsKeepTheClientAsItWas) {
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(H(), kActivationPin, &device), LM_WS_OK);
    const std::string token = Token();

    // A declined purchase maps its response code; the token and the cached wishlist stay.
    int32_t title = 0, sku = 0, profile = 0;
    PickTitle(title, sku, profile);
    Record<LM_WS_StandardResponse> added;
    ASSERT_EQ(LM_WS_addItemToWishlist(H(), title, &added), LM_WS_OK);
    Record<LM_WS_PurchaseResponse> declined;
    EXPECT_EQ(LM_WS_doPurchaseSavedBilling(H(), kDecliningSku, "127.0.0.1", 1, &declined),
              kPurchaseDeclined);
    EXPECT_EQ(declined->ResponseCode, 1);
    EXPECT_EQ(Token(), token);
    ASSERT_TRUE(m_Sim.ArmFault("http-status", "500"));
    uint8_t inWishlist = 0;
    EXPECT_EQ(LM_WS_checkTitleInWishlist(H(), title, &inWishlist), LM_WS_OK);
    EXPECT_EQ(inWishlist, 1) << "still answered from the cached flag";

    // Requests refused by the client itself send nothing: the armed failure is still waiting.
    Record<LM_WS_StandardResponse> noStream;
    EXPECT_EQ(LM_WS_manageStreamingInstanceStatus(H(), "", 1, 600, &noStream),
              LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(*noStream->Type, LM_WS_ResultStandardResponse);
    Record<LM_WS_StandardResponse> noPassword;
    EXPECT_EQ(LM_WS_removeAllMyPurchases(H(), "", &noPassword), LM_WS_INVALID_ARGUMENT);
    Record<LM_WS_GiftCertificateResponse> noCode;
    EXPECT_EQ(LM_WS_assignGiftCertificateToUser(H(), nullptr, &noCode), LM_WS_INVALID_ARGUMENT);
    Record<LM_WS_TitlesPurchasedForPassesResponse> noPasses;
    EXPECT_EQ(LM_WS_getTitleListingsPurchasedForPasses(H(), nullptr, 0, &noPasses),
              LM_WS_INVALID_ARGUMENT);
    // A transport failure leaves the record tagged with response code 0.
    Record<LM_WS_PPCardBalanceResponse> balance;
    EXPECT_EQ(LM_WS_getPrePaidCardBalance(H(), &balance), LM_WS_HTTP_BASE - 500);
    EXPECT_EQ(*balance->Type, LM_WS_ResultPPCardBalance);
    EXPECT_EQ(balance->ResponseCode, 0);

    // A failed deactivation leaves the token.
    ASSERT_TRUE(m_Sim.ArmFault("close-mid-body"));
    Record<LM_WS_StandardResponse> gone;
    EXPECT_EQ(LM_WS_deactivateDevice(H(), &gone), LM_WS_CONNECTION_ENDED);
    EXPECT_EQ(Token(), token);
}

// A response code does not fail the wishlist check: the flag comes from the answer with status 0,
// but it is not remembered, since the service did not vouch for it.
TEST_F(LMWSAccount, AWishlistCheckAnsweredWithAResponseCodeGivesTheFlagAndKeepsNothing) {
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(H(), kActivationPin, &device), LM_WS_OK);
    int32_t title = 0, sku = 0, profile = 0;
    PickTitle(title, sku, profile);
    Record<LM_WS_StandardResponse> added;
    ASSERT_EQ(LM_WS_addItemToWishlist(H(), title, &added), LM_WS_OK);
    ASSERT_EQ(LM_WS_updateLocalCache(H(), LM_WS_CacheParam::UserData), LM_WS_OK);  // flag gone

    ASSERT_TRUE(m_Sim.ArmFault("response-code", "7"));
    uint8_t inWishlist = 0;
    EXPECT_EQ(LM_WS_checkTitleInWishlist(H(), title, &inWishlist), LM_WS_OK);
    EXPECT_EQ(inWishlist, 1);
    // The next check asks the service again, and meets the failure armed for it.
    ASSERT_TRUE(m_Sim.ArmFault("http-status", "500"));
    EXPECT_EQ(LM_WS_checkTitleInWishlist(H(), title, &inWishlist), LM_WS_HTTP_BASE - 500);
    EXPECT_EQ(inWishlist, 0);
}

TEST_F(LMWSAccount, TheAdultPinGoesOutAsFourDigitsAndNeverIntoTheLog) {
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(H(), kActivationPin, &device), LM_WS_OK);
    lmapi_test::LogCapture log;
    Record<LM_WS_AdultVerificationPinResponse> right;
    ASSERT_EQ(LM_WS_checkAdultVerificationPin(H(), 42, &right), LM_WS_OK);
    EXPECT_EQ(right->IsPinVerified, 1) << "the simulator compares the text \"0042\"";
    Record<LM_WS_AdultVerificationPinResponse> wrong;
    ASSERT_EQ(LM_WS_checkAdultVerificationPin(H(), 7, &wrong), LM_WS_OK);
    EXPECT_EQ(wrong->IsPinVerified, 0);
    int32_t country = 0;
    ASSERT_EQ(LM_WS_getCountryID(H(), &country), LM_WS_OK);

    const std::string sent = log.Text("soap_sent") + log.Text("soap_recv");
    EXPECT_NE(sent.find("GetCountryID"), std::string::npos) << "the log is on";
    EXPECT_EQ(sent.find("checkAdultVerificationPin"), std::string::npos);
    EXPECT_EQ(sent.find("0042"), std::string::npos);
}

// Every log area on, into the log file: the account's flow leaves no password, token or
// activation pin there, though the bytes on the wire are logged.
TEST_F(LMWSAccount, WithEveryLogAreaOnTheLogFileHoldsNoSecret) {
    TempDir logs;
    ASSERT_EQ(0, ConfigureLogging(0x3F00, 2, (logs.path + "/").c_str()));
    Params params;
    params.password = "pw-Zq8x7-unlikely";
    params.uniqueId = "device of the log test";
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(&client.h, kActivationPin, &device), LM_WS_OK);
    const std::string token = device->AuthToken;
    Record<LM_WS_StandardResponse> added;
    ASSERT_EQ(LM_WS_addItemToWishlist(&client.h, 100016, &added), LM_WS_OK);
    uint8_t valid = 0;
    ASSERT_EQ(LM_WS_checkAuthToken(&client.h, &valid), LM_WS_OK);
    Record<LM_WS_StandardResponse> gone;
    ASSERT_EQ(LM_WS_deactivateDevice(&client.h, &gone), LM_WS_OK);
    ConfigureLogging(0, 0, nullptr);

    std::ifstream in(logs.path + "/log.txt");
    std::stringstream text;
    text << in.rdbuf();
    const std::string log = text.str();
    EXPECT_NE(log.find("-soap_sent] "), std::string::npos) << "the wire is logged";
    EXPECT_NE(log.find("authorizeDevice"), std::string::npos);
    EXPECT_NE(log.find(">***</"), std::string::npos);
    ASSERT_FALSE(token.empty());
    for (const std::string& secret : {params.password, token, std::string(">1234<")}) {
        EXPECT_EQ(log.find(secret), std::string::npos) << secret;
    }
}

TEST_F(LMWSAccount, AccountAnswersAndTheirCache) {
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(H(), kActivationPin, &device), LM_WS_OK);

    Record<LM_WS_ConfigResponse> config;
    ASSERT_EQ(LM_WS_getConfig(H(), &config), LM_WS_OK);
    bool bandwidthUrl = false;
    for (int32_t i = 0; i < config->Count; ++i) {
        bandwidthUrl |= std::string(config->Array[i].Key) == "BandwithCheckURL";
    }
    EXPECT_TRUE(bandwidthUrl);
    uint32_t rate = 0;
    EXPECT_EQ(LM_WS_checkBandwidth(H(), &rate), LM_WS_OK);
    EXPECT_GT(rate, 0u);

    // E-mail, card and settings are kept among the user data: answered again without the
    // service, until a change of the account drops them.
    Record<LM_WS_EmailAddressResponse> email;
    ASSERT_EQ(LM_WS_getEmailAddress(H(), &email), LM_WS_OK);
    EXPECT_STRNE(email->EmailAddress, "");
    Record<LM_WS_BillingInfoResponse> billing;
    ASSERT_EQ(LM_WS_getBillingInfo(H(), &billing), LM_WS_OK);
    ASSERT_TRUE(m_Sim.ArmFault("http-status", "500"));
    Record<LM_WS_EmailAddressResponse> emailAgain;
    EXPECT_EQ(LM_WS_getEmailAddress(H(), &emailAgain), LM_WS_OK);
    EXPECT_STREQ(emailAgain->EmailAddress, email->EmailAddress);
    Record<LM_WS_BillingInfoResponse> billingAgain;
    EXPECT_EQ(LM_WS_getBillingInfo(H(), &billingAgain), LM_WS_OK);
    EXPECT_STREQ(billingAgain->CCLastFour, billing->CCLastFour);
    int32_t country = 0;
    EXPECT_EQ(LM_WS_getCountryID(H(), &country), LM_WS_HTTP_BASE - 500) << "the fault waited";

    // Tax, balances and the audio default.
    int32_t title = 0, sku = 0, profile = 0;
    PickTitle(title, sku, profile);
    Record<LM_WS_CalcOrderTaxResponse> tax;
    ASSERT_EQ(LM_WS_calcOrderTax(H(), sku, &tax), LM_WS_OK);
    EXPECT_STRNE(tax->TotalPrice, "");
    Record<LM_WS_BillingInfoAndPPCBalanceResponse> both;
    ASSERT_EQ(LM_WS_getBillingInfoAndPPCBalance(H(), &both), LM_WS_OK);
    EXPECT_STREQ(both->BillingInfo.CCLastFour, billing->CCLastFour);
    Record<LM_WS_StandardResponse> set;
    ASSERT_EQ(LM_WS_setAudioDefaultProperty(H(), 3, &set), LM_WS_OK);
    int32_t audio = -1;
    ASSERT_EQ(LM_WS_getAudioDefaultProperty(H(), &audio), LM_WS_OK);
    EXPECT_EQ(audio, 3);
    Record<LM_WS_GiftCertificateResponse> unknownGift;
    EXPECT_EQ(LM_WS_assignGiftCertificateToUser(H(), "NO-SUCH-CODE", &unknownGift), kGiftInvalid);
}

}  // namespace
