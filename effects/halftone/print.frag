uniform sampler2D bits;
uniform sampler2D image;
uniform vec4 paper;
uniform vec4 ink;

void main() {
    vec2 place = gl_TexCoord[0].xy;
    vec4 colour = mix(ink, paper, texture2D(bits, place).r);
    float alpha = texture2D(image, place).a;
    gl_FragColor = vec4(colour.rgb, colour.a * alpha);
}
