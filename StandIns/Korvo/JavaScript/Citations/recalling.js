// An engine that prints what it has printed before from memory: sort keys, the short forms by
// which disambiguation compares items, citations, and entries of the bibliography.
//
// A key holds whatever citeproc-js reads while it prints that kind of text, apart from the
// register of names: the item by the number of its content, its standing in the engine's
// registry, the cite, and what one printing leaves behind for the next in the engine's scratch
// values. The effects are what it leaves behind. The works' own numbers are left out where they
// are filled in afterwards (see numbering.js).
import CSL from "citeproc";

import { NameRegister } from "../Patches/nameRegister.js";
import { fillHoles, Holes, mayHaveHoles, printWithHoles, shapeOf } from "./numbering.js";

// What a style says of itself by the words it contains: it cannot print what it does not name.
function numbersReadBy(style) {
  return {
    number: style.includes("citation-number"),
    note: style.includes("first-reference-note-number"),
    count: style.includes("check-ambiguity-and-backreference"),
  };
}

// The fields of an item's place in the registry that printing reads, apart from its number.
function standing(engine, id, reads) {
  const place = engine.registry.registry[id];
  if (!place) {
    return "";
  }
  const note = reads.note ? place["first-reference-note-number"] : "";
  const isCitedAgain = reads.count && place["citation-count"] > 1;
  return `${note};${isCitedAgain};${describe(place.disambig)}`;
}

function describe(config) {
  if (!config) {
    return "";
  }
  const { names, givens, year_suffix, disambiguate, use_initials, minval } = config;
  let text = "";
  for (const name of names) {
    text += `${name},`;
  }
  for (const given of givens) {
    text += "|";
    for (const form of given) {
      text += `${form},`;
    }
  }
  return `${text};${year_suffix};${typeof disambiguate};${disambiguate};${use_initials};${minval}`;
}

function copyOf(config) {
  const { maxvals: ignored, ...copied } = config;
  return { ...copied, names: [...config.names], givens: config.givens.map((given) => [...given]) };
}

// As printing does it, value by value in the arrays that are there: some of them belong to two
// configurations.
function become(config, wanted) {
  const { names, givens, ...others } = wanted;
  Object.assign(config, others);
  names.forEach((value, index) => {
    config.names[index] = value;
  });
  givens.forEach((given, index) => {
    config.givens[index] ??= [];
    given.forEach((value, person) => {
      config.givens[index][person] = value;
    });
  });
}

const shrank = (before, after) =>
  after.names.length < before.names.length ||
  after.givens.length < before.givens.length ||
  before.givens.some((given, index) => after.givens[index].length < given.length);

// What one printing leaves behind in the engine's scratch values that a next one reads: whether
// something stands before a word (it begins with a small letter then), whether cites were
// drawn together, and the outermost group's account of its variables.
const readByAll = [
  "term_predecessor",
  "term_predecessor_name",
  "in_cite_predecessor",
  "use_cite_group_delimiter",
];
// All but citations set this one before they read it.
const readByCitations = "have_collapsed";
const leftovers = [...readByAll, readByCitations];

// How many brackets are open, so that those within others are square ones in styles for notes;
// undefined: nobody counts, as before the first citation. One that a style never closes stays open,
// so that entries and sort keys depend on it as well. Each citation counts anew, and short forms do
// not count.
const openBrackets = ({ output }) => output.checkNestedBrace?.depth;

function restoreOpenBrackets(engine, count) {
  const { output } = engine;
  if (count !== undefined) {
    output.checkNestedBrace ??= new CSL.checkNestedBrace(engine);
    output.checkNestedBrace.depth = count;
  }
}

function scratchOf({ tmp }) {
  const group = { ...tmp.group_context.tip };
  group.done_vars = group.done_vars.slice();
  return { values: leftovers.map((name) => tmp[name]), group };
}

function restoreScratch({ tmp }, { values, group }) {
  leftovers.forEach((name, index) => {
    tmp[name] = values[index];
  });
  // In place of the one that is there, which may have what this one lacks.
  tmp.group_context.replace({ ...group, done_vars: [...group.done_vars] });
}

// Once something has been printed, nobody asks any more what was tried before that.
const unreadAfterSuccess = new Set(["variable_attempt", "term_intended"]);

// What of it decides about a text that is printed next. All of it has its effect by being there:
// false is as good as absent.
function describeScratch({ tmp }) {
  let text = "";
  for (const name of readByAll) {
    text += tmp[name] ? "1" : "0";
  }
  const group = tmp.group_context.tip;
  for (const name in group) {
    const value = group[name];
    if (value && value.length !== 0 && !(group.variable_success && unreadAfterSuccess.has(name))) {
      text += `${name}:${value === true || JSON.stringify(value)},`;
    }
  }
  return text;
}

