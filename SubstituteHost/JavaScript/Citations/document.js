// Formats a whole document in time proportional to its citations.
//
// citeproc-js is made for editors: after every change it evaluates the positions ("ibid.",
// "see note 3") of all citations anew, so that handing it a document citation by citation
// takes quadratic time. Here every citation is registered first, the positions are
// evaluated once, with printing switched off, and then each citation is printed once.
// The engine is used up by that: a second printing can come out differently.
import CSL from "citeproc";

import { hasBracket, withoutBrackets, withoutOuterBrackets } from "./enclosure.js";
import { isNoteStyle, makeEngine } from "./engine.js";
import { plainReference } from "./items.js";
import { endOfId } from "./markers.js";
import { itemId, itemIndex, option, readCitations, readItems } from "./request.js";

// What a group is sorted by, found once for each item. The style's sort keys do not depend
// on the citation; the author's names do on how they are told apart from others, which
// printing can change.
class SortKeys {
  #keys = new Map();
  #authors = new Map();
  #engine;

  constructor(engine) {
    this.#engine = engine;
  }

  of(item) {
    let keys = this.#keys.get(item.id);
    if (!keys) {
      keys = CSL.getSortKeys.call(this.#engine, item, "citation_sort");
      this.#keys.set(item.id, keys);
    }
    return [...keys];
  }

  author(item) {
    const engine = this.#engine;
    const { disambig } = engine.registry.registry[item.id];
    const name = `${item.id} ${JSON.stringify(disambig)}`;
    let author = this.#authors.get(name);
    if (author === undefined) {
      engine.tmp.authorstring_request = true;
      CSL.getAmbiguousCite.call(engine, item, disambig);
      engine.tmp.authorstring_request = false;
      author = engine.registry.authorstrings[item.id];
      this.#authors.set(name, author);
    }
    return author;
  }
}

// As processCitationCluster does it: the cites of one author stay together.
function sortGrouped(engine, sortKeys, sorted) {
  for (const [item, cite] of sorted) {
    cite.sortkeys = [sortKeys.author(item), ...cite.sortkeys];
  }
  sorted.sort(engine.citation.srt.compareCompositeKeys);
  let author = false;
  let key = false;
  sorted.forEach(([, cite], index) => {
    if (cite.sortkeys[0] !== author) {
      [author, key] = cite.sortkeys;
    }
    cite.sortkeys[0] = `${key}${index}`;
  });
}

// Positions depend on the order of cites, so that it must be known before them. In styles
// without positions it must be found as late as possible: what has been printed before
// decides which names are spelt out, and by these the cites are grouped.
const needsPositions = (engine) => engine.opt.update_mode === CSL.POSITION;

function sortCites(engine, sortKeys, sorted) {
  if (sorted.length < 2 || engine.citation_sort.tokens.length === 0) {
    return;
  }
  for (const [item, cite] of sorted) {
    cite.sortkeys = sortKeys.of(item);
  }
  if (engine.opt.grouped_sort && !engine.opt.citation_number_sort) {
    sortGrouped(engine, sortKeys, sorted);
  }
  sorted.sort(engine.citation.srt.compareCompositeKeys);
}

function readLabel(engine, item, cite) {
  const unlabelled = ["bill", "gazette", "legislation", "regulation", "treaty"];
  const match = cite.locator && !unlabelled.includes(item.type) && CSL.LOCATOR_LABELS_REGEXP.exec(cite.locator);
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

// What an author asks of a whole group changes the citation layout while it is printed.
function withLayout(engine, changes, step) {
  const layout = engine.citation.opt;
  const { layout_prefix, layout_suffix, layout_decorations } = layout;
  Object.assign(layout, changes);
  try {
    return step();
  } finally {
    Object.assign(layout, { layout_prefix, layout_suffix, layout_decorations });
  }
}

function printAsStyled(engine, citation) {
  engine.tmp.citation_pos = citation.properties.index;
  engine.tmp.citation_note_index = citation.properties.noteIndex;
  engine.tmp.citation_id = citation.citationID;
  return engine.process_CitationCluster(citation.sortedItems, citation);
}

function printWithoutEnclosure(engine, citation) {
  const { layout_prefix, layout_suffix } = engine.citation.opt;
  if (hasBracket(layout_prefix) || hasBracket(layout_suffix)) {
    const changes = { layout_prefix: withoutBrackets(layout_prefix), layout_suffix: withoutBrackets(layout_suffix) };
    return withLayout(engine, changes, () => printAsStyled(engine, citation));
  }
  const text = printAsStyled(engine, citation);
  const authorsOwn = citation.citationItems.some(({ prefix = "", suffix = "" }) => hasBracket(prefix + suffix));
  return isNoteStyle(engine) || authorsOwn ? text : withoutOuterBrackets(text);
}

function print(engine, citation) {
  const { layout_decorations } = engine.citation.opt;
  const changes =
    citation.options & option.suppressSuperscript
      ? { layout_decorations: layout_decorations.filter(([name]) => name !== "@vertical-align") }
      : {};
  return withLayout(engine, changes, () =>
    citation.options & option.stripEnclosure ? printWithoutEnclosure(engine, citation) : printAsStyled(engine, citation),
  );
}

// What citeproc-js says in place of nothing.
const placeholder = /\[NO_PRINTED_FORM\]|(?:\d+\. )?\[CSL STYLE ERROR: reference with no printed form\.\]/g;

function describe(request, citation) {
  const ids = citation.citationItems.map((cite) => request.ids[itemIndex(cite.id)]);
  return `citation ${citation.group + 1} (${ids.join("; ")})`;
}

function attempt(request, citation, step) {
  try {
    return step();
  } catch (error) {
    throw new Error(`${describe(request, citation)}: ${error?.message ?? error}`);
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
      return print(engine, citation);
    });
    texts[citation.group] = text.replace(placeholder, "");
  }
  return texts;
}

