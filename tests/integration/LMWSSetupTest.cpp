// Client set-up (LM_WS_Setup) against the service simulator: parameter checks and their statuses,
// the environment table and the environment query, the cache file and its refresh, TLS trust,
// and the headers and User-Agent of the requests as they go out.
#include <gtest/gtest.h>
#include <openssl/ssl.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

#include "LMAPITestSupport.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LMWSTestSupport.h"
#include "LM_WS.h"
#include "LmsimProcess.h"

namespace {

using namespace lmws_test;

// ---- Parameter checks (no network: EnvNum 2, access type 2, nothing listening) ----

TEST(LMWSSetupParams, ValidParametersSetUpWithoutAServer) {
    NoServer();
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    ASSERT_NE(client.h.Type, nullptr);
    EXPECT_EQ(*client.h.Type, 1);
    ASSERT_NE(client.Context(), nullptr);
    EXPECT_EQ(client.Block().SendTimeout, 30);
    EXPECT_EQ(client.Block().RecvTimeout, 88);
    EXPECT_EQ(client.Block().AccessType, 2);
    EXPECT_EQ(client.Context()->m_CacheMgr, nullptr);
    EXPECT_EQ(Str(client.Context()->m_RealTimeBrowse.Endpoint()),
              "https://127.0.0.1:1/api/RealTimeBrowse.asmx");
    EXPECT_EQ(Str(client.Context()->m_StreamAPI.Endpoint()),
              "https://127.0.0.1:1/api/StreamAPI.asmx");
    EXPECT_EQ(Str(client.Context()->m_DownloadAPI.Endpoint()),
              "https://127.0.0.1:1/api/DownloadAPI.asmx");
}

TEST(LMWSSetupParams, MissingRequiredTextsAreRejected) {
    NoServer();
    for (int field = 0; field < 4; ++field) {
        Params params;
        std::string* texts[] = {&params.apiKey, &params.uniqueId, &params.userName,
                                &params.password};
        texts[field]->clear();
        Client client;
        EXPECT_EQ(client.Setup(params), LM_WS_INVALID_ARGUMENT) << "field " << field;
        EXPECT_EQ(client.h.Client, nullptr);
        EXPECT_EQ(client.h.Type, nullptr);
    }
    Params params;
    params.Get();
    params.p.APIKey = nullptr;  // null as well as empty
    Client client;
    EXPECT_EQ(LM_WS_Setup(&client.h, &params.p), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(LM_WS_Setup(nullptr, params.Get()), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(LM_WS_Setup(&client.h, nullptr), LM_WS_INVALID_ARGUMENT);
}

TEST(LMWSSetupParams, DestinationUniqueIdUpTo350Characters) {
    NoServer();
    Params params;
    params.uniqueId.assign(350, 'd');
    Client accepted;
    EXPECT_EQ(accepted.Setup(params), LM_WS_OK);
    params.uniqueId.assign(351, 'd');
    Client rejected;
    EXPECT_EQ(rejected.Setup(params), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(rejected.h.Client, nullptr);
}

TEST(LMWSSetupParams, CacheLimitChecksOnlyWithACache) {
    NoServer();
    TempDir dir;
    struct Case {
        uint32_t type;
        uint32_t limit;
        LM_WS_Status expected;
    } cases[] = {
        {LM_WS_CacheParam::File, 358399, LM_WS_INVALID_ARGUMENT},
        {LM_WS_CacheParam::File, 358400, LM_WS_OK},
        {LM_WS_CacheParam::File, 0, LM_WS_OK},
        {LM_WS_CacheParam::Memory, 358399, LM_WS_INVALID_ARGUMENT},
        {LM_WS_CacheParam::None, 1, LM_WS_OK},
    };
    for (const Case& c : cases) {
        Params params;
        params.p.CacheType = c.type;
        params.p.CacheData = 0;  // no refresh: nothing to fetch
        params.p.CacheLimit = c.limit;
        params.cachePath = dir.path;
        Client client;
        EXPECT_EQ(client.Setup(params), c.expected) << c.type << "/" << c.limit;
    }
}

TEST(LMWSSetupParams, FileCacheNeedsAPathAndAFolder) {
    NoServer();
    TempDir dir;
    Params params;
    params.p.CacheType = LM_WS_CacheParam::File;
    params.Get();
    params.p.CachePath = nullptr;
    Client noPath;
    EXPECT_EQ(LM_WS_Setup(&noPath.h, &params.p), LM_WS_INVALID_ARGUMENT);

    // A folder below a regular file cannot be created.
    std::ofstream(dir.path + "/file") << "x";
    params.cachePath = dir.path + "/file/cache";
    Client blocked;
    EXPECT_EQ(blocked.Setup(params), LM_WS_CACHE_FOLDER_FAILED);
    EXPECT_EQ(blocked.h.Client, nullptr);

    // A missing folder is created.
    params.cachePath = dir.path + "/new/cache/";
    Client created;
    ASSERT_EQ(created.Setup(params), LM_WS_OK);
    struct stat st;
    EXPECT_EQ(stat((dir.path + "/new/cache").c_str(), &st), 0);
    EXPECT_EQ(Str(created.Block().Cache.CachePath).rfind(dir.path + "/new/cache/", 0), 0u);
}

TEST(LMWSSetupParams, CacheDatabaseThatCannotBeOpened) {
    NoServer();
    TempDir dir;
    // A cache type the cache manager does not know, and no file to delete.
    Params params;
    params.p.CacheType = 3;
    Client unknownType;
    EXPECT_EQ(unknownType.Setup(params), LM_WS_CACHE_OPEN_FAILED);
    EXPECT_EQ(unknownType.h.Client, nullptr);

    // The cache file's name taken by a folder that cannot be deleted.
    params.p.CacheType = LM_WS_CacheParam::File;
    params.cachePath = dir.path;
    LMString name = LMUtilities::CacheFileName(
        LMString(dir.path.c_str()), LMString(), LMString(params.uniqueId.c_str()),
        params.p.DestinationTypeID, LMString(params.apiKey.c_str()),
        LMString(params.userName.c_str()), LMString(params.password.c_str()), 0, 0);
    ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
    std::ofstream(std::string(name.c_str()) + "/keep") << "x";
    Client folder;
    EXPECT_EQ(folder.Setup(params), LM_WS_CACHE_OPEN_FAILED);
}

TEST(LMWSSetupParams, CorruptCacheFileIsReplaced) {
    NoServer();
    TempDir dir;
    Params params;
    params.p.CacheType = LM_WS_CacheParam::File;
    params.cachePath = dir.path;
    LMString name = LMUtilities::CacheFileName(
        LMString(dir.path.c_str()), LMString(), LMString(params.uniqueId.c_str()),
        params.p.DestinationTypeID, LMString(params.apiKey.c_str()),
        LMString(params.userName.c_str()), LMString(params.password.c_str()), 0, 0);
    std::ofstream(name.c_str()) << std::string(4096, 'Z');
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    EXPECT_EQ(client.Block().Cache.CachePath, name);
    ASSERT_NE(client.Context()->m_CacheMgr, nullptr);
    EXPECT_TRUE(client.Context()->m_CacheMgr->IsInitialised());
    std::ifstream in(name.c_str());
    char head[16] = {};
    in.read(head, 15);
    EXPECT_STREQ(head, "SQLite format 3");
}

TEST(LMWSSetupParams, UnreadableExtraRootsFailTlsSetup) {
    NoServer();
    setenv("LM_WS_CAFILE", "/nonexistent/ca.pem", 1);
    Params params;
    Client client;
    EXPECT_EQ(client.Setup(params), LM_WS_SSL_SETUP_FAILED);
    EXPECT_EQ(client.h.Client, nullptr);
    unsetenv("LM_WS_CAFILE");
}

// ---- Cache file names ----

TEST(LMWSSetupCacheName, SameSettingsSameFileOtherPasswordOtherFile) {
    NoServer();
    TempDir dir;
    auto nameFor = [&dir](const std::string& password) {
        Params params;
        params.p.CacheType = LM_WS_CacheParam::File;
        params.cachePath = dir.path;
        params.password = password;
        Client client;
        EXPECT_EQ(client.Setup(params), LM_WS_OK);
        return client.Context() != nullptr ? Str(client.Block().Cache.CachePath) : "";
    };
    std::string first = nameFor("secret");
    EXPECT_EQ(nameFor("secret"), first);
    EXPECT_NE(nameFor("secret2"), first);
    // Folder, separator, the hash of the still empty base URL (0), ..., the constant 1.
    EXPECT_EQ(first.rfind(dir.path + "/0_", 0), 0u) << first;
    EXPECT_EQ(first.substr(first.size() - 5), "_1.lm");
    EXPECT_EQ(first.find("secret"), std::string::npos);
    EXPECT_EQ(first.find("user@example"), std::string::npos);
}

// ---- Environment table: EnvNum 0, 1, 2 take no network ----

TEST(LMWSSetupEnvironment, FixedEnvironmentsPickTheTableEntry) {
    SetHosts("prod.test", "stg.test", "stgapi.test", "adult.test", "stg-adult.test");
    setenv("LM_WS_HTTPS_PORT", "443", 1);
    unsetenv("LM_WS_CAFILE");
    const char* expected[2][3] = {
        {"https://stgapi.test/api/", "https://stg.test/api/", "https://prod.test/api/"},
        {"https://stgapi.test/aac/api/", "https://stg-adult.test/api/", "https://adult.test/api/"},
    };
    for (int type = 0; type < 2; ++type) {
        for (unsigned env = 0; env < 3; ++env) {
            Params params;
            params.p.Type = type;
            params.p.EnvNum = env;
            Client client;
            ASSERT_EQ(client.Setup(params), LM_WS_OK) << type << "/" << env;
            EXPECT_EQ(Str(client.Block().ServiceBaseURL), expected[type][env]);
            EXPECT_EQ(client.Block().EnvID, static_cast<int>(env));
        }
    }
}

TEST(LMWSSetupEnvironment, PortOtherThan443IsPartOfTheURL) {
    SetHosts("prod.test", "stg.test", "stgapi.test", "adult.test", "stg-adult.test");
    setenv("LM_WS_HTTPS_PORT", "8443", 1);
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    EXPECT_EQ(Str(client.Block().ServiceBaseURL), "https://prod.test:8443/api/");
}

TEST(LMWSSetupEnvironment, QueryWithoutConnectionGivesNoConnection) {
    NoServer();
    Params params;
    params.p.EnvNum = 3;
    Client client;
    EXPECT_EQ(client.Setup(params), LM_WS_NO_CONNECTION);
    EXPECT_EQ(client.h.Client, nullptr);
}

// ---- Environment query against the simulator ----

struct QueryCase {
    const char* digit;
    int type;
    int envID;
    const char* url;  // with PORT for the simulator's HTTPS port
};

class LMWSSetupQuery : public ::testing::TestWithParam<QueryCase> {};

TEST_P(LMWSSetupQuery, AnswerDigitChoosesTheEnvironment) {
    const QueryCase& c = GetParam();
    LmsimProcess sim({"--env-digit", c.digit});
    ASSERT_TRUE(sim.Ready());
    PointAt(sim);
    // Distinct names for the environments that are not asked, so the URLs tell them apart.
    setenv("LM_WS_STAGING_HOST", "stg.test", 1);
    setenv("LM_WS_STAGING_API_HOST", "stgapi.test", 1);
    setenv("LM_WS_ADULT_STAGING_HOST", "stg-adult.test", 1);
    setenv("LM_WS_ADULT_PRODUCTION_HOST", "adult.test", 1);
    lmapi_test::LogCapture log;
    Params params;
    params.p.EnvNum = 3;
    params.p.Type = c.type;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    std::string url = c.url;
    url.replace(url.find("PORT"), 4, std::to_string(sim.HttpsPort()));
    EXPECT_EQ(Str(client.Block().ServiceBaseURL), url);
    EXPECT_EQ(client.Block().EnvID, c.envID);

    const std::string host = "127.0.0.1:" + std::to_string(sim.HttpsPort());
    EXPECT_NE(log.Text("soap_sent")
                  .find("GET /device/env/?d=device%200001&dt=7 HTTP/1.1\r\n"
                        "User-Agent: LMWSLib\r\nHost: " +
                        host + "\r\n\r\n"),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Digits, LMWSSetupQuery,
                         ::testing::Values(QueryCase{"0", 0, 0, "https://stgapi.test:PORT/api/"},
                                           QueryCase{"1", 0, 1, "https://stg.test:PORT/api/"},
                                           QueryCase{"2", 0, 2, "https://127.0.0.1:PORT/api/"},
                                           QueryCase{"7", 0, 7, "https://127.0.0.1:PORT/api/"},
                                           QueryCase{"0", 1, 0,
                                                     "https://stgapi.test:PORT/aac/api/"},
                                           QueryCase{"1", 1, 1, "https://stg-adult.test:PORT/api/"},
                                           QueryCase{"2", 1, 2, "https://adult.test:PORT/api/"}));

// ---- Set-up with the service: access type, cache refresh ----

TEST(LMWSSetupService, AccessTypeFromTheServiceWhenNotGiven) {
    for (const char* served : {"1", "2"}) {
        LmsimProcess sim({"--access-type", served});
        ASSERT_TRUE(sim.Ready());
        PointAt(sim);
        Params params;
        params.p.AccessType = 0;
        Client client;
        ASSERT_EQ(client.Setup(params), LM_WS_OK);
        EXPECT_EQ(client.Block().AccessType, atoi(served));
        StreamDownloadAPI& facade = client.Context()->m_StreamDownloadAPI;
        EXPECT_EQ(facade.AccessType(), atoi(served));
        struct soap& used = facade;
        EXPECT_EQ(&used, atoi(served) == 1 ? client.Context()->m_DownloadAPI.soap
                                           : client.Context()->m_StreamAPI.soap);
    }
}

TEST(LMWSSetupService, ALaterFileTypeAnswerMovesTheFacadeToo) {
    LmsimProcess sim({"--access-type", "1"});
    ASSERT_TRUE(sim.Ready());
    PointAt(sim);
    Params params;
    params.p.AccessType = 2;  // given: streaming, no query at set-up
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    LM_WS_FileType fileType;
    ASSERT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_OK);
    EXPECT_EQ(client.Block().AccessType, 1);
    struct soap& used = client.Context()->m_StreamDownloadAPI;
    EXPECT_EQ(&used, client.Context()->m_DownloadAPI.soap);
}

// Their log lines carry the exchange's own result, as every operation's does: 500 for an HTTP
// 500, whose status is -4500.
TEST(LMWSSetupService, FileTypeAndLoadTimeLogTheExchangesResult) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    PointAt(sim);
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    lmapi_test::LogCapture log;
    ASSERT_TRUE(sim.ArmFault("http-status", "500", 2));
    LM_WS_FileType fileType;
    EXPECT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_HTTP_BASE - 500);
    LM_WS_LengthAndText time;
    EXPECT_EQ(LM_WS_getLastCacheLoadTimeUTC(&client.h, &time), LM_WS_HTTP_BASE - 500);
    LM_WS_FreeResult(&time);
    const std::string lines = log.Text("soap_proxy");
    EXPECT_NE(lines.find("LM_WS_getFileType, ret:500\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("LM_WS_getLastCacheLoadTimeUTC, ret:500,utctime:\n"), std::string::npos)
        << lines;
}

TEST(LMWSSetupService, GivenAccessTypeIsKeptAndAFailedQueryGivesZero) {
    NoServer();
    Params params;
    params.p.AccessType = 1;
    Client given;
    ASSERT_EQ(given.Setup(params), LM_WS_OK);
    EXPECT_EQ(given.Block().AccessType, 1);
    params.p.AccessType = 5;  // asks the service, which is not there
    Client asked;
    ASSERT_EQ(asked.Setup(params), LM_WS_OK);
    EXPECT_EQ(asked.Block().AccessType, 0);
}

TEST(LMWSSetupService, CacheRefreshStoresTheLoadTimeAndClearsUserData) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    PointAt(sim);
    TempDir dir;
    Params params;
    params.p.CacheType = LM_WS_CacheParam::File;
    params.p.CacheData = LM_WS_CacheParam::Service | LM_WS_CacheParam::UserData;
    params.cachePath = dir.path;

    // User data left from an earlier run must be gone after set-up.
    {
        Client first;
        ASSERT_EQ(first.Setup(params), LM_WS_OK);
        ASSERT_EQ(first.Context()->m_CacheMgr->SetWishlistFlag(42, true), 1);
        bool flag = false;
        ASSERT_EQ(first.Context()->m_CacheMgr->GetWishlistFlag(42, flag), 1);
        ASSERT_TRUE(flag);
    }
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    LM_WS_LengthAndText time;
    ASSERT_EQ(LM_WS_getLastCacheLoadTimeUTC(&client.h, &time), LM_WS_OK);
    std::string served(time.Text, time.Length);
    LM_WS_FreeResult(&time);
    EXPECT_FALSE(served.empty());

    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(client.Block().Cache.CachePath.c_str(), &db), SQLITE_OK);
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(
        sqlite3_prepare_v2(db, "SELECT LastLoadTime FROM Cache WHERE ID = 1", -1, &stmt, nullptr),
        SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    EXPECT_EQ(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)), served);
    sqlite3_finalize(stmt);
    ASSERT_EQ(sqlite3_prepare_v2(db, "SELECT COUNT(*) FROM Userdata", -1, &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(stmt, 0), 0);
    sqlite3_finalize(stmt);
    sqlite3_close(db);
}

// ---- Calls: headers, User-Agent, TLS trust, connection failures ----

TEST(LMWSSetupCalls, EveryCallCarriesFreshHeaders) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    PointAt(sim);
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    lmapi_test::LogCapture log;
    LM_WS_FileType fileType;
    ASSERT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_OK);
    EXPECT_EQ(fileType.AccessType, 2);
    ASSERT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_OK);

    std::string sent = log.Text("soap_sent");
    // Two requests, each with its own complete header (the first answer's header must not be
    // what the second request sends).
    for (const char* part :
         {"<wsa:MessageID>uuid:getFileType</wsa:MessageID>",
          "<wsa:Action SOAP-ENV:mustUnderstand=\"true\">http://www.lumora.example/api/getFileType",
          "anonymous</wsa:Address>", "wsu:Id=\"User\"", "<wsse:Username>user@example",
          // The log shows the password hidden; the wire carries it.
          "PasswordText\">***</wsse:Password>", "<LM1:APIKey>api-key</LM1:APIKey>",
          "<LM1:DestinationUniqueID>device 0001</LM1:DestinationUniqueID>",
          "<LM1:DestinationTypeID>7</LM1:DestinationTypeID>"}) {
        size_t first = sent.find(part);
        ASSERT_NE(first, std::string::npos) << part << "\n" << sent;
        EXPECT_NE(sent.find(part, first + 1), std::string::npos) << part;
    }
    EXPECT_NE(sent.find("<LM1:DeviceSettings"), std::string::npos);
    EXPECT_NE(sent.find("<wsa:To SOAP-ENV:mustUnderstand=\"true\">https://127.0.0.1:" +
                        std::to_string(sim.HttpsPort()) + "/api/RealTimeBrowse.asmx</wsa:To>"),
              std::string::npos);
}

