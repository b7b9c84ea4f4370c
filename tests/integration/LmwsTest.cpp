// lmws, the command-line client, run as a child process: usage errors stop it before any
// network use, set-up and operation failures set the exit status without hiding the other
// lines, and against the simulator it prints pages of titles, also from its cache file once the
// service is gone.
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "FilledRecord.h"
#include "LmsimProcess.h"
#include "LmwsCommandLine.h"
#include "LmwsOperations.h"
#include "LmwsRecordJson.h"

namespace {

using nlohmann::json;

// A fresh folder, removed with its contents at the end of the test.
struct TempDir {
    std::string path;
    TempDir() {
        char templ[] = "/tmp/lmwstestXXXXXX";
        path = mkdtemp(templ);
    }
    ~TempDir() { (void)std::system(("rm -rf '" + path + "'").c_str()); }
};

// Every service host is 127.0.0.1 at the given ports; `caFile` "" trusts no extra CA.
void PointAt(int httpsPort, int httpPort, const std::string& caFile) {
    for (const char* name :
         {"LM_WS_PRODUCTION_HOST", "LM_WS_STAGING_HOST", "LM_WS_STAGING_API_HOST",
          "LM_WS_ADULT_PRODUCTION_HOST", "LM_WS_ADULT_STAGING_HOST", "LM_WS_WEB_HOST"}) {
        setenv(name, "127.0.0.1", 1);
    }
    setenv("LM_WS_HTTPS_PORT", std::to_string(httpsPort).c_str(), 1);
    setenv("LM_WS_HTTP_PORT", std::to_string(httpPort).c_str(), 1);
    if (caFile.empty()) {
        unsetenv("LM_WS_CAFILE");
    } else {
        setenv("LM_WS_CAFILE", caFile.c_str(), 1);
    }
}

// Nothing listens on port 1: connections are refused at once.
void NoServer() {
    PointAt(1, 1, "");
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// What one run of lmws left: exit status, stdout, stderr and, with `jsonLines`, stdout's lines
// parsed as JSON (a line that is not JSON then fails the test).
struct LmwsRun {
    int status = -1;
    std::string out;
    std::string err;
    std::vector<json> lines;
    long peakKb = 0;     // the process's peak resident memory
    double seconds = 0;  // from start to exit
};

LmwsRun Lmws(const std::vector<std::string>& args, bool jsonLines = true) {
    TempDir dir;
    const std::string outPath = dir.path + "/out";
    const std::string errPath = dir.path + "/err";
    pid_t pid = fork();
    if (pid == 0) {
        int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        std::vector<std::string> all = {LMWS_PATH};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& a : all) {
            argv.push_back(&a[0]);
        }
        argv.push_back(nullptr);
        execv(LMWS_PATH, argv.data());
        _exit(127);
    }
    LmwsRun run;
    // A hung client fails the test instead of hanging it.
    const auto start = std::chrono::steady_clock::now();
    auto deadline = start + std::chrono::seconds(60);
    int status = 0;
    struct rusage usage {};
    while (wait4(pid, &status, WNOHANG, &usage) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
            ADD_FAILURE() << "lmws did not end within 60 s";
            return run;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.peakKb = usage.ru_maxrss;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.out = ReadFile(outPath);
    run.err = ReadFile(errPath);
    std::istringstream lines(run.out);
    for (std::string line; jsonLines && std::getline(lines, line);) {
        json parsed = json::parse(line, nullptr, false);
        EXPECT_FALSE(parsed.is_discarded()) << "not JSON on stdout: " << line;
        run.lines.push_back(parsed);
    }
    return run;
}

// A loopback port that accepts and drops every connection, counting them: shows whether a run
// used the network at all.
class ConnectionCounter {
public:
    ConnectionCounter() {
        m_Socket = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t len = sizeof(addr);
        if (bind(m_Socket, reinterpret_cast<sockaddr*>(&addr), len) != 0 ||
            listen(m_Socket, 16) != 0 ||
            getsockname(m_Socket, reinterpret_cast<sockaddr*>(&addr), &len) != 0) {
            return;
        }
        m_Port = ntohs(addr.sin_port);
        m_Thread = std::thread([this] {
            pollfd p = {m_Socket, POLLIN, 0};
            while (!m_Stop.load(std::memory_order_acquire)) {
                if (poll(&p, 1, 20) > 0) {
                    int c = accept(m_Socket, nullptr, nullptr);
                    if (c >= 0) {
                        m_Count.fetch_add(1, std::memory_order_release);
                        close(c);
                    }
                }
            }
        });
    }
    ~ConnectionCounter() {
        m_Stop.store(true, std::memory_order_release);
        if (m_Thread.joinable()) {
            m_Thread.join();
        }
        close(m_Socket);
    }
    ConnectionCounter(const ConnectionCounter&) = delete;
    ConnectionCounter& operator=(const ConnectionCounter&) = delete;

    int Port() const { return m_Port; }
    int Count() const { return m_Count.load(std::memory_order_acquire); }

private:
    int m_Socket = -1;
    int m_Port = 0;
    std::atomic<bool> m_Stop{false};
    std::atomic<int> m_Count{0};
    std::thread m_Thread;
};

// ---- The command line (no service) ----

TEST(LmwsCommandLine, UsageErrorsNameTheArgumentAndStayOffTheNetwork) {
    ConnectionCounter counter;
    ASSERT_GT(counter.Port(), 0);
    PointAt(counter.Port(), counter.Port(), "");
    struct Case {
        std::vector<std::string> args;
        const char* message;
    } cases[] = {
        {{}, "no operation given"},
        {{"--bogus", "getNavigation"}, "unknown option '--bogus'"},
        {{"getNavigation", "--api-key"}, "getNavigation: expects 0 argument(s) (), got 1"},
        {{"--api-key"}, "--api-key: missing value"},
        {{"--quiet=1", "getNavigation"}, "--quiet takes no value"},
        {{"--cache-type", "x", "getNavigation"}, "--cache-type: 'x' is not a number"},
        {{"--cache-type=3", "getNavigation"}, "--cache-type: 3 is out of range (0..2)"},
        {{"--proxy-port=0x10000", "getNavigation"}, "--proxy-port: 0x10000 is out of range"},
        {{"--env", "-1", "getNavigation"}, "--env: -1 is out of range"},
        {{"--device-type", "99999999999999999999", "getNavigation"},
         "--device-type: 99999999999999999999 is out of range"},
        {{"--env", "2 ", "getNavigation"}, "--env: '2 ' is not a number"},
        {{"getNothing"}, "unknown operation 'getNothing'"},
        {{"getTitles", "12", "1", "20"},
         "getTitles: expects 4 argument(s) (genreID page itemsPerPage purchaseType), got 3"},
        // The first operation is fine; nothing runs because the second is not.
        {{"getNavigation", "--", "getTitles", "12", "x", "20", "2"},
         "getTitles: page: 'x' is not a number"},
        {{"getGenreLabel", "2147483648"}, "getGenreLabel: genreID: 2147483648 is out of range"},
        {{"getTitlesByGenreIDs", "12,,13", "1", "20", "2"},
         "genreIDs: '12,,13' is not a comma-separated list of numbers"},
        {{"getNavigation", "--"}, "operation is missing"},
        {{"--", "getNavigation"}, "operation is missing"},
        // A flag is one of four words; a number other than 0 and 1 is a slip, not "true".
        {{"doPurchaseSavedBilling", "5", "", "2"},
         "doPurchaseSavedBilling: usePrePaidFunds: '2' is not a flag (0, 1, false or true)"},
        {{"doPurchaseSavedBilling", "5", "", "TRUE"}, "usePrePaidFunds: 'TRUE' is not a flag"},
        {{"doPurchaseSavedBilling", "5", "1.2.3.4", ""}, "usePrePaidFunds: '' is not a flag"},
        // A mask is unsigned: negative or wider than 32 bits is refused.
        {{"updateLocalCache", "-1"}, "updateLocalCache: mask: -1 is out of range (0..4294967295)"},
        {{"updateLocalCache", "0x100000000"}, "mask: 0x100000000 is out of range"},
        // A box-art size outside the enumeration never reaches the library.
        {{"getBoxArtImage", "13", "abc"}, "getBoxArtImage: size: 13 is out of range (0..12)"},
        {{"getBoxArtImage", "-1", "abc"}, "size: -1 is out of range (0..12)"},
        {{"checkTitlesInWishlist", "1,", "0"},
         "titleIDs: '1,' is not a comma-separated list of numbers"},
        // An empty text counts as an argument: the missing one here is the position.
        {{"manageStreamingInstanceStatus", "", "1"},
         "manageStreamingInstanceStatus: expects 3 argument(s) (streamID status "
         "stopTimeSeconds), got 2"},
    };
    for (const Case& c : cases) {
        std::string line;
        for (const std::string& a : c.args) {
            line += "[" + a + "]";
        }
        LmwsRun run = Lmws(c.args);
        EXPECT_EQ(run.status, 2) << line;
        EXPECT_EQ(run.out, "") << line;
        EXPECT_NE(run.err.find(c.message), std::string::npos) << line << "\n" << run.err;
    }
    EXPECT_EQ(counter.Count(), 0);

    // The same port sees a valid line's set-up ask for the file type: the count above means
    // something.
    LmwsRun valid = Lmws({"getUserAgent"});
    EXPECT_EQ(valid.status, 0) << valid.err;
    EXPECT_GT(counter.Count(), 0);
}

TEST(LmwsCommandLine, HelpListsEveryOptionWithItsDefaultAndEveryOperation) {
    LmwsRun run = Lmws({"--help"}, false);
    EXPECT_EQ(run.status, 0);
    const char* options[] = {
        "api-key",    "auth-token", "device-id",  "device-type", "user",           "password",
        "base-url",   "type",       "env",        "cache-type",  "cache-data",     "cache-limit",
        "cache-path", "proxy-host", "proxy-port", "proxy-user",  "proxy-password", "access-type",
        "revision",   "firmware",   "model"};
    for (const char* name : options) {
        size_t at = run.out.find(std::string("  --") + name + " ");
        ASSERT_NE(at, std::string::npos) << name;
        size_t next = run.out.find("\n  -", at + 1);
        EXPECT_NE(run.out.substr(at, next - at).find("(default "), std::string::npos) << name;
    }
    // Each operation's line names its arguments in the function's order.
    for (const LmwsOperation& op : LmwsOperationTable()) {
        size_t at = run.out.find(std::string("\n  ") + op.name + (op.args.empty() ? "\n" : " "));
        ASSERT_NE(at, std::string::npos) << op.name;
        std::string line = run.out.substr(at + 1, run.out.find('\n', at + 1) - at - 1);
        size_t from = 0;
        for (const LmwsParam& a : op.args) {
            from = line.find(std::string(" ") + a.name + ":", from);
            ASSERT_NE(from, std::string::npos) << line << " lacks " << a.name;
        }
    }
}

// Every LM_WS_ operation the public header declares, but set-up itself.
std::set<std::string> DeclaredOperations() {
    std::set<std::string> names;
    const std::string header = ReadFile(std::string(LM_SOURCE_DIR) + "/Public/LM_WS.h");
    const std::string returnType = "LM_WS_Status LM_WS_";
    for (size_t at = header.find(returnType); at != std::string::npos;
         at = header.find(returnType, at)) {
        at += returnType.size();
        size_t end = at;
        while (end < header.size() &&
               (isalnum(static_cast<unsigned char>(header[end])) || header[end] == '_')) {
            ++end;
        }
        if (end < header.size() && header[end] == '(') {
            names.insert(header.substr(at, end - at));
        }
    }
    names.erase("Setup");
    return names;
}

TEST(LmwsCommandLine, EveryDeclaredOperationIsOfferedAndListedInHelp) {
    const std::set<std::string> declared = DeclaredOperations();
    // The header is where it should be and the pattern matches its declarations.
    ASSERT_GT(declared.size(), 50u);
    ASSERT_EQ(declared.count("getBoxArtImage"), 1u);
    // And the table offers nothing else: a misspelt name would leave a function out.
    for (const LmwsOperation& op : LmwsOperationTable()) {
        EXPECT_EQ(declared.count(op.name), 1u) << op.name << " is not declared";
    }
    EXPECT_EQ(LmwsOperationTable().size(), declared.size());

    LmwsRun run = Lmws({"--help"}, false);
    ASSERT_EQ(run.status, 0);
    for (const std::string& name : declared) {
        EXPECT_NE(LmwsFindOperation(name), nullptr) << name << " has no row";
        EXPECT_NE(run.out.find("\n  " + name), std::string::npos) << name << " not in --help";
    }
    // The argument kinds beyond int, text and int-list show in --help.
    EXPECT_NE(
        run.out.find("  doPurchaseSavedBilling skuID:int ipAddress:text usePrePaidFunds:flag\n"),
        std::string::npos);
    EXPECT_NE(run.out.find("  updateLocalCache mask:uint\n"), std::string::npos);
    EXPECT_NE(run.out.find("  getBoxArtImage size:0..12 prefix:text\n"), std::string::npos);
    // Every line stays within 100 columns, the long descriptions wrapped.
    std::istringstream lines(run.out);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 100u) << line;
    }
}

