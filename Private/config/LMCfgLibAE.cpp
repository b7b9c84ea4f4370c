#include "LMCfgLibAE.h"

#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "CfgXMLFile.h"
#include "LMFile.h"
#include "LMLog.h"
#include "LMUtilities.h"

using ae::stagecraft::ASContext;
using ae::stagecraft::ASExtensionClass;
using ae::stagecraft::ASObject;
using ae::stagecraft::ASResult;
using ae::stagecraft::ASValue;

const char* const LMCfgLibAE::kClassID = "com.kestrel.LMCfgLib";

namespace {

LMLogArea g_CfgArea("LM_WSCFGAE");

const char* const kClassName = "LMCfgLibAE";
const char* const kDefaultConfigurationFile = "./kecredentials.xml";
const char* const kDefaultSettingsFile = "./kepreference.xml";
const char* const kCurrentEditionFolder = "1_00";

const char* const kXMLVersion = "XMLVersion";
const char* const kAuthToken = "AuthToken";
const char* const kDestinationUniqueID = "DestinationUniqueID";

// Environment labels put in front of the settings file's name, by environment number.
const char* const kEnvironmentLabels[] = {"stgapi", "stg", "production"};
const int kDefaultEnvironment = 3;

int Area() {
    return g_CfgArea.Id();
}

const char* Done(bool ok) {
    return ok ? "Successfully" : "Failed to";
}

const char* Existence(bool exists) {
    return exists ? "existed" : "doesn't exist";
}

// Gives the movie `value` (released here) and the status 0.
void Give(ASResult& result, ASValue* value) {
    if (value != nullptr) {
        result.SetValue(*value);
    }
    result.SetStatus(0);
    if (value != nullptr) {
        value->Release();
    }
}

void GiveBoolean(ASContext& context, ASResult& result, bool ok) {
    Give(result, context.NewBoolean(ok));
}

// Argument `index` as text; false when the script's conversion throws.
bool ArgText(LMCfgLibAE::Args& args, uint32_t index, LMString& text) {
    AEString converted;
    if (!args[index]->ToString(converted)) {
        return false;
    }
    text.assign(converted.c_str(), converted.length());
    return true;
}

LMString FromEnvironment(const LMString& variable, const char* fallback, const char* message) {
    const char* value = std::getenv(variable.c_str());
    if (value == nullptr || *value == '\0') {
        LM_LogOutput(Area(), LM_LOG_TRACE, message, variable.c_str());
        return LMString(fallback);
    }
    return LMString(value);
}

// ---- Emptying the old edition's cache folder ----

int RemoveEntry(const char* path, const struct stat*, int, struct FTW* walk) {
    if (walk->level == 0) {
        return 0;  // the folder itself stays
    }
    return ::remove(path) == 0 ? 0 : -1;
}

LMString RealPath(const char* path) {
    char resolved[PATH_MAX];
    return ::realpath(path, resolved) != nullptr ? LMString(resolved) : LMString();
}

// True when `inner` (a resolved path) is `outer` or lies inside it.
bool Inside(const LMString& inner, const LMString& outer) {
    if (inner.empty() || outer.empty()) {
        return false;
    }
    if (inner == outer) {
        return true;
    }
    LMString prefix = outer == "/" ? outer : outer + "/";
    return inner.length() > prefix.length() &&
           std::memcmp(inner.c_str(), prefix.c_str(), prefix.length()) == 0;
}

// Empties `cachePath` (files and folders, symbolic links removed, never followed). Refuses a
// path that is empty, the root, the current folder, not a folder, or one that holds one of the
// settings files in `keep`.
bool ClearCacheFolder(const LMString& cachePath, const LMString* keep, int keepCount) {
    if (cachePath.empty() || cachePath == "/" || cachePath == ".") {
        return false;
    }
    struct stat info;
    if (::lstat(cachePath.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
        return false;
    }
    LMString resolved = RealPath(cachePath.c_str());
    char here[PATH_MAX];
    if (resolved.empty() || resolved == "/" ||
        (::getcwd(here, sizeof(here)) != nullptr && resolved == here)) {
        return false;
    }
    for (int i = 0; i < keepCount; ++i) {
        const char* slash = std::strrchr(keep[i].c_str(), '/');
        LMString folder = slash != nullptr ? LMString(keep[i].c_str(), slash - keep[i].c_str() + 1)
                                           : LMString(".");
        if (Inside(RealPath(folder.c_str()), resolved)) {
            return false;
        }
    }
    return ::nftw(cachePath.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS | FTW_MOUNT) == 0;
}

}  // namespace

// ---- Paths and versions ----

LMString LMCfgLibAE::CurrentEditionPath(const LMString& settingsFile) {
    const char* path = settingsFile.c_str();
    const char* last = std::strrchr(path, '/');
    if (last == nullptr) {
        return LMString();
    }
    const char* before = last;
    while (before > path && before[-1] != '/') {
        --before;
    }
    if (before == path) {
        return LMString();  // one "/" only: no parent folder to rename
    }
    return LMString(path, before - path) + kCurrentEditionFolder + last;
}

bool LMCfgLibAE::IsValidVersion(const LMString& version) {
    for (uint32_t i = 0; i < version.length(); ++i) {
        char c = version[i];
        if (c == '.') {
            if (i > 0 && version[i - 1] == '.') {
                return false;
            }
        } else if (c < '0' || c > '9') {
            return false;
        }
    }
    return true;
}

// ---- Script methods ----

void LMCfgLibAE::init(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "init", Area());
    LMString credentialsVariable;
    LMString preferenceVariable;
    if (args.GetCount() != 2 || !ArgText(args, 0, credentialsVariable) ||
        !ArgText(args, 1, preferenceVariable)) {
        return GiveBoolean(context, result, false);
    }
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::init (%s, %s)\n", credentialsVariable.c_str(),
                 preferenceVariable.c_str());
    m_ConfigurationFile = FromEnvironment(
        credentialsVariable, kDefaultConfigurationFile,
        "LMCfgLibAE::init environment variable (%s) is not set! Use \"./kecredentials.xml\".\n");
    m_SettingsFile = FromEnvironment(
        preferenceVariable, kDefaultSettingsFile,
        "LMCfgLibAE::init environment variable (%s) is not set! Use \"./kepreference.xml\"\n");
    m_ActiveSettingsFile = m_SettingsFile;
    checkXMLupgrade();
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE init exit (%s) (%s)\n",
                 m_ConfigurationFile.c_str(), m_SettingsFile.c_str());
    GiveBoolean(context, result, true);
}

