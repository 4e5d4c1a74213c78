/* The C interface of Orvanel: eyes, point spread functions, metrics, best correction and charts, for every language.
 * This header is its manual. The library is liborvanel.so, on Windows orvanel.dll. The eight functions of orvanel.h are
 * in a separate library.
 *
 *     orvanel_eye_input input = {sizeof input};
 *     double c[15] = {0};
 *     orvanel_eye* eye = NULL;
 *     orvanel_plane* psf = NULL;
 *     orvanel_settings settings = {sizeof settings};
 *     c[4] = 0.1;                                              (0.1 um of defocus)
 *     input.coefficients = orvanel_vector(c, 15);
 *     input.convention = orvanel_osa_convention();
 *     input.laterality = ORVANEL_OD;
 *     input.pupil_mm = 6.0;
 *     orvanel_settings_default(&settings);
 *     if (orvanel_eye_create(&input, &eye) == ORVANEL_OK && orvanel_psf(eye, &settings, &psf) == ORVANEL_OK) ...
 *     orvanel_plane_release(psf);
 *     orvanel_eye_release(eye);
 *
 * RESULTS: functions return a status. ORVANEL_OK is 0. After any other status, orvanel_last_error has the reason. A
 * refused call writes nothing, except where its text says so.
 *
 * STRUCTS begin with `size`, which the caller sets to sizeof the struct, also of structs that a function fills. Another
 * number is refused. Set the rest to 0 first, or by the function that fills it with usual values. Members named
 * `reserved` are 0.
 *
 * HANDLES are pointers to opaque structs. Eyes and planes do not change after they are made. The caller releases them;
 * null is released without effect. A released handle must not be used again.
 *
 * ARRAYS have a shape, strides in bytes, and an owner. What a handle owns is valid until the handle is released, and
 * must not be written. If `owner` is null, the memory is the caller's. Functions keep no pointer to the caller's
 * memory.
 *
 * TEXTS are UTF-8 and end with a zero byte; arguments with other bytes are refused. Texts that a struct points to
 * belong to the handle they come from; those of an error belong to the calling thread, until its next call.
 *
 * THREADS: functions may be called from any number of threads at the same time, also for the same eye or plane. Two
 * threads must not release the same handle. Batches start as many threads as they are asked for; they end before the
 * call returns. Results have the same bits for any number of threads.
 *
 * NOTHING ELSE: the library prints nothing, ends no process, and keeps no state between calls but the last error of
 * each thread. A thread must round to nearest, as all threads do unless a host changes it.
 *
 * PROGRESS: long calls take a function that the calling thread calls now and then. If it returns another number than 0,
 * the call ends with ORVANEL_CANCELLED.
 *
 * KERNELS: the environment variable ORVANEL_KERNELS names the instruction set: baseline, avx2 or avx512. Results have
 * the same bits for all.
 *
 * VERSIONS: ORVANEL_INTERFACE rises when a function or struct changes. Functions are then added under new names, and
 * existing ones stay as they are.
 *
 * UNITS are in the names of members. Angles on the retina are minutes of arc, frequencies cycles per degree. The page
 * docs/conventions.md defines axes and signs, docs/c_interface.md has examples.
 */
#ifndef ORVANEL_C_INTERFACE_H
#define ORVANEL_C_INTERFACE_H

/* NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using): this is C. */
#include <stdint.h>

#define ORVANEL_INTERFACE 1 /* the version of the interface that this header declares */

/* The calling convention on Windows. */
#if defined(_WIN32)
#define ORVANEL_C_CALL __cdecl
#else
#define ORVANEL_C_CALL
#endif

/* Marks the functions that the library exports. */
#if defined(_WIN32) && defined(ORVANEL_C_BUILD)
#define ORVANEL_C_API __declspec(dllexport)
#elif defined(_WIN32)
#define ORVANEL_C_API __declspec(dllimport)
#elif defined(__GNUC__)
#define ORVANEL_C_API __attribute__((visibility("default")))
#else
#define ORVANEL_C_API
#endif

/* Declares for C++ that the functions throw nothing. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define ORVANEL_C_NOEXCEPT noexcept
#else
#define ORVANEL_C_NOEXCEPT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Versions, status and errors */

