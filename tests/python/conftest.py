"""A config and a session for every test that asks for them."""

import pathlib

import pytest

import qb_colorio

CONFIG = """ocio_profile_version: 2
search_path: luts
roles: {scene_linear: lin, default: lin, texture_paint: half_light}
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: half_light}
    - !<View> {name: Curved, colorspace: curved}
  Cinema:
    - !<View> {name: Film, colorspace: half_light}
active_displays: [Monitor, Cinema]
looks:
  - !<Look> {name: warm, process_space: lin, transform: !<CDLTransform> {slope: [2, 1, 1]}}
colorspaces:
  - !<ColorSpace> {name: lin, aliases: [linear_light], encoding: scene-linear, categories: [working, file-io], description: the reference}
  - !<ColorSpace> {name: half_light, from_scene_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}}
  - !<ColorSpace> {name: curved, family: ops, from_scene_reference: !<ExponentTransform> {value: [0.4, 0.5, 0.6, 1]}}
  - !<ColorSpace> {name: shot, from_scene_reference: !<FileTransform> {src: "${SHOT}.spi1d", interpolation: linear}}
  - !<ColorSpace> {name: ids, isdata: true}
named_transforms:
  - !<NamedTransform> {name: doubled, transform: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}}
environment: {SHOT: same}
"""

# Green halved, power 1, saturation 1.
CDL = """<ColorCorrection id="grade"><SOPNode><Slope>1 0.5 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>
<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>
"""


def write_lut(folder, name, last):
    folder.mkdir(exist_ok=True)
    (folder / f"{name}.spi1d").write_text(
        f"Version 1\nFrom 0 1\nLength 2\nComponents 1\n{{\n0\n{last}\n}}\n", encoding="utf-8")


@pytest.fixture(autouse=True)
def own_environment(tmp_path_factory, monkeypatch):
    home = tmp_path_factory.mktemp("home")
    monkeypatch.setenv("HOME", str(home))
    monkeypatch.setenv("XDG_CACHE_HOME", str(home / "cache"))
    monkeypatch.setenv("XDG_CONFIG_HOME", str(home / "config"))
    monkeypatch.delenv("OCIO", raising=False)


@pytest.fixture
def show(tmp_path) -> pathlib.Path:
    """Path of the config; its LUT "same" changes nothing, "doubling" doubles."""
    path = tmp_path / "show.ocio"
    path.write_text(CONFIG, encoding="utf-8")
    write_lut(tmp_path / "luts", "same", 1)
    write_lut(tmp_path / "luts", "doubling", 2)
    (tmp_path / "grade.cc").write_text(CDL, encoding="utf-8")
    return path


@pytest.fixture
def session(show):
    with qb_colorio.Session(show, preferences=False) as opened:
        yield opened
