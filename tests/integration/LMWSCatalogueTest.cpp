// The catalogue operations of the client library against the service simulator: what each one
// answers, how transport failures and service response codes come back, the cache (hits with the
// simulator stopped, what is and is not stored, corrupted entries), getMyVideos and its two
// services, the request headers on the wire, and handles without a client.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sqlite3.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "LMAPITestSupport.h"
#include "LMRecordFields.h"
#include "LMWSClient.h"
#include "LMWSTestSupport.h"
#include "LM_WS.h"
#include "LmsimProcess.h"

namespace {

using namespace lmws_test;

// Fixed points of the simulator's catalogue.
const int kSpyGenre = 12;
const int kFirstMovie = 100000;    // its first product is SKU 700000
const int kFirstSeries = 102000;   // the movies are 100000..101999, the series follow
const int kFirstEpisode = 500000;  // the first episode of the first series
const char kLoadTime[] = "11/23/2026 6:00:00 AM";

// ---- Records as text, so that two answers can be compared whole ----
//
// Every text of a filled record must be non-null and every tagged part must carry its tag; the
// dump checks both on the way.

struct DumpFields {
    std::ostream& os;

    void Tag(const int32_t* type, LM_WS_ResultType expected) {
        EXPECT_TRUE(type != nullptr && *type == expected) << "tag of a part, expected " << expected;
        os << '#' << (type != nullptr ? *type : 0) << ' ';
    }
    template <class N>
    void Number(const char* name, N value) {
        os << name << '=' << static_cast<long long>(value) << ' ';
    }
    void Flag(const char* name, uint8_t value) { Number(name, value); }
    void Text(const char* name, const char* text) {
        EXPECT_NE(text, nullptr) << "a filled record holds a null text: " << name;
        os << name << "=\"" << (text != nullptr ? text : "<null>") << "\" ";
    }
    // The length-and-text record may hold no text: a file that could not be read.
    void Bytes(const char* name, const char* text, uint32_t length) {
        os << name << '=' << (text != nullptr ? std::string(text, length) : "<null>") << ' ';
    }
    template <class S>
    void Record(const char* name, const S& part) {
        os << name << " { ";
        LMRecordFields::Visit(part, *this);
        os << "} ";
    }
    template <class S>
    void Flatten(const S& part) {
        LMRecordFields::Visit(part, *this);
    }
    template <class L>
    void List(const char* name, const L& list) {
        Record(name, list);
    }
    template <class N>
    void Numbers(const char* name, int32_t count, const N* array) {
        ASSERT_TRUE(count <= 0 || array != nullptr) << name;
        os << name << '[' << count << "] ";
        for (int32_t i = 0; i < count; ++i) {
            os << static_cast<long long>(array[i]) << ' ';
        }
    }
    template <class E>
    void Records(const char* name, int32_t count, const E* array) {
        ASSERT_TRUE(count <= 0 || array != nullptr) << name;
        os << name << '[' << count << "]\n";
        for (int32_t i = 0; i < count; ++i) {
            Record(name, array[i]);
            os << '\n';
        }
    }
};

template <class R>
std::string Text(const R& record) {
    std::ostringstream os;
    LMRecordFields::Visit(record, DumpFields{os});
    return os.str();
}

// Checks that every text of a filled record is set and every tagged part carries its tag.
template <class R>
void CheckFilled(const R& record) {
    (void)Text(record);
}

// ---- Every operation, as a table ----

// What one call gave: the status, the tag value of the record (0 when it has none; for
// shouldUpdateCache the flag), and the record as text when the call answered (status 0 or
// -1004).
struct CallResult {
    LM_WS_Status status;
    int32_t tag;
    std::string text;
};

template <class R, class Call>
CallResult Run(LM_WS_Handle* handle, Call call) {
    Record<R> record;
    CallResult result;
    result.status = call(handle, &record.r);
    result.tag = record->Type != nullptr ? *record->Type : 0;
    if (result.status == LM_WS_OK || result.status == LM_WS_RESPONSE_CODE) {
        result.text = Text(record.r);
    }
    return result;
}

struct Operation {
    const char* name;
    bool cached;  // answered from the cache once stored
    LM_WS_ResultType tag;
    std::function<CallResult(LM_WS_Handle*)> call;
};

const LM_WS_Page kPage1 = {1, 20};
const LM_WS_Page kSearchPage = {1, 10};

// One call of each catalogue operation with arguments the simulator knows. getMyVideos is not
// here: the simulator does not model it (see the canned answers further down).
std::vector<Operation> CatalogueOperations() {
    return {
        {"getNavigation", true, LM_WS_ResultNavigation,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_Navigation>(
                 h, [](LM_WS_Handle* h, LM_WS_Navigation* r) { return LM_WS_getNavigation(h, r); });
         }},
        {"getGenreLabel", false, LM_WS_ResultGenreLabel,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_GenreLabelResponse>(
                 h, [](LM_WS_Handle* h, auto* r) { return LM_WS_getGenreLabel(h, kSpyGenre, r); });
         }},
        {"getTitles", true, LM_WS_ResultTitles,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitlesResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_getTitles(h, kSpyGenre, kPage1, 2, r);
             });
         }},
        {"getTitlesByGenreIDs", false, LM_WS_ResultTitlesArray,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitlesResponseArray>(h, [](LM_WS_Handle* h, auto* r) {
                 const int32_t genres[] = {kSpyGenre, 13};
                 return LM_WS_getTitlesByGenreIDs(h, genres, 2, kSearchPage, 2, r);
             });
         }},
        {"getTitleListing", true, LM_WS_ResultTitleListingResponse,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitleListingResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_getTitleListing(h, kFirstMovie + 5, r);
             });
         }},
        {"getTvEpisodeListing", true, LM_WS_ResultTitleListingResponse,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitleListingResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_getTvEpisodeListing(h, kFirstEpisode + 1, r);
             });
         }},
        {"getTvEpisodeListByTitleID", true, LM_WS_ResultTvEpisodeList,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TvEpisodeList>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_getTvEpisodeListByTitleID(h, kFirstSeries, r);
             });
         }},
        {"getAllTvEpisodeListings", true, LM_WS_ResultTitleListingResponses,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitleListingResponses>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_getAllTvEpisodeListings(h, kFirstSeries, r);
             });
         }},
        {"translateRecboxExternalID", true, LM_WS_ResultTranslateRecboxExternalID,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TranslateRecboxExternalIDResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_translateRecboxExternalID(h, "RB0100005", r);
             });
         }},
        {"translateSkuID", true, LM_WS_ResultTranslateSkuID,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TranslateSkuIDResponse>(
                 h, [](LM_WS_Handle* h, auto* r) { return LM_WS_translateSkuID(h, 700000, r); });
         }},
        {"searchForTitle", true, LM_WS_ResultTitles,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitlesResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_searchForTitle(h, kSearchPage, 2, 0, "Harbor", r);
             });
         }},
        {"searchForTitleDetail", true, LM_WS_ResultTitles,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_TitlesResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_searchForTitleDetail(h, kSearchPage, 2, 0, "Harbor", r);
             });
         }},
        {"shouldUpdateCache", false, LM_WS_ResultType(0),
         [](LM_WS_Handle* h) {
             uint8_t flag = 7;
             CallResult result;
             result.status = LM_WS_shouldUpdateCache(h, kLoadTime, &flag);
             result.tag = flag;
             result.text = std::to_string(flag);
             return result;
         }},
        {"getRecommendedTitles", true, LM_WS_ResultRecommendedTitles,
         [](LM_WS_Handle* h) {
             return Run<LM_WS_RecommendedTitlesResponse>(h, [](LM_WS_Handle* h, auto* r) {
                 return LM_WS_getRecommendedTitles(h, kFirstMovie + 5, r);
             });
         }},
    };
}

