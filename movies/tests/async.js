// A completion made on a native worker thread reaches the movie through OnUpdate, on the script
// thread, and a second call while one is running is refused. Ends with lmstageQuit(0) or (3).
var t = new LMStageTest();
var started = t.startWork(function (answer) {
    var ok = answer.value === 40 && answer.workerThreadDiffers && answer.deliveredOnScriptThread;
    trace("completion " + JSON.stringify(answer));
    lmstageQuit(ok && busy === -2 ? 0 : 3);
}, 20);
var busy = t.startWork(function () {}, 1);
trace("started " + started + ", second call " + busy);
