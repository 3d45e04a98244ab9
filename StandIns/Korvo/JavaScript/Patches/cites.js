// One cite of a citation, or one entry of a bibliography.
//
// Two things are other than in citeproc-js. A cite for which the style prints nothing (the author
// left out in a style that prints only authors, or an item without any data) would come out as a
// placeholder for programmers; it prints the year instead. And an entry that is printed alone can
// be told which names the one before it has printed.
import CSL from "citeproc";

import { yearOf } from "../Citations/items.js";
import { replace } from "./replace.js";

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

// Some styles print a year once for neighbouring cites of one author: "Smith 2001, p. 45" for two
// cites of which the second has no page. `before` are the years of the cite before. The author's
// own words are not to stand around nothing.
function repeatsYear({ tmp }, cite, before) {
  const { length } = tmp.years_used;
  const isKnown = length > 0 && before.length >= length && !cite.prefix && !cite.suffix;
  return isKnown && tmp.have_collapsed && before[length - 1] === tmp.years_used[length - 1];
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

// What makeBibliography has forgotten at its start.
const namesBefore = new WeakMap();

export function printAfter(engine, names, print) {
  namesBefore.set(engine, names);
  try {
    return print();
  } finally {
    namesBefore.delete(engine);
  }
}

function recallNamesBefore(engine) {
  if (engine.tmp.area === "bibliography" && namesBefore.has(engine)) {
    engine.tmp.last_rendered_name = namesBefore.get(engine);
    namesBefore.delete(engine);
  }
}

replace(
  CSL,
  "getCite",
  (printCite) =>
    function (item, cite, previousId, keepNumbers) {
      recallNamesBefore(this);
      const queue = this.output.queue;
      const length = queue.length;
      const years = this.tmp.last_years_used;
      const id = printCite.call(this, item, cite, previousId, keepNumbers);
      const inCitation = this.tmp.area === "citation" && !this.tmp.just_looking && cite;
      if (
        !inCitation ||
        printsMoreThanAffixes(queue[length], cite) ||
        repeatsYear(this, cite, years)
      ) {
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
    },
);
