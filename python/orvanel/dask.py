"""Metrics of eyes that Dask holds, computed where Dask computes.

The module is imported when it is first used, as ``orvanel.dask``, and needs Dask. Data frames also need pandas.
"""

from __future__ import annotations

from collections.abc import Iterator, Mapping, Sequence
from typing import TYPE_CHECKING, Any, Optional, Union

import dask
import dask.array as da
import numpy as np

from . import _library as c
from ._errors import ArgumentError
from ._metrics import Names, request_of
from ._metrics import metrics as metrics_of_rows

if TYPE_CHECKING:
    import dask.dataframe as dd

__all__ = ["ArrayMetrics", "metrics"]


class ArrayMetrics(Mapping[str, "da.Array"]):
    """Metrics of the eyes of a Dask array: lazy arrays of one number for each eye, by the names of the metrics.

    Compute what is needed by one call, ``dask.compute(found["VSX"], found.reasons)``. Then each eye is computed once.

    Attributes
    ----------
    errors : dict
        The stated errors, absolute, likewise.
    gradients : dict
        Arrays of eyes x coefficients: derivatives by the coefficients as given; empty unless requested.
    reasons : dask.array.Array
        Why eyes were refused: a text for each eye, empty where it was computed.
    """

    def __init__(
        self,
        values: dict[str, da.Array],
        errors: dict[str, da.Array],
        gradients: dict[str, da.Array],
        reasons: da.Array,
    ) -> None:
        self._values = values
        self.errors = errors
        self.gradients = gradients
        self.reasons = reasons

    def __getitem__(self, name: str) -> da.Array:
        return self._values[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self._values)

    def __len__(self) -> int:
        return len(self._values)

    def __repr__(self) -> str:
        return f"<metrics {', '.join(self._values)} of {len(self.reasons)} eyes, not computed yet>"


def metrics(
    eyes: Union[da.Array, dd.DataFrame],
    pupil_mm: Any,
    names: Names,
    *,
    columns: Optional[Sequence[str]] = None,
    convention: Optional[str] = None,
    unit: Optional[str] = None,
    normalisation: Optional[str] = None,
    indexing: Optional[str] = None,
    y_axis: Optional[str] = None,
    wavelength_nm: Optional[float] = None,
    reference_nm: Optional[float] = None,
    gradient: bool = False,
    threads: int = 1,
    **conditions: Any,
) -> Any:
    """Compute metrics of many eyes by Dask, lazily, with the bits of `orvanel.metrics`.

    Unknown names and an incomplete convention raise at once. An eye that cannot be computed becomes nan, with a reason.

    Parameters
    ----------
    eyes : dask.array.Array, eyes x coefficients, or dask.dataframe.DataFrame
        A chunk or a partition of it is one task.
    pupil_mm : float, array, or name of a column
        The diameter over which the coefficients are given.
    names : str or sequence of str
        Names of metrics, or ``"all"``.
    columns : sequence of str
        The columns of a data frame that have the coefficients, from the first index of the scheme on.
    convention, unit, normalisation, indexing, y_axis, wavelength_nm, reference_nm
        As those of `orvanel.metrics`.
    gradient : bool
        Also return derivatives by the coefficients; of arrays only.
    threads : int, 1
        Of one task. Dask runs several tasks at once.
    **conditions
        ``light``, ``origin``, ``reference``, ``gaussian_sd_arcmin``, ``contrast_sensitivity``, ``stiles_crawford``.

    Returns
    -------
    ArrayMetrics or dask.dataframe.DataFrame
        Of an array, lazy arrays by the names of the metrics. Of a data frame, one with the same index, a column for
        each metric, and the column ``reason``, which is empty where an eye was computed.

    Examples
    --------
    >>> import dask.array
    >>> import numpy as np
    >>> modes = np.zeros((4, 6))
    >>> modes[:, 4] = [0.0, 0.1, 0.2, 0.3]
    >>> found = metrics(dask.array.from_array(modes, chunks=(2, 6)), 3.0, ["RMSw", "SRX"], convention="osa")
    >>> found
    <metrics RMSw, SRX of 4 eyes, not computed yet>
    >>> found["RMSw"].compute()
    array([0. , 0.1, 0.2, 0.3])
    """
    # Mistakes are reported here, and not by a worker later.
    c.convention_of(convention, unit, normalisation, indexing, y_axis, wavelength_nm)
    listed = request_of(names, **conditions)[1]
    settings = {
        "convention": convention,
        "unit": unit,
        "normalisation": normalisation,
        "indexing": indexing,
        "y_axis": y_axis,
        "wavelength_nm": wavelength_nm,
        "reference_nm": reference_nm,
        "threads": threads,
        **conditions,
    }
    # An empty batch finds what only the library checks: names, light, contrast.
    metrics_of_rows(np.empty((0, 1)), 1.0, listed, gradient=gradient, **settings)
    if isinstance(eyes, da.Array):
        if columns is not None:
            raise ArgumentError("columns are those of a data frame; the eyes are an array")
        return _of_array(eyes, pupil_mm, listed, gradient, settings)
    if gradient:
        raise ArgumentError("gradient needs an array; write eyes[columns].to_dask_array()")
    return _of_frame(eyes, pupil_mm, listed, columns, settings)


