#include "LMCfgLibAE.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "CfgXMLFile.h"
#include "FakeStage.h"
#include "LMLog.h"
#include "TempDir.h"

namespace {

using fake::Value;
typedef void (LMCfgLibAE::*Handler)(ae::stagecraft::ASContext&, ae::stagecraft::ASObject&,
                                    LMCfgLibAE::Args&, ae::stagecraft::ASResult&);

Value* S(const std::string& text) {
    return Value::String(text);
}
Value* N(double number) {
    return Value::Number(number);
}
Value* B(bool flag) {
    return Value::Boolean(flag);
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool Exists(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

void Set(const std::string& file, const char* name, const char* value, bool isProtected = false) {
    ASSERT_EQ(CfgXMLFile(file.c_str()).Write(name, value, isProtected), 0);
}

std::string Get(const std::string& file, const char* name, bool isProtected = false) {
    LMString value;
    int code = CfgXMLFile(file.c_str()).Read(name, value, isProtected);
    return code == 0 ? value.c_str() : "<" + std::to_string(code) + ">";
}

class CfgLibTest : public ::testing::Test {
protected:
    CfgLibTest() {
        LM_Log::GetInstance().RegisterArea("LM_WSCFGAE", m_Area);
        LM_LogSetAreaSeverityMask(m_Area, -1);
        LM_LogSetTarget(&Capture, &m_Lines);
    }
    ~CfgLibTest() override { LM_LogSetTarget(nullptr, nullptr); }

    // The text of each line on the class's area, without the time and area prefix.
    static void Capture(const char* line, unsigned length, void* context) {
        std::string text = length ? std::string(line, length) : std::string(line);
        if (text.find("-LM_WSCFGAE] ") != std::string::npos) {
            static_cast<std::vector<std::string>*>(context)->push_back(
                text.substr(text.find("] ") + 2));
        }
    }

    fake::Result Call(Handler handler, std::initializer_list<Value*> values) {
        return Call(cfg, handler, values);
    }
    fake::Result Call(LMCfgLibAE& on, Handler handler, std::initializer_list<Value*> values) {
        fake::Args args(values);
        fake::Result result;
        (on.*handler)(m_Context, m_Self, args.list, result);
        EXPECT_EQ(result.statusCalls, 1);
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(result.hasValue);
        return result;
    }
    static bool IsTrue(const fake::Result& r) {
        return r.type == ae::stagecraft::kASTypeBoolean && r.number == 1;
    }
    static bool IsFalse(const fake::Result& r) {
        return r.type == ae::stagecraft::kASTypeBoolean && r.number == 0;
    }
    bool Logged(const std::string& text) const {
        return std::find(m_Lines.begin(), m_Lines.end(), text) != m_Lines.end();
    }
    std::string Log() const {
        std::string all;
        for (const std::string& line : m_Lines) {
            all += line;
        }
        return all;
    }

    TempDir dir;
    const std::string cfgFile = dir / "kecredentials.xml";
    const std::string settings = dir / "kepreference.xml";
    LMCfgLibAE cfg;
    int m_Area = -1;
    std::vector<std::string> m_Lines;
    fake::Context m_Context;
    fake::Self m_Self;
};

TEST_F(CfgLibTest, DescriptorRegistersSixInstanceMethodsInOrder) {
    ae::stagecraft::ASExtensionClassDescriptor& d = LMCfgLibAEDescriptor();
    EXPECT_STREQ(d.GetClassName(), "com.kestrel.LMCfgLib");
    EXPECT_FALSE(d.FiresEvents());
    AEArray<ae::stagecraft::ASExtensionClass::Method> methods;
    d.GetMethods(methods);
    const char* const names[] = {"init", "setFile", "read", "write", "selectEnv", "clearEnv"};
    ASSERT_EQ(methods.GetCount(), 6u);
    for (uint32_t i = 0; i < 6; ++i) {
        EXPECT_STREQ(methods[i].name, names[i]);
        EXPECT_EQ(methods[i].isStatic, 0);
    }
    ae::stagecraft::ASExtensionClass* instance = d.ConstructInstance(m_Context);
    ASSERT_NE(instance, nullptr);
    fake::Args args({S("k"), B(false)});
    fake::Result result;
    (instance->*methods[2].handler)(m_Context, m_Self, args.list, result);
    EXPECT_EQ(result.type, ae::stagecraft::kASTypeString);
    d.DestructInstance(instance);
}

TEST_F(CfgLibTest, InitTakesPathsFromTheNamedVariablesOrTheDefaults) {
    setenv("LMCFG_TEST_CRED", cfgFile.c_str(), 1);
    setenv("LMCFG_TEST_PREF", "", 1);
    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::init, {S("LMCFG_TEST_CRED"), S("LMCFG_TEST_PREF")})));
    EXPECT_STREQ(cfg.ConfigurationFile().c_str(), cfgFile.c_str());
    EXPECT_STREQ(cfg.SettingsFile().c_str(), "./kepreference.xml");
    EXPECT_STREQ(cfg.ActiveSettingsFile().c_str(), "./kepreference.xml");
    EXPECT_EQ(m_Lines.front(), "Entering LMCfgLibAE::init\n");
    EXPECT_TRUE(Logged("LMCfgLibAE::init (LMCFG_TEST_CRED, LMCFG_TEST_PREF)\n"));
    EXPECT_TRUE(
        Logged("LMCfgLibAE::init environment variable (LMCFG_TEST_PREF) is not set! Use "
               "\"./kepreference.xml\"\n"));
    EXPECT_TRUE(Logged("LMCfgLibAE init exit (" + cfgFile + ") (./kepreference.xml)\n"));
    EXPECT_EQ(m_Lines.back(), "Exiting LMCfgLibAE::init\n");

