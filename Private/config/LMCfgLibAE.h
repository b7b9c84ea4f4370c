// LMCfgLibAE: the movie's access to the device's two small XML files ("com.kestrel.LMCfgLib",
// seen by movies as `new LMCfgLib()`).
//
// The configuration file holds the credentials the device ships with, the settings file what the
// movie stores (preferences, the protected AuthToken, the device's DestinationUniqueID). Reads
// look in the settings file first and fall back to the configuration file; writes go to the
// settings file only. The class also moves an older edition's settings file to the current
// edition's folder and, when the configuration file carries a newer "XMLVersion", reduces the
// settings file to the values that survive an upgrade.
//
// Every method gives the movie a value: a boolean for init, setFile, write, selectEnv and
// clearEnv, the value text for read, and false for a call with the wrong number of arguments.
// Methods log on area "LM_WSCFGAE", each traced as "LMCfgLibAE::<method>".
#ifndef LM_CFGLIBAE_H
#define LM_CFGLIBAE_H

#include "LMString.h"
#include "ae/ASExtensionClass.h"

class LMCfgLibAE : public ae::stagecraft::ASExtensionClass {
public:
    typedef AEArray<ae::stagecraft::ASValue*> Args;

    static const char* const kClassID;  // "com.kestrel.LMCfgLib"

    // Script methods, in table order.
    //   init(credentialsVariable, preferenceVariable): the NAMES of two environment variables
    //       holding the file paths; an unset or empty one gives "./kecredentials.xml" or
    //       "./kepreference.xml".
    //   setFile(configurationFile, settingsFile[, oldSettingsFile, oldCachePath]): empty paths
    //       keep the current ones; the four-argument form migrates an older edition's files.
    //   read(key, protected): the value text, "" when not found.
    //   write(key, value, protected): stores the value in the settings file.
    //   selectEnv(environment): 0 staging API, 1 staging, 2 production put the environment's
    //       label in front of the settings file's name; 3 goes back to the plain name.
    //   clearEnv(): the same as selectEnv(3).
    void init(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
              ae::stagecraft::ASResult& result);
    void setFile(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
                 ae::stagecraft::ASResult& result);
    void read(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
              ae::stagecraft::ASResult& result);
    void write(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
               ae::stagecraft::ASResult& result);
    void selectEnv(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
                   ae::stagecraft::ASResult& result);
    void clearEnv(ae::stagecraft::ASContext& context, ae::stagecraft::ASObject& self, Args& args,
                  ae::stagecraft::ASResult& result);

    const LMString& ConfigurationFile() const { return m_ConfigurationFile; }
    const LMString& SettingsFile() const { return m_SettingsFile; }
    const LMString& ActiveSettingsFile() const { return m_ActiveSettingsFile; }

    // The settings path with its parent folder's name replaced by "1_00"
    // ("/data/app/2_00/kepreference.xml" gives "/data/app/1_00/kepreference.xml"); empty when
    // the path has fewer than two "/" and so no parent folder to rename.
    static LMString CurrentEditionPath(const LMString& settingsFile);
    // A version text is empty, or digits and "." with no two "." in a row.
    static bool IsValidVersion(const LMString& version);

private:
    // Reduces the settings file to "XMLVersion", "AuthToken" and "DestinationUniqueID" when the
    // configuration file's "XMLVersion" is newer.
    void checkXMLupgrade();
    // Moves an older edition's settings file; false when a step failed.
    bool Migrate(const LMString& oldSettingsFile, const LMString& oldCachePath);
    // Resets the settings path (environment 3) or labels it (0 to 2), then upgrades.
    void SelectEnvironment(int environment);

    LMString m_ConfigurationFile;
    LMString m_SettingsFile;
    LMString m_ActiveSettingsFile;
};

// The class as the runtime registers it.
ae::stagecraft::ASExtensionClassDescriptor& LMCfgLibAEDescriptor();

#endif  // LM_CFGLIBAE_H
