// Controls: each type of parameter once, with a visible result. Copy what you need.

var look, contrast, tint, blend, lookEnd;              // GROUP_START, FLOAT, COLOR, POPUP, GROUP_END
var spot, spotOn, spotCentre, spotSize, spotTurn, spotEnd; // ... BOOL, POINT2D, FLOAT, ANGLE
var relief, lamp;                                      // FLOAT, POINT
var weave, weaveAmount, inset;                         // TEXTURE, FLOAT, LAYER
var outline;                                           // PATH
var shader, canvas;

// Points: a default is in percent of the layer; the host returns pixels, counted from the top left of the layer.
// The default of a 2-D point is the percentage divided by 65536. That of a 3-D point is the percentage itself, and z
// takes the default of y.
var SPOT_DEFAULT = [30 / 65536, 62 / 65536];
var LAMP_DEFAULT = [75, 25, 25];

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high); // the user cannot leave this range
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits); // number of decimals; set after the flags, because both share one word
    return param;
}

function withDefault(param, value) {
    SV_setParamValue(param, value);
    return param;
}

// The first argument is the name in the script and of the uniform. The third is the label that the user sees, at most
// 31 characters.
function setup() {
    look = SV_initParam("look", SV_Type.GROUP_START, "Look");
    contrast = slider("contrast", "Contrast", 1.1, 0, 4, 2);
    // The default of a colour is in bytes (0 to 255); its value is read as 0 to 1.
    tint = withDefault(SV_initParam("tint", SV_Type.COLOR, "Tint"), [255, 190, 120, 255]);
    blend = SV_initParam("blend", SV_Type.POPUP, "Tint Mode");
    SV_setParamChoices(blend, "None|Multiply|Screen|Soft Light|Duotone"); // at least two entries
    SV_setParamValue(blend, 4); // entries are numbered from 1
    lookEnd = SV_initParam("lookEnd", SV_Type.GROUP_END);

    spot = SV_initParam("spot", SV_Type.GROUP_START, "Spotlight");
    spotOn = withDefault(SV_initParam("spotOn", SV_Type.BOOL, "Light On"), 1);
    spotCentre = withDefault(SV_initParam("spotCentre", SV_Type.POINT2D, "Light Centre"), SPOT_DEFAULT);
    // The size is in pixels of the full-size layer; the host scales it for previews.
    spotSize = slider("spotSize", "Light Size", 420, 1, 4000, 0, SV_ParamFlags.ScaleByWidth);
    spotTurn = withDefault(SV_initParam("spotTurn", SV_Type.ANGLE, "Light Angle"), -20);
    spotEnd = SV_initParam("spotEnd", SV_Type.GROUP_END);

    relief = slider("relief", "Relief", 0.5, 0, 4, 2);
    lamp = withDefault(SV_initParam("lamp", SV_Type.POINT, "Relief Lamp"), LAMP_DEFAULT);

    // A texture parameter is shown as a pop-up and gives a texture to the shader. The script cannot read which
    // entry the user selects, so this one always holds the canvas.
    weave = SV_initParam("weave", SV_Type.TEXTURE, "Weave");
    SV_setParamChoices(weave, "Canvas|Canvas");
    weaveAmount = slider("weaveAmount", "Weave Amount", 0.2, 0, 1, 2);
    inset = SV_initParam("inset", SV_Type.LAYER, "Inset Picture");
    // A path can be declared and selected, but a script cannot read its value.
    outline = SV_initParam("outline", SV_Type.PATH, "Outline (unused)");

    canvas = SV_initTexture("/canvas.png");
    SV_setParamValue(weave, canvas);
    shader = SV_initShader("controls"); // loads controls.frag; the parameters that it uses are declared above
}

// The host calls this when a value changed. It disables the controls that have no effect at the moment.
function updateUIFlags() {
    var on = SV_getParamValue(spotOn);
    SV_setParamEnabled(spotCentre, on);
    SV_setParamEnabled(spotSize, on);
    SV_setParamEnabled(spotTurn, on);
    SV_setParamEnabled(tint, SV_getParamValue(blend) > 1 ? 1 : 0);
    SV_setParamEnabled(lamp, SV_getParamValue(relief) > 0 ? 1 : 0);
}

// Returns the colour as 0 to 1, even while it still holds its default, which is in bytes.
function unit(param) {
    var value = SV_getParamValue(param);
    return value[3] > 1 ? [value[0] / 255, value[1] / 255, value[2] / 255, value[3] / 255] : value;
}

function nearlyEqual(a, b) {
    return a.every(function (value, i) { return Math.abs(value - b[i]) < 1e-7; });
}

// Returns a point in pixels, even while it still holds its default, which means `percent` of the layer.
function pixels(param, declared, percent, size) {
    var value = SV_getParamValue(param);
    if (!nearlyEqual(value, declared)) {
        return value;
    }
    // The depth of the default is in percent of the height.
    return percent.map(function (share, i) { return share / 100 * (i === 0 ? size[0] : size[1]); });
}

function draw() {
    var input = SV_getSequenceTexture();
    var size = SV_getSurfaceDim(input);
    var insetSize = SV_getSurfaceDim(SV_getParamValue(inset));
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);

    // These parameters go to the uniforms of their names without a change.
    SV_setShaderParam(shader, contrast);
    SV_setShaderParam(shader, blend);
    SV_setShaderParam(shader, spotOn);
    SV_setShaderParam(shader, spotSize);
    SV_setShaderParam(shader, spotTurn);
    SV_setShaderParam(shader, relief);
    SV_setShaderParam(shader, weaveAmount);
    // These values are computed here. Layers and textures are passed by handle.
    SV_setShaderParamVal(shader, "image", input);
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "tint", unit(tint));
    SV_setShaderParamVal(shader, "spotCentre", pixels(spotCentre, SPOT_DEFAULT, [30, 62], size));
    SV_setShaderParamVal(shader, "lamp", pixels(lamp, LAMP_DEFAULT, LAMP_DEFAULT, size));
    SV_setShaderParamVal(shader, "cloth", weave);
    SV_setShaderParamVal(shader, "inset", inset);
    // Until the user selects a layer, its texture is a placeholder of 2 by 2 pixels.
    SV_setShaderParamVal(shader, "insetAspect", insetSize[0] > 2 ? insetSize[0] / insetSize[1] : 0);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
