#pragma once

#include <cstdint>
#include <string>

#include "parameters/Parameter.h"

// The strings that a host may ask for.
enum class PluginString : std::uint32_t {
    About = 0,  // text of the about box
    Name = 1,   // the effect's name
    HostId = 2, // identifier of the effect on the host side
};

// The engine as the host adapter sees it. One object serves every instance of the effect; an instance is a
// sequence, named by the opaque record that initSequenceData() makes.
//
// Threads: calls may come from any thread, but all of them outside globalSetup, resetup and lockFrame itself
// must stand between lockFrame() and releaseFrame() of the same thread when other threads may call too; calls
// that touch the GPU (resetup, render, grabIntoTexture, grabResult*) must always do so.
// Pixels are four channels in the order alpha, red, green, blue, not premultiplied, first row on top;
// "format" is the depth in bits per channel: 8 (0..255), 16 (0..32768 in, 0..65535 out) or 32 (float).
// Failures: nothing throws, except what the effect's config.xml makes the XML parser throw in globalSetup.
class IPlugin {
public:
    // Opens the effect, reads its configuration, makes the GL context and runs the script. `module` is the
    // plug-in's bundle (a CFBundleRef) or null; `path` then holds the bundle's path as narrow zero-terminated
    // text, whatever its type says. False when no GL context could be made.
    virtual bool globalSetup(void* module, const unsigned short* path) = 0;
    // Runs the script anew in an empty interpreter and registry. Always true.
    virtual bool resetup() = 0;
    // Frees script and GL context; the object can be set up again.
    virtual void release() = 0;

    // A new instance, which becomes the current one. The engine owns the record until releaseSequenceData.
    virtual void* initSequenceData() = 0;
    virtual void releaseSequenceData(void* data) = 0;
    virtual void setSequenceData(void* data) = 0;

    // One frame: begin, preRender (sizes), setParam and grabIntoTexture (inputs), render, grabResultBegin and
    // grabResultEnd (the picture), end.
    virtual bool begin(bool) = 0;
    // Asks the script for the output size in pixels; the input size where it does not care.
    virtual void preRender(unsigned width, unsigned height, unsigned& outWidth, unsigned& outHeight) = 0;
    // time in seconds, extent in pixels. The last argument, the pixel aspect, is not used.
    virtual void render(double time, unsigned width, unsigned height, unsigned format, float pixelAspect) = 0;
    virtual void end() = 0;
    // Lets the script enable and disable its parameters.
    virtual void preUIUpdate() = 0;

    // Parameters of the current instance in the order of their creation; out of range gives
    // Parameter::invalid.
    virtual unsigned getNumParams() const = 0;
    virtual Parameter& getParamDesc(unsigned index) const = 0;
    virtual Parameter& getParam(unsigned index) const = 0;
    // Replaces the value; ignored for layers, whose pixels come through grabIntoTexture.
    virtual void setParam(unsigned index, Parameter::Value& value) = 0;

    // Uploads pixels to a layer parameter, or to the effect's input for InputLayer. rowBytes is the distance
    // between rows. The pixels are not kept.
    static constexpr unsigned InputLayer = 0xFFFFFFFFu;
    virtual void grabIntoTexture(unsigned index, void* pixels, unsigned width, unsigned height,
                                 unsigned format, long rowBytes) = 0;
    // The rendered frame: tightly packed rows, the LAST row first, valid until grabResultEnd; null when
    // nothing was rendered.
    virtual void* grabResultBegin() = 0;
    virtual void grabResultEnd(void* pixels) = 0;

    // Major in bits 0-5, minor 6-13, build 14-29, stage 30-31.
    virtual std::uint32_t getVersion() = 0;
    virtual std::uint32_t getFlags() = 0;
    virtual std::uint32_t getFlags2() = 0;
    virtual std::uint32_t getPrivNum() = 0;
    virtual std::string getString(PluginString which) = 0;
    virtual unsigned getNumFeedbackFrames() = 0;
    // The collected shader errors; empty when every shader compiled.
    virtual std::string getErrorText() = 0;
    virtual bool isInputRequested() = 0;

    // Makes the engine's GL context current and takes the frame mutex (recursive). releaseFrame gives both
    // back, in the opposite order, and only when lockFrame returned true. Nested pairs leave the engine's
    // context current; whoever nests restores his own context afterwards.
    virtual bool lockFrame() = 0;
    virtual void releaseFrame() = 0;

    virtual int flatten(void* buffer) = 0;
    virtual void unflatten(void* buffer) = 0;
    virtual void showOptions(void*) = 0;

    // Size in pixels and pixel aspect of the composition; a scale outside 0.01..4 counts as 1.
    virtual void setCompositionSize(unsigned width, unsigned height, float scale) = 0;
    // Position of the input inside the output, in pixels.
    virtual void setInputOrigin(int x, int y) = 0;

protected:
    ~IPlugin() = default;
};

// The one engine object of the process, whatever the argument; lives until the module unloads.
IPlugin* GetPlugin(unsigned int = 0);
