function setup() {
    var only = SV_initParam("only", SV_Type.POPUP, "Only");
    SV_setParamChoices(only, "This");
}

function draw() {
}
