#include <gtest/gtest.h>

#include "context/Context.h"

namespace {

// An empty, started registry for each test. Nothing here needs a GL context: parameters are plain values.
class RegistryTest : public testing::Test {
protected:
    RegistryTest() { m_Registry.Init(); }
    ~RegistryTest() override { m_Registry.Release(); }

    unsigned Declare(const std::string& name, Parameter::Type type = Parameter::FLOAT, float value = 0.0f) {
        const unsigned handle = m_Registry.InitResource<Parameter>(name, type, "Label of " + name);
        Parameter& master = m_Registry.GetOwnResource<Parameter>(handle);
        master.handle = handle;
        master.value.SetFloat(0, value);
        return handle;
    }

    float ValueIn(unsigned sequence, unsigned handle) {
        m_Registry.SetCurrentSequence(sequence);
        return m_Registry.GetResource<Parameter>(handle).value.Float(0);
    }

    Context& m_Registry = Context::Current();
};

TEST_F(RegistryTest, HandlesCountFromOneAndFreedNumbersComeBack) {
    EXPECT_EQ(Declare("a"), 0x01000001u);
    EXPECT_EQ(Declare("b"), 0x01000002u);
    EXPECT_EQ(Declare("c"), 0x01000003u);
    m_Registry.DeleteResource(0x01000002u);
    m_Registry.DeleteResource(0x01000002u);
    EXPECT_EQ(m_Registry.GetResource<Parameter>(0x01000002u).handle, 0u);
    EXPECT_EQ(Declare("d"), 0x01000002u);
    m_Registry.DeleteResource(0x01000001u);
    EXPECT_EQ(Declare("e"), 0x01000001u);
    EXPECT_EQ(m_Registry.GetParamByIdx(0).name, "e") << "the order is that of the handles";
    EXPECT_EQ(m_Registry.GetParamByIdx(1).name, "d");
    EXPECT_EQ(m_Registry.GetNumParams(), 3u);
    EXPECT_EQ(&m_Registry.GetParamByIdx(3), &Parameter::invalid);
}

TEST_F(RegistryTest, HandlesOfOtherTypesAndUnknownOnesFindNothing) {
    const unsigned surface = m_Registry.InitResource<Surface>(3u, 2u, 8u);
    EXPECT_EQ(surface, 0x06000001u);
    EXPECT_EQ(m_Registry.GetResource<Surface>(surface).width(), 3u);
    EXPECT_EQ(&m_Registry.GetResource<Texture>(surface), &Texture::invalid);
    EXPECT_EQ(&m_Registry.GetResource<Surface>(0), &Surface::invalid);
    for (const unsigned handle : {0u, 5u, 0x05000001u, 0x06000002u, 0xFF000001u})
        m_Registry.DeleteResource(handle);
    EXPECT_EQ(m_Registry.GetResource<Surface>(surface).width(), 3u);
}

TEST_F(RegistryTest, ParametersAreBornWithTheirDefaults) {
    const Parameter& fresh = m_Registry.GetOwnResource<Parameter>(Declare("x"));
    EXPECT_EQ(fresh.label, "Label of x");
    EXPECT_EQ(fresh.min.Float(0), -100.0f);
    EXPECT_EQ(fresh.max.Float(0), 100.0f);
    EXPECT_EQ(fresh.choices, "0|1|2|3|4|5|6|7|8|9");
    EXPECT_EQ(fresh.choiceCount, 10u);
    EXPECT_EQ(fresh.flags, 0u);
    EXPECT_EQ(fresh.texture, 0u);
}

TEST_F(RegistryTest, EverySequenceKeepsItsOwnValues) {
    const unsigned handle = Declare("x", Parameter::FLOAT, 5.0f);
    const unsigned first = m_Registry.CreateSequence();
    const unsigned second = m_Registry.CreateSequence();
    m_Registry.SetCurrentSequence(first);
    m_Registry.GetResource<Parameter>(handle).value.SetFloat(0, 1.0f);
    m_Registry.SetCurrentSequence(second);
    m_Registry.GetResource<Parameter>(handle).value.SetFloat(0, 2.0f);
    EXPECT_EQ(ValueIn(first, handle), 1.0f);
    EXPECT_EQ(ValueIn(second, handle), 2.0f);
    EXPECT_EQ(m_Registry.GetOwnResource<Parameter>(handle).value.Float(0), 5.0f);
    m_Registry.CurrentSequence()->Init();
    EXPECT_EQ(ValueIn(second, handle), 5.0f) << "a fresh copy takes the master's value";
    const unsigned late = Declare("y", Parameter::FLOAT, 9.0f);
    EXPECT_EQ(ValueIn(first, late), 9.0f) << "without a copy the master answers";
}

TEST_F(RegistryTest, ReleasedSequencesLeaveHolesThatAreFilledFirst) {
    EXPECT_EQ(m_Registry.CreateSequence(), 1u) << "the registry starts with sequence 0";
    m_Registry.ReleaseSequence(0);
    m_Registry.ReleaseSequence(0);
    m_Registry.ReleaseSequence(2); // as many as there are
    m_Registry.ReleaseSequence(77);
    EXPECT_EQ(m_Registry.CreateSequence(), 0u);
    EXPECT_EQ(m_Registry.CreateSequence(), 2u);
}

TEST_F(RegistryTest, LookUpsWithoutASequenceFallBackToTheMasters) {
    const unsigned handle = Declare("x", Parameter::FLOAT, 5.0f);
    const unsigned hole = m_Registry.CreateSequence();
    m_Registry.ReleaseSequence(hole);
    EXPECT_EQ(ValueIn(hole, handle), 5.0f);
    EXPECT_EQ(ValueIn(1000, handle), 5.0f);
    EXPECT_EQ(m_Registry.CurrentSequence(), nullptr);
}

TEST_F(RegistryTest, AReleasedRegistryAnswersEverythingWithNothing) {
    const unsigned handle = Declare("x");
    m_Registry.Release();
    m_Registry.Release();
    EXPECT_EQ(m_Registry.GetNumParams(), 0u);
    EXPECT_EQ(&m_Registry.GetParamByIdx(0), &Parameter::invalid);
    EXPECT_EQ(&m_Registry.GetResource<Parameter>(handle), &Parameter::invalid);
    EXPECT_EQ(&m_Registry.GetResource<Shader>(0x02000001u), &Shader::invalid);
    EXPECT_EQ(m_Registry.InitResource<Surface>(1u, 1u, 8u), 0u);
    EXPECT_EQ(m_Registry.GetErrors(), "");
    m_Registry.DeleteResource(handle);
    m_Registry.Init();
    EXPECT_EQ(Declare("again"), 0x01000001u);
}

// A holder in the order that the test gives.
class ListHolder final : public ParametersHolder {
public:
    explicit ListHolder(std::vector<Parameter> list) : m_List(std::move(list)) {}
    unsigned GetNumParams() const override { return static_cast<unsigned>(m_List.size()); }
    Parameter& GetParamByIdx(unsigned index) const override { return m_List[index]; }

private:
    mutable std::vector<Parameter> m_List;
};

class CopyHolder final : public ParametersHolder {};

TEST(ParametersHolderTest, CopiesAreCompleteAndTheFirstOfTwoHandlesIsFound) {
    Parameter first("one", Parameter::COLOR, "One");
    first.handle = 7;
    first.flags = 0x03000008;
    first.texture = 0x04000001;
    first.value.SetFloat(3, 0.25f);
    first.choices = "a|b";
    first.choiceCount = 2;
    Parameter twin("two", Parameter::FLOAT, "Two");
    twin.handle = 7;
    ListHolder source({first, twin});
    CopyHolder copy;
    copy.CloneFrom(source);
    copy.CloneFrom(source);
    ASSERT_EQ(copy.GetNumParams(), 2u);
    const Parameter& found = copy.GetParamById(7);
    EXPECT_EQ(&found, &copy.GetParamByIdx(0));
    EXPECT_EQ(found.label, "One");
    EXPECT_EQ(found.flags, 0x03000008u);
    EXPECT_EQ(found.texture, 0x04000001u);
    EXPECT_EQ(found.value.Float(3), 0.25f);
    EXPECT_EQ(found.choices, "a|b");
    EXPECT_EQ(&copy.GetParamByIdx(2), &Parameter::invalid);
    EXPECT_EQ(&copy.GetParamById(8), &Parameter::invalid);
}

} // namespace
