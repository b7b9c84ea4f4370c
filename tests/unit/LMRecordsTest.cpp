// Client records: conversion from the wire objects and release by tag. Run under AddressSanitizer
// these tests also prove that release frees everything conversion allocated.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "FilledRecord.h"
#include "LMRecordFields.h"
#include "LMUtilities.h"
#include "LM_WS_Records.h"
#include "soapH.h"

namespace {

// A toolkit context whose objects die with the fixture, as a call's objects die with the call.
class Wire : public ::testing::Test {
protected:
    Wire() : ctx(SOAP_C_UTFSTRING) {}
    ~Wire() override { Release(); }
    void Release() {
        soap_destroy(&ctx);
        soap_end(&ctx);
    }
    char* Text(const std::string& s) { return soap_strdup(&ctx, s.c_str()); }
    template <class T>
    T** Slots(int n) {
        return static_cast<T**>(soap_malloc(&ctx, n * sizeof(T*)));
    }

    // A product with two file profiles and one audio file.
    LM1__ProductListing* Product(int sku) {
        LM1__ProductListing* p = soap_new_LM1__ProductListing(&ctx);
        p->SkuID = sku;
        p->PurchaseType = LM1__PurchaseType__buy;
        p->Price = Text("3.99");
        p->AvailableAssets = soap_new_LM1__ArrayOfFileProfile(&ctx);
        p->AvailableAssets->__sizeFileProfile = 2;
        p->AvailableAssets->FileProfile =
            static_cast<LM1__FileProfile*>(soap_malloc(&ctx, 2 * sizeof(LM1__FileProfile)));
        p->AvailableAssets->FileProfile[0] = LM1__FileProfile__STANDARD;
        p->AvailableAssets->FileProfile[1] = LM1__FileProfile__HIGH_USCOREDEFINITION;
        p->ExpireDate = Text("2012/03/05 23:59:00");
        p->AvailableAudioProfiles = soap_new_LM1__ArrayOfAudioFile(&ctx);
        p->AvailableAudioProfiles->__sizeAudioFile = 1;
        p->AvailableAudioProfiles->AudioFile = Slots<LM1__AudioFile>(1);
        LM1__AudioFile* a = soap_new_LM1__AudioFile(&ctx);
        a->AssetAudioID = 77;
        a->FileLocation = Text("http://cdn/a.ac3");
        a->ContainsVideo = true;
        a->AudioAssetProfile = LM1__AudioSetting__Dolby_USCOREDigital_USCOREPlus_USCORE51;
        p->AvailableAudioProfiles->AudioFile[0] = a;
        p->RentalPeriod = 48;
        return p;
    }

    // Fills the members shared by every kind of title; title `i` has one bonus asset and one
    // product.
    template <class T>
    T* Title(T* t, int i) {
        t->TitleID = 1000 + i;
        t->TitleName = Text("Title " + std::to_string(i));
        t->BoxArtPrefix = Text("box" + std::to_string(i));
        t->TitlePosition = static_cast<short>(-i);
        t->EpisodeNumber = i;
        t->BonusAssets = soap_new_LM1__ArrayOfBonusAsset(&ctx);
        t->BonusAssets->__sizeBonusAsset = 1;
        t->BonusAssets->BonusAsset = Slots<LM1__BonusAsset>(1);
        t->BonusAssets->BonusAsset[0] = soap_new_LM1__BonusAsset(&ctx);
        t->BonusAssets->BonusAsset[0]->BonusAssetID = 500 + i;
        t->BonusAssets->BonusAsset[0]->Profile = LM1__FileProfile__PORTABLE;
        t->IsTvListing = i % 2 == 1;
        t->MPAARating = Text("PG-13");
        t->AvailableProducts = soap_new_LM1__ArrayOfProductListing(&ctx);
        t->AvailableProducts->__sizeProductListing = 1;
        t->AvailableProducts->ProductListing = Slots<LM1__ProductListing>(1);
        t->AvailableProducts->ProductListing[0] = Product(9000 + i);
        t->IsTHXMediaDirectorEnabled = true;
        t->CHVRSRating = Text("14A");
        t->LoyaltyPointsForBuy = Text("10");
        // LoyaltyPointsForRent left absent.
        return t;
    }

    LM1__ArrayOfTitleListing* Titles(int n) {
        LM1__ArrayOfTitleListing* a = soap_new_LM1__ArrayOfTitleListing(&ctx);
        a->__sizeTitleListing = n;
        a->TitleListing = Slots<LM1__TitleListing>(n);
        for (int i = 0; i < n; ++i) {
            a->TitleListing[i] = Title(soap_new_LM1__TitleListing(&ctx), i);
        }
        return a;
    }

    LM1__GetTitlesResponse* TitlesPage(int n) {
        LM1__GetTitlesResponse* r = soap_new_LM1__GetTitlesResponse(&ctx);
        r->ResponseCode = 0;
        r->ResponseMessage = Text("OK");
        r->GenreID = 12;
        r->CurrentPageNumber = 2;
        r->ItemsPerPage = static_cast<short>(n);
        r->TotalPages = 7;
        r->TotalItems = 32000;
        r->Titles = Titles(n);
        return r;
    }

