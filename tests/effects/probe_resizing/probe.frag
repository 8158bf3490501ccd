uniform sampler2D image;
uniform vec2 size;
uniform vec2 full;
uniform vec2 border;
uniform float amount;
uniform float reach;

void main() {
    vec2 at = gl_TexCoord[0].xy * full - border;
    vec4 here = texture2D(image, at / size);
    bool outside = at.x < 0.0 || at.y < 0.0 || at.x > size.x || at.y > size.y;
    vec4 changed = at.x < reach ? mix(here, 1.0 - here, amount) : here;
    gl_FragColor = outside ? vec4(0.0) : changed;
}
