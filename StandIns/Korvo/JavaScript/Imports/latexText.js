// LaTeX's text as the text that it prints, with CSL's marks for faces. There is no text that
// cannot be read. A command that is not known prints its argument, or else its name (\ConTeXt),
// and is told.
import {
  formatting,
  ligatures,
  mathScripts,
} from "@citation-js/plugin-bibtex/lib-mjs/input/constants.js";

import {
  accentOf,
  bareAccentOf,
  faceOf,
  faceOfRest,
  printerOf,
  symbolOf,
  verbatimCommands,
} from "./latexCommands.js";

// Nobody nests deeper; a file that does would exhaust the machine's stack.
const deepest = 100;

const special = /[\\{}$~`\t\n\r]|--|''| {2}|[?!]`/;
const plainText = /[^\\{}$~\s`'^_?!-]+/y;
const commandName = /\\([A-Za-z]+|[^])/y;
const ligature = /---?|''|``|[?!]`|`/y;
const blanks = /\s*/y;
const starredArgument = /\*(?=\s*\{)/y;
const optionalArgument = /\s*\[[^\]{}]{0,200}\]/y;
const oneCharacter = /[^][\u0300-\u036f]*/uy;
// An accent goes behind the first letter, not behind the mark of a face.
const firstLetter = /^((?:<[^>]*>)*)([^][\u0300-\u036f]*)/u;

const ligatureTexts = { ...ligatures, "`": "\u2018", "?`": "\u00bf", "!`": "\u00a1" };

function inFace(text, face) {
  const marks = text && face ? formatting[face] : undefined;
  return marks ? marks[0] + text + marks[1] : text;
}

function accented(text, name) {
  if (!text.trim()) {
    return bareAccentOf.get(name) ?? "";
  }
  return text
    .replace(firstLetter, (match, marks, letter) => {
      const dotted = letter.replace("\u0131", "i").replace("\u0237", "j");
      return marks + dotted + accentOf.get(name);
    })
    .normalize("NFC");
}

function raisedOrLowered(text, script) {
  if (text === "\u2218" && script === "^") {
    return "\u00b0";
  }
  const letters = [...text];
  return letters.every((letter) => Object.hasOwn(mathScripts[script], letter))
    ? letters.map((letter) => mathScripts[script][letter]).join("")
    : inFace(text, script === "^" ? "superscript" : "subscript");
}

function isBalanced(text) {
  let open = 0;
  for (const [brace] of text.matchAll(/\\[^]|[{}]/g)) {
    open += brace === "{" ? 1 : brace === "}" ? -1 : 0;
    if (open < 0) {
      return false;
    }
  }
  return open === 0;
}

class LatexReader {
  // `remarks` takes what was not understood: { commands, hasLoneDollar }.
  constructor(text, remarks) {
    this.text = text;
    this.remarks = remarks;
    this.position = 0;
    this.isBlankSkipped = false;
    this.quotations = 0;
    this.formulas = 0;
  }

  match(pattern) {
    pattern.lastIndex = this.position;
    const found = pattern.exec(this.text);
    this.position += found?.[0].length ?? 0;
    return found;
  }

  // Up to `closer`, which is read too, or to the end of the text.
  read(closer, depth) {
    let output = "";
    while (this.position < this.text.length) {
      const plain = this.match(plainText);
      if (plain) {
        output += plain[0];
        continue;
      }
      const character = this.text[this.position];
      if (character === closer) {
        this.position += 1;
        return output;
      }
      if (character === "\\") {
        const name = this.readName();
        if (faceOfRest.has(name) && depth < deepest) {
          return output + inFace(this.read(closer, depth + 1), faceOfRest.get(name));
        }
        output += this.readCommand(name, depth);
      } else if (character === "$") {
        output += this.readDollar(depth);
      } else {
        output += this.readCharacter(character, depth);
      }
    }
    return output;
  }

  readCharacter(character, depth) {
    const isScript = (character === "^" || character === "_") && this.formulas > 0;
    const joined = isScript ? null : this.match(ligature);
    if (joined) {
      return ligatureTexts[joined[0]];
    }
    if (this.match(blanks)[0]) {
      return " ";
    }
    this.position += 1;
    if (isScript) {
      return raisedOrLowered(this.readArgument(depth), character);
    }
    if (character === "{") {
      return depth < deepest ? this.read("}", depth + 1) : "";
    }
    return character === "}" ? "" : character === "~" ? "\u00a0" : character;
  }

  readArgument(depth) {
    this.match(blanks);
    const character = this.text[this.position];
    if (character === undefined || character === "}" || character === "$") {
      return "";
    }
    if (character === "{") {
      this.position += 1;
      return depth < deepest ? this.read("}", depth + 1) : "";
    }
    if (character === "\\") {
      return depth < deepest ? this.readCommand(this.readName(), depth + 1) : "";
    }
    return this.match(oneCharacter)[0];
  }

  readArgumentInBraces(depth) {
    return this.text[this.position] === "{" ? this.readArgument(depth) : "";
  }

  // An address, in which "~" and "_" are themselves.
  readVerbatim() {
    this.match(blanks);
    const start = this.position + 1;
    const end = this.text[start - 1] === "{" ? this.text.indexOf("}", start) : -1;
    if (end < 0) {
      return "";
    }
    this.position = end + 1;
    return verbatimText(this.text.slice(start, end));
  }

  readName() {
    const found = this.match(commandName);
    if (!found) {
      this.position += 1;
      return "";
    }
    // A blank ends a name of letters, and is not printed.
    this.isBlankSkipped = false;
    if (/[A-Za-z]/.test(found[1]) && this.formulas === 0) {
      this.isBlankSkipped = this.match(blanks)[0] !== "";
    }
    return found[1];
  }

  readCommand(name, depth) {
    if (accentOf.has(name)) {
      return accented(this.readArgument(depth), name);
    }
    if (symbolOf.has(name)) {
      return symbolOf.get(name);
    }
    if (verbatimCommands.has(name)) {
      return this.readVerbatim();
    }
    if (faceOf.has(name)) {
      return this.readInFace(faceOf.get(name), depth);
    }
    if (printerOf.has(name)) {
      const print = printerOf.get(name);
      this.match(optionalArgument);
      const given = Array.from({ length: print.length }, () => this.readArgument(depth));
      return print(...given);
    }
    if (name === "begin" || name === "end") {
      this.readArgument(depth);
      return " ";
    }
    if (!/^[A-Za-z]+$/.test(name)) {
      return name || "\\";
    }
    this.remarks.commands.add(name);
    const named = this.isBlankSkipped ? `${name} ` : name;
    return this.readArgumentInBraces(depth) || named;
  }

  readInFace(face, depth) {
    const isStarred = this.match(starredArgument) !== null;
    this.match(optionalArgument);
    if (face !== "quotes") {
      return inFace(this.readArgument(depth), face);
    }
    const outside = this.quotations;
    this.quotations += isStarred ? 2 : 1;
    const isInner = this.quotations % 2 === 0;
    const text = this.readArgument(depth);
    this.quotations = outside;
    return isInner ? `\u2018${text}\u2019` : `\u201c${text}\u201d`;
  }

  // A formula has one of the signs that formulas are made of; or else no blank stands before the
  // "$" that closes it, and no digit behind: "$5 and $6" are prices.
  readDollar(depth) {
    const rest = this.text.slice(this.position, this.position + 2000);
    const formula = /^\$\$?((?:\\[^]|[^\\$])+)\$\$?/.exec(rest);
    const isFormula =
      formula &&
      isBalanced(formula[1]) &&
      (/[\\^_=<>]/.test(formula[1]) ||
        (!/^\s|\s$/.test(formula[1]) && !/\d/.test(rest[formula[0].length])));
    if (!isFormula || this.formulas > 0 || depth >= deepest) {
      this.remarks.hasLoneDollar = true;
      this.position += 1;
      return "$";
    }
    const inner = new LatexReader(formula[1], this.remarks);
    inner.formulas = 1;
    this.position += formula[0].length;
    return inner.read("", depth + 1);
  }
}

export const newRemarks = () => ({ commands: new Set(), hasLoneDollar: false });

export function latexText(source, remarks = newRemarks()) {
  const text = special.test(source) ? new LatexReader(source, remarks).read("", 0) : source;
  return text
    .replace(/\s*\u00a0\s*|\s{2,}/g, (run) => (run.includes("\u00a0") ? "\u00a0" : " "))
    .trim();
}

const outerBraces = /^\s*\{([^{}]*)\}\s*$/;
const outerUrl = /^\s*\\(?:url|nolinkurl|path)\s*\{([^]*)\}\s*$/;
const named = "textasciitilde|sim|textunderscore|textasciicircum|string|allowbreak|slash";
const escape = new RegExp(
  `\\$?\\\\(?:(${named})(?:\\{\\}|\\s)*\\$?|([~^])(?:\\{\\})?|([^]))|[{}]`,
  "g",
);
const escapeTexts = {
  sim: "~",
  textasciitilde: "~",
  textasciicircum: "^",
  textunderscore: "_",
  slash: "/",
};

// Addresses and numbers, in which nothing is TeX's but what TeX needs to let them be.
export function verbatimText(source) {
  let text = outerUrl.exec(source)?.[1] ?? source;
  text = outerBraces.exec(text)?.[1] ?? text;
  if (/[\\{}]/.test(text)) {
    text = text.replace(escape, (match, name, accent, character) => {
      if (name) {
        return escapeTexts[name] ?? "";
      }
      return accent ?? (character && /[-/]/.test(character) ? "" : (character ?? ""));
    });
  }
  return text.replace(/\s*[\n\r]\s*/g, "").trim();
}
