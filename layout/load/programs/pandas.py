<<head>>
import collections
import math
import os
import re
import shutil
import sys
import tempfile
import time
import typing
from decimal import ROUND_CEILING, ROUND_FLOOR, Decimal

import numpy as np
import pandas as pd

<<settings>>


class Column(typing.NamedTuple):
    """A column of a table. It is a part of the lines of the data file, except "occ" and "item_occ"."""
    name: str
    role: str  # "id", "occ", "item_occ" or "item"
    type: str  # "Int64", "Float64" or "string"
    first: int = 0  # the first of its characters, from 1
    length: int = 0  # in characters
    decimals: int = 0  # the digits after the decimal mark, if the mark is not written
    codes: typing.Optional[int] = None  # position in CODES
    label: str = ''


class Table(typing.NamedTuple):
    """A table, one for each record type. An item table has the occurrences of one repeating item, a row for each."""
    name: str
    file: str  # name of its files, without extension
    label: str
    mark: str  # the record type of its lines
    columns: typing.List[Column]
    record: typing.Optional[int] = None  # of an item table: position of the table of its record in TABLES
    occurrences: int = 1
    step: int = 0  # from an occurrence to the next, in characters
    first: int = 0  # the first character of the first occurrence, from 1
    length: int = 0  # of an occurrence


class Codes(typing.NamedTuple):
    """The codes of an item: those of its first value set."""
    rows: list  # as in the dictionary: from, to, label, special meaning
    values: dict  # the labels of single codes
    ranges: list  # the labels of ranges: from, to, label
    special: list  # from, to, and whether these become missing; the first that holds a value counts


# The codes of the items. Several columns may share them.
<<codes>>

# The tables and their columns. Record tables come first.
<<tables>>

BLOCK = 4 * 1024 * 1024  # bytes of the data file that are read at once
MATRIX = 16 * 1024 * 1024  # characters that are taken apart at once
PROGRESS = 5  # seconds from one report of progress to the next
CODES_COLUMNS = ['table_name', 'column_name', 'code_from', 'code_to', 'label', 'special']


class DataError(Exception):
    """The data file cannot be loaded."""


class EncodingError(Exception):
    """A line is not in the encoding. Its number is counted from 1 in the block."""

    def __init__(self, line):
        super().__init__(line)
        self.line = line


def encoding_message(path, line):
    return f'{path}: line {line} is not valid UTF-8. If the file is in windows-1252, make this program anew with ' \
           '--encoding windows-1252.'


# ---------------------------------------------------------------------------------------------------------------------
# Lines

# The characters of the bytes 80 to 9F in windows-1252. The five bytes without a character stand for themselves.
WINDOWS = np.arange(256, dtype=np.uint32)
WINDOWS[0x80:0xA0] = [
    0x20AC, 0x81, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D, 0x017D,
    0x8F, 0x90, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,
    0x017E, 0x0178]


def characters(data):
    """The characters of the bytes as numbers: 8 bits each if all are ASCII, else 32 bits."""
    if data.isascii():
        return np.frombuffer(data, np.uint8)
    if ENCODING == 'windows-1252':
        return WINDOWS[np.frombuffer(data, np.uint8)]
    try:
        text = data.decode('utf-8')
    except UnicodeDecodeError as error:
        raise EncodingError(data.count(b'\n', 0, error.start) + 1) from None
    return np.frombuffer(text.encode('utf-32-le'), '<u4').astype(np.uint32, copy=False)


def line_ends(text):
    """The position of the first character of each line, and the position after its last. Line ends do not count."""
    ends = np.flatnonzero(text == 10)
    if len(text) and text[-1] != 10:
        ends = np.append(ends, len(text))
    starts = np.empty_like(ends)
    starts[:1] = 0
    starts[1:] = ends[:-1] + 1
    carriage_return = (ends > starts) & (text[ends - 1] == 13)
    return starts, ends - carriage_return


