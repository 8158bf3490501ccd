#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "stricthost/CommandError.h"
#include "stricthost/FrameResult.h"
#include "stricthost/FrameSpec.h"
#include "stricthost/HostCall.h"
#include "stricthost/ParamTable.h"

namespace stricthost {

class HostCore;
class StrictHost;
struct HostCall;

// The effect applied to one layer, with its own parameter values and sequence data. The host owns it. Threads
// may use different instances at once; commands to one instance wait for each other. Every use after Delete
// throws std::logic_error. Indices of parameters are the host's, from 1; std::invalid_argument for others.
class Instance {
public:
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    // Copies the instance as hosts do: flattens its data, sets the original up again from the flat data, and
    // sets the copy up from a copy of the same bytes. The copy has the same values. Throws CommandError.
    Instance& Duplicate();
    // Saves, closes and reopens the project: flattens the data, keeps its bytes, sets the instance down and
    // sets it up again from the bytes. Returns the bytes. Throws CommandError.
    std::vector<char> SaveAndReopen();
    // Sends sequence set-down. Throws CommandError; the instance is deleted in that case too.
    void Delete();
    bool IsDeleted() const { return m_Deleted; }

    // Throws std::invalid_argument for a value of another kind than the parameter's.
    void SetValue(std::size_t index, const ParamValue& value);
    const ParamValue& Value(std::size_t index) const;
    // Animates a parameter: its value at a time, in seconds, is what the function returns, which must be of
    // the parameter's kind. Commands of frames and checkouts use it; SetValue ends it. Called on rendering
    // threads.
    using Animation = std::function<ParamValue(double seconds)>;
    void Animate(std::size_t index, Animation animation);
    // Label and state of the control, as the plug-in last set them.
    const std::string& Label(std::size_t index) const;
    bool IsEnabled(std::size_t index) const;

    // Size of the layer at full resolution, in pixels, for user interface and set-up commands.
    void SetLayerSize(A_long width, A_long height);

    // Asks the plug-in to refresh its controls, as hosts do when they first show an instance. Returns its
    // error.
    PF_Err UpdateUI();
    // Reports to the plug-in that the user changed a parameter, and stores the values that it changes in
    // turn. Returns its error.
    PF_Err UserChanged(std::size_t index);
    // Output flags of the last user interface or set-up command.
    PF_OutFlags LastOutFlags() const { return m_LastOutFlags; }

    // Renders one frame with the commands of the host's personality. Errors of the plug-in are in the result.
    // Throws std::invalid_argument for a frame that no host would request.
    FrameResult Render(const FrameSpec& spec);

    // For the callbacks, while a command of this instance runs:
    // Definitions hold values and labels; points are scaled by the down-sampling in `in`. Definitions() are
    // those of the command's time.
    PF_ParamDef Definition(A_long index, const PF_InData& in, HostTime time) const;
    std::vector<PF_ParamDef> Definitions(const PF_InData& in) const;
    // The value at a time, animated or not.
    ParamValue ValueAt(A_long index, HostTime time) const;
    // The same as a layer or colour; null or black when the parameter is of another kind.
    LayerValue LayerAt(A_long index, HostTime time) const;
    ColorValue ColorAt(A_long index, HostTime time) const;
    // Takes label and flags over from a definition of the plug-in.
    void SetControlState(A_long index, const PF_ParamDef& def);
    // Sequence data for rendering commands, which differs from the user interface's under some quirks.
    PF_Handle RenderData() const;
    // The data that rendering commands may read through the suite.
    PF_Handle SharedData() const { return m_HasRenderCopy ? m_RenderSequence : m_Sequence; }
    // Fills in sequence data, sizes and times.
    void FillIn(PF_InData& in) const;
    HostCore& Host() const { return m_Core; }

private:
    friend class StrictHost;
    Instance(StrictHost& owner, HostCore& core, A_long width, A_long height);

    void SetUp();
    // Sends RESETUP with this data, null for none, and stores the new data in `data`.
    void Resetup(PF_Handle& data, PF_Handle from, PF_InFlags flags = 0);
    void Flatten();
    void SetDown();
    void SetDownData(PF_Handle& data);
    // Bytes to set a copy up from; nothing for a copy without data.
    std::optional<std::vector<char>> BytesForCopy();
    std::vector<char> FlattenedCopy();
    void MakeRenderCopy();
    void Check(const HostCall& call, PF_Err err);
    void TakeSequence(const HostCall& call, PF_Handle& data);
    PF_Err SendUi(HostCall& call, void* extra);
    FrameResult RenderOnce(const FrameSpec& spec, std::uint32_t seed, std::vector<std::uint32_t>& unwritten);
    void RequireLive() const;
    void RequireParam(std::size_t index) const;

    struct ControlState {
        std::string label;
        PF_ParamUIFlags uiFlags;
    };

    StrictHost& m_Owner;
    HostCore& m_Core;
    std::mutex m_Mutex;
    PF_Handle m_Sequence = nullptr;
    PF_Handle m_RenderSequence = nullptr; // under the quirk "render-copies"
    bool m_HasRenderCopy = false;
    A_long m_Width;
    A_long m_Height;
    std::vector<ParamValue> m_Values;
    std::map<std::size_t, Animation> m_Animations;
    std::vector<ControlState> m_Controls;
    PF_OutFlags m_LastOutFlags = 0;
    bool m_Deleted = false;
};

} // namespace stricthost
