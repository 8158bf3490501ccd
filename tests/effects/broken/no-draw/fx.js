function setup() {
}
