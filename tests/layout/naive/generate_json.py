"""Writes a random survey in the JSON form, with dirt."""

import json

KINDS = {
    # Another spelling of the same dictionary
    "jsonSpace": "harmless",
    "jsonComments": "harmless",
    "jsonEscapes": "harmless",
    "jsonMark": "harmless",
    "jsonVerbose": "harmless",
    "jsonNumbersAsTexts": "harmless",
    "jsonTextsAsNumbers": "harmless",
    "jsonCases": "harmless",
    "jsonOrder": "harmless",
    # Another dictionary
    "jsonWrongTypes": "harmful",
    "jsonNulls": "harmful",
    "jsonUnknownKeys": "harmful",
    "jsonRepeatedKeys": "harmful",
    "jsonMissingKeys": "harmful",
    "jsonListElements": "harmful",
    "jsonLabels": "harmful",
    "jsonPairs": "harmful",
    "jsonNumbers": "harmful",
    "jsonDeepNesting": "harmful",
    "jsonSurrogates": "harmful",
    "jsonPlaces": "harmful",
    "jsonBinaryItems": "harmful",
    "jsonCapture": "harmful",
    "jsonSpecialWords": "harmful",
    "jsonOccurrenceLabels": "harmful",
    "jsonVersion": "harmful",
    "jsonNotes": "harmful",
    "jsonInvalidBytes": "harmful",
    "jsonSyntax": "harmful",
    "jsonCutFile": "harmful",
    "jsonChangedBytes": "harmful",
}


class Object:
    """Members in their order; a key can occur twice."""

    def __init__(self, *pairs):
        self.pairs = list(pairs)

    def add(self, key, value):
        self.pairs.append([key, value])

    def get(self, key):
        return next((value for name, value in self.pairs if name == key), None)

    def set(self, key, value):
        for pair in self.pairs:
            if pair[0] == key:
                pair[1] = value
                return
        self.add(key, value)

    def remove(self, key):
        self.pairs = [pair for pair in self.pairs if pair[0] != key]


class Raw:
    """A value with its spelling."""

    def __init__(self, spelling):
        self.spelling = spelling


