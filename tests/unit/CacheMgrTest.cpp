#include "CacheMgr.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "LMBoxArt.h"
#include "LMFile.h"
#include "TempDir.h"

namespace {

LM_WS_CacheParam Param(uint32_t type, uint32_t data, uint32_t limit, const std::string& path) {
    LM_WS_CacheParam p;
    p.CacheType = type;
    p.CacheData = data;
    p.CacheLimit = limit;
    p.CachePath = path.c_str();
    return p;
}

const uint32_t kAll =
    LM_WS_CacheParam::Service | LM_WS_CacheParam::BoxArt | LM_WS_CacheParam::UserData;

// Runs one statement on the cache file through a second connection, as another process would.
void Sql(const std::string& path, const std::string& sql) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(db);
}

int Count(const std::string& path, const std::string& sql) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr);
    int n = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int(stmt, 0) : -1;
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return n;
}

// Text of the first column of the first row through the manager's own connection.
std::string Text(CacheMgr& cache, const char* sql) {
    LMString result;
    EXPECT_EQ(cache.ExecuteSQL(sql, result), 0) << sql;
    return result.c_str();
}

TEST(CacheBudget, SharesFollowTheEnabledKinds) {
    struct Case {
        uint32_t data, limit, service, boxart, userdata;
    } cases[] = {
        {kAll, 1000, 150, 700, 150},
        {LM_WS_CacheParam::BoxArt, 1000, 0, 1000, 0},
        {LM_WS_CacheParam::Service | LM_WS_CacheParam::UserData, 1000, 150, 0, 850},
        {LM_WS_CacheParam::Service, 1000, 1000, 0, 0},
        {kAll, 1001, 150, 701, 150},  // rounding losses go to box art
        {kAll, 0, 0, 0, 0},           // never evict
        {0, 500, 500, 0, 0},
    };
    for (const Case& c : cases) {
        CacheMgr cache;
        EXPECT_EQ(cache.Init(Param(LM_WS_CacheParam::Memory, c.data, c.limit, "")), 0);
        EXPECT_EQ(cache.ServiceLimit(), c.service) << c.data << "/" << c.limit;
        EXPECT_EQ(cache.BoxArtLimit(), c.boxart) << c.data << "/" << c.limit;
        EXPECT_EQ(cache.UserdataLimit(), c.userdata) << c.data << "/" << c.limit;
    }
}

TEST(CacheOpen, NoCacheTouchesNothingAndBadFilesFailInit) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    CacheMgr none;
    EXPECT_EQ(none.Init(Param(LM_WS_CacheParam::None, kAll, 1000, path)), 0);
    EXPECT_FALSE(none.IsInitialised());
    LMString value;
    bool flag = true;
    EXPECT_EQ(none.SetServiceData("getTitles", "1,2,3,4", "v"), 0);
    EXPECT_EQ(none.GetServiceData("getTitles", "1,2,3,4", value), 0);
    EXPECT_EQ(none.SetWishlistFlag(5, true), 0);
    EXPECT_EQ(none.GetWishlistFlag(5, flag), 0);
    EXPECT_FALSE(flag);
    EXPECT_EQ(none.ClearUserData(""), 0);
    EXPECT_EQ(none.InvalidateBoxArt(), 0);
    EXPECT_FALSE(LMFile::Exist(path.c_str()));

    CacheMgr bad;
    EXPECT_EQ(bad.Init(Param(LM_WS_CacheParam::File, kAll, 1000, dir / "no/such/dir/c.db")),
              SQLITE_CANTOPEN);
    EXPECT_FALSE(bad.IsInitialised());
    std::ofstream(path) << std::string(4096, 'x');  // not a database
    EXPECT_EQ(bad.Init(Param(LM_WS_CacheParam::File, kAll, 1000, path)), SQLITE_NOTADB);
    EXPECT_EQ(bad.Init(Param(7, kAll, 1000, path)), SQLITE_MISUSE);
}

