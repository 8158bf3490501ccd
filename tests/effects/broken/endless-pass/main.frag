uniform sampler2D image;
void main() {
    float sum = 0.0;
    for (int i = 0; i < 60000; i++) // two loops, because some drivers end a loop after many steps
        for (int j = 0; j < 60000; j++)
            sum += sin(sum + gl_TexCoord[0].x);
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * sum;
}
