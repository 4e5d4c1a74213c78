/* Orvanel computes what an eye with a measured aberration sees. This header is the manual of its C interface.
 *
 * One eye at a time: pass the pupil (OrvanelInputPupil), then the wavefront (OrvanelInputZer), then request any result
 * any number of times. The library keeps one eye and its results for the whole process, from load to unload. A new load
 * starts without an eye.
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
 * BUFFERS belong to the caller and may have any alignment. The library keeps no pointer to them. It checks only the
 * pointers named below for null.
 *
 * RESULTS: 1 = done, 0 = refused. A refused call changes nothing and writes nothing.
 *
 * MEMORY is allocated at load, by the first OrvanelInputZer and by the first OrvanelGetPattern. If memory runs out,
 * these two refuse, and a later call tries again. If it runs out at load, OrvanelGetPSF also refuses until
 * OrvanelInputZer has found memory.
 *
 * THREADS: one at a time; the library starts none. Calls that overlap all return, but they may be refused and their
 * numbers may be wrong.
 *
 * KERNELS: the environment variable ORVANEL_KERNELS chooses the instruction set by its name: baseline, avx2 or avx512.
 * It is read once, at load. If it is unset or empty, the library uses the widest instruction set of the CPU. If the CPU
 * cannot run the named one, OrvanelInputZer and therefore all other functions refuse, and standard error has one line
 * with the reason.
 *
 * ROUNDING: results have the same bits everywhere if the host's thread rounds to nearest. A directed rounding mode
 * changes the bits.
 *
 * SIGNALS: none is caught or blocked. OrvanelGetOrvanel writes to standard output. If this is a pipe that its reader
 * has closed, the system raises SIGPIPE, which ends a host that does not ignore it.
 *
 * UNITS: lengths are millimetres (pupil value, coefficients, half extent of the PSF window), frequencies are cycles per
 * degree of visual angle, acuities are decimal. The wavelength is 587.56 nm and the eye's focal length 17 mm.
 *
 * SCALE: the library's formulas use the pupil value d in such a way that results correspond to a true pupil of diameter
 * 2 d. This affects frequencies, the half extent of the PSF window and ring sizes. At d = 3 the frequency range is
 * 178.43 cycles per degree, but a 3 mm pupil cuts off at d / wavelength = 89.11. The page docs/conventions.md describes
 * the consequences.
 *
 * VIEWS: the planes of PSF and MTF are the retina as an examiner sees it through the pupil. The retinal images of ring
 * and star are what the patient sees: they are filtered with the PSF mirrored top to bottom.
 */
#ifndef ORVANEL_ORVANEL_H
#define ORVANEL_ORVANEL_H

#define ORVANEL_VERSION "0.2.0" /* of this header and of the library built with it */

#define ORVANEL_GRID_SIZE 256       /* side of a plane */
#define ORVANEL_PLANE_SAMPLES 65536 /* doubles in a plane */
#define ORVANEL_COEFFICIENTS 28     /* Zernike terms of radial orders 0 to 6 */
#define ORVANEL_SECTION_SAMPLES 128 /* doubles in a section of the modulation transfer function */

/* The calling convention on Windows. */
#if defined(_WIN32)
#define ORVANEL_CALL __cdecl
#else
#define ORVANEL_CALL
#endif

/* Marks the functions that the library exports. */
#if defined(__GNUC__) && !defined(_WIN32)
#define ORVANEL_API __attribute__((visibility("default")))
#else
#define ORVANEL_API
#endif

/* Declares for C++ that the functions throw nothing. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define ORVANEL_NOEXCEPT noexcept
#else
#define ORVANEL_NOEXCEPT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Stores the pupil value, in millimetres. Computes nothing: results remain those of the last OrvanelInputZer. */
ORVANEL_API void ORVANEL_CALL OrvanelInputPupil(double pupilDiameter) ORVANEL_NOEXCEPT;

/* Takes the wavefront aberration and computes wavefront, point spread function and modulation transfer function.
 *   coefficients  28 doubles, millimetres of wavefront, for unnormalised Zernike polynomials. These are
 *                 R(n,|m|)(rho) cos(m theta) for m >= 0 and R(n,|m|)(rho) sin(|m| theta) for m < 0. Their index is
 *                 j = n(n + 1)/2 + k with m = -n + 2k. The angle theta runs from +x (right) towards +y (down).
 *                 Indices 0 to 2 (piston and tilts) are never used, since they only move the image.
 * Refuses while the pupil value is 0 or not a number, without memory, and without kernels. A coefficient that is not
 * finite is not refused: NaN gives an eye without a pupil. Its point spread function and Strehl ratio are 0, and its
 * modulation transfer function is not a number. */
