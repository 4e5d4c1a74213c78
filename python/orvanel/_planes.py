"""Planes with their axes, units and errors, and how they show themselves."""

from __future__ import annotations

import base64
import ctypes
import html
import struct
import zlib
from ctypes import byref, c_void_p
from typing import TYPE_CHECKING, Any, Optional

import numpy as np

from . import _library as c
from ._errors import ArgumentError
from ._library import Array, check, library

if TYPE_CHECKING:
    from ._eye import Eye

_KINDS = {1: "psf", 2: "mtf", 3: "wavefront", 4: "object", 5: "image"}


class _Memory:
    """The samples of a plane's handle; arrays over them keep it alive."""

    def __init__(self, handle: c_void_p, address: int, shape: tuple[int, int]) -> None:
        self._handle = handle
        self.__array_interface__ = {"data": (address, True), "shape": shape, "typestr": "<f8", "version": 3}

    def __del__(self) -> None:
        library.orvanel_plane_release(self._handle)


def plane_of(handle: c_void_p) -> Plane:
    """Return the plane of a handle, which it takes over."""
    facts = c.PlaneFacts()
    check(library.orvanel_plane_get_facts(handle, byref(facts)))
    shape = (int(facts.samples.shape[0]), int(facts.samples.shape[1]))
    values = np.asarray(_Memory(handle, facts.samples.data, shape))
    numbers = {name: float(getattr(facts, name)) for group in c.PLANE_NUMBERS for name in group}
    view = c.word(facts.view, c.VIEWS) if facts.view else ""
    return Plane(
        values,
        _KINDS[facts.kind],
        numbers,
        view,
        facts.axis_unit.decode(),
        facts.value_unit.decode(),
        tuple(facts.warnings.decode().splitlines()),
        tuple(facts.notes.decode().splitlines()),
    )


