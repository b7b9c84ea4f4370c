// Checks a value that a web-service call delivered against the shape a movie expects: the names of
// an object's own properties in their order, and the type of each value, nested. A test movie
// loads it with lmstageLoad("lib/shape.js").
//
// A shape is one of
//   "N" number, "S" string, "B" boolean, "D" Date, "U" undefined,
//   Shape.object([[name, shape], ...])   exactly these properties, in this order; a name ending
//                                        in "?" may be missing (its place is kept when present),
//   Shape.array(shape)                   an Array whose every element has the shape.
// Shape.check(value, shape) gives the list of differences, empty when the value has the shape;
// each names the path to the difference, for example "Titles[3].AvailableProducts[0].SkuID".
var Shape = (function () {
    function object(fields) {
        return {kind: "object", fields: fields};
    }

    function array(element) {
        return {kind: "array", element: element};
    }

    function typeName(value) {
        if (value === null) {
            return "null";
        }
        if (value instanceof Date) {
            return "Date";
        }
        if (value instanceof Array) {
            return "Array";
        }
        return typeof value;
    }

    var scalars = {N: "number", S: "string", B: "boolean", D: "Date", U: "undefined"};

    function walk(value, shape, path, out) {
        var found = typeName(value);
        if (typeof shape === "string") {
            if (scalars[shape] !== found) {
                out.push(path + ": " + found + " where " + scalars[shape] + " was expected");
            }
            return;
        }
        if (shape.kind === "array") {
            if (found !== "Array") {
                out.push(path + ": " + found + " where an Array was expected");
                return;
            }
            for (var i = 0; i < value.length; i++) {
                walk(value[i], shape.element, path + "[" + i + "]", out);
            }
            return;
        }
        if (found !== "object") {
            out.push(path + ": " + found + " where an Object was expected");
            return;
        }
        var expected = [];
        var shapes = {};
        for (var f = 0; f < shape.fields.length; f++) {
            var name = shape.fields[f][0];
            var optional = name.charAt(name.length - 1) === "?";
            if (optional) {
                name = name.substring(0, name.length - 1);
            }
            if (!optional || Object.prototype.hasOwnProperty.call(value, name)) {
                expected.push(name);
                shapes[name] = shape.fields[f][1];
            }
        }
        var names = Object.keys(value);
        if (names.join(",") !== expected.join(",")) {
            out.push((path || "value") + ": properties " + names.join(",") + " where " +
                     expected.join(",") + " were expected");
            return;
        }
        for (var n = 0; n < names.length; n++) {
            walk(value[names[n]], shapes[names[n]], path ? path + "." + names[n] : names[n], out);
        }
    }

    function check(value, shape) {
        var out = [];
        walk(value, shape, "", out);
        return out;
    }

    var STATUS = [["ResponseCode", "N"], ["ResponseMessage", "S"]];

    // The shapes of the web-service class's results, by result kind's meaning.
    var title = [
        ["TitleID", "N"], ["TitleName", "S"], ["BoxArtPrefix", "S"], ["TitlePosition", "N"],
        ["EpisodeNumber", "N"], ["CHVRSRating", "S"], ["LoyaltyPointsForBuy", "S"],
        ["LoyaltyPointsForRent", "S"],
        ["BonusAssets", array(object([["BonusAssetID", "N"], ["Profile", "N"], ["BonusType", "N"]]))],
        ["IsTvListing", "B"], ["MPAARating", "S"], ["IsTHXMediaDirectorEnabled", "B"],
        ["IsTHXMediaDirectorEnabledForTrailer", "B"],
        ["AvailableProducts", array(object([
            ["SkuID", "N"], ["PurchaseType", "N"], ["Price", "S"], ["RentalPeriod", "N"],
            ["AvailableAssets", array(object([["FileProfile", "N"]]))],
            ["AvailableAudioProfiles", array(object([
                ["AssetAudioID", "N"], ["FileLocation", "S"], ["ContainsVideo", "B"],
                ["AudioAssetProfile", "N"]]))],
            ["ExpireDate?", "D"]]))]];
    var detail = [
        STATUS[0], STATUS[1], ["Synopsis", "S"], ["UserRating", "N"], ["Directors", "S"],
        ["Actors", "S"], ["Writers", "S"], ["Producers", "S"], ["Copyright", "S"],
        ["RunTime", "S"], ["RatingReason", "S"]].concat(title);
    var purchased = title.concat([
        ["EpisodeID", "N"], ["TvListingTitleID", "N"], ["PurchaseType", "N"], ["Status", "N"],
        ["RentalPeriod", "N"], ["PassID", "N"], ["PlayStatus", "N"], ["StartTimeSeconds", "N"]]);
    var paging = [["CurrentPageNumber", "N"], ["ItemsPerPage", "N"], ["TotalPages", "N"],
                  ["TotalItems", "N"]];
    var purchases = paging.concat(STATUS, [["Titles", array(object(purchased))]]);

    // Own properties first, then the status.
    function own(fields) {
        return object(fields.concat(STATUS));
    }

    var results = {
        number: "N",
        flag: "B",
        text: "S",
        navigation: array(object([["ID", "N"], ["Name", "S"], ["Visible", "B"], ["ParentID", "N"]])),
        genreTitles: object([["GenreID", "N"]].concat(paging, STATUS,
                                                      [["Titles", array(object(title))]])),
        titleDetail: object(detail),
        authorization: own([["AuthToken", "S"], ["EmailAddress", "S"],
                            ["IsAdultVerificationEnabled", "B"], ["DeviceID", "S"],
                            ["DeviceName", "S"]]),
        purchases: object(purchases),
        status: object(STATUS),
        titles: object(STATUS.concat([["Titles", array(object(title))]])),
        titleID: object(STATUS.concat([["TitleID", "N"]])),
        episodes: object(STATUS.concat([["Episodes", array(object([
            ["EpisodeID", "N"], ["EpisodeName", "S"], ["EpisodeNumber", "N"]]))]])),
        listings: object([["TitleListingResponse", array(object(detail))]]),
        sortedPurchases: object(purchases.concat([["SortOrder", "N"]])),
        receipt: own([["PassID", "N"], ["TransactionID", "N"], ["TransactionAuthNum", "S"]]),
        adultVerification: own([["IsAdultVerificationEnabled", "B"]]),
        pinCheck: own([["IsPinVerified", "B"]]),
        balance: own([["Balance", "N"]]),
        rentalExpiration: own([["ShouldDisplay", "B"], ["HoursRemaining", "N"]]),
        streamingLocation: own([
            ["StreamingAssetLocation", "S"], ["AssetID", "N"], ["StreamID", "S"],
            ["DRMServerURL", "S"], ["DRMACKServerURL", "S"], ["Status", "N"],
            ["StartTimeSeconds", "N"], ["HeartbeatURL", "S"], ["HeartbeatPollInSeconds", "N"]]),
        email: own([["EmailAddress", "S"]]),
        billing: own([["CCLastFour", "S"], ["CCTypeID", "N"], ["CCType", "S"]]),
        configuration: object(STATUS.concat([["ConfigurationItem", array(object([
            ["Key", "S"], ["Value", "S"]]))]])),
        settingsPage: own([["Account", "S"], ["DeviceID", "S"], ["DeviceName", "S"]]),
        fileType: object([["DRMProvider", "N"], ["AccessType", "N"], ["FileProfile", "N"],
                          ["VideoFormat", "N"], ["FileExtension", "S"]]),
        flags: array("B"),
        orderTax: own([["SubTotal", "S"], ["TotalPrice", "S"], ["Tax", "S"]]),
        mediaDirector: own([["LongFormat", "S"], ["ShortFormat", "S"]])
    };

    return {object: object, array: array, check: check, results: results};
})();
