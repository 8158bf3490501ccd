function setup() {
    SV_initParam("fits", SV_Type.BOOL, "Exactly thirty-one characters !");
    SV_initParam("long", SV_Type.BOOL, "Exactly thirty-two characters !!");
}

function draw() {
}
