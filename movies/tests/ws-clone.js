// Two clients from one set-up: clone, the system information page and clearing the cache.
// flashvars.cache names the cache folder. Every failure is traced as "FAIL"; the movie ends with
// lmstageQuit(0) when all went well, 3 otherwise.
var a = new LMWSLib();
var b = new LMWSLib();
var failures = 0;

function check(what, ok) {
    if (!ok) {
        failures++;
        trace("FAIL " + what);
    }
}

function keys(object) {
    var names = [];
    for (var name in object) {
        names.push(name);
    }
    return names.join(",");
}

function ignored() {
}

var settings = {
    APIKey: "api-key", UserName: "user@example", Password: "secret", DestinationTypeID: 7,
    AuthToken: "", DestinationUniqueID: "device 0002", ServiceBaseURL: "", Type: 0,
    CacheType: 2, CacheData: 7, CachePath: flashvars.cache, CacheLimit: 0, ProxyHost: "",
    ProxyUserName: "", ProxyPort: 0, ProxyPassword: "", AccessType: 2,
    ApplicationRevision: "1.0", EnvNum: 2, firmwareVersion: "fw", modelNumber: "model"
};

var kSysInfo = "ServiceBaseURL,EnvNum,AccessType,UserAgent,CachePath,CacheType,CacheData," +
    "CacheLimit,LocalIPAddr,ApplicationRevision,FirmwareVersion,ModelNumber";

// No usable source before init, or when the argument is not another instance.
check("clone of an instance not initialised gives -5", b.clone(a) === -5);
check("clone() gives -5", b.clone() === -5);
check("clone({}) gives -5", b.clone({}) === -5);
check("clone of the constructor gives -5", b.clone(LMWSLib) === -5);
check("clone of an object inheriting from an instance gives -5", b.clone(Object.create(a)) === -5);
check("getSysInfo before init gives -1", b.getSysInfo() === -1);

var answers = 0;

function bothAnswered() {
    var info = b.getSysInfo();
    check("the clone's client is set up now", info.ServiceBaseURL !== "" && info.UserAgent !== "");
    check("clearLocalCache() gives -3", LMWSLib.clearLocalCache() === -3);
    check("clearLocalCache(5) gives -3", LMWSLib.clearLocalCache(5) === -3);
    var removed = LMWSLib.clearLocalCache(flashvars.cache);
    trace("removed " + removed);
    check("the database is removed", removed >= 1);
    check("nothing left to remove", LMWSLib.clearLocalCache(flashvars.cache) === 0);
    trace("clone done, failures " + failures);
    lmstageQuit(failures === 0 ? 0 : 3);
}

function onNavigation(status, value) {
    check("clone's getNavigation status " + status, status === 0);
    check("genres", value.length > 0);
    if (++answers === 2) {
        bothAnswered();
    }
}

function onCountry(status, value) {
    check("getCountryID status " + status, status === 0);
    check("country", typeof value === "number");
    if (++answers === 2) {
        bothAnswered();
    }
}

function onInit(status) {
    check("init status " + status, status === 0);
    check("clone of itself gives -5", a.clone(a) === -5);
    check("clone gives 0", b.clone(a) === 0);
    check("a clone is initialised: init gives -4", b.init([ignored, settings]) === -4);
    var info = b.getSysInfo();
    check("sys info keys " + keys(info), keys(info) === kSysInfo);
    check("before its first call the clone answers from the copied set-up",
          info.ServiceBaseURL === "" && info.EnvNum === 2 && info.CacheType === 2 &&
          info.ModelNumber === "model" && info.FirmwareVersion === "fw");
    info = a.getSysInfo();
    check("the source's sys info", info.EnvNum === 2 && info.AccessType === 2 &&
          info.ServiceBaseURL.indexOf("https://") === 0 &&
          info.CachePath.indexOf(flashvars.cache) === 0 && typeof info.LocalIPAddr === "string");
    // Each instance runs its own call at the same time.
    check("the clone's call started", b.getNavigation([onNavigation, {}]) === 0);
    check("the source's call started", a.getCountryID([onCountry, {}]) === 0);
    check("clone while the source's call runs gives -5", new LMWSLib().clone(a) === -5);
}

check("init started", a.init([onInit, settings]) === 0);
