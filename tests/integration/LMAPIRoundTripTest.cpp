// Round trips through the generated proxies and service classes over loopback: requests and
// answers of representative catalogue, account and streaming operations, the device headers,
// shared operations, empty and absent members, and the proxies' logging.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "LMAPITestSupport.h"
#include "LMSoapLogPlugin.h"
#include "soapDownloadAPISoap12Proxy.h"
#include "soapDownloadAPISoap12Service.h"
#include "soapRealTimeBrowseSoap12Proxy.h"
#include "soapRealTimeBrowseSoap12Service.h"
#include "soapStreamAPISoap12Proxy.h"
#include "soapStreamAPISoap12Service.h"

namespace {

using lmapi_test::LoopbackServer;

const char kTitle[] = "Am\xC3\xA9lie";  // UTF-8, must survive both directions unchanged

// What a service saw of the last request.
struct Seen {
    std::mutex mutex;
    std::string operation;
    std::string action;
    std::string path;
    std::string apiKey;  // from whichever device header was present

    void Record(struct soap* soap, const char* op) {
        std::lock_guard<std::mutex> lock(mutex);
        operation = op;
        action = soap->action != nullptr ? soap->action : "";
        path = soap->path;
        apiKey.clear();
        if (soap->header == nullptr) {
            return;
        }
        if (soap->header->LM1__StreamDeviceRequestSettings_ != nullptr) {
            apiKey = "stream:" + Text(soap->header->LM1__StreamDeviceRequestSettings_->APIKey);
        } else if (soap->header->LM1__DeviceSettings_ != nullptr) {
            apiKey = "browse:" + Text(soap->header->LM1__DeviceSettings_->APIKey);
        } else if (soap->header->LM1__DownloadDeviceRequestSettings_ != nullptr) {
            apiKey = "download:" + Text(soap->header->LM1__DownloadDeviceRequestSettings_->APIKey);
        }
    }
    std::string Operation() {
        std::lock_guard<std::mutex> lock(mutex);
        return operation;
    }
    std::string Action() {
        std::lock_guard<std::mutex> lock(mutex);
        return action;
    }
    std::string ApiKey() {
        std::lock_guard<std::mutex> lock(mutex);
        return apiKey;
    }
    static std::string Text(const char* s) { return s != nullptr ? s : "(null)"; }
};

char* Dup(struct soap* soap, const std::string& s) {
    return soap_strdup(soap, s.c_str());
}

// An array of `n` element pointers in the context's memory.
template <class T>
T** Pointers(struct soap* soap, int n) {
    return static_cast<T**>(soap_malloc(soap, static_cast<size_t>(n > 0 ? n : 1) * sizeof(T*)));
}

LM1__TitleListingResponse* MakeTitle(struct soap* soap, int titleId) {
    auto* t = soap_new_LM1__TitleListingResponse(soap);
    t->TitleID = titleId;
    t->TitleName = Dup(soap, kTitle);
    t->BoxArtPrefix = Dup(soap, "ba" + std::to_string(titleId));
    t->TitlePosition = -3;
    t->BonusAssets = soap_new_LM1__ArrayOfBonusAsset(soap);
    t->BonusAssets->__sizeBonusAsset = 1;
    t->BonusAssets->BonusAsset = Pointers<LM1__BonusAsset>(soap, 1);
    t->BonusAssets->BonusAsset[0] = soap_new_LM1__BonusAsset(soap);
    t->BonusAssets->BonusAsset[0]->BonusAssetID = 77;
    t->BonusAssets->BonusAsset[0]->Profile = LM1__FileProfile__HIGH_USCOREDEFINITION_USCORE3D;
    t->AvailableProducts = soap_new_LM1__ArrayOfProductListing(soap);
    t->AvailableProducts->__sizeProductListing = 1;
    t->AvailableProducts->ProductListing = Pointers<LM1__ProductListing>(soap, 1);
    LM1__ProductListing* p = soap_new_LM1__ProductListing(soap);
    t->AvailableProducts->ProductListing[0] = p;
    p->SkuID = 5001;
    p->PurchaseType = LM1__PurchaseType__rent;
    p->Price = Dup(soap, "3.990");
    p->AvailableAssets = soap_new_LM1__ArrayOfFileProfile(soap);
    p->AvailableAssets->__sizeFileProfile = 2;
    p->AvailableAssets->FileProfile =
        static_cast<LM1__FileProfile*>(soap_malloc(soap, 2 * sizeof(LM1__FileProfile)));
    p->AvailableAssets->FileProfile[0] = LM1__FileProfile__STANDARD;
    p->AvailableAssets->FileProfile[1] = LM1__FileProfile__PORTABLE_USCOREWIDE;
    p->ExpireDate = Dup(soap, "2026/12/31 23:59:59");
    t->IsTHXMediaDirectorEnabledForTrailer = true;
    t->ResponseMessage = Dup(soap, "");  // present but empty
    t->Synopsys = Dup(soap, "synopsis");
    t->IsAvailInUserWishList = true;
    return t;
}

LM1__GetTitlesResponse* MakeTitles(struct soap* soap, int genreId, const std::string& message) {
    auto* r = soap_new_LM1__GetTitlesResponse(soap);
    r->GenreID = genreId;
    r->CurrentPageNumber = 1;
    r->TotalItems = 32767;
    r->ResponseMessage = Dup(soap, message);
    r->Titles = nullptr;  // absent: the answer must not grow an empty array
    return r;
}

// Helpers the derived services use to serve LM1:GetTitlesResponse-based operations.
class BrowseService : public RealTimeBrowseSoap12Service {
public:
    Seen seen;
    int getNavigation(_LM1__getNavigation*, _LM1__getNavigationResponse& out) override {
        seen.Record(soap, "getNavigation");
        out.getNavigationResult = soap_new_LM1__GenreRequest(soap);
        out.getNavigationResult->Genres = soap_new_LM1__ArrayOfGenre(soap);  // no Genre at all
        return SOAP_OK;
    }
    int searchForTitle(_LM1__searchForTitle* in, _LM1__searchForTitleResponse& out) override {
        seen.Record(soap, "searchForTitle");
        out.searchForTitleResult = MakeTitles(soap, in->ItemsPerPage, Seen::Text(in->Query));
        return SOAP_OK;
    }
    int getTitlesByGenreArray(_LM1__getTitlesByGenreArray* in,
                              _LM1__getTitlesByGenreArrayResponse& out) override {
        seen.Record(soap, "getTitlesByGenreArray");
        auto* all = soap_new_LM1__ArrayOfGetTitlesResponse(soap);
        int n = in->GenreIDs != nullptr ? in->GenreIDs->__sizeint : 0;
        all->__sizeGetTitlesResponse = n;
        all->GetTitlesResponse = Pointers<LM1__GetTitlesResponse>(soap, n);
        for (int i = 0; i < n; ++i) {
            all->GetTitlesResponse[i] =
                MakeTitles(soap, in->GenreIDs->int_[i], std::to_string(in->PurchaseType));
        }
        out.getTitlesByGenreArrayResult = all;
        return SOAP_OK;
    }
    int getTitleListing(_LM1__getTitleListing* in, _LM1__getTitleListingResponse& out) override {
        seen.Record(soap, "getTitleListing");
        out.getTitleListingResult = MakeTitle(soap, in->TitleID);
        return SOAP_OK;
    }
    int shouldUpdateCache(_LM1__shouldUpdateCache* in,
                          _LM1__shouldUpdateCacheResponse& out) override {
        seen.Record(soap, "shouldUpdateCache");
        out.shouldUpdateCacheResult = Seen::Text(in->UTCTime) == "" ? -1 : 1;
        return SOAP_OK;
    }
};

class DownloadService : public DownloadAPISoap12Service {
public:
    Seen seen;
    int authorizeDevice(_LM1__authorizeDevice* in, _LM1__authorizeDeviceResponse& out) override {
        seen.Record(soap, "authorizeDevice");
        auto* r = soap_new_LM1__AuthorizeDeviceResponse(soap);
        r->AuthToken = Dup(soap, "token-" + std::to_string(in->Pin));
        r->DeviceName = Dup(soap, kTitle);
        out.authorizeDeviceResult = r;
        return SOAP_OK;
    }
    int checkAdultVerificationPin(_LM1__checkAdultVerificationPin* in,
                                  _LM1__checkAdultVerificationPinResponse& out) override {
        seen.Record(soap, "checkAdultVerificationPin");
        out.checkAdultVerificationPinResult = soap_new_LM1__CheckAdultVerificationPinResponse(soap);
        out.checkAdultVerificationPinResult->IsPinVerified = Seen::Text(in->Pin) == "0042";
        return SOAP_OK;
    }
    int getConfig(_LM1__getConfig*, _LM1__getConfigResponse& out) override {
        seen.Record(soap, "getConfig");
        auto* r = soap_new_LM1__GetConfigResponse(soap);
        r->ConfigurationSet = soap_new_LM1__ArrayOfConfigurationItemOfString(soap);
        r->ConfigurationSet->__sizeConfiguration = 2;
        r->ConfigurationSet->Configuration = Pointers<LM1__ConfigurationItemOfString>(soap, 2);
        const char* keys[] = {"BandwidthURL", "MaxItems"};
        const char* values[] = {"http://127.0.0.1/bw.bin", "50"};
        for (int i = 0; i < 2; ++i) {
            auto* item = soap_new_LM1__ConfigurationItemOfString(soap);
            item->Key = Dup(soap, keys[i]);
            item->Value = Dup(soap, values[i]);
            r->ConfigurationSet->Configuration[i] = item;
        }
        out.getConfigResult = r;
        return SOAP_OK;
    }
    int getLicenseCounts(_LM1__getLicenseCounts* in, _LM1__getLicenseCountsResponse& out) override {
        seen.Record(soap, "getLicenseCounts");
        auto* all = soap_new_LM1__ArrayOfGetLicenseCountResponse(soap);
        int n = in->passIDs != nullptr ? in->passIDs->__sizeint : 0;
        all->__sizeGetLicenseCountResponse = n;
        all->GetLicenseCountResponse = Pointers<LM1__GetLicenseCountResponse>(soap, n);
        for (int i = 0; i < n; ++i) {
            all->GetLicenseCountResponse[i] = soap_new_LM1__GetLicenseCountResponse(soap);
            all->GetLicenseCountResponse[i]->PassID = in->passIDs->int_[i];
            all->GetLicenseCountResponse[i]->LicensesRemaining = i;
        }
        out.getLicenseCountsResult = all;
        return SOAP_OK;
    }
    int GetCountryID(_LM1__GetCountryID*, _LM1__GetCountryIDResponse& out) override {
        seen.Record(soap, "GetCountryID");
        out.GetCountryIDResult = 840;
        return SOAP_OK;
    }
};

class StreamService : public StreamAPISoap12Service {
public:
    Seen seen;
    int searchForTitle(_LM1__searchForTitle* in, _LM1__searchForTitleResponse& out) override {
        seen.Record(soap, "searchForTitle");
        out.searchForTitleResult = MakeTitles(soap, in->ItemsPerPage, Seen::Text(in->Query));
        return SOAP_OK;
    }
    int getTitleListing(_LM1__getTitleListing* in, _LM1__getTitleListingResponse& out) override {
        seen.Record(soap, "getTitleListing");
        out.getTitleListingResult = MakeTitle(soap, in->TitleID);
        return SOAP_OK;
    }
    int getStreamingAssetLocation(_LM1__getStreamingAssetLocation* in,
                                  _LM1__getStreamingAssetLocationResponse& out) override {
        seen.Record(soap, "getStreamingAssetLocation");
        auto* r = soap_new_LM1__GetStreamingAssetLocationResponse(soap);
        r->StreamID = Dup(soap, "s-" + std::to_string(in->PassID));
        r->AssetID = static_cast<int>(in->FileProfile);
        r->Status = LM1__PlayStatus__resumeplay;
        r->StartTimeSeconds = 1234;
        r->HeartbeatPollInSeconds = 60;
        out.getStreamingAssetLocationResult = r;
        return SOAP_OK;
    }
    int manageStreamInstanceStatus(_LM1__manageStreamInstanceStatus* in,
                                   _LM1__manageStreamInstanceStatusResponse& out) override {
        seen.Record(soap, "manageStreamInstanceStatus");
        auto* r = soap_new_LM1__StandardResponse(soap);
        r->ResponseCode = in->StopTimeSeconds;
        r->ResponseMessage = Dup(soap, Seen::Text(in->StreamID) + "/" + std::to_string(in->Status));
        out.manageStreamInstanceStatusResult = r;
        return SOAP_OK;
    }
    int calcOrderTax(_LM1__calcOrderTax* in, _LM1__calcOrderTaxResponse& out) override {
        seen.Record(soap, "calcOrderTax");
        auto* r = soap_new_LM1__CalcOrderTaxResponse(soap);
        r->ResponseCode = in->SKUID;
        r->SubTotal = Dup(soap, "10.00");
        r->Tax = Dup(soap, "0.825");
        r->TotalPrice = Dup(soap, "10.825");
        out.calcOrderTaxResult = r;
        return SOAP_OK;
    }
    int getAudioDefaultProperty(_LM1__getAudioDefaultProperty*,
                                _LM1__getAudioDefaultPropertyResponse& out) override {
        seen.Record(soap, "getAudioDefaultProperty");
        out.getAudioDefaultPropertyResult =
            LM1__AudioSetting__Dolby_USCOREDigital_USCOREPlus_USCORE51;
        return SOAP_OK;
    }
};

// Three servers and three proxies, each proxy pointed at its own server.
class RoundTrip : public ::testing::Test {
protected:
    RoundTrip()
        : m_BrowseServer(m_Browse),
          m_DownloadServer(m_Download),
          m_StreamServer(m_Stream),
          m_BrowseEndpoint(m_BrowseServer.Endpoint("/api/RealTimeBrowse.asmx")),
          m_DownloadEndpoint(m_DownloadServer.Endpoint("/api/DownloadAPI.asmx")),
          m_StreamEndpoint(m_StreamServer.Endpoint("/api/StreamAPI.asmx")) {
        for (struct soap* s : {browse.soap, download.soap, stream.soap}) {
            lmapi_test::PrepareContext(s);
        }
        browse.soap_endpoint = m_BrowseEndpoint.c_str();
        download.soap_endpoint = m_DownloadEndpoint.c_str();
        stream.soap_endpoint = m_StreamEndpoint.c_str();
    }
    void SetUp() override {
        ASSERT_GT(m_BrowseServer.Port(), 0);
        ASSERT_GT(m_DownloadServer.Port(), 0);
        ASSERT_GT(m_StreamServer.Port(), 0);
    }
    void TearDown() override {
        browse.destroy();
        download.destroy();
        stream.destroy();
    }