    struct soap ctx;
};

using Conversion = Wire;

TEST_F(Conversion, FullTitlesPageIsCopiedAndOutlivesTheWireObjects) {
    LM_WS_TitlesResponse rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitles);
    LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse(TitlesPage(3), &rec);
    Release();  // the record must own copies of everything

    EXPECT_EQ(LM_WS_ResultTitles, *rec.Type);
    EXPECT_STREQ("OK", rec.ResponseMessage);
    EXPECT_EQ(12, rec.GenreID);
    EXPECT_EQ(2, rec.CurrentPageNumber);
    EXPECT_EQ(7, rec.TotalPages);
    EXPECT_EQ(32000, rec.TotalItems);
    ASSERT_NE(nullptr, rec.Titles.Type);
    EXPECT_EQ(LM_WS_ResultTitleListingArray, *rec.Titles.Type);
    ASSERT_EQ(3, rec.Titles.Count);

    const LM_WS_TitleListing& t = rec.Titles.Array[1];
    ASSERT_NE(nullptr, t.Type);
    EXPECT_EQ(LM_WS_ResultTitleListing, *t.Type);
    EXPECT_EQ(1001, t.TitleID);
    EXPECT_STREQ("Title 1", t.TitleName);
    EXPECT_STREQ("box1", t.BoxArtPrefix);
    EXPECT_EQ(-1, t.TitlePosition);
    EXPECT_EQ(1, t.IsTvListing);
    EXPECT_EQ(0, rec.Titles.Array[0].IsTvListing);
    EXPECT_EQ(1, t.IsTHXMediaDirectorEnabled);
    EXPECT_EQ(0, t.IsTHXMediaDirectorEnabledForTrailer);
    EXPECT_STREQ("14A", t.CHVRSRating);
    EXPECT_STREQ("", t.LoyaltyPointsForRent);
    ASSERT_EQ(1, t.BonusAssets.Count);
    EXPECT_EQ(501, t.BonusAssets.Array[0].BonusAssetID);
    EXPECT_EQ(LM1__FileProfile__PORTABLE, t.BonusAssets.Array[0].Profile);

    ASSERT_EQ(1, t.AvailableProducts.Count);
    const LM_WS_ProductListing& p = t.AvailableProducts.Array[0];
    EXPECT_EQ(9001, p.SkuID);
    EXPECT_EQ(LM1__PurchaseType__buy, p.PurchaseType);
    EXPECT_STREQ("3.99", p.Price);
    EXPECT_STREQ("2012/03/05 23:59:00", p.ExpireDate);
    EXPECT_EQ(48, p.RentalPeriod);
    ASSERT_EQ(2, p.AvailableAssets.Count);
    EXPECT_EQ(LM1__FileProfile__HIGH_USCOREDEFINITION, p.AvailableAssets.Array[1]);
    ASSERT_EQ(1, p.AvailableAudioProfiles.Count);
    EXPECT_EQ(77, p.AvailableAudioProfiles.Array[0].AssetAudioID);
    EXPECT_STREQ("http://cdn/a.ac3", p.AvailableAudioProfiles.Array[0].FileLocation);
    EXPECT_EQ(1, p.AvailableAudioProfiles.Array[0].ContainsVideo);

    LM_WS_FreeResult(&rec);
    EXPECT_EQ(nullptr, rec.Type);
}

TEST_F(Conversion, AbsentTextsBecomeEmptyTextsNotNull) {
    LM1__GetTitlesResponse* w = TitlesPage(1);
    w->ResponseMessage = nullptr;
    w->Titles->TitleListing[0]->TitleName = Text("");
    w->Titles->TitleListing[0]->MPAARating = nullptr;
    LM_WS_TitlesResponse rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitles);
    LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse(w, &rec);
    ASSERT_NE(nullptr, rec.ResponseMessage);
    EXPECT_STREQ("", rec.ResponseMessage);
    ASSERT_NE(nullptr, rec.Titles.Array[0].TitleName);
    EXPECT_STREQ("", rec.Titles.Array[0].TitleName);
    ASSERT_NE(nullptr, rec.Titles.Array[0].MPAARating);
    EXPECT_STREQ("", rec.Titles.Array[0].MPAARating);
    LM_WS_FreeResult(&rec);  // the empty texts are heap copies too: freeing them is valid
}

TEST_F(Conversion, TitlesPageWithoutTitlesHasNoArrayButItsPaging) {
    LM1__GetTitlesResponse* w = TitlesPage(0);
    w->Titles = nullptr;
    LM_WS_TitlesResponse rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitles);
    int32_t* arrayTag = rec.Titles.Type;
    LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse(w, &rec);
    EXPECT_EQ(0, rec.Titles.Count);
    EXPECT_EQ(nullptr, rec.Titles.Array);
    EXPECT_EQ(arrayTag, rec.Titles.Type);  // the tag given at initialisation is kept
    EXPECT_EQ(12, rec.GenreID);
    EXPECT_EQ(2, rec.CurrentPageNumber);
    EXPECT_EQ(0, rec.ItemsPerPage);
    EXPECT_EQ(7, rec.TotalPages);
    EXPECT_EQ(32000, rec.TotalItems);
    LM_WS_FreeResult(&rec);
}

