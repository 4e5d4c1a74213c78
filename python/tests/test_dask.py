"""Tests metrics of Dask arrays and data frames, also when a worker is killed."""

import os
import signal
from typing import Any

import dask
import dask.array as da
import dask.dataframe as dd
import numpy as np
import pandas as pd
import pytest
from distributed import Client, LocalCluster, wait

import orvanel as ov

RNG = np.random.default_rng(8)
MODES = np.concatenate([np.zeros((12, 3)), RNG.normal(0.0, 0.06, (12, 12))], axis=1)
PUPILS = RNG.uniform(2.5, 3.5, 12)
NAMES = ["VSX", "RMSw"]
COLUMNS = [f"Z{k}" for k in range(15)]


def same(found: Any, expected: Any) -> bool:
    return bool(np.array_equal(np.asarray(found), expected, equal_nan=True))


def test_arrays_have_the_bits_of_one_machine() -> None:
    expected = ov.metrics(MODES, PUPILS, NAMES, convention="osa", gradient=True)
    # The rows in uneven chunks, and the coefficients in two.
    lazy = ov.dask.metrics(
        da.from_array(MODES, chunks=((5, 4, 3), (8, 7))), PUPILS, NAMES, convention="osa", gradient=True
    )
    assert list(lazy) == NAMES
    assert lazy["VSX"].chunks == ((5, 4, 3),)
    assert lazy.gradients["VSX"].shape == (12, 15)
    assert (lazy["VSX"].dtype, lazy.gradients["VSX"].dtype) == (np.float64, np.float64)
    values, errors, gradients, reasons = dask.compute(dict(lazy), lazy.errors, lazy.gradients, lazy.reasons)
    for name in NAMES:
        assert same(values[name], expected[name])
        assert same(errors[name], expected.errors[name])
        assert same(gradients[name], expected.gradients[name])
    assert reasons.tolist() == [""] * 12


def test_nothing_is_computed_before_it_is_asked_for() -> None:
    def fail(block: Any) -> Any:
        raise AssertionError("computed")

    eyes = da.from_array(MODES, chunks=(4, 15)).map_blocks(fail, dtype=np.float64, meta=np.empty((0, 0)))
    lazy = ov.dask.metrics(eyes, 3.0, "RMSw", convention="osa")
    with pytest.raises(AssertionError, match="computed"):
        lazy["RMSw"].compute()


def test_rows_of_unknown_number() -> None:
    eyes = da.from_array(MODES, chunks=(4, 15))
    some = eyes[eyes[:, 4] > 0]
    expected = ov.metrics(MODES[MODES[:, 4] > 0], 3.0, "RMSw", convention="osa")
    assert same(ov.dask.metrics(some, 3.0, "RMSw", convention="osa")["RMSw"].compute(), expected["RMSw"])


def test_a_refused_eye_is_nan_with_a_reason() -> None:
    modes = MODES.copy()
    modes[7, 4] = np.inf
    lazy = ov.dask.metrics(da.from_array(modes, chunks=(5, 15)), 3.0, "RMSw", convention="osa")
    values, reasons = dask.compute(lazy["RMSw"], lazy.reasons)
    assert np.flatnonzero(np.isnan(values)).tolist() == [7]
    assert [row for row, reason in enumerate(reasons) if reason] == [7]
    assert "index 4 is not finite" in reasons[7]


@pytest.fixture
def frame() -> pd.DataFrame:
    frame = pd.DataFrame(MODES, columns=COLUMNS, index=pd.Index([f"eye {k}" for k in range(12)], name="eye"))
    frame["pupil_mm"] = PUPILS
    frame.loc["eye 7", "Z4"] = np.nan
    return frame


