// The account operations: device authorisation, the auth token, the wishlist and its cached
// flags, purchases and purchase checks, billing, gift certificates, adult verification,
// configuration, country and audio default, and the order tax.
//
// They follow the call pattern of LMCall::Call without reading the service cache; the ones that
// change the account drop the cached user data they affect once the service has accepted the
// change (response code 0), and leave everything as it was otherwise.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "LMCall.h"
#include "LMLog.h"
#include "LMSoapLogPlugin.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LM_WS.h"

namespace {

using namespace LMCall;

const uint32_t kUserData = LM_WS_CacheParam::UserData;

// The cache manager when the client keeps user data, else null.
CacheMgr* UserDataCache(LMWSClient& client) {
    return (client.m_Params.Cache.CacheData & kUserData) != 0 ? client.m_CacheMgr : nullptr;
}

void DropUserData(LMWSClient& client, const char* name) {
    if (CacheMgr* cache = UserDataCache(client)) {
        cache->ClearUserData(LMString(name));
    }
}

void LogResult(const char* name, int value) {
    LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, result:%d\n", name, value);
}

bool ValidTitleType(int32_t v) {
    return v >= LM1__TitleType__any && v <= LM1__TitleType__movies;
}
bool ValidAudioSetting(int32_t v) {
    return v >= LM1__AudioSetting__Stereo_USCOREStandard &&
           v <= LM1__AudioSetting__DTS_USCOREExpress_USCORE51;
}

// The standard-response operations of the wishlist: the same call under three names, each
// keeping the cached wishlist in step when the service accepted the change. `send(proxy,
// request, response)` calls the operation on whichever proxy the facade picks.
template <class Request, class Response, class Fill, class Send, class Cached>
LM_WS_Status WishlistAction(LM_WS_Handle* handle, const Operation& op,
                            LM1__WishListActionResponse* Response::*result, Fill fill, Send send,
                            Cached cached, LM_WS_StandardResponse* record) {
    LMWSClient* client = LMWSClient::Begin(handle, record, LM_WS_ResultStandardResponse);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    auto after = [&](const LM1__WishListActionResponse&) {
        if (CacheMgr* cache = UserDataCache(*client)) {
            cache->ClearUserData(LMString(LMCacheNames::kWishlistItems));
            cached(*cache);
        }
    };
    return OnFacade(*client, [&](auto& proxy) {
        return Call(
            *client, proxy, op, nullptr, result,
            &LMUtilities::LM1__WishListActionResponse2LM_WS_StandardResponse, record,
            [&](Response& response) {
                Request request;
                fill(request);
                return send(proxy, request, response);
            },
            after);
    });
}

}  // namespace

extern "C" {

LM_WS_Status LM_WS_getConfig(LM_WS_Handle* handle, LM_WS_ConfigResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultConfig);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getConfig", "LM_WS_getConfig", LogLine::RetAndCode};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, nullptr, &_LM1__getConfigResponse::getConfigResult,
                    &LMUtilities::LM1__GetConfigResponse2LM_WS_ConfigResponse, result,
                    [&](_LM1__getConfigResponse& response) {
                        _LM1__getConfig request;
                        return proxy.getConfig(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_authorizeDevice(LM_WS_Handle* handle, int32_t pin,
                                   LM_WS_AuthorizeDeviceResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultAuthorizeDevice);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"authorizeDevice", "LM_WS_authorizeDevice", LogLine::RetAndCode, true};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(
            *client, proxy, op, nullptr, &_LM1__authorizeDeviceResponse::authorizeDeviceResult,
            &LMUtilities::LM1__AuthorizeDeviceResponse2LM_WS_AuthorizeDeviceResponse, result,
            [&](_LM1__authorizeDeviceResponse& response) {
                _LM1__authorizeDevice request;
                request.Pin = pin;
                return proxy.authorizeDevice(&request, response);
            },
            [&](const LM1__AuthorizeDeviceResponse& answer) {
                client->m_Params.AuthToken =
                    LMString(answer.AuthToken != nullptr ? answer.AuthToken : "");
                DropUserData(*client, LMCacheNames::kAllUserData);
            });
    });
}

