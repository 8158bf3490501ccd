// A shader whose names are reserved words in later versions of GLSL.
var shader;

function setup() {
    shader = SV_initShader("names");
}

function draw() {
    SV_setShaderParamVal(shader, "patch", SV_getSequenceTexture());
    SV_setShaderParamVal(shader, "precise", 1);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
