/* The interface between a host and its modules: object references, the service table, and the table
 * of commands that a module exports. Entry: HostKernelVector. Usable from C and C++. */
#ifndef VSTRING_KERNEL_VECTOR_H
#define VSTRING_KERNEL_VECTOR_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A reference to a host object, 32 bits on every machine. An odd value is an immediate small
 * integer and is never dereferenced; an even value is the address of the object's header word
 * (object.h). */
typedef uint32_t HostObject;

/* Element types of an Array. */
enum {
  HOST_RTABLE_ANY = 0,      /* host objects, 4 bytes each */
  HOST_RTABLE_INTEGER1 = 1, /* bytes, shown as 0..255 */
  HOST_RTABLE_FLOAT8 = 2    /* doubles */
};

/* How an Array's elements are stored. */
enum { HOST_RTABLE_RECTANGULAR = 0 };

enum { HOST_RTABLE_MAX_DIMENSIONS = 8 };

/* What HostRTableGetSettings tells of an Array and HostRTableCreate needs to make one. */
typedef struct HostRTableSettings {
  int32_t data_type;                              /* HOST_RTABLE_ANY, ... */
  int32_t storage;                                /* HOST_RTABLE_RECTANGULAR */
  int32_t num_dimensions;                         /* 1 .. HOST_RTABLE_MAX_DIMENSIONS */
  int32_t bounds[2 * HOST_RTABLE_MAX_DIMENSIONS]; /* lower, upper; ignored by HostRTableCreate */
} HostRTableSettings;

/* The identity of a kind of foreign data; compared, never called. */
typedef void (*HostForeignTagFunction)(void);
/* Turns a handle into the value that is shown for it. */
typedef HostObject (*HostForeignConverter)(HostObject handle);
/* Releases the data of a handle, which it reads with HostForeignData. */
typedef void (*HostForeignDisposer)(HostObject handle);

/* The service table. A host fills every member; a module only reads it.
 *
 * How a host raises: HostRaiseError, and every service that fails, leaves through a C++ exception
 * (the recommended way: a module's memory is released on the way out) or through longjmp to the
 * place from which the host called the module. A module's own failures reach HostRaiseError from a
 * frame that owns nothing, so they leak nothing either way. Any other service that fails by a jump,
 * not only HostCallProcedure, may leave working memory of the interrupted command behind (its
 * growing arrays), and nothing else: no module writes into an argument, the locale is the host's
 * whenever a service is called, and what the command had protected or borrowed is released when the
 * next one starts. HostRaiseError must not return. All calls of a module, nested ones too, are made
 * on one stack. */
typedef struct HostKernelVector {
#define SERVICE(result, name, parameters) result(*name) parameters;
#include "vstring/kernel_services.def"
#undef SERVICE
} HostKernelVector;

/* How many services this header knows. */
enum {
  HOST_NUM_SERVICES = 0
#define SERVICE(result, name, parameters) +1
#include "vstring/kernel_services.def"
#undef SERVICE
};

/* An entry point: what the host calls for a command. */
typedef HostObject (*HostModuleEntry)(HostKernelVector* kv, HostObject arguments);

/* One command of a module. */
typedef struct HostModuleCommand {
  const char* name;      /* the command's name in the host */
  HostModuleEntry entry; /* its entry point */
  int required;          /* arguments it needs at least; it counts them itself */
  const char* synopses;  /* "take(s, n) take(s, t)" */
  const char* summary;   /* one line, lower case, no full stop */
  const char* family;    /* the documentation page that describes it, without ".md" */
} HostModuleCommand;

/* Every module exports its commands under this name, ended by a row whose name is null; the host
 * finds it with dlsym("HostModuleCommands"). */
#if defined(__GNUC__)
__attribute__((visibility("default")))
#endif
extern const HostModuleCommand HostModuleCommands[];

/* And under this one HOST_NUM_SERVICES as it was when the module was built: it may call no row of
 * the table beyond that. A host whose table is shorter must not use the module. */
#if defined(__GNUC__)
__attribute__((visibility("default")))
#endif
extern const int HostModuleServices;

#ifdef __cplusplus
}
#endif
#endif
