#include "LMFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "TempDir.h"

namespace {

void WriteFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(LMFilePaths, FolderAndFileNames) {
    EXPECT_STREQ(LMFile::GetFolderName("").c_str(), "./");
    EXPECT_STREQ(LMFile::GetFolderName("name").c_str(), "name/");
    EXPECT_STREQ(LMFile::GetFolderName("/data/lm/settings.xml").c_str(), "/data/lm/");
    EXPECT_STREQ(LMFile::GetFolderName("/").c_str(), "/");
    EXPECT_STREQ(LMFile::GetFileName("/data/lm/settings.xml").c_str(), "settings.xml");
    EXPECT_STREQ(LMFile::GetFileName("plain").c_str(), "plain");
    EXPECT_STREQ(LMFile::GetFileName("dir/").c_str(), "");
    EXPECT_EQ(LMFile::PATH_SEPERATOR, '/');
}

TEST(LMFileInstance, ReadWriteSeekAndSizeOnOpenAndClosedFiles) {
    TempDir dir;
    const std::string path = dir / "data.bin";
    LMFile f;
    char buf[16];
    EXPECT_EQ(f.Read(buf, 4), 0);
    EXPECT_EQ(f.Tell(), -1);
    EXPECT_EQ(f.GetSize(), 0);
    EXPECT_FALSE(f.Flush());
    EXPECT_FALSE(f.Seek(0, SEEK_SET));

    ASSERT_TRUE(f.Open(path.c_str(), "wb"));
    const char payload[] = {'a', 0, 'b', 'c'};
    EXPECT_EQ(f.Write(payload, 4), 4);
    EXPECT_TRUE(f.Flush());
    ASSERT_TRUE(f.Open(path.c_str(), "rb"));  // reopening closes the previous stream
    EXPECT_EQ(f.GetSize(), 4);
    EXPECT_EQ(f.Tell(), 0);  // GetSize puts the position back
    EXPECT_EQ(f.Read(buf, sizeof(buf)), 4);
    EXPECT_EQ(buf[1], 0);
    EXPECT_TRUE(f.Seek(2, SEEK_SET));
    EXPECT_EQ(f.Read(buf, 0), 0);
    EXPECT_EQ(f.Read(buf, 1), 1);
    EXPECT_EQ(buf[0], 'b');
    f.Close();
    EXPECT_FALSE(f.IsOpen());

    EXPECT_EQ(LMFile::GetSize(path.c_str()), 4);
    EXPECT_EQ(LMFile::GetSize((dir / "missing").c_str()), 0);
    EXPECT_FALSE(f.Open((dir / "missing").c_str(), "rb"));
}

TEST(LMFileStatic, ExistRemoveRenameCopy) {
    TempDir dir;
    const std::string a = dir / "a.txt";
    const std::string b = dir / "b.txt";
    WriteFile(a, std::string(3000, 'x') + "tail");
    EXPECT_TRUE(LMFile::Exist(a.c_str()));
    EXPECT_TRUE(LMFile::Exist(dir.path().c_str()));  // a folder opens for reading
    EXPECT_FALSE(LMFile::FolderExist(a.c_str()));
    EXPECT_TRUE(LMFile::FolderExist(dir.path().c_str()));

    WriteFile(b, "old content that is longer than nothing");
    EXPECT_TRUE(LMFile::Copy(a.c_str(), b.c_str()));  // replaces an existing destination
    EXPECT_EQ(ReadFile(b), ReadFile(a));
    EXPECT_FALSE(LMFile::Copy((dir / "none").c_str(), b.c_str()));
    EXPECT_FALSE(LMFile::Copy(a.c_str(), (dir / "no/such/folder").c_str()));

    EXPECT_TRUE(LMFile::Rename(b.c_str(), (dir / "c.txt").c_str()));
    EXPECT_FALSE(LMFile::Exist(b.c_str()));
    EXPECT_TRUE(LMFile::Remove((dir / "c.txt").c_str()));
    EXPECT_FALSE(LMFile::Remove((dir / "c.txt").c_str()));
}

TEST(LMFileFolders, CreateFolderMakesEveryLevelAndStopsAtAFileInTheWay) {
    TempDir dir;
    const std::string deep = dir / "one/two/three";
    EXPECT_TRUE(LMFile::CreateFolder(deep.c_str()));
    EXPECT_TRUE(LMFile::FolderExist((dir / "one").c_str()));
    EXPECT_TRUE(LMFile::FolderExist(deep.c_str()));
    EXPECT_TRUE(LMFile::CreateFolder((deep + "/").c_str()));  // trailing slash, already there

    struct stat st;
    ASSERT_EQ(stat(deep.c_str(), &st), 0);
    mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(st.st_mode & 0777, 0755u & ~mask);

    WriteFile(dir / "file", "x");
    EXPECT_FALSE(LMFile::CreateFolder((dir / "file/sub").c_str()));
    EXPECT_TRUE(LMFile::CreateFolder((dir / "file").c_str()));  // anything existing counts
}

TEST(LMFileFolders, RemoveWithWildcardRemovesOnlyMatches) {
    TempDir dir;
    for (const char* name : {"box1.jpg", "box2.jpg", "box10.jpg", "keep.txt", ".hidden"}) {
        WriteFile(dir / name, "x");
    }
    EXPECT_TRUE(LMFile::RemoveWithWildcard((dir / "box?.jpg").c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / "box1.jpg").c_str()));
    EXPECT_TRUE(LMFile::Exist((dir / "box10.jpg").c_str()));

