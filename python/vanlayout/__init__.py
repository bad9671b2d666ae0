"""The exact layout of census and survey data files, as the command `vanlayout show --format json` reads it.

    import vanlayout

    layout = vanlayout.read("census.dcf")
    layout.records[0].items                  # items of the first record
    layout.item("P04_SEX").label             # label in the primary language
    layout.item("P04_SEX").to_pandas()       # codes of one item
    layout.to_pandas(language="FR")          # codes of all items

The classes have the members of the layout in the spelling of Python: `valueSets` is `value_sets`, and `from`, which is
a keyword, is `from_`. A member that the file does not state has its default value, or None if it has no default.
Codes and other texts are exactly those of the file. Keys of later releases of the command are ignored.
"""

from __future__ import annotations

import json
import locale
import os
import re
import shutil
import subprocess
from collections.abc import Iterable
from dataclasses import MISSING, dataclass, field, fields, is_dataclass
from functools import lru_cache
from typing import TYPE_CHECKING, Any, BinaryIO, ClassVar, Optional, Union, get_args, get_type_hints

if TYPE_CHECKING:
    import pandas

__all__ = ["Capture", "Extra", "Item", "Label", "Language", "Layout", "Level", "Link", "OccurrenceLabel", "Problem",
           "Range", "Record", "RecordType", "Relation", "Security", "Value", "ValueSet", "VanlayoutError", "read",
           "read_all"]

LAYOUT_VERSION = 1
FILES_PER_CALL = 200  # a system limits the length of a command


class VanlayoutError(Exception):
    """The command did not read every file. The message is what the command printed on standard error, a line for each
    such file. `layouts` are the layouts of the other files, and `status` is the exit status of the command, None if it
    was not started."""

    def __init__(self, message: str, status: Optional[int] = None, layouts: Iterable[Layout] = ()) -> None:
        super().__init__(message)
        self.status = status
        self.layouts = list(layouts)


class _Element:
    """An object of the JSON form. `_always` are the keys that it has even with their default values."""

    _always: ClassVar[tuple[str, ...]] = ()

    def to_dict(self) -> dict[str, Any]:
        """The object as the command prints it: keys in the same order, those with a default value omitted."""
        made = {}
        for member in _members(type(self)):
            value = getattr(self, member.name)
            if member.key in self._always or value != member.default():
                made[member.key] = _plain(value)
        return made


class _Labelled(_Element):
    """An object with labels."""

    labels: list[Label]

    @property
    def label(self) -> str:
        """The label in the primary language; empty if there is none."""
        return self.labels[0].text if self.labels else ""

    def label_in(self, language: str) -> str:
        """The label in the language with this code, else the one in the primary language."""
        texts = [part.text for part in self.labels if part.text and part.language.lower() == language.lower()]
        return texts[0] if language and texts else self.label


class _CodeList:
    """An object with codes. `_columns` are the keys of each row of `codes()`."""

    _columns: ClassVar[tuple[str, ...]] = ()

    def codes(self, language: str = "") -> list[dict[str, str]]:
        """A row for each code or range; a value without a code has one row, with `from` and `to` empty. `to` is empty
        for a single code. `record` is `(ids)` for an id item."""
        raise NotImplementedError

    def to_pandas(self, language: str = "") -> pandas.DataFrame:
        """The rows of `codes()` as a data frame of texts."""
        try:
            import pandas
        except ImportError as error:
            raise ImportError("to_pandas() needs pandas; install pandas, or use codes()") from error
        return pandas.DataFrame(self.codes(language), columns=list(self._columns), dtype=object)


@dataclass
class Label(_Element):
    """The text of a label in one language; `language` is empty if the file states none."""

    _always = ("text",)
    language: str = ""
    text: str = ""


@dataclass
class Language(_Element):
    _always = ("name", "label")
    name: str = ""
    label: str = ""


@dataclass
class Range(_Element):
    """One code, or the codes from `from_` to `to`, as the file spells them."""

    _always = ("from",)
    from_: str = ""
    to: str = ""


