var shader;

function setup() {
    SV_initParam("amount", SV_Type.FLOAT, "Amount");
    shader = SV_initShader("scale");
}

function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
