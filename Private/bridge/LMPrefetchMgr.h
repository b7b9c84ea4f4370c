// LMWSLibAE::PrefetchMgr: which pages of a list to fetch ahead while the user pages through it.
//
// The pages of a list form a ring: after the last page comes page 1, before page 1 the last
// page. A page in the fetched list (fetched already, by the movie or a prefetch) is never chosen.
//
// Two ways to choose:
// - around a page: up to R pages, alternating next and previous (P+1, P-1, P+2, P-2, ...), the
//   form used after a getTitles answer;
// - the next two pages in the direction the user moves, judged from the page of the previous
//   decision (a jump of more than half the ring forward is a step backwards around it).
//
// The script thread decides; the prefetch workers add the pages they fetched from their own
// threads. Both go through the manager's lock.
#ifndef LM_PREFETCHMGR_H
#define LM_PREFETCHMGR_H

#include <cstdint>
#include <mutex>
#include <vector>

#include "LMWSLibAE.h"

class LMWSLibAE::PrefetchMgr {
public:
    enum { kMaxPagesPerSide = 8 };

    // Up to `pagesToRequest` pages around `currentPage`, into `pageList` (room for that many);
    // `*found` says how many. None when the list is null, there are no pages, nothing is asked
    // for, or the page is not one of the list's.
    void GetPagesForPrefetch(int32_t currentPage, int32_t pagesToRequest, int32_t* pageList,
                             int32_t* found);
    // The next two pages in the direction of movement; 0 for none.
    void GetPagesForPrefetch(uint32_t currentPage, uint32_t* firstPage, uint32_t* secondPage);

    // The number of pages of the list (also its last page number).
    void SetPageCount(int32_t count);
    int32_t PageCount();
    // Marks `page` as fetched; thread-safe.
    void AddFetchedPage(int32_t page);
    bool IsFetched(int32_t page);
    // Another list: no pages fetched, no page count, no previous decision.
    void Reset();

private:
    // With m_Lock held.
    bool Fetched(int32_t page) const;
    int32_t Next(int32_t page) const;
    int32_t Previous(int32_t page) const;

    std::mutex m_Lock;
    int32_t m_PageCount = 0;
    uint32_t m_LastPage = 0;  // the page of the previous two-page decision; 0: none yet
    std::vector<int32_t> m_Fetched;
};

#endif  // LM_PREFETCHMGR_H
