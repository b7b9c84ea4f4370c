// Takes about 1.5 s before it is ready, then waits for the quit key: a host's early request to
// quit has to wait for it.
var until = new Date().getTime() + 1500;
while (new Date().getTime() < until) {
}
trace("ready");
setInterval(function () {}, 50);
