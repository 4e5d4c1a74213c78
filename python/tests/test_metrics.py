"""Tests metrics of one eye and of many, and the best correction."""

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest

import orvanel as ov

RNG = np.random.default_rng(5)
MODES = np.concatenate([np.zeros((6, 3)), RNG.normal(0.0, 0.06, (6, 12))], axis=1)


def test_rows_and_eyes_agree_for_every_number_of_threads() -> None:
    first = ov.metrics(MODES, 3.0, ["VSX", "RMSw"], convention="osa", threads=1)
    for threads in (2, 5):
        again = ov.metrics(MODES, 3.0, ["VSX", "RMSw"], convention="osa", threads=threads)
        assert np.array_equal(again["VSX"], first["VSX"])
    for row, modes in enumerate(MODES):
        eye = ov.Eye(modes, pupil_mm=3.0, convention="osa", laterality="OD")
        assert eye.metrics(["VSX"])["VSX"] == first["VSX"][row]
    assert np.allclose(first["RMSw"], np.sqrt((MODES**2).sum(axis=1)), rtol=1e-9)
    assert first["VSX"].flags.c_contiguous


def test_gradients_are_differences() -> None:
    step = 1e-5
    found = ov.metrics(MODES[:1], 3.0, ["SRX"], convention="osa", gradient=True)
    assert found.gradients["SRX"].shape == (1, 15)
    for k in (4, 7, 12):
        moved = np.repeat(MODES[:1], 2, axis=0)
        moved[:, k] += [-step, step]
        low, high = ov.metrics(moved, 3.0, ["SRX"], convention="osa")["SRX"]
        assert found.gradients["SRX"][0, k] == pytest.approx((high - low) / (2 * step), abs=1e-4)


def test_a_bad_row_is_nan_with_a_reason() -> None:
    modes = MODES.copy()
    modes[2, 4] = np.nan
    found = ov.metrics(modes, 3.0, "VSX", convention="osa")
    assert np.isnan(found["VSX"][2])
    assert np.isfinite(np.delete(found["VSX"], 2)).all()
    assert list(found.reasons) == [2]
    assert "index 4 is not finite" in found.reasons[2]


def test_one_bad_eye_raises() -> None:
    eye = ov.Eye([0, 0, 0, 0, 500.0], pupil_mm=3.0, convention="osa", laterality="OD")
    with pytest.raises(ov.RefusedError):
        eye.metrics("VSX")


def test_out_and_views_are_used_in_place() -> None:
    out = np.empty((1, 6))
    found = ov.metrics(MODES[::-1], 3.0, "RMSw", convention="osa", out=out)
    assert np.shares_memory(found["RMSw"], out)
    assert np.array_equal(out[0], ov.metrics(MODES, 3.0, "RMSw", convention="osa")["RMSw"][::-1])
    with pytest.raises(ov.ArgumentError, match="metrics x eyes"):
        ov.metrics(MODES, 3.0, "RMSw", convention="osa", out=np.empty((2, 6)))


def test_an_interrupt_ends_a_batch() -> None:
    seen = []

    def stop(done: int, total: int) -> None:
        seen.append((done, total))
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt):
        ov.metrics(MODES, 3.0, "RMSw", convention="osa", progress=stop)
    assert seen == [(1, 6)]


def test_names_are_those_of_the_catalogue() -> None:
    assert ov.catalogue()["RMSw"].unit == "um"
    assert list(ov.metrics(MODES[:1], 3.0, "rmsw,srx", convention="osa")) == ["RMSw", "SRX"]
    with pytest.raises(ov.ArgumentError, match="VSXX"):
        ov.metrics(MODES, 3.0, "VSXX", convention="osa")
    with pytest.raises(ov.ArgumentError, match="convention='osa'"):
        ov.metrics(MODES, 3.0, "VSX")


def test_refract_corrects_defocus() -> None:
    eye = ov.Eye([0, 0, 0, 0, 0.4], pupil_mm=3.0, convention="osa", laterality="OD")
    best = eye.refract(metric="SRX", sphere_only=True)
    # The eye has -4 root(3) 0.4 / 1.5^2 = -1.23 D; the case has steps of 0.25 D.
    assert best.refraction.sphere == -1.25
    assert best.best.refraction.sphere == pytest.approx(-1.2317, abs=5e-3)
    assert best.before < best.value <= best.best.value + 1e-6
    assert best.eye.refraction("least squares").sphere == pytest.approx(-1.2317 + 1.25, abs=1e-4)


@pytest.mark.skipif("ORVANEL_PROGRAM" not in os.environ, reason="the program is not built")
def test_the_program_prints_the_same_numbers(tmp_path: Path) -> None:
    eye = ov.Eye(MODES[0], pupil_mm=3.0, convention="osa", laterality="OD")
    eye.write(tmp_path / "eye.json")
    command = [os.environ["ORVANEL_PROGRAM"], "simulate", "eye.json", "-o", "out", "--format", "npy"]
    subprocess.run(command, cwd=tmp_path, check=True, capture_output=True)
    assert np.array_equal(np.load(tmp_path / "out" / "psf.npy"), eye.psf().values)
    assert np.array_equal(np.load(tmp_path / "out" / "mtf.npy"), eye.mtf().values)
