// Ends by itself after half a second, through an uncaught error.
trace("running");
setTimeout(function () {
    trace("ending now");
    undefinedFunction();
}, 500);