// What a range of dates changes: the engine prints its ends in a queue of their own, and the first
// one in another manner than the next. That is left to it, and no such text remembered.
const rangesPrinted = ({ dateput: { queue } }) => [queue, queue[0]?.blobs.length];

const areSame = (some, others) => some.every((value, index) => value === others[index]);

// A work that is not printed as a part of another, nor together with others.
function standsAlone(engine, id) {
  const place = engine.registry.registry[id];
  const item = engine.registry.refhash[id];
  return !(
    place?.master ||
    place?.siblings ||
    place?.parallel ||
    item.seeAlso ||
    item.legislation_id ||
    item.container_id
  );
}

// Whether an entry that prints these names would repeat none of those: citeproc-js compares them
// as one text, or one by one from the first. Where none were printed nothing is known.
function areOther(names, before) {
  const [own] = [names].flat();
  const [other] = [before].flat();
  return Boolean(own) && !(other && own.localeCompare(other) === 0);
}

// By which keys an engine has sorted.
const sortedOnce = new WeakMap();

class Recall {
  #engine;
  #memory;
  #numbers;
  #register;
  #reads;
  #sortedOnce;

  // `numbers` are those of the items' contents, by id.
  constructor(engine, memory, numbers, style) {
    this.#engine = engine;
    this.#memory = memory;
    this.#reads = numbersReadBy(style);
    this.#numbers = numbers;
    this.#sortedOnce = sortedOnce.get(engine) ?? new Set();
    sortedOnce.set(engine, this.#sortedOnce);
    this.#register = new NameRegister(engine, memory.places);
    engine.registry.namereg = this.#register;
  }

  #standing(id) {
    return standing(this.#engine, id, this.#reads);
  }

  #numberOf(id) {
    return this.#engine.registry.registry[id]?.seq;
  }

