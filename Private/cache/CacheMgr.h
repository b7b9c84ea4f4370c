// CacheMgr: the cache in one SQLite database.
//
// Tables: Service (serialized responses by operation name and argument text), BoxArt (images by
// prefix and size class), Cache (the catalogue's last load time, one row) and Userdata (small
// per-user values such as wishlist flags). Each kind has its share of the size budget; an insert
// that finds its kind over its share first evicts. All SQL is fixed text with bound values.
//
// The database stays open while the manager is initialised. A file database is in write-ahead-log
// mode with synchronous=NORMAL: a write appends to the log without waiting for the disk, readers
// and the writer do not block each other, and a process killed at any point leaves a database
// that opens with every completed write in it (a power cut may lose the last writes, never the
// database). Several processes (and several managers of one process) share the file, waiting up
// to 10000 ms for each other's writes. Each operation first checks that the files it has open
// are still the ones at the path: when another manager has rebuilt the file or someone has
// deleted it, the operation reopens the path (making a new, empty database if there is none)
// instead of going on with files nobody else sees.
// Callers serialise access: the manager takes no locks.
#ifndef LM_CACHE_MGR_H
#define LM_CACHE_MGR_H

#include "CacheInterface.h"

struct sqlite3;
struct sqlite3_stmt;

class CacheMgr : public CacheInterface {
public:
    CacheMgr();
    ~CacheMgr() override;
    CacheMgr(const CacheMgr&) = delete;
    CacheMgr& operator=(const CacheMgr&) = delete;

    int Init(const LM_WS_CacheParam& param) override;
    int Uninit() override;
    int GetServiceData(const LMString& name, const LMString& key, LMString& value) override;
    int SetServiceData(const LMString& name, const LMString& key, const LMString& value) override;
    // Stores the catalogue load time; a new time drops every cached response.
    int SetLastLoadTime(const LMString& time) override;
    int SetBoxArt(const LMString& prefix, int dim, unsigned size, const LMString& lastModified,
                  bool needUpdate, const LMString& data) override;
    int GetBoxArt(const LMString& prefix, int dim, unsigned& size, LMString& lastModified,
                  bool& needUpdate, LMString& data) override;
    // Marks every image as needing revalidation.
    int InvalidateBoxArt() override;
    int GetUserData(const LMString& name, const LMString& key, LMString& value) override;
    int SetUserData(const LMString& name, const LMString& key, const LMString& value) override;
    // Empty name: all user data. Clearing wishlist data also drops the cached listings that
    // carry wishlist state.
    int ClearUserData(const LMString& name) override;
    int GetWishlistFlag(int titleId, bool& flag) override;
    int SetWishlistFlag(int titleId, bool flag) override;
    // Writes all pairs with one prepared statement; the arrays must be non-empty and equal.
    int SetWishlistFlags(const std::vector<int>& titleIds, const std::vector<bool>& flags) override;
    int RemoveWishlistFlag(int titleId) override;
    int ClearWishlistFlags() override;

    // The per-kind shares of the size budget set by Init (0 = never evicted).
    unsigned ServiceLimit() const { return m_ServiceLimit; }
    unsigned BoxArtLimit() const { return m_BoxArtLimit; }
    unsigned UserdataLimit() const { return m_UserdataLimit; }
    bool IsInitialised() const { return m_Initialised; }

    // Run `sql` on the open database (initialised, or within an operation): the first column of the
    // first row as text (empty when there is none) or as an integer (0). 0 when the statement
    // completes, else the SQLite code.
    int ExecuteSQL(const LMString& sql, LMString& result);
    int ExecuteSQL(const LMString& sql, unsigned int& result);

private:
    // True with an open database that is still the one at the path, reconnecting when needed.
    bool Open();
    // Opens the database, sets it up and creates the tables; 0 or the SQLite code.
    int Connect();
    // Closes the connection. Without `checkpoint` the log is neither copied into the database nor
    // deleted: the files at the path may belong to another database by now.
    void Disconnect(bool checkpoint);
    // True when the database file, its log or its shared-memory index at the path is no longer
    // the one the connection has open (deleted, or made anew by another manager).
    bool Replaced();
    // Ends an operation: frees its statement and rebuilds a file found damaged.
    void End();
    // The checks every data operation starts with; opens the database when they pass.
    bool Begin(const LMString& name, uint32_t bit);
    // The (Name, Key) -> Value read and write that Service and Userdata share.
    int GetValue(const char* sql, enum LM_WS_CacheParam::CacheData kind, const LMString& name,
                 const LMString& key, LMString& value);
    int SetValue(const char* sql, enum LM_WS_CacheParam::CacheData kind, const LMString& name,
                 const LMString& key, const LMString& value);
    // Evicts when the kind is over its share (one batch at most).
    void LimitHandler(enum LM_WS_CacheParam::CacheData kind);
    // Prepares `sql` into m_Stmt; false (with nothing prepared) on failure.
    bool Prepare(const char* sql);
    // Steps m_Stmt once and finalizes it; true when it completed (SQLITE_DONE).
    bool StepOnce();
    bool Exec(const char* sql);
    void Finalize();
    // sqlite3_step, noting a database that turned out to be damaged.
    int Step(sqlite3_stmt* stmt);
    // Notes `rc` when it says the file is damaged or no database.
    int Note(int rc);
    // Replaces a damaged file database with a new, empty one.
    void Rebuild();

    uint32_t m_CacheType;
    uint32_t m_CacheData;
    uint32_t m_CacheLimit;
    LMString m_CachePath;
    LMString m_WalPath;  // the database's write-ahead log
    LMString m_ShmPath;  // and its shared-memory index
    uint64_t m_WalId;    // their inode numbers when connected (0: none)
    uint64_t m_ShmId;
    bool m_Initialised;
    sqlite3* m_DB;
    sqlite3_stmt* m_Stmt;
    bool m_Damaged = false;  // an operation found the file corrupt or not a database
    unsigned m_ServiceLimit;
    unsigned m_BoxArtLimit;
    unsigned m_UserdataLimit;
};

#endif  // LM_CACHE_MGR_H
