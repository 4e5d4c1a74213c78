/* Orvanel: what an eye with a measured aberration sees. The C interface; this header is its manual.
 *
 * One eye at a time: give the library the pupil (OrvanelInputPupil), then the wavefront (OrvanelInputZer), then ask
 * for any result as often as you like. The library keeps one eye and its results for the whole process, from load
 * to unload; a fresh load starts from nothing.
 *
 *     double c[ORVANEL_COEFFICIENTS] = {0};
 *     c[4] = 1e-4;                                    (0.1 um of defocus: coefficients are in millimetres)
 *     OrvanelInputPupil(6.0);
 *     OrvanelInputZer(c);
 *     OrvanelGetPSF(psf, &strehl, &half_width_mm);
 *
 * PLANES are 256 x 256 doubles, row-major, row 0 at the top: sample (row, column) is plane[256 * row + column].
 * Images, point spread function and modulation transfer function have their centre at sample (128, 128).
 *
 * BUFFERS belong to the caller and may have any alignment. The library keeps no pointer to them, and checks none for
 * null but the ones named below.
 *
 * RESULTS: 1 = done, 0 = refused. A refused call changes nothing and writes nothing.
 *
 * MEMORY is taken at load, by the first OrvanelInputZer and by the first OrvanelGetPattern. Where there is none left,
 * these two refuse, and a later call tries again; after a load without memory OrvanelGetPSF refuses, too, until then.
 *
 * THREADS: one at a time; the library makes none of its own. Calls that overlap all end, but they may be refused and
 * their numbers may be wrong.
 *
 * KERNELS: the environment variable ORVANEL_KERNELS, read once, at load, chooses the instruction set by its name,
 * baseline, avx2 or avx512; unset or empty, it is the widest that the CPU has. Where it names none that the CPU runs,
 * OrvanelInputZer and with it all other functions refuse, and one line on standard error says so.
 *
 * ROUNDING: results have the same bits everywhere, as long as the host's thread rounds to nearest; a directed rounding
 * mode changes the bits.
 *
 * SIGNALS: none is caught or blocked. OrvanelGetOrvanel writes to standard output; where that is a pipe whose reader
 * has closed it, the system raises SIGPIPE, which ends a host that does not ignore it.
 *
 * UNITS: lengths are millimetres (pupil value, coefficients, half width on the retina), frequencies are cycles per
 * degree of visual angle, acuities are decimal. The wavelength is 587.56 nm and the eye's focal length 17 mm.
 *
 * SCALE: the library's formulas take the pupil value d so that frequencies, the half width on the retina and ring
 * sizes correspond to a true pupil of diameter 2 d. At d = 3 the frequency range is 178.43 cycles per degree, where a
 * 3 mm pupil cuts off at d / wavelength = 89.11. docs/conventions.md tells what follows from that.
 *
 * VIEWS: the planes of PSF and MTF are the retina as an examiner sees it through the pupil. The images of ring and star
 * are what the patient sees: what filters them is the PSF mirrored top to bottom.
 */
#ifndef ORVANEL_ORVANEL_H
#define ORVANEL_ORVANEL_H

#define ORVANEL_VERSION "0.2.0" /* of this header, and of the library that is built with it */

#define ORVANEL_GRID_SIZE 256       /* side of a plane */
#define ORVANEL_PLANE_SAMPLES 65536 /* doubles in a plane */
#define ORVANEL_COEFFICIENTS 28     /* Zernike terms of radial orders 0 to 6 */
#define ORVANEL_SECTION_SAMPLES 128 /* doubles in a section of the modulation transfer function */

/* How the functions are called on Windows. */
#if defined(_WIN32)
#define ORVANEL_CALL __cdecl
#else
#define ORVANEL_CALL
#endif

/* Marks what the library exports. */
#if defined(__GNUC__) && !defined(_WIN32)
#define ORVANEL_API __attribute__((visibility("default")))
#else
#define ORVANEL_API
#endif

/* Tells C++ that the functions throw nothing. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define ORVANEL_NOEXCEPT noexcept
#else
#define ORVANEL_NOEXCEPT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Stores the pupil value, in millimetres. Computes nothing: results stay those of the last OrvanelInputZer. */
ORVANEL_API void ORVANEL_CALL OrvanelInputPupil(double pupilDiameter) ORVANEL_NOEXCEPT;