TEST_F(Conversion, ConvertsIntoAClearedRecordAllocatingItsTags) {
    LM_WS_RecommendedTitlesResponse rec;
    std::memset(&rec, 0, sizeof rec);
    LM1__RecommendedTitlesResponse* w = soap_new_LM1__RecommendedTitlesResponse(&ctx);
    w->ResponseCode = 3;
    w->Titles = Titles(2);
    LMUtilities::LM1__RecommendedTitlesResponse2LM_WS_RecommendedTitlesResponse(w, &rec);
    ASSERT_NE(nullptr, rec.Type);
    EXPECT_EQ(LM_WS_ResultRecommendedTitles, *rec.Type);
    EXPECT_EQ(3, rec.ResponseCode);
    ASSERT_NE(nullptr, rec.Titles.Type);
    EXPECT_EQ(LM_WS_ResultTitleListingArray, *rec.Titles.Type);
    EXPECT_EQ(2, rec.Titles.Count);
    LM_WS_FreeResult(&rec);
}

TEST_F(Conversion, NilListElementBecomesAnEmptyElementInPlace) {
    LM1__ArrayOfTitleListing* w = Titles(3);
    w->TitleListing[1] = nullptr;
    LM_WS_TitleListingArray rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitleListingArray);
    LMUtilities::LM1__ArrayOfTitleListing2LM_WS_TitleListingArray(w, &rec);
    ASSERT_EQ(3, rec.Count);
    EXPECT_EQ(1000, rec.Array[0].TitleID);
    EXPECT_EQ(0, rec.Array[1].TitleID);
    EXPECT_STREQ("", rec.Array[1].TitleName);
    EXPECT_EQ(0, rec.Array[1].AvailableProducts.Count);
    EXPECT_EQ(1002, rec.Array[2].TitleID);
    LM_WS_FreeResult(&rec);
}

TEST_F(Conversion, TitlePageCopiesDetailsThenTheTitle) {
    LM1__TitleListingResponse* w = Title(soap_new_LM1__TitleListingResponse(&ctx), 4);
    w->ResponseCode = 0;
    w->Synopsys = Text("A long story.");
    w->UserRating = 4;
    w->Actors = Text("Someone");
    w->IsAvailInUserWishList = true;
    w->RatingReason = Text("violence");
    LM_WS_TitleListingResponse rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitleListingResponse);
    LMUtilities::LM1__TitleListingResponse2LM_WS_TitleListingResponse(w, &rec);
    Release();
    EXPECT_STREQ("A long story.", rec.Synopsys);
    EXPECT_EQ(4, rec.UserRating);
    EXPECT_STREQ("Someone", rec.Actors);
    EXPECT_STREQ("", rec.Directors);
    EXPECT_EQ(1, rec.IsAvailInUserWishList);
    EXPECT_STREQ("violence", rec.RatingReason);
    EXPECT_EQ(1004, rec.TitleListing.TitleID);
    EXPECT_EQ(1, rec.TitleListing.AvailableProducts.Count);
    EXPECT_EQ(LM_WS_ResultTitleListing, *rec.TitleListing.Type);
    LM_WS_FreeResult(&rec);
}

TEST_F(Conversion, MyVideosCopiesPurchasedTitlesAndPaging) {
    LM1__GetMyVideosResponse* w = soap_new_LM1__GetMyVideosResponse(&ctx);
    w->ResponseMessage = Text("fine");
    w->Titles = soap_new_LM1__ArrayOfTitleListingPurchased(&ctx);
    w->Titles->__sizeTitleListingPurchased = 2;
    w->Titles->TitleListingPurchased = Slots<LM1__TitleListingPurchased>(2);
    for (int i = 0; i < 2; ++i) {
        LM1__TitleListingPurchased* t = Title(soap_new_LM1__TitleListingPurchased(&ctx), i);
        t->PassID = 70 + i;
        t->PurchaseType = LM1__PurchaseType__rent;
        t->Status = LM1__WatchStatusFilter__RentAgain;
        t->RentalPeriod = Text("24");
        t->PlayStatus = LM1__PlayStatus__paused;
        t->StartTimeSeconds = 600;
        w->Titles->TitleListingPurchased[i] = t;
    }
    w->CurrentPageNumber = 1;
    w->TotalItems = 2;
    LM_WS_MyVideosResponse rec;
    LM_WS_InitResult(&rec, LM_WS_ResultMyVideos);
    LMUtilities::LM1__GetMyVideosResponse2LM_WS_MyVideosResponse(w, &rec);
    Release();
    EXPECT_STREQ("fine", rec.ResponseMessage);
    EXPECT_EQ(1, rec.CurrentPageNumber);
    EXPECT_EQ(2, rec.TotalItems);
    EXPECT_EQ(LM_WS_ResultTitleListingPurchasedArray, *rec.Titles.Type);
    ASSERT_EQ(2, rec.Titles.Count);
    const LM_WS_TitleListingPurchased& t = rec.Titles.Array[1];
    EXPECT_EQ(1001, t.TitleListing.TitleID);
    EXPECT_EQ(71, t.PassID);
    EXPECT_EQ(LM1__WatchStatusFilter__RentAgain, t.Status);
    EXPECT_STREQ("24", t.RentalPeriod);
    EXPECT_EQ(LM1__PlayStatus__paused, t.PlayStatus);
    EXPECT_EQ(600, t.StartTimeSeconds);
    LM_WS_FreeResult(&rec);
}

