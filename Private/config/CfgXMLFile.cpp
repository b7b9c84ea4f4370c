#include "CfgXMLFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "EVPCipher.h"
#include "LMAssert.h"
#include "LMFile.h"
#include "Serializer.h"
#include "soapH.h"

namespace {

typedef LM1__ArrayOfConfigurationItemOfString ItemArray;
typedef LM1__ConfigurationItemOfString Item;

CfgXMLFile::RenameHook g_BeforeRename = nullptr;

// More items than this is not a settings file of ours.
const int kMaxItems = 4096;

// Settings files can be edited or replaced by anyone with access to the device's storage: bound
// what a hostile file can make the toolkit allocate, and read strictly, so that a document with
// elements of its own (however deeply nested) is not taken for ours.
void Harden(Serializer& s) {
    soap_set_imode(&s, SOAP_XML_STRICT);
    s.maxoccurs = kMaxItems;
    s.recv_maxlength = CfgXMLFile::kMaxFileSize;
}

bool HasNul(const LMString& text) {
    return std::strlen(text.c_str()) != text.length();
}

// Key comparison is byte for byte; a name holding a NUL matches no key.
bool SameName(const char* key, const LMString& name) {
    return key != nullptr && std::strlen(key) == name.length() &&
           std::memcmp(key, name.c_str(), name.length()) == 0;
}

// The text kept in the file for `value`. False when it cannot be kept: the XML carries no NUL,
// and a protected value must encrypt.
bool StoredForm(const LMString& value, bool isProtected, LMString& stored) {
    if (HasNul(value)) {
        return false;
    }
    if (!isProtected || value.empty()) {
        stored = value;
        return true;
    }
    EVPCipher cipher(true);
    stored = cipher.Protect(value);
    return !stored.empty();
}

// Reads the document; false when it is not one array under the root tag.
bool Parse(Serializer& in, const LMString& text, ItemArray& items) {
    if (text.empty() || !in.Read(text, items)) {
        items.__sizeConfiguration = 0;
        items.Configuration = nullptr;
        return false;
    }
    if (items.Configuration == nullptr || items.__sizeConfiguration < 0) {
        items.__sizeConfiguration = 0;
    }
    return true;
}

const Item* FindItem(const ItemArray& items, const LMString& name) {
    for (int i = 0; i < items.__sizeConfiguration; ++i) {
        const Item* item = items.Configuration[i];
        if (item != nullptr && SameName(item->Key, name)) {
            return item;
        }
    }
    return nullptr;
}

// Serializes `items` and reads the result back: a file we cannot read again (a text the toolkit
// refuses on input) is never written.
int Compose(std::vector<Item*>& items, LMString& out) {
    ItemArray array;
    array.__sizeConfiguration = static_cast<int>(items.size());
    array.Configuration = items.empty() ? nullptr : items.data();
    Serializer writer(false, true);
    if (items.size() > static_cast<size_t>(kMaxItems) || !writer.Write(array)) {
        return CfgXMLFile::kWriteFailed;
    }
    LMString text = writer.GetBuffer();
    if (text.length() > CfgXMLFile::kMaxFileSize) {
        return CfgXMLFile::kWriteFailed;
    }
    Serializer reader(false, false);
    Harden(reader);
    ItemArray back;
    if (!Parse(reader, text, back) || back.__sizeConfiguration != array.__sizeConfiguration) {
        return CfgXMLFile::kWriteFailed;
    }
    for (int i = 0; i < back.__sizeConfiguration; ++i) {
        const Item* was = items[i];
        const Item* got = back.Configuration[i];
        if (got == nullptr || std::strcmp(got->Key ? got->Key : "", was->Key ? was->Key : "") ||
            std::strcmp(got->Value ? got->Value : "", was->Value ? was->Value : "")) {
            return CfgXMLFile::kWriteFailed;
        }
    }
    out.swap(text);
    return CfgXMLFile::kOK;
}

bool WriteFully(int fd, const char* data, size_t size) {
    while (size > 0) {
        ssize_t put = ::write(fd, data, size);
        if (put < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data += put;
        size -= static_cast<size_t>(put);
    }
    return true;
}

// The folder part of `path` up to and including its last "/", or "" for the current folder.
LMString FolderOf(const char* path) {
    const char* slash = std::strrchr(path, '/');
    return slash != nullptr ? LMString(path, static_cast<size_t>(slash - path) + 1) : LMString();
}

// Makes a rename durable: the new directory entry reaches the disk with the folder.
void SyncFolder(const LMString& folder) {
    int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

}  // namespace

int CfgXMLFile::Load(LMString& text, bool* missing) const {
    struct stat info;
    if (::stat(m_Path.c_str(), &info) != 0) {
        *missing = errno == ENOENT || errno == ENOTDIR;
        return kUnreadable;
    }
    *missing = false;
    LMFile file;
    // A folder or a device opens for reading too, but is no settings file.
    if (!file.Open(m_Path.c_str(), "rb") || !file.IsRegularFile()) {
        return kUnreadable;
    }
    lm_int64 size = file.GetSize();
    if (size == 0) {
        return kNotFound;
    }
    if (size > static_cast<lm_int64>(kMaxFileSize)) {
        return kNotFound;
    }
    std::vector<char> buffer(static_cast<size_t>(size));
    if (file.Read(buffer.data(), size) != size) {
        return kUnreadable;
    }
    text.assign(buffer.data(), buffer.size());
    return kOK;
}

int CfgXMLFile::Read(const LMString& name, LMString& value, bool isProtected) const {
    value = "";
    if (name.empty()) {
        return kEmptyName;
    }
    if (m_Path.empty()) {
        return kNoFile;
    }
    LMString text;
    bool missing = false;
    int loaded = Load(text, &missing);
    if (loaded != kOK) {
        return loaded;
    }
    return ReadText(text, name, value, isProtected);
}

int CfgXMLFile::ReadText(const LMString& text, const LMString& name, LMString& value,
                         bool isProtected) {
    value = "";
    if (name.empty()) {
        return kEmptyName;
    }
    Serializer in(false, false);
    Harden(in);
    ItemArray items;
    if (!Parse(in, text, items) || items.__sizeConfiguration < 1) {
        return kNotFound;
    }
    const Item* item = FindItem(items, name);
    if (item == nullptr) {
        return kNotFound;
    }
    LMString found(item->Value != nullptr ? item->Value : "");
    if (!isProtected || found.empty()) {
        value.swap(found);
        return kOK;
    }
    EVPCipher cipher(true);
    LMString key;
    LMString symbols;
    int check = cipher.SplitProtectedValue(found, key, symbols);
    if (check != 0) {
        return check;
    }
    // A value can pass its four check digits by chance and still not decrypt.
    LMString plain = cipher.Decrypt(symbols, key);
    if (plain.empty()) {
        return kBadProtectedValue;
    }
    value.swap(plain);
    return kOK;
}

int CfgXMLFile::WriteText(const LMString& text, const LMString& name, const LMString& value,
                          bool isProtected, LMString& out) {
    if (name.empty()) {
        return kEmptyName;
    }
    LMString stored;
    if (HasNul(name) || !StoredForm(value, isProtected, stored)) {
        return kWriteFailed;
    }
    Serializer in(false, false);
    Harden(in);
    ItemArray old;
    Parse(in, text, old);

    Item fresh;
    fresh.Key = const_cast<char*>(name.c_str());
    fresh.Value = const_cast<char*>(stored.c_str());
    std::vector<Item*> items;
    bool placed = false;
    for (int i = 0; i < old.__sizeConfiguration; ++i) {
        Item* item = old.Configuration[i];
        if (item == nullptr) {
            continue;
        }
        if (SameName(item->Key, name)) {
            if (!placed) {
                items.push_back(&fresh);
                placed = true;
            }
            continue;
        }
        items.push_back(item);
    }
    if (!placed) {
        items.push_back(&fresh);
    }
    return Compose(items, out);
}

int CfgXMLFile::Write(const LMString& name, const LMString& value, bool isProtected) const {
    if (name.empty()) {
        return kEmptyName;
    }
    if (m_Path.empty()) {
        return kNoFile;
    }
    LMString text;
    bool missing = false;
    int loaded = Load(text, &missing);
    // A file that is there but cannot be read may still hold values: leave it alone. Anything we
    // could read but not parse is replaced.
    if (loaded == kUnreadable && !missing) {
        return kUnreadable;
    }
    if (loaded != kOK) {
        text = "";
    }
    LMString out;
    int composed = WriteText(text, name, value, isProtected, out);
    if (composed != kOK) {
        return composed;
    }
    return ReplaceFile(m_Path.c_str(), out.c_str(), out.length()) ? kOK : kWriteFailed;
}

int CfgXMLFile::WriteAll(const std::vector<Entry>& entries) const {
    if (m_Path.empty()) {
        return kNoFile;
    }
    std::vector<LMString> stored(entries.size());
    std::vector<Item> records(entries.size());
    std::vector<Item*> items;
    for (size_t i = 0; i < entries.size(); ++i) {
        const Entry& entry = entries[i];
        if (entry.name.empty()) {
            return kEmptyName;
        }
        if (HasNul(entry.name) || !StoredForm(entry.value, entry.isProtected, stored[i])) {
            return kWriteFailed;
        }
        records[i].Key = const_cast<char*>(entry.name.c_str());
        records[i].Value = const_cast<char*>(stored[i].c_str());
        items.push_back(&records[i]);
    }
    LMString out;
    int composed = Compose(items, out);
    if (composed != kOK) {
        return composed;
    }
    return ReplaceFile(m_Path.c_str(), out.c_str(), out.length()) ? kOK : kWriteFailed;
}

bool CfgXMLFile::ReplaceFile(const char* path, const char* data, size_t size) {
    LM_ASSERT(path != 0);
    LM_ASSERT(data != 0 || size == 0);
    const LMString folder = FolderOf(path);
    // Hidden, and in the same folder so that the rename stays on one file system.
    LMString temp = folder + "." + LMFile::GetFileName(path) + ".XXXXXX";
    int fd = ::mkstemp(&temp[0]);
    if (fd < 0) {
        return false;
    }
    bool ok = WriteFully(fd, data, size) && ::fchmod(fd, 0600) == 0 && ::fsync(fd) == 0;
    ok = ::close(fd) == 0 && ok;
    if (ok && g_BeforeRename != nullptr) {
        g_BeforeRename(temp.c_str());
    }
    if (!ok || ::rename(temp.c_str(), path) != 0) {
        ::unlink(temp.c_str());
        return false;
    }
    SyncFolder(folder);
    return true;
}

bool CfgXMLFile::CopyFile(const char* from, const char* to) {
    LM_ASSERT(from != 0);
    LM_ASSERT(to != 0);
    LMFile in;
    if (!in.Open(from, "rb") || !in.IsRegularFile()) {
        return false;
    }
    lm_int64 size = in.GetSize();
    if (size < 0 || size > static_cast<lm_int64>(kMaxFileSize)) {
        return false;
    }
    std::vector<char> buffer(static_cast<size_t>(size) + 1);
    if (in.Read(buffer.data(), size) != size) {
        return false;
    }
    return ReplaceFile(to, buffer.data(), static_cast<size_t>(size));
}

void CfgXMLFile::SetBeforeRenameHook(RenameHook hook) {
    g_BeforeRename = hook;
}
