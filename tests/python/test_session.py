"""Sessions, the names of a config, and what is refused."""

import gc
import pickle
import threading
import weakref

import pytest

import qb_colorio


def test_builtin_config_without_arguments():
    with qb_colorio.Session(preferences=False) as session:
        assert session.config_source == "builtin"
        assert session.config_name == "the built-in config"
        assert [space.label for space in session.color_spaces] == ["Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear"]


def test_config_of_the_environment(show, monkeypatch):
    monkeypatch.setenv("OCIO", str(show))
    with qb_colorio.Session(preferences=False) as session:
        assert (session.config_source, session.config_path) == ("environment", str(show))
    with qb_colorio.Session("builtin", preferences=False) as session:
        assert session.config_source == "builtin"


def test_color_spaces_with_their_fields(session):
    by_name = {space.name: space for space in session.color_spaces}
    assert list(by_name) == ["lin", "half_light", "curved", "shot", "ids"]
    lin = by_name["lin"]
    assert lin.aliases == ("linear_light",)
    assert lin.encoding == "scene-linear"
    assert set(lin.categories) == {"working", "file-io"}
    assert lin.description == "the reference"
    assert lin.reference == "scene"
    assert lin.is_active and not lin.is_data
    assert by_name["ids"].is_data
    assert (by_name["curved"].label, by_name["curved"].family) == ("ops|curved", "ops")


def test_displays_views_roles_looks_and_transforms(session):
    assert session.displays == ("Monitor", "Cinema")
    assert [(view.label, view.display, view.name, view.color_space) for view in session.views] == [
        ("Monitor.Film", "Monitor", "Film", "half_light"),
        ("Monitor.Curved", "Monitor", "Curved", "ops|curved"),
        ("Cinema.Film", "Cinema", "Film", "half_light")]
    assert [view.label for view in session.views if view.is_default] == ["Monitor.Film"]
    roles = {role.name: role.color_space for role in session.roles if role.is_in_config}
    assert roles["scene_linear"] == "lin" and roles["texture_paint"] == "half_light"
    assert session.looks == ("warm",)
    assert [(one.name, one.has_forward, one.has_inverse) for one in session.named_transforms] == [("doubled", True, False)]


def test_names_are_resolved_as_in_the_tool(session):
    assert session.resolve("curved") == "ops|curved"
    assert session.resolve("scene_linear") == "lin"
    assert session.resolve("linear_light") == "lin"
    with pytest.raises(qb_colorio.Error) as caught:
        session.resolve("half_lihgt")
    assert caught.value.code == "color-space-unknown"
    assert caught.value.subject == "half_lihgt"
    assert "half_light" in caught.value.hint


def test_one_session_at_a_time(session, show):
    with pytest.raises(qb_colorio.Error) as caught:
        qb_colorio.Session(show, preferences=False)
    assert caught.value.code == "usage-refused"
    session.close()
    session.close()
    assert not session.is_open
    with qb_colorio.Session(show, preferences=False) as other:
        assert other.is_open
    with pytest.raises(qb_colorio.Error) as caught:
        session.color_spaces
    assert caught.value.code == "usage-refused"


def test_a_dropped_session_makes_room_for_another(show):
    session = qb_colorio.Session(show, preferences=False)
    converter = session.converter("lin", "half_light")
    alive = weakref.ref(session)
    del session
    gc.collect()
    assert alive() is None, "a converter does not keep its session"
    with qb_colorio.Session(show, preferences=False):
        assert converter([1, 1, 1]).tolist() == [0.5, 0.5, 0.5]


def test_a_session_belongs_to_its_thread(session):
    caught = []

    def use():
        for action in (lambda: session.views, session.close, lambda: session.converter("lin", "lin")):
            try:
                action()
            except qb_colorio.Error as error:
                caught.append(error.code)

    thread = threading.Thread(target=use)
    thread.start()
    thread.join()
    assert caught == ["usage-refused"] * 3
    assert session.is_open


