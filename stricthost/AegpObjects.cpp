#include "stricthost/AegpObjects.h"

namespace stricthost {

namespace {

const char* NameOf(AegpObject::Kind kind) {
    switch (kind) {
    case AegpObject::Kind::Effect:
        return "effect reference";
    case AegpObject::Kind::RenderOptions:
        return "layer render options";
    case AegpObject::Kind::FrameReceipt:
        return "frame receipt";
    }
    return "object";
}

} // namespace

AegpObject& AegpObjects::Create(AegpObject::Kind kind) {
    auto object = std::make_unique<AegpObject>();
    object->kind = kind;
    AegpObject& result = *object;
    const std::lock_guard lock(m_Mutex);
    m_Objects[&result] = std::move(object);
    return result;
}

AegpObject* AegpObjects::Find(const void* object, AegpObject::Kind kind, const std::string& who) {
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Objects.find(object);
    if (found != m_Objects.end() && found->second->kind == kind)
        return found->second.get();
    m_Violations.Add(who + " used " + NameOf(kind) + " that it does not hold");
    return nullptr;
}

void AegpObjects::Destroy(const AegpObject& object) {
    const std::lock_guard lock(m_Mutex);
    m_Objects.erase(&object);
}

void AegpObjects::CheckAtEnd() {
    const std::lock_guard lock(m_Mutex);
    for (const auto& [address, object] : m_Objects)
        m_Violations.Add(std::string(NameOf(object->kind)) + " never given back");
}

} // namespace stricthost