class Lines:
    """The lines of a block. Lines are numbered from 0."""

    def __init__(self, data, is_first):
        if is_first and data.startswith(b'\xEF\xBB\xBF'):
            data = data[3:]
        text = characters(data)
        self.starts, ends = line_ends(text)
        self.lengths = ends - self.starts
        self.text = np.append(text, np.full(width_of_all(), 32, text.dtype))

    def __len__(self):
        return len(self.starts)

    def cut(self, lines, first, length):
        """A matrix with these characters of these lines, a row for each character. Short lines end in blanks."""
        step = self.text.itemsize
        windows = np.ndarray((len(self.text) - length + 1,), f'V{length * step}', self.text, strides=(step,))
        matrix = windows[self.starts[lines] + first].view(self.text.dtype).reshape(-1, length)
        rest = self.lengths[lines] - first
        short = np.flatnonzero(rest < length)
        if len(short):
            matrix[short] = np.where(np.arange(length) < rest[short, None], matrix[short], 32)
        return np.ascontiguousarray(matrix.T)

    def blank(self):
        """Whether each line is empty or has only blanks."""
        if not ((self.lengths > 0) & (self.text[self.starts] == 32)).any():
            return self.lengths == 0
        filled = np.append(0, np.cumsum(self.text != 32, dtype=np.int64))
        return filled[self.starts + self.lengths] == filled[self.starts]


def width_of(table):
    """The number of characters that the columns of a table need."""
    last = [column.first + column.length - 1 + (table.occurrences - 1) * table.step for column in table.columns]
    return max([1, table.first + (table.occurrences - 1) * table.step + table.length - 1] + last)


def width_of_all():
    return max([width_of(table) for table in TABLES] + ([sum(RECORD_TYPE)] if RECORD_TYPE else []))


def equals(matrix, text):
    """Whether each column of the matrix holds the text."""
    if len(matrix) != len(text):
        return np.zeros(matrix.shape[1], bool)
    return (matrix == np.array([ord(character) for character in text], np.uint32)[:, None]).all(axis=0)


# ---------------------------------------------------------------------------------------------------------------------
# Values

class Cells(typing.NamedTuple):
    values: np.ndarray
    missing: np.ndarray


BLANK, SIGN, DIGIT, MARK, OTHER = range(5)
KIND = np.full(256, OTHER, np.uint8)
KIND[[ord(' ')]] = BLANK
KIND[[ord('+'), ord('-')]] = SIGN
KIND[48:58] = DIGIT
KIND[[ord('.'), ord(',')]] = MARK

# A number: blanks, a sign, digits with at most one mark before, among or after them, blanks. A row for each state,
# with the next state after a blank, a sign, a digit, a mark, another character.
START, SIGNED, WHOLE, ENDED, BARE_MARK, FRACTION, REST, BAD = range(8)
NEXT = np.array([
    [START, SIGNED, WHOLE, BARE_MARK, BAD],  # START: only blanks so far
    [BAD, BAD, WHOLE, BARE_MARK, BAD],  # SIGNED: after the sign
    [REST, BAD, WHOLE, ENDED, BAD],  # WHOLE: in the digits
    [REST, BAD, FRACTION, BAD, BAD],  # ENDED: after the mark that follows digits
    [BAD, BAD, FRACTION, BAD, BAD],  # BARE_MARK: after a mark without digits before it
    [REST, BAD, FRACTION, BAD, BAD],  # FRACTION: in the digits after the mark
    [REST, BAD, BAD, BAD, BAD],  # REST: blanks after the number
    [BAD, BAD, BAD, BAD, BAD]], np.uint8)
IS_NUMBER = np.array([False, False, True, True, False, True, True, False])
POWERS = np.array([float(10 ** power) for power in range(23)])  # those that a double holds exactly


def scan(field, has_decimals):
    """For each text of a field: the last state, the digits as one number, the number of digits after the written
    mark (-1 if there is none), and whether there is a minus sign."""
    count = field.shape[1]
    state = np.full(count, START, np.uint8)
    digits = np.zeros(count, np.int64)
    after = np.full(count, -1, np.int64)
    minus = np.zeros(count, bool)
    kinds = KIND[field]
    if not has_decimals:
        kinds[kinds == MARK] = OTHER
    for kind, character in zip(kinds, field):
        state = NEXT[state, kind]
        is_digit = kind == DIGIT
        digits[is_digit] = digits[is_digit] * 10 + (character[is_digit] - 48)
        after[kind == MARK] = 0
        after[is_digit & (state == FRACTION)] += 1
        minus |= character == ord('-')
    return state, digits, after, minus


