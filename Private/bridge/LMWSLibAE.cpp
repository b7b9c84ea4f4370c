#include "LMWSLibAE.h"

#include <dirent.h>
#include <fnmatch.h>

#include <cstdint>
#include <new>
#include <cstdio>
#include <cstring>

#include "LMDeployment.h"
#include "LMFile.h"
#include "LMPrefetchMgr.h"
#include "LMLog.h"
#include "LMResultConverter.h"
#include "LMThread.h"
#include "LMWSClient.h"
#include "LMWSLibAEOperations.h"
#include "ae/AEMemory.h"

using ae::stagecraft::ASContext;
using ae::stagecraft::ASExtensionClass;
using ae::stagecraft::ASField;
using ae::stagecraft::ASObject;
using ae::stagecraft::ASResult;
using ae::stagecraft::ASShape;
using ae::stagecraft::ASValue;

const char* const LMWSLibAE::kClassID = "com.kestrel.LMWSLib";

namespace {

LMLogArea g_WSArea("LM_WSAE");

const char* const kClassName = "LMWSLibAE";

enum {
    kAccepted = 0,
    kNotInitialised = -1,
    kCallRunning = -2,
    kBadArguments = -3,
    kAlreadyInitialised = -4,
    kNoCloneSource = -5,
};

int Area() {
    return g_WSArea.Id();
}

// Gives the movie `value` (released here, may be null) and the status.
void Give(ASResult& result, ASValue* value, int32_t status = kAccepted) {
    if (value != nullptr) {
        result.SetValue(*value);
        value->Release();
    }
    result.SetStatus(status);
}

// The set-up keys of init, in the order they are read.
const LMWSParam kInitParams[] = {
    {"APIKey", kLMWSString},
    {"UserName", kLMWSString},
    {"Password", kLMWSString},
    {"DestinationTypeID", kLMWSInt},
    {"AuthToken", kLMWSString},
    {"DestinationUniqueID", kLMWSString},
    {"ServiceBaseURL", kLMWSString},
    {"Type", kLMWSInt},
    {"CacheType", kLMWSInt},
    {"CacheData", kLMWSInt},
    {"CachePath", kLMWSString},
    {"CacheLimit", kLMWSInt},
    {"ProxyHost", kLMWSString},
    {"ProxyUserName", kLMWSString},
    {"ProxyPort", kLMWSInt},
    {"ProxyPassword", kLMWSString},
    {"AccessType", kLMWSInt},
    {"ApplicationRevision", kLMWSString},
    {"EnvNum", kLMWSInt},
    {"firmwareVersion", kLMWSString},
    {"modelNumber", kLMWSString},
};
enum InitKey {
    kAPIKey,
    kUserName,
    kPassword,
    kDestinationTypeID,
    kAuthToken,
    kDestinationUniqueID,
    kServiceBaseURL,
    kType,
    kCacheType,
    kCacheData,
    kCachePath,
    kCacheLimit,
    kProxyHost,
    kProxyUserName,
    kProxyPort,
    kProxyPassword,
    kAccessType,
    kApplicationRevision,
    kEnvNum,
    kFirmwareVersion,
    kModelNumber,
    kInitKeyCount
};
static_assert(sizeof kInitParams / sizeof kInitParams[0] == kInitKeyCount, "init keys");

// Reads one property of the parameter object (null: none) with the runtime's conversions; a
// missing or null text property is "".
void ReadParam(ASValue* parameters, const LMWSParam& param, LMWSArg& out) {
    ASObject* object = parameters != nullptr ? parameters->AsObject() : nullptr;
    ASValue* value = object != nullptr ? object->GetProperty(param.key) : nullptr;
    if (value == nullptr) {
        return;
    }
    switch (param.type) {
        case kLMWSInt:
            out.number = value->ToInt32();
            break;
        case kLMWSBool:
            out.number = value->ToBoolean() ? 1 : 0;
            break;
        case kLMWSIntList: {
            ASObject* list = value->AsObject();
            if (list != nullptr && list->IsArray()) {
                for (uint32_t i = 0, n = list->GetLength(); i < n; ++i) {
                    ASValue* element = list->GetElement(i);
                    out.list.push_back(element != nullptr ? element->ToInt32() : 0);
                    if (element != nullptr) {
                        element->Release();
                    }
                }
            }
            break;
        }
        case kLMWSString: {
            ae::stagecraft::ASValueType type = value->GetType();
            AEString text;
            if (type != ae::stagecraft::kASTypeUndefined && type != ae::stagecraft::kASTypeNull &&
                value->ToString(text)) {
                out.text.assign(text.c_str(), text.length());
            }
            break;
        }
    }
    value->Release();
}

const char* Text(const LMWSArg* args, InitKey key) {
    return args[key].text.c_str();
}

}  // namespace

