// The names of the cache's entries, in one place for the operations that store them and for the
// cache, which drops some of them by name.
//
// A service answer is stored in the Service table under its entry name with the request's
// argument text as the key; answers about the user go to the Userdata table the same way, beside
// the wishlist flags. An entry name is the name the operation has always been cached under:
// mostly the service operation's, sometimes an older spelling ("getTitles", "translateSkuId").
#ifndef LM_CACHE_NAMES_H
#define LM_CACHE_NAMES_H

namespace LMCacheNames {

// Service table.
constexpr char kNavigation[] = "getNavigation";
constexpr char kTitles[] = "getTitles";
constexpr char kTitleListing[] = "getTitleListing";
constexpr char kTvEpisodeListing[] = "getTvEpisodeListing";
constexpr char kTvEpisodeListByTitleID[] = "getTvEpisodeListByTitleID";
constexpr char kAllTvEpisodeListings[] = "getAllTvEpisodeListings";
constexpr char kSearchForTitle[] = "searchForTitle";
constexpr char kSearchForTitleDetail[] = "searchForTitleDetail";
constexpr char kTranslateRecboxExternalId[] = "translateRecboxExternalId";
constexpr char kTranslateSkuId[] = "translateSkuId";
constexpr char kRecommendedTitles[] = "getRecommendedTitles";

// Userdata table.
constexpr char kWishlistItems[] = "getWishlistItems";
constexpr char kMyVideos[] = "getMyVideos";
constexpr char kEmailAddress[] = "getEmailAddress";
constexpr char kBillingInfo[] = "getBillingInfo";
constexpr char kSettingsPageInfo[] = "getSettingsPageInfo";
constexpr char kWishlistFlag[] = "WishlistFlag";  // one entry per title id
constexpr char kAllUserData[] = "";               // to ClearUserData: every entry

// The Service entries that carry the user's wishlist state (the title pages): they go whenever
// the wishlist flags go.
constexpr const char* kWithWishlistState[] = {kTitleListing, kTvEpisodeListing,
                                              kAllTvEpisodeListings};

}  // namespace LMCacheNames

#endif  // LM_CACHE_NAMES_H
