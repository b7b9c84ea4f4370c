// The result converter over the real kernel: a test class builds a client record natively,
// converts it and hands the value to a movie, which reports what the movie sees (property order,
// types, nesting, a few values).
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "FilledRecord.h"
#include "LMResultConverter.h"
#include "StageKernelHarness.h"
#include "TempDir.h"

namespace {

using namespace ae::stagecraft;

std::vector<std::string>* g_Log = nullptr;

// How the test class fills the record of a kind.
enum Variant { kFilled = 0, kEmpty = 1 };

void SetText(char*& text, const char* value) {
    std::free(text);
    text = strdup(value);
}

// The first product of a title expires at a known time, the second never.
void AdjustTitle(LM_WS_TitleListing& title) {
    title.TitlePosition = -3;
    for (int32_t i = 0; i < title.AvailableProducts.Count; ++i) {
        SetText(title.AvailableProducts.Array[i].ExpireDate, i == 0 ? "2012/03/05 23:59:00" : "");
    }
}

template <class L>
void AdjustTitles(L& list) {
    for (int32_t i = 0; i < list.Count; ++i) {
        AdjustTitle(list.Array[i]);
    }
}

template <class L>
void AdjustPurchases(L& list) {
    for (int32_t i = 0; i < list.Count; ++i) {
        AdjustTitle(list.Array[i].TitleListing);
        SetText(list.Array[i].RentalPeriod, "7");
    }
}

// Converts a tagged record of type R, filled (then changed by `adjust`) or only initialised, and
// releases it as the bridge's caller does.
template <class R, class Adjust>
ASValue* ConvertTagged(ASContext& context, uint32_t kind, int variant, Adjust adjust) {
    R record{};
    LM_WS_InitResult(&record, LMRecordFields::Fields<R>::kKind);
    if (variant == kFilled) {
        FillRecord(record);
        adjust(record);
    }
    ASValue* value = LMResultToScript(context, kind, &record);
    LM_WS_FreeResult(&record);
    return value;
}

template <class R>
ASValue* ConvertTagged(ASContext& context, uint32_t kind, int variant) {
    return ConvertTagged<R>(context, kind, variant, [](R&) {});
}

ASValue* Convert(ASContext& c, uint32_t kind, int variant) {
    const bool filled = variant == kFilled;
    switch (kind) {
        case 1: {
            int32_t number = filled ? -5 : 0;
            return LMResultToScript(c, kind, &number);
        }
        case 2: {
            bool flag = filled;
            return LMResultToScript(c, kind, &flag);
        }
        case 3:
            return ConvertTagged<LM_WS_LengthAndText>(c, kind, variant, [](LM_WS_LengthAndText& r) {
                SetText(r.Text, "192.168.1.20");
                r.Length = 12;
            });
        case 4:
            return ConvertTagged<LM_WS_Navigation>(
                c, kind, variant, [](LM_WS_Navigation& r) { r.Genres.Array[1].ParentId = 77; });
        case 5:
            return ConvertTagged<LM_WS_TitlesResponse>(
                c, kind, variant, [](LM_WS_TitlesResponse& r) { AdjustTitles(r.Titles); });
        case 6:
            return ConvertTagged<LM_WS_TitleListingResponse>(c, kind, variant,
                                                             [](LM_WS_TitleListingResponse& r) {
                                                                 SetText(r.Synopsys, "plot");
                                                                 AdjustTitle(r.TitleListing);
                                                             });
        case 7:
            return ConvertTagged<LM_WS_AuthorizeDeviceResponse>(c, kind, variant);
        case 8:
            return ConvertTagged<LM_WS_MyVideosResponse>(
                c, kind, variant, [](LM_WS_MyVideosResponse& r) { AdjustPurchases(r.Titles); });
        case 9:
            return ConvertTagged<LM_WS_StandardResponse>(c, kind, variant);
        case 10:
            return ConvertTagged<LM_WS_RecommendedTitlesResponse>(
                c, kind, variant,
                [](LM_WS_RecommendedTitlesResponse& r) { AdjustTitles(r.Titles); });
        case 11:
            return ConvertTagged<LM_WS_TranslateSkuIDResponse>(
                c, kind, variant, [](LM_WS_TranslateSkuIDResponse& r) { r.TitleId = 42; });
        case 12:
            return ConvertTagged<LM_WS_TvEpisodeList>(c, kind, variant);
        case 13:
            return ConvertTagged<LM_WS_TitleListingResponses>(
                c, kind, variant, [](LM_WS_TitleListingResponses& r) {
                    for (int32_t i = 0; i < r.TitleListingResponses.Count; ++i) {
                        AdjustTitle(r.TitleListingResponses.Array[i].TitleListing);
                    }
                });
        case 14:
            return ConvertTagged<LM_WS_WishlistItemsResponse>(
                c, kind, variant,
                [](LM_WS_WishlistItemsResponse& r) { AdjustPurchases(r.Titles); });
        case 15:
            return ConvertTagged<LM_WS_PurchaseResponse>(
                c, kind, variant, [](LM_WS_PurchaseResponse& r) { r.TransactionId = 55; });
        case 16:
            // Filled, the response code is not 0: verification is off.
            return ConvertTagged<LM_WS_StandardResponse>(c, kind, variant);
        case 17:
            return ConvertTagged<LM_WS_AdultVerificationPinResponse>(c, kind, variant);
        case 18:
            return ConvertTagged<LM_WS_GiftCertificateResponse>(c, kind, variant);
        case 19:
            return ConvertTagged<LM_WS_RentalExpirationResponse>(c, kind, variant);
        case 20:
            return ConvertTagged<LM_WS_StreamingAssetLocationResponse>(c, kind, variant);
        case 21:
            return ConvertTagged<LM_WS_EmailAddressResponse>(c, kind, variant);
        case 22:
            return ConvertTagged<LM_WS_BillingInfoResponse>(
                c, kind, variant, [](LM_WS_BillingInfoResponse& r) { r.CCTypeId = 66; });
        case 23:
            return ConvertTagged<LM_WS_PPCardBalanceResponse>(c, kind, variant);
        case 24:
            return ConvertTagged<LM_WS_ConfigResponse>(c, kind, variant);
        case 25:
            return ConvertTagged<LM_WS_SettingsPageInfo>(c, kind, variant);
        case 26: {
            LM_WS_FileType type =
                filled ? LM_WS_FileType{1, 2, 3, 4, 2} : LM_WS_FileType{0, 0, 0, 0, 99};
            return LMResultToScript(c, kind, &type);
        }
        case 27: {
            const uint8_t flags[] = {1, 0, 1};
            LMTitleFlags asked = {filled ? 3 : 0, filled ? flags : nullptr};
            return LMResultToScript(c, kind, &asked);
        }
        case 28:
            return ConvertTagged<LM_WS_CalcOrderTaxResponse>(c, kind, variant);
        case 29:
            return ConvertTagged<LM_WS_THXMediaDirectorResponse>(c, kind, variant);
        default:
            // A record that would convert under a known kind.
            return ConvertTagged<LM_WS_StandardResponse>(c, kind, variant);
    }
}

class Converting : public ASExtensionClass {
public:
    // convert(kind, variant): the converted record, or null when the converter gave nothing.
    void ConvertMethod(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        ASValue* value =
            Convert(context, static_cast<uint32_t>(args[0]->ToInt32()), args[1]->ToInt32());
        if (value == nullptr) {
            value = context.NewNull();
        }
        result.SetValue(*value);
        value->Release();
        result.SetStatus(0);
    }
    void Log(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
        AEString text;
        g_Log->push_back(args[0]->ToString(text) ? std::string(text.c_str(), text.length())
                                                 : "<throws>");
        result.SetStatus(0);
    }
    void Stop(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
        context.Stop();
        result.SetStatus(0);
    }
};

class ConvertingDescriptor : public ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return "com.kestrel.test.Converting"; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        methods.Append({"convert", 1, AEHandler(&Converting::ConvertMethod)});
        methods.Append({"log", 1, AEHandler(&Converting::Log)});
        methods.Append({"stop", 1, AEHandler(&Converting::Stop)});
    }
    bool FiresEvents() override { return false; }
    ASExtensionClass* ConstructInstance(ASContext&) override { return new Converting(); }
    void DestructInstance(ASExtensionClass* instance) override { delete instance; }
};

