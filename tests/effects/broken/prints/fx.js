function setup() {}
function draw() {
    var size = SV_getSurfaceDim(SV_getSequenceRT());
    console.log(size[0], { a: [1] });
}
