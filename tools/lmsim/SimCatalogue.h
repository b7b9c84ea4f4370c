// The simulator's catalogue: a deterministic set of genres, movies, TV series with episodes,
// products and box-art prefixes, with the paging and search the catalogue operations need.
// The same seed always gives the same catalogue, so tests can name titles by id.
#ifndef LMSIM_CATALOGUE_H
#define LMSIM_CATALOGUE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lmsim {

// Purchase types and title types as the service numbers them.
enum { kRent = 0, kBuy = 1, kAnyPurchase = 2 };

// The catalogue's first SKU (the first product of title 100000), the one whose offer ended on
// "2012/03/05 23:59:00".
constexpr int kFirstSku = 700000;
enum { kAnyTitle = 0, kTvTitles = 1, kMovies = 2 };

struct Genre {
    int id;
    std::string name;
    bool visible;
    int parentId;  // 0 for a top-level genre
};

struct AudioTrack {
    int id;
    std::string location;
    bool containsVideo;
    int profile;  // AudioSetting
};

struct Product {
    int skuId;
    int purchaseType;   // kRent or kBuy
    std::string price;  // decimal text, e.g. "3.99"
    std::vector<int> fileProfiles;
    std::string expireDate;
    std::vector<AudioTrack> audio;
    int rentalPeriodHours;
};

struct BonusAsset {
    int id;
    int profile;  // FileProfile
    int type;     // BonusAssetType: 0 trailer
};

struct Episode {
    int episodeId;
    std::string name;
    int number;
};

struct Title {
    int id;
    std::string name;
    std::string boxArtPrefix;
    bool isTv;
    std::string rating;
    std::vector<int> genres;  // the genres it is listed in, parents included
    std::vector<Product> products;
    std::vector<BonusAsset> bonusAssets;
    std::vector<Episode> episodes;  // TV series only
    std::string synopsis;
    std::string directors;
    std::string actors;
    int runTimeMinutes;
    int userRating;  // 1..5
    bool thx;
    std::string recboxId;
    int assetId;  // the main video asset
};

// A page of a result list: 1-based page number, clamped page size.
struct Page {
    std::vector<const Title*> items;
    int currentPage;
    int itemsPerPage;
    int totalItems;
    int totalPages;
};

class Catalogue {
public:
    // The standard catalogue: 35 genres, 2,000 movies and 60 TV series with 531 episodes.
    static Catalogue Build(uint32_t seed = 20261123);

    const std::vector<Genre>& Genres() const { return m_Genres; }
    const Genre* FindGenre(int id) const;
    const std::vector<Title>& Titles() const { return m_Titles; }
    const Title* FindTitle(int id) const;
    // The series an episode belongs to, and the episode itself through `episode`.
    const Title* FindEpisode(int episodeId, const Episode** episode) const;
    const Title* FindBySku(int skuId) const;
    const Title* FindByAsset(int assetId) const;
    const Title* FindByRecboxId(const std::string& recboxId) const;

    // Titles listed in `genreId` that offer `purchaseType` (kAnyPurchase: all).
    std::vector<const Title*> InGenre(int genreId, int purchaseType) const;
    // Case-insensitive substring search over names, filtered by purchase and title type.
    std::vector<const Title*> Search(const std::string& query, int purchaseType,
                                     int titleType) const;
    // A few other titles of the same first genre.
    std::vector<const Title*> Recommended(int titleId) const;

    static Page Paginate(const std::vector<const Title*>& all, int page, int perPage);
    // The numbers of a page of any list of `count` items, by the same rules; no items.
    static Page PageFrame(size_t count, int page, int perPage);

    // The catalogue's last load time as the service writes it.
    const std::string& LastLoadTime() const { return m_LastLoadTime; }

private:
    std::vector<Genre> m_Genres;
    std::vector<Title> m_Titles;
    std::map<int, size_t> m_ById;
    std::map<int, std::pair<size_t, size_t>> m_ByEpisode;  // episode id -> (title, episode)
    std::map<int, size_t> m_BySku;
    std::string m_LastLoadTime;
};

}  // namespace lmsim

#endif  // LMSIM_CATALOGUE_H
