// Formats a whole document in time proportional to its citations.
//
// citeproc-js is made for editors: after every change it evaluates the positions ("ibid.",
// "see note 3") of all citations anew, so that handing it a document citation by citation
// takes quadratic time. Here every citation is registered first, the positions are
// evaluated once, with printing switched off, and then each citation is printed once. In a style
// without positions there is only one citation at a time: a million at once would take gigabytes.
// The engine is used up by that: a second printing can come out differently.
import CSL from "citeproc";

import { evaluateFirst, evaluatePositions } from "../Patches/positions.js";
import { printBibliography } from "./bibliography.js";
import { isNoteStyle, makeEngine } from "./engine.js";
import { contentNumber, memoryOf } from "./memory.js";
import { placeholder } from "./placeholder.js";
import { print } from "./printing.js";
import { recallOf, startRecalling } from "./recalling.js";
import { itemId, itemIndex, readCitations, readItems, shownItems } from "./request.js";
import { needsPositions, sortCites, SortKeys } from "./sorting.js";

const messageOf = (error) => error?.message ?? error;

function readLabel(engine, item, cite) {
  const unlabelled = ["bill", "gazette", "legislation", "regulation", "treaty"];
  const match =
    cite.locator && !unlabelled.includes(item.type) && CSL.LOCATOR_LABELS_REGEXP.exec(cite.locator);
  const label = match && CSL.LOCATOR_LABELS_MAP[match[2]];
  if (label && engine.getTerm(label)) {
    cite.label = label;
    cite.locator = match[3];
  }
}

function register(engine, sortKeys, citation) {
  citation.sortedItems = citation.citationItems.map((given) => {
    const item = engine.retrieveItem(given.id);
    engine.transform.loadAbbreviation("default", "hereinafter", item.id, item.language);
    const cite = CSL.parseLocator.call(engine, { ...given });
    readLabel(engine, item, cite);
    return [item, cite];
  });
  engine.registry.citationreg.citationById[citation.citationID] = citation;
  if (needsPositions(engine)) {
    sortCites(engine, sortKeys, citation.sortedItems);
  }
}

function describe(request, citation) {
  const ids = citation.citationItems.map((cite) => request.ids[itemIndex(cite.id)]);
  return `citation ${citation.group + 1} (${ids.join("; ")})`;
}

function attempt(request, citation, step) {
  try {
    return step();
  } catch (error) {
    throw new Error(
      `${describe(request, citation)}: the style's rules fail on it: ${messageOf(error)}`,
    );
  }
}

// The citations, each ready to be printed before the next one is asked for.
function* registered(request, engine, sortKeys) {
  const read = readCitations(request, isNoteStyle(engine));
  const enter = (citation) =>
    attempt(request, citation, () => register(engine, sortKeys, citation));
  if (needsPositions(engine)) {
    const citations = [...read];
    citations.forEach(enter);
    if (citations.length > 0) {
      evaluatePositions(engine, citations);
    }
    yield* citations;
    return;
  }
  let isFirst = true;
  for (const citation of read) {
    enter(citation);
    if (isFirst) {
      evaluateFirst(engine, citation, shownItems(request));
      isFirst = false;
    }
    yield citation;
    delete engine.registry.citationreg.citationById[citation.citationID];
  }
}

function printCitations(request, engine) {
  const texts = new Array(request.groupSizes.length).fill("");
  const sortKeys = new SortKeys(engine);
  for (const citation of registered(request, engine, sortKeys)) {
    const text = attempt(request, citation, () => {
      if (!needsPositions(engine)) {
        sortCites(engine, sortKeys, citation.sortedItems);
      }
      return recallOf(engine).citation(citation, () => print(engine, citation));
    });
    texts[citation.group] = text.replace(placeholder, "");
  }
  return texts;
}

function attemptBibliography(request, engine, items) {
  const position = {};
  try {
    return printBibliography(engine, items, position);
  } catch (error) {
    const id = position.id ?? position.ids?.[engine.tmp.bibliography_pos];
    const place = id ? `bibliography entry ${request.ids[itemIndex(id)]}` : "bibliography";
    throw new Error(`${place}: the style's rules fail on it: ${messageOf(error)}`);
  }
}

// Which item a style's rules fail on, found by halves: an engine that failed tells nothing.
function findUnprintable(makeFresh, ids) {
  let suspects = ids;
  while (suspects.length > 1) {
    const half = suspects.slice(0, suspects.length >> 1);
    try {
      makeFresh().updateItems(half);
      suspects = suspects.slice(half.length);
    } catch {
      suspects = half;
    }
  }
  return suspects[0];
}

// An engine that knows every item of the document.
function prepare(request, readLocale, items) {
  const memory = memoryOf(request.style, request.locale);
  const numbers = new Map(request.items.map((json, index) => [itemId(index), contentNumber(json)]));
  const makeFresh = () => {
    const made = makeEngine(request, readLocale, items);
    startRecalling(made, memory, numbers, request.style);
    return made;
  };
  const engine = makeFresh();
  try {
    engine.updateItems([...items.keys()]);
  } catch (error) {
    const id = findUnprintable(makeFresh, [...items.keys()]);
    throw new Error(
      `${request.ids[itemIndex(id)]}: the style's rules fail on it: ${messageOf(error)}`,
    );
  }
  return engine;
}

export function formatDocument(request, readLocale) {
  const items = readItems(request);
  const engine = prepare(request, readLocale, items);
  const groups = printCitations(request, engine);
  const bibliography = request.wantsBibliography
    ? attemptBibliography(request, engine, items)
    : { entries: [], entryItems: [] };
  return { groups, ...bibliography };
}

// What is remembered of a text with numbers holds for all numbers of as many digits.
const rehearsedNumbers = [40, 400];

// Formats a document for nothing but what is remembered of it.
export function rehearseDocument(request, readLocale) {
  const items = readItems(request);
  const engine = prepare(request, readLocale, items);
  const { registry } = engine.registry;
  const isNumbered = engine.opt.update_mode === CSL.NUMERIC;
  for (const number of isNumbered ? rehearsedNumbers : [1]) {
    for (const id of items.keys()) {
      registry[id].seq = number + itemIndex(id);
    }
    printCitations(request, engine);
    attemptBibliography(request, engine, items);
  }
  return {};
}
