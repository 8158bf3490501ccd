#include "context/Context.h"

#include <algorithm>
#include <iterator>

#include "utils/Utils.h"

Context& Context::Current() {
    static Context context;
    return context;
}

Context::~Context() {
    Release();
}

unsigned int Context::GetNumParams() const {
    auto* const factory = FindFactory<Parameter>();
    return factory ? static_cast<unsigned int>(factory->Entities().size()) : 0;
}

Parameter& Context::GetParamByIdx(unsigned int index) const {
    auto* const factory = FindFactory<Parameter>();
    if (!factory || index >= factory->Entities().size())
        return Parameter::invalid;
    return std::next(factory->Entities().begin(), index)->second;
}

void Context::Init() {
    m_Factories[Parameter::Tag] = std::make_unique<Parameter::Factory>();
    m_Factories[RenderTarget::Tag] = std::make_unique<RenderTarget::Factory>();
    m_Factories[Texture::Tag] = std::make_unique<Texture::Factory>();
    m_Factories[Shader::Tag] = std::make_unique<Shader::Factory>();
    m_Factories[Surface::Tag] = std::make_unique<Surface::Factory>();
    Shader::s_GlobalParameters = this;
    Shader::s_ResourceDirectory = &m_ResourceDirectory;
    m_CurrentSequence = 0;
    CreateSequence();
    CurrentSequence()->ClearFrame();
    m_Initialised = true;
}

void Context::Release() {
    if (!m_Initialised)
        return;
    m_Sequences.clear();
    m_Factories.clear();
    Shader::s_GlobalParameters = nullptr;
    Shader::s_ResourceDirectory = nullptr;
    m_Initialised = false;
}

unsigned int Context::CreateSequence() {
    auto sequence = std::make_unique<Sequence>(*this);
    sequence->Init();
    const auto hole = std::find(m_Sequences.begin(), m_Sequences.end(), nullptr);
    const auto index = static_cast<unsigned int>(hole - m_Sequences.begin());
    if (hole != m_Sequences.end())
        *hole = std::move(sequence);
    else
        m_Sequences.push_back(std::move(sequence));
    return index;
}

void Context::ReleaseSequence(unsigned int index) {
    if (Sequence* const sequence = FindSequence(index)) {
        sequence->FreeStorage();
        m_Sequences[index].reset();
    }
}

Sequence* Context::FindSequence(unsigned int index) const {
    return index < m_Sequences.size() ? m_Sequences[index].get() : nullptr;
}

void Context::DeleteResource(unsigned int handle) {
    const auto factory = m_Factories.find(handle & TagMask);
    if (factory != m_Factories.end())
        factory->second->Delete(handle);
}

std::string Context::GetErrors(ErrorLines lines) const {
    std::string errors;
    auto* const factory = FindFactory<Shader>();
    if (!factory)
        return errors;
    for (const auto& [handle, shader] : factory->Entities()) {
        if (shader.errorText().empty())
            continue;
        const std::wstring& file = shader.filePath().empty() ? shader.name() : shader.filePath();
        errors += "Shader \"" + Utils::ToNarrow(file) + "\"\n";
        errors += (lines == ErrorLines::Author ? shader.authorErrorText() : shader.errorText()) + "\n";
    }
    return errors;
}

void Context::SetCompositionSize(unsigned int width, unsigned int height, float scale) {
    m_CompositionWidth = width;
    m_CompositionHeight = height;
    m_CompositionScale = scale;
}
