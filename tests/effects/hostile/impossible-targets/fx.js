// Render targets that OpenGL cannot store.
var targets = [];

function setup() {
    targets = [SV_initRenderTarget(0, 2, 8), SV_initRenderTarget(-1, -1, 16),
               SV_initRenderTarget(1e9, 1, 32), SV_initRenderTarget(NaN, Infinity, 8)];
}

function draw() {
    targets.forEach(function (target) {
        SV_blitRenderTarget(target, SV_getSequenceRT());
        SV_release(SV_textureToSurface(target));
    });
}
