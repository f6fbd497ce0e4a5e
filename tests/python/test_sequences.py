"""Sequences: progress, what stops them, and what they report."""

import gc
import os
import signal
import threading
import weakref

import numpy
import pytest

import qb_colorio


class Stop(Exception):
    pass


@pytest.fixture
def shot(tmp_path):
    """Four frames of one gray each: 1, 2, 3, 4."""
    for frame in range(1, 5):
        qb_colorio.write_image(tmp_path / f"in.{frame:04}.exr", numpy.full((8, 8, 3), frame, numpy.float32))
    return tmp_path / "in.%04d.exr"


@pytest.fixture
def halve(session):
    return session.converter("lin", "half_light")


def read_gray(path):
    return qb_colorio.read_image(path).pixels[0, 0, 0]


def test_every_frame_is_converted_and_reported(halve, shot, tmp_path):
    frames = []
    report = halve.convert_sequence(shot, tmp_path / "out.%04d.exr", progress=frames.append)
    assert (report.converted, report.failed, report.pixels, report.notes) == (4, 0, 256, ())
    assert sorted(frame.number for frame in frames) == [1, 2, 3, 4]
    first = min(frames, key=lambda frame: frame.number)
    assert (first.status, first.output, first.error) == ("converted", str(tmp_path / "out.0001.exr"), None)
    assert (first.image.width, first.image.depth) == (8, "float")
    assert [read_gray(tmp_path / f"out.{frame:04}.exr") for frame in range(1, 5)] == [0.5, 1, 1.5, 2]


def test_progress_runs_in_the_calling_thread(halve, shot, tmp_path):
    threads = set()
    halve.convert_sequence(shot, tmp_path / "out.%04d.exr", progress=lambda _: threads.add(threading.get_ident()))
    assert threads == {threading.get_ident()}


def test_frames_missing_and_failing(halve, shot, tmp_path):
    (tmp_path / "in.0002.exr").unlink()
    report = halve.convert_sequence(shot, tmp_path / "out.%04d.exr")
    assert (report.converted, [note.code for note in report.notes]) == (3, ["frames-missing"])
    with pytest.raises(qb_colorio.Error) as caught:
        halve.convert_sequence(shot, tmp_path / "out.%04d.exr", "1-3")
    assert caught.value.code == "frames-missing"
    (tmp_path / "in.0003.exr").write_text("text")
    frames = []
    report = halve.convert_sequence(shot, tmp_path / "out.%04d.exr", "3,4", progress=frames.append)
    assert (report.converted, report.failed) == (1, 1)
    assert [(failure.code, failure.file) for failure in report.failures] == [
        ("image-unreadable", str(tmp_path / "in.0003.exr"))]
    assert {frame.number: frame.error is None for frame in frames} == {3: False, 4: True}


def test_resume_and_dry_run(halve, shot, tmp_path):
    output = tmp_path / "out.%04d.exr"
    report = halve.convert_sequence(shot, output, "1-2", dry_run=True)
    assert (report.planned, report.converted) == (2, 0)
    assert not (tmp_path / "out.0001.exr").exists()
    halve.convert_sequence(shot, output, "1-2")
    frames = []
    report = halve.convert_sequence(shot, output, "1-3", resume=True, progress=frames.append)
    assert (report.up_to_date, report.converted) == (2, 1)
    assert {frame.number: frame.status for frame in frames} == {1: "up-to-date", 2: "up-to-date", 3: "converted"}


def test_an_exception_of_the_callback_stops_the_sequence(halve, tmp_path):
    for frame in range(200):
        os.symlink("first.exr", tmp_path / f"in.{frame:04}.exr")
    qb_colorio.write_image(tmp_path / "first.exr", numpy.ones((64, 64, 3), numpy.float32))
    seen = []

    def stop(frame):
        seen.append(frame.number)
        raise Stop

    with pytest.raises(Stop):
        halve.convert_sequence(tmp_path / "in.%04d.exr", tmp_path / "out.%04d.exr", progress=stop)
    assert len(seen) == 1, "it is not called again"
    written = sorted(tmp_path.glob("out.*.exr"))
    assert 1 <= len(written) < 200
    for path in written:
        assert read_gray(path) == 0.5, "what was begun is complete"
    assert len(list(tmp_path.iterdir())) == 201 + len(written) + 3, "no temporary file is left"


def test_an_interrupt_stops_the_sequence(halve, tmp_path):
    for frame in range(1000):
        os.symlink("first.exr", tmp_path / f"in.{frame:04}.exr")
    qb_colorio.write_image(tmp_path / "first.exr", numpy.ones((64, 64, 3), numpy.float32))

    def interrupt(*_):
        raise KeyboardInterrupt

    before = signal.signal(signal.SIGALRM, interrupt)
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.2)
        with pytest.raises(KeyboardInterrupt):
            halve.convert_sequence(tmp_path / "in.%04d.exr", tmp_path / "out.%04d.exr")
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    assert len(list(tmp_path.glob("out.*.exr"))) < 1000
    assert halve([1, 1, 1]).tolist() == [0.5, 0.5, 0.5]


def test_nothing_keeps_the_callback(halve, shot, tmp_path):
    class Progress:
        def __init__(self):
            self.converter = halve
            self.frames = []

        def __call__(self, frame):
            self.frames.append((frame, self))
            if len(self.frames) == 2:
                raise Stop

    progress = Progress()
    alive = weakref.ref(progress)
    with pytest.raises(Stop):
        halve.convert_sequence(shot, tmp_path / "out.%04d.exr", progress=progress)
    del progress
    gc.collect()
    assert alive() is None


@pytest.mark.parametrize("progress", [7, "text", [print]])
def test_what_cannot_be_called(halve, shot, tmp_path, progress):
    with pytest.raises(TypeError, match="progress"):
        halve.convert_sequence(shot, tmp_path / "out.%04d.exr", progress=progress)


def test_wrong_patterns(halve, shot, tmp_path):
    for input_path, output, frames in ((shot, tmp_path / "one.exr", ""), (tmp_path / "none.%d.exr", tmp_path / "o.%d.exr", ""),
                                       (shot, tmp_path / "o.%d.exr", "4-x")):
        with pytest.raises(qb_colorio.Error):
            halve.convert_sequence(input_path, output, frames)
