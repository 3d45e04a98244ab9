// BibTeX and BibLaTeX files. What is broken costs as little as it can: a field where a field is
// broken, and nothing that another entry needs.
import { Abbreviations } from "./bibtexAbbreviations.js";
import { EntryFields } from "./bibtexFields.js";
import { readEntries } from "./bibtexFile.js";
import { withInheritance } from "./bibtexInheritance.js";
import { itemOf } from "./bibtexItem.js";

// Settings of BibTeX styles, which look like entries.
const settings = /^(control|.*bstctl|bibtexkeypattern)$/;

// The first of fields that bear one name counts, as for BibTeX.
function fieldsByName(entry) {
  const fields = new Map();
  for (const [given, pieces] of entry.fields) {
    const name = given.toLowerCase();
    const first = fields.get(name);
    if (!first) {
      fields.set(name, { pieces, isRepeated: false });
    } else if (JSON.stringify(first.pieces) !== JSON.stringify(pieces)) {
      first.isRepeated = true;
    }
  }
  return fields;
}

// Finds entries by their keys. TeX cares for capital letters, people less.
function finder(works) {
  const byKey = new Map();
  const byFoldedKey = new Map();
  for (const work of works) {
    const folded = work.key.toLowerCase();
    byKey.set(work.key, byKey.get(work.key) ?? work);
    byFoldedKey.set(folded, byFoldedKey.get(folded) ?? work);
  }
  return (key) => byKey.get(key) ?? byFoldedKey.get(key.toLowerCase());
}

// Telling costs little, so often.
const entriesBetweenNews = 100;

export function readBibTeX(text, onProgress) {
  const problems = [];
  const tell = ({ line, key, kind }, reason) => {
    problems.push({ line, reason: `${key || "@" + kind}: ${reason}` });
  };
  const entries = readEntries(text, (count) => {
    if (count % entriesBetweenNews === 0) {
      onProgress(`${count} entries found`);
    }
  });
  const abbreviations = new Abbreviations();
  for (const entry of entries) {
    entry.problems.forEach((reason) => tell(entry, reason));
    if (!entry.closed) {
      const lost = entry.fields.length > 0 ? "what was read of it is kept" : "it is left out";
      tell(entry, `the entry is not closed; ${lost}`);
    }
    if (entry.kind === "string") {
      for (const [name, pieces] of entry.fields) {
        abbreviations.define(name, pieces, (reason) => problems.push({ line: entry.line, reason }));
      }
    }
  }
  const works = entries
    .filter(({ kind, fields, closed }) => kind !== "string" && (closed || fields.length > 0))
    .map((entry) => ({ ...entry, fields: fieldsByName(entry) }));

  const find = finder(works);
  const textOf = (pieces, report) => abbreviations.textOf(pieces, report);
  const keysOf = (work, name) => {
    const field = work.fields.get(name);
    return field
      ? textOf(field.pieces, () => {})
          .split(",")
          .map((key) => key.trim())
          .filter(Boolean)
      : [];
  };
  const references = [];
  for (const [index, work] of works.entries()) {
    if (index % entriesBetweenNews === 0) {
      onProgress(`${index} of ${works.length} entries`);
    }
    if (settings.test(work.kind)) {
      tell(work, "this is a setting of a style, no work");
    } else if (work.kind !== "xdata") {
      const onMissing = (key) => tell(work, `it refers to "${key}", which is not in the file`);
      const fields = withInheritance(work, find, keysOf, onMissing);
      const reader = new EntryFields(fields, textOf, (reason) => tell(work, reason));
      references.push({ line: work.line, key: work.key, item: itemOf(work.kind, reader) });
    }
  }
  return { references, problems };
}
