// Output sizes that do not exist, one in each frame.
function setup() {}

function preRender(w, h) {
    SV_setOutputExtent(-1, h);
    SV_setOutputExtent(w, 2147483647);
    SV_setOutputExtent(-Infinity, NaN);
}

function draw() {}