static_assert(static_cast<int>(kInitKeyCount) == static_cast<int>(kLMWSInitKeyCount), "init keys");

struct LMWSLibAE::InitCall {
    LMWSLibAE* owner = nullptr;
    SetupParams setup;
};

LMWSLibAE::LMWSLibAE() : m_PrefetchMgr(new (std::nothrow) PrefetchMgr()) {
    std::memset(static_cast<void*>(&m_Record), 0, sizeof m_Record);
}

LMWSLibAE::~LMWSLibAE() {
    Reap(TakeRunningCall());
    Reap(m_TitlesPrefetch);
    m_TitlesPrefetch = nullptr;
    Reap(m_BoxArtPrefetch);
    m_BoxArtPrefetch = nullptr;
    // An answer that was never delivered.
    if (m_Done.exchange(false, std::memory_order_acquire)) {
        ReleaseRecord(m_Kind);
    }
    if (m_Callback != nullptr) {
        m_Callback->Release();
    }
    LM_WS_Teardown(&m_Handle);
    LM_WS_Teardown(&m_PagePrefetchHandle);
    LM_WS_Teardown(&m_BoxArtPrefetchHandle);
}

// ---- Calls and completions ----

bool LMWSLibAE::TakeCallArguments(Args& args, ASValue*& callback, ASValue*& parameters) {
    callback = nullptr;
    parameters = nullptr;
    if (args.GetCount() != 1 || args[0] == nullptr) {
        return false;
    }
    ASObject* pair = args[0]->AsObject();
    if (pair == nullptr || !pair->IsArray() || pair->GetLength() != 2) {
        return false;
    }
    ASValue* function = pair->GetElement(0);
    ASObject* functionObject = function != nullptr ? function->AsObject() : nullptr;
    if (functionObject == nullptr || !functionObject->IsFunction()) {
        if (function != nullptr) {
            function->Release();
        }
        return false;
    }
    callback = function;
    parameters = pair->GetElement(1);
    return true;
}

bool LMWSLibAE::Busy() {
    std::lock_guard<std::mutex> lock(m_CallLock);
    return m_RunningCall != nullptr;
}

int32_t LMWSLibAE::Refusal() {
    if (!m_Initialised.load(std::memory_order_acquire)) {
        return kNotInitialised;
    }
    return Busy() ? kCallRunning : 0;
}

bool LMWSLibAE::RunThread(const char* name, void (*procedure)(void*), void* parameters,
                          ASObject& caller, ASContext& context) {
    (void)caller;
    std::lock_guard<std::mutex> lock(m_CallLock);
    m_Idle = false;
    m_RunningCall = LMThread::Create();
    AE_ASSERT(m_RunningCall != 0);
    if (m_RunningCall != nullptr && m_RunningCall->Run(name, procedure, parameters)) {
        context.RequestUpdates(*this);
        return true;
    }
    LM_LogOutput(Area(), LM_LOG_ERROR, "Failed to launch worker thread: %s!\n", name);
    if (m_RunningCall != nullptr) {
        m_RunningCall->Release();
        m_RunningCall = nullptr;
    }
    return false;
}

LMThread* LMWSLibAE::TakeRunningCall() {
    std::lock_guard<std::mutex> lock(m_CallLock);
    LMThread* thread = m_RunningCall;
    m_RunningCall = nullptr;
    return thread;
}

void LMWSLibAE::Reap(LMThread* thread) {
    if (thread == nullptr) {
        return;
    }
    thread->Wait();
    std::lock_guard<std::mutex> lock(m_CallLock);
    thread->Release();
}

void LMWSLibAE::ReleaseRecord(uint32_t kind) {
    if (LMWSKindOwnsMemory(kind)) {
        LM_WS_FreeResult(&m_Record);
    }
    std::memset(static_cast<void*>(&m_Record), 0, sizeof m_Record);
    m_TitleFlags.clear();
}

void LMWSLibAE::Finish(int32_t status, uint32_t kind) {
    m_Status = status;
    m_Kind = kind;
    m_Done.store(true, std::memory_order_release);
}

