#include "tests/clips/ClipFixture.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#ifdef __SANITIZE_THREAD__
// The picture library has threads by the time that tests start processes.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options() {
    return "die_after_fork=0";
}
#endif

using namespace fxhost;
namespace fs = std::filesystem;

std::vector<Parameter> NegativeRenderer::parameters() {
    return {Parameter("Amount", Parameter::FLOAT, "Amount")};
}

Picture NegativeRenderer::render(const FrameRequest& request) {
    beforeFrame();
    times.push_back(request.time);
    amounts.push_back(request.settings.empty() ? 0 : request.settings[0].value.Float(0));
    Picture picture = request.input;
    for (std::size_t i = 0; picture.depth == 8 && i < picture.bytes.size(); ++i)
        if (i % 4 != 0)
            picture.bytes[i] = static_cast<std::uint8_t>(255 - picture.bytes[i]);
    return picture;
}

ClipFixture::ClipFixture()
    : m_Folder(fs::path(testing::TempDir()) / ("fxhost_clip_" + std::to_string(getpid()))) {
    fs::remove_all(m_Folder);
    fs::create_directories(m_Folder);
}

ClipFixture::~ClipFixture() {
    fs::remove_all(m_Folder);
}

std::string ClipFixture::bytes(const std::string& name) const {
    std::ostringstream all;
    all << std::ifstream(at(name), std::ios::binary).rdbuf();
    return all.str();
}

std::vector<std::string> ClipFixture::names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_Folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

int ClipFixture::run(ClipOptions options, const std::string& input, const std::string& output) {
    options.quiet = true;
    ClipRequest request = m_Request;
    const auto path = [&](const std::string& name) { return name.empty() || name == "-" ? name : at(name); };
    request.input = path(input);
    request.output = path(output);
    Clip clip(options, request);
    const auto animation = ReadAnimation(options, m_Settings, m_Renderer.parameters(), clip.rate());
    return clip.run(m_Renderer, animation, {}, [] {});
}

int ClipFixture::runInChild(const ClipOptions& options, const std::string& input, const std::string& output) {
    const pid_t child = fork();
    if (child == 0)
        _exit(run(options, input, output));
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

std::string ClipFixture::shell(const std::string& command) {
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        output += static_cast<char>(c);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

Picture SomePicture(unsigned width, unsigned height, unsigned depth, long number) {
    Picture picture(width, height, depth);
    const std::size_t count = std::size_t{width} * height * 4;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t value = i * 31 + static_cast<std::size_t>(number) * 57;
        if (depth == 8)
            picture.bytes[i] = static_cast<std::uint8_t>(value);
        else if (depth == 16)
            reinterpret_cast<std::uint16_t*>(picture.bytes.data())[i] =
                static_cast<std::uint16_t>(value * 97 % 32769);
        else
            reinterpret_cast<float*>(picture.bytes.data())[i] = static_cast<float>(value % 1000) / 800;
    }
    return picture;
}