class CacheFile : public ::testing::Test {
protected:
    void SetUp() override {
        path = m_Dir / "cache.db";
        ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    }
    TempDir m_Dir;
    std::string path;
    CacheMgr cache;
};

TEST_F(CacheFile, ServiceValuesRoundTripByteForByteAndReplace) {
    const char raw[] = {'\x1f', '\x8b', 0, 'x', 0, '\xff'};
    LMString value(raw, sizeof(raw));
    ASSERT_EQ(cache.SetServiceData("getTitles", "12,1,20,2", value), 1);
    LMString back;
    ASSERT_EQ(cache.GetServiceData("getTitles", "12,1,20,2", back), 1);
    EXPECT_TRUE(back == value);
    EXPECT_EQ(cache.GetServiceData("getTitles", "12,1,20,3", back), 0);

    EXPECT_EQ(cache.SetServiceData("getTitles", "12,1,20,2", "second"), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 1);
    EXPECT_EQ(Count(path, "SELECT Size FROM Service"), 6);
    // Empty names and values are refused without touching the database.
    EXPECT_EQ(cache.SetServiceData("", "k", "v"), 0);
    EXPECT_EQ(cache.SetServiceData("n", "k", ""), 0);
}

// A file whose first page is intact but whose other pages are garbage, and one that is no
// database at all: the operation that meets it is a miss, the file is made anew, and caching
// works again from the next operation on.
TEST_F(CacheFile, ADamagedFileIsAMissAndIsMadeAnew) {
    const std::string big(3000, 'v');
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(cache.SetServiceData("getTitles", std::to_string(i).c_str(), big.c_str()), 1);
    }
    for (long from : {4096L, 0L}) {
        // Another process moves the log into the file and empties it; the manager then reads
        // the file itself again, not pages it keeps.
        Sql(path, "PRAGMA wal_checkpoint(TRUNCATE)");
        FILE* file = std::fopen(path.c_str(), "r+b");
        ASSERT_NE(file, nullptr);
        std::fseek(file, 0, SEEK_END);
        const long size = std::ftell(file);
        ASSERT_GT(size, 8 * 4096);
        std::fseek(file, from, SEEK_SET);
        for (long at = from; at < size; ++at) {
            std::fputc(static_cast<int>((at * 7919) & 0xFF), file);
        }
        std::fclose(file);
        LMString back;
        EXPECT_EQ(cache.GetServiceData("getTitles", "19", back), 0) << "from " << from;
        EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 0) << "a new, empty database";
        ASSERT_EQ(cache.SetServiceData("getTitles", "19", "again"), 1);
        ASSERT_EQ(cache.GetServiceData("getTitles", "19", back), 1);
        EXPECT_STREQ(back.c_str(), "again");
        for (int i = 0; i < 20; ++i) {
            ASSERT_EQ(cache.SetServiceData("getTitles", std::to_string(i).c_str(), big.c_str()), 1);
        }
    }
}

TEST_F(CacheFile, DisabledKindsAreNeitherReadNorWritten) {
    CacheMgr responsesOff;
    ASSERT_EQ(
        responsesOff.Init(Param(LM_WS_CacheParam::File,
                                LM_WS_CacheParam::BoxArt | LM_WS_CacheParam::UserData, 0, path)),
        0);
    ASSERT_EQ(cache.SetServiceData("getTitles", "k", "v"), 1);
    LMString value;
    EXPECT_EQ(responsesOff.GetServiceData("getTitles", "k", value), 0);
    EXPECT_EQ(responsesOff.SetServiceData("getTitles", "k2", "v"), 0);
    EXPECT_EQ(responsesOff.SetLastLoadTime("2026-11-23"), 0);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 1);
}