void LMWSLibAE::Start(ASContext& context, ASObject& self, Args& args, ASResult& result,
                      const char* method) {
    const Operation* operation = LMWSFindOperation(method);
    if (operation == nullptr) {
        LM_LogOutput(Area(), LM_LOG_ERROR, "LMWSLibAE::%s is not available yet\n", method);
        return Give(result, nullptr, kBadArguments);
    }
    if (int32_t refusal = Refusal()) {
        return Give(result, nullptr, refusal);
    }
    ASValue* callback = nullptr;
    ASValue* parameters = nullptr;
    if (!TakeCallArguments(args, callback, parameters)) {
        return Give(result, nullptr, kBadArguments);
    }
    Call* call = AE_NEW Call();
    if (call == nullptr) {
        callback->Release();
        if (parameters != nullptr) {
            parameters->Release();
        }
        return Give(result, nullptr, kBadArguments);
    }
    call->owner = this;
    call->operation = operation;
    for (int i = 0; i < kLMWSMaxParams && operation->params[i].key != nullptr; ++i) {
        ReadParam(parameters, operation->params[i], call->args[i]);
    }
    if (parameters != nullptr) {
        parameters->Release();
    }
    const LMWSArg* a = call->args;
    if (std::strcmp(method, "getTitles") == 0) {
        LM_LogOutput(Area(), LM_LOG_PARAMS,
                     "LMWSLibAE::getTitles, parameters geneeid:%d, currentPageNo:%d,"
                     "itemsPerPage:%d, purchaseType:%p \n",
                     a[0].number, a[1].number, a[2].number,
                     reinterpret_cast<void*>(static_cast<intptr_t>(a[3].number)));
        m_LastPurchaseType = a[3].number;
        for (int i = 0; i < 4; ++i) {
            m_TitlesQuery[i] = a[i].number;
        }
    } else if (std::strcmp(method, "getBoxArtImage") == 0) {
        m_BoxArtSize = a[0].number;
        LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLibAE::getBoxArtImage,boxartprefix:%s\n",
                     a[1].text.c_str());
    }
    if (std::strcmp(method, "getTitles") == 0 || std::strcmp(method, "getMyVideos") == 0 ||
        std::strcmp(method, "getWishlistItems") == 0 ||
        std::strcmp(method, "getAllTvEpisodeListings") == 0) {
        m_PrefetchEligible.store(false, std::memory_order_relaxed);
    }
    m_CallName = operation->name;
    m_Callback = callback;
    if (!RunThread(method, &LMWSLibAE::RunOperation, call, self, context)) {
        // No worker: no answer will come.
        AE_DELETE(call);
        m_Callback->Release();
        m_Callback = nullptr;
    }
    Give(result, nullptr, kAccepted);
}

void LMWSLibAE::OnUpdate(ASContext& context) {
    if (!m_Done.load(std::memory_order_acquire)) {
        StartBoxArtPrefetch(context);
        return;
    }
    context.StopUpdates(*this);
    m_Done.store(false, std::memory_order_relaxed);
    LMThread::Sleep(10);

    const uint32_t kind = m_Kind;
    m_Kind = 0;
    ASValue* callback = m_Callback;
    m_Callback = nullptr;
    ASObject* function = callback != nullptr ? callback->AsObject() : nullptr;
    if (function == nullptr || !function->IsFunction()) {
        ReleaseRecord(kind);
        if (callback != nullptr) {
            callback->Release();
        }
        Reap(TakeRunningCall());
        return;
    }
    StartTitlesPrefetch(m_Status);
    ASValue* value = kind != 0 ? LMResultToScript(context, kind, &m_Record) : nullptr;
    ReleaseRecord(kind);
    if (value == nullptr) {
        value = context.NewUndefined();
    }
    LMThread* worker = TakeRunningCall();
    ASValue* status = context.NewNumber(m_Status);
    if (status != nullptr && value != nullptr) {
        const ASValue* argv[] = {status, value};
        function->Call(2, argv);
    }
    for (ASValue* handle : {status, value, callback}) {
        if (handle != nullptr) {
            handle->Release();
        }
    }
    Reap(worker);
    // A prefetch started or still running: keep watching for the box art it leaves.
    if (PrefetchPending()) {
        context.RequestUpdates(*this);
    }
}

// ---- init ----

