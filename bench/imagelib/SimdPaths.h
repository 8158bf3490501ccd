#pragma once

#include "bench/imagelib/Bench.h"

// Compares each SIMD path with the next slower one, algorithm by algorithm, on one thread. An instruction set
// has to be 1.3 times as fast as its neighbour to be worth its code.
void MeasureSimdPaths(Bench& bench);
