uniform sampler2D patch;
uniform float precise;

vec4 subroutine(vec2 sample) {
    return texture2D(patch, sample) * precise;
}

void main() {
    gl_FragColor = subroutine(gl_TexCoord[0].xy);
}
