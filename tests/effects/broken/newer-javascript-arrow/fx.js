function setup() {}
function draw() {}
[1].forEach(x => x);
