// Halftone: two colours only, by error diffusion, ordered dithering, or a halftone screen of dots or lines.

var method, threshold, contrast, pixelSize, dotSize, angle, serpentine, paper, ink; // parameters
var tone, print;  // shaders
var small = 0;
var smallSize = [0, 0];

var BITMAP = 1; // selector of the palette of two colours, which a threshold separates
// Entries of the pop-up with their modes of SV_surfaceQuantize. The shader draws dots, which need only the threshold.
var METHODS = [["Threshold", 1], ["Floyd-Steinberg", 3], ["Atkinson", 6], ["Stucki", 5], ["Stevenson-Arce", 11],
               ["Bayer 2x2", 13], ["Bayer 4x4", 14], ["Bayer 8x8", 15], ["Round Dots", 1], ["Lines", 1]];
var FIRST_ORDERED = 13;
var DOTS = 9, LINES = 10;

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high);
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
    method = SV_initParam("method", SV_Type.POPUP, "Method");
    SV_setParamChoices(method, METHODS.map(function (row) { return row[0]; }).join("|"));
    SV_setParamValue(method, 3);
    threshold = slider("threshold", "Threshold", 0.5, 0, 1, 2);
    contrast = slider("contrast", "Contrast", 1.3, 0, 4, 2);
    pixelSize = slider("pixelSize", "Pixel Size", 2, 1, 32, 0, SV_ParamFlags.ScaleByWidth);
    dotSize = slider("dotSize", "Dot Spacing", 10, 3, 100, 1, SV_ParamFlags.ScaleByWidth);
    angle = SV_initParam("angle", SV_Type.ANGLE, "Screen Angle");
    SV_setParamValue(angle, 45);
    serpentine = SV_initParam("serpentine", SV_Type.BOOL, "Serpentine");
    SV_setParamValue(serpentine, 1);
    paper = colour("paper", "Paper", 246, 238, 220);
    ink = colour("ink", "Ink", 28, 32, 74);
    tone = SV_initShader("tone");
    print = SV_initShader("print");
}

function updateUIFlags() {
    var entry = SV_getParamValue(method);
    var mode = METHODS[entry - 1][1];
    SV_setParamEnabled(pixelSize, entry < DOTS ? 1 : 0);
    SV_setParamEnabled(dotSize, entry >= DOTS ? 1 : 0);
    SV_setParamEnabled(angle, entry >= DOTS ? 1 : 0);
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
    var entry = SV_getParamValue(method);
    var mode = METHODS[entry - 1][1];
    var block = entry >= DOTS ? 1 : Math.max(1, SV_getParamValue(pixelSize));
    var target = smallTarget(Math.max(1, Math.round(size[0] / block)), Math.max(1, Math.round(size[1] / block)));

    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    SV_setShaderParamVal(tone, "image", input);
    SV_setShaderParamVal(tone, "size", smallSize);
    SV_setShaderParamVal(tone, "taps", Math.min(8, Math.ceil(size[0] / smallSize[0])));
    SV_setShaderParamVal(tone, "screen", entry === DOTS ? 1 : entry === LINES ? 2 : 0);
    SV_setShaderParam(tone, threshold);
    SV_setShaderParam(tone, contrast);
    SV_setShaderParam(tone, dotSize);
    SV_setShaderParam(tone, angle);
    SV_renderShader(tone, target);

    // The shader has moved the threshold to one half. With ordered dithering one number is both the strength of the
    // pattern and the threshold: with 1, a pixel becomes paper where tone plus pattern is above 1.
    var surface = SV_textureToSurface(target);
    SV_surfaceQuantize(surface, 0, BITMAP, mode, mode >= FIRST_ORDERED ? 1 : 0.5, SV_getParamValue(serpentine));
    SV_surfaceCopyTo(surface, target, false);
    SV_release(surface);

    SV_setTextureParam(target, SV_GL.TEXTURE_MAG_FILTER, SV_GL.NEAREST);
    SV_setShaderParamVal(print, "bits", target);
    SV_setShaderParamVal(print, "image", input);
    SV_setShaderParamVal(print, "paper", unit(paper));
    SV_setShaderParamVal(print, "ink", unit(ink));
    SV_renderShader(print, output, true);
}
