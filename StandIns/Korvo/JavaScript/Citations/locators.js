// Where in a work: what authors write behind "@", brought into the few short forms that
// citeproc-js knows a locator's kind by ("ch. 3", "sec. 5", "vol. 2, p. 45"). What begins with
// none of these words is pages.

const words = {
  ch: ["ch", "chs", "chap", "chaps", "chapter", "chapters", "cap"],
  sec: ["§", "§§", "sec", "secs", "sect", "sects", "section", "sections"],
  para: ["¶", "¶¶", "para", "paras", "par", "pars", "paragraph", "paragraphs"],
  vol: ["vol", "vols", "volume", "volumes"],
  bk: ["bk", "bks", "book", "books"],
  pt: ["pt", "pts", "part", "parts"],
  fig: ["fig", "figs", "figure", "figures"],
  tbl: ["tbl", "tbls", "tab", "table", "tables"],
  no: ["no", "nos", "number", "numbers", "issue", "issues"],
  n: ["n", "nn", "note", "notes", "fn", "footnote", "footnotes"],
  l: ["l", "ll", "line", "lines"],
  vrs: ["v", "vv", "verse", "verses"],
  col: ["col", "cols", "column", "columns"],
  fol: ["fol", "fols", "folio", "folios"],
  art: ["art", "arts", "article", "articles"],
  app: ["app", "apps", "appendix", "appendices"],
  sv: ["s.v", "sv", "sub verbo"],
  p: ["p", "pp", "page", "pages"],
};
const shortForms = new Map(
  Object.entries(words).flatMap(([short, written]) => written.map((word) => [word, short])),
);

// A word, perhaps with a full stop, before a number, a Roman one or a single letter; the signs may
// stand close to it. Behind "s.v." stands any word: that of a dictionary.
const beginning = /^(?:([§¶]{1,2})\s*|(sub verbo|s\.v|[a-z]+)(?:\.\s*|\s+))(?=\S)/iu;
const isNumber = /^(?:\d|[ivxlcdm]+(?![a-z])|[a-z](?![a-z]))/iu;

// "2, 45" behind "vol." is a volume and a page in it.
const pageOfVolume = /^([^\s,;:]+)\s*[,:]\s*(?=\d)/u;

export function shortLocator(written) {
  const found = beginning.exec(written);
  const short = found && shortForms.get((found[1] ?? found[2]).toLowerCase());
  if (!short) {
    return written;
  }
  const rest = written.slice(found[0].length);
  if (short !== "sv" && !isNumber.test(rest)) {
    return written;
  }
  const page = short === "vol" && pageOfVolume.exec(rest);
  if (page) {
    const pages = rest.slice(page[0].length);
    return `vol. ${page[1]}, ${/[-–,&]/u.test(pages) ? "pp" : "p"}. ${pages}`;
  }
  return `${short}. ${rest}`;
}
