uniform sampler2D image;
uniform float light;
void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * vec4(light, light, light, 1.0);
}
