var centre, shader;
function setup() {
    centre = SV_initParam("centre", SV_Type.POINT2D, "Centre");
    shader = SV_initShader("main");
}
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParam(shader, centre);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
