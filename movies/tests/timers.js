// Timer order and cancellation. Ends with lmstageQuit(0) or (3).
var log = [];
var every = 0;
var interval = setInterval(function () {
    every++;
    log.push("i" + every);
    if (every === 3) {
        clearInterval(interval);
    }
}, 5);
setTimeout(function () { log.push("t200"); }, 200);
var cancelled = setTimeout(function () { log.push("never"); }, 20);
clearTimeout(cancelled);
setTimeout(function () { log.push("t0"); }, 0);
setTimeout(function () {
    trace(log.join(" "));
    lmstageQuit(log.join(" ") === "t0 i1 i2 i3 t200" ? 0 : 3);
}, 300);