TEST_F(CacheFile, ANewLoadTimeDropsCachedResponses) {
    ASSERT_EQ(cache.SetServiceData("getTitles", "k", "v"), 1);
    EXPECT_EQ(cache.SetLastLoadTime("11/23/2026 10:00:00"), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 0);
    ASSERT_EQ(cache.SetServiceData("getTitles", "k", "v"), 1);
    EXPECT_EQ(cache.SetLastLoadTime("11/23/2026 10:00:00"), 1);  // unchanged: kept
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 1);
    EXPECT_EQ(cache.SetLastLoadTime("11/24/2026 10:00:00"), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 0);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Cache"), 1);
    EXPECT_EQ(cache.SetLastLoadTime(""), 0);
}

TEST_F(CacheFile, ClearingUserDataDropsTheListingsThatCarryWishlistState) {
    auto fill = [&] {
        for (const char* op :
             {"getTitleListing", "getTvEpisodeListing", "getAllTvEpisodeListings", "getTitles"}) {
            ASSERT_EQ(cache.SetServiceData(op, "k", "v"), 1);
        }
        ASSERT_EQ(cache.SetWishlistFlag(1, true), 1);
        ASSERT_EQ(cache.SetUserData("Other", "k", "v"), 1);
    };
    fill();
    EXPECT_EQ(cache.ClearUserData("Other"), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Userdata"), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 4);

    EXPECT_EQ(cache.ClearWishlistFlags(), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Userdata"), 0);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service WHERE Name = 'getTitles'"), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 1);

    fill();
    EXPECT_EQ(cache.ClearUserData(""), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Userdata"), 0);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service"), 1);
}

TEST_F(CacheFile, WishlistFlags) {
    bool flag = true;
    EXPECT_EQ(cache.GetWishlistFlag(42, flag), 0);
    EXPECT_FALSE(flag);
    ASSERT_EQ(cache.SetWishlistFlags({1, 2, 3}, {true, false, true}), 1);
    EXPECT_EQ(cache.GetWishlistFlag(1, flag), 1);
    EXPECT_TRUE(flag);
    EXPECT_EQ(cache.GetWishlistFlag(2, flag), 1);
    EXPECT_FALSE(flag);
    EXPECT_EQ(Count(path, "SELECT SUM(Size) FROM Userdata"), 3);
    EXPECT_EQ(cache.SetWishlistFlag(2, true), 1);
    EXPECT_EQ(cache.GetWishlistFlag(2, flag), 1);
    EXPECT_TRUE(flag);
    EXPECT_EQ(cache.RemoveWishlistFlag(2), 1);
    EXPECT_EQ(cache.GetWishlistFlag(2, flag), 0);
    EXPECT_EQ(cache.SetWishlistFlags({}, {}), 0);
    EXPECT_EQ(cache.SetWishlistFlags({1, 2}, {true}), 0);
    EXPECT_EQ(cache.SetWishlistFlag(-7, true), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Userdata WHERE Key = '-7'"), 1);
}

TEST(CacheEviction, AnOverflowingShareResetsResponsesAndUserDataTogether) {
    CacheMgr cache;
    // 100 bytes: Service 15, BoxArt 70, Userdata 15.
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::Memory, kAll, 100, "")), 0);
    ASSERT_EQ(cache.SetServiceData("a", "1", LMString(std::string(10, 'a').c_str())), 1);
    ASSERT_EQ(cache.SetUserData("u", "1", "user"), 1);
    ASSERT_EQ(cache.SetServiceData("b", "1", LMString(std::string(10, 'b').c_str())),
              1);  // 10 <= 15
    // Service now holds 20 > 15: the next insert first clears both tables.
    ASSERT_EQ(cache.SetServiceData("c", "1", "c"), 1);
    unsigned rows = 99;
    ASSERT_EQ(cache.ExecuteSQL("SELECT COUNT(*) FROM Service", rows), 0);
    EXPECT_EQ(rows, 1u);
    ASSERT_EQ(cache.ExecuteSQL("SELECT COUNT(*) FROM Userdata", rows), 0);
    EXPECT_EQ(rows, 0u);

    // Wishlist flags written in bulk never trigger eviction.
    ASSERT_EQ(cache.SetWishlistFlags(std::vector<int>(40, 0), std::vector<bool>(40, true)), 1);
    ASSERT_EQ(cache.SetWishlistFlags({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17},
                                     std::vector<bool>(17, false)),
              1);
    ASSERT_EQ(cache.ExecuteSQL("SELECT COUNT(*) FROM Service", rows), 0);
    EXPECT_EQ(rows, 1u);
}

