// The catalogue operations: navigation, title pages, episodes, translations, search,
// recommendations and the account's videos.
//
// They share the calling pattern of LMCall::Call, most of them with a cache slot: a request
// already answered is answered from the cache.
#include <cstring>

#include "LMCall.h"
#include "LMLog.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "LM_WS.h"

namespace {

using namespace LMCall;

// The service's enumerations accept only their listed values; anything else would fail while
// the request is written, so it is rejected as a bad argument before any work.
bool ValidPurchaseType(int32_t v) {
    return v >= LM1__PurchaseType__rent && v <= LM1__PurchaseType__any;
}
bool ValidTitleType(int32_t v) {
    return v >= LM1__TitleType__any && v <= LM1__TitleType__movies;
}
bool ValidWatchStatus(int32_t v) {
    return v >= LM1__WatchStatusFilter__WatchNow && v <= LM1__WatchStatusFilter__Undefined;
}

const char* TextOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

// The single-id operations differ only in their names, types and request member. `Owner` is the
// generated proxy class that declares `method`, a base of `Proxy`.
template <class Proxy, class Owner, class Request, class Response, class Wire, class Record>
LM_WS_Status ById(LMWSClient& client, Proxy& proxy, const Operation& op, const char* cacheName,
                  int (Owner::*method)(Request*, Response&), int Request::*idMember, int32_t id,
                  Wire* Response::*result, void (*convert)(const Wire*, Record*), Record* record) {
    CacheSlot slot = ServiceSlot(cacheName);
    SetKey(slot, "%d", id);
    return Call(client, proxy, op, &slot, result, convert, record, [&](Response& response) {
        Request request;
        request.*idMember = id;
        return (proxy.*method)(&request, response);
    });
}

// searchForTitle and searchForTitleDetail: the same request and answer under two names.
template <class Request, class Response>
LM_WS_Status Search(LM_WS_Handle* handle, const Operation& op, const char* cacheName,
                    int (RealTimeBrowse::*method)(Request*, Response&),
                    LM1__GetTitlesResponse* Response::*result, LM_WS_Page page,
                    int32_t purchaseType, int32_t titleType, const char* query,
                    LM_WS_TitlesResponse* record) {
    LMWSClient* client = LMWSClient::Begin(handle, record, LM_WS_ResultTitles);
    if (client == nullptr || !ValidPurchaseType(purchaseType) || !ValidTitleType(titleType)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    CacheSlot slot = ServiceSlot(cacheName);
    SetKey(slot, "%d,%d,%d,%d,%s", page.CurrentPageNumber, page.ItemsPerPage, purchaseType,
           titleType, TextOrEmpty(query));
    return Call(*client, proxy, op, &slot, result,
                &LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse, record,
                [&](Response& response) {
                    Request request;
                    request.Query = const_cast<char*>(query);
                    request.ItemsPerPage = page.ItemsPerPage;
                    request.CurrentPageNumber = page.CurrentPageNumber;
                    request.PurchaseType = static_cast<LM1__PurchaseType>(purchaseType);
                    request.TitleType = static_cast<LM1__TitleType>(titleType);
                    return (proxy.*method)(&request, response);
                });
}

}  // namespace

extern "C" {

LM_WS_Status LM_WS_getNavigation(LM_WS_Handle* handle, LM_WS_Navigation* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultNavigation);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    const Operation op = {"getNavigation", "LM_WS_getNavigation", LogLine::Ret};
    CacheSlot slot =
        ServiceSlot(LMCacheNames::kNavigation);  // one tree: the argument text stays empty
    return Call(*client, proxy, op, &slot, &_LM1__getNavigationResponse::getNavigationResult,
                &LMUtilities::LM1__GenreRequest2LM_WS_Navigation, result,
                [&](_LM1__getNavigationResponse& response) {
                    _LM1__getNavigation request;
                    return proxy.getNavigation(&request, response);
                });
}

LM_WS_Status LM_WS_getGenreLabel(LM_WS_Handle* handle, int32_t genreID,
                                 LM_WS_GenreLabelResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultGenreLabel);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    const Operation op = {"getGenreLabel", "LM_WS_getGenreLabel", LogLine::RetAndCode};
    return Call(*client, proxy, op, nullptr, &_LM1__getGenreLabelResponse::getGenreLabelResult,
                &LMUtilities::LM1__GetGenreLabelResponse2LM_WS_GenreLabelResponse, result,
                [&](_LM1__getGenreLabelResponse& response) {
                    _LM1__getGenreLabel request;
                    request.GenreID = genreID;
                    return proxy.getGenreLabel(&request, response);
                });
}

