// draw() releases the target of the frame.
function setup() {}

function draw() {
    SV_release(SV_getSequenceRT());
}
