// The streaming operations: where to stream a title or bonus asset from, stream status reports,
// media-director data, the titles of passes, and a few account calls only the streaming service
// offers. Thin calls on the StreamAPI proxy, never cached; they log nothing themselves (the
// callers log the outcome).
#include "LMCall.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LM_WS.h"

namespace {

using namespace LMCall;

bool ValidFileProfile(int32_t v) {
    return v >= LM1__FileProfile__UNKNOWN &&
           v <= LM1__FileProfile__HIGH_USCOREDEFINITION_USCOREREALD_USCORE3D;
}
bool ValidPlayStatus(int32_t v) {
    return v >= LM1__PlayStatus__play && v <= LM1__PlayStatus__errorinplayback;
}
bool ValidAudioSetting(int32_t v) {
    return v >= LM1__AudioSetting__Stereo_USCOREStandard &&
           v <= LM1__AudioSetting__DTS_USCOREExpress_USCORE51;
}
bool ValidBonusAssetType(int32_t v) {
    return v == LM1__BonusAssetType__Trailer;
}

bool IsEmpty(const char* text) {
    return text == nullptr || text[0] == 0;
}

// One call on the streaming service: `fill(request)` sets the request, `method` is the proxy's
// call method. Request and response are named explicitly: the proxy's methods are overloaded.
template <class Request, class Response, class Wire, class Record, class Fill>
LM_WS_Status Stream(LMWSClient& client, const char* operation, const char* name,
                    int (StreamAPI::*method)(Request*, Response&), Wire* Response::*result,
                    void (*convert)(const Wire*, Record*), Record* record, Fill fill) {
    const Operation op = {operation, name, LogLine::None};
    StreamAPI& proxy = client.m_StreamAPI;
    return Call(client, proxy, op, nullptr, result, convert, record, [&](Response& response) {
        Request request;
        fill(request);
        return (proxy.*method)(&request, response);
    });
}

const auto kLocation =
    &LMUtilities::LM1__GetStreamingAssetLocationResponse2LM_WS_StreamingAssetLocationResponse;
const auto kStandard = &LMUtilities::LM1__StandardResponse2LM_WS_StandardResponse;
const auto kTHX = &LMUtilities::LM1__THXMediaDirectorResponse2LM_WS_THXMediaDirectorResponse;

}  // namespace

extern "C" {

LM_WS_Status LM_WS_getStreamingAssetLocation(LM_WS_Handle* handle, int32_t passID,
                                             int32_t fileProfile,
                                             LM_WS_StreamingAssetLocationResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStreamingAssetLocation);
    if (client == nullptr || !ValidFileProfile(fileProfile)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__getStreamingAssetLocation, _LM1__getStreamingAssetLocationResponse>(
        *client, "getStreamingAssetLocation", "LM_WS_getStreamingAssetLocation",
        &StreamAPI::getStreamingAssetLocation,
        &_LM1__getStreamingAssetLocationResponse::getStreamingAssetLocationResult, kLocation,
        result, [&](_LM1__getStreamingAssetLocation& request) {
            request.PassID = passID;
            request.FileProfile = static_cast<LM1__FileProfile>(fileProfile);
        });
}

LM_WS_Status LM_WS_getStreamingBonusAssetLocation(LM_WS_Handle* handle, int32_t bonusAssetID,
                                                  LM_WS_StreamingAssetLocationResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStreamingAssetLocation);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__getBonusAssetLocation, _LM1__getBonusAssetLocationResponse>(
        *client, "getBonusAssetLocation", "LM_WS_getStreamingBonusAssetLocation",
        &StreamAPI::getBonusAssetLocation,
        &_LM1__getBonusAssetLocationResponse::getBonusAssetLocationResult, kLocation, result,
        [&](_LM1__getBonusAssetLocation& request) { request.BonusAssetID = bonusAssetID; });
}

LM_WS_Status LM_WS_loadLastStreamingAssetLocation(LM_WS_Handle* handle, int32_t passID,
                                                  int32_t fileProfile,
                                                  LM_WS_StreamingAssetLocationResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStreamingAssetLocation);
    if (client == nullptr || !ValidFileProfile(fileProfile)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__loadLastStreamingAssetLocationForPass,
                  _LM1__loadLastStreamingAssetLocationForPassResponse>(
        *client, "loadLastStreamingAssetLocationForPass", "LM_WS_loadLastStreamingAssetLocation",
        &StreamAPI::loadLastStreamingAssetLocationForPass,
        &_LM1__loadLastStreamingAssetLocationForPassResponse::
            loadLastStreamingAssetLocationForPassResult,
        kLocation, result, [&](_LM1__loadLastStreamingAssetLocationForPass& request) {
            request.PassID = passID;
            request.FileProfile = static_cast<LM1__FileProfile>(fileProfile);
        });
}

LM_WS_Status LM_WS_manageStreamingInstanceStatus(LM_WS_Handle* handle, const char* streamID,
                                                 int32_t status, int32_t stopTimeSeconds,
                                                 LM_WS_StandardResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStandardResponse);
    if (client == nullptr || IsEmpty(streamID) || !ValidPlayStatus(status)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__manageStreamInstanceStatus, _LM1__manageStreamInstanceStatusResponse>(
        *client, "manageStreamInstanceStatus", "LM_WS_manageStreamingInstanceStatus",
        &StreamAPI::manageStreamInstanceStatus,
        &_LM1__manageStreamInstanceStatusResponse::manageStreamInstanceStatusResult, kStandard,
        result, [&](_LM1__manageStreamInstanceStatus& request) {
            request.StreamID = const_cast<char*>(streamID);
            request.Status = static_cast<LM1__PlayStatus>(status);
            request.StopTimeSeconds = stopTimeSeconds;
        });
}

