// The asynchronous operations and their worker.
#include <cstring>

#include "LMLog.h"
#include "LMThread.h"
#include "LMWSLibAEOperations.h"
#include "ae/AEMemory.h"

namespace {

LMLogArea g_WorkerArea("LM_WSAE");

// The workers report a missing block or owner under the source name the field logs know.
#define LMWS_WORKER_ASSERT(x) \
    ((x) ? static_cast<void>(0) : ae::AEReportAssert("##x##", "Operations.cpp", __LINE__))

#define LMWS_CALL(...)                                   \
    [](LM_WS_Handle* h, const LMWSArg* a, LMWSRecord& r, \
       std::vector<uint8_t>& f) -> LM_WS_Status {        \
        (void)h;                                         \
        (void)a;                                         \
        (void)r;                                         \
        (void)f;                                         \
        __VA_ARGS__                                      \
    }

// Operations answering a yes/no flag leave it as a bool record (kind 2).
#define LMWS_FLAG_CALL(expression) \
    LMWS_CALL(uint8_t v = 0; LM_WS_Status s = (expression); r.flag = v != 0; return s;)

LM_WS_Page Page(const LMWSArg& number, const LMWSArg& size) {
    return LM_WS_Page{number.number, size.number};
}

const LMWSLibAE::Operation kOperations[] = {
    {"getNavigation", 4, {}, LMWS_CALL(return LM_WS_getNavigation(h, &r.navigation);)},
    {"getTitles",
     5,
     {{"genreid", kLMWSInt},
      {"CurrentPageNumber", kLMWSInt},
      {"ItemsPerPage", kLMWSInt},
      {"purchasetype", kLMWSInt}},
     LMWS_CALL(return LM_WS_getTitles(h, a[0].number, Page(a[1], a[2]), a[3].number, &r.titles);)},
    {"getTitleListing",
     6,
     {{"titleid", kLMWSInt}},
     LMWS_CALL(return LM_WS_getTitleListing(h, a[0].number, &r.listing);)},
    {"searchForTitle",
     5,
     {{"CurrentPageNumber", kLMWSInt},
      {"ItemsPerPage", kLMWSInt},
      {"purchasetype", kLMWSInt},
      {"typefilter", kLMWSInt},
      {"query", kLMWSString}},
     LMWS_CALL(return LM_WS_searchForTitle(h, Page(a[0], a[1]), a[2].number, a[3].number,
                                           a[4].text.c_str(), &r.titles);)},
    {"getRecommendedTitles",
     10,
     {{"titleid", kLMWSInt}},
     LMWS_CALL(return LM_WS_getRecommendedTitles(h, a[0].number, &r.recommended);)},
    {"translateSkuID",
     11,
     {{"skuid", kLMWSInt}},
     LMWS_CALL(return LM_WS_translateSkuID(h, a[0].number, &r.sku);)},
    {"getTvEpisodeListing",
     6,
     {{"episodeid", kLMWSInt}},
     LMWS_CALL(return LM_WS_getTvEpisodeListing(h, a[0].number, &r.listing);)},
    {"getTvEpisodeListByTitleID",
     12,
     {{"titleid", kLMWSInt}},
     LMWS_CALL(return LM_WS_getTvEpisodeListByTitleID(h, a[0].number, &r.episodes);)},
    {"getAllTvEpisodeListings",
     13,
     {{"titleid", kLMWSInt}},
     LMWS_CALL(return LM_WS_getAllTvEpisodeListings(h, a[0].number, &r.listings);)},
    {"authorizeDevice",
     7,
     {{"pin", kLMWSInt}},
     LMWS_CALL(return LM_WS_authorizeDevice(h, a[0].number, &r.authorize);)},
    {"deactivateDevice", 9, {}, LMWS_CALL(return LM_WS_deactivateDevice(h, &r.standard);)},
    {"checkAuthToken", 2, {}, LMWS_FLAG_CALL(LM_WS_checkAuthToken(h, &v))},
    {"getBoxArtImage",
     3,
     {{"boxartsize", kLMWSInt}, {"boxartprefix", kLMWSString}},
     LMWS_CALL(return LM_WS_getBoxArtImage(h, static_cast<LM_WS_BoxArtSize>(a[0].number),
                                           a[1].text.c_str(), &r.text);)},
    {"getMyVideos",
     8,
     {{"CurrentPageNumber", kLMWSInt},
      {"ItemsPerPage", kLMWSInt},
      {"purchasetype", kLMWSInt},
      {"typefilter", kLMWSInt},
      {"watchstatus", kLMWSInt}},
     LMWS_CALL(return LM_WS_getMyVideos(h, Page(a[0], a[1]), a[2].number, a[3].number, a[4].number,
                                        &r.myVideos);)},
    {"getWishlistItems",
     14,
     {{"sortorder", kLMWSInt},
      {"CurrentPageNumber", kLMWSInt},
      {"ItemsPerPage", kLMWSInt},
      {"typefilter", kLMWSInt}},
     LMWS_CALL(return LM_WS_getWishlistItems(h, a[0].number, Page(a[1], a[2]), a[3].number,
                                             &r.wishlist);)},
    {"addItemToWishlist",
     9,
     {{"titleid", kLMWSInt}},
     LMWS_CALL(return LM_WS_addItemToWishlist(h, a[0].number, &r.standard);)},
    {"removeItemFromWishlist",
     9,
     {{"titleid", kLMWSInt}},
     LMWS_CALL(return LM_WS_removeItemFromWishlist(h, a[0].number, &r.standard);)},
    {"removeAllItemsFromWishlist",
     9,
     {},
     LMWS_CALL(return LM_WS_removeAllItemsFromWishlist(h, &r.standard);)},
    {"checkTitleInWishlist",
     2,
     {{"titleid", kLMWSInt}},
     LMWS_FLAG_CALL(LM_WS_checkTitleInWishlist(h, a[0].number, &v))},
    {"checkTitlesInWishlist",
     27,
     {{"titleids", kLMWSIntList}, {"typefilter", kLMWSInt}},
     LMWS_CALL(const int32_t count = static_cast<int32_t>(a[0].list.size());
               f.assign(a[0].list.size(), 0);
               LM_WS_Status s =
                   LM_WS_checkTitlesInWishlist(h, a[0].list.data(), count, a[1].number, f.data());
               r.titleFlags.Count = count; r.titleFlags.Flags = f.data(); return s;)},
    {"doPurchaseSavedBilling",
     15,
     {{"skuid", kLMWSInt}, {"ipaddress", kLMWSString}, {"useprepaidfund", kLMWSBool}},
     LMWS_CALL(return LM_WS_doPurchaseSavedBilling(h, a[0].number, a[1].text.c_str(),
                                                   static_cast<uint8_t>(a[2].number),
                                                   &r.purchase);)},
    {"checkForPurchasedTitle",
     2,
     {{"titleid", kLMWSInt}},
     LMWS_FLAG_CALL(LM_WS_checkForPurchasedTitle(h, a[0].number, &v))},
    {"checkForPurchasedSku",
     2,
     {{"skuid", kLMWSInt}},
     LMWS_FLAG_CALL(LM_WS_checkForPurchasedSku(h, a[0].number, &v))},
    {"checkAdultVerificationEnabled",
     16,
     {},
     LMWS_CALL(return LM_WS_checkAdultVerificationEnabled(h, &r.standard);)},
    {"checkAdultVerificationPin",
     17,
     {{"pin", kLMWSInt}},
     LMWS_CALL(return LM_WS_checkAdultVerificationPin(h, a[0].number, &r.pin);)},
    {"assignGiftCertificateToUser",
     18,
     {{"giftcertificatecode", kLMWSString}},
     LMWS_CALL(return LM_WS_assignGiftCertificateToUser(h, a[0].text.c_str(), &r.gift);)},
    {"checkRentalExpiration",
     19,
     {{"passid", kLMWSInt}},
     LMWS_CALL(return LM_WS_checkRentalExpiration(h, a[0].number, &r.rental);)},
    {"getStreamingAssetLocation",
     20,
     {{"passid", kLMWSInt}, {"fileprofile", kLMWSInt}},
     LMWS_CALL(return LM_WS_getStreamingAssetLocation(h, a[0].number, a[1].number, &r.location);)},
    {"getStreamingBonusAssetLocation",
     20,
     {{"bonusassetid", kLMWSInt}},
     LMWS_CALL(return LM_WS_getStreamingBonusAssetLocation(h, a[0].number, &r.location);)},
    {"loadLastStreamingAssetLocation",
     20,
     {{"passid", kLMWSInt}, {"fileprofile", kLMWSInt}},
     LMWS_CALL(
         return LM_WS_loadLastStreamingAssetLocation(h, a[0].number, a[1].number, &r.location);)},
    {"manageStreamingInstanceStatus",
     9,
     {{"streamid", kLMWSString}, {"streamstatus", kLMWSInt}, {"stoptimeSeconds", kLMWSInt}},
     LMWS_CALL(return LM_WS_manageStreamingInstanceStatus(h, a[0].text.c_str(), a[1].number,
                                                          a[2].number, &r.standard);)},
    {"getTHXMediaDirector",
     29,
     {{"passid", kLMWSInt}, {"fileprofile", kLMWSInt}, {"audioprofile", kLMWSInt}},
     LMWS_CALL(return LM_WS_getTHXMediaDirector(h, a[0].number, a[1].number, a[2].number,
                                                &r.mediaDirector);)},
    {"getTHXMediaDirectorBonusAsset",
     29,
     {{"bonusassetid", kLMWSInt}, {"fileprofile", kLMWSInt}, {"bonusassettype", kLMWSInt}},
     LMWS_CALL(return LM_WS_getTHXMediaDirectorBonusAsset(h, a[0].number, a[1].number, a[2].number,
                                                          &r.mediaDirector);)},
    {"getEmailAddress", 21, {}, LMWS_CALL(return LM_WS_getEmailAddress(h, &r.email);)},
    {"getBillingInfo", 22, {}, LMWS_CALL(return LM_WS_getBillingInfo(h, &r.billing);)},
    {"getPrePaidCardBalance",
     23,
     {},
     LMWS_CALL(return LM_WS_getPrePaidCardBalance(h, &r.balance);)},
    {"getConfig", 24, {}, LMWS_CALL(return LM_WS_getConfig(h, &r.config);)},
    {"getSettingsPageInfo", 25, {}, LMWS_CALL(return LM_WS_getSettingsPageInfo(h, &r.settings);)},
    {"getCountryID", 1, {}, LMWS_CALL(return LM_WS_getCountryID(h, &r.number);)},
    {"getFileType", 26, {}, LMWS_CALL(return LM_WS_getFileType(h, &r.fileType);)},
    // The flag says whether the refresh went through.
    {"updateLocalCache",
     2,
     {{"operations", kLMWSInt}},
     LMWS_CALL(LM_WS_Status s = LM_WS_updateLocalCache(h, static_cast<uint32_t>(a[0].number));
               r.flag = s == 0; return s;)},
    // The rate is handed over as its 32-bit pattern.
    {"checkBandwidth",
     1,
     {},
     LMWS_CALL(uint32_t bits = 0; LM_WS_Status s = LM_WS_checkBandwidth(h, &bits);
               std::memcpy(&r.number, &bits, sizeof bits); return s;)},
    {"calcOrderTax",
     28,
     {{"skuid", kLMWSInt}},
     LMWS_CALL(return LM_WS_calcOrderTax(h, a[0].number, &r.tax);)},
    {"getLocalIPAddr", 3, {}, LMWS_CALL(return LM_WS_getLocalIPAddr(&r.text);)},
    {"setAudioDefaultProperty",
     9,
     {{"audioprofile", kLMWSInt}},
     LMWS_CALL(return LM_WS_setAudioDefaultProperty(h, a[0].number, &r.standard);)},
    {"getAudioDefaultProperty",
     1,
     {},
     LMWS_CALL(return LM_WS_getAudioDefaultProperty(h, &r.number);)},
};

}  // namespace

