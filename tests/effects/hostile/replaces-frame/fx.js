// draw() puts a smaller target in place of that of the frame.
function setup() {}

function draw() {
    SV_release(SV_getSequenceRT());
    SV_initRenderTarget(1, 1, 8);
}
