// This effect keeps its size, so it needs no preRender.
function setup() {
}

function draw() {
}
