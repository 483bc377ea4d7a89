"""Plans a grid of millions of designs on a cluster.

A cluster of this machine unless --scheduler names another's; the answers are those of one process, to the last bit.

    python examples/million_designs.py --designs 10000000
    python examples/million_designs.py --scheduler tcp://address:8786
"""

from __future__ import annotations

import argparse
import os
import signal
import sys

import dask.array as da
import numpy as np
from distributed import Client, LocalCluster, futures_of, progress, wait

import statpower as sp


def grid(designs: int, chunks: int) -> tuple[da.Array, da.Array, da.Array]:
    """Differences, standard deviations and sizes whose combinations are that many designs."""
    side = round((designs / 100) ** 0.5)
    of_a_chunk = -(-side // chunks)
    diff = da.from_array(np.linspace(1, 10, side), chunks=of_a_chunk)[:, None, None]
    sd = da.from_array(np.linspace(5, 20, side), chunks=of_a_chunk)[None, :, None]
    n = da.from_array(np.arange(10, 210, 2), chunks=100)[None, None, :]
    return diff, sd, n


def without_a_worker(client: Client, powers: da.Array) -> np.ndarray:
    """The powers, although one of the processes that compute them is killed when it has computed some."""
    before = client.run(os.getpid)
    powers = powers.persist()
    wait(futures_of(powers), return_when="FIRST_COMPLETED")
    killed = next(iter(before.values()))
    os.kill(killed, signal.SIGKILL)
    done = sum(part.done() for part in futures_of(powers))
    print(f"Killed worker {killed} when {done} of {len(futures_of(powers))} parts were there", file=sys.stderr)
    found = powers.compute()
    assert killed not in client.run(os.getpid).values(), "the worker was not killed"
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--designs", type=int, default=10_000_000)
    parser.add_argument("--chunks", type=int, default=8, help="along differences and standard deviations each")
    parser.add_argument("--scheduler", help="address of a cluster's scheduler")
    parser.add_argument("--kill-a-worker", action="store_true", help="to see in a second run that nothing is lost")
    options = parser.parse_args()

    cluster = None if options.scheduler else LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None)
    with Client(options.scheduler or cluster) as client:
        design = sp.t_two(variance="pooled")
        diff, sd, n = grid(options.designs, options.chunks)
        powers = design.power(diff=diff, sd=sd, n=n).persist()
        progress(powers, notebook=False)
        found = [powers.compute()]
        if options.kill_a_worker:  # in other chunks: those of the first run are known
            diff, sd, n = grid(options.designs, options.chunks + 1)
            found.append(without_a_worker(client, design.power(diff=diff, sd=sd, n=n)))
    if cluster is not None:
        cluster.close()

    alone = design.power(diff=diff.compute(), sd=sd.compute(), n=n.compute())
    same = [np.array_equal(powers, alone, equal_nan=True) for powers in found]
    for equal in same:
        print(f"\n{alone.size} designs; {np.mean(alone >= 0.8):.1%} reach a power of 0.8; "
              f"{'equal to' if equal else 'NOT equal to'} one process bit for bit")
    return 0 if all(same) else 1


if __name__ == "__main__":
    sys.exit(main())
