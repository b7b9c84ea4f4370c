#include "LMUtilities.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <string>

#include "LMDeployment.h"

namespace {

// A response code maps through its operation's table; codes outside that table, operations
// without one and negative codes are -1004, and 0 is success.
TEST(MakeStatus, ServiceResponseCodesByOperation) {
    struct Case {
        const char* op;
        int code;
        LM_WS_Status status;
    } cases[] = {
        {"LM_WS_authorizeDevice", 1, -1005},
        {"LM_WS_doPurchaseSavedBilling", 12, -1018},
        {"LM_WS_doPurchaseSavedBilling", 13, -1004},  // a gap in the table
        {"LM_WS_doPurchaseSavedBilling", 20, -1028},  // past the gap
        {"LM_WS_calcOrderTax", 20, -1028},            // two operations share a status
        {"LM_WS_getTitles", 1, -1004},                // no table
        {nullptr, 1, -1004},
        {"LM_WS_authorizeDevice", -1, -1004},
        {"LM_WS_authorizeDevice", 0, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LMUtilities::MakeStatus(0, c.code, c.op), c.status)
            << (c.op ? c.op : "(null)") << " " << c.code;
    }
}

// The runtime's error decides before any response code: connection, HTTP (100 to 599), TLS and
// SOAP ranges at their edges, and -1004 for what falls in none.
TEST(MakeStatus, RuntimeErrorsWinOverResponseCodes) {
    struct Case {
        int soap;
        LM_WS_Status status;
    } cases[] = {
        {28, -2011}, {-1, -2012}, {14, -4014}, {100, -4100}, {599, -4599}, {600, -1004},
        {30, -5030}, {1, -6001},  {45, -6045}, {4, -1004},   {20, -1004},  {-2, -1004},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LMUtilities::MakeStatus(c.soap, 1, "LM_WS_authorizeDevice"), c.status) << c.soap;
    }
}

TEST(Utilities, URLEncodeKeepsOnlyTheUnreservedSet) {
    EXPECT_STREQ(LMUtilities::URLEncode("Az09-_.!~*'()").c_str(), "Az09-_.!~*'()");
    EXPECT_STREQ(LMUtilities::URLEncode("Tom & Jerry's /x+y").c_str(),
                 "Tom%20%26%20Jerry's%20%2Fx%2By");
    EXPECT_STREQ(LMUtilities::URLEncode("\xC3\xA9\xFF").c_str(), "%C3%A9%FF");
    EXPECT_STREQ(LMUtilities::URLEncode("").c_str(), "");
    EXPECT_STREQ(LMUtilities::URLEncode(nullptr).c_str(), "");
}

// Device ids must be accepted by set-up (non-empty, under 351 characters) and differ per call.
TEST(Utilities, UniqueIDsAreVersion4UuidsAndDiffer) {
    LMString a = LMUtilities::GenerateUniqueID();
    LMString b = LMUtilities::GenerateUniqueID();
    ASSERT_EQ(a.length(), 36u);
    EXPECT_NE(a, b);
    const std::string text(a.c_str());
    for (size_t i = 0; i < text.size(); ++i) {
        bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        EXPECT_EQ(text[i] == '-', dash) << text;
        EXPECT_TRUE(dash || std::isxdigit(static_cast<unsigned char>(text[i]))) << text;
    }
    EXPECT_EQ(text[14], '4') << text;
    EXPECT_NE(std::string("89ab").find(text[19]), std::string::npos) << text;
}

TEST(Utilities, SafeSnprintfTruncatesAndTerminates) {
    char buf[8];
    EXPECT_EQ(LMUtilities::safe_snprintf(buf, sizeof(buf), "%s", "abcdefghij"), 7);
    EXPECT_STREQ(buf, "abcdefg");
    EXPECT_EQ(LMUtilities::safe_snprintf(buf, sizeof(buf), "%d", 42), 2);
    EXPECT_STREQ(buf, "42");
    EXPECT_DEATH(LMUtilities::safe_snprintf(buf, 1, "x"),
                 "\\(buf != 0\\) && \\(format != 0\\) && \\(bufsize > 1\\)");
}

