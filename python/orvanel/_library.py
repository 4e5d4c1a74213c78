"""Structs and functions of the C interface. The header orvanel/c_interface.h is its manual."""

from __future__ import annotations

import ctypes
import os
import sys
from collections.abc import Iterator
from contextlib import contextmanager
from ctypes import POINTER, Structure, byref, c_char_p, c_double, c_int32, c_int64, c_uint32, c_uint64, c_void_p
from typing import Any, Callable, Optional

import numpy as np
import numpy.typing as npt

from ._errors import ArgumentError, CancelledError, EyeError, FileError, OrvanelError, RefusedError

Array = npt.NDArray[np.float64]

INTERFACE = 1
OK, ROWS_REFUSED = 0, 8

UNITS = {"um": 1, "mm": 2, "nm": 3, "waves": 4}
NORMALISATIONS = {"orthonormal": 1, "none": 2}
INDEXINGS = {"osa": 1, "noll": 2, "fringe": 3}
Y_AXES = {"up": 1, "down": 2}
LATERALITIES = {"OD": 1, "OS": 2, "not stated": 3}
METHODS = {"least squares": 1, "paraxial": 2}
VIEWS = {"patient": 1, "retina": 2}
ORIGINS = {"axis": 1, "peak": 2, "centroid": 3, "best": 4}
REFERENCES = {"same-light": 1, "monochromatic": 2}
NOTES = ["", "place-not-unique", "below-zero", "empty-reference", "outside-window", "end-of-contrast"]


class _Sized(Structure):
    """A struct that begins with its size."""

    def __init__(self, **members: Any) -> None:
        super().__init__(size=ctypes.sizeof(type(self)), **members)


class Field(Structure):
    _fields_ = [("name", c_char_p), ("text", c_char_p), ("number", c_double)]


class Error(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("status", c_int32),
        ("reserved", c_int32),
        ("code", c_char_p),
        ("text", c_char_p),
        ("fields", POINTER(Field)),
        ("field_count", c_uint64),
    ]


class CArray(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("data", c_void_p),
        ("dimensions", c_int32),
        ("reserved", c_int32),
        ("shape", c_int64 * 3),
        ("strides", c_int64 * 3),
        ("owner", c_void_p),
    ]


class Convention(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("unit", c_int32),
        ("normalisation", c_int32),
        ("indexing", c_int32),
        ("y_axis", c_int32),
        ("wavelength_nm", c_double),
    ]


class EyeInput(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("coefficients", CArray),
        ("convention", Convention),
        ("pupil_mm", c_double),
        ("reference_nm", c_double),
        ("laterality", c_int32),
        ("reserved", c_int32),
        ("name", c_char_p),
    ]


class EyeFacts(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("pupil_mm", c_double),
        ("reference_nm", c_double),
        ("laterality", c_int32),
        ("reserved", c_int32),
        ("terms", c_uint64),
        ("convention", Convention),
        ("name", c_char_p),
        ("warnings", c_char_p),
    ]


class CRefraction(_Sized):
    _fields_ = [("size", c_uint64)] + [(name, c_double) for name in ("sphere", "cylinder", "axis", "m", "j0", "j45")]


class Adjustments(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("sphere", c_double),
        ("cylinder", c_double),
        ("axis", c_double),
        ("lens_sphere", c_double),
        ("lens_cylinder", c_double),
        ("lens_axis", c_double),
        ("lens_vertex_mm", c_double),
        ("pupil_mm", c_double),
        ("extrapolate", c_int32),
        ("laterality", c_int32),
        ("highest_order", c_int32),
        ("reserved", c_int32),
    ]


class Settings(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("light", c_int32),
        ("view", c_int32),
        ("wavelength_nm", c_double),
        ("wavelengths_nm", c_void_p),
        ("weights", c_void_p),
        ("lines", c_uint64),
        ("field_arcmin", c_double),
        ("samples", c_int32),
        ("origin", c_int32),
        ("stiles_crawford_rho", c_double),
        ("stiles_crawford_x_mm", c_double),
        ("stiles_crawford_y_mm", c_double),
        ("achromatic_axis_x_mm", c_double),
        ("achromatic_axis_y_mm", c_double),
    ]


