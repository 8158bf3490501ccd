function setup() {
}

function helper(width) {
    return missing + width;
}

function preRender(w, h) {
    helper(w);
}

function updateUIFlags() {
    null.length;
}

function draw() {
    throw new Error("no drawing today");
}