// A share filled exactly to its limit is kept; only a byte more overflows it.
TEST(CacheEviction, ASharesFilledExactlyToItsLimitIsKept) {
    CacheMgr cache;
    // 100 bytes: Service 15, BoxArt 70, Userdata 15.
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::Memory, kAll, 100, "")), 0);
    auto rows = [&cache](const std::string& table) {
        unsigned n = 99;
        EXPECT_EQ(cache.ExecuteSQL(("SELECT COUNT(*) FROM " + table).c_str(), n), 0);
        return n;
    };
    const LMString fifteen(std::string(15, 'x').c_str());
    ASSERT_EQ(cache.SetUserData("u", "1", fifteen), 1);
    ASSERT_EQ(cache.SetUserData("u", "2", "y"), 1);
    EXPECT_EQ(rows("Userdata"), 2u);
    ASSERT_EQ(cache.SetServiceData("s", "1", fifteen), 1);
    ASSERT_EQ(cache.SetServiceData("s", "2", "y"), 1);
    EXPECT_EQ(rows("Service"), 2u);
    ASSERT_EQ(cache.SetServiceData("s", "3", "z"), 1);  // 16 > 15: both tables reset first
    EXPECT_EQ(rows("Service"), 1u);
    EXPECT_EQ(rows("Userdata"), 0u);

    ASSERT_EQ(cache.SetBoxArt("a", 0, 70, "", false, "x"), 1);
    ASSERT_EQ(cache.SetBoxArt("b", 0, 1, "", false, "x"), 1);
    EXPECT_EQ(rows("BoxArt"), 2u);
    ASSERT_EQ(cache.SetBoxArt("c", 0, 1, "", false, "x"), 1);  // 71 > 70: the oldest go
    EXPECT_EQ(rows("BoxArt"), 1u);
}

TEST(CacheEviction, ABatchTakesTheTenOldestRowsWithEverySizeClassAndFileOfTheirPrefixes) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    const std::string folder = dir.path() + "/";
    CacheMgr cache;
    // 1000 bytes with only box art on: all of it for images.
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, LM_WS_CacheParam::BoxArt, 1000, path)), 0);
    auto store = [&](const std::string& prefix, int dim, unsigned size, const std::string& ts) {
        ASSERT_EQ(cache.SetBoxArt(prefix.c_str(), dim, size, "", false, "x"), 1);
        Sql(path, "UPDATE BoxArt SET TS = '" + ts + "' WHERE Prefix = '" + prefix +
                      "' AND Dim = " + std::to_string(dim));
        std::ofstream(LMBoxArtFileName(folder.c_str(), prefix.c_str(), dim).c_str()) << "jpg";
    };
    // Twelve titles, t0 oldest; t0 also has a size-6 image that is the newest row of all.
    for (int i = 0; i < 12; ++i) {
        char ts[32];
        snprintf(ts, sizeof(ts), "2020-01-01 00:00:%02d", i);
        store("t" + std::to_string(i), 0, i < 10 ? 100 : 0, ts);
    }
    store("t0", 6, 100, "2029-01-01 00:00:00");  // sum now 1100, over the limit
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM BoxArt"), 13);

    ASSERT_EQ(cache.SetBoxArt("fresh", 0, 1, "", false, "x"), 1);
    // The ten oldest rows are t0..t9 at size 0; t0's size-6 row goes with its prefix.
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM BoxArt"), 3);  // t10, t11, fresh
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM BoxArt WHERE Prefix = 't0'"), 0);
    EXPECT_FALSE(LMFile::Exist((folder + "t095.jpg").c_str()));
    EXPECT_FALSE(LMFile::Exist((folder + "t995.jpg").c_str()));
    EXPECT_TRUE(LMFile::Exist((folder + "t1095.jpg").c_str()));
    // t0's size-6 row was not among the ten oldest, but its row went with the prefix: so does
    // its file.
    EXPECT_FALSE(LMFile::Exist((folder + "t0135.jpg").c_str()));
}

