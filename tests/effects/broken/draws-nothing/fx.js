var shader;
function setup() { shader = SV_initShader("main"); }
function draw() {
}
