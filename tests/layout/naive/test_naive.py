"""Tests of the naive readers: python3 -m unittest in this directory."""

import json
import pathlib
import unittest

import compare
import generate
import naive
from naive_common import Refused
from naive_text import logical_lines, note_piece, to_int, to_labels, to_ranges, to_token
from twins import normalised

HERE = pathlib.Path(__file__).parent

TEXT_BEGIN = "[Dictionary]\nVersion=CSPro 7.7\nName=D\n"


def layout_of(text):
    data = text if isinstance(text, bytes) else text.encode()
    return naive.read(data, "f")


def demo(name):
    return naive.read((HERE / "data" / name).read_bytes(), name)


def only_item(**members):
    """A JSON dictionary with one item."""
    item = {"name": "I", "contentType": "numeric", "length": 1, **members}
    records = [{"name": "R", "items": [item]}]
    layout = {"name": "D", "version": 8.0, "levels": [{"name": "L", "ids": {"items": []}, "records": records}]}
    return layout_of(json.dumps(layout))


class DemoDictionary(unittest.TestCase):
    def setUp(self):
        self.text = demo("demo.dcf")
        self.json = demo("demo8.dcf")

    def test_bothFormsGiveTheSameLayout(self):
        self.assertEqual([], list(compare.differences(normalised(self.text), normalised(self.json))))

    def test_nothingIsLeftOver(self):
        self.assertNotIn("extras", self.text)
        self.assertNotIn("extras", self.json)

    def test_columnsOfTheJsonFormAreLaidOut(self):
        items = self.json["levels"][0]["records"][0]["items"]
        self.assertEqual([5, 9, 11, 21], [item["start"] for item in items])
        self.assertEqual([None, "BIRTH", None, None], [item.get("subitemOf") for item in items])

    def test_keysStandInTheOrderOfTheContract(self):
        item = self.text["levels"][0]["records"][0]["items"][2]
        self.assertEqual(
            ["name", "labels", "type", "start", "length", "occurrences", "occurrenceLabels", "decimals", "decimalMark"],
            list(item),
        )

    def test_valuesAreAsWritten(self):
        values = self.text["levels"][0]["records"][0]["items"][1]["valueSets"][0]["values"]
        self.assertEqual(
            [[{"from": "1", "to": "12"}], [{"from": "99"}], [{"from": "  "}]], [v["ranges"] for v in values]
        )
        self.assertEqual([None, "missing", "notApplicable"], [v.get("special") for v in values])
        self.assertEqual([{"language": "EN", "text": "Month"}, {"language": "FR", "text": "Mois"}], values[0]["labels"])


