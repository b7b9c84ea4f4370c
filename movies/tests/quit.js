// Ends the movie from native code (the stop operation), after a timer fired.
var t = new LMStageTest();
setTimeout(function () {
    trace("stopping");
    t.quit();
    trace("still running the current call");
}, 10);
