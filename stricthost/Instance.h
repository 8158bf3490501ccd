#pragma once

#include <cstdint>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "stricthost/Frame.h"
#include "stricthost/ParamTable.h"

namespace stricthost {

class HostCore;
class StrictHost;
struct Call;

// A command other than a rendering one that the plug-in answered with an error.
class CommandError : public std::runtime_error {
public:
    CommandError(PF_Cmd command, PF_Err code, const std::string& message);
    PF_Err Code() const { return m_Code; }

private:
    PF_Err m_Code;
};

// The effect applied to a layer. Owned by its host. Several threads may use different instances at once;
// commands to one instance wait for each other. Every use after Delete throws std::logic_error.
class Instance {
public:
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    // What a copy in the host does: the data is flattened, the original set up again from it, and the new
    // instance from a copy of its bytes. Values are copied. Throws CommandError.
    Instance& Duplicate();
    // What closing and opening a project does: flattened, kept as bytes, set down and set up again from them.
    // Gives the bytes. Throws CommandError.
    std::vector<char> SaveAndReopen();
    // Sends sequence set-down. Throws CommandError; the instance is gone all the same.
    void Delete();
    bool IsDeleted() const { return m_Deleted; }

    // index: of the host, from 1. Throws std::invalid_argument for an index or a kind that does not fit.
    void SetValue(std::size_t index, const ParamValue& value);
    const ParamValue& Value(std::size_t index) const;
    // As last told by the plug-in.
    const std::string& Label(std::size_t index) const;
    bool IsEnabled(std::size_t index) const;

    // The size of the layer in pixels at full resolution, as user interface and set-up commands tell it.
    void SetLayerSize(A_long width, A_long height);

    // Asks the plug-in to refresh its controls. Hosts send it when they first show an instance.
    PF_Err UpdateUI();
    // Tells it that the user changed a parameter, and takes over the values that it changes in turn.
    PF_Err UserChanged(std::size_t index);
    // The flags that the last user interface or set-up command left.
    PF_OutFlags LastOutFlags() const { return m_LastOutFlags; }

    // Renders one frame with the commands of the host's personality. Throws std::invalid_argument for a
    // request that no host makes; errors of the plug-in are in the result.
    FrameResult Render(const FrameRequest& request);

    // For the host's own parts, during a command:
    PF_ParamDef Definition(A_long index, const PF_InData& in) const;
    std::vector<PF_ParamDef> Definitions(const PF_InData& in) const;
    LayerValue Layer(A_long index) const;
    ColorValue Color(A_long index) const;
    void SetLook(A_long index, const PF_ParamDef& def);
    void FillIn(PF_InData& in) const;
    HostCore& Host() const { return m_Core; }

private:
    friend class StrictHost;
    Instance(StrictHost& owner, HostCore& core, A_long width, A_long height);

    void SetUp();
    void SetUpFrom(PF_Handle flat);
    void Flatten();
    void Resetup();
    void SetDown();
    void Check(const Call& call, PF_Err err);
    void TakeSequence(const Call& call);
    PF_Err SendUi(Call& call, void* extra);
    FrameResult RenderOnce(const FrameRequest& request, std::uint32_t seed,
                           std::vector<std::uint32_t>& unwritten);
    void RequireLive() const;
    void RequireParam(std::size_t index) const;

    struct Look {
        std::string label;
        PF_ParamUIFlags uiFlags;
    };

    StrictHost& m_Owner;
    HostCore& m_Core;
    std::mutex m_Mutex;
    PF_Handle m_Sequence = nullptr;
    A_long m_Width;
    A_long m_Height;
    std::vector<ParamValue> m_Values;
    std::vector<Look> m_Looks;
    PF_OutFlags m_LastOutFlags = 0;
    bool m_Deleted = false;
};

} // namespace stricthost
