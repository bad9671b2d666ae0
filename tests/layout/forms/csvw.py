"""Structure of CSV on the Web metadata, according to the W3C Recommendation "Metadata Vocabulary for Tabular Data"."""
import re

PREFIXES = {"dc", "rdfs", "schema"}  # prefixes of the standard that are written
TEXTS = {"string", "normalizedString", "token", "language", "Name", "NMTOKEN", "anyURI", "xml", "html", "json"}
NUMBERS = {"integer", "decimal", "double", "float", "number", "long", "int", "short", "byte"}
DATES = {"date", "datetime", "dateTime", "time"}
DATE_FORMAT = re.compile(r"(yyyy|MM|M|dd|d|[-/. ])+\Z")
TAG = re.compile(r"[a-zA-Z]{2,3}(-[a-zA-Z0-9]{1,8})*\Z")
NAME = re.compile(r"(?!_)(?:[A-Za-z0-9_]|%[0-9A-F]{2})+(?:\.(?:[A-Za-z0-9_]|%[0-9A-F]{2})+)*\Z")
INHERITED = {"null", "lang", "textDirection", "separator", "ordered", "default", "datatype", "aboutUrl", "propertyUrl",
             "valueUrl", "required"}


class Checker:
    """Collects the errors in a table group."""

    def __init__(self, group):
        self.group = group
        self.violations = []

    def expect(self, condition, place, message):
        if not condition:
            self.violations.append(f"{place}: {message}")
        return condition

    def check(self):
        group = self.group
        self.expect(group.get("@context") == "http://www.w3.org/ns/csvw", "group", "no context")
        self.expect(group.get("@type") == "TableGroup", "group", "@type")
        self.members(group, {"@context", "@type", "tables"}, "group")
        tables = group.get("tables")
        if not self.expect(isinstance(tables, list) and tables, "group", "has no table"):
            return self.violations
        urls = [table.get("url") for table in tables]
        self.expect(len(set(urls)) == len(urls), "group", "two tables have one url")
        for table in tables:
            self.table(table)
        return self.violations

    def members(self, value, known, place):
        for key, member in value.items():
            if key in known:
                continue
            if self.expect(":" in key, place, f"unknown property {key}"):
                self.common(key, member, place)

    def common(self, key, value, place):
        self.expect(key.split(":")[0] in PREFIXES, place, f"unknown prefix of {key}")
        self.common_value(value, f"{place}/{key}")

    def common_value(self, value, place):
        if isinstance(value, list):
            for element in value:
                self.common_value(element, place)
        elif isinstance(value, dict) and "@value" in value:
            self.expect(set(value) <= {"@value", "@language", "@type"}, place, "more beside @value")
            self.expect(isinstance(value["@value"], (str, int, float, bool)), place, "@value is no literal")
            self.expect("@language" not in value or TAG.match(value["@language"]), place, "@language is no tag")
        elif isinstance(value, dict):
            self.expect("@language" not in value, place, "@language without @value")
            kind = value.get("@type", "schema:Thing")
            self.expect(":" in kind and kind.split(":")[0] in PREFIXES, place, "@type")
            for key, member in value.items():
                if key not in ("@type", "@id"):
                    self.expect(":" in key, place, f"{key} has no prefix")
                    self.common(key, member, place)
        else:
            self.expect(isinstance(value, (str, int, float, bool)), place, "is no value")

    def table(self, table):
        place = str(table.get("url"))
        self.expect(table.get("@type") == "Table", place, "@type")
        self.expect(re.match(r"[A-Za-z0-9_][A-Za-z0-9_-]*\.csv\Z", place), place, "url")
        self.members(table, {"@type", "url", "tableSchema"}, place)
        schema = table.get("tableSchema", {})
        self.members(schema, {"columns", "primaryKey", "foreignKeys"}, place)
        columns = schema.get("columns", [])
        names = [column.get("name") for column in columns]
        self.expect(len(set(names)) == len(names), place, "two columns have one name")
        for column in columns:
            self.column(column, f"{place}/{column.get('name')}")
        self.keys(schema, names, place)

    def keys(self, schema, names, place):
        if "primaryKey" in schema:
            key = schema["primaryKey"]
            self.expect(key and set(key) <= set(names) and len(set(key)) == len(key), place, "primaryKey")
        for key in schema.get("foreignKeys", []):
            self.expect(set(key) == {"columnReference", "reference"}, place, "members of a foreign key")
            self.expect(set(key["columnReference"]) <= set(names), place, "columnReference")
            reference = key["reference"]
            self.expect(set(reference) == {"resource", "columnReference"}, place, "members of a reference")
            found = [table for table in self.group["tables"] if table["url"] == reference["resource"]]
            if self.expect(len(found) == 1, place, "reference to no table"):
                target = found[0]["tableSchema"]
                self.expect(target.get("primaryKey") == reference["columnReference"], place, "reference to no key")
                self.expect(len(reference["columnReference"]) == len(key["columnReference"]), place, "length of a key")

    def column(self, column, place):
        self.members(column, {"name", "titles"} | INHERITED, place)
        self.expect(NAME.match(column.get("name", "")), place, "name is no variable of a URI template")
        self.titles(column.get("titles"), place)
        self.expect(column.get("required", True) is True, place, "required")
        null = column.get("null", [""])
        null = null if isinstance(null, list) else []
        self.expect(all(isinstance(code, str) for code in null), place, "null")
        self.expect("" in null and len(set(null)) == len(null), place, "null without the empty cell, or a code twice")
        self.datatype(column.get("datatype", {}), place)

    def titles(self, titles, place):
        if isinstance(titles, dict):
            self.expect(all(TAG.match(tag) for tag in titles), place, "titles of no language")
            for value in titles.values():
                self.texts(value, place)
        else:
            self.texts(titles, place)

    def texts(self, value, place):
        texts = value if isinstance(value, list) else [value]
        self.expect(texts and all(isinstance(text, str) for text in texts), place, "titles are no texts")

    def datatype(self, datatype, place):
        base = datatype.get("base")
        self.expect(base in TEXTS | NUMBERS | DATES, place, f"datatype {base}")
        self.expect(set(datatype) <= {"base", "format", "maxLength", "minimum", "maximum"}, place, "members of datatype")
        if "maxLength" in datatype:
            self.expect(base in TEXTS and datatype["maxLength"] > 0, place, "maxLength")
        if "format" in datatype:
            self.expect(base in DATES and DATE_FORMAT.match(datatype["format"]), place, "format")
        for key in ("minimum", "maximum"):
            if key in datatype:
                pattern = r"-?[0-9]+\Z" if base == "integer" else r"-?[0-9]+(\.[0-9]+)?\Z"
                self.expect(base in NUMBERS and re.match(pattern, datatype[key]), place, key)


def violations(document):
    return Checker(document).check()