  #recall(key, ids, { print, effects, fits = () => true, restore }) {
    const engine = this.#engine;
    const fullKey = `${key};${describeScratch(engine)}`;
    let ranges;
    return this.#memory.recall(this.#register, fullKey, ids, {
      print: () => {
        ranges = rangesPrinted(engine);
        return print();
      },
      effects: () => {
        const own = areSame(ranges, rangesPrinted(engine)) && effects();
        if (!own) {
          return undefined;
        }
        const scratch = scratchOf(engine);
        // JSON alone knows no difference between what is undefined and what is null.
        const description = describeScratch(engine) + JSON.stringify(scratch);
        return { ...own, scratch: this.#memory.shared(description, () => scratch) };
      },
      fits,
      restore: (known) => {
        restore(known);
        restoreScratch(engine, known.scratch);
      },
    });
  }

  // The same for what may hold the numbers of the items. `fill` puts them in place of the holes
  // in what `print` gives.
  #recallNumbered(key, ids, { print, effects, fits = () => true, restore, fill }) {
    if (!this.#reads.number) {
      return this.#recall(key, ids, { print, effects, fits, restore });
    }
    const memory = this.#memory;
    const numbers = ids.map((id) => this.#numberOf(id));
    const { citation_number_map } = this.#engine.bibliography_sort.tmp;
    if (memory.hasOtherNumbers || citation_number_map || !mayHaveHoles(numbers)) {
      return this.#recall(`${key};${numbers}`, ids, { print, effects, fits, restore });
    }
    const holes = new Holes(ids, numbers);
    const text = this.#recall(`${key};${shapeOf(numbers)}`, ids, {
      print: () => printWithHoles(this.#engine, holes, print),
      effects: () => {
        memory.hasOtherNumbers ||= !holes.areComplete;
        const own = holes.areComplete && effects();
        return own && { ...own, holes: holes.kept() };
      },
      fits: (known) => fits(known) && (!known.holes || known.holes.fit(numbers)),
      restore,
    });
    return fill(text, numbers);
  }

  // The first printing in an engine also finds out in which direction numbers are sorted.
  sortKeys(item, area, print) {
    const engine = this.#engine;
    const isFirst = !this.#sortedOnce.has(area);
    if (isFirst || engine.bibliography_sort.tmp.citation_number_map) {
      this.#sortedOnce.add(area);
      return print();
    }
    const number = this.#reads.number ? this.#numberOf(item.id) : "";
    const key = [
      "s",
      area,
      this.#numbers.get(item.id),
      number,
      this.#standing(item.id),
      openBrackets(engine),
    ].join(";");
    const keys = this.#recall(key, [item.id], {
      print,
      effects: () => ({ brackets: openBrackets(engine) }),
      restore: ({ brackets }) => restoreOpenBrackets(engine, brackets),
    });
    engine[area].keys = [...keys];
    return engine[area].keys;
  }

  // The short form of an item under a configuration, or under its own.
  shortForm(item, config, visualForm, cite, print) {
    const engine = this.#engine;
    if (this.#register.isRecording || engine.bibliography_sort.tmp.citation_number_map) {
      return print();
    }
    const { tmp, registry } = engine;
    const place = registry.registry[item.id];
    const isCited = Boolean(registry.citationreg.citationsByItemId?.[item.id]?.length);
    const key = [
      "a",
      this.#numbers.get(item.id),
      this.#standing(item.id),
      config ? describe(config) : "",
      Boolean(visualForm),
      cite ? JSON.stringify([cite.locator, cite.label]) : "",
      isCited,
      Boolean(tmp.authorstring_request),
    ].join(";");
    const target = config || (place && place.disambig);
    let before;
    return this.#recall(key, [item.id], {
      print: () => {
        before = target && copyOf(target);
        return print();
      },
      effects: () => {
        const after = copyOf(tmp.disambig_settings);
        return before && shrank(before, after)
          ? undefined
          : {
              config: after,
              most: tmp.names_max.mystack.slice(),
              count: tmp.disambiguate_count,
              greatestCount: tmp.disambiguate_maxMax,
              author: registry.authorstrings[item.id],
            };
      },
      restore: (effects) => {
        tmp.area = "citation";
        tmp.root = "citation";
        tmp.disambig_request = false;
        tmp.disambig_settings = target || new CSL.AmbigConfig();
        become(tmp.disambig_settings, effects.config);
        tmp.names_max.mystack = effects.most.slice();
        tmp.disambiguate_count = effects.count;
        tmp.disambiguate_maxMax = effects.greatestCount;
        if (tmp.authorstring_request) {
          registry.authorstrings[item.id] = effects.author;
        }
      },
    });
  }

  // A whole citation, printed with the author's options for it.
  citation(citation, print) {
    const engine = this.#engine;
    const { registry } = engine;
    const ids = citation.sortedItems.map(([item]) => item.id);
    if (!ids.every((id) => standsAlone(engine, id))) {
      return print();
    }
    const before = ids.map((id) => this.#standing(id));
    const cites = citation.sortedItems.map(([item, { id: ignored, sortkeys, ...cite }], index) =>
      [this.#numbers.get(item.id), ids.indexOf(item.id), before[index], JSON.stringify(cite)].join(
        ";",
      ),
    );
    const hasCollapsed = Boolean(engine.tmp[readByCitations]);
    const key = ["c", citation.options, hasCollapsed, ...cites].join("\u0000");
    return this.#recallNumbered(key, ids, {
      print,
      effects: () => {
        const configs = ids.map((id, index) =>
          this.#standing(id) === before[index] ? undefined : copyOf(registry.registry[id].disambig),
        );
        const brackets = openBrackets(engine);
        return configs.some(Boolean) ? { brackets, configs } : { brackets };
      },
      restore: ({ brackets, configs }) => {
        restoreOpenBrackets(engine, brackets);
        configs?.forEach((config, index) => {
          if (config) {
            become(registry.registry[ids[index]].disambig, config);
          }
        });
      },
      fill: fillHoles,
    });
  }

  // Whether the entries of a bibliography can be printed one by one.
  hasSingleEntries(ids) {
    return ids.every((id) => standsAlone(this.#engine, id));
  }

  // An entry of the bibliography. `lastName` is what names are compared with that are not to
  // be repeated; gives the text and the next entry's lastName. One printing is as good as another
  // where the names before are others than the entry's own.
  entry(id, lastName, print) {
    const engine = this.#engine;
    const place = engine.registry.registry[id];
    const before = this.#standing(id);
    const key = ["b", this.#numbers.get(id), before, openBrackets(engine)].join(";");
    return this.#recallNumbered(key, [id], {
      print,
      effects: () =>
        this.#standing(id) === before
          ? { offset: place.offset, after: lastName, brackets: openBrackets(engine) }
          : undefined,
      fits: ({ after, text: { lastName: own } }) =>
        JSON.stringify(after) === JSON.stringify(lastName) ||
        (areOther(own, after) && areOther(own, lastName)),
      restore: ({ offset, brackets }) => {
        place.offset = offset;
        restoreOpenBrackets(engine, brackets);
      },
      fill: ({ text, ...others }, numbers) => ({
        text: text && fillHoles(text, numbers),
        ...others,
      }),
    });
  }
}

const recalls = new WeakMap();

// Before anything is printed by the engine. `style` is the text of its CSL file.
export function startRecalling(engine, memory, numbers, style) {
  recalls.set(engine, new Recall(engine, memory, numbers, style));
}

export const recallOf = (engine) => recalls.get(engine);
