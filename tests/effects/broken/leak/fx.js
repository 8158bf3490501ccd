var frames = 0;

function setup() {
}

function draw() {
    SV_initRenderTarget(8, 8, 8);
    SV_release(SV_initTexture("dot.png"));
    frames += 1;
}
