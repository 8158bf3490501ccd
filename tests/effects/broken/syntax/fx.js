function setup() {
}

function draw( {
}
