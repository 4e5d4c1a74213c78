/* A host that loads the library by the path in its argument, asks for one result, and unloads it. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
  static double psf[256 * 256];
  double coefficients[28] = {0.0};
  double strehl = 0.0, halfWidth = 0.0;
  void (*inputPupil)(double);
  int (*inputZer)(const double*);
  int (*getPsf)(double*, double*, double*);
  void *library, *symbol[3];

  library = dlopen(argc == 2 ? argv[1] : "", RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) return fprintf(stderr, "%s\n", dlerror()), 1;
  symbol[0] = dlsym(library, "OrvanelInputPupil");
  symbol[1] = dlsym(library, "OrvanelInputZer");
  symbol[2] = dlsym(library, "OrvanelGetPSF");
  if (!symbol[0] || !symbol[1] || !symbol[2]) return fprintf(stderr, "a function is missing\n"), 1;
  /* ISO C converts no object pointer to a function pointer. */
  memcpy(&inputPupil, &symbol[0], sizeof inputPupil);
  memcpy(&inputZer, &symbol[1], sizeof inputZer);
  memcpy(&getPsf, &symbol[2], sizeof getPsf);

  coefficients[4] = 1.7e-4;
  inputPupil(3.7);
  if (!inputZer(coefficients) || !getPsf(psf, &strehl, &halfWidth)) return fprintf(stderr, "refused\n"), 1;
  if (!(strehl > 0.1 && strehl < 0.9)) return fprintf(stderr, "Strehl ratio %g\n", strehl), 1;
  dlclose(library);
  if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != NULL) return fprintf(stderr, "still loaded\n"), 1;
  return 0;
}
