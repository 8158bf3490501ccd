// A function that calls itself without end.
function again() {
    again();
}

function setup() {}

function draw() {
    again();
}
