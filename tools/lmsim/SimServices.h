// The simulator's three SOAP services. Catalogue operations answer from the Catalogue with real
// paging and search, the account, purchase and streaming operations from SimAccounts; the
// operations not modelled (the download queue and licence counts) answer SOAP_OK with an empty
// response (the generated Default* classes).
#ifndef LMSIM_SERVICES_H
#define LMSIM_SERVICES_H

#include <string>

#include "SimAccountServices.h"
#include "SimAccounts.h"
#include "SimCatalogue.h"
#include "SimDefaultServices.h"

namespace lmsim {

// What every service of one simulator shares. The catalogue is read-only once built; the
// accounts guard themselves.
struct SimState {
    const Catalogue& catalogue;
    SimAccounts& accounts;
    int fileAccessType = 2;  // what getFileType answers: 1 download, 2 stream
    int httpPort = 80;       // the plain-HTTP port, for the URLs the answers name
    std::string bandwidthPath = "/bandwidth/check.bin";  // the bandwidth file on that port
};

// Catalogue answers shared by the services that offer the same operation.
class CatalogueAnswers {
public:
    CatalogueAnswers(struct soap* soap, const SimState& state) : m_Soap(soap), m_State(state) {}

    LM1__GenreRequest* Navigation();
    LM1__GetTitlesResponse* TitlesInGenre(int genreId, int page, int perPage, int purchaseType);
    LM1__ArrayOfGetTitlesResponse* TitlesInGenres(const std::vector<int>& genreIds, int page,
                                                  int perPage, int purchaseType);
    LM1__GetTitlesResponse* Search(const char* query, int perPage, int page, int purchaseType,
                                   int titleType);
    LM1__GetGenreLabelResponse* GenreLabel(int genreId);
    LM1__TitleListingResponse* TitleListing(const Title* title, const Episode* episode);
    LM1__TvEpisodeList* EpisodeList(int titleId);
    LM1__ArrayOfTitleListingResponse* AllEpisodeListings(int titleId);
    LM1__FileType* FileType();
    LM1__RecommendedTitlesResponse* Recommended(int titleId);
    LM1__TranslateSkuIdResponse* TranslateSku(int skuId);
    LM1__TranslatedRecboxExternalIdResponse* TranslateRecbox(const char* recboxId);
    char* LastLoadTime();
    int ShouldUpdateCache(const char* utcTime);

    const Catalogue& catalogue() const { return m_State.catalogue; }
    static std::vector<int> Ints(const LM1__ArrayOfInt* ids);

    // The listing part every title answer shares (TitleListing and the types that repeat it).
    template <class T>
    void FillListing(T* out, const Title& title);

private:
    char* Text(const std::string& s);
    LM1__TitleListing* Listing(const Title& title);

    struct soap* m_Soap;
    const SimState& m_State;
};

// The catalogue operations that RealTimeBrowse and StreamAPI both offer with the same request
// and response elements: one implementation over either service.
template <class Service>
class SimCatalogueService : public Service {
public:
    using Service::Service;