// The arguments of the calls a command line parses to, which must be usable.
std::vector<LmwsCall> Parse(const std::vector<std::string>& words) {
    LmwsCommandLine command;
    std::string error = LmwsParseCommandLine(words, command);
    EXPECT_EQ(error, "");
    return command.calls;
}

TEST(LmwsCommandLine, FlagsMasksRangesAndEmptyTextsReachTheCallAsWritten) {
    std::vector<LmwsCall> calls =
        Parse({"doPurchaseSavedBilling", "5", "", "true", "--", "doPurchaseSavedBilling", "-5",
               "1.2.3.4", "false", "--", "doPurchaseSavedBilling", "0x10", "x", "1", "--",
               "doPurchaseSavedBilling", "7", "y", "0"});
    ASSERT_EQ(calls.size(), 4u);
    const uint8_t flags[] = {1, 0, 1, 0};
    const int32_t skus[] = {5, -5, 16, 7};
    for (size_t i = 0; i < 4; ++i) {
        ASSERT_EQ(calls[i].args.size(), 3u);
        EXPECT_EQ(calls[i].args[0].number, skus[i]) << i;
        EXPECT_EQ(calls[i].args[2].flag, flags[i]) << i;
    }
    EXPECT_EQ(calls[0].args[1].text, "");
    EXPECT_EQ(calls[1].args[1].text, "1.2.3.4");

    calls = Parse({"updateLocalCache", "0xffffffff", "--", "updateLocalCache", "4294967295", "--",
                   "updateLocalCache", "5"});
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].args[0].unsignedNumber, 0xffffffffu);
    EXPECT_EQ(calls[1].args[0].unsignedNumber, 0xffffffffu);
    EXPECT_EQ(calls[2].args[0].unsignedNumber, 5u);

    calls = Parse({"getBoxArtImage", "0", "", "--", "getBoxArtImage", "12", "p", "--",
                   "manageStreamingInstanceStatus", "", "-1", "0", "--", "checkTitlesInWishlist",
                   "100016,-3", "2"});
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0].args[0].number, 0);
    EXPECT_EQ(calls[0].args[1].text, "");
    EXPECT_EQ(calls[1].args[0].number, 12);
    EXPECT_EQ(calls[2].args[0].text, "");
    EXPECT_EQ(calls[2].args[1].number, -1);
    EXPECT_EQ(calls[3].args[0].list, (std::vector<int32_t>{100016, -3}));
    EXPECT_EQ(calls[3].args[1].number, 2);
}

