var shader;
function setup() {
    SV_initParam("amount", SV_Type.FLAOT, "Amount");
    SV_setParamFlags(SV_initParam("size", SV_Type.FLOAT, "Size"), SV_ParamFlags.ScaleByWith);
    shader = SV_initShader("main");
}
function draw() {
    SV_setTextureParam(SV_getSequenceTexture(), SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EGDE);
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