    // "*" matches "." and ".." too; they must never be removed.
    EXPECT_TRUE(LMFile::RemoveWithWildcard((dir / ".*").c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / ".hidden").c_str()));
    EXPECT_TRUE(LMFile::RemoveWithWildcard((dir / "*").c_str()));
    EXPECT_TRUE(LMFile::FolderExist(dir.path().c_str()));
    EXPECT_FALSE(LMFile::Exist((dir / "keep.txt").c_str()));

    // A folder that matches cannot be removed with remove() if it is not empty: stop there.
    LMFile::CreateFolder((dir / "sub/inner").c_str());
    EXPECT_FALSE(LMFile::RemoveWithWildcard((dir / "s*").c_str()));
    EXPECT_FALSE(LMFile::RemoveWithWildcard((dir / "nowhere/*").c_str()));
}

TEST(LMFileFolders, CreateTempFileNameReservesAName) {
    TempDir dir;
    LMString a = LMFile::CreateTempFileName((dir / "cache.db").c_str());
    LMString b = LMFile::CreateTempFileName((dir / "cache.db").c_str());
    EXPECT_EQ(LMFile::GetFolderName(a.c_str()), LMString((dir.path() + "/").c_str()));
    EXPECT_EQ(std::string(LMFile::GetFileName(a.c_str()).c_str()).rfind("lmws", 0), 0u);
    EXPECT_TRUE(LMFile::Exist(a.c_str()));
    EXPECT_TRUE(a != b);
    // In a folder that does not exist the template comes back unfilled.
    LMString failed = LMFile::CreateTempFileName((dir / "none/x").c_str());
    EXPECT_STREQ(LMFile::GetFileName(failed.c_str()).c_str(), "lmwsXXXXXX");
}

TEST(LMFileDeathTest, NullArgumentsAndPatternsWithoutWildcardsAbort) {
    const char* null = nullptr;
    LMFile f;
    EXPECT_DEATH(f.Open(null, "r"), "filename != 0");
    EXPECT_DEATH(f.Open("x", null), "mode != 0");
    void* noBuffer = nullptr;
    EXPECT_DEATH(f.Read(noBuffer, 1), "buffer != 0");
    EXPECT_DEATH(LMFile::Rename("a", null), "newname != 0");
    EXPECT_DEATH(LMFile::GetFolderName(null), "path != 0");
    EXPECT_DEATH(
        LMFile::RemoveWithWildcard("/tmp/plain"),
        "\\(strchr\\(filename, '\\?'\\) != 0\\) \\|\\| \\(strchr\\(filename, '\\*'\\) != 0\\)");
}

}  // namespace
