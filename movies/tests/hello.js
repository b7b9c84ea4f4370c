// Prints what the movie received (flashvars, the player's answers, key presses) and then waits
// for the quit key: "lmstage movies/tests/hello.js --quit-after 2".
function onKeyDown(code) {
    trace("key down 0x" + code.toString(16));
}

function onKeyUp(code) {
    trace("key up 0x" + code.toString(16));
}

var names = [];
for (var key in flashvars) {
    names.push(key);
}
names.sort();
trace("flashvars: " + names.length);
for (var i = 0; i < names.length; i++) {
    trace("  " + names[i] + " = " + flashvars[names[i]]);
}

var player = new LMPlayerLibAE();
var formats = LMPlayerLibAE.getSupported3DFormats();
trace("3D formats: " + formats.join(","));
trace("player initialised: " + player.Initialize());

var ticks = 0;
setInterval(function () {
    ticks++;
}, 100);
trace("waiting for the quit key");
