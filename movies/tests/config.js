// The configuration class end to end, in two runs over the same files (tests/e2e):
//   mode=write  names the files with setFile, stores the token protected and a preference;
//   mode=check  names them through init's environment variables, after the configuration file
//               moved to a newer XMLVersion: the token and the device id survive, the rest goes.
// Ends with lmstageQuit(0) when every check held, 3 otherwise.
var failures = 0;

function expect(what, got, wanted) {
    if (got !== wanted) {
        trace("FAIL " + what + ": got '" + got + "', wanted '" + wanted + "'");
        failures++;
    }
}

var cfg = new LMCfgLib();
if (flashvars.mode === "write") {
    expect("setFile", cfg.setFile(flashvars.configurationFile, flashvars.settingsFile), true);
    expect("write token", cfg.write("AuthToken", flashvars.token, true), true);
    expect("write volume", cfg.write("Volume", "7", false), true);
    expect("token", cfg.read("AuthToken", true), flashvars.token);
    expect("volume", cfg.read("Volume", false), "7");
    expect("read without its flag", cfg.read("AuthToken"), false);
} else {
    expect("init", cfg.init("LMCFG_E2E_CREDENTIALS", "LMCFG_E2E_PREFERENCES"), true);
    expect("token", cfg.read("AuthToken", true), flashvars.token);
    expect("volume dropped", cfg.read("Volume", false), "");
    expect("version", cfg.read("XMLVersion", false), "2.0");
}
var id = cfg.read("DestinationUniqueID", false);
expect("device id length", id.length, 36);
trace("device id " + id);
trace("config " + flashvars.mode + " done, failures " + failures);
lmstageQuit(failures === 0 ? 0 : 3);
