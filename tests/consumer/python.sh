#!/usr/bin/env bash
# Makes the package python3-orvanel twice, unpacks both packages below a folder of their own, and imports the module.
# Usage: python.sh SOURCE_FOLDER ARCHIVES SCRATCH
set -euo pipefail
source=$1 archives=$2 scratch=$3
export SOURCE_DATE_EPOCH=1600000000
rm -rf "$scratch"
library=$(ls "$archives"/orvanel_*.deb)
package=$("$source/cmake/debian/make_python.sh" "$source" "$library" "$scratch")
cmp "$package" "$("$source/cmake/debian/make_python.sh" "$source" "$library" "$scratch/again")"
[[ "$(dpkg-deb --field "$package" Depends)" == *"python3-numpy, orvanel (= $(dpkg-deb --field "$library" Version))" ]]

root=$scratch/root
for part in "$library" "$package"; do dpkg-deb --extract "$part" "$root"; done
modules=$root/usr/lib/python3/dist-packages
cat >"$scratch/host.py" <<'PYTHON'
import importlib.metadata
import sys

import numpy as np
import orvanel as ov

assert ov.__file__.startswith(sys.argv[1]), ov.__file__
assert importlib.metadata.version("orvanel") == sys.argv[2]
# Defocus of a micrometre is its sphere: -4 sqrt(3) c / r^2.
eye = ov.Eye([0, 0, 0, 0, 1.0], pupil_mm=5.0, convention="osa", laterality="OD")
assert np.isclose(eye.refraction("least squares").sphere, -4 * 3**0.5 / 2.5**2, rtol=1e-12)
# Without aberration, all ratios are 1.
values = ov.metrics(np.zeros((2, 6)), 3.0, ["VSX"], convention="osa")
assert np.allclose(values["VSX"], 1.0, atol=1e-9), values["VSX"]
PYTHON
version=$(dpkg-deb --field "$library" Version)
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$modules /usr/bin/python3 "$scratch/host.py" "$modules" "${version%-*}"
