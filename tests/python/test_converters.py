"""What converters are made of, and the same bits as in C++."""

import os
import pathlib
import subprocess

import numpy
import pytest

import qb_colorio


def convert(session, *args, **options):
    return session.convert([0.25, 0.5, 1.0], *args, **options).tolist()


def test_source_and_destination(session):
    assert convert(session, "lin", "half_light") == [0.125, 0.25, 0.5]
    assert convert(session, "half_light", "scene_linear") == [0.5, 1, 2]
    assert convert(session, "lin", view="Monitor.Film") == [0.125, 0.25, 0.5]
    assert convert(session, "lin", display="Cinema", view="Film") == [0.125, 0.25, 0.5]
    assert convert(session, inverse_view="Monitor.Film", destination="lin") == [0.5, 1, 2]


def test_steps(session, tmp_path):
    assert convert(session, "lin", "lin", cdl=tmp_path / "grade.cc") == [0.25, 0.25, 1]
    assert convert(session, "lin", "lin", cdl=[f"{tmp_path}/grade.cc:grade"] * 2) == [0.25, 0.125, 1]
    assert convert(session, "lin", "lin", looks="warm") == [0.5, 0.5, 1]
    assert convert(session, "lin", "lin", looks=["warm", "-warm"]) == [0.25, 0.5, 1]
    assert convert(session, "lin", "half_light", named_transform="doubled") == [0.25, 0.5, 1]
    assert convert(session, "lin", lut=tmp_path / "luts" / "doubling.spi1d") == [0.5, 1, 2]
    assert convert(session, "half_light", "half_light", exposure=1) == [0.5, 1, 2]


def test_context_of_one_converter(session):
    doubling = session.converter("lin", "shot", context={"SHOT": "doubling"})
    assert doubling([0.25, 0.5, 1]).tolist() == [0.5, 1, 2]
    assert convert(session, "lin", "shot") == [0.25, 0.5, 1]
    assert session.context == {}
    with pytest.raises(qb_colorio.Error) as caught:
        session.converter("lin", "shot", context={"SHOT": "none"})
    assert caught.value.code == "lut-missing"
    assert convert(session, "lin", "shot") == [0.25, 0.5, 1]


def test_facts(session, tmp_path):
    converter = session.converter("LIN", view="Monitor.Curved", cdl=tmp_path / "grade.cc", exposure=True)
    assert (converter.source, converter.destination) == ("lin", "Monitor.Curved")
    assert (converter.destination_space, converter.working_space) == ("ops|curved", "lin")
    assert converter.takes_exposure and not converter.is_identity and not converter.leaves_data
    assert [note.code for note in converter.notes] == ["name-substituted"]
    assert repr(converter) == "<Converter from 'lin' to 'Monitor.Curved'>"
    assert session.converter("lin", "lin").is_identity
    assert session.converter("ids", "lin").leaves_data


@pytest.mark.parametrize("options", [
    {}, {"source": "lin", "inverse_view": "Monitor.Film"}, {"source": "lin", "destination": "lin", "view": "Monitor.Film"},
    {"source": "lin", "display": "Monitor"}, {"source": 7}, {"source": "lin", "destination": b"lin"},
    {"source": "lin", "cdl": 7}, {"source": "lin", "looks": [7]}])
def test_wrong_arguments(session, options):
    with pytest.raises(TypeError):
        session.converter(**options)


@pytest.mark.parametrize("options, code, subject", [
    ({"destination": "none"}, "color-space-unknown", "none"), ({"view": "Monitor.None"}, "view-unknown", "Monitor.None"),
    ({"looks": "none"}, "look-unknown", "none"), ({"named_transform": "none"}, "named-transform-unknown", "none"),
    ({"cdl": "none"}, "cdl-unknown", "none")])
def test_unknown_names(session, options, code, subject):
    with pytest.raises(qb_colorio.Error) as caught:
        session.converter("lin", **options)
    assert (caught.value.code, caught.value.subject) == (code, subject)


def test_explanation(session, tmp_path):
    stages = session.converter("lin", "half_light", cdl=tmp_path / "grade.cc").explain((0.25, 0.5, 1))
    assert stages[-1].steps[-1].pixel == (0.125, 0.125, 0.5, 1)
    assert all(stage.path == "simd" and stage.reason == "" for stage in stages)
    assert [stage.title for stage in stages][-1] == "lin to half_light"
    assert session.converter("lin", "lin").explain() == []
    with pytest.raises(ValueError):
        session.converter("lin", "half_light").explain((1, 2))


def test_gpu_package(session, tmp_path):
    package = session.converter("lin", "half_light").gpu_package()
    assert "vec4 OCIODisplay(" in package.text and not package.takes_gain
    assert [(lut.shape, lut.dtype) for lut in package.luts] == [((32, 32, 32, 3), numpy.float32)]
    paths = package.write(tmp_path / "shader")
    assert [os.path.basename(path) for path in paths] == ["OCIODisplay.glsl", "OCIODisplay.spi3d", "OCIODisplay.cube"]
    assert pathlib.Path(paths[0]).read_text() == package.text
    assert "texture3D" not in package.text
    exposed = session.converter("lin", "half_light", exposure=True).gpu_package("legacy")
    assert exposed.takes_gain and "in float gain" in exposed.text
    with pytest.raises(ValueError, match="profile"):
        session.converter("lin", "half_light").gpu_package("vulkan")


def test_the_same_bits_as_in_c_plus_plus(session, show, tmp_path):
    """The program writes colors, and what C++ makes of them, for each of these conversions."""
    subprocess.run([os.environ["QB_EXPECTED_VALUES"], show, tmp_path / "grade.cc", tmp_path], check=True,
                   env={name: value for name, value in os.environ.items() if name != "LD_PRELOAD"})
    colors = numpy.fromfile(tmp_path / "colors.raw", numpy.float32)
    converters = {
        "space": session.converter("lin", "curved"),
        "view": session.converter("curved", view="Monitor.Film"),
        "graded": session.converter("lin", view="Monitor.Curved", cdl=tmp_path / "grade.cc", looks="warm"),
        "inverse": session.converter(inverse_view="Monitor.Curved", destination="half_light"),
        "exposed": session.converter("curved", "half_light", exposure=True)}
    for name, converter in converters.items():
        for channels in (3, 4):
            expected = numpy.fromfile(tmp_path / f"{name}_{channels}.raw", numpy.float32)
            source = colors.reshape(-1, channels)
            exposure = 0.5 if name == "exposed" else 0
            result = converter(source, exposure=exposure)
            assert result.tobytes() == expected.tobytes(), (name, channels)
            in_place = source.reshape(30, -1, channels).copy()
            converter.apply(in_place, exposure)
            assert in_place.tobytes() == expected.tobytes(), (name, channels)
            planes = numpy.ascontiguousarray(source.T)
            converter.apply(planes, exposure, channel_axis=0)
            assert numpy.ascontiguousarray(planes.T).tobytes() == expected.tobytes(), (name, channels)
