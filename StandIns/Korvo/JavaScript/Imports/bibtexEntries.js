// Cuts a .bib file into its entries, without understanding them, so that a broken one can
// be left out. Linear in the length of the file.
//
// An entry whose braces are not closed would swallow all that follow it; it is taken to
// end where a line begins like an entry.

const entryStart = /@[ \t]*([A-Za-z]+)\s*([{(])/y;
const nextEntryLine = /[ \t]*@[ \t]*[A-Za-z]+\s*\{[^\s,{}="]*\s*,/y;
const keyAfterBrace = /\s*([^\s,]+)\s*,/y;

function matchAt(pattern, text, position) {
  pattern.lastIndex = position;
  return pattern.exec(text);
}

// The place behind the entry's closing brace, or -1 where it is missing, with where the
// search stopped.
function findEnd(text, position, opener) {
  let depth = opener === "{" ? 1 : 0;
  for (let index = position; index < text.length; index += 1) {
    const character = text[index];
    if (character === "\\") {
      index += 1;
    } else if (character === "{") {
      depth += 1;
    } else if (character === "}") {
      depth -= 1;
      if (depth === 0 && opener === "{") {
        return { end: index + 1, resume: index + 1 };
      }
    } else if (character === ")" && depth === 0 && opener === "(") {
      return { end: index + 1, resume: index + 1 };
    } else if (character === "\n" && matchAt(nextEntryLine, text, index + 1)) {
      return { end: -1, resume: index + 1 };
    }
  }
  return { end: -1, resume: text.length };
}

// Counts lines while positions grow.
function lineCounter(text) {
  let line = 1;
  let counted = 0;
  return (position) => {
    for (; counted < position; counted += 1) {
      if (text[counted] === "\n") {
        line += 1;
      }
    }
    return line;
  };
}

// Gives each entry as { kind, key, line, text }; one that is not closed has no text.
// Comments are left out.
export function cutEntries(text) {
  const entries = [];
  const lineOf = lineCounter(text);
  let position = text.indexOf("@");
  while (position >= 0) {
    const start = matchAt(entryStart, text, position);
    if (!start) {
      position = text.indexOf("@", position + 1);
      continue;
    }
    const kind = start[1].toLowerCase();
    const inside = entryStart.lastIndex;
    const { end, resume } = findEnd(text, inside, start[2]);
    if (kind !== "comment") {
      entries.push({
        kind,
        key: matchAt(keyAfterBrace, text, inside)?.[1] ?? "",
        line: lineOf(position),
        text: end < 0 ? undefined : text.slice(position, end),
      });
    }
    position = text.indexOf("@", kind === "comment" && end < 0 ? inside : resume);
  }
  return entries;
}
