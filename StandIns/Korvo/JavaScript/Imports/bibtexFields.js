// An entry's fields, read in the ways that a field may be read. What is wrong with a field is told
// when it is read for the first time: nobody wants to hear of fields that are not used.
import { listOf, namesOf } from "./bibtexNames.js";
import { latexText, newRemarks } from "./latexText.js";

export class EntryFields {
  // `fields` maps names to { pieces, isRepeated }; `textOf` makes a text of pieces, and tells
  // its second argument what it could not.
  constructor(fields, textOf, report) {
    this.fields = fields;
    this.textOf = textOf;
    this.report = report;
    this.raws = new Map();
    this.texts = new Map();
  }

  // The text as it stands in the file, abbreviations replaced; empty where there is none.
  raw(name) {
    let text = this.raws.get(name);
    if (text === undefined) {
      const field = this.fields.get(name);
      text = field ? this.textOf(field.pieces, this.report) : "";
      if (field?.isRepeated) {
        this.report(`the field "${name}" stands there more than once; the first is taken`);
      }
      this.raws.set(name, text);
    }
    return text;
  }

  understood(name, read) {
    const source = this.raw(name);
    if (source === "") {
      return read("");
    }
    const remarks = newRemarks();
    const result = read(source, remarks);
    for (const command of remarks.commands) {
      this.report(
        `the command \\${command} in "${name}" is not known; its text or its name is taken`,
      );
    }
    if (remarks.hasLoneDollar) {
      this.report(`a $ in "${name}" belongs to no formula, and is taken as the sign itself`);
    }
    return result;
  }

  text(name) {
    let text = this.texts.get(name);
    if (text === undefined) {
      text = this.understood(name, latexText);
      this.texts.set(name, text);
    }
    return text;
  }

  names(name) {
    return this.understood(name, namesOf);
  }

  members(name) {
    return this.understood(name, listOf);
  }

  // A list as one text; `worded` gives the words for a member.
  list(name, worded = (member) => member) {
    const members = this.members(name);
    const isCut = members.length > 1 && members.at(-1) === "others";
    const text = (isCut ? members.slice(0, -1) : members).map(worded).join(" and ");
    return isCut ? `${text} et al.` : text;
  }
}
