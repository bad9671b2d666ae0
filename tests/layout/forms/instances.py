"""Cases of a survey that its JSON Schema accepts, and others that it rejects.

Usage: instances.py EXPORT_LAYOUT
Ends with status 77, a skip, where the library jsonschema is not installed.
"""
import json
import pathlib
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not installed")
    sys.exit(77)

SURVEY = """[Dictionary]
Version=CSPro 7.7
Label=Survey
Name=SURVEY
RecordTypeStart=1
RecordTypeLen=1
Positions=Absolute

[Level]
Label=Household
Name=HOUSEHOLD

[IdItems]

[Item]
Label=House
Name=HOUSE
Start=2
Len=3

[Record]
Label=Housing
Name=HOUSING
RecordTypeValue='H'
RecordLen=30

[Item]
Label=Rent
Name=RENT
Start=5
Len=6
Decimal=2

[Item]
Label=Serial number
Name=SERIAL
Start=11
Len=18

[Record]
Label=Person
Name=PERSON
RecordTypeValue='P'
MaxRecords=2
RecordLen=20

[Item]
Label=Age
Name=AGE
Start=5
Len=3

[ValueSet]
Label=Age
Name=AGE_VS1
Value=0:110;Years
Value=998;Refused
Value=999;Unknown
Name=MISSING,Special
Value='   ';No person
Name=NOTAPPL,Special

[Item]
Label=Sex
Name=SEX
Start=8
Len=1
DataType=Alpha

[ValueSet]
Label=Sex
Name=SEX_VS1
Value='M';Male
Value='F';Female

[Item]
Label=Child
Name=CHILD
Start=9
Len=2
Occurrences=2

[Item]
Label=Remark
Name=REMARK
Start=13
Len=4
DataType=Alpha

[Record]
Label=Death
Name=DEATH
RecordTypeValue='D'
Required=No
MaxRecords=5
RecordLen=20
"""


def case(housing=None, person=None, **others):
    return {"HOUSING": {"HOUSE": 1, **(housing or {})}, "PERSON": [{"HOUSE": 1, **(person or {})}], **others}


VALID = [
    case(),
    case(housing={"RENT": 120.5, "SERIAL": 7}),
    case(housing={"SERIAL": "123456789012345678"}),
    case(person={"AGE": 0}), case(person={"AGE": 110}), case(person={"AGE": 998}), case(person={"AGE": 999}),
    case(person={"AGE": None}),
    case(person={"SEX": "M"}),
    case(person={"CHILD_1": 1, "CHILD_2": 99, "REMARK": "äöü€"}),
    case(PERSON=[{"HOUSE": 1}] * 2),
    case(DEATH=[]), case(DEATH=[{"HOUSE": 1}] * 5),
]
INVALID = [
    {}, [], None, case(FURTHER=[]),
    {"HOUSING": {"HOUSE": 1}},
    {"HOUSING": [{"HOUSE": 1}], "PERSON": [{"HOUSE": 1}]},
    case(housing={"HOUSE": "1"}), case(housing={"HOUSE": None}), case(housing={"HOUSE": 1.5}),
    case(housing={"FURTHER": 1}), case(housing={"RENT": "120.50"}), case(housing={"SERIAL": "twelve"}),
    case(person={"AGE": 111}), case(person={"AGE": -1}), case(person={"AGE": 997}), case(person={"AGE": 1.5}),
    case(person={"AGE": "1"}),
    case(person={"SEX": "X"}), case(person={"SEX": None}), case(person={"SEX": 1}),
    case(person={"CHILD": 1}), case(person={"CHILD_3": 1}), case(person={"REMARK": "abcde"}),
    case(PERSON=[]), case(PERSON=[{"HOUSE": 1}] * 3), case(PERSON=[{}]),
    case(DEATH=[{"HOUSE": 1}] * 6), case(DEATH=[{}]),
]


def main():
    with tempfile.TemporaryDirectory() as directory:
        file = pathlib.Path(directory) / "survey.dcf"
        file.write_text(SURVEY, encoding="utf-8")
        run = subprocess.run([sys.argv[1], "json-schema", str(file)], capture_output=True, check=True)
    schema = json.loads(run.stdout)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    wrong = [f"refused: {document}" for document in VALID if not validator.is_valid(document)]
    wrong += [f"taken: {document}" for document in INVALID if validator.is_valid(document)]
    print("\n".join(wrong + [f"{len(VALID) + len(INVALID)} cases, {len(wrong)} wrong"]))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
