var shader, frame = 0;
function setup() { shader = SV_initShader("main"); }
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    ++frame;
    SV_setShaderParamVal(shader, "phase", frame / 100);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
