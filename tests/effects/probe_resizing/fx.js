// Shows at once what a host does wrong: the left part of the picture, `reach` pixels of the full-size layer, is
// turned to its negative by `amount`, in all channels alike; `grow` adds a border of transparent pixels.
var amount, reach, grow, shader;

function setup() {
    amount = SV_initParam("amount", SV_Type.FLOAT, "Amount");
    SV_setParamMinMax(amount, 0, 1);
    reach = SV_initParam("reach", SV_Type.FLOAT, "Reach");
    SV_setParamMinMax(reach, 0, 1000);
    SV_setParamFlags(reach, SV_ParamFlags.ScaleByWidth);
    grow = SV_initParam("grow", SV_Type.FLOAT, "Grow");
    SV_setParamMinMax(grow, -100, 100);
    shader = SV_initShader("probe");
}

function preRender(w, h) {
    var by = 2 * SV_getParamValue(grow);
    if (by !== 0)
        SV_setOutputExtent(w + by, h + by);
}

function draw() {
    var input = SV_getSequenceTexture(), size = SV_getSurfaceDim(input), target = SV_getSequenceRT();
    var full = SV_getSurfaceDim(target), border = [(full[0] - size[0]) / 2, (full[1] - size[1]) / 2];
    SV_setTextureParam(input, SV_GL.TEXTURE_MIN_FILTER, SV_GL.NEAREST);
    SV_setTextureParam(input, SV_GL.TEXTURE_MAG_FILTER, SV_GL.NEAREST);
    SV_setShaderParamVal(shader, "image", input);
    SV_setShaderParamVal(shader, "size", size.slice(0, 2));
    SV_setShaderParamVal(shader, "full", full.slice(0, 2));
    SV_setShaderParamVal(shader, "border", border);
    SV_setShaderParam(shader, amount);
    SV_setShaderParam(shader, reach);
    SV_renderShader(shader, target, true);
}
