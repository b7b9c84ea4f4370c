#include "SimAccounts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using lmsim::AccountDefaults;
using lmsim::Caller;
using lmsim::Code;
using lmsim::Product;
using lmsim::SimAccounts;
using lmsim::Title;

const lmsim::Catalogue& Standard() {
    static const lmsim::Catalogue c = lmsim::Catalogue::Build();
    return c;
}

// A product of the catalogue that `wanted` accepts, with its title.
struct Offer {
    const Title* title = nullptr;
    const Product* product = nullptr;
    int cents = 0;
};

Offer Find(const std::function<bool(const Title&, const Product&)>& wanted) {
    for (const Title& t : Standard().Titles()) {
        for (const Product& p : t.products) {
            if (p.skuId != AccountDefaults::kDecliningSku && wanted(t, p)) {
                return {&t, &p, SimAccounts::Cents(p.price)};
            }
        }
    }
    ADD_FAILURE() << "no such product in the catalogue";
    return {};
}

Offer Movie(int purchaseType, const std::string& price) {
    return Find([&](const Title& t, const Product& p) {
        return !t.isTv && p.purchaseType == purchaseType && p.price == price;
    });
}

const int kHour = 3600;

class SimAccountsTest : public ::testing::Test {
protected:
    // Activates `device` for `user`; the caller then carries the new token.
    Caller Activate(const std::string& user, const std::string& device,
                    const std::string& password = "secret") {
        Caller c{user, password, device, ""};
        lmsim::Authorization a = accounts.Authorize(c, AccountDefaults::kActivationPin);
        EXPECT_TRUE(a.ok()) << a.message;
        c.token = a.token;
        return c;
    }
    int BalanceOf(const Caller& c) { return accounts.Info(c).balanceCents; }

    time_t now = 1800000000;
    SimAccounts accounts{Standard(), [this] { return now; }};
};

// ---- Devices and tokens ----

TEST_F(SimAccountsTest, TheActivationPinIssuesATokenAndOtherPinsDoNot) {
    Caller c{"ann", "pw", "device-1", ""};
    lmsim::Authorization wrong = accounts.Authorize(c, 4321);
    EXPECT_EQ(wrong.code, Code::kWrongPin);
    EXPECT_TRUE(wrong.token.empty());
    Caller nameless{"ann", "pw", "", ""};
    EXPECT_EQ(accounts.Authorize(nameless, AccountDefaults::kActivationPin).code,
              Code::kNoDeviceId);

    lmsim::Authorization a = accounts.Authorize(c, AccountDefaults::kActivationPin);
    ASSERT_TRUE(a.ok());
    EXPECT_FALSE(a.token.empty());
    EXPECT_EQ(a.email, "ann@example.com");
    EXPECT_EQ(a.deviceId, "device-1");
    EXPECT_NE(a.deviceName.find("device-1"), std::string::npos);
    EXPECT_FALSE(accounts.TokenValid(c));  // the caller does not carry it yet
    c.token = a.token;
    EXPECT_TRUE(accounts.TokenValid(c));
}

TEST_F(SimAccountsTest, TokensAreDeterministicAndReplaceEachOther) {
    SimAccounts other(Standard());
    const Caller c{"ann", "pw", "device-1", ""};
    const std::string first = accounts.Authorize(c, AccountDefaults::kActivationPin).token;
    EXPECT_EQ(other.Authorize(c, AccountDefaults::kActivationPin).token, first);

    const std::string second = accounts.Authorize(c, AccountDefaults::kActivationPin).token;
    EXPECT_NE(second, first);
    EXPECT_FALSE(accounts.TokenValid({"ann", "pw", "device-1", first}));
    EXPECT_TRUE(accounts.TokenValid({"ann", "pw", "device-1", second}));
}

TEST_F(SimAccountsTest, ATokenServesOnlyItsOwnDevice) {
    Caller c = Activate("ann", "device-1");
    Caller elsewhere = c;
    elsewhere.deviceId = "device-2";
    EXPECT_FALSE(accounts.TokenValid(elsewhere));
    EXPECT_EQ(accounts.AddToWishlist(elsewhere, Standard().Titles()[0].id).code,
              Code::kNotAuthorised);
    Caller tokenless = c;
    tokenless.token.clear();
    EXPECT_EQ(accounts.Info(tokenless).code, Code::kNotAuthorised);
}