// The movie's description of a value: N, S, B for primitives, D for a Date, A[e;e] for an
// Array, {name:description,...} for an object in property order, null for null.
const char* const kDescribe = R"(
    function describe(x) {
        if (x === null) return "null";
        if (x instanceof Array) return "A[" + x.map(describe).join(";") + "]";
        if (x instanceof Date) return "D";
        if (typeof x === "object")
            return "{" + Object.keys(x).map(function (k) {
                return k + ":" + describe(x[k]);
            }).join(",") + "}";
        return {number: "N", string: "S", boolean: "B"}[typeof x] || typeof x;
    }
)";

class ResultConverterTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static ConvertingDescriptor descriptor;
        ASSERT_EQ(stagetest::Kernel().stage->RegisterExtensionClass(descriptor), AEError_OK);
    }
    void SetUp() override { g_Log = &m_Log; }
    void TearDown() override { g_Log = nullptr; }

    // Runs `body` after the describe function; the movie ends by itself.
    std::vector<std::string> Run(const std::string& body) {
        IStagecraft& stage = *stagetest::Kernel().stage;
        std::string path = m_Dir / "movie.js";
        std::ofstream(path) << kDescribe << body << "\nConverting.stop();\n";
        stagetest::StageArgv args({}, path);
        StageWindowSet* ws = nullptr;
        EXPECT_EQ(stage.CreateAndConfigureStageWindowSet(stage, &ws, args.argc(), args.argv(), 1),
                  AEError_OK);
        if (ws == nullptr) {
            return {};
        }
        std::mutex mutex;
        std::condition_variable finished;
        bool done = false;
        std::thread watchdog([&] {
            std::unique_lock<std::mutex> lock(mutex);
            if (!finished.wait_for(lock, std::chrono::seconds(20), [&] { return done; }))
                stage.PostKeyPress(kASQuitKeyCode);
        });
        EXPECT_EQ(stage.RunStageWindowSet(ws), AEError_OK);
        {
            std::lock_guard<std::mutex> lock(mutex);
            done = true;
        }
        finished.notify_one();
        watchdog.join();
        stage.DestroyStageWindowSet(ws);
        return m_Log;
    }

    // What the movie sees for kind `kind` filled as `variant`.
    std::string Describe(uint32_t kind, Variant variant) {
        m_Log.clear();
        std::vector<std::string> log =
            Run("Converting.log(describe(Converting.convert(" + std::to_string(kind) + ", " +
                std::to_string(variant) + ")));");
        return log.size() == 1 ? log[0] : "<movie failed>";
    }

    std::vector<std::string> m_Log;
    TempDir m_Dir;
};

