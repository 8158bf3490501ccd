// Mirror: moves pixels without changing their values. Colour and alpha move together.

var mode, centre, segments, turn; // parameters
var shader;
var MIDDLE = 50 / 65536; // default of a 2-D point: percent of the layer, divided by 65536

function setup() {
    mode = SV_initParam("mode", SV_Type.POPUP, "Mode");
    SV_setParamChoices(mode, "Flip Horizontal|Flip Vertical|Flip Both|Mirror Left Half|Mirror Upper Half|Mirror Quarter|Kaleidoscope");
    SV_setParamValue(mode, 4);

    centre = SV_initParam("centre", SV_Type.POINT2D, "Centre");
    SV_setParamValue(centre, [MIDDLE, MIDDLE]);

    segments = SV_initParam("segments", SV_Type.FLOAT, "Segments");
    SV_setParamMinMax(segments, 2, 24);
    SV_setParamValue(segments, 6);
    SV_setParamPrecision(segments, 0);

    turn = SV_initParam("turn", SV_Type.ANGLE, "Turn");
    SV_setParamValue(turn, 0);

    shader = SV_initShader("mirror");
}

// The host calls this when a value changed. It disables the controls that the selected mode does not use.
function updateUIFlags() {
    var chosen = SV_getParamValue(mode);
    SV_setParamEnabled(centre, chosen > 3 ? 1 : 0);
    SV_setParamEnabled(segments, chosen === 7 ? 1 : 0);
    SV_setParamEnabled(turn, chosen === 7 ? 1 : 0);
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
    SV_setShaderParamVal(shader, "size", [size[0], size[1]]);
    SV_setShaderParamVal(shader, "middle", centreInPixels(size));
    SV_setShaderParamVal(shader, "sectors", Math.round(SV_getParamValue(segments)));
    SV_setShaderParam(shader, mode);
    SV_setShaderParam(shader, turn);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