void LMCfgLibAE::setFile(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "setFile", Area());
    uint32_t count = args.GetCount();
    if (count != 2 && count != 4) {
        LM_LogOutput(Area(), LM_LOG_ERROR,
                     "LMCfgLibAE::setFile Error:INVALID_PARAMETER, There should be two or four "
                     "input parameters.\n");
        return GiveBoolean(context, result, false);
    }
    LMString texts[4];
    for (uint32_t i = 0; i < count; ++i) {
        if (!ArgText(args, i, texts[i])) {
            return GiveBoolean(context, result, false);
        }
    }
    if (!texts[0].empty()) {
        m_ConfigurationFile = texts[0];
    }
    if (!texts[1].empty()) {
        m_SettingsFile = texts[1];
        m_ActiveSettingsFile = texts[1];
    }
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMCfgLibAE::setFile (ConfigurationFile:%s, SettingsFile:%s)\n",
                 m_ConfigurationFile.c_str(), m_SettingsFile.c_str());
    bool ok = count == 2 || Migrate(texts[2], texts[3]);
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMCfgLibAE::setFile Calling  LMCfgLibAE::checkXMLupgrade \n");
    checkXMLupgrade();
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMCfgLibAE::setFile Returned from  LMCfgLibAE::checkXMLupgrade \n");
    GiveBoolean(context, result, ok);
}

