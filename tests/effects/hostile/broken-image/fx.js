// An image file that is cut off, and one that states a huge size.
function setup() {
    SV_initTexture("/cut.png");
    SV_initTexture("/huge.ppm");
}

function draw() {}
