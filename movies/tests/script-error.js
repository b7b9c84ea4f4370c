// An uncaught error inside a timer ends the run with exit status 1 and names this line.
setTimeout(function () {
    trace("about to fail");
    undefinedFunction();
}, 1);
