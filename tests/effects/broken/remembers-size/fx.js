var width, shader;
function setup() { shader = SV_initShader("main"); }
function preRender(w) {
    width = w; // of the frame that was prepared last
}
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "light", width / SV_getSurfaceDim(SV_getSequenceRT())[0]);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
