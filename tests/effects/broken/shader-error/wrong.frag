uniform sampler2D image;

void main() {
    vec4 here = texture2D(image, gl_TexCoord[0].xy);
    gl_FragColor = undeclared * here;
}
