// The parts of the probes that need no server: the clock page's text, the head of a plain-HTTP
// answer and its receipt in pieces, the environment query's answer, md5sum and copying onto an
// existing file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "LMFile.h"
#include "LMRawHttp.h"
#include "LM_WS.h"
#include "TempDir.h"

namespace {

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

TEST(DeviceTimeBody, PMAddsTwelveHoursAlsoToTwelveOClock) {
    int32_t t = 0;
    ASSERT_TRUE(LMRawHttp::ParseDeviceTime("3/14/2011 1:05:09 PM", t));
    EXPECT_EQ(1300107909, t);  // 2011-03-14 13:05:09 UTC
    ASSERT_TRUE(LMRawHttp::ParseDeviceTime("3/14/2011 12:00:00 PM", t));
    EXPECT_EQ(1300147200, t);  // hour 24: 2011-03-15 00:00:00 UTC
    ASSERT_TRUE(LMRawHttp::ParseDeviceTime("3/14/2011 12:30:00 AM", t));
    EXPECT_EQ(1300105800, t);  // stays 2011-03-14 12:30:00 UTC
}

TEST(DeviceTimeBody, FewerThanSevenFieldsAreRefused) {
    int32_t t = 42;
    EXPECT_FALSE(LMRawHttp::ParseDeviceTime("3/14/2011 1:05:09", t));
    EXPECT_FALSE(LMRawHttp::ParseDeviceTime("2011-03-14T13:05:09Z", t));
    EXPECT_EQ(42, t);
}

// ---- The head of a plain-HTTP answer ----

using LMRawHttp::Status;
using namespace std::string_literals;

LMRawHttp::Head Parse(const std::string& block) {
    return LMRawHttp::ParseHead(block.data(), block.size());
}

TEST(RawHttpHead, AGoodHeadGivesItsLengthDateAndBody) {
    const std::string block =
        "HTTP/1.1 200 OK\r\nServer: x\r\nLast-Modified: Mon, 14 Mar 2011 13:05:09 GMT\r\n"
        "Content-Length: 5\r\n\r\nimage";
    const LMRawHttp::Head head = Parse(block);
    EXPECT_EQ(Status::OK, head.status);
    EXPECT_TRUE(head.complete);
    EXPECT_EQ(5u, head.contentLength);
    EXPECT_STREQ("Mon, 14 Mar 2011 13:05:09 GMT", head.lastModified.c_str());
    EXPECT_EQ(block.size() - 5, head.bodyOffset);
    // The length as the last header, right before the empty line, and as the only one.
    EXPECT_TRUE(Parse("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n").complete);
    EXPECT_EQ(Status::NotFound, Parse("HTTP/1.1 404 Not Found\r\n").status);
    EXPECT_EQ(Status::NotModified, Parse("HTTP/1.1 304 Not Modified\r\n\r\n").status);
}

TEST(RawHttpHead, AStatusTextCountsOnlyAsTheFirstLine) {
    for (const char* block : {
             // Error pages whose body holds another answer.
             "HTTP/1.1 500 Internal Server Error\r\nContent-Length: 42\r\n\r\n"
             "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nimage",
             "HTTP/1.1 500 Internal Server Error\r\n\r\nHTTP/1.1 404 Not Found\r\n\r\n",
             "HTTP/1.1 503 Busy\r\nX-Was: HTTP/1.1 304 Not Modified\r\n\r\n",
             // Not at the very start, or not exactly the text.
             "\r\nHTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nimage",
             " HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nimage",
             "HTTP/1.1 200 ok\r\nContent-Length: 5\r\n\r\nimage",
             "HTTP/1.0 200 OK\r\nContent-Length: 5\r\n\r\nimage",
             "HTTP/1.1 200 OK\nContent-Length: 5\r\n\r\nimage",
             "HTTP/1.1 404 Not Found",
         }) {
        const LMRawHttp::Head head = Parse(block);
        EXPECT_EQ(Status::Other, head.status) << block;
        EXPECT_FALSE(head.complete) << block;
    }
}

TEST(RawHttpHead, HeadersCountOnlyAtALineStartBeforeTheEmptyLine) {
    for (const char* block : {
             "HTTP/1.1 200 OK\r\nX-Content-Length: 5\r\n\r\nimage",
             "HTTP/1.1 200 OK\r\nX-Note: Content-Length: 5\r\n\r\nimage",
             "HTTP/1.1 200 OK\r\ncontent-length: 5\r\n\r\nimage",
             "HTTP/1.1 200 OK\r\n\r\nContent-Length: 5\r\n\r\nimage",
         }) {
        const LMRawHttp::Head head = Parse(block);
        EXPECT_FALSE(head.complete) << block;
        EXPECT_EQ(0u, head.contentLength) << block;
    }
    EXPECT_TRUE(Parse("HTTP/1.1 200 OK\r\nX-Last-Modified: Mon\r\nContent-Length: 5\r\n\r\nimage")
                    .lastModified.empty());
    EXPECT_TRUE(Parse("HTTP/1.1 200 OK\r\nContent-Length: 17\r\n\r\nLast-Modified: Mon\r\n")
                    .lastModified.empty());
    // A length line in the body is body: the head's own length stands.
    const LMRawHttp::Head head =
        Parse("HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\nContent-Length: 9\r\n\r\n");
    EXPECT_TRUE(head.complete);
    EXPECT_EQ(20u, head.contentLength);
}

TEST(RawHttpHead, ASecondContentLengthIsRefused) {
    for (const char* block : {
             "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nContent-Length: 5\r\n\r\nimage",
             "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nLast-Modified: Mon\r\n"
             "Content-Length: 9000\r\n\r\nimage",
             "HTTP/1.1 200 OK\r\nContent-Length: abc\r\nContent-Length: 5\r\n\r\nimage",
         }) {
        const LMRawHttp::Head head = Parse(block);
        EXPECT_FALSE(head.complete) << block;
        EXPECT_EQ(0u, head.contentLength) << block;
    }
}

TEST(RawHttpHead, ALengthThatIsNotAPositive32BitNumberLeavesTheHeadIncomplete) {
    for (const char* length : {"0", "-5", "12ab", "4294967296", ""}) {
        const std::string block =
            std::string("HTTP/1.1 200 OK\r\nContent-Length: ") + length + "\r\n\r\nbody";
        EXPECT_FALSE(Parse(block).complete) << length;
    }
    const LMRawHttp::Head head = Parse("HTTP/1.1 200 OK\r\nContent-Length: 4294967295 \r\n\r\n");
    EXPECT_TRUE(head.complete);
    EXPECT_EQ(4294967295u, head.contentLength);
}

TEST(RawHttpHead, AHeadWithoutItsEmptyLineIsNotComplete) {
    LMRawHttp::Head head = Parse("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n");
    EXPECT_FALSE(head.ended);
    EXPECT_FALSE(head.complete);
    EXPECT_EQ(5u, head.contentLength);
    // A line still arriving is no header yet.
    EXPECT_EQ(0u, Parse("HTTP/1.1 200 OK\r\nContent-Length: 5").contentLength);
    // A NUL is a byte like any other, not the end of the block.
    head = Parse("HTTP/1.1 200 OK\r\nX: \0\r\nContent-Length: 5\r\n\r\nimage"s);
    EXPECT_TRUE(head.complete);
    EXPECT_EQ(44u, head.bodyOffset);
}

// A connection whose receives hand out scripted pieces, one piece (or what fits of it) each,
// then 0 as at the end of the stream.
class PiecesConnection {
public:
    explicit PiecesConnection(std::vector<std::string> pieces)
        : m_Pieces(std::move(pieces)), m_Soap(soap_new()), m_Connection(m_Soap) {
        m_Soap->user = this;
        m_Soap->frecv = [](struct soap* soap, char* buffer, size_t size) -> size_t {
            auto* self = static_cast<PiecesConnection*>(soap->user);
            ++self->receives;
            if (self->m_Next == self->m_Pieces.size()) {
                return 0;
            }
            std::string& piece = self->m_Pieces[self->m_Next];
            const size_t n = std::min(size, piece.size());
            memcpy(buffer, piece.data(), n);
            piece.erase(0, n);
            if (piece.empty()) {
                ++self->m_Next;
            }
            return n;
        };
    }
    ~PiecesConnection() { soap_free(m_Soap); }
    LMRawHttp::Head ReceiveHead() { return LMRawHttp::ReceiveHead(m_Connection, block, received); }

