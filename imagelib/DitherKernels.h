#pragma once

#include "imagelib/Surface.h"

// Weights of the dithers as small surfaces: every entry holds one weight in all four channels.
//
// Diffusion: the first positive entry of row 0 marks the current pixel and is no weight itself. The kernels
// that stem from five-wide matrices are stored five wide but declared four wide with a stride of four
// entries; the shifted rows that this gives are the ones to use.
// Ordered: thresholds in 0..1, indexed by position and mask.
namespace ImageLib {

extern const Surface<Pixel32> FloydSteinbergKernel;
extern const Surface<Pixel32> JarvisJudiceKernel;
extern const Surface<Pixel32> StuckiKernel;
extern const Surface<Pixel32> AtkinsonKernel;
extern const Surface<Pixel32> BurkesKernel;
extern const Surface<Pixel32> SierraKernel;
extern const Surface<Pixel32> Sierra2Kernel;
extern const Surface<Pixel32> Sierra3Kernel;
extern const Surface<Pixel32> StevensonArceKernel;

extern const Surface<Pixel32> Bayer2x2Kernel;
extern const Surface<Pixel32> Bayer3x3Kernel; // no mode selects it: three is no power of two
extern const Surface<Pixel32> Bayer4x4Kernel;
extern const Surface<Pixel32> Bayer8x8Kernel;

} // namespace ImageLib
