// Some of the entries of a bibliography, where citeproc-js prints all.
import { printAfter } from "./cites.js";

// makeBibliography on some of the items: its layout and what it prints. `lastName` is what the
// entry before them has printed of its names.
export function printEntries(engine, ids, lastName = false) {
  const { registry } = engine;
  const { reflist, getSortedIds } = registry;
  // It goes through this list for the widest first field, which is found out at the end.
  registry.reflist = [];
  registry.getSortedIds = () => ids;
  try {
    return printAfter(engine, lastName, () => engine.makeBibliography({ exclude: [] }));
  } finally {
    Object.assign(registry, { reflist, getSortedIds });
  }
}
