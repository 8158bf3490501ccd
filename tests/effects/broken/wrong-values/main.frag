uniform sampler2D image;
uniform vec3 weights;
void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * vec4(weights / 3.0, 1.0);
}
