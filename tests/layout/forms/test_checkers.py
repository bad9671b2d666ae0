"""Tests of the checkers: for each rule, a document that breaks it is reported."""
import copy
import unittest

import csvw
import frictionless

GROUP = {"@context": "http://www.w3.org/ns/csvw", "@type": "TableGroup", "dc:title": {"@value": "T", "@language": "en"},
         "tables": [
             {"@type": "Table", "url": "A.csv", "tableSchema": {"columns": [
                 {"name": "ID", "titles": {"und": "ID", "en": ["I"]}, "datatype": {"base": "integer"}, "required": True},
                 {"name": "X%20", "titles": "X ", "datatype": {"base": "string", "maxLength": 2}, "null": ["", "9"],
                  "schema:valueReference": [{"@type": "schema:DefinedTermSet"}]}],
                 "primaryKey": ["ID"]}},
             {"@type": "Table", "url": "B.csv", "tableSchema": {"columns": [
                 {"name": "ID", "titles": "ID", "datatype": {"base": "integer", "minimum": "1"}}],
                 "foreignKeys": [{"columnReference": ["ID"],
                                  "reference": {"resource": "A.csv", "columnReference": ["ID"]}}]}}]}

PACKAGE = {"$schema": "https://datapackage.org/profiles/2.0/datapackage.json", "resources": [
    {"name": "a", "type": "table", "path": "A.csv", "schema": {"fields": [
        {"name": "ID", "type": "integer", "constraints": {"required": True},
         "categories": [{"value": 1, "label": "One"}],
         "missingValues": [{"value": "", "label": ""}, {"value": "9", "label": "N"}]}], "primaryKey": ["ID"]}},
    {"name": "b", "type": "table", "path": "B.csv", "schema": {"fields": [{"name": "ID", "type": "string"}],
     "foreignKeys": [{"fields": ["ID"], "reference": {"resource": "a", "fields": ["ID"]}}]}}]}


def changed(document, path, value):
    """A copy with another value at a path; None removes the value."""
    copied = copy.deepcopy(document)
    target = copied
    for step in path[:-1]:
        target = target[step]
    if value is None:
        del target[path[-1]]
    else:
        target[path[-1]] = value
    return copied


SCHEMA = ("tables", 0, "tableSchema")
COLUMN = (*SCHEMA, "columns", 1)
FIELD = ("resources", 0, "schema", "fields", 0)


class Checkers(unittest.TestCase):
    def test_right_documents_have_no_violation(self):
        self.assertEqual(csvw.violations(GROUP), [])
        self.assertEqual(frictionless.violations(PACKAGE), [])

    def test_csvw(self):
        for path, value in [
                (("@context",), None), (("@type",), "Table"), (("tables",), []), (("title",), "no prefix"),
                (("foaf:name",), "unknown prefix"), (("dc:title",), {"@value": "T", "@language": "no tag"}),
                (("dc:title",), {"en": "T"}), (("tables", 1, "url"), "A.csv"), (("tables", 0, "url"), "../A.csv"),
                ((*COLUMN, "name"), "ID"), ((*COLUMN, "name"), "_row"), ((*COLUMN, "name"), "a b"),
                ((*COLUMN, "titles"), None), ((*COLUMN, "titles"), {"no tag": "X"}), ((*COLUMN, "titles"), [1]),
                ((*COLUMN, "null"), ["9"]), ((*COLUMN, "null"), [""] * 2), ((*COLUMN, "null"), 9),
                ((*COLUMN, "datatype"), {"base": "text"}), ((*COLUMN, "datatype"), {"base": "integer", "maxLength": 1}),
                ((*COLUMN, "datatype"), {"base": "string", "minimum": "1"}),
                ((*COLUMN, "datatype"), {"base": "integer", "minimum": "1.5"}),
                ((*COLUMN, "datatype"), {"base": "date", "format": "YYYY"}),
                ((*COLUMN, "schema:valueReference"), {"@type": "DefinedTerm"}),
                ((*COLUMN, "schema:valueReference"), {"name": "x"}), ((*COLUMN, "width"), 5),
                ((*SCHEMA, "primaryKey"), ["Y"]), ((*SCHEMA, "primaryKey"), None),
                (("tables", 1, "tableSchema", "foreignKeys", 0, "columnReference"), ["Y"]),
                (("tables", 1, "tableSchema", "foreignKeys", 0, "reference", "resource"), "C.csv")]:
            with self.subTest(path=path, value=value):
                self.assertNotEqual(csvw.violations(changed(GROUP, path, value)), [])

    def test_frictionless(self):
        for path, value in [
                (("$schema",), "x"), (("resources",), []), (("resources", 1, "name"), "a"),
                (("resources", 0, "name"), "A b"), (("resources", 0, "path"), "../A.csv"),
                (("resources", 0, "path"), "/A.csv"), (("resources", 0, "schema", "fields"), []),
                ((*FIELD, "type"), "text"), ((*FIELD, "type"), "number"), ((*FIELD, "format"), "%Y"),
                ((*FIELD, "constraints"), {"maxLength": 1}), ((*FIELD, "categories", 0, "value"), "1"),
                ((*FIELD, "categories", 0, "value"), 9), ((*FIELD, "missingValues", 0, "value"), "8"),
                ((*FIELD, "missingValues", 1, "label"), None), ((*FIELD, "missingValues", 1, "value"), 9),
                ((*FIELD, "categories"), [{"value": 1}] * 2), (("resources", 0, "schema", "primaryKey"), ["Y"]),
                (("resources", 1, "schema", "foreignKeys", 0, "fields"), ["Y"]),
                (("resources", 1, "schema", "foreignKeys", 0, "reference", "resource"), "c")]:
            with self.subTest(path=path, value=value):
                self.assertNotEqual(frictionless.violations(changed(PACKAGE, path, value)), [])


if __name__ == "__main__":
    unittest.main()
