uniform sampler2D image;
uniform vec3 tint;
uniform float turn;

void main() {
    vec4 here = texture2D(image, gl_TexCoord[0].xy);
    gl_FragColor = vec4(here.rgb * tint * turn, here.a);
}
