function setup() {
    var i = 0;
    while (i < 10) {
        i = i % 5;
    }
}
function draw() {}