Operation MyVideosOperation() {
    return {"getMyVideos", false, LM_WS_ResultMyVideos, [](LM_WS_Handle* h) {
                return Run<LM_WS_MyVideosResponse>(h, [](LM_WS_Handle* h, auto* r) {
                    return LM_WS_getMyVideos(h, LM_WS_Page{1, 10}, 2, 0, 0, r);
                });
            }};
}

// ---- The simulator's fault switch and the cache file ----

// Arms `kind` (with `value` when given) for the simulator's next answer.
::testing::AssertionResult ArmFault(const LmsimProcess& sim, const std::string& kind,
                                    const std::string& value = "") {
    if (!sim.ArmFault(kind, value)) {
        return ::testing::AssertionFailure() << "fault " << kind << " not armed";
    }
    return ::testing::AssertionSuccess();
}

// The cache database of a client, read and written behind its back.
class CacheFile {
public:
    explicit CacheFile(const LMString& path) : m_Path(Str(path)) {}

    // (Name, Key) of every row of `table`, sorted.
    std::set<std::pair<std::string, std::string>> Keys(const char* table) const {
        std::set<std::pair<std::string, std::string>> keys;
        Query(std::string("SELECT Name, Key FROM ") + table, {},
              [&keys](sqlite3_stmt* stmt) { keys.emplace(Column(stmt, 0), Column(stmt, 1)); });
        return keys;
    }

    std::string Value(const char* table, const std::string& name, const std::string& key) const {
        std::string value = "<missing>";
        Query(std::string("SELECT Value FROM ") + table + " WHERE Name = ?1 AND Key = ?2",
              {name, key}, [&value](sqlite3_stmt* stmt) { value = Column(stmt, 0); });
        return value;
    }

    // Replaces the value of one row; false when there is no such row.
    bool Overwrite(const char* table, const std::string& name, const std::string& key,
                   const std::string& value) const {
        return ChangeOne(
            std::string("UPDATE ") + table + " SET Value = ?3 WHERE Name = ?1 AND Key = ?2", name,
            key, &value);
    }

    // Deletes one row; false when there is no such row.
    bool Remove(const char* table, const std::string& name, const std::string& key) const {
        return ChangeOne(std::string("DELETE FROM ") + table + " WHERE Name = ?1 AND Key = ?2",
                         name, key, nullptr);
    }

private:
    static std::string Column(sqlite3_stmt* stmt, int index) {
        const char* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, index));
        return text != nullptr
                   ? std::string(text, static_cast<size_t>(sqlite3_column_bytes(stmt, index)))
                   : std::string();
    }

    // Runs `sql` with ?1 name, ?2 key and ?3 value (bytes, when given); true when it changed
    // exactly one row.
    bool ChangeOne(const std::string& sql, const std::string& name, const std::string& key,
                   const std::string* value) const {
        sqlite3* db = nullptr;
        bool changed = false;
        if (sqlite3_open(m_Path.c_str(), &db) == SQLITE_OK) {
            sqlite3_stmt* stmt = nullptr;
            if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK) {
                sqlite3_bind_text(stmt, 1, name.c_str(), -1, SQLITE_TRANSIENT);
                sqlite3_bind_text(stmt, 2, key.c_str(), -1, SQLITE_TRANSIENT);
                if (value != nullptr) {
                    sqlite3_bind_text(stmt, 3, value->data(), static_cast<int>(value->size()),
                                      SQLITE_TRANSIENT);
                }
                changed = sqlite3_step(stmt) == SQLITE_DONE && sqlite3_changes(db) == 1;
            }
            sqlite3_finalize(stmt);
        }
        sqlite3_close(db);
        return changed;
    }

    void Query(const std::string& sql, const std::vector<std::string>& binds,
               const std::function<void(sqlite3_stmt*)>& row) const {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open_v2(m_Path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK)
            << m_Path;
        sqlite3_stmt* stmt = nullptr;
        ASSERT_EQ(sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr), SQLITE_OK) << sql;
        for (size_t i = 0; i < binds.size(); ++i) {
            sqlite3_bind_text(stmt, static_cast<int>(i + 1), binds[i].c_str(), -1,
                              SQLITE_TRANSIENT);
        }
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            row(stmt);
        }
        sqlite3_finalize(stmt);
        sqlite3_close(db);
    }

    std::string m_Path;
};

// Not an answer the cache ever wrote: no XML, no gzip.
const std::string kGarbage = std::string("\x01\x02garbage\xff\xfe<<<&&", 16);

// ---- Against one simulator shared by the tests of this fixture ----

class LMWSCatalogueOnline : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_Sim = new LmsimProcess(); }
    static void TearDownTestSuite() {
        delete s_Sim;
        s_Sim = nullptr;
    }

    void SetUp() override {
        ASSERT_TRUE(s_Sim->Ready());
        PointAt(*s_Sim);
        m_Params.revision = "2.1";
        m_Params.firmware = "fw7";
        m_Params.model = "BDP-9";
        ASSERT_EQ(m_Client.Setup(m_Params), LM_WS_OK);
    }

    LM_WS_Handle* H() { return &m_Client.h; }

    static LmsimProcess* s_Sim;
    Params m_Params;
    Client m_Client;
};

LmsimProcess* LMWSCatalogueOnline::s_Sim = nullptr;