@dataclass
class Value(_Labelled):
    """A value of a value set. `special` is "missing", "notApplicable", "refused", "default" or empty."""

    _always = ("ranges",)
    labels: list[Label] = field(default_factory=list)
    note: str = ""
    special: str = ""
    image: str = ""
    text_color: str = ""
    ranges: list[Range] = field(default_factory=list)


@dataclass
class ValueSet(_Labelled, _CodeList):
    _always = ("name", "values")
    _columns = ("from", "to", "label", "special")
    name: str = ""
    labels: list[Label] = field(default_factory=list)
    note: str = ""
    aliases: list[str] = field(default_factory=list)
    link: str = ""
    values: list[Value] = field(default_factory=list)

    def codes(self, language: str = "") -> list[dict[str, str]]:
        return [{"from": code.from_, "to": code.to, "label": value.label_in(language), "special": value.special}
                for value in self.values for code in value.ranges or [Range()]]


@dataclass
class OccurrenceLabel(_Labelled):
    """The label of one occurrence; `occurrence` is 1-based."""

    _always = ("occurrence", "labels")
    occurrence: int = 0
    labels: list[Label] = field(default_factory=list)


@dataclass
class Capture(_Element):
    """How an item is entered, such as "dropDown"."""

    _always = ("type",)
    type: str = ""
    date_format: str = ""


@dataclass
class Item(_Labelled, _CodeList):
    """An item. `start` is the 1-based column of the first occurrence in characters, 0 if there are no columns."""

    _always = ("name", "type", "length")
    _columns = ("valueSet", *ValueSet._columns)
    name: str = ""
    labels: list[Label] = field(default_factory=list)
    note: str = ""
    aliases: list[str] = field(default_factory=list)
    type: str = ""
    start: int = 0
    length: int = 0
    occurrences: int = 1
    occurrence_labels: list[OccurrenceLabel] = field(default_factory=list)
    subitem_of: str = ""
    decimals: int = 0
    decimal_mark: bool = False
    zero_fill: bool = False
    capture: Optional[Capture] = None
    storage: str = ""
    format: str = ""
    measure: str = ""
    alignment: str = ""
    display_width: int = 0
    missing: list[Range] = field(default_factory=list)
    value_sets: list[ValueSet] = field(default_factory=list)

    def codes(self, language: str = "") -> list[dict[str, str]]:
        return [{"valueSet": value_set.name, **row} for value_set in self.value_sets
                for row in value_set.codes(language)]


@dataclass
class Record(_Labelled):
    """A record. `record_type` is the text that marks its lines."""

    _always = ("name", "items")
    name: str = ""
    labels: list[Label] = field(default_factory=list)
    note: str = ""
    aliases: list[str] = field(default_factory=list)
    record_type: str = ""
    required: bool = True
    maximum: int = 1
    length: Optional[int] = None
    occurrence_labels: list[OccurrenceLabel] = field(default_factory=list)
    items: list[Item] = field(default_factory=list)


@dataclass
class Level(_Labelled):
    """A level. `ids` are the items on every line."""

    _always = ("name", "ids", "records")
    name: str = ""
    labels: list[Label] = field(default_factory=list)
    note: str = ""
    aliases: list[str] = field(default_factory=list)
    ids: list[Item] = field(default_factory=list)
    records: list[Record] = field(default_factory=list)


@dataclass
class RecordType(_Element):
    """The columns that mark the type of a line; `start` is 1-based."""

    _always = ("start", "length")
    start: int = 0
    length: int = 0


@dataclass
class Security(_Element):
    settings: Optional[str] = None
    allow_data_viewer_modifications: Optional[bool] = None
    allow_export: Optional[bool] = None
    cached_password_minutes: Optional[int] = None


@dataclass
class Link(_Element):
    """A part of a relation; a link that is empty stands for the occurrence number."""

    _always = ("secondary",)
    primary_link: str = ""
    secondary: str = ""
    secondary_link: str = ""


@dataclass
class Relation(_Element):
    _always = ("name", "primary", "links")
    name: str = ""
    aliases: list[str] = field(default_factory=list)
    primary: str = ""
    links: list[Link] = field(default_factory=list)