TEST_F(Conversion, EpisodesAndAllEpisodePagesKeepTheirNesting) {
    LM1__TvEpisodeList* list = soap_new_LM1__TvEpisodeList(&ctx);
    list->Episodes = soap_new_LM1__ArrayOfTvEpisode(&ctx);
    list->Episodes->__sizeTvEpisode = 2;
    list->Episodes->TvEpisode = Slots<LM1__TvEpisode>(2);
    for (int i = 0; i < 2; ++i) {
        list->Episodes->TvEpisode[i] = soap_new_LM1__TvEpisode(&ctx);
        list->Episodes->TvEpisode[i]->EpisodeID = 40 + i;
        list->Episodes->TvEpisode[i]->EpisodeName = Text("Pilot " + std::to_string(i));
    }
    LM_WS_TvEpisodeList episodes;
    LM_WS_InitResult(&episodes, LM_WS_ResultTvEpisodeList);
    LMUtilities::LM1__TvEpisodeList2LM_WS_TvEpisodeList(list, &episodes);

    LM1__ArrayOfTitleListingResponse* pages = soap_new_LM1__ArrayOfTitleListingResponse(&ctx);
    pages->__sizeTitleListingResponse = 2;
    pages->TitleListingResponse = Slots<LM1__TitleListingResponse>(2);
    for (int i = 0; i < 2; ++i) {
        pages->TitleListingResponse[i] = Title(soap_new_LM1__TitleListingResponse(&ctx), i);
        pages->TitleListingResponse[i]->RunTime = Text("42 min");
    }
    LM_WS_TitleListingResponses all;
    LM_WS_InitResult(&all, LM_WS_ResultTitleListingResponses);
    LMUtilities::LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponses(pages, &all);
    Release();

    EXPECT_STREQ("", episodes.ResponseMessage);
    EXPECT_EQ(LM_WS_ResultTvEpisodeArray, *episodes.Episodes.Type);
    ASSERT_EQ(2, episodes.Episodes.Count);
    EXPECT_EQ(LM_WS_ResultTvEpisode, *episodes.Episodes.Array[1].Type);
    EXPECT_EQ(41, episodes.Episodes.Array[1].EpisodeID);
    EXPECT_STREQ("Pilot 1", episodes.Episodes.Array[1].EpisodeName);

    EXPECT_EQ(0, all.ResponseCode);
    EXPECT_STREQ("", all.ResponseMessage);
    EXPECT_EQ(LM_WS_ResultTitleListingResponseArray, *all.TitleListingResponses.Type);
    ASSERT_EQ(2, all.TitleListingResponses.Count);
    const LM_WS_TitleListingResponse& page = all.TitleListingResponses.Array[1];
    EXPECT_EQ(LM_WS_ResultTitleListingResponse, *page.Type);
    EXPECT_STREQ("42 min", page.RunTime);
    EXPECT_EQ(1001, page.TitleListing.TitleID);

    LM_WS_FreeResult(&episodes);
    LM_WS_FreeResult(&all);
}

TEST_F(Conversion, PagesOfManyGenresAreFullTitlesRecords) {
    LM1__ArrayOfGetTitlesResponse* w = soap_new_LM1__ArrayOfGetTitlesResponse(&ctx);
    w->__sizeGetTitlesResponse = 2;
    w->GetTitlesResponse = Slots<LM1__GetTitlesResponse>(2);
    w->GetTitlesResponse[0] = TitlesPage(2);
    w->GetTitlesResponse[1] = TitlesPage(1);
    w->GetTitlesResponse[1]->GenreID = 13;
    LM_WS_TitlesResponseArray rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitlesArray);
    LMUtilities::LM1__ArrayOfGetTitlesResponse2LM_WS_TitlesResponseArray(w, &rec);
    ASSERT_EQ(2, rec.Count);
    EXPECT_EQ(LM_WS_ResultTitles, *rec.Array[1].Type);
    EXPECT_EQ(13, rec.Array[1].GenreID);
    EXPECT_EQ(2, rec.Array[0].Titles.Count);
    EXPECT_EQ(LM_WS_ResultTitleListingArray, *rec.Array[0].Titles.Type);
    LM_WS_FreeResult(&rec);
}