LM_WS_Status LM_WS_deactivateDevice(LM_WS_Handle* handle, LM_WS_StandardResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStandardResponse);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"deactivateDevice", "LM_WS_deactivateDevice", LogLine::RetAndCode};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(
            *client, proxy, op, nullptr, &_LM1__deactivateDeviceResponse::deactivateDeviceResult,
            &LMUtilities::LM1__StandardResponse2LM_WS_StandardResponse, result,
            [&](_LM1__deactivateDeviceResponse& response) {
                _LM1__deactivateDevice request;
                return proxy.deactivateDevice(&request, response);
            },
            [&](const LM1__StandardResponse&) {
                client->m_Params.AuthToken = LMString("");
                DropUserData(*client, LMCacheNames::kAllUserData);
            });
    });
}

LM_WS_Status LM_WS_checkAuthToken(LM_WS_Handle* handle, uint8_t* valid) {
    if (valid == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *valid = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    int rc = OnFacade(*client, [&](auto& proxy) {
        return ValueCall<_LM1__checkAuthTokenResponse>(
            proxy, "checkAuthToken",
            [&](_LM1__checkAuthTokenResponse& response) {
                _LM1__checkAuthToken request;
                return proxy.checkAuthToken(&request, response);
            },
            [&](const _LM1__checkAuthTokenResponse& response) {
                *valid = response.checkAuthTokenResult ? 1 : 0;
            });
    });
    // Only a change of validity drops the user data; the remembered flag starts false, so the
    // first check that finds a valid token drops it once.
    if (rc == SOAP_OK && UserDataCache(*client) != nullptr &&
        (*valid != 0) != client->m_AuthTokenValid) {
        client->m_AuthTokenValid = *valid != 0;
        DropUserData(*client, LMCacheNames::kAllUserData);
    }
    LogResult("LM_WS_checkAuthToken", *valid);
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_doPurchaseSavedBilling(LM_WS_Handle* handle, int32_t skuID,
                                          const char* ipAddress, uint8_t usePrePaidFunds,
                                          LM_WS_PurchaseResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultPurchase);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"doPurchaseSavedbilling", "LM_WS_doPurchaseSavedBilling",
                          LogLine::RetAndCode, true};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(
            *client, proxy, op, nullptr,
            &_LM1__doPurchaseSavedbillingResponse::doPurchaseSavedbillingResult,
            &LMUtilities::LM1__PurchaseResponse2LM_WS_PurchaseResponse, result,
            [&](_LM1__doPurchaseSavedbillingResponse& response) {
                _LM1__doPurchaseSavedbilling request;
                request.SkuID = skuID;
                request.IPAddress = const_cast<char*>(ipAddress);
                request.UsePrePaidFunds = const_cast<char*>(usePrePaidFunds ? "yes" : "no");
                return proxy.doPurchaseSavedbilling(&request, response);
            },
            [&](const LM1__PurchaseResponse&) {
                // A bought title leaves the wishlist on the service's side.
                if (CacheMgr* cache = UserDataCache(*client)) {
                    cache->ClearUserData(LMString(LMCacheNames::kWishlistItems));
                    cache->ClearWishlistFlags();
                }
            });
    });
}