TEST_F(LMWSCatalogueOnline, GenresTitlesAndTitlePages) {
    Record<LM_WS_Navigation> nav;
    ASSERT_EQ(LM_WS_getNavigation(H(), &nav.r), LM_WS_OK);
    ASSERT_EQ(nav->Genres.Count, 35);
    int hidden = 0;
    for (int i = 0; i < nav->Genres.Count; ++i) {
        const LM_WS_Genre& g = nav->Genres.Array[i];
        hidden += g.Visible ? 0 : 1;
        if (g.ID == kSpyGenre) {
            EXPECT_STREQ(g.Name, "Spy");
            EXPECT_EQ(g.ParentId, 1);
        }
        EXPECT_EQ(g.ParentId == 0, g.ID <= 8) << g.ID;
    }
    EXPECT_EQ(hidden, 1);
    EXPECT_STREQ(nav->ResponseMessage, "");
    CheckFilled(nav.r);

    Record<LM_WS_GenreLabelResponse> label;
    ASSERT_EQ(LM_WS_getGenreLabel(H(), kSpyGenre, &label.r), LM_WS_OK);
    EXPECT_STREQ(label->Label, "Spy");
    EXPECT_STREQ(label->LabelMessage, "Browse Spy");

    Record<LM_WS_TitlesResponse> page;
    ASSERT_EQ(LM_WS_getTitles(H(), kSpyGenre, kPage1, 2, &page.r), LM_WS_OK);
    EXPECT_EQ(page->ResponseCode, 0);
    EXPECT_EQ(page->GenreID, kSpyGenre);
    EXPECT_EQ(page->CurrentPageNumber, 1);
    EXPECT_EQ(page->ItemsPerPage, 20);
    EXPECT_GT(page->TotalItems, 20);
    EXPECT_EQ(page->TotalPages, (page->TotalItems + 19) / 20);
    ASSERT_EQ(page->Titles.Count, 20);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(page->Titles.Array[i].TitlePosition, i + 1);
        EXPECT_GE(page->Titles.Array[i].TitleID, kFirstMovie);
        EXPECT_LT(page->Titles.Array[i].TitleID, kFirstSeries);
    }
    CheckFilled(page.r);

    // The second page of two genres at once, in the order asked for.
    const int32_t genres[] = {kSpyGenre, 13, 1};
    Record<LM_WS_TitlesResponseArray> pages;
    ASSERT_EQ(LM_WS_getTitlesByGenreIDs(H(), genres, 3, LM_WS_Page{2, 5}, 2, &pages.r), LM_WS_OK);
    ASSERT_EQ(pages->Count, 3);
    for (int i = 0; i < 3; ++i) {
        const LM_WS_TitlesResponse& p = pages->Array[i];
        EXPECT_EQ(p.GenreID, genres[i]);
        EXPECT_EQ(p.CurrentPageNumber, 2);
        ASSERT_EQ(p.Titles.Count, 5);
        EXPECT_EQ(p.Titles.Array[0].TitlePosition, 6);
    }
    // Spy titles 6..10 are those of the first call.
    EXPECT_EQ(pages->Array[0].Titles.Array[0].TitleID, page->Titles.Array[5].TitleID);
    CheckFilled(pages.r);

    // A title of the page: its own page names it the same, and its products translate back.
    const LM_WS_TitleListing& listed = page->Titles.Array[3];
    Record<LM_WS_TitleListingResponse> title;
    ASSERT_EQ(LM_WS_getTitleListing(H(), listed.TitleID, &title.r), LM_WS_OK);
    EXPECT_EQ(title->TitleListing.TitleID, listed.TitleID);
    EXPECT_STREQ(title->TitleListing.TitleName, listed.TitleName);
    EXPECT_STREQ(title->TitleListing.BoxArtPrefix, listed.BoxArtPrefix);
    EXPECT_EQ(title->TitleListing.IsTvListing, 0);
    EXPECT_STREQ(title->Producers, "Lumora Pictures");
    EXPECT_NE(std::string(title->Synopsys), "");
    ASSERT_EQ(title->TitleListing.AvailableProducts.Count, listed.AvailableProducts.Count);
    ASSERT_GT(listed.AvailableProducts.Count, 0);
    CheckFilled(title.r);

    Record<LM_WS_TranslateSkuIDResponse> sku;
    ASSERT_EQ(LM_WS_translateSkuID(H(), listed.AvailableProducts.Array[0].SkuID, &sku.r), LM_WS_OK);
    EXPECT_EQ(sku->TitleId, listed.TitleID);

    char recboxId[16];
    snprintf(recboxId, sizeof recboxId, "RB%07d", listed.TitleID);
    Record<LM_WS_TranslateRecboxExternalIDResponse> recbox;
    ASSERT_EQ(LM_WS_translateRecboxExternalID(H(), recboxId, &recbox.r), LM_WS_OK);
    EXPECT_EQ(recbox->TitleId, listed.TitleID);
    EXPECT_STREQ(recbox->RecboxExternalId, recboxId);

    Record<LM_WS_RecommendedTitlesResponse> recommended;
    ASSERT_EQ(LM_WS_getRecommendedTitles(H(), listed.TitleID, &recommended.r), LM_WS_OK);
    ASSERT_GT(recommended->Titles.Count, 0);
    EXPECT_LE(recommended->Titles.Count, 8);
    for (int i = 0; i < recommended->Titles.Count; ++i) {
        EXPECT_NE(recommended->Titles.Array[i].TitleID, listed.TitleID);
    }
    CheckFilled(recommended.r);
}

TEST_F(LMWSCatalogueOnline, SeriesAndTheirEpisodes) {
    Record<LM_WS_TitleListingResponse> series;
    ASSERT_EQ(LM_WS_getTitleListing(H(), kFirstSeries, &series.r), LM_WS_OK);
    EXPECT_EQ(series->TitleListing.IsTvListing, 1);
    const std::string name = series->TitleListing.TitleName;

    Record<LM_WS_TvEpisodeList> list;
    ASSERT_EQ(LM_WS_getTvEpisodeListByTitleID(H(), kFirstSeries, &list.r), LM_WS_OK);
    const int count = list->Episodes.Count;
    ASSERT_GE(count, 4);
    ASSERT_LE(count, 12);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(list->Episodes.Array[i].EpisodeNumber, i + 1);
        EXPECT_EQ(list->Episodes.Array[i].EpisodeName, name + ": Part " + std::to_string(i + 1));
    }
    EXPECT_EQ(list->Episodes.Array[0].EpisodeID, kFirstEpisode);
    CheckFilled(list.r);

    const LM_WS_TvEpisode& second = list->Episodes.Array[1];
    Record<LM_WS_TitleListingResponse> episode;
    ASSERT_EQ(LM_WS_getTvEpisodeListing(H(), second.EpisodeID, &episode.r), LM_WS_OK);
    EXPECT_EQ(episode->TitleListing.TitleID, second.EpisodeID);
    EXPECT_STREQ(episode->TitleListing.TitleName, second.EpisodeName);
    EXPECT_EQ(episode->TitleListing.EpisodeNumber, 2);
    EXPECT_STREQ(episode->RunTime, "42 min");

    Record<LM_WS_TitleListingResponses> all;
    ASSERT_EQ(LM_WS_getAllTvEpisodeListings(H(), kFirstSeries, &all.r), LM_WS_OK);
    ASSERT_EQ(all->TitleListingResponses.Count, count);
    for (int i = 0; i < count; ++i) {
        const LM_WS_TitleListingResponse& e = all->TitleListingResponses.Array[i];
        EXPECT_EQ(e.TitleListing.TitleID, list->Episodes.Array[i].EpisodeID);
        EXPECT_EQ(e.TitleListing.EpisodeNumber, i + 1);
    }
    // The episode asked for alone is the same as its place in the whole list.
    EXPECT_EQ(Text(episode.r), Text(all->TitleListingResponses.Array[1]));
}

