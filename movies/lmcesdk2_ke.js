// The demo movie (UI type 2). It names the settings files from its flashvars, sets up the
// web-service class with the stored token and device id, and walks the catalogue: the genres, a
// page of titles, one title's page and its box art. A device without a token is authorised with
// the simulator's pin and the token is stored, protected. Then it buys the title's first product
// with the saved billing and asks where to stream it. Each step is traced in one readable line.
//
// The movie waits for the quit key afterwards; with "autoquit=1" in the flashvars it quits by
// itself at the end of the walk.

var cfg = new LMCfgLib();
var ws = new LMWSLib();
var genre = 12;
var title = null;

function say(text) {
    trace("demo: " + text);
}

function fail(step, status) {
    say(step + " failed with status " + status + "; press the quit key to leave");
}

function onKeyDown(code) {
    say("key 0x" + code.toString(16) + (code === 0x400100 ? " (quit)" : ""));
}

function finish() {
    if (flashvars.autoquit === "1") {
        say("the walk is over, quitting");
        ws.quitFlash();
    } else {
        say("the walk is over; press the quit key to leave");
    }
}

function onStream(status, stream) {
    if (status !== 0 || stream.ResponseCode !== 0) {
        say("no stream for this device (status " + status + ", response " +
            (stream ? stream.ResponseCode : "-") + ")");
    } else {
        say("stream location " + stream.StreamingAssetLocation);
    }
    finish();
}

function onPurchase(status, receipt) {
    if (status !== 0 || receipt.ResponseCode !== 0) {
        say("the purchase was refused (status " + status + ")");
        return finish();
    }
    say("bought with the saved billing: pass " + receipt.PassID);
    var started = ws.getStreamingAssetLocation([onStream, {passid: receipt.PassID, fileprofile: 0}]);
    if (started !== 0) {
        fail("getStreamingAssetLocation", started);
    }
}

function playFirstProduct() {
    var product = title.AvailableProducts[0];
    if (!product) {
        say("the title has no product to play");
        return finish();
    }
    say("buying " + title.TitleName + " (sku " + product.SkuID + ", " + product.Price + ")");
    var started = ws.doPurchaseSavedBilling([onPurchase,
        {skuid: product.SkuID, ipaddress: "127.0.0.1", useprepaidfund: false}]);
    if (started !== 0) {
        fail("doPurchaseSavedBilling", started);
    }
}

function onAuthorized(status, device) {
    if (status !== 0 || device.ResponseCode !== 0) {
        return fail("authorizeDevice", status);
    }
    cfg.write("AuthToken", device.AuthToken, true);
    say("device authorised as " + device.DeviceName + "; token stored, protected");
    playFirstProduct();
}

function onBoxArt(status, file) {
    say(status === 0 ? "box art: " + file : "no box art (status " + status + ")");
    if (cfg.read("AuthToken", true) === "") {
        say("no token yet: authorising this device with pin 1234");
        ws.authorizeDevice([onAuthorized, {pin: 1234}]);
    } else {
        playFirstProduct();
    }
}

function onTitle(status, detail) {
    if (status !== 0) {
        return fail("getTitleListing", status);
    }
    title = detail;
    say("title " + detail.TitleID + ": " + detail.TitleName + " (" + detail.MPAARating + ", " +
        detail.RunTime + ")");
    say("  directed by " + detail.Directors);
    say("  " + detail.Synopsis);
    ws.getBoxArtImage([onBoxArt, {boxartsize: 0, boxartprefix: detail.BoxArtPrefix}]);
}

function onTitles(status, page) {
    if (status !== 0) {
        return fail("getTitles", status);
    }
    say("genre " + page.GenreID + ", page " + page.CurrentPageNumber + " of " + page.TotalPages +
        " (" + page.TotalItems + " titles):");
    for (var i = 0; i < page.Titles.length; i++) {
        say("  " + (i + 1) + ". " + page.Titles[i].TitleName);
    }
    if (page.Titles.length === 0) {
        return finish();
    }
    ws.getTitleListing([onTitle, {titleid: page.Titles[0].TitleID}]);
}

function onNavigation(status, nodes) {
    if (status !== 0) {
        return fail("getNavigation", status);
    }
    var names = [];
    for (var i = 0; i < nodes.length && names.length < 6; i++) {
        names.push(nodes[i].Name);
        if (nodes[i].ID === genre) {
            say("genre " + genre + " is " + nodes[i].Name);
        }
    }
    say(nodes.length + " genres: " + names.join(", ") + ", ...");
    ws.getTitles([onTitles, {genreid: genre, CurrentPageNumber: 1, ItemsPerPage: 10, purchasetype: 2}]);
}

function onInit(status) {
    if (status !== 0) {
        return fail("init", status);
    }
    say("connected to the service (user agent " + ws.getUserAgent() + ")");
    ws.getNavigation([onNavigation, {}]);
}

say("model " + flashvars.modelNumber + ", firmware " + flashvars.firmwareVersion);
cfg.setFile(flashvars.configurationFile, flashvars.settingsFile);
var token = cfg.read("AuthToken", true);
var device = cfg.read("DestinationUniqueID", false);
say("settings in " + flashvars.settingsFile + "; device " + device + ", " +
    (token === "" ? "no token yet" : "token stored"));

ws.init([onInit, {
    APIKey: "demo",
    UserName: "demo@example",
    Password: "demo",
    DestinationTypeID: 7,
    AuthToken: token,
    DestinationUniqueID: device,
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
    ApplicationRevision: "demo",
    EnvNum: 2,
    firmwareVersion: flashvars.firmwareVersion,
    modelNumber: flashvars.modelNumber
}]);