TEST_F(SimAccountsTest, DeactivationEndsTheToken) {
    Caller c = Activate("ann", "device-1");
    ASSERT_TRUE(accounts.Deactivate(c).ok());
    EXPECT_FALSE(accounts.TokenValid(c));
    EXPECT_EQ(accounts.Deactivate(c).code, Code::kNotAuthorised);
    EXPECT_EQ(accounts.AddToWishlist(c, Standard().Titles()[0].id).code, Code::kNotAuthorised);
    EXPECT_EQ(accounts.Buy(c, Movie(lmsim::kRent, "1.99").product->skuId, false).code,
              Code::kNotAuthorised);
}

TEST_F(SimAccountsTest, DevicesOfOneUserShareTheAccountAndUsersDoNot) {
    Caller a1 = Activate("ann", "device-1");
    Caller a2 = Activate("ann", "device-2");
    Caller bob = Activate("bob", "device-3");
    const int title = Standard().Titles()[5].id;
    ASSERT_TRUE(accounts.AddToWishlist(a1, title).ok());
    EXPECT_TRUE(accounts.InWishlist(a2, title));
    EXPECT_FALSE(accounts.InWishlist(bob, title));

    // A user name that is an address is the account's address; no name is the demo account.
    EXPECT_EQ(accounts.Info(Activate("cy@mail.test", "device-4")).email, "cy@mail.test");
    lmsim::AccountInfo demo = accounts.Info(Activate("", "device-5"));
    EXPECT_EQ(demo.user, AccountDefaults::kDemoUser);
    EXPECT_EQ(demo.balanceCents, AccountDefaults::kPrepaidCents);
    EXPECT_EQ(demo.ccLastFour, AccountDefaults::kCardLastFour);
}

// ---- Wishlist ----

TEST_F(SimAccountsTest, WishlistAddsOnceRemovesAndClears) {
    Caller c = Activate("ann", "device-1");
    const int a = Standard().Titles()[1].id;
    const int b = Standard().Titles()[2].id;
    EXPECT_TRUE(accounts.AddToWishlist(c, a).ok());
    EXPECT_TRUE(accounts.AddToWishlist(c, a).ok());
    EXPECT_TRUE(accounts.AddToWishlist(c, b).ok());
    EXPECT_EQ(accounts.Wishlist(c, 0, 1, 20, lmsim::kAnyTitle).page.totalItems, 2);
    EXPECT_EQ(accounts.AddToWishlist(c, 42).code, Code::kNotFound);

    EXPECT_TRUE(accounts.RemoveFromWishlist(c, a).ok());
    EXPECT_FALSE(accounts.InWishlist(c, a));
    EXPECT_TRUE(accounts.InWishlist(c, b));
    EXPECT_TRUE(accounts.RemoveFromWishlist(c, a).ok());  // not listed: nothing to do
    EXPECT_EQ(accounts.RemoveFromWishlist(c, 42).code, Code::kNotFound);

    EXPECT_TRUE(accounts.ClearWishlist(c).ok());
    EXPECT_FALSE(accounts.InWishlist(c, b));
    EXPECT_EQ(accounts.Wishlist(c, 0, 1, 20, lmsim::kAnyTitle).page.totalItems, 0);
}

