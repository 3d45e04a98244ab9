// Names as BibTeX has them: "First von Last", "von Last, First", "von Last, Jr, First", or
// BibLaTeX's "family=Last, given=First". "and" stands between them.
import { latexText } from "./latexText.js";

// Cuts at what the pattern (sticky) finds outside all braces.
function cut(text, pattern) {
  const pieces = [];
  let depth = 0;
  let start = 0;
  for (let index = 0; index < text.length; index += 1) {
    const character = text[index];
    if (character === "\\") {
      index += 1;
    } else if (character === "{") {
      depth += 1;
    } else if (character === "}") {
      depth -= 1;
    } else if (depth <= 0) {
      pattern.lastIndex = index;
      const found = pattern.exec(text);
      if (found) {
        pieces.push(text.slice(start, index));
        start = index + found[0].length;
        index = start - 1;
      }
    }
  }
  pieces.push(text.slice(start));
  return pieces;
}

const between = /\s+and(?=\s)/iy;
const comma = /,/y;
const blank = /[\s~]+/y;

const words = (text) => cut(text, blank).filter((word) => word !== "");

// A word that begins with a small letter is a particle. What stands in braces has no case,
// unless it is a letter with an accent.
function isParticle(word) {
  if (/^\{(?!\\)/.test(word)) {
    return false;
  }
  const letter = /\p{L}/u.exec(latexText(word))?.[0] ?? "";
  return letter !== letter.toUpperCase();
}

function joined(parts, remarks) {
  return latexText(parts.join(" "), remarks);
}

function person(fields) {
  return Object.fromEntries(Object.entries(fields).filter(([, text]) => text));
}

// The particles, and the family name: at least one word.
function familyOf(parts, remarks) {
  let end = 0;
  parts.forEach((word, index) => {
    if (index < parts.length - 1 && isParticle(word)) {
      end = index + 1;
    }
  });
  return {
    "non-dropping-particle": joined(parts.slice(0, end), remarks),
    family: joined(parts.slice(end), remarks),
  };
}

// A part may stand in quotation marks as a whole, or what it says.
const extendedPart = /^\s*"?\s*([a-z-]+)\s*=\s*"?([^]*?)"?\s*$/;

function extendedName(parts, remarks) {
  const said = new Map(parts.map((part) => extendedPart.exec(part).slice(1)));
  const text = (name) => latexText(said.get(name) ?? "", remarks);
  return person({
    given: text("given"),
    suffix: text("suffix"),
    "non-dropping-particle": text("prefix"),
    family: text("family"),
  });
}

function nameOf(text, remarks) {
  const parts = cut(text, comma);
  if (parts.every((part) => extendedPart.test(part))) {
    return extendedName(parts, remarks);
  }
  if (parts.length > 1) {
    const [family, ...rest] = parts;
    const [given, suffix] = rest.length > 1 ? [rest.slice(1).join(","), rest[0]] : [rest[0], ""];
    return person({
      given: joined(words(given), remarks),
      suffix: joined(words(suffix), remarks),
      ...familyOf(words(family), remarks),
    });
  }
  const all = words(text);
  const firstParticle = all.slice(0, -1).findIndex(isParticle);
  const end = firstParticle < 0 ? Math.max(all.length - 1, 0) : firstParticle;
  return person({
    given: joined(all.slice(0, end), remarks),
    ...familyOf(all.slice(end), remarks),
  });
}

const isMember = (text) => text.trim() !== "";

// Gives CSL names. "and others" becomes the last of them, { literal: "others" }: CSL has no
// other word for it, and who prints names knows it (see peopleOf in Citations/items.js).
export function namesOf(text, remarks) {
  const members = cut(` ${text} `, between).filter(isMember);
  return members
    .map((member, index) =>
      index > 0 && index === members.length - 1 && member.trim().toLowerCase() === "others"
        ? { literal: "others" }
        : nameOf(member, remarks),
    )
    .filter((name) => Object.keys(name).length > 0);
}

// The members of a list that are no names: publishers, places.
export function listOf(text, remarks) {
  const members = cut(` ${text} `, between).filter(isMember);
  return members.map((member) => latexText(member, remarks)).filter(Boolean);
}
