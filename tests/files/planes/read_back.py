#!/usr/bin/python3
"""Every format, written by the program and read by programs that are not ours: all planes must be those of NPY.

Usage: read_back.py PROGRAM EYE PICTURE
"""
import json
import os
import subprocess
import sys
import tempfile

import h5py
import numpy
import scipy.io
from PIL import Image

program, eye, picture = sys.argv[1:]


def run(folder, model):
    subprocess.run([program, "simulate", eye, "-o", folder, "--model", model, "--picture", picture, "--acuities", "0.5,1.6", "--gaps",
                    "up,left", "--format", "npy,csv,png16,tiff,mat,hdf5"], check=True, stdout=subprocess.DEVNULL)


def same(name, what, seen, expected, bound=0.0):
    assert seen.shape == (256, 256), (name, what, seen.shape)
    numpy.testing.assert_allclose(seen, expected, rtol=0.0, atol=bound, equal_nan=True, err_msg=name + " in " + what)


def check(model, scratch):
    folder, again = os.path.join(scratch, "first"), os.path.join(scratch, "again")
    run(folder, model)
    run(again, model)
    classic = model == "classic"
    names = sorted(name[:-4] for name in os.listdir(folder) if name.endswith(".npy"))
    # Of the eye, two for each of four rings, and of a picture in three colours. The classic model has two retinal images
    # of the star and of the picture.
    assert len(names) == (6 + 8 + 9 if classic else 5 + 8 + 6), names
    hdf5 = h5py.File(os.path.join(folder, "planes.h5"), "r")
    mat = scipy.io.loadmat(os.path.join(folder, "planes.mat"), squeeze_me=True)
    with open(os.path.join(folder, "summary.json"), encoding="utf-8") as file:
        summary = json.load(file)
    assert sorted(hdf5) == names
    grey = 0
    psf_view = "retina" if classic else "patient"
    for name in names:
        path = os.path.join(folder, name)
        identifier = name.replace(".", "_").replace("-", "_")
        expected = numpy.load(path + ".npy")
        same(name, "CSV", numpy.loadtxt(path + ".csv", delimiter=","), expected)
        same(name, "HDF5", hdf5[name][...], expected)
        same(name, "MAT", mat[identifier], expected)
        with Image.open(path + ".tiff") as tiff:
            same(name, "TIFF", numpy.array(tiff), expected.astype("float32"))
            spacing = [line.split(": ")[1] for line in tiff.tag_v2[270].split("\n") if line.startswith("sample_spacing")]
        attributes = dict(hdf5[name].attrs)
        spacings = {key: value for key, value in attributes.items() if key.startswith("sample_spacing")}
        assert sorted(float(text) for text in spacing) == sorted(spacings.values()), name
        for key, value in spacings.items():
            assert mat["spacings"][identifier].item()[key] == value, (name, key)
        assert attributes["units"] == mat["units"][identifier] == ("mm" if name == "wavefront" else "1"), name
        view = {"wavefront": "pupil", "psf": psf_view, "mtf": psf_view}.get(name, "patient")
        assert summary["views"]["of_planes"][name] == view, name
        assert attributes["view"] == summary["views"][view] == mat["views"][identifier].item()["view"], name
        with Image.open(path + ".tiff") as tiff:
            assert "view: " + attributes["view"] in tiff.tag_v2[270].split("\n"), name
        assert attributes["description"] == mat["descriptions"][identifier], name
        if os.path.exists(path + "_16bit.png"):
            grey += 1
            same(name, "PNG", numpy.array(Image.open(path + "_16bit.png")) / 65535.0, expected, 0.5 / 65535.0 + 1e-12)
    assert grey == (2 + 3 + 8 if classic else 2 + 2 + 8), grey

    # The facts are those of the summary.
    for facts in (dict(hdf5.attrs), {key: mat["eye"].item()[i] for i, key in enumerate(mat["eye"].dtype.names)}):
        assert facts["name"] == summary["eye"]["name"]
        assert facts["pupil_diameter_mm"] == summary["eye"]["pupil_diameter_mm"]
        if classic:
            assert facts["strehl_ratio"] == summary["results"]["strehl_ratio"]
            assert facts["picture_field_arcmin_library_scale"] == summary["picture"]["field_arcmin_library_scale"]
            assert list(facts["coefficients_library_mm"]) == summary["eye"]["coefficients_library_mm"]
        else:
            for name in ("strehl_ratio_axis", "strehl_ratio_peak"):
                assert facts[name] == summary["results"][name], name

    # The same input gives the same bytes.
    assert sorted(os.listdir(folder)) == sorted(os.listdir(again))
    for name in os.listdir(folder):
        with open(os.path.join(folder, name), "rb") as one, open(os.path.join(again, name), "rb") as other:
            assert one.read() == other.read(), name

    # Stacks of a batch: each eye's planes are those of a run of its own.
    rows = ["id,pupil_diameter_mm,eye,unit,normalisation,order,y_axis,Z4,Z7"]
    rows += [f"{i},{5 + 0.1 * i},OD,um,orthonormal,osa,up,{'x' if i == 1 else 0.05 * i},0.1" for i in range(3)]
    table = os.path.join(scratch, "eyes.csv")
    with open(table, "w", encoding="utf-8") as file:
        file.write("\n".join(rows) + "\n")
    batch = subprocess.run([program, "batch", table, "-o", os.path.join(scratch, "results.csv"), "--model",
                            model, "--metrics", "rms",
                            "--planes", os.path.join(scratch, "stack.h5"), "--planes-of", "wavefront,psf,mtf", "--chunk",
                            "2"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    assert batch.returncode == 3, batch.returncode
    for i in range(3):
        with h5py.File(os.path.join(scratch, f"stack-00000{i // 2 + 1}.h5"), "r") as stack:
            assert stack["row"][i % 2] == i + 1
            if i == 1:
                assert numpy.isnan(stack["pupil_diameter_mm"][1]) and numpy.isnan(stack["psf"][1]).all()
                continue
            assert stack["pupil_diameter_mm"][i % 2] == 5 + 0.1 * i
            single = os.path.join(scratch, f"eye{i}")
            subprocess.run([program, "simulate", table, "--row", str(i + 1), "-o", single, "--format", "npy", "--only", "wavefront.npy,psf.npy,mtf.npy",
                            "--model", model], check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for name in ("wavefront", "psf", "mtf"):
                assert stack[name].attrs["view"] == summary["views"]["pupil" if name == "wavefront" else psf_view]
                assert stack[name].attrs["units"] == ("mm" if name == "wavefront" else "1")
                same(name, "a stack", stack[name][i % 2], numpy.load(os.path.join(single, name + ".npy")))
    print(len(names), "planes of the", model, "model the same in all formats")


for its_model in ("classic", "physical"):
    with tempfile.TemporaryDirectory() as its_folder:
        check(its_model, its_folder)
