// Initialisation and release of the client records (LM_WS_Records.h).
//
// Records are plain C structs that callers may hold across threads and free long after the SOAP
// call that filled them; everything in them is malloc'ed and released here by walking the record
// according to its tag.
#include "LM_WS_Records.h"

#include <cstdlib>
#include <cstring>

#include "LMAssert.h"

namespace {

// Byte size of the struct a tag names; 0 for a tag this library does not know.
size_t RecordSize(int32_t type) {
    switch (type) {
        case LM_WS_ResultLengthAndText:
            return sizeof(LM_WS_LengthAndText);
        case LM_WS_ResultStandardResponse:
            return sizeof(LM_WS_StandardResponse);
        case LM_WS_ResultGenreArray:
            return sizeof(LM_WS_GenreArray);
        case LM_WS_ResultNavigation:
            return sizeof(LM_WS_Navigation);
        case LM_WS_ResultGenreLabel:
            return sizeof(LM_WS_GenreLabelResponse);
        case LM_WS_ResultTitleListing:
            return sizeof(LM_WS_TitleListing);
        case LM_WS_ResultTitleListingResponse:
            return sizeof(LM_WS_TitleListingResponse);
        case LM_WS_ResultTitleListingArray:
            return sizeof(LM_WS_TitleListingArray);
        case LM_WS_ResultTitleListingResponseArray:
            return sizeof(LM_WS_TitleListingResponseArray);
        case LM_WS_ResultTitleListingResponses:
            return sizeof(LM_WS_TitleListingResponses);
        case LM_WS_ResultTitles:
            return sizeof(LM_WS_TitlesResponse);
        case LM_WS_ResultTitlesArray:
            return sizeof(LM_WS_TitlesResponseArray);
        case LM_WS_ResultTvEpisode:
            return sizeof(LM_WS_TvEpisode);
        case LM_WS_ResultTvEpisodeArray:
            return sizeof(LM_WS_TvEpisodeArray);
        case LM_WS_ResultTvEpisodeList:
            return sizeof(LM_WS_TvEpisodeList);
        case LM_WS_ResultTitleListingPurchasedArray:
            return sizeof(LM_WS_TitleListingPurchasedArray);
        case LM_WS_ResultMyVideos:
            return sizeof(LM_WS_MyVideosResponse);
        case LM_WS_ResultRecommendedTitles:
            return sizeof(LM_WS_RecommendedTitlesResponse);
        case LM_WS_ResultTranslateRecboxExternalID:
            return sizeof(LM_WS_TranslateRecboxExternalIDResponse);
        case LM_WS_ResultTranslateSkuID:
            return sizeof(LM_WS_TranslateSkuIDResponse);
        case LM_WS_ResultAuthorizeDevice:
            return sizeof(LM_WS_AuthorizeDeviceResponse);
        case LM_WS_ResultAdultVerificationPin:
            return sizeof(LM_WS_AdultVerificationPinResponse);
        case LM_WS_ResultStreamingAssetLocation:
            return sizeof(LM_WS_StreamingAssetLocationResponse);
        case LM_WS_ResultBillingInfoAndPPCBalance:
            return sizeof(LM_WS_BillingInfoAndPPCBalanceResponse);
        case LM_WS_ResultPurchase:
            return sizeof(LM_WS_PurchaseResponse);
        case LM_WS_ResultWishlistItems:
            return sizeof(LM_WS_WishlistItemsResponse);
        case LM_WS_ResultRentalExpiration:
            return sizeof(LM_WS_RentalExpirationResponse);
        case LM_WS_ResultGiftCertificate:
            return sizeof(LM_WS_GiftCertificateResponse);
        case LM_WS_ResultEmailAddress:
            return sizeof(LM_WS_EmailAddressResponse);
        case LM_WS_ResultBillingInfo:
            return sizeof(LM_WS_BillingInfoResponse);
        case LM_WS_ResultPPCardBalance:
            return sizeof(LM_WS_PPCardBalanceResponse);
        case LM_WS_ResultSettingsPageInfo:
            return sizeof(LM_WS_SettingsPageInfo);
        case LM_WS_ResultCalcOrderTax:
            return sizeof(LM_WS_CalcOrderTaxResponse);
        case LM_WS_ResultTHXMediaDirector:
            return sizeof(LM_WS_THXMediaDirectorResponse);
        case LM_WS_ResultTitlesPurchasedForPasses:
            return sizeof(LM_WS_TitlesPurchasedForPassesResponse);
        case LM_WS_ResultConfig:
            return sizeof(LM_WS_ConfigResponse);
    }
    return 0;
}

int32_t* NewTag(int32_t type) {
    int32_t* tag = static_cast<int32_t*>(std::malloc(sizeof(int32_t)));
    LM_ASSERT(tag != 0);
    *tag = type;
    return tag;
}

// Every record starts with its tag pointer; reading it through this view is how the release
// routine learns what it holds.
struct TaggedHead {
    int32_t* Type;
};

// The elements of a tagged array are records themselves: release each, then the storage.
template <class Element>
void FreeElements(int32_t count, Element* array) {
    for (int32_t i = 0; array != nullptr && i < count; ++i) {
        LM_WS_FreeResult(&array[i]);
    }
    std::free(array);
}

void FreeProducts(LM_WS_ProductListingArray& products) {
    for (int32_t i = 0; products.Array != nullptr && i < products.Count; ++i) {
        LM_WS_ProductListing& p = products.Array[i];
        std::free(p.Price);
        std::free(p.AvailableAssets.Array);
        std::free(p.ExpireDate);
        for (int32_t j = 0;
             p.AvailableAudioProfiles.Array != nullptr && j < p.AvailableAudioProfiles.Count; ++j) {
            std::free(p.AvailableAudioProfiles.Array[j].FileLocation);
        }
        std::free(p.AvailableAudioProfiles.Array);
    }
    std::free(products.Array);
}

template <class... Texts>
void FreeTexts(Texts*... texts) {
    (std::free(texts), ...);
}

void FreePurchased(LM_WS_TitleListingPurchased& p) {
    LM_WS_FreeResult(&p.TitleListing);
    std::free(p.RentalPeriod);
}

void FreeTitleListing(LM_WS_TitleListing& t) {
    std::free(t.TitleName);
    std::free(t.BoxArtPrefix);
    std::free(t.BonusAssets.Array);
    std::free(t.MPAARating);
    FreeProducts(t.AvailableProducts);
    std::free(t.CHVRSRating);
    std::free(t.LoyaltyPointsForBuy);
    std::free(t.LoyaltyPointsForRent);
}

void FreeTitleListingResponse(LM_WS_TitleListingResponse& r) {
    std::free(r.ResponseMessage);
    std::free(r.Synopsys);
    std::free(r.Directors);
    std::free(r.Actors);
    std::free(r.Writers);
    std::free(r.Producers);
    std::free(r.Copyright);
    std::free(r.RunTime);
    std::free(r.RatingReason);
    LM_WS_FreeResult(&r.TitleListing);
}

// Releases what the record of kind `type` owns, apart from its own tag.
void FreeContents(int32_t type, void* record) {
    switch (type) {
        case LM_WS_ResultLengthAndText:
            std::free(static_cast<LM_WS_LengthAndText*>(record)->Text);
            break;
        case LM_WS_ResultStandardResponse:
            std::free(static_cast<LM_WS_StandardResponse*>(record)->ResponseMessage);
            break;
        case LM_WS_ResultGenreArray: {
            LM_WS_GenreArray* a = static_cast<LM_WS_GenreArray*>(record);
            for (int32_t i = 0; a->Array != nullptr && i < a->Count; ++i) {
                std::free(a->Array[i].Name);
            }
            std::free(a->Array);
            break;
        }
        case LM_WS_ResultNavigation: {
            LM_WS_Navigation* r = static_cast<LM_WS_Navigation*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->Genres);
            break;
        }
        case LM_WS_ResultGenreLabel: {
            LM_WS_GenreLabelResponse* r = static_cast<LM_WS_GenreLabelResponse*>(record);
            std::free(r->ResponseMessage);
            std::free(r->Label);
            std::free(r->LabelMessage);
            break;
        }
        case LM_WS_ResultTitleListing:
            FreeTitleListing(*static_cast<LM_WS_TitleListing*>(record));
            break;
        case LM_WS_ResultTitleListingResponse:
            FreeTitleListingResponse(*static_cast<LM_WS_TitleListingResponse*>(record));
            break;
        case LM_WS_ResultTitleListingArray: {
            LM_WS_TitleListingArray* a = static_cast<LM_WS_TitleListingArray*>(record);
            FreeElements(a->Count, a->Array);
            break;
        }
        case LM_WS_ResultTitleListingResponseArray: {
            LM_WS_TitleListingResponseArray* a =
                static_cast<LM_WS_TitleListingResponseArray*>(record);
            FreeElements(a->Count, a->Array);
            break;
        }
        case LM_WS_ResultTitleListingResponses: {
            LM_WS_TitleListingResponses* r = static_cast<LM_WS_TitleListingResponses*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->TitleListingResponses);
            break;
        }
        case LM_WS_ResultTitles: {
            LM_WS_TitlesResponse* r = static_cast<LM_WS_TitlesResponse*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->Titles);
            break;
        }
        case LM_WS_ResultTitlesArray: {
            LM_WS_TitlesResponseArray* r = static_cast<LM_WS_TitlesResponseArray*>(record);
            std::free(r->ResponseMessage);
            FreeElements(r->Count, r->Array);
            break;
        }
        case LM_WS_ResultTvEpisode:
            std::free(static_cast<LM_WS_TvEpisode*>(record)->EpisodeName);
            break;
        case LM_WS_ResultTvEpisodeArray: {
            LM_WS_TvEpisodeArray* a = static_cast<LM_WS_TvEpisodeArray*>(record);
            FreeElements(a->Count, a->Array);
            break;
        }
        case LM_WS_ResultTvEpisodeList: {
            LM_WS_TvEpisodeList* r = static_cast<LM_WS_TvEpisodeList*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->Episodes);
            break;
        }
        case LM_WS_ResultTitleListingPurchasedArray: {
            LM_WS_TitleListingPurchasedArray* a =
                static_cast<LM_WS_TitleListingPurchasedArray*>(record);
            for (int32_t i = 0; a->Array != nullptr && i < a->Count; ++i) {
                FreePurchased(a->Array[i]);
            }
            std::free(a->Array);
            break;
        }
        case LM_WS_ResultMyVideos: {
            LM_WS_MyVideosResponse* r = static_cast<LM_WS_MyVideosResponse*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->Titles);
            break;
        }
        case LM_WS_ResultRecommendedTitles: {
            LM_WS_RecommendedTitlesResponse* r =
                static_cast<LM_WS_RecommendedTitlesResponse*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->Titles);
            break;
        }
        case LM_WS_ResultTranslateRecboxExternalID: {
            LM_WS_TranslateRecboxExternalIDResponse* r =
                static_cast<LM_WS_TranslateRecboxExternalIDResponse*>(record);
            std::free(r->ResponseMessage);
            std::free(r->RecboxExternalId);
            break;
        }
        case LM_WS_ResultTranslateSkuID:
            std::free(static_cast<LM_WS_TranslateSkuIDResponse*>(record)->ResponseMessage);
            break;
        case LM_WS_ResultAuthorizeDevice: {
            auto* r = static_cast<LM_WS_AuthorizeDeviceResponse*>(record);
            FreeTexts(r->ResponseMessage, r->AuthToken, r->EmailAddress, r->DeviceID,
                      r->DeviceName);
            break;
        }
        case LM_WS_ResultAdultVerificationPin:
            std::free(static_cast<LM_WS_AdultVerificationPinResponse*>(record)->ResponseMessage);
            break;
        case LM_WS_ResultStreamingAssetLocation: {
            auto* r = static_cast<LM_WS_StreamingAssetLocationResponse*>(record);
            FreeTexts(r->ResponseMessage, r->StreamingAssetLocation, r->StreamID, r->DRMServerURL,
                      r->DRMACKServerURL, r->HeartbeatURL);
            break;
        }
        case LM_WS_ResultBillingInfoAndPPCBalance: {
            auto* r = static_cast<LM_WS_BillingInfoAndPPCBalanceResponse*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->BillingInfo);
            LM_WS_FreeResult(&r->PPCardBalance);
            break;
        }
        case LM_WS_ResultPurchase: {
            auto* r = static_cast<LM_WS_PurchaseResponse*>(record);
            FreeTexts(r->ResponseMessage, r->TransactionAuthNum);
            break;
        }
        case LM_WS_ResultWishlistItems: {
            auto* r = static_cast<LM_WS_WishlistItemsResponse*>(record);
            std::free(r->ResponseMessage);
            LM_WS_FreeResult(&r->Titles);
            break;
        }
        case LM_WS_ResultRentalExpiration:
            std::free(static_cast<LM_WS_RentalExpirationResponse*>(record)->ResponseMessage);
            break;
        case LM_WS_ResultGiftCertificate:
            std::free(static_cast<LM_WS_GiftCertificateResponse*>(record)->ResponseMessage);
            break;
        case LM_WS_ResultEmailAddress: {
            auto* r = static_cast<LM_WS_EmailAddressResponse*>(record);
            FreeTexts(r->ResponseMessage, r->EmailAddress);
            break;
        }
        case LM_WS_ResultBillingInfo: {
            auto* r = static_cast<LM_WS_BillingInfoResponse*>(record);
            FreeTexts(r->ResponseMessage, r->CCLastFour, r->CCType);
            break;
        }
        case LM_WS_ResultPPCardBalance:
            std::free(static_cast<LM_WS_PPCardBalanceResponse*>(record)->ResponseMessage);
            break;
        case LM_WS_ResultSettingsPageInfo: {
            auto* r = static_cast<LM_WS_SettingsPageInfo*>(record);
            FreeTexts(r->ResponseMessage, r->Account, r->DeviceID, r->DeviceName);
            break;
        }
        case LM_WS_ResultCalcOrderTax: {
            auto* r = static_cast<LM_WS_CalcOrderTaxResponse*>(record);
            FreeTexts(r->ResponseMessage, r->SubTotal, r->TotalPrice, r->Tax);
            break;
        }
        case LM_WS_ResultTHXMediaDirector: {
            auto* r = static_cast<LM_WS_THXMediaDirectorResponse*>(record);
            FreeTexts(r->ResponseMessage, r->LongFormat, r->ShortFormat);
            break;
        }
        case LM_WS_ResultTitlesPurchasedForPasses: {
            auto* r = static_cast<LM_WS_TitlesPurchasedForPassesResponse*>(record);
            std::free(r->ResponseMessage);
            for (int32_t i = 0; r->Array != nullptr && i < r->Count; ++i) {
                FreePurchased(r->Array[i].Purchased);
                std::free(r->Array[i].ResponseMessage);
            }
            std::free(r->Array);
            break;
        }
        case LM_WS_ResultConfig: {
            auto* r = static_cast<LM_WS_ConfigResponse*>(record);
            std::free(r->ResponseMessage);
            for (int32_t i = 0; r->Array != nullptr && i < r->Count; ++i) {
                FreeTexts(r->Array[i].Key, r->Array[i].Value);
            }
            std::free(r->Array);
            break;
        }
    }
}

}  // namespace

