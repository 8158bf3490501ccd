var shader, tint, turn;

function setup() {
    tint = SV_initParam("tint", SV_Type.COLOR, "Tint");
    shader = SV_initShader("tint");
    turn = SV_initParam("turn", SV_Type.ANGLE, "Turn");
}

function draw() {
    SV_setShaderParam(shader, tint);
    SV_setShaderParam(shader, turn);
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