// ---- Records as JSON (no service) ----

char* Chars(const char* text) {
    return const_cast<char*>(text);
}

TEST(LmwsRecordJson, PurchasedForPassesAreFlatAndKeepTheirOwnStatus) {
    LM_WS_TitleListingPurchasedForPass pass{};
    pass.Purchased.TitleListing.TitleID = 100016;
    pass.Purchased.TitleListing.TitleName = Chars("Spy");
    pass.Purchased.TitleListing.IsTvListing = 1;
    pass.Purchased.PassID = 77;
    pass.Purchased.RentalPeriod = Chars("48");
    pass.ResponseCode = 3;
    pass.ResponseMessage = Chars("pass expired");
    LM_WS_TitlesPurchasedForPassesResponse record{};
    record.Count = 1;
    record.Array = &pass;

    json out = json::parse(LmwsToJson(record).dump());
    EXPECT_EQ(out["ResponseCode"], 0);
    ASSERT_EQ(out["TitleListingPurchasedForPass"].size(), 1u);
    const json& one = out["TitleListingPurchasedForPass"][0];
    EXPECT_EQ(one["TitleID"], 100016);
    EXPECT_EQ(one["TitleName"], "Spy");
    EXPECT_EQ(one["IsTvListing"], true);
    EXPECT_EQ(one["PassID"], 77);
    EXPECT_EQ(one["RentalPeriod"], "48");
    EXPECT_EQ(one["ResponseCode"], 3);
    EXPECT_EQ(one["ResponseMessage"], "pass expired");
    // Texts the record does not hold, and lists it has none of, are "" and [].
    EXPECT_EQ(one["MPAARating"], "");
    EXPECT_EQ(one["AvailableProducts"], json::array());
}

