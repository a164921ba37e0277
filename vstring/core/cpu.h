// What the processor can do, asked once. Kernels compiled with __attribute__((target(...))) are
// called only behind these. Entry point: has_avx2.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#define VSTRING_X86 1
#endif

namespace vstring {

/// Whether the AVX2 kernels (compiled for "avx2,bmi,bmi2,popcnt") may be called.
inline bool has_avx2() {
#ifdef VSTRING_X86
  static const bool answer = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                             __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  return answer;
#else
  return false;
#endif
}

}  // namespace vstring