@dataclass
class Extra(_Element):
    """A statement of the file for which there is no member. `path` is LEVEL/RECORD/ITEM/VALUESET/#value."""

    _always = ("path", "key", "value")
    path: str = ""
    key: str = ""
    value: str = ""
    line: int = 0


@dataclass
class Problem(_Element):
    """A fact that is wrong or unusual in the file. `severity` is "warning" or "info"."""

    _always = ("severity", "id", "message")
    severity: str = ""
    id: str = ""
    line: int = 0
    path: str = ""
    message: str = ""


@dataclass(repr=False)
class Layout(_Labelled, _CodeList):
    """The layout of a file. A statistical file is one level without ids, with one record."""

    _always = ("layoutVersion", "file", "format", "levels")
    _columns = ("level", "record", "item", *Item._columns)
    layout_version: int = LAYOUT_VERSION
    file: str = ""
    format: str = ""
    container: str = ""
    format_version: str = ""
    encoding: str = ""
    name: str = ""
    labels: list[Label] = field(default_factory=list)
    note: str = ""
    aliases: list[str] = field(default_factory=list)
    languages: list[Language] = field(default_factory=list)
    record_type: Optional[RecordType] = None
    relative_positions: Optional[bool] = None
    decimal_mark: bool = False
    zero_fill: bool = False
    editable: bool = True
    security: Optional[Security] = None
    read_optimization: Optional[bool] = None
    enable_binary_items: Optional[bool] = None
    value_set_images: Optional[str] = None
    rows: Optional[int] = None
    created: Optional[str] = None
    modified: Optional[str] = None
    weight: str = ""
    levels: list[Level] = field(default_factory=list)
    relations: list[Relation] = field(default_factory=list)
    extras: list[Extra] = field(default_factory=list)
    problems: list[Problem] = field(default_factory=list)

    def __repr__(self) -> str:
        return f"<Layout of {self.file!r}: {self.format}, {len(self.items)} items>"

    @property
    def records(self) -> list[Record]:
        """The records of all levels."""
        return [record for level in self.levels for record in level.records]

    @property
    def items(self) -> list[Item]:
        """The items of all levels, in the order of the file: the ids of a level, then those of its records."""
        return [item for _, _, item in self._places()]

    def item(self, name: str) -> Item:
        """The first item with this name. Raises KeyError if there is none."""
        for item in self.items:
            if item.name == name:
                return item
        raise KeyError(name)

    def codes(self, language: str = "") -> list[dict[str, str]]:
        return [{"level": level, "record": record, "item": item.name, **row}
                for level, record, item in self._places() for row in item.codes(language)]

    def _places(self) -> list[tuple[str, str, Item]]:
        """Each item with the names of its level and its record."""
        return [(level.name, name, item) for level in self.levels
                for name, items in [("(ids)", level.ids), *((record.name, record.items) for record in level.records)]
                for item in items]


class _Member:
    """A member of a class: its name, its key in the JSON form, and the class of the objects that it holds."""

    def __init__(self, name: str, hint: Any, default: Any, factory: Any) -> None:
        self.name = name
        self.key = re.sub("_([a-z])", lambda match: match[1].upper(), name).rstrip("_")
        self.kind = next((kind for kind in (hint, *get_args(hint)) if is_dataclass(kind)), None)
        self.default = factory if default is MISSING else lambda: default


@lru_cache(maxsize=None)
def _members(kind: type) -> list[_Member]:
    hints = get_type_hints(kind)
    return [_Member(member.name, hints[member.name], member.default, member.default_factory) for member in fields(kind)]


def _plain(value: Any) -> Any:
    if isinstance(value, list):
        return [_plain(element) for element in value]
    return value.to_dict() if isinstance(value, _Element) else value


def _object(kind: Any, value: Any) -> Any:
    """A value of the JSON form, whose objects become objects of this class."""
    if isinstance(value, list):
        return [_object(kind, element) for element in value]
    if kind is None or not isinstance(value, dict):
        return value
    return kind(**{member.name: _object(member.kind, value[member.key])
                   for member in _members(kind) if member.key in value})


