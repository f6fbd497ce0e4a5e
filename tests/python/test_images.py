"""Images as arrays with metadata, and files converted to files."""

import fractions
import gc
import multiprocessing
import subprocess
import sys
import weakref

import numpy
import pytest

import qb_colorio


def make_ramp(*shape, dtype=numpy.float32):
    return (numpy.arange(numpy.prod(shape)) % 251).astype(dtype).reshape(shape)


@pytest.mark.parametrize("name, dtype, channels", [
    ("a.exr", numpy.float32, 4), ("a.exr", numpy.float16, 3), ("a.png", numpy.uint8, 3), ("a.png", numpy.uint16, 3),
    ("a.tif", numpy.uint8, 3), ("a.tif", numpy.float32, 3)])
def test_pixels_keep_their_values_and_type(tmp_path, name, dtype, channels):
    pixels = make_ramp(5, 7, channels, dtype=dtype)
    qb_colorio.write_image(tmp_path / name, pixels)
    image = qb_colorio.read_image(tmp_path / name)
    assert image.pixels.dtype == dtype
    assert image.channels == ("R", "G", "B", "A")[:channels]
    numpy.testing.assert_array_equal(image.pixels, pixels)
    assert qb_colorio.count_image_parts(tmp_path / name) == 1


def test_any_strides_and_single_channels(tmp_path):
    pixels = make_ramp(8, 10, 3)
    qb_colorio.write_image(tmp_path / "a.exr", pixels[::-2, 1::3])
    numpy.testing.assert_array_equal(qb_colorio.read_image(tmp_path / "a.exr").pixels, pixels[::-2, 1::3])
    qb_colorio.write_image(tmp_path / "b.exr", pixels[..., 0])
    numpy.testing.assert_array_equal(qb_colorio.read_image(tmp_path / "b.exr").pixels, pixels[..., :1])


def test_metadata_windows_and_channels(tmp_path):
    written = qb_colorio.Image(make_ramp(4, 6, 4, dtype=numpy.float16), channels=("R", "G", "B", "Z"),
                               origin=(10, -3), display_window=(0, 0, 64, 32))
    matrix = tuple(tuple(float(4 * row + column) for column in range(4)) for row in range(4))
    written.metadata = {"shot": "sq010 \N{GREEK SMALL LETTER ALPHA}", "take": 7, "weight": 0.25, "triple": (1.0, 2.0, 3.0),
                        "worldToCamera": matrix, "compression": "piz",
                        "FramesPerSecond": fractions.Fraction(24000, 1001), "smpte:TimeCode": (18, 52)}
    qb_colorio.write_image(tmp_path / "a.exr", written)
    read = qb_colorio.read_image(tmp_path / "a.exr")
    for name, value in written.metadata.items():
        assert read.metadata[name] == value, name
    assert (read.channels, read.origin, read.display_window) == (("R", "G", "B", "Z"), (10, -3), (0, 0, 64, 32))
    assert (read.format, read.depth) == ("openexr", "half")
    qb_colorio.write_image(tmp_path / "b.exr", read)
    again = qb_colorio.read_image(tmp_path / "b.exr")
    assert again.metadata == read.metadata
    numpy.testing.assert_array_equal(again.pixels, read.pixels)


@pytest.mark.parametrize("value", [None, object(), {}, (), ("a", 1), [None], ((1.0, 2.0),), 1 << 80])
def test_metadata_of_other_types(tmp_path, value):
    image = qb_colorio.Image(make_ramp(2, 2, 3), metadata={"odd": value})
    with pytest.raises(TypeError, match="odd"):
        qb_colorio.write_image(tmp_path / "a.exr", image)
    assert not (tmp_path / "a.exr").exists()


@pytest.mark.parametrize("pixels", [numpy.zeros((4,)), numpy.zeros((2, 2, 2, 2)), numpy.zeros((0, 4, 3))])
def test_wrong_shapes(tmp_path, pixels):
    with pytest.raises(ValueError, match="image"):
        qb_colorio.write_image(tmp_path / "a.exr", pixels)


def test_wrong_types_and_channel_names(tmp_path):
    with pytest.raises(TypeError, match="bool"):
        qb_colorio.write_image(tmp_path / "a.exr", numpy.zeros((2, 2, 3), bool))
    with pytest.raises(ValueError, match="channels"):
        qb_colorio.write_image(tmp_path / "a.exr", qb_colorio.Image(make_ramp(2, 2, 3), channels=("R", "G")))


def test_depth_dithering_and_compression(tmp_path):
    pixels = numpy.full((16, 16, 3), 0.5, numpy.float32)
    qb_colorio.write_image(tmp_path / "a.dpx", pixels, depth="uint10")
    assert qb_colorio.read_image(tmp_path / "a.dpx").depth == "uint10"
    qb_colorio.write_image(tmp_path / "a.png", pixels, depth="uint8", dither=True)
    assert set(numpy.unique(qb_colorio.read_image(tmp_path / "a.png").pixels)) == {127, 128}
    qb_colorio.write_image(tmp_path / "a.exr", pixels, compression="piz")
    assert qb_colorio.read_image(tmp_path / "a.exr").metadata["compression"] == "piz"
    with pytest.raises(qb_colorio.Error) as caught:
        qb_colorio.write_image(tmp_path / "b.png", pixels, depth="half")
    assert (caught.value.code, caught.value.file) == ("image-unsupported", str(tmp_path / "b.png"))
    assert not (tmp_path / "b.png").exists()


