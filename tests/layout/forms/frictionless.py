"""Structure of a Data Package, according to version 2 of the standard."""
import re

TYPES = {"string", "number", "integer", "boolean", "object", "array", "list", "datetime", "date", "time", "year",
         "yearmonth", "duration", "geopoint", "geojson", "any"}
PATH = re.compile(r"(?=[^./~])(?!file:)(?!.*\.\./)(?!.*\\)(?!.*://)[^\x00-\x1f]+\Z")
NAME = re.compile(r"[-a-z0-9._]+\Z")
CONSTRAINTS = {"integer": {"required", "minimum", "maximum"}, "number": {"required", "minimum", "maximum"},
               "string": {"required", "maxLength"}, "date": {"required"}, "datetime": {"required"},
               "any": {"required"}}


class Checker:
    """Collects the errors in a package."""

    def __init__(self, package):
        self.package = package
        self.violations = []

    def expect(self, condition, place, message):
        if not condition:
            self.violations.append(f"{place}: {message}")

    def check(self):
        package = self.package
        profile = "https://datapackage.org/profiles/2.0/datapackage.json"
        self.expect(package.get("$schema") == profile, "package", "profile")
        self.expect(set(package) <= {"$schema", "title", "description", "resources"}, "package", "members")
        resources = package.get("resources", [])
        self.expect(resources, "package", "has no resource")
        names = [resource.get("name") for resource in resources]
        self.expect(len(set(names)) == len(names), "package", "two resources have one name")
        for resource in resources:
            self.resource(resource)
        return self.violations

    def resource(self, resource):
        place = str(resource.get("name"))
        self.expect(NAME.match(place), place, "name")
        self.expect(PATH.match(resource.get("path", "")), place, "path")
        self.expect(resource.get("type") == "table", place, "type")
        schema = resource.get("schema", {})
        self.expect(set(schema) <= {"$schema", "fields", "primaryKey", "foreignKeys"}, place, "members of the schema")
        fields = schema.get("fields", [])
        self.expect(fields, place, "has no field")
        names = [field.get("name") for field in fields]
        self.expect(all(names) and len(set(names)) == len(names), place, "names of fields")
        for field in fields:
            self.field(field, f"{place}/{field.get('name')}")
        self.keys(schema, names, place)

    def keys(self, schema, names, place):
        if "primaryKey" in schema:
            key = schema["primaryKey"]
            self.expect(isinstance(key, list) and key and set(key) <= set(names), place, "primaryKey")
        for key in schema.get("foreignKeys", []):
            self.expect(set(key["fields"]) <= set(names), place, "foreignKeys")
            found = [other for other in self.package["resources"] if other["name"] == key["reference"]["resource"]]
            self.expect(len(found) == 1, place, "reference to no resource")
            self.expect(found and found[0]["schema"].get("primaryKey") == key["reference"]["fields"], place,
                        "reference to no key")

    def field(self, field, place):
        known = {"name", "type", "format", "title", "description", "constraints", "categories", "categoriesOrdered",
                 "missingValues", "valueLabels"}
        self.expect(set(field) <= known, place, "members")
        kind = field.get("type")
        self.expect(kind in TYPES, place, "type")
        constraints = field.get("constraints", {"required": True})
        self.expect(constraints and set(constraints) <= CONSTRAINTS.get(kind, set()), place, "constraints")
        if "format" in field:
            self.expect(kind == "date" and re.match(r"(%[Ymd]|[-/. ])+\Z", field["format"]), place, "format")
        if "categories" in field:
            self.categories(field, kind, place)
        self.expect("categories" in field or "categoriesOrdered" not in field, place, "order of no categories")
        self.missing(field, place)

    def categories(self, field, kind, place):
        categories = field["categories"]
        self.expect(kind in ("string", "integer"), place, "categories of another type")
        self.expect(categories and all(set(entry) <= {"value", "label"} for entry in categories), place, "categories")
        wanted = int if kind == "integer" else str
        values = [entry["value"] for entry in categories]
        self.expect(all(isinstance(value, wanted) for value in values), place, "type of a category")
        self.expect(len(set(values)) == len(values), place, "a category twice")
        missing = {entry["value"] for entry in field.get("missingValues", [])}
        self.expect(not missing & {str(value) for value in values if value != ""}, place, "category that is missing")

    def missing(self, field, place):
        entries = field.get("missingValues", [{"value": "", "label": ""}])
        self.expect(all(set(entry) == {"value", "label"} for entry in entries), place, "missingValues")
        self.expect(all(isinstance(text, str) for entry in entries for text in entry.values()), place,
                    "missingValues are texts")
        values = [entry["value"] for entry in entries]
        self.expect("" in values and len(set(values)) == len(values), place, "missingValues: blank, or one twice")


def violations(document):
    return Checker(document).check()