LM_WS_Status LM_WS_getTitles(LM_WS_Handle* handle, int32_t genreID, LM_WS_Page page,
                             int32_t purchaseType, LM_WS_TitlesResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTitles);
    if (client == nullptr || !ValidPurchaseType(purchaseType)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    const Operation op = {"getTitlesByNavigation", "LM_WS_getTitles", LogLine::RetAndCode};
    CacheSlot slot = ServiceSlot(LMCacheNames::kTitles);
    SetKey(slot, "%d,%d,%d,%d", genreID, page.CurrentPageNumber, page.ItemsPerPage, purchaseType);
    return Call(*client, proxy, op, &slot,
                &_LM1__getTitlesByNavigationResponse::getTitlesByNavigationResult,
                &LMUtilities::LM1__GetTitlesResponse2LM_WS_TitlesResponse, result,
                [&](_LM1__getTitlesByNavigationResponse& response) {
                    _LM1__getTitlesByNavigation request;
                    request.GenreID = genreID;
                    request.CurrentPageNumber = page.CurrentPageNumber;
                    request.ItemsPerPage = page.ItemsPerPage;
                    request.PurchaseType = static_cast<LM1__PurchaseType>(purchaseType);
                    return proxy.getTitlesByNavigation(&request, response);
                });
}

LM_WS_Status LM_WS_getTitlesByGenreIDs(LM_WS_Handle* handle, const int32_t* genreIDs, int32_t count,
                                       LM_WS_Page page, int32_t purchaseType,
                                       LM_WS_TitlesResponseArray* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTitlesArray);
    if (client == nullptr || count < 0 || (count > 0 && genreIDs == nullptr) ||
        !ValidPurchaseType(purchaseType)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    const Operation op = {"getTitlesByGenreArray", "LM_WS_getTitlesByGenreIDs",
                          LogLine::RetAndCode};
    return Call(*client, proxy, op, nullptr,
                &_LM1__getTitlesByGenreArrayResponse::getTitlesByGenreArrayResult,
                &LMUtilities::LM1__ArrayOfGetTitlesResponse2LM_WS_TitlesResponseArray, result,
                [&](_LM1__getTitlesByGenreArrayResponse& response) {
                    LM1__ArrayOfInt ids;
                    ids.__sizeint = count;
                    ids.int_ = const_cast<int*>(genreIDs);
                    _LM1__getTitlesByGenreArray request;
                    request.GenreIDs = &ids;
                    request.CurrentPageNumber = page.CurrentPageNumber;
                    request.ItemsPerPage = page.ItemsPerPage;
                    request.PurchaseType = static_cast<LM1__PurchaseType>(purchaseType);
                    return proxy.getTitlesByGenreArray(&request, response);
                });
}

LM_WS_Status LM_WS_getTitleListing(LM_WS_Handle* handle, int32_t titleID,
                                   LM_WS_TitleListingResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTitleListingResponse);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getTitleListing", "LM_WS_getTitleListing", LogLine::RetAndCode};
    return ById(*client, client->m_RealTimeBrowse, op, LMCacheNames::kTitleListing,
                &RealTimeBrowse::getTitleListing, &_LM1__getTitleListing::TitleID, titleID,
                &_LM1__getTitleListingResponse::getTitleListingResult,
                &LMUtilities::LM1__TitleListingResponse2LM_WS_TitleListingResponse, result);
}

LM_WS_Status LM_WS_getTvEpisodeListing(LM_WS_Handle* handle, int32_t episodeID,
                                       LM_WS_TitleListingResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTitleListingResponse);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getTvEpisodeListing", "LM_WS_getTvEpisodeListing", LogLine::RetAndCode};
    return ById(*client, client->m_RealTimeBrowse, op, LMCacheNames::kTvEpisodeListing,
                &RealTimeBrowse::getTvEpisodeListing, &_LM1__getTvEpisodeListing::EpisodeID,
                episodeID, &_LM1__getTvEpisodeListingResponse::getTvEpisodeListingResult,
                &LMUtilities::LM1__TitleListingResponse2LM_WS_TitleListingResponse, result);
}

