"""The naive reading of any CSPro dictionary, and a small command: naive.py FILE... prints one object per line."""

import json
import sys

from naive_common import Refused, first_character
from naive_json import read_json
from naive_text import read_text


def read(data, file):
    """The layout of the bytes `data` in its JSON form without problems. Raises Refused if there is none."""
    first = first_character(data)
    if first == "[":
        return read_text(data, file)
    if first == "{":
        return read_json(data, file)
    raise Refused("not a CSPro dictionary")


def main():
    for file in sys.argv[1:]:
        with open(file, "rb") as stream:
            data = stream.read()
        try:
            print(json.dumps(read(data, file), ensure_ascii=False))
        except Refused as reason:
            print(json.dumps({"file": file, "error": {"message": str(reason)}}, ensure_ascii=False))


if __name__ == "__main__":
    main()
