var shader;
function declare(name, type, value) {
    var param = SV_initParam(name, type, name);
    SV_setParamValue(param, value);
    return param;
}
function setup() {
    declare("unit", SV_Type.COLOR, [1, 0.5, 0, 1]);
    declare("pixels", SV_Type.POINT2D, [960, 540]);
    declare("half", SV_Type.POINT2D, [0.5, 0.5]);
    declare("space", SV_Type.POINT, [0.5, 0.5, 0]);
    declare("outside", SV_Type.FLOAT, 200);
    SV_setParamMinMax(declare("reversed", SV_Type.FLOAT, 5), 10, 0);
    SV_setParamMinMax(declare("whole", SV_Type.FLOAT, 0.5), 0, 1);
    SV_setParamMinMax(declare("nan", SV_Type.FLOAT, 0), 0 / 0, 0 / 0);
    SV_setParamChoices(declare("fourth", SV_Type.POPUP, 4), "One|Two|Three");
    declare("unnamed", SV_Type.POPUP, 1);
    declare("twice", SV_Type.BOOL, 0);
    declare("twice", SV_Type.ANGLE, 0);
    shader = SV_initShader("main");
}
function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
