// Conversion of the service's answers (the toolkit's wire objects) into client records.
//
// Everything a record receives is copied into malloc'ed memory, so the toolkit's memory of a call
// can be released right after conversion, and LM_WS_FreeResult can release the record later.
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "LMAssert.h"
#include "LMUtilities.h"
#include "LM_WS_Records.h"
#include "soapH.h"

namespace {

void* AllocZeroed(size_t count, size_t size) {
    void* memory = std::calloc(count, size);
    LM_ASSERT(memory != 0);
    return memory;
}

// Keeps a tag the record already has (from LM_WS_InitResult), otherwise allocates it.
void EnsureTag(int32_t*& tag, LM_WS_ResultType type) {
    if (tag == nullptr) {
        tag = static_cast<int32_t*>(AllocZeroed(1, sizeof(int32_t)));
    }
    *tag = type;
}

// The toolkit leaves a nil element of a list as a null pointer. The service's data must never
// trip an assertion, so such an element converts as a default (empty) one and the list keeps its
// positions.
template <class Wire>
const Wire* OrEmpty(const Wire* element, const Wire& empty) {
    return element != nullptr ? element : &empty;
}

// Converts the wire list `elements[0..size)` into a malloc'ed array of records; null and 0 for an
// empty list.
template <class Wire, class Record>
void ConvertList(int size, Wire* const* elements, void (*convert)(const Wire*, Record*),
                 int32_t& count, Record*& array) {
    count = 0;
    array = nullptr;
    if (size <= 0 || elements == nullptr) {
        return;
    }
    const Wire empty;
    array = static_cast<Record*>(AllocZeroed(static_cast<size_t>(size), sizeof(Record)));
    for (int i = 0; i < size; ++i) {
        convert(OrEmpty(elements[i], empty), &array[i]);
    }
    count = size;
}

void BonusAsset2Record(const LM1__BonusAsset* t, LM_WS_BonusAsset* r) {
    r->BonusAssetID = t->BonusAssetID;
    r->Profile = t->Profile;
    r->BonusType = t->BonusType;
}

void AudioFile2Record(const LM1__AudioFile* t, LM_WS_AudioFile* r) {
    r->AssetAudioID = t->AssetAudioID;
    r->FileLocation = LMUtilities::CopyText(t->FileLocation);
    r->ContainsVideo = t->ContainsVideo ? 1 : 0;
    r->AudioAssetProfile = t->AudioAssetProfile;
}

void ProductListing2Record(const LM1__ProductListing* t, LM_WS_ProductListing* r) {
    r->SkuID = t->SkuID;
    r->PurchaseType = t->PurchaseType;
    r->Price = LMUtilities::CopyText(t->Price);
    r->AvailableAssets.Count = 0;
    r->AvailableAssets.Array = nullptr;
    const LM1__ArrayOfFileProfile* assets = t->AvailableAssets;
    if (assets != nullptr && assets->__sizeFileProfile > 0 && assets->FileProfile != nullptr) {
        int n = assets->__sizeFileProfile;
        r->AvailableAssets.Array = static_cast<int32_t*>(AllocZeroed(n, sizeof(int32_t)));
        for (int i = 0; i < n; ++i) {
            r->AvailableAssets.Array[i] = assets->FileProfile[i];
        }
        r->AvailableAssets.Count = n;
    }
    r->ExpireDate = LMUtilities::CopyText(t->ExpireDate);
    r->AvailableAudioProfiles.Count = 0;
    r->AvailableAudioProfiles.Array = nullptr;
    if (t->AvailableAudioProfiles != nullptr) {
        ConvertList(t->AvailableAudioProfiles->__sizeAudioFile,
                    t->AvailableAudioProfiles->AudioFile, AudioFile2Record,
                    r->AvailableAudioProfiles.Count, r->AvailableAudioProfiles.Array);
    }
    r->RentalPeriod = t->RentalPeriod;
}

// The members every kind of title shares (a listing, a title's page, a purchased title), in the
// order the service sends them.
template <class Wire>
void TitlePart2Record(const Wire* t, LM_WS_TitleListing* r) {
    EnsureTag(r->Type, LM_WS_ResultTitleListing);
    r->TitleID = t->TitleID;
    r->TitleName = LMUtilities::CopyText(t->TitleName);
    r->BoxArtPrefix = LMUtilities::CopyText(t->BoxArtPrefix);
    r->TitlePosition = t->TitlePosition;
    r->EpisodeNumber = t->EpisodeNumber;
    r->BonusAssets.Count = 0;
    r->BonusAssets.Array = nullptr;
    if (t->BonusAssets != nullptr) {
        ConvertList(t->BonusAssets->__sizeBonusAsset, t->BonusAssets->BonusAsset, BonusAsset2Record,
                    r->BonusAssets.Count, r->BonusAssets.Array);
    }
    r->IsTvListing = t->IsTvListing ? 1 : 0;
    r->MPAARating = LMUtilities::CopyText(t->MPAARating);
    r->AvailableProducts.Count = 0;
    r->AvailableProducts.Array = nullptr;
    if (t->AvailableProducts != nullptr) {
        ConvertList(t->AvailableProducts->__sizeProductListing,
                    t->AvailableProducts->ProductListing, ProductListing2Record,
                    r->AvailableProducts.Count, r->AvailableProducts.Array);
    }
    r->IsTHXMediaDirectorEnabled = t->IsTHXMediaDirectorEnabled ? 1 : 0;
    r->IsTHXMediaDirectorEnabledForTrailer = t->IsTHXMediaDirectorEnabledForTrailer ? 1 : 0;
    r->CHVRSRating = LMUtilities::CopyText(t->CHVRSRating);
    r->LoyaltyPointsForBuy = LMUtilities::CopyText(t->LoyaltyPointsForBuy);
    r->LoyaltyPointsForRent = LMUtilities::CopyText(t->LoyaltyPointsForRent);
}

// The title list of a titles page or of recommendations; an absent list leaves the (tagged)
// array empty.
void TitleList2Record(const LM1__ArrayOfTitleListing* titles, LM_WS_TitleListingArray* r) {
    if (titles != nullptr) {
        LMUtilities::LM1__ArrayOfTitleListing2LM_WS_TitleListingArray(titles, r);
    } else {
        EnsureTag(r->Type, LM_WS_ResultTitleListingArray);
        r->Count = 0;
        r->Array = nullptr;
    }
}

}  // namespace

