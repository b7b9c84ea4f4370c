#include "CfgXMLFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "EVPCipher.h"
#include "TempDir.h"

namespace {

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void Put(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string Hex(const LMString& bytes) {
    std::string out;
    char two[3];
    for (uint32_t i = 0; i < bytes.length(); ++i) {
        snprintf(two, sizeof(two), "%02x", static_cast<unsigned char>(bytes[i]));
        out += two;
    }
    return out;
}

// The code and value of one read.
struct Got {
    int code;
    std::string value;
};

Got ReadFrom(const std::string& path, const char* name, bool isProtected = false) {
    LMString value("stale");
    int code = CfgXMLFile(path.c_str()).Read(name, value, isProtected);
    return {code, value.c_str()};
}

const char kItems[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<LMWSLib xmlns:LM1=\"http://www.lumora.example/api/\">"
    "<LM1:Configuration><LM1:Value>no key</LM1:Value></LM1:Configuration>"
    "<LM1:Configuration Key=\"a\"><LM1:Value>1</LM1:Value></LM1:Configuration>"
    "<LM1:Configuration Key=\"empty\"></LM1:Configuration>"
    "<LM1:Configuration Key=\"a\"><LM1:Value>second</LM1:Value></LM1:Configuration>"
    "</LMWSLib>";

TEST(CfgXMLFile, ReadCodesFollowTheFileAndTheName) {
    TempDir dir;
    const std::string file = dir / "settings.xml";
    EXPECT_EQ(ReadFrom(file, "a").code, 2);        // missing
    EXPECT_EQ(ReadFrom(dir.path(), "a").code, 2);  // a folder opens, but is not read whole
    Put(file, "");
    EXPECT_EQ(ReadFrom(file, "a").code, 3);
    Put(file, "not xml at all \x01\xff");
    EXPECT_EQ(ReadFrom(file, "a").code, 3);
    Put(file, "<?xml version=\"1.0\"?><Other><a/></Other>");
    EXPECT_EQ(ReadFrom(file, "a").code, 3);
    Put(file, "<LMWSLib xmlns:LM1=\"http://www.lumora.example/api/\"></LMWSLib>");
    EXPECT_EQ(ReadFrom(file, "a").code, 3);  // no items

    Put(file, kItems);
    EXPECT_EQ(ReadFrom(file, "").code, 1);
    Got first = ReadFrom(file, "a");
    EXPECT_EQ(first.code, 0);
    EXPECT_EQ(first.value, "1");  // the first item of a name wins
    Got empty = ReadFrom(file, "empty");
    EXPECT_EQ(empty.code, 0);
    EXPECT_EQ(empty.value, "");         // no Value element
    Got missing = ReadFrom(file, "A");  // names compare byte for byte
    EXPECT_EQ(missing.code, 3);
    EXPECT_EQ(missing.value, "");
    EXPECT_EQ(ReadFrom(file, "no key").code, 3);

    // No file named: a caller's mistake, distinct from every file's answer.
    LMString value;
    EXPECT_EQ(CfgXMLFile("").Read("a", value, false), CfgXMLFile::kNoFile);
    EXPECT_TRUE(CfgXMLFile::Found(0));
    EXPECT_FALSE(CfgXMLFile::Found(3));
}

TEST(CfgXMLFile, WriteReplacesInPlaceKeepsOrderAndMode0600) {
    TempDir dir;
    const std::string file = dir / "settings.xml";
    Put(file, kItems);
    CfgXMLFile settings(file.c_str());
    ASSERT_EQ(settings.Write("a", "new", false), 0);
    ASSERT_EQ(settings.Write("b", "appended", false), 0);
    const std::string text = Slurp(file);
    // The key-less item stays first, "a" stays before "empty", its duplicate is gone.
    size_t keyless = text.find("no key");
    size_t a = text.find("Key=\"a\"");
    size_t empty = text.find("Key=\"empty\"");
    size_t b = text.find("Key=\"b\"");
    EXPECT_TRUE(keyless < a && a < empty && empty < b) << text;
    EXPECT_EQ(text.find("Key=\"a\"", a + 1), std::string::npos) << text;
    EXPECT_EQ(text.find("second"), std::string::npos) << text;
    EXPECT_EQ(ReadFrom(file, "a").value, "new");

    struct stat info;
    ASSERT_EQ(stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    // A foreign file is replaced; one we cannot read (here a folder) is left alone.
    Put(file, "garbage");
    EXPECT_EQ(settings.Write("c", "3", false), 0);
    EXPECT_EQ(ReadFrom(file, "c").value, "3");
    EXPECT_EQ(CfgXMLFile(dir.path().c_str()).Write("c", "3", false), CfgXMLFile::kUnreadable);

    // Texts the file cannot carry are refused, and the file is kept.
    EXPECT_EQ(settings.Write(LMString("k\0x", 3), "v", false), CfgXMLFile::kWriteFailed);
    EXPECT_EQ(settings.Write("k", LMString("v\0x", 3), true), CfgXMLFile::kWriteFailed);
    EXPECT_EQ(settings.Write("", "v", false), 1);
    EXPECT_EQ(ReadFrom(file, "c").value, "3");

    ASSERT_EQ(settings.RemoveAll(), 0);
    EXPECT_EQ(ReadFrom(file, "c").code, 3);
}

TEST(CfgXMLFile, ProtectedValuesRoundTripAndRefuseTampering) {
    TempDir dir;
    const std::string file = dir / "settings.xml";
    CfgXMLFile settings(file.c_str());
    const std::string secret = "token-\xC3\xA9-<&>";
    ASSERT_EQ(settings.Write("AuthToken", secret.c_str(), true), 0);
    const std::string text = Slurp(file);
    EXPECT_EQ(text.find("token-"), std::string::npos) << text;

    Got plain = ReadFrom(file, "AuthToken", true);
    EXPECT_EQ(plain.code, 0);
    EXPECT_EQ(plain.value, secret);
    std::string stored = ReadFrom(file, "AuthToken", false).value;
    EXPECT_NE(stored, secret);

    // Any AES implementation reads it: decode the key and cipher text and ask openssl.
    EVPCipher cipher;
    LMString key;
    LMString symbols;
    ASSERT_EQ(cipher.SplitProtectedValue(stored.c_str(), key, symbols), 0);
    ASSERT_TRUE(cipher.SetKey(key));
    LMString bytes;
    ASSERT_TRUE(EVPCipher::DecodeSymbols(symbols, bytes));
    const std::string in = dir / "cipher.bin";
    Put(in, std::string(bytes.c_str(), bytes.length()));
    std::string cmd = "openssl enc -d -aes-128-cbc -K " + Hex(cipher.KeyBytes()) + " -iv " +
                      Hex(cipher.IVBytes()) + " -in " + in + " 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    ASSERT_NE(p, nullptr);
    char out[256] = {0};
    size_t n = fread(out, 1, sizeof(out) - 1, p);
    EXPECT_EQ(pclose(p), 0) << out;
    EXPECT_EQ(std::string(out, n), secret);

    // A changed check digit: the check fails, the value reads as empty with the check's code.
    std::string tampered = stored;
    tampered.back() = tampered.back() == '0' ? '1' : '0';
    ASSERT_EQ(settings.Write("AuthToken", tampered.c_str(), false), 0);
    Got bad = ReadFrom(file, "AuthToken", true);
    EXPECT_EQ(bad.code, CfgXMLFile::kBadProtectedValue);
    EXPECT_EQ(bad.value, "");
    // A plain value read as protected is refused the same way; an empty one is just empty.
    ASSERT_EQ(settings.Write("Plain", "hello", false), 0);
    EXPECT_EQ(ReadFrom(file, "Plain", true).code, CfgXMLFile::kBadProtectedValue);
    ASSERT_EQ(settings.Write("Empty", "", true), 0);
    EXPECT_EQ(ReadFrom(file, "Empty", true).code, 0);
}

TEST(CfgXMLFile, CrashBeforeTheRenameLeavesTheOldFileWhole) {
    TempDir dir;
    const std::string file = dir / "settings.xml";
    CfgXMLFile settings(file.c_str());
    ASSERT_EQ(settings.Write("AuthToken", "old", true), 0);
    const std::string before = Slurp(file);

    // The process dies once the new content is on disk under its temporary name.
    EXPECT_EXIT(
        {
            CfgXMLFile::SetBeforeRenameHook([](const char*) { _exit(7); });
            settings.Write("AuthToken", "new", true);
        },
        ::testing::ExitedWithCode(7), "");
    EXPECT_EQ(Slurp(file), before);
    EXPECT_EQ(ReadFrom(file, "AuthToken", true).value, "old");

    // A rename that fails leaves no temporary file behind.
    const std::string nowhere = dir / "missing-folder/settings.xml";
    EXPECT_FALSE(CfgXMLFile::ReplaceFile(nowhere.c_str(), "x", 1));
    EXPECT_EQ(CfgXMLFile(nowhere.c_str()).Write("a", "b", false), CfgXMLFile::kWriteFailed);
    ASSERT_EQ(mkdir((dir / "taken").c_str(), 0700), 0);
    EXPECT_FALSE(CfgXMLFile::ReplaceFile((dir / "taken").c_str(), "x", 1));
    std::string listing = dir / "listing";
    ASSERT_EQ(system(("ls -A '" + dir.path() + "' > '" + listing + "'").c_str()), 0);
    // The crashed child's temporary file is the only one.
    EXPECT_EQ(Slurp(listing).find(".taken."), std::string::npos) << Slurp(listing);
}

TEST(CfgXMLFile, FilesThatAreNotOursGiveCodesNotCrashes) {
    TempDir dir;
    const std::string file = dir / "settings.xml";
    // Over the size limit, even when the document would be well-formed.
    std::string huge = kItems;
    huge.insert(huge.find("<LM1:"), std::string(CfgXMLFile::kMaxFileSize, ' '));
    Put(file, huge);
    EXPECT_EQ(ReadFrom(file, "a").code, 3);

    // Deep nesting where the document has a value, and where it has an item.
    std::string open;
    std::string close;
    for (int i = 0; i < 20000; ++i) {
        open += "<LM1:Configuration Key=\"a\">";
        close += "</LM1:Configuration>";
    }
    const std::string root = "<LMWSLib xmlns:LM1=\"http://www.lumora.example/api/\">";
    Put(file, root + "<LM1:Configuration Key=\"a\"><LM1:Value>" + open + close +
                  "</LM1:Value></LM1:Configuration></LMWSLib>");
    // Markup inside a value is the value's text (the toolkit reads it without recursing).
    Got inValue = ReadFrom(file, "a");
    EXPECT_EQ(inValue.code, 0);
    EXPECT_EQ(inValue.value.compare(0, 18, "<LM1:Configuration"), 0);
    Put(file, root + open + close + "</LMWSLib>");
    Got inItem = ReadFrom(file, "a");
    EXPECT_EQ(inItem.code, 3);

    std::string many = "<LMWSLib xmlns:LM1=\"http://www.lumora.example/api/\">";
    for (int i = 0; i < 5000; ++i) {
        many += "<LM1:Configuration Key=\"k\"/>";
        if (i == 100) {
            Put(file, many + "</LMWSLib>");
            EXPECT_EQ(ReadFrom(file, "k").code, 0);
        }
    }
    Put(file, many + "</LMWSLib>");
    EXPECT_EQ(ReadFrom(file, "k").code, 3);

    Put(file, std::string("<LMWSLib>\0\0\0</LMWSLib>", 22));
    EXPECT_EQ(ReadFrom(file, "a").code, 3);

    // What would not fit is never written.
    CfgXMLFile settings(file.c_str());
    ASSERT_EQ(settings.Write("a", "kept", false), 0);
    EXPECT_EQ(settings.Write("b", std::string(CfgXMLFile::kMaxFileSize, 'x').c_str(), false),
              CfgXMLFile::kWriteFailed);
    EXPECT_EQ(ReadFrom(file, "a").value, "kept");
}

}  // namespace