def is_long(column):
    """Whether a column may have more digits than its type."""
    return column.length > (15 if column.type == 'Float64' else 18) or column.decimals >= len(POWERS)


def long_number(text, decimals):
    """The exact number of a text; None if the text is no number."""
    text = text.strip(' ')
    if not re.fullmatch(r'[+-]?([0-9]+[.,]?[0-9]*|[.,][0-9]+)', text):
        return None
    is_written = '.' in text or ',' in text
    if is_written and not decimals:
        return None
    return Decimal(text.replace(',', '.') if is_written else f'{text}e-{decimals}')


def is_missing_code(number, special):
    return next((is_missing for low, high, is_missing in special if Decimal(low) <= number <= Decimal(high)), False)


def long_cells(field, column):
    """The cells of a long column, each the nearest double. Special codes are compared with all digits."""
    texts = texts_of(field)
    special = CODES[column.codes].special if column.codes is not None else []
    made = {text: long_number(text, column.decimals) for text in set(texts)}
    missing = {text for text, number in made.items() if number is None or is_missing_code(number, special)}
    values = {text: 0.0 if text in missing else float(number) + 0.0 for text, number in made.items()}
    bad = sum(text != '' and made[text] is None for text in texts)
    return Cells(np.array([values[text] for text in texts], float),
                 np.array([text in missing for text in texts], bool)), bad


def scanned_numbers(field, column):
    state, digits, after, minus = scan(field, column.decimals > 0)
    missing = ~IS_NUMBER[state]
    digits = np.where(minus, -digits, digits)
    if column.type == 'Float64':
        digits = digits / POWERS[np.where(after < 0, column.decimals, after)] + 0.0
    digits[missing] = 0
    return Cells(digits, missing), int((missing & (state != START)).sum())


def numbers(field, column):
    """The numbers of a field, and how many of its texts are neither blank nor numbers."""
    digit = field - np.uint8(48)
    plain = (digit < 10).all(axis=0)
    number = digit[0].astype(np.int32 if column.length < 10 else np.int64)
    for row in digit[1:]:
        number *= 10
        number += row
    cells = Cells(number / POWERS[column.decimals] if column.type == 'Float64' else number.astype(np.int64),
                  np.zeros(len(number), bool))
    others = np.flatnonzero(~plain)
    if not len(others):
        return cells, 0
    scanned, bad = scanned_numbers(field[:, others], column)
    cells.values[others] = scanned.values
    cells.missing[others] = scanned.missing
    return cells, bad


def texts_of(field):
    """The texts of a field, without trailing blanks."""
    codes = np.array(field.T, np.uint32, order='C')
    codes[np.logical_and.accumulate(codes[:, ::-1] == 32, axis=1)[:, ::-1]] = 0
    return codes.view(f'U{field.shape[0]}').ravel().astype(object)


def is_within(column, values, low, high):
    """Whether each value is one of the codes."""
    if column.type == 'string':
        return values == low
    if column.type == 'Float64':
        return (values >= float(low)) & (values <= float(high))
    limits = np.iinfo(np.int64)
    first = max(int(Decimal(low).to_integral_value(ROUND_CEILING)), limits.min)
    last = min(int(Decimal(high).to_integral_value(ROUND_FLOOR)), limits.max)
    if first > last:
        return np.zeros(len(values), bool)
    return (values >= first) & (values <= last)


def without_special_codes(cells, column):
    """Makes the cells with special codes missing."""
    open_cells = ~cells.missing
    missing = cells.missing.copy()
    for low, high, is_missing in CODES[column.codes].special:
        found = open_cells & is_within(column, cells.values, low, high)
        open_cells &= ~found
        if is_missing:
            missing |= found
    return Cells(cells.values, missing)


def cells_of(field, column):
    """The cells of a column, and how many texts in it are neither blank nor numbers."""
    bad = 0
    if column.type == 'string':
        cells = Cells(texts_of(field), np.zeros(field.shape[1], bool))
    else:
        field = np.minimum(field, 255).astype(np.uint8, copy=False)
        if is_long(column):
            return long_cells(field, column)
        cells, bad = numbers(field, column)
    if column.codes is not None and CODES[column.codes].special:
        cells = without_special_codes(cells, column)
    return cells, bad


# ---------------------------------------------------------------------------------------------------------------------
# Blocks of the data file

