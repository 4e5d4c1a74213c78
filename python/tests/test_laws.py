"""Tests laws of optics and of conventions on random eyes."""

from typing import Any

import numpy as np
import numpy.typing as npt
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import orvanel as ov

Modes = npt.NDArray[np.float64]

# Coefficients of radial orders 2 to 4, in micrometres, of eyes that the physical model computes fast.
modes_of_eyes = st.lists(st.floats(-0.3, 0.3), min_size=12, max_size=12).map(lambda given: np.array([0.0] * 3 + given))
some = settings(max_examples=12, deadline=None, derandomize=True)


def eye_of(modes: Any, pupil_mm: float = 3.0) -> ov.Eye:
    return ov.Eye(modes, pupil_mm=pupil_mm, convention="osa", laterality="OD")


def osa(eye: ov.Eye) -> Modes:
    """Return the coefficients of radial orders 0 to 4. An eye leaves out trailing zeros."""
    found = eye.coefficients()
    return np.append(found, np.zeros(15))[:15]


def rotated(modes: Modes, angle: float) -> Modes:
    """Return the coefficients of the same eye turned by an angle: each pair of sine and cosine turns by m times it."""
    result = modes.copy()
    for n in range(1, 5):
        for m in range(n, 0, -2):
            sine, cosine = (n * (n + 2) - m) // 2, (n * (n + 2) + m) // 2
            c, s = np.cos(m * angle), np.sin(m * angle)
            result[cosine] = c * modes[cosine] - s * modes[sine]
            result[sine] = s * modes[cosine] + c * modes[sine]
    return result


def agree(one: ov.EyeMetrics, other: ov.EyeMetrics) -> None:
    """Compare the values of two calls by their stated errors."""
    for name in one:
        assert abs(one[name] - other[name]) <= one.errors[name] + other.errors[name] + 1e-12, name


@given(modes_of_eyes, st.sampled_from(["um", "nm", "mm", "waves"]), st.sampled_from(["osa", "noll"]))
@some
def test_conventions_are_undone(modes: Modes, unit: str, indexing: str) -> None:
    parts: dict[str, Any] = {"unit": unit, "normalisation": "none", "indexing": indexing, "y_axis": "down"}
    if unit == "waves":
        parts["wavelength_nm"] = 633.0
    stated = eye_of(modes).coefficients(**parts)
    again = ov.Eye(stated, pupil_mm=3.0, laterality="OD", **parts)
    assert np.allclose(osa(again), modes, rtol=1e-15, atol=1e-15)


@given(modes_of_eyes, st.floats(1.5, 3.0))
@some
def test_a_smaller_pupil_is_undone(modes: Modes, pupil: float) -> None:
    again = eye_of(modes).at_pupil(pupil).at_pupil(3.0, extrapolate=True)
    assert np.allclose(osa(again)[3:], modes[3:], atol=1e-13)


@given(modes_of_eyes, st.floats(-6.0, 6.0), st.floats(-3.0, 0.0), st.floats(1.0, 180.0))
@some
def test_a_lens_undoes_the_refraction_that_was_added(modes: Modes, sphere: float, cylinder: float, axis: float) -> None:
    lens = ov.Refraction(sphere, cylinder, axis)
    again = eye_of(modes).with_refraction(*lens).behind_lens(lens)
    assert np.allclose(osa(again)[3:], modes[3:], atol=1e-13)


@given(modes_of_eyes, st.floats(0.75, 1.4))
@some
def test_wavelength_and_coefficients_scale_together(modes: Modes, scale: float) -> None:
    # The phase stays, and angles grow with the wavelength.
    one = eye_of(modes).psf(light=550.0, field_arcmin=6.0, samples=8)
    other = eye_of(modes * scale).psf(light=550.0 * scale, field_arcmin=6.0 * scale, samples=8)
    assert other.strehl == pytest.approx(one.strehl, abs=one.error + other.error)
    assert other.strehl_axis == pytest.approx(one.strehl_axis, abs=one.error + other.error)
    assert np.allclose(other.values, one.values, rtol=0, atol=one.error + other.error)


@given(modes_of_eyes, st.floats(0.7, 1.6))
@some
def test_a_wider_pupil_of_the_same_phase_shrinks_the_image(modes: Modes, scale: float) -> None:
    one = eye_of(modes).psf(field_arcmin=6.0, samples=8)
    other = eye_of(modes, 3.0 * scale).psf(field_arcmin=6.0 / scale, samples=8)
    assert other.strehl == pytest.approx(one.strehl, abs=one.error + other.error)
    assert np.allclose(other.values, one.values, rtol=0, atol=one.error + other.error)


@given(modes_of_eyes, st.floats(0.05, 0.35))
@some
def test_marechals_bound_of_the_strehl_ratio(modes: Modes, waves: float) -> None:
    # |mean of exp(i p)| >= mean of cos(p) >= 1 - variance / 2, for a phase p of mean 0.
    rms = float(np.sqrt((modes**2).sum()))
    if rms < 1e-6:
        return
    psf = eye_of(modes * (0.555 * waves / 2 / rms)).psf(samples=8)
    variance = (np.pi * waves) ** 2
    assert max(0.0, 1 - variance / 2) ** 2 - psf.error <= psf.strehl_axis <= psf.strehl + psf.error <= 1 + 2 * psf.error


@given(modes_of_eyes, st.floats(0.0, 2 * np.pi))
@some
def test_rotation_keeps_metrics(modes: Modes, angle: float) -> None:
    names = ["RMSw", "SRX", "VSX", "SM", "VOTF"]
    agree(eye_of(modes).metrics(names, origin="axis"), eye_of(rotated(modes, angle)).metrics(names, origin="axis"))


@given(modes_of_eyes)
@some
def test_the_fellow_eye_has_the_same_metrics(modes: Modes) -> None:
    names = ["RMSw", "RMSs", "PV", "SRX", "VSX", "SFcMTF", "AreaMTF"]
    eye = eye_of(modes)
    agree(eye.metrics(names, origin="axis"), eye.mirrored().metrics(names, origin="axis"))


@given(modes_of_eyes, st.floats(-0.3, 0.3), st.floats(-0.3, 0.3))
@some
def test_a_tilt_only_moves_the_image(modes: Modes, up: float, across: float) -> None:
    tilted = modes.copy()
    tilted[1:3] = up, across
    one, other = eye_of(modes).psf(samples=8), eye_of(tilted).psf(samples=8)
    assert other.strehl == pytest.approx(one.strehl, abs=one.error + other.error)
    # 2 c / radius, in minutes of arc; the image moves, and its peak with it.
    moved = np.hypot(other.facts["peak_x"] - one.facts["peak_x"], other.facts["peak_y"] - one.facts["peak_y"])
    assert moved == pytest.approx(2e-3 * np.hypot(up, across) / 1.5 * 180 / np.pi * 60, abs=1e-3)


@given(modes_of_eyes, st.floats(0.1, 0.9))
@some
def test_images_add(modes: Modes, share: float) -> None:
    one, other = np.zeros((10, 12)), np.zeros((10, 12))
    one[2:5, 3:4], other[6, 1:9] = 1.0, 1.0
    seen = [
        ov.picture(light, pixels_per_degree=60, surround=0.0).seen_by(eye_of(modes)).values
        for light in (one, other, share * one + (1 - share) * other)
    ]
    assert np.allclose(share * seen[0] + (1 - share) * seen[1], seen[2], rtol=0, atol=1e-9)
