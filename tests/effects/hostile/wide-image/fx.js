// An image of 40000 x 1 pixels, more than OpenGL can store in one direction.
function setup() {
    SV_initTexture("/wide.png");
}

function draw() {}
