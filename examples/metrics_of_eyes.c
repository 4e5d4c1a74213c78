/* Computes two metrics of three eyes and their derivatives by defocus, and the Strehl ratio of one of them. */
#include <orvanel/c_interface.h>
#include <stdio.h>
#include <string.h>

enum { kEyes = 3, kModes = 15, kMetrics = 2, kDefocus = 4 };

/* Prints why the last call was refused. */
static int Refused(void) {
  orvanel_error error = {sizeof error};
  orvanel_last_error(&error);
  fprintf(stderr, "%s (%s)\n", error.text, error.code);
  return 1;
}

int main(void) {
  /* Micrometres, orthonormal, OSA/ANSI indices 0 to 14, y up; each row is one eye over 5 mm. */
  double modes[kEyes][kModes] = {
      {0, 0, 0, 0.05, 0.10, -0.02, 0.01, 0.06, -0.03, 0.01, 0.01, 0.00, 0.05, 0.01, 0.00},
      {0, 0, 0, -0.11, 0.42, 0.03, -0.02, -0.09, 0.04, 0.02, 0.00, 0.01, 0.08, -0.01, 0.01},
      {0, 0, 0, 0.31, -0.87, 0.22, 0.12, -0.52, 0.17, -0.06, 0.03, -0.04, 0.21, 0.05, -0.02},
  };
  double pupil = 5.0, values[kEyes][kMetrics], gradients[kEyes][kMetrics][kModes];
  orvanel_metrics_request request = {sizeof request};
  orvanel_metrics_output output = {sizeof output};
  orvanel_eyes eyes = {sizeof eyes};
  orvanel_eye_input input = {sizeof input};
  orvanel_settings settings = {sizeof settings};
  orvanel_plane_facts facts = {sizeof facts};
  orvanel_eye* eye = NULL;
  orvanel_plane* psf = NULL;
  int i;

  orvanel_metrics_default(&request);
  request.metrics = "VSX,RMSw";
  eyes.coefficients = orvanel_matrix(&modes[0][0], kEyes, kModes);
  eyes.pupil_mm = orvanel_vector(&pupil, kEyes);
  eyes.pupil_mm.strides[0] = 0; /* the same pupil for all */
  eyes.convention = orvanel_osa_convention();
  eyes.laterality = ORVANEL_OD;
  output.values = orvanel_matrix(&values[0][0], kEyes, kMetrics);
  output.gradients = orvanel_matrix(&gradients[0][0][0], kEyes, kMetrics);
  output.gradients.dimensions = 3;
  output.gradients.shape[2] = kModes;
  output.gradients.strides[0] = sizeof gradients[0];
  output.gradients.strides[1] = sizeof gradients[0][0];
  output.gradients.strides[2] = sizeof gradients[0][0][0];
  output.errors.size = output.origins.size = sizeof(orvanel_array); /* not wanted: their data are null */
  if (orvanel_metrics_of_rows(&request, &eyes, 2, NULL, NULL, &output, NULL) != ORVANEL_OK) return Refused();
  printf("eye  VSX      by defocus  RMSw\n");
  for (i = 0; i < kEyes; ++i) {
    printf("%3d  %.5f  %+.4f     %.4f um\n", i + 1, values[i][0], gradients[i][0][kDefocus], values[i][1]);
  }

  input.coefficients = orvanel_vector(modes[1], kModes);
  input.convention = orvanel_osa_convention();
  input.pupil_mm = pupil;
  input.laterality = ORVANEL_OD;
  orvanel_settings_default(&settings);
  if (orvanel_eye_create(&input, &eye) != ORVANEL_OK) return Refused();
  if (orvanel_psf(eye, &settings, &psf) != ORVANEL_OK) return Refused();
  orvanel_plane_get_facts(psf, &facts);
  printf("Strehl ratio of eye 2: %.6f at the peak\n", facts.strehl_peak);
  orvanel_plane_release(psf);
  orvanel_eye_release(eye);
  return 0;
}