ORVANEL_API int ORVANEL_CALL OrvanelInputZer(const double* coefficients) ORVANEL_NOEXCEPT;

/* The point spread function.
 *   psf           plane; peak 1 (to one unit in the last place) at sample (128, 128), for any tilt
 *   strehl        peak relative to that of the unaberrated pupil, 0 to 1
 *   psfHalfWidth  half extent of the PSF window: half the side of the plane on the retina in millimetres,
 *                 32 x 17 x 0.00058756 / pupil; the pitch of its samples is 2 psfHalfWidth / 255
 * Refuses after a load without memory, and without kernels; before the first OrvanelInputZer the values are zeros. */
ORVANEL_API int ORVANEL_CALL OrvanelGetPSF(double* psf, double* strehl, double* psfHalfWidth) ORVANEL_NOEXCEPT;

/* The modulation transfer function.
 *   mtf             plane; 1 at zero frequency, which is sample (128, 128); columns are horizontal frequencies
 *   frequencyRange  cycles per degree at the edge of the plane, 128 samples from the centre
 * Refuses before the first successful OrvanelInputZer. */
ORVANEL_API int ORVANEL_CALL OrvanelGetMTF(double* mtf, double* frequencyRange) ORVANEL_NOEXCEPT;

/* Sections of the modulation transfer function from zero frequency outwards. Sample i is at
 * i x frequencyRange / 127.5 cycles per degree.
 *   rowSection        128 doubles, horizontal frequencies
 *   columnSection     128 doubles, vertical frequencies, downwards
 *   diffractionLimit  128 doubles or null: the curve of a perfect eye with this pupil, which reaches 0 at sample 128
 *   frequencyRange    as OrvanelGetMTF gives it
 * Refuses before the first successful OrvanelInputZer. */
ORVANEL_API int ORVANEL_CALL OrvanelGetMTFGraph(double* rowSection, double* columnSection, double* diffractionLimit,
                                                double* frequencyRange) ORVANEL_NOEXCEPT;

/* The optotype Landolt ring (broken ring) and its retinal image. Writes one line to standard output and flushes it: the
 * acuity as "%g" prints it, a tab, the ring's outer diameter in samples. A newline ends it, without a carriage return
 * also on Windows.
 *   acuity           requested decimal acuity, positive; 1.0 is a ring of 5 minutes of arc
 *   image            plane, 0.0 to 1.0: the retinal image, with the optotype's total light except what is clipped at 1
 *   effectiveAcuity  the acuity of the ring as drawn: its diameter is a whole number of samples divisible by 5
 *   optotype         plane or null: the ring as drawn, 0.0 (black) and 1.0 (white) only
 *   gapDirection     1 = gap down, 2 = up, 4 = left; 3 and every other value = right
 * Refuses before the first successful OrvanelInputZer, and when image is null. */
ORVANEL_API int ORVANEL_CALL OrvanelGetOrvanel(double acuity, double* image, double* effectiveAcuity, double* optotype,
                                               int gapDirection) ORVANEL_NOEXCEPT;

/* The retinal image of the built-in Siemens star (sector star).
 *   image  plane, 0.0 to 1.0 (not a number if the image of an eye without pupil is stretched)
 * After OrvanelInputZer the image is stretched to span 0.0 to 1.0 exactly. After OrvanelGetOrvanel, and until the next
 * OrvanelInputZer, it keeps the star's total light instead and is clipped at 1.
 * Refuses before the first successful OrvanelInputZer, and without memory. */
ORVANEL_API int ORVANEL_CALL OrvanelGetPattern(double* image) ORVANEL_NOEXCEPT;

/* The built-in Siemens star itself.
 *   pattern  plane, 0.0 (black) and 1.0 (white) only
 * Refuses before the first successful OrvanelGetPattern. */
ORVANEL_API int ORVANEL_CALL OrvanelGetPatternOriginal(double* pattern) ORVANEL_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif /* ORVANEL_ORVANEL_H */
