#include "validate/Trial.h"

namespace validate {

Trial::Trial(TestRun& run, const stricthost::Options& options, std::string where)
    : m_Run(run), m_Where(std::move(where)), m_MayInterrupt(options.interruptAt != 0) {
    m_Where += (m_Where.empty() ? "in " : ", in ") + std::string(NameOf(options.personality));
    m_Host = std::make_unique<stricthost::StrictHost>(run.Entry(), options);
    try {
        m_Host->GlobalSetup();
        m_Host->ParamsSetup();
    } catch (const stricthost::CommandError& error) {
        throw std::runtime_error(std::string(error.what()) + " (" + m_Where + ")");
    }
}

Trial::~Trial() {
    m_Host->Finish();
    for (const std::string& violation : m_Host->Violations())
        Fail(violation);
}

void Trial::Fail(const std::string& text) {
    m_Run.Fail(text + " (" + m_Where + ")");
}

stricthost::Instance& Trial::Apply(unsigned width, unsigned height) {
    stricthost::Instance& instance =
        m_Host->NewInstance(static_cast<A_long>(width), static_cast<A_long>(height));
    if (const PF_Err err = instance.UpdateUI(); err != PF_Err_NONE)
        Fail("UPDATE_PARAMS_UI returned error " + std::to_string(err));
    return instance;
}

fxhost::Picture Trial::Render(stricthost::Instance& instance, const stricthost::FrameSpec& spec) {
    const stricthost::FrameResult result = instance.Render(spec);
    if (result.error != PF_Err_NONE && !(m_MayInterrupt && result.error == PF_Interrupt_CANCEL))
        Fail("rendering returned error " + std::to_string(result.error) +
             (result.message.empty() ? "" : ": " + result.message));
    return result.picture;
}

void Trial::ExpectSame(const fxhost::Picture& got, const fxhost::Picture& expected, const std::string& what) {
    if (got.width != expected.width || got.height != expected.height || got.depth != expected.depth)
        return Fail("the picture has another size or depth " + what);
    if (got.bytes == expected.bytes)
        return;
    std::size_t i = 0;
    while (got.bytes[i] == expected.bytes[i])
        ++i;
    const std::size_t pixel = i / (got.depth / 2);
    Fail("the picture differs " + what + ", first at (" + std::to_string(pixel % got.width) + ", " +
         std::to_string(pixel / got.width) + ")");
}

stricthost::FrameSpec FrameOf(const fxhost::Picture& input, A_long time) {
    stricthost::FrameSpec spec;
    spec.input = &input;
    spec.time = time;
    return spec;
}

} // namespace validate
