// A CSL item out of an entry's fields.
import types from "@citation-js/plugin-bibtex/lib-mjs/mapping/biblatexTypes.json";

import { dateOf, dateOfParts } from "./bibtexDates.js";
import { identifiers } from "./bibtexIdentifiers.js";
import { languageOf } from "./languages.js";
import { genres, placeOf, stateOf } from "./terms.js";

// Kinds that BibLaTeX does not know, but the programs that write such files do.
const typeOf = new Map([
  ...Object.entries(types.source),
  ...Object.entries({
    bill: "bill",
    case: "legal_case",
    computer_program: "software",
    conference_proceedings: "book",
    data: "dataset",
    encyclopedia_article: "entry-encyclopedia",
    film: "motion_picture",
    generic: "document",
    hearing: "hearing",
    interview: "interview",
    magazine_article: "article-magazine",
    map: "map",
    mvreference: "book",
    newspaper_article: "article-newspaper",
    phdthesis: "thesis",
    preprint: "article",
    set: "document",
    statute: "legislation",
    suppbook: "chapter",
    suppcollection: "chapter",
    suppperiodical: "article-journal",
    television_broadcast: "broadcast",
    web_page: "webpage",
    webpage: "webpage",
    website: "webpage",
    working_paper: "report",
  }),
]);

const synonyms = new Map(
  Object.entries({
    conference: "inproceedings",
    electronic: "online",
    magazine_article: "article",
    newspaper_article: "article",
    suppperiodical: "article",
    techreport: "report",
    www: "online",
  }),
);

// Where the number is that of a series.
const inSeries = new Set(
  (
    "book bookinbook booklet collection inbook incollection inreference manual mvbook " +
    "mvcollection mvproceedings mvreference proceedings reference suppbook suppcollection"
  ).split(" "),
);
const withIssues = new Set(["article", "periodical"]);

// Fields that are one CSL variable each.
const plainFields = Object.entries({
  abstract: "abstract",
  chapter: "chapter-number",
  edition: "edition",
  library: "call-number",
  origtitle: "original-title",
  part: "part-number",
  series: "collection-title",
  shortjournal: "container-title-short",
  shortseries: "collection-title-short",
  venue: "event-place",
  version: "version",
  volume: "volume",
  volumes: "number-of-volumes",
});
const nameFields = Object.entries({
  author: "author",
  bookauthor: "container-author",
  editor: "editor",
  translator: "translator",
});
const dateFields = Object.entries({
  eventdate: "event-date",
  origdate: "original-date",
  urldate: "accessed",
});

const joinedBy = (separator, ...texts) => texts.filter(Boolean).join(separator);

// "Title: Subtitle"; after a question no colon.
function withSubtitle(title, subtitle) {
  return joinedBy(/[?!:.\u2026]$/.test(title) ? " " : ": ", title, subtitle);
}

function titleOf(fields, prefix) {
  const whole = withSubtitle(fields.text(`${prefix}title`), fields.text(`${prefix}subtitle`));
  return joinedBy(". ", whole, fields.text(`${prefix}titleaddon`));
}

function journalOf(fields) {
  return titleOf(fields, "journal") || fields.text("journal");
}

function titles(kind, fields) {
  const title = titleOf(fields, "");
  const issueTitle = titleOf(fields, "issue");
  const short = fields.text("shorttitle") || (fields.text("subtitle") ? fields.text("title") : "");
  if (kind === "article") {
    const container = journalOf(fields) || titleOf(fields, "book");
    return {
      title,
      "title-short": short,
      "container-title": container,
      "volume-title": issueTitle,
    };
  }
  if (kind === "periodical" && issueTitle) {
    return { title: issueTitle, "container-title": title };
  }
  const [main, book] = [titleOf(fields, "main"), titleOf(fields, "book")];
  return {
    title,
    "title-short": short,
    "container-title": main || book || journalOf(fields),
    "volume-title": joinedBy(": ", main && book, issueTitle),
  };
}