char* LMUtilities::CopyText(const char* text) {
    if (text == nullptr) {
        text = "";
    }
    size_t size = std::strlen(text) + 1;
    char* copy = static_cast<char*>(AllocZeroed(size, 1));
    std::memcpy(copy, text, size);
    return copy;
}

int LMUtilities::TextIsTrue(const char* text) {
    return text != nullptr && strcasecmp(text, "true") == 0 ? 1 : 0;
}

void LMUtilities::String2LM_WS_LengthAndText(const char* t, LM_WS_LengthAndText* r) {
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultLengthAndText);
    r->Text = CopyText(t);
    r->Length = static_cast<uint32_t>(std::strlen(r->Text));
}

void LMUtilities::LM1__StandardResponse2LM_WS_StandardResponse(const LM1__StandardResponse* t,
                                                               LM_WS_StandardResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultStandardResponse);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
}

void LMUtilities::LM1__Genre2LM_WS_Genre(const LM1__Genre* t, LM_WS_Genre* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    r->ID = t->ID;
    r->Name = CopyText(t->Name);
    r->Visible = t->Visible ? 1 : 0;
    r->ParentId = t->ParentId;
}

void LMUtilities::LM1__ArrayOfGenre2LM_WS_GenreArray(const LM1__ArrayOfGenre* t,
                                                     LM_WS_GenreArray* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultGenreArray);
    ConvertList(t->__sizeGenre, t->Genre, LM1__Genre2LM_WS_Genre, r->Count, r->Array);
}

void LMUtilities::LM1__GenreRequest2LM_WS_Navigation(const LM1__GenreRequest* t,
                                                     LM_WS_Navigation* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultNavigation);
    r->ResponseCode = 0;
    r->ResponseMessage = CopyText(nullptr);
    if (t->Genres != nullptr) {
        LM1__ArrayOfGenre2LM_WS_GenreArray(t->Genres, &r->Genres);
    } else {
        EnsureTag(r->Genres.Type, LM_WS_ResultGenreArray);
        r->Genres.Count = 0;
        r->Genres.Array = nullptr;
    }
}

void LMUtilities::LM1__GetGenreLabelResponse2LM_WS_GenreLabelResponse(
    const LM1__GetGenreLabelResponse* t, LM_WS_GenreLabelResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultGenreLabel);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    r->Label = CopyText(t->Label);
    r->LabelMessage = CopyText(t->LabelMessage);
}