LM_WS_Status LMWSLibAE::SetUp(LM_WS_Handle* handle, const SetupParams& setup) {
    const LMWSArg* a = setup.args;
    LM_WS_SetupParams params{};
    params.APIKey = Text(a, kAPIKey);
    params.AuthToken = Text(a, kAuthToken);
    params.DestinationUniqueID = Text(a, kDestinationUniqueID);
    params.DestinationTypeID = a[kDestinationTypeID].number;
    params.UserName = Text(a, kUserName);
    params.Password = Text(a, kPassword);
    params.ServiceBaseURL = Text(a, kServiceBaseURL);
    params.Type = a[kType].number;
    params.EnvNum = static_cast<LM_WS_EnvNum>(a[kEnvNum].number);
    params.CacheType = static_cast<uint32_t>(a[kCacheType].number);
    params.CacheData = static_cast<uint32_t>(a[kCacheData].number);
    params.CacheLimit = static_cast<uint32_t>(a[kCacheLimit].number);
    params.CachePath = Text(a, kCachePath);
    params.ProxyHost = Text(a, kProxyHost);
    params.ProxyPort = a[kProxyPort].number;
    params.ProxyUserName = Text(a, kProxyUserName);
    params.ProxyPassword = Text(a, kProxyPassword);
    params.AccessType = a[kAccessType].number;
    params.ApplicationRevision = Text(a, kApplicationRevision);
    params.firmwareVersion = Text(a, kFirmwareVersion);
    params.modelNumber = Text(a, kModelNumber);
    return LM_WS_Setup(handle, &params);
}

void LMWSLibAE::RunInit(void* block) {
    InitCall* call = static_cast<InitCall*>(block);
    AE_ASSERT(call != nullptr);
    if (call == nullptr) {
        return;
    }
    AE_ASSERT(call->owner != nullptr);
    LMWSLibAE* owner = call->owner;
    if (owner != nullptr) {
        LM_WS_Status status = SetUp(&owner->m_Handle, call->setup);
        LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::init, ret:%d\n", status);
        // Set before the answer, so that a call made from init's completion is accepted.
        if (status == 0) {
            owner->m_Initialised.store(true, std::memory_order_release);
        }
        owner->Finish(status, 0);
    }
    AE_DELETE(call);
}

bool LMWSLibAE::SetUpClone() {
    if (!m_NeedsSetUp.load(std::memory_order_acquire)) {
        return true;
    }
    LM_WS_Status status = m_Setup != nullptr ? SetUp(&m_Handle, *m_Setup) : LM_WS_INVALID_ARGUMENT;
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::clone, ret:%d\n", status);
    if (status != 0) {
        // The call is answered with the set-up's status; the next call tries again.
        Finish(status, 0);
        return false;
    }
    m_NeedsSetUp.store(false, std::memory_order_release);
    return true;
}

void LMWSLibAE::DeviceChanged(const char* operation) {
    LMWSClient* client = LMWSClient::From(&m_Handle);
    if (client == nullptr) {
        return;
    }
    // The service knows this device's unique id under a second registration, and that one is in
    // use: the device keeps the token it was set up with rather than the one just issued.
    if ((client->m_Params.Flag & kLMWSDuplicateDeviceFlag) != 0 &&
        client->m_RegistrationState == kLMWSRegisteredTwice) {
        LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::%s duplicate\n", operation);
        if (m_Setup != nullptr) {
            client->m_Params.AuthToken = m_Setup->args[kAuthToken].text;
        }
        return;
    }
    std::lock_guard<std::mutex> lock(m_PrefetchLock);  // the prefetch starts copy m_Setup
    if (m_Setup != nullptr) {
        m_Setup->args[kAuthToken].text = client->m_Params.AuthToken;
    }
}

void LMWSLibAE::init(ASContext& context, ASObject& self, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "init", Area());
    if (m_Initialised.load(std::memory_order_acquire)) {
        LM_LogOutput(Area(), LM_LOG_ERROR, "LMWSLibAE::init left since Already initialized!\n");
        return Give(result, nullptr, kAlreadyInitialised);
    }
    if (Busy()) {
        return Give(result, nullptr, kCallRunning);
    }
    ASValue* callback = nullptr;
    ASValue* parameters = nullptr;
    if (!TakeCallArguments(args, callback, parameters)) {
        return Give(result, nullptr, kBadArguments);
    }
    InitCall* call = AE_NEW InitCall();
    if (call != nullptr) {
        call->owner = this;
        for (int i = 0; i < kInitKeyCount; ++i) {
            ReadParam(parameters, kInitParams[i], call->setup.args[i]);
        }
        m_CacheType = call->setup.args[kCacheType].number;
        m_CacheData = call->setup.args[kCacheData].number;
        m_Setup.reset(new (std::nothrow) SetupParams(call->setup));
    }
    if (parameters != nullptr) {
        parameters->Release();
    }
    if (call == nullptr) {
        callback->Release();
        return Give(result, nullptr, kBadArguments);
    }
    m_Callback = callback;
    if (!RunThread("init", &LMWSLibAE::RunInit, call, self, context)) {
        AE_DELETE(call);
        m_Callback->Release();
        m_Callback = nullptr;
    }
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLibAE::init left\n");
    Give(result, nullptr, kAccepted);
}

