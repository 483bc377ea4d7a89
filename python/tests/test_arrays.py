"""Arrays of other libraries, threads, and the keyboard."""

from __future__ import annotations

import os
import signal
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import statpower as sp

SIZES = np.arange(10, 40)
EXPECTED = sp.t_one(d=0.5).power(n=SIZES)


def test_pandas_columns_go_in_and_come_out_with_their_index() -> None:
    pandas = pytest.importorskip("pandas")
    frame = pandas.DataFrame({"n": SIZES, "alternative": ["greater", "two-sided"] * 15}, index=SIZES * 10)
    found = sp.t_one(d=0.5).power(n=frame["n"])
    assert found.equals(pandas.Series(EXPECTED, index=frame.index, name="n"))
    sided = sp.t_one(d=0.5).power(n=frame["n"], alternative=frame["alternative"])
    assert np.array_equal(sided[1::2], EXPECTED[1::2])
    assert sided[100] == sp.t_one(d=0.5).power(n=10, alternative="greater")
    sizes = sp.t_two(d=pandas.Series([0.5, 0.8], index=["a", "b"])).size()
    assert sizes.n1.to_dict() == {"a": 64, "b": 26}


def test_pandas_tables_are_data_frames() -> None:
    pandas = pytest.importorskip("pandas")
    table = sp.t_one(d=0.5).table(n=SIZES)
    assert isinstance(table, pandas.DataFrame)
    assert np.array_equal(table["power"], EXPECTED)


def test_xarray_dimensions_broadcast_by_name() -> None:
    xarray = pytest.importorskip("xarray")
    n = xarray.DataArray(SIZES, dims="n", coords={"n": SIZES})
    d = xarray.DataArray([0.3, 0.5], dims="d", coords={"d": [0.3, 0.5]})
    found = sp.t_one().power(n=n, d=d)
    assert set(found.dims) == {"n", "d"}
    assert np.array_equal(found.sel(d=0.5), EXPECTED)
    sizes = sp.t_two(d=d).size()
    assert sizes.n1.sel(d=0.5) == 64
    assert sizes.n2.dims == ("d",)


def test_dask_arrays_stay_lazy_and_have_equal_answers() -> None:
    dask_array = pytest.importorskip("dask.array")
    n = dask_array.from_array(SIZES, chunks=7)
    found = sp.t_one(d=0.5).power(n=n)
    assert isinstance(found, dask_array.Array)
    assert np.array_equal(found.compute(scheduler="threads"), EXPECTED)
    sizes = sp.t_two(d=dask_array.from_array(np.array([0.5, 0.8]), chunks=1)).size()
    assert sizes.n2.compute(scheduler="synchronous").tolist() == [64, 26]


def test_lists_are_a_core_dimension() -> None:
    sd = np.array([4.0, 5.0, 6.0])
    means = np.array([[10.0, 12, 15, 11], [10, 11, 12, 13]])
    power = sp.anova(n=15).power(means=means[:, None, :], sd=sd)
    assert power.shape == (2, 3)
    assert power[1, 2] == sp.anova(n=15).power(means=[10, 11, 12, 13], sd=6)
    assert np.array_equal(sp.anova(n=15).power(means=np.asfortranarray(means), sd=5), power[:, 1])


def test_eight_threads_at_once_have_equal_answers() -> None:
    designs = np.tile(SIZES, 200)
    with ThreadPoolExecutor(8) as pool:
        for found in pool.map(lambda _: sp.t_one(d=0.5).power(n=designs), range(16)):
            assert np.array_equal(found, np.tile(EXPECTED, 200))


def test_two_threads_are_among_their_designs_at_the_same_time() -> None:
    # While this thread looks, both of the others have begun a call and ended neither.
    ufunc = sp.t_one.ufunc("power", "n", "d")
    rows = [np.full(20_000, -1.0), np.full(20_000, -1.0)]
    seen = threading.Event()

    def work(out: np.ndarray) -> None:
        while not seen.is_set():
            out[[0, -1]] = -1
            ufunc(40.0, np.broadcast_to(0.5, out.shape), out=out)

    threads = [threading.Thread(target=work, args=[out]) for out in rows]
    for thread in threads:
        thread.start()
    give_up = time.monotonic() + 60
    together = False
    while not together and time.monotonic() < give_up:
        together = all(out[0] >= 0 > out[-1] for out in rows)
    seen.set()
    for thread in threads:
        thread.join()
    assert together


@pytest.mark.parametrize("rows", [1, 300])  # NumPy itself releases the lock for long loops only
def test_other_threads_run_while_a_design_is_computed(rows: int) -> None:
    # Interpreter steps of this thread between the start and the end of a call in another.
    inside = threading.Event()
    done = threading.Event()
    n = np.full(rows, 40)

    def work() -> None:
        design = sp.t_one(mean=np.zeros(1), sd=1.0)
        inside.set()
        while not done.is_set():
            design.power(n=n)

    thread = threading.Thread(target=work)
    thread.start()
    inside.wait()
    steps = sum(1 for _ in range(100_000))
    done.set()
    thread.join()
    assert steps == 100_000


@pytest.mark.skipif(not hasattr(signal, "setitimer"), reason="needs a timer")
@pytest.mark.parametrize("call", [
    lambda: sp.t_one(d=0.5).power(n=np.broadcast_to(50.0, 20_000_000)),
    lambda: sp.t_one.ufunc("size", "d")(np.broadcast_to(0.1, 20_000_000)),
    # NumPy hands over whole numbers some thousands at a time; all of these would take hours.
    lambda: sp.prop_two(p1=0.5, p2=0.51, method="exact").power(n=np.full(10_000_000, 3000)),
    # One design: a long exact search.
    lambda: sp.prop_two(p1=0.5, p2=0.502, method="exact", statistic="fisher").solve(rule="guaranteed"),
], ids=["power", "ufunc", "hours of whole numbers", "one design"])
def test_the_keyboard_stops_a_long_search_and_leaves_nothing_behind(call: object) -> None:
    def interrupt(*_: object) -> None:
        raise KeyboardInterrupt

    before = signal.signal(signal.SIGALRM, interrupt)
    started = time.monotonic()
    signal.setitimer(signal.ITIMER_REAL, 0.3)
    try:
        with pytest.raises(KeyboardInterrupt):
            call()  # type: ignore[operator]
            while time.monotonic() < started + 60:  # where the exception is pending it comes here
                pass
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    assert sp.t_one(d=0.5).power(n=50) == sp.t_one.ufunc("power", "d", "n")(0.5, 50)


def test_ctrl_c_is_a_keyboard_interrupt() -> None:
    timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        sp.t_one(d=0.5).power(n=np.broadcast_to(50.0, 20_000_000))
        time.sleep(60)  # where the exception is pending, or the signal on its way, it comes here
    timer.join()