TEST_F(SimAccountsTest, WishlistPagesSortsAndFilters) {
    Caller c = Activate("ann", "device-1");
    const std::vector<Title>& titles = Standard().Titles();
    std::vector<int> added;
    for (size_t i = 0; i < 22; ++i) {
        added.push_back(titles[i * 7].id);
    }
    added.push_back(titles.back().id);  // a series
    added.push_back(titles[titles.size() - 2].id);
    for (int id : added) {
        ASSERT_TRUE(accounts.AddToWishlist(c, id).ok());
    }

    lmsim::WishlistPage first = accounts.Wishlist(c, 0, 1, 10, lmsim::kAnyTitle);
    ASSERT_TRUE(first.ok());
    EXPECT_EQ(first.page.totalItems, 24);
    EXPECT_EQ(first.page.totalPages, 3);
    ASSERT_EQ(first.page.items.size(), 10u);
    EXPECT_EQ(first.page.items[0]->id, added.back());  // newest first
    lmsim::WishlistPage last = accounts.Wishlist(c, 0, 3, 10, lmsim::kAnyTitle);
    ASSERT_EQ(last.page.items.size(), 4u);
    EXPECT_EQ(last.page.items.back()->id, added.front());

    lmsim::WishlistPage oldest = accounts.Wishlist(c, 1, 1, 50, lmsim::kAnyTitle);
    EXPECT_EQ(oldest.sortOrder, 1);
    ASSERT_EQ(oldest.page.items.size(), added.size());
    for (size_t i = 0; i < added.size(); ++i) {
        EXPECT_EQ(oldest.page.items[i]->id, added[i]);
    }
    lmsim::WishlistPage byName = accounts.Wishlist(c, 2, 1, 50, lmsim::kAnyTitle);
    EXPECT_TRUE(std::is_sorted(byName.page.items.begin(), byName.page.items.end(),
                               [](const Title* a, const Title* b) { return a->name < b->name; }));

    lmsim::WishlistPage series = accounts.Wishlist(c, 0, 1, 50, lmsim::kTvTitles);
    EXPECT_EQ(series.page.totalItems, 2);
    EXPECT_EQ(accounts.Wishlist(c, 0, 1, 50, lmsim::kMovies).page.totalItems, 22);

    Caller stranger{"ann", "secret", "device-1", "LMT-forged"};
    lmsim::WishlistPage refused = accounts.Wishlist(stranger, 0, 1, 10, lmsim::kAnyTitle);
    EXPECT_EQ(refused.code, Code::kNotAuthorised);
    EXPECT_TRUE(refused.page.items.empty());
}

// ---- Purchases ----

TEST_F(SimAccountsTest, APurchaseCreatesAPassAndTakesTheTitleOffTheWishlist) {
    Caller c = Activate("ann", "device-1");
    const Offer offer = Movie(lmsim::kBuy, "9.99");
    const int other = Standard().Titles()[offer.title == &Standard().Titles()[3] ? 4 : 3].id;
    ASSERT_TRUE(accounts.AddToWishlist(c, offer.title->id).ok());
    ASSERT_TRUE(accounts.AddToWishlist(c, other).ok());
    EXPECT_FALSE(accounts.OwnsTitle(c, offer.title->id));

    lmsim::Purchase p = accounts.Buy(c, offer.product->skuId, false);
    ASSERT_TRUE(p.ok()) << p.message;
    EXPECT_GT(p.passId, 0);
    EXPECT_GT(p.transactionId, 0);
    EXPECT_EQ(p.authNum.compare(0, 4, "AUTH"), 0);
    EXPECT_FALSE(accounts.InWishlist(c, offer.title->id));
    EXPECT_TRUE(accounts.InWishlist(c, other));
    EXPECT_TRUE(accounts.OwnsTitle(c, offer.title->id));
    EXPECT_TRUE(accounts.OwnsSku(c, offer.product->skuId));
    EXPECT_EQ(BalanceOf(c), AccountDefaults::kPrepaidCents);  // the card paid

    lmsim::PassLookup found = accounts.FindPass(c, p.passId);
    ASSERT_TRUE(found.ok());
    EXPECT_EQ(found.pass.title, offer.title);
    EXPECT_EQ(found.pass.product, offer.product);
    EXPECT_EQ(found.pass.positionSeconds, 0);
    EXPECT_EQ(accounts.FindPass(Activate("bob", "device-2"), p.passId).code, Code::kNotFound);

    EXPECT_EQ(accounts.Buy(c, offer.product->skuId, false).code, Code::kAlreadyOwned);
    EXPECT_EQ(accounts.Buy(c, 42, false).code, Code::kUnknownSku);
    EXPECT_EQ(accounts.Buy(c, AccountDefaults::kDecliningSku, false).code, Code::kDeclined);
    EXPECT_EQ(accounts.Buy(c, AccountDefaults::kDecliningSku, true).code, Code::kDeclined);
    EXPECT_NE(Standard().FindBySku(AccountDefaults::kDecliningSku), nullptr);
}

