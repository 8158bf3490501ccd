function draw() {
}
