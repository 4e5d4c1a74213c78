/* A host on Windows that knows the library by its path alone: every function, every refusal, the trace line among the
 * host's own output, and loading and unloading again and again.
 * Usage: host LIBRARY [trace|loads]
 */
/* printf of the C runtime that host and library share, and not the compiler's own. */
#define __USE_MINGW_ANSI_STDIO 0
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

#define PLANE 65536
#define LOADS 1000
#define LOADS_WITH_AN_EYE 50

typedef struct {
  HMODULE module;
  void(__cdecl* InputPupil)(double);
  int(__cdecl* InputZer)(const double*);
  int(__cdecl* GetPSF)(double*, double*, double*);
  int(__cdecl* GetMTF)(double*, double*);
  int(__cdecl* GetMTFGraph)(double*, double*, double*, double*);
  int(__cdecl* GetOrvanel)(double, double*, double*, double*, int);
  int(__cdecl* GetPattern)(double*);
  int(__cdecl* GetPatternOriginal)(double*);
} Library;

static const char* path;
static int failures;

static void Check(int good, const char* what) {
  if (good) return;
  ++failures;
  fprintf(stderr, "failed: %s\n", what);
}

static void Find(const Library* library, void* function, const char* name) {
  FARPROC address = GetProcAddress(library->module, name);
  if (address == NULL) {
    fprintf(stderr, "%s: no function %s\n", path, name);
    exit(2);
  }
  memcpy(function, &address, sizeof address);
}

static Library Load(void) {
  Library library;
  library.module = LoadLibraryA(path);
  if (library.module == NULL) {
    fprintf(stderr, "%s: cannot be loaded, Windows error %lu\n", path, GetLastError());
    exit(2);
  }
  Find(&library, &library.InputPupil, "OrvanelInputPupil");
  Find(&library, &library.InputZer, "OrvanelInputZer");
  Find(&library, &library.GetPSF, "OrvanelGetPSF");
  Find(&library, &library.GetMTF, "OrvanelGetMTF");
  Find(&library, &library.GetMTFGraph, "OrvanelGetMTFGraph");
  Find(&library, &library.GetOrvanel, "OrvanelGetOrvanel");
  Find(&library, &library.GetPattern, "OrvanelGetPattern");
  Find(&library, &library.GetPatternOriginal, "OrvanelGetPatternOriginal");
  return library;
}

static const double eye[28] = {0, 0, 0, 1.1e-4, 2.3e-4, 0, 0, -1.7e-4, 0, 0.6e-4};
static double plane[PLANE], other[PLANE];
static double row[128], column[128], limit[128];

static double Sum(const double* samples) {
  double sum = 0.0;
  int i;
  for (i = 0; i < PLANE; ++i) sum += samples[i];
  return sum;
}

static double Least(const double* samples) {
  double least = samples[0];
  int i;
  for (i = 1; i < PLANE; ++i) least = samples[i] < least ? samples[i] : least;
  return least;
}

static double Largest(const double* samples) {
  double largest = samples[0];
  int i;
  for (i = 1; i < PLANE; ++i) largest = samples[i] > largest ? samples[i] : largest;
  return largest;
}

static void CheckRefusals(const Library* library, const char* when) {
  double a, b;
  plane[7] = other[7] = row[7] = -3.0;
  Check(library->InputZer(eye) == 0, when);
  Check(library->GetMTF(plane, &a) == 0, when);
  Check(library->GetMTFGraph(row, column, limit, &a) == 0, when);
  Check(library->GetOrvanel(1.0, plane, &a, other, 3) == 0, when);
  Check(library->GetPattern(plane) == 0, when);
  Check(library->GetPatternOriginal(plane) == 0, when);
  Check(plane[7] == -3.0 && other[7] == -3.0 && row[7] == -3.0, "what is refused writes nothing");
  Check(library->GetPSF(plane, &a, &b) == 1, "the PSF is never refused");
}

