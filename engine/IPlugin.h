#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "parameters/Parameter.h"

// The configuration texts that a host can ask for.
enum class PluginString : std::uint32_t {
    About = 0,  // text of the about box
    Name = 1,   // name of the effect
    HostId = 2, // identifier of the effect on the host's side
};

// The engine as a host adapter sees it. One object serves all instances of the effect. An instance is named
// by the sequence data that initSequenceData() returns, and most operations act on the current instance.
//
// Order of calls: globalSetup first, then initSequenceData or setSequenceData before any operation on an
// instance, and release last. One frame is lockFrame, setSequenceData, begin, setCompositionSize,
// setInputOrigin, preRender, setParam and grabIntoTexture for all parameters, grabIntoTexture for the input,
// render, grabResultBegin, grabResultEnd, end, releaseFrame.
//
// Threads: every operation can be called from any thread. The engine's state is guarded by the frame lock:
// unless only one thread uses the engine, hold it (lockFrame) around every operation that is not marked
// "takes the frame lock itself". Operations marked "needs the frame lock" use OpenGL and need it always. An
// operation that takes the lock itself makes the engine's GL context current, and the previous one
// afterwards; it does neither when its thread holds the lock already.
//
// Pixels: four channels in the order alpha, red, green, blue, with straight (unassociated) alpha. "format" is
// the depth in bits per channel: 8 (0 to 255), 16 (0 to 32768 in, 0 to 65535 out) or 32 (float). The origin
// is the upper left corner, except where rows are stated to be bottom-up.
//
// Failures: no operation throws, except that globalSetup passes on the exception of a malformed config.xml.
// Script errors are discarded (tools can observe them, see Scripting.h). Shader errors are kept, see
// getErrorText().
class IPlugin {
public:
    // Opens the effect, reads its configuration, creates the GL context and runs the script. Releases the
    // effect of an earlier call first; its instances remain and keep their values. Takes the frame lock
    // itself. `module` is the bundle of the plug-in (a CFBundleRef) or null; then `path` is the path of the
    // bundle, as zero-terminated UTF-8 text in spite of its type, or null. The caller keeps both. Returns
    // false when the GL context cannot be created. Throws ConfigError when config.xml is malformed.
    virtual bool globalSetup(void* module, const unsigned short* path) = 0;

    // Runs the script again in a new interpreter and with an empty registry, so all handles become invalid.
    // Each instance keeps the values and flags of the parameters that the script declares as before. Takes
    // the frame lock itself. Always returns true.
    virtual bool resetup() = 0;

    // Frees everything that the script created, and the GL context. No context is current afterwards. Does
    // nothing unless globalSetup succeeded. No other thread may use the engine meanwhile.
    virtual void release() = 0;

    // Creates an instance with the script's default values, makes it the current one, and returns its
    // sequence data, which is never null. The engine owns the data until releaseSequenceData. Takes the frame
    // lock itself.
    virtual void* initSequenceData() = 0;

    // Destroys an instance and its sequence data, and frees the GL memory of its frame. Null and unknown data
    // are ignored. There is no current instance afterwards when it was the current one. Takes the frame lock
    // itself.
    virtual void releaseSequenceData(void* data) = 0;

    // Makes the instance with this sequence data the current one. Null and unknown data mean no instance.
    virtual void setSequenceData(void* data) = 0;

    // Announces a frame. The flag has no effect. Always returns true.
    virtual bool begin(bool) = 0;

    // Asks the script for the size of the output, in pixels, for an input of the given size. Takes the frame
    // lock itself. Where the script does not choose a width or height, it is that of the input. Without an
    // instance outWidth and outHeight remain unchanged.
    virtual void preRender(unsigned width, unsigned height, unsigned& outWidth, unsigned& outHeight) = 0;

    // Renders a frame of the current instance: runs the script's draw(), or draws the error texts when a
    // shader has an error. Takes the frame lock itself. time: seconds; width, height: size of the output in
    // pixels. The pixel aspect ratio has no effect. Without an instance nothing happens. A picture whose size
    // or depth the script changed is brought back to the frame's.
    virtual void render(double time, unsigned width, unsigned height, unsigned format, float pixelAspect) = 0;

    // Ends the frame that begin() announced. Has no effect.
    virtual void end() = 0;

    // Lets the script enable and disable controls: runs its updateUIFlags(). Takes the frame lock itself. The
    // result is in the flags of the parameters.
    virtual void preUIUpdate() = 0;

