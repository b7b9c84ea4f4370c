// Pages through a genre with prefetching on: page 1 comes from the service, and while the movie
// is idle the pages around it and their box art are fetched into the cache. Once the test has
// stopped the service (it creates the file flashvars.go), pages 2 to 5 must still come, from the
// cache (up to page flashvars.last, 5 unless given). flashvars.cache names the cache folder. Every failure is traced as "FAIL"; the movie
// ends with lmstageQuit(0) when all went well, 3 otherwise.
var probe = new LMWSLib();
var ws = new LMWSLib();
var failures = 0;
var genre = 12;
var purchaseType = 2;
var pageSize = 0;
var lastPage = flashvars.last ? parseInt(flashvars.last, 10) : 5;

function check(what, ok) {
    if (!ok) {
        failures++;
        trace("FAIL " + what);
    }
}

function finish() {
    trace("prefetch done, failures " + failures);
    lmstageQuit(failures === 0 ? 0 : 3);
}

function settings(cacheType) {
    return {
        APIKey: "api-key", UserName: "user@example", Password: "secret", DestinationTypeID: 7,
        AuthToken: "", DestinationUniqueID: "device 0003", ServiceBaseURL: "", Type: 0,
        CacheType: cacheType, CacheData: 3, CachePath: flashvars.cache, CacheLimit: 0,
        ProxyHost: "", ProxyUserName: "", ProxyPort: 0, ProxyPassword: "", AccessType: 2,
        ApplicationRevision: "1.0", EnvNum: 2, firmwareVersion: "fw", modelNumber: "model"
    };
}

function titles(instance, page, onComplete) {
    return instance.getTitles([onComplete, {genreid: genre, CurrentPageNumber: page,
                                            ItemsPerPage: pageSize, purchasetype: purchaseType}]);
}

// Forward from page 2 to page 5 with the service gone.
function pageFrom(page) {
    check("page " + page + " started", titles(ws, page, function (status, value) {
        check("page " + page + " status " + status, status === 0);
        check("page " + page + " is the page asked for",
              value.CurrentPageNumber === page && value.Titles.length === pageSize);
        trace("page " + page + " from the cache");
        ws.idle();
        if (page < lastPage) {
            pageFrom(page + 1);
        } else {
            finish();
        }
    }) === 0);
}

function waitForGo() {
    if (LMWSLib.fileExist(flashvars.go)) {
        pageFrom(2);
    } else {
        setTimeout(waitForGo, 50);
    }
}

function onFirstPage(status, value) {
    check("page 1 status " + status, status === 0);
    check("ten pages", value.TotalPages === 10);
    ws.idle();
    trace("page 1 shown, " + value.TotalPages + " pages of " + pageSize);
    waitForGo();
}

function onInit(status) {
    check("init status " + status, status === 0);
    check("page 1 started", titles(ws, 1, onFirstPage) === 0);
}

// The genre's size, asked without a cache, chooses a page size that makes ten pages.
function onProbeTitles(status, value) {
    check("probe status " + status, status === 0);
    pageSize = Math.ceil(value.TotalItems / 10);
    check("init started", ws.init([onInit, settings(2)]) === 0);
}

check("probe started", probe.init([function (status) {
    check("probe init status " + status, status === 0);
    pageSize = 5;
    check("probe titles started", titles(probe, 1, onProbeTitles) === 0);
}, settings(0)]) === 0);
