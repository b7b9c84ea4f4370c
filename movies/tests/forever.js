// Never ends by itself: used for the runner's time-out.
setInterval(function () {}, 50);
