#include "LMPrefetchMgr.h"

#include <algorithm>
#include <cstdlib>

#include "LMLog.h"

namespace {

LMLogArea g_PrefetchMgrArea("LM_WSAE");

int Area() {
    return g_PrefetchMgrArea.Id();
}

}  // namespace

bool LMWSLibAE::PrefetchMgr::Fetched(int32_t page) const {
    return std::find(m_Fetched.begin(), m_Fetched.end(), page) != m_Fetched.end();
}

int32_t LMWSLibAE::PrefetchMgr::Next(int32_t page) const {
    return page + 1 > m_PageCount ? 1 : page + 1;
}

int32_t LMWSLibAE::PrefetchMgr::Previous(int32_t page) const {
    return page == 1 ? m_PageCount : page - 1;
}

void LMWSLibAE::PrefetchMgr::SetPageCount(int32_t count) {
    std::lock_guard<std::mutex> lock(m_Lock);
    m_PageCount = count;
}

int32_t LMWSLibAE::PrefetchMgr::PageCount() {
    std::lock_guard<std::mutex> lock(m_Lock);
    return m_PageCount;
}

void LMWSLibAE::PrefetchMgr::AddFetchedPage(int32_t page) {
    std::lock_guard<std::mutex> lock(m_Lock);
    if (!Fetched(page)) {
        m_Fetched.push_back(page);
    }
}

bool LMWSLibAE::PrefetchMgr::IsFetched(int32_t page) {
    std::lock_guard<std::mutex> lock(m_Lock);
    return Fetched(page);
}

void LMWSLibAE::PrefetchMgr::Reset() {
    std::lock_guard<std::mutex> lock(m_Lock);
    m_Fetched.clear();
    m_PageCount = 0;
    m_LastPage = 0;
}

void LMWSLibAE::PrefetchMgr::GetPagesForPrefetch(int32_t currentPage, int32_t pagesToRequest,
                                                 int32_t* pageList, int32_t* found) {
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch enter,CurrentPageNumber:%d, "
                 "pageNumsToRequest:%d,\n",
                 currentPage, pagesToRequest);
    std::lock_guard<std::mutex> lock(m_Lock);
    if (found != nullptr) {
        *found = 0;
    }
    const int32_t pages = m_PageCount;
    if (pageList == nullptr || pages <= 0 || pagesToRequest <= 0 || currentPage <= 0 ||
        currentPage > pages) {
        return;
    }
    const int32_t wanted = std::min(pagesToRequest, pages);
    const int32_t forwardCount = std::min<int32_t>((wanted + 1) / 2, kMaxPagesPerSide);
    const int32_t backwardCount = std::min<int32_t>(wanted / 2, kMaxPagesPerSide);

    // A page already fetched uses up its step: the search never reaches further out.
    std::vector<int32_t> pageForNext;
    for (int32_t i = 1; i <= forwardCount; ++i) {
        int32_t page = (currentPage + i) % pages;
        page = page == 0 ? pages : page;
        if (!Fetched(page)) {
            LM_LogOutput(Area(), LM_LOG_TRACE,
                         "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch, pageForNext[%d]:%d \n",
                         static_cast<int>(pageForNext.size()), page);
            pageForNext.push_back(page);
        }
    }
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch, pageNumsForNext:%d \n",
                 static_cast<int>(pageForNext.size()));
    std::vector<int32_t> pageForPre;
    for (int32_t i = 1; i <= backwardCount; ++i) {
        int32_t page = (currentPage + pages - i) % pages;
        page = page == 0 ? pages : page;
        if (!Fetched(page)) {
            LM_LogOutput(Area(), LM_LOG_TRACE,
                         "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch,,pageForPre[%d]:%d \n",
                         static_cast<int>(pageForPre.size()), page);
            pageForPre.push_back(page);
        }
    }
    // The backward count goes out under the forward wording, as the field logs have it.
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch, pageNumsForNext:%d \n",
                 static_cast<int>(pageForPre.size()));

    // On a small ring both sides meet: the backward copy of a page is blanked. A blank stays
    // the next backward entry, so the backward side ends there.
    for (int32_t& page : pageForPre) {
        if (std::find(pageForNext.begin(), pageForNext.end(), page) != pageForNext.end()) {
            page = 0;
        }
    }
    size_t next = 0;
    size_t previous = 0;
    int32_t taken = 0;
    for (int32_t k = 0; k < wanted; ++k) {
        int32_t page = 0;
        if (k % 2 == 0) {
            if (next < pageForNext.size()) {
                page = pageForNext[next++];
            }
        } else if (previous < pageForPre.size() && pageForPre[previous] != 0) {
            page = pageForPre[previous++];
        }
        if (page != 0) {
            LM_LogOutput(Area(), LM_LOG_TRACE,
                         "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch,,pageNum[%d]:%d \n", taken,
                         page);
            pageList[taken++] = page;
        }
    }
    if (found != nullptr) {
        *found = taken;
    }
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch left,pageNumsFound:%d \n", taken);
}