class TextForm(unittest.TestCase):
    def test_lineIsContinuedWhenItsLastCharacterIsAmpersand(self):
        lines = list(logical_lines("ab&\n c\nd& \n&\nx&"))
        self.assertEqual([(1, "ab c"), (3, "d&"), (4, "&"), (5, "x")], lines)

    def test_codesAreCut(self):
        cases = {
            "1": [("1", "")],
            "1:5": [("1", "5")],
            "1 : 3": [("1", ""), ("3", "")],
            "'A ' 'B'": [("A ", ""), ("B", "")],
            "'A':'C'": [("A", "C")],
            "''": [],
            "'A": [("A", "")],
            "212:213 216": [("212", "213"), ("216", "")],
            '"it\'s"': [("it's", "")],
            "1: 2": [("1", ""), ("2", "")],
            "1:2:3": [("1", "2:3")],
            "": [],
        }
        for text, ranges in cases.items():
            self.assertEqual(ranges, to_ranges(text), text)

    def test_labelEndsCodesEvenInsideQuotes(self):
        layout = layout_of(TEXT_BEGIN + "[Level]\n[IdItems]\n[Item]\n[ValueSet]\nName=V\nValue='a;b';c\n")
        value = layout["levels"][0]["ids"][0]["valueSets"][0]["values"][0]
        self.assertEqual({"labels": [{"text": "b';c"}], "ranges": [{"from": "a"}]}, value)

    def test_notesArePutTogether(self):
        self.assertEqual("a\nb ", note_piece("a\\r\\nb"))
        self.assertEqual(" b ", note_piece("~b"))
        self.assertEqual("a\n", note_piece("a\\r\\n"))
        self.assertEqual("", note_piece(""))

    def test_numbersAreLeadingDigits(self):
        self.assertEqual([12, 0, -3, 4, 7], [to_int(text) for text in ("12abc", "abc", "-3", "+4", "007")])

    def test_tokensEndAtBlankOrComma(self):
        self.assertEqual(
            ["A b", "A", "MISSING", "", "x"], [to_token(t) for t in ("'A b' c", "A b", "MISSING,Special", "", " ,x")]
        )

    def test_everyBarPartsALabel(self):
        self.assertEqual(["a", "", " b"], [part.text for part in to_labels("a|| b")])

    def test_repeatedKeyIsKept(self):
        layout = layout_of(TEXT_BEGIN + "Name=E\nVersion=CSPro 8\n")
        self.assertEqual("D", layout["name"])
        self.assertEqual("8", layout["formatVersion"])
        self.assertEqual(
            [
                {"path": "", "key": "repeated Version", "value": "CSPro 7.7", "line": 2},
                {"path": "", "key": "repeated Name", "value": "E", "line": 4},
            ],
            layout["extras"],
        )

    def test_linkedValueSetWithoutValuesHasThoseOfTheFullest(self):
        text = (
            TEXT_BEGIN
            + "[Level]\n[IdItems]\n[Item]\n[ValueSet]\nName=A\nLink=1\n[ValueSet]\nName=B\nLink=1\nValue=1;x\n"
        )
        sets = layout_of(text)["levels"][0]["ids"][0]["valueSets"]
        self.assertEqual(sets[1]["values"], sets[0]["values"])
        self.assertEqual("1", sets[0]["link"])

    def test_encodings(self):
        text = TEXT_BEGIN + "Label=é\n"
        for data, encoding in (
            (text.encode("utf-8"), "utf-8"),
            (text.encode("cp1252"), "windows-1252"),
            (("\ufeff" + text).encode("utf-16le"), "utf-16le"),
            (("\ufeff" + text).encode("utf-16be"), "utf-16be"),
        ):
            layout = layout_of(data)
            self.assertEqual((encoding, [{"text": "é"}]), (layout["encoding"], layout["labels"]))

    def test_invalidBytesBecomeOneMarkForEachPart(self):
        data = b"\xef\xbb\xbf" + TEXT_BEGIN.encode() + b"Label=a\xe2\x82b\xff\xffc\n"
        self.assertEqual("a\ufffdb\ufffd\ufffdc", layout_of(data)["labels"][0]["text"])

    def test_fileWithoutDictionarySectionIsRefused(self):
        for text in ("[Level]\n", "x\n[Dictionary]\n", "", "a,b\n"):
            self.assertRaises(Refused, layout_of, text)


class JsonForm(unittest.TestCase):
    def item(self, **members):
        return only_item(**members)["levels"][0]["records"][0]["items"][0]

    def test_textIsTurnedIntoNumber(self):
        self.assertEqual(3, self.item(length="3")["length"])

    def test_wrongTypeIsKept(self):
        self.assertEqual([{"path": "L/R/I", "key": "length", "value": "[1]"}], only_item(length=[1])["extras"])

    def test_nullIsAsAbsent(self):
        self.assertNotIn("extras", only_item(capture=None, note=None))

    def test_firstOfTwoKeysCounts(self):
        layout = layout_of('{"name": "A", "name": "B"}')
        self.assertEqual("A", layout["name"])
        self.assertEqual([{"path": "", "key": "repeated name", "value": '"B"'}], layout["extras"])

    def test_zeroFillOfTheDictionaryIsTheDefaultOfNumericItems(self):
        text = (
            '{"defaults": {"zeroFill": true}, "levels": [{"ids": {"items": [{"contentType": "numeric"}, '
            '{"contentType": "alpha"}, {"contentType": "numeric", "zeroFill": false}]}}]}'
        )
        ids = layout_of(text)["levels"][0]["ids"]
        self.assertEqual([True, False, False], [item.get("zeroFill", False) for item in ids])

    def test_commentsAreSkipped(self):
        self.assertEqual("A", layout_of('{ // c\n "name" /* x\n */ : "A" } // end')["name"])

    def test_surrogates(self):
        self.assertEqual("😀\ufffd", layout_of('{"name": "\\ud83d\\ude00\\ud83d"}')["name"])

    def test_pairs(self):
        pairs = [{"value": "1"}, {"range": ["1", 2]}, {"range": ["1"]}, {"value": 1, "range": ["a", "b"]}, {}]
        layout = only_item(valueSets=[{"name": "V", "values": [{"pairs": pairs}]}])
        value = layout["levels"][0]["records"][0]["items"][0]["valueSets"][0]["values"][0]
        self.assertEqual([{"from": "1"}, {"from": "1", "to": "2"}, {"from": "1"}], value["ranges"])
        self.assertEqual(["pairs", "pairs.range", "pairs"], [extra["key"] for extra in layout["extras"]])
        self.assertEqual({"L/R/I/V/#1"}, {extra["path"] for extra in layout["extras"]})

    def test_brokenDocumentIsRefused(self):
        for text in ("{", '{"a": 1,}', '{"a": 01}', '{"a": 1} x', '{"a": "\n"}', '{"a": 1 /*'):
            self.assertRaises(Refused, layout_of, text)


