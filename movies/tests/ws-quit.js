// Quits while a service call is still running: the instance waits for its worker when the
// stage goes away. The completion never comes.
var ws = new LMWSLib();
function never() {
    trace("FAIL the completion came");
}
function onInit(status) {
    trace("init " + status);
    trace("started " + ws.getNavigation([never, {}]));
    ws.quitFlash();
}
ws.init([onInit, {APIKey: "api-key", UserName: "user@example", Password: "secret",
                  DestinationTypeID: 7, DestinationUniqueID: "device 0001", AccessType: 2,
                  EnvNum: 2}]);
