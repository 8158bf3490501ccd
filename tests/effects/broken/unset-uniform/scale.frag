uniform sampler2D image;
uniform float amount;
uniform vec2 offset; // nobody sets it

void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy + offset) * amount;
}