/* What a call came to. */
enum {
  ORVANEL_OK = 0,
  ORVANEL_INVALID_ARGUMENT = 1, /* an argument breaks the rules of this header */
  ORVANEL_INVALID_EYE = 2,      /* coefficients, pupil or convention are not those of an eye */
  ORVANEL_REFUSED = 3,          /* the model cannot compute this eye under these conditions */
  ORVANEL_FILE = 4,             /* a file cannot be read */
  ORVANEL_CANCELLED = 5,        /* the progress function ended the call */
  ORVANEL_NO_MEMORY = 6,
  ORVANEL_INTERNAL = 7,     /* a fault of the library */
  ORVANEL_ROWS_REFUSED = 8, /* a batch is done, but some of its rows are refused */
  ORVANEL_TRUNCATED = 9     /* the caller's memory is too small for a text or list; nothing is written */
};
typedef int32_t orvanel_status;

/* ORVANEL_INTERFACE of the library that is loaded, and its version, such as "0.2.0". */
ORVANEL_C_API uint32_t ORVANEL_C_CALL orvanel_interface_version(void) ORVANEL_C_NOEXCEPT;
ORVANEL_C_API const char* ORVANEL_C_CALL orvanel_version(void) ORVANEL_C_NOEXCEPT;

/* A detail of an error. */
typedef struct orvanel_field {
  const char* name; /* "wanted_mm" */
  const char* text; /* the value as text */
  double number;    /* the value, or not a number if it is none */
} orvanel_field;

/* Why a call was refused. */
typedef struct orvanel_error {
  uint64_t size;
  orvanel_status status;
  int32_t reserved;
  const char* code;            /* for programs: "pupil_larger_than_measured"; it stays the same between versions */
  const char* text;            /* for people: what is wrong, and how to correct it */
  const orvanel_field* fields; /* the details */
  uint64_t field_count;
} orvanel_error;

/* The reason of the last call of this thread that did not return ORVANEL_OK. Without one the status is ORVANEL_OK. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_last_error(orvanel_error* error) ORVANEL_C_NOEXCEPT;

/* Reports progress. 0 continues.
 *   data         as the caller passed it
 *   done, total  steps of equal kind */
typedef int32_t(ORVANEL_C_CALL* orvanel_progress)(void* data, uint64_t done, uint64_t total);

/* ---- Arrays */

/* Doubles in up to 3 dimensions. Element (i, j) is at (char*)data + i * strides[0] + j * strides[1]. */
typedef struct orvanel_array {
  uint64_t size;
  double* data;
  int32_t dimensions;
  int32_t reserved;
  int64_t shape[3];
  int64_t strides[3]; /* bytes from one element to the next; 0 repeats one, negative ones go back */
  const void* owner;  /* the handle that owns the memory; null if it is the caller's */
} orvanel_array;

/* Describe the caller's memory: `count` doubles, and `rows` x `columns` doubles one after the other. */
ORVANEL_C_API orvanel_array ORVANEL_C_CALL orvanel_vector(double* data, int64_t count) ORVANEL_C_NOEXCEPT;
ORVANEL_C_API orvanel_array ORVANEL_C_CALL orvanel_matrix(double* data, int64_t rows,
                                                          int64_t columns) ORVANEL_C_NOEXCEPT;

/* ---- Eyes */

enum { ORVANEL_UM = 1, ORVANEL_MM = 2, ORVANEL_NM = 3, ORVANEL_WAVES = 4 }; /* unit */
enum { ORVANEL_ORTHONORMAL = 1, ORVANEL_NOT_NORMALISED = 2 };               /* normalisation */
enum { ORVANEL_OSA = 1, ORVANEL_NOLL = 2, ORVANEL_FRINGE = 3 };             /* indexing */
enum { ORVANEL_Y_UP = 1, ORVANEL_Y_DOWN = 2 };                              /* y axis */
enum { ORVANEL_OD = 1, ORVANEL_OS = 2, ORVANEL_LATERALITY_NOT_STATED = 3 }; /* laterality: right eye, left eye */
enum { ORVANEL_LEAST_SQUARES = 1, ORVANEL_PARAXIAL = 2 };                   /* refraction */

