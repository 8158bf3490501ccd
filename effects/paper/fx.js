// Paper: an image of the effect adds grain, light and a ragged edge.

var scale, grain, relief, light, margin, colour, fade, wrap, smooth, behind; // parameters
var shader, sheet;
var REPEAT = 0x2901; // the value of OpenGL; SV_GL.REPEAT has another one, which OpenGL ignores
var WRAPS = [REPEAT, SV_GL.MIRRORED_REPEAT, SV_GL.CLAMP_TO_EDGE];

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high);
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits);
    return param;
}

function setup() {
    scale = slider("scale", "Texture Width", 380, 16, 4000, 0, SV_ParamFlags.ScaleByWidth);
    grain = slider("grain", "Grain", 0.6, 0, 2, 2);
    relief = slider("relief", "Relief", 0.6, 0, 3, 2);
    light = SV_initParam("light", SV_Type.ANGLE, "Light From");
    SV_setParamValue(light, 45);
    margin = slider("margin", "Margin", 26, 0, 1000, 0, SV_ParamFlags.ScaleByWidth);
    colour = SV_initParam("colour", SV_Type.COLOR, "Paper Colour");
    SV_setParamValue(colour, [244, 234, 212, 255]); // the default is in bytes; the value is read as 0 to 1
    fade = slider("fade", "Fade", 0.25, 0, 1, 2);
    wrap = SV_initParam("wrap", SV_Type.POPUP, "Tiling");
    SV_setParamChoices(wrap, "Repeat|Mirror|Stretch Edges");
    SV_setParamValue(wrap, 1);
    smooth = SV_initParam("smooth", SV_Type.BOOL, "Smooth Texture");
    SV_setParamValue(smooth, 1);

    behind = SV_initParam("behind", SV_Type.BOOL, "Paper Behind the Layer");
    SV_setParamValue(behind, 1);

    sheet = SV_initTexture("/paper.png"); // an image of this folder or package
    shader = SV_initShader("paper");
}

// Returns the colour as 0 to 1, even while it still holds its default, which is in bytes.
function unit(param) {
    var value = SV_getParamValue(param);
    return value[3] > 1 ? [value[0] / 255, value[1] / 255, value[2] / 255, value[3] / 255] : value;
}

function draw() {
    var input = SV_getSequenceTexture();
    var size = SV_getSurfaceDim(input);
    var sheetSize = SV_getSurfaceDim(sheet);
    var width = SV_getParamValue(scale);
    var filter = SV_getParamValue(smooth) ? SV_GL.LINEAR : SV_GL.NEAREST;

    SV_setTextureParam(sheet, SV_GL.TEXTURE_WRAP_S, WRAPS[SV_getParamValue(wrap) - 1]);
    SV_setTextureParam(sheet, SV_GL.TEXTURE_WRAP_T, WRAPS[SV_getParamValue(wrap) - 1]);
    SV_setTextureParam(sheet, SV_GL.TEXTURE_MIN_FILTER, filter);
    SV_setTextureParam(sheet, SV_GL.TEXTURE_MAG_FILTER, filter);

    SV_setShaderParamVal(shader, "image", input);
    SV_setShaderParamVal(shader, "sheet", sheet);
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "tile", [width, width * sheetSize[1] / sheetSize[0]]);
    SV_setShaderParamVal(shader, "colour", unit(colour));
    SV_setShaderParam(shader, grain);
    SV_setShaderParam(shader, relief);
    SV_setShaderParam(shader, light);
    SV_setShaderParam(shader, margin);
    SV_setShaderParam(shader, fade);
    SV_setShaderParam(shader, behind);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
