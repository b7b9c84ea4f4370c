// The prefetch manager's choice of pages, on rings of several sizes.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "LMPrefetchMgr.h"

namespace {

using Mgr = LMWSLibAE::PrefetchMgr;

std::vector<int32_t> Around(Mgr& mgr, int32_t page, int32_t wanted) {
    std::vector<int32_t> list(static_cast<size_t>(wanted > 0 ? wanted : 1), -1);
    int32_t found = -1;
    mgr.GetPagesForPrefetch(page, wanted, list.data(), &found);
    EXPECT_GE(found, 0);
    list.resize(static_cast<size_t>(found));
    return list;
}

std::pair<uint32_t, uint32_t> NextTwo(Mgr& mgr, uint32_t page) {
    uint32_t first = 99;
    uint32_t second = 99;
    mgr.GetPagesForPrefetch(page, &first, &second);
    return {first, second};
}

typedef std::vector<int32_t> Pages;

TEST(PrefetchMgr, AroundAPageAlternatesNextAndPreviousAroundTheRing) {
    Mgr mgr;
    mgr.SetPageCount(10);
    EXPECT_EQ(Around(mgr, 1, 8), (Pages{2, 10, 3, 9, 4, 8, 5, 7}));
    EXPECT_EQ(Around(mgr, 10, 4), (Pages{1, 9, 2, 8}));
    // An odd request takes one more page forward.
    EXPECT_EQ(Around(mgr, 5, 3), (Pages{6, 4, 7}));

    // Three pages: the request is capped at 3 and page 3, both next and previous, comes once.
    mgr.SetPageCount(3);
    EXPECT_EQ(Around(mgr, 1, 8), (Pages{2, 3}));
}

TEST(PrefetchMgr, AFetchedPageUsesUpItsStep) {
    Mgr mgr;
    mgr.SetPageCount(10);
    mgr.AddFetchedPage(2);
    mgr.AddFetchedPage(3);
    mgr.AddFetchedPage(9);
    // Forward 4, 5 (not 6, 7); backward 10, 8, 7; a side that runs out leaves its slots unused.
    EXPECT_EQ(Around(mgr, 1, 8), (Pages{4, 10, 5, 8, 7}));
    for (int32_t page = 1; page <= 10; ++page) {
        mgr.AddFetchedPage(page);
    }
    EXPECT_EQ(Around(mgr, 1, 8), Pages{});
}

TEST(PrefetchMgr, NothingIsChosenOutsideTheList) {
    Mgr mgr;
    EXPECT_EQ(Around(mgr, 1, 8), Pages{});  // no page count yet
    mgr.SetPageCount(10);
    EXPECT_EQ(Around(mgr, 0, 8), Pages{});
    EXPECT_EQ(Around(mgr, 11, 8), Pages{});
    EXPECT_EQ(Around(mgr, 5, 0), Pages{});
    int32_t found = 7;
    mgr.GetPagesForPrefetch(5, 8, nullptr, &found);
    EXPECT_EQ(found, 0);

    // A single page: the ring's only neighbour is the page itself, shown already.
    mgr.SetPageCount(1);
    mgr.AddFetchedPage(1);
    EXPECT_EQ(Around(mgr, 1, 8), Pages{});

    // Another list starts afresh.
    mgr.Reset();
    EXPECT_EQ(mgr.PageCount(), 0);
    EXPECT_FALSE(mgr.IsFetched(1));
}

TEST(PrefetchMgr, NextTwoFollowTheDirectionOfMovement) {
    Mgr mgr;
    mgr.SetPageCount(10);
    // Page 0 is no page: nothing, and the first decision is still to come.
    EXPECT_EQ(NextTwo(mgr, 0), std::make_pair(0u, 0u));
    // The first decision from page 1: the next page and the ring's last one.
    EXPECT_EQ(NextTwo(mgr, 1), std::make_pair(2u, 10u));
    // From 1 to 10 is a step backwards around the ring.
    EXPECT_EQ(NextTwo(mgr, 10), std::make_pair(9u, 8u));
    EXPECT_EQ(NextTwo(mgr, 9), std::make_pair(8u, 7u));
    // From 9 down to 3 is more than half the ring: the user is read as moving forward.
    EXPECT_EQ(NextTwo(mgr, 3), std::make_pair(4u, 5u));

    // Forward from 4, stepping past fetched pages, but never 6 or more pages away.
    Mgr other;
    other.SetPageCount(10);
    NextTwo(other, 1);
    NextTwo(other, 3);
    other.AddFetchedPage(5);
    other.AddFetchedPage(6);
    other.AddFetchedPage(7);
    EXPECT_EQ(NextTwo(other, 4), std::make_pair(8u, 9u));
    other.AddFetchedPage(8);
    other.AddFetchedPage(10);
    // First 9 (5 away); past fetched 10 the ring wraps to 1, which is 3 away as numbers go.
    EXPECT_EQ(NextTwo(other, 4), std::make_pair(9u, 1u));
    other.AddFetchedPage(9);
    EXPECT_EQ(NextTwo(other, 4), std::make_pair(0u, 0u));

    // Forward from 9 past fetched 10: page 1 is 8 away as numbers go, so nothing.
    Mgr wrap;
    wrap.SetPageCount(10);
    NextTwo(wrap, 1);
    NextTwo(wrap, 5);
    NextTwo(wrap, 8);
    wrap.AddFetchedPage(10);
    EXPECT_EQ(NextTwo(wrap, 9), std::make_pair(0u, 0u));
}

TEST(PrefetchMgr, NextTwoOnTinyRings) {
    Mgr one;
    one.SetPageCount(1);
    EXPECT_EQ(NextTwo(one, 1), std::make_pair(1u, 1u));

    // The starting candidates are not measured: at page 1 of two, again, 2 and then 1.
    Mgr two;
    two.SetPageCount(2);
    EXPECT_EQ(NextTwo(two, 1), std::make_pair(2u, 2u));
    EXPECT_EQ(NextTwo(two, 1), std::make_pair(2u, 1u));

    // All neighbours fetched: nothing.
    Mgr three;
    three.SetPageCount(3);
    NextTwo(three, 1);
    three.AddFetchedPage(1);
    three.AddFetchedPage(3);
    EXPECT_EQ(NextTwo(three, 2), std::make_pair(0u, 0u));
}

TEST(PrefetchMgr, WorkersAddPagesWhileTheScriptThreadDecides) {
    Mgr mgr;
    mgr.SetPageCount(200);
    std::thread a([&] {
        for (int32_t page = 2; page <= 200; page += 2) {
            mgr.AddFetchedPage(page);
        }
    });
    std::thread b([&] {
        for (int32_t page = 3; page <= 200; page += 2) {
            mgr.AddFetchedPage(page);
        }
    });
    for (int i = 0; i < 200; ++i) {
        for (int32_t page : Around(mgr, 1, 8)) {
            EXPECT_TRUE(page >= 2 && page <= 200);
        }
    }
    a.join();
    b.join();
    EXPECT_EQ(Around(mgr, 1, 8), Pages{});
}

}  // namespace