/* The convention of coefficients. Nothing is guessed: a part that is 0 is refused. */
typedef struct orvanel_convention {
  uint64_t size;
  int32_t unit;
  int32_t normalisation;
  int32_t indexing;
  int32_t y_axis;
  double wavelength_nm; /* of one wave of the unit ORVANEL_WAVES; 0 for other units */
} orvanel_convention;

/* The convention of OSA/ANSI Z80.28: micrometres, orthonormal, index scheme OSA, y up. */
ORVANEL_C_API orvanel_convention ORVANEL_C_CALL orvanel_osa_convention(void) ORVANEL_C_NOEXCEPT;

/* One eye as a caller describes it. */
typedef struct orvanel_eye_input {
  uint64_t size;
  orvanel_array coefficients; /* one dimension, from the first index of the scheme on, radial orders 0 to 20 */
  orvanel_convention convention;
  double pupil_mm;     /* diameter over which the coefficients are given */
  double reference_nm; /* wavelength at which the coefficients hold; 0 if it is unknown */
  int32_t laterality;
  int32_t reserved;
  const char* name; /* may be null */
} orvanel_eye_input;

/* What is known of an eye. */
typedef struct orvanel_eye_facts {
  uint64_t size;
  double pupil_mm;
  double reference_nm; /* 0 if it is unknown */
  int32_t laterality;
  int32_t reserved;
  uint64_t terms;                /* coefficients by OSA index, up to the last that is stated */
  orvanel_convention convention; /* in which the eye was stated */
  const char* name;
  const char* warnings; /* one line for each unusual value; empty for a usual eye */
} orvanel_eye_facts;

/* Sphere, minus cylinder and axis (TABO), and the same as a power vector; dioptres and degrees. */
typedef struct orvanel_refraction {
  uint64_t size;
  double sphere;
  double cylinder;
  double axis;
  double m;
  double j0;
  double j45;
} orvanel_refraction;

/* Changes to an eye, one after the other. A member that is 0 changes nothing. */
typedef struct orvanel_adjustments {
  uint64_t size;
  double sphere; /* a refractive error that is added, at the cornea */
  double cylinder;
  double axis;        /* 0 to 180 degrees */
  double lens_sphere; /* a lens to be worn; its power is subtracted */
  double lens_cylinder;
  double lens_axis;
  double lens_vertex_mm; /* 0 for a contact lens, or 1 to 30 */
  double pupil_mm;       /* the wavefront over another pupil */
  int32_t extrapolate;   /* 1 allows a pupil larger than the measured one */
  int32_t laterality;    /* mirrors the eye left to right if it has the other one */
  int32_t highest_order; /* drops radial orders above it */
  int32_t reserved;
} orvanel_adjustments;

typedef struct orvanel_eye orvanel_eye;

ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_create(const orvanel_eye_input* input,
                                                               orvanel_eye** eye) ORVANEL_C_NOEXCEPT;

/* The eye of a text of JSON, as the program's eye files have it. A prescription in it is added to the coefficients.
 *   length  bytes */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_parse(const char* text, uint64_t length,
                                                              orvanel_eye** eye) ORVANEL_C_NOEXCEPT;

/* The eye of an eye file, or of a row of a table (.csv, .tsv, .txt, .ndjson, .jsonl) that states its convention.
 *   row  of a table, from 1; 0 for an eye file, or for a table of one eye */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_read(const char* path, uint64_t row,
                                                             orvanel_eye** eye) ORVANEL_C_NOEXCEPT;

ORVANEL_C_API void ORVANEL_C_CALL orvanel_eye_release(orvanel_eye* eye) ORVANEL_C_NOEXCEPT;

ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_get_facts(const orvanel_eye* eye,
                                                                  orvanel_eye_facts* facts) ORVANEL_C_NOEXCEPT;

/* The eye as a text of JSON, in the convention in which it was stated.
 *   buffer    receives the text and a zero byte; null to learn the length only
 *   capacity  bytes of the buffer
 *   length    receives the bytes of the text without the zero byte, also if the buffer is too small */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_text(const orvanel_eye* eye, char* buffer, uint64_t capacity,
                                                             uint64_t* length) ORVANEL_C_NOEXCEPT;

