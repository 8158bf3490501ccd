// Computes the tone of each block, from 0 (ink) to 1 (paper), and applies the halftone screen to it.

uniform sampler2D image;
uniform vec2 size;        // size of the target, in pixels
uniform float taps;       // samples along each side of a block
uniform float threshold;  // this tone is moved to one half
uniform float contrast;
uniform int screen;       // 0 none, 1 dots, 2 lines
uniform float dotSize;    // distance of neighbouring dots, in pixels
uniform float angle;      // degrees

float toneAt(vec2 place) {
    vec2 block = 1.0 / size;
    float sum = 0.0;
    for (float y = 0.5; y < taps; y += 1.0) {
        for (float x = 0.5; x < taps; x += 1.0) {
            vec4 colour = texture2D(image, place + block * (vec2(x, y) / taps - 0.5));
            // A transparent block is bare paper.
            sum += mix(1.0, dot(colour.rgb, vec3(0.299, 0.587, 0.114)), colour.a);
        }
    }
    return clamp(sum / (taps * taps), 0.0, 1.0);
}

// Returns the tone below which the screen prints ink at this place. All tones from 0 to 1 occur equally often.
float screenAt(vec2 pixel) {
    float turn = radians(angle);
    vec2 p = mat2(cos(turn), -sin(turn), sin(turn), cos(turn)) * pixel / dotSize;
    if (screen == 2) {
        return abs(fract(p.y) - 0.5) * 2.0;
    }
    vec2 wave = cos(6.2832 * p);
    float height = 0.25 * (wave.x + wave.y) + 0.5;
    // Dots grow from one corner of each cell, holes from the opposite corner. This makes their areas equal.
    return smoothstep(0.0, 1.0, height) * 0.5 + height * 0.5;
}

void main() {
    vec2 place = gl_TexCoord[0].xy;
    float tone = clamp((toneAt(place) - threshold) * contrast + 0.5, 0.0, 1.0);
    if (screen != 0) {
        tone = tone > screenAt(place * size) ? 1.0 : 0.0;
    }
    gl_FragColor = vec4(tone, tone, tone, 1.0);
}
