// What the tool hands to an effect, shown in pixels: one way for each entry of the pop-up.

var mode, fill, other;
var copy, constant;

function setup() {
    mode = SV_initParam("mode", SV_Type.POPUP, "Mode");
    SV_setParamChoices(mode, "Copy|Fill|Clock|Other|Larger");
    SV_setParamValue(mode, 1);
    fill = SV_initParam("fill", SV_Type.COLOR, "Fill Colour");
    other = SV_initParam("other", SV_Type.LAYER, "Other");
    var unused = SV_initParam("unused", SV_Type.FLOAT, "Not Used");
    SV_setParamMinMax(unused, -2, 8);
    SV_setParamEnabled(unused, 0);
    copy = SV_initShader("copy");
    constant = SV_initShader("constant");
}

function preRender(w, h) {
    if (SV_getParamValue(mode) === 5) {
        SV_setOutputExtent(2 * w, 2 * h);
    }
}

function show(colour) {
    SV_setShaderParamVal(constant, "colour", colour);
    SV_renderShader(constant, SV_getSequenceRT());
}

function draw() {
    var size = SV_getSurfaceDim(SV_getSequenceRT());
    switch (SV_getParamValue(mode)) {
    case 2:
        show(SV_getParamValue(fill));
        break;
    case 3:
        show([SV_getTime() / 10, size[0] / 100, size[1] / 100, 1]);
        break;
    default:
        SV_setShaderParamVal(copy, "image", SV_getParamValue(mode) === 4 ? other : SV_getSequenceTexture());
        SV_renderShader(copy, SV_getSequenceRT(), true);
    }
}
