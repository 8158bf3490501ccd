// One direction of a Gaussian blur.

uniform sampler2D image;
uniform vec2 stride;   // distance of neighbouring texels, in texture coordinates; (0, 0) changes nothing
uniform float radius;  // texels
uniform bool weigh;    // true weights colours by alpha, so that invisible colours do not bleed into the edges

void main() {
    float sigma = max(radius * 0.5, 0.01);
    float reach = stride == vec2(0.0) ? 0.0 : ceil(3.0 * sigma);
    vec4 sum = vec4(0.0);
    float total = 0.0;
    for (float i = -reach; i <= reach; i += 1.0) {
        float weight = exp(-0.5 * i * i / (sigma * sigma));
        vec4 colour = texture2D(image, gl_TexCoord[0].xy + i * stride);
        sum += weight * (weigh ? vec4(colour.rgb * colour.a, colour.a) : colour);
        total += weight;
    }
    vec4 mean = sum / total;
    if (weigh) {
        mean.rgb = mean.a > 0.0 ? mean.rgb / mean.a : vec3(0.0);
    }
    gl_FragColor = mean;
}
