var shader;
function preRender(w, h) { SV_setOutputExtent(w + 20, h); }
function setup() { shader = SV_initShader("main"); }
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
