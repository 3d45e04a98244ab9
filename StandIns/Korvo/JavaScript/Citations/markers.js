// How citeproc-js tells the caller what is italic, bold, raised and so on.
//
// A text comes back as one string in which every change of looks is a control character
// and its end is another, so that no text a library holds can be mistaken for markup
// (control characters are taken out of everything that goes in; see cleanText). Every
// entry is a function: citeproc-js fills templates by String.replace, which reads "$&" and
// "$$" in a title as instructions.
//
// The reader of these characters is MarkedText.cpp; the two tables are one.
import CSL from "citeproc";

const end = "\u0001";
export const endOfId = "\u0016";

function mark(character) {
  return (state, text) => (text ? character + text + end : "");
}

function plain(state, text) {
  return text || "";
}

function quote(openTerm, closeTerm) {
  return (state, text) =>
    text === undefined
      ? state.getTerm(openTerm)
      : state.getTerm(openTerm) + text + state.getTerm(closeTerm);
}

CSL.Output.Formats.runs = {
  text_escape: (text) => text || "",
  bibstart: "",
  bibend: "",
  "@font-style/italic": mark("\u0002"),
  "@font-style/oblique": mark("\u0002"),
  "@font-style/normal": mark("\u0003"),
  "@font-weight/bold": mark("\u0004"),
  "@font-weight/normal": mark("\u0005"),
  "@font-weight/light": mark("\u0005"),
  "@text-decoration/underline": mark("\u0006"),
  "@text-decoration/none": mark("\u0007"),
  "@font-variant/small-caps": mark("\u0008"),
  "@font-variant/normal": mark("\u000e"),
  "@vertical-align/sup": mark("\u000f"),
  "@vertical-align/sub": mark("\u0010"),
  "@vertical-align/baseline": mark("\u0011"),
  "@display/block": mark("\u0012"),
  "@display/left-margin": mark("\u0013"),
  "@display/right-inline": mark("\u0014"),
  "@display/indent": mark("\u0015"),
  "@quotes/true": quote("open-quote", "close-quote"),
  // Without a text it stands for an apostrophe.
  "@quotes/inner": (state, text) =>
    text === undefined
      ? "\u2019"
      : state.getTerm("open-inner-quote") + text + state.getTerm("close-inner-quote"),
  "@quotes/false": plain,
  "@passthrough/true": plain,
  "@strip-periods/true": plain,
  "@strip-periods/false": plain,
  "@cite/entry": plain,
  // Entries that print nothing are dropped without a word, so each bears its item's id.
  "@bibliography/entry": function (state, text) {
    return text ? (this.system_id ?? "") + endOfId + text : "";
  },
  "@showid/true": plain,
  "@URL/true": plain,
  "@DOI/true": plain,
};

export const outputFormat = "runs";

// What may be handed to citeproc-js: no lone surrogates, blanks for line breaks and tabs,
// no other control characters.
export function cleanText(text) {
  return text
    .toWellFormed()
    .replace(/[\t\n\v\f\r\u0085\u2028\u2029]+/g, " ")
    .replace(/[\u0000-\u001f\u007f-\u009f]/g, "");
}

// The same for the XML of a style or a locale, which may name a character by its number, and which
// is taken apart by someone who reads "&amp;#2;" like "&#2;".
export function cleanXml(xml) {
  return xml
    .replace(/&(?:amp;)?#(?:x([0-9a-f]+)|([0-9]+));/gi, (reference, hexadecimal, decimal) => {
      const code = hexadecimal ? Number.parseInt(hexadecimal, 16) : Number.parseInt(decimal, 10);
      const isControl = code < 0x20 || (code >= 0x7f && code < 0xa0);
      return isControl ? " " : reference;
    })
    .replace(/[\u0000-\u0008\u000b\u000c\u000e-\u001f\u007f-\u009f]/g, "");
}