TEST_F(Conversion, SmallAnswers) {
    LM1__GenreRequest* nav = soap_new_LM1__GenreRequest(&ctx);
    nav->Genres = soap_new_LM1__ArrayOfGenre(&ctx);
    nav->Genres->__sizeGenre = 1;
    nav->Genres->Genre = Slots<LM1__Genre>(1);
    nav->Genres->Genre[0] = soap_new_LM1__Genre(&ctx);
    nav->Genres->Genre[0]->ID = 5;
    nav->Genres->Genre[0]->Name = Text("Drama");
    nav->Genres->Genre[0]->Visible = true;
    nav->Genres->Genre[0]->ParentId = 1;
    LM_WS_Navigation navRec;
    LM_WS_InitResult(&navRec, LM_WS_ResultNavigation);
    LMUtilities::LM1__GenreRequest2LM_WS_Navigation(nav, &navRec);
    ASSERT_EQ(1, navRec.Genres.Count);
    EXPECT_STREQ("Drama", navRec.Genres.Array[0].Name);
    EXPECT_EQ(1, navRec.Genres.Array[0].Visible);
    EXPECT_EQ(1, navRec.Genres.Array[0].ParentId);
    EXPECT_EQ(LM_WS_ResultGenreArray, *navRec.Genres.Type);

    LM1__TranslatedRecboxExternalIdResponse* rb =
        soap_new_LM1__TranslatedRecboxExternalIdResponse(&ctx);
    rb->ResponseCode = 2;
    rb->RecboxExternalId = Text("EXT-9");
    rb->TitleId = 321;
    LM_WS_TranslateRecboxExternalIDResponse rbRec;
    LM_WS_InitResult(&rbRec, LM_WS_ResultTranslateRecboxExternalID);
    LMUtilities::LM1__TranslateRecboxExternalIDResponse2LM_WS_TranslateRecboxExternalIDResponse(
        rb, &rbRec);
    EXPECT_EQ(2, rbRec.ResponseCode);
    EXPECT_STREQ("EXT-9", rbRec.RecboxExternalId);
    EXPECT_EQ(321, rbRec.TitleId);

    LM_WS_LengthAndText text;
    LM_WS_InitResult(&text, LM_WS_ResultLengthAndText);
    LMUtilities::String2LM_WS_LengthAndText("2011-03-14T13:05:09", &text);
    EXPECT_EQ(19u, text.Length);
    EXPECT_STREQ("2011-03-14T13:05:09", text.Text);

    LM_WS_FreeResult(&navRec);
    LM_WS_FreeResult(&rbRec);
    LM_WS_FreeResult(&text);
}

TEST_F(Conversion, AccountAnswersWithNestedParts) {
    // Billing and balance in one answer: the record's status is the first failing part's.
    LM1__BillingInfoAndPPCBalanceResponse* both =
        soap_new_LM1__BillingInfoAndPPCBalanceResponse(&ctx);
    both->BillingInfo = soap_new_LM1__BillingInfoResponse(&ctx);
    both->BillingInfo->CCLastFour = Text("4242");
    both->PPCardBalance = soap_new_LM1__PPCardBalanceResponse(&ctx);
    both->PPCardBalance->ResponseCode = 3;
    both->PPCardBalance->ResponseMessage = Text("No prepaid card");
    LM_WS_BillingInfoAndPPCBalanceResponse bothRec;
    LM_WS_InitResult(&bothRec, LM_WS_ResultBillingInfoAndPPCBalance);
    LMUtilities::LM1__BillingInfoAndPPCBalanceResponse2LM_WS_BillingInfoAndPPCBalanceResponse(
        both, &bothRec);
    EXPECT_EQ(3, bothRec.ResponseCode);
    EXPECT_STREQ("No prepaid card", bothRec.ResponseMessage);
    EXPECT_STREQ("4242", bothRec.BillingInfo.CCLastFour);
    EXPECT_STREQ("", bothRec.BillingInfo.CCType);
    EXPECT_EQ(LM_WS_ResultPPCardBalance, *bothRec.PPCardBalance.Type);

    // A part the service left out converts as an empty part.
    both->BillingInfo = nullptr;
    LM_WS_BillingInfoAndPPCBalanceResponse partRec;
    LM_WS_InitResult(&partRec, LM_WS_ResultBillingInfoAndPPCBalance);
    LMUtilities::LM1__BillingInfoAndPPCBalanceResponse2LM_WS_BillingInfoAndPPCBalanceResponse(
        both, &partRec);
    EXPECT_STREQ("", partRec.BillingInfo.CCLastFour);

    LM1__GetConfigResponse* config = soap_new_LM1__GetConfigResponse(&ctx);
    config->ConfigurationSet = soap_new_LM1__ArrayOfConfigurationItemOfString(&ctx);
    config->ConfigurationSet->__sizeConfiguration = 2;
    config->ConfigurationSet->Configuration = Slots<LM1__ConfigurationItemOfString>(2);
    config->ConfigurationSet->Configuration[0] = soap_new_LM1__ConfigurationItemOfString(&ctx);
    config->ConfigurationSet->Configuration[0]->Key = Text("BandwithCheckURL");
    config->ConfigurationSet->Configuration[0]->Value = Text("http://h/f.bin");
    config->ConfigurationSet->Configuration[1] = nullptr;  // a nil item
    LM_WS_ConfigResponse configRec;
    LM_WS_InitResult(&configRec, LM_WS_ResultConfig);
    LMUtilities::LM1__GetConfigResponse2LM_WS_ConfigResponse(config, &configRec);
    ASSERT_EQ(2, configRec.Count);
    EXPECT_STREQ("http://h/f.bin", configRec.Array[0].Value);
    EXPECT_STREQ("", configRec.Array[1].Key) << "a nil item keeps its place";

    LM1__ArrayOfTitleListingPurchasedForPass* passes =
        soap_new_LM1__ArrayOfTitleListingPurchasedForPass(&ctx);
    passes->__sizeTitleListingPurchasedForPass = 1;
    passes->TitleListingPurchasedForPass = Slots<LM1__TitleListingPurchasedForPass>(1);
    passes->TitleListingPurchasedForPass[0] = soap_new_LM1__TitleListingPurchasedForPass(&ctx);
    passes->TitleListingPurchasedForPass[0]->TitleName = Text("Heist");
    passes->TitleListingPurchasedForPass[0]->PassID = 77;
    passes->TitleListingPurchasedForPass[0]->ResponseCode = 4;
    LM_WS_TitlesPurchasedForPassesResponse passesRec;
    LM_WS_InitResult(&passesRec, LM_WS_ResultTitlesPurchasedForPasses);
    LMUtilities::LM1__ArrayOfTitleListingPurchasedForPass2LM_WS_TitlesPurchasedForPassesResponse(
        passes, &passesRec);
    ASSERT_EQ(1, passesRec.Count);
    EXPECT_STREQ("Heist", passesRec.Array[0].Purchased.TitleListing.TitleName);
    EXPECT_EQ(77, passesRec.Array[0].Purchased.PassID);
    EXPECT_EQ(4, passesRec.Array[0].ResponseCode);
    EXPECT_EQ(0, passesRec.ResponseCode);

    LM_WS_FreeResult(&bothRec);
    LM_WS_FreeResult(&partRec);
    LM_WS_FreeResult(&configRec);
    LM_WS_FreeResult(&passesRec);
}