class Generator(unittest.TestCase):
    def test_sameNumberMakesTheSameCase(self):
        one, other = generate.Case(7, 3), generate.Case(7, 3)
        self.assertEqual((one.text, one.json), (other.text, other.json))

    def test_twinsGiveTheSameLayout(self):
        twins = [case for case in (generate.Case(2, number) for number in range(120)) if case.are_twins]
        self.assertGreater(len(twins), 20)
        for case in twins:
            text, twin = naive.read(case.text, "f"), naive.read(case.json, "f")
            self.assertEqual([], list(compare.differences(normalised(text), normalised(twin))))
            self.assertEqual((None, None), (text.get("extras"), twin.get("extras")))

    def test_mutationIsTheSameForTheSameNumber(self):
        data = (HERE / "data" / "demo.dcf").read_bytes()
        self.assertEqual(generate.mutated(data, 1, 2), generate.mutated(data, 1, 2))
        self.assertEqual(200, sum(generate.mutated(data, 1, number)[:12] == data[:12] for number in range(200)))
        self.assertGreater(sum(generate.mutated(data, 1, number) != data for number in range(200)), 150)

    def test_kindThatIsSwitchedOffDoesNotCome(self):
        for number in range(60):
            case = generate.Case(3, number, ("comments", "changedBytes"))
            self.assertTrue({"comments", "changedBytes"}.isdisjoint(case.text_kinds))

    def test_everyKindComes(self):
        kinds = set()
        for number in range(300):
            case = generate.Case(4, number)
            kinds |= case.text_kinds | case.json_kinds
        self.assertEqual(set(generate.KINDS), kinds)


class Comparison(unittest.TestCase):
    def test_differencesAreFoundByPath(self):
        one = {"a": [{"name": "X", "b": 1}], "c": 2}
        other = {"c": 2, "a": [{"name": "X", "b": 3}]}
        self.assertEqual(
            [".a[X].b: naive 1, tool 3", ": keys in the order a c, the tool has c a"],
            list(compare.differences(one, other)),
        )

    def test_extrasAreComparedInNoOrder(self):
        def layout(*keys):
            extras = [{"path": "", "key": key, "value": "1"} for key in keys]
            return {
                "format": "cspro-json",
                "extras": extras,
                "problems": [{"severity": "info", "id": "x", "message": "m"}],
            }

        self.assertEqual([], list(compare.compare_layouts(layout("a", "b"), layout("b", "a"))))
        self.assertEqual(2, len(list(compare.compare_layouts(layout("a", "b", "b"), layout("b", "a", "c")))))

    def test_numberIsNoBool(self):
        self.assertNotEqual([], list(compare.differences({"a": 1}, {"a": True})))

    def test_lengthsOfListsAreCompared(self):
        self.assertEqual([": naive 1 elements, tool 2"], list(compare.differences([1], [1, 2])))


if __name__ == "__main__":
    unittest.main()
