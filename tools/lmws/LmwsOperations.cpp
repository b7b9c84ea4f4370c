#include "LmwsOperations.h"

#include "LmwsRecordJson.h"

namespace {

LmwsParam Int(const char* name) {
    return {name, LmwsArgKind::Int};
}
LmwsParam Text(const char* name) {
    return {name, LmwsArgKind::Text};
}
LmwsParam IntList(const char* name) {
    return {name, LmwsArgKind::IntList};
}

// Two Int arguments from `first` on: the page wanted, then the titles per page.
LM_WS_Page Page(const LmwsArgs& args, size_t first) {
    return {args[first].number, args[first + 1].number};
}

// A tagged record is released whatever the status; a record without a tag owns nothing.
void Release(void* record) {
    LM_WS_FreeResult(record);
}
void Release(LM_WS_FileType*) {}

// Makes `call` fill a fresh record of type R, converts what the record then holds (a failed call
// leaves it initialised, so this is safe) and releases it.
template <typename R, typename Call>
LM_WS_Status Fetch(LmwsJson& result, Call call) {
    R record{};
    LM_WS_Status status = call(&record);
    result = LmwsToJson(record);
    Release(&record);
    return status;
}

// To add an operation: declare it in Public/, then add a row here (and a LmwsToJson overload
// when it brings a new record).
std::vector<LmwsOperation> BuildTable() {
    return {
        // ---- Client ----
        {"getUserAgent",
         {},
         "the User-Agent the client sends",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(out,
                                               [&](auto* r) { return LM_WS_getUserAgent(h, r); });
         }},
        {"getLastCacheLoadTimeUTC",
         {},
         "when the service's catalogue was last loaded",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_LengthAndText>(
                 out, [&](auto* r) { return LM_WS_getLastCacheLoadTimeUTC(h, r); });
         }},
        {"getFileType",
         {},
         "the account's file type (sets the client's access type)",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_FileType>(out, [&](auto* r) { return LM_WS_getFileType(h, r); });
         }},

        // ---- Catalogue ----
        {"getNavigation",
         {},
         "the genre tree",
         [](LM_WS_Handle* h, const LmwsArgs&, LmwsJson& out) {
             return Fetch<LM_WS_Navigation>(out,
                                            [&](auto* r) { return LM_WS_getNavigation(h, r); });
         }},
        {"getGenreLabel",
         {Int("genreID")},
         "the label of a genre",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_GenreLabelResponse>(
                 out, [&](auto* r) { return LM_WS_getGenreLabel(h, a[0].number, r); });
         }},
        {"getTitles",
         {Int("genreID"), Int("page"), Int("itemsPerPage"), Int("purchaseType")},
         "a page of a genre's titles (purchaseType 0 rent, 1 buy, 2 any)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitlesResponse>(out, [&](auto* r) {
                 return LM_WS_getTitles(h, a[0].number, Page(a, 1), a[3].number, r);
             });
         }},
        {"getTitlesByGenreIDs",
         {IntList("genreIDs"), Int("page"), Int("itemsPerPage"), Int("purchaseType")},
         "the same page of each genre of a comma-separated list",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             const std::vector<int32_t>& ids = a[0].list;
             return Fetch<LM_WS_TitlesResponseArray>(out, [&](auto* r) {
                 return LM_WS_getTitlesByGenreIDs(h, ids.data(), static_cast<int32_t>(ids.size()),
                                                  Page(a, 1), a[3].number, r);
             });
         }},
        {"getTitleListing",
         {Int("titleID")},
         "one title's page",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitleListingResponse>(
                 out, [&](auto* r) { return LM_WS_getTitleListing(h, a[0].number, r); });
         }},
        {"getTvEpisodeListing",
         {Int("episodeID")},
         "one TV episode's page",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitleListingResponse>(
                 out, [&](auto* r) { return LM_WS_getTvEpisodeListing(h, a[0].number, r); });
         }},
        {"getTvEpisodeListByTitleID",
         {Int("titleID")},
         "the episodes of a series",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TvEpisodeList>(
                 out, [&](auto* r) { return LM_WS_getTvEpisodeListByTitleID(h, a[0].number, r); });
         }},
        {"getAllTvEpisodeListings",
         {Int("titleID")},
         "every episode page of a series",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitleListingResponses>(
                 out, [&](auto* r) { return LM_WS_getAllTvEpisodeListings(h, a[0].number, r); });
         }},
        {"translateRecboxExternalID",
         {Text("externalID")},
         "the title of a recording box's external id",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TranslateRecboxExternalIDResponse>(out, [&](auto* r) {
                 return LM_WS_translateRecboxExternalID(h, a[0].text.c_str(), r);
             });
         }},
        {"translateSkuID",
         {Int("skuID")},
         "the title a product (SKU) belongs to",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TranslateSkuIDResponse>(
                 out, [&](auto* r) { return LM_WS_translateSkuID(h, a[0].number, r); });
         }},
        {"searchForTitle",
         {Int("page"), Int("itemsPerPage"), Int("purchaseType"), Int("titleType"), Text("query")},
         "a page of the titles whose names match (titleType 0 any, 1 TV, 2 movies)",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitlesResponse>(out, [&](auto* r) {
                 return LM_WS_searchForTitle(h, Page(a, 0), a[2].number, a[3].number,
                                             a[4].text.c_str(), r);
             });
         }},
        {"searchForTitleDetail",
         {Int("page"), Int("itemsPerPage"), Int("purchaseType"), Int("titleType"), Text("query")},
         "as searchForTitle, matching the titles' details too",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_TitlesResponse>(out, [&](auto* r) {
                 return LM_WS_searchForTitleDetail(h, Page(a, 0), a[2].number, a[3].number,
                                                   a[4].text.c_str(), r);
             });
         }},
        {"shouldUpdateCache",
         {Text("utcTime")},
         "whether a cache loaded at utcTime is out of date",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             uint8_t shouldUpdate = 0;
             LM_WS_Status status = LM_WS_shouldUpdateCache(h, a[0].text.c_str(), &shouldUpdate);
             out = LmwsJson::object();
             out["shouldUpdateCacheResult"] = shouldUpdate != 0;
             return status;
         }},
        {"getRecommendedTitles",
         {Int("titleID")},
         "titles recommended beside a title",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_RecommendedTitlesResponse>(
                 out, [&](auto* r) { return LM_WS_getRecommendedTitles(h, a[0].number, r); });
         }},
        {"getMyVideos",
         {Int("page"), Int("itemsPerPage"), Int("purchaseType"), Int("titleType"),
          Int("watchStatus")},
         "a page of the account's bought and rented titles",
         [](LM_WS_Handle* h, const LmwsArgs& a, LmwsJson& out) {
             return Fetch<LM_WS_MyVideosResponse>(out, [&](auto* r) {
                 return LM_WS_getMyVideos(h, Page(a, 0), a[2].number, a[3].number, a[4].number, r);
             });
         }},
    };
}

}  // namespace

const std::vector<LmwsOperation>& LmwsOperationTable() {
    static const std::vector<LmwsOperation> table = BuildTable();
    return table;
}

const LmwsOperation* LmwsFindOperation(const std::string& name) {
    for (const LmwsOperation& op : LmwsOperationTable()) {
        if (name == op.name) {
            return &op;
        }
    }
    return nullptr;
}
