// Emscripten's form of the packed conversion to 32-bit integers goes number by number through the C library. This one
// gives the same in a few instructions: numbers are cut toward zero, and what doesn't fit or is not a number gives the
// smallest integer. WebAssembly's own conversion saturates instead, so that only numbers too large and those that are
// none need mending.
#pragma once

#include_next <emmintrin.h>

inline __m128i vindrelTruncatedPair(__m128d v) {
  const v128_t saturated = wasm_i32x4_trunc_sat_f64x2_zero((v128_t)v);
  const v128_t fits = wasm_f64x2_lt((v128_t)v, wasm_f64x2_splat(2147483648.0));
  const v128_t fitsInHalves = wasm_i32x4_shuffle(fits, wasm_i32x4_splat(-1), 0, 2, 4, 4);
  return (__m128i)wasm_v128_bitselect(saturated, wasm_i32x4_splat(-2147483647 - 1), fitsInHalves);
}

inline int vindrelTruncated(__m128d v) {
  const double number = ((__f64x2)v)[0];
  return number > -2147483649.0 && number < 2147483648.0 ? (int)number : -2147483647 - 1;
}

#define _mm_cvttpd_epi32 vindrelTruncatedPair
#define _mm_cvttsd_si32 vindrelTruncated
