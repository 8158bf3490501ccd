uniform vec2 size;
uniform float radius;
void main() {
    gl_FragColor = vec4(step(distance(gl_TexCoord[0].xy * size, size * 0.5), radius));
}
