"""What an eye with a measured aberration sees.

Examples
--------
>>> import orvanel as ov
>>> eye = ov.Eye([0, 0, 0, -0.11, 0.42, 0.03], pupil_mm=5.5, convention="osa", laterality="OD", reference_nm=555)
>>> round(eye.psf().strehl, 6)
0.007462
>>> eye.metrics(["VSX", "RMSw"])
EyeMetrics(VSX=0.056556, RMSw=0.435201)
"""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any

from ._errors import ArgumentError, CancelledError, EyeError, FileError, OrvanelError, RefusedError
from ._eye import Correction, Eye, LensValue, Refraction
from ._library import version as __version__
from ._metrics import EyeMetrics, Metric, Metrics, catalogue, metrics
from ._planes import Plane, chart, picture

if TYPE_CHECKING:
    from . import dask as dask

__all__ = [
    "ArgumentError",
    "CancelledError",
    "Correction",
    "Eye",
    "EyeError",
    "EyeMetrics",
    "FileError",
    "LensValue",
    "Metric",
    "Metrics",
    "OrvanelError",
    "Plane",
    "RefusedError",
    "Refraction",
    "__version__",
    "catalogue",
    "chart",
    "metrics",
    "picture",
]


def __getattr__(name: str) -> Any:
    """Import what needs other packages, when it is first used."""
    if name == "dask":
        return importlib.import_module(".dask", __name__)
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
