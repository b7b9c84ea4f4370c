// 1,000 calls on one instance, two methods in turn, each started from the previous one's
// completion; answers after the first two come from the cache (flashvars.cache). Traces the
// count and the time taken, then ends with lmstageQuit(0), or 3 on any failure.
var ws = new LMWSLib();
var calls = 0;
var failures = 0;
var started = 0;
var kCalls = 1000;

function check(what, ok) {
    if (!ok) {
        failures++;
        trace("FAIL " + what);
    }
}

function next() {
    if (calls === kCalls) {
        trace("calls " + calls + " in " + (new Date().getTime() - started) + " ms, failures " +
              failures);
        lmstageQuit(failures === 0 ? 0 : 3);
        return;
    }
    var status = calls % 2 === 0 ? ws.getNavigation([onNavigation, {}])
                                 : ws.getTitles([onTitles, {genreid: 12, CurrentPageNumber: 1,
                                                            ItemsPerPage: 5, purchasetype: 2}]);
    check("call " + calls + " started", status === 0);
}

function onNavigation(status, value) {
    check("getNavigation " + calls + " status " + status, status === 0 && value.length > 0);
    calls++;
    next();
}

function onTitles(status, value) {
    check("getTitles " + calls + " status " + status, status === 0 && value.Titles.length === 5);
    calls++;
    next();
}

check("init started", ws.init([function (status) {
    check("init status " + status, status === 0);
    started = new Date().getTime();
    next();
}, {
    APIKey: "api-key", UserName: "user@example", Password: "secret", DestinationTypeID: 7,
    AuthToken: "", DestinationUniqueID: "device 0004", ServiceBaseURL: "", Type: 0,
    CacheType: 2, CacheData: 0, CachePath: flashvars.cache, CacheLimit: 0, ProxyHost: "",
    ProxyUserName: "", ProxyPort: 0, ProxyPassword: "", AccessType: 2,
    ApplicationRevision: "1.0", EnvNum: 2, firmwareVersion: "fw", modelNumber: "model"
}]) === 0);
