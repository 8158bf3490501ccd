var radius, shader;
function setup() {
    radius = SV_initParam("radius", SV_Type.FLOAT, "Radius");
    SV_setParamMinMax(radius, 0, 100);
    SV_setParamValue(radius, 20);
    shader = SV_initShader("main");
}
function draw() {
    var size = SV_getSurfaceDim(SV_getSequenceRT());
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParam(shader, radius);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
