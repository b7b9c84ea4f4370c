#include "CacheMgr.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "LMAssert.h"
#include "LMBoxArt.h"
#include "LMCacheNames.h"
#include "LMFile.h"

namespace {

const char* const kCreateTables[] = {
    "CREATE TABLE IF NOT EXISTS Service (Name TEXT NOT NULL, Key TEXT NOT NULL, Value TEXT NOT "
    "NULL, Size INTEGER, PRIMARY KEY (Name, Key));",
    "CREATE TABLE IF NOT EXISTS BoxArt (Prefix TEXT NOT NULL, Dim INTEGER NOT NULL, Size INTEGER, "
    "LastModified TEXT, NeedUpdate INTEGER NOT NULL, TS DATETIME DEFAULT CURRENT_TIMESTAMP, Data "
    "BLOB, PRIMARY KEY (Prefix, Dim));",
    "CREATE TABLE IF NOT EXISTS Cache (ID INTEGER, LastLoadTime TEXT NOT NULL, PRIMARY KEY (ID));",
    "CREATE TABLE IF NOT EXISTS Userdata (Name TEXT NOT NULL, Key TEXT NOT NULL, Value TEXT NOT "
    "NULL, Size INTEGER, PRIMARY KEY (Name, Key));",
    // The budget check before each stored answer sums the sizes. From the rows that would read
    // every answer whole (Size comes after Value); the index holds just the sizes.
    "CREATE INDEX IF NOT EXISTS ServiceSize ON Service (Size);",
};

using LMCacheNames::kWishlistFlag;
const int kBusyTimeoutMs = 10000;
// Up to 512 KiB of pages per file connection.
const char* const kPageCache = "PRAGMA cache_size=-512";

// The inode number of `path`, 0 when there is no such file.
uint64_t FileId(const LMString& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 ? static_cast<uint64_t>(info.st_ino) : 0;
}

void BindText(sqlite3_stmt* stmt, int index, const LMString& text) {
    sqlite3_bind_text(stmt, index, text.c_str(), static_cast<int>(text.length()), SQLITE_TRANSIENT);
}

LMString ColumnText(sqlite3_stmt* stmt, int index) {
    const char* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, index));
    int bytes = sqlite3_column_bytes(stmt, index);
    return text != nullptr ? LMString(text, static_cast<size_t>(bytes)) : LMString();
}

LMString TitleKey(int titleId) {
    char key[32];
    snprintf(key, sizeof(key), "%d", titleId);
    return LMString(key);
}

}  // namespace

CacheMgr::CacheMgr()
    : m_CacheType(LM_WS_CacheParam::None),
      m_CacheData(0),
      m_CacheLimit(0),
      m_WalId(0),
      m_ShmId(0),
      m_Initialised(false),
      m_DB(nullptr),
      m_Stmt(nullptr),
      m_ServiceLimit(0),
      m_BoxArtLimit(0),
      m_UserdataLimit(0) {}

CacheMgr::~CacheMgr() {
    CacheMgr::Uninit();
}

