var shader, tint, choice;
function setup() {
    tint = SV_initParam("tint", SV_Type.COLOR, "Tint");
    SV_setParamValue(tint, [255, 128, 0]);
    choice = SV_initParam("choice", SV_Type.POPUP);
    SV_setParamChoices(choice, ["One", "Two"]);
    SV_setParamPrecision(tint);
    shader = SV_initShader("main");
}
function draw() {
    SV_setShaderParamVal(shader, "imagine", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "weights", [1, 2]);
    SV_setShaderParamVal(shader, "weights", [1, 2, 3]);
    SV_blitRenderTarget(SV_getSequenceTexture(), SV_getSequenceRT());
    SV_setTextureParam(SV_getSequenceTexture(), SV_GL.TEXTURE_WRAP_S, SV_GL.REPEAT);
    SV_release(SV_initRenderTarget(10, 10, 12));
    SV_renderShader(shader, SV_getSequenceRT(), true, [0, 0, 1]);
}