    char block[LMRawHttp::kFirstBlock + 1];
    size_t received = 0;
    int receives = 0;

private:
    std::vector<std::string> m_Pieces;
    size_t m_Next = 0;
    struct soap* m_Soap;
    LMRawHttp::Connection m_Connection;
};

TEST(RawHttpReceiveHead, AHeadInPiecesIsReadUntilItsEmptyLine) {
    PiecesConnection c({"HTTP/1.1 2", "00 OK\r\nContent-Le", "ngth: 7\r\n\r", "\nima", "ge!"});
    const LMRawHttp::Head head = c.ReceiveHead();
    EXPECT_TRUE(head.complete);
    EXPECT_EQ(7u, head.contentLength);
    // The body's first bytes came with the head; the rest is left for the caller.
    EXPECT_EQ(4, c.receives);
    EXPECT_EQ("ima", std::string(c.block + head.bodyOffset, c.received - head.bodyOffset));
    EXPECT_EQ(0, c.block[c.received]);
}

TEST(RawHttpReceiveHead, StopsAtTheBlocksSizeOrTheStreamsEnd) {
    PiecesConnection big({"HTTP/1.1 200 OK\r\nX-Pad: " + std::string(1500, 'p'),
                          std::string(1500, 'p') + "\r\nContent-Length: 5\r\n\r\nimage"});
    EXPECT_FALSE(big.ReceiveHead().complete);
    EXPECT_EQ(LMRawHttp::kFirstBlock, big.received);
    EXPECT_EQ(2, big.receives);

    PiecesConnection cut({"HTTP/1.1 200 OK\r\n", "Content-Length: 5\r\n"});
    EXPECT_FALSE(cut.ReceiveHead().complete);
    EXPECT_EQ(36u, cut.received);
    EXPECT_EQ(3, cut.receives);

    PiecesConnection none({});
    EXPECT_EQ(Status::Other, none.ReceiveHead().status);
    EXPECT_EQ(0u, none.received);
}

TEST(RawHttpReceiveHead, AnotherStatusIsDecidedByItsFirstLine) {
    // Nothing after such a line changes the answer: a peer that stalls after it costs no wait.
    PiecesConnection notFound({"HTTP/1.1 404 Not Found\r\n", "Content-Length: 0\r\n\r\n"});
    EXPECT_EQ(Status::NotFound, notFound.ReceiveHead().status);
    EXPECT_EQ(1, notFound.receives);
    PiecesConnection error({"HTTP/1.1 500 Oops", "\r\nX: y", "\r\n\r\n"});
    EXPECT_EQ(Status::Other, error.ReceiveHead().status);
    EXPECT_EQ(2, error.receives);
}

TEST(EnvironmentAnswer, TheBodyDigitOfAnExactLengthOneAnswerIsTheId) {
    const auto id = [](const std::string& block) {
        return LMRawHttp::EnvironmentId(Parse(block), block.data(), block.size());
    };
    EXPECT_EQ(0, id("HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n0"));
    EXPECT_EQ(1, id("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 1\r\n\r\n1"));
    EXPECT_EQ(7, id("HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n7"));
    for (const std::string& block : {
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 01\r\n\r\n0"),
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 1 \r\n\r\n0"),
             std::string("HTTP/1.1 200 OK\r\nX-Content-Length: 1\r\n\r\n0"),
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 1\r\nContent-Length: 1\r\n\r\n0"),
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n01"),
             std::string("HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n"),
             "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n\0"s,
             std::string("HTTP/1.1 500 Oops\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n0"),
         }) {
        EXPECT_EQ(2, id(block)) << block;
    }
}

// ---- Device helpers ----

TEST(Md5sum, ReturnsTheToolsWholeOutput) {
    TempDir dir;
    std::ofstream(dir / "abc") << "abc";
    LM_WS_LengthAndText r;
    ASSERT_EQ(0, LM_WS_md5sum((dir / "abc").c_str(), &r));
    EXPECT_EQ(LM_WS_ResultLengthAndText, *r.Type);
    EXPECT_EQ("900150983cd24fb0d6963f7d28e17f72  " + (dir / "abc") + "\n",
              std::string(r.Text, r.Length));
    LM_WS_FreeResult(&r);

    // A name with blanks, a quote and shell syntax is one file to the tool, never a command.
    const std::string odd = dir / "it's $(touch pwned); x";
    std::ofstream(odd) << "abc";
    ASSERT_EQ(0, LM_WS_md5sum(odd.c_str(), &r));
    EXPECT_EQ(0, std::string(r.Text, r.Length).find("900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_FALSE(std::ifstream(dir / "pwned").good());
    EXPECT_FALSE(std::ifstream("pwned").good());
    LM_WS_FreeResult(&r);
}

TEST(CopyFile, AnExistingDestinationIsLeftUntouched) {
    TempDir dir;
    std::ofstream(dir / "src", std::ios::binary) << std::string("new\0content", 11);
    std::ofstream(dir / "dst") << "old";
    EXPECT_EQ(0, LM_WS_copyFile((dir / "src").c_str(), (dir / "dst").c_str()));
    EXPECT_EQ("old", ReadAll(dir / "dst"));
    EXPECT_EQ(0, LM_WS_copyFile((dir / "src").c_str(), (dir / "copy").c_str()));
    EXPECT_EQ(std::string("new\0content", 11), ReadAll(dir / "copy"));
    EXPECT_EQ(-1900, LM_WS_copyFile((dir / "none").c_str(), (dir / "copy2").c_str()));
}

// A folder opens for reading and reports a size near 2^63: it must fail as a copy, not as an
// allocation that throws out of the C interface, and leave no destination behind.
TEST(CopyFile, AFolderAsTheSourceFailsAndWritesNothing) {
    TempDir dir;
    EXPECT_EQ(-1900, LM_WS_copyFile(dir.path().c_str(), (dir / "copy").c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / "copy").c_str()));
    EXPECT_FALSE(LMFile::Copy(dir.path().c_str(), (dir / "copy").c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / "copy").c_str()));
}

}  // namespace
