// Crystal Ball: a ball of glass or chrome in front of the layer. Its reflections come from an equirectangular picture,
// which the shader reads by direction.

var material, centre, radius, density, reflection, exposure, turn, tint, shadow; // parameters
var shader, surroundings;
var MIDDLE = 50 / 65536; // default of a 2-D point: percent of the layer, divided by 65536

function slider(name, label, value, low, high, digits, flags) {
    var param = SV_initParam(name, SV_Type.FLOAT, label);
    SV_setParamMinMax(param, low, high);
    SV_setParamValue(param, value);
    SV_setParamFlags(param, flags || SV_ParamFlags.NONE);
    SV_setParamPrecision(param, digits);
    return param;
}

function setup() {
    material = SV_initParam("material", SV_Type.POPUP, "Material");
    SV_setParamChoices(material, "Glass|Chrome|Pearl");
    SV_setParamValue(material, 1);
    centre = SV_initParam("centre", SV_Type.POINT2D, "Centre");
    SV_setParamValue(centre, [MIDDLE, MIDDLE]);
    radius = slider("radius", "Radius", 180, 1, 4000, 1, SV_ParamFlags.ScaleByWidth);
    density = slider("density", "Refraction", 1.5, 1, 2.5, 2);
    reflection = slider("reflection", "Reflection", 1, 0, 2, 2);
    exposure = slider("exposure", "Exposure", 0, -4, 4, 2);
    turn = SV_initParam("turn", SV_Type.ANGLE, "Turn Surroundings");
    SV_setParamValue(turn, 200);
    tint = SV_initParam("tint", SV_Type.COLOR, "Tint");
    SV_setParamValue(tint, [255, 255, 255, 255]); // the default is in bytes; the value is read as 0 to 1
    shadow = slider("shadow", "Shadow", 0.5, 0, 1, 2);

    // An image of this folder or package. A .hdr picture stores values far above white, such as the sun's.
    surroundings = SV_initTexture("/surroundings.hdr");
    // Horizontally the panorama repeats, because it is closed; vertically it ends at the poles.
    SV_setTextureParam(surroundings, SV_GL.TEXTURE_WRAP_T, SV_GL.CLAMP_TO_EDGE);
    shader = SV_initShader("ball");
}

function updateUIFlags() {
    SV_setParamEnabled(density, SV_getParamValue(material) === 1 ? 1 : 0);
}

// Returns the colour as 0 to 1, even while it still holds its default, which is in bytes.
function unit(param) {
    var value = SV_getParamValue(param);
    return value[3] > 1 ? [value[0] / 255, value[1] / 255, value[2] / 255, value[3] / 255] : value;
}

// Returns pixels once the host has set the point; the declared default means the middle of the layer.
function centreInPixels(size) {
    var point = SV_getParamValue(centre);
    return point[0] === MIDDLE && point[1] === MIDDLE ? [size[0] / 2, size[1] / 2] : point;
}

function draw() {
    var input = SV_getSequenceTexture();
    var size = SV_getSurfaceDim(input);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_S, SV_GL.MIRRORED_REPEAT);
    SV_setTextureParam(input, SV_GL.TEXTURE_WRAP_T, SV_GL.MIRRORED_REPEAT);
    SV_setShaderParamVal(shader, "image", input);
    SV_setShaderParamVal(shader, "surroundings", surroundings);
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "middle", centreInPixels(size));
    SV_setShaderParamVal(shader, "tint", unit(tint));
    SV_setShaderParam(shader, material);
    SV_setShaderParam(shader, radius);
    SV_setShaderParam(shader, density);
    SV_setShaderParam(shader, reflection);
    SV_setShaderParam(shader, exposure);
    SV_setShaderParam(shader, turn);
    SV_setShaderParam(shader, shadow);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
