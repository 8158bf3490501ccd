// Plasma: a generator. It needs no input, changes with time, and is drawn over the layer when there is one.

var scale, speed, detail, bands, low, middle, high, opacity, mask; // parameters
var shader;

function slider(name, label, value, least, most, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, least, most);
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits);
    return param;
}

// The default of a colour is in bytes (0 to 255); the host returns its value as 0 to 1.
function colour(name, label, red, green, blue) {
    var param = SV_initParam(name, SV_Type.COLOR, label);
    SV_setParamValue(param, [red, green, blue, 255]);
    return param;
}

// Returns the colour as 0 to 1, even while it still holds its default, which is in bytes.
function unit(param) {
    var value = SV_getParamValue(param);
    return value[3] > 1 ? [value[0] / 255, value[1] / 255, value[2] / 255, value[3] / 255] : value;
}

function setup() {
    scale = slider("scale", "Scale", 260, 20, 2000, 0, SV_ParamFlags.ScaleByWidth);
    speed = slider("speed", "Speed", 1, 0, 10, 2);
    detail = slider("detail", "Detail", 0.6, 0, 1, 2);
    bands = slider("bands", "Bands", 1, 0.25, 8, 2);
    low = colour("low", "Shadows", 24, 8, 64);
    middle = colour("middle", "Midtones", 222, 38, 98);
    high = colour("high", "Highlights", 255, 196, 84);
    opacity = slider("opacity", "Opacity", 100, 0, 100, 0);
    mask = SV_initParam("mask", SV_Type.BOOL, "Stay Inside the Layer");
    SV_setParamValue(mask, 0);
    shader = SV_initShader("plasma");
}

function draw() {
    var output = SV_getSequenceRT();
    var size = SV_getSurfaceDim(output);
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "clock", SV_getTime() * SV_getParamValue(speed));
    SV_setShaderParamVal(shader, "cover", SV_getParamValue(opacity) / 100);
    SV_setShaderParamVal(shader, "low", unit(low));
    SV_setShaderParamVal(shader, "middle", unit(middle));
    SV_setShaderParamVal(shader, "high", unit(high));
    SV_setShaderParam(shader, scale);
    SV_setShaderParam(shader, detail);
    SV_setShaderParam(shader, bands);
    SV_setShaderParam(shader, mask);
    SV_renderShader(shader, output, true);
}