void LMUtilities::LM1__TitleListing2LM_WS_TitleListing(const LM1__TitleListing* t,
                                                       LM_WS_TitleListing* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    TitlePart2Record(t, r);
}

void LMUtilities::LM1__ArrayOfTitleListing2LM_WS_TitleListingArray(
    const LM1__ArrayOfTitleListing* t, LM_WS_TitleListingArray* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitleListingArray);
    ConvertList(t->__sizeTitleListing, t->TitleListing, LM1__TitleListing2LM_WS_TitleListing,
                r->Count, r->Array);
}

void LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse(const LM1__GetTitlesResponse* t,
                                                              LM_WS_TitlesResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitles);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    r->GenreID = t->GenreID;
    r->CurrentPageNumber = t->CurrentPageNumber;
    r->ItemsPerPage = t->ItemsPerPage;
    r->TotalPages = t->TotalPages;
    r->TotalItems = t->TotalItems;
    TitleList2Record(t->Titles, &r->Titles);
}

void LMUtilities::LM1__ArrayOfGetTitlesResponse2LM_WS_TitlesResponseArray(
    const LM1__ArrayOfGetTitlesResponse* t, LM_WS_TitlesResponseArray* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitlesArray);
    r->ResponseCode = 0;
    r->ResponseMessage = CopyText(nullptr);
    ConvertList(t->__sizeGetTitlesResponse, t->GetTitlesResponse,
                LM1__GetTitlesResponse2LM_WS_TitlesResponse, r->Count, r->Array);
}

void LMUtilities::LM1__RecommendedTitlesResponse2LM_WS_RecommendedTitlesResponse(
    const LM1__RecommendedTitlesResponse* t, LM_WS_RecommendedTitlesResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultRecommendedTitles);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    TitleList2Record(t->Titles, &r->Titles);
}

void LMUtilities::LM1__TitleListingResponse2LM_WS_TitleListingResponse(
    const LM1__TitleListingResponse* t, LM_WS_TitleListingResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitleListingResponse);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    r->Synopsys = CopyText(t->Synopsys);
    r->UserRating = t->UserRating;
    r->Directors = CopyText(t->Directors);
    r->Actors = CopyText(t->Actors);
    r->Writers = CopyText(t->Writers);
    r->Producers = CopyText(t->Producers);
    r->Copyright = CopyText(t->Copyright);
    r->RunTime = CopyText(t->RunTime);
    r->IsAvailInUserWishList = t->IsAvailInUserWishList ? 1 : 0;
    r->RatingReason = CopyText(t->RatingReason);
    TitlePart2Record(t, &r->TitleListing);
}

void LMUtilities::LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponseArray(
    const LM1__ArrayOfTitleListingResponse* t, LM_WS_TitleListingResponseArray* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitleListingResponseArray);
    ConvertList(t->__sizeTitleListingResponse, t->TitleListingResponse,
                LM1__TitleListingResponse2LM_WS_TitleListingResponse, r->Count, r->Array);
}

void LMUtilities::LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponses(
    const LM1__ArrayOfTitleListingResponse* t, LM_WS_TitleListingResponses* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitleListingResponses);
    r->ResponseCode = 0;
    r->ResponseMessage = CopyText(nullptr);
    LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponseArray(t, &r->TitleListingResponses);
}

void LMUtilities::LM1__TvEpisode2LM_WS_TvEpisode(const LM1__TvEpisode* t, LM_WS_TvEpisode* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTvEpisode);
    r->EpisodeID = t->EpisodeID;
    r->EpisodeName = CopyText(t->EpisodeName);
    r->EpisodeNumber = t->EpisodeNumber;
}

void LMUtilities::LM1__ArrayOfTvEpisode2LM_WS_TvEpisodeArray(const LM1__ArrayOfTvEpisode* t,
                                                             LM_WS_TvEpisodeArray* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTvEpisodeArray);
    ConvertList(t->__sizeTvEpisode, t->TvEpisode, LM1__TvEpisode2LM_WS_TvEpisode, r->Count,
                r->Array);
}

void LMUtilities::LM1__TvEpisodeList2LM_WS_TvEpisodeList(const LM1__TvEpisodeList* t,
                                                         LM_WS_TvEpisodeList* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTvEpisodeList);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    if (t->Episodes != nullptr) {
        LM1__ArrayOfTvEpisode2LM_WS_TvEpisodeArray(t->Episodes, &r->Episodes);
    } else {
        EnsureTag(r->Episodes.Type, LM_WS_ResultTvEpisodeArray);
        r->Episodes.Count = 0;
        r->Episodes.Array = nullptr;
    }
}

