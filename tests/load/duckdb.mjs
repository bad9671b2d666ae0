// Runs SQL in DuckDB for the tests.
//
//     node duckdb.mjs MODULES < JOBS > RESULTS
//
// MODULES is a directory that has the package @duckdb/node-api in node_modules. A job is one line of JSON:
//     {"database": path, "before": SQL, "script": path of a program, "stops": true, "queries": [SQL, ...]}
// All statements of the program are run in one session, as a client does: after an error the next one is run, or none if
// "stops" is true. The result is one line of JSON: {"errors": [message, ...], "counts": [text, ...], "answers": [{"columns":
// [names], "types": [names], "rows": [[cell, ...], ...]}, ...]}. "counts" are the rows of the statements that have one
// column of this name.
import { createRequire } from 'node:module';
import { readFileSync } from 'node:fs';
import { createInterface } from 'node:readline';

const { DuckDBInstance } = createRequire(process.argv[2] + '/')('@duckdb/node-api');

async function answer(prepared) {
  const result = await prepared.run();
  return { columns: result.columnNames(), types: result.columnTypes().map(String), rows: await result.getRowsJson() };
}

// The package leaves out a byte-order mark at the start of a text, so each text is read with a character before it.
async function exactAnswer(connection, query) {
  const { columns, types } = await answer(await connection.prepare(`SELECT * FROM (${query}) LIMIT 0`));
  const texts = types.map(type => type === 'VARCHAR');
  const names = columns.map(name => `"${name.replaceAll('"', '""')}"`);
  const cells = names.map((name, place) => (texts[place] ? `'=' || ${name} AS ${name}` : name));
  const { rows } = await answer(await connection.prepare(`SELECT ${cells.join(', ')} FROM (${query})`));
  return { columns, types, rows: rows.map(row => row.map((cell, place) => (cell && texts[place] ? cell.slice(1) : cell))) };
}

async function runScript(connection, job, result) {
  const statements = await connection.extractStatements(readFileSync(job.script, 'utf8'));
  for (let number = 0; number < statements.count; number++) {
    try {
      const { columns, rows } = await answer(await statements.prepare(number));
      if (columns.length === 1 && columns[0] === 'counts') result.counts.push(...rows.map(row => row[0]));
    } catch (error) {
      result.errors.push(error.message);
      if (job.stops) return;
    }
  }
}

async function run(job) {
  const result = { errors: [], counts: [], answers: [] };
  const instance = await DuckDBInstance.create(job.database || ':memory:');
  const connection = await instance.connect();
  try {
    if (job.before) await connection.run(job.before);
    if (job.script) await runScript(connection, job, result);
    for (const query of job.queries || []) result.answers.push(await exactAnswer(connection, query));
  } catch (error) {
    result.errors.push(error.message);
  }
  connection.closeSync();
  instance.closeSync();
  return result;
}

// JSON has no -0, so it is a text.
const withNegativeZero = (_, value) => (Object.is(value, -0) ? '-0' : value);

for await (const line of createInterface({ input: process.stdin })) {
  console.log(JSON.stringify(await run(JSON.parse(line)), withNegativeZero));
}