bool LMCfgLibAE::Migrate(const LMString& oldSettingsFile, const LMString& oldCachePath) {
    const LMString current = CurrentEditionPath(m_SettingsFile);
    if (current.empty()) {
        return true;  // nowhere to migrate to
    }
    bool oldExists = !oldSettingsFile.empty() && LMFile::Exist(oldSettingsFile.c_str());
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::setFile BCSettingsFile(%s) %s.\n",
                 oldSettingsFile.c_str(), Existence(oldExists));
    // An old file that already is the settings file, or the current edition's file, stays.
    if (!oldExists || oldSettingsFile == m_SettingsFile || oldSettingsFile == current) {
        return true;
    }
    bool ok = true;
    bool currentExists = LMFile::Exist(current.c_str());
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::setFile USSettingsFile(%s) %s.\n",
                 current.c_str(), Existence(currentExists));
    if (!currentExists) {
        const LMString folder = LMFile::GetFolderName(current.c_str());
        if (!LMFile::FolderExist(folder.c_str())) {
            bool created = LMFile::CreateFolder(folder.c_str());
            LM_LogOutput(Area(), LM_LOG_TRACE,
                         "LMCfgLibAE::setFile %s create USSettingsFile folder(%s).\n",
                         Done(created), folder.c_str());
            ok = ok && created;
        }
        bool copied = CfgXMLFile::CopyFile(oldSettingsFile.c_str(), current.c_str());
        LM_LogOutput(Area(), LM_LOG_TRACE,
                     "LMCfgLibAE::setFile %s copy BCSettingsFile(%s) to USSettingsFile(%s).\n",
                     Done(copied), oldSettingsFile.c_str(), current.c_str());
        ok = ok && copied;
    }
    // The old file goes only once its content is safe in the new place: when the copy failed it
    // stays (reported as not removed), so a failed migration never loses the settings.
    bool removed = ok && LMFile::Remove(oldSettingsFile.c_str());
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::setFile %s remove BCSettingsFile(%s).\n",
                 Done(removed), oldSettingsFile.c_str());
    const LMString keep[] = {m_SettingsFile, current, m_ConfigurationFile};
    bool cleared = ClearCacheFolder(oldCachePath, keep, 3);
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::setFile %s clear BCCachePath(%s).\n",
                 Done(cleared), oldCachePath.c_str());
    return ok && removed && cleared;
}

void LMCfgLibAE::read(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "read", Area());
    LMString key;
    if (args.GetCount() != 2 || !ArgText(args, 0, key)) {
        return GiveBoolean(context, result, false);
    }
    bool isProtected = args[1]->ToBoolean();
    LMString value;
    int code = CfgXMLFile(m_SettingsFile).Read(key, value, isProtected);
    if (code != CfgXMLFile::kOK && code != CfgXMLFile::kNoFile) {
        code = CfgXMLFile(m_ConfigurationFile).Read(key, value, isProtected);
    }
    // A device without an id gets one, kept in the settings file from now on.
    if (code != CfgXMLFile::kNoFile && value.empty() && key == kDestinationUniqueID) {
        value = LMUtilities::GenerateUniqueID();
        if (!value.empty()) {
            CfgXMLFile(m_SettingsFile).Write(key, value, false);
        }
    }
    Give(result, context.NewString(value.c_str(), value.length()));
}

void LMCfgLibAE::write(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "write", Area());
    LMString key;
    LMString value;
    if (args.GetCount() != 3 || !ArgText(args, 0, key) || !ArgText(args, 1, value)) {
        return GiveBoolean(context, result, false);
    }
    bool isProtected = args[2]->ToBoolean();
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::write (%s, %s, %s)\n", key.c_str(),
                 value.c_str(), isProtected ? "true" : "false");
    int code = CfgXMLFile(m_SettingsFile).Write(key, value, isProtected);
    GiveBoolean(context, result, code == CfgXMLFile::kOK);
}

void LMCfgLibAE::selectEnv(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "selectEnv", Area());
    if (args.GetCount() != 1) {
        return GiveBoolean(context, result, false);
    }
    double number = args[0]->ToNumber();
    // Only the four environment numbers themselves (NaN fails both tests).
    if (!(number >= 0 && number <= kDefaultEnvironment) || number != static_cast<int>(number)) {
        return GiveBoolean(context, result, false);
    }
    SelectEnvironment(static_cast<int>(number));
    GiveBoolean(context, result, true);
}

void LMCfgLibAE::clearEnv(ASContext& context, ASObject&, Args& args, ASResult& result) {
    LM_LogScope scope(kClassName, "clearEnv", Area());
    if (args.GetCount() != 0) {
        return GiveBoolean(context, result, false);
    }
    SelectEnvironment(kDefaultEnvironment);
    GiveBoolean(context, result, true);
}