void LMUtilities::LM1__TranslateRecboxExternalIDResponse2LM_WS_TranslateRecboxExternalIDResponse(
    const LM1__TranslatedRecboxExternalIdResponse* t, LM_WS_TranslateRecboxExternalIDResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTranslateRecboxExternalID);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    r->RecboxExternalId = CopyText(t->RecboxExternalId);
    r->TitleId = t->TitleId;
}

void LMUtilities::LM1__TranslateSkuIdResponse2LM_WS_TranslateSkuIDResponse(
    const LM1__TranslateSkuIdResponse* t, LM_WS_TranslateSkuIDResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTranslateSkuID);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    r->TitleId = t->TitleId;
}

void LMUtilities::LM1__TitleListingPurchased2LM_WS_TitleListingPurchased(
    const LM1__TitleListingPurchased* t, LM_WS_TitleListingPurchased* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    TitlePart2Record(t, &r->TitleListing);
    r->EpisodeID = t->EpisodeID;
    r->TvListingTitleID = t->TvListingTitleID;
    r->PurchaseType = t->PurchaseType;
    r->Status = t->Status;
    r->RentalPeriod = CopyText(t->RentalPeriod);
    r->PassID = t->PassID;
    r->PlayStatus = t->PlayStatus;
    r->StartTimeSeconds = t->StartTimeSeconds;
}

void LMUtilities::LM1__ArrayOfTitleListingPurchased2LM_WS_TitleListingPurchasedArray(
    const LM1__ArrayOfTitleListingPurchased* t, LM_WS_TitleListingPurchasedArray* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitleListingPurchasedArray);
    ConvertList(t->__sizeTitleListingPurchased, t->TitleListingPurchased,
                LM1__TitleListingPurchased2LM_WS_TitleListingPurchased, r->Count, r->Array);
}

void LMUtilities::LM1__GetMyVideosResponse2LM_WS_MyVideosResponse(const LM1__GetMyVideosResponse* t,
                                                                  LM_WS_MyVideosResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultMyVideos);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = CopyText(t->ResponseMessage);
    if (t->Titles != nullptr) {
        LM1__ArrayOfTitleListingPurchased2LM_WS_TitleListingPurchasedArray(t->Titles, &r->Titles);
    } else {
        EnsureTag(r->Titles.Type, LM_WS_ResultTitleListingPurchasedArray);
        r->Titles.Count = 0;
        r->Titles.Array = nullptr;
    }
    r->CurrentPageNumber = t->CurrentPageNumber;
    r->ItemsPerPage = t->ItemsPerPage;
    r->TotalPages = t->TotalPages;
    r->TotalItems = t->TotalItems;
}

// ---- Account, device, purchase, streaming ----

namespace {

// The response code and message every answer of these operations starts with.
template <class Wire, class Record>
void Standard(const Wire* t, Record* r, LM_WS_ResultType type) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, type);
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = LMUtilities::CopyText(t->ResponseMessage);
}

void ConfigurationItem2Record(const LM1__ConfigurationItemOfString* t, LM_WS_ConfigurationItem* r) {
    r->Key = LMUtilities::CopyText(t->Key);
    r->Value = LMUtilities::CopyText(t->Value);
}

void PurchasedForPass2Record(const LM1__TitleListingPurchasedForPass* t,
                             LM_WS_TitleListingPurchasedForPass* r) {
    LM_WS_TitleListingPurchased& p = r->Purchased;
    TitlePart2Record(t, &p.TitleListing);
    p.EpisodeID = t->EpisodeID;
    p.TvListingTitleID = t->TvListingTitleID;
    p.PurchaseType = t->PurchaseType;
    p.Status = t->Status;
    p.RentalPeriod = LMUtilities::CopyText(t->RentalPeriod);
    p.PassID = t->PassID;
    p.PlayStatus = t->PlayStatus;
    p.StartTimeSeconds = t->StartTimeSeconds;
    r->ResponseCode = t->ResponseCode;
    r->ResponseMessage = LMUtilities::CopyText(t->ResponseMessage);
}

}  // namespace

void LMUtilities::LM1__GetConfigResponse2LM_WS_ConfigResponse(const LM1__GetConfigResponse* t,
                                                              LM_WS_ConfigResponse* r) {
    Standard(t, r, LM_WS_ResultConfig);
    const LM1__ArrayOfConfigurationItemOfString* items = t->ConfigurationSet;
    ConvertList(items != nullptr ? items->__sizeConfiguration : 0,
                items != nullptr ? items->Configuration : nullptr, ConfigurationItem2Record,
                r->Count, r->Array);
}

