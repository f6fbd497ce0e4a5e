"""The reference of the commands, from the help texts of the tool."""

import re
import subprocess

SECTION = re.compile(r"^(Positionals|Options|Commands|Examples|Environment):$")
BEFORE_EXPLANATION = re.compile(r"^(?:  \S.*?  +|     +)(?=\S)")


def read_help(tool, words):
    return subprocess.run([tool, *words, "--help"], check=True, capture_output=True, text=True).stdout


def split_sections(text):
    """The usage and other texts as ("", lines), and the named sections as (name, lines)."""
    sections = [("", [])]
    for line in text.splitlines():
        found = SECTION.match(line)
        if found:
            sections.append((found.group(1), []))
        elif sections[-1][0] and line and not line.startswith(" "):
            sections.append(("", [line]))
        else:
            sections[-1][1].append(line)
    return sections


def read_entries(lines):
    """Pairs of a term and its explanation. Explanations begin in one column, and after long terms in the next line."""
    column = min(found.end() for found in map(BEFORE_EXPLANATION.match, lines) if found)
    entries = []
    for line in filter(None, lines):
        if line.startswith(" " * column):
            entries[-1][1] = f"{entries[-1][1]} {line.strip()}".strip()
        elif line[column - 1:column] == " ":
            entries.append([line[:column].strip(), line[column:].strip()])
        else:
            entries.append([line.strip(), ""])
    unexplained = [term for term, explanation in entries if not explanation]
    if unexplained:
        raise ValueError(f"no explanation of {', '.join(unexplained)} in a help text")
    return entries


def format_term(term):
    """An option with both spellings and its value as code: `-o`, `--output FOLDER` (required)."""
    required = " (required)" if term.endswith("(required)") else ""
    term = term.removesuffix("(required)").strip()
    names, _, value = term.partition(" ")
    spelled = names.split(",")
    spelled[-1] += f" {value}" if value else ""
    return ", ".join(f"`{one}`" for one in spelled).replace("|", "\\|") + required


def escape(text):
    return re.sub(r"([|<>*_$\[\]])", r"\\\1", text)


def make_table(name, lines):
    rows = [f"| {format_term(term)} | {escape(explanation)} |\n" for term, explanation in read_entries(lines)]
    return f"\n| {name.lower().rstrip('s')} | meaning |\n|---|---|\n{''.join(rows)}"


def make_command(words, text):
    description, usage, *rest = text.splitlines()
    parts = [f"\n## {' '.join(words)}\n\n" if len(words) < 3 else f"\n### {' '.join(words)}\n\n",
             f"{escape(description).rstrip('.')}.\n\n```text\n{usage.removeprefix('Usage: ')}\n```\n"]
    for name, lines in split_sections("\n".join(rest)):
        text = "\n".join(line.removeprefix("  ") for line in lines).strip("\n")
        if not text.strip():
            continue
        if name == "Examples":
            parts.append(f"\n```sh\n{text}\n```\n")
        elif name:
            parts.append(make_table(name, lines))
        elif any(line.startswith("  ") for line in lines):
            parts.append(f"\n```text\n{text}\n```\n")
        else:
            parts.append(f"\n{escape(text)}\n")
    return "".join(parts)


def list_commands(text):
    return [term for name, lines in split_sections(text) if name == "Commands" for term, _ in read_entries(lines)]


def make(tool):
    def make_with_commands(words):
        text = read_help(tool, words[1:])
        return make_command(words, text) + "".join(make_with_commands([*words, name]) for name in list_commands(text))

    return make_with_commands(["colorio"])
