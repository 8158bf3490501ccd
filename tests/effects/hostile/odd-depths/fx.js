// Depths that do not exist, in targets and surfaces.
function setup() {}

function draw() {
    [-8, 0, 1, 4, 7, 10, 12, 15, 24, 64, 1e9].forEach(function (depth) {
        var target = SV_initRenderTarget(3, 2, depth), surface = SV_textureToSurface(target);
        SV_surfaceQuantize(surface, 0, 13, 3, 0, true);
        SV_surfaceCopyTo(surface, SV_getSequenceRT(), false);
        [target, surface, SV_initSurface(3, 2, depth)].forEach(SV_release);
    });
}
