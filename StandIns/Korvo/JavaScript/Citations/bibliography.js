// The bibliography, as entries and how they are laid out.
import CSL from "citeproc";

import { printEntries } from "../Patches/entries.js";
import { plainReference } from "./items.js";
import { endOfId } from "./markers.js";
import { placeholder } from "./placeholder.js";
import { recallOf } from "./recalling.js";
import { itemIndex } from "./request.js";

// The style's own rules on what to leave out stay in force beside the author's.
function exclusions(engine) {
  const { exclude_types, exclude_with_fields } = engine.bibliography.opt;
  return [
    { field: "unlisted", value: "yes" },
    ...Object.values(exclude_types ?? []).map((value) => ({ field: "type", value })),
    ...Object.values(exclude_with_fields ?? []).map((field) => ({ field, value: true })),
  ];
}

const isExcluded = (item, rules) =>
  rules.some(({ field, value }) => (value === true ? Boolean(item[field]) : item[field] === value));

function textsById(printed) {
  const texts = new Map();
  for (const entry of printed) {
    const [id, text] = entry.split(endOfId);
    if (text.search(placeholder) < 0) {
      texts.set(id, text);
    }
  }
  return texts;
}

function printOneByOne(engine, recall, ids, position) {
  const texts = new Map();
  let lastName = false;
  for (const id of ids) {
    position.id = id;
    const entry = recall.entry(id, lastName, () => {
      const [, printed] = printEntries(engine, [id], lastName);
      return { text: textsById(printed).get(id), lastName: engine.tmp.last_rendered_name };
    });
    if (entry.text !== undefined) {
      texts.set(id, entry.text);
    }
    lastName = entry.lastName;
  }
  return { texts, printedIds: ids };
}

function printTogether(engine, ids, position) {
  position.ids = ids;
  const [layout, printed] = printEntries(engine, ids);
  return { texts: textsById(printed), printedIds: layout.entry_ids.flat() };
}

const widestFirstField = ({ registry }) =>
  registry.reflist.reduce((widest, { offset }) => Math.max(widest, offset || 0), 0);

// A style may leave works out of its bibliography on purpose, but not out of a numbered
// list: there the number stands in the text. While it works, `position` tells about which
// entry (id), or among which (ids).
export function printBibliography(engine, items, position) {
  const empty = printEntries(engine, []);
  if (!empty) {
    return { entries: [], entryItems: [] };
  }
  const rules = exclusions(engine);
  const wanted = engine.registry
    .getSortedIds()
    .filter((id) => !isExcluded(engine.refetchItem(id), rules));
  const recall = recallOf(engine);
  const { texts, printedIds } = recall.hasSingleEntries(wanted)
    ? printOneByOne(engine, recall, wanted, position)
    : printTogether(engine, wanted, position);
  if (engine.opt.update_mode === CSL.NUMERIC) {
    for (const id of printedIds.filter((unprinted) => !texts.has(unprinted))) {
      texts.set(id, plainReference(items.get(id)));
    }
  }
  const [layout] = empty;
  const ids = printedIds.filter((id) => texts.get(id));
  return {
    entries: ids.map((id) => texts.get(id)),
    entryItems: ids.map(itemIndex),
    hangingIndent: Boolean(layout.hangingindent),
    secondFieldAlign: layout["second-field-align"] || "",
    firstFieldCharacters: widestFirstField(engine),
    entrySpacing: layout.entryspacing,
    lineSpacing: layout.linespacing,
  };
}
