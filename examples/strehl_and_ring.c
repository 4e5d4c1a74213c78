/* Prints the Strehl ratio of an eye, and saves its retinal image of a Landolt ring as a PGM picture.
 *
 *     cc -std=c99 strehl_and_ring.c $(pkg-config --cflags --libs orvanel) -o strehl_and_ring
 *     ./strehl_and_ring standard_observer.txt ring.pgm
 *
 * The eye is a text file: the pupil value, then coefficients with the indices and unit of OrvanelInputZer. */
#include <orvanel/orvanel.h>
#include <stdio.h>

/* Reads an eye. Missing coefficients are 0. Returns 0 for a file without a pupil. */
static int ReadEye(const char* path, double* pupil, double* coefficients) {
  FILE* const file = fopen(path, "r");
  int count = 0;
  if (file == NULL) return 0;
  if (fscanf(file, "%lf", pupil) == 1) {
    while (count < ORVANEL_COEFFICIENTS && fscanf(file, "%lf", &coefficients[count]) == 1) ++count;
  }
  fclose(file);
  return count > 0;
}

static int SavePgm(const char* path, const double* image) {
  FILE* const file = fopen(path, "wb");
  int i;
  if (file == NULL) return 0;
  fprintf(file, "P5\n%d %d\n255\n", ORVANEL_GRID_SIZE, ORVANEL_GRID_SIZE);
  for (i = 0; i < ORVANEL_PLANE_SAMPLES; ++i) fputc((int)(255.0 * image[i] + 0.5), file);
  return fclose(file) == 0;
}

int main(int argc, char** argv) {
  static double plane[ORVANEL_PLANE_SAMPLES];
  double coefficients[ORVANEL_COEFFICIENTS] = {0.0};
  double pupil = 0.0, strehl, halfWidth, acuity;
  const int gapOnTheRight = 3;

  if (argc != 3) {
    fprintf(stderr, "usage: strehl_and_ring EYE.txt RING.pgm\n");
    return 2;
  }
  if (!ReadEye(argv[1], &pupil, coefficients)) {
    fprintf(stderr, "%s: no eye\n", argv[1]);
    return 1;
  }
  OrvanelInputPupil(pupil);
  if (!OrvanelInputZer(coefficients)) {
    fprintf(stderr, "%s: the pupil is %g\n", argv[1], pupil);
    return 1;
  }
  OrvanelGetPSF(plane, &strehl, &halfWidth);
  printf("Strehl ratio %.4f\n", strehl);
  OrvanelGetOrvanel(0.5, plane, &acuity, NULL, gapOnTheRight);
  printf("ring of acuity %.4f\n", acuity);
  if (!SavePgm(argv[2], plane)) {
    perror(argv[2]);
    return 1;
  }
  return 0;
}
