/* A whole host in one file: an arena below 4 GiB, every service, errors by setjmp and longjmp, and
 * procedures written in C. Loads the module and calls a few of its commands. docs/embedding.md walks
 * through it. The same source is C11 and C++20; compiled as C++ it raises by an exception.
 *
 *   cc -std=gnu11 -Iinclude examples/host.c -o host && ./host build/release/lib/libvstring.so
 */
#include <dlfcn.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include "vstring/kernel_vector.h"
#include "vstring/object.h"

/* === The heap: objects lie one after the other and are never moved or released === */

/* Type ids of this host's own: any that object.h does not name. */
enum { TYPE_INTEGER = 1, TYPE_FLOAT = 2, TYPE_PROCEDURE = 3, TYPE_FOREIGN = 4, TYPE_QUOTED = 5 };

static unsigned char *arena, *arena_end;

static void reserve_arena(size_t size) {
  for (uintptr_t at = 0x20000000; at < 0xd0000000 && arena == NULL; at += 0x1000000) {
    void *block = mmap((void *)at, size, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
    if (block == (void *)at) arena = (unsigned char *)block;
  }
  if (arena == NULL) exit(3);
  arena_end = arena + size;
}

static void raise_text(const char *message);

/* Zeroed, and aligned to 8 so that data can follow the header. */
static HostObject new_object(int type, size_t words) {
  size_t size = (words * 4 + 7) / 8 * 8;
  if (words > HOST_LENGTH_MASK || size > (size_t)(arena_end - arena)) raise_text("out of memory");
  HostObject object = (HostObject)(uintptr_t)arena;
  arena += size;
  host_words(object)[0] = (uint32_t)type << HOST_TYPE_SHIFT | (uint32_t)words;
  return object;
}

/* What an object of this host holds from word 2 on. */
static void *payload(HostObject object) { return host_words(object) + 2; }

static HostObject new_text(int type, const char *text) {
  size_t length = strlen(text);
  HostObject object = new_object(type, (HOST_TEXT_OFFSET + length) / 4 + 1);
  memcpy(host_words(object) + HOST_TEXT_OFFSET / 4, text, length);
  return object;
}

static HostObject new_pair(int type, HostObject left, HostObject right) {
  HostObject object = new_object(type, 3);
  host_words(object)[1] = left;
  host_words(object)[2] = right;
  return object;
}

static HostObject sequence_of(int n, const HostObject *elements) {
  HostObject object = new_object(HOST_TYPE_SEQUENCE, (size_t)n + 1);
  memcpy(host_words(object) + 1, elements, (size_t)n * sizeof *elements);
  return object;
}

/* === Errors === */

static char error_text[256];

#ifdef __cplusplus
struct Raised {};
static void leave(void) { throw Raised(); }
#else
#include <setjmp.h>
static jmp_buf *landing; /* where the innermost running command was called */
static void leave(void) { longjmp(*landing, 1); }
#endif

static void raise_text(const char *message) {
  snprintf(error_text, sizeof error_text, "%s", message);
  leave();
}

/* === The services, under the names of the table === */

static void show(HostObject object);

/* %1, %2 and %3 are left to the reader: a real host puts the objects in. */
static void HostRaiseError(const char *message, HostObject x1, HostObject x2, HostObject x3) {
  (void)x1, (void)x2, (void)x3;
  raise_text(message);
}

static int HostNumArgs(HostObject sequence) { return (int)host_num_elements(sequence); }

/* Odd references are integers of 31 bits; others of 32 bits are objects. */
static int IsHostInteger32(HostObject object) {
  return host_is_immediate(object) || host_type(object) == TYPE_INTEGER;
}
static int IsHostInteger(HostObject object) { return IsHostInteger32(object); }
static int32_t HostToInteger32(HostObject object) {
  if (host_is_immediate(object)) return (int32_t)object >> 1;
  return host_type(object) == TYPE_INTEGER ? (int32_t)host_words(object)[1] : 0;
}
static HostObject ToHostInteger32(int32_t value) {
  if (value >= -(1 << 30) && value < 1 << 30) return (HostObject)value << 1 | 1;
  HostObject object = new_object(TYPE_INTEGER, 2);
  host_words(object)[1] = (uint32_t)value;
  return object;
}

static int IsHostString(HostObject object) { return host_type(object) == HOST_TYPE_STRING; }
static int IsHostName(HostObject object) { return host_type(object) == HOST_TYPE_NAME; }
static int IsHostRTable(HostObject object) { return host_type(object) == HOST_TYPE_ARRAY; }
static int IsHostForeign(HostObject object) { return host_type(object) == TYPE_FOREIGN; }

static HostObject ToHostFloat(double value) {
  HostObject object = new_object(TYPE_FLOAT, 4);
  memcpy(payload(object), &value, sizeof value);
  return object;
}

/* A name is one object: equal names are found again in a list. */
static HostObject ToHostName(const char *text, int global) {
  static HostObject names[1000];
  static int num_names;
  (void)global;
  for (int i = 0; i < num_names; ++i) {
    if (strcmp(host_text(names[i]), text) == 0) return names[i];
  }
  if (num_names == 1000) raise_text("out of memory");
  return names[num_names++] = new_text(HOST_TYPE_NAME, text);
}
static HostObject ToHostBoolean(int value) {
  return ToHostName(value == 1 ? "true" : value == 0 ? "false" : "FAIL", 1);
}
static HostObject ToHostString(const char *text) { return new_text(HOST_TYPE_STRING, text); }

static HostObject HostNewExpSeq(int n) {
  HostObject object = new_object(HOST_TYPE_SEQUENCE, (size_t)n + 1);
  for (int i = 1; i <= n; ++i) host_words(object)[i] = ToHostInteger32(0); /* valid objects */
  return object;
}
static HostObject HostNull(void) { return HostNewExpSeq(0); }
static HostObject HostUnique(HostObject object) { return object; }

/* Copies what follows n into a sequence. */
static HostObject read_objects(int n, va_list objects) {
  HostObject sequence = HostNewExpSeq(n);
  for (int i = 1; i <= n; ++i) host_words(sequence)[i] = va_arg(objects, HostObject);
  return sequence;
}
static HostObject HostExpSeqOf(int n, ...) {
  va_list objects;
  va_start(objects, n);
  HostObject sequence = read_objects(n, objects);
  va_end(objects);
  return sequence;
}

static HostObject HostNewList(int n) {
  HostObject list = HostNewExpSeq(n);
  host_words(list)[0] = (uint32_t)HOST_TYPE_LIST << HOST_TYPE_SHIFT | (uint32_t)(n + 1);
  return list;
}
static void HostListAssign(HostObject list, int i, HostObject value) { host_words(list)[i] = value; }
static HostObject HostFinishList(HostObject list) { return list; }
static HostObject HostNewBinaryOp(const char *op, HostObject left, HostObject right) {
  (void)op; /* always "=" */
  return new_pair(HOST_TYPE_EQUATION, left, right);
}

/* This host has no records: it makes a list of equations of one. */
static HostObject HostNewRecord(int n, ...) {
  va_list fields;
  HostObject record = HostNewList(n);
  va_start(fields, n);
  for (int i = 1; i <= n; ++i) {
    HostObject name = ToHostName(va_arg(fields, const char *), 1);
    HostListAssign(record, i, HostNewBinaryOp("=", name, va_arg(fields, HostObject)));
  }
  va_end(fields);
  return record;
}

/* A procedure is a C function of its sequence of arguments. */
typedef HostObject (*Procedure)(HostObject arguments);
static HostObject new_procedure(Procedure function) {
  HostObject object = new_object(TYPE_PROCEDURE, 4);
  memcpy(payload(object), &function, sizeof function);
  return object;
}
/* A sequence among the arguments would be spliced in here; a quoted one is passed as it is. */
static HostObject HostQuote(HostObject object) {
  return host_type(object) == HOST_TYPE_SEQUENCE ? new_pair(TYPE_QUOTED, object, 0) : object;
}
static HostObject HostCallProcedure(HostObject procedure, int n, ...) {
  Procedure function;
  va_list objects;
  va_start(objects, n);
  HostObject arguments = read_objects(n, objects);
  va_end(objects);
  for (int i = 1; i <= n; ++i) {
    HostObject *argument = &host_words(arguments)[i];
    if (host_type(*argument) == TYPE_QUOTED) *argument = host_words(*argument)[1];
  }
  if (host_type(procedure) != TYPE_PROCEDURE) raise_text("not a procedure");
  memcpy(&function, payload(procedure), sizeof function);
  return function(arguments);
}

/* The value of a name is in its word 1, which belongs to the host. */
static void HostAssign(HostObject name, HostObject value) { host_words(name)[1] = value; }

/* Nothing is ever collected; a count tells whether the two are balanced. */
static int num_protected;
static void HostGcProtect(HostObject object) { (void)object, ++num_protected; }
static void HostGcAllow(HostObject object) { (void)object, --num_protected; }

/* An Array holds its settings and then its elements. */
static void HostRTableGetSettings(HostRTableSettings *settings, HostObject array) {
  memcpy(settings, payload(array), sizeof *settings);
}
static void HostRTableGetDefaults(HostRTableSettings *settings) {
  memset(settings, 0, sizeof *settings);
  settings->num_dimensions = 1;
}
static int HostRTableNumElements(HostObject array) {
  HostRTableSettings settings;
  int n = 1;
  HostRTableGetSettings(&settings, array);
  for (int i = 0; i < settings.num_dimensions; ++i) {
    n *= settings.bounds[2 * i + 1] - settings.bounds[2 * i] + 1;
  }
  return n;
}
static void *HostRTableData(HostObject array) {
  return (char *)payload(array) + (sizeof(HostRTableSettings) + 7) / 8 * 8;
}
static HostObject HostRTableCreate(const HostRTableSettings *settings, const void *data,
                                   const int32_t *bounds) {
  static const size_t sizes[] = {4, 1, 8};
  HostRTableSettings own = *settings;
  size_t size = sizes[own.data_type];
  for (int i = 0; i < own.num_dimensions; ++i) {
    own.bounds[2 * i] = bounds[2 * i];
    own.bounds[2 * i + 1] = bounds[2 * i + 1];
    size *= (size_t)(bounds[2 * i + 1] - bounds[2 * i] + 1);
  }
  HostObject array = new_object(HOST_TYPE_ARRAY, (sizeof own + size) / 4 + 6);
  memcpy(payload(array), &own, sizeof own);
  if (data != NULL) memcpy(HostRTableData(array), data, size);
  return array;
}

typedef struct Foreign {
  void *data;
  HostForeignTagFunction tag;
  HostForeignConverter converter;
  HostForeignDisposer disposer; /* for a host that collects */
} Foreign;
static Foreign *foreign(HostObject handle) { return (Foreign *)payload(handle); }
static HostObject ToHostForeign(void *data, HostForeignTagFunction tag) {
  HostObject handle = new_object(TYPE_FOREIGN, 2 + sizeof(Foreign) / 4);
  foreign(handle)->data = data;
  foreign(handle)->tag = tag;
  return handle;
}
static void *HostForeignData(HostObject handle) { return foreign(handle)->data; }
static HostForeignTagFunction HostForeignTag(HostObject handle) { return foreign(handle)->tag; }
static void HostForeignSetConverter(HostObject handle, HostForeignConverter converter) {
  foreign(handle)->converter = converter;
}
static void HostForeignSetDisposer(HostObject handle, HostForeignDisposer disposer) {
  foreign(handle)->disposer = disposer;
}

static int HostPrintf(const char *format, ...) {
  va_list values;
  va_start(values, format);
  int count = vprintf(format, values);
  va_end(values);
  return count;
}
static void HostUserInfo(int level, const char *topic, const char *text) {
  if (level <= 3) printf("%s: %s\n", topic, text);
}

static HostKernelVector services = {
#define SERVICE(result, name, parameters) name,
#include "vstring/kernel_services.def"
#undef SERVICE
};

/* === Calling commands === */

/* Calls an entry point and shows its value, or the error that it raised. */
static void run(HostModuleEntry entry, HostObject arguments) {
#ifdef __cplusplus
  try {
    show(entry(&services, arguments));
  } catch (const Raised &) {
    printf("error: %s", error_text);
  }
#else
  jmp_buf here;
  landing = &here;
  if (setjmp(here) == 0) {
    show(entry(&services, arguments));
  } else {
    printf("error: %s", error_text);
  }
#endif
  printf("\n");
}

static void show_elements(HostObject object) {
  for (size_t i = 1; i <= host_num_elements(object); ++i) {
    if (i > 1) printf(", ");
    show(host_element(object, i));
  }
}

static void show(HostObject object) {
  double number;
  if (IsHostInteger32(object)) {
    printf("%d", HostToInteger32(object));
  } else if (IsHostString(object)) {
    printf("\"%s\"", host_text(object));
  } else if (IsHostName(object)) {
    printf("%s", host_text(object));
  } else if (host_type(object) == TYPE_FLOAT) {
    memcpy(&number, payload(object), sizeof number);
    printf("%g", number);
  } else if (host_type(object) == HOST_TYPE_SEQUENCE) {
    show_elements(object);
  } else if (host_type(object) == HOST_TYPE_LIST) {
    printf("[");
    show_elements(object);
    printf("]");
  } else if (IsHostForeign(object) && foreign(object)->converter != NULL) {
    show(foreign(object)->converter(object));
  } else if (IsHostRTable(object)) {
    printf("an Array of %d", HostRTableNumElements(object));
  } else {
    printf("an object of type %d", host_type(object));
  }
}

/* Calls a command with as many arguments as there are before the first 0. */
static void demonstrate(const HostModuleCommand *row, const char *name, HostObject first,
                        HostObject second, HostObject third) {
  HostObject arguments[] = {first, second, third};
  int count = first == 0 ? 0 : second == 0 ? 1 : third == 0 ? 2 : 3;
  while (row->name != NULL && strcmp(row->name, name) != 0) ++row;
  printf("%s: ", name);
  if (row->name != NULL) run(row->entry, sequence_of(count, arguments));
}

static HostObject hyphen_for_space(HostObject arguments) {
  HostObject character = host_element(arguments, 1);
  return host_text(character)[0] == ' ' ? ToHostString("-") : character;
}

static HostObject refuse(HostObject arguments) {
  (void)arguments;
  raise_text("refused by a procedure");
  return 0;
}

int main(int argc, char **argv) {
  void *module = dlopen(argc > 1 ? argv[1] : "libvstring.so", RTLD_NOW | RTLD_LOCAL);
  if (module == NULL) return printf("%s\n", dlerror()), 3;
  const int *num_services = (const int *)dlsym(module, "HostModuleServices");
  const HostModuleCommand *rows = (const HostModuleCommand *)dlsym(module, "HostModuleCommands");
  int (*init)(void) = (int (*)(void))dlsym(module, "vstringInit");
  if (num_services == NULL || rows == NULL || init == NULL) return 3;
  if (*num_services > HOST_NUM_SERVICES) return printf("the module needs a newer host\n"), 3;
  init();
  reserve_arena((size_t)64 << 20);

  HostObject sentence = ToHostString("the quick brown fox");
  HostObject found = ToHostName("found", 1);
  demonstrate(rows, "words", sentence, 0, 0);
  demonstrate(rows, "searchx", ToHostString("o"), sentence, 0);
  demonstrate(rows, "take", sentence, ToHostInteger32(-1), 0);
  demonstrate(rows, "regmatch", ToHostString("q[a-z]*"), sentence, found);
  printf("found: ");
  show(host_words(found)[1]);
  printf("\n");
  demonstrate(rows, "map", new_procedure(hyphen_for_space), sentence, 0);
  demonstrate(rows, "map", new_procedure(refuse), sentence, 0);
  demonstrate(rows, "entropy", sentence, 0, 0);
  demonstrate(rows, "tobytearray", sentence, 0, 0);
  demonstrate(rows, "vbm_new", ToHostInteger32(5), 0, 0);
  demonstrate(rows, "encode", sentence, HostNewBinaryOp("=", ToHostName("encoding", 1),
                                                        ToHostName("rot13", 1)), 0);
  demonstrate(rows, "length", 0, 0, 0);
  printf("protected: %d\n", num_protected);
  return 0;
}