    // The header is rebuilt before each call: after a call the context holds the answer's.
    void SetDeviceHeaders() {
        auto* s = soap_new_LM1__StreamDeviceRequestSettings(stream.soap);
        s->APIKey = soap_strdup(stream.soap, "key-s");
        stream.soap_header(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                           s, nullptr, nullptr);
        auto* b = soap_new_LM1__DeviceSettings(browse.soap);
        b->APIKey = soap_strdup(browse.soap, "key-b");
        browse.soap_header(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                           nullptr, b, nullptr);
        auto* d = soap_new_LM1__DownloadDeviceRequestSettings(download.soap);
        d->APIKey = soap_strdup(download.soap, "key-d");
        d->DestinationTypeID = 17;
        download.soap_header(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, d);
    }

    BrowseService m_Browse;
    DownloadService m_Download;
    StreamService m_Stream;
    LoopbackServer<BrowseService> m_BrowseServer;
    LoopbackServer<DownloadService> m_DownloadServer;
    LoopbackServer<StreamService> m_StreamServer;
    std::string m_BrowseEndpoint;
    std::string m_DownloadEndpoint;
    std::string m_StreamEndpoint;

public:
    RealTimeBrowseSoap12Proxy browse;
    DownloadAPISoap12Proxy download;
    StreamAPISoap12Proxy stream;
};

// One representative call: runs it, checks the answer, names the service that must have seen it.
struct CallCase {
    const char* name;
    const char* operation;
    enum Service { kBrowse, kDownload, kStream } service;
    std::function<void(RoundTrip&)> run;
};

void PrintTo(const CallCase& c, std::ostream* os) {
    *os << c.name;
}

void CheckTitle(const LM1__TitleListingResponse* t, int titleId) {
    ASSERT_NE(nullptr, t);
    EXPECT_EQ(titleId, t->TitleID);
    EXPECT_STREQ(kTitle, t->TitleName);
    EXPECT_EQ(-3, t->TitlePosition);
    ASSERT_NE(nullptr, t->BonusAssets);
    ASSERT_EQ(1, t->BonusAssets->__sizeBonusAsset);
    EXPECT_EQ(77, t->BonusAssets->BonusAsset[0]->BonusAssetID);
    EXPECT_EQ(LM1__FileProfile__HIGH_USCOREDEFINITION_USCORE3D,
              t->BonusAssets->BonusAsset[0]->Profile);
    ASSERT_NE(nullptr, t->AvailableProducts);
    ASSERT_EQ(1, t->AvailableProducts->__sizeProductListing);
    const LM1__ProductListing* p = t->AvailableProducts->ProductListing[0];
    EXPECT_STREQ("3.990", p->Price);  // decimal kept as text, trailing zero and all
    ASSERT_NE(nullptr, p->AvailableAssets);
    ASSERT_EQ(2, p->AvailableAssets->__sizeFileProfile);
    EXPECT_EQ(LM1__FileProfile__PORTABLE_USCOREWIDE, p->AvailableAssets->FileProfile[1]);
    EXPECT_EQ(nullptr, p->AvailableAudioProfiles);
    EXPECT_TRUE(t->IsTHXMediaDirectorEnabledForTrailer);
    EXPECT_FALSE(t->IsTHXMediaDirectorEnabled);
    ASSERT_NE(nullptr, t->ResponseMessage);  // empty element: empty text, not null
    EXPECT_STREQ("", t->ResponseMessage);
    EXPECT_EQ(nullptr, t->CHVRSRating);  // absent element: null
    EXPECT_STREQ("synopsis", t->Synopsys);
    EXPECT_TRUE(t->IsAvailInUserWishList);
}

const CallCase kCases[] = {
    // Catalogue.
    {"BrowseTitleListing", "getTitleListing", CallCase::kBrowse,
     [](RoundTrip& t) {
         _LM1__getTitleListing in;
         in.TitleID = 4242;
         _LM1__getTitleListingResponse out;
         ASSERT_EQ(SOAP_OK, t.browse.getTitleListing(&in, out));
         CheckTitle(out.getTitleListingResult, 4242);
     }},
    {"BrowseTitlesByGenreArray", "getTitlesByGenreArray", CallCase::kBrowse,
     [](RoundTrip& t) {
         int ids[] = {3, 1, 2};
         LM1__ArrayOfInt genres;
         genres.__sizeint = 3;
         genres.int_ = ids;
         _LM1__getTitlesByGenreArray in;
         in.GenreIDs = &genres;
         in.PurchaseType = LM1__PurchaseType__buy;
         _LM1__getTitlesByGenreArrayResponse out;
         ASSERT_EQ(SOAP_OK, t.browse.getTitlesByGenreArray(&in, out));
         ASSERT_NE(nullptr, out.getTitlesByGenreArrayResult);
         ASSERT_EQ(3, out.getTitlesByGenreArrayResult->__sizeGetTitlesResponse);
         for (int i = 0; i < 3; ++i) {
             const LM1__GetTitlesResponse* r =
                 out.getTitlesByGenreArrayResult->GetTitlesResponse[i];
             EXPECT_EQ(ids[i], r->GenreID);  // order kept
             EXPECT_STREQ("1", r->ResponseMessage);
             EXPECT_EQ(32767, r->TotalItems);
         }
     }},
    {"BrowseShouldUpdateCache", "shouldUpdateCache", CallCase::kBrowse,
     [](RoundTrip& t) {
         _LM1__shouldUpdateCache in;
         in.UTCTime = const_cast<char*>("2026-11-23T12:00:00");
         _LM1__shouldUpdateCacheResponse out;
         ASSERT_EQ(SOAP_OK, t.browse.shouldUpdateCache(&in, out));
         EXPECT_EQ(1, out.shouldUpdateCacheResult);
     }},
    // Account and device.
    {"DownloadAuthorizeDevice", "authorizeDevice", CallCase::kDownload,
     [](RoundTrip& t) {
         _LM1__authorizeDevice in;
         in.Pin = 13579;
         _LM1__authorizeDeviceResponse out;
         ASSERT_EQ(SOAP_OK, t.download.authorizeDevice(&in, out));
         ASSERT_NE(nullptr, out.authorizeDeviceResult);
         EXPECT_STREQ("token-13579", out.authorizeDeviceResult->AuthToken);
         EXPECT_STREQ(kTitle, out.authorizeDeviceResult->DeviceName);
         EXPECT_EQ(nullptr, out.authorizeDeviceResult->EmailAddress);
     }},
    {"DownloadAdultPinIsText", "checkAdultVerificationPin", CallCase::kDownload,
     [](RoundTrip& t) {
         _LM1__checkAdultVerificationPin in;
         in.Pin = const_cast<char*>("0042");  // leading zeros survive only as text
         _LM1__checkAdultVerificationPinResponse out;
         ASSERT_EQ(SOAP_OK, t.download.checkAdultVerificationPin(&in, out));
         ASSERT_NE(nullptr, out.checkAdultVerificationPinResult);
         EXPECT_TRUE(out.checkAdultVerificationPinResult->IsPinVerified);
     }},
    {"DownloadGetConfig", "getConfig", CallCase::kDownload,
     [](RoundTrip& t) {
         _LM1__getConfig in;
         _LM1__getConfigResponse out;
         ASSERT_EQ(SOAP_OK, t.download.getConfig(&in, out));
         ASSERT_NE(nullptr, out.getConfigResult);
         const LM1__ArrayOfConfigurationItemOfString* set = out.getConfigResult->ConfigurationSet;
         ASSERT_NE(nullptr, set);
         ASSERT_EQ(2, set->__sizeConfiguration);
         EXPECT_STREQ("MaxItems", set->Configuration[1]->Key);  // attribute
         EXPECT_STREQ("50", set->Configuration[1]->Value);      // element
     }},
    {"DownloadLicenseCounts", "getLicenseCounts", CallCase::kDownload,
     [](RoundTrip& t) {
         int passes[] = {900, 901};
         LM1__ArrayOfInt ids;
         ids.__sizeint = 2;
         ids.int_ = passes;
         _LM1__getLicenseCounts in;
         in.passIDs = &ids;
         _LM1__getLicenseCountsResponse out;
         ASSERT_EQ(SOAP_OK, t.download.getLicenseCounts(&in, out));
         ASSERT_NE(nullptr, out.getLicenseCountsResult);
         ASSERT_EQ(2, out.getLicenseCountsResult->__sizeGetLicenseCountResponse);
         EXPECT_EQ(901, out.getLicenseCountsResult->GetLicenseCountResponse[1]->PassID);
         EXPECT_EQ(1, out.getLicenseCountsResult->GetLicenseCountResponse[1]->LicensesRemaining);
     }},
    {"DownloadGetCountryID", "GetCountryID", CallCase::kDownload,
     [](RoundTrip& t) {
         _LM1__GetCountryID in;
         _LM1__GetCountryIDResponse out;
         ASSERT_EQ(SOAP_OK, t.download.GetCountryID(&in, out));
         EXPECT_EQ(840, out.GetCountryIDResult);
     }},
    // Streaming.
    {"StreamAssetLocation", "getStreamingAssetLocation", CallCase::kStream,
     [](RoundTrip& t) {
         _LM1__getStreamingAssetLocation in;
         in.PassID = 31;
         in.FileProfile = LM1__FileProfile__STANDARD_USCOREDEFINITION_USCOREREALD_USCORE3D;
         _LM1__getStreamingAssetLocationResponse out;
         ASSERT_EQ(SOAP_OK, t.stream.getStreamingAssetLocation(&in, out));
         const LM1__GetStreamingAssetLocationResponse* r = out.getStreamingAssetLocationResult;
         ASSERT_NE(nullptr, r);
         EXPECT_STREQ("s-31", r->StreamID);
         EXPECT_EQ(9, r->AssetID);
         EXPECT_EQ(LM1__PlayStatus__resumeplay, r->Status);
         EXPECT_EQ(1234, r->StartTimeSeconds);
         EXPECT_EQ(60, r->HeartbeatPollInSeconds);
         EXPECT_EQ(nullptr, r->DRMServerURL);
     }},
    {"StreamManageInstanceStatus", "manageStreamInstanceStatus", CallCase::kStream,
     [](RoundTrip& t) {
         _LM1__manageStreamInstanceStatus in;
         in.StreamID = const_cast<char*>("s-31");
         in.Status = LM1__PlayStatus__errorinplayback;
         in.StopTimeSeconds = 5400;
         _LM1__manageStreamInstanceStatusResponse out;
         ASSERT_EQ(SOAP_OK, t.stream.manageStreamInstanceStatus(&in, out));
         ASSERT_NE(nullptr, out.manageStreamInstanceStatusResult);
         EXPECT_EQ(5400, out.manageStreamInstanceStatusResult->ResponseCode);
         EXPECT_STREQ("s-31/4", out.manageStreamInstanceStatusResult->ResponseMessage);
     }},
    {"StreamCalcOrderTax", "calcOrderTax", CallCase::kStream,
     [](RoundTrip& t) {
         _LM1__calcOrderTax in;
         in.SKUID = 6001;
         _LM1__calcOrderTaxResponse out;
         ASSERT_EQ(SOAP_OK, t.stream.calcOrderTax(&in, out));
         ASSERT_NE(nullptr, out.calcOrderTaxResult);
         EXPECT_EQ(6001, out.calcOrderTaxResult->ResponseCode);
         EXPECT_STREQ("0.825", out.calcOrderTaxResult->Tax);
     }},
    {"StreamAudioDefault", "getAudioDefaultProperty", CallCase::kStream,
     [](RoundTrip& t) {
         _LM1__getAudioDefaultProperty in;
         _LM1__getAudioDefaultPropertyResponse out;
         ASSERT_EQ(SOAP_OK, t.stream.getAudioDefaultProperty(&in, out));
         EXPECT_EQ(LM1__AudioSetting__Dolby_USCOREDigital_USCOREPlus_USCORE51,
                   out.getAudioDefaultPropertyResult);
     }},
};

class RoundTripCase : public RoundTrip, public ::testing::WithParamInterface<CallCase> {};

TEST_P(RoundTripCase, AnswerArrivesAndServiceSawActionAndDeviceHeader) {
    const CallCase& c = GetParam();
    SetDeviceHeaders();
    c.run(*this);
    if (HasFatalFailure()) {
        return;
    }
    Seen& seen = c.service == CallCase::kBrowse     ? m_Browse.seen
                 : c.service == CallCase::kDownload ? m_Download.seen
                                                    : m_Stream.seen;
    EXPECT_EQ(c.operation, seen.Operation());
    EXPECT_EQ(std::string("http://www.lumora.example/api/") + c.operation, seen.Action());
    // Each service's calls carry that service's own device element.
    const char* key = c.service == CallCase::kBrowse     ? "browse:key-b"
                      : c.service == CallCase::kDownload ? "download:key-d"
                                                         : "stream:key-s";
    EXPECT_EQ(key, seen.ApiKey());
}

INSTANTIATE_TEST_SUITE_P(Operations, RoundTripCase, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<CallCase>& info) {
                             return std::string(info.param.name);
                         });