    // Returns the number of parameters that the script declared.
    virtual unsigned getNumParams() const = 0;

    // Returns a parameter of the current instance by its index in the order of declaration, from 0, or
    // Parameter::invalid, whose handle is 0, when the index is out of range. The engine owns the parameter;
    // the reference is valid until the next operation that runs the script or ends the instance.
    virtual Parameter& getParamDesc(unsigned index) const = 0;

    // The same as getParamDesc.
    virtual Parameter& getParam(unsigned index) const = 0;

    // Replaces the value of a parameter of the current instance. Ignored for indices out of range, for layers
    // (see grabIntoTexture), and without an instance.
    virtual void setParam(unsigned index, Parameter::Value& value) = 0;

    // The index of the effect's input layer in grabIntoTexture.
    static constexpr unsigned InputLayer = 0xFFFFFFFFu;

    // Uploads pixels to the texture of a layer parameter or of the input layer. Takes the frame lock itself.
    // width, height: pixels; rowBytes: distance from a row to the one below it. The pixels are copied.
    // Ignored when pixels is null, rowBytes is 0, the parameter has no texture, or there is no instance.
    virtual void grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height,
                                 unsigned format, std::ptrdiff_t rowBytes) = 0;

    // Returns the rendered frame: rows without padding, bottom-up. Needs the frame lock, which must be held
    // until grabResultEnd. The engine owns the pixels, which are valid until grabResultEnd. Returns null when
    // there is no frame or when OpenGL cannot provide its pixels; do not call grabResultEnd then.
    virtual void* grabResultBegin() = 0;

    // Gives back the pixels that grabResultBegin returned. Needs the frame lock.
    virtual void grabResultEnd(void* pixels) = 0;

    // Returns the version in config.xml: major in bits 0 to 5, minor in bits 6 to 13, build in bits 14 to 29,
    // stage in bits 30 and 31. Missing numbers are 0.
    virtual std::uint32_t getVersion() = 0;

    // Returns the option flags that config.xml has for the host (FLAGS), 0 when missing.
    virtual std::uint32_t getFlags() = 0;

    // Returns the second word of option flags (FLAGS2), 0 when missing.
    virtual std::uint32_t getFlags2() = 0;

    // Returns the effect's private number for the host (PRIVNUM), 0 when missing.
    virtual std::uint32_t getPrivNum() = 0;

    // Returns a text of config.xml as UTF-8, empty when it is missing or unknown.
    virtual std::string getString(PluginString which) = 0;

    // Returns the number of earlier frames that the engine keeps as input. It is always 0.
    virtual unsigned getNumFeedbackFrames() = 0;

    // Returns the errors of all shaders, empty when there are none. Each error begins with a line
    // 'Shader "file"' and ends with a line feed.
    virtual std::string getErrorText() = 0;

    // Returns whether the engine needs the pixels of the input layer. It always does.
    virtual bool isInputRequested() = 0;

    // Makes the engine's GL context current on this thread, remembering the previous one, and takes the frame
    // lock, which is recursive. Waits while another thread holds the lock. Returns false without a GL context
    // or when it cannot be made current; do not call releaseFrame then.
    virtual bool lockFrame() = 0;

    // Releases the frame lock and makes the previous GL context current. Only one previous context is
    // remembered: after nested calls the engine's context stays current, and the caller restores its own.
    virtual void releaseFrame() = 0;

    // Announces that the host saves the current instance. Nothing is written to the buffer. Frees the GL
    // memory of the instance's frame, which the next frame allocates again. Takes the frame lock itself.
    // Always returns 0.
    virtual int flatten(void* buffer) = 0;

    // Announces that the host restores the current instance from the buffer of flatten(). Has no effect.
    virtual void unflatten(void* buffer) = 0;

    // Announces that the user asks for the options dialog of the effect. Has no effect.
    virtual void showOptions(void*) = 0;

    // Stores the size of the composition in pixels and its pixel aspect ratio for the script. A ratio outside
    // 0.01 to 4 counts as 1.
    virtual void setCompositionSize(unsigned width, unsigned height, float scale) = 0;

    // Stores the position of the input layer inside the output, in pixels, for the script of the current
    // instance. Ignored without an instance.
    virtual void setInputOrigin(int x, int y) = 0;

protected:
    ~IPlugin() = default;
};

// Returns the only engine object of the process. The argument has no effect. The object is created by the
// first call and lives until the module unloads; the caller does not own it.
IPlugin* GetPlugin(unsigned int = 0);
