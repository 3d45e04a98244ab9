// What an entry takes from others: from its "crossref", as BibLaTeX does it, and from "xdata".
//
// An entry's fields are a map of its own names to values; a value is not looked at here.
const bookParts = ["inbook", "bookinbook", "suppbook"];
const collectionParts = ["incollection", "inreference", "suppcollection"];
const proceedingsParts = ["inproceedings", "conference"];

// How a parent's title is called in its parts.
const prefixes = {
  mvbook: ["main", ["book", ...bookParts]],
  mvcollection: ["main", ["collection", "reference", ...collectionParts]],
  mvreference: ["main", ["collection", "reference", ...collectionParts]],
  mvproceedings: ["main", ["proceedings", ...proceedingsParts]],
  book: ["book", [...bookParts, ...collectionParts]],
  collection: ["book", [...bookParts, ...collectionParts]],
  reference: ["book", collectionParts],
  proceedings: ["book", [...proceedingsParts, ...bookParts, ...collectionParts]],
  periodical: ["journal", ["article", "suppperiodical"]],
};

const notInherited = new Set(
  (
    "crossref xref xdata entryset entrysubtype execute ids label options presort related " +
    "relatedoptions relatedstring relatedtype shorthand shorthandintro sortkey sortname " +
    "keywords file"
  ).split(" "),
);
const ofTheTitle = ["shorttitle", "sorttitle", "indextitle", "indexsorttitle"];

// Chains are short: a chapter, its volume, the work in volumes. Entries that name many others,
// each of which names many, would cost more than any machine has.
const longestChain = 8;
const mostSources = 64;

function inherited(kind, parent) {
  const fields = new Map([...parent.fields].filter(([name]) => !notInherited.has(name)));
  const [prefix, kinds] = prefixes[parent.kind] ?? ["", []];
  if (kinds.includes(kind)) {
    for (const name of ["title", "subtitle", "titleaddon"]) {
      if (fields.has(name)) {
        fields.set(prefix + name, fields.get(name));
        fields.delete(name);
      }
    }
    ofTheTitle.forEach((name) => fields.delete(name));
  }
  if (/^(mv)?book$/.test(parent.kind) && bookParts.includes(kind) && fields.has("author")) {
    fields.set("bookauthor", fields.get("author"));
  }
  return fields;
}

// `find` gives the entry with a key, or nothing; `keysOf` the keys that a field of an entry names.
// Gives the entry's fields with what it takes from others. What it names and is not there is told
// to `onMissing`. An entry that inherits from itself, over others, takes what there is until then.
export function withInheritance(entry, find, keysOf, onMissing) {
  let taken = 0;
  const resolve = (current, chain) => {
    const fields = new Map(current.fields);
    const sources = [
      ...keysOf(current, "xdata").map((key) => [key, false]),
      ...keysOf(current, "crossref").map((key) => [key, true]),
    ];
    for (const [key, isParent] of sources) {
      const source = find(key);
      if (!source && current === entry) {
        onMissing(key);
      }
      const isFar = chain.length >= longestChain || taken >= mostSources;
      if (source && !chain.includes(source) && !isFar) {
        taken += 1;
        const resolved = { kind: source.kind, fields: resolve(source, [...chain, source]) };
        const given = isParent ? inherited(current.kind, resolved) : resolved.fields;
        for (const [name, value] of given) {
          if (!fields.has(name)) {
            fields.set(name, value);
          }
        }
      }
    }
    return fields;
  };
  return resolve(entry, [entry]);
}
