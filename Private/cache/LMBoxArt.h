// Names of box-art images: the server's folder per size class and the local file name.
#ifndef LM_BOXART_H
#define LM_BOXART_H

#include "LMString.h"
#include "LM_WS_Types.h"

// Folder of the size class in the image URL ("135s" for size 6); "" for an unknown size.
const char* LMBoxArtFolder(int size);
// File-name suffix of the size class ("135" for size 6); "" for an unknown size.
const char* LMBoxArtSuffix(int size);
// path + prefix + suffix + ".jpg". Null texts are programming errors.
LMString LMBoxArtFileName(const char* path, const char* boxartprefix, int size);

#endif  // LM_BOXART_H
