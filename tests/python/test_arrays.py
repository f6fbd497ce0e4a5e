"""Arrays of all types and shapes. The config: half_light is lin times 0.5."""

import gc
import sys
import threading

import numpy
import pytest

import qb_colorio


@pytest.fixture
def halve(session):
    return session.converter("lin", "half_light")


def make_ramp(*shape, dtype=numpy.float32):
    return numpy.arange(numpy.prod(shape), dtype=dtype).reshape(shape)


@pytest.mark.parametrize("shape", [(3,), (4,), (5, 3), (5, 4), (6, 5, 3), (6, 5, 4), (2, 6, 5, 3), (0, 3), (0, 7, 4)])
def test_floats_of_every_shape(halve, shape):
    array = make_ramp(*shape)
    expected = array * numpy.float32(0.5)
    if shape[-1] == 4:
        expected[..., 3] = array[..., 3]
    result = halve(array)
    numpy.testing.assert_array_equal(result, expected)
    assert result.dtype == numpy.float32 and result.shape == shape
    numpy.testing.assert_array_equal(array, make_ramp(*shape), "the source stays")
    assert halve.apply(array) is None
    numpy.testing.assert_array_equal(array, expected)


def test_planes(halve):
    interleaved = make_ramp(6, 5, 4)
    planes = numpy.ascontiguousarray(numpy.moveaxis(interleaved, -1, 0))
    result = halve(planes, channel_axis=0)
    numpy.testing.assert_array_equal(numpy.moveaxis(result, 0, -1), halve(interleaved))
    stack = make_ramp(2, 3, 6, 5)
    numpy.testing.assert_array_equal(halve(stack, channel_axis=1), stack / 2)
    numpy.testing.assert_array_equal(halve(stack, channel_axis=-3), stack / 2)


@pytest.mark.parametrize("view", [
    lambda a: a[::2], lambda a: a[:, ::-1], lambda a: a[::-3, 1:-1], lambda a: a.transpose(1, 0, 2),
    lambda a: a[..., :3], lambda a: a[..., ::-1], lambda a: a[2:3], lambda a: a[:, 4:5, 1:]])
def test_views_are_converted_in_place_and_nothing_else(halve, view):
    array = make_ramp(12, 10, 4)
    before = array.copy()
    expected = before.copy()
    part = view(expected)
    part[..., :3] *= 0.5
    halve.apply(view(array))
    numpy.testing.assert_array_equal(array, expected)
    numpy.testing.assert_array_equal(halve(view(before)), part)


def test_halfs(halve):
    array = numpy.linspace(-2, 70, 4096 * 3, dtype=numpy.float16).reshape(-1, 3)
    result = halve(array)
    assert result.dtype == numpy.float16
    numpy.testing.assert_array_equal(result, (array.astype(numpy.float32) * numpy.float32(0.5)).astype(numpy.float16))