TEST(LmwsRecordJson, NestedAnswersAreObjectsAndFlagsAreBooleans) {
    LM_WS_BillingInfoAndPPCBalanceResponse both{};
    both.ResponseCode = 12;
    both.BillingInfo.ResponseCode = 12;
    both.BillingInfo.CCLastFour = Chars("4242");
    both.PPCardBalance.Balance = 1500;
    json out = json::parse(LmwsToJson(both).dump());
    EXPECT_EQ(out["ResponseCode"], 12);
    EXPECT_EQ(out["BillingInfo"]["ResponseCode"], 12);
    EXPECT_EQ(out["BillingInfo"]["CCLastFour"], "4242");
    EXPECT_EQ(out["PPCardBalance"]["ResponseCode"], 0);
    EXPECT_EQ(out["PPCardBalance"]["Balance"], 1500);

    LM_WS_RentalExpirationResponse rental{};
    rental.ShouldDisplay = 1;
    rental.HoursRemaining = 5;
    out = json::parse(LmwsToJson(rental).dump());
    EXPECT_EQ(out["ShouldDisplay"], true);
    EXPECT_EQ(out["HoursRemaining"], 5);

    LM_WS_ConfigurationItem items[] = {{Chars("BandwithCheckURL"), Chars("http://h/f")},
                                       {Chars("Empty"), nullptr}};
    LM_WS_ConfigResponse config{};
    config.Count = 2;
    config.Array = items;
    out = json::parse(LmwsToJson(config).dump());
    EXPECT_EQ(out["ConfigurationSet"],
              json::parse(R"([{"Key": "BandwithCheckURL", "Value": "http://h/f"},
                              {"Key": "Empty", "Value": ""}])"));
}

// The keys of a JSON object in their order, separated by spaces.
std::string Keys(const LmwsJson& object) {
    std::string keys;
    for (const auto& item : object.items()) {
        keys += (keys.empty() ? "" : " ") + item.key();
    }
    return keys;
}

// A filled record's texts hold their members' names (FilledRecord.h): each must come out under
// its own name.
void ExpectTextsUnderTheirNames(const LmwsJson& value) {
    for (const auto& item : value.items()) {
        if (item.value().is_string()) {
            EXPECT_EQ(item.value(), item.key());
        } else if (item.value().is_structured()) {
            ExpectTextsUnderTheirNames(item.value());
        }
    }
}