def test_what_the_format_cannot_have_is_noted(tmp_path):
    notes = qb_colorio.write_image(tmp_path / "a.jpg", make_ramp(8, 8, 4, dtype=numpy.uint8))
    assert [note.code for note in notes] == ["channels-dropped"]


def test_files_that_cannot_be_read(tmp_path):
    with pytest.raises(qb_colorio.Error) as caught:
        qb_colorio.read_image(tmp_path / "none.exr")
    assert (caught.value.code, caught.value.file) == ("image-unreadable", str(tmp_path / "none.exr"))
    (tmp_path / "text.exr").write_text("text")
    with pytest.raises(qb_colorio.Error) as caught:
        qb_colorio.read_image(tmp_path / "text.exr")
    assert caught.value.code == "image-unreadable"
    qb_colorio.write_image(tmp_path / "good.exr", make_ramp(2, 2, 3))
    with pytest.raises(qb_colorio.Error) as caught:
        qb_colorio.read_image(tmp_path / "good.exr", part=1)
    assert caught.value.code == "layer-unknown"
    with pytest.raises(TypeError, match="path"):
        qb_colorio.read_image(7)


def test_an_array_outlives_its_image(tmp_path):
    qb_colorio.write_image(tmp_path / "a.exr", make_ramp(300, 300, 4))
    image = qb_colorio.read_image(tmp_path / "a.exr")
    part = image.pixels[100:200, :, :3]
    image.metadata["self"] = image
    alive = weakref.ref(image)
    del image
    gc.collect()
    assert alive() is None
    numpy.testing.assert_array_equal(part, make_ramp(300, 300, 4)[100:200, :, :3])


def test_the_result_of_a_converter_gets_its_tags(session, tmp_path):
    converter = session.converter("lin", "half_light")
    image = qb_colorio.Image(make_ramp(3, 3, 3), metadata={"oiio:ColorSpace": "lin", "shot": "a"})
    converter.apply(image.pixels)
    qb_colorio.write_image(tmp_path / "a.exr", image, converter=converter)
    metadata = qb_colorio.read_image(tmp_path / "a.exr").metadata
    assert (metadata["colorio:ColorSpace"], metadata["shot"]) == ("half_light", "a")
    found = session.find_file_space(tmp_path / "a.exr")
    assert (found.color_space, found.is_assumed, found.is_data) == ("half_light", False, False)
    assert found.steps[0][0] == "tags"


def test_files_are_converted_to_files(session, tmp_path):
    pixels = make_ramp(6, 5, 3)
    qb_colorio.write_image(tmp_path / "a.exr", pixels)
    converter = session.converter("lin", "half_light")
    report = converter.convert_image(tmp_path / "a.exr", tmp_path / "b.exr", depth="float", compression="zip")
    assert (report.width, report.height, report.pixels, report.depth) == (5, 6, 30, "float")
    assert report.converted_layers == ("rgba",) and report.left_layers == {}
    numpy.testing.assert_array_equal(qb_colorio.read_image(tmp_path / "b.exr").pixels, pixels / 2)
    with pytest.raises(qb_colorio.Error) as caught:
        converter.convert_image(tmp_path / "none.exr", tmp_path / "c.exr")
    assert caught.value.code == "image-unreadable"
    with pytest.raises(qb_colorio.Error) as caught:
        converter.convert_image(tmp_path / "a.exr", tmp_path / "c.exr", layers="diffuse")
    assert caught.value.code == "layer-unknown"
    session.close()
    with pytest.raises(qb_colorio.Error) as caught:
        converter.convert_image(tmp_path / "a.exr", tmp_path / "c.exr")
    assert caught.value.code == "usage-refused"


def read_sum(path, results):
    results.put(float(qb_colorio.read_image(path).pixels.sum()))


def test_a_forked_process_reads_images_too(tmp_path):
    pixels = make_ramp(4, 4, 3)
    qb_colorio.write_image(tmp_path / "a.exr", pixels)
    assert qb_colorio.read_image(tmp_path / "a.exr").pixels.sum() == pixels.sum()
    context = multiprocessing.get_context("fork")
    results = context.Queue()
    process = context.Process(target=read_sum, args=(tmp_path / "a.exr", results))
    process.start()
    assert results.get(timeout=60) == pixels.sum()
    process.join()
    assert process.exitcode == 0
    assert qb_colorio.read_image(tmp_path / "a.exr").pixels.sum() == pixels.sum()


def count_children(*statements):
    """Processes that a new interpreter has started after these statements."""
    code = "\n".join(["import os, qb_colorio", *statements,
                      "print(len(open(f'/proc/self/task/{os.getpid()}/children').read().split()))"])
    return int(subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True).stdout)


def test_processes_are_started_by_the_first_image(tmp_path):
    qb_colorio.write_image(tmp_path / "a.exr", make_ramp(2, 2, 3))
    assert count_children() == 0
    assert count_children(f"qb_colorio.read_image({str(tmp_path / 'a.exr')!r})") == 1
