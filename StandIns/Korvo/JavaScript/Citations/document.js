// Formats a whole document in time proportional to its citations.
//
// citeproc-js is made for editors: after every change it evaluates the positions ("ibid.",
// "see note 3") of all citations anew, so that handing it a document citation by citation
// takes quadratic time. Here each citation is printed once, and its position found just before
// (see registering.js). The engine is used up by that: a second printing can come out differently.
import { printBibliography } from "./bibliography.js";
import { makeEngine } from "./engine.js";
import { contentNumber, memoryOf } from "./memory.js";
import { placeholder } from "./placeholder.js";
import { print } from "./printing.js";
import { recallOf, startRecalling } from "./recalling.js";
import { attempt, messageOf, registered } from "./registering.js";
import { itemId, itemIndex, readItems } from "./request.js";
import { needsPositions, sortCites, SortKeys } from "./sorting.js";
import { GroupTexts } from "./texts.js";

export function printCitations(request, engine) {
  const texts = new GroupTexts(request.groupSizes.length);
  const sortKeys = new SortKeys(engine);
  for (const citation of registered(request, engine, sortKeys)) {
    const text = attempt(request, citation, () => {
      if (!needsPositions(engine)) {
        sortCites(engine, sortKeys, citation.sortedItems);
      }
      return recallOf(engine).citation(citation, () => print(engine, citation));
    });
    texts.set(citation.group, text.replace(placeholder, ""));
  }
  return texts.answer();
}

export function attemptBibliography(request, engine, items) {
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

// An engine that knows every item of the document, out of what `makeEmpty` gives.
export function prepare(request, items, makeEmpty) {
  const memory = memoryOf(request.style, request.locale);
  const numbers = new Map(request.items.map((json, index) => [itemId(index), contentNumber(json)]));
  const makeFresh = () => {
    const made = makeEmpty();
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
  const engine = prepare(request, items, () => makeEngine(request, readLocale, items));
  const citations = printCitations(request, engine);
  const bibliography = request.wantsBibliography
    ? attemptBibliography(request, engine, items)
    : { entries: [], entryItems: [] };
  return { ...citations, ...bibliography };
}