// ---- The contract, stated independently of the converter ----

std::string Join(const std::vector<std::string>& parts, const char* separator) {
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) {
        out += (i ? separator : "") + parts[i];
    }
    return out;
}
std::string Obj(const std::vector<std::string>& properties) {
    return "{" + Join(properties, ",") + "}";
}
// An Array of two equal elements (every list of a filled record has two), or an empty one.
std::string Two(const std::string& element) {
    return "A[" + element + ";" + element + "]";
}
const std::string kNone = "A[]";

std::vector<std::string> operator+(std::vector<std::string> a, const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<std::string> kStatus = {"ResponseCode:N", "ResponseMessage:S"};

std::vector<std::string> ProductProperties() {
    return {"SkuID:N",
            "PurchaseType:N",
            "Price:S",
            "RentalPeriod:N",
            "AvailableAssets:" + Two("{FileProfile:N}"),
            "AvailableAudioProfiles:" +
                Two("{AssetAudioID:N,FileLocation:S,ContainsVideo:B,AudioAssetProfile:N}")};
}

// The title's properties; `filled` with two bonus assets and two products, the first expiring.
std::vector<std::string> TitleProperties(bool filled) {
    const std::string products =
        "A[" + Obj(ProductProperties() + std::vector<std::string>{"ExpireDate:D"}) + ";" +
        Obj(ProductProperties()) + "]";
    return {"TitleID:N",
            "TitleName:S",
            "BoxArtPrefix:S",
            "TitlePosition:N",
            "EpisodeNumber:N",
            "CHVRSRating:S",
            "LoyaltyPointsForBuy:S",
            "LoyaltyPointsForRent:S",
            "BonusAssets:" + (filled ? Two("{BonusAssetID:N,Profile:N,BonusType:N}") : kNone),
            "IsTvListing:B",
            "MPAARating:S",
            "IsTHXMediaDirectorEnabled:B",
            "IsTHXMediaDirectorEnabledForTrailer:B",
            "AvailableProducts:" + (filled ? products : kNone)};
}

std::string Title() {
    return Obj(TitleProperties(true));
}

std::string TitleDetail(bool filled) {
    return Obj(kStatus +
               std::vector<std::string>{"Synopsis:S", "UserRating:N", "Directors:S", "Actors:S",
                                        "Writers:S", "Producers:S", "Copyright:S", "RunTime:S",
                                        "RatingReason:S"} +
               TitleProperties(filled));
}

std::string PurchasedTitle() {
    return Obj(TitleProperties(true) +
               std::vector<std::string>{"EpisodeID:N", "TvListingTitleID:N", "PurchaseType:N",
                                        "Status:N", "RentalPeriod:N", "PassID:N", "PlayStatus:N",
                                        "StartTimeSeconds:N"});
}

const std::vector<std::string> kPaging = {"CurrentPageNumber:N", "ItemsPerPage:N", "TotalPages:N",
                                          "TotalItems:N"};

// The object kinds whose properties are plain numbers, strings and booleans.
std::map<uint32_t, std::string> PlainKinds() {
    using V = std::vector<std::string>;
    return {
        {7, Obj(V{"AuthToken:S", "EmailAddress:S", "IsAdultVerificationEnabled:B", "DeviceID:S",
                  "DeviceName:S"} +
                kStatus)},
        {9, Obj(kStatus)},
        {11, Obj(kStatus + V{"TitleID:N"})},
        {15, Obj(V{"PassID:N", "TransactionID:N", "TransactionAuthNum:S"} + kStatus)},
        {16, Obj(V{"IsAdultVerificationEnabled:B"} + kStatus)},
        {17, Obj(V{"IsPinVerified:B"} + kStatus)},
        {18, Obj(V{"Balance:N"} + kStatus)},
        {19, Obj(V{"ShouldDisplay:B", "HoursRemaining:N"} + kStatus)},
        {20, Obj(V{"StreamingAssetLocation:S", "AssetID:N", "StreamID:S", "DRMServerURL:S",
                   "DRMACKServerURL:S", "Status:N", "StartTimeSeconds:N", "HeartbeatURL:S",
                   "HeartbeatPollInSeconds:N"} +
                 kStatus)},
        {21, Obj(V{"EmailAddress:S"} + kStatus)},
        {22, Obj(V{"CCLastFour:S", "CCTypeID:N", "CCType:S"} + kStatus)},
        {23, Obj(V{"Balance:N"} + kStatus)},
        {25, Obj(V{"Account:S", "DeviceID:S", "DeviceName:S"} + kStatus)},
        {26, Obj(V{"DRMProvider:N", "AccessType:N", "FileProfile:N", "VideoFormat:N",
                   "FileExtension:S"})},
        {28, Obj(V{"SubTotal:S", "TotalPrice:S", "Tax:S"} + kStatus)},
        {29, Obj(V{"LongFormat:S", "ShortFormat:S"} + kStatus)},
    };
}

TEST_F(ResultConverterTest, PlainObjectsHaveTheirPropertiesInOrderFilledOrEmpty) {
    for (const auto& [kind, expected] : PlainKinds()) {
        EXPECT_EQ(Describe(kind, kFilled), expected) << "kind " << kind;
        EXPECT_EQ(Describe(kind, kEmpty), expected) << "kind " << kind << ", empty record";
    }
}

TEST_F(ResultConverterTest, PrimitiveKindsAndUnknownKinds) {
    EXPECT_EQ(Describe(1, kFilled), "N");
    EXPECT_EQ(Describe(2, kFilled), "B");
    EXPECT_EQ(Describe(3, kFilled), "S");
    EXPECT_EQ(Describe(3, kEmpty), "S");  // an unreadable text is ""
    EXPECT_EQ(Describe(0, kFilled), "null");
    EXPECT_EQ(Describe(30, kFilled), "null");
    EXPECT_EQ(Describe(0xffffffffu, kFilled), "null");
}

TEST_F(ResultConverterTest, ListsOfTitlesAndTheirParts) {
    using V = std::vector<std::string>;
    EXPECT_EQ(Describe(4, kFilled), Two("{ID:N,Name:S,Visible:B,ParentID:N}"));
    EXPECT_EQ(Describe(5, kFilled),
              Obj(V{"GenreID:N"} + kPaging + kStatus + V{"Titles:" + Two(Title())}));
    EXPECT_EQ(Describe(6, kFilled), TitleDetail(true));
    EXPECT_EQ(Describe(8, kFilled), Obj(kPaging + kStatus + V{"Titles:" + Two(PurchasedTitle())}));
    EXPECT_EQ(Describe(10, kFilled), Obj(kStatus + V{"Titles:" + Two(Title())}));
    EXPECT_EQ(Describe(12, kFilled),
              Obj(kStatus + V{"Episodes:" + Two("{EpisodeID:N,EpisodeName:S,EpisodeNumber:N}")}));
    EXPECT_EQ(Describe(13, kFilled), Obj(V{"TitleListingResponse:" + Two(TitleDetail(true))}));
    EXPECT_EQ(Describe(14, kFilled),
              Obj(kPaging + kStatus + V{"Titles:" + Two(PurchasedTitle()), "SortOrder:N"}));
    EXPECT_EQ(Describe(24, kFilled),
              Obj(kStatus + V{"ConfigurationItem:" + Two("{Key:S,Value:S}")}));
    EXPECT_EQ(Describe(27, kFilled), "A[B;B;B]");
}

TEST_F(ResultConverterTest, EmptyListsArePresentAndEmpty) {
    using V = std::vector<std::string>;
    EXPECT_EQ(Describe(4, kEmpty), kNone);
    EXPECT_EQ(Describe(5, kEmpty), Obj(V{"GenreID:N"} + kPaging + kStatus + V{"Titles:A[]"}));
    EXPECT_EQ(Describe(6, kEmpty), TitleDetail(false));
    EXPECT_EQ(Describe(8, kEmpty), Obj(kPaging + kStatus + V{"Titles:A[]"}));
    EXPECT_EQ(Describe(10, kEmpty), Obj(kStatus + V{"Titles:A[]"}));
    EXPECT_EQ(Describe(12, kEmpty), Obj(kStatus + V{"Episodes:A[]"}));
    EXPECT_EQ(Describe(13, kEmpty), "{TitleListingResponse:A[]}");
    EXPECT_EQ(Describe(14, kEmpty), Obj(kPaging + kStatus + V{"Titles:A[]", "SortOrder:N"}));
    EXPECT_EQ(Describe(24, kEmpty), Obj(kStatus + V{"ConfigurationItem:A[]"}));
    EXPECT_EQ(Describe(27, kEmpty), kNone);
}

TEST_F(ResultConverterTest, ValuesReachTheirProperties) {
    std::vector<std::string> log = Run(R"(
        function log(x) { Converting.log(x); }
        var c = Converting.convert;
        var product = c(6, 0).AvailableProducts[0];
        var d = product.ExpireDate;
        log([d.getFullYear(), d.getMonth(), d.getDate(), d.getHours(), d.getMinutes(),
             d.getSeconds()].join(" "));
        log("ExpireDate" in c(6, 0).AvailableProducts[1]);
        log(c(27, 0).join(" "));
        log(c(1, 0));
        log(c(2, 0) + " " + c(2, 1));
        log(c(3, 0));
        log(c(3, 1) === "");
        log(c(6, 0).Synopsis + " " + c(6, 0).TitlePosition);
        log(c(4, 0)[1].ParentID);
        log(c(11, 0).TitleID);
        log(c(8, 0).Titles[1].RentalPeriod + " " + c(14, 0).Titles[0].RentalPeriod);
        log(c(15, 0).TransactionID + " " + c(22, 0).CCTypeID);
        log(c(16, 0).IsAdultVerificationEnabled + " " + c(16, 1).IsAdultVerificationEnabled);
        log(c(26, 0).FileExtension + " " + c(26, 1).FileExtension);
        log(c(6, 1).ResponseMessage === "" && c(6, 1).TitleName === "");
    )");
    EXPECT_EQ(log,
              (std::vector<std::string>{"2012 2 5 23 59 0", "false", "true false true", "-5",
                                        "true false", "192.168.1.20", "true", "plot -3", "77", "42",
                                        "7 7", "55 66", "false true", "WMV 99", "true"}));
}

}  // namespace