    int searchForTitle(_LM1__searchForTitle* in, _LM1__searchForTitleResponse& out) override {
        out.searchForTitleResult = Answers().Search(
            in->Query, in->ItemsPerPage, in->CurrentPageNumber, in->PurchaseType, in->TitleType);
        return SOAP_OK;
    }
    int getGenreLabel(_LM1__getGenreLabel* in, _LM1__getGenreLabelResponse& out) override {
        out.getGenreLabelResult = Answers().GenreLabel(in->GenreID);
        return SOAP_OK;
    }
    int getTitlesByGenreArray(_LM1__getTitlesByGenreArray* in,
                              _LM1__getTitlesByGenreArrayResponse& out) override {
        out.getTitlesByGenreArrayResult =
            Answers().TitlesInGenres(CatalogueAnswers::Ints(in->GenreIDs), in->CurrentPageNumber,
                                     in->ItemsPerPage, in->PurchaseType);
        return SOAP_OK;
    }
    int getTitleListing(_LM1__getTitleListing* in, _LM1__getTitleListingResponse& out) override {
        LM1__TitleListingResponse* r =
            Answers().TitleListing(this->m_State.catalogue.FindTitle(in->TitleID), nullptr);
        // The requesting account's wishlist, when the device is activated.
        r->IsAvailInUserWishList =
            r->ResponseCode == 0 &&
            AccountAnswers(this->soap, this->m_State).InWishlist(in->TitleID);
        out.getTitleListingResult = r;
        return SOAP_OK;
    }
    int getTvEpisodeListByTitleID(_LM1__getTvEpisodeListByTitleID* in,
                                  _LM1__getTvEpisodeListByTitleIDResponse& out) override {
        out.getTvEpisodeListByTitleIDResult = Answers().EpisodeList(in->TitleID);
        return SOAP_OK;
    }
    int getTvEpisodeListing(_LM1__getTvEpisodeListing* in,
                            _LM1__getTvEpisodeListingResponse& out) override {
        const Episode* episode = nullptr;
        const Title* series = this->m_State.catalogue.FindEpisode(in->EpisodeID, &episode);
        out.getTvEpisodeListingResult = Answers().TitleListing(series, episode);
        return SOAP_OK;
    }
    int getAllTvEpisodeListings(_LM1__getAllTvEpisodeListings* in,
                                _LM1__getAllTvEpisodeListingsResponse& out) override {
        out.getAllTvEpisodeListingsResult = Answers().AllEpisodeListings(in->TitleID);
        return SOAP_OK;
    }
    int shouldUpdateCache(_LM1__shouldUpdateCache* in,
                          _LM1__shouldUpdateCacheResponse& out) override {
        out.shouldUpdateCacheResult = Answers().ShouldUpdateCache(in->UTCTime);
        return SOAP_OK;
    }
    int getLastCacheLoadTimeUTC(_LM1__getLastCacheLoadTimeUTC*,
                                _LM1__getLastCacheLoadTimeUTCResponse& out) override {
        out.getLastCacheLoadTimeUTCResult = Answers().LastLoadTime();
        return SOAP_OK;
    }

protected:
    CatalogueAnswers Answers() { return CatalogueAnswers(this->soap, this->m_State); }
};

class SimRealTimeBrowse : public SimCatalogueService<SimService<DefaultRealTimeBrowseSoap12>> {
public:
    using SimCatalogueService::SimCatalogueService;

