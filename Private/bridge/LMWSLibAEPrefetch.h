// The parameter blocks of the prefetch workers and the lists the page prefetch walks.
#ifndef LM_WSLIBAE_PREFETCH_H
#define LM_WSLIBAE_PREFETCH_H

#include <vector>

#include "LMWSLibAE.h"
#include "LMWSLibAEOperations.h"

// The page prefetch of one list: which list, the page the user is on, the pages to fetch.
struct LMWSLibAE::PagePrefetch {
    LMWSLibAE* owner = nullptr;
    int32_t genre = 0;  // getTitles
    int32_t page = 0;
    int32_t size = 0;
    int32_t purchaseType = 0;
    int32_t typeFilter = 0;   // getMyVideos, getWishlistItems
    int32_t watchStatus = 0;  // getMyVideos
    int32_t sortOrder = 0;    // getWishlistItems
    std::vector<int32_t> pages;
    bool boxArts = false;  // whether the box art found is wanted
    SetupParams setup;
};

struct LMWSLibAE::BoxArtPrefetch {
    LMWSLibAE* owner = nullptr;
    int32_t size = 0;
    std::vector<LMString> prefixes;
    SetupParams setup;
};

// One list the page prefetch can walk: the client call for one page into a record of its own,
// with the box art of its titles collected from the last title to the first, and its log lines.
struct LMWSLibAE::PageList {
    const char* name;
    const char* beginFormat;  // page
    const char* endFormat;    // page, return code
    LM_WS_Status (*fetch)(LM_WS_Handle* handle, const PagePrefetch& block, int32_t page,
                          std::vector<LMString>& boxArts);
};

#endif  // LM_WSLIBAE_PREFETCH_H
