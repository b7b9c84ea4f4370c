#include "Serializer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>

#include "CacheMgr.h"
#include "LMAnswerMemo.h"
#include "TempDir.h"
#include "TitlesPage.h"
#include "soapH.h"

namespace {

void ExpectSameTitles(const LM1__GetTitlesResponse& a, const LM1__GetTitlesResponse& b) {
    EXPECT_EQ(a.GenreID, b.GenreID);
    EXPECT_EQ(a.TotalItems, b.TotalItems);
    EXPECT_STREQ(a.ResponseMessage, b.ResponseMessage);
    ASSERT_NE(b.Titles, nullptr);
    ASSERT_EQ(a.Titles->__sizeTitleListing, b.Titles->__sizeTitleListing);
    for (int i = 0; i < a.Titles->__sizeTitleListing; ++i) {
        const LM1__TitleListing* x = a.Titles->TitleListing[i];
        const LM1__TitleListing* y = b.Titles->TitleListing[i];
        EXPECT_EQ(x->TitleID, y->TitleID);
        EXPECT_STREQ(x->TitleName, y->TitleName);
        EXPECT_STREQ(x->BoxArtPrefix, y->BoxArtPrefix);
        EXPECT_EQ(x->IsTvListing, y->IsTvListing);
        EXPECT_EQ(y->BonusAssets, nullptr);  // absent optional members stay null
    }
}

class SerializerTest : public ::testing::Test {
protected:
    SerializerTest() : ctx(SOAP_C_UTFSTRING) {}
    ~SerializerTest() override {
        soap_destroy(&ctx);
        soap_end(&ctx);
    }
    struct soap ctx;
};

TEST_F(SerializerTest, PlainOutputIsXmlUnderTheRootTag) {
    Serializer out(false, false);
    ASSERT_TRUE(out.Write(*MakeTitles(&ctx, 2)));
    std::string xml(out.GetBuffer().c_str(), out.GetBuffer().length());
    EXPECT_EQ(xml.find("<?xml"), 0u) << xml;
    EXPECT_NE(xml.find("?>\n<LMWSLib xmlns:LM1="), std::string::npos) << xml;
    EXPECT_NE(xml.find("xmlns:LM1=\"http://www.lumora.example/api/\""), std::string::npos);
    EXPECT_NE(xml.find("<LM1:TitleName>Title n\xC2\xB0"
                       "1 &amp; &lt;friends&gt;</LM1:TitleName>"),
              std::string::npos);
    EXPECT_EQ(xml.find('\n', xml.find("<LMWSLib")), std::string::npos);  // one line of elements

    Serializer indented(false, true);
    ASSERT_TRUE(indented.Write(*MakeTitles(&ctx, 2)));
    std::string pretty(indented.GetBuffer().c_str(), indented.GetBuffer().length());
    EXPECT_GT(std::count(pretty.begin(), pretty.end(), '\n'), 20) << pretty;
}

TEST_F(SerializerTest, CompressedAnswerSurvivesTheCacheByteForByte) {
    LM1__GetTitlesResponse* page = MakeTitles(&ctx, 50);
    Serializer out(true, false);
    ASSERT_TRUE(out.Write(*page));
    LMString stored = out.GetBuffer();
    ASSERT_GT(stored.length(), 10u);
    EXPECT_EQ(static_cast<unsigned char>(stored[0]), 0x1F);  // gzip magic
    EXPECT_EQ(static_cast<unsigned char>(stored[1]), 0x8B);

    TempDir dir;
    for (uint32_t type : {LM_WS_CacheParam::Memory, LM_WS_CacheParam::File}) {
        CacheMgr cache;
        LM_WS_CacheParam p;
        p.CacheType = type;
        p.CacheData = LM_WS_CacheParam::Service;
        p.CachePath = (dir / "cache.db").c_str();
        ASSERT_EQ(cache.Init(p), 0);
        ASSERT_EQ(cache.SetServiceData("getTitles", "12,1,50,2", stored), 1);
        LMString loaded;
        ASSERT_EQ(cache.GetServiceData("getTitles", "12,1,50,2", loaded), 1);
        ASSERT_TRUE(loaded == stored) << "type " << type;

        Serializer in(true, false);
        LM1__GetTitlesResponse back;
        ASSERT_TRUE(in.Read(loaded, back));
        ExpectSameTitles(*page, back);
    }
}

TEST_F(SerializerTest, DamagedTextFailsToDeserializeWithoutCrashing) {
    Serializer out(true, false);
    ASSERT_TRUE(out.Write(*MakeTitles(&ctx, 20)));
    const LMString good = out.GetBuffer();
    Serializer plainOut(false, false);
    ASSERT_TRUE(plainOut.Write(*MakeTitles(&ctx, 3)));
    const LMString plain = plainOut.GetBuffer();

    Serializer in(true, false);
    int failures = 0;
    int attempts = 0;
    // Truncations of the compressed and the plain form.
    for (const LMString* text : {&good, &plain}) {
        for (uint32_t cut = 0; cut < text->length(); cut += 7) {
            LM1__GetTitlesResponse back;
            failures += !in.Read(text->substr(0, cut), back);
            ++attempts;
            in.Reset();
        }
    }
    EXPECT_EQ(failures, attempts);
    // Flipped bytes inside the compressed stream: the checksum or the XML rejects them.
    for (uint32_t at = 10; at < good.length(); at += 13) {
        LMString bad(good);
        bad[at] = static_cast<char>(bad[at] ^ 0x5A);
        LM1__GetTitlesResponse back;
        EXPECT_FALSE(in.Read(bad, back)) << "flip at " << at;
        in.Reset();
    }
    LM1__GetTitlesResponse back;
    EXPECT_FALSE(in.Read(LMString("not xml at all"), back));
    in.Reset();
    EXPECT_FALSE(in.Read(LMString("<Other xmlns=\"x\"/>"), back));
}

// Each thread keeps zlib's memory between messages. Threads that compress and decompress pages
// of several sizes in turn, one context per message as the client does, with a read cut short
// now and then (its stream is ended only with its context), get every page back whole; under the
// sanitizers nothing is used after it was handed back, and nothing is left when a thread ends.
TEST(SerializerThreads, MessagesInTurnOnSeveralThreadsRoundTrip) {
    auto work = [](int seed) {
        soap ctx(SOAP_C_UTFSTRING);
        for (int round = 0; round < 12; ++round) {
            LM1__GetTitlesResponse* page = MakeTitles(&ctx, 1 + (seed * 7 + round * 13) % 60);
            LMString stored;
            {
                Serializer out(true, false);
                ASSERT_TRUE(out.Write(*page));
                stored = out.GetBuffer();
            }
            if (round % 3 == 2) {
                Serializer cut(true, false);
                LM1__GetTitlesResponse partial;
                EXPECT_FALSE(cut.Read(stored.substr(0, stored.length() / 2), partial));
            }
            Serializer in(true, false);
            LM1__GetTitlesResponse back;
            ASSERT_TRUE(in.Read(stored, back));
            ExpectSameTitles(*page, back);
        }
        soap_destroy(&ctx);
        soap_end(&ctx);
    };
    std::thread first(work, 1);
    std::thread second(work, 2);
    first.join();
    second.join();
    work(3);
}

TEST_F(SerializerTest, ReceiveHandsOutTheBufferInPieces) {
    Serializer s(false, false);
    s.SetBuffer(LMString("0123456789"));
    char buf[16] = {0};
    EXPECT_EQ(Serializer::Serializer_frecv(&s, buf, 4), 4u);
    EXPECT_EQ(std::string(buf, 4), "0123");
    EXPECT_EQ(Serializer::Serializer_frecv(&s, buf, 16), 6u);  // only what remains
    EXPECT_EQ(std::string(buf, 6), "456789");
    EXPECT_EQ(Serializer::Serializer_frecv(&s, buf, 16), 0u);
    EXPECT_EQ(Serializer::Serializer_fsend(&s, "ab\0c", 4), SOAP_OK);
    EXPECT_EQ(s.GetBuffer().length(), 4u);

    struct soap stranger;
    EXPECT_DEATH(Serializer::Serializer_fsend(&stranger, "x", 1), "pSerializer != 0");
}

}  // namespace