def test_unusable_configs(tmp_path):
    with pytest.raises(qb_colorio.ConfigError) as caught:
        qb_colorio.Session(tmp_path / "none.ocio", preferences=False)
    assert (caught.value.code, caught.value.file) == ("config-missing", str(tmp_path / "none.ocio"))
    (tmp_path / "broken.ocio").write_text("ocio_profile_version: 2\ncolorspaces: 7\n", encoding="utf-8")
    with pytest.raises(qb_colorio.ConfigError) as caught:
        qb_colorio.Session(tmp_path / "broken.ocio", preferences=False)
    assert caught.value.code == "config-invalid"
    with qb_colorio.Session("builtin", preferences=False) as session:
        with pytest.raises(qb_colorio.Error):
            session.use_config(tmp_path / "broken.ocio")
        assert session.config_source == "builtin"


def test_another_config(session, show):
    converter = session.converter("lin", "half_light")
    session.use_config("builtin")
    assert session.config_source == "builtin"
    assert converter([1, 1, 1]).tolist() == [0.5, 0.5, 0.5]
    for wrong in (None, 7):
        with pytest.raises(TypeError, match="config"):
            session.use_config(wrong)
    with pytest.raises(ValueError, match="config"):
        session.use_config("")
    session.use_config(show)
    assert session.displays == ("Monitor", "Cinema")


def test_context_variables_of_a_session(show):
    with qb_colorio.Session(show, context={"SHOT": "doubling"}, preferences=False) as session:
        assert session.context == {"SHOT": "doubling"}
        assert session.convert([0.25, 0.25, 0.25], "lin", "shot").tolist() == [0.5, 0.5, 0.5]
        warnings = session.use_context({"SHOT": "same", "TAKE": "2"})
        assert [(one.severity, one.subject) for one in warnings] == [("warning", "TAKE")]
        assert session.convert([0.25, 0.25, 0.25], "lin", "shot").tolist() == [0.25, 0.25, 0.25]


@pytest.mark.parametrize("context", ["SHOT=a", {"SHOT": 7}, {7: "a"}])
def test_context_is_a_dict_of_str(session, context):
    with pytest.raises(TypeError, match="context"):
        session.use_context(context)


def test_cdl_library(session, tmp_path):
    assert session.use_cdl_library(tmp_path / "grade.cc") == ()
    grade = {cdl.name: cdl for cdl in session.cdls}["grade"]
    assert grade.slope == (1, 0.5, 1)
    assert (grade.offset, grade.power, grade.saturation) == ((0, 0, 0), (1, 1, 1), 1)
    with pytest.raises(qb_colorio.Error) as caught:
        session.use_cdl_library(tmp_path / "none.ccc")
    assert caught.value.code == "file-missing"


def test_check_reports_what_fails(session, tmp_path):
    assert session.check().ok
    (tmp_path / "luts" / "same.spi1d").unlink()
    session.use_config(tmp_path / "show.ocio")
    report = session.check()
    assert not report.ok
    assert report.scene_linear == "lin"
    assert report.counts["views_tried"] == 3
    assert [(one.subject, one.name, one.reason.code) for one in report.failures] == [
        ("color space", "shot", "lut-missing")]


def test_errors_keep_their_fields_when_pickled(session):
    with pytest.raises(qb_colorio.Error) as caught:
        session.converter("lin", "none")
    copy = pickle.loads(pickle.dumps(caught.value))
    assert type(copy) is qb_colorio.Error
    assert copy.diagnostics == caught.value.diagnostics
    assert (copy.code, str(copy)) == ("color-space-unknown", str(caught.value))


def test_diagnostics_cannot_be_changed(session):
    with pytest.raises(qb_colorio.Error) as caught:
        session.converter("lin", "none")
    diagnostic = caught.value.diagnostics[0]
    assert diagnostic.severity == "error"
    with pytest.raises(AttributeError):
        diagnostic.code = "other"


def test_paths_may_have_any_bytes(tmp_path):
    name = b"\xff\xfe.ocio".decode("utf-8", "surrogateescape")
    with pytest.raises(qb_colorio.ConfigError) as caught:
        qb_colorio.Session(tmp_path / name, preferences=False)
    assert caught.value.file.endswith(name)
