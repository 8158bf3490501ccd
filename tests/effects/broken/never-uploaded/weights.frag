uniform sampler2D image;
uniform float weights[4];
uniform mat3 colours;

void main() {
    vec4 here = texture2D(image, gl_TexCoord[0].xy);
    gl_FragColor = vec4(colours * here.rgb * weights[2], here.a);
}
