// The bibliography, as entries and how they are laid out.
import CSL from "citeproc";

import { plainReference } from "./items.js";
import { endOfId } from "./markers.js";
import { placeholder } from "./placeholder.js";
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
export function printBibliography(engine, items) {
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
