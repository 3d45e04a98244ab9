// Reads .bib files with one of several readers: node read.mjs READER FILE...
//
// READER is korvo's own script (build/javascript/imports.js), or the name of an npm package that
// was installed in the working directory: @citation-js/plugin-bibtex, @retorquere/bibtex-parser or
// biblatex-csl-converter. Prints a JSON object: for each file its references as
// { key, family, authors, year, title, ... }, the number of problems told, and the seconds.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { runInThisContext } from "node:vm";
import { pathToFileURL } from "node:url";

const [readerName, ...files] = process.argv.slice(2);

const fromHere = (name) => import(pathToFileURL(createRequire(`${process.cwd()}/`).resolve(name)));

const nameOf = (person) => person?.family ?? person?.literal ?? person?.lastName ?? person?.name;

// "and others" is no person.
const personsOf = (names) => names?.filter((name) => nameOf(name) !== "others") ?? [];

// What is compared, of a CSL item.
const ofCsl = (key, item) => ({
  key,
  authors: personsOf(item.author).length,
  family: nameOf(item.author?.[0]) ?? "",
  year: item.issued?.["date-parts"]?.[0]?.[0] ?? "",
  title: item.title ?? "",
  "container-title": item["container-title"] ?? "",
  volume: item.volume ?? "",
  issue: item.issue ?? "",
  page: item.page ?? "",
  publisher: item.publisher ?? "",
  DOI: item.DOI ?? "",
  URL: item.URL ?? "",
});

// And of BibTeX's fields as they are.
const ofFields = (key, { author, ...fields }) => ({
  key,
  authors: personsOf(author).length,
  family: nameOf(author?.[0]) ?? "",
  year: /-?\d{4}/.exec(fields.date ?? fields.year ?? "")?.[0] ?? "",
  title: [fields.title, fields.subtitle].filter(Boolean).join(": "),
  "container-title": fields.journaltitle ?? fields.journal ?? fields.booktitle ?? "",
  volume: fields.volume ?? "",
  issue: fields.number ?? "",
  page: fields.pages ?? "",
  publisher: [fields.publisher ?? fields.institution ?? ""].flat().join(" and "),
  DOI: fields.doi ?? "",
  URL: fields.url ?? "",
});

const readers = {
  async "@citation-js/plugin-bibtex"() {
    const { plugins } = await fromHere("@citation-js/core");
    await fromHere("@citation-js/plugin-bibtex");
    return (text) => {
      const items = plugins.input.chain(text, {
        forceType: "@biblatex/text",
        generateGraph: false,
      });
      return { references: items.map((item) => ofCsl(item.id, item)), problems: 0 };
    };
  },
  async "@retorquere/bibtex-parser"() {
    const { parse } = await import(
      // Its own entry point is of a kind that node refuses.
      pathToFileURL("node_modules/@retorquere/bibtex-parser/dist/esm/index.js")
    );
    return (text) => {
      const { entries, errors } = parse(text, { sentenceCase: false });
      const references = entries.map(({ key, fields }) => ofFields(key, fields));
      return { references, problems: errors.length };
    };
  },
  async "biblatex-csl-converter"() {
    const { parse, CSLExporter } = await fromHere("biblatex-csl-converter");
    return (text) => {
      const { entries, errors, warnings } = parse(text, { processUnknown: true });
      const items = new CSLExporter(entries).parse();
      const references = Object.entries(entries).map(([id, { entry_key: key }]) =>
        ofCsl(key, items[id] ?? items[key] ?? {}),
      );
      return { references, problems: errors.length + warnings.length };
    };
  },
};

async function ours(file) {
  runInThisContext(`${readFileSync(file, "utf8")};globalThis.korvo = korvo`);
  return (text) => {
    const { keys, items, problemReasons } = globalThis.korvo.readLibrary("bib", text);
    const references = items.map((json, index) => ofCsl(keys[index], JSON.parse(json)));
    return { references, problems: problemReasons.length };
  };
}

function textOf(file) {
  const bytes = readFileSync(file);
  try {
    return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
  } catch {
    return new TextDecoder("windows-1252").decode(bytes);
  }
}

// The readers' own remarks are no part of the answer.
console.log = console.warn = console.error = console.debug = () => {};
const read = await (readers[readerName]?.() ?? ours(readerName));
const answer = {};
for (const file of files) {
  const text = textOf(file);
  const beginning = performance.now();
  try {
    answer[file] = read(text);
  } catch (error) {
    answer[file] = { references: [], problems: 0, refusal: String(error?.message ?? error) };
  }
  answer[file].seconds = (performance.now() - beginning) / 1000;
}
process.stdout.write(JSON.stringify(answer));
