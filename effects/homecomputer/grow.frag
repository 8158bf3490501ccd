// Enlarges the small picture and takes the alpha of the layer.

uniform sampler2D pixels;
uniform sampler2D image;
uniform vec2 count;        // number of pixels of the small picture
uniform float scanlines;   // darkness of the gaps between rows, 0..1

void main() {
    vec2 place = gl_TexCoord[0].xy;
    vec2 centre = (floor(place * count) + 0.5) / count;
    vec3 colour = texture2D(pixels, centre).rgb;
    float row = abs(fract(place.y * count.y) - 0.5) * 2.0;
    float alpha = texture2D(image, centre).a;
    gl_FragColor = vec4(colour * (1.0 - scanlines * smoothstep(0.4, 0.9, row)), step(0.5, alpha));
}
