/* A host in C, without a C++ runtime of its own, whose memory is exhausted from some allocation on: every call refuses,
 * none ends the process, and with memory again all is as if nothing had happened. Usage: exhausted_memory_test LIBRARY
 */
#include <dlfcn.h>
#include <errno.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

/* The C library's own, behind the functions that take their place. */
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

#define PLENTY 1000000000L
static long left = PLENTY; /* allocations that still succeed */
static int failed;

static int exhausted(void) {
  if (left == PLENTY) return 0;
  if (left > 0) {
    --left;
    return 0;
  }
  failed = 1;
  errno = ENOMEM;
  return 1;
}

#pragma GCC visibility push(default) /* so that libraries find them */
void* malloc(size_t size) { return exhausted() ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) { return exhausted() ? NULL : __libc_calloc(count, size); }
void* realloc(void* block, size_t size) { return exhausted() ? NULL : __libc_realloc(block, size); }
void* memalign(size_t alignment, size_t size) { return exhausted() ? NULL : __libc_memalign(alignment, size); }
void* aligned_alloc(size_t alignment, size_t size) { return memalign(alignment, size); }
int posix_memalign(void** block, size_t alignment, size_t size) {
  *block = memalign(alignment, size);
  return *block == NULL ? ENOMEM : 0;
}
#pragma GCC visibility pop

static void (*inputPupil)(double);
static int (*inputZer)(const double*);
static int (*getPsf)(double*, double*, double*);
static int (*getMtf)(double*, double*);
static int (*getGraph)(double*, double*, double*, double*);
static int (*getRing)(double, double*, double*, double*, int);
static int (*getPattern)(double*);
static int (*getOriginal)(double*);

static double plane[256 * 256], other[256 * 256];
static const double eye[28] = {0.0, 0.0, 0.0, 0.7e-4, -1.3e-4, 0.0, 0.4e-4, 0.9e-4};

static void fail(const char* what) {
  fprintf(stderr, "%s\n", what);
  _exit(1);
}

/* ISO C converts no object pointer to a function pointer. */
static void find(void* library, const char* name, void* function) {
  void* const symbol = dlsym(library, name);
  if (symbol == NULL) fail(name);
  memcpy(function, &symbol, sizeof symbol);
}

static void* load(const char* path) {
  void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) return NULL;
  find(library, "OrvanelInputPupil", &inputPupil);
  find(library, "OrvanelInputZer", &inputZer);
  find(library, "OrvanelGetPSF", &getPsf);
  find(library, "OrvanelGetMTF", &getMtf);
  find(library, "OrvanelGetMTFGraph", &getGraph);
  find(library, "OrvanelGetOrvanel", &getRing);
  find(library, "OrvanelGetPattern", &getPattern);
  find(library, "OrvanelGetPatternOriginal", &getOriginal);
  return library;
}

/* Calls everything; the sum of what is returned. */
static int call_all(void) {
  double a, b;
  inputPupil(4.1);
  return inputZer(eye) + getPsf(plane, &a, &b) + getMtf(plane, &a) + getGraph(plane, plane, plane, &a) +
         getRing(0.5, plane, &a, other, 1) + getPattern(plane) + getOriginal(plane);
}

/* In a process of its own, as what a process has once allocated stays: exhausted after so many allocations, from the
 * first call on. Exit status 0 where something failed, 3 where nothing had to. */
static void exhausted_after(const char* path, long good) {
  int done;
  if (load(path) == NULL) fail(dlerror());
  left = good;
  done = call_all();
  left = PLENTY;
  if (failed && done == 7) fail("nothing was refused");
  if (call_all() != 7) fail("refused with memory");
  _exit(failed ? 0 : 3);
}

/* At once, after one allocation, after two, ... until nothing fails any more. */
int main(int argc, char** argv) {
  long good;
  if (argc != 2) return 2;
  for (good = 0; good < 1000; ++good) {
    int status = -1;
    const pid_t child = fork();
    if (child == 0) exhausted_after(argv[1], good);
    if (child < 0 || waitpid(child, &status, 0) != child) return 1;
    if (WIFEXITED(status) && WEXITSTATUS(status) == 3) return good < 3; /* the results, the star, its spectrum */
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      fprintf(stderr, "after %ld allocations: %s %d\n", good, WIFSIGNALED(status) ? "signal" : "status",
              WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status));
      return 1;
    }
  }
  return 1;
}
