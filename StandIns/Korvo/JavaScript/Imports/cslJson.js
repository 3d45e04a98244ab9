// CSL-JSON files: an array of items, an object with such an array, or a single item.

// Cuts a text into its outermost objects, so that a broken one can be left out. Strings
// end with their line at the latest: JSON has no line breaks in them.
function cutObjects(text) {
  const objects = [];
  const starts = [];
  let quoted = false;
  let line = 1;
  let startLine = 1;
  for (let index = 0; index < text.length; index += 1) {
    const character = text[index];
    if (character === "\n") {
      line += 1;
      quoted = false;
    } else if (quoted) {
      index += character === "\\" ? 1 : 0;
      quoted = character !== '"';
    } else if (character === '"') {
      quoted = true;
    } else if (character === "{") {
      startLine = starts.length === 0 ? line : startLine;
      starts.push(index);
    } else if (character === "}" && starts.length > 0) {
      const start = starts.pop();
      if (starts.length === 0) {
        objects.push({ line: startLine, text: text.slice(start, index + 1) });
      }
    }
  }
  if (starts.length > 0) {
    objects.push({ line: startLine, text: text.slice(starts[0]) });
  }
  return objects;
}

const isObject = (value) => value !== null && typeof value === "object" && !Array.isArray(value);

function parseObjects(objects) {
  const references = [];
  const problems = [];
  for (const { line, text } of objects) {
    try {
      references.push({ line, item: JSON.parse(text) });
    } catch (error) {
      problems.push({ line, reason: `the item cannot be read: ${error.message}` });
    }
  }
  return { references, problems };
}

function keyOf(item) {
  const key = item["citation-key"] ?? item.id;
  return typeof key === "string" || typeof key === "number" ? String(key).trim() : "";
}

// The lines of the items of a sound file, which its parser does not tell.
function withLines(text, items) {
  const objects = cutObjects(text);
  const lines = objects.length === items.length ? objects.map(({ line }) => line) : [];
  return items.map((item, index) => ({ line: lines[index] ?? 0, item }));
}

function parseWhole(text) {
  const value = JSON.parse(text);
  const items = Array.isArray(value) ? value : Array.isArray(value?.items) ? value.items : [value];
  return withLines(text, items);
}

export function readCslJson(text) {
  const problems = [];
  let references;
  try {
    references = parseWhole(text);
  } catch (error) {
    const objects = cutObjects(text);
    if (objects.length === 0) {
      return { references: [], problems: [{ line: 1, reason: `no JSON: ${error.message}` }] };
    }
    const salvaged = parseObjects(objects);
    references = salvaged.references;
    problems.push(...salvaged.problems);
    if (problems.length === 0) {
      problems.push({
        line: 0,
        reason: `the file is no valid JSON (${error.message}); its items are read one by one`,
      });
    }
  }
  const sound = references.filter(({ line, item }) => {
    if (!isObject(item)) {
      problems.push({ line, reason: "not an item: no JSON object" });
    }
    return isObject(item);
  });
  return {
    references: sound.map(({ line, item }) => ({ line, key: keyOf(item), item })),
    problems,
  };
}
