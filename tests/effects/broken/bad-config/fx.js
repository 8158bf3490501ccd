function setup() {
}

function draw() {
}