    unsetenv("LMCFG_TEST_CRED");
    setenv("LMCFG_TEST_PREF", settings.c_str(), 1);
    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::init, {S("LMCFG_TEST_CRED"), S("LMCFG_TEST_PREF")})));
    EXPECT_STREQ(cfg.ConfigurationFile().c_str(), "./kecredentials.xml");
    EXPECT_STREQ(cfg.SettingsFile().c_str(), settings.c_str());
    EXPECT_TRUE(
        Logged("LMCfgLibAE::init environment variable (LMCFG_TEST_CRED) is not set! Use "
               "\"./kecredentials.xml\".\n"));
    unsetenv("LMCFG_TEST_PREF");
}

TEST_F(CfgLibTest, WrongArgumentCountsGiveFalseAndChangeNothing) {
    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(settings)})));
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::init, {S("A")})));
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::read, {S("k")})));
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::write, {S("k"), S("v")})));
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::selectEnv, {})));
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::clearEnv, {N(1)})));
    EXPECT_FALSE(Exists(settings));

    // The setFile complaint is the one error-severity line.
    LM_LogSetAreaSeverityMask(m_Area, LM_LOG_ERROR);
    m_Lines.clear();
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::setFile, {S("a"), S("b"), S("c")})));
    LM_LogSetAreaSeverityMask(m_Area, -1);
    ASSERT_EQ(m_Lines.size(), 1u) << Log();
    EXPECT_EQ(m_Lines[0],
              "LMCfgLibAE::setFile Error:INVALID_PARAMETER, There should be two or four input "
              "parameters.\n");
    EXPECT_STREQ(cfg.SettingsFile().c_str(), settings.c_str());
}

