// The register of names by which an engine tells people apart, and a record of who used it.
//
// Almost all that a cite looks like is decided by its item and by what disambiguation found out
// about it. The rest comes from this register: names are entered in it while something is
// printed, and it is asked whether "Smith" is enough or "J. Smith" is needed. It answers like
// citeproc-js's own (CSL.Registry.NameReg), with two differences: what a name is entered under
// is worked out once for each name, and every entry and every question can be noted down, so
// that a later printing of the same thing can be checked and carried out without printing (see
// memory.js).
import CSL from "citeproc";

const withoutPeriods = (text) =>
  (text || "").replace(/\./g, " ").replace(/\s+/g, " ").replace(/\s+$/, "");

// "et al." and the like behind the given names do not tell people apart.
function withoutSmallWords(given) {
  const last = given.match(/[,!]* ([^,]+)$/);
  return last && last[1] === last[1].toLowerCase() ? given.replace(/[,!]* [^,]+$/, "") : given;
}

// All that its place depends on; most names have nothing but the first two.
const otherParts = [
  "literal",
  "non-dropping-particle",
  "dropping-particle",
  "suffix",
  "static-particles",
  "parse-names",
  "comma-suffix",
  "comma-dropping-particle",
  "isInstitution",
];

function describePerson(person) {
  let text = `${person.family ?? ""}\u0000${person.given ?? ""}`;
  for (const part of otherParts) {
    if (person[part]) {
      text += `\u0000${part}\u0000${person[part]}`;
    }
  }
  return text;
}

// Where a name stands in the register: under its family, there under its initials, there by
// its given names.
class Places {
  #known = new Map();

  of(engine, person) {
    // As CSL.NameOutput.getName leaves it behind.
    if (person.literal) {
      delete person.family;
      delete person.given;
    } else {
      person.family = person.family || "";
      person.given = person.given || "";
    }
    if (person.multi) {
      return this.#find(engine, person);
    }
    const name = describePerson(person);
    let place = this.#known.get(name);
    if (!place) {
      place = this.#find(engine, person);
      this.#known.set(name, place);
    }
    return place;
  }

  #find(engine, person) {
    const { name } = engine.nameOutput.getName(person, "locale-translit", true);
    const particle = name["non-dropping-particle"] ? ` ${name["non-dropping-particle"]}` : "";
    const keepsParticle = engine.opt["demote-non-dropping-particle"] === "never";
    const given = withoutSmallWords(withoutPeriods(name.given));
    return {
      family: withoutPeriods(name.family) + (keepsParticle && name.family ? particle : ""),
      initials: CSL.Util.Names.initializeWith(engine, given, "%s"),
      given,
    };
  }
}

export const makePlaces = () => new Places();

// What happened to a name, the same array each time: a citation of ten authors makes thirty of
// them, and thousands of citations are remembered. Its last element is a number of its own.
function eventOf(slot, place, question) {
  const asked = question ? Object.values(question).join() : "";
  const name = `${slot};${asked}`;
  place.events ??= new Map();
  let event = place.events.get(name);
  if (!event) {
    event = [slot, place, question, nextEvent];
    nextEvent += 1;
    place.events.set(name, event);
  }
  return event;
}

let nextEvent = 0;

// The same for the same events.
export const numbersOf = (events) => events.map(([, , , number]) => number).join();

export class NameRegister {
  // Families to initials to given names.
  #families = new Map();
  #records = [];
  #engine;
  #places;

  constructor(engine, places) {
    this.#engine = engine;
    this.#places = places;
    this.addname = (id, person, index) => this.#enter(id, person, index);
    this.evalname = (id, person, index, requested, form, initialize) =>
      this.#ask(id, person, index, requested, form, initialize);
  }

  // Notes down what happens from now on, on account of the items; see replay().
  startRecord(ids) {
    this.#records.push({ ids, events: [], isSound: true });
  }

