// Where a work is to be found: DOI, address, number in an archive.
import { verbatimText } from "./latexText.js";

const doiInAddress = /^(?:https?:\/\/|(?:dx\.)?doi(?:\.org\/|:)).*?(10\.\d{4,9}\/.+)$/i;
const newArxivNumber = /^\d{4}\.\d{4,5}(?:v\d+)?$/;
const oldArxivNumber = /^[a-z-]+(?:\.[A-Z]{2})?\/\d{7}(?:v\d+)?$/;
const arxivInText = /\barXiv:\s*(\d{4}\.\d{4,5}(?:v\d+)?|[a-z-]+(?:\.[A-Z]{2})?\/\d{7}(?:v\d+)?)/i;
const address = /\b(?:https?|ftp):\/\/[^\s<>"]*[^\s<>".,;)]/i;

// Where the archives show a work of a number.
const archives = new Map(
  Object.entries({
    arxiv: "https://arxiv.org/abs/",
    jstor: "https://www.jstor.org/stable/",
    hdl: "https://hdl.handle.net/",
    googlebooks: "https://books.google.com/books?id=",
  }),
);

function doiOf(fields) {
  const given = verbatimText(fields.raw("doi")).replace(/\s+/g, "");
  const inAddress = doiInAddress.exec(given)?.[1];
  try {
    return inAddress ? decodeURIComponent(inAddress) : given;
  } catch {
    return inAddress;
  }
}

function archived(fields) {
  const kind = (fields.text("eprinttype") || fields.text("archiveprefix")).toLowerCase();
  const number = verbatimText(fields.raw("eprint"));
  const bare = number.replace(/^arxiv:\s*/i, "").replace(/\s*\[[^\]]*\]$/, "");
  const looksLikeArxiv = newArxivNumber.test(bare) || oldArxivNumber.test(bare) || bare !== number;
  if (kind === "arxiv" || (kind === "" && bare && looksLikeArxiv)) {
    return { kind: "arxiv", number: bare };
  }
  const inJournal = arxivInText.exec(fields.text("journaltitle") || fields.text("journal"));
  return !number && inJournal ? { kind: "arxiv", number: inJournal[1] } : { kind, number };
}

// Gives { variables, preprintNumber, howPublished }: the last is what the field of that name says
// where it is no address.
export function identifiers(kind, fields) {
  const doi = doiOf(fields);
  const archive = archived(fields);
  const howPublished = fields.text("howpublished");
  const shown = address.exec(howPublished)?.[0] ?? "";
  const given = verbatimText(fields.raw("url")).replace(/ /g, "%20");
  const base = archive.number && !doi ? archives.get(archive.kind) : undefined;
  const isArxiv = archive.kind === "arxiv" && archive.number !== "";
  const isMedline = archive.kind === "pubmed" || archive.kind === "pmid";
  return {
    howPublished: shown ? "" : howPublished,
    preprintNumber: isArxiv && !doi ? `arXiv:${archive.number}` : "",
    variables: {
      DOI: doi,
      URL: given || shown || (base ? base + archive.number : ""),
      ISBN: fields.text("isbn"),
      ISSN: fields.text("issn"),
      PMID: isMedline ? archive.number : fields.text("pmid"),
      PMCID: fields.text("pmcid"),
      ...(isArxiv ? { archive: "arXiv", archive_location: archive.number } : {}),
    },
  };
}