TEST_F(CfgLibTest, ReadsFallBackToTheConfigurationFileAndWritesGoToSettings) {
    // Before any file is named, a read finds nothing and makes no device id.
    fake::Result early = Call(&LMCfgLibAE::read, {S("DestinationUniqueID"), B(false)});
    EXPECT_EQ(early.type, ae::stagecraft::kASTypeString);
    EXPECT_EQ(early.text, "");
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::write, {S("k"), S("v"), B(false)})));

    Set(cfgFile, "Server", "cfg-server");
    Set(cfgFile, "Shared", "from-config");
    Set(cfgFile, "AuthToken", "cfg-token", true);
    ASSERT_TRUE(IsTrue(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(settings)})));
    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::write, {S("Shared"), S("from-settings"), B(false)})));
    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::write, {S("AuthToken"), S("s3cret"), B(true)})));
    EXPECT_TRUE(Logged("LMCfgLibAE::write (AuthToken, s3cret, true)\n"));
    EXPECT_EQ(Slurp(settings).find("s3cret"), std::string::npos);

    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("AuthToken"), B(true)}).text, "s3cret");
    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("Shared"), B(false)}).text, "from-settings");
    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("Server"), B(false)}).text, "cfg-server");
    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("Nothing"), B(false)}).text, "");

    // A settings value that fails its check is not used: the configuration's value is.
    std::string stored = Get(settings, "AuthToken");
    stored.back() = stored.back() == '0' ? '1' : '0';
    Set(settings, "AuthToken", stored.c_str());
    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("AuthToken"), B(true)}).text, "cfg-token");
    EXPECT_TRUE(Logged("Exiting LMCfgLibAE::read\n"));
}

TEST_F(CfgLibTest, AMissingDeviceIdIsGeneratedOnceAndStoredPlain) {
    ASSERT_TRUE(IsTrue(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(settings)})));
    std::string id = Call(&LMCfgLibAE::read, {S("DestinationUniqueID"), B(true)}).text;
    EXPECT_EQ(id.size(), 36u);
    EXPECT_EQ(Get(settings, "DestinationUniqueID"), id);
    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("DestinationUniqueID"), B(false)}).text, id);

    // An empty one is replaced too; one from the configuration file is used as it is.
    Set(settings, "DestinationUniqueID", "");
    std::string replaced = Call(&LMCfgLibAE::read, {S("DestinationUniqueID"), B(false)}).text;
    EXPECT_EQ(replaced.size(), 36u);
    EXPECT_NE(replaced, id);
    Set(cfgFile, "DestinationUniqueID", "factory-id");
    ASSERT_EQ(CfgXMLFile(settings.c_str()).RemoveAll(), 0);
    EXPECT_EQ(Call(&LMCfgLibAE::read, {S("DestinationUniqueID"), B(false)}).text, "factory-id");
    EXPECT_EQ(Get(settings, "DestinationUniqueID"), "<3>");
}

TEST_F(CfgLibTest, SelectEnvPutsTheLabelBeforeTheFileName) {
    struct Case {
        const char* active;
        int environment;
        const char* expected;
    } cases[] = {
        {"/a/b/kepreference.xml", 0, "/a/b/stgapikepreference.xml"},
        {"/a/b/kepreference.xml", 1, "/a/b/stgkepreference.xml"},
        {"/a/b/kepreference.xml", 2, "/a/b/productionkepreference.xml"},
        {"/a/b/kepreference.xml", 3, "/a/b/kepreference.xml"},
        {"kepreference.xml", 2, "./productionkepreference.xml"},
        {"", 1, "./stg"},
    };
    for (const Case& c : cases) {
        LMCfgLibAE fresh;
        if (*c.active) {
            Call(fresh, &LMCfgLibAE::setFile, {S(""), S(c.active)});
        }
        EXPECT_TRUE(IsTrue(Call(fresh, &LMCfgLibAE::selectEnv, {N(c.environment)})));
        EXPECT_STREQ(fresh.SettingsFile().c_str(), c.expected) << c.active << c.environment;
        EXPECT_STREQ(fresh.ActiveSettingsFile().c_str(), c.active);
        EXPECT_TRUE(
            Logged(std::string("LMCfgLibAE::selectEnv m_SettingsFile = ") + c.expected + "\n"));
    }

    Call(&LMCfgLibAE::setFile, {S(cfgFile), S(settings)});
    Call(&LMCfgLibAE::selectEnv, {N(1)});
    const std::string staging = dir / "stgkepreference.xml";
    for (Value* bad : {N(4), N(-1), N(1.5), S("x")}) {
        EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::selectEnv, {bad})));
        EXPECT_STREQ(cfg.SettingsFile().c_str(), staging.c_str());
    }
    // Values go to the selected environment's file; clearEnv goes back to the plain one.
    Call(&LMCfgLibAE::write, {S("k"), S("staging"), B(false)});
    EXPECT_EQ(Get(staging, "k"), "staging");
    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::clearEnv, {})));
    EXPECT_STREQ(cfg.SettingsFile().c_str(), settings.c_str());
}