static void CallEveryFunction(void) {
  Library library = Load();
  double strehl, half_width, range, acuity;
  int i;

  CheckRefusals(&library, "refused before any pupil");
  library.InputPupil(0.0);
  CheckRefusals(&library, "refused for a pupil of 0");
  library.InputPupil(nan(""));
  CheckRefusals(&library, "refused for a pupil that is no number");

  library.InputPupil(4.0);
  Check(library.InputZer(eye) == 1, "an eye");
  Check(library.GetPatternOriginal(plane) == 0, "the star itself is refused before it is seen");
  Check(library.GetPSF(plane, &strehl, &half_width) == 1, "PSF");
  Check(plane[128 * 256 + 128] == 1.0 && Largest(plane) == 1.0, "the PSF's peak is 1 at its centre");
  Check(strehl > 0.01 && strehl < 0.9, "Strehl ratio");
  Check(fabs(half_width - 32 * 17.0 * 0.00058756 / 4.0) < 1e-15, "half width");
  Check(library.GetMTF(plane, &range) == 1, "MTF");
  Check(fabs(plane[128 * 256 + 128] - 1.0) < 1e-15, "the MTF is 1 at its centre");
  Check(fabs(range - 178.43356917149 * 4.0 / 3.0) < 1e-9, "frequency range");
  Check(library.GetMTFGraph(row, column, limit, &range) == 1, "MTF graph");
  Check(row[5] == plane[128 * 256 + 133] && column[5] == plane[133 * 256 + 128], "sections");
  Check(fabs(limit[0] - 1.0) < 2e-15 && fabs(limit[64] - 0.39100) < 5e-6, "diffraction limit");
  Check(library.GetMTFGraph(row, column, NULL, &range) == 1, "MTF graph without the limit");

  Check(library.GetPattern(plane) == 1, "star");
  Check(Least(plane) == 0.0 && Largest(plane) == 1.0, "the star is stretched after an eye");
  Check(library.GetPatternOriginal(other) == 1, "star itself");
  Check(Sum(other) == 32402.0 && other[0] == 0.0 && other[127 * 256 + 255] == 1.0, "its samples");
  Check(other[139 * 256 + 130] == 1.0 && other[140 * 256 + 59] == 1.0, "its two exceptions");

  Check(library.GetOrvanel(1.0, NULL, &acuity, other, 3) == 0, "a ring without image is refused");
  for (i = -1; i <= 5; ++i) {
    Check(library.GetOrvanel(1.0, plane, &acuity, other, i) == 1, "ring");
    Check(fabs(acuity - 0.990156) < 5e-7, "effective acuity");
    /* 40 samples wide: the gap is in the middle of one side of the stroke. */
    Check((other[128 * 256 + 145] == 1.0) == (i != 1 && i != 2 && i != 4), "gap on the right");
    Check((other[128 * 256 + 112] == 1.0) == (i == 4), "gap on the left");
    Check((other[145 * 256 + 128] == 1.0) == (i == 1), "gap below");
    Check((other[112 * 256 + 128] == 1.0) == (i == 2), "gap above");
  }
  Check(library.GetOrvanel(1.0, plane, &acuity, NULL, 3) == 1, "ring without optotype");
  Check(library.GetPattern(plane) == 1 && Least(plane) > 0.0, "the star keeps its light after a ring");
  Check(Sum(plane) < 32402.0 + 1e-6, "at most its light");
  Check(FreeLibrary(library.module) != 0 && GetModuleHandleA(path) == NULL, "unloaded");

  library = Load();
  CheckRefusals(&library, "a fresh load starts from nothing");
  library.InputPupil(4.0);
  library.InputZer(eye);
  fclose(stdout);
  Check(library.GetOrvanel(1.0, plane, &acuity, other, 3) == 1, "a ring without standard output");
  FreeLibrary(library.module);
}

/* What a line of the library looks like among the host's, which are buffered and in the mode of its stream. */
static void Trace(void) {
  Library library = Load();
  double acuity;
  library.InputPupil(4.0);
  library.InputZer(eye);
  printf("before %g\n", 1e-5);
  printf("unfinished, ");
  library.GetOrvanel(0.5, plane, &acuity, NULL, 3);
  printf("between\n");
  library.GetOrvanel(1e-5, plane, &acuity, NULL, 3);
  library.GetOrvanel(1e6, plane, &acuity, NULL, 3);
  printf("after\n");
  FreeLibrary(library.module);
  printf("unloaded\n");
}

static size_t AllocatedBytes(void) {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(64, heaps);
  size_t bytes = 0;
  DWORD i;
  for (i = 0; i < count && i < 64; ++i) {
    PROCESS_HEAP_ENTRY entry;
    memset(&entry, 0, sizeof entry);
    while (HeapWalk(heaps[i], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
  }
  return bytes;
}

static DWORD FreeSlotOfThreadStorage(void) {
  const DWORD slot = TlsAlloc();
  TlsFree(slot);
  return slot;
}

static DWORD Handles(void) {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

static void LoadAndUnload(int with_an_eye) {
  Library library = Load();
  if (with_an_eye) {
    library.InputPupil(3.7);
    Check(library.InputZer(eye) == 1 && library.GetPattern(plane) == 1, "an eye and the star");
  }
  FreeLibrary(library.module);
}

static void LoadManyTimes(void) {
  size_t bytes;
  DWORD slot, handles;
  int i;
  for (i = 0; i < 8; ++i) LoadAndUnload(1);
  bytes = AllocatedBytes();
  slot = FreeSlotOfThreadStorage();
  handles = Handles();
  for (i = 0; i < LOADS; ++i) LoadAndUnload(i % (LOADS / LOADS_WITH_AN_EYE) == 0);
  Check(AllocatedBytes() < bytes + LOADS, "less than a byte is lost at a load");
  Check(FreeSlotOfThreadStorage() == slot, "no slot of thread storage is lost");
  Check(Handles() == handles, "no handle is lost");
  Check(GetModuleHandleA(path) == NULL, "unloaded");
}

int main(int argc, char** argv) {
  path = argc > 1 ? argv[1] : "OrvanelDll.dll";
  if (argc > 2 && strcmp(argv[2], "trace") == 0) {
    Trace();
  } else if (argc > 2 && strcmp(argv[2], "loads") == 0) {
    LoadManyTimes();
  } else {
    CallEveryFunction();
  }
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