TEST(TextIsTrue, OnlyTrueInAnyCase) {
    for (const char* yes : {"true", "TRUE", "True", "tRuE"}) {
        EXPECT_EQ(1, LMUtilities::TextIsTrue(yes)) << yes;
    }
    for (const char* no : {"1", "yes", "false", "", " true", "true ", "truee"}) {
        EXPECT_EQ(0, LMUtilities::TextIsTrue(no)) << no;
    }
    EXPECT_EQ(0, LMUtilities::TextIsTrue(nullptr));
}

// Large and aligned enough for any record.
union AnyRecord {
    LM_WS_TitleListingResponse page;
    LM_WS_TitlesResponse titles;
    LM_WS_MyVideosResponse videos;
    unsigned char bytes[512];
};

const LM_WS_ResultType kAllTypes[] = {
    LM_WS_ResultLengthAndText,
    LM_WS_ResultStandardResponse,
    LM_WS_ResultGenreArray,
    LM_WS_ResultNavigation,
    LM_WS_ResultGenreLabel,
    LM_WS_ResultTitleListing,
    LM_WS_ResultTitleListingResponse,
    LM_WS_ResultTitleListingArray,
    LM_WS_ResultTitleListingResponseArray,
    LM_WS_ResultTitleListingResponses,
    LM_WS_ResultTitles,
    LM_WS_ResultTitlesArray,
    LM_WS_ResultTvEpisode,
    LM_WS_ResultTvEpisodeArray,
    LM_WS_ResultTvEpisodeList,
    LM_WS_ResultTitleListingPurchasedArray,
    LM_WS_ResultMyVideos,
    LM_WS_ResultRecommendedTitles,
    LM_WS_ResultTranslateRecboxExternalID,
    LM_WS_ResultTranslateSkuID,
    LM_WS_ResultAuthorizeDevice,
    LM_WS_ResultAdultVerificationPin,
    LM_WS_ResultStreamingAssetLocation,
    LM_WS_ResultBillingInfoAndPPCBalance,
    LM_WS_ResultPurchase,
    LM_WS_ResultWishlistItems,
    LM_WS_ResultRentalExpiration,
    LM_WS_ResultGiftCertificate,
    LM_WS_ResultEmailAddress,
    LM_WS_ResultBillingInfo,
    LM_WS_ResultPPCardBalance,
    LM_WS_ResultSettingsPageInfo,
    LM_WS_ResultCalcOrderTax,
    LM_WS_ResultTHXMediaDirector,
    LM_WS_ResultTitlesPurchasedForPasses,
    LM_WS_ResultConfig,
};

TEST(Release, InitialisedButUnfilledRecordsOfEveryKindRelease) {
    for (LM_WS_ResultType type : kAllTypes) {
        AnyRecord rec;
        std::memset(&rec, 0xA5, sizeof rec);  // garbage, as a caller's stack record would hold
        LM_WS_InitResult(&rec, type);
        ASSERT_NE(nullptr, rec.titles.Type) << type;
        EXPECT_EQ(type, *rec.titles.Type);
        LM_WS_FreeResult(&rec);
        EXPECT_EQ(nullptr, rec.titles.Type) << type;
    }
}

