uniform sampler2D image;
uniform vec2 size;      // size of the picture, in pixels
uniform vec2 middle;    // where the mirrors meet, in pixels from the top left
uniform int mode;       // entry of the pop-up, from 1
uniform float sectors;  // number of sectors of the kaleidoscope
uniform float turn;     // rotation of the kaleidoscope, in degrees

const float PI = 3.14159265;

vec2 kaleidoscope(vec2 from) {
    float wedge = 2.0 * PI / sectors;
    float angle = mod(atan(from.y, from.x) + radians(turn), wedge);
    angle = abs(angle - 0.5 * wedge) - radians(turn);
    return length(from) * vec2(cos(angle), sin(angle));
}

void main() {
    vec2 pixel = gl_TexCoord[0].xy * size;
    vec2 from = pixel - middle;
    if (mode == 1 || mode == 3) {
        pixel.x = size.x - pixel.x;
    }
    if (mode == 2 || mode == 3) {
        pixel.y = size.y - pixel.y;
    }
    if (mode == 4 || mode == 6) {
        pixel.x = middle.x - abs(from.x);
    }
    if (mode == 5 || mode == 6) {
        pixel.y = middle.y - abs(from.y);
    }
    if (mode == 7) {
        pixel = middle + kaleidoscope(from);
    }
    gl_FragColor = texture2D(image, pixel / size);
}
