// A citation without its brackets: "Smith 2001" for "(Smith 2001)", "1, 2" for "[1], [2]".
//
// Most styles print the brackets as affixes of the whole citation; these are left out
// before anything is printed. The others print them inside, around each cite or group of
// cites; there they are taken out of the printed text, but only pairs that no other
// brackets stand around, and only if the text begins and ends with such a pair.

const closing = new Map(
  [
    "()",
    "[]",
    "{}",
    "<>",
    "\u2039\u203a",
    "\u00ab\u00bb",
    "\uff08\uff09",
    "\uff3b\uff3d",
    "\u3010\u3011",
    "\u3014\u3015",
  ].map((pair) => [pair[0], pair[1]]),
);
const closers = new Set(closing.values());
const isBracket = (character) => closing.has(character) || closers.has(character);

export const hasBracket = (affix) => [...affix].some(isBracket);
export const withoutBrackets = (affix) =>
  [...affix]
    .filter((character) => !isBracket(character))
    .join("")
    .trim();

// The places of the outermost brackets, in pairs; nothing when they do not match.
function outerPairs(text) {
  const pairs = [];
  const open = [];
  for (let index = 0; index < text.length; index += 1) {
    const character = text[index];
    if (closing.has(character)) {
      open.push(index);
    } else if (closers.has(character)) {
      const start = open.pop();
      if (start === undefined || closing.get(text[start]) !== character) {
        return [];
      }
      if (open.length === 0) {
        pairs.push([start, index]);
      }
    }
  }
  return open.length === 0 ? pairs : [];
}

// Control characters in the text are marks of its looks (see markers.js).
const isMark = (character) => character < " ";

export function withoutOuterBrackets(text) {
  const pairs = outerPairs(text);
  const first = text.split("").findIndex((character) => !isMark(character));
  const last =
    text.length -
    1 -
    text
      .split("")
      .reverse()
      .findIndex((character) => !isMark(character));
  if (pairs.length === 0 || pairs[0][0] !== first || pairs.at(-1)[1] !== last) {
    return text;
  }
  const places = new Set(pairs.flat());
  return text
    .split("")
    .filter((character, index) => !places.has(index))
    .join("");
}