TEST_F(CacheFile, BoxArtRowsAndRevalidationMarks) {
    const char jpeg[] = {'\xff', '\xd8', 0, '\xff', '\xd9'};
    ASSERT_EQ(cache.SetBoxArt("Title & Co", 6, 5, "Mon, 23 Nov 2026 10:00:00 GMT", false,
                              LMString(jpeg, sizeof(jpeg))),
              1);
    unsigned size = 0;
    LMString modified, data;
    bool needUpdate = true;
    ASSERT_EQ(cache.GetBoxArt("Title & Co", 6, size, modified, needUpdate, data), 1);
    EXPECT_EQ(size, 5u);
    EXPECT_STREQ(modified.c_str(), "Mon, 23 Nov 2026 10:00:00 GMT");
    EXPECT_FALSE(needUpdate);
    EXPECT_TRUE(data == LMString(jpeg, sizeof(jpeg)));

    EXPECT_EQ(cache.InvalidateBoxArt(), 1);
    ASSERT_EQ(cache.GetBoxArt("Title & Co", 6, size, modified, needUpdate, data), 1);
    EXPECT_TRUE(needUpdate);

    EXPECT_EQ(cache.GetBoxArt("Title & Co", 0, size, modified, needUpdate, data), 0);
    EXPECT_EQ(size, 0u);
    EXPECT_TRUE(modified.empty());
    EXPECT_FALSE(needUpdate);
    EXPECT_TRUE(data.empty());
}

TEST(CacheSharing, ASecondProcessHoldingTheLockIsWaitedFor) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    CacheMgr cache;
    // SQLite connections must not cross a fork: the database is made, closed, and opened again
    // by the parent once the child has it.
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    cache.Uninit();
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Another process writes in a transaction and keeps the lock for a while.
        sqlite3* db = nullptr;
        sqlite3_open(path.c_str(), &db);
        sqlite3_exec(db, "BEGIN IMMEDIATE; INSERT INTO Userdata VALUES ('x', 'y', 'z', 1);",
                     nullptr, nullptr, nullptr);
        char go = 1;
        if (write(ready[1], &go, 1) != 1)
            _exit(2);
        usleep(400 * 1000);
        int rc = sqlite3_exec(db, "COMMIT;", nullptr, nullptr, nullptr);
        sqlite3_close(db);
        _exit(rc == SQLITE_OK ? 0 : 1);
    }
    char go = 0;
    ASSERT_EQ(read(ready[0], &go, 1), 1);
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    // Locked by the child: without the busy timeout this would fail with SQLITE_BUSY at once.
    EXPECT_EQ(cache.SetServiceData("getTitles", "k", "v"), 1);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Userdata"), 1);
    close(ready[0]);
    close(ready[1]);
}

