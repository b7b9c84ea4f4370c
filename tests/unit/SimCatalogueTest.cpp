#include "SimCatalogue.h"

#include <gtest/gtest.h>

namespace {

using lmsim::Catalogue;

const Catalogue& Standard() {
    static const Catalogue c = Catalogue::Build();
    return c;
}

TEST(SimCatalogue, IsDeterministicAndLargeEnough) {
    Catalogue again = Catalogue::Build();
    ASSERT_EQ(again.Titles().size(), Standard().Titles().size());
    for (size_t i = 0; i < again.Titles().size(); i += 97) {
        EXPECT_EQ(again.Titles()[i].name, Standard().Titles()[i].name);
        EXPECT_EQ(again.Titles()[i].products.size(), Standard().Titles()[i].products.size());
    }
    EXPECT_GE(Standard().Genres().size(), 30u);
    EXPECT_GE(Standard().Titles().size(), 2000u);
    int series = 0;
    int awkwardPrefixes = 0;
    for (const lmsim::Title& t : Standard().Titles()) {
        series += t.isTv && !t.episodes.empty();
        awkwardPrefixes += t.boxArtPrefix.find(" & ") != std::string::npos;
        EXPECT_FALSE(t.products.empty()) << t.id;
    }
    EXPECT_GE(series, 50);
    EXPECT_GT(awkwardPrefixes, 0);
}

TEST(SimCatalogue, PagingCoversEveryItemOnceAndClampsBounds) {
    std::vector<const lmsim::Title*> all = Standard().InGenre(12, lmsim::kAnyPurchase);
    ASSERT_GT(all.size(), 20u);
    size_t seen = 0;
    lmsim::Page first = Catalogue::Paginate(all, 1, 20);
    for (int page = 1; page <= first.totalPages; ++page) {
        lmsim::Page p = Catalogue::Paginate(all, page, 20);
        EXPECT_EQ(p.items.front(), all[seen]);
        seen += p.items.size();
    }
    EXPECT_EQ(seen, all.size());
    EXPECT_EQ(first.totalItems, static_cast<int>(all.size()));
    EXPECT_TRUE(Catalogue::Paginate(all, first.totalPages + 1, 20).items.empty());
    EXPECT_EQ(Catalogue::Paginate(all, 0, 20).currentPage, 1);
    EXPECT_EQ(Catalogue::Paginate(all, 1, 0).itemsPerPage, 1);
    EXPECT_EQ(Catalogue::Paginate({}, 1, 20).totalPages, 0);
}

TEST(SimCatalogue, LookupsAndFilters) {
    const lmsim::Title& series = Standard().Titles().back();
    ASSERT_TRUE(series.isTv);
    const lmsim::Episode* episode = nullptr;
    EXPECT_EQ(Standard().FindEpisode(series.episodes[1].episodeId, &episode), &series);
    EXPECT_EQ(episode->number, 2);
    EXPECT_EQ(Standard().FindBySku(series.products[0].skuId), &series);
    EXPECT_EQ(Standard().FindByAsset(series.assetId), &series);
    EXPECT_EQ(Standard().FindByRecboxId(series.recboxId), &series);
    EXPECT_EQ(Standard().FindTitle(1), nullptr);

    std::string word = series.name.substr(series.name.rfind(' ') + 1);
    for (const lmsim::Title* t : Standard().Search(word, lmsim::kAnyPurchase, lmsim::kTvTitles)) {
        EXPECT_TRUE(t->isTv);
    }
    for (const lmsim::Title* t : Standard().Search("", lmsim::kRent, lmsim::kMovies)) {
        EXPECT_FALSE(t->isTv);
        bool rents = false;
        for (const lmsim::Product& p : t->products) {
            rents |= p.purchaseType == lmsim::kRent;
        }
        EXPECT_TRUE(rents) << t->id;
    }
    EXPECT_EQ(Standard().Search("HARBOR", 2, 0).size(), Standard().Search("harbor", 2, 0).size());
}

}  // namespace
