/* Loads the module, releases it and loads it again: nothing of it stays, and it starts afresh. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

static int is_mapped(const char *name) {
  char line[1000];
  int found = 0;
  FILE *maps = fopen("/proc/self/maps", "r");
  while (maps != NULL && fgets(line, sizeof line, maps) != NULL) {
    if (strstr(line, name) != NULL) found = 1;
  }
  if (maps != NULL) fclose(maps);
  return found;
}

int main(int argc, char **argv) {
  for (int round = 0; round < 2; ++round) {
    void *module = dlopen(argv[argc - 1], RTLD_NOW | RTLD_LOCAL);
    int (*init)(void) = (int (*)(void))dlsym(module, "vstringInit");
    if (!is_mapped("libvstring.so") || init() != 1 || init() != 0) return 1;
    if (dlclose(module) != 0 || is_mapped("libvstring.so")) return 2;
  }
  return 0;
}
