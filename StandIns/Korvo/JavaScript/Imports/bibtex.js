// BibTeX and BibLaTeX files, converted by citation-js.
import { plugins } from "@citation-js/core";
import "@citation-js/plugin-bibtex";

import "./latexCommands.js";
import { cutEntries } from "./bibtexEntries.js";
import { convertSound } from "./salvage.js";

// citation-js adds a file's own abbreviations to the general ones, for all files to come.
const { defaultStrings: abbreviations } = plugins.config.get("@bibtex").constants;
const general = { ...abbreviations };

function forgetAbbreviations() {
  for (const name of Object.keys(abbreviations)) {
    delete abbreviations[name];
  }
  Object.assign(abbreviations, general);
}

// The abbreviations that an entry's fields use without quotes, outside all braces.
const abbreviationUse = /[=#]\s*([A-Za-z_][A-Za-z0-9_:+.-]*)/y;

function usedAbbreviations(entry) {
  const used = [];
  let depth = 0;
  let quoted = false;
  for (let index = 0; index < entry.text.length; index += 1) {
    const character = entry.text[index];
    if (character === "\\") {
      index += 1;
    } else if (character === "{") {
      depth += 1;
    } else if (character === "}") {
      depth -= 1;
    } else if (character === '"' && depth === 1) {
      quoted = !quoted;
    } else if ((character === "=" || character === "#") && depth === 1 && !quoted) {
      abbreviationUse.lastIndex = index;
      const match = abbreviationUse.exec(entry.text);
      if (match) {
        used.push({
          name: match[1],
          start: abbreviationUse.lastIndex - match[1].length,
          end: abbreviationUse.lastIndex,
        });
      }
    }
  }
  return used;
}

const definedName = /@[ \t]*string\s*[{(]\s*([^\s=]+)\s*=/i;

// An abbreviation that nothing defines would vanish; its name is put in its place.
function spellOut(entry, defined, problems) {
  let text = entry.text;
  for (const { name, start, end } of usedAbbreviations(entry).reverse()) {
    if (!defined.has(name.toLowerCase())) {
      text = `${text.slice(0, start)}{${name}}${text.slice(end)}`;
      problems.push({
        line: entry.line,
        reason:
          `${entry.key}: the abbreviation "${name}" is not defined; ` +
          "its name is taken as the text",
      });
    }
  }
  return { ...entry, text };
}

function describe(entry, reason) {
  return { line: entry.line, reason: `${entry.key || "@" + entry.kind}: ${reason}` };
}

// citation-js counts places within the text it was given, not within the file.
function withoutPlace(reason) {
  const what = reason
    .replace(/^.*?(?:Syntax error|invalid syntax)[^:]*:\s*/i, "")
    .replace(/ at line \d+ col(?:umn)? \d+:?/i, "");
  return `cannot be read: ${what}`;
}

function convert(entries) {
  const source = entries.map(({ text }) => text).join("\n");
  return plugins.input.chain(source, { forceType: "@biblatex/text", generateGraph: false });
}

function convertReferences(prelude, entries) {
  const items = convert([...prelude, ...entries]);
  if (items.length !== entries.length) {
    throw new Error("not one reference for each entry");
  }
  return items;
}

// Abbreviations of abbreviations grow by doubling: nineteen lines can stand for a quarter of a
// gigabyte. What no field of any library takes is not a definition.
const longestAbbreviation = 65536;

function withoutLadders(definitions, problems) {
  const lengths = new Map();
  return definitions.filter((entry) => {
    const name = definedName.exec(entry.text)?.[1].toLowerCase();
    const used = usedAbbreviations(entry).map((use) => lengths.get(use.name.toLowerCase()) ?? 0);
    const length = used.reduce((sum, part) => sum + part, entry.text.length);
    if (length > longestAbbreviation) {
      const reason =
        `the abbreviation "${name}" stands for more than ${longestAbbreviation} characters, ` +
        "and is left out";
      problems.push({ line: entry.line, reason });
      return false;
    }
    lengths.set(name, length);
    return true;
  });
}

// The definitions of abbreviations that can be read. A file of nothing else is none to
// citation-js, so that one reference goes with them.
function soundDefinitions(definitions, problems) {
  const { results, broken } = convertSound(definitions, (entries) => {
    convert([...entries, { text: "@misc{x,}" }]);
    return entries;
  });
  reportBroken(broken, problems);
  return results.map(([entry]) => entry);
}

// A "$" without a partner is meant as the sign itself more often than not.
const withPlainDollars = (entry) => ({
  ...entry,
  text: entry.text.replace(/(\\.)|\$/gs, (match, escaped) => escaped ?? "\\$"),
});

function convertWithPlainDollars(prelude, broken, problems) {
  const retried = [...broken.keys()]
    .filter(({ text }) => text.includes("$"))
    .map((entry) => [entry, withPlainDollars(entry)]);
  const again = convertSound(
    retried.map(([, entry]) => entry),
    (entries) => convertReferences(prelude, entries),
  );
  for (const [original, entry] of retried.filter(([, changed]) => !again.broken.has(changed))) {
    broken.delete(original);
    problems.push(describe(entry, "a formula is not closed; every $ is taken as the sign itself"));
  }
  return again.results;
}

function reportBroken(broken, problems) {
  for (const [entry, reason] of broken) {
    problems.push(describe(entry, withoutPlace(reason)));
  }
}

// Languages as LaTeX calls them, and as everybody else does.
const languages = new Map(
  Object.entries({
    american: "en-US",
    australian: "en-AU",
    austrian: "de-AT",
    brazil: "pt-BR",
    brazilian: "pt-BR",
    british: "en-GB",
    bulgarian: "bg",
    canadian: "en-CA",
    catalan: "ca",
    chinese: "zh",
    croatian: "hr",
    czech: "cs",
    danish: "da",
    dutch: "nl",
    english: "en",
    estonian: "et",
    finnish: "fi",
    francais: "fr",
    french: "fr",
    german: "de",
    greek: "el",
    hebrew: "he",
    hungarian: "hu",
    icelandic: "is",
    italian: "it",
    japanese: "ja",
    korean: "ko",
    latin: "la",
    latvian: "lv",
    lithuanian: "lt",
    magyar: "hu",
    naustrian: "de-AT",
    ngerman: "de",
    norsk: "nb",
    norwegian: "no",
    nynorsk: "nn",
    persian: "fa",
    polish: "pl",
    portuges: "pt",
    portuguese: "pt",
    romanian: "ro",
    russian: "ru",
    serbian: "sr",
    slovak: "sk",
    slovene: "sl",
    slovenian: "sl",
    spanish: "es",
    swedish: "sv",
    swissgerman: "de-CH",
    turkish: "tr",
    ukenglish: "en-GB",
    ukrainian: "uk",
    usenglish: "en-US",
  }),
);

// BibLaTeX has lists of publishers and places where CSL has one text.
function plainFields(item) {
  const fields = Object.entries(item).map(([name, value]) =>
    Array.isArray(value) && value.every((member) => typeof member === "string")
      ? [name, value.join(" and ")]
      : [name, value],
  );
  const plain = Object.fromEntries(fields);
  const language =
    typeof plain.language === "string" && languages.get(plain.language.toLowerCase());
  return language ? { ...plain, language } : plain;
}

export function readBibTeX(text) {
  forgetAbbreviations();
  const problems = [];
  const closed = [];
  for (const entry of cutEntries(text)) {
    if (entry.text === undefined) {
      problems.push(describe(entry, "the entry is not closed"));
    } else {
      closed.push(entry);
    }
  }
  const definitions = withoutLadders(
    closed.filter(({ kind }) => kind === "string"),
    problems,
  );
  const names = definitions.map((entry) => definedName.exec(entry.text)?.[1].toLowerCase());
  const defined = new Set([...Object.keys(general), ...names]);
  const entries = closed
    .filter(({ kind }) => kind !== "string" && kind !== "preamble")
    .map((entry) => spellOut(entry, defined, problems));

  const prelude = soundDefinitions(definitions, problems);
  const { results, broken } = convertSound(entries, (sound) => convertReferences(prelude, sound));
  const rescued = convertWithPlainDollars(prelude, broken, problems);
  reportBroken(broken, problems);
  const references = [...results, ...rescued].map(([{ line, key }, item]) => ({
    line,
    key,
    item: plainFields(item),
  }));
  return { references: references.sort((left, right) => left.line - right.line), problems };
}
