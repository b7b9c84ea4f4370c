#include "LMAssert.h"

#include <cstdio>
#include <cstdlib>

void LMAssertFail(const char* expr, const char* file, unsigned line, const char* function) {
    // Same shape as the C library's message so that tools that parse it keep working.
    std::fprintf(stderr, "%s:%u: %s: Assertion `%s' failed.\n", file, line, function, expr);
    std::fflush(stderr);
    std::abort();
}
