#!/usr/bin/env python3
"""Checks that the schema and the program accept the same host descriptions.

usage: schema_test.py PROGRAM SCHEMA DATA DESCRIPTION...

DATA is any data file. The test compares the schema and the program on each file DESCRIPTION and on
generated descriptions. The generated descriptions contain every member with every type of value,
control characters, links, numbers at the limits of 32-bit integers, and unknown members.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

VALUES = ["", "text", "25\n", "\x1f", "\x20", "\x7e", "\x7f", "\x9f", "\xa0", "\u2027",
          "\u2028", "\u2029", "\u202a", 0, -1, 1.5, True, False, None, [], [0], {}, {"x": ""}, {"x": 0}, [{}]]
LINKS = ["https://x/@0", "https://x", "http://x/@0", "https://@0/", "https://a@b/@0", "https://x:@0",
         "https://[::1]:80/?k=@0", "https://[::1/@0", "https://x:1:2/@0", "https://x/@0\n",
         "https://x/@0 ", "https://x/\u00e9@0", "https://x/@" + "0" * 1989,
         "https://x/@" + "0" * 1990]
BOUNDS = [2**31 - 1, 2**31, -(2**31), -(2**31) - 1]


class SchemaComparison:
    """Checks host descriptions with the schema and with the program, and compares the results."""

    def __init__(self, program, schema, data):
        self.program = program
        self.data = data
        self.properties = schema["properties"]
        self.feature_properties = schema["definitions"]["betaFeature"]["properties"]
        self.link_properties = schema["properties"]["links"]["properties"]
        jsonschema.Draft7Validator.check_schema(schema)
        self.validator = jsonschema.Draft7Validator(schema)
        self.folder = tempfile.TemporaryDirectory()
        self.counts = {True: 0, False: 0}

    def program_error(self, text):
        """Returns the program's error message, or "" if the program accepts the description."""
        path = pathlib.Path(self.folder.name) / "host.json"
        path.write_text(text, encoding="utf-8")
        run = subprocess.run(
            [self.program, "status", self.data, "--host", path, "--state", ":memory:"],
            capture_output=True, text=True, check=False)
        if run.returncode not in (0, 3):
            sys.exit(f"{self.program} exits with status {run.returncode} for {text}: {run.stderr}")
        return run.stderr

    def compare(self, text):
        """Exits with an error message if only one of the schema and the program accepts `text`."""
        error = self.program_error(text)
        is_valid = self.validator.is_valid(json.loads(text))
        if is_valid != (error == ""):
            sys.exit(f"{text}\nschema: {'valid' if is_valid else 'invalid'}\n"
                     f"program: {error or 'no error'}")
        self.counts[is_valid] += 1

    def compare_members(self):
        for name in self.properties:
            for value in VALUES + BOUNDS:
                self.compare(json.dumps({name: value}))
        for name in self.feature_properties:
            for value in VALUES + BOUNDS:
                self.compare(json.dumps({"betaFeatures": [{name: value}]}))
        for name in self.link_properties:
            for value in VALUES + LINKS:
                self.compare(json.dumps({"links": {name: value}}))

    def compare_known_members(self):
        """Exits with an error message if the program's errors do not list the schema's members."""
        for text, properties in [('{"?": 0}', self.properties),
                                 ('{"betaFeatures": [{"?": 0}]}', self.feature_properties),
                                 ('{"links": {"?": 0}}', self.link_properties)]:
            self.compare(text)
            known = re.findall(r'"([^"]*)"', self.program_error(text).split("known members:")[1])
            if set(known) != set(properties):
                sys.exit(f"known members: program: {known}, schema: {list(properties)}")


def read_description(path):
    """Returns the text of a file, or None if the file has an error that no schema can express.

    Such errors are invalid UTF-8, invalid JSON, unpaired surrogates, and duplicate members.
    """
    def unique(pairs):
        if len({name for name, _ in pairs}) != len(pairs):
            raise ValueError("duplicate member")
        return dict(pairs)
    try:
        text = path.read_bytes().decode("utf-8")
        value = json.loads(text, object_pairs_hook=unique)
        json.dumps(value, ensure_ascii=False).encode("utf-8")  # fails for unpaired surrogates
        return text
    except (ValueError, RecursionError):
        return None


def main():
    program, schema, data, *descriptions = sys.argv[1:]
    schema = json.loads(pathlib.Path(schema).read_text(encoding="utf-8"))
    comparison = SchemaComparison(program, schema, data)
    comparison.compare_members()
    comparison.compare_known_members()
    for path in map(pathlib.Path, descriptions):
        text = read_description(path)
        if text is not None:
            comparison.compare(text)
    counts = comparison.counts
    print(f"compared {counts[True]} valid and {counts[False]} invalid descriptions")


main()
