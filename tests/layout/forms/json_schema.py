"""Checks a JSON Schema of a layout: it is valid, accepts an example that is made from it, and rejects others."""
import jsonschema

Validator = jsonschema.Draft202012Validator
MOST_VALUES = 2000  # values in a document with too many records; the library takes long for larger ones


def example_of_alternative(alternative, base):
    if "const" in alternative:
        return alternative["const"]
    for bound in ("minimum", "maximum"):
        if bound in alternative:
            return alternative[bound]
    return example_of_type(alternative.get("type", base))


def example_of_type(kind):
    kind = kind[0] if isinstance(kind, list) else kind
    return {"integer": 0, "number": 0.5, "string": "", "null": None}.get(kind, "any")


def example_of_property(schema):
    for key in ("oneOf", "anyOf"):
        if key in schema:
            return example_of_alternative(schema[key][0], schema.get("type"))
    if "pattern" in schema and schema.get("type") == "string":
        return "2020-01-02T03:04:05"
    return example_of_type(schema.get("type"))


def example_of_record(definition):
    return {name: example_of_property(schema) for name, schema in definition["properties"].items()}


def definition_of(schema, name):
    return schema["$defs"][name]


def example(schema):
    """A document that the schema must accept: each record once, each column with its first value."""
    records = {f"#/$defs/{name}": example_of_record(definition) for name, definition in schema["$defs"].items()}
    if "$ref" in schema:
        return records[schema["$ref"]]
    return {name: records[member["$ref"]] if "$ref" in member else [records[member["items"]["$ref"]]]
            for name, member in schema["properties"].items()}


def with_record(good, member, name, record):
    return {**good, name: record if "$ref" in member else [record]}


def wrong_examples(schema):
    """Documents that the schema must reject, with the reason. One of several records of the same kind is enough,
    because the library takes long."""
    good = example(schema)
    yield {**good, "no column of this file": 1}, "another member"
    yield [good], "a list of cases"
    if "$ref" in schema:
        return
    reasons = {}
    for name, member in schema["properties"].items():
        definition = definition_of(schema, name)
        record = good[name] if "$ref" in member else good[name][0]
        if name in schema.get("required", []):
            reasons["no record"] = {key: value for key, value in good.items() if key != name}
        if member.get("maxItems", 0) * len(definition["properties"]) in range(1, MOST_VALUES):
            reasons["too many records"] = {**good, name: good[name] * (member["maxItems"] + 1)}
        if "minItems" in member:
            reasons["an empty list"] = {**good, name: []}
        for column in definition.get("required", [])[-1:]:
            bad = {key: value for key, value in record.items() if key != column}
            reasons["a record without an id"] = with_record(good, member, name, bad)
        for column, column_schema in definition["properties"].items():
            if column_schema.get("type") == "integer" or "oneOf" in column_schema:
                bad = {**record, column: "no such value"}
                reasons["a text for a number or code"] = with_record(good, member, name, bad)
    for reason, document in reasons.items():
        yield document, reason


def violations(document):
    found = []
    try:
        Validator.check_schema(document)
    except jsonschema.exceptions.SchemaError as error:
        return [f"is no schema: {error.message[:200]}"]
    validator = Validator(document)
    for error in validator.iter_errors(example(document)):
        found.append(f"refuses its example: {list(error.absolute_path)}: {error.message[:200]}")
    for wrong, reason in wrong_examples(document):
        if validator.is_valid(wrong):
            found.append(f"takes {reason}")
    return found