LM_WS_Status LM_WS_getTvEpisodeListByTitleID(LM_WS_Handle* handle, int32_t titleID,
                                             LM_WS_TvEpisodeList* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTvEpisodeList);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getTvEpisodeListByTitleID", "LM_WS_getTvEpisodeListByTitleID",
                          LogLine::RetAndCode};
    return ById(*client, client->m_RealTimeBrowse, op, LMCacheNames::kTvEpisodeListByTitleID,
                &RealTimeBrowse::getTvEpisodeListByTitleID,
                &_LM1__getTvEpisodeListByTitleID::TitleID, titleID,
                &_LM1__getTvEpisodeListByTitleIDResponse::getTvEpisodeListByTitleIDResult,
                &LMUtilities::LM1__TvEpisodeList2LM_WS_TvEpisodeList, result);
}

LM_WS_Status LM_WS_getAllTvEpisodeListings(LM_WS_Handle* handle, int32_t titleID,
                                           LM_WS_TitleListingResponses* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTitleListingResponses);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getAllTvEpisodeListings", "LM_WS_getAllTvEpisodeListings",
                          LogLine::RetAndCode};
    return ById(*client, client->m_RealTimeBrowse, op, LMCacheNames::kAllTvEpisodeListings,
                &RealTimeBrowse::getAllTvEpisodeListings, &_LM1__getAllTvEpisodeListings::TitleID,
                titleID, &_LM1__getAllTvEpisodeListingsResponse::getAllTvEpisodeListingsResult,
                &LMUtilities::LM1__ArrayOfTitleListingResponse2LM_WS_TitleListingResponses, result);
}

LM_WS_Status LM_WS_translateRecboxExternalID(LM_WS_Handle* handle, const char* externalID,
                                             LM_WS_TranslateRecboxExternalIDResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTranslateRecboxExternalID);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    const Operation op = {"translateRecboxExternalId", "LM_WS_translateRecboxExternalID",
                          LogLine::RetAndCode};
    CacheSlot slot = ServiceSlot(LMCacheNames::kTranslateRecboxExternalId);
    SetKey(slot, "%s", TextOrEmpty(externalID));
    return Call(*client, proxy, op, &slot,
                &_LM1__translateRecboxExternalIdResponse::translateRecboxExternalIdResult,
                &LMUtilities::
                    LM1__TranslateRecboxExternalIDResponse2LM_WS_TranslateRecboxExternalIDResponse,
                result, [&](_LM1__translateRecboxExternalIdResponse& response) {
                    _LM1__translateRecboxExternalId request;
                    request.RecboxExternalId = const_cast<char*>(externalID);
                    return proxy.translateRecboxExternalId(&request, response);
                });
}

LM_WS_Status LM_WS_translateSkuID(LM_WS_Handle* handle, int32_t skuID,
                                  LM_WS_TranslateSkuIDResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultTranslateSkuID);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"translateSkuId", "LM_WS_translateSkuID", LogLine::RetAndCode};
    return ById(*client, client->m_RealTimeBrowse, op, LMCacheNames::kTranslateSkuId,
                &RealTimeBrowse::translateSkuId, &_LM1__translateSkuId::SkuId, skuID,
                &_LM1__translateSkuIdResponse::translateSkuIdResult,
                &LMUtilities::LM1__TranslateSkuIdResponse2LM_WS_TranslateSkuIDResponse, result);
}

LM_WS_Status LM_WS_searchForTitle(LM_WS_Handle* handle, LM_WS_Page page, int32_t purchaseType,
                                  int32_t titleType, const char* query,
                                  LM_WS_TitlesResponse* result) {
    const Operation op = {"searchForTitle", "LM_WS_searchForTitle", LogLine::RetAndCode};
    return Search<_LM1__searchForTitle, _LM1__searchForTitleResponse>(
        handle, op, LMCacheNames::kSearchForTitle, &RealTimeBrowse::searchForTitle,
        &_LM1__searchForTitleResponse::searchForTitleResult, page, purchaseType, titleType, query,
        result);
}

LM_WS_Status LM_WS_searchForTitleDetail(LM_WS_Handle* handle, LM_WS_Page page, int32_t purchaseType,
                                        int32_t titleType, const char* query,
                                        LM_WS_TitlesResponse* result) {
    const Operation op = {"searchForTitleDetail", "LM_WS_searchForTitleDetail",
                          LogLine::RetAndCode};
    return Search<_LM1__searchForTitleDetail, _LM1__searchForTitleDetailResponse>(
        handle, op, LMCacheNames::kSearchForTitleDetail, &RealTimeBrowse::searchForTitleDetail,
        &_LM1__searchForTitleDetailResponse::searchForTitleDetailResult, page, purchaseType,
        titleType, query, result);
}

