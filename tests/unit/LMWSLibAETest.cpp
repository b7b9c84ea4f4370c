#include "LMWSLibAE.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "FakeStage.h"

namespace {

using fake::Value;
using Method = ae::stagecraft::ASExtensionClass::Method;

// The table the movies are written against, in order, with the static flags.
const struct {
    const char* name;
    int32_t isStatic;
} kTable[] = {
    {"init", 0},
    {"clone", 0},
    {"idle", 0},
    {"getNavigation", 0},
    {"getTitles", 0},
    {"getTitleListing", 0},
    {"searchForTitle", 0},
    {"getRecommendedTitles", 0},
    {"translateSkuID", 0},
    {"getTvEpisodeListing", 0},
    {"getTvEpisodeListByTitleID", 0},
    {"getAllTvEpisodeListings", 0},
    {"authorizeDevice", 0},
    {"deactivateDevice", 0},
    {"checkAuthToken", 0},
    {"getBoxArtImage", 0},
    {"getMyVideos", 0},
    {"getWishlistItems", 0},
    {"addItemToWishlist", 0},
    {"removeItemFromWishlist", 0},
    {"removeAllItemsFromWishlist", 0},
    {"checkTitleInWishlist", 0},
    {"checkTitlesInWishlist", 0},
    {"doPurchaseSavedBilling", 0},
    {"checkForPurchasedTitle", 0},
    {"checkForPurchasedSku", 0},
    {"checkAdultVerificationEnabled", 0},
    {"checkAdultVerificationPin", 0},
    {"assignGiftCertificateToUser", 0},
    {"checkRentalExpiration", 0},
    {"getStreamingAssetLocation", 0},
    {"getStreamingBonusAssetLocation", 0},
    {"loadLastStreamingAssetLocation", 0},
    {"manageStreamingInstanceStatus", 0},
    {"getTHXMediaDirector", 0},
    {"getTHXMediaDirectorBonusAsset", 0},
    {"getEmailAddress", 0},
    {"getBillingInfo", 0},
    {"getPrePaidCardBalance", 0},
    {"getConfig", 0},
    {"getSettingsPageInfo", 0},
    {"getCountryID", 0},
    {"getFileType", 0},
    {"updateLocalCache", 0},
    {"checkBandwidth", 0},
    {"calcOrderTax", 0},
    {"quitFlash", 0},
    {"getLocalIPAddr", 0},
    {"getSysInfo", 0},
    {"setAudioDefaultProperty", 0},
    {"getAudioDefaultProperty", 0},
    {"getUserAgent", 0},
    {"setLogAreaIDsAndTargetConfig", 1},
    {"fileExist", 1},
    {"getAvailableEnvLists", 0},
    {"clearLocalCache", 1},
    {"getDeviceEnv", 0},
    {"checkLMSWFmd5sum", 1},
    {"trace", 1},
};

class WSLibTest : public ::testing::Test {
protected:
    WSLibTest() { LMWSLibAEDescriptor().GetMethods(m_Methods); }

    const Method* Find(const char* name) {
        for (uint32_t i = 0; i < m_Methods.GetCount(); ++i) {
            if (std::string(m_Methods[i].name) == name) {
                return &m_Methods[i];
            }
        }
        return nullptr;
    }
    fake::Result Call(const char* name, std::initializer_list<Value*> values) {
        fake::Args args(values);
        fake::Result result;
        const Method* method = Find(name);
        EXPECT_NE(method, nullptr) << name;
        if (method != nullptr) {
            (m_Instance.*(method->handler))(m_Context, m_Self, args.list, result);
        }
        EXPECT_EQ(result.statusCalls, 1) << name;
        return result;
    }

