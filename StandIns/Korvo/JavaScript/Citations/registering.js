// The citations of a document, each made ready to be printed before the next one is asked for: a
// million of them at once would take gigabytes. They stand in the engine's registry only as long
// as somebody looks at them there.
import CSL from "citeproc";

import { evaluateFirst, evaluateMentions } from "../Patches/mentions.js";
import { isNoteStyle } from "./engine.js";
import { Positions } from "./positions.js";
import { itemIndex, readCitations, shownItems } from "./request.js";
import { needsPositions, sortCites } from "./sorting.js";

export const messageOf = (error) => error?.message ?? error;

function describe(request, citation) {
  const ids = citation.citationItems.map((cite) => request.ids[itemIndex(cite.id)]);
  return `citation ${citation.group + 1} (${ids.join("; ")})`;
}

export function attempt(request, citation, step) {
  try {
    return step();
  } catch (error) {
    throw new Error(
      `${describe(request, citation)}: the style's rules fail on it: ${messageOf(error)}`,
    );
  }
}

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

function register(engine, citation) {
  citation.sortedItems = citation.citationItems.map((given) => {
    const item = engine.retrieveItem(given.id);
    engine.transform.loadAbbreviation("default", "hereinafter", item.id, item.language);
    const cite = CSL.parseLocator.call(engine, { ...given });
    readLabel(engine, item, cite);
    return [item, cite];
  });
  engine.registry.citationreg.citationById[citation.citationID] = citation;
}

function forget(engine, citation) {
  delete engine.registry.citationreg.citationById[citation.citationID];
}

const read = (request, engine) => readCitations(request, isNoteStyle(engine));

function* withoutPositions(request, engine) {
  let isFirst = true;
  for (const citation of read(request, engine)) {
    attempt(request, citation, () => register(engine, citation));
    if (isFirst) {
      evaluateFirst(engine, citation, shownItems(request));
      isFirst = false;
    }
    yield citation;
    forget(engine, citation);
  }
}

// In which order a citation's cites are printed, by their places in it; nothing where it is the
// author's.
function orderOf(engine, sortKeys, { sortedItems }) {
  const given = [...sortedItems];
  sortCites(engine, sortKeys, sortedItems);
  return sortedItems.every((cite, place) => cite === given[place])
    ? undefined
    : sortedItems.map((cite) => given.indexOf(cite));
}

// Positions depend on the order of cites, and this on what has been printed before: so all orders
// are found before anything is printed. Of the citations only those are kept that mention a work
// for the first time or the second, which is all that the registry tells apart.
function look(request, engine, sortKeys) {
  const mentions = new Map();
  const telling = [];
  const orders = new Map();
  for (const citation of read(request, engine)) {
    const ids = new Set(citation.citationItems.map((cite) => cite.id));
    const isTelling = [...ids].some((id) => (mentions.get(id) ?? 0) < 2);
    if (!isTelling && citation.citationItems.length === 1) {
      continue;
    }
    attempt(request, citation, () => {
      register(engine, citation);
      const order = orderOf(engine, sortKeys, citation);
      if (order) {
        orders.set(citation.group, order);
      }
    });
    if (isTelling) {
      telling.push(citation);
      ids.forEach((id) => mentions.set(id, (mentions.get(id) ?? 0) + 1));
    } else {
      forget(engine, citation);
    }
  }
  return { telling, orders };
}

function* withPositions(request, engine, sortKeys) {
  const { telling, orders } = look(request, engine, sortKeys);
  const [first] = telling;
  if (!first) {
    return;
  }
  evaluateMentions(engine, telling);
  const positions = new Positions(engine);
  let index = 0;
  for (const made of read(request, engine)) {
    // Its cites were ordered by the evaluation.
    const citation = index === 0 ? first : made;
    if (citation !== first) {
      attempt(request, citation, () => register(engine, citation));
      const order = orders.get(citation.group);
      if (order) {
        citation.sortedItems = order.map((place) => citation.sortedItems[place]);
      }
    }
    citation.properties.index = index;
    index += 1;
    positions.place(citation);
    yield citation;
    forget(engine, citation);
  }
}

export const registered = (request, engine, sortKeys) =>
  needsPositions(engine)
    ? withPositions(request, engine, sortKeys)
    : withoutPositions(request, engine);
