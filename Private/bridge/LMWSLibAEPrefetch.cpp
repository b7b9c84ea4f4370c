// Fetching ahead while the user pages through a list.
//
// After a getTitles answer has been delivered, the page prefetch fetches up to eight pages
// around it (next, previous, next but one, ...: the prefetch manager decides), so that the
// client library's cache holds them when the user gets there. Every page it fetches adds the box
// art of its titles to a pending list; while the movie says it is idle, the box-art prefetch
// takes the whole list and fetches the images into the cache folder. Each prefix pending is so
// fetched once, and updates stay requested until the list is empty and no prefetch runs.
//
// Which pages count as fetched: the page the movie was just given and each page a prefetch got.
// The list (and the page count) start afresh when the genre, the page size or the purchase type
// changes, so pages of another list are never taken for fetched.
//
// Prefetching runs only with a file cache (CacheType 2): pages with bit 0 of CacheData, box art
// with bit 1. The list workers for the account's videos and the wishlist exist for a movie that
// pages those lists, but nothing starts them: those answers change with every purchase and
// wishlist edit, and the cache drops them then, so fetching them ahead would mostly be thrown
// away.
#include <cstring>
#include <new>

#include "LMLog.h"
#include "LMPrefetchMgr.h"
#include "LMThread.h"
#include "LMWSClient.h"
#include "LMWSLibAE.h"
#include "LMWSLibAEOperations.h"
#include "LMWSLibAEPrefetch.h"
#include "ae/AEMemory.h"

using ae::stagecraft::ASContext;

namespace {

LMLogArea g_PrefetchArea("LM_WSAE");

int Area() {
    return g_PrefetchArea.Id();
}

enum { kFileCache = 2, kPrefetchPages = 1, kPrefetchBoxArts = 2, kPagesAround = 8 };

#define LMWS_PREFETCH_ASSERT(x) \
    ((x) ? static_cast<void>(0) : ae::AEReportAssert("##x##", "Operations.cpp", __LINE__))

}  // namespace

// ---- The script thread's side ----

bool LMWSLibAE::RunPrefetchThread(const char* name, void (*procedure)(void*), void* parameters) {
    std::lock_guard<std::mutex> lock(m_CallLock);
    LMThread*& pThread =
        std::strcmp(name, "prefetch_getTitles") == 0 ? m_TitlesPrefetch : m_BoxArtPrefetch;
    pThread = LMThread::Create();
    AE_ASSERT(pThread != 0);
    if (pThread != nullptr && pThread->Run(name, procedure, parameters)) {
        return true;
    }
    LM_LogOutput(Area(), LM_LOG_ERROR, "Failed to launch worker thread: %s!\n", name);
    if (pThread != nullptr) {
        pThread->Release();
        pThread = nullptr;
    }
    return false;
}

bool LMWSLibAE::PrefetchPending() {
    if (m_TitlesPrefetchBusy.load(std::memory_order_acquire) ||
        m_BoxArtPrefetchBusy.load(std::memory_order_acquire)) {
        return true;
    }
    std::lock_guard<std::mutex> lock(m_PrefetchLock);
    return !m_PendingBoxArts.empty();
}

void LMWSLibAE::StartBoxArtPrefetch(ASContext& context) {
    if (m_Idle && !m_TitlesPrefetchBusy.load(std::memory_order_acquire) &&
        !m_BoxArtPrefetchBusy.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(m_PrefetchLock);
        if (!m_PendingBoxArts.empty() && m_CacheType == kFileCache &&
            (m_CacheData & kPrefetchBoxArts) != 0 && m_Setup != nullptr) {
            BoxArtPrefetch* block = AE_NEW BoxArtPrefetch();
            if (block != nullptr) {
                block->owner = this;
                block->size = m_BoxArtSize;
                block->prefixes.swap(m_PendingBoxArts);
                block->setup = *m_Setup;
                Reap(m_BoxArtPrefetch);
                m_BoxArtPrefetch = nullptr;
                // Set before the thread starts, so that the next turn cannot start a second one.
                m_BoxArtPrefetchBusy.store(true, std::memory_order_release);
                if (!RunPrefetchThread("prefetch_getBoxArts", &LMWSLibAE::prefetch_getBoxArts,
                                       block)) {
                    m_BoxArtPrefetchBusy.store(false, std::memory_order_release);
                    AE_DELETE(block);
                }
            }
        }
    }
    // Nothing left to watch for: the next call or idle() asks for updates again.
    if (!Busy() && !PrefetchPending()) {
        context.StopUpdates(*this);
    }
}

