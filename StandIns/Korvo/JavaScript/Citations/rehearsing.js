// Formats a few works at a time for nothing but what is remembered of them (see memory.js).
import CSL from "citeproc";

import { attemptBibliography, prepare, printCitations } from "./document.js";
import { makeEngine } from "./engine.js";
import { itemIndex, readItems } from "./request.js";
import { sortCites, SortKeys } from "./sorting.js";

// To make an engine takes as long as to print some works in it, and a rehearsal goes on for
// hundreds of turns: it keeps the engine of the last one. The texts are seen by nobody, so that
// what an engine may keep of an earlier document's works does no harm to a document.
let last;

function emptyEngine(request, readLocale, items) {
  const { style, locale, engine } = last ?? {};
  // One that fails is not used again.
  last = undefined;
  if (style !== request.style || locale !== request.locale) {
    return makeEngine(request, readLocale, items);
  }
  engine.sys.retrieveItem = (id) => items.get(id);
  // As restoreProcessorState begins a new document, and in this order.
  engine.registry = new CSL.Registry(engine);
  engine.tmp = new CSL.Engine.Tmp();
  engine.disambiguate = new CSL.Disambiguation(engine);
  engine.output.checkNestedBrace = undefined;
  return engine;
}

// What a printing leaves behind for the next is of two kinds, by what was printed before. In a
// document hardly a work is the first of which something is printed; so here none of those is that
// are rehearsed. It comes first in every order.
const opening = JSON.stringify({
  type: "article-journal",
  author: [{ family: "0", given: "0" }],
  title: "0",
  "container-title": "0",
  volume: "1",
  page: "1",
  issued: { "date-parts": [[1]] },
});

// A document that cites each work once, alone.
function documentOf(request) {
  const items = [opening, ...request.items];
  return {
    ...request,
    ids: ["", ...request.ids],
    items,
    listed: items.map(() => true),
    groupSizes: items.map(() => 1),
    citeItems: items.map((ignored, index) => index),
    citeOptions: items.map(() => 0),
    citeTexts: [],
  };
}

// What several works at one place are sorted by is asked for only there.
function sortTogether(engine, items) {
  const cites = [...items.keys()].map((id) => [engine.retrieveItem(id), { id }]);
  sortCites(engine, new SortKeys(engine), cites);
}

// What is remembered of a text with numbers holds for all numbers of as many digits.
const firstNumbers = [40, 400];

function* numberings({ opt, registry }, items) {
  for (const first of opt.update_mode === CSL.NUMERIC ? firstNumbers : [1]) {
    for (const id of items.keys()) {
      registry.registry[id].seq = first + itemIndex(id);
    }
    yield first;
  }
}

export function rehearseDocument(asked, readLocale) {
  const request = documentOf(asked);
  const items = readItems(request);
  const engine = prepare(request, items, () => emptyEngine(request, readLocale, items));
  // First all citations, as in a document.
  for (const ignored of numberings(engine, items)) {
    printCitations(request, engine);
  }
  sortTogether(engine, items);
  for (const ignored of numberings(engine, items)) {
    attemptBibliography(request, engine, items);
  }
  last = { style: request.style, locale: request.locale, engine };
  return {};
}