const char kTitleKeys[] =
    "TitleID TitleName BoxArtPrefix TitlePosition EpisodeNumber BonusAssets IsTvListing "
    "MPAARating AvailableProducts IsTHXMediaDirectorEnabled IsTHXMediaDirectorEnabledForTrailer "
    "CHVRSRating LoyaltyPointsForBuy LoyaltyPointsForRent";

TEST(LmwsRecordJson, FullyPopulatedRecordsShowEveryFieldTheTitleFlatAndFirst) {
    LM_WS_TitleListingResponses pages;
    LM_WS_InitResult(&pages, LM_WS_ResultTitleListingResponses);
    FillRecord(pages);
    const LmwsJson all = LmwsToJson(pages);
    LM_WS_FreeResult(&pages);
    EXPECT_EQ(Keys(all), "ResponseCode ResponseMessage TitleListingResponse");
    ASSERT_EQ(all["TitleListingResponse"].size(), 2u);
    const LmwsJson& page = all["TitleListingResponse"][1];
    EXPECT_EQ(Keys(page), std::string(kTitleKeys) +
                              " ResponseCode ResponseMessage Synopsys UserRating Directors Actors "
                              "Writers Producers Copyright RunTime IsAvailInUserWishList "
                              "RatingReason");
    EXPECT_EQ(page["IsTvListing"], true);
    ASSERT_EQ(page["AvailableProducts"].size(), 2u);
    const LmwsJson& product = page["AvailableProducts"][1];
    EXPECT_EQ(product["AvailableAssets"].size(), 2u);
    EXPECT_TRUE(product["AvailableAssets"][1].is_number());
    EXPECT_EQ(product["AvailableAudioProfiles"].size(), 2u);
    EXPECT_EQ(page["BonusAssets"].size(), 2u);
    ExpectTextsUnderTheirNames(all);

    LM_WS_TitlesPurchasedForPassesResponse passes;
    LM_WS_InitResult(&passes, LM_WS_ResultTitlesPurchasedForPasses);
    FillRecord(passes);
    const LmwsJson bought = LmwsToJson(passes);
    LM_WS_FreeResult(&passes);
    ASSERT_EQ(bought["TitleListingPurchasedForPass"].size(), 2u);
    EXPECT_EQ(Keys(bought["TitleListingPurchasedForPass"][0]),
              std::string(kTitleKeys) +
                  " EpisodeID TvListingTitleID PurchaseType Status RentalPeriod PassID PlayStatus "
                  "StartTimeSeconds ResponseCode ResponseMessage");
    ExpectTextsUnderTheirNames(bought);
}

TEST(LmwsRecordJson, LengthAndTextKeepsItsNulsAndShowsAMissingTextAsNull) {
    char bytes[] = "a\0b\0c";
    LM_WS_LengthAndText file{nullptr, 5, bytes};
    EXPECT_EQ(LmwsToJson(file).dump(), R"({"Length":5,"Text":"a\u0000b\u0000c"})");
    LM_WS_LengthAndText unreadable{nullptr, 0, nullptr};
    EXPECT_EQ(LmwsToJson(unreadable).dump(), R"({"Length":0,"Text":null})");
}

// ---- Without the service: set-up options that need no network ----

TEST(LmwsOffline, TextOptionsReachTheClientAndInvalidUtf8IsReplaced) {
    NoServer();
    // Both option forms; the firmware text is not UTF-8.
    LmwsRun run =
        Lmws({"--access-type", "2", "--revision=r1", "--firmware", "fw\xff", "getUserAgent"});
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(run.lines.size(), 1u) << run.out;
    EXPECT_EQ(run.lines[0]["operation"], "getUserAgent");
    EXPECT_EQ(run.lines[0]["status"], 0);
    EXPECT_EQ(run.lines[0]["result"]["Text"], "LMSDK: fw\xEF\xBF\xBD|r1");
}

TEST(LmwsOffline, FailedSetupIsReportedAndNothingRuns) {
    NoServer();
    TempDir dir;
    LmwsRun run = Lmws({"--access-type=2", "--cache-type=2", "--cache-path", dir.path,
                        "--cache-limit", "1000", "getUserAgent", "--", "getUserAgent"});
    EXPECT_EQ(run.status, 1);
    ASSERT_EQ(run.lines.size(), 1u) << run.out;
    EXPECT_EQ(run.lines[0]["operation"], "Setup");
    EXPECT_EQ(run.lines[0]["status"], -1000);
}

TEST(LmwsOffline, AnEmptyTextReachesTheLibraryWhichSendsNothing) {
    ConnectionCounter counter;
    ASSERT_GT(counter.Port(), 0);
    PointAt(counter.Port(), counter.Port(), "");
    // With the access type given, set-up asks nothing; the library refuses each empty text.
    LmwsRun run = Lmws({"--access-type", "2", "manageStreamingInstanceStatus", "", "1", "600", "--",
                        "assignGiftCertificateToUser", "", "--", "removeAllMyPurchases", ""});
    EXPECT_EQ(run.status, 1);
    ASSERT_EQ(run.lines.size(), 3u) << run.out << run.err;
    for (const json& line : run.lines) {
        EXPECT_EQ(line["status"], -1000) << line;
        EXPECT_EQ(line["result"]["ResponseCode"], 0) << line;
    }
    EXPECT_EQ(counter.Count(), 0);
}

