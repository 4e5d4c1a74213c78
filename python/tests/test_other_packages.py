"""Tests plots, xarray and pandas, and that an import loads none of them."""

import subprocess
import sys

import matplotlib
import numpy as np
import pytest

import orvanel as ov

matplotlib.use("Agg")

import matplotlib.pyplot as plt  # noqa: E402

LISTED = "import sys; import orvanel; print(*sorted({name.partition('.')[0] for name in sys.modules}))"


def one_bright_pixel() -> ov.Plane:
    values = np.zeros((6, 9))
    values[1, 7] = 1.0
    return ov.picture(values, pixels_per_degree=30, surround=0.0)


def some_psf() -> ov.Plane:
    eye = ov.Eye([0, 0, 0, 0.08, 0.21, -0.05], pupil_mm=3.0, convention="osa", laterality="OD")
    return eye.psf(field_arcmin=8, samples=16)


def test_an_import_loads_only_numpy_and_the_standard_library() -> None:
    run = subprocess.run([sys.executable, "-I", "-c", LISTED], check=True, capture_output=True, text=True)
    # A .pth file of an environment may load its own module before any import.
    started = subprocess.run(
        [sys.executable, "-I", "-c", LISTED.replace("import orvanel; ", "")], check=True, capture_output=True, text=True
    )
    loaded = set(run.stdout.split()) - set(started.stdout.split()) - sys.stdlib_module_names
    assert loaded == {"numpy", "orvanel"}


def test_a_plot_shows_each_sample_at_its_place() -> None:
    plane = one_bright_pixel()
    figure, given = plt.subplots(figsize=(6, 4), dpi=100)
    axes = plane.plot(given)
    assert axes is given
    figure.canvas.draw()
    shown = np.asarray(figure.canvas.buffer_rgba())[:, :, :3].sum(axis=2)
    for row, column, white in ((1, 7, True), (1, 1, False), (4, 7, False), (4, 1, False)):
        across, up = axes.transData.transform((plane.x[column], plane.y[row]))
        light = shown[shown.shape[0] - 1 - int(up), int(across)]
        assert light == (3 * 255 if white else 0)
    plt.close(figure)


def test_a_plot_names_units_and_view() -> None:
    psf = some_psf()
    axes = psf.plot(cmap="magma")
    assert (axes.get_xlabel(), axes.get_ylabel()) == ("x [arcmin]", "y [arcmin]")
    assert axes.get_title() == "psf, view of the patient"
    assert axes.images[0].get_cmap().name == "magma"
    # A window of 8 arcmin in 16 samples of 0.5 arcmin, about the axis.
    assert axes.images[0].get_extent() == pytest.approx([-4, 4, -4, 4])
    plt.close(axes.figure)


@pytest.mark.parametrize("kind", ["psf", "mtf", "wavefront"])
def test_every_plane_is_drawn(kind: str) -> None:
    eye = ov.Eye([0, 0, 0, 0.08, 0.21, -0.05], pupil_mm=3.0, convention="osa", laterality="OD")
    axes = getattr(eye, kind)().plot()
    assert axes.get_title().startswith(kind)
    label = axes.images[0].colorbar.ax.get_ylabel()
    assert ("mm" in label) == (kind == "wavefront")
    plt.close(axes.figure)


def test_xarray_finds_a_sample_by_its_place() -> None:
    plane = one_bright_pixel()
    labelled = plane.to_xarray()
    assert labelled.dims == ("y", "x")
    assert float(labelled.sel(x=plane.x[7], y=plane.y[1])) == 1.0
    assert float(labelled.sum()) == 1.0
    assert np.shares_memory(labelled.values, plane.values)
    psf = some_psf().to_xarray()
    assert (psf.name, psf.x.attrs["units"], psf.attrs["view"]) == ("psf", "arcmin", "patient")
    assert psf.attrs["error"] == 1e-9


def test_pandas_finds_a_sample_by_its_place() -> None:
    plane = one_bright_pixel()
    frame = plane.to_pandas()
    assert frame.loc[plane.y[1], plane.x[7]] == 1.0
    assert (frame.index.name, frame.columns.name) == ("y", "x")
    assert np.array_equal(frame.to_numpy(), plane.values)


def test_metrics_are_a_frame_with_a_row_for_each_eye() -> None:
    modes = np.zeros((3, 6))
    modes[1, 4], modes[2, 3] = 0.25, np.nan
    frame = ov.metrics(modes, 3.0, ["RMSw", "SRX"], convention="osa").to_pandas()
    assert list(frame.columns) == ["RMSw", "SRX"]
    assert frame["RMSw"].tolist()[:2] == [0.0, 0.25]
    assert frame.loc[2].isna().all()
