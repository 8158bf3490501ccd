uniform sampler2D image;
uniform float phase;
void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * vec4(fract(phase));
}
