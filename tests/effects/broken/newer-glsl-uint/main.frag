uniform sampler2D image;
void main() {
    uint one = uint(1);
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * float(one);
}