class JsonWriter:
    def __init__(self, rng, kinds):
        self.rng = rng
        self.kinds = kinds
        self.languages = []
        self.relative = False

    def has(self, kind, probability=1.0):
        return kind in self.kinds and self.rng.random() < probability

    def write(self, survey):
        root = self.dictionary(survey)
        for kind in KINDS:  # in this order, which is the same for every run
            change = getattr(self, "dirt_" + kind, None)
            if change and kind in self.kinds:
                change(root)
        text = self.spelled(root)
        text = self.damaged_text(text)
        data = text.encode("utf-8", "surrogatepass")
        return self.damaged(b"\xef\xbb\xbf" + data if "jsonMark" in self.kinds else data)

    # --- The survey -----------------------------------------------------------------------------------------------

    def optional(self, node, key, value, default):
        """A member that the normal mode omits if it has its default; the verbose mode writes it."""
        if value != default or "jsonVerbose" in self.kinds:
            node.add(key, value)

    def labels(self, labels):
        """One part without a language; of several, those that are empty or equal to the first are omitted."""
        if len(labels) == 1:
            return [Object(["text", labels[0]])]
        codes = [code for code, _ in self.languages]
        kept = [(t, c) for i, (t, c) in enumerate(zip(labels, codes)) if i == 0 or t not in ("", labels[0])]
        if len(kept) == 1:
            return [Object(["text", labels[0]])]
        return [Object(["text", text], ["language", code]) for text, code in kept]

    def named(self, element):
        node = Object(["name", element["name"]])
        self.optional(node, "aliases", list(element["aliases"]), [])
        node.add("labels", self.labels(element["labels"]))
        self.optional(node, "note", element["note"], "")
        return node

    def dictionary(self, survey):
        self.languages = survey["languages"]
        self.relative = survey["relative"]
        node = Object(["software", "CSPro"])
        self.optional(node, "editable", survey["editable"], True)
        node.pairs += [["version", Raw("8.0")], ["fileType", "dictionary"]]
        node.pairs += self.named(survey).pairs
        if self.languages and (self.languages != [("EN", "English")] or self.rng.random() < 0.5):
            languages = [Object(["name", name], ["label", label]) for name, label in self.languages]
            node.pairs.insert(-2, ["languages", languages])
        if self.rng.random() < 0.8:
            node.add(
                "security",
                Object(
                    ["allowDataViewerModifications", False],
                    ["allowExport", True],
                    ["cachedPasswordMinutes", 0],
                    ["settings", "0a1b2c3d" * 8],
                ),
            )
            node.add("readOptimization", self.rng.random() < 0.8)
        node.add("recordType", Object(["start", survey["record_type"][0]], ["length", survey["record_type"][1]]))
        node.add("defaults", Object(["decimalMark", survey["decimal_mark"]], ["zeroFill", survey["zero_fill"]]))
        node.add("relativePositions", survey["relative"])
        node.add("levels", [self.level(level) for level in survey["levels"]])
        self.optional(node, "relations", [self.relation(relation) for relation in survey["relations"]], [])
        return node

    def level(self, level):
        node = self.named(level)
        node.add("ids", Object(["items", [self.item(item, True) for item in level["ids"]]]))
        node.add("records", [self.record(record) for record in level["records"]])
        return node

    def record(self, record):
        node = self.named(record)
        self.optional(node, "recordType", record["type"], "")
        occurrences = Object(["required", record["required"]], ["maximum", record["maximum"]])
        self.optional(occurrences, "labels", self.occurrence_labels(record["labelled"]), [])
        node.add("occurrences", occurrences)
        node.add("items", [self.item(item, False) for item in record["items"]])
        return node

    def occurrence_labels(self, labels):
        return [Object(["occurrence", number], ["labels", self.labels(parts)]) for number, parts in labels]

    def item(self, item, is_id):
        node = self.named(item)
        verbose = "jsonVerbose" in self.kinds
        if item["occurrences"] > 1 or verbose:
            occurrences = Object(["maximum", item["occurrences"]])
            self.optional(occurrences, "labels", self.occurrence_labels(item["labelled"]), [])
            node.add("occurrences", occurrences)
        node.add("contentType", item["type"])
        self.optional(node, "subitem", item["subitem"], False)
        if is_id or verbose or not self.relative:
            node.add("start", item["start"])
        if item["subitem"] or verbose:
            node.add("subitemOffset", item.get("offset"))
        node.add("length", item["length"])
        if item["type"] == "numeric":
            self.optional(node, "decimals", item["decimals"], 0)
            if item["decimals"] or verbose:
                node.add("decimalMark", item["decimal_mark"])
            node.add("zeroFill", item["zero_fill"])
        self.optional(node, "capture", self.capture(item["capture"]), None)
        self.optional(node, "valueSets", [self.value_set(value_set) for value_set in item["value_sets"]], [])
        return node

    @staticmethod
    def capture(capture):
        if not capture:
            return None
        word, date_format = capture
        return Object(["type", word], ["dateFormat", date_format]) if date_format else Object(["type", word])

    def value_set(self, value_set):
        node = self.named(value_set)
        self.optional(node, "link", value_set["link"] or None, None)
        self.optional(node, "values", [self.value(value) for value in value_set["values"]], [])
        return node

    def value(self, value):
        node = Object(["labels", self.labels(value["labels"])])
        self.optional(node, "note", value["note"], "")
        self.optional(node, "image", value["image"] or None, None)
        if value["color"]:
            node.add("textColor", value["color"])
        self.optional(node, "special", value["special"] or None, None)
        node.add("pairs", [self.pair(low.rstrip(" "), high) for low, high in value["ranges"]])
        return node

    @staticmethod
    def pair(low, high):
        return Object(["range", [low, high]]) if high else Object(["value", low])

    def relation(self, relation):
        node = Object(["name", relation["name"]])
        self.optional(node, "aliases", list(relation["aliases"]), [])
        node.add("primary", relation["primary"])
        node.add(
            "links",
            [
                Object(
                    ["primaryLink", link["primary"] or "(occurrence)"],
                    ["secondary", link["secondary"]],
                    ["secondaryLink", link["secondary_link"] or "(occurrence)"],
                )
                for link in relation["links"]
            ],
        )
        return node

    # --- Dirt in the tree -----------------------------------------------------------------------------------------

    def objects(self, node):
        """All objects at and below a node."""
        if isinstance(node, Object):
            yield node
            for _, value in node.pairs:
                yield from self.objects(value)
        elif isinstance(node, list):
            for element in node:
                yield from self.objects(element)

    def lists(self, root):
        return [value for node in self.objects(root) for _, value in node.pairs if isinstance(value, list)]

    def some(self, things, probability=0.1):
        """Each with a probability, at least one if there is any."""
        things = list(things)
        some = [thing for thing in things if self.rng.random() < probability]
        return some or ([self.rng.choice(things)] if things else [])

    def members(self, root, wanted):
        return [pair for node in self.objects(root) for pair in node.pairs if wanted(*pair)]

    def odd_value(self):
        return self.rng.choice(
            [
                True,
                False,
                "",
                "text",
                "3",
                7,
                -1,
                Raw("1.5"),
                Raw("2.0"),
                Raw("1e2"),
                [],
                ["x"],
                Object(),
                Object(["a", 1]),
                [None],
                Raw("123456789012345678901234567890"),
                "true",
                Raw("-0"),
            ]
        )

    def dirt_jsonNumbersAsTexts(self, root):
        for pair in self.some(self.members(root, lambda key, value: isinstance(value, int)), 0.1):
            pair[1] = json.dumps(pair[1])

    def dirt_jsonTextsAsNumbers(self, root):
        def is_spelling(key, value):
            return (
                key in ("value", "link", "recordType")
                and isinstance(value, str)
                and value.isascii()
                and (value == "0" or (value.isdigit() and value[0] != "0"))
            )

        for pair in self.some(self.members(root, is_spelling), 0.3):
            pair[1] = Raw(pair[1])

    def dirt_jsonCases(self, root):
        for pair in self.some(self.members(root, lambda key, value: key in ("contentType", "special") and value), 0.3):
            pair[1] = self.rng.choice([pair[1].upper(), pair[1].lower(), pair[1].capitalize()])

    def dirt_jsonOrder(self, root):
        for node in self.some(self.objects(root), 0.3):
            self.rng.shuffle(node.pairs)

    def dirt_jsonWrongTypes(self, root):
        for pair in self.some(
            self.members(root, lambda key, value: key not in ("fileType", "length", "maximum", "levels")), 0.02
        ):
            pair[1] = self.odd_value()

    def dirt_jsonNulls(self, root):
        for pair in self.some(self.members(root, lambda key, value: True), 0.03):
            pair[1] = None

    def dirt_jsonUnknownKeys(self, root):
        keys = [
            "foo",
            "label",
            "Name",
            "allowDataManagerModifications",
            "url",
            "type",
            "len",
            "a.b",
            "attributes",
            "",
            "required",
            "é",
            "note ",
        ]
        for node in self.some(self.objects(root), 0.03):
            key = self.rng.choice(keys)
            if node.get(key) is None and key not in [name for name, _ in node.pairs]:
                node.pairs.insert(self.rng.randint(0, len(node.pairs)), [key, self.odd_value()])

    def dirt_jsonRepeatedKeys(self, root):
        for node in self.some([node for node in self.objects(root) if node.pairs], 0.03):
            at = self.rng.randrange(len(node.pairs))
            key, value = node.pairs[at]
            if key != "fileType":
                again = self.rng.choice([value, "x", 5, None, True])
                node.pairs.insert(self.rng.randint(at + 1, len(node.pairs)), [key, again])

    def dirt_jsonMissingKeys(self, root):
        for node in self.some([node for node in self.objects(root) if node.pairs], 0.03):
            del node.pairs[self.rng.randrange(len(node.pairs))]

    def dirt_jsonListElements(self, root):
        for elements in self.some(self.lists(root), 0.05):
            elements.insert(self.rng.randint(0, len(elements)), self.rng.choice([None, "x", 5, [], True, Object()]))

    def dirt_jsonLabels(self, root):
        odd = [
            [Object(["text", "a"], ["language", "EN"])],
            [Object(["text", ""], ["language", "EN"])],
            [],
            [Object()],
            [Object(["text", "a"]), Object(["text", "b"])],
            [Object(["text", "a"], ["language", "QQ"]), Object(["text", ""])],
            [Object(["text", ""]), Object(["text", "b"], ["language", "fr"])],
            [Object(["language", "EN"], ["text", "x\ny"])],
            [Object(["text", 5])],
            [Object(["text", "a|b"])],
            [Object(["text", " a "], ["language", " "])],
            [Object(["text", "a"], ["language", "EN"]), Object(["text", "b"], ["language", "EN"])],
            "text",
            Object(["text", "a"]),
        ]
        for pair in self.some(self.members(root, lambda key, value: key == "labels"), 0.1):
            pair[1] = self.rng.choice(odd)

    def dirt_jsonPairs(self, root):
        odd = [
            Object(),
            Object(["value", ""]),
            Object(["value", " 1 "]),
            Object(["value", 1]),
            Object(["value", Raw("1.50")]),
            Object(["range", ["1", "5"]], ["value", "3"]),
            Object(["range", ["1"]]),
            Object(["range", ["1", "2", "3"]]),
            Object(["range", []]),
            Object(["range", "1:2"]),
            Object(["range", [1, Raw("2.0")]]),
            Object(["range", ["1", None]]),
            Object(["range", ["1", "1"]]),
            Object(["range", ["", ""]]),
            Object(["range", ["9", "1"]]),
            Object(["value", None]),
            Object(["value", None], ["range", ["1", "2"]]),
            Object(["value", True]),
            Object(["value", []], ["range", ["1", "2"]]),
            Object(["value", "1"], ["foo", "x"]),
            Object(["code", "1"]),
            "1",
            5,
            Object(["value", "a;b|c'd\"e"]),
        ]
        for pairs in self.some(
            [value for key, value in self.members(root, lambda key, value: key == "pairs") if isinstance(value, list)],
            0.2,
        ):
            pairs.insert(self.rng.randint(0, len(pairs)), self.rng.choice(odd))

    def dirt_jsonNumbers(self, root):
        keys = ("start", "length", "maximum", "decimals", "occurrence", "cachedPasswordMinutes")
        odd = [0, 99999, Raw("2.0"), Raw("1e1"), "7", Raw("1.5"), "x", "", Raw("99999999999"), True, " 5", "1.0"]
        for pair in self.some(self.members(root, lambda key, value: key in keys), 0.05):
            if pair[0] == "start":
                pair[1] = self.rng.choice(odd[1:])
            else:
                pair[1] = self.rng.choice(odd)

    def dirt_jsonDeepNesting(self, root):
        node = self.rng.choice(list(self.objects(root)))
        depth = self.rng.choice([3, 30, 150])
        value = "deep"
        for _ in range(depth):
            value = [value] if self.rng.random() < 0.5 else Object(["x", value])
        node.set("nested", value)

    def dirt_jsonSurrogates(self, root):
        texts = self.members(
            root, lambda key, value: key in ("text", "note", "label", "image") and isinstance(value, str)
        )
        for pair in self.some(texts, 0.1):
            pair[1] += self.rng.choice(["\ud83d", "\ude00", "\ude00\ud83d", "\ud83dx", "\ud83d\ud83d\ude00"])

    def dirt_jsonPlaces(self, root):
        items = [node for node in self.objects(root) if node.get("contentType")]
        for item in self.some(items, 0.2):
            change = self.rng.choice(["no start", "no offset", "offset", "start", "subitem", "no subitem", "negative"])
            if change == "no start":
                item.remove("start")
            elif change == "no offset":
                item.remove("subitemOffset")
            elif change == "offset":
                item.set("subitemOffset", self.rng.randint(0, 3))
            elif change == "start":
                item.set("start", self.rng.randint(1, 50))
            elif change == "subitem":
                item.set("subitem", True)
            elif change == "no subitem":
                item.remove("subitem")
            elif item.get("subitem"):
                item.set("subitemOffset", -1)

    def dirt_jsonBinaryItems(self, root):
        root.set("enableBinaryItems", self.rng.random() < 0.8)
        for record in [node for node in self.objects(root) if isinstance(node.get("items"), list)]:
            item = Object(
                ["name", "PHOTO"],
                ["labels", [Object(["text", "Photo"])]],
                ["contentType", self.rng.choice(["Image", "Audio", "Document", "Geometry", "image"])],
            )
            if self.rng.random() < 0.3:
                item.add("length", self.rng.choice([1, 5, "x"]))
            record.get("items").append(item)

    def dirt_jsonCapture(self, root):
        odd = [
            Object(["type", "date"], ["dateFormat", "ddmmyy"]),
            Object(["type", "DATE"]),
            Object(["type", "Foo"]),
            Object(),
            Object(["type", "unspecified"]),
            Object(["type", "textbox"], ["foo", 1]),
            "date",
            None,
            [],
            Object(["type", 5]),
            Object(["type", "Foo"], ["dateFormat", "x"]),
            Object(["type", "Unspecified"], ["dateFormat", ""]),
        ]
        for item in self.some([node for node in self.objects(root) if node.get("contentType")], 0.2):
            item.set("capture", self.rng.choice(odd))

    def dirt_jsonSpecialWords(self, root):
        for value in self.some([node for node in self.objects(root) if isinstance(node.get("pairs"), list)], 0.2):
            value.set(
                "special",
                self.rng.choice(["MISSING", "missing", "NotAppl", "OTHER", "", "MISSING,Special", " MISSING", 5]),
            )

    def dirt_jsonOccurrenceLabels(self, root):
        label = [Object(["text", "o"])]
        odd = [
            Object(["occurrence", 1], ["labels", label]),
            Object(["occurrence", 0], ["labels", label]),
            Object(["labels", label]),
            Object(["occurrence", 999], ["labels", label]),
            Object(["occurrence", "2"], ["labels", label]),
            Object(),
            "x",
            3,
            Object(["occurrence", 2]),
            Object(["occurrence", 1], ["labels", "x"]),
            Object(["occurrence", -1], ["foo", 1]),
            Object(["occurrence", 1], ["labels", label], ["foo", 1]),
        ]
        for node in self.some([node for node in self.objects(root) if node.get("maximum") is not None], 0.3):
            node.set("labels", [self.rng.choice(odd) for _ in range(self.rng.randint(1, 3))])

    def dirt_jsonVersion(self, root):
        root.set("version", self.rng.choice([8, Raw("8.1"), Raw("7.7"), "8.0", "x", Raw("8.10"), Raw("10.25"), None]))
        if self.rng.random() < 0.3:
            root.set("software", self.rng.choice(["Other", "", 5, None]))

    def dirt_jsonNotes(self, root):
        notes = [
            " ",
            "\n",
            "a\n\n",
            "a \t",
            "\ta",
            "a\r\nb\r\n",
            "~x\\r\\ny",
            "a\u0001b",
            "a\u0000b",
            5,
            "x\u000b\u000c",
        ]
        named = [
            node
            for node in self.objects(root)
            if node.get("labels") is not None and node.get("occurrence") is None and node.get("maximum") is None
        ]
        for node in self.some(named, 0.1):
            node.set("note", self.rng.choice(notes))

    # --- Spelling -------------------------------------------------------------------------------------------------

    def space(self):
        text = ""
        if self.has("jsonSpace", 0.2):
            text += self.rng.choice([" ", "\n", "\r\n", "\t", "    "])
        if self.has("jsonComments", 0.03):
            text += self.rng.choice(['// a " { comment\n', '/* two\nlines, "[ */', "/**/", "//\n", "/* // */", "/***/"])
        return text

    def spelled(self, node, outermost=True):
        begin = "" if outermost else self.space()
        return begin + self.spelled_value(node) + self.space()

    def spelled_value(self, node):
        if isinstance(node, Object):
            pairs = [
                self.space() + self.string(key) + self.space() + ":" + self.spelled(value, False)
                for key, value in node.pairs
            ]
            return "{" + ",".join(pairs or [self.space()]) + "}"
        if isinstance(node, list):
            return "[" + ",".join([self.spelled(element, False) for element in node] or [self.space()]) + "]"
        if isinstance(node, Raw):
            return node.spelling
        return self.string(node) if isinstance(node, str) else json.dumps(node)

    def string(self, text):
        if self.has("jsonEscapes", 0.2):
            return '"' + "".join(self.escaped(c) for c in text) + '"'
        plain = json.dumps(text, ensure_ascii=False)
        return json.dumps(text) if any("\ud800" <= c <= "\udfff" for c in plain) else plain

    def escaped(self, character):
        choice = self.rng.random()
        if character == "/" and choice < 0.5:
            return "\\/"
        if choice < 0.3 or "\ud800" <= character <= "\udfff":
            units = character.encode("utf-16be", "surrogatepass").hex()
            units = units.upper() if choice < 0.15 else units
            return "".join("\\u" + units[i : i + 4] for i in range(0, len(units), 4))
        return json.dumps(character, ensure_ascii=False)[1:-1]

    def damaged_text(self, text):
        if "jsonSyntax" not in self.kinds:
            return text
        return self.rng.choice(
            [
                text + "x",
                text + "{}",
                text[:-1] if text.endswith("}") else text + "}",
                text.replace(",", ",,", 1),
                text.replace(":", "", 1),
                text.replace("true", "True", 1),
                text.replace("[", "(", 1),
                text.replace('"', "'", 2),
                text + "/*",
                text.replace("}", ",}", 1),
                text.replace("1", "01", 1),
            ]
        )

    def damaged(self, data):
        if "jsonInvalidBytes" in self.kinds:
            bad = [
                b"\xff",
                b"\xc3",
                b"\xe2\x82",
                b"\xf0\x9f\x98",
                b"\xc0\xaf",
                b"\xed\xa0\x80",
                b"\xf5",
                b"\x80",
                b"\xe0\x80\x80",
            ]
            for _ in range(self.rng.randint(1, 3)):
                marks = [
                    i for i in range(4, len(data)) if data[i : i + 8] == b'"text": ' or data[i : i + 7] == b'"text":'
                ]
                at = data.find(b'"', self.rng.choice(marks) + 6) + 1 if marks else 0
                if at > 0:
                    data = data[:at] + self.rng.choice(bad) + data[at:]
        if "jsonCutFile" in self.kinds:
            data = data[: self.rng.randint(1, len(data) - 1)]
        if "jsonChangedBytes" in self.kinds and len(data) > 4:
            for _ in range(self.rng.randint(1, 2)):
                at = self.rng.randrange(4, len(data))
                change = self.rng.choice([b"", b",", b'"', b"{", b"}", b"1", b"x", bytes([self.rng.randint(32, 126)])])
                data = data[:at] + change + data[at + self.rng.randint(0, 2) :]
        return data