TEST(Utilities, BoxArtNamesUseTheFolderForUrlsAndTheSuffixForFiles) {
    EXPECT_STREQ(LMUtilities::GetBoxArtImageFileName("/c/", "My Title", 6).c_str(),
                 "/c/My Title135.jpg");
    EXPECT_STREQ(LMUtilities::GetBoxArtImageFileName("", "x", 13).c_str(), "x.jpg");
    EXPECT_STREQ(LMUtilities::GetBoxArtImageURL("www.lumora.example", 6, "My & Title").c_str(),
                 "http://www.lumora.example/images/boxart/135s/My%20%26%20Title135.jpg");
    EXPECT_STREQ(LMUtilities::GetBoxArtImageURL("h:8080", 12, "p").c_str(),
                 "http://h:8080/images/boxart/321/p321.jpg");
    EXPECT_DEATH(LMUtilities::GetBoxArtImageFileName(nullptr, "p", 0),
                 "\\(path != 0\\) && \\(boxartprefix != 0\\)");
}

TEST(Utilities, CacheFileNamesSeparateAccountsWithoutNamingSecrets) {
    auto name = [](const char* path, const char* password) {
        return std::string(
            LMUtilities::CacheFileName(path, "", "device-1", 7, "key", "user", password, 7, 358400)
                .c_str());
    };
    std::string a = name("/data/cache", "secret");
    EXPECT_EQ(a, name("/data/cache/", "secret"));
    EXPECT_NE(a, name("/data/cache", "other"));
    EXPECT_EQ(a.rfind("/data/cache/0_", 0), 0u) << a;  // the base URL is still empty: hash 0
    EXPECT_NE(a.find("_7_"), std::string::npos);
    EXPECT_EQ(a.substr(a.size() - 14), "_7_358400_1.lm");
    EXPECT_EQ(a.find("secret"), std::string::npos);
    EXPECT_EQ(name("", "secret").rfind("./0_", 0), 0u);
    // Negative device types keep their sign.
    std::string negative(LMUtilities::CacheFileName("/c", "", "", -3, "", "", "", 0, 0).c_str());
    EXPECT_EQ(negative, "/c/0_0_-3_0_0_0_0_0_1.lm");
}

TEST(Deployment, EnvironmentOverridesDefaultsAndPortsAreValidated) {
    LMDeployment d = LMDeployment::FromEnvironment();
    if (getenv("LM_WS_PRODUCTION_HOST") == nullptr) {
        EXPECT_STREQ(d.productionHost.c_str(), "www.lumora.example");
    }
    setenv("LM_WS_PRODUCTION_HOST", "127.0.0.1", 1);
    setenv("LM_WS_HTTPS_PORT", "8443", 1);
    setenv("LM_WS_HTTP_PORT", "99999", 1);
    unsetenv("LM_WS_WEB_HOST");
    d = LMDeployment::FromEnvironment();
    EXPECT_STREQ(d.productionHost.c_str(), "127.0.0.1");
    EXPECT_STREQ(d.webHost.c_str(), "127.0.0.1");  // box art follows the production host
    EXPECT_EQ(d.httpsPort, 8443);
    EXPECT_EQ(d.httpPort, 80);  // out of range: default kept
    unsetenv("LM_WS_PRODUCTION_HOST");
    unsetenv("LM_WS_HTTPS_PORT");
    unsetenv("LM_WS_HTTP_PORT");

    EXPECT_STREQ(LMDeployment::HostHeader("h", 443, true).c_str(), "h");
    EXPECT_STREQ(LMDeployment::HostHeader("h", 80, false).c_str(), "h");
    EXPECT_STREQ(LMDeployment::HostHeader("h", 443, false).c_str(), "h:443");
    EXPECT_STREQ(LMDeployment::HostHeader("h", 8443, true).c_str(), "h:8443");
}

}  // namespace
