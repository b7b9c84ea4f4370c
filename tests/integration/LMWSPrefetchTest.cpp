// The page walk of the prefetch workers against the simulator, for each list it can walk: which
// pages it fetches, where it stops, which pages the manager then counts as fetched, and the box
// art it collects for the box-art prefetch.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "LMPrefetchMgr.h"
#include "LMWSLibAEPrefetch.h"
#include "LMWSTestSupport.h"

using namespace lmws_test;

// The walk allocates nothing from the runtime kernel; the bridge library still names it.
ae::IAEKernel* ae::AECurrentKernel() {
    return nullptr;
}

namespace {

const int32_t kSpyGenre = 12;
const int32_t kAnyPurchase = 2;
const int32_t kActivationPin = 1234;  // the simulator's

class PrefetchWalk : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_Sim.Ready());
        PointAt(m_Sim);
        ASSERT_EQ(m_Client.Setup(m_Params), LM_WS_OK);
        m_Manager.SetPageCount(100);
    }
    LM_WS_Handle* H() { return &m_Client.h; }

    // Walks `pages` of `list` from page 1, pages of `size`.
    std::vector<std::string> Walk(const LMWSLibAE::PageList& list, std::vector<int32_t> pages,
                                  int32_t size) {
        LMWSLibAE::PagePrefetch block;
        block.genre = kSpyGenre;
        block.page = 1;
        block.size = size;
        block.purchaseType = kAnyPurchase;
        block.pages = pages;
        std::vector<LMString> boxArts;
        LMWSLibAE::WalkPages(H(), block, list, &m_Manager, boxArts);
        std::vector<std::string> out;
        for (const LMString& prefix : boxArts) {
            out.push_back(prefix.c_str());
        }
        return out;
    }

    // The box-art prefixes of a page of the genre, from its last title to its first.
    std::vector<std::string> TitlesBackwards(int32_t page, int32_t size) {
        Record<LM_WS_TitlesResponse> answer;
        EXPECT_EQ(LM_WS_getTitles(H(), kSpyGenre, LM_WS_Page{page, size}, kAnyPurchase, &answer),
                  LM_WS_OK);
        std::vector<std::string> out;
        for (int32_t i = answer->Titles.Count - 1; i >= 0; --i) {
            out.push_back(answer->Titles.Array[i].BoxArtPrefix);
        }
        return out;
    }

    std::vector<int32_t> Fetched(int32_t upTo) {
        std::vector<int32_t> out;
        for (int32_t page = 1; page <= upTo; ++page) {
            if (m_Manager.IsFetched(page)) {
                out.push_back(page);
            }
        }
        return out;
    }

    LmsimProcess m_Sim;
    Params m_Params;
    Client m_Client;
    LMWSLibAE::PrefetchMgr m_Manager;
};

TEST_F(PrefetchWalk, TitlesUpToThePageShownWithTheirBoxArtLastTitleFirst) {
    std::vector<std::string> expected;
    for (int32_t page : {2, 10, 3}) {
        for (const std::string& prefix : TitlesBackwards(page, 3)) {
            expected.push_back(prefix);
        }
    }
    ASSERT_EQ(expected.size(), 9u);
    // The walk ends at the page the user is on (1): page 4 is never fetched.
    EXPECT_EQ(Walk(LMWSLibAE::kTitlesPages, {2, 10, 3, 1, 4}, 3), expected);
    EXPECT_EQ(Fetched(10), (std::vector<int32_t>{2, 3, 10}));
}

TEST_F(PrefetchWalk, AnEmptyEntryEndsTheWalkAndAFailingPageStopsIt) {
    EXPECT_TRUE(Walk(LMWSLibAE::kTitlesPages, {0, 2}, 3).empty());
    EXPECT_TRUE(Fetched(10).empty());

    // The second answer fails: page 2 stays fetched, pages 3 and 4 are not asked for.
    const std::vector<std::string> second = TitlesBackwards(2, 3);
    ASSERT_TRUE(m_Sim.ArmFault("http-status", "500", 1, 1));
    EXPECT_EQ(Walk(LMWSLibAE::kTitlesPages, {2, 3, 4}, 3), second);
    EXPECT_EQ(Fetched(10), (std::vector<int32_t>{2}));
}

// The account's lists: a device authorised, three titles wished for and two bought.
TEST_F(PrefetchWalk, TheAccountsVideosAndWishlistPageByPage) {
    Record<LM_WS_AuthorizeDeviceResponse> device;
    ASSERT_EQ(LM_WS_authorizeDevice(H(), kActivationPin, &device), LM_WS_OK);
    Record<LM_WS_TitlesResponse> page;
    ASSERT_EQ(LM_WS_getTitles(H(), kSpyGenre, LM_WS_Page{1, 3}, kAnyPurchase, &page), LM_WS_OK);
    ASSERT_EQ(page->Titles.Count, 3);
    for (int32_t i = 0; i < 3; ++i) {
        Record<LM_WS_StandardResponse> added;
        ASSERT_EQ(LM_WS_addItemToWishlist(H(), page->Titles.Array[i].TitleID, &added), LM_WS_OK);
    }
    // Each page of one title: pages 2 and 3 of the wishlist hold one prefix each.
    EXPECT_EQ(Walk(LMWSLibAE::kWishlistPages, {2, 3}, 1).size(), 2u);
    EXPECT_EQ(Fetched(4), (std::vector<int32_t>{2, 3}));

    m_Manager.Reset();
    m_Manager.SetPageCount(100);
    for (int32_t i = 0; i < 2; ++i) {
        Record<LM_WS_PurchaseResponse> bought;
        ASSERT_EQ(LM_WS_doPurchaseSavedBilling(
                      H(), page->Titles.Array[i].AvailableProducts.Array[0].SkuID, "127.0.0.1", 0,
                      &bought),
                  LM_WS_OK);
    }
    std::vector<std::string> videos = Walk(LMWSLibAE::kMyVideosPages, {2}, 1);
    ASSERT_EQ(videos.size(), 1u);
    EXPECT_EQ(Fetched(4), (std::vector<int32_t>{2}));
    std::vector<std::string> bought = {page->Titles.Array[0].BoxArtPrefix,
                                       page->Titles.Array[1].BoxArtPrefix};
    EXPECT_NE(std::find(bought.begin(), bought.end(), videos[0]), bought.end()) << videos[0];
}

}  // namespace
