// Loads the kernel library the way the product does (dlopen by path, the three entry points)
// and gives this program image its AECurrentKernel(). For the stage tests and benchmarks.
#ifndef LM_TESTS_STAGEKERNELHARNESS_H
#define LM_TESTS_STAGEKERNELHARNESS_H

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "ae/IStagecraft.h"

namespace stagetest {

struct LoadedKernel {
    void* library = nullptr;
    ae::IAEKernel* kernel = nullptr;
    ae::stagecraft::IStagecraft* stage = nullptr;
};

// Loaded once for the whole program and never unloaded: descriptors registered with the stage
// must outlive it.
inline LoadedKernel& Kernel() {
    static LoadedKernel loaded = [] {
        LoadedKernel k;
        k.library = dlopen(LM_KERNEL_PATH, RTLD_NOW | RTLD_LOCAL);
        if (!k.library) {
            std::fprintf(stderr, "cannot load %s: %s\n", LM_KERNEL_PATH, dlerror());
            std::abort();
        }
        auto load = reinterpret_cast<IAEModule_IAEKernel_LoadModule_Fn>(
            dlsym(k.library, AE_KERNEL_LOAD_SYMBOL));
        auto init = reinterpret_cast<IAEModule_IAEKernel_InitializeKernel_Fn>(
            dlsym(k.library, AE_KERNEL_INITIALIZE_SYMBOL));
        if (!load || !init)
            std::abort();
        k.kernel = load();
        const char* argv[] = {"stagetest"};
        if (!k.kernel || init(1, argv) != 0)
            std::abort();
        k.stage = static_cast<ae::stagecraft::IStagecraft*>(k.kernel->GetInterface("IStagecraft"));
        if (!k.stage)
            std::abort();
        return k;
    }();
    return loaded;
}

// The window set arguments for `movie` with `options` in between.
struct StageArgv {
    std::vector<std::string> words;
    std::vector<const char*> pointers;
    StageArgv(const std::vector<std::string>& options, const std::string& movie) {
        words.push_back("lmstage");
        words.insert(words.end(), options.begin(), options.end());
        words.push_back(movie);
        for (const auto& w : words)
            pointers.push_back(w.c_str());
    }
    int argc() const { return static_cast<int>(pointers.size()); }
    const char* const* argv() const { return pointers.data(); }
};

}  // namespace stagetest

namespace ae {
IAEKernel* AECurrentKernel() {
    return stagetest::Kernel().kernel;
}
}  // namespace ae

#endif  // LM_TESTS_STAGEKERNELHARNESS_H