ROW = None  # the key, in place of the name of a column, for rows in the table of a record


class Block:
    """The cells of the lines of a block, and its counts."""

    def __init__(self):
        self.lines = 0
        self.blank = 0
        self.unknown = 0
        self.rows = collections.Counter()  # by table
        self.bad = collections.Counter()  # by table and column
        self.cells = collections.defaultdict(list)  # by table and column: parts, in the order of the file


def field_columns(table):
    """The columns of a table that are taken from the lines. An item table has the ids of the table of its record."""
    return [column for column in table.columns
            if column.role == 'item' or (column.role == 'id' and table.record is None)]


def add_cells(block, table, column, field):
    cells, bad = cells_of(field, column)
    block.cells[table.name, column.name].append(cells)
    if bad:
        block.bad[table.name, column.name] += bad


def add_record_rows(block, table, matrix):
    for column in field_columns(table):
        add_cells(block, table, column, matrix[column.first - 1:column.first - 1 + column.length])
    block.rows[table.name] += matrix.shape[1]


def add_item_rows(block, table, matrix, first_row):
    """Adds a row for each occurrence that is not blank, and the row of its line in the table of its record."""
    filled = np.empty((matrix.shape[1], table.occurrences), bool)
    for number in range(table.occurrences):
        first = table.first - 1 + number * table.step
        filled[:, number] = (matrix[first:first + table.length] != 32).any(axis=0)
    lines, numbers_from_0 = np.nonzero(filled)
    present = np.zeros(len(lines), bool)
    block.cells[table.name, ROW].append(Cells(lines + first_row, present))
    block.cells[table.name, 'item_occ'].append(Cells(numbers_from_0 + 1, present))
    for column in field_columns(table):
        characters_from_0 = np.arange(column.first - 1, column.first - 1 + column.length)[:, None]
        add_cells(block, table, column, matrix[characters_from_0 + numbers_from_0 * table.step, lines])
    block.rows[table.name] += len(lines)


