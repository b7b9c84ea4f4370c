// LMWSLibAE: the movie's access to the service client ("com.kestrel.LMWSLib", seen by movies as
// `new LMWSLib()`).
//
// Service calls are asynchronous. The movie passes one argument, an Array of two elements: the
// completion function and an object with the call's parameters:
//
//     ws.getTitles([function (status, value) { ... }, {genreid: 12, CurrentPageNumber: 1, ...}]);
//
// The handler gives the movie a status at once: 0 the call started, -1 the instance is not
// initialised (init has not completed), -2 a call is already running on this instance, -3 bad
// arguments, -4 init called twice. The answer comes later, on the script thread, as
// onComplete(status, value): the client library's status and the converted result record
// (LMResultConverter). One call runs per instance at a time.
//
// Methods log on area "LM_WSAE", each traced as "LMWSLibAE::<method>".
#ifndef LM_WSLIBAE_H
#define LM_WSLIBAE_H

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "LMString.h"
#include "LMResultConverter.h"
#include "LM_WS.h"
#include "ae/ASExtensionClass.h"

class LMThread;

// The method table: name and static flag, in the order the movie sees them.
// clang-format off
#define LMWS_METHOD_TABLE(X) \
    X(init, 0) \
    X(clone, 0) \
    X(idle, 0) \
    X(getNavigation, 0) \
    X(getTitles, 0) \
    X(getTitleListing, 0) \
    X(searchForTitle, 0) \
    X(getRecommendedTitles, 0) \
    X(translateSkuID, 0) \
    X(getTvEpisodeListing, 0) \
    X(getTvEpisodeListByTitleID, 0) \
    X(getAllTvEpisodeListings, 0) \
    X(authorizeDevice, 0) \
    X(deactivateDevice, 0) \
    X(checkAuthToken, 0) \
    X(getBoxArtImage, 0) \
    X(getMyVideos, 0) \
    X(getWishlistItems, 0) \
    X(addItemToWishlist, 0) \
    X(removeItemFromWishlist, 0) \
    X(removeAllItemsFromWishlist, 0) \
    X(checkTitleInWishlist, 0) \
    X(checkTitlesInWishlist, 0) \
    X(doPurchaseSavedBilling, 0) \
    X(checkForPurchasedTitle, 0) \
    X(checkForPurchasedSku, 0) \
    X(checkAdultVerificationEnabled, 0) \
    X(checkAdultVerificationPin, 0) \
    X(assignGiftCertificateToUser, 0) \
    X(checkRentalExpiration, 0) \
    X(getStreamingAssetLocation, 0) \
    X(getStreamingBonusAssetLocation, 0) \
    X(loadLastStreamingAssetLocation, 0) \
    X(manageStreamingInstanceStatus, 0) \
    X(getTHXMediaDirector, 0) \
    X(getTHXMediaDirectorBonusAsset, 0) \
    X(getEmailAddress, 0) \
    X(getBillingInfo, 0) \
    X(getPrePaidCardBalance, 0) \
    X(getConfig, 0) \
    X(getSettingsPageInfo, 0) \
    X(getCountryID, 0) \
    X(getFileType, 0) \
    X(updateLocalCache, 0) \
    X(checkBandwidth, 0) \
    X(calcOrderTax, 0) \
    X(quitFlash, 0) \
    X(getLocalIPAddr, 0) \
    X(getSysInfo, 0) \
    X(setAudioDefaultProperty, 0) \
    X(getAudioDefaultProperty, 0) \
    X(getUserAgent, 0) \
    X(setLogAreaIDsAndTargetConfig, 1) \
    X(fileExist, 1) \
    X(getAvailableEnvLists, 0) \
    X(clearLocalCache, 1) \
    X(getDeviceEnv, 0) \
    X(checkLMSWFmd5sum, 1) \
    X(trace, 1)
// clang-format on

