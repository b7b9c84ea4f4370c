// The client's connections to the simulator: kept between calls, opened again (with the TLS
// session resumed) when the server has closed them, never asked twice once an answer has begun,
// and compressed answers read and logged as text; and the simulator's bounds on kept connections.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "LMAPITestSupport.h"
#include "LMWSTestSupport.h"
#include "LmsimProcess.h"

namespace {

using lmws_test::Client;
using lmws_test::Count;
using lmws_test::Params;
using lmws_test::Record;

// A simulator that closes connections idle for 150 ms.
class LMWSConnection : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_Sim = new LmsimProcess({"--idle-ms", "150"}); }
    static void TearDownTestSuite() {
        delete s_Sim;
        s_Sim = nullptr;
    }
    void SetUp() override {
        ASSERT_TRUE(s_Sim->Ready());
        lmws_test::PointAt(*s_Sim);
        ASSERT_EQ(m_Client.Setup(m_Params), LM_WS_OK);
        m_Connections = s_Sim->Stat("connections");
        m_Requests = s_Sim->Stat("requests");
    }

    LM_WS_Status Titles(int page) {
        Record<LM_WS_TitlesResponse> titles;
        return LM_WS_getTitles(&m_Client.h, 1, {page, 20}, 2, &titles);
    }
    long NewConnections() const { return s_Sim->Stat("connections") - m_Connections; }
    long NewRequests() const { return s_Sim->Stat("requests") - m_Requests; }

    static LmsimProcess* s_Sim;
    Params m_Params;
    Client m_Client;
    long m_Connections = 0;
    long m_Requests = 0;
};

LmsimProcess* LMWSConnection::s_Sim = nullptr;

TEST_F(LMWSConnection, CallsShareOneConnectionAndAnIdleOneClosedByTheServerIsResumed) {
    for (int page = 1; page <= 5; ++page) {
        ASSERT_EQ(Titles(page), LM_WS_OK);
    }
    EXPECT_EQ(NewConnections(), 1);
    EXPECT_EQ(NewRequests(), 5);

    const long resumed = s_Sim->Stat("resumed");
    std::this_thread::sleep_for(std::chrono::milliseconds(400));  // the server closes it
    ASSERT_EQ(Titles(1), LM_WS_OK);
    EXPECT_EQ(NewConnections(), 2);
    EXPECT_EQ(s_Sim->Stat("resumed") - resumed, 1) << "the TLS session was resumed";
}

// The server may close a kept connection just as the next request goes out: the request is sent
// once more on a new connection. A second failure, or one after the answer had begun, is the
// caller's: nothing is sent a third time, and a request the server may have acted on is not
// repeated.
TEST_F(LMWSConnection, ADroppedKeptConnectionIsRetriedOnceOnANewOne) {
    ASSERT_EQ(Titles(1), LM_WS_OK);

    ASSERT_TRUE(s_Sim->ArmFault("hang-up"));
    EXPECT_EQ(Titles(2), LM_WS_OK);
    EXPECT_EQ(NewConnections(), 2);
    EXPECT_EQ(NewRequests(), 3);

    ASSERT_TRUE(s_Sim->ArmFault("hang-up", "", 2));
    EXPECT_EQ(Titles(3), LM_WS_CONNECTION_ENDED);
    EXPECT_EQ(NewConnections(), 3) << "one retry, not more";
    EXPECT_EQ(NewRequests(), 5);

    ASSERT_EQ(Titles(1), LM_WS_OK);  // a new connection for the next call
    ASSERT_TRUE(s_Sim->ArmFault("close-mid-body"));
    EXPECT_EQ(Titles(2), LM_WS_CONNECTION_ENDED);
    EXPECT_EQ(NewRequests(), 7) << "half an answer is not retried";
    EXPECT_EQ(Titles(2), LM_WS_OK);
}

// Answers come gzip-compressed; the log shows them inflated, with their secrets hidden as in
// plain answers.
TEST_F(LMWSConnection, CompressedAnswersAreReadAndLoggedAsText) {
    const long compressed = s_Sim->Stat("compressed");
    lmapi_test::LogCapture log;
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(&m_Client.h, 1234, &device), LM_WS_OK);
    ASSERT_NE(device->AuthToken, nullptr);
    const std::string token = device->AuthToken;
    ASSERT_FALSE(token.empty());
    ASSERT_EQ(Titles(1), LM_WS_OK);
    EXPECT_EQ(s_Sim->Stat("compressed") - compressed, 2);

    const std::string received = log.Text("soap_recv");
    EXPECT_EQ(Count(received, "\r\nContent-Encoding: gzip\r\n"), 2u) << "each head once";
    EXPECT_NE(received.find("<LM1:AuthToken>***</LM1:AuthToken>"), std::string::npos) << received;
    EXPECT_NE(received.find("getTitlesByNavigationResult"), std::string::npos);
    EXPECT_EQ(received.find(token), std::string::npos);
}

// The simulator's bounds: beyond --max-connections kept connections, each connection carries one
// answer; a kept one carries at most --max-requests. Clients find their way either way.
TEST(LMWSConnectionBounds, BeyondTheServersBoundsEachAnswerComesOnItsOwnConnection) {
    LmsimProcess sim({"--max-connections", "1", "--max-requests", "3"});
    ASSERT_TRUE(sim.Ready());
    lmws_test::PointAt(sim);
    Params params;
    Client kept;
    Client beyond;
    ASSERT_EQ(kept.Setup(params), LM_WS_OK);
    ASSERT_EQ(beyond.Setup(params), LM_WS_OK);
    auto titles = [](Client& client, int page) {
        Record<LM_WS_TitlesResponse> record;
        return LM_WS_getTitles(&client.h, 1, {page, 20}, 2, &record);
    };

    ASSERT_EQ(titles(kept, 1), LM_WS_OK);
    EXPECT_EQ(sim.Stat("connections"), 1);
    for (int page = 1; page <= 3; ++page) {
        ASSERT_EQ(titles(beyond, page), LM_WS_OK);
    }
    EXPECT_EQ(sim.Stat("connections"), 4) << "one per answer beyond the bound";
    ASSERT_EQ(titles(kept, 2), LM_WS_OK);
    ASSERT_EQ(titles(kept, 3), LM_WS_OK);
    EXPECT_EQ(sim.Stat("connections"), 4) << "the kept connection carries three answers";
    ASSERT_EQ(titles(kept, 4), LM_WS_OK);
    EXPECT_EQ(sim.Stat("connections"), 5) << "and is closed after the third";
    EXPECT_EQ(sim.Stat("requests"), 7);
}

}  // namespace
