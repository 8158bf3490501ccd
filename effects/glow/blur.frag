// One direction of a Gaussian blur of light.

uniform sampler2D image;
uniform vec2 stride;    // distance of neighbouring texels, in texture coordinates
uniform float radius;   // texels

void main() {
    float sigma = max(radius * 0.5, 0.01);
    float reach = ceil(3.0 * sigma);
    vec4 sum = vec4(0.0);
    float total = 0.0;
    for (float i = -reach; i <= reach; i += 1.0) {
        float weight = exp(-0.5 * i * i / (sigma * sigma));
        sum += weight * texture2D(image, gl_TexCoord[0].xy + i * stride);
        total += weight;
    }
    gl_FragColor = sum / total;
}