struct AgentCase {
    const char* revision;
    const char* firmware;
    const char* model;
    const char* built;  // what LM_WS_getUserAgent reports
    const char* wire;   // the header value sent
};

class LMWSSetupUserAgent : public ::testing::TestWithParam<AgentCase> {};

TEST_P(LMWSSetupUserAgent, BuiltAndSent) {
    const AgentCase& c = GetParam();
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    PointAt(sim);
    Params params;
    params.revision = c.revision;
    params.firmware = c.firmware;
    params.model = c.model;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);

    LM_WS_LengthAndText agent;
    ASSERT_EQ(LM_WS_getUserAgent(&client.h, &agent), LM_WS_OK);
    ASSERT_NE(agent.Text, nullptr);
    EXPECT_STREQ(agent.Text, c.built);
    EXPECT_EQ(agent.Length, strlen(c.built));
    LM_WS_FreeResult(&agent);

    lmapi_test::LogCapture log;
    LM_WS_FileType fileType;
    ASSERT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_OK);
    std::string sent = log.Text("soap_sent");
    EXPECT_NE(sent.find(std::string("\r\nUser-Agent: ") + c.wire + "\r\n"), std::string::npos)
        << sent.substr(0, 400);
    EXPECT_EQ(sent.find("User-Agent", sent.find("User-Agent") + 1), std::string::npos)
        << "one User-Agent header only";
    EXPECT_EQ(sent.find("gSOAP/2.8"), std::string::npos);
    EXPECT_NE(sent.find("\r\nAccept-Encoding: gzip, deflate\r\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Variants, LMWSSetupUserAgent,
    ::testing::Values(AgentCase{"", "", "", "", "gSOAP/2.7"},
                      AgentCase{"", "", "BDP-9", " LMMODEL:BDP-9", " LMMODEL:BDP-9"},
                      AgentCase{"2.1", "", "", "LMSDK: |2.1", "LMSDK: |2.1"},
                      AgentCase{"", "fw7", "", "LMSDK: fw7|", "LMSDK: fw7|"},
                      AgentCase{"2.1", "fw7", "BDP-9", "LMSDK: fw7|2.1 LMMODEL:BDP-9",
                                "LMSDK: fw7|2.1 LMMODEL:BDP-9"}));

TEST(LMWSSetupCalls, UntrustedServerCertificateIsATlsFailure) {
    LmsimProcess sim;
    ASSERT_TRUE(sim.Ready());
    PointAt(sim, /*trust=*/false);
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    LM_WS_FileType fileType;
    EXPECT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_SSL_FAILED);
    EXPECT_EQ(client.Block().AccessType, 2);  // a failed call leaves the access type alone

    // The same server is accepted once its CA is added to the built-in roots.
    PointAt(sim, /*trust=*/true);
    Client trusted;
    ASSERT_EQ(trusted.Setup(params), LM_WS_OK);
    EXPECT_EQ(LM_WS_getFileType(&trusted.h, &fileType), LM_WS_OK);

    // The roots are parsed once per process: every context of every client holds the very
    // same certificate objects, each in a store of its own (a store is not shared between
    // threads), and the extra file adds one certificate to them.
    Client another;
    ASSERT_EQ(another.Setup(params), LM_WS_OK);
    auto certs = [](Client& c, int which) {
        LMWSClient* x = c.Context();
        struct soap* soap = which == 0   ? x->m_RealTimeBrowse.soap
                            : which == 1 ? x->m_StreamAPI.soap
                                         : x->m_DownloadAPI.soap;
        X509_STORE* store = SSL_CTX_get_cert_store(soap->ctx);
        std::set<const X509*> all;
        STACK_OF(X509_OBJECT)* objects = X509_STORE_get0_objects(store);
        for (int i = 0; i < sk_X509_OBJECT_num(objects); ++i) {
            all.insert(X509_OBJECT_get0_X509(sk_X509_OBJECT_value(objects, i)));
        }
        return std::make_pair(store, all);
    };
    const auto first = certs(trusted, 0);
    for (int which = 0; which < 3; ++which) {
        for (Client* c : {&trusted, &another}) {
            const auto other = certs(*c, which);
            EXPECT_EQ(other.second, first.second);
            if (c != &trusted || which != 0) {
                EXPECT_NE(other.first, first.first);
            }
        }
    }
    EXPECT_EQ(certs(client, 0).second.size() + 1, first.second.size());
}

