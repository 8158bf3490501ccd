uniform sampler2D image;
uniform vec2 size;     // size of the output, in pixels
uniform float clock;   // seconds times speed
uniform float scale;   // length of a wave, in pixels
uniform float detail;  // strength of the small waves, 0..1
uniform float bands;   // number of repetitions of the colours
uniform vec4 low;
uniform vec4 middle;
uniform vec4 high;
uniform float cover;   // opacity of the plasma: 0 shows only the layer
uniform bool mask;

// Returns waves that are distorted by other waves, about -1..1.
float waves(vec2 p) {
    float sum = 0.0;
    float total = 0.0;
    float weight = 1.0;
    for (int i = 0; i < 6; ++i) {
        p += 0.9 * sin(p.yx * 0.61 + vec2(0.0, 1.7) + 0.35 * clock * vec2(1.0, -0.8));
        p += 0.6 * sin(p.yx * 1.37 + vec2(2.3, 0.4) - 0.21 * clock);
        sum += weight * sin(p.x + 0.5 * clock + 0.7 * sin(0.43 * p.y)) * cos(0.83 * p.y - 0.3 * clock);
        total += weight;
        weight *= detail;
        p = mat2(0.8, 0.6, -0.6, 0.8) * p * 1.7 + 3.1;
    }
    return sum / total;
}

void main() {
    vec2 p = (gl_TexCoord[0].xy - 0.5) * size * 6.2832 / scale;
    float t = 0.5 - 0.5 * cos(3.1416 * bands * (0.5 + 0.75 * waves(p)));
    vec4 plasma = t < 0.5 ? mix(low, middle, smoothstep(0.0, 0.5, t)) : mix(middle, high, smoothstep(0.5, 1.0, t));

    // The operator "over" for straight alpha: colours are weighted by their coverage.
    vec4 layer = texture2D(image, gl_TexCoord[0].xy);
    float front = cover * plasma.a * (mask ? layer.a : 1.0);
    float back = layer.a * (1.0 - (mask ? cover * plasma.a : front));
    float alpha = front + back;
    gl_FragColor = alpha > 0.0 ? vec4((plasma.rgb * front + layer.rgb * back) / alpha, alpha) : vec4(0.0);
}
