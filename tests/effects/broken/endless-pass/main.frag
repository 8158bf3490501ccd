uniform sampler2D image;
void main() {
    vec4 sum = vec4(0.0);
    for (int i = 0; i < 60000; i++) // two loops with a long body, because some drivers end a loop after many steps
        for (int j = 0; j < 60000; j++) {
            sum += sin(sum + cos(sum * 3.0) + exp(sin(sum)) + pow(abs(sum), vec4(1.3)));
            sum += sin(sum * 5.0 + cos(sum * 7.0) + exp(cos(sum)) + pow(abs(sum), vec4(1.7)));
            sum += texture2D(image, sum.xy) + texture2D(image, sum.yz) + texture2D(image, sum.zw);
            sum += texture2D(image, sum.wx) + texture2D(image, sum.xz) + texture2D(image, sum.yw);
        }
    gl_FragColor = texture2D(image, gl_TexCoord[0].xy) * sum;
}