TEST(LMWSSetupCalls, RefusedConnectionIsNoConnection) {
    NoServer();
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    LM_WS_FileType fileType;
    EXPECT_EQ(LM_WS_getFileType(&client.h, &fileType), LM_WS_NO_CONNECTION);
    LM_WS_LengthAndText time;
    EXPECT_EQ(LM_WS_getLastCacheLoadTimeUTC(&client.h, &time), LM_WS_NO_CONNECTION);
    ASSERT_NE(time.Type, nullptr);  // a failed call still leaves a record to release
    LM_WS_FreeResult(&time);
}

// ---- Per-call headers of the proxies and the facade ----

TEST(LMWSSetupProxies, SetupReplacesTheHeaderLeftByTheLastAnswer) {
    NoServer();
    Params params;
    params.p.AccessType = 1;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    RealTimeBrowse& rtb = client.Context()->m_RealTimeBrowse;
    // What an answer could leave behind: a header with another service's device element.
    rtb.soap->header = soap_new_SOAP_ENV__Header(rtb.soap);
    rtb.soap->header->LM1__StreamDeviceRequestSettings_ =
        soap_new_LM1__StreamDeviceRequestSettings(rtb.soap);
    ASSERT_EQ(rtb.Setup(LMString("getNavigation")), SOAP_OK);
    SOAP_ENV__Header* header = rtb.soap->header;
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->LM1__StreamDeviceRequestSettings_, nullptr);
    ASSERT_NE(header->LM1__DeviceSettings_, nullptr);
    EXPECT_STREQ(header->LM1__DeviceSettings_->APIKey, "api-key");
    EXPECT_EQ(header->LM1__DeviceSettings_->DestinationTypeID, 7);
    EXPECT_STREQ(header->wsa__MessageID, "uuid:getNavigation");
    EXPECT_STREQ(header->wsa__Action, "http://www.lumora.example/api/getNavigation");
    rtb.destroy();

    // The facade prepares the download service for access type 1.
    StreamDownloadAPI& facade = client.Context()->m_StreamDownloadAPI;
    ASSERT_EQ(facade.Setup(LMString("getMyVideos")), SOAP_OK);
    struct soap& used = facade;
    EXPECT_EQ(&used, client.Context()->m_DownloadAPI.soap);
    ASSERT_NE(used.header, nullptr);
    EXPECT_NE(used.header->LM1__DownloadDeviceRequestSettings_, nullptr);
    EXPECT_EQ(used.header->LM1__StreamDeviceRequestSettings_, nullptr);
    client.Context()->m_DownloadAPI.destroy();
}

