uniform sampler2D image;
void main() {
    int odd = 7 & 1;
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * float(odd);
}