// The record a finished call leaves behind, one member per result kind's record type.
union LMWSRecord {
    int32_t number;  // kind 1
    bool flag;       // kind 2
    LM_WS_LengthAndText text;
    LM_WS_Navigation navigation;
    LM_WS_TitlesResponse titles;
    LM_WS_TitleListingResponse listing;
    LM_WS_AuthorizeDeviceResponse authorize;
    LM_WS_MyVideosResponse myVideos;
    LM_WS_StandardResponse standard;
    LM_WS_RecommendedTitlesResponse recommended;
    LM_WS_TranslateSkuIDResponse sku;
    LM_WS_TvEpisodeList episodes;
    LM_WS_TitleListingResponses listings;
    LM_WS_WishlistItemsResponse wishlist;
    LM_WS_PurchaseResponse purchase;
    LM_WS_AdultVerificationPinResponse pin;
    LM_WS_GiftCertificateResponse gift;
    LM_WS_RentalExpirationResponse rental;
    LM_WS_StreamingAssetLocationResponse location;
    LM_WS_EmailAddressResponse email;
    LM_WS_BillingInfoResponse billing;
    LM_WS_PPCardBalanceResponse balance;
    LM_WS_ConfigResponse config;
    LM_WS_SettingsPageInfo settings;
    LM_WS_FileType fileType;
    LM_WS_CalcOrderTaxResponse tax;
    LM_WS_THXMediaDirectorResponse mediaDirector;
    LMTitleFlags titleFlags;  // kind 27, its flags in LMWSLibAE::m_TitleFlags
};

class LMWSLibAE : public ae::stagecraft::ASExtensionClass {
public:
    typedef AEArray<ae::stagecraft::ASValue*> Args;

    static const char* const kClassID;  // "com.kestrel.LMWSLib"

    LMWSLibAE();
    // Waits for a running worker; a result never delivered is released.
    ~LMWSLibAE() override;

#define LMWS_DECLARE_HANDLER(name, isStatic)                                                  \
    void name(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args, \
              ae::stagecraft::ASResult& result);
    LMWS_METHOD_TABLE(LMWS_DECLARE_HANDLER)
#undef LMWS_DECLARE_HANDLER

    // Delivers a finished call's answer to its completion function.
    void OnUpdate(ae::stagecraft::ASContext& context) override;

    // One asynchronous operation: its parameters (keys and types, read in order), the client
    // call and the result kind. Defined in LMWSLibAEOperations.cpp.
    struct Operation;
    // The parameter block of a call, owned by its worker.
    struct Call;
    struct InitCall;
    // The values init was given, kept for clones and for the prefetch workers' own clients.
    struct SetupParams;
    // Sets up `handle` from `setup`; the status of the client's set-up.
    static LM_WS_Status SetUp(LM_WS_Handle* handle, const SetupParams& setup);
    // Chooses the pages to fetch ahead while the user pages through a list.
    class PrefetchMgr;
    // The parameter blocks of the prefetch workers (LMWSLibAEPrefetch.cpp).
    struct PagePrefetch;
    struct BoxArtPrefetch;
    struct PageList;  // a list the page prefetch walks: titles, the account's videos, wishlist

    // The prefetch workers. Each kind runs on a client of its own, set up from init's
    // parameters, so no client ever serves two calls at once; all share the cache database.
    static void prefetch_getTitles(void* block);
    static void prefetch_getMyVideos(void* block);
    static void prefetch_getWishlistItems(void* block);
    static void prefetch_getBoxArts(void* block);
    static void RunPagePrefetch(void* block, const PageList& list);
    static const PageList kTitlesPages;
    static const PageList kMyVideosPages;
    static const PageList kWishlistPages;
    // The page walk of a page prefetch on `handle`: the listed pages in order up to an entry 0,
    // the page the user is on or the first page that fails; each page fetched is marked fetched
    // with `manager` (when given) and its titles' box-art prefixes are appended to `boxArts`,
    // from the page's last title to its first.
    static void WalkPages(LM_WS_Handle* handle, const PagePrefetch& block, const PageList& list,
                          PrefetchMgr* manager, std::vector<LMString>& boxArts);

private:
    LMWSLibAE(const LMWSLibAE&) = delete;
    LMWSLibAE& operator=(const LMWSLibAE&) = delete;