  // What happened since; undefined when it was about other items, too.
  endRecord() {
    const { events, isSound } = this.#records.pop();
    return isSound ? events : undefined;
  }

  get isRecording() {
    return this.#records.length > 0;
  }

  // Does what is on record again, on account of other items. False as soon as an answer is not
  // what it was: what has been entered by then belongs into the register all the same.
  replay(events, ids) {
    return events.every(([slot, place, question]) => {
      const id = ids[slot];
      if (!question) {
        this.#enterAt(id, place);
        return true;
      }
      return this.#answer(id, place, question) === question.answer;
    });
  }

  // Without any of these options no answer depends on what is in the register.
  get #matters() {
    const { opt, citation } = this.#engine;
    return (
      opt["disambiguate-add-givenname"] ||
      citation.opt["givenname-disambiguation-rule"] === "by-cite"
    );
  }

  #note(id, place, question) {
    if (!this.#matters) {
      return;
    }
    for (const record of this.#records) {
      const slot = record.ids.indexOf(id);
      record.isSound &&= slot >= 0;
      record.events.push(eventOf(slot, place, question));
    }
  }

  // Where names count for each cite by itself, every item has families of its own.
  #family(id, family) {
    const rule = this.#engine.citation.opt["givenname-disambiguation-rule"];
    return rule === "by-cite" ? id + family : family;
  }

  #enter(id, person, index) {
    const rule = this.#engine.citation.opt["givenname-disambiguation-rule"];
    if (rule?.startsWith("primary-") && index !== 0) {
      return;
    }
    this.#enterAt(id, this.#places.of(this.#engine, person));
  }

  #enterAt(id, place) {
    this.#note(id, place);
    const name = this.#family(id, place.family);
    if (!name || !place.initials) {
      return;
    }
    let family = this.#families.get(name);
    if (!family) {
      family = new Map();
      this.#families.set(name, family);
    }
    let given = family.get(place.initials);
    if (!given) {
      given = new Set();
      family.set(place.initials, given);
    }
    if (place.given) {
      given.add(place.given);
    }
  }

  // How much of the given names is printed: 0 nothing, 1 initials, 2 all.
  #ask(id, person, index, requested, form, initialize) {
    const initializes = typeof initialize === "string";
    if (this.#engine.tmp.area.startsWith("bibliography") && !form) {
      return initializes ? 1 : 2;
    }
    const place = this.#places.of(this.#engine, person);
    const question = { index, requested, form, initializes, answer: undefined };
    question.answer = this.#answer(id, place, question);
    this.#note(id, place, question);
    return question.answer;
  }

  #answer(id, place, { index, requested, form, initializes }) {
    const least = form === "short" ? 0 : initializes ? 1 : 2;
    const family = this.#families.get(this.#family(id, place.family));
    const given = family?.get(place.initials);
    if (!given) {
      return least;
    }
    const rule = this.#engine.citation.opt["givenname-disambiguation-rule"];
    if (rule === "by-cite" && least <= requested) {
      return requested;
    }
    if (!this.#engine.opt["disambiguate-add-givenname"]) {
      return least;
    }
    if (typeof rule === "string" && rule.startsWith("primary-name") && index > 0) {
      return least;
    }
    const answer = this.#neededBy(rule, least, family, given, initializes);
    if (this.#engine.registry.registry[id]) {
      return answer;
    }
    return form === "short" ? 0 : initializes ? 1 : undefined;
  }

  #neededBy(rule, least, family, given, initializes) {
    const sharesFamily = family.size > 1;
    switch (rule) {
      case undefined:
      case "":
      case "all-names":
      case "by-cite":
      case "primary-name":
        if (given.size > 1 || (sharesFamily && !initializes)) {
          return 2;
        }
        return sharesFamily ? 1 : least;
      case "all-names-with-initials":
      case "primary-name-with-initials":
        return sharesFamily ? 1 : 0;
      default:
        return least;
    }
  }
}
