// Hard assertions of the foundation and the client library.
//
// A failed check is a programming error (a null pointer, a missing context): the process prints
// the condition, the source file, the line and the full function signature on stderr and aborts.
// Unlike <cassert>, these checks stay in release builds.
#ifndef LM_ASSERT_H
#define LM_ASSERT_H

[[noreturn]] void LMAssertFail(const char* expr, const char* file, unsigned line,
                               const char* function);

#define LM_ASSERT(expr) \
    ((expr) ? static_cast<void>(0) : LMAssertFail(#expr, __FILE__, __LINE__, __PRETTY_FUNCTION__))

#endif  // LM_ASSERT_H
