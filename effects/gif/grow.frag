// Shows the small picture large; such files know only pixels that are there and pixels that are not.

uniform sampler2D pixels;
uniform sampler2D image;
uniform vec2 count;      // of the small picture's pixels
uniform float cutout;    // alpha from which a pixel is there

void main() {
    vec2 centre = (floor(gl_TexCoord[0].xy * count) + 0.5) / count;
    vec3 colour = texture2D(pixels, centre).rgb;
    float alpha = texture2D(image, centre).a;
    gl_FragColor = vec4(colour, alpha > 0.0 && alpha >= cutout ? 1.0 : 0.0);
}