void LMWSLibAE::StartTitlesPrefetch(int32_t status) {
    if (status != 0 || m_CacheType != kFileCache ||
        !m_PrefetchEligible.load(std::memory_order_acquire) ||
        m_TitlesPrefetchBusy.load(std::memory_order_acquire)) {
        return;
    }
    m_PrefetchEligible.store(false, std::memory_order_relaxed);
    if ((m_CacheData & kPrefetchPages) == 0 || m_CallName == nullptr ||
        std::strcmp(m_CallName, "getTitles") != 0 || m_Record.titles.TotalPages < 2 ||
        m_Setup == nullptr || m_PrefetchMgr == nullptr) {
        return;
    }
    const int32_t genre = m_TitlesQuery[0];
    const int32_t page = m_TitlesQuery[1];
    const int32_t size = m_TitlesQuery[2];
    const int32_t purchaseType = m_TitlesQuery[3];
    const int32_t key[3] = {genre, size, purchaseType};
    if (std::memcmp(key, m_PrefetchKey, sizeof key) != 0) {
        m_PrefetchMgr->Reset();
        std::memcpy(m_PrefetchKey, key, sizeof key);
    }
    m_PrefetchMgr->SetPageCount(m_Record.titles.TotalPages);
    m_PrefetchMgr->AddFetchedPage(page);
    int32_t pages[kPagesAround] = {};
    int32_t found = 0;
    m_PrefetchMgr->GetPagesForPrefetch(page, kPagesAround, pages, &found);
    if (found <= 0) {
        return;
    }
    PagePrefetch* block = AE_NEW PagePrefetch();
    if (block == nullptr) {
        return;
    }
    block->owner = this;
    block->genre = genre;
    block->page = page;
    block->size = size;
    block->purchaseType = purchaseType;
    block->pages.assign(pages, pages + found);
    block->boxArts = (m_CacheData & kPrefetchBoxArts) != 0;
    {
        std::lock_guard<std::mutex> lock(m_PrefetchLock);
        block->setup = *m_Setup;
    }
    Reap(m_TitlesPrefetch);
    m_TitlesPrefetch = nullptr;
    m_TitlesPrefetchBusy.store(true, std::memory_order_release);
    if (!RunPrefetchThread("prefetch_getTitles", &LMWSLibAE::prefetch_getTitles, block)) {
        m_TitlesPrefetchBusy.store(false, std::memory_order_release);
        AE_DELETE(block);
    }
}

// ---- The workers' side ----

bool LMWSLibAE::PrefetchClient(LM_WS_Handle* handle, const SetupParams& setup, const char* name) {
    if (LMWSClient::From(handle) != nullptr) {
        return true;
    }
    LM_WS_Status status = SetUp(handle, setup);
    if (status != 0) {
        LM_LogOutput(Area(), LM_LOG_ERROR, "LMWSLib::%s, client set-up failed (%d)\n", name,
                     status);
        return false;
    }
    return true;
}

void LMWSLibAE::AddPendingBoxArts(std::vector<LMString>& prefixes) {
    std::lock_guard<std::mutex> lock(m_PrefetchLock);
    for (LMString& prefix : prefixes) {
        m_PendingBoxArts.push_back(std::move(prefix));
    }
}