int CacheMgr::Init(const LM_WS_CacheParam& param) {
    Uninit();
    m_CacheType = param.CacheType;
    m_CacheData = param.CacheData;
    m_CacheLimit = param.CacheLimit;
    m_CachePath = param.CachePath;
    m_WalPath = m_CachePath + "-wal";
    m_ShmPath = m_CachePath + "-shm";

    // Service and user data get 15% each, box art 70%; what kinds that are off would have had
    // (and rounding losses) goes to box art, else user data, else service.
    const double tenth = m_CacheLimit / 10.0;
    uint32_t remaining = m_CacheLimit;
    if (m_CacheData & LM_WS_CacheParam::Service) {
        m_ServiceLimit = static_cast<unsigned>(tenth * 1.5);
        remaining -= m_ServiceLimit;
    }
    if (m_CacheData & LM_WS_CacheParam::BoxArt) {
        m_BoxArtLimit = static_cast<unsigned>(tenth * 7.0);
        remaining -= m_BoxArtLimit;
    }
    if (m_CacheData & LM_WS_CacheParam::UserData) {
        m_UserdataLimit = static_cast<unsigned>(tenth * 1.5);
        remaining -= m_UserdataLimit;
    }
    if (m_CacheData & LM_WS_CacheParam::BoxArt) {
        m_BoxArtLimit += remaining;
    } else if (m_CacheData & LM_WS_CacheParam::UserData) {
        m_UserdataLimit += remaining;
    } else {
        m_ServiceLimit += remaining;
    }

    if (m_CacheType == LM_WS_CacheParam::None) {
        return SQLITE_OK;
    }
    if (m_CacheType != LM_WS_CacheParam::Memory && m_CacheType != LM_WS_CacheParam::File) {
        return SQLITE_MISUSE;
    }
    const int rc = Connect();
    // A file that is no database is reported to the caller here, not rebuilt.
    m_Damaged = false;
    m_Initialised = rc == SQLITE_OK;
    return rc;
}

int CacheMgr::Uninit() {
    m_Initialised = false;
    m_ServiceLimit = m_BoxArtLimit = m_UserdataLimit = 0;
    // The last connection to close copies the log into the database and deletes it, unless the
    // files at the path are no longer ours.
    Disconnect(m_DB != nullptr && (m_CacheType != LM_WS_CacheParam::File || !Replaced()));
    return 1;
}

bool CacheMgr::Open() {
    if (m_DB != nullptr) {
        if (m_CacheType != LM_WS_CacheParam::File || !Replaced()) {
            return true;
        }
        Disconnect(false);
    }
    if (Connect() != SQLITE_OK && m_Damaged) {
        Rebuild();
    }
    return m_DB != nullptr;
}

int CacheMgr::Connect() {
    const bool file = m_CacheType == LM_WS_CacheParam::File;
    const char* name = file ? m_CachePath.c_str() : ":memory:";
    int flags = SQLITE_OPEN_READWRITE;
    if (file) {
        flags |= SQLITE_OPEN_CREATE;
        // The cache holds the user's data: a new database is readable by its owner only, and
        // SQLite gives its log and index the database file's permissions.
        int fd = ::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) {
            ::close(fd);
        }
    }
    int rc = sqlite3_open_v2(name, &m_DB, flags, nullptr);
    if (rc == SQLITE_OK) {
        sqlite3_busy_timeout(m_DB, kBusyTimeoutMs);
    }
    if (rc == SQLITE_OK && file) {
        // The connection lives as long as the manager, so its page cache is kept small; pages
        // another process changed are read again anyway.
        sqlite3_exec(m_DB, kPageCache, nullptr, nullptr, nullptr);
        // The log mode belongs to the file: asking for it converts a database made in
        // rollback-journal mode and confirms it later. Skipping the sync at each commit is
        // safe only with the log, so a database that stays in another mode (the change needs
        // the file to itself) keeps syncing.
        LMString mode;
        ExecuteSQL("PRAGMA journal_mode=WAL", mode);
        if (mode == "wal") {
            sqlite3_exec(m_DB, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
        }
    }
    for (const char* sql : kCreateTables) {
        if (rc != SQLITE_OK) {
            break;
        }
        rc = Note(sqlite3_exec(m_DB, sql, nullptr, nullptr, nullptr));
    }
    if (rc != SQLITE_OK) {
        sqlite3_close(m_DB);
        m_DB = nullptr;
        return rc;
    }
    if (file) {
        // The log and the index exist now (in log mode): note which files they are.
        m_WalId = FileId(m_WalPath);
        m_ShmId = FileId(m_ShmPath);
    }
    return SQLITE_OK;
}

