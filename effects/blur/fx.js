// Soft Blur: one shader runs twice, first horizontally into a render target and then vertically.

var radius, direction, hold, weigh; // parameters
var shader;
var between = 0; // render target between the two passes
var betweenSize = [0, 0, 0];

function setup() {
    // Parameters are declared first, because a shader looks up their types when it is loaded.
    radius = SV_initParam("radius", SV_Type.FLOAT, "Radius");
    SV_setParamMinMax(radius, 0, 200);
    SV_setParamValue(radius, 8);
    // The radius is in pixels of the full-size layer; the host reduces it for previews at half or quarter size.
    SV_setParamFlags(radius, SV_ParamFlags.ScaleByWidth);
    SV_setParamPrecision(radius, 1); // set after the flags, because both share one word

    direction = SV_initParam("direction", SV_Type.POPUP, "Direction");
    SV_setParamChoices(direction, "Both|Horizontal|Vertical");
    SV_setParamValue(direction, 1); // entries are numbered from 1

    hold = SV_initParam("hold", SV_Type.BOOL, "Repeat Edge Pixels");
    SV_setParamValue(hold, 1);

    // When this is off, all four channels are treated alike, so their order does not matter.
    weigh = SV_initParam("weigh", SV_Type.BOOL, "Weigh Colour by Alpha");
    SV_setParamValue(weigh, 0);

    shader = SV_initShader("blur");
}

// Returns the render target between the passes. It is created again only when the output's size or depth changes.
function betweenPasses(size) {
    if (between && size.join() === betweenSize.join()) {
        return between;
    }
    if (between) {
        SV_release(between);
    }
    betweenSize = size;
    between = SV_initRenderTarget(size[0], size[1], size[2]);
    return between;
}

// Reads beyond the edge return the pixel at the edge, or nothing. Every upload resets this, so each draw sets it.
function setEdges(texture) {
    var wrap = SV_getParamValue(hold) ? SV_GL.CLAMP_TO_EDGE : SV_GL.CLAMP_TO_BORDER;
    SV_setTextureParam(texture, SV_GL.TEXTURE_WRAP_S, wrap);
    SV_setTextureParam(texture, SV_GL.TEXTURE_WRAP_T, wrap);
}

function pass(source, target, x, y, flip) {
    setEdges(source);
    SV_setShaderParamVal(shader, "image", source);
    SV_setShaderParamVal(shader, "stride", [x, y]);
    SV_renderShader(shader, target, flip);
}

function draw() {
    var output = SV_getSequenceRT();
    var size = SV_getSurfaceDim(output); // width, height, bits per channel
    var which = SV_getParamValue(direction);
    var target = betweenPasses(size);

    SV_setShaderParam(shader, radius);
    SV_setShaderParam(shader, weigh);
    pass(SV_getSequenceTexture(), target, which === 3 ? 0 : 1 / size[0], 0, false);
    // The last pass flips vertically: host rows are stored top-down, GL textures bottom-up.
    pass(target, output, 0, which === 2 ? 0 : 1 / size[1], true);
}
