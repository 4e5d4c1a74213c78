"""Metrics of image quality, of one eye and of many."""

from __future__ import annotations

import os
from collections.abc import Iterator, Mapping, Sequence
from ctypes import byref, c_void_p
from typing import TYPE_CHECKING, Any, NamedTuple, Optional, Union

import numpy as np
import numpy.typing as npt

from . import _library as c
from ._errors import ArgumentError
from ._library import Array, check, library

if TYPE_CHECKING:
    from ._eye import Eye

Names = Union[str, Sequence[str]]


class Metric(NamedTuple):
    """A metric of the catalogue."""

    name: str
    unit: str
    definition: str
    source: str
    higher_is_better: bool
    uses_origin: bool
    uses_contrast: bool
    has_gradient: bool


def catalogue() -> dict[str, Metric]:
    """Return all metrics by their names.

    Examples
    --------
    >>> catalogue()["VSX"].higher_is_better
    True
    """
    metrics = {}
    for i in range(library.orvanel_metric_count()):
        row = c.CMetric()
        check(library.orvanel_metric_at(i, byref(row)))
        name = row.name.decode()
        metrics[name] = Metric(
            name,
            row.unit.decode(),
            row.definition.decode(),
            row.source.decode(),
            bool(row.higher_is_better),
            bool(row.uses_origin),
            bool(row.uses_contrast),
            bool(row.has_gradient),
        )
    return metrics


def _canonical(names: Names) -> list[str]:
    """Return the names as the catalogue writes them. The library reports unknown ones."""
    listed = [names] if isinstance(names, str) else list(names)
    known = {name.lower(): name for name in catalogue()}
    if listed == ["all"]:
        return list(known.values())
    result = [part.strip() for text in listed for part in text.split(",")]
    return [known.get(name.lower(), name) for name in result]


def request_of(
    names: Names,
    *,
    light: Any = 555.0,
    origin: str = "best",
    reference: str = "same-light",
    gaussian_sd_arcmin: float = 1.0,
    contrast_sensitivity: Any = None,
    stiles_crawford: float = 0.0,
) -> tuple[c.MetricsRequest, list[str], object]:
    """Return a request, the names of its columns, and what must live as long as it does."""
    columns = _canonical(names)
    request = c.MetricsRequest()
    request.settings = c.Settings()
    check(library.orvanel_metrics_default(byref(request)))
    settings, kept = c.settings_of(light=light, stiles_crawford=stiles_crawford)
    request.settings = settings
    request.metrics = ",".join(columns).encode()
    request.origin = c.choice(origin, c.ORIGINS, "origin")
    request.reference = c.choice(reference, c.REFERENCES, "reference")
    request.gaussian_sd_arcmin = gaussian_sd_arcmin
    points = None
    if contrast_sensitivity is not None:
        points = [np.ascontiguousarray(part, dtype=np.float64) for part in contrast_sensitivity]
        if len(points) != 2 or points[0].ndim != 1 or points[0].shape != points[1].shape:
            raise ArgumentError("contrast_sensitivity is a pair of arrays: (frequencies, sensitivities)")
        request.csf_frequencies, request.csf_sensitivities = points[0].ctypes.data, points[1].ctypes.data
        request.csf_points = len(points[0])
    return request, columns, (kept, points, settings)


class EyeMetrics(Mapping[str, float]):
    """Metrics of one eye by their names.

    Attributes
    ----------
    errors : dict
        The stated error of each value, absolute.
    notes : dict
        Why a value is not to be trusted; only for such values.
    origin_arcmin : (float, float)
        The place that counts as the middle of the image, from the axis, in the patient's view.
    gradients : dict
        The derivatives by the coefficients in the OSA convention, per micrometre; empty unless requested.
    """

    def __init__(
        self,
        values: dict[str, float],
        errors: dict[str, float],
        notes: dict[str, str],
        origin_arcmin: tuple[float, float],
        gradients: dict[str, Array],
    ) -> None:
        self._values = values
        self.errors = errors
        self.notes = notes
        self.origin_arcmin = origin_arcmin
        self.gradients = gradients

    def __getitem__(self, name: str) -> float:
        return self._values[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self._values)

    def __len__(self) -> int:
        return len(self._values)

    def __repr__(self) -> str:
        return "EyeMetrics({})".format(", ".join(f"{name}={value:.6g}" for name, value in self.items()))


