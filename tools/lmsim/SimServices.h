// The simulator's three SOAP services. Catalogue operations answer from the Catalogue with real
// paging and search; the operations not modelled yet answer SOAP_OK with an empty response (the
// generated Default* classes).
#ifndef LMSIM_SERVICES_H
#define LMSIM_SERVICES_H

#include "SimCatalogue.h"
#include "SimDefaultServices.h"

namespace lmsim {

// What every service of one simulator shares. The catalogue is read-only once built.
struct SimState {
    const Catalogue& catalogue;
    int fileAccessType = 2;  // what getFileType answers: 1 download, 2 stream
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

private:
    char* Text(const std::string& s);
    LM1__TitleListing* Listing(const Title& title);
    template <class T>
    void FillListing(T* out, const Title& title);

    struct soap* m_Soap;
    const SimState& m_State;
};

// The catalogue operations that RealTimeBrowse and StreamAPI both offer with the same request
// and response elements: one implementation over either generated service class.
template <class Service>
class SimCatalogueService : public Service {
public:
    SimCatalogueService(struct soap* soap, const SimState& state) : Service(soap), m_State(state) {}

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
        out.getTitleListingResult =
            Answers().TitleListing(m_State.catalogue.FindTitle(in->TitleID), nullptr);
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
        const Title* series = m_State.catalogue.FindEpisode(in->EpisodeID, &episode);
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
    CatalogueAnswers Answers() { return CatalogueAnswers(this->soap, m_State); }
    const SimState& m_State;
};

class SimRealTimeBrowse : public SimCatalogueService<DefaultRealTimeBrowseSoap12> {
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

class SimStreamAPI : public SimCatalogueService<DefaultStreamAPISoap12> {
public:
    using SimCatalogueService::SimCatalogueService;

    int getStreamingNavigation(_LM1__getStreamingNavigation*,
                               _LM1__getStreamingNavigationResponse&) override;
    int getTitlesByGenreCSV(_LM1__getTitlesByGenreCSV*,
                            _LM1__getTitlesByGenreCSVResponse&) override;
    int getTitlesByStreamingNavigation(_LM1__getTitlesByStreamingNavigation*,
                                       _LM1__getTitlesByStreamingNavigationResponse&) override;
};

// Account and download operations are not modelled yet: every one answers empty success.
class SimDownloadAPI : public DefaultDownloadAPISoap12 {
public:
    SimDownloadAPI(struct soap* soap, const SimState& /*state*/) : DefaultDownloadAPISoap12(soap) {}
};

}  // namespace lmsim

#endif  // LMSIM_SERVICES_H
