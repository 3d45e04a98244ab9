// What was printed in a style, each text with everything that it depends on.
//
// Every document gets an engine of its own, and most of what it is asked to print was printed
// before: by an earlier scan of the document, or a few pages earlier. A text is taken from
// memory if
//   - its key is the same: the items with all their fields, the cites, what disambiguation
//     found out about the items, their numbers; whoever prints puts it together,
//   - the register of names answers all questions as it did then (see Patches/nameRegister.js),
// and then the printing's effects on the engine are carried out: names are registered, and
// `restore` does the rest. Nothing is remembered of a printing that looked further.
import { makePlaces, numbersOf } from "../Patches/nameRegister.js";

// Texts of all styles together, about a kilobyte each with what they depend on.
const textCapacity = 100000;
// Items, whose JSON is kept.
const contentCapacity = 50000;

class StyleMemory {
  places = makePlaces();
  // Whether works' numbers are printed as something else than digits (see numbering.js).
  hasOtherNumbers = false;
  #texts = new Map();
  // Those that have not been asked for since there was no more room.
  #olderTexts = new Map();
  #shared = new Map();

  get size() {
    return this.#texts.size + this.#olderTexts.size;
  }

  // What `print` returns, or what it has returned in the same circumstances. `effects` is
  // asked after a printing for an object of what the next one needs to know; undefined: not to be
  // remembered. `fits` tells of such effects whether the key has left something out. The ids
  // are those of the items that the key speaks of, in its order.
  recall(register, key, ids, { print, effects, fits, restore }) {
    const known = this.find(key);
    if (known && fits(known) && register.replay(known.events, ids)) {
      restore(known);
      return known.text;
    }
    register.startRecord(ids);
    let events;
    let text;
    try {
      text = print();
    } finally {
      events = register.endRecord();
    }
    this.#remember(key, text, events, effects());
    return text;
  }

  find(key) {
    const known = this.#texts.get(key);
    if (known) {
      return known;
    }
    const older = this.#olderTexts.get(key);
    if (older) {
      this.#olderTexts.delete(key);
      this.#keep(key, older);
    }
    return older;
  }

  // One flat object a text, with nothing in it that others have as well: much of a long document's
  // memory is made of them.
  #remember(key, text, events, effects) {
    if (events && effects) {
      const sameEvents = this.shared(`events ${numbersOf(events)}`, () => events);
      this.#keep(key, { text, events: sameEvents, ...effects });
    }
  }

  // One document may hold more texts than there is room for.
  #keep(key, remembered) {
    if (this.#texts.size >= textCapacity / 2) {
      this.#olderTexts = this.#texts;
      this.#texts = new Map();
      this.#shared.clear();
    }
    this.#texts.set(key, remembered);
  }

  // The same object for the same description: most texts have the same effects.
  shared(description, make) {
    let known = this.#shared.get(description);
    if (!known) {
      known = make();
      this.#shared.set(description, known);
    }
    return known;
  }
}

// The style used last comes last.
const styles = new Map();

// Of a style by the text of its file and the language that overrides its own.
export function memoryOf(style, locale) {
  // No other pair has this name; to quote 70 KB each time took longer than the look-up.
  const name = `${locale.length} ${locale}${style}`;
  let total = 0;
  for (const [other, memory] of [...styles].reverse()) {
    total += memory.size;
    if (total > textCapacity) {
      styles.delete(other);
    }
  }
  const memory = styles.get(name) ?? new StyleMemory();
  styles.delete(name);
  styles.set(name, memory);
  return memory;
}

// Contents of items by numbers, so that keys need not spell them out.
const contents = new Map();

export function contentNumber(json) {
  let number = contents.get(json);
  if (number === undefined) {
    // Numbers are never given twice: what was remembered under them is found no more.
    number = nextNumber;
    nextNumber += 1;
    if (contents.size >= contentCapacity) {
      contents.clear();
    }
    contents.set(json, number);
  }
  return number;
}

let nextNumber = 0;
