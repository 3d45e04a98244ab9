// Abbreviations: a file's own (@string), and those that every file may use.
import { defaultStrings } from "@citation-js/plugin-bibtex/lib-mjs/input/constants.js";

// Abbreviations of abbreviations grow by doubling: nineteen lines can stand for a quarter of a
// gigabyte. What no field of any library takes is not a definition.
const longestAbbreviation = 65536;
// What one value, and all values of a file, may take out of abbreviations.
const longestValue = 16 * longestAbbreviation;
const mostOfAFile = 1024 * longestAbbreviation;

const months =
  "january february march april may june july august september october november december".split(
    " ",
  );
const general = [
  ...Object.entries(defaultStrings),
  // By name: "8 jan" tells then what is the day.
  ...months.map((month) => [month.slice(0, 3), month]),
];

export class Abbreviations {
  constructor() {
    this.texts = new Map(general);
    this.leftOut = new Set();
    this.taken = 0;
  }

  define(name, pieces, report) {
    const key = name.toLowerCase();
    if (pieces.some(({ abbreviation = "" }) => this.leftOut.has(abbreviation.toLowerCase()))) {
      this.leftOut.add(key);
      return;
    }
    const text = this.textOf(pieces, () => {});
    if (text.length > longestAbbreviation) {
      this.leftOut.add(key);
      report(
        `the abbreviation "${name}" stands for more than ${longestAbbreviation} characters, ` +
          "and is left out",
      );
      return;
    }
    this.texts.set(key, text);
  }

  // The text of a value. An abbreviation that nothing defines stands for its name.
  textOf(pieces, report) {
    if (pieces.length === 1 && pieces[0].text !== undefined) {
      return pieces[0].text;
    }
    let whole = "";
    for (const { text, abbreviation } of pieces) {
      if (text !== undefined) {
        whole += text;
        continue;
      }
      const found = this.texts.get(abbreviation.toLowerCase());
      if (found === undefined) {
        report(`the abbreviation "${abbreviation}" is not defined; its name is taken as the text`);
      }
      const isTooMuch = whole.length > longestValue || this.taken > mostOfAFile;
      if (isTooMuch && found !== undefined) {
        report(`the abbreviation "${abbreviation}" makes the text too long; its name is taken`);
      }
      const added = isTooMuch ? abbreviation : (found ?? abbreviation);
      this.taken += added.length;
      whole += added;
    }
    return whole;
  }
}
