// draw() turns the target of the frame into one of another size and depth.
var small;

function setup() {
    small = SV_initRenderTarget(3, 2, 8);
}

function draw() {
    var surface = SV_textureToSurface(small);
    SV_surfaceCopyTo(surface, SV_getSequenceRT(), false);
    SV_release(surface);
}
