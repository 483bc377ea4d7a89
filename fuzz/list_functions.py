#!/usr/bin/env python3
"""Lists every exported function for the harness, from the headers that declare them.

    list_functions.py PROJECT > functions.inc

One line a function: its name, a pointer to it (cast, as names may be overloaded) and the names of its arguments, which tell
the harness what to pass. Fails where it cannot read a declaration: a function must not slip through.
"""
import re
import sys
from pathlib import Path

project = Path(sys.argv[1])
public = sorted((project / "include/statpower").glob("*.h"))
families = ("anova", "core", "correlation", "means", "proportions", "regression")
internal = sorted(h for family in families for h in (project / family).rglob("*.h"))
common = [project / "include/orvcommon/dist_fun.h", project / "include/orvcommon/mv.h"]

DECLARATION = re.compile(r"(?:STATPOWER_API|static)\s+([\w:<>, ]+?[\s*&]+)(\w+)\(([^;{}]*?)\)\s*(?:noexcept)?\s*;")
NAMESPACE = re.compile(r"namespace (\w+) \{|\}  // namespace (\w+)|class \w+_API (\w+)|^\};", re.M)


def arguments(text):
    """Types and names of the arguments; the type where there is no name."""
    types, names = [], []
    for argument in re.split(r",\s*(?![^<]*>)", " ".join(text.split())) if text.strip() else []:
        kind, name = re.fullmatch(r"(.*?[\s*&])?(\w+)", argument).groups()
        if kind is None:  # unnamed
            kind, name = argument, "unused"
        types.append(kind.strip())
        names.append(name)
    return types, names


def scope(text, position):
    """The namespaces and the class around a position."""
    stack = []
    for m in NAMESPACE.finditer(text, 0, position):
        opened, closed, of_class = m.groups()
        if opened or of_class:
            stack.append(opened or of_class)
        elif stack:
            stack.pop()
    return "".join(name + "::" for name in stack)


lines, includes = [], []
for header in public + internal + common:
    text = re.sub(r"//[^\n]*", lambda m: m.group() if "}  " + m.group() in source else "", source := header.read_text())
    found = list(DECLARATION.finditer(text)) if header not in internal or "STATPOWER_API" in text else []
    exported = text.count("STATPOWER_API ") - text.count("extern STATPOWER_API const")
    if header not in common and "define STATPOWER_API" not in text and len(found) < exported:
        sys.exit(f"{header}: {exported} exported names, {len(found)} declarations read")
    found = [m for m in found if header in common or m.group().startswith("STATPOWER_API")]
    if found:
        includes.append(header.relative_to(project / "include" if header in public + common else project))
    for m in found:
        types, names = arguments(m.group(3))
        pointer = f"static_cast<{m.group(1).strip()} (*)({', '.join(types)})>(&{scope(text, m.start())}{m.group(2)})"
        lines.append(f'FUNCTION("{m.group(2)}", ({pointer}), "{" ".join(names)}")')
if len(lines) < 250:
    sys.exit(f"only {len(lines)} functions found")
print("#ifdef FUNCTION")
print("\n".join(lines))
print("#else")
for header in includes:
    print(f'#include "{header}"')
print("#endif")