TEST_F(CfgLibTest, NewerConfigurationVersionKeepsOnlyTheThreeKeys) {
    Set(cfgFile, "XMLVersion", "2.0");
    Set(settings, "XMLVersion", "1.5");
    Set(settings, "Volume", "7");
    Set(settings, "AuthToken", "tok", true);
    Set(settings, "DestinationUniqueID", "dev-1");
    ASSERT_TRUE(IsTrue(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(settings)})));
    EXPECT_TRUE(Logged("LMCfgLibAE::setFile (ConfigurationFile:" + cfgFile +
                       ", SettingsFile:" + settings + ")\n"));
    EXPECT_TRUE(Logged("LMCfgLibAE::setFile Calling  LMCfgLibAE::checkXMLupgrade \n"));
    EXPECT_TRUE(
        Logged("LMCfgLibAE::checkXMLupgrade Updated SettingsFile(Only keep AuthToken, "
               "DestinationUniqueID and added a new tag XMLVersion).\n"));
    EXPECT_TRUE(Logged("LMCfgLibAE::setFile Returned from  LMCfgLibAE::checkXMLupgrade \n"));
    EXPECT_EQ(Get(settings, "XMLVersion"), "2.0");
    EXPECT_EQ(Get(settings, "AuthToken", true), "tok");
    EXPECT_EQ(Get(settings, "DestinationUniqueID"), "dev-1");
    EXPECT_EQ(Get(settings, "Volume"), "<3>");
    std::string text = Slurp(settings);
    size_t keys = 0;
    for (size_t at = text.find("Key="); at != std::string::npos; at = text.find("Key=", at + 1)) {
        ++keys;
    }
    EXPECT_EQ(keys, 3u) << text;

    // Older or equal configuration versions, or invalid ones, change nothing.
    Set(cfgFile, "XMLVersion", "1.5");
    Set(settings, "Volume", "7");
    const std::string before = Slurp(settings);
    Call(&LMCfgLibAE::setFile, {S(cfgFile), S(settings)});
    for (const char* invalid : {"1..0", "1.a"}) {
        Set(cfgFile, "XMLVersion", invalid);
        Call(&LMCfgLibAE::selectEnv, {N(3)});
        EXPECT_TRUE(
            Logged(std::string("LMCfgLibAE checkXMLupgrade  XMLVersion is invalid value. (") +
                   invalid + ")\n"));
    }
    EXPECT_EQ(Slurp(settings), before);

    // An empty version is valid and older than any other; a missing device id is made.
    Set(cfgFile, "XMLVersion", "2.0");
    ASSERT_EQ(CfgXMLFile(settings.c_str()).RemoveAll(), 0);
    Set(settings, "XMLVersion", "");
    Call(&LMCfgLibAE::selectEnv, {N(3)});
    EXPECT_EQ(Get(settings, "XMLVersion"), "2.0");
    EXPECT_EQ(Get(settings, "AuthToken"), "<3>");
    EXPECT_EQ(Get(settings, "DestinationUniqueID").size(), 36u);
}

