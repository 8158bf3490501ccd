function setup() {}
function draw() {}
var text = `a`;