PLANE_NUMBERS = (
    ["x_first", "x_step", "y_first", "y_step"],
    [
        "error",
        "origin_x",
        "origin_y",
        "strehl_axis",
        "strehl_peak",
        "peak_x",
        "peak_y",
        "light_share",
        "cut_off",
        "surround",
        "strehl_sample",
        "half_width_mm",
        "frequency_range",
        "effective_acuity",
    ],
)


class PlaneFacts(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("kind", c_int32),
        ("view", c_int32),
        ("samples", CArray),
        *[(name, c_double) for name in PLANE_NUMBERS[0]],
        ("axis_unit", c_char_p),
        ("value_unit", c_char_p),
        *[(name, c_double) for name in PLANE_NUMBERS[1]],
        ("warnings", c_char_p),
        ("notes", c_char_p),
    ]


class ChartRequest(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("content", c_int32),
        ("contrast_kind", c_int32),
        ("contrast", c_double),
        ("polarity", c_int32),
        ("per_line", c_int32),
        ("optotypes", c_char_p),
        ("logmar", c_void_p),
        ("lines", c_uint64),
        ("seed", c_uint64),
        ("names", c_char_p),
        ("crowding_gap", c_double),
        ("frequency", c_double),
        ("bar_degrees", c_double),
        ("phase_degrees", c_double),
        ("diameter_arcmin", c_double),
        ("spacing_arcmin", c_double),
        ("count", c_int32),
        ("reserved", c_int32),
        ("pixels_per_degree", c_double),
        ("width_degrees", c_double),
        ("height_degrees", c_double),
    ]


class CMetric(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("name", c_char_p),
        ("unit", c_char_p),
        ("definition", c_char_p),
        ("source", c_char_p),
        ("higher_is_better", c_int32),
        ("uses_origin", c_int32),
        ("uses_contrast", c_int32),
        ("has_gradient", c_int32),
    ]


class MetricsRequest(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("metrics", c_char_p),
        ("settings", Settings),
        ("origin", c_int32),
        ("reference", c_int32),
        ("gaussian_sd_arcmin", c_double),
        ("csf_frequencies", c_void_p),
        ("csf_sensitivities", c_void_p),
        ("csf_points", c_uint64),
    ]


class Eyes(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("coefficients", CArray),
        ("pupil_mm", CArray),
        ("convention", Convention),
        ("reference_nm", c_double),
        ("laterality", c_int32),
        ("reserved", c_int32),
    ]


class MetricsOutput(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("values", CArray),
        ("errors", CArray),
        ("gradients", CArray),
        ("origins", CArray),
        ("notes", c_void_p),
        ("statuses", c_void_p),
    ]


class CorrectionRequest(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("step", c_double),
        ("axis_step", c_double),
        ("vertex_mm", c_double),
        ("sphere_only", c_int32),
        ("evaluations", c_int32),
    ]


class CLensValue(Structure):
    _fields_ = [
        ("sphere", c_double),
        ("cylinder", c_double),
        ("axis", c_double),
        ("value", c_double),
        ("error", c_double),
        ("note", c_int32),
        ("reserved", c_int32),
    ]


class CCorrection(_Sized):
    _fields_ = [
        ("size", c_uint64),
        ("none", CLensValue),
        ("best", CLensValue),
        ("in_case", CLensValue),
        ("least_squares", CLensValue),
        ("paraxial", CLensValue),
        ("evaluations", c_int32),
        ("evaluations_in_case", c_int32),
        ("converged", c_int32),
        ("reserved", c_int32),
    ]


Progress = ctypes.CFUNCTYPE(c_int32, c_void_p, c_uint64, c_uint64)

