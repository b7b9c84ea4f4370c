// The extension classes' allocation forms: every block goes through the kernel that the program
// image's ae::AECurrentKernel() names (AEMemory.h). Kept apart from the kernel loading so that
// test programs with a kernel of their own link these and nothing else.
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
