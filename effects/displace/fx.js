// Displace: the colours of another layer (a displacement map) give the distance by which each pixel moves.

var map, across, down, fit, edges, soften; // parameters
var shader;
var GL_REPEAT = 0x2901; // OpenGL ignores SV_GL.REPEAT, which is another number
var FITS = [SV_GL.CLAMP_TO_EDGE, GL_REPEAT];
var EDGES = [SV_GL.CLAMP_TO_EDGE, GL_REPEAT, SV_GL.MIRRORED_REPEAT, SV_GL.CLAMP_TO_BORDER];

function slider(name, label, value, low, high, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high);
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags);
    SV_setParamPrecision(param, 1);
    return param;
}

function popup(name, label, choices) {
    var param = SV_initParam(name, SV_Type.POPUP, label);
    SV_setParamChoices(param, choices);
    SV_setParamValue(param, 1);
    return param;
}

function setup() {
    map = SV_initParam("map", SV_Type.LAYER, "Displacement Map");
    across = slider("across", "Across", 40, -500, 500, SV_ParamFlags.ScaleByWidth);
    down = slider("down", "Down", 40, -500, 500, SV_ParamFlags.ScaleByHeight);
    soften = slider("soften", "Soften Map", 2, 0, 20, SV_ParamFlags.ScaleByWidth);
    fit = popup("fit", "Map Placement", "Stretch to Fit|Tile");
    edges = popup("edges", "Beyond the Edges", "Edge Pixels|Wrap Around|Mirror|Transparent");
    shader = SV_initShader("displace");
}

function setWrap(texture, wrap) {
    SV_setTextureParam(texture, SV_GL.TEXTURE_WRAP_S, wrap);
    SV_setTextureParam(texture, SV_GL.TEXTURE_WRAP_T, wrap);
}

function draw() {
    var input = SV_getSequenceTexture();
    var size = SV_getSurfaceDim(input);
    var mapTexture = SV_getParamValue(map); // the value of a layer parameter is a texture handle
    var mapSize = SV_getSurfaceDim(mapTexture);
    var tile = SV_getParamValue(fit) === 2;
    // Until the user selects a layer, its texture is a placeholder of 2 by 2 pixels.
    var chosen = mapSize[0] > 2 || mapSize[1] > 2;

    setWrap(input, EDGES[SV_getParamValue(edges) - 1]);
    setWrap(mapTexture, FITS[tile ? 1 : 0]);
    SV_setShaderParamVal(shader, "image", input);
    SV_setShaderParamVal(shader, "map", map);
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "mapScale", tile ? [size[0] / mapSize[0], size[1] / mapSize[1]] : [1, 1]);
    SV_setShaderParamVal(shader, "amount", chosen ? [SV_getParamValue(across), SV_getParamValue(down)] : [0, 0]);
    SV_setShaderParam(shader, soften);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
