// A uniform with the name of a parameter has the type of that parameter.

uniform sampler2D image;
uniform vec2 size;           // size of the picture, in pixels
uniform float contrast;
uniform vec4 tint;
uniform int blend;           // entry of the pop-up, from 1
uniform bool spotOn;
uniform vec2 spotCentre;     // pixels from the top left
uniform float spotSize;      // pixels
uniform float spotTurn;      // degrees, clockwise
uniform float relief;
uniform vec3 lamp;           // position in pixels; z points towards the viewer
uniform sampler2D cloth;     // texture of the texture parameter
uniform float weaveAmount;
uniform sampler2D inset;
uniform float insetAspect;   // width divided by height; 0 without an inset

float luma(vec3 colour) {
    return dot(colour, vec3(0.299, 0.587, 0.114));
}

float heightAt(vec2 place) {
    vec4 colour = texture2D(image, place);
    return luma(colour.rgb) * colour.a;
}

// Treats brightness as a height and returns the light of the lamp on that surface; 0 where the surface is flat.
float lit(vec2 place) {
    vec2 one = 1.0 / size;
    vec2 slope = vec2(heightAt(place + vec2(one.x, 0.0)) - heightAt(place - vec2(one.x, 0.0)),
                      heightAt(place + vec2(0.0, one.y)) - heightAt(place - vec2(0.0, one.y)));
    vec3 normal = normalize(vec3(-slope * 3.0, 1.0));
    vec3 toLamp = normalize(lamp - vec3(place * size, 0.0));
    return dot(normal, toLamp) - toLamp.z;
}

vec3 tinted(vec3 colour) {
    if (blend == 2) {
        return colour * tint.rgb;
    }
    if (blend == 3) {
        return 1.0 - (1.0 - colour) * (1.0 - tint.rgb);
    }
    if (blend == 4) {
        return colour + (2.0 * tint.rgb - 1.0) * max(colour - colour * colour, 0.0);
    }
    if (blend == 5) {
        float grey = luma(colour);
        return mix(mix(0.15 * tint.bgr, tint.rgb, min(2.0 * grey, 1.0)), vec3(1.0), max(2.0 * grey - 1.0, 0.0));
    }
    return colour;
}

// Returns a soft ellipse that is twice as long as wide.
float spotAt(vec2 pixel) {
    float a = radians(spotTurn);
    vec2 p = mat2(cos(a), -sin(a), sin(a), cos(a)) * (pixel - spotCentre) / spotSize;
    return smoothstep(1.3, 0.3, length(p * vec2(1.0, 2.0)));
}

void main() {
    vec2 place = gl_TexCoord[0].xy;
    vec2 pixel = place * size;
    vec4 colour = texture2D(image, place);

    colour.rgb = tinted((colour.rgb - 0.5) * contrast + 0.5);
    colour.rgb *= 1.0 + relief * lit(place);
    colour.rgb *= mix(1.0, 0.4 + 0.8 * texture2D(cloth, pixel / 128.0).r, weaveAmount);
    if (spotOn) {
        colour.rgb *= mix(0.62, 1.25, spotAt(pixel));
    }

    // The inset takes a third of the height, in the lower left corner, and has a thin frame.
    if (insetAspect > 0.0) {
        vec2 box = vec2(insetAspect, 1.0) * size.y / 3.0;
        vec2 from = pixel - vec2(0.04 * size.y, 0.96 * size.y - box.y);
        vec2 outside = max(-from, from - box);
        float border = max(outside.x, outside.y);
        vec4 picture = texture2D(inset, clamp(from / box, 0.0, 1.0));
        picture = vec4(mix(vec3(0.96), picture.rgb, picture.a), 1.0);
        colour = border < 0.0 ? picture : border < 4.0 ? vec4(0.96, 0.96, 0.94, 1.0) : colour;
    }
    gl_FragColor = colour;
}
