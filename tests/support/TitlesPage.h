// Wire objects for tests and benchmarks: a page of titles as the service sends it.
#ifndef LM_TESTS_TITLES_PAGE_H
#define LM_TESTS_TITLES_PAGE_H

#include <string>

#include "soapH.h"

// A titles page of `count` entries, allocated in `ctx`.
inline LM1__GetTitlesResponse* MakeTitles(struct soap* ctx, int count) {
    LM1__GetTitlesResponse* r = soap_new_LM1__GetTitlesResponse(ctx);
    r->ResponseCode = 0;
    r->ResponseMessage = soap_strdup(ctx, "OK");
    r->GenreID = 12;
    r->CurrentPageNumber = 1;
    r->ItemsPerPage = static_cast<short>(count);
    r->TotalPages = 7;
    r->TotalItems = 321;
    r->Titles = soap_new_LM1__ArrayOfTitleListing(ctx);
    r->Titles->__sizeTitleListing = count;
    r->Titles->TitleListing =
        static_cast<LM1__TitleListing**>(soap_malloc(ctx, count * sizeof(LM1__TitleListing*)));
    for (int i = 0; i < count; ++i) {
        LM1__TitleListing* t = soap_new_LM1__TitleListing(ctx);
        t->TitleID = 1000 + i;
        std::string name = "Title n\xC2\xB0" + std::to_string(i) + " & <friends>";
        t->TitleName = soap_strdup(ctx, name.c_str());
        t->BoxArtPrefix = soap_strdup(ctx, ("box " + std::to_string(i)).c_str());
        t->TitlePosition = static_cast<short>(i);
        t->IsTvListing = i % 2 == 0;
        t->MPAARating = soap_strdup(ctx, "PG-13");
        r->Titles->TitleListing[i] = t;
    }
    return r;
}

#endif  // LM_TESTS_TITLES_PAGE_H