function numbers(kind, fields, links) {
  const number = fields.text("number");
  const standard = ["isan", "ismn", "isrn", "iswc"].map((name) => fields.text(name)).find(Boolean);
  if (withIssues.has(kind)) {
    return { issue: number || fields.text("issue"), number: standard };
  }
  if (inSeries.has(kind) || (kind === "inproceedings" && fields.text("series"))) {
    return { "collection-number": number, number: standard };
  }
  return kind === "inproceedings"
    ? { issue: number, number: standard }
    : { number: number || standard || links.preprintNumber, issue: fields.text("issue") };
}

function pages(fields) {
  const page = fields
    .text("pages")
    .replace(/\s*[-\u2013\u2014]+\s*/g, "-")
    .replace(/-$/, "");
  const eid = fields.text("eid");
  return {
    page: page || eid,
    "number-of-pages": fields.text("pagetotal") || fields.text("numpages"),
    ...(page && eid ? { number: eid } : {}),
  };
}

const kindsWithGenre = new Set(["mastersthesis", "phdthesis", "techreport"]);

// What a genre is called: as the file says, or after the entry's kind.
function genre(kind, fields) {
  const given = fields.text("type") || (kindsWithGenre.has(kind) ? kind : "");
  const isPaper = /^(newspaper|magazine)$/i.test(fields.text("entrysubtype"));
  return genres.get(given.toLowerCase()) ?? (given || (isPaper ? "" : fields.text("entrysubtype")));
}

function typeFor(kind, fields, links) {
  const subtype = fields.text("entrysubtype").toLowerCase();
  if (kind === "article" && (subtype === "newspaper" || subtype === "magazine")) {
    return `article-${subtype}`;
  }
  return kind === "misc" && links.preprintNumber ? "article" : (typeOf.get(kind) ?? "document");
}

function publishers(kind, fields, links) {
  const names = ["publisher", "organization", "institution", "school"];
  const place = fields.list("location", placeOf) || fields.list("address");
  return {
    publisher: names.map((name) => fields.list(name)).find(Boolean) || links.howPublished,
    "publisher-place": place,
    jurisdiction: kind === "patent" ? place : "",
    "original-publisher": fields.list("origpublisher"),
    "original-publisher-place": fields.list("origlocation"),
  };
}

function dates(fields) {
  const result = {};
  for (const [field, variable] of dateFields) {
    result[variable] = fields.raw(field) && dateOf(fields.raw(field));
  }
  if (fields.raw("date")) {
    return { ...result, issued: dateOf(fields.raw("date")) };
  }
  if (fields.text("year")) {
    const { date, isMonthLost } = dateOfParts(
      fields.raw("year"),
      fields.raw("month"),
      fields.raw("day"),
    );
    if (isMonthLost) {
      fields.report(`"${fields.text("month")}" is no month, and is left out`);
    }
    return { ...result, issued: date };
  }
  return result;
}

function keywordsOf(fields) {
  return fields
    .text("keywords")
    .split(/\s*,\s*/)
    .filter(Boolean)
    .join(",");
}

// `fields` reads an entry's fields, as EntryFields does. Empty values are no part of the item.
export function itemOf(entryKind, fields) {
  const kind = synonyms.get(entryKind) ?? entryKind;
  const links = identifiers(kind, fields);
  const item = { type: typeFor(entryKind, fields, links) };
  if (!typeOf.has(entryKind)) {
    fields.report(`"${entryKind}" is no kind of work that is known; it is taken as a document`);
  }
  for (const [field, variable] of nameFields) {
    item[variable] = fields.names(field);
  }
  Object.assign(item, titles(kind, fields));
  for (const [field, variable] of plainFields) {
    item[variable] = fields.text(field);
  }
  Object.assign(
    item,
    { genre: genre(entryKind, fields) },
    publishers(kind, fields, links),
    dates(fields),
    numbers(kind, fields, links),
    pages(fields),
    {
      annote: fields.text("annotation") || fields.text("annote"),
      "event-title": titleOf(fields, "event"),
      keyword: keywordsOf(fields),
      language: languageOf(fields.members("language").concat(fields.members("langid")).slice(0, 1)),
      note: joinedBy(". ", fields.text("note"), fields.text("addendum")),
      status: stateOf(fields.text("pubstate")),
    },
    links.variables,
  );
  return Object.fromEntries(
    Object.entries(item).filter(([, value]) => (Array.isArray(value) ? value.length > 0 : value)),
  );
}
