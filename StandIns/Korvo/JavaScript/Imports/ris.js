// RIS files, converted by citation-js.
import { plugins } from "@citation-js/core";
import "@citation-js/plugin-ris";

import { convertSound } from "./salvage.js";

const tagLine = /^\s*([A-Z][A-Z0-9])\s{1,2}-(?:\s(.*))?$/;

// Records with their lines put in order: one line for each tag (a value may go on in the
// next line), one spelling of each tag, nothing that looks like a tag inside a value.
function cutRecords(text) {
  const records = [];
  const problems = [];
  let record;
  text.split(/\r\n|\r|\n/).forEach((line, index) => {
    const [, tag, value = ""] = tagLine.exec(line) ?? [];
    if (tag === "TY") {
      if (record) {
        problems.push({
          line: record.line,
          reason: "the record has no end (ER); it is taken to end at the next",
        });
      }
      record = { line: index + 1, tags: [["TY", value.trim()]] };
      records.push(record);
    } else if (tag === "ER") {
      record = undefined;
    } else if (tag && record) {
      record.tags.push([tag === "A1" ? "AU" : tag, value.trim()]);
    } else if (tag) {
      problems.push({ line: index + 1, reason: `a ${tag} line outside any record is left out` });
    } else if (record && line.trim()) {
      record.tags.at(-1)[1] += ` ${line.trim()}`;
    }
  });
  if (record) {
    problems.push({
      line: record.line,
      reason: "the record has no end (ER); the file may be cut short",
    });
  }
  return { records, problems };
}

function sourceOf({ tags }) {
  const lines = tags.map(([tag, value]) => `${tag}  - ${value.replace(/ {2}-( |$)/g, " -$1")}`);
  return [...lines, "ER  - ", ""].join("\n");
}

function convert(records) {
  const items = plugins.input.chain(records.map(sourceOf).join(""), {
    forceType: "@ris/file",
    generateGraph: false,
  });
  if (items.length !== records.length) {
    throw new Error("not one reference for each record");
  }
  return items;
}

// A first page without a last one is all there is to print.
function withPages(item) {
  return item.page || !item["page-first"] ? item : { ...item, page: item["page-first"] };
}

export function readRIS(text) {
  const { records, problems } = cutRecords(text);
  const { results, broken } = convertSound(records, convert);
  for (const [record, reason] of broken) {
    problems.push({ line: record.line, reason: `the record cannot be read: ${reason}` });
  }
  const references = results.map(([record, item]) => ({
    line: record.line,
    key: record.tags.find(([tag, value]) => tag === "ID" && value)?.[1] ?? "",
    item: withPages(item),
  }));
  return { references, problems };
}
