var shader, between = 0;
function setup() { shader = SV_initShader("main"); }
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    var size = SV_getSurfaceDim(SV_getSequenceRT());
    between = between || SV_initRenderTarget(size[0], size[1], size[2]);
    SV_renderShader(shader, between, false);
    SV_setShaderParamVal(shader, "image", between);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
