#include "tests/stricthost/HostTest.h"

fxhost::Picture Gradient(unsigned width, unsigned height, unsigned depth) {
    fxhost::Picture picture(width, height, depth);
    for (std::size_t i = 0; i < picture.bytes.size(); ++i)
        picture.bytes[i] = static_cast<std::uint8_t>(i * 7 % 251);
    return picture;
}

fxhost::Picture Inverted(fxhost::Picture picture) {
    for (std::uint8_t& byte : picture.bytes)
        byte = static_cast<std::uint8_t>(~byte);
    return picture;
}

HostTest::HostTest() {
    m_Options.personality = Personality::AfterEffectsPlain;
    m_Request.input = &m_Input;
}

void HostTest::StartHost() {
    m_Host.reset();
    m_Plugin.log.clear();
    m_Host = std::make_unique<stricthost::StrictHost>(StandIn::Entry, m_Options);
    m_Host->GlobalSetup();
    m_Host->ParamsSetup();
}

Instance& HostTest::Start() {
    StartHost();
    return m_Host->NewInstance();
}

void HostTest::Finish() {
    m_Host->Finish();
    EXPECT_THAT(m_Host->Violations(), testing::IsEmpty());
}

FrameResult HostTest::RenderOnce() {
    FrameResult result = Start().Render(m_Request);
    Finish();
    return result;
}