def test_frames_have_the_bits_of_one_machine(frame: pd.DataFrame) -> None:
    expected = ov.metrics(frame[COLUMNS].to_numpy(), PUPILS, NAMES, convention="osa")
    lazy = ov.dask.metrics(dd.from_pandas(frame, npartitions=3), "pupil_mm", NAMES, columns=COLUMNS, convention="osa")
    found = lazy.compute()
    assert list(lazy.columns) == [*NAMES, "reason"]
    assert lazy.npartitions == 3
    # The types that were promised are those that came.
    assert found.dtypes.tolist() == lazy._meta.dtypes.tolist()
    assert found.index.equals(frame.sort_index().index)
    for name in NAMES:
        assert same(found.loc[frame.index, name], expected[name])
    assert found.index[found["reason"] != ""].tolist() == ["eye 7"]


def test_files_that_dask_reads(frame: pd.DataFrame, tmp_path: Any) -> None:
    expected = ov.metrics(frame[COLUMNS].to_numpy(), 3.0, "RMSw", convention="osa")["RMSw"]
    whole = dd.from_pandas(frame.reset_index(), npartitions=2, sort=False)
    whole.to_parquet(tmp_path / "parquet")
    whole.to_csv(tmp_path / "*.csv", index=False, float_format="%.17g")
    for eyes in (dd.read_parquet(tmp_path / "parquet"), dd.read_csv(tmp_path / "*.csv", float_precision="round_trip")):
        found = ov.dask.metrics(eyes, 3.0, "RMSw", columns=COLUMNS, convention="osa").compute()
        assert same(found["RMSw"], expected)


def test_mistakes_are_reported_before_anything_is_computed(frame: pd.DataFrame) -> None:
    array = da.from_array(MODES, chunks=(4, 15))
    table = dd.from_pandas(frame, npartitions=2)
    with pytest.raises(ov.ArgumentError, match="convention='osa'"):
        ov.dask.metrics(array, 3.0, "VSX")
    with pytest.raises(ov.ArgumentError, match="VSXX"):
        ov.dask.metrics(array, 3.0, "VSXX", convention="osa")
    with pytest.raises(ov.ArgumentError, match="one for each of 12 eyes"):
        ov.dask.metrics(array, PUPILS[:5], "VSX", convention="osa")
    with pytest.raises(ov.ArgumentError, match="columns are missing"):
        ov.dask.metrics(table, 3.0, "VSX", convention="osa")
    with pytest.raises(ov.ArgumentError, match="no column 'Z99'"):
        ov.dask.metrics(table, 3.0, "VSX", columns=["Z99"], convention="osa")
    with pytest.raises(ov.ArgumentError, match="to_dask_array"):
        ov.dask.metrics(table, 3.0, "VSX", columns=COLUMNS, convention="osa", gradient=True)
    with pytest.raises(ov.ArgumentError, match="are a list, and neither"):
        ov.dask.metrics([[0.0]], 3.0, "VSX", convention="osa")


def test_nothing_is_lost_when_a_worker_is_killed() -> None:
    modes = np.tile(MODES, (8, 1))
    expected = ov.metrics(modes, 3.0, "VSX", convention="osa")["VSX"]
    # A busy machine starts workers slowly.
    patient = {"distributed.comm.timeouts.connect": "300s", "distributed.comm.timeouts.tcp": "300s"}
    with (
        dask.config.set(patient),  # type: ignore[no-untyped-call,unused-ignore]
        LocalCluster(  # type: ignore[no-untyped-call,unused-ignore]
            n_workers=2, threads_per_worker=1, processes=True, host="127.0.0.1", dashboard_address=None
        ) as cluster,
        Client(cluster) as client,  # type: ignore[no-untyped-call,unused-ignore]
    ):
        processes = client.run(os.getpid)
        lazy = ov.dask.metrics(da.from_array(modes, chunks=(1, 15)), 3.0, "VSX", convention="osa")
        parts = client.compute(lazy["VSX"].to_delayed().tolist())
        wait(parts, return_when="FIRST_COMPLETED", timeout=300)
        # A worker that has results is killed, so these are lost with it.
        holder = next(holders[0] for holders in client.who_has(parts).values() if holders)
        os.kill(processes[holder], signal.SIGKILL)
        assert not all(part.done() for part in parts)
        found = np.concatenate(client.gather(parts))
        assert processes[holder] not in client.run(os.getpid).values()
    assert same(found, expected)