// ---- The asynchronous methods: all follow Start ----

#define LMWS_ASYNC_HANDLER(name)                                                             \
    void LMWSLibAE::name(ASContext& context, ASObject& self, Args& args, ASResult& result) { \
        LM_LogScope scope(kClassName, #name, Area());                                        \
        Start(context, self, args, result, #name);                                           \
    }

LMWS_ASYNC_HANDLER(getNavigation)
LMWS_ASYNC_HANDLER(getTitles)
LMWS_ASYNC_HANDLER(getTitleListing)
LMWS_ASYNC_HANDLER(searchForTitle)
LMWS_ASYNC_HANDLER(getRecommendedTitles)
LMWS_ASYNC_HANDLER(translateSkuID)
LMWS_ASYNC_HANDLER(getTvEpisodeListing)
LMWS_ASYNC_HANDLER(getTvEpisodeListByTitleID)
LMWS_ASYNC_HANDLER(getAllTvEpisodeListings)
LMWS_ASYNC_HANDLER(authorizeDevice)
LMWS_ASYNC_HANDLER(deactivateDevice)
LMWS_ASYNC_HANDLER(checkAuthToken)
LMWS_ASYNC_HANDLER(getBoxArtImage)
LMWS_ASYNC_HANDLER(getMyVideos)
LMWS_ASYNC_HANDLER(getWishlistItems)
LMWS_ASYNC_HANDLER(addItemToWishlist)
LMWS_ASYNC_HANDLER(removeItemFromWishlist)
LMWS_ASYNC_HANDLER(removeAllItemsFromWishlist)
LMWS_ASYNC_HANDLER(checkTitleInWishlist)
LMWS_ASYNC_HANDLER(checkTitlesInWishlist)
LMWS_ASYNC_HANDLER(doPurchaseSavedBilling)
LMWS_ASYNC_HANDLER(checkForPurchasedTitle)
LMWS_ASYNC_HANDLER(checkForPurchasedSku)
LMWS_ASYNC_HANDLER(checkAdultVerificationEnabled)
LMWS_ASYNC_HANDLER(checkAdultVerificationPin)
LMWS_ASYNC_HANDLER(assignGiftCertificateToUser)
LMWS_ASYNC_HANDLER(checkRentalExpiration)
LMWS_ASYNC_HANDLER(getStreamingAssetLocation)
LMWS_ASYNC_HANDLER(getStreamingBonusAssetLocation)
LMWS_ASYNC_HANDLER(loadLastStreamingAssetLocation)
LMWS_ASYNC_HANDLER(manageStreamingInstanceStatus)
LMWS_ASYNC_HANDLER(getTHXMediaDirector)
LMWS_ASYNC_HANDLER(getTHXMediaDirectorBonusAsset)
LMWS_ASYNC_HANDLER(getEmailAddress)
LMWS_ASYNC_HANDLER(getBillingInfo)
LMWS_ASYNC_HANDLER(getPrePaidCardBalance)
LMWS_ASYNC_HANDLER(getConfig)
LMWS_ASYNC_HANDLER(getSettingsPageInfo)
LMWS_ASYNC_HANDLER(getCountryID)
LMWS_ASYNC_HANDLER(getFileType)
LMWS_ASYNC_HANDLER(updateLocalCache)
LMWS_ASYNC_HANDLER(checkBandwidth)
LMWS_ASYNC_HANDLER(calcOrderTax)
LMWS_ASYNC_HANDLER(getLocalIPAddr)
LMWS_ASYNC_HANDLER(setAudioDefaultProperty)
LMWS_ASYNC_HANDLER(getAudioDefaultProperty)

#undef LMWS_ASYNC_HANDLER

// ---- clone ----

// clone(other): this instance takes the set-up of `other`, an initialised LMWSLib that is not
// this one and has no call running, and is initialised from then on. It gets a client of its
// own, set up from the copied parameters by its first call's worker, so the two instances never
// share a client (which takes no locks). -5 when there is no such source, or when this
// instance has a call running.
void LMWSLibAE::clone(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "clone", Area());
    ASExtensionClass* native = args.GetCount() == 1 && args[0] != nullptr
                                   ? context.GetNativeInstance(*args[0], kClassID)
                                   : nullptr;
    LMWSLibAE* source = static_cast<LMWSLibAE*>(native);
    const char* refusal = nullptr;
    if (source == nullptr) {
        refusal = "not an LMWSLib";
    } else if (source == this) {
        refusal = "itself";
    } else if (!source->m_Initialised.load(std::memory_order_acquire) ||
               source->m_Setup == nullptr) {
        refusal = "not initialised";
    } else if (source->Busy() || Busy()) {
        refusal = "a call is running";
    }
    SetupParams* copy =
        refusal == nullptr ? new (std::nothrow) SetupParams(*source->m_Setup) : nullptr;
    if (copy == nullptr) {
        LM_LogOutput(Area(), LM_LOG_ERROR, "LMWSLibAE::clone refused: %s\n",
                     refusal != nullptr ? refusal : "out of memory");
        return Give(result, nullptr, kNoCloneSource);
    }
    m_Setup.reset(copy);
    m_CacheType = source->m_CacheType;
    m_CacheData = source->m_CacheData;
    m_NeedsSetUp.store(true, std::memory_order_release);
    m_Initialised.store(true, std::memory_order_release);
    Give(result, nullptr, kAccepted);
}

// ---- Device and cache helpers ----

// getSysInfo(): what this instance's client runs with, for a settings or diagnostics page:
// { ServiceBaseURL, EnvNum, AccessType, UserAgent, CachePath, CacheType, CacheData, CacheLimit,
//   LocalIPAddr, ApplicationRevision, FirmwareVersion, ModelNumber }. Secrets (key, password,
// token) are left out. A clone whose client is not set up yet answers from its copied set-up,
// with an empty ServiceBaseURL and UserAgent.
void LMWSLibAE::getSysInfo(ASContext& context, ASObject&, Args&, ASResult& result) {
    LM_LogScope scope(kClassName, "getSysInfo", Area());
    if (int32_t refusal = Refusal()) {
        return Give(result, nullptr, refusal);
    }
    static const char* const kNames[] = {"ServiceBaseURL",      "EnvNum",          "AccessType",
                                         "UserAgent",           "CachePath",       "CacheType",
                                         "CacheData",           "CacheLimit",      "LocalIPAddr",
                                         "ApplicationRevision", "FirmwareVersion", "ModelNumber"};
    static const ASShape kShape = {kNames, sizeof kNames / sizeof kNames[0]};
    const LMWSArg* a = m_Setup != nullptr ? m_Setup->args : nullptr;
    LMWSClient* client = LMWSClient::From(&m_Handle);
    LM_WS_SetupParams2 params;
    if (client != nullptr) {
        params = client->m_Params;
    } else if (a != nullptr) {
        params.EnvID = a[kEnvNum].number;
        params.AccessType = a[kAccessType].number;
        params.Cache.CacheType = static_cast<uint32_t>(a[kCacheType].number);
        params.Cache.CacheData = static_cast<uint32_t>(a[kCacheData].number);
        params.Cache.CacheLimit = static_cast<uint32_t>(a[kCacheLimit].number);
        params.Cache.CachePath = a[kCachePath].text;
        params.ApplicationRevision = a[kApplicationRevision].text;
        params.firmwareVersion = a[kFirmwareVersion].text;
        params.modelNumber = a[kModelNumber].text;
    }
    LM_WS_LengthAndText address{};
    LM_WS_getLocalIPAddr(&address);
    const ASField fields[] = {
        ASField::String(params.ServiceBaseURL.c_str(), params.ServiceBaseURL.length()),
        ASField::Int(params.EnvID),
        ASField::Int(params.AccessType),
        ASField::String(params.UserAgent.c_str(), params.UserAgent.length()),
        ASField::String(params.Cache.CachePath.c_str(), params.Cache.CachePath.length()),
        ASField::Int(static_cast<int32_t>(params.Cache.CacheType)),
        ASField::Int(static_cast<int32_t>(params.Cache.CacheData)),
        ASField::Int(static_cast<int32_t>(params.Cache.CacheLimit)),
        ASField::String(address.Text != nullptr ? address.Text : ""),
        ASField::String(params.ApplicationRevision.c_str(), params.ApplicationRevision.length()),
        ASField::String(params.firmwareVersion.c_str(), params.firmwareVersion.length()),
        ASField::String(params.modelNumber.c_str(), params.modelNumber.length())};
    ASObject* info = context.NewShapedObject(kShape, fields);
    LM_WS_FreeResult(&address);
    Give(result, info);
}

namespace {

// Removes the files of `folder` whose names match `pattern`; the number removed.
int32_t RemoveMatching(const LMString& folder, const char* pattern) {
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) {
        return 0;
    }
    int32_t removed = 0;
    while (const struct dirent* entry = readdir(dir)) {
        if (fnmatch(pattern, entry->d_name, FNM_PERIOD) == 0 &&
            LMFile::Remove((folder + entry->d_name).c_str())) {
            ++removed;
        }
    }
    closedir(dir);
    return removed;
}

}  // namespace