// Two managers of one file, as two processes or two clients of one process have: each sees what
// the other wrote, replaced and dropped, at once.
TEST(CacheSharing, ManagersOfOneFileSeeEachOthersWrites) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    CacheMgr a, b;
    ASSERT_EQ(a.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    ASSERT_EQ(b.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    LMString value;
    EXPECT_EQ(b.GetServiceData("getTitles", "k", value), 0);
    ASSERT_EQ(a.SetServiceData("getTitles", "k", "from a"), 1);
    ASSERT_EQ(b.GetServiceData("getTitles", "k", value), 1);
    EXPECT_STREQ(value.c_str(), "from a");
    ASSERT_EQ(b.SetServiceData("getTitles", "k", "from b"), 1);
    ASSERT_EQ(a.GetServiceData("getTitles", "k", value), 1);
    EXPECT_STREQ(value.c_str(), "from b");

    bool flag = false;
    ASSERT_EQ(b.SetWishlistFlag(7, true), 1);
    ASSERT_EQ(a.GetWishlistFlag(7, flag), 1);
    EXPECT_TRUE(flag);
    ASSERT_EQ(a.ClearWishlistFlags(), 1);
    EXPECT_EQ(b.GetWishlistFlag(7, flag), 0);
    ASSERT_EQ(a.SetLastLoadTime("11/24/2026 10:00:00"), 1);
    EXPECT_EQ(b.GetServiceData("getTitles", "k", value), 0);
}

// The files at the path are deleted (as clearing the cache folder does) or made anew by another
// manager that found them damaged: a manager that still has the old ones open goes over to what
// is at the path at its next operation, and closing it leaves the new files alone.
TEST(CacheSharing, ManagersFollowTheFileWhenItIsDeletedOrMadeAnew) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    CacheMgr a, b, idle;
    for (CacheMgr* cache : {&a, &b, &idle}) {
        ASSERT_EQ(cache->Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    }
    LMString value;
    ASSERT_EQ(a.SetServiceData("getTitles", "old", "v"), 1);
    for (const char* suffix : {"", "-wal", "-shm"}) {
        ASSERT_EQ(std::remove((path + suffix).c_str()), 0) << suffix;
    }
    ASSERT_EQ(a.SetServiceData("getTitles", "new", "after deletion"), 1);
    ASSERT_EQ(b.GetServiceData("getTitles", "new", value), 1);
    EXPECT_STREQ(value.c_str(), "after deletion");
    EXPECT_EQ(b.GetServiceData("getTitles", "old", value), 0);
    // Closing the last manager of the deleted files leaves the new ones alone.
    idle.Uninit();
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service WHERE Key = 'new'"), 1);
    // Only the log and the index go (as when the new files were made before a deleting was
    // done). What the log held is lost; each manager notices at its next operation, and once
    // they have, they and any other connection share new ones again. Managers of one process
    // share SQLite's hold on a file, so the first of them to notice may miss until the other has.
    for (const char* suffix : {"-wal", "-shm"}) {
        ASSERT_EQ(std::remove((path + suffix).c_str()), 0) << suffix;
    }
    a.GetServiceData("getTitles", "new", value);
    b.GetServiceData("getTitles", "new", value);
    ASSERT_EQ(a.SetServiceData("getTitles", "later", "v"), 1);
    ASSERT_EQ(b.GetServiceData("getTitles", "later", value), 1);
    EXPECT_EQ(Count(path, "SELECT COUNT(*) FROM Service WHERE Key = 'later'"), 1);

    const std::string big(3000, 'v');
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(b.SetServiceData("getTitles", std::to_string(i).c_str(), big.c_str()), 1);
    }
    Sql(path, "PRAGMA wal_checkpoint(TRUNCATE)");
    FILE* file = std::fopen(path.c_str(), "r+b");
    ASSERT_NE(file, nullptr);
    std::fseek(file, 4096, SEEK_SET);
    for (int at = 0; at < 8 * 4096; ++at) {
        std::fputc(at & 0xFF, file);
    }
    std::fclose(file);
    EXPECT_EQ(a.GetServiceData("getTitles", "19", value), 0);  // damaged: a makes it anew
    ASSERT_EQ(a.SetServiceData("getTitles", "k", "rebuilt"), 1);
    ASSERT_EQ(b.GetServiceData("getTitles", "k", value), 1);
    EXPECT_STREQ(value.c_str(), "rebuilt");
    ASSERT_EQ(b.SetServiceData("getTitles", "k2", "from b"), 1);
    ASSERT_EQ(a.GetServiceData("getTitles", "k2", value), 1);
}