TEST_F(SimAccountsTest, PrepaidFundsPayPriceAndTaxAndRunOut) {
    Caller c = Activate("ann", "device-1");
    const Offer cheap = Movie(lmsim::kRent, "3.99");
    lmsim::Purchase p = accounts.Buy(c, cheap.product->skuId, true);
    ASSERT_TRUE(p.ok()) << p.message;
    EXPECT_EQ(BalanceOf(c), AccountDefaults::kPrepaidCents - (399 + 32));

    // 9.99 and its tax are more than what is left: declined, nothing charged, no pass.
    const Offer dear = Movie(lmsim::kBuy, "9.99");
    lmsim::Purchase refused = accounts.Buy(c, dear.product->skuId, true);
    EXPECT_EQ(refused.code, Code::kInsufficientFunds);
    EXPECT_EQ(refused.passId, 0);
    EXPECT_EQ(BalanceOf(c), AccountDefaults::kPrepaidCents - 431);
    EXPECT_FALSE(accounts.OwnsSku(c, dear.product->skuId));
    // The card still pays.
    EXPECT_TRUE(accounts.Buy(c, dear.product->skuId, false).ok());
}

TEST_F(SimAccountsTest, OrderTaxIsRoundedToTheCent) {
    Caller c = Activate("ann", "device-1");
    lmsim::Tax t = accounts.OrderTax(c, Movie(lmsim::kRent, "3.99").product->skuId);
    ASSERT_TRUE(t.ok());
    EXPECT_EQ(t.subTotal, "3.99");
    EXPECT_EQ(t.tax, "0.32");  // 31.92 cents
    EXPECT_EQ(t.total, "4.31");
    lmsim::Tax cheap = accounts.OrderTax(c, Movie(lmsim::kRent, "1.99").product->skuId);
    EXPECT_EQ(cheap.tax, "0.16");  // 15.92 cents
    EXPECT_EQ(accounts.OrderTax(c, 42).code, Code::kTaxUnknownSku);
    EXPECT_EQ(accounts.OrderTax(Caller{}, 42).code, Code::kNotAuthorised);
}

TEST(SimAccountsMoney, PricesAndCertificatesAreParsedStrictly) {
    EXPECT_EQ(SimAccounts::Cents("3.99"), 399);
    EXPECT_EQ(SimAccounts::Cents("14.99"), 1499);
    EXPECT_EQ(SimAccounts::Cents("0.05"), 5);
    EXPECT_EQ(SimAccounts::Cents("3.5"), 350);
    EXPECT_EQ(SimAccounts::Cents("3"), 300);
    for (const char* bad : {"", "x", ".5", "3.", "1.234", "-1.00", "1,00", "12345678"}) {
        EXPECT_EQ(SimAccounts::Cents(bad), -1) << bad;
    }
    EXPECT_EQ(SimAccounts::Decimal(5), "0.05");
    EXPECT_EQ(SimAccounts::Decimal(1079), "10.79");

    EXPECT_EQ(SimAccounts::GiftCertificateCents("GIFT-2500-A"), 2500);
    EXPECT_EQ(SimAccounts::GiftCertificateCents("GIFT-100000-x-y"), 100000);
    for (const char* bad : {"GIFT-100001-a", "GIFT-2500-", "GIFT--a", "GIFT-25x0-a", "GIFT-2500",
                            "gift-2500-a", "", "GIFT-0-a", "GIFT-99999999-a"}) {
        EXPECT_EQ(SimAccounts::GiftCertificateCents(bad), 0) << bad;
    }
}

TEST_F(SimAccountsTest, AGiftCertificateCountsOnceForAllAccounts) {
    Caller ann = Activate("ann", "device-1");
    Caller bob = Activate("bob", "device-2");
    lmsim::Balance first = accounts.RedeemGiftCertificate(ann, "GIFT-2500-A");
    ASSERT_TRUE(first.ok());
    EXPECT_EQ(first.cents, AccountDefaults::kPrepaidCents + 2500);
    lmsim::Balance again = accounts.RedeemGiftCertificate(ann, "GIFT-2500-A");
    EXPECT_EQ(again.code, Code::kGiftUsed);
    EXPECT_EQ(again.cents, first.cents);
    EXPECT_EQ(accounts.RedeemGiftCertificate(bob, "GIFT-2500-A").code, Code::kGiftUsed);
    EXPECT_EQ(BalanceOf(bob), AccountDefaults::kPrepaidCents);
    lmsim::Balance unknown = accounts.RedeemGiftCertificate(bob, "WELCOME");
    EXPECT_EQ(unknown.code, Code::kGiftInvalid);
    EXPECT_EQ(unknown.cents, AccountDefaults::kPrepaidCents);
    // A refused certificate stays unused.
    EXPECT_EQ(accounts.RedeemGiftCertificate(Caller{}, "GIFT-100-B").code, Code::kNotAuthorised);
    EXPECT_TRUE(accounts.RedeemGiftCertificate(bob, "GIFT-100-B").ok());
}

