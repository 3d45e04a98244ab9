// The document to be formatted, as C++ hands it over: flat arrays, because every value
// that crosses the border costs. See CitationProcessor.cpp, which fills them.
//
//   style        text of the CSL file            locale      language that overrides its own
//   ids, items   citation ids for messages, and the CSL-JSON text of each
//   groupSizes   how many cites each group has
//   citeItems    for each cite, which item       citeOptions  for each cite, bits as below
//   citeTexts    for each cite that has any (an option), three texts: locator, prefix, suffix
//   listed       for each item, whether the bibliography lists it
import { itemFromJson } from "./items.js";
import { shortLocator } from "./locators.js";
import { cleanText } from "./markers.js";

export const option = {
  yearOnly: 1,
  hidden: 2,
  stripEnclosure: 4,
  suppressSuperscript: 8,
  texts: 16,
};

// Ids that cannot collide with anything in an object ("__proto__"), in order.
export const itemId = (index) => "item" + index;
export const itemIndex = (id) => Number(id.slice(4));

// The items by their ids, in the order of first mention.
export function readItems(request) {
  const items = new Map();
  request.ids.forEach((id, index) => {
    try {
      items.set(itemId(index), itemFromJson(request.items[index], itemId(index)));
    } catch (error) {
      throw new Error(`${id}: its data cannot be read: ${error.message}`);
    }
    if (!request.listed[index]) {
      items.get(itemId(index)).unlisted = "yes";
    }
  });
  return items;
}

function readCite(item, bits, texts) {
  const entry = { id: itemId(item) };
  const [locator, prefix, suffix] = texts.map(cleanText);
  if (locator?.trim()) {
    // Styles that shorten page ranges know them by the hyphen only; all print the dash.
    entry.locator = shortLocator(locator.trim()).replace(/(\d)\s*–\s*(?=\d)/g, "$1-");
    entry.label = "page";
  }
  if (prefix) {
    entry.prefix = prefix;
  }
  if (suffix) {
    entry.suffix = suffix;
  }
  if (bits & option.yearOnly) {
    entry["suppress-author"] = true;
  }
  return entry;
}

// The citations of the document in the shape of citeproc-js, one by one: a document may have a
// million of them, and most styles need one at a time. A group of which nothing is to be shown has
// no citation; a note's number is its place among all groups.
export function* readCitations(request, inNotes) {
  const { groupSizes, citeItems, citeOptions, citeTexts } = request;
  let cite = 0;
  let text = 0;
  for (let group = 0; group < groupSizes.length; group += 1) {
    const shown = [];
    let options = 0;
    for (const last = cite + groupSizes[group]; cite < last; cite += 1) {
      const bits = citeOptions[cite];
      const texts = bits & option.texts ? citeTexts.slice(text, text + 3) : [];
      text += texts.length;
      options |= bits & ~option.texts;
      if (!(bits & option.hidden)) {
        shown.push(readCite(citeItems[cite], bits, texts));
      }
    }
    if (shown.length > 0) {
      yield {
        citationID: "group" + group,
        citationItems: shown,
        properties: { noteIndex: inNotes ? group + 1 : 0 },
        group,
        options,
      };
    }
  }
}

// The ids of the items that these citations cite.
export function shownItems(request) {
  const shown = new Set();
  request.citeItems.forEach((item, cite) => {
    if (!(request.citeOptions[cite] & option.hidden)) {
      shown.add(item);
    }
  });
  return [...shown].map(itemId);
}
