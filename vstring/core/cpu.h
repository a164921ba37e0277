// What the processor can do, asked once. Entry points: VSTRING_AVX2, the attribute of a function
// compiled for wide vectors, and has_avx2, behind which alone such a function is called.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#define VSTRING_X86 1
#define VSTRING_AVX2 __attribute__((target("avx2,bmi,bmi2,popcnt")))
#endif

namespace vstring {

/// Whether VSTRING_AVX2 functions may be called.
inline bool has_avx2() {
#ifdef VSTRING_NO_AVX2  // to test what other machines run
  return false;
#elif defined(VSTRING_X86)
  static const bool answer = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                             __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  return answer;
#else
  return false;
#endif
}

}  // namespace vstring
