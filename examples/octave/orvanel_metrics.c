/* The function orvanel_metrics of GNU Octave: metrics of image quality of many eyes, through the C interface.
 *
 *     values = orvanel_metrics (modes, pupil_mm, metrics)
 *
 *   modes     eyes x coefficients, OSA/ANSI convention: micrometres, orthonormal, from index 0 on, y up
 *   pupil_mm  diameter over which they are given, for all eyes
 *   metrics   names separated by commas, "VSX,RMSw"
 *   values    eyes x metrics; NaN for eyes that are refused, with a warning
 */
#include <mex.h>
#include <orvanel/c_interface.h>

/* Octave stores matrices by columns: the strides say so, and nothing is copied. */
static orvanel_array ByColumns(double* data, int64_t rows, int64_t columns) {
  orvanel_array array = orvanel_matrix(data, rows, columns);
  array.strides[0] = sizeof(double);
  array.strides[1] = rows * (int64_t)sizeof(double);
  return array;
}

void mexFunction(int outputs, mxArray* output[], int inputs, const mxArray* input[]) {
  orvanel_metrics_request request = {sizeof request};
  orvanel_metrics_output results = {sizeof results};
  orvanel_eyes eyes = {sizeof eyes};
  orvanel_error error = {sizeof error};
  orvanel_status status;
  uint64_t metrics = 0;
  int64_t rows;
  double pupil;
  char* names;

  if (inputs != 3 || outputs > 1 || !mxIsDouble(input[0]) || mxIsComplex(input[0]) ||
      mxGetNumberOfElements(input[1]) != 1) {
    mexErrMsgIdAndTxt("orvanel:usage", "usage: values = orvanel_metrics (modes, pupil_mm, metrics)");
  }
  names = mxArrayToString(input[2]);
  if (names == NULL) mexErrMsgIdAndTxt("orvanel:usage", "metrics: the third argument is text, such as \"VSX,RMSw\"");
  rows = (int64_t)mxGetM(input[0]);
  pupil = mxGetScalar(input[1]);

  orvanel_metrics_default(&request);
  request.metrics = names;
  eyes.coefficients = ByColumns(mxGetPr(input[0]), rows, (int64_t)mxGetN(input[0]));
  eyes.pupil_mm = orvanel_vector(&pupil, rows);
  eyes.pupil_mm.strides[0] = 0; /* the same pupil for all */
  eyes.convention = orvanel_osa_convention();
  eyes.laterality = ORVANEL_LATERALITY_NOT_STATED;
  status = orvanel_metrics_count(names, &metrics);
  if (status == ORVANEL_OK) {
    output[0] = mxCreateDoubleMatrix((mwSize)rows, (mwSize)metrics, mxREAL);
    results.values = ByColumns(mxGetPr(output[0]), rows, (int64_t)metrics);
    results.errors.size = results.gradients.size = results.origins.size = sizeof(orvanel_array); /* not wanted */
    status = orvanel_metrics_of_rows(&request, &eyes, 1, NULL, NULL, &results, NULL);
  }
  mxFree(names);
  if (status == ORVANEL_OK) return;
  orvanel_last_error(&error);
  if (status == ORVANEL_ROWS_REFUSED) {
    mexWarnMsgIdAndTxt("orvanel:rows_refused", "%s", error.text);
  } else {
    mexErrMsgIdAndTxt("orvanel:refused", "%s", error.text);
  }
}