void LMCfgLibAE::SelectEnvironment(int environment) {
    if (environment == kDefaultEnvironment) {
        m_SettingsFile = m_ActiveSettingsFile;
    } else {
        const char* label = kEnvironmentLabels[environment];
        const char* active = m_ActiveSettingsFile.c_str();
        const char* slash = std::strrchr(active, '/');
        if (m_ActiveSettingsFile.empty()) {
            m_SettingsFile = LMString("./") + label;
        } else if (slash == nullptr) {
            m_SettingsFile = LMString("./") + label + m_ActiveSettingsFile;
        } else {
            m_SettingsFile = LMString(active, slash - active + 1) + label + (slash + 1);
        }
    }
    checkXMLupgrade();
    LM_LogOutput(Area(), LM_LOG_TRACE, "LMCfgLibAE::selectEnv m_SettingsFile = %s\n",
                 m_SettingsFile.c_str());
}

void LMCfgLibAE::checkXMLupgrade() {
    LM_LogScope scope(kClassName, "checkXMLupgrade", Area());
    const CfgXMLFile settings(m_SettingsFile);
    const CfgXMLFile configuration(m_ConfigurationFile);
    LMString settingsVersion;
    LMString configurationVersion;
    bool settingsHas = CfgXMLFile::Found(settings.Read(kXMLVersion, settingsVersion, false));
    bool configurationHas =
        CfgXMLFile::Found(configuration.Read(kXMLVersion, configurationVersion, false));
    for (const LMString* version : {&settingsVersion, &configurationVersion}) {
        if (!IsValidVersion(*version)) {
            LM_LogOutput(Area(), LM_LOG_TRACE,
                         "LMCfgLibAE checkXMLupgrade  XMLVersion is invalid value. (%s)\n",
                         version->c_str());
            return;
        }
    }
    // Plain byte comparison, as the versions have always been compared: "10.0" is older than
    // "9.0". The configuration file ships with the firmware, so its version only grows.
    bool newer = configurationHas && (!settingsHas || std::strcmp(configurationVersion.c_str(),
                                                                  settingsVersion.c_str()) > 0);
    if (!newer) {
        return;
    }
    // Only the token and the device id survive; everything is written in one step, so a power
    // cut leaves either the old file or the upgraded one.
    std::vector<CfgXMLFile::Entry> kept;
    kept.push_back({kXMLVersion, configurationVersion, false});
    LMString token;
    if (CfgXMLFile::Found(settings.Read(kAuthToken, token, true))) {
        kept.push_back({kAuthToken, token, true});
    }
    LMString id;
    settings.Read(kDestinationUniqueID, id, false);
    if (id.empty()) {
        id = LMUtilities::GenerateUniqueID();
    }
    kept.push_back({kDestinationUniqueID, id, false});
    if (settings.WriteAll(kept) != CfgXMLFile::kOK) {
        LM_LogOutput(Area(), LM_LOG_ERROR,
                     "LMCfgLibAE::checkXMLupgrade Failed to update SettingsFile(%s).\n",
                     m_SettingsFile.c_str());
        return;
    }
    LM_LogOutput(Area(), LM_LOG_TRACE,
                 "LMCfgLibAE::checkXMLupgrade Updated SettingsFile(Only keep AuthToken, "
                 "DestinationUniqueID and added a new tag XMLVersion).\n");
}

// ---- Registration ----

namespace {

class Descriptor : public ae::stagecraft::ASExtensionClassDescriptor {
public:
    const char* GetClassName() override { return LMCfgLibAE::kClassID; }
    void GetMethods(AEArray<ASExtensionClass::Method>& methods) override {
        using ae::stagecraft::AEHandler;
        const ASExtensionClass::Method table[] = {
            {"init", 0, AEHandler(&LMCfgLibAE::init)},
            {"setFile", 0, AEHandler(&LMCfgLibAE::setFile)},
            {"read", 0, AEHandler(&LMCfgLibAE::read)},
            {"write", 0, AEHandler(&LMCfgLibAE::write)},
            {"selectEnv", 0, AEHandler(&LMCfgLibAE::selectEnv)},
            {"clearEnv", 0, AEHandler(&LMCfgLibAE::clearEnv)},
        };
        for (const ASExtensionClass::Method& method : table) {
            methods.Append(method);
        }
    }
    bool FiresEvents() override { return false; }
    ASExtensionClass* ConstructInstance(ASContext&) override { return AE_NEW LMCfgLibAE(); }
    void DestructInstance(ASExtensionClass* instance) override { AE_DELETE(instance); }
};

}  // namespace

ae::stagecraft::ASExtensionClassDescriptor& LMCfgLibAEDescriptor() {
    static Descriptor descriptor;
    return descriptor;
}