def add_lines(block, lines, chosen, place):
    """Adds the rows of the lines of one record."""
    table = TABLES[place]
    item_tables = [item_table for item_table in TABLES if item_table.record == place]
    width = max(width_of(member) for member in [table] + item_tables)
    for first in range(0, len(chosen), max(1, MATRIX // width)):
        first_row = block.rows[table.name]
        matrix = lines.cut(chosen[first:first + max(1, MATRIX // width)], 0, width)
        add_record_rows(block, table, matrix)
        for item_table in item_tables:
            add_item_rows(block, item_table, matrix, first_row)


def read_block(data, is_first, places=None):
    """Takes whole lines apart. "is_first" is whether they are the first of the file; "places" are the positions in
    TABLES of the record tables to make, all if None."""
    block = Block()
    lines = Lines(data, is_first)
    is_blank = lines.blank()
    is_open = ~is_blank & (lines.text[lines.starts] != ord('~'))
    is_known = is_open
    if RECORD_TYPE:
        types = lines.cut(np.arange(len(lines)), RECORD_TYPE[0] - 1, RECORD_TYPE[1])
        is_known = np.zeros(len(lines), bool)
        for mark in KNOWN_TYPES:
            is_known |= equals(types, mark)
        is_known &= is_open
    for place, table in enumerate(TABLES):
        if table.record is None and (places is None or place in places):
            is_chosen = is_known & equals(types, table.mark) if RECORD_TYPE else is_known
            add_lines(block, lines, np.flatnonzero(is_chosen), place)
    block.lines = len(lines)
    block.blank = int(is_blank.sum())
    block.unknown = int((~is_blank & ~is_known).sum())
    return block


# ---------------------------------------------------------------------------------------------------------------------
# Tables

def joined(parts, column_type):
    """The parts of a column as one array of pandas."""
    empty = np.empty(0, {'Int64': np.int64, 'Float64': float, 'string': object}[column_type])
    values = np.concatenate([empty] + [part.values for part in parts])
    missing = np.concatenate([np.empty(0, bool)] + [part.missing for part in parts])
    if column_type == 'Int64':
        return pd.arrays.IntegerArray(values, missing)
    if column_type == 'Float64':
        return pd.arrays.FloatingArray(values, missing)
    values[missing] = pd.NA
    return pd.arrays.StringArray(values)


def taken(blocks, table, name, column_type):
    """A column of all blocks. Their parts are released."""
    return joined([part for block in blocks for part in block.cells.pop((table.name, name), [])], column_type)


def case_numbers(ids):
    """A number for each row: equal for rows with the same ids. A missing id equals a missing id."""
    numbers_so_far = np.zeros(len(ids), np.int64)
    for name in ids.columns:
        codes, values = pd.factorize(ids[name].array)
        numbers_so_far = pd.factorize(numbers_so_far * (len(values) + 1) + codes + 1)[0]
    return numbers_so_far


def occurrence_numbers(ids, earlier=None):
    """The number of each row within its case, from 1. "earlier" has the ids of cases that began before these rows, and
    in the column "rows" how many rows each of them has had."""
    if earlier is None or earlier.empty:
        cases = pd.Series(case_numbers(ids))
        return cases.groupby(cases).cumcount().to_numpy() + 1
    names = list(ids.columns)
    known = len(earlier)
    cases = case_numbers(pd.concat([earlier[names], ids], ignore_index=True))
    before = np.zeros(cases.max() + 1, np.int64)
    before[cases[:known]] = earlier['rows']
    cases = pd.Series(cases[known:])
    return cases.groupby(cases).cumcount().to_numpy() + 1 + before[cases]


def ids_of(table):
    return [column for column in table.columns if column.role == 'id']


def has_occurrences(table):
    return any(column.role == 'occ' for column in table.columns)


def whole_numbers(values):
    return pd.arrays.IntegerArray(np.asarray(values, np.int64), np.zeros(len(values), bool))


def row_count(table, blocks):
    return sum(block.rows[table.name] for block in blocks)


def id_frame(table, columns, rows):
    """The ids of the rows of a table. Its columns are numbered."""
    ids = [columns[column.name] for column in ids_of(table)]
    return pd.DataFrame(dict(enumerate(ids)), index=pd.RangeIndex(rows))


def record_columns(table, blocks, earlier):
    columns = {column.name: taken(blocks, table, column.name, column.type) for column in field_columns(table)}
    if has_occurrences(table):
        ids = id_frame(table, columns, row_count(table, blocks))
        columns['occ'] = whole_numbers(occurrence_numbers(ids, earlier))
    return columns


def item_columns(table, blocks, record):
    """The columns of an item table. Its ids, and "occ", are those of the line in the table of the record."""
    columns = {column.name: taken(blocks, table, column.name, column.type)
               for column in table.columns if column.role in ('item', 'item_occ')}
    first_row = 0
    for block in blocks:
        for part in block.cells.get((table.name, ROW), []):
            part.values[:] += first_row
        first_row += block.rows[TABLES[table.record].name]
    rows = taken(blocks, table, ROW, 'Int64').to_numpy(np.int64)
    for column, source in zip(table.columns, TABLES[table.record].columns):
        if column.role in ('id', 'occ'):
            columns[column.name] = record[source.name].take(rows)
    return columns


def labels_of(table):
    """The labels of a table, of its columns and of their codes, as they are in the attribute "attrs" of a table."""
    coded = [column for column in table.columns if column.codes is not None]
    return {
        'label': table.label,
        'labels': {column.name: column.label for column in table.columns if column.label},
        'values': {column.name: dict(CODES[column.codes].values) for column in coded if CODES[column.codes].values},
        'ranges': {column.name: [list(row) for row in CODES[column.codes].ranges]
                   for column in coded if CODES[column.codes].ranges},
    }


def make_tables(blocks, earlier=None, places=None):
    """The tables of the blocks. "earlier" has, for each table, what occurrence_numbers needs."""
    made = {}
    frames = {}
    for place, table in enumerate(TABLES):
        if places is not None and (place if table.record is None else table.record) not in places:
            continue
        if table.record is None:
            made[place] = record_columns(table, blocks, (earlier or {}).get(table.name))
            columns = made[place]
        else:
            columns = item_columns(table, blocks, made[table.record])
        frames[table.name] = pd.DataFrame({column.name: columns[column.name] for column in table.columns},
                                          index=pd.RangeIndex(row_count(table, blocks)), copy=False)
        frames[table.name].attrs.update(labels_of(table))
    return frames


def codes_table():
    """The codes of all columns, as texts: one row for each code or range of codes."""
    rows = [(table.name, column.name) + row
            for table in TABLES for column in table.columns if column.codes is not None
            for row in CODES[column.codes].rows]
    return pd.DataFrame(rows, columns=CODES_COLUMNS, dtype='string')


# ---------------------------------------------------------------------------------------------------------------------
# The data file

def count_messages(rows, bad, unknown, blank):
    """The lines with the counts of a run."""
    messages = []
    for table in TABLES:
        messages.append(f'{table.name}: {rows[table.name]} rows')
        messages += [f'{table.name}.{column.name}: {bad[table.name, column.name]} values are no numbers'
                     for column in table.columns if bad[table.name, column.name]]
    if unknown:
        messages.append(f'{unknown} lines of no known record type')
    if blank:
        messages.append(f'{blank} blank lines')
    return messages


class Progress:
    """Reports every few seconds how much of the file is done."""

    def __init__(self, path, size, done):
        self.path = path
        self.size = size
        self.done = done
        self.next = time.monotonic() + PROGRESS

    def report(self, position):
        if time.monotonic() >= self.next:
            print(f'{self.path}: {100 * position // max(self.size, 1)} % {self.done}', file=sys.stderr)
            self.next = time.monotonic() + PROGRESS


def whole_lines(file, position=0, end=math.inf):
    """Yields the bytes of whole lines from the position of a file, some at a time, up to the line that holds the byte
    before the end."""
    while position < end:
        data = file.read(int(min(BLOCK, end - position)))
        if not data:
            return
        if not data.endswith(b'\n'):
            data += file.readline()
        position += len(data)
        yield data


def read_blocks(parts, has_first_line, places=None, report=lambda position: None):
    """Takes the lines of some parts of the file apart. Raises EncodingError with the number of the line in all parts."""
    blocks = []
    lines = 0
    position = 0
    for data in parts:
        try:
            blocks.append(read_block(data, has_first_line and not blocks, places))
        except EncodingError as error:
            raise EncodingError(lines + error.line) from None
        lines += blocks[-1].lines
        position += len(data)
        report(position)
    return blocks


def read_file(path):
    with open(path, 'rb') as file:
        try:
            return read_blocks(whole_lines(file), True, report=Progress(path, os.path.getsize(path), 'read').report)
        except EncodingError as error:
            raise DataError(encoding_message(path, error.line)) from None


def total(blocks):
    """The counts of some blocks: rows, texts that are no numbers, lines of no known type, blank lines."""
    return (sum((block.rows for block in blocks), collections.Counter()),
            sum((block.bad for block in blocks), collections.Counter()),
            sum(block.unknown for block in blocks), sum(block.blank for block in blocks))


def load(path=DATA):
    """Loads the data file. Returns a dictionary with the table of each record by its name, and the table "codes".

    The counts of rows, and of values that are no numbers, go to standard error."""
    blocks = read_file(path)
    for message in count_messages(*total(blocks)):
        print(message, file=sys.stderr)
    frames = make_tables(blocks)
    frames['codes'] = codes_table()
    return frames


def write(frames, directory):
    """Writes each table as CSV and as pickle. Files of an earlier run are replaced when all are written."""
    os.makedirs(directory, exist_ok=True)
    files = {table.name: table.file for table in TABLES}
    files['codes'] = 'codes'
    temporary = tempfile.mkdtemp(prefix='.load-', dir=directory)
    try:
        for name, frame in frames.items():
            frame.to_csv(os.path.join(temporary, files[name] + '.csv'), index=False, encoding='utf-8',
                         lineterminator='\n')
            frame.to_pickle(os.path.join(temporary, files[name] + '.pkl'))
        for name in os.listdir(temporary):
            os.replace(os.path.join(temporary, name), os.path.join(directory, name))
    finally:
        shutil.rmtree(temporary)


def main(arguments):
    if len(arguments) > 2 or any(argument in ('-h', '--help') for argument in arguments):
        print(f'Usage: python3 {os.path.basename(__file__)} [DATA [OUT]]', file=sys.stderr)
        return 2
    try:
        frames = load(arguments[0] if arguments else DATA)
        write(frames, arguments[1] if len(arguments) > 1 else '.')
    except (DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
