"""Settings of Sphinx for ./dev docs. The pages are those that make_pages.py writes."""

import os
import pathlib
import re

_BUILD = pathlib.Path(os.environ["QB_DOCS_BUILD"])
_PROJECT = pathlib.Path(__file__).resolve().parents[2]

project = "qb_colorio"
version = release = re.search(r"VERSION ([\d.]+) LANGUAGES",
                              (_PROJECT / "CMakeLists.txt").read_text(encoding="utf-8")).group(1)
extensions = ["myst_parser", "breathe"]
source_suffix = {".md": "markdown"}
root_doc = "index"
smartquotes = False

html_theme = "furo"
html_title = f"qb_colorio {version}"
html_copy_source = False
html_show_copyright = False
html_static_path = ["_static"]
html_css_files = ["tables.css"]
pygments_style = "friendly"
pygments_dark_style = "native"

myst_heading_anchors = 4
myst_enable_extensions = ["deflist"]

breathe_projects = {"qb_colorio": str(_BUILD / "doxygen" / "xml")}
breathe_default_project = "qb_colorio"
breathe_default_members = ("members",)
breathe_show_include = False
cpp_id_attributes = ["COLORIO_API", "HOST_API"]

