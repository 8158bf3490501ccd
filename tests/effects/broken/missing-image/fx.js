function setup() {
    SV_initTexture("gone.png");
    var number = 3;
    SV_initTexture("frame" + number + ".png");
}

function draw() {
}