class Plane:
    """Samples in a rectangle: row 0 is at the top, x grows to the right and y upwards.

    ``np.asarray(plane)`` gives the samples without a copy. They are read-only.

    Attributes
    ----------
    values : ndarray
        The samples.
    kind : str
        ``psf``, ``mtf``, ``wavefront``, ``object`` or ``image``.
    view : str
        ``patient``, ``retina``, or empty.
    axis_unit, value_unit : str
        ``arcmin``, ``c/deg`` or ``mm``.
    warnings, notes : tuple of str
        What to keep in mind about these numbers.
    """

    def __init__(
        self,
        values: Array,
        kind: str,
        numbers: dict[str, float],
        view: str,
        axis_unit: str,
        value_unit: str,
        warnings: tuple[str, ...] = (),
        notes: tuple[str, ...] = (),
    ) -> None:
        self.values = values
        self.kind = kind
        self.view = view
        self.axis_unit = axis_unit
        self.value_unit = value_unit
        self.warnings = warnings
        self.notes = notes
        self._numbers = numbers

    def __array__(self, dtype: Any = None, copy: Optional[bool] = None) -> Array:
        if copy:
            return np.array(self.values, dtype=dtype)  # type: ignore[no-any-return,unused-ignore,return-value]
        return np.asarray(self.values, dtype=dtype)  # type: ignore[no-any-return,unused-ignore,return-value]

    def __reduce__(self) -> tuple[Any, ...]:
        return Plane, (
            np.array(self.values),
            self.kind,
            self._numbers,
            self.view,
            self.axis_unit,
            self.value_unit,
            self.warnings,
            self.notes,
        )

    def __copy__(self) -> Plane:
        return self

    def __repr__(self) -> str:
        rows, columns = self.values.shape
        return f"<{self.kind}, {rows} x {columns}, {abs(self._numbers['x_step']):.4g} {self.axis_unit} apart>"

    @property
    def shape(self) -> tuple[int, int]:
        """Rows and columns."""
        return (self.values.shape[0], self.values.shape[1])

    @property
    def x(self) -> Array:
        """The place of each column, in the unit of the axes."""
        return np.asarray(
            self._numbers["x_first"] + self._numbers["x_step"] * np.arange(self.values.shape[1]), np.float64
        )

    @property
    def y(self) -> Array:
        """The place of each row, upwards, in the unit of the axes."""
        return np.asarray(
            self._numbers["y_first"] + self._numbers["y_step"] * np.arange(self.values.shape[0]), np.float64
        )

    def _in(self, unit: str, places: Array) -> Array:
        if self.axis_unit != unit:
            raise AttributeError(f"the axes of this {self.kind} are in {self.axis_unit}; use x and y")
        return places

    @property
    def x_arcmin(self) -> Array:
        """The same as `x`, for planes in minutes of arc."""
        return self._in("arcmin", self.x)

    @property
    def y_arcmin(self) -> Array:
        """The same as `y`, for planes in minutes of arc."""
        return self._in("arcmin", self.y)

    @property
    def error(self) -> float:
        """The stated error of the values, absolute; nan where none is stated."""
        return self._numbers["error"]

    @property
    def strehl(self) -> float:
        """The Strehl ratio at the highest place, of a PSF."""
        return self._numbers["strehl_peak"]

    @property
    def strehl_axis(self) -> float:
        """The Strehl ratio at the place of a point without aberration, of a PSF."""
        return self._numbers["strehl_axis"]

    @property
    def light_share(self) -> float:
        """The share of the light within the window, of a PSF."""
        return self._numbers["light_share"]

    @property
    def facts(self) -> dict[str, float]:
        """All other numbers of the plane; nan where it has none."""
        return dict(self._numbers)

    def seen_by(
        self,
        eye: Eye,
        *,
        light: Any = 555.0,
        view: str = "patient",
        progress: Optional[c.ProgressFunction] = None,
    ) -> Plane:
        """Return the retinal image of this object: its exact convolution with the eye's PSF.

        Parameters
        ----------
        eye : Eye
        light : float, ``"white"`` or (wavelengths, weights)
        view : ``"patient"`` or ``"retina"``
        progress : callable, optional
            Called with the number of wavelengths done and that of all.
        """
        if self.kind != "object":
            raise ArgumentError(f"a {self.kind} is no object; make one by chart or picture", "not_an_object")
        settings, kept = c.settings_of(light=light, view=view)
        described = c.array_of(np.asarray(self.values))
        seen, made = c_void_p(), c_void_p()
        check(library.orvanel_object(byref(described), self._numbers["x_step"], self._numbers["surround"], byref(made)))
        try:
            with c.reporting(progress) as report:
                check(library.orvanel_image(eye._handle, byref(settings), made, report, None, byref(seen)))
        finally:
            library.orvanel_plane_release(made)
        del kept
        return plane_of(seen)

    def _repr_png_(self) -> bytes:
        """Return a grey picture: black is the lowest value, or 0, and white the highest, or 1."""
        values = np.asarray(self.values)
        finite = np.isfinite(values)
        low, high = 0.0, 1.0
        if self.kind == "wavefront":
            low, high = float(values[finite].min()), float(values[finite].max())
        elif self.kind in ("psf", "mtf"):
            high = float(values[finite].max())
        span = high - low if high > low else 1.0
        light = np.clip((np.where(finite, values, low) - low) / span, 0.0, 1.0)
        if self.kind in ("psf", "object", "image"):
            # Light as the values of a display, sRGB.
            light = np.where(light <= 0.0031308, 12.92 * light, 1.055 * light ** (1 / 2.4) - 0.055)
        return _png(np.round(255.0 * light).astype(np.uint8))

    @property
    def caption(self) -> str:
        """What the picture of the plane shows: size, what white is, view and warnings."""
        values = np.asarray(self.values)
        high = float(values[np.isfinite(values)].max())
        width, height = (abs(self._numbers[f"{a}_step"]) * n for a, n in (("x", self.shape[1]), ("y", self.shape[0])))
        parts = [f"{self.kind}, {width:.4g} x {height:.4g} {self.axis_unit}"]
        if self.kind == "psf":
            classic = np.isnan(self._numbers["strehl_peak"])
            parts.append(f"white is {high:.3g} of " + ("the peak" if classic else "the peak without aberration"))
            if self.light_share < 0.99:
                parts.append(f"{100 * self.light_share:.3g} % of the light")
        elif self.kind == "mtf":
            parts.append(f"white is {high:.3g}")
        elif self.kind == "wavefront":
            parts.append(f"black to white is {high - float(values[np.isfinite(values)].min()):.3g} {self.value_unit}")
        if self.view:
            parts.append(f"view: {self.view}")
        return "; ".join(parts + [f"warning: {text}" for text in self.warnings])

    def _repr_html_(self) -> str:
        """Return the picture with its caption, which notebooks prefer to the picture alone."""
        data = base64.b64encode(self._repr_png_()).decode()
        return (
            f'<figure style="margin:0"><img src="data:image/png;base64,{data}" alt="{self.kind}">'
            f"<figcaption>{html.escape(self.caption)}</figcaption></figure>"
        )

    def plot(self, ax: Any = None, **options: Any) -> Any:
        """Draw the plane with matplotlib, and return its axes."""
        import matplotlib.pyplot as plt

        if ax is None:
            ax = plt.subplots()[1]
        n = self._numbers
        half_x, half_y = abs(n["x_step"]) / 2, abs(n["y_step"]) / 2
        x, y = self.x, self.y
        options.setdefault("cmap", "gray")
        image = ax.imshow(self.values, extent=(x[0] - half_x, x[-1] + half_x, y[-1] - half_y, y[0] + half_y), **options)
        ax.set_xlabel(f"x [{self.axis_unit}]")
        ax.set_ylabel(f"y [{self.axis_unit}]")
        ax.set_title(self.kind + (f", view of the {self.view}" if self.view else ""))
        ax.figure.colorbar(image, ax=ax, label=f"[{self.value_unit}]")
        return ax

    def to_xarray(self) -> Any:
        """Return a DataArray with the axes as coordinates."""
        import xarray

        attributes = {"units": self.value_unit, "view": self.view, "error": self.error, "notes": "\n".join(self.notes)}
        result = xarray.DataArray(
            self.values, dims=("y", "x"), coords={"y": self.y, "x": self.x}, name=self.kind, attrs=attributes
        )
        for axis in ("x", "y"):
            result[axis].attrs["units"] = self.axis_unit
        return result

    def to_pandas(self) -> Any:
        """Return a DataFrame with y as index and x as columns."""
        import pandas

        rows, columns = pandas.Index(self.y, name="y"), pandas.Index(self.x, name="x")
        return pandas.DataFrame(self.values, index=rows, columns=columns)


