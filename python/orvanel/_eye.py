"""One eye: its coefficients, and what follows from them."""

from __future__ import annotations

import ctypes
import os
from ctypes import byref, c_double, c_uint64, c_void_p
from typing import Any, Callable, NamedTuple, Optional

import numpy as np

from . import _library as c
from ._errors import ArgumentError, EyeError
from ._library import Array, check, library
from ._metrics import EyeMetrics, Names, metrics_of_eye, request_of
from ._planes import Plane, plane_of


class Refraction(NamedTuple):
    """Sphere, minus cylinder and axis in dioptres and degrees.

    Examples
    --------
    >>> print(Refraction(-2.0, -0.5, 90.0))
    -2.00 D sphere, -0.50 D cylinder, axis 90
    """

    sphere: float
    cylinder: float
    axis: float

    def __str__(self) -> str:
        return f"{self.sphere:+.2f} D sphere, {self.cylinder:+.2f} D cylinder, axis {self.axis:.0f}"


class LensValue(NamedTuple):
    """A lens, and the metric of the eye behind it."""

    refraction: Refraction
    value: float
    error: float
    note: str


class Correction:
    """The best correction of an eye by one metric.

    Attributes
    ----------
    refraction : Refraction
        Of the best lens in the trial lens case.
    value, before : float
        The metric behind that lens, and without a lens.
    eye : Eye
        The eye behind that lens.
    in_case, best, none, least_squares, paraxial : LensValue
        The lens in the case, the best of all lenses, no lens, and the lenses that correct these refractions.
    evaluations : int
    converged : bool
    """

    def __init__(self, eye: Eye, vertex_mm: float, found: c.CCorrection) -> None:
        def lens(of: c.CLensValue) -> LensValue:
            return LensValue(Refraction(of.sphere, of.cylinder, of.axis), of.value, of.error, c.NOTES[of.note])

        self.in_case, self.best, self.none = lens(found.in_case), lens(found.best), lens(found.none)
        self.least_squares, self.paraxial = lens(found.least_squares), lens(found.paraxial)
        self.refraction, self.value, self.before = self.in_case.refraction, self.in_case.value, self.none.value
        self.evaluations = int(found.evaluations + found.evaluations_in_case)
        self.converged = bool(found.converged)
        self.eye = eye.behind_lens(self.refraction, vertex_mm=vertex_mm)

    def __repr__(self) -> str:
        return f"<{self.refraction}: {self.value:.5g}, {self.before:.5g} before>"


