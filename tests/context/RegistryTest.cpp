#include <gtest/gtest.h>

#include "context/Context.h"

namespace {

// Starts an empty registry for each test. No test needs a GL context, as parameters are plain values.
class RegistryTest : public testing::Test {
protected:
    RegistryTest() { m_Registry.Init(); }
    ~RegistryTest() override { m_Registry.Release(); }

    unsigned Declare(const std::string& name, float value = 0.0f) {
        const unsigned handle =
            m_Registry.InitResource<Parameter>(name, Parameter::FLOAT, "Label of " + name);
        Parameter& master = *m_Registry.FindOwn<Parameter>(handle);
        master.handle = handle;
        master.value.SetFloat(0, value);
        return handle;
    }

    Parameter::Value& ValueIn(unsigned sequence, unsigned handle) {
        m_Registry.SetCurrentSequence(sequence);
        return m_Registry.GetResource<Parameter>(handle).value;
    }

    Context& m_Registry = Context::Current();
};

TEST_F(RegistryTest, HandlesCountFromOneAndFreedNumbersAreReused) {
    for (const unsigned handle : {0x01000001u, 0x01000002u, 0x01000003u})
        EXPECT_EQ(Declare("early"), handle);
    const auto live = m_Registry.LiveEntities<Parameter>();
    ASSERT_EQ(live.size(), 3u);
    EXPECT_EQ(live[1], m_Registry.Find<Parameter>(0x01000002u));
    m_Registry.DeleteResource(0x01000002u);
    m_Registry.DeleteResource(0x01000002u);
    EXPECT_EQ(m_Registry.Find<Parameter>(0x01000002u), nullptr);
    EXPECT_EQ(m_Registry.LiveEntities<Parameter>().size(), 2u);
    EXPECT_EQ(Declare("second"), 0x01000002u);
    m_Registry.DeleteResource(0x01000001u);
    EXPECT_EQ(Declare("first"), 0x01000001u);
    EXPECT_EQ(m_Registry.GetParamByIdx(0).name, "first") << "parameters are in the order of their handles";
    EXPECT_EQ(m_Registry.GetParamByIdx(1).name, "second");
    EXPECT_EQ(m_Registry.GetParamByIdx(2).name, "early");
    EXPECT_EQ(&m_Registry.GetParamByIdx(3), &Parameter::invalid);
}

TEST_F(RegistryTest, LookUpsOfUnknownHandlesAndOfOtherTypesReturnTheInvalidInstance) {
    const unsigned surface = m_Registry.InitResource<Surface>(3u, 2u, 8u);
    EXPECT_EQ(surface, 0x06000001u);
    EXPECT_EQ(&m_Registry.GetResource<Texture>(surface), &Texture::invalid);
    EXPECT_EQ(&m_Registry.GetResource<Surface>(0), &Surface::invalid);
    for (const unsigned handle : {0u, 5u, 0x05000001u, 0x06000002u, 0xFE000001u})
        m_Registry.DeleteResource(handle);
    EXPECT_EQ(m_Registry.GetResource<Surface>(surface).width(), 3u);
}

TEST_F(RegistryTest, SequencesKeepTheirOwnParameterValues) {
    const unsigned handle = Declare("x", 5.0f);
    const unsigned first = m_Registry.CreateSequence(), second = m_Registry.CreateSequence();
    ValueIn(first, handle).SetFloat(0, 1.0f);
    ValueIn(second, handle).SetFloat(0, 2.0f);
    EXPECT_EQ(ValueIn(first, handle).Float(0), 1.0f);
    EXPECT_EQ(ValueIn(second, handle).Float(0), 2.0f);
    EXPECT_EQ(m_Registry.FindOwn<Parameter>(handle)->value.Float(0), 5.0f);
    m_Registry.CurrentSequence()->Init();
    EXPECT_EQ(m_Registry.CurrentSequence()->GetNumParams(), 1u);
    EXPECT_EQ(ValueIn(second, handle).Float(0), 5.0f) << "a new copy has the master's value";
    EXPECT_EQ(ValueIn(first, Declare("late", 9.0f)).Float(0), 9.0f)
        << "the master is returned when there is no copy";

    m_Registry.ReleaseSequence(first);
    for (const unsigned nowhere : {first, 1000u}) {
        EXPECT_EQ(ValueIn(nowhere, handle).Float(0), 5.0f);
        EXPECT_EQ(m_Registry.CurrentSequence(), nullptr);
    }
}

TEST_F(RegistryTest, IndicesOfReleasedSequencesAreReusedFirst) {
    EXPECT_EQ(m_Registry.CreateSequence(), 1u) << "the registry starts with sequence 0";
    for (const unsigned index : {0u, 0u, 2u, 77u}) // released twice, equal to the count, far out of range
        m_Registry.ReleaseSequence(index);
    EXPECT_EQ(m_Registry.CreateSequence(), 0u);
    EXPECT_EQ(m_Registry.CreateSequence(), 2u);
}

TEST_F(RegistryTest, LookUpsInAReleasedRegistryFindNothing) {
    const unsigned handle = Declare("x");
    m_Registry.Release();
    m_Registry.Release();
    EXPECT_EQ(m_Registry.GetNumParams(), 0u);
    EXPECT_EQ(&m_Registry.GetParamByIdx(0), &Parameter::invalid);
    EXPECT_EQ(&m_Registry.GetResource<Parameter>(handle), &Parameter::invalid);
    EXPECT_EQ(m_Registry.InitResource<Surface>(1u, 1u, 8u), 0u);
    EXPECT_EQ(m_Registry.GetErrors(), "");
    m_Registry.DeleteResource(handle);
}

TEST_F(RegistryTest, ParameterCopiesAreCompleteAndTheFirstOfTwoEqualHandlesIsFound) {
    Parameter& one = *m_Registry.FindOwn<Parameter>(Declare("one", 0.25f));
    one.flags = 0x03000008;
    one.texture = 0x04000001;
    one.choices += "|ten";
    m_Registry.FindOwn<Parameter>(Declare("twin"))->handle = one.handle;
    m_Registry.CurrentSequence()->Init();
    const Parameter& found = m_Registry.GetResource<Parameter>(one.handle);
    ASSERT_NE(&found, &one);
    EXPECT_EQ(found.label, "Label of one");
    EXPECT_EQ(found.flags, 0x03000008u);
    EXPECT_EQ(found.texture, 0x04000001u);
    EXPECT_EQ(found.value.Float(0), 0.25f);
    EXPECT_EQ(found.min.Float(0), -100.0f) << "the defaults of a new parameter";
    EXPECT_EQ(found.max.Float(0), 100.0f);
    EXPECT_EQ(found.choices, "0|1|2|3|4|5|6|7|8|9|ten");
    EXPECT_EQ(found.choiceCount, 10u);
}

} // namespace