TEST_F(SimAccountsTest, RentalsExpireAfterTheirPeriodAndPurchasesDoNot) {
    Caller c = Activate("ann", "device-1");
    const Offer rent = Movie(lmsim::kRent, "2.99");
    const Offer buy = Movie(lmsim::kBuy, "9.99");
    ASSERT_EQ(rent.product->rentalPeriodHours, 48);
    const int rental = accounts.Buy(c, rent.product->skuId, false).passId;
    const int bought = accounts.Buy(c, buy.product->skuId, false).passId;
    EXPECT_EQ(accounts.FindPass(c, rental).pass.hoursRemaining, 48);

    now += 47 * kHour + 1;
    EXPECT_EQ(accounts.FindPass(c, rental).pass.hoursRemaining, 1);
    EXPECT_TRUE(accounts.StartStream(c, rental, 0).ok());

    now += kHour - 1;  // exactly 48 hours after the purchase
    lmsim::PassLookup expired = accounts.FindPass(c, rental);
    EXPECT_TRUE(expired.pass.expired);
    EXPECT_EQ(expired.pass.hoursRemaining, 0);
    EXPECT_FALSE(accounts.OwnsSku(c, rent.product->skuId));
    EXPECT_FALSE(accounts.OwnsTitle(c, rent.title->id));
    EXPECT_EQ(accounts.StartStream(c, rental, 0).code, Code::kRentalExpired);
    EXPECT_EQ(accounts.LastStream(c, rental, 0).code, Code::kRentalExpired);

    lmsim::PassPage watchNow = accounts.Passes(c, 1, 10, lmsim::kAnyPurchase, lmsim::kAnyTitle, 0);
    ASSERT_EQ(watchNow.passes.size(), 1u);
    EXPECT_EQ(watchNow.passes[0].passId, bought);
    lmsim::PassPage rentAgain = accounts.Passes(c, 1, 10, lmsim::kAnyPurchase, lmsim::kAnyTitle, 1);
    ASSERT_EQ(rentAgain.passes.size(), 1u);
    EXPECT_EQ(rentAgain.passes[0].passId, rental);
    EXPECT_EQ(accounts.Passes(c, 1, 10, lmsim::kAnyPurchase, lmsim::kAnyTitle, 2).totalItems, 0);
    EXPECT_EQ(accounts.Passes(c, 1, 10, lmsim::kAnyPurchase, lmsim::kAnyTitle, 3).totalItems, 2);

    // An expired rental can be rented again; a bought title stays.
    now += 1000 * kHour;
    EXPECT_TRUE(accounts.Buy(c, rent.product->skuId, false).ok());
    EXPECT_FALSE(accounts.FindPass(c, bought).pass.expired);
}

TEST_F(SimAccountsTest, PassesAreListedNewestFirstFilteredAndPaged) {
    Caller c = Activate("ann", "device-1");
    const Offer series = Find(
        [](const Title& t, const Product& p) { return t.isTv && p.purchaseType == lmsim::kBuy; });
    std::vector<int> ids;
    ids.push_back(accounts.Buy(c, Movie(lmsim::kRent, "1.99").product->skuId, false).passId);
    ids.push_back(accounts.Buy(c, Movie(lmsim::kBuy, "9.99").product->skuId, false).passId);
    ids.push_back(accounts.Buy(c, series.product->skuId, false).passId);

    lmsim::PassPage all = accounts.Passes(c, 1, 2, lmsim::kAnyPurchase, lmsim::kAnyTitle, 3);
    EXPECT_EQ(all.totalItems, 3);
    EXPECT_EQ(all.totalPages, 2);
    ASSERT_EQ(all.passes.size(), 2u);
    EXPECT_EQ(all.passes[0].passId, ids[2]);
    EXPECT_EQ(all.passes[1].passId, ids[1]);
    lmsim::PassPage second = accounts.Passes(c, 2, 2, lmsim::kAnyPurchase, lmsim::kAnyTitle, 3);
    ASSERT_EQ(second.passes.size(), 1u);
    EXPECT_EQ(second.passes[0].passId, ids[0]);

    EXPECT_EQ(accounts.Passes(c, 1, 10, lmsim::kRent, lmsim::kAnyTitle, 3).totalItems, 1);
    EXPECT_EQ(accounts.Passes(c, 1, 10, lmsim::kBuy, lmsim::kAnyTitle, 3).totalItems, 2);
    EXPECT_EQ(accounts.Passes(c, 1, 10, lmsim::kAnyPurchase, lmsim::kTvTitles, 3).totalItems, 1);
    EXPECT_EQ(accounts.Passes(c, 1, 10, lmsim::kBuy, lmsim::kMovies, 3).totalItems, 1);
    EXPECT_EQ(accounts.Passes(Caller{}, 1, 10, lmsim::kAnyPurchase, lmsim::kAnyTitle, 3).code,
              Code::kNotAuthorised);
}