    // The calling convention of every asynchronous method.
    void Start(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
               ae::stagecraft::ASResult& result, const char* method);
    // True when the call's one argument is [function, parameters]; `callback` and `parameters`
    // are then new handles for the caller to keep or release.
    static bool TakeCallArguments(Args& args, ae::stagecraft::ASValue*& callback,
                                  ae::stagecraft::ASValue*& parameters);
    bool Busy();
    // Why a call that needs the client cannot start now: -1 not initialised, -2 a call is
    // running; 0 when it can.
    int32_t Refusal();
    // Starts the worker; false when no thread could be started (then nothing was kept).
    bool RunThread(const char* name, void (*procedure)(void*), void* parameters,
                   ae::stagecraft::ASObject& caller, ae::stagecraft::ASContext& context);
    // Starts a prefetch worker in its slot: the titles slot for "prefetch_getTitles", the box-art
    // slot for the others. False when no thread could be started (the slot is then empty).
    bool RunPrefetchThread(const char* name, void (*procedure)(void*), void* parameters);
    // OnUpdate while no answer waits: the box-art prefetch of the pending prefixes.
    void StartBoxArtPrefetch(ae::stagecraft::ASContext& context);
    // OnUpdate after an answer of `status`: the page prefetch around the page just delivered.
    void StartTitlesPrefetch(int32_t status);
    // Whether OnUpdate still has prefetch work to watch for.
    bool PrefetchPending();
    // A prefetch worker's client: `handle` set up from `setup` when it has no client yet.
    static bool PrefetchClient(LM_WS_Handle* handle, const SetupParams& setup, const char* name);
    // Adds box-art prefixes for the box-art prefetch (from the page prefetch worker).
    void AddPendingBoxArts(std::vector<LMString>& prefixes);
    LMThread* TakeRunningCall();
    void Reap(LMThread* thread);
    // Releases the stored record of a result of `kind`.
    void ReleaseRecord(uint32_t kind);
    // Stores a worker's answer; the done flag is set last.
    void Finish(int32_t status, uint32_t kind);

    static void RunOperation(void* block);
    static void RunInit(void* block);
    // A worker's first step on a clone: its client is set up from the copied parameters. False
    // (and the answer given) when that fails.
    bool SetUpClone();
    // After authorizeDevice or deactivateDevice (`operation`) succeeded: the duplicate-device
    // check, and the kept set-up takes the client's new token so that clones made from now on
    // carry the device's current authorisation.
    void DeviceChanged(const char* operation);

    std::mutex m_CallLock;  // guards m_RunningCall
    LMThread* m_RunningCall = nullptr;
    ae::stagecraft::ASValue* m_Callback = nullptr;  // script thread only

    // Written by the worker, read by the script thread once m_Done is seen set.
    LM_WS_Handle m_Handle{};
    LMWSRecord m_Record;
    std::vector<uint8_t> m_TitleFlags;
    int32_t m_Status = 0;
    uint32_t m_Kind = 0;  // 0: no record (init)
    std::atomic<bool> m_Done{false};
    std::atomic<bool> m_Initialised{false};

    // Written by the script thread before a worker starts; the worker may update the token.
    std::unique_ptr<SetupParams> m_Setup;
    // Set by clone: the next worker sets the client up first.
    std::atomic<bool> m_NeedsSetUp{false};

    bool m_Idle = false;
    int32_t m_CacheType = 0;
    int32_t m_CacheData = 0;

    // Prefetch state. The flags are written by the prefetch workers and read by the script
    // thread; the slots change under m_CallLock; the rest under m_PrefetchLock.
    int32_t m_LastPurchaseType = 0;
    // The getTitles arguments of the call in progress: genre, page, page size, purchase type.
    int32_t m_TitlesQuery[4] = {};
    int32_t m_BoxArtSize = 0;          // the size of the movie's last getBoxArtImage
    const char* m_CallName = nullptr;  // the method of the call in progress
    std::atomic<bool> m_PrefetchEligible{false};
    std::atomic<bool> m_TitlesPrefetchBusy{false};
    std::atomic<bool> m_BoxArtPrefetchBusy{false};
    LMThread* m_TitlesPrefetch = nullptr;
    LMThread* m_BoxArtPrefetch = nullptr;
    std::mutex m_PrefetchLock;
    std::unique_ptr<PrefetchMgr> m_PrefetchMgr;
    std::vector<LMString> m_PendingBoxArts;
    // The pages the manager's fetched list is about: genre, page size, purchase type.
    int32_t m_PrefetchKey[3] = {};
    // The prefetch workers' own clients, each used by one worker at a time (the busy flags).
    LM_WS_Handle m_PagePrefetchHandle{};
    LM_WS_Handle m_BoxArtPrefetchHandle{};
};

// The class as the runtime registers it.
ae::stagecraft::ASExtensionClassDescriptor& LMWSLibAEDescriptor();

#endif  // LM_WSLIBAE_H
