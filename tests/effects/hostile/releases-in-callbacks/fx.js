// Every callback releases resources and makes new ones.
var textures = [];

function replace() {
    textures.forEach(SV_release);
    textures = [SV_initRenderTarget(2, 2, 8), SV_initShader("copy"), SV_initSurface(2, 2, 8)];
}

function setup() {
    replace();
}

function preRender(w, h) {
    replace();
}

function updateUIFlags() {
    replace();
}

function draw() {
    replace();
    SV_setShaderParamVal(textures[1], "image", SV_getSequenceTexture());
    SV_renderShader(textures[1], SV_getSequenceRT(), true);
}
