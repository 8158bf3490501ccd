// draw() takes memory without end and keeps it.
var all = [];

function setup() {}

function draw() {
    while (true)
        all.push(new Uint8Array(1 << 20));
}
