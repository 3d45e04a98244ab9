// Makes of a CSL-JSON object, which may come from anywhere, one that citeproc-js can
// format without an exception: every field has the shape that its name promises, and
// what has no shape at all is left out.
import CSL from "citeproc";

import { cleanText } from "./markers.js";

const dateFields = new Set(CSL.DATE_VARIABLES);
const nameFields = new Set(CSL.NAME_VARIABLES);
const nameTexts = [
  "family",
  "given",
  "literal",
  "suffix",
  "non-dropping-particle",
  "dropping-particle",
];

function textOf(value) {
  return typeof value === "string" || typeof value === "number" ? cleanText(String(value)) : "";
}

function personOf(value) {
  const person = {};
  if (value !== null && typeof value === "object" && !Array.isArray(value)) {
    for (const field of nameTexts) {
      const text = textOf(value[field]);
      if (text) {
        person[field] = text;
      }
    }
    if (value["comma-suffix"]) {
      person["comma-suffix"] = true;
    }
  } else {
    person.literal = textOf(value);
  }
  return person.family || person.given || person.literal ? person : undefined;
}

const standsForOthers = ({ literal, family, given }) => (literal ?? family) === "others" && !given;

// A last name "others", as BibTeX writes it, marks the name before it; see others.js in Patches.
function peopleOf(value) {
  const people = (Array.isArray(value) ? value : [value])
    .map(personOf)
    .filter((person) => person !== undefined);
  if (people.length > 1 && standsForOthers(people.at(-1))) {
    people.pop();
    people.at(-1).hasOthers = true;
  }
  return people;
}

function datePartsOf(parts) {
  const numbers = [];
  for (const part of Array.isArray(parts) ? parts.slice(0, 3) : []) {
    const number = Number.parseInt(part, 10);
    if (!Number.isSafeInteger(number)) {
      break;
    }
    numbers.push(number);
  }
  return numbers;
}

function dateOf(value) {
  if (typeof value === "string" || typeof value === "number") {
    return { raw: textOf(value) };
  }
  if (value === null || typeof value !== "object") {
    return undefined;
  }
  const parts = Array.isArray(value["date-parts"])
    ? value["date-parts"]
        .slice(0, 2)
        .map(datePartsOf)
        .filter((numbers) => numbers.length > 0)
    : [];
  const date = {};
  if (parts.length > 0) {
    date["date-parts"] = parts;
  } else if (textOf(value.raw)) {
    date.raw = textOf(value.raw);
  } else if (textOf(value.literal)) {
    date.literal = textOf(value.literal);
  } else {
    return undefined;
  }
  if (Number.isInteger(Number(value.season)) && textOf(value.season)) {
    date.season = Number(value.season);
  }
  if (value.circa) {
    date.circa = true;
  }
  return date;
}

function fieldOf(name, value) {
  if (nameFields.has(name)) {
    const people = peopleOf(value);
    return people.length > 0 ? people : undefined;
  }
  return dateFields.has(name) ? dateOf(value) : textOf(value) || undefined;
}

// What stands before "Title: Subtitle"'s colon, for styles that want a short title of a work that
// has none; nothing where that would cut a face in two.
function shortTitleOf(title = "") {
  const end = title.indexOf(": ");
  const start = end > 0 ? title.slice(0, end) : "";
  const opened = start.match(/<(?!\/)/g)?.length ?? 0;
  const closed = start.match(/<\//g)?.length ?? 0;
  return opened === closed ? start : "";
}

// Throws when the text is no JSON object.
export function itemFromJson(json, id) {
  const given = JSON.parse(json);
  if (given === null || typeof given !== "object" || Array.isArray(given)) {
    throw new TypeError("not a JSON object");
  }
  const item = {};
  for (const [name, value] of Object.entries(given)) {
    const field = /^[A-Za-z-]+$/.test(name) ? fieldOf(name, value) : undefined;
    if (field !== undefined) {
      item[name] = field;
    }
  }
  const shortTitle = item["title-short"] || item.shortTitle || shortTitleOf(item.title);
  if (shortTitle) {
    item["title-short"] = shortTitle;
  }
  item.id = id;
  item.type = item.type || "document";
  return item;
}

function nameText(person) {
  return (
    person.literal ||
    [person["non-dropping-particle"], person.family].filter(Boolean).join(" ") ||
    person.given
  );
}

function yearText(date) {
  return (date && (date.year || date.literal)) || "";
}

// The year as the item has it, or what the language puts in its place ("n.d.").
export function yearOf(engine, item) {
  return String(yearText(item.issued) || engine.getTerm("no date", "short") || "");
}

// What is printed of an item when a style finds nothing to print: its plainest facts.
export function plainReference(item) {
  const names = (item.author || item.editor || []).map(nameText).join(", ");
  return [names, item.title || item["container-title"] || item.URL, yearText(item.issued)]
    .filter(Boolean)
    .join(". ");
}