/* The coefficients in a convention, from the first index of its scheme on. That in which the eye was stated returns the
 * same bits.
 *   buffer    null to learn the number only
 *   capacity  doubles in the buffer
 *   count     receives the number of coefficients, also if the buffer is too small */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_coefficients(const orvanel_eye* eye,
                                                                     const orvanel_convention* convention,
                                                                     double* buffer, uint64_t capacity,
                                                                     uint64_t* count) ORVANEL_C_NOEXCEPT;

/* The root mean square of the radial orders first to last, both included, in micrometres. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_rms(const orvanel_eye* eye, int32_t first, int32_t last,
                                                            double* rms_um) ORVANEL_C_NOEXCEPT;

/* The refraction of the eye: the lens that corrects it.
 *   method  ORVANEL_LEAST_SQUARES: of the wavefront over the whole pupil; ORVANEL_PARAXIAL: at its centre */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_refraction(const orvanel_eye* eye, int32_t method,
                                                                   orvanel_refraction* refraction) ORVANEL_C_NOEXCEPT;

/* A new eye with these changes. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_eye_adjusted(const orvanel_eye* eye,
                                                                 const orvanel_adjustments* adjustments,
                                                                 orvanel_eye** adjusted) ORVANEL_C_NOEXCEPT;

/* ---- Conditions of the physical model */

enum { ORVANEL_ONE_WAVELENGTH = 1, ORVANEL_WHITE = 2, ORVANEL_SPECTRUM = 3 };        /* light */
enum { ORVANEL_PATIENT = 1, ORVANEL_RETINA = 2 };                                    /* view */
enum { ORVANEL_AXIS = 1, ORVANEL_PEAK = 2, ORVANEL_CENTROID = 3, ORVANEL_BEST = 4 }; /* origin */

typedef struct orvanel_settings {
  uint64_t size;
  int32_t light;
  int32_t view;
  double wavelength_nm;         /* of ORVANEL_ONE_WAVELENGTH */
  const double* wavelengths_nm; /* of ORVANEL_SPECTRUM, with as many weights */
  const double* weights;
  uint64_t lines;
  double field_arcmin;        /* side of the square window of the point spread function */
  int32_t samples;            /* on each side of it */
  int32_t origin;             /* centre of the window: axis, peak or centroid */
  double stiles_crawford_rho; /* per mm^2; 0 for none */
  double stiles_crawford_x_mm;
  double stiles_crawford_y_mm;
  double achromatic_axis_x_mm; /* the place of the pupil that chromatic aberration does not deflect */
  double achromatic_axis_y_mm;
} orvanel_settings;

/* Light of 555 nm, a window of 20 minutes of arc with 256 samples on each side about the axis, the patient's view. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_settings_default(orvanel_settings* settings) ORVANEL_C_NOEXCEPT;

/* ---- Planes */

enum { /* what a plane has */
       ORVANEL_PSF = 1,
       ORVANEL_MTF = 2,
       ORVANEL_WAVEFRONT = 3,
       ORVANEL_OBJECT = 4,
       ORVANEL_IMAGE = 5
};

typedef struct orvanel_plane orvanel_plane;

/* What a plane is. Numbers that it does not have are not a number (NaN). */
typedef struct orvanel_plane_facts {
  uint64_t size;
  int32_t kind;
  int32_t view;          /* 0 for wavefronts and objects */
  orvanel_array samples; /* rows x columns, row 0 at the top; owned by the plane */
  double x_first;        /* column c is at x_first + c * x_step, to the right */
  double x_step;
  double y_first; /* row r is at y_first + r * y_step, upwards; the step is negative */
  double y_step;
  const char* axis_unit; /* "arcmin", "c/deg" or "mm" */
  const char* value_unit;
  double error;    /* stated, absolute, in the unit of the values; none above 5 waves RMS */
  double origin_x; /* of the window, from the axis, in the unit of the axes */
  double origin_y;
  double strehl_axis; /* Strehl ratio at the place of a point without aberration; of a PSF */
  double strehl_peak; /* at the highest place */
  double peak_x;      /* that place, from the axis */
  double peak_y;
  double light_share;      /* of the light, within the window of a PSF */
  double cut_off;          /* c/deg, of PSF and MTF */
  double surround;         /* what surrounds an object or image without end */
  double strehl_sample;    /* of the classic model, at the brightest sample */
  double half_width_mm;    /* of the classic model: half of the window of a PSF or image on the retina */
  double frequency_range;  /* of the classic model, c/deg: the end of the MTF's axes */
  double effective_acuity; /* of the classic model: of a ring as drawn */
  const char* warnings;    /* one line for each; empty if there are none */
  const char* notes;       /* sentences about light, view and errors, one a line */
} orvanel_plane_facts;

