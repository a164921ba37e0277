#!/usr/bin/env python3
"""Checks what compilers do not: which folder may include which, that every command is documented
and called in an example, lengths of files and lines, leftovers, and the ratio of tests to code."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CODE_ENDINGS = {".cpp", ".h", ".hpp", ".c", ".vt", ".def", ".py", ".sh", ".vx"}
SHARED_ALGORITHMS = {"core", "charclass", "search", "regex"}
MAX_LINES = 400
MAX_RATIO = 0.34
problems = []


def tracked(*patterns):
    names = subprocess.run(["git", "ls-files", "--", *patterns], cwd=ROOT, check=True,
                           capture_output=True, text=True).stdout.split()
    return [ROOT / name for name in names if (ROOT / name).is_file()]


def report(path, text):
    problems.append(f"{path.relative_to(ROOT)}: {text}")


def is_binding(path):
    """Whether a library file may know the host: the frame itself and the command bodies."""
    return path.parent.name == "host" or path.stem.endswith(("_commands", "_sequences"))


def check_includes():
    for path in tracked("vstring/*.cpp", "vstring/*.h", "vexil/*.cpp", "vexil/*.h"):
        top = path.relative_to(ROOT).parts[0]
        for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.M):
            parts = pathlib.PurePath(name).parts
            is_public = parts[0] == "vstring" and len(parts) == 2
            if is_public:
                continue
            if top == "vexil" and parts[0] != "vexil":
                report(path, f"a host includes {name}, which is no public header")
            if top != "vstring":
                continue
            if parts[0] == "data":
                continue
            if parts[0] != "vstring":
                report(path, f"the library includes {name}")
            elif parts[1] == "host" and not is_binding(path):
                report(path, f"an algorithm includes {name}: it must know no host")
            elif path.parent.name == "core" and parts[1] != "core":
                report(path, f"core/ includes {name}")
            elif parts[1] not in SHARED_ALGORITHMS | {"host", path.parent.name}:
                report(path, f"includes {name}, which is no shared algorithm")


def manifest():
    """(family, command, synopses) of every row."""
    rows = []
    for path in tracked("vstring/*.def"):
        family = None
        text = path.read_text()
        pattern = r'#define FAMILY "(\w+)"|COMMAND\((\w+),\s*\d+,\s*((?:"(?:[^"\\]|\\.)*"\s*)+),'
        for match in re.finditer(pattern, text):
            if match[1]:
                family = match[1]
            else:
                synopses = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', match[3]))
                rows.append((family, re.sub(r"^vstring_", "", match[2]), synopses))
    return rows


def check_documentation():
    examples = ""
    for path in tracked("docs/commands/*.md", "tests/transcripts/*.vt"):
        examples += "".join(re.findall(r"^> .*\n", path.read_text(), re.M))
    for family, command, synopses in manifest():
        page = ROOT / "docs" / "commands" / f"{family}.md"
        headings = re.findall(r"^## (.*)", page.read_text(), re.M) if page.exists() else []
        wanted = synopses.replace(") ", "), ")
        if not any(wanted in heading for heading in headings):
            report(page, f"no heading with the synopses of {command}: {wanted}")
        if not re.search(rf"\b{command}\(", examples):
            report(page, f"no example and no transcript calls {command}")


def check_text():
    for path in tracked("*.cpp", "*.h", "*.def", "*.py", "*.sh", "dev", "*.txt", "*.vx"):
        lines = path.read_text(errors="replace").splitlines()
        if path.suffix in {".cpp", ".h"} and len(lines) > MAX_LINES and "data" not in path.parts:
            report(path, f"{len(lines)} lines, more than {MAX_LINES}")
        for number, line in enumerate(lines, 1):
            if len(line) > 100 and path.suffix in {".cpp", ".h"}:
                report(path, f"line {number} is longer than 100 columns")
            if re.search(r"\b(TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK)\b", line):
                report(path, f"line {number} leaves something for later")


def count_lines(*folders):
    files = [path for path in tracked(*folders) if path.suffix in CODE_ENDINGS]
    return sum(1 for path in files for line in path.read_text(errors="replace").splitlines()
               if line.strip())


def check_ratio():
    code = count_lines("vstring", "include", "vexil")
    tests = count_lines("tests", "fuzz")
    print(f"tests to code, in non-blank lines: {tests} / {code} = {tests / code:.2f}")
    if tests > MAX_RATIO * code:
        problems.append(f"more than {MAX_RATIO} lines of tests for a line of code")


check_includes()
check_documentation()
check_text()
check_ratio()
print(*problems, sep="\n")
print(f"{len(manifest())} commands checked, {len(problems)} problems")
sys.exit(1 if problems else 0)