TEST_F(CfgLibTest, SetFileMovesTheOldEditionsSettingsIntoThe100Folder) {
    const std::string current = dir / "app/2_00/kepreference.xml";
    const std::string derived = dir / "app/1_00/kepreference.xml";
    const std::string old = dir / "old/kepreference.xml";
    const std::string cache = dir / "oldcache";
    ASSERT_EQ(system(("mkdir -p '" + dir / "old" + "' '" + cache + "/sub' && touch '" + cache +
                      "/a.lm' '" + cache + "/sub/b.jpg'")
                         .c_str()),
              0);
    Set(old, "Old", "1");
    EXPECT_EQ(LMCfgLibAE::CurrentEditionPath(current.c_str()), LMString(derived.c_str()));

    EXPECT_TRUE(IsTrue(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(current), S(old), S(cache)})));
    EXPECT_EQ(Get(derived, "Old"), "1");
    EXPECT_FALSE(Exists(old));
    EXPECT_TRUE(Exists(cache));
    EXPECT_FALSE(Exists(cache + "/a.lm"));
    EXPECT_FALSE(Exists(cache + "/sub"));
    const std::string tag = "LMCfgLibAE::setFile ";
    for (const std::string& line :
         {"BCSettingsFile(" + old + ") existed.\n",
          "USSettingsFile(" + derived + ") doesn't exist.\n",
          "Successfully create USSettingsFile folder(" + dir / "app/1_00/" + ").\n",
          "Successfully copy BCSettingsFile(" + old + ") to USSettingsFile(" + derived + ").\n",
          "Successfully remove BCSettingsFile(" + old + ").\n",
          "Successfully clear BCCachePath(" + cache + ").\n"}) {
        EXPECT_TRUE(Logged(tag + line)) << line << Log();
    }

    // The current edition's file wins over a second old one; a cache folder that holds the
    // settings files, "/" and "." are never emptied.
    Set(old, "Old", "2");
    m_Lines.clear();
    EXPECT_TRUE(
        IsFalse(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(current), S(old), S(dir.path())})));
    EXPECT_EQ(Get(derived, "Old"), "1");
    EXPECT_FALSE(Exists(old));
    EXPECT_TRUE(Logged(tag + "USSettingsFile(" + derived + ") existed.\n")) << Log();
    EXPECT_EQ(Log().find("copy"), std::string::npos) << Log();
    EXPECT_TRUE(Logged(tag + "Failed to clear BCCachePath(" + dir.path() + ").\n")) << Log();
    for (const char* refused : {"/", ".", ""}) {
        Set(old, "Old", "3");
        Call(&LMCfgLibAE::setFile, {S(cfgFile), S(current), S(old), S(refused)});
        EXPECT_TRUE(Logged(tag + "Failed to clear BCCachePath(" + refused + ").\n")) << Log();
    }

    // A settings path without a parent folder to rename migrates nothing.
    Set(old, "Old", "4");
    m_Lines.clear();
    EXPECT_TRUE(
        IsTrue(Call(&LMCfgLibAE::setFile, {S(cfgFile), S("/kepreference.xml"), S(old), S(cache)})));
    EXPECT_EQ(Get(old, "Old"), "4");
    EXPECT_EQ(Log().find("BCSettingsFile"), std::string::npos) << Log();
}

TEST_F(CfgLibTest, AFailedMigrationCopyKeepsTheOldSettings) {
    // The derived folder cannot be made: its parent is a plain file.
    const std::string current = dir / "blocked/2_00/kepreference.xml";
    const std::string old = dir / "old/kepreference.xml";
    ASSERT_EQ(system(("mkdir -p '" + dir / "old" + "' && touch '" + dir / "blocked" + "'").c_str()),
              0);
    Set(old, "AuthToken", "kept");
    EXPECT_TRUE(IsFalse(Call(&LMCfgLibAE::setFile, {S(cfgFile), S(current), S(old), S("")})));
    EXPECT_EQ(Get(old, "AuthToken"), "kept");
    EXPECT_TRUE(Logged("LMCfgLibAE::setFile Failed to remove BCSettingsFile(" + old + ").\n"))
        << Log();
}

}  // namespace
