// One direction of a Gaussian blur.

uniform sampler2D image;
uniform vec2 stride;   // from one texel to the next, in texture coordinates; (0, 0) leaves the picture alone
uniform float radius;  // texels

void main() {
    float sigma = max(radius * 0.5, 0.01);
    float reach = stride == vec2(0.0) ? 0.0 : ceil(3.0 * sigma);
    vec4 sum = vec4(0.0);
    float total = 0.0;
    for (float i = -reach; i <= reach; i += 1.0) {
        float weight = exp(-0.5 * i * i / (sigma * sigma));
        vec4 colour = texture2D(image, gl_TexCoord[0].xy + i * stride);
        // Colours count by their alpha, so that what is invisible does not bleed into the edges.
        sum += weight * vec4(colour.rgb * colour.a, colour.a);
        total += weight;
    }
    gl_FragColor = sum.a > 0.0 ? vec4(sum.rgb / sum.a, sum.a / total) : vec4(0.0);
}