TEST_F(LMWSCatalogueOnline, SearchAndCacheAge) {
    // Part of a movie's name finds it, and everything found matches.
    Record<LM_WS_TitleListingResponse> movie;
    ASSERT_EQ(LM_WS_getTitleListing(H(), kFirstMovie + 7, &movie.r), LM_WS_OK);
    const std::string part = std::string(movie->TitleListing.TitleName).substr(1);
    Record<LM_WS_TitlesResponse> found;
    ASSERT_EQ(LM_WS_searchForTitle(H(), LM_WS_Page{1, 200}, 2, 0, part.c_str(), &found.r),
              LM_WS_OK);
    EXPECT_EQ(found->CurrentPageNumber, 1);
    EXPECT_EQ(found->ItemsPerPage, 200);
    EXPECT_EQ(found->TotalItems, found->Titles.Count);
    bool hasMovie = false;
    for (int i = 0; i < found->Titles.Count; ++i) {
        hasMovie |= found->Titles.Array[i].TitleID == kFirstMovie + 7;
        EXPECT_NE(std::string(found->Titles.Array[i].TitleName).find(part), std::string::npos);
    }
    EXPECT_TRUE(hasMovie) << part;

    // TV only: a series found by part of its name, and no movie.
    Record<LM_WS_TitleListingResponse> series;
    ASSERT_EQ(LM_WS_getTitleListing(H(), kFirstSeries + 3, &series.r), LM_WS_OK);
    const std::string seriesPart = std::string(series->TitleListing.TitleName).substr(2);
    Record<LM_WS_TitlesResponse> tv;
    ASSERT_EQ(LM_WS_searchForTitleDetail(H(), LM_WS_Page{1, 200}, 2, 1, seriesPart.c_str(), &tv.r),
              LM_WS_OK);
    bool hasSeries = false;
    ASSERT_GT(tv->Titles.Count, 0);
    for (int i = 0; i < tv->Titles.Count; ++i) {
        hasSeries |= tv->Titles.Array[i].TitleID == kFirstSeries + 3;
        EXPECT_EQ(tv->Titles.Array[i].IsTvListing, 1);
    }
    EXPECT_TRUE(hasSeries) << seriesPart;

    // Nothing found: an empty page, not an error.
    Record<LM_WS_TitlesResponse> none;
    ASSERT_EQ(LM_WS_searchForTitle(H(), kSearchPage, 2, 0, "no such title zzz", &none.r), LM_WS_OK);
    EXPECT_EQ(none->Titles.Count, 0);
    EXPECT_EQ(none->Titles.Array, nullptr);
    EXPECT_EQ(none->TotalItems, 0);

    // The flag is the service's answer, overwriting whatever the caller had in it.
    uint8_t flag = 7;
    EXPECT_EQ(LM_WS_shouldUpdateCache(H(), kLoadTime, &flag), LM_WS_OK);
    EXPECT_EQ(flag, 0);
    flag = 7;
    EXPECT_EQ(LM_WS_shouldUpdateCache(H(), "1/1/2020 0:00:00 AM", &flag), LM_WS_OK);
    EXPECT_EQ(flag, 1);
}

TEST_F(LMWSCatalogueOnline, GetTitlesRequestOnTheWire) {
    lmapi_test::LogCapture log;
    Record<LM_WS_TitlesResponse> page;
    ASSERT_EQ(LM_WS_getTitles(H(), kSpyGenre, LM_WS_Page{3, 7}, 1, &page.r), LM_WS_OK);
    EXPECT_EQ(page->CurrentPageNumber, 3);
    EXPECT_EQ(page->ItemsPerPage, 7);

    const std::string sent = log.Text("soap_sent");
    EXPECT_EQ(sent.find("POST /api/RealTimeBrowse.asmx HTTP/1.1\r\n"), 0u) << sent.substr(0, 200);
    EXPECT_EQ(Count(sent, "\r\nUser-Agent: LMSDK: fw7|2.1 LMMODEL:BDP-9\r\n"), 1u)
        << sent.substr(0, 400);
    for (const char* part : {
             "<wsa:MessageID>uuid:getTitlesByNavigation</wsa:MessageID>",
             "http://www.lumora.example/api/getTitlesByNavigation</wsa:Action>",
             "<wsse:UsernameToken",
             "<wsse:Username>user@example</wsse:Username>",
             // The log shows the password hidden; the wire carries it.
             "PasswordText\">***</wsse:Password>",
             "<LM1:DeviceSettings>",
             "<LM1:APIKey>api-key</LM1:APIKey>",
             "<LM1:DestinationUniqueID>device 0001</LM1:DestinationUniqueID>",
             "<LM1:DestinationTypeID>7</LM1:DestinationTypeID>",
             // The arguments, as asked for.
             "<LM1:GenreID>12</LM1:GenreID>",
             "<LM1:CurrentPageNumber>3</LM1:CurrentPageNumber>",
             "<LM1:ItemsPerPage>7</LM1:ItemsPerPage>",
             "<LM1:PurchaseType>buy</LM1:PurchaseType>",
         }) {
        EXPECT_EQ(Count(sent, part), 1u) << part << "\n" << sent;
    }
    EXPECT_EQ(Count(sent, "<LM1:getTitlesByNavigation"), 1u) << "one request";

    // The transport's events go to the toolkit's trace area: the request out, the answer in.
    const std::string events = log.Text("soap_test");
    EXPECT_NE(events.find("soap send: "), std::string::npos) << events;
    EXPECT_NE(events.find("soap recv: "), std::string::npos) << events;
}