TEST_F(RoundTrip, SharedOperationSendsTheSameActionToBothServices) {
    _LM1__getTitleListing in;
    in.TitleID = 8;
    _LM1__getTitleListingResponse fromBrowse;
    _LM1__getTitleListingResponse fromStream;
    ASSERT_EQ(SOAP_OK, browse.getTitleListing(&in, fromBrowse));
    ASSERT_EQ(SOAP_OK, stream.getTitleListing(&in, fromStream));
    EXPECT_EQ("getTitleListing", m_Browse.seen.Operation());
    EXPECT_EQ("getTitleListing", m_Stream.seen.Operation());
    EXPECT_EQ("http://www.lumora.example/api/getTitleListing", m_Browse.seen.Action());
    EXPECT_EQ(m_Browse.seen.Action(), m_Stream.seen.Action());
    CheckTitle(fromBrowse.getTitleListingResult, 8);
    CheckTitle(fromStream.getTitleListingResult, 8);

    // No header set: none is sent, and the service sees no device element.
    EXPECT_EQ("", m_Stream.seen.ApiKey());
}

TEST_F(RoundTrip, EmptyArrayGivesCountZero) {
    _LM1__getNavigation in;
    _LM1__getNavigationResponse out;
    ASSERT_EQ(SOAP_OK, browse.getNavigation(&in, out));
    ASSERT_NE(nullptr, out.getNavigationResult);
    ASSERT_NE(nullptr, out.getNavigationResult->Genres);         // the element is there ...
    EXPECT_EQ(0, out.getNavigationResult->Genres->__sizeGenre);  // ... without children
}

