"""Tests planes: no copies, axes, charts, pictures of themselves, the classic model."""

import gc
import pickle
import struct
import zlib
from typing import Any

import numpy as np
import pytest

import orvanel as ov


def some_eye(**parts: Any) -> ov.Eye:
    return ov.Eye([0, 0, 0, 0.08, 0.21], pupil_mm=3.0, convention="osa", laterality="OD", **parts)


def test_samples_are_not_copied_and_outlive_their_plane() -> None:
    psf = some_eye().psf(field_arcmin=5, samples=25)
    values = np.asarray(psf)
    assert values is psf.values
    assert not values.flags.writeable
    assert values.flags.c_contiguous
    kept = values.copy()
    del psf
    gc.collect()
    assert np.array_equal(values, kept)


def test_axes_and_facts() -> None:
    psf = some_eye().psf(field_arcmin=5, samples=25)
    assert psf.x_arcmin[12] == 0.0
    assert psf.y_arcmin[0] == pytest.approx(2.4)
    assert psf.values[12, 12] == pytest.approx(psf.strehl_axis, abs=2e-9)
    assert (psf.view, psf.error, psf.axis_unit) == ("patient", 1e-9, "arcmin")
    mtf = some_eye().mtf()
    assert mtf.values[128, 128] == 1.0
    with pytest.raises(AttributeError, match="c/deg; use x and y"):
        mtf.x_arcmin  # noqa: B018


def test_a_perfect_eye_has_a_strehl_ratio_of_1() -> None:
    psf = ov.Eye([0.0], pupil_mm=3.0, convention="osa", laterality="OD").psf(samples=33, field_arcmin=6)
    assert psf.strehl == pytest.approx(1.0, abs=1e-9)


def test_a_tilt_moves_the_image_by_its_slope() -> None:
    # W = 2 c x / radius moves the image by 2 c / radius, in minutes of arc.
    psf = ov.Eye([0, 0, 0.3], pupil_mm=3.0, convention="osa", laterality="OD").psf(samples=16)
    expected = 2 * 0.3e-3 / 1.5 * 180 / np.pi * 60
    assert abs(psf.facts["peak_x"]) == pytest.approx(expected, abs=1e-4)


def test_white_light_needs_the_reference_wavelength() -> None:
    with pytest.raises(ov.RefusedError, match="reference wavelength"):
        some_eye().psf(light="white", samples=8)
    white = some_eye(reference_nm=555.0).psf(light="white", samples=8)
    assert "31 wavelengths" in " ".join(white.notes)


def test_a_chart_is_seen() -> None:
    chart = ov.chart("sloan", logmar=[0.8, 0.6], pixels_per_degree=30)
    seen = chart.seen_by(some_eye())
    assert seen.shape == chart.shape
    assert seen.kind == "image"
    assert 0.0 < seen.values.min() < seen.values.max() < 1.01
    with pytest.raises(ov.ArgumentError, match="no object"):
        seen.seen_by(some_eye())
    with pytest.raises(ov.ArgumentError, match="logmar is missing"):
        ov.chart("sloan", pixels_per_degree=30)


def test_a_uniform_picture_stays() -> None:
    seen = ov.picture(np.full((12, 10), 0.25), pixels_per_degree=60, surround=0.25).seen_by(some_eye())
    assert np.allclose(seen.values, 0.25, atol=1e-12)


def test_a_plane_shows_itself_as_a_png() -> None:
    png = some_eye().psf(samples=16)._repr_png_()
    assert png.startswith(b"\x89PNG\r\n\x1a\n")
    assert struct.unpack(">II", png[16:24]) == (16, 16)
    data = png[png.index(b"IDAT") + 4 :]
    assert len(zlib.decompressobj().decompress(data)) == 16 * 17


def test_pickle() -> None:
    psf = some_eye().psf(samples=16)
    again = pickle.loads(pickle.dumps(psf))
    assert np.array_equal(again.values, psf.values)
    assert again.facts["strehl_peak"] == psf.strehl
    assert np.array_equal(again.x, psf.x)


def test_the_classic_model_has_its_scale() -> None:
    psf = some_eye().classic("psf")
    assert psf.shape == (256, 256)
    # 32 x 17 x 0.00058756 / pupil
    assert psf.facts["half_width_mm"] == pytest.approx(32 * 17 * 0.00058756 / 3.0, rel=1e-12)
    ring = some_eye().classic("ring", acuity=0.5, gap="up")
    assert set(np.unique(ring.values)) == {0.0, 1.0}


def test_a_picture_says_what_white_is_and_how_much_light_it_has() -> None:
    blurred = ov.Eye([0, 0, 0, 0, 1.0], pupil_mm=6.0, convention="osa", laterality="OD")
    psf = blurred.psf(field_arcmin=5, samples=64)
    assert psf.light_share < 0.5
    peak = float(psf.values.max())
    assert f"white is {peak:.3g} of the peak without aberration" in psf.caption
    assert f"{100 * psf.light_share:.3g} % of the light" in psf.caption
    assert "view: patient" in psf.caption
    assert "warning: the window of the PSF has" in psf.caption
    assert psf.caption.split(";")[0] in psf._repr_html_()


def test_no_error_is_stated_above_five_waves() -> None:
    for defocus, stated in ((2.7, True), (2.8, False)):  # um; 5 waves of 555 nm are 2.775 um
        psf = ov.Eye([0, 0, 0, 0, defocus], pupil_mm=3.0, convention="osa", laterality="OD").psf(samples=8)
        assert (psf.error == 1e-9) == stated
        assert np.isnan(psf.error) != stated
        assert any("these errors are not stated" in note for note in psf.notes) != stated
