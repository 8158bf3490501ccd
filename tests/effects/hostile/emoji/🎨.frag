uniform float level; // 🎨

void main() {
    gl_FragColor = vec4(level / 100.0);
}