/* Values of the plane of a PSF are relative to the peak of the same pupil without aberration in the same light. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_psf(const orvanel_eye* eye, const orvanel_settings* settings,
                                                        orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

/* 256 x 256 frequencies; 0 is at row 128, column 128. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_mtf(const orvanel_eye* eye, const orvanel_settings* settings,
                                                        orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

/* The wavefront in millimetres over 256 x 256 samples, without piston and tilt; not a number outside the pupil. x is to
 * the right of an examiner. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_wavefront(const orvanel_eye* eye, const orvanel_settings* settings,
                                                              orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

/* An object of the caller's, copied: linear light, where 1 is white.
 *   samples       rows x columns, row 0 at the top
 *   pixel_arcmin  side of a pixel
 *   surround      the light around it without end */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_object(const orvanel_array* samples, double pixel_arcmin,
                                                           double surround, orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

/* The retinal image of an object or chart: its exact convolution with the point spread function of the eye.
 *   progress  called after each wavelength; may be null */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_image(const orvanel_eye* eye, const orvanel_settings* settings,
                                                          const orvanel_plane* object, orvanel_progress progress,
                                                          void* data, orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_plane_get_facts(const orvanel_plane* plane,
                                                                    orvanel_plane_facts* facts) ORVANEL_C_NOEXCEPT;
ORVANEL_C_API void ORVANEL_C_CALL orvanel_plane_release(orvanel_plane* plane) ORVANEL_C_NOEXCEPT;

/* ---- Charts */

enum { /* content of a chart */
       ORVANEL_OPTOTYPES = 1,
       ORVANEL_SINE_GRATING = 2,
       ORVANEL_SQUARE_GRATING = 3,
       ORVANEL_STAR = 4,
       ORVANEL_POINTS = 5,
       ORVANEL_CHECKERBOARD = 6
};
enum { ORVANEL_MICHELSON = 1, ORVANEL_WEBER = 2 };             /* contrast */
enum { ORVANEL_DARK_ON_LIGHT = 1, ORVANEL_LIGHT_ON_DARK = 2 }; /* polarity */

typedef struct orvanel_chart_request {
  uint64_t size;
  int32_t content;
  int32_t contrast_kind;
  double contrast;
  int32_t polarity;
  int32_t per_line;      /* optotypes in a line */
  const char* optotypes; /* the set: "sloan", "hotv", "landolt4", "landolt8" or "e" */
  const double* logmar;  /* the size of the optotypes of each line, from the top */
  uint64_t lines;
  uint64_t seed;          /* of the order of optotypes */
  const char* names;      /* optotypes in this order instead, separated by blanks, and lines by '/'; may be null */
  double crowding_gap;    /* between one optotype and bars around it, in its heights; negative for no bars */
  double frequency;       /* of a grating, c/deg */
  double bar_degrees;     /* of a grating, anticlockwise; 90 for vertical bars */
  double phase_degrees;   /* of the sine at the middle */
  double diameter_arcmin; /* of a star or point; side of a check */
  double spacing_arcmin;  /* between the centres of points */
  int32_t count;          /* cycles of a star, points on each side of their grid */
  int32_t reserved;
  double pixels_per_degree;
  double width_degrees; /* of the field; 0 to fit the content, which gratings and checkerboards do not allow */
  double height_degrees;
} orvanel_chart_request;

/* Five Sloan letters a line, black on white, seed 1, no bars; lines and pixels_per_degree are left 0. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_chart_default(orvanel_chart_request* request) ORVANEL_C_NOEXCEPT;

/* A chart as an object. Every pixel has the mean luminance over its area. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_chart(const orvanel_chart_request* request,
                                                          orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

/* ---- Metrics of image quality */

typedef struct orvanel_metric {
  uint64_t size;
  const char* name;       /* "VSX" */
  const char* unit;       /* "1" for pure numbers */
  const char* definition; /* one sentence */
  const char* source;     /* the paper */
  int32_t higher_is_better;
  int32_t uses_origin;
  int32_t uses_contrast;
  int32_t has_gradient;
} orvanel_metric;

ORVANEL_C_API uint64_t ORVANEL_C_CALL orvanel_metric_count(void) ORVANEL_C_NOEXCEPT;
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_metric_at(uint64_t index,
                                                              orvanel_metric* metric) ORVANEL_C_NOEXCEPT;

enum { ORVANEL_SAME_LIGHT = 1, ORVANEL_MONOCHROMATIC = 2 }; /* reference of ratios */

enum { /* why a number is not to be trusted */
       ORVANEL_NO_NOTE = 0,
       ORVANEL_PLACE_NOT_UNIQUE = 1, /* the origin is one of several places that are equally high */
       ORVANEL_BELOW_ZERO = 2,       /* the image is worse than even light */
       ORVANEL_EMPTY_REFERENCE = 3,  /* the reference is 0: not a number */
       ORVANEL_OUTSIDE_WINDOW = 4,   /* more than half of the light is out of reach: not a number */
       ORVANEL_END_OF_CONTRAST = 5   /* a cut-off is where the contrast sensitivity ends */
};

/* Which metrics, and under which conditions. Of the settings, those of light and pupil count. */
typedef struct orvanel_metrics_request {
  uint64_t size;
  const char* metrics; /* names separated by commas, in any letter case, or "all" */
  orvanel_settings settings;
  int32_t origin; /* axis, peak, centroid or best */
  int32_t reference;
  double gaussian_sd_arcmin;     /* of the metric NS */
  const double* csf_frequencies; /* a contrast sensitivity; null for that of an average observer */
  const double* csf_sensitivities;
  uint64_t csf_points;
} orvanel_metrics_request;

/* All but `metrics`, which is left null: usual settings, origin best, ratios to the same light, SD 1 minute of arc. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_metrics_default(orvanel_metrics_request* request)
    ORVANEL_C_NOEXCEPT;

/* The number of metrics that the list names: the columns of the results. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_metrics_count(const char* metrics,
                                                                  uint64_t* count) ORVANEL_C_NOEXCEPT;

/* Eyes as rows of an array, in one convention. */
typedef struct orvanel_eyes {
  uint64_t size;
  orvanel_array coefficients; /* eyes x coefficients */
  orvanel_array pupil_mm;     /* one for each eye; a stride of 0 repeats one pupil */
  orvanel_convention convention;
  double reference_nm;
  int32_t laterality;
  int32_t reserved;
} orvanel_eyes;

/* Where results of a batch are written. Arrays whose data are null are not written. */
typedef struct orvanel_metrics_output {
  uint64_t size;
  orvanel_array values;    /* eyes x metrics */
  orvanel_array errors;    /* likewise: absolute */
  orvanel_array gradients; /* eyes x metrics x coefficients: derivatives of the values */
  orvanel_array origins;   /* eyes x 2: the origin's x and y from the axis, arcmin of the patient's view */
  int32_t* notes;          /* eyes x metrics, one after the other; may be null */
  int32_t* statuses;       /* one for each eye; may be null */
} orvanel_metrics_output;

typedef struct orvanel_reasons orvanel_reasons;

/* Metrics of many eyes on threads. A row that is refused has values that are not a number, a status and a reason; all
 * others are computed. Then the call returns ORVANEL_ROWS_REFUSED, and the last error is that of the first such row. A
 * call that is cancelled has written the rows before.
 *
 * Derivatives are by the coefficients in their own convention. Those of metrics without a gradient are not a number.
 *
 *   threads   1 or more
 *   progress  called after each eye; may be null
 *   reasons   if not null, receives the reasons of refused rows, to be released by the caller */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_metrics_of_rows(const orvanel_metrics_request* request,
                                                                    const orvanel_eyes* eyes, uint32_t threads,
                                                                    orvanel_progress progress, void* data,
                                                                    const orvanel_metrics_output* output,
                                                                    orvanel_reasons** reasons) ORVANEL_C_NOEXCEPT;

/* The same for handles. Derivatives are by the coefficients in the OSA convention, in order of their index. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_metrics_of_eyes(const orvanel_metrics_request* request,
                                                                    const orvanel_eye* const* eyes, uint64_t count,
                                                                    uint32_t threads, orvanel_progress progress,
                                                                    void* data, const orvanel_metrics_output* output,
                                                                    orvanel_reasons** reasons) ORVANEL_C_NOEXCEPT;

/* The reason of a row; its status is ORVANEL_OK if the row was computed. Its texts belong to the handle. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_reason_of_row(const orvanel_reasons* reasons, uint64_t row,
                                                                  orvanel_error* error) ORVANEL_C_NOEXCEPT;
ORVANEL_C_API void ORVANEL_C_CALL orvanel_reasons_release(orvanel_reasons* reasons) ORVANEL_C_NOEXCEPT;

/* ---- Best correction */

typedef struct orvanel_correction_request {
  uint64_t size;
  double step;         /* of spheres and cylinders in the trial lens case, 0.01 to 1 D */
  double axis_step;    /* 1 to 45 degrees, a divisor of 180 */
  double vertex_mm;    /* distance of all lenses from the cornea: 0, or 1 to 30 */
  int32_t sphere_only; /* 1 to search no cylinder */
  int32_t evaluations; /* at most, of the free search */
} orvanel_correction_request;

/* A lens with a minus cylinder, and the metric of the eye behind it. */
typedef struct orvanel_lens_value {
  double sphere;
  double cylinder;
  double axis;
  double value; /* not a number where the wavefront is too steep for the model */
  double error;
  int32_t note;
  int32_t reserved;
} orvanel_lens_value;

typedef struct orvanel_correction {
  uint64_t size;
  orvanel_lens_value none;          /* without a lens */
  orvanel_lens_value best;          /* of all lenses */
  orvanel_lens_value in_case;       /* of those in the trial lens case */
  orvanel_lens_value least_squares; /* the lenses that correct these refractions */
  orvanel_lens_value paraxial;
  int32_t evaluations;         /* of the free search */
  int32_t evaluations_in_case; /* of the search in the case, in addition */
  int32_t converged;           /* 1 if the free search ended before its evaluations did */
  int32_t reserved;
} orvanel_correction;

/* Steps of 0.25 D and 5 degrees, no vertex distance, at most 300 evaluations. */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_correction_default(orvanel_correction_request* request)
    ORVANEL_C_NOEXCEPT;

/* The lens with the best value of one metric.
 *   metric    names one metric
 *   progress  called after each lens; `total` is 0, as it is unknown; may be null */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_refract(const orvanel_eye* eye,
                                                            const orvanel_metrics_request* metric,
                                                            const orvanel_correction_request* request,
                                                            orvanel_progress progress, void* data,
                                                            orvanel_correction* correction) ORVANEL_C_NOEXCEPT;

/* ---- The classic model */

enum { /* planes of the classic model, to the bit of the eight functions of orvanel.h */
       ORVANEL_CLASSIC_PSF = 1,
       ORVANEL_CLASSIC_MTF = 2,
       ORVANEL_CLASSIC_WAVEFRONT = 3,
       ORVANEL_CLASSIC_STAR = 4,             /* the built-in Siemens star */
       ORVANEL_CLASSIC_STAR_STRETCHED = 5,   /* its image, scaled to span 0 to 1 */
       ORVANEL_CLASSIC_STAR_TOTAL_LIGHT = 6, /* its image with its total light */
       ORVANEL_CLASSIC_RING = 7,             /* a Landolt ring as drawn */
       ORVANEL_CLASSIC_RING_IMAGE = 8
};

/* A plane of 256 x 256 samples. The scale is that of the eight functions, which docs/conventions.md describes.
 *   acuity  of a ring; not read for other planes
 *   gap     of a ring: 1 down, 2 up, 3 right, 4 left; not read for other planes */
ORVANEL_C_API orvanel_status ORVANEL_C_CALL orvanel_classic(const orvanel_eye* eye, int32_t what, double acuity,
                                                            int32_t gap, orvanel_plane** plane) ORVANEL_C_NOEXCEPT;

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-deprecated-headers,modernize-use-using) */

#endif /* ORVANEL_C_INTERFACE_H */
