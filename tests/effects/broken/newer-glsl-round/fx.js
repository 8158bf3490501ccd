var shader;
function setup() { shader = SV_initShader("main"); }
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
