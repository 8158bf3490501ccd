function setup() {
}

function draw() {
    while (true) {
    }
}
