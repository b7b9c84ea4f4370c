// LMFile: a thin wrapper over a stdio stream, plus static path and folder helpers.
//
// Null pointer arguments are programming errors and abort through LM_ASSERT; every other failure
// is reported as false, 0 or -1.
#ifndef LM_FILE_H
#define LM_FILE_H

#include <cstdint>
#include <cstdio>

#include "LMString.h"

typedef int64_t lm_int64;

class LMFile {
public:
    static const char PATH_SEPERATOR;  // "/"

    LMFile() : m_File(nullptr) {}
    ~LMFile() { Close(); }
    LMFile(const LMFile&) = delete;
    LMFile& operator=(const LMFile&) = delete;

    // Closes any open stream first; true when `fopen` gave a stream.
    bool Open(const char* filename, const char* mode);
    void Close();
    bool IsOpen() const { return m_File != nullptr; }
    // True when the open stream is a regular file. A folder opens for reading too (its size is
    // then meaningless and reads fail), as do devices and pipes.
    bool IsRegularFile() const;
    // Loop until `size` bytes, end of file, or an error other than EINTR; returns the total.
    lm_int64 Read(void* buffer, lm_int64 size);
    lm_int64 Write(const void* buffer, lm_int64 size);
    bool Flush();
    bool Seek(lm_int64 offset, int whence);
    lm_int64 Tell();
    lm_int64 GetSize();

    static lm_int64 GetSize(const char* filename);
    // True when the file opens for reading: an unreadable file counts as absent, a folder as
    // present.
    static bool Exist(const char* filename);
    static bool Remove(const char* filename);
    static bool Rename(const char* oldname, const char* newname);
    static bool FolderExist(const char* filename);
    // Creates every missing folder of the path with `mode` (before the umask).
    static bool CreateFolder(const char* filename, unsigned mode = 0755);
    // Up to and including the last "/"; without one, the path followed by "/" ("" gives "./").
    static LMString GetFolderName(const char* path);
    static LMString GetFileName(const char* path);
    // Removes the files of the folder whose names match the pattern (which must hold "?" or "*").
    static bool RemoveWithWildcard(const char* filename);
    // Reserves a new empty file "lmwsXXXXXX" in the folder of `path` and returns its name.
    static LMString CreateTempFileName(const char* path);
    static bool Copy(const char* from, const char* to);

private:
    FILE* m_File;
};

#endif  // LM_FILE_H