// LMWSLib.clearLocalCache(folder): deletes the cache databases in `folder` (the CachePath given
// to init) and, when there was one, the box art kept beside them; the number of files removed.
// Clients already set up notice at their next cache operation and go on with a new, empty
// database, as do the clients set up afterwards. -3 without a folder.
void LMWSLibAE::clearLocalCache(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "clearLocalCache", Area());
    AEString path;
    if (args.GetCount() != 1 || args[0] == nullptr ||
        args[0]->GetType() != ae::stagecraft::kASTypeString || !args[0]->ToString(path) ||
        path.length() == 0) {
        return Give(result, nullptr, kBadArguments);
    }
    LMString folder(path.c_str());
    if (folder[folder.length() - 1] != '/') {
        folder.append('/');
    }
    int32_t removed = RemoveMatching(folder, "*.lm");
    if (removed > 0) {
        removed += RemoveMatching(folder, "*.lm-*");
        removed += RemoveMatching(folder, "*.jpg");
    }
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLibAE::clearLocalCache, %s: %d files removed\n",
                 folder.c_str(), removed);
    Give(result, context.NewInt(removed));
}

// ---- Synchronous methods ----

// idle(): the movie waits for the user; background work (the box-art prefetch) may run now.
void LMWSLibAE::idle(ASContext& context, ASObject&, Args&, ASResult& result) {
    LM_LogScope scope(kClassName, "idle", Area());
    m_Idle = true;
    context.RequestUpdates(*this);
    Give(result, nullptr);
}

