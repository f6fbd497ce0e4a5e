"""Writes the pages that Sphinx turns into HTML: the documents of the repository, with the reference that is generated.

usage: make_pages.py TOOL DOXYGEN_XML_FOLDER PAGES_FOLDER
The Python package is imported from PYTHONPATH.
"""

import os
import pathlib
import re
import shutil
import sys

import cpp_pages
import command_pages
import python_page

PROJECT = pathlib.Path(__file__).resolve().parents[2]
DOCS = PROJECT / "docs"

# Documents beyond docs/, and their pages.
OTHER_DOCUMENTS = {"CHANGELOG.md": "changes.md"}

# Folders and files that documents link to, and the pages that show their contents.
SHOWN_SOURCES = {
    "colorio": "reference/cpp/module.md",
    "conformance": "reference/cpp/conformance.md",
    "diagnostics": "reference/cpp/diagnostics.md",
    "examples": "examples.md",
    "host": "reference/cpp/host.md",
    "python/qb_colorio/__init__.pyi": "reference/python.md",
    "standalone": "reference/cpp/host.md",
    "workflow": "reference/cpp/workflow.md",
    "xml": "reference/cpp/xml.md",
}

LINK = re.compile(r"(\]\()([^)\s#]+)((?:#[^)\s]*)?\))")
FENCE = re.compile(r"^ *(`{3,})")

CODE_LANGUAGES = {".cpp": "cpp", ".h": "cpp", ".py": "python", ".txt": "cmake"}


def find_page(target):
    """The page, relative to the pages' folder, for a path relative to the project."""
    if target in OTHER_DOCUMENTS:
        return OTHER_DOCUMENTS[target]
    if target.startswith("docs/"):
        return target[len("docs/"):] if (PROJECT / target).is_file() else target[len("docs/"):] + "/index.md"
    parts = target.split("/")
    for count in range(len(parts), 0, -1):
        page = SHOWN_SOURCES.get("/".join(parts[:count]))
        if page:
            return page
    return None


def adapt_links(text, document, page):
    """The text of a document with its links to files as links to pages; it fails for a link that leads to no page."""
    def adapt(match):
        target = match.group(2)
        if "://" in target or target.endswith((".png", ".svg")):
            return match.group(0)
        path = os.path.normpath(os.path.join(os.path.dirname(document), target))
        if not (PROJECT / path).exists():
            raise SystemExit(f"{document}: no such file: {target}")
        found = find_page(path)
        if not found:
            raise SystemExit(f"{document}: no page shows {path}")
        return match.group(1) + os.path.relpath(found, os.path.dirname(page) or ".") + match.group(3)

    lines, is_code = [], False
    for line in text.splitlines(keepends=True):
        if FENCE.match(line):
            is_code = not is_code
        lines.append(line if is_code else LINK.sub(adapt, line))
    return "".join(lines)


def make_tables_of_contents(index):
    """Hidden tables of contents for the sidebar, from the headings of the start page and the links below them."""
    tables = []
    for section in re.split(r"^## ", index, flags=re.MULTILINE)[1:]:
        pages = re.findall(r"\[[^]]+\]\(([^)#]+\.md)\)", section)
        if pages:
            tables.append("```{toctree}\n:hidden:\n:caption: " + section.splitlines()[0] + "\n\n" + "\n".join(pages) +
                          "\n```\n")
    return "\n" + "\n".join(tables)


def make_example_sources():
    """The source files of every example, the short page of each with its files."""
    parts = []
    for folder in sorted(path for path in (PROJECT / "examples").iterdir() if path.is_dir()):
        parts.append(f"\n## Source of examples/{folder.name}\n")
        for path in sorted(folder.iterdir(), key=lambda path: (path.name != "main.cpp", path.name)):
            if path.suffix in CODE_LANGUAGES:
                parts.append(f"\n### {folder.name}/{path.name}\n\n```{CODE_LANGUAGES[path.suffix]}\n"
                             f"{path.read_text(encoding='utf-8')}```\n")
    return "".join(parts)


def write(folder, page, text):
    path = folder / page
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")


def main(tool, xml, folder):
    shutil.rmtree(folder, ignore_errors=True)
    generated = {
        "reference/commands.md": lambda: command_pages.make(tool),
        "reference/cpp.md": cpp_pages.make_contents,
        "reference/python.md": python_page.make,
        "examples.md": make_example_sources,
        "decisions/index.md": lambda: "\n```{toctree}\n:glob:\n\n0*\n```\n",
    }
    documents = {path.relative_to(PROJECT).as_posix(): path.relative_to(DOCS).as_posix()
                 for path in DOCS.rglob("*.md")}
    documents.update(OTHER_DOCUMENTS)
    for document, page in documents.items():
        text = adapt_links((PROJECT / document).read_text(encoding="utf-8"), document, page)
        if page == "index.md":
            text += make_tables_of_contents(text)
        write(folder, page, text + generated.pop(page, str)())
    if generated:
        raise SystemExit(f"no document for the generated pages {', '.join(generated)}")
    for page, text in cpp_pages.make_pages(PROJECT, xml):
        write(folder, page, text)
    for path in DOCS.rglob("*"):
        if path.suffix in (".png", ".svg"):
            target = folder / path.relative_to(DOCS)
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(path, target)


if __name__ == "__main__":
    main(sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3]))
