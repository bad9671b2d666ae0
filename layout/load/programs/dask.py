<<head>>
import collections
import contextlib
import importlib
import os
import pickle
import re
import shutil
import sys
import zlib

import dask
import dask.dataframe
import distributed
import pandas as pd
from dask.utils import parse_bytes

<<settings>>

# The module that takes lines apart. It has the layout of the data file, and is in the directory of this program.
DIRECTORY = os.path.dirname(os.path.abspath(__file__))
if DIRECTORY not in sys.path:
    sys.path.insert(0, DIRECTORY)
program = importlib.import_module(MODULE)
DATA = program.DATA

# The cases of all blocks are compared in groups, one task each, so that no task needs the cases of the whole file. More
# groups need less memory and more tasks: their number times that of the blocks.
BLOCKS_IN_GROUP = 4
MAX_GROUPS = 64


# ---------------------------------------------------------------------------------------------------------------------
# On the workers: blocks of the data file. A line belongs to the block in which it begins.

def read_range(path, first, end):
    """Yields the bytes of the lines that begin in this range, some lines at a time."""
    with open(path, 'rb') as file:
        if first > 0:
            # The line that holds the byte before the range began before the range.
            file.seek(first - 1)
            file.readline()
        yield from program.whole_lines(file, file.tell(), end)


def read(path, first, end, places=None):
    return program.read_blocks(read_range(path, first, end), first == 0, places)


def small_type(column):
    """The smallest type for the values of an id. The ids of all cases are with the workers at once."""
    if column.type != 'Int64':
        return column.type
    return 'Int16' if column.length < 5 else 'Int32' if column.length < 10 else 'Int64'


def cases_of(table, blocks):
    """The ids of the cases in a table of a block, and the number of rows of each."""
    columns = {column.name: program.taken(blocks, table, column.name, column.type)
               for column in program.ids_of(table)}
    ids = program.id_frame(table, columns, program.row_count(table, blocks))
    case = pd.Series(program.case_numbers(ids), dtype='int64')
    cases = ids[~case.duplicated()].reset_index(drop=True)
    cases = cases.astype({number: small_type(column) for number, column in enumerate(program.ids_of(table))})
    return cases.assign(rows=case.value_counts(sort=False).sort_index().to_numpy(dtype='int32'))


def packed(cases):
    """Cases as compressed bytes: those of all blocks are kept until they are compared."""
    return zlib.compress(pickle.dumps(cases), 1)


def unpacked(data):
    return pickle.loads(zlib.decompress(data))


def survey(path, first, end, groups):
    """The counts of a block, and for each group the cases, packed, of its tables that have the column "occ"."""
    found = [{} for _ in range(groups)]
    try:
        blocks = read(path, first, end)
    except program.EncodingError as error:
        return {'wrong_line': error.line}, [packed(cases) for cases in found]
    counts = {'lines': sum(block.lines for block in blocks), 'total': program.total(blocks)}
    for table in program.TABLES:
        if table.record is None and program.has_occurrences(table):
            cases = cases_of(table, blocks)
            group = group_of(cases.drop(columns='rows'), groups)
            for number in range(groups):
                found[number][table.name] = cases[group == number].reset_index(drop=True)
    return counts, [packed(cases) for cases in found]


def group_of(ids, groups):
    """The group of each case. It depends on its ids alone."""
    if ids.shape[1] == 0:
        return pd.Series(0, index=ids.index)
    return pd.util.hash_pandas_object(ids, index=False) % groups


def earlier_rows(parts):
    """For each block, the cases of a group with rows in the blocks before it, and the number of these rows."""
    parts = [unpacked(part) for part in parts]
    found = [{} for _ in parts]
    for name in {name for part in parts for name in part}:
        cases = pd.concat([part[name].assign(block=number) for number, part in enumerate(parts) if name in part],
                          ignore_index=True)
        ids = cases.drop(columns=['rows', 'block'])
        case = pd.Series(program.case_numbers(ids))
        cases['rows'] = cases['rows'].groupby(case).cumsum() - cases['rows']
        cases = cases[cases['rows'] > 0]
        for number, part in cases.groupby('block'):
            found[number][name] = part.drop(columns='block').reset_index(drop=True)
    return found


def joined(parts):
    """The cases of all groups with rows in earlier blocks, for one block."""
    names = {name for part in parts for name in part}
    return {name: pd.concat([part[name] for part in parts if name in part], ignore_index=True) for name in names}


def part_of_table(path, first, end, place, name, earlier):
    """The rows of a block in one table."""
    return program.make_tables(read(path, first, end, [place]), earlier, [place])[name]


def write_part(directory, number, path, first, end, earlier):
    """Writes the rows of a block in all tables."""
    for name, frame in program.make_tables(read(path, first, end), earlier).items():
        frame.to_csv(os.path.join(directory, files()[name], f'part-{number:04}.csv'), index=False, encoding='utf-8',
                     lineterminator='\n')


# ---------------------------------------------------------------------------------------------------------------------
# The whole file

def files():
    return {table.name: table.file for table in program.TABLES}


def block_ranges(path, blocksize):
    size = os.path.getsize(path)
    step = parse_bytes(blocksize)
    return [(first, min(first + step, size)) for first in range(0, max(size, 1), step)]