void CacheMgr::Disconnect(bool checkpoint) {
    Finalize();
    if (m_DB == nullptr) {
        return;
    }
    if (!checkpoint) {
        sqlite3_db_config(m_DB, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
    sqlite3_close(m_DB);
    m_DB = nullptr;
    m_WalId = m_ShmId = 0;
}

// While any connection has a database open in log mode, SQLite deletes neither the log nor the
// index, so these files change only when someone outside SQLite deletes or replaces them.
bool CacheMgr::Replaced() {
    int moved = 0;
    if (sqlite3_file_control(m_DB, "main", SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK ||
        moved != 0) {
        return true;
    }
    return FileId(m_WalPath) != m_WalId || FileId(m_ShmPath) != m_ShmId;
}

void CacheMgr::End() {
    Finalize();
    if (m_Damaged) {
        Rebuild();
    }
}

int CacheMgr::Step(sqlite3_stmt* stmt) {
    return Note(sqlite3_step(stmt));
}

int CacheMgr::Note(int rc) {
    const int primary = rc & 0xFF;
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) {
        m_Damaged = true;
    }
    return rc;
}

// A damaged file is only a cache: it is deleted with its log and made anew, once, at the end of
// the operation that found it, which went on as a miss. Without this every later operation would
// fail the same way and cache nothing for good. The log and the index go first: a manager
// elsewhere that notices and reconnects while this runs finds the damaged database still there
// and makes its log and index for that one; the database going last sends it to the new one at
// its next operation.
void CacheMgr::Rebuild() {
    m_Damaged = false;
    if (m_CacheType != LM_WS_CacheParam::File) {
        return;
    }
    Disconnect(false);
    for (const char* suffix : {"-journal", "-wal", "-shm", ""}) {
        LMFile::Remove((m_CachePath + suffix).c_str());
    }
    Connect();
    m_Damaged = false;
}

bool CacheMgr::Begin(const LMString& name, uint32_t bit) {
    return m_Initialised && !name.empty() && (m_CacheData & bit) != 0 && Open();
}

bool CacheMgr::Prepare(const char* sql) {
    Finalize();
    if (Note(sqlite3_prepare_v2(m_DB, sql, -1, &m_Stmt, nullptr)) != SQLITE_OK) {
        Finalize();
        return false;
    }
    return true;
}

bool CacheMgr::StepOnce() {
    bool done = Step(m_Stmt) == SQLITE_DONE;
    Finalize();
    return done;
}

bool CacheMgr::Exec(const char* sql) {
    return Prepare(sql) && StepOnce();
}

void CacheMgr::Finalize() {
    if (m_Stmt != nullptr) {
        sqlite3_finalize(m_Stmt);
        m_Stmt = nullptr;
    }
}

int CacheMgr::ExecuteSQL(const LMString& sql, LMString& result) {
    LM_ASSERT(m_DB != 0);
    result.assign("");
    sqlite3_stmt* stmt = nullptr;
    int rc =
        Note(sqlite3_prepare_v2(m_DB, sql.c_str(), static_cast<int>(sql.length()), &stmt, nullptr));
    if (rc == SQLITE_OK) {
        rc = Step(stmt);
        if (rc == SQLITE_ROW) {
            result = ColumnText(stmt, 0);
        }
    }
    sqlite3_finalize(stmt);
    return rc == SQLITE_ROW || rc == SQLITE_DONE ? 0 : rc;
}

int CacheMgr::ExecuteSQL(const LMString& sql, unsigned int& result) {
    LM_ASSERT(m_DB != 0);
    result = 0;
    sqlite3_stmt* stmt = nullptr;
    int rc =
        Note(sqlite3_prepare_v2(m_DB, sql.c_str(), static_cast<int>(sql.length()), &stmt, nullptr));
    if (rc == SQLITE_OK) {
        rc = Step(stmt);
        if (rc == SQLITE_ROW) {
            sqlite3_int64 value = sqlite3_column_int64(stmt, 0);
            result = value < 0              ? 0u
                     : value > 0xFFFFFFFFll ? 0xFFFFFFFFu
                                            : static_cast<unsigned>(value);
        }
    }
    sqlite3_finalize(stmt);
    return rc == SQLITE_ROW || rc == SQLITE_DONE ? 0 : rc;
}

void CacheMgr::LimitHandler(enum LM_WS_CacheParam::CacheData kind) {
    LM_ASSERT(m_DB != 0);
    unsigned sum = 0;
    if (kind == LM_WS_CacheParam::Service || kind == LM_WS_CacheParam::UserData) {
        const bool service = kind == LM_WS_CacheParam::Service;
        const unsigned limit = service ? m_ServiceLimit : m_UserdataLimit;
        if (limit == 0 ||
            ExecuteSQL(service ? "SELECT SUM(Size) FROM Service" : "SELECT SUM(Size) FROM Userdata",
                       sum) != 0 ||
            sum <= limit) {
            return;
        }
        // Either share overflowing resets both tables together (wishlist flags included):
        // responses and user data describe the same catalogue state.
        Exec("DELETE FROM Service");
        Exec("DELETE FROM Userdata");
        return;
    }
    if (kind != LM_WS_CacheParam::BoxArt || m_BoxArtLimit == 0 ||
        ExecuteSQL("SELECT SUM(Size) FROM BoxArt", sum) != 0 || sum <= m_BoxArtLimit) {
        return;
    }
    std::vector<std::pair<LMString, int>> oldest;
    if (Prepare("SELECT Prefix, Dim FROM BoxArt ORDER BY TS ASC LIMIT 10")) {
        while (Step(m_Stmt) == SQLITE_ROW) {
            oldest.emplace_back(ColumnText(m_Stmt, 0), sqlite3_column_int(m_Stmt, 1));
        }
        Finalize();
    }
    // Every size class of the oldest prefixes goes: a title's images are kept or dropped together.
    if (Exec("DELETE FROM BoxArt WHERE Prefix in (SELECT Prefix FROM BoxArt ORDER BY TS ASC LIMIT "
             "10)") &&
        m_CacheType == LM_WS_CacheParam::File) {
        // The delete took every size class of those prefixes, so remove every size class's
        // file too: a file without a row would never be evicted again.
        const LMString folder = LMFile::GetFolderName(m_CachePath.c_str());
        std::vector<LMString> done;
        for (const auto& image : oldest) {
            if (std::find(done.begin(), done.end(), image.first) != done.end()) {
                continue;
            }
            done.push_back(image.first);
            for (int size = LM_WS_BoxArt95; size <= LM_WS_BoxArt321; ++size) {
                LMFile::Remove(LMBoxArtFileName(folder.c_str(), image.first.c_str(), size).c_str());
            }
        }
    }
}

int CacheMgr::GetServiceData(const LMString& name, const LMString& key, LMString& value) {
    return GetValue("SELECT Value FROM Service WHERE Name = ? AND Key = ?",
                    LM_WS_CacheParam::Service, name, key, value);
}

int CacheMgr::SetServiceData(const LMString& name, const LMString& key, const LMString& value) {
    return SetValue("INSERT OR REPLACE INTO Service(Name, Key, Value, Size) VALUES (?, ?, ?, ?)",
                    LM_WS_CacheParam::Service, name, key, value);
}

int CacheMgr::GetValue(const char* sql, enum LM_WS_CacheParam::CacheData kind, const LMString& name,
                       const LMString& key, LMString& value) {
    if (!Begin(name, kind)) {
        return 0;
    }
    int ok = 0;
    if (Prepare(sql)) {
        BindText(m_Stmt, 1, name);
        BindText(m_Stmt, 2, key);
        if (Step(m_Stmt) == SQLITE_ROW) {
            // Service values are compressed bytes: read them with their length, NULs included.
            value = ColumnText(m_Stmt, 0);
            ok = 1;
        }
    }
    End();
    return ok;
}

int CacheMgr::SetValue(const char* sql, enum LM_WS_CacheParam::CacheData kind, const LMString& name,
                       const LMString& key, const LMString& value) {
    if (value.empty() || !Begin(name, kind)) {
        return 0;
    }
    LimitHandler(kind);
    int ok = 0;
    if (Prepare(sql)) {
        BindText(m_Stmt, 1, name);
        BindText(m_Stmt, 2, key);
        BindText(m_Stmt, 3, value);
        sqlite3_bind_int64(m_Stmt, 4, value.length());
        ok = StepOnce() ? 1 : 0;
    }
    End();
    return ok;
}

int CacheMgr::SetLastLoadTime(const LMString& time) {
    if (!Begin(time, LM_WS_CacheParam::Service)) {
        return 0;
    }
    int ok = 0;
    LMString stored;
    ExecuteSQL("SELECT LastLoadTime FROM Cache WHERE ID = 1", stored);
    if (stored == time) {
        ok = 1;
    } else if (Prepare("INSERT OR REPLACE INTO Cache(ID, LastLoadTime) VALUES(1, ?)")) {
        BindText(m_Stmt, 1, time);
        // A new catalogue load makes every cached response stale.
        if (StepOnce()) {
            ok = Exec("DELETE FROM Service") ? 1 : 0;
        }
    }
    End();
    return ok;
}

int CacheMgr::SetBoxArt(const LMString& prefix, int dim, unsigned size,
                        const LMString& lastModified, bool needUpdate, const LMString& data) {
    if (!Begin(prefix, LM_WS_CacheParam::BoxArt)) {
        return 0;
    }
    LimitHandler(LM_WS_CacheParam::BoxArt);
    int ok = 0;
    if (Prepare("INSERT OR REPLACE INTO BoxArt(Prefix, Dim, Size, LastModified, NeedUpdate, Data) "
                "VALUES (?, ?, ?, ?, ?, ?)")) {
        BindText(m_Stmt, 1, prefix);
        sqlite3_bind_int(m_Stmt, 2, dim);
        sqlite3_bind_int64(m_Stmt, 3, size);
        BindText(m_Stmt, 4, lastModified);
        sqlite3_bind_int(m_Stmt, 5, needUpdate ? 1 : 0);
        sqlite3_bind_blob(m_Stmt, 6, data.c_str(), static_cast<int>(data.length()),
                          SQLITE_TRANSIENT);
        ok = StepOnce() ? 1 : 0;
    }
    End();
    return ok;
}

int CacheMgr::GetBoxArt(const LMString& prefix, int dim, unsigned& size, LMString& lastModified,
                        bool& needUpdate, LMString& data) {
    size = 0;
    lastModified.assign("");
    needUpdate = false;
    data.assign("");
    if (!Begin(prefix, LM_WS_CacheParam::BoxArt)) {
        return 0;
    }
    int ok = 0;
    if (Prepare("SELECT Size, LastModified, NeedUpdate, Data FROM BoxArt WHERE Prefix = ? AND "
                "Dim = ?")) {
        BindText(m_Stmt, 1, prefix);
        sqlite3_bind_int(m_Stmt, 2, dim);
        if (Step(m_Stmt) == SQLITE_ROW) {
            size = static_cast<unsigned>(sqlite3_column_int64(m_Stmt, 0));
            lastModified = ColumnText(m_Stmt, 1);
            needUpdate = sqlite3_column_int(m_Stmt, 2) != 0;
            const void* blob = sqlite3_column_blob(m_Stmt, 3);
            int bytes = sqlite3_column_bytes(m_Stmt, 3);
            if (blob != nullptr && bytes > 0) {
                data.assign(static_cast<const char*>(blob), static_cast<size_t>(bytes));
            }
            ok = 1;
        }
    }
    End();
    return ok;
}

int CacheMgr::InvalidateBoxArt() {
    if (!Begin(LMString("BoxArt"), LM_WS_CacheParam::BoxArt)) {
        return 0;
    }
    int ok = Exec("UPDATE BoxArt SET NeedUpdate = 1") ? 1 : 0;
    End();
    return ok;
}

int CacheMgr::GetUserData(const LMString& name, const LMString& key, LMString& value) {
    return GetValue("SELECT Value FROM Userdata WHERE Name = ? AND Key = ?",
                    LM_WS_CacheParam::UserData, name, key, value);
}

int CacheMgr::SetUserData(const LMString& name, const LMString& key, const LMString& value) {
    return SetValue("INSERT OR REPLACE INTO Userdata(Name, Key, Value, Size) VALUES (?, ?, ?, ?)",
                    LM_WS_CacheParam::UserData, name, key, value);
}

int CacheMgr::ClearUserData(const LMString& name) {
    // An empty name means "everything", so the usual non-empty check does not apply here.
    if (!m_Initialised || (m_CacheData & LM_WS_CacheParam::UserData) == 0 || !Open()) {
        return 0;
    }
    int ok = 0;
    if (name.empty()) {
        ok = Exec("DELETE FROM Userdata") ? 1 : 0;
    } else if (Prepare("DELETE FROM Userdata WHERE Name = ?")) {
        BindText(m_Stmt, 1, name);
        ok = StepOnce() ? 1 : 0;
    }
    if ((m_CacheData & LM_WS_CacheParam::Service) && (name.empty() || name == kWishlistFlag)) {
        for (const char* withWishlistState : LMCacheNames::kWithWishlistState) {
            const LMString sql =
                LMString("DELETE FROM Service WHERE Name = '") + withWishlistState + "';";
            Exec(sql.c_str());
        }
    }
    End();
    return ok;
}

int CacheMgr::GetWishlistFlag(int titleId, bool& flag) {
    flag = false;
    LMString value;
    int ok = GetUserData(LMString(kWishlistFlag), TitleKey(titleId), value);
    flag = ok && !value.empty() && value[0] == '1';
    return ok;
}

int CacheMgr::SetWishlistFlag(int titleId, bool flag) {
    return SetUserData(LMString(kWishlistFlag), TitleKey(titleId), LMString(flag ? "1" : "0"));
}

int CacheMgr::SetWishlistFlags(const std::vector<int>& titleIds, const std::vector<bool>& flags) {
    if (titleIds.empty() || titleIds.size() != flags.size() ||
        !Begin(LMString(kWishlistFlag), LM_WS_CacheParam::UserData)) {
        return 0;
    }
    int ok = 0;
    if (Prepare("INSERT OR REPLACE INTO Userdata(Name, Key, Value, Size) VALUES ('WishlistFlag', "
                "?, ?, 1)")) {
        ok = 1;
        for (size_t i = titleIds.size(); i-- > 0;) {
            BindText(m_Stmt, 1, TitleKey(titleIds[i]));
            sqlite3_bind_text(m_Stmt, 2, flags[i] ? "1" : "0", 1, SQLITE_STATIC);
            if (Step(m_Stmt) != SQLITE_DONE) {
                ok = 0;
                break;
            }
            sqlite3_reset(m_Stmt);
        }
    }
    End();
    return ok;
}

int CacheMgr::RemoveWishlistFlag(int titleId) {
    if (!Begin(LMString(kWishlistFlag), LM_WS_CacheParam::UserData)) {
        return 0;
    }
    int ok = 0;
    if (Prepare("DELETE FROM Userdata WHERE Name = 'WishlistFlag' AND Key = ?")) {
        BindText(m_Stmt, 1, TitleKey(titleId));
        ok = StepOnce() ? 1 : 0;
    }
    End();
    return ok;
}

int CacheMgr::ClearWishlistFlags() {
    return ClearUserData(LMString(kWishlistFlag));
}
