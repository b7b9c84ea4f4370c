// Calls every asynchronous method of LMWSLib once, in an order that gives each the account state
// it needs (a device token, a rental of a THX title, a stream of it), and checks every result
// against its shape from lib/shape.js: the property names in order and each value's type, nested.
// flashvars.cache names a cache folder. Every failure is traced as "FAIL"; the movie ends with
// lmstageQuit(0) when all went well, 3 otherwise.
lmstageLoad("lib/shape.js");

var R = Shape.results;
var ws = new LMWSLib();
var failures = 0;
var called = {};

function check(what, ok) {
    if (!ok) {
        failures++;
        trace("FAIL " + what);
    }
}

function checkShape(what, value, shape) {
    var differences = Shape.check(value, shape);
    for (var i = 0; i < differences.length; i++) {
        check(what + " " + differences[i], false);
    }
}

// The checker itself catches a swapped pair, a missing and an extra property, a wrong type
// deep in an array, and takes an optional property's absence.
(function () {
    var S = Shape.object([["a", "N"], ["b", "S"]]);
    check("checker: a good object", Shape.check({a: 1, b: "x"}, S).length === 0);
    check("checker: swapped order", Shape.check({b: "x", a: 1}, S).length === 1);
    check("checker: missing property", Shape.check({a: 1}, S).length === 1);
    check("checker: extra property", Shape.check({a: 1, b: "x", c: 2}, S).length === 1);
    var deep = Shape.array(Shape.object([["d", "D"], ["e?", "B"]]));
    check("checker: optional absent", Shape.check([{d: new Date()}], deep).length === 0);
    check("checker: wrong type deep", Shape.check([{d: new Date(), e: true}, {d: 5}], deep)
          .join() === "[1].d: number where Date was expected");
})();

var settings = {
    APIKey: "api-key", UserName: "shapes@example", Password: "secret", DestinationTypeID: 7,
    AuthToken: "", DestinationUniqueID: "device shapes", ServiceBaseURL: "", Type: 0,
    CacheType: 2, CacheData: 7, CachePath: flashvars.cache, CacheLimit: 0, ProxyHost: "",
    ProxyUserName: "", ProxyPort: 0, ProxyPassword: "", AccessType: 2,
    ApplicationRevision: "1.0", EnvNum: 2, firmwareVersion: "fw", modelNumber: "model"
};

// What earlier answers tell later calls.
var rental = null;       // a title with a THX media director that can be rented
var rentalSku = 0;
var profile = 0;
var trailer = null;      // a title with a THX media director and a trailer
var series = 102000;     // the catalogue's first TV series
var episode = 0;
var pass = 0;
var stream = "";

var RENT = 0;

function pickTitles(page) {
    for (var i = 0; i < page.Titles.length; i++) {
        var t = page.Titles[i];
        if (!t.IsTHXMediaDirectorEnabled) {
            continue;
        }
        for (var p = 0; !rental && p < t.AvailableProducts.length; p++) {
            var product = t.AvailableProducts[p];
            if (product.PurchaseType === RENT) {
                rental = t;
                rentalSku = product.SkuID;
                profile = product.AvailableAssets[0].FileProfile;
            }
        }
        if (!trailer && t.BonusAssets.length > 0) {
            trailer = t;
        }
    }
    check("a THX title to rent", rental !== null);
    check("a THX title with a trailer", trailer !== null);
}

