uniform sampler2D image;
in vec2 uv;
out vec4 colour;
void main() {
    colour = texture(image, uv);
}
