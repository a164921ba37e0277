/* The library as a whole: start-up, the shared scratch buffer, and debugging helpers. The entry
 * points of the commands are in HostModuleCommands (kernel_vector.h). Usable from C and C++. */
#ifndef VSTRING_LIBRARY_H
#define VSTRING_LIBRARY_H

#include <stddef.h>

#include "vstring/export.h"
#include "vstring/kernel_vector.h"

#ifndef SMALL_BUFFER_BASE_SIZE
#define SMALL_BUFFER_BASE_SIZE 8192 /* bytes of the shared scratch buffer */
#endif
#define TMP_CHAR_SHIFT 8 /* where a one-character text's character stands in its 16-bit word */
#define TMP_CHAR_MASK 65280

/* The scratch buffer that all commands share for short temporary texts. No command keeps anything
 * in it across calls; code that frees a text first checks that it is not *smbuf. */
VSTRING_API char (*const smbuf)[SMALL_BUFFER_BASE_SIZE];

/* To be called once by the host after loading. The first call sets the C locale to "C" and gives 1,
 * or 0 when that fails; every later call does nothing and gives 0. */
VSTRING_API int vstringInit(void);

/* The command that gives the library's major version, and the one that prints how it was built, of
 * no arguments: entry points like those of HostModuleCommands. */
VSTRING_API HostObject vstringVersion(HostKernelVector* kv, HostObject arguments);
VSTRING_API HostObject vstring_config(HostKernelVector* kv, HostObject arguments);

/* Debugging helpers; they report to the standard error stream. print_malloc and print_realloc
 * allocate like malloc and realloc and tell the size and whether it worked. */
VSTRING_API void* print_malloc(size_t size);
VSTRING_API void* print_realloc(void* pointer, size_t size);
/* Writes the label, n, and each of the n bytes of text on a line of its own: index, character, code
 * in hexadecimal. */
VSTRING_API void dumpstr(const char* label, const char* text, size_t n);

#endif