TEST(LmwsOffline, OperationsWithoutAHandleRunAfterTheSetUp) {
    NoServer();
    TempDir dir;
    const std::string source = dir.path + "/a.txt";
    const std::string copy = dir.path + "/b.txt";
    std::ofstream(source) << "lumora\n";
    LmwsRun run = Lmws({"--access-type", "2",      "copyFile",
                        source,          copy,     "--",
                        "md5sum",        copy,     "--",
                        "deleteFile",    copy,     "--",
                        "getDeviceTime", "--",     "checkTitlesInWishlist",
                        "100016,100017", "0",      "--",
                        "copyFile",      dir.path, dir.path + "/c.txt"});
    EXPECT_EQ(run.status, 1);  // no service: the clock and the wishlist fail
    ASSERT_EQ(run.lines.size(), 6u) << run.out << run.err;

    EXPECT_EQ(run.lines[0]["operation"], "copyFile");
    EXPECT_EQ(run.lines[0]["status"], 0);
    EXPECT_EQ(run.lines[0]["result"], json::object());
    // The copy existed in between: md5sum saw the same bytes under the copy's name.
    EXPECT_EQ(run.lines[1]["status"], 0);
    EXPECT_EQ(run.lines[1]["result"]["Text"], "b243f9fb6d20d6fbc6765cc22809c9e8  " + copy + "\n");
    EXPECT_EQ(run.lines[2]["status"], 0);
    EXPECT_FALSE(std::ifstream(copy).good());  // deleted
    EXPECT_EQ(ReadFile(source), "lumora\n");

    EXPECT_EQ(run.lines[3]["operation"], "getDeviceTime");
    EXPECT_NE(run.lines[3]["status"], 0);
    EXPECT_EQ(run.lines[3]["result"], json::parse(R"({"utcSeconds": -1})"));
    // Each id with its flag, in the order given.
    EXPECT_NE(run.lines[4]["status"], 0);
    EXPECT_EQ(run.lines[4]["result"],
              json::parse(R"({"titles": [{"titleID": 100016, "inWishlist": false},
                                         {"titleID": 100017, "inWishlist": false}]})"));
    // A folder cannot be copied: a status, not a failure of the program.
    EXPECT_EQ(run.lines[5]["operation"], "copyFile");
    EXPECT_EQ(run.lines[5]["status"], -1900);
}

// ---- Against the simulator ----

class LmwsAgainstLmsim : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_Sim.Ready());
        PointAt(m_Sim.HttpsPort(), m_Sim.HttpPort(), m_Sim.CaFile());
    }
    LmsimProcess m_Sim;
};

// The checks of one getTitles 12 1 20 2 line.
void ExpectSpyPageOne(const json& line) {
    EXPECT_EQ(line["operation"], "getTitles");
    EXPECT_EQ(line["status"], 0);
    const json& result = line["result"];
    EXPECT_EQ(result["ResponseCode"], 0);
    EXPECT_EQ(result["GenreID"], 12);
    EXPECT_EQ(result["CurrentPageNumber"], 1);
    EXPECT_EQ(result["ItemsPerPage"], 20);
    EXPECT_GE(result["TotalItems"].get<int>(), 20);
    ASSERT_EQ(result["Titles"].size(), 20u);
    for (size_t i = 0; i < 20; ++i) {
        const json& title = result["Titles"][i];
        EXPECT_GE(title["TitleID"].get<int>(), 100000);
        EXPECT_EQ(title["TitlePosition"], i + 1);
        EXPECT_TRUE(title["IsTvListing"].is_boolean());
        EXPECT_TRUE(title["AvailableProducts"].is_array());
    }
}

TEST_F(LmwsAgainstLmsim, PrintsAPageOfTitlesAsTheOnlyLineOnStdout) {
    LmwsRun run = Lmws({"--env", "2", "getTitles", "12", "1", "20", "2"});
    EXPECT_EQ(run.status, 0) << run.err;
    // The library's own console output went to stderr, not between the JSON lines.
    ASSERT_EQ(run.lines.size(), 1u) << run.out;
    ExpectSpyPageOne(run.lines[0]);
}

// One process keeps its connection: 200 calls in a row open one connection to the service (a
// handful at most, should the server close one), and the answers come compressed.
TEST_F(LmwsAgainstLmsim, TwoHundredCallsShareAHandfulOfConnections) {
    std::vector<std::string> args = {"--env", "2", "--access-type", "2"};
    for (int call = 0; call < 200; ++call) {
        if (call > 0) {
            args.push_back("--");
        }
        for (const char* arg : {"getTitles", "12", "1", "20", "2"}) {
            args.push_back(arg);
        }
        args.back() = std::to_string(call % 3);  // rent, buy, any in turn
    }
    const long connections = m_Sim.Stat("connections");
    const long compressed = m_Sim.Stat("compressed");
    LmwsRun run = Lmws(args);
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(run.lines.size(), 200u);
    for (const json& line : run.lines) {
        ASSERT_EQ(line["status"], 0) << line;
    }
    EXPECT_LE(m_Sim.Stat("connections") - connections, 3);
    EXPECT_EQ(m_Sim.Stat("compressed") - compressed, 200);
}

