// Reads a library file into CSL-JSON items, whatever its kind.
import { readBibTeX } from "./bibtex.js";
import { readCslJson } from "./cslJson.js";
import { readRIS } from "./ris.js";
import { genres } from "./terms.js";

const readers = { bib: readBibTeX, ris: readRIS, json: readCslJson };

// LaTeX writes an accent on a dotless i or j; composed, the letters are the usual ones.
function composed(value) {
  if (typeof value === "string") {
    const dotted = value
      .replace(/\u0131(?=[\u0300-\u036f])/g, "i")
      .replace(/\u0237(?=[\u0300-\u036f])/g, "j");
    return dotted.normalize("NFC");
  }
  if (Array.isArray(value)) {
    return value.map(composed);
  }
  if (value !== null && typeof value === "object") {
    return Object.fromEntries(
      Object.entries(value).map(([name, member]) => [name, composed(member)]),
    );
  }
  return value;
}

function tidy({ key, item }) {
  const { "citation-key": ignoredKey, id: ignoredId, ...fields } = composed(item);
  fields.genre = genres.get(fields.genre) ?? fields.genre;
  if (typeof fields.type !== "string" || !fields.type) {
    fields.type = "document";
  }
  return JSON.stringify({ id: key, ...fields });
}

// Of entries that are the same in every field one is enough; others that share a key are
// all kept, since which of them is meant only the author can tell.
function withoutRepetitions(references, problems) {
  const seen = new Map();
  return references.filter((reference) => {
    const first = reference.key && seen.get(reference.key);
    if (!first) {
      seen.set(reference.key, reference);
      return true;
    }
    const repeated = first.json === reference.json;
    const consequence = repeated
      ? "the two are the same, one is kept"
      : "both are kept, and citing this key finds both";
    problems.push({
      line: reference.line,
      reason:
        `${reference.key}: the citation key stands already in line ${first.line}; ` + consequence,
    });
    return !repeated;
  });
}

// `kind` is that of the file: bib, ris or json. `onProgress` is told in words how far the reading
// is. Gives parallel arrays: keys and items (JSON) of the references, lines and reasons of the
// problems.
export function readLibrary(kind, text, onProgress = () => {}) {
  const { references, problems } = readers[kind](text, onProgress);
  const tidied = references.map((reference) => ({ ...reference, json: tidy(reference) }));
  const kept = withoutRepetitions(tidied, problems);
  problems.sort((left, right) => left.line - right.line);
  return {
    keys: kept.map(({ key }) => key),
    items: kept.map(({ json }) => json),
    problemLines: problems.map(({ line }) => line),
    problemReasons: problems.map(({ reason }) => reason),
  };
}