void LM_WS_InitResult(void* record, LM_WS_ResultType type) {
    LM_ASSERT(record != 0);
    size_t size = RecordSize(type);
    LM_ASSERT(size != 0);
    std::memset(record, 0, size);
    static_cast<TaggedHead*>(record)->Type = NewTag(type);

    // Tagged parts embedded in the record get their tags now as well, so that a record released
    // without ever being filled is as complete as a filled one.
    switch (type) {
        case LM_WS_ResultNavigation:
            static_cast<LM_WS_Navigation*>(record)->Genres.Type = NewTag(LM_WS_ResultGenreArray);
            break;
        case LM_WS_ResultTitleListingResponse:
            static_cast<LM_WS_TitleListingResponse*>(record)->TitleListing.Type =
                NewTag(LM_WS_ResultTitleListing);
            break;
        case LM_WS_ResultTitleListingResponses:
            static_cast<LM_WS_TitleListingResponses*>(record)->TitleListingResponses.Type =
                NewTag(LM_WS_ResultTitleListingResponseArray);
            break;
        case LM_WS_ResultTitles:
            static_cast<LM_WS_TitlesResponse*>(record)->Titles.Type =
                NewTag(LM_WS_ResultTitleListingArray);
            break;
        case LM_WS_ResultTvEpisodeList:
            static_cast<LM_WS_TvEpisodeList*>(record)->Episodes.Type =
                NewTag(LM_WS_ResultTvEpisodeArray);
            break;
        case LM_WS_ResultMyVideos:
            static_cast<LM_WS_MyVideosResponse*>(record)->Titles.Type =
                NewTag(LM_WS_ResultTitleListingPurchasedArray);
            break;
        case LM_WS_ResultRecommendedTitles:
            static_cast<LM_WS_RecommendedTitlesResponse*>(record)->Titles.Type =
                NewTag(LM_WS_ResultTitleListingArray);
            break;
        case LM_WS_ResultWishlistItems:
            static_cast<LM_WS_WishlistItemsResponse*>(record)->Titles.Type =
                NewTag(LM_WS_ResultTitleListingPurchasedArray);
            break;
        case LM_WS_ResultBillingInfoAndPPCBalance: {
            auto* r = static_cast<LM_WS_BillingInfoAndPPCBalanceResponse*>(record);
            r->BillingInfo.Type = NewTag(LM_WS_ResultBillingInfo);
            r->PPCardBalance.Type = NewTag(LM_WS_ResultPPCardBalance);
            break;
        }
        default:
            break;
    }
}

void LM_WS_FreeResult(void* record) {
    if (record == nullptr) {
        return;
    }
    int32_t* tag = static_cast<TaggedHead*>(record)->Type;
    if (tag == nullptr) {
        return;
    }
    int32_t type = *tag;
    size_t size = RecordSize(type);
    // A tag we do not know means the pointer is not one of our records: freeing by guess would
    // corrupt the heap.
    LM_ASSERT(size != 0);
    FreeContents(type, record);
    std::free(tag);
    std::memset(record, 0, size);
}
