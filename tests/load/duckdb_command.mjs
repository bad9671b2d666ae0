// Stands in for the command `duckdb -csv DATABASE [-c SQL]` in the tests of the examples: the package for Node has the engine
// without its command line. Runs the SQL, or that of standard input, and prints the rows of each query as CSV.
//
//     node duckdb_command.mjs MODULES -csv DATABASE [-c SQL] [< SQL]
import { createRequire } from 'node:module';
import { readFileSync } from 'node:fs';

const [modules, mode, database, option, text] = process.argv.slice(2);
const { DuckDBInstance, ResultReturnType } = createRequire(modules + '/')('@duckdb/node-api');
if (mode !== '-csv') throw new Error(`unknown option ${mode}`);

const quoted = cell => (/[",\n]/.test(cell) ? `"${cell.replaceAll('"', '""')}"` : cell);
const line = cells => cells.map(cell => quoted(String(cell ?? ''))).join(',');

const instance = await DuckDBInstance.create(database);
const connection = await instance.connect();
const statements = await connection.extractStatements(option === '-c' ? text : readFileSync(0, 'utf8'));
for (let number = 0; number < statements.count; number++) {
  const result = await (await statements.prepare(number)).run();
  if (result.returnType !== ResultReturnType.QUERY_RESULT) continue;
  console.log([result.columnNames(), ...(await result.getRowsJson())].map(line).join('\n'));
}
connection.closeSync();
instance.closeSync();