void LMUtilities::LM1__AuthorizeDeviceResponse2LM_WS_AuthorizeDeviceResponse(
    const LM1__AuthorizeDeviceResponse* t, LM_WS_AuthorizeDeviceResponse* r) {
    Standard(t, r, LM_WS_ResultAuthorizeDevice);
    r->AuthToken = CopyText(t->AuthToken);
    r->EmailAddress = CopyText(t->EmailAddress);
    r->DeviceID = CopyText(t->DeviceID);
    r->DeviceName = CopyText(t->DeviceName);
}

void LMUtilities::LM1__PurchaseResponse2LM_WS_PurchaseResponse(const LM1__PurchaseResponse* t,
                                                               LM_WS_PurchaseResponse* r) {
    Standard(t, r, LM_WS_ResultPurchase);
    r->PassID = t->PassID;
    r->TransactionId = t->TransactionId;
    r->TransactionAuthNum = CopyText(t->TransactionAuthNum);
}

void LMUtilities::LM1__GetWishlistItemsResponse2LM_WS_WishlistItemsResponse(
    const LM1__GetWishlistItemsResponse* t, LM_WS_WishlistItemsResponse* r) {
    Standard(t, r, LM_WS_ResultWishlistItems);
    if (t->Titles != nullptr) {
        LM1__ArrayOfTitleListingPurchased2LM_WS_TitleListingPurchasedArray(t->Titles, &r->Titles);
    } else {
        EnsureTag(r->Titles.Type, LM_WS_ResultTitleListingPurchasedArray);
    }
    r->CurrentPageNumber = t->CurrentPageNumber;
    r->ItemsPerPage = t->ItemsPerPage;
    r->TotalPages = t->TotalPages;
    r->TotalItems = t->TotalItems;
    r->SortOrder = t->SortOrder;
}

void LMUtilities::LM1__WishListActionResponse2LM_WS_StandardResponse(
    const LM1__WishListActionResponse* t, LM_WS_StandardResponse* r) {
    Standard(t, r, LM_WS_ResultStandardResponse);
}

void LMUtilities::LM1__CheckAdultVerificationEnabledResponse2LM_WS_StandardResponse(
    const LM1__CheckAdultVerificationEnabledResponse* t, LM_WS_StandardResponse* r) {
    Standard(t, r, LM_WS_ResultStandardResponse);
}

void LMUtilities::LM1__CheckRentalExpirationResponse2LM_WS_RentalExpirationResponse(
    const LM1__CheckRentalExpirationResponse* t, LM_WS_RentalExpirationResponse* r) {
    Standard(t, r, LM_WS_ResultRentalExpiration);
    r->ShouldDisplay = t->ShouldDisplay ? 1 : 0;
    r->HoursRemaining = t->HoursRemaining;
}

void LMUtilities::LM1__CheckAdultVerificationPinResponse2LM_WS_AdultVerificationPinResponse(
    const LM1__CheckAdultVerificationPinResponse* t, LM_WS_AdultVerificationPinResponse* r) {
    Standard(t, r, LM_WS_ResultAdultVerificationPin);
    r->IsPinVerified = t->IsPinVerified ? 1 : 0;
}

void LMUtilities::LM1__GiftCertificateResponse2LM_WS_GiftCertificateResponse(
    const LM1__GiftCertificateResponse* t, LM_WS_GiftCertificateResponse* r) {
    Standard(t, r, LM_WS_ResultGiftCertificate);
    r->Balance = t->Balance;
}

void LMUtilities::LM1__GetEmailAddressResponse2LM_WS_EmailAddressResponse(
    const LM1__GetEmailAddressResponse* t, LM_WS_EmailAddressResponse* r) {
    Standard(t, r, LM_WS_ResultEmailAddress);
    r->EmailAddress = CopyText(t->EmailAddress);
}

void LMUtilities::LM1__BillingInfoResponse2LM_WS_BillingInfoResponse(
    const LM1__BillingInfoResponse* t, LM_WS_BillingInfoResponse* r) {
    Standard(t, r, LM_WS_ResultBillingInfo);
    r->CCLastFour = CopyText(t->CCLastFour);
    r->CCTypeId = t->CCTypeId;
    r->CCType = CopyText(t->CCType);
}