// Each transport failure, armed for one answer, gives its status; the next call succeeds again.
TEST_F(LMWSCatalogueOnline, TransportFailuresGiveTheirStatuses) {
    auto titles = [this](LM_WS_Status expected, const char* what) {
        Record<LM_WS_TitlesResponse> page;
        LM_WS_Status status = LM_WS_getTitles(H(), kSpyGenre, kPage1, 2, &page.r);
        EXPECT_EQ(status, expected) << what;
        EXPECT_NE(page->Type, nullptr) << what;
        return status;
    };
    ASSERT_TRUE(ArmFault(*s_Sim, "close-mid-body"));
    titles(LM_WS_CONNECTION_ENDED, "connection closed mid-answer");
    titles(LM_WS_OK, "after close-mid-body");

    ASSERT_TRUE(ArmFault(*s_Sim, "http-status", "500"));
    titles(LM_WS_HTTP_BASE - 500, "HTTP 500");
    ASSERT_TRUE(ArmFault(*s_Sim, "http-status", "404"));
    titles(LM_WS_HTTP_BASE - 404, "HTTP 404");
    titles(LM_WS_OK, "after HTTP errors");

    // An HTTP 200 answer that holds neither the expected response nor a fault is reported by
    // the toolkit with the HTTP status itself, so it maps like any HTTP-level failure.
    ASSERT_TRUE(ArmFault(*s_Sim, "malformed-xml"));
    titles(LM_WS_HTTP_BASE - 200, "malformed XML");
    titles(LM_WS_OK, "after malformed XML");

    // The server's certificate is not trusted without the test CA.
    PointAt(*s_Sim, /*trust=*/false);
    Client untrusted;
    ASSERT_EQ(untrusted.Setup(m_Params), LM_WS_OK);
    Record<LM_WS_TitlesResponse> tls;
    EXPECT_EQ(LM_WS_getTitles(&untrusted.h, kSpyGenre, kPage1, 2, &tls.r), LM_WS_SSL_FAILED);

    // A certificate that names the host only in its subject's common name is refused: host
    // names are matched against subjectAltNames alone.
    LmsimProcess commonNameOnly({}, "--common-name-only");
    ASSERT_TRUE(commonNameOnly.Ready());
    PointAt(commonNameOnly);
    setenv("LM_WS_PRODUCTION_HOST", "localhost", 1);
    Client named;
    ASSERT_EQ(named.Setup(m_Params), LM_WS_OK);
    Record<LM_WS_TitlesResponse> byName;
    EXPECT_EQ(LM_WS_getTitles(&named.h, kSpyGenre, kPage1, 2, &byName.r), LM_WS_SSL_FAILED);
    // The same name among the subjectAltNames is accepted.
    PointAt(*s_Sim);
    setenv("LM_WS_PRODUCTION_HOST", "localhost", 1);
    Client alternative;
    ASSERT_EQ(alternative.Setup(m_Params), LM_WS_OK);
    Record<LM_WS_TitlesResponse> byAlternativeName;
    EXPECT_EQ(LM_WS_getTitles(&alternative.h, kSpyGenre, kPage1, 2, &byAlternativeName.r),
              LM_WS_OK);

    NoServer();
    Client refused;
    ASSERT_EQ(refused.Setup(m_Params), LM_WS_OK);
    Record<LM_WS_TitlesResponse> none;
    EXPECT_EQ(LM_WS_getTitles(&refused.h, kSpyGenre, kPage1, 2, &none.r), LM_WS_NO_CONNECTION);
    EXPECT_NE(none->Type, nullptr);
}

// A server that sends its answer a byte every 100 ms never lets a receive time out; the call
// still ends at its deadline, as a receive that ended early.
TEST_F(LMWSCatalogueOnline, ADrippingServerIsCutOffAtTheCallDeadline) {
    setenv("LM_WS_CALL_DEADLINE", "2", 1);
    Client client;
    const LM_WS_Status setup = client.Setup(m_Params);
    unsetenv("LM_WS_CALL_DEADLINE");
    ASSERT_EQ(setup, LM_WS_OK);
    ASSERT_TRUE(ArmFault(*s_Sim, "drip", "100"));
    const auto start = std::chrono::steady_clock::now();
    Record<LM_WS_TitlesResponse> page;
    const LM_WS_Status status = LM_WS_getTitles(&client.h, kSpyGenre, kPage1, 2, &page.r);
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_NE(status, LM_WS_OK);
    EXPECT_LT(seconds, 3.5) << "status " << status;
}

// Every operation, getMyVideos included, passes a failed HTTP status on as -4000 - n.
TEST_F(LMWSCatalogueOnline, EveryOperationMapsAnHttpError) {
    std::vector<Operation> operations = CatalogueOperations();
    operations.push_back(MyVideosOperation());
    for (const Operation& op : operations) {
        ASSERT_TRUE(ArmFault(*s_Sim, "http-status", "503"));
        CallResult result = op.call(H());
        EXPECT_EQ(result.status, LM_WS_HTTP_BASE - 503) << op.name;
        EXPECT_EQ(result.tag, op.tag) << op.name;
    }
}

// Unknown ids are answered with the service's response code: -1004 and the converted answer.
TEST_F(LMWSCatalogueOnline, ResponseCodesComeBackConverted) {
    Record<LM_WS_TitleListingResponse> title;
    EXPECT_EQ(LM_WS_getTitleListing(H(), 42, &title.r), LM_WS_RESPONSE_CODE);
    EXPECT_EQ(title->ResponseCode, 1);
    EXPECT_STREQ(title->ResponseMessage, "Title not found");
    CheckFilled(title.r);

    Record<LM_WS_TitlesResponse> page;
    EXPECT_EQ(LM_WS_getTitles(H(), 9999, kPage1, 2, &page.r), LM_WS_RESPONSE_CODE);
    EXPECT_EQ(page->ResponseCode, 1);
    EXPECT_STREQ(page->ResponseMessage, "Unknown genre");
    EXPECT_EQ(page->GenreID, 9999);
    EXPECT_EQ(page->Titles.Count, 0);

    Record<LM_WS_GenreLabelResponse> label;
    EXPECT_EQ(LM_WS_getGenreLabel(H(), 9999, &label.r), LM_WS_RESPONSE_CODE);
    EXPECT_STREQ(label->ResponseMessage, "Unknown genre");

    Record<LM_WS_TvEpisodeList> episodes;  // a movie has no episodes
    EXPECT_EQ(LM_WS_getTvEpisodeListByTitleID(H(), kFirstMovie, &episodes.r), LM_WS_RESPONSE_CODE);
    EXPECT_STREQ(episodes->ResponseMessage, "Series not found");
    EXPECT_EQ(episodes->Episodes.Count, 0);

    Record<LM_WS_TranslateSkuIDResponse> sku;
    EXPECT_EQ(LM_WS_translateSkuID(H(), 1, &sku.r), LM_WS_RESPONSE_CODE);
    EXPECT_STREQ(sku->ResponseMessage, "Unknown SKU");
    Record<LM_WS_TranslateRecboxExternalIDResponse> recbox;
    EXPECT_EQ(LM_WS_translateRecboxExternalID(H(), "RB-none", &recbox.r), LM_WS_RESPONSE_CODE);
    EXPECT_STREQ(recbox->RecboxExternalId, "RB-none");
    Record<LM_WS_RecommendedTitlesResponse> recommended;
    EXPECT_EQ(LM_WS_getRecommendedTitles(H(), 42, &recommended.r), LM_WS_RESPONSE_CODE);
    EXPECT_EQ(recommended->ResponseCode, 1);
}

