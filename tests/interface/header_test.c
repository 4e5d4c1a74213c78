/* The C header from plain C99: every function is called by its declared type, in the order that a host uses. */
#include <stdio.h>
#include <stdlib.h>

#include "orvanel/orvanel.h"

static int Check(int condition, const char* what) {
  if (!condition) fprintf(stderr, "failed: %s\n", what);
  return condition ? 0 : 1;
}

int main(void) {
  static double plane[ORVANEL_PLANE_SAMPLES];
  static double optotype[ORVANEL_PLANE_SAMPLES];
  double row[ORVANEL_SECTION_SAMPLES];
  double column[ORVANEL_SECTION_SAMPLES];
  double limit[ORVANEL_SECTION_SAMPLES];
  double coefficients[ORVANEL_COEFFICIENTS] = {0.0};
  double strehl = 0.0, halfWidth = 0.0, range = 0.0, effective = 0.0;
  int failures = 0;

  failures += Check(OrvanelInputZer(coefficients) == 0, "an eye without pupil is refused");
  coefficients[4] = 1e-4;
  OrvanelInputPupil(6.0);
  failures += Check(OrvanelInputZer(coefficients) == 1, "an eye is accepted");
  failures += Check(OrvanelGetPSF(plane, &strehl, &halfWidth) == 1, "PSF");
  failures += Check(strehl > 0.3 && strehl < 0.9, "Strehl ratio");
  failures += Check(OrvanelGetMTF(plane, &range) == 1, "MTF");
  failures += Check(OrvanelGetMTFGraph(row, column, limit, &range) == 1, "MTF graph");
  failures += Check(range > 356.0 && range < 357.0, "frequency range");
  failures += Check(OrvanelGetOrvanel(1.0, plane, &effective, optotype, 3) == 1, "ring");
  failures += Check(effective > 0.99 && effective < 1.0, "effective acuity");
  failures += Check(OrvanelGetPattern(plane) == 1, "star");
  failures += Check(OrvanelGetPatternOriginal(plane) == 1, "star itself");
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