LM_WS_Status LM_WS_shouldUpdateCache(LM_WS_Handle* handle, const char* utcTime,
                                     uint8_t* shouldUpdate) {
    if (shouldUpdate == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    *shouldUpdate = 0;
    LMWSClient* client = LMWSClient::From(handle);
    if (client == nullptr || utcTime == nullptr || utcTime[0] == 0) {
        return LM_WS_INVALID_ARGUMENT;
    }
    RealTimeBrowse& proxy = client->m_RealTimeBrowse;
    int rc = ValueCall<_LM1__shouldUpdateCacheResponse>(
        proxy, "shouldUpdateCache",
        [&](_LM1__shouldUpdateCacheResponse& response) {
            _LM1__shouldUpdateCache request;
            request.UTCTime = const_cast<char*>(utcTime);
            return proxy.shouldUpdateCache(&request, response);
        },
        [&](const _LM1__shouldUpdateCacheResponse& response) {
            *shouldUpdate = response.shouldUpdateCacheResult == 1 ? 1 : 0;
        });
    LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, result:%d\n", "LM_WS_shouldUpdateCache",
                 *shouldUpdate);
    return LMUtilities::MakeStatus(rc, 0, nullptr);
}

LM_WS_Status LM_WS_getRecommendedTitles(LM_WS_Handle* handle, int32_t titleID,
                                        LM_WS_RecommendedTitlesResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultRecommendedTitles);
    if (client == nullptr) {
        return LM_WS_INVALID_ARGUMENT;
    }
    const Operation op = {"getRecommendedTitles", "LM_WS_getRecommendedTitles",
                          LogLine::RetAndCode};
    return ById(*client, client->m_RealTimeBrowse, op, LMCacheNames::kRecommendedTitles,
                &RealTimeBrowse::getRecommendedTitles, &_LM1__getRecommendedTitles::TitleId,
                titleID, &_LM1__getRecommendedTitlesResponse::getRecommendedTitlesResult,
                &LMUtilities::LM1__RecommendedTitlesResponse2LM_WS_RecommendedTitlesResponse,
                result);
}

LM_WS_Status LM_WS_getMyVideos(LM_WS_Handle* handle, LM_WS_Page page, int32_t purchaseType,
                               int32_t titleType, int32_t watchStatus,
                               LM_WS_MyVideosResponse* result) {
    LMWSClient* client = LMWSClient::Begin(handle, result, LM_WS_ResultMyVideos);
    if (client == nullptr || !ValidPurchaseType(purchaseType) || !ValidTitleType(titleType) ||
        !ValidWatchStatus(watchStatus)) {
        return LM_WS_INVALID_ARGUMENT;
    }
    auto fill = [&](auto& request) {
        request.CurrentPageNumber = page.CurrentPageNumber;
        request.ItemsPerPage = page.ItemsPerPage;
        request.PurchaseType = static_cast<LM1__PurchaseType>(purchaseType);
        request.TitleType = static_cast<LM1__TitleType>(titleType);
        request.WatchStatusFilter = static_cast<LM1__WatchStatusFilter>(watchStatus);
    };
    const auto convert = &LMUtilities::LM1__GetMyVideosResponse2LM_WS_MyVideosResponse;

    return OnFacade(*client, [&](auto& proxy) {
        if constexpr (StreamDownloadAPI::IsDownloadAPI<decltype(proxy)>) {
            // The download service's list is never cached.
            const Operation op = {"getMyVideos", "LM_WS_getMyVideos", LogLine::RetAndCode};
            return Call(*client, proxy, op, nullptr, &_LM1__getMyVideosResponse::getMyVideosResult,
                        convert, result, [&](_LM1__getMyVideosResponse& response) {
                            _LM1__getMyVideos request;
                            fill(request);
                            return proxy.getMyVideos(&request, response);
                        });
        } else {
            const Operation op = {"getMyStreamingVideos", "LM_WS_getMyVideos", LogLine::RetAndCode};
            CacheSlot slot = UserSlot(LMCacheNames::kMyVideos);
            SetKey(slot, "%d,%d,%d,%d,%d", page.CurrentPageNumber, page.ItemsPerPage, purchaseType,
                   titleType, watchStatus);
            return Call(*client, proxy, op, &slot,
                        &_LM1__getMyStreamingVideosResponse::getMyStreamingVideosResult, convert,
                        result, [&](_LM1__getMyStreamingVideosResponse& response) {
                            _LM1__getMyStreamingVideos request;
                            fill(request);
                            return proxy.getMyStreamingVideos(&request, response);
                        });
        }
    });
}

}  // extern "C"