// Runs `test` with an As<R> for the record R that `kind` names; fails when no record has it.
template <class Test>
void ForRecordOfKind(LM_WS_ResultType kind, Test test) {
    EXPECT_TRUE(LMRecordFields::WithKind(kind, test)) << "no record of kind " << kind;
}

template <class R>
bool AllZero(const R& record) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&record);
    for (size_t i = 0; i < sizeof record; ++i) {
        if (bytes[i] != 0) {
            return false;
        }
    }
    return true;
}

TEST(Release, EveryMemberOfAFullyPopulatedRecordIsReleased) {
    // Under the leak checker a member the release misses fails this test.
    for (LM_WS_ResultType kind : kAllTypes) {
        ForRecordOfKind(kind, [kind](auto as) {
            typename decltype(as)::Record rec;
            std::memset(&rec, 0xA5, sizeof rec);
            LM_WS_InitResult(&rec, kind);
            FillRecord(rec);
            LM_WS_FreeResult(&rec);
            EXPECT_TRUE(AllZero(rec)) << kind;
        });
    }
}

TEST(Release, NegativeCountsAndNullArraysAreEmptyLists) {
    // Garbage elements behind a negative count must not be looked at, only their storage freed.
    LM_WS_TitlesResponseArray pages;
    LM_WS_InitResult(&pages, LM_WS_ResultTitlesArray);
    pages.Count = -2;
    pages.Array = static_cast<LM_WS_TitlesResponse*>(std::malloc(2 * sizeof(LM_WS_TitlesResponse)));
    std::memset(pages.Array, 0xA5, 2 * sizeof(LM_WS_TitlesResponse));
    LM_WS_FreeResult(&pages);

    LM_WS_Navigation nav;
    LM_WS_InitResult(&nav, LM_WS_ResultNavigation);
    nav.Genres.Count = 3;  // and no array
    LM_WS_FreeResult(&nav);

    LM_WS_TitleListing title;
    LM_WS_InitResult(&title, LM_WS_ResultTitleListing);
    title.AvailableProducts.Count = 1;
    title.AvailableProducts.Array =
        static_cast<LM_WS_ProductListing*>(std::calloc(1, sizeof(LM_WS_ProductListing)));
    LM_WS_ProductListing& product = title.AvailableProducts.Array[0];
    product.AvailableAssets.Count = 4;  // and no array
    product.AvailableAudioProfiles.Count = -1;
    product.AvailableAudioProfiles.Array =
        static_cast<LM_WS_AudioFile*>(std::malloc(sizeof(LM_WS_AudioFile)));
    std::memset(product.AvailableAudioProfiles.Array, 0xA5, sizeof(LM_WS_AudioFile));
    title.BonusAssets.Count = -7;
    LM_WS_FreeResult(&title);
    EXPECT_EQ(nullptr, title.Type);
}

TEST(Init, TaggedPartsEmbeddedInARecordGetTheirTags) {
    struct Part {
        LM_WS_ResultType record;
        size_t offset;
        LM_WS_ResultType part;
    };
    const Part parts[] = {
        {LM_WS_ResultNavigation, offsetof(LM_WS_Navigation, Genres), LM_WS_ResultGenreArray},
        {LM_WS_ResultTitleListingResponse, offsetof(LM_WS_TitleListingResponse, TitleListing),
         LM_WS_ResultTitleListing},
        {LM_WS_ResultTitleListingResponses,
         offsetof(LM_WS_TitleListingResponses, TitleListingResponses),
         LM_WS_ResultTitleListingResponseArray},
        {LM_WS_ResultTitles, offsetof(LM_WS_TitlesResponse, Titles), LM_WS_ResultTitleListingArray},
        {LM_WS_ResultRecommendedTitles, offsetof(LM_WS_RecommendedTitlesResponse, Titles),
         LM_WS_ResultTitleListingArray},
        {LM_WS_ResultTvEpisodeList, offsetof(LM_WS_TvEpisodeList, Episodes),
         LM_WS_ResultTvEpisodeArray},
        {LM_WS_ResultMyVideos, offsetof(LM_WS_MyVideosResponse, Titles),
         LM_WS_ResultTitleListingPurchasedArray},
        {LM_WS_ResultWishlistItems, offsetof(LM_WS_WishlistItemsResponse, Titles),
         LM_WS_ResultTitleListingPurchasedArray},
        {LM_WS_ResultBillingInfoAndPPCBalance,
         offsetof(LM_WS_BillingInfoAndPPCBalanceResponse, BillingInfo), LM_WS_ResultBillingInfo},
        {LM_WS_ResultBillingInfoAndPPCBalance,
         offsetof(LM_WS_BillingInfoAndPPCBalanceResponse, PPCardBalance),
         LM_WS_ResultPPCardBalance},
    };
    for (const Part& p : parts) {
        AnyRecord rec;
        std::memset(&rec, 0xA5, sizeof rec);
        LM_WS_InitResult(&rec, p.record);
        int32_t* tag;
        std::memcpy(&tag, rec.bytes + p.offset, sizeof tag);
        ASSERT_NE(nullptr, tag) << p.record << " at " << p.offset;
        EXPECT_EQ(p.part, *tag) << p.record << " at " << p.offset;
        LM_WS_FreeResult(&rec);
    }
}