class Metrics(Mapping[str, Array]):
    """Metrics of many eyes: arrays of one number for each eye, by the names of the metrics.

    Attributes
    ----------
    errors : dict
        The stated errors, absolute, likewise.
    gradients : dict
        Arrays of eyes x coefficients: derivatives by the coefficients as given; empty unless requested.
    reasons : dict
        Why eyes were refused, by their row. Their values are nan.
    """

    def __init__(
        self, values: dict[str, Array], errors: dict[str, Array], gradients: dict[str, Array], reasons: dict[int, str]
    ) -> None:
        self._values = values
        self.errors = errors
        self.gradients = gradients
        self.reasons = reasons

    def __getitem__(self, name: str) -> Array:
        return self._values[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self._values)

    def __len__(self) -> int:
        return len(self._values)

    def __repr__(self) -> str:
        eyes = len(next(iter(self._values.values()))) if self._values else 0
        return f"<metrics {', '.join(self._values)} of {eyes} eyes, {len(self.reasons)} refused>"

    def to_pandas(self) -> Any:
        """Return a DataFrame with a row for each eye."""
        import pandas

        return pandas.DataFrame(dict(self._values))


class _Outputs:
    """Arrays that a batch fills: one for each metric."""

    def __init__(self, columns: list[str], eyes: int, coefficients: int, gradient: bool, out: Optional[Array]) -> None:
        shape = (len(columns), eyes)
        if out is not None and (out.shape != shape or out.dtype != np.float64 or not out.flags.writeable):
            raise ArgumentError(f"out is no writable array of float64 of the shape {shape}: metrics x eyes")
        self.columns = columns
        self.values: Array = np.full(shape, np.nan) if out is None else out
        self.errors: Array = np.full(shape, np.nan)
        self.gradients: Array = np.full((*shape, coefficients), np.nan) if gradient else np.empty((0, 0, 0))
        self.origins: Array = np.full((eyes, 2), np.nan)
        self.notes: npt.NDArray[np.int32] = np.zeros((eyes, len(columns)), dtype=np.int32)
        self.statuses: npt.NDArray[np.int32] = np.zeros(eyes, dtype=np.int32)
        self.struct = c.MetricsOutput(
            values=c.array_of(self.values.T),
            errors=c.array_of(self.errors.T),
            gradients=c.array_of(self.gradients.transpose(1, 0, 2)) if gradient else c.no_array(),
            origins=c.array_of(self.origins),
            notes=self.notes.ctypes.data,
            statuses=self.statuses.ctypes.data,
        )

    def by_name(self, array: Array) -> dict[str, Array]:
        return dict(zip(self.columns, array))


def _finish(status: int, handle: c_void_p, statuses: npt.NDArray[np.int32]) -> dict[int, str]:
    """Return the reasons of refused rows. Raise the error of a call that was not done."""
    if status not in (c.OK, c.ROWS_REFUSED):
        check(status)
    reasons = {}
    try:
        for row in np.flatnonzero(statuses):
            error = c.Error()
            check(library.orvanel_reason_of_row(handle, int(row), byref(error)))
            reasons[int(row)] = error.text.decode()
    finally:
        library.orvanel_reasons_release(handle)
    return reasons


def metrics_of_eye(eye: Eye, names: Names, gradient: bool, conditions: dict[str, Any]) -> EyeMetrics:
    """Compute metrics of one eye."""
    request, columns, kept = request_of(names, **conditions)
    # Derivatives by the modes of radial orders 0 to 6, or by all that the eye has.
    coefficients = min(max(28, eye.terms), 66)
    outputs = _Outputs(columns, 1, coefficients, gradient, None)
    handles = (c_void_p * 1)(eye._handle)
    with c.reporting(None) as report:
        status = library.orvanel_metrics_of_eyes(
            byref(request), handles, 1, 1, report, None, byref(outputs.struct), None
        )
        if status == c.ROWS_REFUSED:
            raise_row(request, handles, outputs)
        check(status)
    del kept
    notes = {name: c.NOTES[note] for name, note in zip(columns, outputs.notes[0]) if note}
    first = {name: float(column[0]) for name, column in outputs.by_name(outputs.values).items()}
    errors = {name: float(column[0]) for name, column in outputs.by_name(outputs.errors).items()}
    gradients = {name: column[0] for name, column in outputs.by_name(outputs.gradients).items()} if gradient else {}
    return EyeMetrics(first, errors, notes, (float(outputs.origins[0, 0]), float(outputs.origins[0, 1])), gradients)


