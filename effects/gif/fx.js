// Web Animation: an adaptive palette of 8 to 256 colours, as in the animated files of the early web.

var colours, dither, strength, serpentine, pixelSize, cutout; // parameters
var shrink, grow;  // shaders
var small = 0;
var smallSize = [0, 0];

var FIRST_COUNT = 2; // selector of the smallest adaptive palette; each following one has twice as many colours
var DITHERS = [["None", 1], ["Floyd-Steinberg", 3], ["Atkinson", 6], ["Sierra Lite", 10],
               ["Bayer 4x4", 14], ["Bayer 8x8", 15]]; // pop-up entries with the modes of SV_surfaceQuantize
var FIRST_ORDERED = 13;

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high);
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits);
    return param;
}

function popup(name, label, choices, value) {
    var param = SV_initParam(name, SV_Type.POPUP, label);
    SV_setParamChoices(param, choices);
    SV_setParamValue(param, value);
    return param;
}

function setup() {
    colours = popup("colours", "Colours", "8|16|32|64|128|256", 2);
    dither = popup("dither", "Dither", DITHERS.map(function (row) { return row[0]; }).join("|"), 3);
    strength = slider("strength", "Pattern Strength", 0.15, 0, 1, 2);
    serpentine = SV_initParam("serpentine", SV_Type.BOOL, "Serpentine");
    SV_setParamValue(serpentine, 1);
    pixelSize = slider("pixelSize", "Pixel Size", 2, 1, 32, 0, SV_ParamFlags.ScaleByWidth);
    cutout = slider("cutout", "Transparency Cut-Off", 0.5, 0, 1, 2);
    shrink = SV_initShader("shrink");
    grow = SV_initShader("grow");
}

function ditherMode() {
    return DITHERS[SV_getParamValue(dither) - 1][1];
}

function updateUIFlags() {
    var mode = ditherMode();
    SV_setParamEnabled(strength, mode >= FIRST_ORDERED ? 1 : 0);
    SV_setParamEnabled(serpentine, mode > 1 && mode < FIRST_ORDERED ? 1 : 0);
}

function smallTarget(width, height) {
    if (!small || smallSize[0] !== width || smallSize[1] !== height) {
        if (small) {
            SV_release(small);
        }
        small = SV_initRenderTarget(width, height, 32);
        smallSize = [width, height];
    }
    return small;
}

function draw() {
    var input = SV_getSequenceTexture();
    var output = SV_getSequenceRT();
    var size = SV_getSurfaceDim(output);
    var mode = ditherMode();
    var block = Math.max(1, SV_getParamValue(pixelSize));
    var target = smallTarget(Math.max(1, Math.round(size[0] / block)), Math.max(1, Math.round(size[1] / block)));

    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    SV_setShaderParamVal(shrink, "image", input);
    SV_setShaderParamVal(shrink, "block", [1 / smallSize[0], 1 / smallSize[1]]);
    SV_setShaderParamVal(shrink, "taps", Math.min(8, Math.ceil(size[0] / smallSize[0])));
    // The dither pattern only adds to a pixel, so half of its strength is subtracted first.
    SV_setShaderParamVal(shrink, "lift", mode >= FIRST_ORDERED ? -0.5 * SV_getParamValue(strength) : 0);
    SV_renderShader(shrink, target);

    var surface = SV_textureToSurface(target);
    SV_surfaceQuantize(surface, 0, FIRST_COUNT - 1 + SV_getParamValue(colours), mode,
                       SV_getParamValue(strength), SV_getParamValue(serpentine));
    SV_surfaceCopyTo(surface, target, false);
    SV_release(surface);

    SV_setTextureParam(target, SV_GL.TEXTURE_MAG_FILTER, SV_GL.NEAREST);
    SV_setShaderParamVal(grow, "pixels", target);
    SV_setShaderParamVal(grow, "image", input);
    SV_setShaderParamVal(grow, "count", smallSize);
    SV_setShaderParam(grow, cutout);
    SV_renderShader(grow, output, true);
}