# The arguments of each function that returns a status.
_SIGNATURES: dict[str, list[Any]] = {
    "orvanel_last_error": [POINTER(Error)],
    "orvanel_eye_create": [POINTER(EyeInput), POINTER(c_void_p)],
    "orvanel_eye_parse": [c_char_p, c_uint64, POINTER(c_void_p)],
    "orvanel_eye_read": [c_char_p, c_uint64, POINTER(c_void_p)],
    "orvanel_eye_get_facts": [c_void_p, POINTER(EyeFacts)],
    "orvanel_eye_text": [c_void_p, c_char_p, c_uint64, POINTER(c_uint64)],
    "orvanel_eye_coefficients": [c_void_p, POINTER(Convention), c_void_p, c_uint64, POINTER(c_uint64)],
    "orvanel_eye_rms": [c_void_p, c_int32, c_int32, POINTER(c_double)],
    "orvanel_eye_refraction": [c_void_p, c_int32, POINTER(CRefraction)],
    "orvanel_eye_adjusted": [c_void_p, POINTER(Adjustments), POINTER(c_void_p)],
    "orvanel_settings_default": [POINTER(Settings)],
    "orvanel_psf": [c_void_p, POINTER(Settings), POINTER(c_void_p)],
    "orvanel_mtf": [c_void_p, POINTER(Settings), POINTER(c_void_p)],
    "orvanel_wavefront": [c_void_p, POINTER(Settings), POINTER(c_void_p)],
    "orvanel_object": [POINTER(CArray), c_double, c_double, POINTER(c_void_p)],
    "orvanel_image": [c_void_p, POINTER(Settings), c_void_p, Progress, c_void_p, POINTER(c_void_p)],
    "orvanel_plane_get_facts": [c_void_p, POINTER(PlaneFacts)],
    "orvanel_chart_default": [POINTER(ChartRequest)],
    "orvanel_chart": [POINTER(ChartRequest), POINTER(c_void_p)],
    "orvanel_metric_at": [c_uint64, POINTER(CMetric)],
    "orvanel_metrics_default": [POINTER(MetricsRequest)],
    "orvanel_metrics_count": [c_char_p, POINTER(c_uint64)],
    "orvanel_metrics_of_rows": [
        POINTER(MetricsRequest),
        POINTER(Eyes),
        c_uint32,
        Progress,
        c_void_p,
        POINTER(MetricsOutput),
        POINTER(c_void_p),
    ],
    "orvanel_metrics_of_eyes": [
        POINTER(MetricsRequest),
        POINTER(c_void_p),
        c_uint64,
        c_uint32,
        Progress,
        c_void_p,
        POINTER(MetricsOutput),
        POINTER(c_void_p),
    ],
    "orvanel_reason_of_row": [c_void_p, c_uint64, POINTER(Error)],
    "orvanel_correction_default": [POINTER(CorrectionRequest)],
    "orvanel_refract": [
        c_void_p,
        POINTER(MetricsRequest),
        POINTER(CorrectionRequest),
        Progress,
        c_void_p,
        POINTER(CCorrection),
    ],
    "orvanel_classic": [c_void_p, c_int32, c_double, c_int32, POINTER(c_void_p)],
}


def _load() -> ctypes.CDLL:
    names = {"win32": "orvanel.dll", "darwin": "liborvanel.dylib"}
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), names.get(sys.platform, "liborvanel.so"))
    if not os.path.exists(path):
        raise ImportError(f"{path} is missing; install the module again")
    library = ctypes.CDLL(path)
    library.orvanel_interface_version.restype = c_uint32
    if library.orvanel_interface_version() != INTERFACE:
        raise ImportError(f"{path} has another interface than this module; install both together")
    for name, arguments in _SIGNATURES.items():
        function = getattr(library, name)
        function.argtypes, function.restype = arguments, c_int32
    for name in ("orvanel_eye_release", "orvanel_plane_release", "orvanel_reasons_release"):
        function = getattr(library, name)
        function.argtypes, function.restype = [c_void_p], None
    library.orvanel_version.restype = c_char_p
    library.orvanel_metric_count.restype = c_uint64
    return library


library = _load()
version: str = library.orvanel_version().decode()

_CLASSES = {1: ArgumentError, 2: EyeError, 3: RefusedError, 4: FileError, 5: CancelledError, 8: RefusedError}


def exception_of(error: Error) -> Exception:
    """Return the exception of an error."""
    text = error.text.decode()
    if error.status == 6:
        return MemoryError(text)
    fields: dict[str, float | str] = {}
    for i in range(error.field_count):
        field = error.fields[i]
        number = float(field.number)
        fields[field.name.decode()] = field.text.decode() if number != number else number
    return _CLASSES.get(error.status, OrvanelError)(text, error.code.decode(), fields)


def check(status: int) -> None:
    """Raise the last error of this thread unless the status is 0."""
    if status != OK:
        error = Error()
        library.orvanel_last_error(byref(error))
        raise exception_of(error)


ProgressFunction = Callable[[int, int], object]


@contextmanager
def reporting(progress: Optional[ProgressFunction]) -> Iterator[Any]:
    """Give the C function that calls a Python one. Exceptions of it, and Ctrl-C, end the call and are raised here."""
    raised: list[BaseException] = []

    def report(_: object, done: int, total: int) -> int:
        try:
            if progress is not None:
                progress(done, total)
        except BaseException as exception:  # also KeyboardInterrupt
            raised.append(exception)
            return 1
        return 0

    try:
        yield Progress(report)
    except CancelledError:
        if raised:
            raise raised[0] from None
        raise


