// Formats a whole document in time proportional to its citations.
//
// citeproc-js is made for editors: after every change it evaluates the positions ("ibid.",
// "see note 3") of all citations anew, so that handing it a document citation by citation
// takes quadratic time. Here every citation is registered first, the positions are
// evaluated once, with printing switched off, and then each citation is printed once.
// The engine is used up by that: a second printing can come out differently.
import CSL from "citeproc";

import { printBibliography } from "./bibliography.js";
import { isNoteStyle, makeEngine } from "./engine.js";
import { contentNumber, memoryOf } from "./memory.js";
import { placeholder } from "./placeholder.js";
import { print } from "./printing.js";
import { recallOf, startRecalling } from "./recalling.js";
import { itemId, itemIndex, readCitations, readItems } from "./request.js";
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

// processCitationCluster takes one citation to print and evaluates the positions of all.
// It sorts the others anew, without grouping, to print them again: that is undone.
function evaluatePositions(engine, citations) {
  const orders = citations.map((citation) => [...citation.sortedItems]);
  const [first, ...rest] = citations;
  engine.process_CitationCluster = () => "";
  engine.tmp.taintedItemIDs = {};
  engine.processCitationCluster(
    first,
    [],
    rest.map((citation) => [citation.citationID, citation.properties.noteIndex]),
    CSL.ASSUME_ALL_ITEMS_REGISTERED,
  );
  delete engine.process_CitationCluster;
  citations.slice(1).forEach((citation, index) => {
    citation.sortedItems = orders[index + 1];
  });
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

function printCitations(request, engine) {
  const texts = new Array(request.groupSizes.length).fill("");
  const citations = readCitations(request, isNoteStyle(engine));
  const sortKeys = new SortKeys(engine);
  for (const citation of citations) {
    attempt(request, citation, () => register(engine, sortKeys, citation));
  }
  if (citations.length > 0) {
    evaluatePositions(engine, citations);
  }
  for (const citation of citations) {
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

// An engine that knows every item of the document, in the order of first mention. `adapt` is
// shown each engine that is made.
export function prepare(request, readLocale, adapt = () => {}) {
  const items = readItems(request);
  request.listed.forEach((listed, index) => {
    if (!listed) {
      items.get(itemId(index)).unlisted = "yes";
    }
  });
  const makeFresh = () => {
    const made = makeEngine(request.style, request.locale, readLocale, items);
    adapt(made);
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
  return { engine, items };
}

export function formatDocument(request, readLocale) {
  const memory = memoryOf(request.style, request.locale);
  const numbers = new Map(request.items.map((json, index) => [itemId(index), contentNumber(json)]));
  const { engine, items } = prepare(request, readLocale, (made) =>
    startRecalling(made, memory, numbers, request.style),
  );
  const groups = printCitations(request, engine);
  const bibliography = request.wantsBibliography
    ? attemptBibliography(request, engine, items)
    : { entries: [], entryItems: [] };
  return { groups, ...bibliography };
}
