uniform sampler2D image;
uniform sampler2D map;
uniform vec2 size;      // size of the picture, in pixels
uniform vec2 mapScale;  // number of repetitions of the map
uniform vec2 amount;    // largest shift, in pixels
uniform float soften;   // pixels over which the map is averaged

// The neutral value of the map is 128 of 255. Transparent parts of the map move nothing.
vec2 shiftAt(vec2 place) {
    vec4 grey = texture2D(map, place * mapScale);
    return (grey.rg - 128.0 / 255.0) * 2.0 * grey.a;
}

void main() {
    vec2 place = gl_TexCoord[0].xy;
    vec2 around = 0.5 * soften / size;
    vec2 shift = 0.4 * shiftAt(place);
    shift += 0.15 * (shiftAt(place + vec2(around.x, 0.0)) + shiftAt(place - vec2(around.x, 0.0)));
    shift += 0.15 * (shiftAt(place + vec2(0.0, around.y)) + shiftAt(place - vec2(0.0, around.y)));
    gl_FragColor = texture2D(image, place + shift * amount / size);
}
