// Reads the text of a .bib file into its entries and fields, without understanding what they
// say. A file may be broken at any place: what is broken costs as little as it can, and each
// loss is told. Linear in the length of the file.
//
// An entry whose braces are not closed would swallow all that follow it. So an entry goes no
// further than to the next line that begins like one.
const name = "[^\\s\"#%'(),={}@\\\\]+";
const keyed = `@\\s*${name}\\s*[{(]\\s*[^\\s,{}="]{0,200}\\s*,`;
const entryStart = new RegExp(`@\\s*(${name})\\s*([{(])`, "y");
const unkeyed = "@\\s*(?:string|preamble|comment)\\s*[{(]";
const entryLine = new RegExp(`^[ \\t]*(?:${keyed}|${unkeyed})`, "gim");
const anyEntry = new RegExp(keyed, "g");
const keyText = /[^,={}\n\r]*/y;
const keyTextInParentheses = /[^,={}\n\r)]*/y;
const indentation = /[ \t]*/y;
const blanks = /(?:\s|%[^\n]*)*/y;
const blanksAndCommas = /(?:[\s,]|%[^\n]*)*/y;
const fieldName = new RegExp(`(${name})\\s*`, "y");
const fieldStart = new RegExp(`${name}\\s*=`, "y");
const plainValue = /[^\s,#{}()"=%@]+/y;

function matchAt(pattern, text, position) {
  pattern.lastIndex = position;
  return pattern.exec(text);
}

function skip(pattern, text, position) {
  return position + (matchAt(pattern, text, position)?.[0].length ?? 0);
}

// Where the pattern matches next, searched through the text once, however often it is asked
// for growing positions.
function nextPlace(pattern, text) {
  let searchedFrom = 0;
  let found = -1;
  return (position) => {
    if (found < position || position < searchedFrom) {
      pattern.lastIndex = position;
      searchedFrom = position;
      found = pattern.exec(text)?.index ?? text.length;
    }
    return found;
  };
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

// The place of the brace that closes a group whose inside begins at `position`, or -1. TeX
// counts every brace; with `escapes` those behind a backslash do not count, as people expect.
function closingBrace(text, position, limit, escapes) {
  let depth = 1;
  for (let index = position; index < limit; index += 1) {
    const code = text.charCodeAt(index);
    if (code === 0x5c && escapes) {
      index += 1;
    } else if (code === 0x7b) {
      depth += 1;
    } else if (code === 0x7d) {
      depth -= 1;
      if (depth === 0) {
        return index;
      }
    }
  }
  return -1;
}

// More quotation marks than any text has that nothing fitting follows.
const mostMarks = 1000;

// Reads one entry. `limit` is where it ends at the latest.
class EntryReader {
  constructor(text, position, limit, closer) {
    this.text = text;
    this.position = position;
    this.limit = limit;
    this.closer = closer;
    this.problems = [];
  }

  // The key is what stands before the first comma. LaTeX takes none with blanks, people do.
  readKey() {
    const start = skip(blanks, this.text, this.position);
    const pattern = this.closer === "}" ? keyText : keyTextInParentheses;
    const [before] = matchAt(pattern, this.text, start);
    // Where a comma is missing, the last word is the first field's name.
    const isField = this.text[start + before.length] === "=";
    const key = isField ? before.replace(/\S*\s*$/, "") : before;
    this.position = start + key.length;
    if (key.trim()) {
      return key.trim();
    }
    this.problems.push("the entry has no citation key");
    return "";
  }

  // A value is followed by what may follow one: a sign that the right end was found.
  isEndOfValue(position) {
    const place = skip(blanks, this.text, position);
    const next = this.text[place];
    return next === "#" || next === this.closer || (next === "," && this.isBeforeField(place));
  }

  // Before the next field, or before the entry's end.
  isBeforeField(position) {
    const place = skip(blanksAndCommas, this.text, position);
    const isEnd = place >= this.limit || this.text[place] === this.closer;
    return isEnd || matchAt(fieldStart, this.text, place) !== null;
  }

  // An entry that goes on behind its end was closed by a brace too many.
  goesOn(position) {
    const place = skip(blanks, this.text, position);
    const next = skip(blanksAndCommas, this.text, place);
    return this.text[place] === "," && matchAt(fieldStart, this.text, next) !== null;
  }

  // The next line that begins like a field, or `end`.
  nextFieldLine(position, end) {
    for (let line = this.text.indexOf("\n", position); line >= 0 && line < end;) {
      const start = skip(indentation, this.text, line + 1);
      if (matchAt(fieldStart, this.text, start)) {
        return start;
      }
      line = this.text.indexOf("\n", line + 1);
    }
    return end;
  }

  endOfBraces(start) {
    const asTeX = closingBrace(this.text, start, this.limit, false);
    const isSure = asTeX >= 0 && this.isEndOfValue(asTeX + 1);
    if (isSure && this.text[asTeX - 1] !== "\\") {
      return asTeX;
    }
    const escaped = closingBrace(this.text, start, this.limit, true);
    if (escaped >= 0 && escaped !== asTeX && (asTeX < 0 || this.isBetterEnd(escaped, asTeX))) {
      return escaped;
    }
    if (isSure) {
      return asTeX;
    }
    // A brace that was not closed has taken the entry's own.
    const hasSwallowed =
      skip(blanks, this.text, asTeX + 1) >= this.limit && this.nextFieldLine(start, asTeX) < asTeX;
    return hasSwallowed ? -1 : asTeX;
  }

  isBetterEnd(escaped, asTeX) {
    return this.isEndOfValue(escaped + 1) && this.text[skip(blanks, this.text, asTeX + 1)] !== ",";
  }

  // A quotation mark within braces is none, nor is one that nothing fitting follows: `\"o`.
  endOfQuotation(start) {
    let depth = 0;
    let first = -1;
    let marks = 0;
    for (let index = start; index < this.limit && marks < mostMarks; index += 1) {
      const code = this.text.charCodeAt(index);
      if (code === 0x7b) {
        depth += 1;
      } else if (code === 0x7d) {
        depth -= 1;
        if (depth < 0 && first >= 0) {
          return first;
        }
      } else if (code === 0x22 && depth <= 0) {
        const place = skip(blanks, this.text, index + 1);
        if (this.isEndOfValue(place) || matchAt(fieldStart, this.text, place)) {
          return index;
        }
        first = first < 0 ? index : first;
        marks += 1;
      }
    }
    return first;
  }

  // One piece of a value, { text } or { abbreviation }; undefined where there is none, null
  // where it has no end.
  readPiece() {
    const first = this.position < this.limit ? this.text[this.position] : "";
    if (first === "{" || first === '"') {
      const start = this.position + 1;
      const end = first === "{" ? this.endOfBraces(start) : this.endOfQuotation(start);
      if (end < 0) {
        return null;
      }
      this.position = end + 1;
      return { text: this.text.slice(start, end) };
    }
    const plain = matchAt(plainValue, this.text, this.position)?.[0];
    if (plain === undefined) {
      return undefined;
    }
    this.position += plain.length;
    return /^\d+$/.test(plain) ? { text: plain } : { abbreviation: plain };
  }

  // The pieces of a value, which "#" joins; undefined where one of them has no end.
  readValue() {
    const pieces = [];
    for (;;) {
      this.position = skip(blanks, this.text, this.position);
      const piece = this.readPiece();
      if (piece === null) {
        return undefined;
      }
      if (piece) {
        pieces.push(piece);
      }
      const behind = skip(blanks, this.text, this.position);
      if (!piece || this.text[behind] !== "#" || behind >= this.limit) {
        return pieces;
      }
      this.position = behind + 1;
    }
  }

  // To the next field, or to the end of the entry.
  skipWhatIsBroken() {
    const line = this.nextFieldLine(this.position, this.limit);
    let depth = 0;
    for (; this.position < line; this.position += 1) {
      const character = this.text[this.position];
      if (depth === 0 && (character === this.closer || character === ",")) {
        return;
      }
      if (character === "{") {
        depth += 1;
      } else if (character === "}") {
        depth -= 1;
      }
    }
  }

  // One field at the reader's position, as [name, pieces]; undefined where there is none.
  readField() {
    const found = matchAt(fieldName, this.text, this.position);
    if (!found) {
      const rest = this.text.slice(this.position, Math.min(this.position + 20, this.limit));
      this.problems.push(`"${rest.split("\n")[0]}" is no field, and is left out`);
      this.position += 1;
      this.skipWhatIsBroken();
      return undefined;
    }
    const field = found[1];
    this.position += found[0].length;
    const start = this.position;
    const next = this.text[start];
    if (next === "=") {
      this.position += 1;
    } else if (next === "{" || next === '"') {
      this.problems.push(`there is no = behind "${field}"; what follows is taken as its text`);
    } else {
      this.problems.push(`there is no = behind "${field}", which is left out`);
      this.skipWhatIsBroken();
      return undefined;
    }
    const pieces = this.readValue();
    if (!pieces) {
      this.problems.push(`the text of the field "${field}" has no end, and is left out`);
      this.position = this.nextFieldLine(start, this.limit);
      return undefined;
    }
    return [field, pieces];
  }

  // All fields, and whether the entry was closed.
  readFields() {
    const fields = [];
    for (;;) {
      this.position = skip(blanksAndCommas, this.text, this.position);
      if (this.position >= this.limit) {
        return { fields, closed: false };
      }
      const character = this.text[this.position];
      if (character === this.closer || character === "}") {
        this.position += 1;
        if (!this.goesOn(this.position)) {
          return { fields, closed: true };
        }
        this.problems.push(`there is a ${character} too many before the entry's end`);
        continue;
      }
      const field = this.readField();
      if (field) {
        fields.push(field);
      }
    }
  }
}

const isAddress = (text, position) => position > 0 && /[\w.]/.test(text[position - 1]);

// Gives each entry as { kind, key, line, fields, closed, problems }: `fields` are [name, pieces]
// in their order, `problems` what was wrong, in words. Comments are left out. `onEntry` is told
// how many there are before each.
export function readEntries(text, onEntry) {
  const entries = [];
  const lineOf = lineCounter(text);
  const nextEntryLine = nextPlace(entryLine, text);
  const nextEntry = nextPlace(anyEntry, text);
  // How much may be read in vain for entries without an end, before every "@" limits them.
  let patience = 4 * text.length;
  let position = text.indexOf("@");
  while (position >= 0) {
    const start = matchAt(entryStart, text, position);
    if (!start || (isAddress(text, position) && nextEntry(position) !== position)) {
      position = text.indexOf("@", position + 1);
      continue;
    }
    const kind = start[1].toLowerCase();
    const inside = position + start[0].length;
    const limit = patience > 0 ? nextEntryLine(inside) : nextEntry(inside);
    if (kind === "comment" || kind === "preamble") {
      const end = closingBrace(text, inside, limit, false);
      patience -= end < 0 ? limit - inside : 0;
      position = text.indexOf("@", end < 0 ? inside : end);
      continue;
    }
    const reader = new EntryReader(text, inside, limit, start[2] === "{" ? "}" : ")");
    const key = kind === "string" ? "" : reader.readKey();
    const { fields, closed } = reader.readFields();
    onEntry(entries.length);
    entries.push({ kind, key, line: lineOf(position), fields, closed, problems: reader.problems });
    // What an entry without an end has swallowed may begin in the midst of a line.
    patience -= closed ? 0 : limit - inside;
    position = text.indexOf("@", closed ? reader.position : Math.min(limit, nextEntry(inside)));
  }
  return entries;
}