class Eye:
    """One eye, which does not change.

    Nothing is guessed: unit, normalisation, indexing, direction of y and laterality must be stated.

    Parameters
    ----------
    coefficients : sequence of float
        Zernike coefficients from the first index of the scheme on, radial orders 0 to 20.
    pupil_mm : float
        The diameter over which they are given.
    unit : ``"um"``, ``"mm"``, ``"nm"`` or ``"waves"``
    normalisation : ``"orthonormal"`` or ``"none"``
    indexing : ``"osa"``, ``"noll"`` or ``"fringe"``
    y_axis : ``"up"`` or ``"down"``
    laterality : ``"OD"``, ``"OS"`` or ``"not stated"``
    convention : ``"osa"`` or ``"library"``, optional
        Instead of the four parts.
    wavelength_nm : float, optional
        Of one wave of the unit ``"waves"``.
    reference_nm : float, optional
        The wavelength of light at which the coefficients hold. Light of several wavelengths needs it.
    name : str

    Examples
    --------
    >>> eye = Eye([0, 0, 0, 0, 0.5], pupil_mm=4.0, convention="osa", laterality="OD")
    >>> eye.rms_um
    0.5
    >>> print(eye.refraction("least squares"))
    -0.87 D sphere, +0.00 D cylinder, axis 180
    >>> eye.mirrored().laterality
    'OS'
    """

    __slots__ = ("_facts", "_handle", "__weakref__")

    def __init__(
        self,
        coefficients: Any,
        *,
        pupil_mm: float,
        laterality: Optional[str] = None,
        convention: Optional[str] = None,
        unit: Optional[str] = None,
        normalisation: Optional[str] = None,
        indexing: Optional[str] = None,
        y_axis: Optional[str] = None,
        wavelength_nm: Optional[float] = None,
        reference_nm: Optional[float] = None,
        name: str = "",
    ) -> None:
        self._handle = c_void_p()
        numbers = np.asarray(coefficients, dtype=np.float64)
        if numbers.ndim != 1:
            raise ArgumentError(f"coefficients have {numbers.ndim} dimensions; an eye has a list of them")
        stated = c.EyeInput(
            coefficients=c.array_of(numbers),
            convention=c.convention_of(convention, unit, normalisation, indexing, y_axis, wavelength_nm),
            pupil_mm=pupil_mm,
            reference_nm=reference_nm or 0.0,
            laterality=c.choice(laterality, c.LATERALITIES, "laterality"),
            name=name.encode(),
        )
        check(library.orvanel_eye_create(byref(stated), byref(self._handle)))
        self._read_facts()

    def __del__(self) -> None:
        handle = getattr(self, "_handle", None)
        if handle and library is not None:
            library.orvanel_eye_release(handle)

    @classmethod
    def _made(cls, make: Callable[..., int], *arguments: Any) -> Eye:
        eye = cls.__new__(cls)
        eye._handle = c_void_p()
        check(make(*arguments, byref(eye._handle)))
        eye._read_facts()
        return eye

    def _read_facts(self) -> None:
        facts = c.EyeFacts()
        check(library.orvanel_eye_get_facts(self._handle, byref(facts)))
        self._facts = facts

    @classmethod
    def from_json(cls, text: str) -> Eye:
        """Return the eye of a text of JSON, as the program's eye files have it."""
        data = text.encode()
        return cls._made(library.orvanel_eye_parse, data, len(data))

    @classmethod
    def read(cls, path: Any, row: Optional[int] = None) -> Eye:
        """Return the eye of an eye file, or of a row of a table, from 1."""
        return cls._made(library.orvanel_eye_read, os.fspath(path).encode(), row or 0)

    def to_json(self) -> str:
        """Return the eye as a text of JSON, in the convention in which it was stated."""
        length = c_uint64()
        check(library.orvanel_eye_text(self._handle, None, 0, byref(length)))
        buffer = ctypes.create_string_buffer(length.value + 1)
        check(library.orvanel_eye_text(self._handle, buffer, len(buffer), byref(length)))
        return buffer.value.decode()

    def write(self, path: Any) -> None:
        """Write an eye file."""
        with open(path, "w", encoding="utf-8") as file:
            file.write(self.to_json())

    def __reduce__(self) -> tuple[Any, ...]:
        return Eye.from_json, (self.to_json(),)

    def __copy__(self) -> Eye:
        return self

    def __deepcopy__(self, _: Any) -> Eye:
        return self

    def __repr__(self) -> str:
        name = f"{self.name}, " if self.name else ""
        return f"<Eye {name}{self.laterality}, {self.pupil_mm:g} mm, {self.rms_um:.3g} um RMS>"

    @property
    def pupil_mm(self) -> float:
        """The diameter of the pupil."""
        return float(self._facts.pupil_mm)

    @property
    def laterality(self) -> str:
        """``OD``, ``OS`` or ``not stated``."""
        return c.word(self._facts.laterality, c.LATERALITIES)

    @property
    def reference_nm(self) -> Optional[float]:
        """The wavelength at which the coefficients hold; None if it is unknown."""
        return float(self._facts.reference_nm) or None

    @property
    def name(self) -> str:
        """The name of the eye."""
        return str(self._facts.name.decode())

    @property
    def warnings(self) -> tuple[str, ...]:
        """What is unusual about the eye."""
        return tuple(self._facts.warnings.decode().splitlines())

    @property
    def terms(self) -> int:
        """The number of coefficients by OSA index, up to the last that was stated."""
        return int(self._facts.terms)

    @property
    def rms_um(self) -> float:
        """The root mean square of the wavefront without piston and tilt, in micrometres."""
        return self.rms(2)

    def rms(self, first: int, last: int = 20) -> float:
        """Return the root mean square of the radial orders first to last, in micrometres."""
        value = c_double()
        check(library.orvanel_eye_rms(self._handle, first, last, byref(value)))
        return value.value

    def coefficients(
        self,
        convention: Optional[str] = None,
        *,
        unit: Optional[str] = None,
        normalisation: Optional[str] = None,
        indexing: Optional[str] = None,
        y_axis: Optional[str] = None,
        wavelength_nm: Optional[float] = None,
        out: Optional[Array] = None,
    ) -> Array:
        """Return the coefficients in a convention, from the first index of its scheme on.

        Without arguments, those in the convention of OSA/ANSI: micrometres, orthonormal, y up.
        """
        parts = (unit, normalisation, indexing, y_axis, wavelength_nm)
        if convention is None and parts == (None,) * 5:
            convention = "osa"
        wanted = c.convention_of(convention, unit, normalisation, indexing, y_axis, wavelength_nm)
        count = c_uint64()
        check(library.orvanel_eye_coefficients(self._handle, byref(wanted), None, 0, byref(count)))
        result = np.empty(count.value) if out is None else out
        if result.dtype != np.float64 or result.ndim != 1 or not result.flags.c_contiguous:
            raise ArgumentError("out is no contiguous array of float64 of one dimension")
        check(
            library.orvanel_eye_coefficients(self._handle, byref(wanted), result.ctypes.data, len(result), byref(count))
        )
        return result[: count.value]

    def refraction(self, method: str) -> Refraction:
        """Return the lens that corrects the eye, by the method ``"least squares"`` or ``"paraxial"``."""
        found = c.CRefraction()
        check(library.orvanel_eye_refraction(self._handle, c.choice(method, c.METHODS, "method"), byref(found)))
        return Refraction(found.sphere, found.cylinder, found.axis)

    def _adjusted(self, **members: Any) -> Eye:
        adjustments = c.Adjustments(**members)
        return self._made(library.orvanel_eye_adjusted, self._handle, byref(adjustments))

    def at_pupil(self, pupil_mm: float, *, extrapolate: bool = False) -> Eye:
        """Return the eye over another pupil. A larger one than measured needs ``extrapolate=True``."""
        if not pupil_mm > 0:
            raise ArgumentError("pupil_mm is not a number above 0")
        return self._adjusted(pupil_mm=pupil_mm, extrapolate=extrapolate)

    def mirrored(self) -> Eye:
        """Return the fellow eye: mirrored left to right, with the other laterality."""
        if self.laterality == "not stated":
            raise EyeError("the eye cannot be mirrored, since its laterality is not stated", "laterality_unknown")
        return self._adjusted(laterality=c.LATERALITIES["OS" if self.laterality == "OD" else "OD"])

    def with_refraction(self, sphere: float, cylinder: float = 0.0, axis: float = 180.0) -> Eye:
        """Return the eye with a refractive error added, in dioptres at the cornea."""
        return self._adjusted(sphere=sphere, cylinder=cylinder, axis=axis)

    def behind_lens(self, lens: Refraction, *, vertex_mm: float = 0.0) -> Eye:
        """Return the eye behind a lens, at a distance of 0 or 1 to 30 mm from the cornea."""
        sphere, cylinder, axis = lens
        return self._adjusted(lens_sphere=sphere, lens_cylinder=cylinder, lens_axis=axis, lens_vertex_mm=vertex_mm)

    def up_to_order(self, highest: int) -> Eye:
        """Return the eye without radial orders above the highest."""
        if not highest > 0:
            raise ArgumentError("highest is a radial order from 1 on")
        return self._adjusted(highest_order=highest)

    def psf(self, **settings: Any) -> Plane:
        """Return the image of a point, relative to the peak of the same pupil without aberration.

        Parameters
        ----------
        light : float, ``"white"`` or (wavelengths, weights), 555 nm
        field_arcmin : float, 20
            The side of the window.
        samples : int, 256
            On each side of it.
        view : ``"patient"`` or ``"retina"``
        origin : ``"axis"``, ``"peak"`` or ``"centroid"``
            The centre of the window.
        stiles_crawford : float, 0
            Per mm^2.
        """
        return self._plane(library.orvanel_psf, settings)

    def mtf(self, **settings: Any) -> Plane:
        """Return the modulation transfer function at 256 x 256 frequencies. Settings are those of `psf`."""
        return self._plane(library.orvanel_mtf, settings)

    def wavefront(self, **settings: Any) -> Plane:
        """Return the wavefront in mm over the pupil, without piston and tilt; nan outside."""
        return self._plane(library.orvanel_wavefront, settings)

    def _plane(self, compute: Callable[..., int], conditions: dict[str, Any]) -> Plane:
        settings, kept = c.settings_of(**conditions)
        plane = c_void_p()
        check(compute(self._handle, byref(settings), byref(plane)))
        del kept
        return plane_of(plane)

    def metrics(self, names: Names = "all", *, gradient: bool = False, **conditions: Any) -> EyeMetrics:
        """Return metrics of image quality by their names.

        Parameters
        ----------
        names : str or sequence of str
        gradient : bool
            Also return derivatives by the coefficients in the OSA convention.
        **conditions
            ``light``, ``origin``, ``reference``, ``gaussian_sd_arcmin``, ``contrast_sensitivity``, ``stiles_crawford``.
        """
        return metrics_of_eye(self, names, gradient, conditions)

    def refract(
        self,
        metric: str = "VSX",
        *,
        step: float = 0.25,
        axis_step: float = 5.0,
        vertex_mm: float = 0.0,
        sphere_only: bool = False,
        evaluations: int = 300,
        progress: Optional[c.ProgressFunction] = None,
        **conditions: Any,
    ) -> Correction:
        """Return the lens with the best value of a metric.

        Parameters
        ----------
        metric : str
        step, axis_step : float
            Of the trial lens case, in dioptres and degrees.
        vertex_mm : float
            The distance of all lenses from the cornea.
        sphere_only : bool
        evaluations : int
            At most, of the free search.
        progress : callable, optional
            Called with the number of lenses tried, and 0.
        **conditions
            As of `metrics`.
        """
        request, _, kept = request_of(metric, **conditions)
        wanted = c.CorrectionRequest(
            step=step, axis_step=axis_step, vertex_mm=vertex_mm, sphere_only=sphere_only, evaluations=evaluations
        )
        found = c.CCorrection()
        with c.reporting(progress) as report:
            check(library.orvanel_refract(self._handle, byref(request), byref(wanted), report, None, byref(found)))
        del kept
        return Correction(self, vertex_mm, found)

    def classic(self, plane: str, *, acuity: float = 1.0, gap: str = "right") -> Plane:
        """Return a plane of the classic model, to the bit of the library's eight functions.

        Parameters
        ----------
        plane : str
            ``psf``, ``mtf``, ``wavefront``, ``star``, ``star stretched``, ``star total light``, ``ring`` or
            ``ring image``.
        acuity : float
            Of a ring.
        gap : ``"down"``, ``"up"``, ``"right"`` or ``"left"``
            Of a ring.
        """
        names = ["psf", "mtf", "wavefront", "star", "star stretched", "star total light", "ring", "ring image"]
        what = c.choice(plane, {name: i + 1 for i, name in enumerate(names)}, "plane")
        direction = c.choice(gap, {"down": 1, "up": 2, "right": 3, "left": 4}, "gap")
        made = c_void_p()
        check(library.orvanel_classic(self._handle, what, acuity, direction, byref(made)))
        return plane_of(made)