// ---- The cache: each test has its own simulator, to stop it ----

struct CachedClient {
    LmsimProcess sim;
    TempDir dir;
    Params params;
    Client client;

    // A file cache with the CacheData bits `data`.
    LM_WS_Status Setup(uint32_t data, uint32_t type = LM_WS_CacheParam::File) {
        if (!sim.Ready()) {
            return -1;
        }
        PointAt(sim);
        params.p.CacheType = type;
        params.p.CacheData = data;
        params.cachePath = dir.path;
        return client.Setup(params);
    }
    LM_WS_Handle* H() { return &client.h; }
    CacheFile File() { return CacheFile(client.Block().Cache.CachePath); }
};

TEST(LMWSCatalogueCache, StoredAnswersAreReplayedWithTheServiceGone) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service), LM_WS_OK);
    ASSERT_NE(c.client.Context()->m_CacheMgr, nullptr);

    const std::vector<Operation> operations = CatalogueOperations();
    std::vector<CallResult> online;
    size_t cached = 0;
    for (const Operation& op : operations) {
        online.push_back(op.call(c.H()));
        ASSERT_EQ(online.back().status, LM_WS_OK) << op.name;
        cached += op.cached ? 1 : 0;
    }

    // One row per cached call, under the names and keys the cache is shared by.
    const auto keys = c.File().Keys("Service");
    EXPECT_EQ(keys.size(), cached);
    for (const std::pair<std::string, std::string>& key :
         std::vector<std::pair<std::string, std::string>>{
             {"getTitles", "12,1,20,2"},
             {"getTitleListing", std::to_string(kFirstMovie + 5)},
             {"translateRecboxExternalId", "RB0100005"},
         }) {
        EXPECT_EQ(keys.count(key), 1u) << key.first << " / " << key.second;
    }
    std::multiset<std::string> names;
    size_t searches = 0;
    for (const auto& key : keys) {
        names.insert(key.first);
        searches += key.second == "1,10,2,0,Harbor" ? 1 : 0;
    }
    for (const char* name :
         {"getNavigation", "getTvEpisodeListing", "translateSkuId", "getRecommendedTitles"}) {
        EXPECT_EQ(names.count(name), 1u) << name;
    }
    EXPECT_EQ(searches, 2u) << "the two searches are stored apart";
    EXPECT_TRUE(c.File().Keys("Userdata").empty());

    // With the service gone, the cached operations answer exactly as before; the others fail.
    ASSERT_EQ(c.sim.Stop(), 0);
    for (size_t i = 0; i < operations.size(); ++i) {
        CallResult offline = operations[i].call(c.H());
        if (operations[i].cached) {
            EXPECT_EQ(offline.status, LM_WS_OK) << operations[i].name;
            EXPECT_EQ(offline.text, online[i].text) << operations[i].name;
        } else {
            EXPECT_EQ(offline.status, LM_WS_NO_CONNECTION) << operations[i].name;
        }
    }

    // Other arguments are other entries.
    Record<LM_WS_TitlesResponse> otherPage;
    EXPECT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, LM_WS_Page{2, 20}, 2, &otherPage.r),
              LM_WS_NO_CONNECTION);
    Record<LM_WS_TitlesResponse> otherType;
    EXPECT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 1, &otherType.r), LM_WS_NO_CONNECTION);
}

TEST(LMWSCatalogueCache, AnswersWithAResponseCodeAreNotStored) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service), LM_WS_OK);
    Record<LM_WS_TitleListingResponse> unknown;
    EXPECT_EQ(LM_WS_getTitleListing(c.H(), 42, &unknown.r), LM_WS_RESPONSE_CODE);
    EXPECT_EQ(unknown->ResponseCode, 1);
    EXPECT_STREQ(unknown->ResponseMessage, "Title not found");
    Record<LM_WS_TitlesResponse> unknownGenre;
    EXPECT_EQ(LM_WS_getTitles(c.H(), 9999, kPage1, 2, &unknownGenre.r), LM_WS_RESPONSE_CODE);
    EXPECT_TRUE(c.File().Keys("Service").empty());

    ASSERT_EQ(c.sim.Stop(), 0);
    Record<LM_WS_TitleListingResponse> again;
    EXPECT_EQ(LM_WS_getTitleListing(c.H(), 42, &again.r), LM_WS_NO_CONNECTION);
    Record<LM_WS_TitlesResponse> againGenre;
    EXPECT_EQ(LM_WS_getTitles(c.H(), 9999, kPage1, 2, &againGenre.r), LM_WS_NO_CONNECTION);
}

// The database is the authority: an entry that no longer decodes, or is gone, is not answered
// from what an earlier read of it decoded.
TEST(LMWSCatalogueCache, CorruptedOrRemovedEntryIsAMiss) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service), LM_WS_OK);
    const char* const key = "12,1,20,2";
    lmapi_test::LogCapture log;
    auto requests = [&log] { return Count(log.Text("soap_sent"), "<LM1:getTitlesByNavigation"); };
    Record<LM_WS_TitlesResponse> first;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &first.r), LM_WS_OK);
    Record<LM_WS_TitlesResponse> hit;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &hit.r), LM_WS_OK);
    EXPECT_EQ(Text(hit.r), Text(first.r));
    EXPECT_EQ(requests(), 1u) << "the second call is a hit";

    ASSERT_TRUE(c.File().Overwrite("Service", "getTitles", key, kGarbage));
    Record<LM_WS_TitlesResponse> second;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &second.r), LM_WS_OK);
    EXPECT_EQ(Text(second.r), Text(first.r));
    EXPECT_EQ(requests(), 2u) << "the service was asked";
    const std::string replaced = c.File().Value("Service", "getTitles", key);
    EXPECT_NE(replaced, kGarbage);
    EXPECT_NE(replaced, "<missing>");

    // What replaced the garbage is a good answer: it serves with the service gone.
    ASSERT_EQ(c.sim.Stop(), 0);
    Record<LM_WS_TitlesResponse> third;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &third.r), LM_WS_OK);
    EXPECT_EQ(Text(third.r), Text(first.r));

    // Once the entry is gone from the database, nothing answers it.
    ASSERT_TRUE(c.File().Remove("Service", "getTitles", key));
    Record<LM_WS_TitlesResponse> gone;
    EXPECT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &gone.r), LM_WS_NO_CONNECTION);
}