def array_of(array: npt.NDArray[Any]) -> CArray:
    """Describe the memory of an array of doubles."""
    described = CArray(data=array.ctypes.data, dimensions=array.ndim)
    for i in range(array.ndim):
        described.shape[i] = array.shape[i]
        described.strides[i] = array.strides[i]
    return described


def no_array() -> CArray:
    """Describe an array that is not wanted."""
    return CArray()


def choice(value: Optional[str], words: dict[str, int], name: str) -> int:
    """Return the constant of a word."""
    known = ", ".join(repr(word) for word in words)
    if value is None:
        raise ArgumentError(f"{name} is not stated; write {name}= one of {known}", "missing", {"argument": name})
    if value not in words:
        raise ArgumentError(f"{name} is {value!r}; write one of {known}", "unknown_word", {"argument": name})
    return words[value]


def word(value: int, words: dict[str, int]) -> str:
    """Return the word of a constant."""
    return next(word for word, constant in words.items() if constant == value)


def convention_of(
    convention: Optional[str],
    unit: Optional[str],
    normalisation: Optional[str],
    indexing: Optional[str],
    y_axis: Optional[str],
    wavelength_nm: Optional[float],
) -> Convention:
    """Return a convention by its name, or by its parts."""
    if convention is not None:
        named = {"osa": (1, 1, 1, 1), "library": (2, 2, 1, 2)}
        if convention not in named:
            raise ArgumentError(f"convention is {convention!r}; write 'osa' or 'library', or state its parts")
        if (unit, normalisation, indexing, y_axis, wavelength_nm) != (None,) * 5:
            raise ArgumentError("convention names all parts; leave out unit, normalisation, indexing and y_axis")
        parts = named[convention]
        return Convention(unit=parts[0], normalisation=parts[1], indexing=parts[2], y_axis=parts[3])
    missing = [
        name
        for name, part in (
            ("unit", unit),
            ("normalisation", normalisation),
            ("indexing", indexing),
            ("y_axis", y_axis),
        )
        if part is None
    ]
    if missing:
        raise ArgumentError(
            f"the convention of the coefficients is incomplete; state {', '.join(missing)}, or convention='osa' for "
            "micrometres, orthonormal, OSA/ANSI indices, y up",
            "convention_incomplete",
        )
    return Convention(
        unit=choice(unit, UNITS, "unit"),
        normalisation=choice(normalisation, NORMALISATIONS, "normalisation"),
        indexing=choice(indexing, INDEXINGS, "indexing"),
        y_axis=choice(y_axis, Y_AXES, "y_axis"),
        wavelength_nm=wavelength_nm or 0.0,
    )


def settings_of(
    light: Any = 555.0,
    view: str = "patient",
    field_arcmin: float = 20.0,
    samples: int = 256,
    origin: str = "axis",
    stiles_crawford: float = 0.0,
) -> tuple[Settings, object]:
    """Return settings, and what must live as long as they do."""
    settings = Settings()
    check(library.orvanel_settings_default(byref(settings)))
    kept: object = None
    if isinstance(light, str):
        if light != "white":
            raise ArgumentError(f"light is {light!r}; write 'white', a wavelength in nm, or (wavelengths, weights)")
        settings.light = 2
    elif np.ndim(light) == 0:
        settings.light = 1
        settings.wavelength_nm = float(light)
    else:
        if len(light) != 2:
            raise ArgumentError("light is a pair of arrays: (wavelengths in nm, weights)")
        lines = [np.ascontiguousarray(part, dtype=np.float64) for part in light]
        if lines[0].ndim != 1 or lines[0].shape != lines[1].shape:
            raise ArgumentError("the wavelengths and weights of light are two arrays of the same length")
        settings.light = 3
        settings.wavelengths_nm, settings.weights = lines[0].ctypes.data, lines[1].ctypes.data
        settings.lines = len(lines[0])
        kept = lines
    settings.view = choice(view, VIEWS, "view")
    settings.field_arcmin = field_arcmin
    settings.samples = samples
    settings.origin = choice(origin, ORIGINS, "origin")
    settings.stiles_crawford_rho = stiles_crawford
    return settings, kept