// Each step: the method, its parameters (or a function giving them), the shape of its result,
// and what to check or remember from the value.
var steps = [
    ["getNavigation", {}, R.navigation, function (v) {
        check("genres", v.length > 0);
    }],
    ["getTitles", {genreid: 12, CurrentPageNumber: 1, ItemsPerPage: 50, purchasetype: 2},
     R.genreTitles, pickTitles],
    ["getTitleListing", {titleid: 100000}, R.titleDetail, function (v) {
        // The catalogue's first product ended "2012/03/05 23:59:00".
        var d = v.AvailableProducts[0].ExpireDate;
        check("ExpireDate is a Date", d instanceof Date);
        check("ExpireDate 2012-03-05 23:59:00 local", d instanceof Date &&
              d.getFullYear() === 2012 && d.getMonth() === 2 && d.getDate() === 5 &&
              d.getHours() === 23 && d.getMinutes() === 59 && d.getSeconds() === 0);
    }],
    ["searchForTitle", {CurrentPageNumber: 1, ItemsPerPage: 5, purchasetype: 2, typefilter: 0,
                        query: "The"}, R.genreTitles, function (v) {
        check("search finds titles", v.Titles.length > 0);
    }],
    ["getRecommendedTitles", function () {
        return {titleid: rental.TitleID};
    }, R.titles],
    ["translateSkuID", function () {
        return {skuid: rentalSku};
    }, R.titleID, function (v) {
        check("the SKU's title", v.TitleID === rental.TitleID);
    }],
    ["getTvEpisodeListByTitleID", {titleid: series}, R.episodes, function (v) {
        check("episodes", v.Episodes.length > 0);
        episode = v.Episodes.length > 0 ? v.Episodes[0].EpisodeID : 0;
    }],
    ["getTvEpisodeListing", function () {
        return {episodeid: episode};
    }, R.titleDetail],
    ["getAllTvEpisodeListings", {titleid: series}, R.listings, function (v) {
        check("listings", v.TitleListingResponse.length > 0);
    }],
    ["getBoxArtImage", function () {
        return {boxartsize: 0, boxartprefix: rental.BoxArtPrefix};
    }, "S"],
    ["getFileType", {}, R.fileType],
    ["getCountryID", {}, "N"],
    ["getConfig", {}, R.configuration],
    ["checkBandwidth", {}, "N"],
    ["getLocalIPAddr", {}, "S"],
    ["updateLocalCache", {operations: 1}, "B"],
    ["authorizeDevice", {pin: 1234}, R.authorization, function (v) {
        check("a token", v.AuthToken !== "");
    }],
    ["checkAuthToken", {}, "B", function (v) {
        check("the token is valid", v === true);
    }],
    ["getEmailAddress", {}, R.email],
    ["getBillingInfo", {}, R.billing],
    ["getPrePaidCardBalance", {}, R.balance],
    ["getSettingsPageInfo", {}, R.settingsPage],
    ["setAudioDefaultProperty", {audioprofile: 3}, R.status],
    ["getAudioDefaultProperty", {}, "N", function (v) {
        check("the audio setting just set", v === 3);
    }],
    ["checkAdultVerificationEnabled", {}, R.adultVerification],
    ["checkAdultVerificationPin", {pin: 42}, R.pinCheck, function (v) {
        check("the adult PIN", v.IsPinVerified === true);
    }],
    ["assignGiftCertificateToUser", {giftcertificatecode: "GIFT-500-shapes"}, R.balance],
    ["addItemToWishlist", function () {
        return {titleid: rental.TitleID};
    }, R.status],
    ["checkTitleInWishlist", function () {
        return {titleid: rental.TitleID};
    }, "B", function (v) {
        check("in the wishlist", v === true);
    }],
    ["checkTitlesInWishlist", function () {
        return {titleids: [trailer.TitleID, rental.TitleID], typefilter: 0};
    }, R.flags, function (v) {
        check("flags in the order asked", v.length === 2 && v[1] === true &&
              v[0] === (trailer === rental));
    }],
    ["getWishlistItems", {sortorder: 0, CurrentPageNumber: 1, ItemsPerPage: 10, typefilter: 0},
     R.sortedPurchases, function (v) {
        check("one wished title", v.Titles.length === 1);
    }],
    ["removeItemFromWishlist", function () {
        return {titleid: rental.TitleID};
    }, R.status],
    ["removeAllItemsFromWishlist", {}, R.status],
    ["calcOrderTax", function () {
        return {skuid: rentalSku};
    }, R.orderTax],
    ["doPurchaseSavedBilling", function () {
        return {skuid: rentalSku, ipaddress: "127.0.0.1", useprepaidfund: false};
    }, R.receipt, function (v) {
        pass = v.PassID;
        check("a pass", pass > 0);
    }],
    ["checkForPurchasedTitle", function () {
        return {titleid: rental.TitleID};
    }, "B", function (v) {
        check("the title is bought", v === true);
    }],
    ["checkForPurchasedSku", function () {
        return {skuid: rentalSku};
    }, "B", function (v) {
        check("the SKU is bought", v === true);
    }],
    ["getMyVideos", {CurrentPageNumber: 1, ItemsPerPage: 10, purchasetype: 2, typefilter: 0,
                     watchstatus: 0}, R.purchases, function (v) {
        check("the rental among my videos", v.Titles.length === 1 && v.Titles[0].PassID === pass);
    }],
    ["checkRentalExpiration", function () {
        return {passid: pass};
    }, R.rentalExpiration],
    ["getStreamingAssetLocation", function () {
        return {passid: pass, fileprofile: profile};
    }, R.streamingLocation, function (v) {
        stream = v.StreamID;
        check("a stream", stream !== "");
    }],
    ["manageStreamingInstanceStatus", function () {
        return {streamid: stream, streamstatus: 1, stoptimeSeconds: 600};
    }, R.status],
    ["loadLastStreamingAssetLocation", function () {
        return {passid: pass, fileprofile: profile};
    }, R.streamingLocation, function (v) {
        check("resumes where it stopped", v.StartTimeSeconds === 600);
    }],
    ["getTHXMediaDirector", function () {
        return {passid: pass, fileprofile: profile, audioprofile: 0};
    }, R.mediaDirector],
    ["getStreamingBonusAssetLocation", function () {
        return {bonusassetid: trailer.BonusAssets[0].BonusAssetID};
    }, R.streamingLocation],
    ["getTHXMediaDirectorBonusAsset", function () {
        return {bonusassetid: trailer.BonusAssets[0].BonusAssetID, fileprofile: profile,
                bonusassettype: 0};
    }, R.mediaDirector],
    ["deactivateDevice", {}, R.status, function (v) {
        check("a status object has exactly two properties", Object.keys(v).length === 2);
    }]
];