namespace {

// The instance a prefetch block belongs to. A missing block or owner is a programming error,
// reported like the call workers'; the block is then freed and the worker does nothing.
template <class Block>
LMWSLibAE* OwnerOf(Block* block) {
    LMWS_PREFETCH_ASSERT(block != nullptr);
    if (block == nullptr) {
        return nullptr;
    }
    LMWS_PREFETCH_ASSERT(block->owner != nullptr);
    LMWSLibAE* owner = block->owner;
    if (owner == nullptr) {
        AE_DELETE(block);
    }
    return owner;
}

}  // namespace

namespace {

// `log`: the worker whose append line is written, or null for none.
void CollectBoxArts(const LM_WS_TitleListingPurchasedArray& titles, const char* log,
                    std::vector<LMString>& boxArts) {
    for (int32_t i = titles.Count - 1; i >= 0; --i) {
        const char* prefix = titles.Array[i].TitleListing.BoxArtPrefix;
        if (prefix != nullptr && prefix[0] != '\0') {
            if (log != nullptr) {
                LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::%s append BoxArtPrefix:%s  \n", log,
                             prefix);
            }
            boxArts.push_back(LMString(prefix));
        }
    }
}

LM_WS_Status FetchTitles(LM_WS_Handle* handle, const LMWSLibAE::PagePrefetch& block, int32_t page,
                         std::vector<LMString>& boxArts) {
    LM_WS_TitlesResponse record;
    std::memset(static_cast<void*>(&record), 0, sizeof record);
    LM_WS_Status status = LM_WS_getTitles(handle, block.genre, LM_WS_Page{page, block.size},
                                          block.purchaseType, &record);
    if (status == 0) {
        for (int32_t i = record.Titles.Count - 1; i >= 0; --i) {
            const char* prefix = record.Titles.Array[i].BoxArtPrefix;
            if (prefix != nullptr && prefix[0] != '\0') {
                LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::prefetch_getTitles, boxarts append\n");
                boxArts.push_back(LMString(prefix));
            }
        }
    }
    LM_WS_FreeResult(&record);
    return status;
}

LM_WS_Status FetchMyVideos(LM_WS_Handle* handle, const LMWSLibAE::PagePrefetch& block, int32_t page,
                           std::vector<LMString>& boxArts) {
    LM_WS_MyVideosResponse record;
    std::memset(static_cast<void*>(&record), 0, sizeof record);
    LM_WS_Status status =
        LM_WS_getMyVideos(handle, LM_WS_Page{page, block.size}, block.purchaseType,
                          block.typeFilter, block.watchStatus, &record);
    if (status == 0) {
        LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::prefetch_getMyVideos titles:%d  \n",
                     record.Titles.Count);
        CollectBoxArts(record.Titles, "prefetch_getMyVideos", boxArts);
    }
    LM_WS_FreeResult(&record);
    return status;
}

LM_WS_Status FetchWishlistItems(LM_WS_Handle* handle, const LMWSLibAE::PagePrefetch& block,
                                int32_t page, std::vector<LMString>& boxArts) {
    LM_WS_WishlistItemsResponse record;
    std::memset(static_cast<void*>(&record), 0, sizeof record);
    LM_WS_Status status = LM_WS_getWishlistItems(
        handle, block.sortOrder, LM_WS_Page{page, block.size}, block.typeFilter, &record);
    if (status == 0) {
        CollectBoxArts(record.Titles, nullptr, boxArts);
    }
    LM_WS_FreeResult(&record);
    return status;
}

}  // namespace

const LMWSLibAE::PageList LMWSLibAE::kTitlesPages = {
    "prefetch_getTitles", "LMWSLib::prefetch_getTitles, page:%d begin  \n",
    "LMWSLib::prefetch_getTitles page:%d end (retcode:%d)\n", &FetchTitles};
const LMWSLibAE::PageList LMWSLibAE::kMyVideosPages = {
    "prefetch_getMyVideos", "LMWSLib::prefetch_getMyVideos page:%d begin \n",
    "LMWSLib::prefetch_getMyVideos page:%d end (retcode:%d)\n", &FetchMyVideos};
