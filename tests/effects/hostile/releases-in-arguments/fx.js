// Converting an argument releases the resources that the call uses.
function releasing(handles) {
    return { valueOf: function () { handles.forEach(SV_release); return 1; } };
}

function setup() {}

function draw() {
    var target = SV_initRenderTarget(4, 4, 8), surface = SV_textureToSurface(target), shader = SV_initShader("copy");
    var edge = releasing([shader, target]);
    SV_setShaderParamVal(shader, "image", releasing([shader]));
    SV_renderShader(shader, target, true, [edge, edge, edge, edge]);
    SV_surfaceQuantize(surface, 0, releasing([surface]), 3, 0, false);
    SV_surfaceCopyTo(surface, target, true);
    SV_setParamValue(SV_initParam("x", SV_Type.COLOR), [1, releasing([0x01000001]), 3, 4]);
}
