function setup() {}
function draw() {}
let shader;