TEST_F(SimAccountsTest, RemovingAllPurchasesWantsTheAccountPassword) {
    Caller c = Activate("ann", "device-1", "s3cret");
    const int pass = accounts.Buy(c, Movie(lmsim::kBuy, "9.99").product->skuId, false).passId;
    const std::string stream = accounts.StartStream(c, pass, 0).streamId;
    EXPECT_EQ(accounts.RemoveAllPurchases(c, "wrong").code, Code::kWrongPassword);
    EXPECT_TRUE(accounts.FindPass(c, pass).ok());

    EXPECT_TRUE(accounts.RemoveAllPurchases(c, "s3cret").ok());
    EXPECT_EQ(accounts.FindPass(c, pass).code, Code::kNotFound);
    EXPECT_EQ(accounts.ReportStream(c, stream, 1, 10).code, Code::kNotFound);
}

// ---- Streaming ----

TEST_F(SimAccountsTest, TheStopPositionOfAStreamIsWhereThePassResumes) {
    Caller c = Activate("ann", "device-1");
    const Offer hd = Find([](const Title& t, const Product& p) {
        return !t.isTv && p.purchaseType == lmsim::kBuy && p.fileProfiles.size() == 2;
    });
    const int pass = accounts.Buy(c, hd.product->skuId, false).passId;

    lmsim::Stream first = accounts.StartStream(c, pass, 0);
    ASSERT_TRUE(first.ok()) << first.message;
    EXPECT_FALSE(first.streamId.empty());
    EXPECT_EQ(first.fileProfile, hd.product->fileProfiles[0]);
    EXPECT_EQ(first.pass.positionSeconds, 0);
    EXPECT_EQ(accounts.StartStream(c, pass, hd.product->fileProfiles[1]).fileProfile,
              hd.product->fileProfiles[1]);

    ASSERT_TRUE(accounts.ReportStream(c, first.streamId, 2, 300).ok());  // paused
    ASSERT_TRUE(accounts.ReportStream(c, first.streamId, 1, 600).ok());  // stopped
    lmsim::Stream last = accounts.LastStream(c, pass, 0);
    ASSERT_TRUE(last.ok());
    EXPECT_EQ(last.pass.positionSeconds, 600);
    EXPECT_EQ(last.pass.playStatus, 1);
    EXPECT_EQ(accounts.FindPass(c, pass).pass.positionSeconds, 600);

    lmsim::Stream resumed = accounts.StartStream(c, pass, 0);
    EXPECT_EQ(resumed.pass.positionSeconds, 600);
    EXPECT_NE(resumed.streamId, first.streamId);
    EXPECT_EQ(accounts.LastStream(c, pass, 0).streamId, resumed.streamId);
}

