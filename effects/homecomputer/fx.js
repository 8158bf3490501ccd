// Home Computer: reduces the size of the layer, maps it to the palette of an old computer on the CPU, and enlarges it.

var palette, dither, pixelSize, strength, serpentine, brightness, contrast, saturation, scanlines; // parameters
var shrink, grow;  // shaders
var small = 0;     // render target that holds the shrunk layer
var smallSize = [0, 0];

var PALETTES = ["3-Bit RGB", "4-Bit RGBI", "Apple II", "VIC-20", "C64", "CGA Cyan-Magenta Dim", "CGA Cyan-Magenta Bright",
                "CGA Green-Red Dim", "CGA Green-Red Bright", "CGA Cyan-Red Dim", "CGA Cyan-Red Bright", "EGA", "MSX"];
var FIRST_PALETTE = 9; // selector of the first hardware palette

// Entries of the dither pop-up with the modes of SV_surfaceQuantize.
var DITHERS = [["None", 1], ["Floyd-Steinberg", 3], ["Jarvis-Judice-Ninke", 4], ["Stucki", 5], ["Atkinson", 6],
               ["Burkes", 7], ["Sierra", 8], ["Sierra Two-Row", 9], ["Sierra Lite", 10], ["Stevenson-Arce", 11],
               ["Bayer 2x2", 13], ["Bayer 4x4", 14], ["Bayer 8x8", 15]];
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
    palette = popup("palette", "Palette", PALETTES.join("|"), 5);
    dither = popup("dither", "Dither", DITHERS.map(function (row) { return row[0]; }).join("|"), 12);
    pixelSize = slider("pixelSize", "Pixel Size", 3, 1, 64, 0, SV_ParamFlags.ScaleByWidth);
    strength = slider("strength", "Pattern Strength", 0.3, 0, 1, 2);
    serpentine = SV_initParam("serpentine", SV_Type.BOOL, "Serpentine");
    SV_setParamValue(serpentine, 1);
    brightness = slider("brightness", "Brightness", 0, -1, 1, 2);
    contrast = slider("contrast", "Contrast", 1.1, 0, 3, 2);
    saturation = slider("saturation", "Saturation", 1.4, 0, 4, 2);
    scanlines = slider("scanlines", "Scanlines", 0, 0, 1, 2);
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

// The pixels are floats, so that dithered values below 0 or above 1 are kept.
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

function drawShrunk(input, size, target) {
    // An ordered dither adds between 0 and its strength to each pixel, so half of the strength is subtracted first.
    var lift = ditherMode() >= FIRST_ORDERED ? -0.5 * SV_getParamValue(strength) : 0;
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    SV_setShaderParamVal(shrink, "image", input);
    SV_setShaderParamVal(shrink, "block", [1 / smallSize[0], 1 / smallSize[1]]);
    SV_setShaderParamVal(shrink, "taps", Math.min(8, Math.ceil(size[0] / smallSize[0])));
    SV_setShaderParamVal(shrink, "lift", lift);
    SV_setShaderParam(shrink, brightness);
    SV_setShaderParam(shrink, contrast);
    SV_setShaderParam(shrink, saturation);
    SV_renderShader(shrink, target);
}

function draw() {
    var input = SV_getSequenceTexture();
    var output = SV_getSequenceRT();
    var size = SV_getSurfaceDim(output);
    var block = Math.max(1, SV_getParamValue(pixelSize));
    var target = smallTarget(Math.max(1, Math.round(size[0] / block)), Math.max(1, Math.round(size[1] / block)));
    drawShrunk(input, size, target);

    // Read back from the GPU, reduce to the palette, and write to the same render target.
    var surface = SV_textureToSurface(target);
    SV_surfaceQuantize(surface, 0, FIRST_PALETTE - 1 + SV_getParamValue(palette), ditherMode(),
                       SV_getParamValue(strength), SV_getParamValue(serpentine));
    SV_surfaceCopyTo(surface, target, false);
    SV_release(surface); // created by this draw, so this draw releases it

    SV_setTextureParam(target, SV_GL.TEXTURE_MAG_FILTER, SV_GL.NEAREST); // enlarged pixels keep hard edges
    SV_setShaderParamVal(grow, "pixels", target);
    SV_setShaderParamVal(grow, "image", input);
    SV_setShaderParamVal(grow, "count", smallSize);
    SV_setShaderParam(grow, scanlines);
    SV_renderShader(grow, output, true);
}
