#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Validates every JSON data file under the given folders against the schema of its kind,
and every ```jsonc example of the Markdown files there.

usage: check_schemas.py SCHEMADIR FOLDER...

The kind of a file is the schema whose top-level keys it shares most of. Line comments are
stripped first, as the library's loader does. Files that exist to exercise the readers'
handling of broken input are listed in DELIBERATELY_BROKEN and skipped.
"""
import json
import os
import sys

from jsonschema import Draft202012Validator

KINDS = ("loudspeaker-descriptor", "rigging-descriptor", "controller-setup")

# Test inputs that are wrong on purpose (relative to the folder given on the command line).
DELIBERATELY_BROKEN = {
    "data/controller/invalid.json",          # not JSON
    "data/controller/odd_keys.json",         # values of the wrong kind
    "data/loudspeaker/wrongtypes.json",      # values of the wrong kind
    "data/rigging/broken.json",              # not JSON
    "data/rigging/hostile.json",             # values of the wrong kind
    "data/rigging/full.json",                # a length written as text
    "data/loudspeaker/unknownshape.json",    # a cabinet shape no generator knows
    "data/rigging/unknownshape.json",        # a cabinet shape spelt in lower case
}


def strip_line_comments(text):
    """Removes // comments that stand outside strings."""
    out = []
    in_string = escaped = False
    i = 0
    while i < len(text):
        c = text[i]
        if in_string:
            out.append(c)
            if escaped:
                escaped = False
            elif c == "\\":
                escaped = True
            elif c == '"':
                in_string = False
        elif c == '"':
            in_string = True
            out.append(c)
        elif text.startswith("//", i):
            while i < len(text) and text[i] != "\n":
                i += 1
            continue
        else:
            out.append(c)
        i += 1
    return "".join(out)


def documents(path):
    """The JSON documents of a data file, or the ```jsonc blocks of a Markdown file."""
    with open(path, encoding="utf-8") as f:
        text = f.read()
    if path.endswith(".json"):
        return [json.loads(strip_line_comments(text))]
    blocks = text.split("```jsonc\n")[1:]
    return [json.loads(strip_line_comments(block.split("```")[0])) for block in blocks]


def main():
    schema_dir, folders = sys.argv[1], sys.argv[2:]
    validators = {}
    for kind in KINDS:
        with open(os.path.join(schema_dir, kind + ".schema.json"), encoding="utf-8") as f:
            schema = json.load(f)
        Draft202012Validator.check_schema(schema)
        validators[kind] = (Draft202012Validator(schema), set(schema["properties"]))

    failures = checked = 0
    for folder in folders:
        for root, _, files in os.walk(folder):
            for name in sorted(files):
                path = os.path.join(root, name)
                relative = os.path.relpath(path, folder).replace(os.sep, "/")
                if not name.endswith((".json", ".md")) or relative in DELIBERATELY_BROKEN:
                    continue
                for document in documents(path):
                    if not isinstance(document, dict):
                        continue
                    kind = max(KINDS, key=lambda k: len(validators[k][1] & set(document)))
                    if not validators[kind][1] & set(document):
                        continue  # no data file of the library (a prediction scene, say)
                    errors = sorted(validators[kind][0].iter_errors(document), key=lambda e: list(e.absolute_path))
                    checked += 1
                    for error in errors:
                        failures += 1
                        location = "/".join(str(p) for p in error.absolute_path)
                        print(f"{path}: {kind}: /{location}: {error.message}")
    print(f"{checked} files checked, {failures} problems")
    return 1 if failures or checked == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
