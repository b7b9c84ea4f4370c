// The product side's kernel-allocating new and malloc for test programs that do not link the
// launcher's library: everything goes through ae::AEMalloc and ae::AEFree, so the test's
// ae::AECurrentKernel() supplies the memory.
#include "ae/AEMemory.h"

void* operator new(size_t size, const char*, int, AEMem_Selector_AE_NEW_DELETE*) noexcept {
    return ae::AEMalloc(size);
}

void operator delete(void* p, const char*, int, AEMem_Selector_AE_NEW_DELETE*) noexcept {
    ae::AEFree(p);
}

void* AE_MALLOC_FREE_Malloc(size_t size, const char*, int, AEMem_Selector_AE_MALLOC_FREE*) {
    return ae::AEMalloc(size);
}

void AE_MALLOC_FREE_Free(void* p, AEMem_Selector_AE_MALLOC_FREE*) {
    ae::AEFree(p);
}
