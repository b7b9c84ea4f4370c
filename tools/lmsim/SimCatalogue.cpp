#include "SimCatalogue.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace lmsim {

namespace {

// A small linear congruential generator: the same numbers on every platform and library.
class Rng {
public:
    explicit Rng(uint32_t seed) : m_State(seed) {}
    uint32_t Next() {
        m_State = m_State * 1664525u + 1013904223u;
        return m_State >> 8;
    }
    int Below(int n) { return static_cast<int>(Next() % static_cast<uint32_t>(n)); }
    template <size_t N>
    const char* Pick(const char* const (&words)[N]) {
        return words[Below(static_cast<int>(N))];
    }

private:
    uint32_t m_State;
};

struct GenreSeed {
    const char* name;
    std::vector<const char*> children;
};

const GenreSeed kGenreTree[] = {
    {"Action", {"Martial Arts", "Heist", "Spy", "Disaster"}},
    {"Comedy", {"Romantic Comedy", "Satire", "Slapstick", "Buddy"}},
    {"Drama", {"Courtroom", "Period", "Sports Drama", "Biography"}},
    {"Family", {"Animation", "Adventure", "Musicals"}},
    {"Horror", {"Supernatural", "Slasher", "Creature"}},
    {"Sci-Fi & Fantasy", {"Space", "Time Travel", "Fantasy Epics"}},
    {"Documentary", {"Nature", "History", "Music & Concerts"}},
    {"TV Shows", {"TV Drama", "TV Comedy", "Reality"}},
};

const char* const kAdjectives[] = {"Silent",  "Crimson", "Last",   "Hidden", "Broken",   "Golden",
                                   "Distant", "Wild",    "Frozen", "Secret", "Electric", "Midnight",
                                   "Lonely",  "Burning", "Velvet", "Iron"};
const char* const kNouns[] = {"Harbor", "Empire",  "Summer", "Garden",  "Protocol", "Horizon",
                              "River",  "Kingdom", "Signal", "Orchard", "Frontier", "Lantern",
                              "Voyage", "Station", "Mirror", "Canyon"};
const char* const kPeople[] = {"A. Moreau",   "J. Okafor",    "L. Brandt", "M. Ishikawa",
                               "R. Castillo", "S. Lindqvist", "T. Haddad", "V. Novak"};
const char* const kRatings[] = {"G", "PG", "PG-13", "R", "NR"};
const char* const kPrices[] = {"0.99", "1.99", "2.99", "3.99", "4.99", "9.99", "14.99", "19.99"};

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// Box-art prefixes are file-name-like; some carry spaces and "&" so clients must encode them.
std::string BoxArtPrefix(const std::string& name, int id) {
    if (id % 17 == 0) {
        return name + " & Co " + std::to_string(id);
    }
    std::string prefix;
    for (char c : Lower(name)) {
        prefix += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    }
    return prefix + "_" + std::to_string(id);
}

}  // namespace