// The text a stored answer inflates to ("" when it does not).
std::string Inflated(const std::string& stored) {
    z_stream stream{};
    if (inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK) {
        return "";
    }
    std::string text;
    char chunk[16384];
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stored.data()));
    stream.avail_in = static_cast<uInt>(stored.size());
    int rc = Z_OK;
    while (rc == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk);
        stream.avail_out = sizeof(chunk);
        rc = inflate(&stream, Z_NO_FLUSH);
        text.append(chunk, sizeof(chunk) - stream.avail_out);
    }
    inflateEnd(&stream);
    return rc == Z_STREAM_END ? text : "";
}

// Answers go into the cache as the client received them, compressed on the wire or not, on a
// kept connection or a new one: under the root tag is the response's XML byte for byte.
TEST(LMWSCatalogueCache, AnswersAreStoredAsReceived) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service), LM_WS_OK);
    lmapi_test::LogCapture log;
    Record<LM_WS_TitlesResponse> first;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &first.r), LM_WS_OK);
    Record<LM_WS_TitlesResponse> second;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, LM_WS_Page{2, 20}, 2, &second.r), LM_WS_OK);
    ASSERT_TRUE(ArmFault(c.sim, "delay", "1"));  // sent plain, and the connection closes
    Record<LM_WS_TitlesResponse> plain;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, LM_WS_Page{3, 20}, 2, &plain.r), LM_WS_OK);
    Record<LM_WS_TitlesResponse> reopened;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, LM_WS_Page{4, 20}, 2, &reopened.r), LM_WS_OK);

    const std::string received = log.Text("soap_recv");
    EXPECT_EQ(Count(received, "\r\nContent-Encoding: gzip\r\n"), 3u);
    for (const char* key : {"12,1,20,2", "12,2,20,2", "12,3,20,2", "12,4,20,2"}) {
        const std::string text = Inflated(c.File().Value("Service", "getTitles", key));
        const size_t root = text.find("\n<LMWSLib xmlns:SOAP-ENV=\"");
        const size_t end = text.rfind("</LMWSLib>");
        ASSERT_TRUE(root != std::string::npos && end != std::string::npos) << key << ": " << text;
        const size_t begin = text.find('>', root) + 1;
        const std::string response = "<LM1:getTitlesByNavigationResponse>" +
                                     text.substr(begin, end - begin) +
                                     "</LM1:getTitlesByNavigationResponse>";
        EXPECT_GT(response.size(), 5000u) << key;
        EXPECT_EQ(Count(received, response), 1u) << key;
    }
}

// The whole request names its entry: queries that differ only after their first few hundred
// characters are different searches.
TEST(LMWSCatalogueCache, LongQueriesAreKeptApart) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service), LM_WS_OK);
    const std::string stem(300, 'q');
    lmapi_test::LogCapture log;
    for (const char* last : {"1", "2"}) {
        Record<LM_WS_TitlesResponse> found;
        EXPECT_EQ(LM_WS_searchForTitle(c.H(), kSearchPage, 2, 0, (stem + last).c_str(), &found.r),
                  LM_WS_OK)
            << last;
    }
    EXPECT_EQ(Count(log.Text("soap_sent"), "<LM1:searchForTitle>"), 2u)
        << "the second query was answered with the first one's entry";
}

TEST(LMWSCatalogueCache, NothingIsStoredWithoutTheServiceBit) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::UserData | LM_WS_CacheParam::BoxArt), LM_WS_OK);
    ASSERT_NE(c.client.Context()->m_CacheMgr, nullptr);
    const std::vector<Operation> operations = CatalogueOperations();
    for (const Operation& op : operations) {
        EXPECT_EQ(op.call(c.H()).status, LM_WS_OK) << op.name;
    }
    EXPECT_TRUE(c.File().Keys("Service").empty());
    ASSERT_EQ(c.sim.Stop(), 0);
    Record<LM_WS_TitlesResponse> again;
    EXPECT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &again.r), LM_WS_NO_CONNECTION);
}

TEST(LMWSCatalogueCache, WithoutACacheEveryCallAsksTheService) {
    CachedClient c;
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service, LM_WS_CacheParam::None), LM_WS_OK);
    EXPECT_EQ(c.client.Context()->m_CacheMgr, nullptr);
    lmapi_test::LogCapture log;
    Record<LM_WS_TitlesResponse> first;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &first.r), LM_WS_OK);
    Record<LM_WS_TitlesResponse> second;
    ASSERT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &second.r), LM_WS_OK);
    EXPECT_EQ(Text(second.r), Text(first.r));
    EXPECT_EQ(Count(log.Text("soap_sent"), "<LM1:getTitlesByNavigation"), 2u);
    ASSERT_EQ(c.sim.Stop(), 0);
    Record<LM_WS_TitlesResponse> third;
    EXPECT_EQ(LM_WS_getTitles(c.H(), kSpyGenre, kPage1, 2, &third.r), LM_WS_NO_CONNECTION);
}

// ---- getMyVideos: canned answers, since the simulator does not model it ----

// The answer of `operation`: getMyVideos on the download service, getMyStreamingVideos on the
// streaming service.
std::string MyVideosAnswer(const std::string& operation) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<soap:Envelope xmlns:soap=\"http://www.w3.org/2003/05/soap-envelope\" "
           "xmlns:LM1=\"http://www.lumora.example/api/\"><soap:Body>"
           "<LM1:" +
           operation + "Response><LM1:" + operation +
           "Result>"
           "<LM1:ResponseCode>0</LM1:ResponseCode><LM1:ResponseMessage>ok</LM1:ResponseMessage>"
           "<LM1:Titles><LM1:TitleListingPurchased>"
           "<LM1:TitleID>100007</LM1:TitleID><LM1:TitleName>Canned &amp; Kept</LM1:TitleName>"
           "<LM1:EpisodeID>0</LM1:EpisodeID><LM1:RentalPeriod>48</LM1:RentalPeriod>"
           "<LM1:PassID>5</LM1:PassID><LM1:StartTimeSeconds>90</LM1:StartTimeSeconds>"
           "</LM1:TitleListingPurchased></LM1:Titles>"
           "<LM1:CurrentPageNumber>1</LM1:CurrentPageNumber>"
           "<LM1:ItemsPerPage>10</LM1:ItemsPerPage><LM1:TotalPages>1</LM1:TotalPages>"
           "<LM1:TotalItems>1</LM1:TotalItems>"
           "</LM1:" +
           operation + "Result></LM1:" + operation + "Response></soap:Body></soap:Envelope>";
}