// The style's own rules on what to leave out stay in force beside the author's.
function exclusions(engine) {
  const { exclude_types, exclude_with_fields } = engine.bibliography.opt;
  return [
    { field: "unlisted", value: "yes" },
    ...Object.values(exclude_types ?? []).map((value) => ({ field: "type", value })),
    ...Object.values(exclude_with_fields ?? []).map((field) => ({ field, value: true })),
  ];
}

function entryTexts(printed) {
  const texts = new Map();
  for (const entry of printed) {
    const [id, text] = entry.split(endOfId);
    if (text.search(placeholder) < 0) {
      texts.set(id, text);
    }
  }
  return texts;
}

// A style may leave works out of its bibliography on purpose, but not out of a numbered
// list: there the number stands in the text.
function printBibliography(engine, items) {
  const made = engine.makeBibliography({ exclude: exclusions(engine) });
  if (!made) {
    return { entries: [], entryItems: [] };
  }
  const [layout, printed] = made;
  const texts = entryTexts(printed);
  if (engine.opt.update_mode === CSL.NUMERIC) {
    for (const id of layout.entry_ids.flat().filter((unprinted) => !texts.has(unprinted))) {
      texts.set(id, plainReference(items.get(id)));
    }
  }
  const ids = layout.entry_ids.flat().filter((id) => texts.get(id));
  return {
    entries: ids.map((id) => texts.get(id)),
    entryItems: ids.map(itemIndex),
    hangingIndent: Boolean(layout.hangingindent),
    secondFieldAlign: layout["second-field-align"] || "",
    firstFieldCharacters: layout.maxoffset || 0,
    entrySpacing: layout.entryspacing,
    lineSpacing: layout.linespacing,
  };
}

// An engine that knows every item of the document, in the order of first mention.
export function prepare(request, readLocale) {
  const items = readItems(request);
  request.listed.forEach((listed, index) => {
    if (!listed) {
      items.get(itemId(index)).unlisted = "yes";
    }
  });
  const engine = makeEngine(request.style, request.locale, readLocale, items);
  engine.updateItems([...items.keys()]);
  return { engine, items };
}

export function formatDocument(request, readLocale) {
  const { engine, items } = prepare(request, readLocale);
  const groups = printCitations(request, engine);
  const bibliography = request.wantsBibliography ? printBibliography(engine, items) : { entries: [], entryItems: [] };
  return { groups, ...bibliography };
}