Catalogue Catalogue::Build(uint32_t seed) {
    Catalogue c;
    Rng rng(seed);

    // Genres: top levels 1..8, their children numbered on from 10.
    std::vector<int> leafGenres;
    std::vector<int> tvGenres;
    int topId = 1;
    int childId = 10;
    for (const GenreSeed& top : kGenreTree) {
        c.m_Genres.push_back({topId, top.name, true, 0});
        int n = 0;
        for (const char* child : top.children) {
            int id = childId++;
            ++n;
            // One hidden genre exercises the Visible flag.
            c.m_Genres.push_back({id, child, !(topId == 5 && n == 3), topId});
            (topId == 8 ? tvGenres : leafGenres).push_back(id);
        }
        ++topId;
    }

    auto parentOf = [&c](int genreId) {
        const Genre* g = c.FindGenre(genreId);
        return g != nullptr ? g->parentId : 0;
    };

    const int kMovies = 2000;
    const int kSeries = 60;
    int nextSku = kFirstSku;
    int nextEpisode = 500000;
    for (int i = 0; i < kMovies + kSeries; ++i) {
        Title t;
        t.id = 100000 + i;
        t.isTv = i >= kMovies;
        t.name = std::string(rng.Pick(kAdjectives)) + " " + rng.Pick(kNouns);
        if (i % 5 == 0) {
            t.name = "The " + t.name;
        }
        if (i % 11 == 0) {
            t.name += " " + std::to_string(2 + i % 4);  // sequels
        }
        if (i % 23 == 0) {
            t.name +=
                " \xC3\xA9"
                "dition sp\xC3\xA9"
                "ciale";  // non-ASCII text
        }
        t.boxArtPrefix = BoxArtPrefix(t.name, t.id);
        t.rating = rng.Pick(kRatings);
        const std::vector<int>& pool = t.isTv ? tvGenres : leafGenres;
        int first = pool[static_cast<size_t>(rng.Below(static_cast<int>(pool.size())))];
        t.genres = {first, parentOf(first)};
        if (!t.isTv && rng.Below(3) == 0) {
            int second = pool[static_cast<size_t>(rng.Below(static_cast<int>(pool.size())))];
            if (second != first) {
                t.genres.push_back(second);
                if (parentOf(second) != parentOf(first)) {
                    t.genres.push_back(parentOf(second));
                }
            }
        }
        // Products: most titles rent and buy, in SD and HD; some only one way.
        int offer = rng.Below(10);
        for (int type : {kRent, kBuy}) {
            if ((type == kRent && offer == 0) || (type == kBuy && offer == 1)) {
                continue;
            }
            for (int hd = 0; hd < 2; ++hd) {
                Product p;
                p.skuId = nextSku++;
                p.purchaseType = type;
                p.price = kPrices[(type == kBuy ? 4 : 1) + hd + rng.Below(3)];
                p.fileProfiles = hd ? std::vector<int>{2, 8} : std::vector<int>{1};
                // Offers end on the last day of a year; bought SD copies never end, and the
                // catalogue's first product ended long ago (a date a movie can check by hand).
                const std::string year = std::to_string(2027 + rng.Below(3));
                if (p.skuId == kFirstSku) {
                    p.expireDate = "2012/03/05 23:59:00";
                } else if (type == kRent || hd) {
                    p.expireDate = year + "/12/31 23:59:59";
                }
                p.audio.push_back(
                    {p.skuId * 10, "audio/" + std::to_string(p.skuId) + "_st.mp4", false, 0});
                if (hd) {
                    p.audio.push_back({p.skuId * 10 + 1,
                                       "audio/" + std::to_string(p.skuId) + "_51.mp4", false, 3});
                }
                p.rentalPeriodHours = type == kRent ? 48 : 0;
                t.products.push_back(p);
            }
        }
        if (i % 4 == 0) {
            t.bonusAssets.push_back({800000 + i, 1, 0});
        }
        if (t.isTv) {
            int count = 4 + rng.Below(9);
            for (int e = 1; e <= count; ++e) {
                t.episodes.push_back({nextEpisode++, t.name + ": Part " + std::to_string(e), e});
            }
        }
        t.synopsis = "In a " + Lower(rng.Pick(kAdjectives)) + " " + Lower(rng.Pick(kNouns)) +
                     ", nothing is what it seems.";
        t.directors = rng.Pick(kPeople);
        t.actors = std::string(rng.Pick(kPeople)) + ", " + rng.Pick(kPeople);
        t.runTimeMinutes = t.isTv ? 42 : 85 + rng.Below(70);
        t.userRating = 1 + rng.Below(5);
        t.thx = rng.Below(6) == 0;
        char recbox[32];
        snprintf(recbox, sizeof(recbox), "RB%07d", t.id);
        t.recboxId = recbox;
        t.assetId = 900000 + i;
        c.m_Titles.push_back(t);
    }

    for (size_t i = 0; i < c.m_Titles.size(); ++i) {
        const Title& t = c.m_Titles[i];
        c.m_ById[t.id] = i;
        for (const Product& p : t.products) {
            c.m_BySku[p.skuId] = i;
        }
        for (size_t e = 0; e < t.episodes.size(); ++e) {
            c.m_ByEpisode[t.episodes[e].episodeId] = {i, e};
        }
    }
    c.m_LastLoadTime = "11/23/2026 6:00:00 AM";
    return c;
}

