var shader;

function setup() {
    shader = SV_initShader("made",
        "void main() {\n    gl_FragColor = vec4(one);\n}\n");
}

function draw() {
    SV_setShaderParamVal(shader, "image", SV_getSequenceTexture());
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
