"""Tests eyes: conventions, adjustments, refraction, files, pickling."""

import copy
import pickle
import threading
from pathlib import Path
from typing import Any

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import orvanel as ov

MODES = [0, 0, 0, 0.08, 0.21, -0.05, 0.03, 0.09, -0.06, 0.02, 0, 0.01, 0.1]
numbers = st.lists(st.floats(-1.0, 1.0), min_size=3, max_size=28)


def some_eye(**parts: Any) -> ov.Eye:
    return ov.Eye(MODES, pupil_mm=4.0, convention="osa", laterality="OD", **parts)


def test_nothing_is_guessed() -> None:
    with pytest.raises(ov.ArgumentError, match="state unit, normalisation, indexing, y_axis, or convention='osa'"):
        ov.Eye(MODES, pupil_mm=4.0, laterality="OD")
    with pytest.raises(ov.ArgumentError, match="laterality is not stated; write laterality= one of 'OD', 'OS'"):
        ov.Eye(MODES, pupil_mm=4.0, convention="osa")
    with pytest.raises(ov.ArgumentError, match="unit is 'micron'; write one of 'um'"):
        ov.Eye(MODES, pupil_mm=4.0, laterality="OD", unit="micron", normalisation="none", indexing="osa", y_axis="up")


@given(
    numbers,
    st.sampled_from(["um", "mm", "nm"]),
    st.sampled_from(["orthonormal", "none"]),
    st.sampled_from(["osa", "noll"]),
    st.sampled_from(["up", "down"]),
)
@settings(max_examples=50, deadline=None)
def test_every_convention_is_read_back(
    modes: list[float], unit: str, normalisation: str, indexing: str, y_axis: str
) -> None:
    eye = ov.Eye(modes, pupil_mm=5.0, convention="osa", laterality="OS")
    stated = eye.coefficients(unit=unit, normalisation=normalisation, indexing=indexing, y_axis=y_axis)
    again = ov.Eye(
        stated, pupil_mm=5.0, laterality="OS", unit=unit, normalisation=normalisation, indexing=indexing, y_axis=y_axis
    ).coefficients()
    assert np.allclose(np.resize(np.append(again, np.zeros(28)), 28), np.append(modes, np.zeros(28))[:28], atol=1e-12)


@given(numbers, st.floats(2.0, 5.0))
@settings(max_examples=50, deadline=None)
def test_the_centre_of_the_wavefront_does_not_depend_on_the_pupil(modes: list[float], pupil: float) -> None:
    eye = ov.Eye(modes, pupil_mm=5.0, convention="osa", laterality="OD")
    small = eye.at_pupil(pupil)
    before, after = eye.refraction("paraxial"), small.refraction("paraxial")
    assert before.sphere + before.cylinder / 2 == pytest.approx(after.sphere + after.cylinder / 2, abs=1e-9)


@given(st.floats(-8.0, 8.0), st.floats(-3.0, 0.0), st.floats(1.0, 180.0))
@settings(max_examples=50, deadline=None)
def test_a_refraction_that_is_added_is_found(sphere: float, cylinder: float, axis: float) -> None:
    perfect = ov.Eye([0.0], pupil_mm=4.0, convention="osa", laterality="OD")
    found = perfect.with_refraction(sphere, cylinder, axis).refraction("least squares")
    assert found.sphere == pytest.approx(sphere, abs=1e-9)
    assert found.cylinder == pytest.approx(cylinder, abs=1e-9)


def test_mirroring_twice_is_the_same_eye() -> None:
    eye = some_eye()
    assert eye.mirrored().laterality == "OS"
    assert np.array_equal(eye.mirrored().mirrored().coefficients(), MODES)
    unknown = ov.Eye(MODES, pupil_mm=4.0, convention="osa", laterality="not stated")
    with pytest.raises(ov.EyeError):
        unknown.mirrored()


def test_errors_have_code_and_fields() -> None:
    with pytest.raises(ov.RefusedError) as refused:
        some_eye().at_pupil(6.0)
    assert refused.value.code == "pupil_larger_than_measured"
    assert refused.value.fields == {"wanted_mm": 6.0, "measured_mm": 4.0}
    again = pickle.loads(pickle.dumps(refused.value))
    assert again.fields == refused.value.fields
    with pytest.raises(ov.FileError):
        ov.Eye.read("/no/such/eye.json")
    with pytest.raises(ov.EyeError, match="index 1 is not finite"):
        ov.Eye([0.0, float("nan")], pupil_mm=4.0, convention="osa", laterality="OD")


def test_pickle_copy_and_files(tmp_path: Path) -> None:
    eye = some_eye(name="Ein Auge, ü", reference_nm=840.0)
    for again in (pickle.loads(pickle.dumps(eye)), copy.copy(eye), copy.deepcopy(eye)):
        assert np.array_equal(again.coefficients(), MODES)
        assert (again.name, again.reference_nm, again.laterality) == (eye.name, 840.0, "OD")
    eye.write(tmp_path / "eye.json")
    assert np.array_equal(ov.Eye.read(tmp_path / "eye.json").coefficients(), MODES)


def test_strided_coefficients_are_read_in_place() -> None:
    table = np.zeros((13, 3))
    table[:, 1] = MODES
    eye = ov.Eye(table[:, 1], pupil_mm=4.0, convention="osa", laterality="OD")
    assert np.array_equal(eye.coefficients(), MODES)
    out = np.empty(20)
    assert np.shares_memory(eye.coefficients(out=out), out)


def test_threads_share_an_eye() -> None:
    eye, planes = some_eye(), []
    threads = [threading.Thread(target=lambda: planes.append(eye.psf(samples=16).values)) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(planes) == 4
    assert all(np.array_equal(plane, planes[0]) for plane in planes)
