function setup() { SV_initParam("odd", 99, "Odd"); }
function draw() {}
