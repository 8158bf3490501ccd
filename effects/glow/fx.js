// Glow: the light reaches beyond the edges of the layer, so the output is larger than the input.

var source, threshold, radius, intensity, tint, grow; // parameters
var bright, blur, combine;  // shaders
var light = [0, 0];         // two render targets, used in turn
var lightSize = [0, 0, 0];

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high);
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits);
    return param;
}

function setup() {
    source = SV_initParam("source", SV_Type.POPUP, "Glow From");
    SV_setParamChoices(source, "Bright Areas|Whole Shape");
    SV_setParamValue(source, 1);
    threshold = slider("threshold", "Threshold", 0.82, 0, 1, 2);
    radius = slider("radius", "Radius", 30, 0, 150, 1, SV_ParamFlags.ScaleByWidth);
    intensity = slider("intensity", "Intensity", 0.8, 0, 8, 2);
    // The default of a colour is in bytes (0 to 255); the host returns its value as 0 to 1.
    tint = SV_initParam("tint", SV_Type.COLOR, "Tint");
    SV_setParamValue(tint, [255, 232, 200, 255]);
    grow = SV_initParam("grow", SV_Type.BOOL, "Grow Beyond the Layer");
    SV_setParamValue(grow, 1);
    bright = SV_initShader("bright");
    blur = SV_initShader("blur");
    combine = SV_initShader("combine");
}

function updateUIFlags() {
    SV_setParamEnabled(threshold, SV_getParamValue(source) === 1 ? 1 : 0);
}

// Returns the colour as 0 to 1, even while it still holds its default, which is in bytes.
function unit(param) {
    var value = SV_getParamValue(param);
    return value[3] > 1 ? [value[0] / 255, value[1] / 255, value[2] / 255, value[3] / 255] : value;
}

// Called before each frame. Chooses the size of the output for an input of this size.
function preRender(width, height) {
    if (SV_getParamValue(grow)) {
        var margin = Math.ceil(1.5 * SV_getParamValue(radius)); // the distance that the blur reaches
        SV_setOutputExtent(width + 2 * margin, height + 2 * margin);
    }
}

function lightTargets(size) {
    if (light[0] && size.join() === lightSize.join()) {
        return;
    }
    for (var i = 0; i < 2; ++i) {
        if (light[i]) {
            SV_release(light[i]);
        }
        light[i] = SV_initRenderTarget(size[0], size[1], size[2]);
        SV_setTextureParam(light[i], SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
        SV_setTextureParam(light[i], SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    }
    lightSize = size;
}

function blurPass(from, to, x, y) {
    SV_setShaderParamVal(blur, "image", from);
    SV_setShaderParamVal(blur, "stride", [x, y]);
    SV_renderShader(blur, to);
}

function draw() {
    var input = SV_getSequenceTexture();
    var output = SV_getSequenceRT();
    var inner = SV_getSurfaceDim(input);
    var size = SV_getSurfaceDim(output);
    lightTargets(size);

    // The host centres the larger output on the layer. This factor converts output coordinates to layer coordinates.
    var scale = [size[0] / inner[0], size[1] / inner[1]];
    var offset = [-Math.floor((size[0] - inner[0]) / 2) / inner[0], -Math.floor((size[1] - inner[1]) / 2) / inner[1]];

    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.CLAMP_TO_EDGE);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    SV_setShaderParamVal(bright, "image", input);
    SV_setShaderParamVal(bright, "scale", scale);
    SV_setShaderParamVal(bright, "offset", offset);
    SV_setShaderParamVal(bright, "tint", unit(tint));
    SV_setShaderParam(bright, source);
    SV_setShaderParam(bright, threshold);
    SV_renderShader(bright, light[0]);

    SV_setShaderParam(blur, radius);
    blurPass(light[0], light[1], 1 / size[0], 0);
    blurPass(light[1], light[0], 0, 1 / size[1]);

    SV_setShaderParamVal(combine, "image", input);
    SV_setShaderParamVal(combine, "light", light[0]);
    SV_setShaderParamVal(combine, "scale", scale);
    SV_setShaderParamVal(combine, "offset", offset);
    SV_setShaderParam(combine, intensity);
    SV_setShaderParam(combine, source);
    SV_renderShader(combine, output, true);
}
