#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "sdk/SuitesApi.h"
#include "stricthost/ViolationList.h"

namespace stricthost {

class World;

// An object of the AEGP layer that a plug-in holds.
struct AegpObject {
    enum class Kind { Effect, RenderOptions, FrameReceipt };
    Kind kind;
    A_Time time = {0, 1};   // render options
    World* world = nullptr; // frame receipts
};

// The AEGP objects that the plug-in holds. Any thread may call; one object belongs to one thread.
class AegpObjects {
public:
    explicit AegpObjects(ViolationList& violations) : m_Violations(violations) {}

    AegpObject& Create(AegpObject::Kind kind);
    // Null, with a violation, when the plug-in does not hold such an object.
    AegpObject* Find(const void* object, AegpObject::Kind kind, const std::string& who);
    void Destroy(const AegpObject& object);
    // Reports objects that were not given back.
    void CheckAtEnd();

private:
    ViolationList& m_Violations;
    std::mutex m_Mutex;
    std::unordered_map<const void*, std::unique_ptr<AegpObject>> m_Objects;
};

} // namespace stricthost