TEST_F(RoundTrip, AbsentOptionalComplexMemberStaysNull) {
    _LM1__searchForTitle in;
    in.Query = const_cast<char*>(kTitle);
    in.ItemsPerPage = 20;
    _LM1__searchForTitleResponse out;
    ASSERT_EQ(SOAP_OK, stream.searchForTitle(&in, out));
    ASSERT_NE(nullptr, out.searchForTitleResult);
    EXPECT_EQ(nullptr, out.searchForTitleResult->Titles);
    EXPECT_EQ(20, out.searchForTitleResult->GenreID);
    EXPECT_STREQ(kTitle, out.searchForTitleResult->ResponseMessage);
}

TEST_F(RoundTrip, UnservedOperationIsAFaultReadableThroughTheProxy) {
    _LM1__getBillingInfo in;
    _LM1__getBillingInfoResponse out;
    int rc = download.getBillingInfo(&in, out);
    EXPECT_NE(SOAP_OK, rc);
    EXPECT_NE(nullptr, download.soap_fault_string());
    EXPECT_EQ(nullptr, out.getBillingInfoResult);
}

// ---------------------------------------------------------------------------------------------
// Logging of proxy calls and raw traffic.

TEST_F(RoundTrip, CallsAreTracedAndRawBytesLoggedAlsoOnACopy) {
    lmapi_test::LogCapture log;
    ASSERT_EQ(SOAP_OK, LMSoapLogPlugin::Register(browse.soap));
    ASSERT_EQ(SOAP_OK, LMSoapLogPlugin::Register(browse.soap));  // second time: no-op

    _LM1__getTitleListing in;
    in.TitleID = 5;
    _LM1__getTitleListingResponse out;
    ASSERT_EQ(SOAP_OK, browse.getTitleListing(&in, out));
    EXPECT_EQ(
        "Entering RealTimeBrowseSoap12Proxy::getTitleListing\n"
        "Exiting RealTimeBrowseSoap12Proxy::getTitleListing\n",
        log.Text("soap_proxy"));
    std::string sent = log.Text("soap_sent");
    EXPECT_NE(sent.find("POST /api/RealTimeBrowse.asmx"), std::string::npos) << sent;
    EXPECT_NE(sent.find("<LM1:TitleID>5</LM1:TitleID>"), std::string::npos) << sent;
    std::string received = log.Text("soap_recv");
    EXPECT_NE(received.find("getTitleListingResult"), std::string::npos) << received;

    // A copy keeps logging with a plug-in record of its own.
    std::unique_ptr<RealTimeBrowseSoap12Proxy> copy(browse.copy());
    ASSERT_NE(nullptr, copy);
    ASSERT_NE(nullptr, soap_lookup_plugin(copy->soap, LMSoapLogPlugin::kId));
    EXPECT_NE(soap_lookup_plugin(copy->soap, LMSoapLogPlugin::kId),
              soap_lookup_plugin(browse.soap, LMSoapLogPlugin::kId));
    copy->soap_endpoint = m_BrowseEndpoint.c_str();  // copy() takes the context, not the endpoint
    in.TitleID = 6;
    _LM1__getTitleListingResponse again;
    ASSERT_EQ(SOAP_OK, copy->getTitleListing(&in, again));
    EXPECT_NE(log.Text("soap_sent").find("<LM1:TitleID>6</LM1:TitleID>"), std::string::npos);
    copy->destroy();
}

TEST_F(RoundTrip, FailedCallIsStillTracedWithWireOperationName) {
    lmapi_test::LogCapture log;
    std::string closed;
    {
        // A port that was free a moment ago: the connection is refused.
        RealTimeBrowseSoap12Service spare;
        LoopbackServer<RealTimeBrowseSoap12Service> gone(spare);
        closed = gone.Endpoint("/api/RealTimeBrowse.asmx");
    }
    browse.soap_endpoint = closed.c_str();
    _LM1__searchForTitleDetail_USCOREIncludeShortDesc in;
    _LM1__searchForTitleDetail_USCOREIncludeShortDescResponse out;
    EXPECT_NE(SOAP_OK, browse.searchForTitleDetail_USCOREIncludeShortDesc(&in, out));
    EXPECT_EQ(
        "Entering RealTimeBrowseSoap12Proxy::searchForTitleDetail_IncludeShortDesc\n"
        "Exiting RealTimeBrowseSoap12Proxy::searchForTitleDetail_IncludeShortDesc\n",
        log.Text("soap_proxy"));
}

}  // namespace
