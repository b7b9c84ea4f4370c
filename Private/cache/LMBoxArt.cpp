#include "LMBoxArt.h"

#include "LMAssert.h"

namespace {
const char* const kFolders[] = {"95",  "175", "65",  "77",  "102", "126", "135s",
                                "137", "153", "177", "203", "269", "321"};
const char* const kSuffixes[] = {"95",  "175", "65",  "77",  "102", "126", "135",
                                 "137", "153", "177", "203", "269", "321"};
const int kSizes = static_cast<int>(sizeof(kFolders) / sizeof(kFolders[0]));
}  // namespace

const char* LMBoxArtFolder(int size) {
    return size >= 0 && size < kSizes ? kFolders[size] : "";
}

const char* LMBoxArtSuffix(int size) {
    return size >= 0 && size < kSizes ? kSuffixes[size] : "";
}

LMString LMBoxArtFileName(const char* path, const char* boxartprefix, int size) {
    LM_ASSERT((path != 0) && (boxartprefix != 0));
    LMString name(path);
    name.append(boxartprefix);
    name.append(LMBoxArtSuffix(size));
    name.append(".jpg");
    return name;
}
