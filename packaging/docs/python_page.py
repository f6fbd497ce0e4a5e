"""The reference of the Python package: signatures of its stubs, texts of its docstrings."""

import ast
import copy
import importlib
import inspect
import pathlib
import re

ARGUMENT = re.compile(r"^(\w+(?:, \w+)*): ")
TYPE_BEFORE_TEXT = re.compile(r"^[a-z][\w.]*(?:\[[^:]*\])?: (.)")


def format_docstring(text):
    """Markdown of a docstring: lines that begin with the names of arguments become a list, and examples code."""
    lines = []
    for paragraph in re.split(r"\n\s*\n", text.strip()):
        if paragraph.startswith(">>>"):
            lines.append(f"```python\n{paragraph}\n```")
            continue
        for line in paragraph.splitlines():
            found = ARGUMENT.match(line)
            if found:
                names = ", ".join(f"`{name}`" for name in found.group(1).split(", "))
                line = f"* {names}: {line[found.end():]}"
            lines.append(line.replace("<", "\\<") if not found else line)
        lines.append("")
    return "\n".join(lines).strip() + "\n"


def get_text(value):
    """The docstring without the signature, with which those of compiled functions begin."""
    text = inspect.getdoc(value) or ""
    return re.sub(r"^\w+\(.*\) -> .*\n+", "", text)


def make_signature(function, is_method):
    arguments = copy.copy(function.args)
    arguments.args = arguments.args[1 if is_method else 0:]
    returns = f" -> {ast.unparse(function.returns)}" if function.returns else ""
    return f"({ast.unparse(arguments)}){returns}"


def make_member(public, statement):
    if isinstance(statement, ast.AnnAssign):
        return None
    text = get_text(inspect.getattr_static(public, statement.name))
    if statement.decorator_list:
        text = format_docstring(TYPE_BEFORE_TEXT.sub(lambda found: found.group(1).upper(), text))
        return f"```{{py:property}} {statement.name}\n:type: {ast.unparse(statement.returns)}\n\n{text}```\n"
    return f"````{{py:method}} {statement.name}{make_signature(statement, True)}\n\n{format_docstring(text)}````\n"


def make_class(name, public, statement):
    members = [member for member in statement.body if isinstance(member, ast.FunctionDef)]
    constructor = next((member for member in members if member.name == "__init__"), None)
    kind = "exception" if issubclass(public, Exception) else "class"
    text = format_docstring(get_text(public))
    if constructor and kind == "class":
        text += "\n" + format_docstring(get_text(public.__init__))
    signature = make_signature(constructor, True).removesuffix(" -> None") if constructor else ""
    rest = [make_member(public, member) for member in members if member is not constructor]
    return f"``````{{py:{kind}}} {name}{signature}\n\n{text}\n{chr(10).join(filter(None, rest))}``````\n"


def make_aliases(stub):
    """The names of types in the signatures, which begin with an underscore."""
    rows = [f"| `{statement.targets[0].id}` | `{ast.unparse(statement.value)}` |\n" for statement in stub.body
            if isinstance(statement, ast.Assign)]
    return f"\n| type in signatures | meaning |\n|---|---|\n{''.join(rows)}"


def make():
    package = importlib.import_module("qb_colorio")
    stub = ast.parse(pathlib.Path(package.__file__).with_suffix(".pyi").read_text(encoding="utf-8"))
    parts = ["\n```{py:module} qb_colorio\n```\n", make_aliases(stub)]
    for statement in stub.body:
        if isinstance(statement, ast.ClassDef):
            described = make_class(statement.name, getattr(package, statement.name), statement)
            parts.append(f"\n## {statement.name}\n\n{described}")
        elif isinstance(statement, ast.FunctionDef):
            text = format_docstring(get_text(getattr(package, statement.name)))
            parts.append(f"\n## {statement.name}\n\n````{{py:function}} {statement.name}{make_signature(statement, False)}"
                         f"\n\n{text}````\n")
    return "".join(parts)
