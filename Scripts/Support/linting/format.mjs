// Formats JavaScript by prettier and Python by ruff, and lets ruff check the Python.
//
// Standard input: {"files": [PATH…], "prettier": {options}, "ruff": {options}}. Standard output, an
// object a file: {"path", "formatted"} with, for Python, "findings": [{"line", "code", "message"}];
// or, for a file that cannot be parsed, {"path", "error"}.
import { readFileSync } from "node:fs";

import { PositionEncoding, Workspace } from "@astral-sh/ruff-wasm-nodejs";
import { format } from "prettier";

const request = JSON.parse(readFileSync(0, "utf8"));
const ruff = new Workspace(request.ruff, PositionEncoding.Utf32);

function python(source) {
  const findings = ruff.check(source).map(({ code, message, start_location: { row } }) => ({
    line: row,
    code,
    message,
  }));
  return { formatted: ruff.format(source), findings };
}

async function javaScript(source) {
  return { formatted: await format(source, { ...request.prettier, parser: "babel" }) };
}

async function outcome(path) {
  const source = readFileSync(path, "utf8");
  try {
    return { path, ...(/\.m?js$/.test(path) ? await javaScript(source) : python(source)) };
  } catch (error) {
    return { path, error: String(error.message ?? error) };
  }
}

console.log(JSON.stringify(await Promise.all(request.files.map(outcome))));