TEST_F(SimAccountsTest, StreamsAreRefusedForStrangersAndUnknownIds) {
    Caller c = Activate("ann", "device-1");
    Caller bob = Activate("bob", "device-2");
    const Offer sd = Find([](const Title& t, const Product& p) {
        return !t.isTv && p.fileProfiles == std::vector<int>{1};
    });
    const int pass = accounts.Buy(c, sd.product->skuId, false).passId;
    const std::string stream = accounts.StartStream(c, pass, 0).streamId;

    EXPECT_EQ(accounts.StartStream(c, pass, 2).code, Code::kProfileNotOffered);
    EXPECT_EQ(accounts.StartStream(c, pass + 1000, 0).code, Code::kNotFound);
    EXPECT_EQ(accounts.StartStream(bob, pass, 0).code, Code::kNotFound);
    EXPECT_EQ(accounts.StartStream(Caller{}, pass, 0).code, Code::kNotAuthorised);
    EXPECT_EQ(accounts.ReportStream(c, "STR-999999", 1, 10).code, Code::kNotFound);
    EXPECT_EQ(accounts.ReportStream(bob, stream, 1, 10).code, Code::kNotFound);
    EXPECT_EQ(accounts.ReportStream(c, stream, 1, -1).code, Code::kBadStopTime);
    EXPECT_EQ(accounts.FindPass(c, pass).pass.positionSeconds, 0);
}

// ---- Adult verification and settings ----

TEST_F(SimAccountsTest, TheAdultPinIsComparedAsZeroPaddedText) {
    Caller c = Activate("ann", "device-1");
    EXPECT_TRUE(accounts.AdultVerificationEnabled(c).ok());
    EXPECT_TRUE(accounts.CheckAdultPin(c, "0042").verified);
    EXPECT_FALSE(accounts.CheckAdultPin(c, "42").verified);
    EXPECT_FALSE(accounts.CheckAdultPin(c, "1234").verified);
    EXPECT_TRUE(accounts.CheckAdultPin(c, "42").ok());  // a wrong PIN is an answer, not an error
    EXPECT_EQ(accounts.CheckAdultPin(Caller{}, "0042").code, Code::kNotAuthorised);
    EXPECT_EQ(accounts.AdultVerificationEnabled(Caller{}).code, Code::kNotAuthorised);

    EXPECT_EQ(accounts.Info(c).audioSetting, 0);
    EXPECT_TRUE(accounts.SetAudioSetting(c, 3).ok());
    EXPECT_EQ(accounts.Info(Activate("ann", "device-2")).audioSetting, 3);
    EXPECT_EQ(accounts.SetAudioSetting(Caller{}, 1).code, Code::kNotAuthorised);
}

// ---- Threads ----

// The server calls in from one thread per connection: many devices of one account at once must
// lose no wishlist entry, no pass and no cent.
TEST_F(SimAccountsTest, ConcurrentCallersKeepTheAccountConsistent) {
    const int kThreads = 6;
    const int kEach = 40;
    const Offer offer = Movie(lmsim::kRent, "1.99");
    // Wishlist titles other than the rented one, which a purchase takes off the list.
    const size_t kFirstListed = 1000;
    ASSERT_LT(offer.title, &Standard().Titles()[kFirstListed]);
    std::vector<Caller> callers;
    for (int i = 0; i < kThreads; ++i) {
        callers.push_back(Activate("ann", "device-" + std::to_string(i)));
    }
    accounts.RedeemGiftCertificate(callers[0], "GIFT-100000-big");
    std::vector<std::vector<int>> passes(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            for (int k = 0; k < kEach; ++k) {
                accounts.AddToWishlist(callers[i],
                                       Standard().Titles()[kFirstListed + i * kEach + k].id);
                accounts.Wishlist(callers[i], 0, 1, 10, lmsim::kAnyTitle);
                // Only one rental of the SKU can be in force: the others are refused.
                lmsim::Purchase p = accounts.Buy(callers[i], offer.product->skuId, true);
                if (p.ok()) {
                    passes[i].push_back(p.passId);
                    accounts.RemoveAllPurchases(callers[i], "secret");
                }
            }
        });
    }
    for (std::thread& t : threads) {
        t.join();
    }
    EXPECT_EQ(accounts.Wishlist(callers[0], 0, 1, 200, lmsim::kAnyTitle).page.totalItems,
              kThreads * kEach);
    std::set<int> unique;
    size_t bought = 0;
    for (const std::vector<int>& p : passes) {
        unique.insert(p.begin(), p.end());
        bought += p.size();
    }
    EXPECT_EQ(unique.size(), bought);
    EXPECT_GT(bought, 0u);
    const int price = offer.cents + (offer.cents * AccountDefaults::kTaxPercent + 50) / 100;
    EXPECT_EQ(BalanceOf(callers[0]),
              AccountDefaults::kPrepaidCents + 100000 - static_cast<int>(bought) * price);
}

}  // namespace
