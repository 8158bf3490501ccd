// Names and texts with characters above U+FFFF.
var shader, level;

function setup() {
    level = SV_initParam("level", SV_Type.FLOAT, "\uD83C\uDFA8 level");
    SV_setParamChoices(SV_initParam("choice", SV_Type.POPUP, "\uD83C"), "🎨|🖌");
    shader = SV_initShader("🎨");
}

function draw() {
    SV_setShaderParam(shader, level);
    SV_renderShader(shader, SV_getSequenceRT(), true);
}