const LMWSLibAE::PageList LMWSLibAE::kWishlistPages = {
    "prefetch_getWishlistItems", "LMWSLib::prefetch_getWishlistItems page:%d begin \n",
    "LMWSLib::prefetch_getWishlistItems page:%d end (retcode:%d)\n", &FetchWishlistItems};

void LMWSLibAE::WalkPages(LM_WS_Handle* handle, const PagePrefetch& block, const PageList& list,
                          PrefetchMgr* manager, std::vector<LMString>& boxArts) {
    for (int32_t page : block.pages) {
        if (page == 0 || page == block.page) {
            break;
        }
        LM_LogOutput(Area(), LM_LOG_TRACE, list.beginFormat, page);
        LM_WS_Status status = list.fetch(handle, block, page, boxArts);
        LM_LogOutput(Area(), LM_LOG_TRACE, list.endFormat, page, status);
        if (status != 0) {
            break;
        }
        if (manager != nullptr) {
            manager->AddFetchedPage(page);
        }
    }
}

void LMWSLibAE::RunPagePrefetch(void* parameters, const PageList& list) {
    PagePrefetch* block = static_cast<PagePrefetch*>(parameters);
    LMWSLibAE* owner = OwnerOf(block);
    if (owner == nullptr) {
        return;
    }
    owner->m_TitlesPrefetchBusy.store(true, std::memory_order_release);
    if (&list == &kTitlesPages) {
        LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::prefetch_getTitles, prefetchpages size:%d \n",
                     static_cast<int>(block->pages.size()));
    }
    std::vector<LMString> boxArts;
    if (PrefetchClient(&owner->m_PagePrefetchHandle, block->setup, list.name)) {
        WalkPages(&owner->m_PagePrefetchHandle, *block, list, owner->m_PrefetchMgr.get(), boxArts);
    }
    if (block->boxArts) {
        owner->AddPendingBoxArts(boxArts);
    }
    owner->m_TitlesPrefetchBusy.store(false, std::memory_order_release);
    AE_DELETE(block);
}

void LMWSLibAE::prefetch_getTitles(void* block) {
    RunPagePrefetch(block, kTitlesPages);
}

void LMWSLibAE::prefetch_getMyVideos(void* block) {
    RunPagePrefetch(block, kMyVideosPages);
}

void LMWSLibAE::prefetch_getWishlistItems(void* block) {
    RunPagePrefetch(block, kWishlistPages);
}

void LMWSLibAE::prefetch_getBoxArts(void* parameters) {
    BoxArtPrefetch* block = static_cast<BoxArtPrefetch*>(parameters);
    LMWSLibAE* owner = OwnerOf(block);
    if (owner == nullptr) {
        return;
    }
    owner->m_BoxArtPrefetchBusy.store(true, std::memory_order_release);
    if (PrefetchClient(&owner->m_BoxArtPrefetchHandle, block->setup, "prefetch_getBoxArts")) {
        for (const LMString& prefix : block->prefixes) {
            LM_LogOutput(Area(), LM_LOG_TRACE, "LMWSLib::prefetch_getBoxArts (%s) begin \n",
                         prefix.c_str());
            LM_WS_LengthAndText scratch;
            std::memset(static_cast<void*>(&scratch), 0, sizeof scratch);
            LM_WS_Status status = LM_WS_getBoxArtImage(&owner->m_BoxArtPrefetchHandle,
                                                       static_cast<LM_WS_BoxArtSize>(block->size),
                                                       prefix.c_str(), &scratch);
            LM_WS_FreeResult(&scratch);
            LM_LogOutput(Area(), LM_LOG_TRACE,
                         "LMWSLib::prefetch_getBoxArts (%s) end (retcode:%d)\n", prefix.c_str(),
                         status);
        }
    }
    owner->m_BoxArtPrefetchBusy.store(false, std::memory_order_release);
    AE_DELETE(block);
}
