// A citeproc-js engine for one document.
import CSL from "citeproc";

import { cleanXml, outputFormat } from "./markers.js";

// `style` is the text of the CSL file, `locale` the language that overrides its own
// (empty: none), `readLocale` gives the text of a CSL locale file by its name ("en-US"),
// `items` maps ids to items.
export function makeEngine({ style, locale }, readLocale, items) {
  const system = {
    retrieveLocale: (name) => cleanXml(readLocale(name)),
    retrieveItem: (id) => items.get(id),
  };
  const engine = new CSL.Engine(system, cleanXml(style), locale || undefined, Boolean(locale));
  // A library's note field is a note, not a place for more fields.
  engine.opt.development_extensions.field_hack = false;
  engine.setOutputFormat(outputFormat);
  return engine;
}

export const isNoteStyle = (engine) => engine.opt.xclass === "note";
