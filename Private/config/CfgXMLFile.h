// CfgXMLFile: one small XML file of named text values (the device's credentials or its
// preferences).
//
// The file is the serializer's form of one LM1:ArrayOfConfigurationItemOfString under the root
// tag "LMWSLib": each value is one item, its name in the Key attribute and its text in the Value
// element. A value may be kept protected (EVPCipher's self-checking encrypted form), so that a
// secret never appears in the file as plain text.
//
// A player loses power at any moment, so the file is never changed in place: every change writes
// the whole new file to a temporary file in the same folder, syncs it and renames it over the old
// one. A reader sees the old file or the new one, never a mixture. Files are created with mode
// 0600.
#ifndef LM_CFGXMLFILE_H
#define LM_CFGXMLFILE_H

#include <cstddef>
#include <vector>

#include "LMString.h"

class CfgXMLFile {
public:
    // Results of Read and Write.
    enum {
        kOK = 0,
        kEmptyName = 1,          // the value's name is empty
        kUnreadable = 2,         // the file cannot be opened or is not read whole
        kNotFound = 3,           // empty file, not a settings document, or no item of that name
        kBadProtectedValue = 4,  // the protected form fails its check or does not decrypt
        kWriteFailed = 5,        // the new file could not be made, written, synced or renamed
        // The object names no file. Nothing was looked at, so a caller must not take another
        // file's value in its place: this is a caller's mistake (for example a read before the
        // files were set), not a missing value.
        kNoFile = -1000,
    };

    // Larger files are not ours: they are not read (kNotFound) and never written.
    static const size_t kMaxFileSize = 1 << 20;

    // One value of a whole-file write.
    struct Entry {
        LMString name;
        LMString value;
        bool isProtected;
    };

    explicit CfgXMLFile(const LMString& path) : m_Path(path) {}

    const LMString& Path() const { return m_Path; }

    // Reads the value named `name` into `value` (cleared first). With `isProtected` a non-empty
    // value is checked and decrypted; when that fails `value` stays empty and the result is
    // kBadProtectedValue.
    int Read(const LMString& name, LMString& value, bool isProtected) const;
    // True when a Read result means the value was found (and, if protected, read back).
    static bool Found(int code) { return code == kOK; }

    // Sets one value, replacing the item of that name where it stands (later items of the same
    // name go) or appending a new one; the other items keep their order. A missing, empty or
    // unparseable file is replaced by one holding the other values read (none); a file that
    // exists but cannot be read is left alone (kUnreadable).
    int Write(const LMString& name, const LMString& value, bool isProtected) const;
    // Replaces the whole file with exactly these values, in one atomic step.
    int WriteAll(const std::vector<Entry>& entries) const;
    // Leaves a file that holds no values.
    int RemoveAll() const { return WriteAll(std::vector<Entry>()); }

    // The text steps of Read and Write, for documents already in memory.
    static int ReadText(const LMString& text, const LMString& name, LMString& value,
                        bool isProtected);
    // `text` with the value set as Write sets it; `text` may be empty or foreign.
    static int WriteText(const LMString& text, const LMString& name, const LMString& value,
                         bool isProtected, LMString& out);

    // Writes `size` bytes as the new content of `path` (temporary file in the same folder, flush,
    // fsync, rename, then fsync of the folder). False when any step failed; the old file is
    // then untouched and no temporary file is left.
    static bool ReplaceFile(const char* path, const char* data, size_t size);
    // Copies a regular file of at most kMaxFileSize bytes with ReplaceFile.
    static bool CopyFile(const char* from, const char* to);

    // For tests: called with the temporary file's name once it is synced and closed, just
    // before the rename. Null (the default) calls nothing.
    typedef void (*RenameHook)(const char* tempPath);
    static void SetBeforeRenameHook(RenameHook hook);

private:
    // kOK with the whole file, kUnreadable, or kNotFound for an empty or over-long file.
    // `missing` tells a file that does not exist from one that cannot be read.
    int Load(LMString& text, bool* missing) const;

    LMString m_Path;
};

#endif  // LM_CFGXMLFILE_H