// ---- The memo of decoded cache entries ----

TEST(LMAnswerMemoTest, AnswersOnlyForTheExactStoredBytesAndType) {
    soap ctx;
    LMAnswerMemo memo;
    const LMString name("getTitles"), key("12,1,20,2"), bytes("stored bytes");
    memo.Keep(LM_WS_CacheParam::Service, name, key, bytes, *MakeTitles(&ctx, 3));
    soap_destroy(&ctx);
    soap_end(&ctx);  // the memo's copy must not depend on the context it came from

    const LM1__GetTitlesResponse* found =
        memo.Find<LM1__GetTitlesResponse>(LM_WS_CacheParam::Service, name, key, bytes);
    ASSERT_NE(found, nullptr);
    ASSERT_NE(found->Titles, nullptr);
    ASSERT_EQ(found->Titles->__sizeTitleListing, 3);
    EXPECT_STREQ(found->Titles->TitleListing[2]->TitleName,
                 "Title n\xC2\xB0"
                 "2 & <friends>");

    // Another writer replaced the entry, the same key in the user-data table, another type.
    EXPECT_EQ(memo.Find<LM1__GetTitlesResponse>(LM_WS_CacheParam::Service, name, key,
                                                LMString("stored bytez")),
              nullptr);
    EXPECT_EQ(memo.Find<LM1__GetTitlesResponse>(LM_WS_CacheParam::UserData, name, key, bytes),
              nullptr);
    EXPECT_EQ(memo.Find<LM1__GenreRequest>(LM_WS_CacheParam::Service, name, key, bytes), nullptr);
}

TEST(LMAnswerMemoTest, KeepsTheMostRecentlyUsedEntries) {
    soap ctx;
    LM1__GetTitlesResponse* page = MakeTitles(&ctx, 1);
    LMAnswerMemo memo;
    const LMString name("getTitleListing"), bytes("v");
    for (size_t i = 0; i < LMAnswerMemo::kCapacity; ++i) {
        memo.Keep(LM_WS_CacheParam::Service, name, LMString(std::to_string(i).c_str()), bytes,
                  *page);
    }
    // Using entry 0 makes entry 1 the oldest; one more entry drops it.
    ASSERT_NE(
        memo.Find<LM1__GetTitlesResponse>(LM_WS_CacheParam::Service, name, LMString("0"), bytes),
        nullptr);
    memo.Keep(LM_WS_CacheParam::Service, name, LMString("new"), bytes, *page);
    EXPECT_EQ(memo.Size(), LMAnswerMemo::kCapacity);
    EXPECT_EQ(
        memo.Find<LM1__GetTitlesResponse>(LM_WS_CacheParam::Service, name, LMString("1"), bytes),
        nullptr);
    EXPECT_NE(
        memo.Find<LM1__GetTitlesResponse>(LM_WS_CacheParam::Service, name, LMString("0"), bytes),
        nullptr);
    // Keeping an entry again replaces it rather than adding a second one.
    memo.Keep(LM_WS_CacheParam::Service, name, LMString("0"), LMString("w"), *page);
    EXPECT_EQ(memo.Size(), LMAnswerMemo::kCapacity);
    soap_destroy(&ctx);
    soap_end(&ctx);
}
