#pragma once

#include "imagelib/Surface.h"

// The weights of the dithers as small surfaces: every entry holds one weight in all four channels.
//
// Error diffusion: the first positive entry of row 0 marks the current pixel and is not a weight itself. The
// kernels of five-wide matrices are stored with five entries a row but declared with a width and a stride of
// four; the shifted rows that result are intended. Ordered dithering: thresholds in 0..1 (Bayer's index
// matrices, plus one, divided by their size plus one).
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
extern const Surface<Pixel32> Bayer3x3Kernel; // selected by no mode, as three is not a power of two
extern const Surface<Pixel32> Bayer4x4Kernel;
extern const Surface<Pixel32> Bayer8x8Kernel;

} // namespace ImageLib
