// Allocation and assertion reports through the runtime kernel.
//
// Every block handed out here comes from the kernel's allocator with an 8-byte header in front
// of it (first word: the requested size, truncated to 32 bits; second word: 1); the caller gets
// the address behind the header. Blocks are therefore 8-byte aligned: do not put types with
// stricter alignment in them.
//
// Each program image supplies AECurrentKernel(): the product side returns the kernel it
// acquired (null before that), the kernel library returns itself.
#ifndef AE_AEMEMORY_H
#define AE_AEMEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <type_traits>

#include "AEKernel.h"

namespace ae {

IAEKernel* AECurrentKernel();

constexpr size_t kAEBlockHeader = 8;

// Null when no kernel is loaded, when the size overflows or when the kernel has no memory.
inline void* AEMalloc(size_t size) {
    IAEKernel* kernel = AECurrentKernel();
    if (!kernel || size > SIZE_MAX - kAEBlockHeader)
        return nullptr;
    auto* block = static_cast<uint32_t*>(kernel->Allocate(size + kAEBlockHeader));
    if (!block)
        return nullptr;
    block[0] = static_cast<uint32_t>(size);
    block[1] = 1;
    return reinterpret_cast<unsigned char*>(block) + kAEBlockHeader;
}

inline void AEFree(void* p) {
    if (!p)
        return;
    IAEKernel* kernel = AECurrentKernel();
    if (kernel)
        kernel->Free(static_cast<unsigned char*>(p) - kAEBlockHeader);
}

// Reports through the kernel and returns; without a kernel the report goes to stderr.
inline void AEReportAssert(const char* expr, const char* file, int line) {
    IAEKernel* kernel = AECurrentKernel();
    if (kernel)
        kernel->ReportAssert(expr, file, line);
    else
        std::fprintf(stderr, "assertion %s failed at %s:%d\n", expr, file, line);
}

}  // namespace ae

// The report carries the fixed text "##x##", not the failed expression; the program goes on.
#define AE_ASSERT(x) ((x) ? static_cast<void>(0) : ae::AEReportAssert("##x##", __FILE__, __LINE__))

// Tags that select the kernel-allocating forms of new and malloc.
struct AEMem_Selector_AE_NEW_DELETE;
struct AEMem_Selector_AE_MALLOC_FREE;

// Defined by the product side (the launcher's library): objects of the extension classes are
// made with AE_NEW and destroyed with AE_DELETE. The placement delete is what the language
// calls when a constructor throws.
void* operator new(size_t size, const char* file, int line, AEMem_Selector_AE_NEW_DELETE*) noexcept;
void operator delete(void* p, const char* file, int line, AEMem_Selector_AE_NEW_DELETE*) noexcept;
void* AE_MALLOC_FREE_Malloc(size_t size, const char* file, int line,
                            AEMem_Selector_AE_MALLOC_FREE*);
void AE_MALLOC_FREE_Free(void* p, AEMem_Selector_AE_MALLOC_FREE*);

#define AE_NEW new (__FILE__, __LINE__, static_cast<AEMem_Selector_AE_NEW_DELETE*>(nullptr))
#define AE_MALLOC(size)                               \
    AE_MALLOC_FREE_Malloc((size), __FILE__, __LINE__, \
                          static_cast<AEMem_Selector_AE_MALLOC_FREE*>(nullptr))
#define AE_FREE(p) AE_MALLOC_FREE_Free((p), static_cast<AEMem_Selector_AE_MALLOC_FREE*>(nullptr))

// Destroys an object made with AE_NEW (null is allowed). Through a pointer to a polymorphic
// base, the block freed is the whole object's, found before the destructor runs.
template <class T>
inline void AE_DELETE(T* object) {
    if (!object)
        return;
    const void* block;
    if constexpr (std::is_polymorphic<T>::value)
        block = dynamic_cast<const void*>(object);
    else
        block = object;
    object->~T();
    ae::AEFree(const_cast<void*>(block));
}

#endif  // AE_AEMEMORY_H