    int getFileType(_LM1__getFileType*, _LM1__getFileTypeResponse&) override;
    int getNavigation(_LM1__getNavigation*, _LM1__getNavigationResponse&) override;
    int searchForTitleDetail(_LM1__searchForTitleDetail*,
                             _LM1__searchForTitleDetailResponse&) override;
    int getTitlesByNavigation(_LM1__getTitlesByNavigation*,
                              _LM1__getTitlesByNavigationResponse&) override;
    int getTitleListingByAsset(_LM1__getTitleListingByAsset*,
                               _LM1__getTitleListingByAssetResponse&) override;
    int translateRecboxExternalId(_LM1__translateRecboxExternalId*,
                                  _LM1__translateRecboxExternalIdResponse&) override;
    int translateSkuId(_LM1__translateSkuId*, _LM1__translateSkuIdResponse&) override;
    int getRecommendedTitles(_LM1__getRecommendedTitles*,
                             _LM1__getRecommendedTitlesResponse&) override;
};

// The streaming edition of the catalogue and the account operations, and the operations only
// the streaming service has.
class SimStreamAPI
    : public SimAccountService<SimCatalogueService<SimService<DefaultStreamAPISoap12>>> {
public:
    using SimAccountService::SimAccountService;

    int getStreamingNavigation(_LM1__getStreamingNavigation*,
                               _LM1__getStreamingNavigationResponse&) override;
    int getTitlesByGenreCSV(_LM1__getTitlesByGenreCSV*,
                            _LM1__getTitlesByGenreCSVResponse&) override;
    int getTitlesByStreamingNavigation(_LM1__getTitlesByStreamingNavigation*,
                                       _LM1__getTitlesByStreamingNavigationResponse&) override;

    int getMyStreamingVideosList(_LM1__getMyStreamingVideosList*,
                                 _LM1__getMyStreamingVideosListResponse&) override;
    int getMyStreamingVideos(_LM1__getMyStreamingVideos*,
                             _LM1__getMyStreamingVideosResponse&) override;
    int getTitleListingsPurchasedForPasses(
        _LM1__getTitleListingsPurchasedForPasses*,
        _LM1__getTitleListingsPurchasedForPassesResponse&) override;
    int getTitleListingPurchasedForPass(_LM1__getTitleListingPurchasedForPass*,
                                        _LM1__getTitleListingPurchasedForPassResponse&) override;
    int checkForPurchasedStreamByTitleID(_LM1__checkForPurchasedStreamByTitleID*,
                                         _LM1__checkForPurchasedStreamByTitleIDResponse&) override;
    int checkForPurchasedStream(_LM1__checkForPurchasedStream*,
                                _LM1__checkForPurchasedStreamResponse&) override;
    int getBillingInfoAndPPCBalance(_LM1__getBillingInfoAndPPCBalance*,
                                    _LM1__getBillingInfoAndPPCBalanceResponse&) override;
    int manageStreamInstanceStatus(_LM1__manageStreamInstanceStatus*,
                                   _LM1__manageStreamInstanceStatusResponse&) override;
    int getStreamingAssetLocation(_LM1__getStreamingAssetLocation*,
                                  _LM1__getStreamingAssetLocationResponse&) override;
    int getBonusAssetLocation(_LM1__getBonusAssetLocation*,
                              _LM1__getBonusAssetLocationResponse&) override;
    int loadLastStreamingAssetLocationForPass(
        _LM1__loadLastStreamingAssetLocationForPass*,
        _LM1__loadLastStreamingAssetLocationForPassResponse&) override;
    int removeAllMyPurchases(_LM1__removeAllMyPurchases*,
                             _LM1__removeAllMyPurchasesResponse&) override;
    int ReturnError(_LM1__ReturnError*, _LM1__ReturnErrorResponse&) override;
    int calcOrderTax(_LM1__calcOrderTax*, _LM1__calcOrderTaxResponse&) override;
    int getAudioDefaultProperty(_LM1__getAudioDefaultProperty*,
                                _LM1__getAudioDefaultPropertyResponse&) override;
    int setAudioDefaultProperty(_LM1__setAudioDefaultProperty*,
                                _LM1__setAudioDefaultPropertyResponse&) override;
    int getTHXMediaDirector(_LM1__getTHXMediaDirector*,
                            _LM1__getTHXMediaDirectorResponse&) override;
    int getTHXMediaDirectorBonusAsset(_LM1__getTHXMediaDirectorBonusAsset*,
                                      _LM1__getTHXMediaDirectorBonusAssetResponse&) override;
};

// The download edition of the account operations; the download queue and licence counts are
// not modelled (empty success).
class SimDownloadAPI : public SimAccountService<SimService<DefaultDownloadAPISoap12>> {
public:
    using SimAccountService::SimAccountService;

    int getMyVideos(_LM1__getMyVideos*, _LM1__getMyVideosResponse&) override;
    int checkForPurchasedTitle(_LM1__checkForPurchasedTitle*,
                               _LM1__checkForPurchasedTitleResponse&) override;
    int getBonusAssetURL(_LM1__getBonusAssetURL*, _LM1__getBonusAssetURLResponse&) override;
};

}  // namespace lmsim

#endif  // LMSIM_SERVICES_H
