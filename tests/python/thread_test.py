"""Long reads: their progress, their end from outside, and what runs meanwhile."""

from __future__ import annotations

import os
import signal
import sys
import threading
import time
from collections.abc import Callable, Iterator
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import pytest

import xrf


def test_other_threads_run_meanwhile(large: Path) -> None:
    thread = threading.Thread(target=xrf.Design.load, args=(large,))
    ticks = 0
    thread.start()
    while thread.is_alive():
        time.sleep(0.001)
        ticks += 1
    # Were the interpreter held, this thread would come to run once or twice.
    assert ticks >= 10


def test_progress_is_told(large: Path) -> None:
    told: list[tuple[str, int, int]] = []
    xrf.Design.load(large, progress=lambda *step: told.append(step))
    size = large.stat().st_size
    assert len(told) >= 3
    assert all(phase and 0 <= done <= total == size for phase, done, total in told)
    assert [done for _, done, _ in told] == sorted(done for _, done, _ in told)


def test_what_progress_raises_ends_the_read(large: Path) -> None:
    class Enough(Exception):
        pass

    calls = []

    def stop(phase: str, done: int, total: int) -> None:
        calls.append(done)
        raise Enough(phase)

    with pytest.raises(Enough):
        xrf.Design.load(large, progress=stop)
    assert len(calls) == 1
    assert xrf.Design.load(large).top() is not None


@pytest.fixture
def interruptible() -> Iterator[None]:
    """What runs in the background of a shell begins with the signal ignored."""
    before = signal.signal(signal.SIGINT, signal.default_int_handler)
    yield
    signal.signal(signal.SIGINT, before)


@pytest.mark.usefixtures("interruptible")
def test_the_keyboard_ends_a_read(large: Path) -> None:
    began = time.monotonic()
    xrf.Design.load(large)
    whole = time.monotonic() - began
    timer = threading.Timer(whole / 4, os.kill, (os.getpid(), signal.SIGINT))
    began = time.monotonic()
    with pytest.raises(KeyboardInterrupt):
        timer.start()
        xrf.Design.load(large)
        time.sleep(whole)
    assert time.monotonic() - began < 1.5 * whole


def test_two_threads_read_at_once(examples: Path, large: Path) -> None:
    files = examples / "blinker"
    empty = large.parent / "empty.ll"
    empty.write_text("Revision 3\n")

    def good(_: int) -> object:
        told: list[str] = []
        design = xrf.Design.build(
            files / "blinker_rtl.edf", files / "blinker_synth.edf",
            logic_location=files / "blinker.ll", log=files / "blinker.log",
            progress=lambda phase, done, total: told.append(phase))
        return design.coverage()["located"], design.warnings, "Reading synthesis log" in told

    broken = large.parent / "broken.xrf"
    broken.write_text("nothing\n")

    def bad(_: int) -> object:
        with pytest.raises(xrf.Error) as caught:
            xrf.Design.load(broken)
        return caught.value.line

    def warned(_: int) -> object:
        return len(xrf.Design.build(
            files / "blinker_rtl.edf", files / "blinker_synth.edf",
            logic_location=empty).warnings)

    def slow(_: int) -> object:
        return sum(1 for _ in xrf.Design.load(large).signals())

    jobs: list[tuple[Callable[[int], object], object]] = [
        (good, (24, [], True)), (bad, 1), (warned, 1)]
    with ThreadPoolExecutor(8) as pool:
        long_ones = [pool.submit(slow, i) for i in range(2)]
        running = [(pool.submit(job, i), wanted) for i in range(30) for job, wanted in jobs]
        for future, wanted in running:
            assert future.result() == wanted
        assert [one.result() for one in long_ones] == [20000, 20000]


def test_one_design_is_looked_into_by_many(blinker: xrf.Design) -> None:
    before = sys.getswitchinterval()
    sys.setswitchinterval(1e-5)
    try:
        with ThreadPoolExecutor(8) as pool:
            found = list(pool.map(lambda _: blinker.find("*count*"), range(50)))
    finally:
        sys.setswitchinterval(before)
    assert all(one == found[0] for one in found)
