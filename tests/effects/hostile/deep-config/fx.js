function setup() {}

function draw() {}