// The largest answers the service gives (a 200-title page, the whole genre tree) pass the input
// limits; an answer with 100 MiB of text, or one that inflates to 1 GiB, is refused at once, in
// bounded memory.
TEST_F(LmwsAgainstLmsim, InputLimitsPassTheLargestAnswersAndRefuseAHugeOne) {
    LmwsRun large = Lmws({"--env", "2", "--access-type", "2", "getTitles", "12", "1", "200", "2",
                          "--", "getNavigation"});
    EXPECT_EQ(large.status, 0) << large.out;
    ASSERT_EQ(large.lines.size(), 2u);
    EXPECT_EQ(large.lines[0]["result"]["Titles"].size(), 121u) << "the whole genre on one page";

    ASSERT_TRUE(m_Sim.ArmFault("huge-text", "100"));
    LmwsRun huge = Lmws({"--env", "2", "--access-type", "2", "getTitles", "12", "1", "20", "2"});
    EXPECT_EQ(huge.status, 1);
    ASSERT_EQ(huge.lines.size(), 1u) << huge.out;
    EXPECT_EQ(huge.lines[0]["status"], -6045) << "a string over its limit";
    // Measured against the run of the largest real answers, since a sanitizer build carries
    // some 170 MB of its own; the optimised build stays near 16 MB in all.
    EXPECT_LT(huge.peakKb - large.peakKb, 48 * 1024)
        << huge.peakKb << " KB against " << large.peakKb;
    EXPECT_LT(huge.seconds, 10);

    // The answer's size bound holds for what a compressed answer inflates to: a few hundred KB of
    // gzip that would make 1 GiB end at 8 MiB, as a cut answer.
    ASSERT_TRUE(m_Sim.ArmFault("gzip-bomb", "1024"));
    LmwsRun bomb = Lmws({"--env", "2", "--access-type", "2", "getTitles", "12", "1", "20", "2"});
    EXPECT_EQ(bomb.status, 1);
    ASSERT_EQ(bomb.lines.size(), 1u) << bomb.out;
    EXPECT_EQ(bomb.lines[0]["status"], LM_WS_CONNECTION_ENDED);
    EXPECT_LT(bomb.peakKb - large.peakKb, 48 * 1024)
        << bomb.peakKb << " KB against " << large.peakKb;
    EXPECT_LT(bomb.seconds, 10);
}

// A cache file whose pages after the first are garbage is made anew by the next run, whose answer
// it then keeps: the run after that answers from it with the service gone.
TEST_F(LmwsAgainstLmsim, ADamagedCacheFileIsRebuiltAndAnswersOfflineAgain) {
    TempDir cache;
    const std::vector<std::string> options = {"--env",        "2", "--access-type", "2",
                                              "--cache-type", "2", "--cache-path",  cache.path};
    auto page = [&](int number) {
        std::vector<std::string> args = options;
        args.insert(args.end(), {"getTitles", "12", std::to_string(number), "20", "2"});
        return Lmws(args);
    };
    for (int number = 1; number <= 6; ++number) {
        ASSERT_EQ(page(number).status, 0);
    }
    FILE* ls = popen(("ls '" + cache.path + "'/*.lm").c_str(), "r");
    char name[512] = {};
    ASSERT_EQ(1, fscanf(ls, "%511s", name));
    pclose(ls);
    FILE* file = std::fopen(name, "r+b");
    ASSERT_NE(file, nullptr);
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    ASSERT_GT(size, 4096);
    std::fseek(file, 4096, SEEK_SET);
    for (long at = 4096; at < size; ++at) {
        std::fputc(static_cast<int>((at * 7919) & 0xFF), file);
    }
    std::fclose(file);

    LmwsRun rebuilt = page(1);
    EXPECT_EQ(rebuilt.status, 0) << rebuilt.err;
    m_Sim.Stop();
    LmwsRun offline = page(1);
    EXPECT_EQ(offline.status, 0) << offline.out;
    ASSERT_EQ(offline.lines.size(), 1u);
    EXPECT_EQ(offline.lines[0], rebuilt.lines[0]);
}