@pytest.mark.parametrize("dtype", [numpy.uint8, numpy.uint16])
def test_integers_stand_for_zero_to_one(session, dtype):
    """As the curves of the config would be computed on floats, with rounding to the nearest code."""
    converter = session.converter("lin", "curved")
    largest = numpy.iinfo(dtype).max
    array = numpy.arange(0, largest + 1, max(1, largest // 4095), dtype=dtype)
    array = numpy.repeat(array[:, None], 3, axis=1)
    floats = converter(array.astype(numpy.float32) / numpy.float32(largest))
    clamped = numpy.clip(floats, 0, 1) * numpy.float32(largest) + numpy.float32(0.5)
    numpy.testing.assert_array_equal(converter(array), clamped.astype(dtype))
    converter.apply(array)
    numpy.testing.assert_array_equal(array, clamped.astype(dtype))


def test_result_of_another_type(halve):
    array = numpy.array([[0, 100, 255]], dtype=numpy.uint8)
    out = numpy.empty((1, 3), dtype=numpy.float32)
    assert halve(array, out) is out
    numpy.testing.assert_array_equal(out, array.astype(numpy.float32) / numpy.float32(255) * numpy.float32(0.5))


def test_result_in_the_same_array(halve, session):
    array = make_ramp(4, 3)
    assert halve(array, out=array) is array
    numpy.testing.assert_array_equal(array, make_ramp(4, 3) / 2)
    assert session.convert(array, "half_light", "lin", out=array) is array
    numpy.testing.assert_array_equal(array, make_ramp(4, 3))


def test_sequences_of_numbers(halve):
    assert halve([1, 2, 3]).tolist() == [0.5, 1, 1.5]
    assert halve(((1, 2, 3, 4),)).tolist() == [[0.5, 1, 1.5, 4]]


def test_broadcast_source(halve):
    color = numpy.broadcast_to(numpy.float32([2, 4, 6]), (7, 9, 3))
    numpy.testing.assert_array_equal(halve(color), numpy.broadcast_to(numpy.float32([1, 2, 3]), (7, 9, 3)))


@pytest.mark.parametrize("array", [
    numpy.zeros((4, 3), numpy.float64), numpy.zeros((4, 3), numpy.int32), numpy.zeros((4, 3), numpy.int8),
    numpy.zeros((4, 3), ">f4"), numpy.zeros((4, 3), ">u2"), numpy.zeros((4, 3), bool), numpy.zeros((4, 3), complex),
    numpy.array([["a", "b", "c"]]), numpy.array([[None, 1, 2]])])
def test_wrong_types(halve, array):
    for action in (lambda: halve(array), lambda: halve.apply(array)):
        with pytest.raises(TypeError, match="array: expected uint8, uint16, float16 or float32"):
            action()


@pytest.mark.parametrize("array", [None, "text", object(), [1, "a", 3], {}])
def test_other_objects(halve, array):
    with pytest.raises((TypeError, ValueError)):
        halve(array)
    with pytest.raises(TypeError, match="array: expected a numpy.ndarray"):
        halve.apply(array)


@pytest.mark.parametrize("shape", [(), (2,), (5,), (4, 2), (4, 5), (3, 4, 1), (3, 4, 0), (1, 1, 1, 1, 3)])
def test_wrong_shapes(halve, shape):
    array = numpy.zeros(shape, numpy.float32)
    for action in (lambda: halve(array), lambda: halve.apply(array)):
        with pytest.raises(ValueError, match="array: expected"):
            action()


@pytest.mark.parametrize("axis", [2, -3, 7])
def test_wrong_channel_axes(halve, axis):
    with pytest.raises(ValueError, match="channel_axis"):
        halve(numpy.zeros((4, 3), numpy.float32), channel_axis=axis)


def test_read_only_arrays_stay(halve):
    array = make_ramp(4, 3)
    array.flags.writeable = False
    with pytest.raises(ValueError, match="read-only"):
        halve.apply(array)
    with pytest.raises(ValueError, match="out: it is read-only"):
        halve(make_ramp(4, 3), out=array)
    numpy.testing.assert_array_equal(array, make_ramp(4, 3))


def test_elements_in_the_same_place_are_refused(halve):
    base = make_ramp(12)
    overlapping = numpy.lib.stride_tricks.as_strided(base, (4, 3), (4, 4))
    with pytest.raises(ValueError, match="overlap each other"):
        halve.apply(overlapping)
    repeated = numpy.lib.stride_tricks.as_strided(base, (4, 3), (0, 4))
    with pytest.raises(ValueError, match="overlap each other"):
        halve.apply(repeated)
    numpy.testing.assert_array_equal(base, make_ramp(12))


def test_results_that_overlap_the_source_are_refused(halve):
    base = make_ramp(7, 3)
    with pytest.raises(ValueError, match="overlaps the source"):
        halve(base[:-1], out=base[1:])
    with pytest.raises(ValueError, match="overlaps the source"):
        halve(base, out=base[::-1])
    numpy.testing.assert_array_equal(base, make_ramp(7, 3))
    halve(base[:3], out=base[4:])
    numpy.testing.assert_array_equal(base[4:], base[:3] / 2)


def test_results_of_another_shape_are_refused(halve):
    for shape in ((5, 3), (4, 4), (3,), (1, 4, 3)):
        with pytest.raises(ValueError, match="out: its shape differs"):
            halve(make_ramp(4, 3), out=numpy.zeros(shape, numpy.float32))
    with pytest.raises(TypeError, match="out: expected a numpy.ndarray"):
        halve(make_ramp(4, 3), out=[1, 2, 3])


def test_misaligned_arrays_are_refused(halve):
    raw = numpy.zeros(4 * 3 * 4 + 1, numpy.uint8)
    array = raw[1:].view(numpy.float32).reshape(4, 3)
    with pytest.raises(ValueError, match="aligned"):
        halve(array)


def test_exposure(session):
    exposed = session.converter("half_light", "half_light", exposure=True)
    array = numpy.float32([[1, 2, 3, 0.5]])
    numpy.testing.assert_array_equal(exposed(array, exposure=1), numpy.float32([[2, 4, 6, 0.5]]))
    numpy.testing.assert_array_equal(exposed(array), array)
    exposed.apply(array, -1)
    numpy.testing.assert_array_equal(array, numpy.float32([[0.5, 1, 1.5, 0.5]]))
    with pytest.raises(ValueError, match="exposure"):
        session.converter("lin", "half_light").apply(array, 1)


def test_values_that_are_not_finite(halve):
    array = numpy.float32([[numpy.inf, -numpy.inf, numpy.nan]])
    result = halve(array)
    assert result[0, 0] == numpy.inf and result[0, 1] == -numpy.inf and numpy.isnan(result[0, 2])


def test_no_reference_is_kept(halve):
    array = make_ramp(600, 3)
    before = sys.getrefcount(array)
    for _ in range(50):
        halve.apply(array)
        halve(array)
        halve(array, out=array)
        with pytest.raises(ValueError):
            halve(array, out=array[::-1])
    gc.collect()
    assert sys.getrefcount(array) == before


def test_threads_share_a_converter(session):
    converter = session.converter("lin", "curved")
    images = [make_ramp(200, 100, 4) / (index + 1) for index in range(4)]
    expected = [converter(image) for image in images]
    threads = [threading.Thread(target=converter.apply, args=(image,)) for image in images]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for image, wanted in zip(images, expected):
        numpy.testing.assert_array_equal(image, wanted)


def test_other_threads_run_meanwhile(session):
    """With the interpreter's lock held, the loop would end without a turn."""
    converter = session.converter("lin", "curved")
    image = numpy.full((2000, 2000, 4), 0.5, numpy.float32)
    started, done = threading.Event(), threading.Event()

    def convert():
        started.set()
        converter.apply(image)
        done.set()

    thread = threading.Thread(target=convert)
    thread.start()
    started.wait()
    turns = 0
    while not done.is_set():
        turns += 1
    thread.join()
    assert turns > 100