TEST(LMWSSetupProxiesDeathTest, ParametersAreSetOnce) {
    NoServer();
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    EXPECT_DEATH(client.Context()->m_StreamAPI.SetParams(&client.Block()), "m_Params == 0");
    StreamAPI fresh;
    EXPECT_DEATH(fresh.Setup(LMString("getConfig")), "m_Params != 0");
    EXPECT_DEATH(fresh.SetParams(nullptr), "params != 0");
}

// ---- Handles without a client ----

TEST(LMWSSetupHandle, OperationsWithoutAClientAreRejected) {
    LM_WS_Handle handle{};
    LM_WS_LengthAndText text;
    EXPECT_EQ(LM_WS_getUserAgent(&handle, &text), LM_WS_INVALID_ARGUMENT);
    EXPECT_NE(text.Type, nullptr);
    LM_WS_FreeResult(&text);
    EXPECT_EQ(LM_WS_getLastCacheLoadTimeUTC(&handle, &text), LM_WS_INVALID_ARGUMENT);
    LM_WS_FreeResult(&text);
    LM_WS_FileType fileType;
    EXPECT_EQ(LM_WS_getFileType(&handle, &fileType), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(LM_WS_getFileType(nullptr, &fileType), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(LM_WS_getUserAgent(nullptr, nullptr), LM_WS_INVALID_ARGUMENT);
}

TEST(LMWSSetupHandle, TeardownEmptiesTheHandleAndIsRepeatable) {
    NoServer();
    LM_WS_Handle never{};
    LM_WS_Teardown(&never);
    LM_WS_Teardown(nullptr);
    EXPECT_EQ(never.Client, nullptr);

    Params params;
    LM_WS_Handle handle{};
    ASSERT_EQ(LM_WS_Setup(&handle, params.Get()), LM_WS_OK);
    // A second set-up on the same handle replaces the first client.
    ASSERT_EQ(LM_WS_Setup(&handle, params.Get()), LM_WS_OK);
    LM_WS_Teardown(&handle);
    EXPECT_EQ(handle.Client, nullptr);
    EXPECT_EQ(handle.Type, nullptr);
    LM_WS_Teardown(&handle);
    LM_WS_LengthAndText text;
    EXPECT_EQ(LM_WS_getUserAgent(&handle, &text), LM_WS_INVALID_ARGUMENT);
    LM_WS_FreeResult(&text);
}

}  // namespace