void LMUtilities::LM1__PPCardBalanceResponse2LM_WS_PPCardBalanceResponse(
    const LM1__PPCardBalanceResponse* t, LM_WS_PPCardBalanceResponse* r) {
    Standard(t, r, LM_WS_ResultPPCardBalance);
    r->Balance = t->Balance;
}

void LMUtilities::LM1__BillingInfoAndPPCBalanceResponse2LM_WS_BillingInfoAndPPCBalanceResponse(
    const LM1__BillingInfoAndPPCBalanceResponse* t, LM_WS_BillingInfoAndPPCBalanceResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultBillingInfoAndPPCBalance);
    const LM1__BillingInfoResponse noBilling;
    const LM1__PPCardBalanceResponse noBalance;
    LM1__BillingInfoResponse2LM_WS_BillingInfoResponse(OrEmpty(t->BillingInfo, noBilling),
                                                       &r->BillingInfo);
    LM1__PPCardBalanceResponse2LM_WS_PPCardBalanceResponse(OrEmpty(t->PPCardBalance, noBalance),
                                                           &r->PPCardBalance);
    const bool billingFailed = r->BillingInfo.ResponseCode != 0;
    r->ResponseCode = billingFailed ? r->BillingInfo.ResponseCode : r->PPCardBalance.ResponseCode;
    r->ResponseMessage = CopyText(billingFailed || r->PPCardBalance.ResponseCode == 0
                                      ? r->BillingInfo.ResponseMessage
                                      : r->PPCardBalance.ResponseMessage);
}

void LMUtilities::LM1__SettingsPageInfo2LM_WS_SettingsPageInfo(const LM1__SettingsPageInfo* t,
                                                               LM_WS_SettingsPageInfo* r) {
    Standard(t, r, LM_WS_ResultSettingsPageInfo);
    r->Account = CopyText(t->Account);
    r->DeviceID = CopyText(t->DeviceID);
    r->DeviceName = CopyText(t->DeviceName);
}

void LMUtilities::LM1__CalcOrderTaxResponse2LM_WS_CalcOrderTaxResponse(
    const LM1__CalcOrderTaxResponse* t, LM_WS_CalcOrderTaxResponse* r) {
    Standard(t, r, LM_WS_ResultCalcOrderTax);
    r->SubTotal = CopyText(t->SubTotal);
    r->TotalPrice = CopyText(t->TotalPrice);
    r->Tax = CopyText(t->Tax);
}

void LMUtilities::LM1__GetStreamingAssetLocationResponse2LM_WS_StreamingAssetLocationResponse(
    const LM1__GetStreamingAssetLocationResponse* t, LM_WS_StreamingAssetLocationResponse* r) {
    Standard(t, r, LM_WS_ResultStreamingAssetLocation);
    r->StreamingAssetLocation = CopyText(t->StreamingAssetLocation);
    r->AssetID = t->AssetID;
    r->StreamID = CopyText(t->StreamID);
    r->DRMServerURL = CopyText(t->DRMServerURL);
    r->DRMACKServerURL = CopyText(t->DRMACKServerURL);
    r->Status = t->Status;
    r->StartTimeSeconds = t->StartTimeSeconds;
    r->HeartbeatURL = CopyText(t->HeartbeatURL);
    r->HeartbeatPollInSeconds = t->HeartbeatPollInSeconds;
}

void LMUtilities::LM1__THXMediaDirectorResponse2LM_WS_THXMediaDirectorResponse(
    const LM1__THXMediaDirectorResponse* t, LM_WS_THXMediaDirectorResponse* r) {
    Standard(t, r, LM_WS_ResultTHXMediaDirector);
    r->LongFormat = CopyText(t->LongFormat);
    r->ShortFormat = CopyText(t->ShortFormat);
}

void LMUtilities::LM1__ArrayOfTitleListingPurchasedForPass2LM_WS_TitlesPurchasedForPassesResponse(
    const LM1__ArrayOfTitleListingPurchasedForPass* t, LM_WS_TitlesPurchasedForPassesResponse* r) {
    LM_ASSERT(t != 0);
    LM_ASSERT(r != 0);
    EnsureTag(r->Type, LM_WS_ResultTitlesPurchasedForPasses);
    r->ResponseCode = 0;
    r->ResponseMessage = CopyText("");
    ConvertList(t->__sizeTitleListingPurchasedForPass, t->TitleListingPurchasedForPass,
                PurchasedForPass2Record, r->Count, r->Array);
}
