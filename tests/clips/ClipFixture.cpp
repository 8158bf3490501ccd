#include "tests/clips/ClipFixture.h"

#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

#ifdef __SANITIZE_THREAD__
// The image library has started threads when the tests start processes.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options() {
    return "die_after_fork=0";
}
#endif

using namespace fxhost;

std::vector<Parameter> NegativeRenderer::parameters() {
    return {Parameter("Amount", Parameter::FLOAT, "Amount")};
}

Picture NegativeRenderer::render(const FrameInputs& request) {
    beforeFrame();
    times.push_back(request.time);
    amounts.push_back(request.settings.empty() ? 0 : request.settings[0].value.Float(0));
    Picture picture = request.input;
    for (std::size_t i = 0; picture.depth == 8 && i < picture.bytes.size(); ++i)
        if (i % 4 != 0)
            picture.bytes[i] = static_cast<std::uint8_t>(255 - picture.bytes[i]);
    return picture;
}

int ClipFixture::run(ClipOptions options, const std::string& input, const std::string& output) {
    options.quiet = true;
    ClipRequest request = m_Request;
    const auto path = [&](const std::string& name) { return name.empty() || name == "-" ? name : at(name); };
    request.input = path(input);
    request.output = path(output);
    Clip clip(options, request);
    const auto animation = ReadAnimation(options.keys, m_Settings, m_Renderer.parameters(), clip.rate());
    return clip.run(m_Renderer, animation, {}, m_HasFailed);
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