// A manager in another process whose log and index were deleted from under it, closing after
// the database was written through new ones: copying its own log into the file would put back
// pages older than those writes, and deleting the log at the path would drop them.
TEST(CacheSharing, AManagerWhoseLogWasDeletedClosesWithoutCopyingIt) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    int ready[2], go[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(go), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        CacheMgr cache;
        char byte = 1;
        if (cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)) != 0 ||
            cache.SetServiceData("getTitles", "child", "c") != 1 ||
            write(ready[1], &byte, 1) != 1 || read(go[0], &byte, 1) != 1) {
            _exit(2);
        }
        cache.Uninit();
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    for (const char* suffix : {"-wal", "-shm"}) {
        EXPECT_EQ(std::remove((path + suffix).c_str()), 0) << suffix;
    }
    {
        CacheMgr cache;
        ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
        ASSERT_EQ(cache.SetServiceData("getTitles", "parent", "p"), 1);
    }
    EXPECT_EQ(write(go[1], &byte, 1), 1);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    for (int fd : {ready[0], ready[1], go[0], go[1]}) {
        close(fd);
    }
    CacheMgr cache;
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
    EXPECT_EQ(Text(cache, "PRAGMA integrity_check"), "ok");
    LMString value;
    EXPECT_EQ(cache.GetServiceData("getTitles", "parent", value), 1);
}

std::string Numbered(int i) {
    return std::to_string(i) + std::string(7000, static_cast<char>('a' + i % 26));
}

// A writer killed anywhere in its writes (within a transaction, while copying the log into the
// file) leaves a database that the next manager opens, answers every finished write from, and
// writes to. The rounds kill the writer later and later: after a few writes, and after enough of
// them that the log has been copied into the file on the way (at 1000 pages).
TEST(CacheCrash, AWriterKilledMidWriteLeavesADatabaseThatOpensAndAnswers) {
    TempDir dir;
    const std::string path = dir / "cache.db";
    int first = 0;
    for (int acknowledged : {3, 80, 600}) {
        SCOPED_TRACE(acknowledged);
        int acks[2];
        ASSERT_EQ(pipe(acks), 0);
        // No connection of the parent is open across the fork.
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            close(acks[0]);
            CacheMgr writer;
            if (writer.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)) != 0) {
                _exit(2);
            }
            for (int i = first; i < first + 100000; ++i) {
                if (writer.SetServiceData("getTitles", std::to_string(i).c_str(),
                                          Numbered(i).c_str()) != 1 ||
                    write(acks[1], &i, sizeof(i)) != sizeof(i)) {
                    _exit(3);
                }
            }
            _exit(0);
        }
        close(acks[1]);
        int last = -1;
        for (int n = 0; n < acknowledged && read(acks[0], &last, sizeof(last)) == sizeof(last);
             ++n) {
        }
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        close(acks[0]);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
        ASSERT_EQ(last, first + acknowledged - 1);

        CacheMgr cache;
        ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, path)), 0);
        EXPECT_EQ(Text(cache, "PRAGMA integrity_check"), "ok");
        LMString value;
        for (int key : {0, first, last}) {
            ASSERT_EQ(cache.GetServiceData("getTitles", std::to_string(key).c_str(), value), 1)
                << key;
            EXPECT_EQ(std::string(value.c_str()), Numbered(key)) << key;
        }
        ASSERT_EQ(cache.SetServiceData("getTitles", "after", "written"), 1);
        ASSERT_EQ(cache.GetServiceData("getTitles", "after", value), 1);
        EXPECT_STREQ(value.c_str(), "written");
        first = last + 1;
    }
}

TEST(CacheDeathTest, ExecuteSqlWithoutAnOpenDatabaseAborts) {
    TempDir dir;
    CacheMgr cache;
    unsigned n = 0;
    EXPECT_DEATH(cache.ExecuteSQL("SELECT 1", n), "m_DB != 0");
    ASSERT_EQ(cache.Init(Param(LM_WS_CacheParam::File, kAll, 0, dir / "c.db")), 0);
    EXPECT_EQ(cache.ExecuteSQL("SELECT 1", n), 0);
    EXPECT_EQ(n, 1u);
    cache.Uninit();
    EXPECT_DEATH(cache.ExecuteSQL("SELECT 1", n), "m_DB != 0");
}

}  // namespace
