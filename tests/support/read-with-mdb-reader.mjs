// node read-with-mdb-reader.mjs MODULES FILE TABLE: the rows of a table as the npm package mdb-reader reads them, one JSON object a line.
// Dates as "YYYY-MM-DD HH:MM:SS", money as its text.
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

const [modules, file, table] = process.argv.slice(2);
const { default: MDBReader } = await import(pathToFileURL(`${modules}/mdb-reader/lib/node/index.js`));
const shown = (value) => (value instanceof Date ? value.toISOString().slice(0, 19).replace('T', ' ') : value);
for (const row of new MDBReader(readFileSync(file)).getTable(table).getData())
    console.log(JSON.stringify(Object.fromEntries(Object.entries(row).map(([column, value]) => [column, shown(value)]))));
