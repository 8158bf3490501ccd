var shader;

function setup() {
    shader = SV_initShader("wrong");
}

function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
