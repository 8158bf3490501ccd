// Controls: every type of parameter once, each with something to see. Copy what you need.

var look, contrast, tint, blend, lookEnd;              // GROUP_START, FLOAT, COLOR, POPUP, GROUP_END
var spot, spotOn, spotCentre, spotSize, spotTurn, spotEnd; // ... BOOL, POINT2D, FLOAT, ANGLE
var relief, lamp;                                      // FLOAT, POINT
var weave, weaveAmount, inset;                         // TEXTURE, FLOAT, LAYER
var outline;                                           // PATH
var shader, canvas;

// Points: the host takes defaults in percent of the layer and hands pixels back, from the layer's top left.
// For the flat point the percentage is divided by 65536; the deep one takes it as it is, and y's for z as well.
var SPOT_DEFAULT = [30 / 65536, 62 / 65536];
var LAMP_DEFAULT = [75, 25, 25];

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high); // the user cannot leave this range
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits); // shown decimals; after the flags, which share a word with it
    return param;
}

function withDefault(param, value) {
    SV_setParamValue(param, value);
    return param;
}

// First argument: the script's name, and the uniform's. Third: what the user reads, at most 31 characters.
function setup() {
    look = SV_initParam("look", SV_Type.GROUP_START, "Look");
    contrast = slider("contrast", "Contrast", 1.1, 0, 4, 2);
    // A colour's default is given in bytes (0 to 255); its value arrives as 0 to 1.
    tint = withDefault(SV_initParam("tint", SV_Type.COLOR, "Tint"), [255, 190, 120, 255]);
    blend = SV_initParam("blend", SV_Type.POPUP, "Tint Mode");
    SV_setParamChoices(blend, "None|Multiply|Screen|Soft Light|Duotone"); // at least one bar
    SV_setParamValue(blend, 4); // entries count from 1
    lookEnd = SV_initParam("lookEnd", SV_Type.GROUP_END);

    spot = SV_initParam("spot", SV_Type.GROUP_START, "Spotlight");
    spotOn = withDefault(SV_initParam("spotOn", SV_Type.BOOL, "Light On"), 1);
    spotCentre = withDefault(SV_initParam("spotCentre", SV_Type.POINT2D, "Light Centre"), SPOT_DEFAULT);
    // In pixels of the full-size layer: the host scales the value for previews.
    spotSize = slider("spotSize", "Light Size", 420, 1, 4000, 0, SV_ParamFlags.ScaleByWidth);
    spotTurn = withDefault(SV_initParam("spotTurn", SV_Type.ANGLE, "Light Angle"), -20);
    spotEnd = SV_initParam("spotEnd", SV_Type.GROUP_END);

    relief = slider("relief", "Relief", 0.5, 0, 4, 2);
    lamp = withDefault(SV_initParam("lamp", SV_Type.POINT, "Relief Lamp"), LAMP_DEFAULT);

    // A texture parameter shows as a pop-up and names a texture for the shader. The script cannot read the entry
    // that the user picks, so this one always holds the canvas.
    weave = SV_initParam("weave", SV_Type.TEXTURE, "Weave");
    SV_setParamChoices(weave, "Canvas|Canvas");
    weaveAmount = slider("weaveAmount", "Weave Amount", 0.2, 0, 1, 2);
    inset = SV_initParam("inset", SV_Type.LAYER, "Inset Picture");
    // A path can be declared and picked; it has no value that a script could read.
    outline = SV_initParam("outline", SV_Type.PATH, "Outline (unused)");

    canvas = SV_initTexture("/canvas.png");
    SV_setParamValue(weave, canvas);
    shader = SV_initShader("controls"); // loads /controls.frag, after the parameters that it uses
}

// Asked when a value changed: greys out what has no effect.
function updateUIFlags() {
    var on = SV_getParamValue(spotOn);
    SV_setParamEnabled(spotCentre, on);
    SV_setParamEnabled(spotSize, on);
    SV_setParamEnabled(spotTurn, on);
    SV_setParamEnabled(tint, SV_getParamValue(blend) > 1 ? 1 : 0);
    SV_setParamEnabled(lamp, SV_getParamValue(relief) > 0 ? 1 : 0);
}

// The colour as 0 to 1, also while it still holds its default.
function unit(param) {
    var value = SV_getParamValue(param);
    return value[3] > 1 ? [value[0] / 255, value[1] / 255, value[2] / 255, value[3] / 255] : value;
}

function nearlyEqual(a, b) {
    return a.every(function (value, i) { return Math.abs(value - b[i]) < 1e-7; });
}

// A point in pixels, also while it still holds its default; `percent` is what that default stands for.
function pixels(param, declared, percent, size) {
    var value = SV_getParamValue(param);
    if (!nearlyEqual(value, declared)) {
        return value;
    }
    // Depth counts in percent of the height.
    return percent.map(function (share, i) { return share / 100 * (i === 0 ? size[0] : size[1]); });
}

function draw() {
    var input = SV_getSequenceTexture();
    var size = SV_getSurfaceDim(input);
    var insetSize = SV_getSurfaceDim(SV_getParamValue(inset));
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);

    // Parameters whose value the shader takes as it is ...
    SV_setShaderParam(shader, contrast);
    SV_setShaderParam(shader, blend);
    SV_setShaderParam(shader, spotOn);
    SV_setShaderParam(shader, spotSize);
    SV_setShaderParam(shader, spotTurn);
    SV_setShaderParam(shader, relief);
    SV_setShaderParam(shader, weaveAmount);
    // ... and values that the script works out. Layers and textures always go by handle.
    SV_setShaderParamVal(shader, "image", input);
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "tint", unit(tint));
    SV_setShaderParamVal(shader, "spotCentre", pixels(spotCentre, SPOT_DEFAULT, [30, 62], size));
    SV_setShaderParamVal(shader, "lamp", pixels(lamp, LAMP_DEFAULT, LAMP_DEFAULT, size));
    SV_setShaderParamVal(shader, "cloth", weave);
    SV_setShaderParamVal(shader, "inset", inset);
    // Until the user picks a layer its texture is a placeholder of two by two pixels.
    SV_setShaderParamVal(shader, "insetAspect", insetSize[0] > 2 ? insetSize[0] / insetSize[1] : 0);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