def _of_array(
    eyes: da.Array, pupil_mm: Any, listed: list[str], gradient: bool, settings: dict[str, Any]
) -> ArrayMetrics:
    if eyes.ndim != 2:
        raise ArgumentError(f"coefficients have {eyes.ndim} dimensions; write them as eyes x coefficients")
    whole = eyes.rechunk({1: -1}).astype(np.float64)
    rows = whole.chunks[0]
    blocks = whole.to_delayed().ravel()
    if np.ndim(pupil_mm) == 0:
        pupils = [float(pupil_mm)] * len(blocks)
    else:
        column = da.asarray(pupil_mm, dtype=np.float64)
        if column.ndim != 1 or (column.shape != whole.shape[:1] and not np.isnan(column.shape[0] + whole.shape[0])):
            raise ArgumentError(f"pupil_mm is neither one number nor one for each of {whole.shape[0]} eyes")
        if column.chunks[0] != rows and not np.isnan(sum(rows)):
            column = column.rechunk((rows,))
        if len(column.chunks[0]) != len(blocks):
            raise ArgumentError("pupil_mm has other chunks than the eyes; give both the same ones")
        pupils = list(column.to_delayed().ravel())
    one = dask.delayed(_block, pure=True)
    computed = [one(block, pupil, listed, gradient, settings) for block, pupil in zip(blocks, pupils)]

    def joined(part: int, k: int, row: tuple[int, ...] = (), dtype: Any = np.float64) -> da.Array:
        arrays = [
            da.from_delayed(block[part][k], shape=(count, *row), dtype=dtype) for block, count in zip(computed, rows)
        ]
        return da.concatenate(arrays, allow_unknown_chunksizes=True)

    wide = (whole.shape[1],)
    return ArrayMetrics(
        {name: joined(0, k) for k, name in enumerate(listed)},
        {name: joined(1, k) for k, name in enumerate(listed)},
        {name: joined(2, k, wide) for k, name in enumerate(listed)} if gradient else {},
        joined(3, 0, dtype=object),
    )


def _reasons(refused: dict[int, str], rows: int) -> list[str]:
    return [refused.get(row, "") for row in range(rows)]


def _block(coefficients: Any, pupil_mm: Any, listed: list[str], gradient: bool, settings: dict[str, Any]) -> Any:
    """Return values, errors, gradients and reasons of a chunk: a list of arrays each."""
    found = metrics_of_rows(coefficients, pupil_mm, listed, gradient=gradient, **settings)
    reasons = np.array(_reasons(found.reasons, len(coefficients)), dtype=object)
    return list(found.values()), list(found.errors.values()), list(found.gradients.values()), [reasons]


def _of_frame(
    eyes: dd.DataFrame, pupil_mm: Any, listed: list[str], columns: Optional[Sequence[str]], settings: dict[str, Any]
) -> dd.DataFrame:
    if not hasattr(eyes, "map_partitions"):
        raise ArgumentError(f"eyes are a {type(eyes).__name__}, and neither a Dask array nor a Dask data frame")
    if columns is None:
        raise ArgumentError(
            "columns are missing; name the columns that have the coefficients, in their order", "missing"
        )
    wanted = list(columns) + ([pupil_mm] if isinstance(pupil_mm, str) else [])
    for name in wanted:
        if name not in eyes.columns:
            raise ArgumentError(f"the data frame has no column {name!r}", "unknown_column", {"column": str(name)})
    if not isinstance(pupil_mm, str):
        pupil_mm = float(pupil_mm)
    given = (pupil_mm, listed, list(columns), settings)
    return eyes[wanted].map_partitions(_partition, *given, meta=_partition(eyes._meta[wanted], *given))


def _partition(frame: Any, pupil_mm: Any, listed: list[str], columns: list[str], settings: dict[str, Any]) -> Any:
    """Return the metrics of a part of a data frame."""
    import pandas

    pupils = frame[pupil_mm].to_numpy(np.float64) if isinstance(pupil_mm, str) else pupil_mm
    found = metrics_of_rows(frame[columns].to_numpy(np.float64), pupils, listed, **settings)
    result = pandas.DataFrame(dict(found), index=frame.index)
    result["reason"] = pandas.Series(_reasons(found.reasons, len(frame)), index=frame.index, dtype="str")
    return result
