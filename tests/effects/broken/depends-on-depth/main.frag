uniform sampler2D image;
uniform float depth;
void main() {
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * vec4(vec3(8.0 / depth), 1.0);
}