const LMWSLibAE::Operation* LMWSFindOperation(const char* method) {
    for (const LMWSLibAE::Operation& operation : kOperations) {
        if (std::strcmp(operation.name, method) == 0) {
            return &operation;
        }
    }
    return nullptr;
}

bool LMWSKindOwnsMemory(uint32_t kind) {
    return (kind >= 3 && kind <= 25) || kind == 28 || kind == 29;
}

void LMWSLibAE::RunOperation(void* block) {
    Call* call = static_cast<Call*>(block);
    LMWS_WORKER_ASSERT(call != nullptr);
    if (call == nullptr) {
        return;
    }
    LMWS_WORKER_ASSERT(call->owner != nullptr);
    LMWSLibAE* owner = call->owner;
    if (owner != nullptr && owner->SetUpClone()) {
        const Operation& operation = *call->operation;
        std::memset(static_cast<void*>(&owner->m_Record), 0, sizeof owner->m_Record);
        LM_WS_Status status =
            operation.call(&owner->m_Handle, call->args, owner->m_Record, owner->m_TitleFlags);
        if (status == 0 && (std::strcmp(operation.name, "authorizeDevice") == 0 ||
                            std::strcmp(operation.name, "deactivateDevice") == 0)) {
            owner->DeviceChanged(operation.name);
        }
        // A page of titles came: the pages around it may be fetched ahead once it is delivered.
        if (status == 0 && std::strcmp(operation.name, "getTitles") == 0) {
            owner->m_PrefetchEligible.store(true, std::memory_order_relaxed);
        }
        const bool boxArt = std::strcmp(operation.name, "getBoxArtImage") == 0;
        if (!boxArt) {
            LM_LogOutput(g_WorkerArea.Id(), LM_LOG_TRACE, "LMWSLib::%s, ret:%d\n", operation.name,
                         status);
        }
        owner->Finish(status, operation.kind);
        // From here on the owner may deliver the answer: only the block is still ours.
        if (boxArt) {
            LM_LogOutput(g_WorkerArea.Id(), LM_LOG_TRACE,
                         "LMWSLib::getBoxArtImage,ret:%d,boxartprefix:%s\n", status,
                         call->args[1].text.c_str());
        }
    }
    AE_DELETE(call);
}