LM_WS_Status LM_WS_getWishlistItems(LM_WS_Handle* handle, int32_t sortOrder, LM_WS_Page page,
                                    int32_t titleType, LM_WS_WishlistItemsResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultWishlistItems);
    if (client == nullptr || !ValidTitleType(titleType)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getWishlistItems", "LM_WS_getWishlistItems", LogLine::RetAndCode};
    CacheSlot slot = UserSlot(LMCacheNames::kWishlistItems);
    SetKey(slot, "%d,%d,%d,%d", sortOrder, page.CurrentPageNumber, page.ItemsPerPage, titleType);
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, &slot,
                    &_LM1__getWishlistItemsResponse::getWishlistItemsResult,
                    &LMUtilities::LM1__GetWishlistItemsResponse2LM_WS_WishlistItemsResponse, result,
                    [&](_LM1__getWishlistItemsResponse& response) {
                        _LM1__getWishlistItems request;
                        request.sortOrder = sortOrder;
                        request.CurrentPageNumber = page.CurrentPageNumber;
                        request.ItemsPerPage = page.ItemsPerPage;
                        request.TitleType = static_cast<LM1__TitleType>(titleType);
                        return proxy.getWishlistItems(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_addItemToWishlist(LM_WS_Handle* handle, int32_t titleID,
                                     LM_WS_StandardResponse* result) {
    const Operation op = {"addItemToWishlist", "LM_WS_addItemToWishlist", LogLine::RetAndCode};
    return WishlistAction<_LM1__addItemToWishlist>(
        handle, op, &_LM1__addItemToWishlistResponse::addItemToWishlistResult,
        [&](_LM1__addItemToWishlist& request) { request.TitleID = titleID; },
        [](auto& proxy, auto& request, auto& response) {
            return proxy.addItemToWishlist(&request, response);
        },
        [&](CacheMgr& cache) { cache.SetWishlistFlag(titleID, true); }, result);
}

LM_WS_Status LM_WS_removeItemFromWishlist(LM_WS_Handle* handle, int32_t titleID,
                                          LM_WS_StandardResponse* result) {
    const Operation op = {"removeItemFromWishList", "LM_WS_removeItemFromWishlist",
                          LogLine::RetAndCode};
    return WishlistAction<_LM1__removeItemFromWishList>(
        handle, op, &_LM1__removeItemFromWishListResponse::removeItemFromWishListResult,
        [&](_LM1__removeItemFromWishList& request) { request.TitleID = titleID; },
        [](auto& proxy, auto& request, auto& response) {
            return proxy.removeItemFromWishList(&request, response);
        },
        [&](CacheMgr& cache) { cache.SetWishlistFlag(titleID, false); }, result);
}

LM_WS_Status LM_WS_removeAllItemsFromWishlist(LM_WS_Handle* handle,
                                              LM_WS_StandardResponse* result) {
    const Operation op = {"removeAllItemsFromWishList", "LM_WS_removeAllItemsFromWishlist",
                          LogLine::RetAndCode};
    return WishlistAction<_LM1__removeAllItemsFromWishList>(
        handle, op, &_LM1__removeAllItemsFromWishListResponse::removeAllItemsFromWishListResult,
        [](_LM1__removeAllItemsFromWishList&) {},
        [](auto& proxy, auto& request, auto& response) {
            return proxy.removeAllItemsFromWishList(&request, response);
        },
        [](CacheMgr& cache) { cache.ClearWishlistFlags(); }, result);
}

LM_WS_Status LM_WS_checkTitleInWishlist(LM_WS_Handle* handle, int32_t titleID,
                                        uint8_t* inWishlist) {
    if (inWishlist == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *inWishlist = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    bool flag = false;
    if (client->m_CacheMgr != nullptr && client->m_CacheMgr->GetWishlistFlag(titleID, flag)) {
        *inWishlist = flag ? 1 : 0;
        return LM_WS_OK;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    int rc = ValueCall<_LM1__getTitleListingResponse>(
        proxy, "getTitleListing",
        [&](_LM1__getTitleListingResponse& response) {
            _LM1__getTitleListing request;
            request.TitleID = titleID;
            return proxy.getTitleListing(&request, response);
        },
        [&](const _LM1__getTitleListingResponse& response) {
            const LM1__TitleListingResponse* answer = response.getTitleListingResult;
            if (answer == nullptr) {
                return;  // no answer: nothing to tell, nothing to remember
            }
            *inWishlist = answer->IsAvailInUserWishList ? 1 : 0;
            // Only a flag the service vouched for (response code 0) is remembered.
            if (answer->ResponseCode == 0) {
                if (CacheMgr* cache = UserDataCache(*client)) {
                    cache->SetWishlistFlag(titleID, *inWishlist != 0);
                }
            }
        });
    LogResult("LM_WS_checkTitleInWishlist", *inWishlist);
    // Like the other flag checks, the status is the exchange's alone: a response code is not a
    // failure of the question "is it in the wishlist", whose answer is in the flag.
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_checkTitlesInWishlist(LM_WS_Handle* handle, const int32_t* titleIDs,
                                         int32_t count, int32_t titleType, uint8_t* flags) {
    if (count < 0 || (count > 0 && (titleIDs == nullptr || flags == nullptr)) ||
        !ValidTitleType(titleType)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    if (count > 0) {
        memset(flags, 0, static_cast<size_t>(count));
    }
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    // The whole wishlist, page by page, then one flag per title asked about.
    const int32_t kPerPage = 100;
    std::vector<int> listed;
    int rc = SOAP_OK;
    int code = 0;
    for (int32_t pageNumber = 1, pages = 1; rc == SOAP_OK && code == 0 && pageNumber <= pages;
         ++pageNumber) {
        rc = OnFacade(*client, [&](auto& proxy) {
            return ValueCall<_LM1__getWishlistItemsResponse>(
                proxy, "getWishlistItems",
                [&](_LM1__getWishlistItemsResponse& response) {
                    _LM1__getWishlistItems request;
                    request.sortOrder = 0;
                    request.CurrentPageNumber = pageNumber;
                    request.ItemsPerPage = kPerPage;
                    request.TitleType = static_cast<LM1__TitleType>(titleType);
                    return proxy.getWishlistItems(&request, response);
                },
                [&](const _LM1__getWishlistItemsResponse& response) {
                    const LM1__GetWishlistItemsResponse* answer = response.getWishlistItemsResult;
                    if (answer == nullptr) {
                        code = -1;
                        return;
                    }
                    code = answer->ResponseCode;
                    pages = answer->TotalPages;
                    const LM1__ArrayOfTitleListingPurchased* titles = answer->Titles;
                    for (int i = 0; titles != nullptr && i < titles->__sizeTitleListingPurchased;
                         ++i) {
                        if (titles->TitleListingPurchased[i] != nullptr) {
                            listed.push_back(titles->TitleListingPurchased[i]->TitleID);
                        }
                    }
                });
        });
    }
    std::vector<int> ids(titleIDs, titleIDs + count);
    std::vector<bool> found(ids.size(), false);
    if (rc == SOAP_OK && code == 0) {
        for (size_t i = 0; i < ids.size(); ++i) {
            found[i] = std::find(listed.begin(), listed.end(), ids[i]) != listed.end();
            flags[i] = found[i] ? 1 : 0;
        }
        if (CacheMgr* cache = UserDataCache(*client)) {
            cache->SetWishlistFlags(ids, found);
        }
    }
    LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, ret:%d\n", "LM_WS_checkTitlesInWishlist",
                 rc);
    return LMUtilities::MakeStatus(rc, code, nullptr);
}

LM_WS_Status LM_WS_checkForPurchasedTitle(LM_WS_Handle* handle, int32_t titleID,
                                          uint8_t* purchased) {
    if (purchased == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *purchased = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    // The two services name this question differently.
    int rc = OnFacade(*client, [&](auto& proxy) {
        if constexpr (StreamDownloadAPI::IsDownloadAPI<decltype(proxy)>) {
            return ValueCall<_LM1__checkForPurchasedTitleResponse>(
                proxy, "checkForPurchasedTitle",
                [&](_LM1__checkForPurchasedTitleResponse& response) {
                    _LM1__checkForPurchasedTitle request;
                    request.TitleID = titleID;
                    return proxy.checkForPurchasedTitle(&request, response);
                },
                [&](const _LM1__checkForPurchasedTitleResponse& response) {
                    *purchased = response.checkForPurchasedTitleResult ? 1 : 0;
                });
        } else {
            return ValueCall<_LM1__checkForPurchasedStreamByTitleIDResponse>(
                proxy, "checkForPurchasedStreamByTitleID",
                [&](_LM1__checkForPurchasedStreamByTitleIDResponse& response) {
                    _LM1__checkForPurchasedStreamByTitleID request;
                    request.TitleID = titleID;
                    return proxy.checkForPurchasedStreamByTitleID(&request, response);
                },
                [&](const _LM1__checkForPurchasedStreamByTitleIDResponse& response) {
                    *purchased = response.checkForPurchasedStreamByTitleIDResult ? 1 : 0;
                });
        }
    });
    LogResult("LM_WS_checkForPurchasedTitle", *purchased);
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_checkForPurchasedSku(LM_WS_Handle* handle, int32_t skuID, uint8_t* purchased) {
    if (purchased == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *purchased = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    StreamAPI& proxy = client->m_StreamAPI;
    int rc = ValueCall<_LM1__checkForPurchasedStreamResponse>(
        proxy, "checkForPurchasedStream",
        [&](_LM1__checkForPurchasedStreamResponse& response) {
            _LM1__checkForPurchasedStream request;
            request.SkuID = skuID;
            return proxy.checkForPurchasedStream(&request, response);
        },
        [&](const _LM1__checkForPurchasedStreamResponse& response) {
            *purchased = response.checkForPurchasedStreamResult ? 1 : 0;
        });
    LogResult("LM_WS_checkForPurchasedSku", *purchased);
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_checkRentalExpiration(LM_WS_Handle* handle, int32_t passID,
                                         LM_WS_RentalExpirationResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultRentalExpiration);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"checkRentalExpiration", "LM_WS_checkRentalExpiration",
                          LogLine::RetAndCode};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, nullptr,
                    &_LM1__checkRentalExpirationResponse::checkRentalExpirationResult,
                    &LMUtilities::LM1__CheckRentalExpirationResponse2LM_WS_RentalExpirationResponse,
                    result, [&](_LM1__checkRentalExpirationResponse& response) {
                        _LM1__checkRentalExpiration request;
                        request.PassId = passID;
                        return proxy.checkRentalExpiration(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_checkAdultVerificationEnabled(LM_WS_Handle* handle,
                                                 LM_WS_StandardResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStandardResponse);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"checkAdultVerificationEnabled", "LM_WS_checkAdultVerificationEnabled",
                          LogLine::RetAndCode};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(
            *client, proxy, op, nullptr,
            &_LM1__checkAdultVerificationEnabledResponse::checkAdultVerificationEnabledResult,
            &LMUtilities::LM1__CheckAdultVerificationEnabledResponse2LM_WS_StandardResponse, result,
            [&](_LM1__checkAdultVerificationEnabledResponse& response) {
                _LM1__checkAdultVerificationEnabled request;
                return proxy.checkAdultVerificationEnabled(&request, response);
            });
    });
}

LM_WS_Status LM_WS_checkAdultVerificationPin(LM_WS_Handle* handle, int32_t pin,
                                             LM_WS_AdultVerificationPinResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultAdultVerificationPin);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"checkAdultVerificationPin", "LM_WS_checkAdultVerificationPin",
                          LogLine::RetAndCode};
    char text[20];
    snprintf(text, sizeof(text), "%04d", pin);
    // The PIN is neither stored nor logged: the raw exchange stays out of the log too.
    LM_WS_Status status = OnFacade(*client, [&](auto& proxy) {
        LMSoapLogPlugin::SetQuiet(proxy.soap, true);
        LM_WS_Status s = Call(
            *client, proxy, op, nullptr,
            &_LM1__checkAdultVerificationPinResponse::checkAdultVerificationPinResult,
            &LMUtilities::LM1__CheckAdultVerificationPinResponse2LM_WS_AdultVerificationPinResponse,
            result, [&](_LM1__checkAdultVerificationPinResponse& response) {
                _LM1__checkAdultVerificationPin request;
                request.Pin = text;
                return proxy.checkAdultVerificationPin(&request, response);
            });
        LMSoapLogPlugin::SetQuiet(proxy.soap, false);
        return s;
    });
    memset(text, 0, sizeof(text));  // the PIN does not outlive the call
    return status;
}

LM_WS_Status LM_WS_assignGiftCertificateToUser(LM_WS_Handle* handle, const char* code,
                                               LM_WS_GiftCertificateResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultGiftCertificate);
    if (client == nullptr || code == nullptr || code[0] == 0) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"assignGiftCertificateToUser", "LM_WS_assignGiftCertificateToUser",
                          LogLine::RetAndCode, true};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, nullptr,
                    &_LM1__assignGiftCertificateToUserResponse::assignGiftCertificateToUserResult,
                    &LMUtilities::LM1__GiftCertificateResponse2LM_WS_GiftCertificateResponse,
                    result, [&](_LM1__assignGiftCertificateToUserResponse& response) {
                        _LM1__assignGiftCertificateToUser request;
                        request.GiftCertificateCode = const_cast<char*>(code);
                        return proxy.assignGiftCertificateToUser(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_getEmailAddress(LM_WS_Handle* handle, LM_WS_EmailAddressResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultEmailAddress);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getEmailAddress", "LM_WS_getEmailAddress", LogLine::RetAndCode};
    CacheSlot slot =
        UserSlot(LMCacheNames::kEmailAddress);  // one answer per account: no argument text
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, &slot,
                    &_LM1__getEmailAddressResponse::getEmailAddressResult,
                    &LMUtilities::LM1__GetEmailAddressResponse2LM_WS_EmailAddressResponse, result,
                    [&](_LM1__getEmailAddressResponse& response) {
                        _LM1__getEmailAddress request;
                        return proxy.getEmailAddress(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_getBillingInfo(LM_WS_Handle* handle, LM_WS_BillingInfoResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultBillingInfo);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getBillingInfo", "LM_WS_getBillingInfo", LogLine::RetAndCode, true};
    CacheSlot slot = UserSlot(LMCacheNames::kBillingInfo);
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, &slot, &_LM1__getBillingInfoResponse::getBillingInfoResult,
                    &LMUtilities::LM1__BillingInfoResponse2LM_WS_BillingInfoResponse, result,
                    [&](_LM1__getBillingInfoResponse& response) {
                        _LM1__getBillingInfo request;
                        return proxy.getBillingInfo(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_getSettingsPageInfo(LM_WS_Handle* handle, LM_WS_SettingsPageInfo* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultSettingsPageInfo);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getSettingsPageInfo", "LM_WS_getSettingsPageInfo", LogLine::RetAndCode};
    CacheSlot slot = UserSlot(LMCacheNames::kSettingsPageInfo);
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, &slot,
                    &_LM1__getSettingsPageInfoResponse::getSettingsPageInfoResult,
                    &LMUtilities::LM1__SettingsPageInfo2LM_WS_SettingsPageInfo, result,
                    [&](_LM1__getSettingsPageInfoResponse& response) {
                        _LM1__getSettingsPageInfo request;
                        return proxy.getSettingsPageInfo(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_getPrePaidCardBalance(LM_WS_Handle* handle,
                                         LM_WS_PPCardBalanceResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultPPCardBalance);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"showPrePaidCardBalance", "LM_WS_getPrePaidCardBalance",
                          LogLine::RetAndCode};
    return OnFacade(*client, [&](auto& proxy) {
        return Call(*client, proxy, op, nullptr,
                    &_LM1__showPrePaidCardBalanceResponse::showPrePaidCardBalanceResult,
                    &LMUtilities::LM1__PPCardBalanceResponse2LM_WS_PPCardBalanceResponse, result,
                    [&](_LM1__showPrePaidCardBalanceResponse& response) {
                        _LM1__showPrePaidCardBalance request;
                        return proxy.showPrePaidCardBalance(&request, response);
                    });
    });
}

LM_WS_Status LM_WS_getCountryID(LM_WS_Handle* handle, int32_t* countryID) {
    if (countryID == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *countryID = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    int rc = OnFacade(*client, [&](auto& proxy) {
        return ValueCall<_LM1__GetCountryIDResponse>(
            proxy, "GetCountryID",
            [&](_LM1__GetCountryIDResponse& response) {
                _LM1__GetCountryID request;
                return proxy.GetCountryID(&request, response);
            },
            [&](const _LM1__GetCountryIDResponse& response) {
                *countryID = response.GetCountryIDResult;
            });
    });
    LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, ret:%d,countryid:%d\n",
                 "LM_WS_getCountryID", rc, *countryID);
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_setAudioDefaultProperty(LM_WS_Handle* handle, int32_t audioSetting,
                                           LM_WS_StandardResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultStandardResponse);
    if (client == nullptr || !ValidAudioSetting(audioSetting)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"setAudioDefaultProperty", "LM_WS_setAudioDefaultProperty",
                          LogLine::RetAndCode};
    StreamAPI& proxy = client->m_StreamAPI;
    return Call(*client, proxy, op, nullptr,
                &_LM1__setAudioDefaultPropertyResponse::setAudioDefaultPropertyResult,
                &LMUtilities::LM1__StandardResponse2LM_WS_StandardResponse, result,
                [&](_LM1__setAudioDefaultPropertyResponse& response) {
                    _LM1__setAudioDefaultProperty request;
                    request.AudioSetting = static_cast<LM1__AudioSetting>(audioSetting);
                    return proxy.setAudioDefaultProperty(&request, response);
                });
}

LM_WS_Status LM_WS_getAudioDefaultProperty(LM_WS_Handle* handle, int32_t* audioSetting) {
    if (audioSetting == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *audioSetting = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    StreamAPI& proxy = client->m_StreamAPI;
    int rc = ValueCall<_LM1__getAudioDefaultPropertyResponse>(
        proxy, "getAudioDefaultProperty",
        [&](_LM1__getAudioDefaultPropertyResponse& response) {
            _LM1__getAudioDefaultProperty request;
            return proxy.getAudioDefaultProperty(&request, response);
        },
        [&](const _LM1__getAudioDefaultPropertyResponse& response) {
            *audioSetting = response.getAudioDefaultPropertyResult;
        });
    LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, ret:%d,audioprofile:%d\n",
                 "LM_WS_getAudioDefaultProperty", rc, *audioSetting);
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_calcOrderTax(LM_WS_Handle* handle, int32_t skuID,
                                LM_WS_CalcOrderTaxResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultCalcOrderTax);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"calcOrderTax", "LM_WS_calcOrderTax", LogLine::None, true};
    StreamAPI& proxy = client->m_StreamAPI;
    return Call(*client, proxy, op, nullptr, &_LM1__calcOrderTaxResponse::calcOrderTaxResult,
                &LMUtilities::LM1__CalcOrderTaxResponse2LM_WS_CalcOrderTaxResponse, result,
                [&](_LM1__calcOrderTaxResponse& response) {
                    _LM1__calcOrderTax request;
                    request.SKUID = skuID;
                    return proxy.calcOrderTax(&request, response);
                });
}

}  // extern "C"