// The User-Agent the client sends, as a string. It shares the client with the workers, so it
// waits its turn like a service call.
void LMWSLibAE::getUserAgent(ASContext& context, ASObject&, Args&, ASResult& result) {
    LM_LogScope scope(kClassName, "getUserAgent", Area());
    if (int32_t refusal = Refusal()) {
        return Give(result, nullptr, refusal);
    }
    LM_WS_LengthAndText agent{};
    LM_WS_getUserAgent(&m_Handle, &agent);
    ASValue* value = agent.Text != nullptr ? context.NewString(agent.Text) : context.NewString("");
    LM_WS_FreeResult(&agent);
    Give(result, value);
}

// The environment the client uses (0 staging API, 1 staging, 2 production, or what the service
// named), as a number.
void LMWSLibAE::getDeviceEnv(ASContext& context, ASObject&, Args&, ASResult& result) {
    LM_LogScope scope(kClassName, "getDeviceEnv", Area());
    if (int32_t refusal = Refusal()) {
        return Give(result, nullptr, refusal);
    }
    LMWSClient* client = LMWSClient::From(&m_Handle);
    Give(result, client != nullptr ? context.NewInt(client->m_Params.EnvID) : nullptr);
}

// checkLMSWFmd5sum(path): the file's MD5 digest as 32 hex digits, "" when it cannot be computed.
void LMWSLibAE::checkLMSWFmd5sum(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "checkLMSWFmd5sum", Area());
    AEString path;
    if (args.GetCount() != 1 || args[0] == nullptr || !args[0]->ToString(path)) {
        return Give(result, nullptr, kBadArguments);
    }
    LM_WS_LengthAndText sum{};
    LM_WS_md5sum(path.c_str(), &sum);
    const char* text = sum.Text != nullptr ? sum.Text : "";
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLibAE::checkLMSWFmd5sum result: (%s)\n", text);
    // The tool prints the digest, a separator and the file name.
    size_t digest = std::strspn(text, "0123456789abcdef");
    if (digest != 32) {
        digest = 0;
    }
    Give(result, context.NewString(text, digest));
    LM_WS_FreeResult(&sum);
}

void LMWSLibAE::quitFlash(ASContext& context, ASObject&, Args&, ASResult& result) {
    LM_LogScope scope(kClassName, "quitFlash", Area());
    context.Stop();
    Give(result, nullptr);
}

void LMWSLibAE::trace(ASContext&, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "trace", Area());
    if (args.GetCount() != 1) {
        return Give(result, nullptr, kBadArguments);
    }
    AEString text;
    if (args[0] == nullptr || !args[0]->ToString(text)) {
        text = AEString("");
    }
    std::printf("FLASH TRACE == %s\n", text.c_str());
    std::fflush(stdout);
    Give(result, nullptr);
}

