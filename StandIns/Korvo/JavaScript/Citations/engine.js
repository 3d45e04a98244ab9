// A citeproc-js engine for one document.
import CSL from "citeproc";

import { cleanXml, outputFormat } from "./markers.js";

// The XML of styles and locales as JSON, which citeproc-js takes as well: it takes its own XML
// reader ten times as long. The text used last comes last.
const parsed = new Map();
const parsedCapacity = 16;

function readXml(text) {
  const json = parsed.get(text) ?? JSON.stringify(CSL.parseXml(cleanXml(text).trimStart()));
  parsed.delete(text);
  parsed.set(text, json);
  if (parsed.size > parsedCapacity) {
    const [oldest] = parsed.keys();
    parsed.delete(oldest);
  }
  return json;
}

// `style` is the text of the CSL file, `locale` the language that overrides its own
// (empty: none), `readLocale` gives the text of a CSL locale file by its name ("en-US"),
// `items` maps ids to items.
export function makeEngine({ style, locale }, readLocale, items) {
  const system = {
    retrieveLocale: (name) => readXml(readLocale(name)),
    retrieveItem: (id) => items.get(id),
  };
  const engine = new CSL.Engine(system, readXml(style), locale || undefined, Boolean(locale));
  // A library's note field is a note, not a place for more fields.
  engine.opt.development_extensions.field_hack = false;
  engine.setOutputFormat(outputFormat);
  return engine;
}

export const isNoteStyle = (engine) => engine.opt.xclass === "note";