/* Takes the wavefront aberration and computes wavefront, point spread function and modulation transfer function.
 *   coefficients  28 doubles, millimetres of wavefront, unnormalised Zernike polynomials R(n,|m|)(rho) cos(m theta)
 *                 for m >= 0 and R(n,|m|)(rho) sin(|m| theta) for m < 0, at index j = n(n + 1)/2 + k with
 *                 m = -n + 2k; theta runs from +x (right) towards +y (down). Indices 0 to 2 (piston and tilts) only
 *                 move the image and are never used.
 * Refuses while the pupil value is 0 or not a number, without memory, and without kernels. A coefficient that is not
 * finite is not refused: a NaN leaves an eye without a pupil, whose point spread function and Strehl ratio are 0 and
 * whose modulation transfer function is not a number. */
ORVANEL_API int ORVANEL_CALL OrvanelInputZer(const double* coefficients) ORVANEL_NOEXCEPT;

/* The point spread function.
 *   psf           plane; peak 1 (to one unit in the last place) at sample (128, 128), whatever the tilt
 *   strehl        peak relative to that of the unaberrated pupil, 0 to 1
 *   psfHalfWidth  half the side of the plane on the retina in millimetres, 32 x 17 x 0.00058756 / pupil; samples
 *                 stand 2 psfHalfWidth / 255 apart
 * Refuses after a load without memory, and without kernels; before the first OrvanelInputZer the values are zeros. */
ORVANEL_API int ORVANEL_CALL OrvanelGetPSF(double* psf, double* strehl, double* psfHalfWidth) ORVANEL_NOEXCEPT;

/* The modulation transfer function.
 *   mtf             plane; 1 at zero frequency, which is sample (128, 128); columns are horizontal frequencies
 *   frequencyRange  cycles per degree at the edge of the plane, 128 samples from the centre
 * Refuses before the first successful OrvanelInputZer. */
ORVANEL_API int ORVANEL_CALL OrvanelGetMTF(double* mtf, double* frequencyRange) ORVANEL_NOEXCEPT;

/* Sections of the modulation transfer function from zero frequency outwards. Sample i stands at
 * i x frequencyRange / 127.5 cycles per degree.
 *   rowSection        128 doubles, horizontal frequencies
 *   columnSection     128 doubles, vertical frequencies, downwards
 *   diffractionLimit  128 doubles or null: the curve of a perfect eye with this pupil, which reaches 0 at sample 128
 *   frequencyRange    as OrvanelGetMTF gives it
 * Refuses before the first successful OrvanelInputZer. */
ORVANEL_API int ORVANEL_CALL OrvanelGetMTFGraph(double* rowSection, double* columnSection, double* diffractionLimit,
                                                double* frequencyRange) ORVANEL_NOEXCEPT;

/* The broken-ring optotype and how the eye sees it. Writes one line to standard output and flushes it: the acuity
 * as "%g" prints it, a tab, the ring's outer diameter in samples; a newline ends it, on Windows too without a carriage
 * return.
 *   acuity           requested decimal acuity, positive; 1.0 is a ring of 5 minutes of arc
 *   image            plane, 0.0 to 1.0: the ring as seen, with the optotype's total light but for what is clipped at 1
 *   effectiveAcuity  the acuity of the ring as drawn: its diameter is a whole number of samples divisible by 5
 *   optotype         plane or null: the ring as drawn, 0.0 (black) and 1.0 (white) only
 *   gapDirection     1 = gap down, 2 = up, 4 = left; 3 and every other value = right
 * Refuses before the first successful OrvanelInputZer, and when image is null. */
ORVANEL_API int ORVANEL_CALL OrvanelGetOrvanel(double acuity, double* image, double* effectiveAcuity, double* optotype,
                                               int gapDirection) ORVANEL_NOEXCEPT;

/* The built-in sector star as the eye sees it.
 *   image  plane, 0.0 to 1.0 (not a number where an eye without pupil is stretched). After OrvanelInputZer it is
 * stretched to span 0.0 to 1.0 exactly; once OrvanelGetOrvanel has been called, and until the next OrvanelInputZer, it
 * keeps the star's total light instead and is clipped at 1. Refuses before the first successful OrvanelInputZer, and
 * without memory. */
ORVANEL_API int ORVANEL_CALL OrvanelGetPattern(double* image) ORVANEL_NOEXCEPT;

/* The built-in sector star itself.
 *   pattern  plane, 0.0 (black) and 1.0 (white) only
 * Refuses before the first successful OrvanelGetPattern. */
ORVANEL_API int ORVANEL_CALL OrvanelGetPatternOriginal(double* pattern) ORVANEL_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif /* ORVANEL_ORVANEL_H */