void LMWSLibAE::fileExist(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "fileExist", Area());
    AEString path;
    if (args.GetCount() != 1 || args[0] == nullptr || !args[0]->ToString(path)) {
        return Give(result, nullptr, kBadArguments);
    }
    Give(result, context.NewBoolean(LMFile::Exist(path.c_str())));
}

// { LogAreaIDs: [area bits...], LogTarget: "1", SettingsFile: path, PreferenceFile: path }: the
// area bits are or-ed together, the target's low 8 bits choose console or file, and the log file
// goes into the settings file's folder.
void LMWSLibAE::setLogAreaIDsAndTargetConfig(ASContext&, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "setLogAreaIDsAndTargetConfig", Area());
    ASObject* config = args.GetCount() == 1 && args[0] != nullptr ? args[0]->AsObject() : nullptr;
    if (config == nullptr) {
        return Give(result, nullptr, kBadArguments);
    }
    unsigned areaBits = 0;
    ASValue* ids = config->GetProperty("LogAreaIDs");
    ASObject* list = ids != nullptr ? ids->AsObject() : nullptr;
    if (list != nullptr && list->IsArray()) {
        for (uint32_t i = 0, n = list->GetLength(); i < n; ++i) {
            ASValue* id = list->GetElement(i);
            if (id != nullptr) {
                areaBits |= static_cast<unsigned>(id->ToInt32());
                id->Release();
            }
        }
    }
    if (ids != nullptr) {
        ids->Release();
    }
    LMWSArg target;
    LMWSArg settings;
    ReadParam(args[0], {"LogTarget", kLMWSInt}, target);
    ReadParam(args[0], {"SettingsFile", kLMWSString}, settings);
    LMString directory = LMFile::GetFolderName(settings.text.c_str());
    if (!directory.empty() && directory[directory.length() - 1] != '/') {
        directory = directory + "/";
    }
    ConfigureLogging(areaBits, static_cast<unsigned>(target.number) & 0xFFu, directory.c_str());
    Give(result, nullptr);
}

void LMWSLibAE::getAvailableEnvLists(ASContext& context, ASObject&, Args&, ASResult& result) {
    LM_LogScope scope(kClassName, "getAvailableEnvLists", Area());
    static const char* const kNames[] = {"envNum", "endpoint"};
    static const ASShape kShape = {kNames, 2};
    const LMDeployment deployment = LMDeployment::FromEnvironment();
    const LMString* hosts[] = {&deployment.stagingApiHost, &deployment.stagingHost,
                               &deployment.productionHost};
    const int count = sizeof hosts / sizeof hosts[0];
    ASObject* list = context.NewInstance("Array");
    if (list == nullptr) {
        return Give(result, nullptr, kAccepted);
    }
    LM_LogOutput(Area(), LM_LOG_TRACE, "<<==========Available EnvLists (%d)===========\n", count);
    for (int env = 0; env < count; ++env) {
        const LMString endpoint =
            LMString("https://") +
            LMDeployment::HostHeader(*hosts[env], deployment.httpsPort, true) + "/api/";
        LM_LogOutput(Area(), LM_LOG_TRACE, "envNum: %d, endpoint:%s\n", env, endpoint.c_str());
        const ASField fields[] = {ASField::Int(env),
                                  ASField::String(endpoint.c_str(), endpoint.length())};
        ASObject* entry = context.NewShapedObject(kShape, fields);
        if (entry != nullptr) {
            const ASValue* argv[] = {entry};
            list->CallMethod("push", 1, argv);
            entry->Release();
        }
    }
    LM_LogOutput(Area(), LM_LOG_TRACE, "============Available EnvLists end============>\n");
    Give(result, list);
}

// ---- Registration ----

namespace {

class Descriptor : public ae::stagecraft::ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return LMWSLibAE::kClassID; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        using ae::stagecraft::AEHandler;
#define LMWS_TABLE_ENTRY(name, isStatic) {#name, isStatic, AEHandler(&LMWSLibAE::name)},
        const ASExtensionClass::Method table[] = {LMWS_METHOD_TABLE(LMWS_TABLE_ENTRY)};
#undef LMWS_TABLE_ENTRY
        for (const ASExtensionClass::Method& method : table) {
            methods.Append(method);
        }
    }
    bool FiresEvents() override {
        return false;
    }
    ASExtensionClass* ConstructInstance(ASContext&) override {
        return AE_NEW LMWSLibAE();
    }
    void DestructInstance(ASExtensionClass* instance) override {
        AE_DELETE(instance);
    }
};

}  // namespace

ae::stagecraft::ASExtensionClassDescriptor& LMWSLibAEDescriptor() {
    static Descriptor descriptor;
    return descriptor;
}
