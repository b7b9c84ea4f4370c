#include "LMFile.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "LMAssert.h"

const char LMFile::PATH_SEPERATOR = '/';

bool LMFile::Open(const char* filename, const char* mode) {
    LM_ASSERT(filename != 0);
    LM_ASSERT(mode != 0);
    Close();
    m_File = fopen(filename, mode);
    return m_File != nullptr;
}

void LMFile::Close() {
    if (m_File != nullptr) {
        fclose(m_File);
        m_File = nullptr;
    }
}

lm_int64 LMFile::Read(void* buffer, lm_int64 size) {
    LM_ASSERT(buffer != 0);
    if (m_File == nullptr || size <= 0) {
        return 0;
    }
    char* out = static_cast<char*>(buffer);
    lm_int64 total = 0;
    while (total < size) {
        errno = 0;
        size_t got = fread(out + total, 1, static_cast<size_t>(size - total), m_File);
        total += static_cast<lm_int64>(got);
        if (got == 0) {
            if (feof(m_File) || errno != EINTR) {
                break;
            }
            clearerr(m_File);
        } else if (feof(m_File)) {
            break;
        }
    }
    return total;
}

lm_int64 LMFile::Write(const void* buffer, lm_int64 size) {
    LM_ASSERT(buffer != 0);
    if (m_File == nullptr || size <= 0) {
        return 0;
    }
    const char* in = static_cast<const char*>(buffer);
    lm_int64 total = 0;
    while (total < size) {
        errno = 0;
        size_t put = fwrite(in + total, 1, static_cast<size_t>(size - total), m_File);
        total += static_cast<lm_int64>(put);
        if (put == 0) {
            if (errno != EINTR) {
                break;
            }
            clearerr(m_File);
        }
    }
    return total;
}

bool LMFile::Flush() {
    return m_File != nullptr && fflush(m_File) == 0;
}

bool LMFile::Seek(lm_int64 offset, int whence) {
    return m_File != nullptr && fseeko(m_File, static_cast<off_t>(offset), whence) == 0;
}

lm_int64 LMFile::Tell() {
    return m_File == nullptr ? -1 : static_cast<lm_int64>(ftello(m_File));
}

bool LMFile::IsRegularFile() const {
    struct stat info;
    return m_File != nullptr && fstat(fileno(m_File), &info) == 0 && S_ISREG(info.st_mode);
}

lm_int64 LMFile::GetSize() {
    if (m_File == nullptr) {
        return 0;
    }
    off_t here = ftello(m_File);
    if (fseeko(m_File, 0, SEEK_END) != 0) {
        return 0;
    }
    off_t size = ftello(m_File);
    fseeko(m_File, here, SEEK_SET);
    return size < 0 ? 0 : static_cast<lm_int64>(size);
}

lm_int64 LMFile::GetSize(const char* filename) {
    LM_ASSERT(filename != 0);
    LMFile file;
    return file.Open(filename, "r") ? file.GetSize() : 0;
}

bool LMFile::Exist(const char* filename) {
    LM_ASSERT(filename != 0);
    LMFile file;
    return file.Open(filename, "r");
}

bool LMFile::Remove(const char* filename) {
    LM_ASSERT(filename != 0);
    return remove(filename) == 0;
}

bool LMFile::Rename(const char* oldname, const char* newname) {
    LM_ASSERT(oldname != 0);
    LM_ASSERT(newname != 0);
    return rename(oldname, newname) == 0;
}

bool LMFile::FolderExist(const char* filename) {
    LM_ASSERT(filename != 0);
    struct stat st;
    return stat(filename, &st) == 0 && S_ISDIR(st.st_mode);
}

bool LMFile::CreateFolder(const char* filename, unsigned mode) {
    LM_ASSERT(filename != 0);
    LMString work(filename);
    struct stat st;
    // Create each missing folder along the way; a non-folder in the way is a failure.
    for (uint32_t i = 1; i < work.length(); ++i) {
        if (work[i] != PATH_SEPERATOR) {
            continue;
        }
        work[i] = 0;
        if (stat(work.c_str(), &st) == 0) {
            if (!S_ISDIR(st.st_mode)) {
                return false;
            }
        } else if (mkdir(work.c_str(), static_cast<mode_t>(mode)) != 0) {
            return false;
        }
        work[i] = PATH_SEPERATOR;
    }
    if (stat(work.c_str(), &st) == 0) {
        return true;
    }
    return mkdir(work.c_str(), static_cast<mode_t>(mode)) == 0;
}

LMString LMFile::GetFolderName(const char* path) {
    LM_ASSERT(path != 0);
    const char* slash = strrchr(path, PATH_SEPERATOR);
    if (slash == nullptr) {
        return *path == 0 ? LMString("./") : LMString(path) + "/";
    }
    return LMString(path, static_cast<size_t>(slash - path) + 1);
}

LMString LMFile::GetFileName(const char* path) {
    LM_ASSERT(path != 0);
    const char* slash = strrchr(path, PATH_SEPERATOR);
    return LMString(slash != nullptr ? slash + 1 : path);
}

namespace {
bool EndsWith(const LMString& s, const char* tail) {
    size_t n = strlen(tail);
    return s.length() >= n && memcmp(s.c_str() + s.length() - n, tail, n) == 0;
}
}  // namespace

bool LMFile::RemoveWithWildcard(const char* filename) {
    LM_ASSERT(filename != 0);
    LM_ASSERT((strchr(filename, '?') != 0) || (strchr(filename, '*') != 0));
    LMString folder = GetFolderName(filename);
    LMString pattern = GetFileName(filename);
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) {
        return false;
    }
    bool sawEntry = false;
    bool ok = true;
    while (struct dirent* entry = readdir(dir)) {
        sawEntry = true;
        if (fnmatch(pattern.c_str(), entry->d_name, FNM_NOESCAPE | FNM_PATHNAME) != 0) {
            continue;
        }
        LMString full = folder + entry->d_name;
        if (EndsWith(full, "/.") || EndsWith(full, "/..")) {
            continue;
        }
        if (!Remove(full.c_str())) {
            ok = false;
            break;
        }
    }
    closedir(dir);
    return sawEntry && ok;
}

LMString LMFile::CreateTempFileName(const char* path) {
    LM_ASSERT(path != 0);
    const LMString templ = GetFolderName(path) + "lmwsXXXXXX";
    LMString name(templ);
    int fd = mkstemp(&name[0]);
    if (fd < 0) {
        // The C library may have filled in the characters before failing: hand back the
        // template itself so that callers can tell.
        return templ;
    }
    close(fd);
    return name;
}

bool LMFile::Copy(const char* from, const char* to) {
    LM_ASSERT(from != 0);
    LM_ASSERT(to != 0);
    LMFile in;
    LMFile out;
    // A folder as the source would give an empty "copy" and count as done.
    if (!in.Open(from, "rb") || !in.IsRegularFile() || !out.Open(to, "wb")) {
        return false;
    }
    char block[1024];
    for (;;) {
        lm_int64 got = in.Read(block, sizeof(block));
        if (got <= 0) {
            break;
        }
        // A short write (full disk) is a failed copy, not a silently truncated one.
        if (out.Write(block, got) != got) {
            return false;
        }
    }
    return out.Flush();
}
