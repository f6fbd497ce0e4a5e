"""The reference of the public headers, which Breathe makes of their comments."""

import collections
import re
from xml.etree import ElementTree

GROUPS = {
    "module": ("Module", "What a host calls, and programs that explain or check conversions."),
    "host": ("Host", "What a host implements, and the application of the standalone host."),
    "workflow": ("Workflow library", "The color work of the tool, in the namespaces `workflow`, `image` and `gl`."),
    "diagnostics": ("Diagnostics", "Errors, warnings and notes, in the namespace `diagnostics`."),
    "xml": ("XML library", "Reading and writing XML documents."),
    "conformance": ("Conformance kit", "What a host tells the kit about its application, in the namespace `conformance`."),
}


def read_header_table(project, document):
    return re.findall(r"^\| `([^`]+\.h)` \|", (project / "docs" / document).read_text(encoding="utf-8"), re.MULTILINE)


def list_installed(project, folder):
    """The headers of a folder that packaging/ installs one by one."""
    text = (project / "packaging" / "CMakeLists.txt").read_text(encoding="utf-8")
    names = re.search(rf"qb_install_headers\({folder} ([^)]+)\)", text).group(1).split()
    return [f"{folder}/{name}" for name in names]


def list_headers(project, group):
    def list_all(folder):
        return sorted(path.relative_to(project).as_posix() for path in (project / folder).rglob("*.h")
                      if not path.name.endswith("_export.h"))

    return {
        "module": lambda: [path for path in list_all("colorio") if path.count("/") == 1],
        "host": lambda: list_all("host") + list_installed(project, "standalone"),
        "workflow": lambda: read_header_table(project, "workflow.md"),
        "diagnostics": lambda: list_all("diagnostics"),
        "xml": lambda: list_installed(project, "xml"),
        "conformance": lambda: list_installed(project, "conformance"),
    }[group]()


def make_contents():
    return "\n```{toctree}\n:hidden:\n\n" + "\n".join(f"cpp/{group}.md" for group in GROUPS) + "\n```\n"


class Header:
    """What a header declares, in elements of Doxygen's XML."""

    def __init__(self):
        self.classes = []
        self.members = []


def read_headers(xml):
    """The headers by their paths. Doxygen describes what is in a namespace apart from the file."""
    headers = collections.defaultdict(Header)
    for path in sorted([*xml.glob("*_8h.xml"), *xml.glob("namespace*.xml")]):
        described = ElementTree.parse(path).getroot().find("compounddef")
        if described.get("kind") == "file":
            headers[described.find("location").get("file")].classes = described.findall("innerclass")
        for member in described.iterfind("sectiondef/memberdef"):
            headers[member.find("location").get("file")].members.append(member)
    return headers


def list_classes(header):
    """The classes and structs that are not in another one, which shows them."""
    names = {inner.text for inner in header.classes}
    for inner in header.classes:
        if inner.text.rpartition("::")[0] not in names and inner.get("prot") == "public":
            kind = "struct" if inner.get("refid").startswith("struct") else "class"
            yield f"```{{doxygen{kind}}} {inner.text}\n:members:\n```\n"


def get_name(member):
    return member.findtext("qualifiedname") or member.findtext("name")


def make_function_name(member):
    """With the types of the arguments, by which Breathe finds it among functions of the same name."""
    types = ["".join(one.find("type").itertext()) + one.findtext("array", "") for one in member.findall("param")]
    return f"{get_name(member)}({', '.join(types)})"


def list_members(header):
    """Functions, enumerations, type names and constants outside of classes."""
    for member in header.members:
        kind = member.get("kind")
        if kind == "define" or member.findtext("name").startswith("@"):
            continue
        name = make_function_name(member) if kind == "function" else get_name(member)
        yield f"```{{doxygen{kind}}} {name}\n```\n"


def make_pages(project, xml):
    headers = read_headers(xml)
    for group, (title, description) in GROUPS.items():
        parts = [f"# {title}\n\n{description}\n"]
        for path in list_headers(project, group):
            entries = [*list_classes(headers[path]), *list_members(headers[path])]
            if not entries:
                raise SystemExit(f"Doxygen found nothing in {path}")
            parts.append("\n".join([f"\n## {path}\n", *entries]))
        yield f"reference/cpp/{group}.md", "".join(parts)