def _layout(printed: dict[str, Any]) -> Layout:
    version = printed.get("layoutVersion")
    if version != LAYOUT_VERSION:
        raise VanlayoutError(f"{printed.get('file')}: the layout has version {version}, but this package reads version "
                             f"{LAYOUT_VERSION}; install the package of the same release as the command")
    return _object(Layout, printed)


def _command(command: Union[str, os.PathLike[str], None]) -> str:
    """The path of the command: the argument, the environment variable VANLAYOUT, or `vanlayout` of PATH."""
    name = os.fspath(command or os.environ.get("VANLAYOUT") or "vanlayout")
    path = shutil.which(name)
    if path is None:
        raise VanlayoutError(f"{name}: no such command; install vanlayout, or set the environment variable VANLAYOUT "
                             "to its path")
    return path


def _run(command: str, arguments: list[Any], stdin: dict[str, Any]) -> subprocess.CompletedProcess[bytes]:
    try:
        return subprocess.run([command, "show", "--format", "json", *arguments], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, check=False, **stdin)
    except (OSError, ValueError) as error:  # ValueError: a null character in a path
        raise VanlayoutError(f"{command}: cannot be run: {error}") from error


def _stdin(file: Any) -> dict[str, Any]:
    """Standard input of the command: the content of a file object, that of this process for "-", else none."""
    if hasattr(file, "read"):
        content = file.read()
        if isinstance(content, str):
            raise VanlayoutError("the file is open in text mode; open it in binary mode")
        return {"input": content}
    return {} if file == "-" else {"stdin": subprocess.DEVNULL}


def _read(files: list[Any], stdin: dict[str, Any], catalog: Any, command: str) -> list[Layout]:
    options = [] if catalog is None else [b"--catalog=" + os.fsencode(catalog)]
    ended = _run(command, [*options, "--", *files], stdin)
    message = ended.stderr.decode(locale.getpreferredencoding(False), "replace").strip()
    message = (re.sub("^vanlayout: ", "", message, flags=re.MULTILINE)
               or f"{command}: no layout was printed, and the exit status is {ended.returncode}")
    try:
        printed = [json.loads(line) for line in ended.stdout.split(b"\n") if line]
        layouts = [_layout(result) for result in printed if "error" not in result]
    except (ValueError, AttributeError, TypeError) as error:
        raise VanlayoutError(message, ended.returncode) from error
    if ended.returncode != 0 or len(layouts) != len(files):
        raise VanlayoutError(message, ended.returncode, layouts)
    return layouts


def read(file: Union[str, bytes, os.PathLike[str], BinaryIO], *, catalog: Union[str, os.PathLike[str], None] = None,
         command: Union[str, os.PathLike[str], None] = None) -> Layout:
    """The layout of a file: a path, a binary file object, or "-" for standard input.

    `catalog` is the SAS catalog with the value labels of a SAS data set. `command` is the path of the command
    `vanlayout`; by default the environment variable VANLAYOUT states it, else it is found in PATH.

    Raises VanlayoutError if the command is absent or there is no layout. Warnings are in `problems` of the layout.
    """
    path = "-" if hasattr(file, "read") else os.fspath(file)
    return _read([path], _stdin(file), catalog, _command(command))[0]


def read_all(files: Iterable[Union[str, bytes, os.PathLike[str]]], *,
             catalog: Union[str, os.PathLike[str], None] = None,
             command: Union[str, os.PathLike[str], None] = None) -> list[Layout]:
    """The layouts of several files, in the same order, faster than with one call for each.

    Raises VanlayoutError if there is a file without a layout; its `layouts` are those of the other files.
    """
    if isinstance(files, (str, bytes, os.PathLike)):
        raise TypeError("read_all() takes a list of paths; use read() for one file")
    paths = [os.fspath(file) for file in files]
    found = _command(command)
    layouts: list[Layout] = []
    failures: list[VanlayoutError] = []
    for begin in range(0, len(paths), FILES_PER_CALL):
        part = paths[begin:begin + FILES_PER_CALL]
        try:
            layouts += _read(part, _stdin("-" if "-" in part else ""), catalog, found)
        except VanlayoutError as error:
            layouts += error.layouts
            failures.append(error)
    if failures:
        raise VanlayoutError("\n".join(map(str, failures)), failures[0].status, layouts)
    return layouts