TEST_F(LmwsAgainstLmsim, FileCacheAnswersOnceTheServiceIsGone) {
    TempDir cache;
    const std::vector<std::string> args = {
        "--env", "2", "--cache-type", "2", "--cache-path", cache.path, "getTitles",
        "12",    "1", "20",           "2"};
    LmwsRun online = Lmws(args);
    EXPECT_EQ(online.status, 0) << online.err;
    ASSERT_EQ(online.lines.size(), 1u) << online.out;
    ExpectSpyPageOne(online.lines[0]);

    m_Sim.Stop();
    LmwsRun offline = Lmws(args);
    EXPECT_EQ(offline.status, 0) << offline.err;
    ASSERT_EQ(offline.lines.size(), 1u) << offline.out;
    EXPECT_EQ(offline.lines[0], online.lines[0]);

    // Without the cache the same line now fails: the page above did come from the file.
    LmwsRun uncached = Lmws({"--env", "2", "getTitles", "12", "1", "20", "2"});
    EXPECT_EQ(uncached.status, 1);
    ASSERT_EQ(uncached.lines.size(), 1u) << uncached.out;
    EXPECT_NE(uncached.lines[0]["status"], 0);
}

TEST_F(LmwsAgainstLmsim, FailedOperationSetsTheExitStatusAndTheOthersStillRun) {
    LmwsRun run = Lmws({"-q", "getGenreLabel", "12", "--", "getGenreLabel", "99999", "--",
                        "getTitlesByGenreIDs", "12,13", "1", "5", "2"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");  // --quiet: the library's console output is dropped
    ASSERT_EQ(run.lines.size(), 3u) << run.out;

    EXPECT_EQ(run.lines[0]["operation"], "getGenreLabel");
    EXPECT_EQ(run.lines[0]["status"], 0);
    EXPECT_EQ(run.lines[0]["result"]["Label"], "Spy");

    EXPECT_EQ(run.lines[1]["operation"], "getGenreLabel");
    EXPECT_EQ(run.lines[1]["status"], -1004);
    EXPECT_NE(run.lines[1]["result"]["ResponseCode"], 0);
    EXPECT_NE(run.lines[1]["result"]["ResponseMessage"], "");

    EXPECT_EQ(run.lines[2]["operation"], "getTitlesByGenreIDs");
    EXPECT_EQ(run.lines[2]["status"], 0);
    const json& pages = run.lines[2]["result"]["GetTitlesResponse"];
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0]["GenreID"], 12);
    EXPECT_EQ(pages[1]["GenreID"], 13);
    EXPECT_EQ(pages[1]["Titles"].size(), 5u);
}

// A user's whole flow, one lmws process per step as a script would run it: the token of the
// authorisation is handed to every later step on the command line.
TEST_F(LmwsAgainstLmsim, AUsersFlowOneProcessPerStep) {
    std::vector<std::string> client = {"-q", "--env", "2", "--access-type", "2"};
    auto step = [&](std::vector<std::string> operation) {
        std::vector<std::string> args = client;
        args.insert(args.end(), operation.begin(), operation.end());
        LmwsRun run = Lmws(args);
        EXPECT_EQ(run.lines.size(), 1u) << run.out << run.err;
        return run.lines.empty() ? json::object() : run.lines[0];
    };
    auto ok = [&](std::vector<std::string> operation) {
        json line = step(operation);
        EXPECT_EQ(line["status"], 0) << line.dump();
        return line["result"];
    };

    EXPECT_EQ(step({"authorizeDevice", "9999"})["status"], -1005) << "a wrong activation pin";
    const std::string token = ok({"authorizeDevice", "1234"})["AuthToken"];
    ASSERT_FALSE(token.empty());
    client.insert(client.end(), {"--auth-token", token});
    EXPECT_EQ(ok({"checkAuthToken"})["valid"], true);

    const json title = ok({"getTitles", "12", "1", "1", "2"})["Titles"][0];
    const std::string id = std::to_string(title["TitleID"].get<int>());
    const json& product = title["AvailableProducts"][0];
    const std::string sku = std::to_string(product["SkuID"].get<int>());
    const std::string profile = std::to_string(product["AvailableAssets"][0].get<int>());

    ok({"addItemToWishlist", id});
    EXPECT_EQ(ok({"checkTitleInWishlist", id})["inWishlist"], true);
    EXPECT_EQ(step({"doPurchaseSavedBilling", "700099", "127.0.0.1", "1"})["status"], -1007)
        << "a declined purchase";
    const std::string pass =
        std::to_string(ok({"doPurchaseSavedBilling", sku, "127.0.0.1", "0"})["PassID"].get<int>());
    EXPECT_EQ(ok({"getWishlistItems", "0", "1", "10", "0"})["Titles"].size(), 0u);
    EXPECT_EQ(ok({"checkTitleInWishlist", id})["inWishlist"], false);

    const json videos = ok({"getMyVideos", "1", "10", "2", "0", "3"})["Titles"];
    ASSERT_EQ(videos.size(), 1u);
    EXPECT_EQ(videos[0]["TitleID"], title["TitleID"]);
    const std::string stream = ok({"getStreamingAssetLocation", pass, profile})["StreamID"];
    ASSERT_FALSE(stream.empty());
    ok({"manageStreamingInstanceStatus", stream, "1", "600"});
    EXPECT_EQ(ok({"loadLastStreamingAssetLocation", pass, profile})["StartTimeSeconds"], 600);
}

}  // namespace