def raise_row(request: c.MetricsRequest, handles: Any, outputs: _Outputs) -> None:
    """Raise the reason of the only eye."""
    reasons = c_void_p()
    with c.reporting(None) as report:
        library.orvanel_metrics_of_eyes(
            byref(request), handles, 1, 1, report, None, byref(outputs.struct), byref(reasons)
        )
    error = c.Error()
    try:
        check(library.orvanel_reason_of_row(reasons, 0, byref(error)))
        raise c.exception_of(error)
    finally:
        library.orvanel_reasons_release(reasons)


def metrics(
    coefficients: Any,
    pupil_mm: Any,
    names: Names,
    *,
    convention: Optional[str] = None,
    unit: Optional[str] = None,
    normalisation: Optional[str] = None,
    indexing: Optional[str] = None,
    y_axis: Optional[str] = None,
    wavelength_nm: Optional[float] = None,
    reference_nm: Optional[float] = None,
    gradient: bool = False,
    threads: Optional[int] = None,
    progress: Optional[c.ProgressFunction] = None,
    out: Optional[Array] = None,
    **conditions: Any,
) -> Metrics:
    """Compute metrics of many eyes on threads.

    Results have the same bits for any number of threads. A row that cannot be computed becomes nan, with a reason.

    Parameters
    ----------
    coefficients : array, eyes x coefficients
        Not copied if it is of float64.
    pupil_mm : float or array
        The diameter over which the coefficients are given.
    names : str or sequence of str
        Names of metrics, or ``"all"``.
    convention, unit, normalisation, indexing, y_axis, wavelength_nm
        ``convention="osa"``, or its parts, as those of `Eye`.
    reference_nm : float, optional
        The wavelength at which the coefficients hold. Light of several wavelengths needs it.
    gradient : bool
        Also return derivatives by the coefficients.
    threads : int, optional
        As many as there are processors unless stated.
    progress : callable, optional
        Called with the number of eyes done and that of all.
    out : array, optional
        Metrics x eyes, of float64, to be filled with the values.
    **conditions
        ``light``, ``origin``, ``reference``, ``gaussian_sd_arcmin``, ``contrast_sensitivity``, ``stiles_crawford``.

    Examples
    --------
    >>> import numpy as np
    >>> modes = np.zeros((2, 6))
    >>> modes[1, 4] = 0.25
    >>> found = metrics(modes, 3.0, ["RMSw", "SRX"], convention="osa")
    >>> found["RMSw"]
    array([0.  , 0.25])
    >>> round(float(found["SRX"][0]), 6)
    1.0
    """
    numbers = np.asarray(coefficients, dtype=np.float64)
    if numbers.ndim != 2:
        raise ArgumentError(f"coefficients have {numbers.ndim} dimensions; write them as eyes x coefficients")
    pupils = np.asarray(pupil_mm, dtype=np.float64)
    if pupils.ndim > 1 or (pupils.ndim == 1 and len(pupils) != len(numbers)):
        raise ArgumentError(f"pupil_mm is neither one number nor one for each of {len(numbers)} eyes")
    pupils = np.broadcast_to(pupils, (len(numbers),))
    stated = c.convention_of(convention, unit, normalisation, indexing, y_axis, wavelength_nm)
    request, columns, kept = request_of(names, **conditions)
    outputs = _Outputs(columns, len(numbers), numbers.shape[1], gradient, out)
    eyes = c.Eyes(
        coefficients=c.array_of(numbers),
        pupil_mm=c.array_of(pupils),
        convention=stated,
        reference_nm=reference_nm or 0.0,
        laterality=c.LATERALITIES["not stated"],
    )
    reasons = c_void_p()
    with c.reporting(progress) as report:
        status = library.orvanel_metrics_of_rows(
            byref(request),
            byref(eyes),
            threads or os.cpu_count() or 1,
            report,
            None,
            byref(outputs.struct),
            byref(reasons),
        )
        refused = _finish(status, reasons, outputs.statuses)
    del kept
    gradients = outputs.by_name(outputs.gradients) if gradient else {}
    return Metrics(outputs.by_name(outputs.values), outputs.by_name(outputs.errors), gradients, refused)
