"""The examples in docstrings and documents, and the stubs, against the package."""

import ast
import dataclasses
import doctest
import inspect
import os
import pathlib
import subprocess
import sys

import numpy
import pytest

import qb_colorio

PROJECT = pathlib.Path(__file__).resolve().parents[2]
STUB = pathlib.Path(qb_colorio.__file__).with_suffix(".pyi")


def run_examples(text, name):
    test = doctest.DocTestParser().get_doctest(text, {"qb_colorio": qb_colorio, "numpy": numpy}, name, name, 0)
    assert test.examples, f"{name} has no examples"
    report = []
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE)
    result = runner.run(test, out=report.append)
    assert result.failed == 0, "".join(report)


def test_examples_of_the_docstrings():
    run_examples(qb_colorio.__doc__ + "\n" + qb_colorio.Error.__doc__, "qb_colorio")


def list_documents_with_examples():
    return [path for path in sorted([PROJECT / "README.md", *(PROJECT / "docs").rglob("*.md")])
            if "```python\n" in path.read_text(encoding="utf-8")]


def test_documents_with_examples_are_found():
    assert PROJECT / "docs" / "python.md" in list_documents_with_examples()


@pytest.mark.parametrize("path", list_documents_with_examples(), ids=lambda path: path.name)
def test_examples_of_the_documents(path, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    run_examples(path.read_text(encoding="utf-8"), path.name)


def test_the_example_program(show, tmp_path):
    qb_colorio.write_image(tmp_path / "in.0001.exr", numpy.full((4, 4, 3), 0.5, numpy.float32))
    done = subprocess.run([sys.executable, PROJECT / "examples" / "python" / "review.py", show, "lin", "Monitor.Film",
                           tmp_path / "in.####.exr", tmp_path / "out.####.png"], capture_output=True, text=True,
                          check=False, env=os.environ)
    assert done.returncode == 0, done.stderr
    assert "1 of 1" in done.stdout
    assert qb_colorio.read_image(tmp_path / "out.0001.png").pixels[0, 0].tolist() == [64, 64, 64]
    done = subprocess.run([sys.executable, PROJECT / "examples" / "python" / "review.py", show, "lni", "Monitor.Film",
                           tmp_path / "in.####.exr", tmp_path / "out.####.png"], capture_output=True, text=True,
                          check=False, env=os.environ)
    assert done.returncode == 1
    assert "color-space-unknown" in done.stderr


def list_members(stub_class):
    for statement in stub_class.body:
        if isinstance(statement, ast.FunctionDef):
            yield statement.name
        elif isinstance(statement, ast.AnnAssign):
            yield statement.target.id


def test_stubs_describe_everything_public():
    stub = ast.parse(STUB.read_text(encoding="utf-8"))
    declared = {statement.name: statement for statement in stub.body
                if isinstance(statement, (ast.ClassDef, ast.FunctionDef))}
    assert sorted(declared) == sorted(qb_colorio.__all__)
    assert (STUB.parent / "py.typed").exists()
    for name, statement in declared.items():
        public = getattr(qb_colorio, name)
        if not isinstance(statement, ast.ClassDef) or issubclass(public, Exception) or dataclasses.is_dataclass(public):
            continue
        members = {member for member in vars(public)
                   if not member.startswith("_") or member in ("__call__", "__enter__", "__exit__")}
        stubbed = set(list_members(statement)) - {"__init__"}
        assert stubbed == members, name


@pytest.mark.parametrize("name", [name for name in qb_colorio.__all__])
def test_everything_public_is_documented(name):
    public = getattr(qb_colorio, name)
    assert public.__module__ == "qb_colorio"
    assert inspect.getdoc(public)
    if inspect.isclass(public):
        for member, value in vars(public).items():
            if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                assert inspect.getdoc(value), f"{name}.{member}"


def test_arguments_in_the_stubs_are_those_of_the_package():
    """By the signatures that the compiled functions document."""
    stub = ast.parse(STUB.read_text(encoding="utf-8"))
    checked = 0
    for statement in stub.body:
        if not isinstance(statement, ast.ClassDef):
            continue
        for method in statement.body:
            if not isinstance(method, ast.FunctionDef) or method.decorator_list or method.name.startswith("__"):
                continue
            documented = (getattr(getattr(qb_colorio, statement.name), method.name).__doc__ or "").splitlines()[0]
            arguments = [argument.arg for argument in method.args.args + method.args.kwonlyargs]
            for argument in arguments:
                assert f"{argument}:" in documented, f"{statement.name}.{method.name}: {argument}"
            assert documented.count(":") == len(arguments), f"{statement.name}.{method.name}"
            checked += 1
    assert checked > 10
