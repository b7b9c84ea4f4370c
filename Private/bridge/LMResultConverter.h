// The result converter: turns the client record a worker left behind into the script value the
// movie receives (numbers, booleans, strings, and trees of "Object", "Array" and "Date").
//
// The property names, their order and their types are what every UI movie reads; they are
// listed per kind in LMResultConverter.cpp and pinned by tests/unit/LMResultConverterTest.cpp.
//
// What `record` points to, per result kind:
//
//   kind  operations                                        record
//   ----  ------------------------------------------------  ---------------------------------------
//    1    getCountryID, checkBandwidth,                     int32_t (an unsigned rate is handed
//         getAudioDefaultProperty                           over as its 32-bit pattern)
//    2    checkAuthToken, checkTitleInWishlist,             bool
//         checkForPurchasedTitle, checkForPurchasedSku,
//         updateLocalCache
//    3    getLocalIPAddr, getBoxArtImage                    LM_WS_LengthAndText (null Text is "")
//    4    getNavigation                                     LM_WS_Navigation
//    5    getTitles, searchForTitle                         LM_WS_TitlesResponse
//    6    getTitleListing, getTvEpisodeListing              LM_WS_TitleListingResponse
//    7    authorizeDevice                                   LM_WS_AuthorizeDeviceResponse
//    8    getMyVideos                                       LM_WS_MyVideosResponse
//    9    deactivateDevice, addItemToWishlist,              LM_WS_StandardResponse
//         removeItemFromWishlist,
//         removeAllItemsFromWishlist,
//         setAudioDefaultProperty,
//         manageStreamingInstanceStatus
//   10    getRecommendedTitles                              LM_WS_RecommendedTitlesResponse
//   11    translateSkuID                                    LM_WS_TranslateSkuIDResponse
//   12    getTvEpisodeListByTitleID                         LM_WS_TvEpisodeList
//   13    getAllTvEpisodeListings                           LM_WS_TitleListingResponses
//   14    getWishlistItems                                  LM_WS_WishlistItemsResponse
//   15    doPurchaseSavedBilling                            LM_WS_PurchaseResponse
//   16    checkAdultVerificationEnabled                     LM_WS_StandardResponse (enabled when
//                                                           the response code is 0)
//   17    checkAdultVerificationPin                         LM_WS_AdultVerificationPinResponse
//   18    assignGiftCertificateToUser                       LM_WS_GiftCertificateResponse
//   19    checkRentalExpiration                             LM_WS_RentalExpirationResponse
//   20    getStreamingAssetLocation,                        LM_WS_StreamingAssetLocationResponse
//         getStreamingBonusAssetLocation,
//         loadLastStreamingAssetLocation
//   21    getEmailAddress                                   LM_WS_EmailAddressResponse
//   22    getBillingInfo                                    LM_WS_BillingInfoResponse
//   23    getPrePaidCardBalance                             LM_WS_PPCardBalanceResponse
//   24    getConfig                                         LM_WS_ConfigResponse
//   25    getSettingsPageInfo                               LM_WS_SettingsPageInfo
//   26    getFileType                                       LM_WS_FileType (untagged)
//   27    checkTitlesInWishlist                             LMTitleFlags (below)
//   28    calcOrderTax                                      LM_WS_CalcOrderTaxResponse
//   29    getTHXMediaDirector,                              LM_WS_THXMediaDirectorResponse
//         getTHXMediaDirectorBonusAsset
#ifndef LM_RESULT_CONVERTER_H
#define LM_RESULT_CONVERTER_H

#include <cstdint>

#include "LM_WS_Records.h"
#include "ae/ASExtensionClass.h"

// The answer of checkTitlesInWishlist: one flag per title asked about, in the order asked. The
// worker owns the flags; nothing in here is released by the client library.
struct LMTitleFlags {
    int32_t Count;
    const uint8_t* Flags;
};

// The result kinds, 1..29.
enum : uint32_t { kLMResultKindFirst = 1, kLMResultKindLast = 29 };

// Converts a finished call's record into the script value the movie receives. `kind` is the
// result kind 1..29; `record` the client record of that call, of the type the table above names
// for the kind. Returns a new handle (the caller releases it) or null for an unknown kind, a null
// record, or when the runtime fails to make a value. Does not release the record: the caller does,
// with LM_WS_FreeResult (kinds 3 to 25, 28 and 29).
ae::stagecraft::ASValue* LMResultToScript(ae::stagecraft::ASContext& context, uint32_t kind,
                                          const void* record);

#endif  // LM_RESULT_CONVERTER_H
