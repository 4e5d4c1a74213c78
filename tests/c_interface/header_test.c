/* Tests that the header of the C interface is plain C99: a host in C computes a Strehl ratio and a metric. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "orvanel/c_interface.h"

static int Fail(const char* what) {
  orvanel_error error;
  error.size = sizeof error;
  if (orvanel_last_error(&error) == ORVANEL_OK) fprintf(stderr, "%s: %s\n", what, error.text);
  return 1;
}

int main(void) {
  /* A perfect eye, then one with a tenth of a micrometre of defocus. */
  double c[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
  double values[1] = {0.0};
  orvanel_eye_input input;
  orvanel_settings settings;
  orvanel_plane_facts facts;
  orvanel_metrics_request request;
  orvanel_metrics_output output;
  orvanel_eye* eye = NULL;
  orvanel_plane* psf = NULL;
  const orvanel_eye* eyes[1];
  int i;

  if (orvanel_interface_version() != ORVANEL_INTERFACE) return Fail("version");
  memset(&input, 0, sizeof input);
  input.size = sizeof input;
  input.coefficients = orvanel_vector(c, 5);
  input.convention = orvanel_osa_convention();
  input.pupil_mm = 3.0;
  input.laterality = ORVANEL_OS;
  settings.size = sizeof settings;
  if (orvanel_settings_default(&settings) != ORVANEL_OK) return Fail("settings");
  settings.samples = 8;
  request.size = sizeof request;
  if (orvanel_metrics_default(&request) != ORVANEL_OK) return Fail("request");
  request.metrics = "RMSw";
  memset(&output, 0, sizeof output);
  output.size = sizeof output;
  output.values = orvanel_matrix(values, 1, 1);
  output.errors.size = output.gradients.size = output.origins.size = sizeof(orvanel_array);
  facts.size = sizeof facts;
  for (i = 0; i < 2; ++i) {
    c[4] = 0.1 * i;
    if (orvanel_eye_create(&input, &eye) != ORVANEL_OK) return Fail("eye");
    if (orvanel_psf(eye, &settings, &psf) != ORVANEL_OK) return Fail("psf");
    if (orvanel_plane_get_facts(psf, &facts) != ORVANEL_OK) return Fail("facts");
    if (i == 0 && fabs(facts.strehl_axis - 1.0) > 1e-9) return Fail("the Strehl ratio of a perfect eye is not 1");
    if (i == 1 && !(facts.strehl_axis < 1.0)) return Fail("the Strehl ratio does not fall");
    eyes[0] = eye;
    if (orvanel_metrics_of_eyes(&request, eyes, 1, 1, NULL, NULL, &output, NULL) != ORVANEL_OK) return Fail("metrics");
    if (fabs(values[0] - c[4]) > 1e-12) return Fail("RMSw is not the coefficient of defocus");
    orvanel_plane_release(psf);
    orvanel_eye_release(eye);
  }
  return 0;
}
