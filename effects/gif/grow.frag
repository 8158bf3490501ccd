// Enlarges the small picture. Each pixel is either opaque or transparent, as in files of that kind.

uniform sampler2D pixels;
uniform sampler2D image;
uniform vec2 count;      // number of pixels of the small picture
uniform float cutout;    // pixels with less alpha become transparent

void main() {
    vec2 centre = (floor(gl_TexCoord[0].xy * count) + 0.5) / count;
    vec3 colour = texture2D(pixels, centre).rgb;
    float alpha = texture2D(image, centre).a;
    gl_FragColor = vec4(colour, alpha > 0.0 && alpha >= cutout ? 1.0 : 0.0);
}
