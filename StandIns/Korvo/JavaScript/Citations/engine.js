// A citeproc-js engine for one document.
//
// Two things are changed in citeproc-js itself. A cite for which the style prints nothing
// (the author left out in a style that prints only authors, or an item without any data)
// would come out as a placeholder for programmers; it prints the year instead. And
// strings are compared by one collator for each engine, where citeproc-js would make a
// new one for every comparison.
import CSL from "citeproc";

import { yearOf } from "./items.js";
import { cleanXml, outputFormat } from "./markers.js";

CSL.debug = () => {};

function printsText(blob) {
  if (blob === undefined || blob === null) {
    return false;
  }
  if (typeof blob === "string") {
    return blob !== "";
  }
  if (Array.isArray(blob)) {
    return blob.some(printsText);
  }
  return blob.num !== undefined || printsText(blob.blobs);
}

// The level that a cite leaves on the queue holds the author's own prefix and suffix too.
function printsMoreThanAffixes(level, cite) {
  if (!level || !Array.isArray(level.blobs)) {
    return printsText(level);
  }
  const last = cite.suffix ? level.blobs.length - 1 : level.blobs.length;
  return level.blobs.slice(cite.prefix ? 1 : 0, last).some(printsText);
}

// The citation layout's own first and last steps (they print the author's prefix and
// suffix) with the year between them in place of everything that the style prescribes.
function yearTokens(engine) {
  const tokens = engine.citation.tokens;
  const start = tokens.findIndex(
    (token) => token.name === "layout" && token.tokentype === CSL.START,
  );
  const end = tokens.findLastIndex(
    (token) => token.name === "layout" && token.tokentype === CSL.END,
  );
  const year = new CSL.Token("text", CSL.SINGLETON);
  year.execs.push((state, item) => {
    state.output.append(yearOf(state, item), "empty");
  });
  return [...tokens.slice(start, start + 2), year, ...tokens.slice(end - 1, end + 1)].map(
    (token, index) =>
      Object.assign(Object.create(Object.getPrototypeOf(token)), token, { next: index + 1 }),
  );
}

const printCite = CSL.getCite;
CSL.getCite = function (item, cite, previousId, keepNumbers) {
  const queue = this.output.queue;
  const length = queue.length;
  const id = printCite.call(this, item, cite, previousId, keepNumbers);
  const inCitation = this.tmp.area === "citation" && !this.tmp.just_looking && cite;
  if (!inCitation || printsMoreThanAffixes(queue[length], cite)) {
    return id;
  }
  queue.length = length;
  this.tmp.cite_locales.pop();
  const tokens = this.citation.tokens;
  this.citation.tokens = yearTokens(this);
  try {
    return printCite.call(this, item, cite, previousId, keepNumbers);
  } finally {
    this.citation.tokens = tokens;
  }
};

const collators = new Map();

function collatorOf(locale) {
  let collator = collators.get(locale);
  if (!collator) {
    collator = new Intl.Collator(locale, {
      sensitivity: "base",
      ignorePunctuation: true,
      numeric: true,
    });
    collators.set(locale, collator);
  }
  return collator;
}

// The order of citeproc-js (getSortCompare), with its collator kept, and each text's small letters
// too. These are the ones of the style's language: citeproc-js takes the language of the work that
// was printed last, whatever that has to do with those that are compared.
function comparisonOf(engine) {
  const smallLetters = new Map();
  let locale;
  let collator;
  const inSmallLetters = (text) => {
    let small = smallLetters.get(text);
    if (small === undefined) {
      small = text.toLocaleLowerCase(locale);
      smallLetters.set(text, small);
    }
    return small;
  };
  return (left, right) => {
    locale ??= engine().opt["default-locale-sort"];
    collator ??= collatorOf(locale);
    return collator.compare(inSmallLetters(left), inSmallLetters(right));
  };
}

// `style` is the text of the CSL file, `locale` the language that overrides its own
// (empty: none), `readLocale` gives the text of a CSL locale file by its name ("en-US"),
// `items` maps ids to items.
export function makeEngine(style, locale, readLocale, items) {
  let engine;
  const system = {
    retrieveLocale: (name) => cleanXml(readLocale(name)),
    retrieveItem: (id) => items.get(id),
    stringCompare: comparisonOf(() => engine),
  };
  engine = new CSL.Engine(system, cleanXml(style), locale || undefined, Boolean(locale));
  // A library's note field is a note, not a place for more fields.
  engine.opt.development_extensions.field_hack = false;
  engine.setOutputFormat(outputFormat);
  return engine;
}

export const isNoteStyle = (engine) => engine.opt.xclass === "note";