struct MyVideosClient {
    const LM_WS_AccessType accessType;
    TempDir dir;
    Params params;
    Client client;
    lmapi_test::CannedHttpServer server;
    std::string endpoint;

    explicit MyVideosClient(LM_WS_AccessType type)
        : accessType(type),
          server(MyVideosAnswer(type == 1 ? "getMyVideos" : "getMyStreamingVideos")),
          endpoint(server.Endpoint()) {}

    // Offline set-up with a file cache, then the service of the access type aimed at the server.
    LM_WS_Status Setup(uint32_t data) {
        NoServer();
        params.p.AccessType = accessType;
        params.p.CacheType = LM_WS_CacheParam::File;
        params.p.CacheData = data;
        params.cachePath = dir.path;
        LM_WS_Status status = client.Setup(params);
        if (status == LM_WS_OK) {
            LMWSClient* context = client.Context();
            (accessType == 1 ? context->m_DownloadAPI.soap_endpoint
                             : context->m_StreamAPI.soap_endpoint) = endpoint.c_str();
        }
        return status;
    }
    CallResult Call(LM_WS_Page page = LM_WS_Page{1, 10}) {
        return Run<LM_WS_MyVideosResponse>(&client.h, [page](LM_WS_Handle* h, auto* r) {
            return LM_WS_getMyVideos(h, page, 2, 0, 0, r);
        });
    }
    CacheFile File() { return CacheFile(client.Block().Cache.CachePath); }
};

TEST(LMWSCatalogueMyVideos, DownloadServiceIsAlwaysAskedAndNeverCached) {
    MyVideosClient c(1);
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::Service | LM_WS_CacheParam::UserData), LM_WS_OK);
    Record<LM_WS_MyVideosResponse> videos;
    ASSERT_EQ(LM_WS_getMyVideos(&c.client.h, LM_WS_Page{1, 10}, 2, 0, 0, &videos.r), LM_WS_OK);
    EXPECT_STREQ(videos->ResponseMessage, "ok");
    ASSERT_EQ(videos->Titles.Count, 1);
    EXPECT_EQ(videos->Titles.Array[0].TitleListing.TitleID, 100007);
    EXPECT_STREQ(videos->Titles.Array[0].TitleListing.TitleName, "Canned & Kept");
    EXPECT_STREQ(videos->Titles.Array[0].RentalPeriod, "48");
    EXPECT_EQ(videos->Titles.Array[0].PassID, 5);
    EXPECT_EQ(videos->Titles.Array[0].StartTimeSeconds, 90);
    EXPECT_EQ(videos->CurrentPageNumber, 1);
    EXPECT_EQ(videos->TotalItems, 1);
    const std::string first = Text(videos.r);

    EXPECT_EQ(c.Call().text, first);
    const std::vector<std::string> requests = c.server.Requests();
    ASSERT_EQ(requests.size(), 2u);
    for (const std::string& request : requests) {
        EXPECT_NE(request.find("<LM1:DownloadDeviceRequestSettings>"), std::string::npos);
        EXPECT_NE(request.find("<wsa:MessageID>uuid:getMyVideos</wsa:MessageID>"),
                  std::string::npos);
        EXPECT_NE(request.find("<LM1:getMyVideos>"), std::string::npos) << request;
    }
    EXPECT_TRUE(c.File().Keys("Userdata").empty());
    EXPECT_TRUE(c.File().Keys("Service").empty());
}

TEST(LMWSCatalogueMyVideos, StreamServiceAnswersAreKeptAmongTheUserData) {
    MyVideosClient c(2);
    ASSERT_EQ(c.Setup(LM_WS_CacheParam::UserData), LM_WS_OK);
    CallResult first = c.Call();
    ASSERT_EQ(first.status, LM_WS_OK);
    ASSERT_EQ(c.server.Requests().size(), 1u);
    EXPECT_NE(c.server.Requests()[0].find("<LM1:StreamDeviceRequestSettings>"), std::string::npos);
    const std::set<std::pair<std::string, std::string>> stored = {{"getMyVideos", "1,10,2,0,0"}};
    EXPECT_EQ(c.File().Keys("Userdata"), stored);
    EXPECT_TRUE(c.File().Keys("Service").empty());

    // The same request is answered from the cache; another page is not.
    CallResult second = c.Call();
    EXPECT_EQ(second.status, LM_WS_OK);
    EXPECT_EQ(second.text, first.text);
    EXPECT_EQ(c.server.Requests().size(), 1u);
    EXPECT_EQ(c.Call(LM_WS_Page{2, 10}).status, LM_WS_OK);
    EXPECT_EQ(c.server.Requests().size(), 2u);

    // A corrupted entry is asked for again and replaced.
    ASSERT_TRUE(c.File().Overwrite("Userdata", "getMyVideos", "1,10,2,0,0", kGarbage));
    EXPECT_EQ(c.Call().text, first.text);
    EXPECT_EQ(c.server.Requests().size(), 3u);
    EXPECT_EQ(c.Call().text, first.text);
    EXPECT_EQ(c.server.Requests().size(), 3u);
}

// ---- Handles without a client ----

TEST(LMWSCatalogueHandle, EveryOperationRejectsAHandleWithoutAClient) {
    std::vector<Operation> operations = CatalogueOperations();
    operations.push_back(MyVideosOperation());
    LM_WS_Handle never{};
    for (const Operation& op : operations) {
        CallResult result = op.call(&never);
        EXPECT_EQ(result.status, LM_WS_INVALID_ARGUMENT) << op.name;
        // The record was initialised (its tag allocated) and Run released it.
        EXPECT_EQ(result.tag, op.tag) << op.name;
        EXPECT_EQ(op.call(nullptr).status, LM_WS_INVALID_ARGUMENT) << op.name;
    }

    // A torn-down handle is the same as one never set up.
    NoServer();
    Params params;
    Client client;
    ASSERT_EQ(client.Setup(params), LM_WS_OK);
    uint8_t flag = 7;
    EXPECT_EQ(LM_WS_shouldUpdateCache(&client.h, "", &flag), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(flag, 0);
    flag = 7;
    EXPECT_EQ(LM_WS_shouldUpdateCache(&client.h, nullptr, &flag), LM_WS_INVALID_ARGUMENT);
    EXPECT_EQ(flag, 0);
    LM_WS_Teardown(&client.h);
    for (const Operation& op : operations) {
        EXPECT_EQ(op.call(&client.h).status, LM_WS_INVALID_ARGUMENT) << op.name;
    }
}

}  // namespace