    AEArray<Method> m_Methods;
    fake::Context m_Context;
    fake::Self m_Self;
    LMWSLibAE m_Instance;
};

TEST_F(WSLibTest, DescriptorAppendsTheFiftyNineEntriesInOrder) {
    ae::stagecraft::ASExtensionClassDescriptor& d = LMWSLibAEDescriptor();
    EXPECT_STREQ(d.GetClassName(), "com.kestrel.LMWSLib");
    EXPECT_FALSE(d.FiresEvents());
    // Entries already in the array stay in front.
    AEArray<Method> methods;
    methods.Append(Method{"earlier", 0, nullptr});
    d.GetMethods(methods);
    const uint32_t count = sizeof kTable / sizeof kTable[0];
    ASSERT_EQ(count, 59u);
    ASSERT_EQ(methods.GetCount(), count + 1);
    EXPECT_STREQ(methods[0].name, "earlier");
    for (uint32_t i = 0; i < count; ++i) {
        EXPECT_STREQ(methods[i + 1].name, kTable[i].name) << i;
        EXPECT_EQ(methods[i + 1].isStatic, kTable[i].isStatic) << kTable[i].name;
        EXPECT_NE(methods[i + 1].handler, nullptr) << kTable[i].name;
    }
}

TEST_F(WSLibTest, TraceTakesExactlyOneArgumentAndPrintsOnlyThen) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(Call("trace", {}).status, -3);
    EXPECT_EQ(Call("trace", {Value::String("a"), Value::String("b")}).status, -3);
    EXPECT_EQ(Call("trace", {Value::String("hello")}).status, 0);
    EXPECT_EQ(Call("trace", {Value::String("")}).status, 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "FLASH TRACE == hello\nFLASH TRACE == \n");
}

TEST_F(WSLibTest, ServiceCallsBeforeInitAreRefusedWithMinusOne) {
    for (const char* name : {"getNavigation", "getTitles", "authorizeDevice", "getBoxArtImage",
                             "getStreamingAssetLocation", "getWishlistItems",
                             "checkTitlesInWishlist", "getUserAgent", "getDeviceEnv"}) {
        fake::Result result = Call(name, {});
        EXPECT_EQ(result.status, -1) << name;
        EXPECT_FALSE(result.hasValue) << name;
    }
}

TEST_F(WSLibTest, InitWithoutItsPairOfArgumentsGivesMinusThree) {
    EXPECT_EQ(Call("init", {}).status, -3);
    EXPECT_EQ(Call("init", {Value::Number(1)}).status, -3);
    EXPECT_EQ(Call("init", {Value::String("a"), Value::String("b")}).status, -3);
}

TEST_F(WSLibTest, HelpersRefuseWhatTheyCannotUse) {
    EXPECT_EQ(Call("clone", {}).status, -5);
    EXPECT_EQ(Call("clone", {Value::String("not an instance")}).status, -5);
    EXPECT_EQ(Call("getSysInfo", {}).status, -1);
    EXPECT_EQ(Call("clearLocalCache", {}).status, -3);
    EXPECT_EQ(Call("clearLocalCache", {Value::String("")}).status, -3);
}

TEST_F(WSLibTest, FileExistAnswersWithABoolean) {
    fake::Result there = Call("fileExist", {Value::String("/")});
    EXPECT_EQ(there.status, 0);
    EXPECT_EQ(there.type, ae::stagecraft::kASTypeBoolean);
    EXPECT_EQ(there.number, 1);
    fake::Result missing = Call("fileExist", {Value::String("/no/such/file/here")});
    EXPECT_EQ(missing.number, 0);
    EXPECT_EQ(Call("fileExist", {}).status, -3);
}

TEST_F(WSLibTest, Md5sumGivesTheDigestOrNothing) {
    const std::string path = ::testing::TempDir() + "wslib-md5-input";
    FILE* file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fputs("abc", file);
    std::fclose(file);
    fake::Result sum = Call("checkLMSWFmd5sum", {Value::String(path)});
    EXPECT_EQ(sum.status, 0);
    EXPECT_EQ(sum.text, "900150983cd24fb0d6963f7d28e17f72");
    std::remove(path.c_str());
    fake::Result missing = Call("checkLMSWFmd5sum", {Value::String(path)});
    EXPECT_EQ(missing.status, 0);
    EXPECT_EQ(missing.text, "");
    EXPECT_EQ(Call("checkLMSWFmd5sum", {}).status, -3);
}

}  // namespace