def _png(grey: Any) -> bytes:
    rows, columns = grey.shape

    def chunk(name: bytes, data: bytes) -> bytes:
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

    lines = b"".join(b"\0" + grey[r].tobytes() for r in range(rows))
    head = struct.pack(">IIBBBBB", columns, rows, 8, 0, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b"")


def picture(values: Any, *, pixels_per_degree: float, surround: float = 1.0) -> Plane:
    """Return an object of linear light, where 1 is white, to be seen by an eye.

    Parameters
    ----------
    values : array of two dimensions
    pixels_per_degree : float
    surround : float
        The light around it without end.

    Examples
    --------
    >>> import numpy as np
    >>> picture(np.zeros((20, 30)), pixels_per_degree=60)
    <object, 20 x 30, 1 arcmin apart>
    """
    samples = np.asarray(values, dtype=np.float64)
    if samples.ndim != 2:
        raise ArgumentError(f"values have {samples.ndim} dimensions; an object has 2")
    if not pixels_per_degree > 0:
        raise ArgumentError("pixels_per_degree is not a number above 0")
    made = c_void_p()
    check(library.orvanel_object(byref(c.array_of(samples)), 60.0 / pixels_per_degree, surround, byref(made)))
    return plane_of(made)


_PATTERNS = {"sine": 2, "square": 3, "star": 4, "points": 5, "checkerboard": 6}


def chart(
    content: str,
    *,
    pixels_per_degree: float,
    logmar: Any = None,
    per_line: int = 5,
    names: Optional[str] = None,
    seed: int = 1,
    crowding_gap: Optional[float] = None,
    frequency: float = 0.0,
    bar_degrees: float = 90.0,
    phase_degrees: float = 0.0,
    diameter_arcmin: float = 0.0,
    spacing_arcmin: float = 0.0,
    count: Optional[int] = None,
    contrast: float = 1.0,
    weber: bool = False,
    light_on_dark: bool = False,
    field_degrees: Optional[tuple[float, float]] = None,
) -> Plane:
    """Draw a chart. Every pixel has the mean luminance over its area.

    Parameters
    ----------
    content : str
        A set of optotypes: ``sloan``, ``hotv``, ``landolt4``, ``landolt8`` or ``e``; or a pattern: ``sine``,
        ``square``, ``star``, ``points`` or ``checkerboard``.
    pixels_per_degree : float
    logmar : sequence of float
        The size of the optotypes of each line, from the top.
    names : str, optional
        Optotypes in this order, separated by blanks, and lines by ``/``; otherwise they are drawn by the seed.
    crowding_gap : float, optional
        The gap to bars around one optotype, in its heights.
    frequency, bar_degrees, phase_degrees : float
        Of a grating, in cycles per degree and degrees.
    diameter_arcmin, spacing_arcmin, count
        Of a star, points, or checks.
    field_degrees : (width, height), optional
        Needed by gratings and checkerboards, which fill it.

    Examples
    --------
    >>> chart("sloan", logmar=[0.5], pixels_per_degree=60).shape
    (48, 174)
    """
    request = c.ChartRequest()
    check(library.orvanel_chart_default(byref(request)))
    sizes = np.ascontiguousarray([] if logmar is None else np.atleast_1d(logmar), dtype=np.float64)
    if content in _PATTERNS:
        request.content = _PATTERNS[content]
    else:
        if logmar is None:
            raise ArgumentError("logmar is missing; state the size of the optotypes of each line", "missing")
        request.optotypes = content.encode()
    request.logmar, request.lines = sizes.ctypes.data, len(sizes)
    request.per_line, request.seed = per_line, seed
    request.names = None if names is None else names.encode()
    if crowding_gap is not None:
        request.crowding_gap = crowding_gap
    request.frequency, request.bar_degrees, request.phase_degrees = frequency, bar_degrees, phase_degrees
    request.diameter_arcmin, request.spacing_arcmin = diameter_arcmin, spacing_arcmin
    if count is not None:
        request.count = count
    elif content == "points":
        request.count = 1
    request.contrast, request.contrast_kind = contrast, 2 if weber else 1
    request.polarity = 2 if light_on_dark else 1
    request.pixels_per_degree = pixels_per_degree
    if field_degrees is not None:
        request.width_degrees, request.height_degrees = field_degrees
    made = ctypes.c_void_p()
    check(library.orvanel_chart(byref(request), byref(made)))
    return plane_of(made)
