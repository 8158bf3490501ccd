var amount, shader, last = -1;
function setup() {
    amount = SV_initParam("amount", SV_Type.FLOAT, "Amount");
    SV_setParamMinMax(amount, 0, 100);
    SV_setParamValue(amount, 50);
    shader = SV_initShader("main");
}
function draw() {
    last = Math.max(last, SV_getParamValue(amount)); // kept for all instances
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "light", last / 100);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