const Genre* Catalogue::FindGenre(int id) const {
    for (const Genre& g : m_Genres) {
        if (g.id == id) {
            return &g;
        }
    }
    return nullptr;
}

const Title* Catalogue::FindTitle(int id) const {
    auto it = m_ById.find(id);
    return it != m_ById.end() ? &m_Titles[it->second] : nullptr;
}

const Title* Catalogue::FindEpisode(int episodeId, const Episode** episode) const {
    auto it = m_ByEpisode.find(episodeId);
    if (it == m_ByEpisode.end()) {
        return nullptr;
    }
    const Title& t = m_Titles[it->second.first];
    if (episode != nullptr) {
        *episode = &t.episodes[it->second.second];
    }
    return &t;
}

const Title* Catalogue::FindBySku(int skuId) const {
    auto it = m_BySku.find(skuId);
    return it != m_BySku.end() ? &m_Titles[it->second] : nullptr;
}

const Title* Catalogue::FindByAsset(int assetId) const {
    return assetId >= 900000 ? FindTitle(100000 + (assetId - 900000)) : nullptr;
}

const Title* Catalogue::FindByRecboxId(const std::string& recboxId) const {
    for (const Title& t : m_Titles) {
        if (t.recboxId == recboxId) {
            return &t;
        }
    }
    return nullptr;
}

namespace {
bool Offers(const Title& t, int purchaseType) {
    if (purchaseType == kAnyPurchase) {
        return true;
    }
    for (const Product& p : t.products) {
        if (p.purchaseType == purchaseType) {
            return true;
        }
    }
    return false;
}
}  // namespace

std::vector<const Title*> Catalogue::InGenre(int genreId, int purchaseType) const {
    std::vector<const Title*> out;
    for (const Title& t : m_Titles) {
        if (std::find(t.genres.begin(), t.genres.end(), genreId) != t.genres.end() &&
            Offers(t, purchaseType)) {
            out.push_back(&t);
        }
    }
    return out;
}

std::vector<const Title*> Catalogue::Search(const std::string& query, int purchaseType,
                                            int titleType) const {
    std::vector<const Title*> out;
    const std::string needle = Lower(query);
    for (const Title& t : m_Titles) {
        if ((titleType == kTvTitles && !t.isTv) || (titleType == kMovies && t.isTv)) {
            continue;
        }
        if (Lower(t.name).find(needle) != std::string::npos && Offers(t, purchaseType)) {
            out.push_back(&t);
        }
    }
    return out;
}

std::vector<const Title*> Catalogue::Recommended(int titleId) const {
    std::vector<const Title*> out;
    const Title* t = FindTitle(titleId);
    if (t == nullptr) {
        return out;
    }
    for (const Title* other : InGenre(t->genres.front(), kAnyPurchase)) {
        if (other->id != titleId) {
            out.push_back(other);
        }
        if (out.size() == 8) {
            break;
        }
    }
    return out;
}

Page Catalogue::PageFrame(size_t count, int page, int perPage) {
    Page p;
    p.itemsPerPage = std::max(1, std::min(perPage, 200));
    p.totalItems = static_cast<int>(count);
    p.totalPages = (p.totalItems + p.itemsPerPage - 1) / p.itemsPerPage;
    p.currentPage = std::max(1, page);
    return p;
}

Page Catalogue::Paginate(const std::vector<const Title*>& all, int page, int perPage) {
    Page p = PageFrame(all.size(), page, perPage);
    size_t begin = static_cast<size_t>(p.currentPage - 1) * static_cast<size_t>(p.itemsPerPage);
    for (size_t i = begin; i < all.size() && i < begin + static_cast<size_t>(p.itemsPerPage); ++i) {
        p.items.push_back(all[i]);
    }
    return p;
}

}  // namespace lmsim
