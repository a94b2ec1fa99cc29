#!/usr/bin/env python3
"""Holds the schema of the host description against the program that reads descriptions: what the
one takes, the other takes as well.

usage: schema_test.py PROGRAM SCHEMA DATA DESCRIPTION...

DATA is any data file. Each DESCRIPTION is judged by both, and so are descriptions made from the
schema: every member with every kind of value, numbers around their bounds, unknown members.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

VALUES = ["", "text", 0, -1, 1.5, True, False, None, [], [0], {}, {"x": ""}, {"x": 0}, [{}]]
BOUNDS = [2**31 - 1, 2**31, -(2**31), -(2**31) - 1]


class Judges:
    """The schema and the program, asked about the same text."""

    def __init__(self, program, schema, data):
        self.program = program
        self.data = data
        self.properties = schema["properties"]
        self.feature_properties = schema["definitions"]["betaFeature"]["properties"]
        jsonschema.Draft7Validator.check_schema(schema)
        self.validator = jsonschema.Draft7Validator(schema)
        self.folder = tempfile.TemporaryDirectory()
        self.judged = {True: 0, False: 0}

    def complaint(self, text):
        """What the program says against a description, empty when it takes it."""
        path = pathlib.Path(self.folder.name) / "host.json"
        path.write_text(text, encoding="utf-8")
        run = subprocess.run(
            [self.program, "status", self.data, "--host", path, "--state", ":memory:"],
            capture_output=True, text=True, check=False)
        if run.returncode not in (0, 3):
            sys.exit(f"{self.program} ends with {run.returncode} on {text}: {run.stderr}")
        return run.stderr

    def agree(self, text):
        value = json.loads(text)
        complaint = self.complaint(text)
        allowed = self.validator.is_valid(value)
        if allowed != (complaint == ""):
            sys.exit(f"{text}\nschema: {'valid' if allowed else 'not valid'}\n"
                     f"program: {complaint or 'takes it'}")
        self.judged[allowed] += 1

    def agree_on_members(self):
        for name in self.properties:
            for value in VALUES + BOUNDS:
                self.agree(json.dumps({name: value}))
        for name in self.feature_properties:
            for value in VALUES + BOUNDS:
                self.agree(json.dumps({"betaFeatures": [{name: value}]}))

    def agree_on_names(self):
        """The names that the program offers for an unknown one are those of the schema."""
        for text, properties in [('{"?": 0}', self.properties),
                                 ('{"betaFeatures": [{"?": 0}]}', self.feature_properties)]:
            self.agree(text)
            offered = re.findall(r'"([^"]*)"', self.complaint(text).split("known members:")[1])
            if set(offered) != set(properties):
                sys.exit(f"the program knows {offered}, the schema {list(properties)}")


def readable(path):
    """A description's text; none for what only the reader of JSON can refuse."""
    def unique(pairs):
        if len({name for name, _ in pairs}) != len(pairs):
            raise ValueError("a member stands there twice")
        return dict(pairs)
    try:
        text = path.read_bytes().decode("utf-8")
        value = json.loads(text, object_pairs_hook=unique)
        json.dumps(value, ensure_ascii=False).encode("utf-8")  # no half characters
        return text
    except (ValueError, RecursionError):
        return None


def main():
    program, schema, data, *descriptions = sys.argv[1:]
    judges = Judges(program, json.loads(pathlib.Path(schema).read_text(encoding="utf-8")), data)
    judges.agree_on_members()
    judges.agree_on_names()
    for path in map(pathlib.Path, descriptions):
        text = readable(path)
        if text is not None:
            judges.agree(text)
    print(f"agree on {judges.judged[True]} that are valid, {judges.judged[False]} that are not")


main()