def computed(path, tasks, done):
    """The results of tasks, one for each block. On a cluster, it is reported every few seconds how many are done."""
    try:
        client = distributed.get_client()
    except ValueError:
        return dask.compute(*tasks)
    futures = client.compute(tasks)
    progress = program.Progress(path, len(futures), done)
    for number, _ in enumerate(distributed.as_completed(futures), 1):
        progress.report(number)
    return client.gather(futures)


def surveyed(path, ranges):
    """Reads the file once. Returns the counts of each block, and for each block the cases that began before it. These
    stay with the workers."""
    groups = min((len(ranges) + BLOCKS_IN_GROUP - 1) // BLOCKS_IN_GROUP, MAX_GROUPS)
    found = [dask.delayed(survey, nout=2)(path, first, end, groups) for first, end in ranges]
    compared = [dask.delayed(earlier_rows, nout=len(ranges))([cases[group] for _, cases in found])
                for group in range(groups)]
    earlier = [dask.delayed(joined)([group[number] for group in compared]) for number in range(len(ranges))]
    kept = dask.persist(*[counts for counts, _ in found], *earlier)
    return computed(path, kept[:len(ranges)], 'counted'), kept[len(ranges):]


def check_encoding(path, counts):
    before = 0
    for count in counts:
        if 'wrong_line' in count:
            raise program.DataError(program.encoding_message(path, before + count['wrong_line']))
        before += count['lines']


def report_counts(counts):
    rows, bad, unknown, blank = zip(*(count['total'] for count in counts))
    for message in program.count_messages(sum(rows, collections.Counter()), sum(bad, collections.Counter()),
                                          sum(unknown), sum(blank)):
        print(message, file=sys.stderr)


def send_programs():
    """Sends the workers of a cluster this program and the module that it uses."""
    with contextlib.suppress(ValueError):
        client = distributed.get_client()
        for module in (program.__file__, __file__):
            client.upload_file(os.path.abspath(module))


class Survey:
    """The blocks of a data file, their counts, and the cases that began before each of them."""

    def __init__(self, path, blocksize):
        self.path = os.path.abspath(path)
        with open(path, 'rb'):
            self.ranges = block_ranges(path, blocksize)
        send_programs()
        counts, self.earlier = surveyed(self.path, self.ranges)
        check_encoding(path, counts)
        report_counts(counts)

    def blocks(self):
        return zip(self.ranges, self.earlier)


def load(path=DATA, blocksize='64MB'):
    """Reads the data file in blocks of this size, on the workers of the present client of dask if there is one. Returns
    a dictionary with the table of each record by its name as a DataFrame of dask, and the table "codes".

    The file is read once to count its rows, and again when a table is computed. All workers must reach the file by its
    path. The counts go to standard error."""
    survey_of_file = Survey(path, blocksize)
    empty = program.make_tables([])
    frames = {}
    for place, table in enumerate(program.TABLES):
        record = place if table.record is None else table.record
        parts = [dask.delayed(part_of_table)(survey_of_file.path, first, end, record, table.name, earlier)
                 for (first, end), earlier in survey_of_file.blocks()]
        frames[table.name] = dask.dataframe.from_delayed(parts, meta=empty[table.name], verify_meta=False)
    frames['codes'] = dask.dataframe.from_pandas(program.codes_table(), npartitions=1)
    return frames


def write(path, directory, blocksize='64MB'):
    """Writes each table as CSV files, one for each block, to a directory of its name. The files of an earlier run
    are replaced when all are written. All workers must reach the directory by its path."""
    survey_of_file = Survey(path, blocksize)
    os.makedirs(directory, exist_ok=True)
    temporary = os.path.join(os.path.abspath(directory), '.load')
    shutil.rmtree(temporary, ignore_errors=True)
    try:
        for name in files().values():
            os.makedirs(os.path.join(temporary, name))
        tasks = [dask.delayed(write_part)(temporary, number, survey_of_file.path, first, end, earlier)
                 for number, ((first, end), earlier) in enumerate(survey_of_file.blocks())]
        computed(path, tasks, 'written')
        program.codes_table().to_csv(os.path.join(temporary, 'codes.csv'), index=False, encoding='utf-8',
                                     lineterminator='\n')
        replace(temporary, directory)
    finally:
        shutil.rmtree(temporary, ignore_errors=True)


def replace(temporary, directory):
    """Moves the new files to their place. Only files that an earlier run can have made are removed."""
    for name in files().values():
        target = os.path.join(directory, name)
        os.makedirs(target, exist_ok=True)
        for old in os.listdir(target):
            if re.fullmatch(r'part-[0-9]{4,}\.csv', old):
                os.remove(os.path.join(target, old))
        for part in os.listdir(os.path.join(temporary, name)):
            os.replace(os.path.join(temporary, name, part), os.path.join(target, part))
    os.replace(os.path.join(temporary, 'codes.csv'), os.path.join(directory, 'codes.csv'))


def client_for(address):
    """A client of the scheduler with this address, or of workers on this machine."""
    if address:
        return distributed.Client(address)
    return distributed.Client(host='127.0.0.1', dashboard_address='127.0.0.1:0')


def main(arguments):
    if len(arguments) not in (2, 3):
        print(f'Usage: python3 {os.path.basename(__file__)} DATA OUT [SCHEDULER]', file=sys.stderr)
        return 2
    # Tasks refer to the functions of this program as a module, which the workers import.
    this = importlib.import_module(os.path.splitext(os.path.basename(__file__))[0])
    try:
        with this.client_for(arguments[2] if len(arguments) == 3 else None):
            this.write(arguments[0], arguments[1])
    except (this.program.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
