// The pieces that a printed text is put together of: a work in apa's bibliography makes 150.
import CSL from "citeproc";

import { replace } from "./replace.js";

const contentOf = (text) => (typeof text === "string" ? text : text ? [text] : []);

replace(
  CSL,
  "Blob",
  () =>
    function (text, token, levelname) {
      this.levelname = levelname;
      if (token) {
        const strings = { ...token.strings };
        if (!("prefix" in strings)) {
          strings.prefix = "";
        }
        if (!("suffix" in strings)) {
          strings.suffix = "";
        }
        this.strings = strings;
        this.decorations = token.decorations?.length
          ? token.decorations.map((decoration) => decoration.slice())
          : [];
      } else {
        this.strings = { prefix: "", suffix: "", delimiter: "" };
        this.decorations = [];
      }
      this.blobs = contentOf(text);
      this.alldecor = [this.decorations];
    },
);

const asItIs = (text) => text;

replace(
  CSL,
  "getSafeEscape",
  (getSafeEscape) =>
    function (state) {
      if (state.opt.development_extensions.thin_non_breaking_space_html_hack) {
        return getSafeEscape.call(this, state);
      }
      const { area } = state.tmp;
      return area === "bibliography" || area === "citation"
        ? CSL.Output.Formats[state.opt.mode].text_escape
        : asItIs;
    },
);

// It looks for quotation marks and markup within a text, and most texts have none. It knows tags,
// straight and typographic apostrophes, and the marks of the style's language.
function expressionForTags(state) {
  const marks = ["open-quote", "close-quote", "open-inner-quote", "close-inner-quote"]
    .map((name) => state.getTerm(name))
    .filter(Boolean);
  if (marks.some((mark) => mark.trim() === "")) {
    return /(?:)/;
  }
  const characters = [...`<'"\u2019${marks.join("")}`].filter((character) => character.trim());
  const codes = characters.map((character) => `\\u{${character.codePointAt(0).toString(16)}}`);
  return new RegExp(`[${codes.join("")}]`, "u");
}

replace(
  CSL.Util,
  "FlipFlopper",
  (FlipFlopper) =>
    function (state) {
      FlipFlopper.call(this, state);
      const { processTags } = this;
      const expression = expressionForTags(state);
      this.processTags = (blob) => {
        if (expression.test(blob.blobs)) {
          processTags.call(this, blob);
        }
      };
    },
);