void LMWSLibAE::PrefetchMgr::GetPagesForPrefetch(uint32_t currentPage, uint32_t* firstPage,
                                                 uint32_t* secondPage) {
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch, enter\n");
    uint32_t first = 0;
    uint32_t second = 0;
    if (firstPage != nullptr) {
        *firstPage = 0;
    }
    if (secondPage != nullptr) {
        *secondPage = 0;
    }
    if (currentPage == 0) {
        return;
    }
    // The very first decision, from page 1, takes the next page and the ring's last page without
    // looking at what is fetched. It runs before any prefetch worker exists, on the script
    // thread that alone writes the page count and the last page, so it goes without the lock.
    if (currentPage == 1 && m_LastPage == 0) {
        if (firstPage != nullptr) {
            *firstPage = m_PageCount < 2 ? 1 : 2;
        }
        if (secondPage != nullptr) {
            *secondPage = static_cast<uint32_t>(m_PageCount);
        }
        m_LastPage = 1;
        return;
    }
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        const int32_t P = static_cast<int32_t>(currentPage);
        const int32_t L = static_cast<int32_t>(m_LastPage);
        const int32_t half = m_PageCount / 2;
        const int32_t distance = std::abs(P - L);
        // A jump forward over more than half the ring is a short way backwards around it.
        const bool backward = (distance > half && L <= P) || (distance <= half && P < L);
        LM_LogOutput(Area(), LM_LOG_TRACE,
                     "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch, CurrentPageNumber %d "
                     "LastPageNumber %d bForward = %s\n",
                     P, L, backward ? "false" : "true");
        m_LastPage = currentPage;
        auto step = [&](int32_t page) { return backward ? Previous(page) : Next(page); };
        // Distances are plain differences, not around the ring: a search that wraps stops as
        // soon as it has to step past a fetched page. Only pages reached by stepping are
        // measured, never the first candidate.
        int32_t candidate = step(P);
        bool none = false;
        while (Fetched(candidate)) {
            candidate = step(candidate);
            if (candidate == P || std::abs(candidate - P) >= 6) {
                none = true;
                break;
            }
        }
        if (!none) {
            first = static_cast<uint32_t>(candidate);
            int32_t after = step(candidate);
            bool reached = true;
            while (Fetched(after)) {
                after = step(after);
                if (after == P || std::abs(after - P) > 5) {
                    reached = false;
                    break;
                }
            }
            second = reached ? static_cast<uint32_t>(after) : 0;
        }
    }
    if (firstPage != nullptr) {
        *firstPage = first;
    }
    if (secondPage != nullptr) {
        *secondPage = second;
    }
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMWSLibAE::PrefetchMgr::GetPagesForPrefetch left, first_prefetch_page %d "
                 "second_prefetch_page %d\n",
                 first, second);
}