LM_WS_Status LM_WS_getTHXMediaDirector(LM_WS_Handle* handle, int32_t passID, int32_t fileProfile,
                                       int32_t audioSetting,
                                       LM_WS_THXMediaDirectorResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTHXMediaDirector);
    if (client == nullptr || !ValidFileProfile(fileProfile) || !ValidAudioSetting(audioSetting)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__getTHXMediaDirector, _LM1__getTHXMediaDirectorResponse>(
        *client, "getTHXMediaDirector", "LM_WS_getTHXMediaDirector",
        &StreamAPI::getTHXMediaDirector,
        &_LM1__getTHXMediaDirectorResponse::getTHXMediaDirectorResult, kTHX, result,
        [&](_LM1__getTHXMediaDirector& request) {
            request.PassID = passID;
            request.FileProfile = static_cast<LM1__FileProfile>(fileProfile);
            request.AudioSetting = static_cast<LM1__AudioSetting>(audioSetting);
        });
}

LM_WS_Status LM_WS_getTHXMediaDirectorBonusAsset(LM_WS_Handle* handle, int32_t bonusAssetID,
                                                 int32_t fileProfile, int32_t bonusAssetType,
                                                 LM_WS_THXMediaDirectorResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTHXMediaDirector);
    if (client == nullptr || !ValidFileProfile(fileProfile) ||
        !ValidBonusAssetType(bonusAssetType)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__getTHXMediaDirectorBonusAsset, _LM1__getTHXMediaDirectorBonusAssetResponse>(
        *client, "getTHXMediaDirectorBonusAsset", "LM_WS_getTHXMediaDirectorBonusAsset",
        &StreamAPI::getTHXMediaDirectorBonusAsset,
        &_LM1__getTHXMediaDirectorBonusAssetResponse::getTHXMediaDirectorBonusAssetResult, kTHX,
        result, [&](_LM1__getTHXMediaDirectorBonusAsset& request) {
            request.BonusAssetID = bonusAssetID;
            request.FileProfile = static_cast<LM1__FileProfile>(fileProfile);
            request.BonusAssetType = static_cast<LM1__BonusAssetType>(bonusAssetType);
        });
}

LM_WS_Status LM_WS_getTitleListingsPurchasedForPasses(
    LM_WS_Handle* handle, const int32_t* passes, int32_t count,
    LM_WS_TitlesPurchasedForPassesResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTitlesPurchasedForPasses);
    if (client == nullptr || count <= 0 || passes == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    LM1__ArrayOfInt ids;
    ids.__sizeint = count;
    ids.int_ = const_cast<int*>(passes);
    return Stream<_LM1__getTitleListingsPurchasedForPasses,
                  _LM1__getTitleListingsPurchasedForPassesResponse>(
        *client, "getTitleListingsPurchasedForPasses", "LM_WS_getTitleListingsPurchasedForPasses",
        &StreamAPI::getTitleListingsPurchasedForPasses,
        &_LM1__getTitleListingsPurchasedForPassesResponse::getTitleListingsPurchasedForPassesResult,
        &LMUtilities::
            LM1__ArrayOfTitleListingPurchasedForPass2LM_WS_TitlesPurchasedForPassesResponse,
        result, [&](_LM1__getTitleListingsPurchasedForPasses& request) { request.Passes = &ids; });
}

LM_WS_Status LM_WS_getBillingInfoAndPPCBalance(LM_WS_Handle* handle,
                                               LM_WS_BillingInfoAndPPCBalanceResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultBillingInfoAndPPCBalance);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__getBillingInfoAndPPCBalance, _LM1__getBillingInfoAndPPCBalanceResponse>(
        *client, "getBillingInfoAndPPCBalance", "LM_WS_getBillingInfoAndPPCBalance",
        &StreamAPI::getBillingInfoAndPPCBalance,
        &_LM1__getBillingInfoAndPPCBalanceResponse::getBillingInfoAndPPCBalanceResult,
        &LMUtilities::LM1__BillingInfoAndPPCBalanceResponse2LM_WS_BillingInfoAndPPCBalanceResponse,
        result, [](_LM1__getBillingInfoAndPPCBalance&) {});
}

LM_WS_Status LM_WS_removeAllMyPurchases(LM_WS_Handle* handle, const char* password,
                                        LM_WS_StandardResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStandardResponse);
    if (client == nullptr || IsEmpty(password)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__removeAllMyPurchases, _LM1__removeAllMyPurchasesResponse>(
        *client, "removeAllMyPurchases", "LM_WS_removeAllMyPurchases",
        &StreamAPI::removeAllMyPurchases,
        &_LM1__removeAllMyPurchasesResponse::removeAllMyPurchasesResult, kStandard, result,
        [&](_LM1__removeAllMyPurchases& request) {
            request.password = const_cast<char*>(password);
        });
}

LM_WS_Status LM_WS_ReturnError(LM_WS_Handle* handle, LM_WS_StandardResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStandardResponse);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    return Stream<_LM1__ReturnError, _LM1__ReturnErrorResponse>(
        *client, "ReturnError", "LM_WS_ReturnError", &StreamAPI::ReturnError,
        &_LM1__ReturnErrorResponse::ReturnErrorResult, kStandard, result,
        [](_LM1__ReturnError&) {});
}

}  // extern "C"