// The instance methods that answer at once; every other one is asynchronous and must have been
// called (the static methods sit on the constructor, not on the prototype).
var synchronous = {init: 1, clone: 1, idle: 1, quitFlash: 1, getSysInfo: 1, getUserAgent: 1,
                   getAvailableEnvLists: 1, getDeviceEnv: 1};

function finish() {
    var count = 0;
    var names = Object.getOwnPropertyNames(LMWSLib.prototype);
    for (var i = 0; i < names.length; i++) {
        if (typeof LMWSLib.prototype[names[i]] === "function" && !synchronous[names[i]]) {
            check(names[i] + " was called", called[names[i]] === true);
            count++;
        }
    }
    trace("shapes done, methods " + count + ", failures " + failures);
    lmstageQuit(failures === 0 ? 0 : 3);
}

function run(index) {
    if (index === steps.length || failures > 0 && index > 2 && rental === null) {
        finish();
        return;
    }
    var step = steps[index];
    var name = step[0];
    var params = typeof step[1] === "function" ? step[1]() : step[1];
    var started = ws[name]([function (status, value) {
        called[name] = true;
        check(name + " status " + status, status === 0);
        checkShape(name, value, step[2]);
        if (status === 0 && step[3]) {
            step[3](value);
        }
        run(index + 1);
    }, params]);
    check(name + " started (" + started + ")", started === 0);
    if (started !== 0) {
        run(index + 1);
    }
}

check("init started", ws.init([function (status, value) {
    check("init status " + status, status === 0);
    checkShape("init", value, "U");
    run(0);
}, settings]) === 0);
