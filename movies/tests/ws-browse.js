// Browses the service through LMWSLib as the UI does: init, the genre tree, a page of titles, a
// title and its box art, device authorisation, the wishlist, a purchase and the stream of the
// bought title. Along the way it
// checks the statuses a handler gives for calls it refuses. Every failure is traced as "FAIL";
// the movie ends with lmstageQuit(0) when all went well, 3 otherwise.
var ws = new LMWSLib();
var failures = 0;

function check(what, ok) {
    if (!ok) {
        failures++;
        trace("FAIL " + what);
    }
}

function finish() {
    trace("browse done, failures " + failures);
    lmstageQuit(failures === 0 ? 0 : 3);
}

function ignored() {
}

// Refused before init, whatever the method.
check("getNavigation before init gives -1", ws.getNavigation([ignored, {}]) === -1);
check("getTitles before init gives -1", ws.getTitles([ignored, {}]) === -1);

// trace with other than one argument prints nothing.
check("trace() gives -3", LMWSLib.trace() === -3);
check("trace(a, b) gives -3", LMWSLib.trace("not", "printed") === -3);
check("trace(x) gives 0", LMWSLib.trace("one argument") === 0);

// Malformed calls.
check("init() gives -3", ws.init() === -3);
check("init(object) gives -3", ws.init({}) === -3);
check("init([f]) gives -3", ws.init([ignored]) === -3);
check("init([f, p, x]) gives -3", ws.init([ignored, {}, 1]) === -3);
check("init([p, f]) gives -3", ws.init([{}, ignored]) === -3);
check("init([f, p], x) gives -3", ws.init([ignored, {}], 1) === -3);

var settings = {
    APIKey: "api-key",
    UserName: "user@example",
    Password: "secret",
    DestinationTypeID: 7,
    AuthToken: "",
    DestinationUniqueID: "device 0001",
    ServiceBaseURL: "",
    Type: 0,
    CacheType: 0,
    CacheData: 0,
    CachePath: "",
    CacheLimit: 0,
    ProxyHost: "",
    ProxyUserName: "",
    ProxyPort: 0,
    ProxyPassword: "",
    AccessType: 2,
    ApplicationRevision: "1.0",
    EnvNum: 2,
    firmwareVersion: "fw",
    modelNumber: "model"
};

var envs = ws.getAvailableEnvLists();
check("three environments", envs.length === 3 && envs[2].envNum === 2 &&
      envs[2].endpoint.indexOf("/api/") > 0);

var title = 0;
var sku = 0;
var profile = 0;

function onStream(status, value) {
    check("getStreamingAssetLocation status " + status, status === 0);
    check("stream location", value.StreamingAssetLocation !== "" && value.StreamID !== "");
    finish();
}

function onPurchase(status, value) {
    check("doPurchaseSavedBilling status " + status, status === 0);
    check("pass id", value.PassID > 0);
    check("stream started",
          ws.getStreamingAssetLocation([onStream, {passid: value.PassID, fileprofile: profile}]) === 0);
}

function onWishlist(status, value) {
    check("getWishlistItems status " + status, status === 0);
    check("wishlist holds the title", value.Titles.length === 1 && value.Titles[0].TitleID === title);
    check("purchase started", ws.doPurchaseSavedBilling([onPurchase,
        {skuid: sku, ipaddress: "127.0.0.1", useprepaidfund: false}]) === 0);
}

function onFlags(status, value) {
    check("checkTitlesInWishlist status " + status, status === 0);
    check("flags", value.length === 2 && value[0] === true && value[1] === false);
    check("wishlist started", ws.getWishlistItems([onWishlist,
        {sortorder: 0, CurrentPageNumber: 1, ItemsPerPage: 10, typefilter: 0}]) === 0);
}

function onAdded(status, value) {
    check("addItemToWishlist status " + status, status === 0);
    check("added response", value.ResponseCode === 0);
    check("flags started",
          ws.checkTitlesInWishlist([onFlags, {titleids: [title, title + 1], typefilter: 0}]) === 0);
}

function onToken(status, value) {
    check("checkAuthToken status " + status, status === 0);
    check("token valid", value === true);
    check("add started", ws.addItemToWishlist([onAdded, {titleid: title}]) === 0);
}

function onAuthorize(status, value) {
    check("authorizeDevice status " + status, status === 0);
    check("token", typeof value.AuthToken === "string" && value.AuthToken !== "");
    check("token check started", ws.checkAuthToken([onToken, {}]) === 0);
}

function onTitle(status, value) {
    check("getTitleListing status " + status, status === 0);
    check("title id", value.TitleID === title);
    check("authorize started", ws.authorizeDevice([onAuthorize, {pin: 1234}]) === 0);
}

function onBoxArt(status, value) {
    check("getBoxArtImage status " + status, status === 0);
    check("box art file", typeof value === "string" && value.length > 0);
    trace("box art " + value);
    check("title listing started", ws.getTitleListing([onTitle, {titleid: title}]) === 0);
}

function onTitles(status, value) {
    check("getTitles status " + status, status === 0);
    check("titles", value.Titles.length > 0 && value.CurrentPageNumber === 1);
    var first = value.Titles[0];
    title = first.TitleID;
    sku = first.AvailableProducts[0].SkuID;
    profile = first.AvailableProducts[0].AvailableAssets[0];
    check("box art started",
          ws.getBoxArtImage([onBoxArt, {boxartsize: 0, boxartprefix: first.BoxArtPrefix}]) === 0);
}

function onNavigation(status, value) {
    check("getNavigation status " + status, status === 0);
    check("genres", value.length > 0 && typeof value[0].Name === "string");
    var started = ws.getTitles([onTitles,
        {genreid: 12, CurrentPageNumber: 1, ItemsPerPage: 5, purchasetype: 2}]);
    check("getTitles started", started === 0);
    check("a second call while one runs gives -2", ws.getTitleListing([ignored, {titleid: 1}]) === -2);
}

function onInit(status, value) {
    check("init status " + status, status === 0);
    check("init value undefined", value === undefined);
    check("second init gives -4", ws.init([ignored, settings]) === -4);
    var agent = ws.getUserAgent();
    check("user agent", typeof agent === "string" && agent.length > 0);
    check("environment 2", ws.getDeviceEnv() === 2);
    check("bad arguments after init give -3", ws.getNavigation([ignored]) === -3);
    check("not a function gives -3", ws.getNavigation([1, {}]) === -3);
    check("navigation started", ws.getNavigation([onNavigation, {}]) === 0);
}

check("init started", ws.init([onInit, settings]) === 0);
check("init while init runs gives -2", ws.init([onInit, settings]) === -2);
check("a call while init runs gives -1", ws.getNavigation([ignored, {}]) === -1);
