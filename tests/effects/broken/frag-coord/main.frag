uniform sampler2D image;
uniform vec2 centre;
void main() {
    float near = step(distance(gl_FragCoord.xy, centre), 10.0);
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) + vec4(vec3(near), 0.0);
}
