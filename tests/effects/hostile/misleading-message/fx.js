// An error whose text looks like positions.
function setup() {}

function draw() {
    throw new SyntaxError("not here (line 70)\n    at fake (eval:80)");
}
