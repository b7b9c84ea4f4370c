#include "SimServices.h"

#include <cstdlib>
#include <cstring>

namespace lmsim {

namespace {

const int kNotFound = 1;  // the service's response code for an unknown id

template <class T>
T** NewArray(struct soap* soap, size_t count) {
    return static_cast<T**>(soap_malloc(soap, (count == 0 ? 1 : count) * sizeof(T*)));
}

}  // namespace

char* CatalogueAnswers::Text(const std::string& s) {
    return soap_strdup(m_Soap, s.c_str());
}

template <class T>
void CatalogueAnswers::FillListing(T* out, const Title& title) {
    out->TitleID = title.id;
    out->TitleName = Text(title.name);
    out->BoxArtPrefix = Text(title.boxArtPrefix);
    out->IsTvListing = title.isTv;
    out->MPAARating = Text(title.rating);
    out->IsTHXMediaDirectorEnabled = title.thx;
    out->IsTHXMediaDirectorEnabledForTrailer = title.thx && !title.bonusAssets.empty();
    out->CHVRSRating = Text(title.rating == "NR" ? "E" : "PG");
    out->LoyaltyPointsForBuy = Text("10");
    out->LoyaltyPointsForRent = Text("2");
    if (!title.bonusAssets.empty()) {
        out->BonusAssets = soap_new_LM1__ArrayOfBonusAsset(m_Soap);
        out->BonusAssets->__sizeBonusAsset = static_cast<int>(title.bonusAssets.size());
        out->BonusAssets->BonusAsset = NewArray<LM1__BonusAsset>(m_Soap, title.bonusAssets.size());
        for (size_t i = 0; i < title.bonusAssets.size(); ++i) {
            LM1__BonusAsset* b = soap_new_LM1__BonusAsset(m_Soap);
            b->BonusAssetID = title.bonusAssets[i].id;
            b->Profile = static_cast<LM1__FileProfile>(title.bonusAssets[i].profile);
            b->BonusType = static_cast<LM1__BonusAssetType>(title.bonusAssets[i].type);
            out->BonusAssets->BonusAsset[i] = b;
        }
    }
    out->AvailableProducts = soap_new_LM1__ArrayOfProductListing(m_Soap);
    out->AvailableProducts->__sizeProductListing = static_cast<int>(title.products.size());
    out->AvailableProducts->ProductListing =
        NewArray<LM1__ProductListing>(m_Soap, title.products.size());
    for (size_t i = 0; i < title.products.size(); ++i) {
        const Product& p = title.products[i];
        LM1__ProductListing* w = soap_new_LM1__ProductListing(m_Soap);
        w->SkuID = p.skuId;
        w->PurchaseType = static_cast<LM1__PurchaseType>(p.purchaseType);
        w->Price = Text(p.price);
        w->ExpireDate = Text(p.expireDate);
        w->RentalPeriod = p.rentalPeriodHours;
        w->AvailableAssets = soap_new_LM1__ArrayOfFileProfile(m_Soap);
        w->AvailableAssets->__sizeFileProfile = static_cast<int>(p.fileProfiles.size());
        w->AvailableAssets->FileProfile = static_cast<LM1__FileProfile*>(
            soap_malloc(m_Soap, (p.fileProfiles.size() + 1) * sizeof(LM1__FileProfile)));
        for (size_t f = 0; f < p.fileProfiles.size(); ++f) {
            w->AvailableAssets->FileProfile[f] = static_cast<LM1__FileProfile>(p.fileProfiles[f]);
        }
        w->AvailableAudioProfiles = soap_new_LM1__ArrayOfAudioFile(m_Soap);
        w->AvailableAudioProfiles->__sizeAudioFile = static_cast<int>(p.audio.size());
        w->AvailableAudioProfiles->AudioFile = NewArray<LM1__AudioFile>(m_Soap, p.audio.size());
        for (size_t a = 0; a < p.audio.size(); ++a) {
            LM1__AudioFile* af = soap_new_LM1__AudioFile(m_Soap);
            af->AssetAudioID = p.audio[a].id;
            af->FileLocation = Text(p.audio[a].location);
            af->ContainsVideo = p.audio[a].containsVideo;
            af->AudioAssetProfile = static_cast<LM1__AudioSetting>(p.audio[a].profile);
            w->AvailableAudioProfiles->AudioFile[a] = af;
        }
        out->AvailableProducts->ProductListing[i] = w;
    }
}

// The account answers list purchased titles with the same listing part.
template void CatalogueAnswers::FillListing(LM1__TitleListingPurchased*, const Title&);
template void CatalogueAnswers::FillListing(LM1__TitleListingPurchasedForPass*, const Title&);

LM1__TitleListing* CatalogueAnswers::Listing(const Title& title) {
    LM1__TitleListing* t = soap_new_LM1__TitleListing(m_Soap);
    FillListing(t, title);
    return t;
}

LM1__GenreRequest* CatalogueAnswers::Navigation() {
    const std::vector<Genre>& genres = catalogue().Genres();
    LM1__GenreRequest* r = soap_new_LM1__GenreRequest(m_Soap);
    r->Genres = soap_new_LM1__ArrayOfGenre(m_Soap);
    r->Genres->__sizeGenre = static_cast<int>(genres.size());
    r->Genres->Genre = NewArray<LM1__Genre>(m_Soap, genres.size());
    for (size_t i = 0; i < genres.size(); ++i) {
        LM1__Genre* g = soap_new_LM1__Genre(m_Soap);
        g->ID = genres[i].id;
        g->Name = Text(genres[i].name);
        g->Visible = genres[i].visible;
        g->ParentId = genres[i].parentId;
        r->Genres->Genre[i] = g;
    }
    return r;
}

namespace {
LM1__GetTitlesResponse* PageResponse(struct soap* soap, const Page& page, int genreId,
                                     LM1__TitleListing* (*listing)(void*, const Title&),
                                     void* self) {
    LM1__GetTitlesResponse* r = soap_new_LM1__GetTitlesResponse(soap);
    r->ResponseMessage = soap_strdup(soap, "");
    r->GenreID = genreId;
    r->CurrentPageNumber = static_cast<short>(page.currentPage);
    r->ItemsPerPage = static_cast<short>(page.itemsPerPage);
    r->TotalPages = static_cast<short>(page.totalPages);
    r->TotalItems = static_cast<short>(page.totalItems);
    r->Titles = soap_new_LM1__ArrayOfTitleListing(soap);
    r->Titles->__sizeTitleListing = static_cast<int>(page.items.size());
    r->Titles->TitleListing = NewArray<LM1__TitleListing>(soap, page.items.size());
    for (size_t i = 0; i < page.items.size(); ++i) {
        LM1__TitleListing* t = listing(self, *page.items[i]);
        t->TitlePosition = static_cast<short>((page.currentPage - 1) * page.itemsPerPage + i + 1);
        r->Titles->TitleListing[i] = t;
    }
    return r;
}
}  // namespace

LM1__GetTitlesResponse* CatalogueAnswers::TitlesInGenre(int genreId, int page, int perPage,
                                                        int purchaseType) {
    Page p = Catalogue::Paginate(catalogue().InGenre(genreId, purchaseType), page, perPage);
    LM1__GetTitlesResponse* r = PageResponse(
        m_Soap, p, genreId,
        [](void* self, const Title& t) { return static_cast<CatalogueAnswers*>(self)->Listing(t); },
        this);
    if (catalogue().FindGenre(genreId) == nullptr) {
        r->ResponseCode = kNotFound;
        r->ResponseMessage = Text("Unknown genre");
    }
    return r;
}

LM1__ArrayOfGetTitlesResponse* CatalogueAnswers::TitlesInGenres(const std::vector<int>& genreIds,
                                                                int page, int perPage,
                                                                int purchaseType) {
    LM1__ArrayOfGetTitlesResponse* r = soap_new_LM1__ArrayOfGetTitlesResponse(m_Soap);
    r->__sizeGetTitlesResponse = static_cast<int>(genreIds.size());
    r->GetTitlesResponse = NewArray<LM1__GetTitlesResponse>(m_Soap, genreIds.size());
    for (size_t i = 0; i < genreIds.size(); ++i) {
        r->GetTitlesResponse[i] = TitlesInGenre(genreIds[i], page, perPage, purchaseType);
    }
    return r;
}

LM1__GetTitlesResponse* CatalogueAnswers::Search(const char* query, int perPage, int page,
                                                 int purchaseType, int titleType) {
    Page p = Catalogue::Paginate(
        catalogue().Search(query != nullptr ? query : "", purchaseType, titleType), page, perPage);
    return PageResponse(
        m_Soap, p, 0,
        [](void* self, const Title& t) { return static_cast<CatalogueAnswers*>(self)->Listing(t); },
        this);
}

LM1__GetGenreLabelResponse* CatalogueAnswers::GenreLabel(int genreId) {
    LM1__GetGenreLabelResponse* r = soap_new_LM1__GetGenreLabelResponse(m_Soap);
    const Genre* g = catalogue().FindGenre(genreId);
    r->ResponseCode = g != nullptr ? 0 : kNotFound;
    r->ResponseMessage = Text(g != nullptr ? "" : "Unknown genre");
    r->Label = Text(g != nullptr ? g->name : "");
    r->LabelMessage = Text(g != nullptr ? "Browse " + g->name : "");
    return r;
}

LM1__TitleListingResponse* CatalogueAnswers::TitleListing(const Title* title,
                                                          const Episode* episode) {
    LM1__TitleListingResponse* r = soap_new_LM1__TitleListingResponse(m_Soap);
    if (title == nullptr) {
        r->ResponseCode = kNotFound;
        r->ResponseMessage = Text("Title not found");
        return r;
    }
    FillListing(r, *title);
    r->ResponseMessage = Text("");
    if (episode != nullptr) {
        r->TitleID = episode->episodeId;
        r->TitleName = Text(episode->name);
        r->EpisodeNumber = episode->number;
    }
    r->Synopsys = Text(title->synopsis);
    r->UserRating = title->userRating;
    r->Directors = Text(title->directors);
    r->Actors = Text(title->actors);
    r->Writers = Text(title->directors);
    r->Producers = Text("Lumora Pictures");
    r->Copyright = Text("(c) 2026 Lumora Pictures");
    r->RunTime = Text(std::to_string(title->runTimeMinutes) + " min");
    r->RatingReason = Text(title->rating == "R" ? "Violence" : "");
    return r;
}

LM1__TvEpisodeList* CatalogueAnswers::EpisodeList(int titleId) {
    LM1__TvEpisodeList* r = soap_new_LM1__TvEpisodeList(m_Soap);
    const Title* t = catalogue().FindTitle(titleId);
    if (t == nullptr || !t->isTv) {
        r->ResponseCode = kNotFound;
        r->ResponseMessage = Text("Series not found");
        return r;
    }
    r->ResponseMessage = Text("");
    r->Episodes = soap_new_LM1__ArrayOfTvEpisode(m_Soap);
    r->Episodes->__sizeTvEpisode = static_cast<int>(t->episodes.size());
    r->Episodes->TvEpisode = NewArray<LM1__TvEpisode>(m_Soap, t->episodes.size());
    for (size_t i = 0; i < t->episodes.size(); ++i) {
        LM1__TvEpisode* e = soap_new_LM1__TvEpisode(m_Soap);
        e->EpisodeID = t->episodes[i].episodeId;
        e->EpisodeName = Text(t->episodes[i].name);
        e->EpisodeNumber = t->episodes[i].number;
        r->Episodes->TvEpisode[i] = e;
    }
    return r;
}

LM1__ArrayOfTitleListingResponse* CatalogueAnswers::AllEpisodeListings(int titleId) {
    LM1__ArrayOfTitleListingResponse* r = soap_new_LM1__ArrayOfTitleListingResponse(m_Soap);
    const Title* t = catalogue().FindTitle(titleId);
    size_t count = t != nullptr ? t->episodes.size() : 0;
    r->__sizeTitleListingResponse = static_cast<int>(count);
    r->TitleListingResponse = NewArray<LM1__TitleListingResponse>(m_Soap, count);
    for (size_t i = 0; i < count; ++i) {
        r->TitleListingResponse[i] = TitleListing(t, &t->episodes[i]);
    }
    return r;
}

LM1__FileType* CatalogueAnswers::FileType() {
    LM1__FileType* r = soap_new_LM1__FileType(m_Soap);
    r->File_USCOREAccessType = static_cast<LM1__AccessType>(m_State.fileAccessType);
    r->File_USCOREFileProfile = LM1__FileProfile__HIGH_USCOREDEFINITION;
    r->File_USCOREVideoFormat = LM1__VideoFormat__H264;
    r->File_USCOREFileExtension = LM1__FileExtension__MP4;
    return r;
}

LM1__RecommendedTitlesResponse* CatalogueAnswers::Recommended(int titleId) {
    LM1__RecommendedTitlesResponse* r = soap_new_LM1__RecommendedTitlesResponse(m_Soap);
    std::vector<const Title*> titles = catalogue().Recommended(titleId);
    r->ResponseCode = catalogue().FindTitle(titleId) != nullptr ? 0 : kNotFound;
    r->ResponseMessage = Text("");
    r->Titles = soap_new_LM1__ArrayOfTitleListing(m_Soap);
    r->Titles->__sizeTitleListing = static_cast<int>(titles.size());
    r->Titles->TitleListing = NewArray<LM1__TitleListing>(m_Soap, titles.size());
    for (size_t i = 0; i < titles.size(); ++i) {
        r->Titles->TitleListing[i] = Listing(*titles[i]);
    }
    return r;
}

LM1__TranslateSkuIdResponse* CatalogueAnswers::TranslateSku(int skuId) {
    LM1__TranslateSkuIdResponse* r = soap_new_LM1__TranslateSkuIdResponse(m_Soap);
    const Title* t = catalogue().FindBySku(skuId);
    r->ResponseCode = t != nullptr ? 0 : kNotFound;
    r->ResponseMessage = Text(t != nullptr ? "" : "Unknown SKU");
    r->TitleId = t != nullptr ? t->id : 0;
    return r;
}

LM1__TranslatedRecboxExternalIdResponse* CatalogueAnswers::TranslateRecbox(const char* recboxId) {
    LM1__TranslatedRecboxExternalIdResponse* r =
        soap_new_LM1__TranslatedRecboxExternalIdResponse(m_Soap);
    const Title* t = catalogue().FindByRecboxId(recboxId != nullptr ? recboxId : "");
    r->ResponseCode = t != nullptr ? 0 : kNotFound;
    r->ResponseMessage = Text(t != nullptr ? "" : "Unknown id");
    r->RecboxExternalId = Text(recboxId != nullptr ? recboxId : "");
    r->TitleId = t != nullptr ? t->id : 0;
    return r;
}

char* CatalogueAnswers::LastLoadTime() {
    return Text(catalogue().LastLoadTime());
}

int CatalogueAnswers::ShouldUpdateCache(const char* utcTime) {
    return utcTime != nullptr && catalogue().LastLoadTime() == utcTime ? 0 : 1;
}

std::vector<int> CatalogueAnswers::Ints(const LM1__ArrayOfInt* ids) {
    std::vector<int> out;
    if (ids != nullptr) {
        out.assign(ids->int_, ids->int_ + ids->__sizeint);
    }
    return out;
}

namespace {

std::vector<int> CsvInts(const char* csv) {
    std::vector<int> out;
    for (const char* p = csv; p != nullptr && *p != 0;) {
        char* end = nullptr;
        long v = strtol(p, &end, 10);
        if (end == p) {
            break;
        }
        out.push_back(static_cast<int>(v));
        p = *end == ',' ? end + 1 : end;
    }
    return out;
}
}  // namespace

// ---- RealTimeBrowse ----

int SimRealTimeBrowse::getFileType(_LM1__getFileType*, _LM1__getFileTypeResponse& out) {
    out.getFileTypeResult = Answers().FileType();
    return SOAP_OK;
}

int SimRealTimeBrowse::getNavigation(_LM1__getNavigation*, _LM1__getNavigationResponse& out) {
    out.getNavigationResult = Answers().Navigation();
    return SOAP_OK;
}

int SimRealTimeBrowse::searchForTitleDetail(_LM1__searchForTitleDetail* in,
                                            _LM1__searchForTitleDetailResponse& out) {
    out.searchForTitleDetailResult = Answers().Search(
        in->Query, in->ItemsPerPage, in->CurrentPageNumber, in->PurchaseType, in->TitleType);
    return SOAP_OK;
}

int SimRealTimeBrowse::getTitlesByNavigation(_LM1__getTitlesByNavigation* in,
                                             _LM1__getTitlesByNavigationResponse& out) {
    out.getTitlesByNavigationResult = Answers().TitlesInGenre(in->GenreID, in->CurrentPageNumber,
                                                              in->ItemsPerPage, in->PurchaseType);
    return SOAP_OK;
}

int SimRealTimeBrowse::getTitleListingByAsset(_LM1__getTitleListingByAsset* in,
                                              _LM1__getTitleListingByAssetResponse& out) {
    out.getTitleListingByAssetResult =
        Answers().TitleListing(m_State.catalogue.FindByAsset(in->AssetID), nullptr);
    return SOAP_OK;
}

int SimRealTimeBrowse::translateRecboxExternalId(_LM1__translateRecboxExternalId* in,
                                                 _LM1__translateRecboxExternalIdResponse& out) {
    out.translateRecboxExternalIdResult = Answers().TranslateRecbox(in->RecboxExternalId);
    return SOAP_OK;
}

int SimRealTimeBrowse::translateSkuId(_LM1__translateSkuId* in, _LM1__translateSkuIdResponse& out) {
    out.translateSkuIdResult = Answers().TranslateSku(in->SkuId);
    return SOAP_OK;
}

int SimRealTimeBrowse::getRecommendedTitles(_LM1__getRecommendedTitles* in,
                                            _LM1__getRecommendedTitlesResponse& out) {
    out.getRecommendedTitlesResult = Answers().Recommended(in->TitleId);
    return SOAP_OK;
}

// ---- StreamAPI: the streaming edition of the same catalogue ----

int SimStreamAPI::getStreamingNavigation(_LM1__getStreamingNavigation*,
                                         _LM1__getStreamingNavigationResponse& out) {
    out.getStreamingNavigationResult = Answers().Navigation();
    return SOAP_OK;
}

int SimStreamAPI::getTitlesByGenreCSV(_LM1__getTitlesByGenreCSV* in,
                                      _LM1__getTitlesByGenreCSVResponse& out) {
    out.getTitlesByGenreCSVResult = Answers().TitlesInGenres(
        CsvInts(in->GenreIDs), in->CurrentPageNumber, in->ItemsPerPage, in->PurchaseType);
    return SOAP_OK;
}

int SimStreamAPI::getTitlesByStreamingNavigation(
    _LM1__getTitlesByStreamingNavigation* in, _LM1__getTitlesByStreamingNavigationResponse& out) {
    out.getTitlesByStreamingNavigationResult = Answers().TitlesInGenre(
        in->GenreID, in->CurrentPageNumber, in->ItemsPerPage, in->PurchaseType);
    return SOAP_OK;
}

}  // namespace lmsim
