#pragma once

#include "AE_Effect.h"

// A plain invert with one slider, "Amount", from 0 to 100 percent. It needs nothing but the plug-in
// interface. Supports After Effects with and without smart render, Premiere Pro, 8, 16 and 32 bits, any row
// stride.
PF_Err InvertMain(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                  void* extra);

// The formula, for pictures: value + amount * (white - 2 * value), with amount from 0 to 1.
struct InvertJob {
    PF_InData* in;
    const PF_EffectWorld* input;
    const PF_EffectWorld* output;
    int bits;       // per channel
    int alphaIndex; // of the channel that stays as it is: 0 or 3
    double amount;
};
// Writes the whole output; transparent where the output is larger than the input. Returns the interruption of
// the user, if any.
PF_Err InvertPixels(const InvertJob& job);
