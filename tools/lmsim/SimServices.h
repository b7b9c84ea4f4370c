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

private:
    char* Text(const std::string& s);
    LM1__TitleListing* Listing(const Title& title);
    template <class T>
    void FillListing(T* out, const Title& title);

    struct soap* m_Soap;
    const SimState& m_State;
};

class SimRealTimeBrowse : public DefaultRealTimeBrowseSoap12 {
public:
    SimRealTimeBrowse(struct soap* soap, const SimState& state)
        : DefaultRealTimeBrowseSoap12(soap), m_State(state) {}

    int getFileType(_LM1__getFileType*, _LM1__getFileTypeResponse&) override;
    int getNavigation(_LM1__getNavigation*, _LM1__getNavigationResponse&) override;
    int searchForTitle(_LM1__searchForTitle*, _LM1__searchForTitleResponse&) override;
    int searchForTitleDetail(_LM1__searchForTitleDetail*,
                             _LM1__searchForTitleDetailResponse&) override;
    int getGenreLabel(_LM1__getGenreLabel*, _LM1__getGenreLabelResponse&) override;
    int getTitlesByNavigation(_LM1__getTitlesByNavigation*,
                              _LM1__getTitlesByNavigationResponse&) override;
    int getTitlesByGenreArray(_LM1__getTitlesByGenreArray*,
                              _LM1__getTitlesByGenreArrayResponse&) override;
    int getTitleListing(_LM1__getTitleListing*, _LM1__getTitleListingResponse&) override;
    int getTitleListingByAsset(_LM1__getTitleListingByAsset*,
                               _LM1__getTitleListingByAssetResponse&) override;
    int getTvEpisodeListByTitleID(_LM1__getTvEpisodeListByTitleID*,
                                  _LM1__getTvEpisodeListByTitleIDResponse&) override;
    int getTvEpisodeListing(_LM1__getTvEpisodeListing*,
                            _LM1__getTvEpisodeListingResponse&) override;
    int getAllTvEpisodeListings(_LM1__getAllTvEpisodeListings*,
                                _LM1__getAllTvEpisodeListingsResponse&) override;
    int translateRecboxExternalId(_LM1__translateRecboxExternalId*,
                                  _LM1__translateRecboxExternalIdResponse&) override;
    int translateSkuId(_LM1__translateSkuId*, _LM1__translateSkuIdResponse&) override;
    int shouldUpdateCache(_LM1__shouldUpdateCache*, _LM1__shouldUpdateCacheResponse&) override;
    int getLastCacheLoadTimeUTC(_LM1__getLastCacheLoadTimeUTC*,
                                _LM1__getLastCacheLoadTimeUTCResponse&) override;
    int getRecommendedTitles(_LM1__getRecommendedTitles*,
                             _LM1__getRecommendedTitlesResponse&) override;

private:
    CatalogueAnswers Answers() { return CatalogueAnswers(soap, m_State); }
    const SimState& m_State;
};

class SimStreamAPI : public DefaultStreamAPISoap12 {
public:
    SimStreamAPI(struct soap* soap, const SimState& state)
        : DefaultStreamAPISoap12(soap), m_State(state) {}

    int getStreamingNavigation(_LM1__getStreamingNavigation*,
                               _LM1__getStreamingNavigationResponse&) override;
    int searchForTitle(_LM1__searchForTitle*, _LM1__searchForTitleResponse&) override;
    int getGenreLabel(_LM1__getGenreLabel*, _LM1__getGenreLabelResponse&) override;
    int getTitlesByGenreCSV(_LM1__getTitlesByGenreCSV*,
                            _LM1__getTitlesByGenreCSVResponse&) override;
    int getTitlesByGenreArray(_LM1__getTitlesByGenreArray*,
                              _LM1__getTitlesByGenreArrayResponse&) override;
    int getTitlesByStreamingNavigation(_LM1__getTitlesByStreamingNavigation*,
                                       _LM1__getTitlesByStreamingNavigationResponse&) override;
    int getTitleListing(_LM1__getTitleListing*, _LM1__getTitleListingResponse&) override;
    int getTvEpisodeListByTitleID(_LM1__getTvEpisodeListByTitleID*,
                                  _LM1__getTvEpisodeListByTitleIDResponse&) override;
    int getTvEpisodeListing(_LM1__getTvEpisodeListing*,
                            _LM1__getTvEpisodeListingResponse&) override;
    int getAllTvEpisodeListings(_LM1__getAllTvEpisodeListings*,
                                _LM1__getAllTvEpisodeListingsResponse&) override;
    int shouldUpdateCache(_LM1__shouldUpdateCache*, _LM1__shouldUpdateCacheResponse&) override;
    int getLastCacheLoadTimeUTC(_LM1__getLastCacheLoadTimeUTC*,
                                _LM1__getLastCacheLoadTimeUTCResponse&) override;

private:
    CatalogueAnswers Answers() { return CatalogueAnswers(soap, m_State); }
    const SimState& m_State;
};

// Account and download operations are not modelled yet: every one answers empty success.
class SimDownloadAPI : public DefaultDownloadAPISoap12 {
public:
    SimDownloadAPI(struct soap* soap, const SimState& /*state*/) : DefaultDownloadAPISoap12(soap) {}
};

}  // namespace lmsim

#endif  // LMSIM_SERVICES_H
