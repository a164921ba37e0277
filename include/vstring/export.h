/* VSTRING_API marks what the library exports. Usable from C and C++. */
#ifndef VSTRING_EXPORT_H
#define VSTRING_EXPORT_H

#ifdef __cplusplus
#define VSTRING_EXTERN_C extern "C"
#else
#define VSTRING_EXTERN_C extern
#endif

#if defined(__GNUC__)
#define VSTRING_API VSTRING_EXTERN_C __attribute__((visibility("default")))
#else
#define VSTRING_API VSTRING_EXTERN_C
#endif

#endif