// ---- Field lists ----

// Converts to any scalar type and to nothing else, so that R{AnyScalar()...} compiles with up to
// as many values as R has scalar members, those of nested structs included (brace elision).
struct AnyScalar {
    template <class T, class = std::enable_if_t<std::is_scalar<T>::value>>
    operator T() const {
        return T();
    }
};

template <class R, class Values, class = void>
struct BracesWith : std::false_type {};
template <class R, size_t... I>
struct BracesWith<R, std::index_sequence<I...>, std::void_t<decltype(R{(void(I), AnyScalar())...})>>
    : std::true_type {};

template <class R, size_t N = 0>
constexpr size_t ScalarMembers() {
    if constexpr (BracesWith<R, std::make_index_sequence<N + 1>>::value) {
        return ScalarMembers<R, N + 1>();
    } else {
        return N;
    }
}

template <class R>
void ExpectEveryMemberNamedOnce(const std::string& what);

// The address of every scalar member a field list names, those of embedded parts included; the
// element records of its lists are checked on their own.
struct MemberAddresses : LMRecordFields::IntoParts<MemberAddresses> {
    std::vector<const void*> at;

    template <class P>
    void Tag(P& type, LM_WS_ResultType) {
        at.push_back(&type);
    }
    template <class N>
    void Number(const char*, N& value) {
        at.push_back(&value);
    }
    void Flag(const char*, uint8_t& value) { at.push_back(&value); }
    void Text(const char*, char*& text) { at.push_back(&text); }
    void Bytes(const char*, char*& text, uint32_t) { at.push_back(&text); }
    template <class N>
    void Numbers(const char*, int32_t& count, N*& array) {
        at.push_back(&count);
        at.push_back(&array);
    }
    template <class E>
    void Records(const char* name, int32_t& count, E*& array) {
        at.push_back(&count);
        at.push_back(&array);
        ExpectEveryMemberNamedOnce<E>(name);
    }
};

template <class R>
void ExpectEveryMemberNamedOnce(const std::string& what) {
    R record{};
    MemberAddresses members;
    LMRecordFields::Visit(record, members);
    EXPECT_EQ(ScalarMembers<R>(), members.at.size()) << what << ": a member left out";
    EXPECT_EQ(members.at.size(), std::set<const void*>(members.at.begin(), members.at.end()).size())
        << what << ": a member named twice";
}

TEST(FieldLists, NameEveryMemberOfEveryRecordOnce) {
    for (LM_WS_ResultType kind : kAllTypes) {
        ForRecordOfKind(kind, [kind](auto as) {
            ExpectEveryMemberNamedOnce<typename decltype(as)::Record>("kind " +
                                                                      std::to_string(kind));
        });
    }
    ExpectEveryMemberNamedOnce<LM_WS_FileType>("file type");
}

TEST_F(Conversion, SecondReleaseAndUntaggedRecordsAreHarmless) {
    LM_WS_TitlesResponse rec;
    LM_WS_InitResult(&rec, LM_WS_ResultTitles);
    LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse(TitlesPage(2), &rec);
    LM_WS_FreeResult(&rec);
    EXPECT_EQ(nullptr, rec.Type);
    EXPECT_EQ(nullptr, rec.Titles.Array);
    EXPECT_EQ(0, rec.Titles.Count);
    LM_WS_FreeResult(&rec);  // would be a double free under the sanitizer

    LM_WS_FreeResult(nullptr);
    LM_WS_StandardResponse untagged = {nullptr, 5, nullptr};
    LM_WS_FreeResult(&untagged);
    EXPECT_EQ(5, untagged.ResponseCode);  // left alone
}

using ConversionDeathTest = Wire;

TEST_F(ConversionDeathTest, NullWireObjectIsAProgrammingError) {
    LM_WS_TitlesResponse titles;
    LM_WS_InitResult(&titles, LM_WS_ResultTitles);
    EXPECT_DEATH(LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse(nullptr, &titles),
                 "t != 0");
    LM_WS_TitleListing listing = {};
    EXPECT_DEATH(LMUtilities::LM1__TitleListing2LM_WS_TitleListing(nullptr, &listing), "t != 0");
    LM_WS_StandardResponse standard = {};
    EXPECT_DEATH(LMUtilities::LM1__StandardResponse2LM_WS_StandardResponse(nullptr, &standard),
                 "t != 0");
    LM_WS_FreeResult(&titles);
}

TEST(ReleaseDeathTest, UnknownTagIsAProgrammingError) {
    int32_t handleTag = 1;  // the client handle's tag: not a result record
    LM_WS_StandardResponse rec = {&handleTag, 0, nullptr};
    EXPECT_DEATH(LM_WS_FreeResult(&rec), "size != 0");
}

}  // namespace
