// The numbers of works within remembered texts.
//
// Where a style numbers works by their first mention, one citation more moves the numbers of all
// works after it, and mostly nothing else: "[12], [14]" becomes "[13], [15]". So a text is
// remembered with holes in place of its works' numbers, characters that no text can hold otherwise
// (see cleanText and cleanXml), as many as the number has digits; the numbers of the day are filled
// in.
//
// That is right as long as the text depends on the numbers by nothing else. What citeproc-js looks
// at is whether numbers side by side follow each other ("12-14"); shapeOf() and Holes.fit() tell
// whether they do so as they did. Numbers may be printed in another manner than as digits
// (ordinals, letters): then there are no holes, and `areComplete` is false.
import CSL from "citeproc";

const firstHole = 0x80;
const slots = 0x20;

export const mayHaveHoles = (numbers) => numbers.length <= slots;

// Numbers of one shape have as many digits, stand in the same order and follow each other in the
// same places.
export function shapeOf(numbers) {
  const ascending = [...new Set(numbers)].sort((left, right) => left - right);
  const ranks = new Map();
  let rank = 0;
  ascending.forEach((number, index) => {
    rank += index > 0 && number === ascending[index - 1] + 1 ? 1 : 2;
    ranks.set(number, rank);
  });
  return numbers.map((number) => `${ranks.get(number)}:${String(number).length}`).join();
}

// 1 where `other` follows `number`, -1 where it comes just before.
const step = (number, other) => (Math.abs(other - number) === 1 ? other - number : 0);

// What one printing says about the numbers of its works.
export class Holes {
  #ids;
  #numbers;
  // Other numbers of the text, which may stand beside them: volumes, pages.
  #others = [];
  areComplete = true;

  constructor(ids, numbers) {
    this.#ids = ids;
    this.#numbers = numbers;
  }

  take(blob, id) {
    const slot = this.#ids.indexOf(id);
    const isPlain =
      blob.formatter instanceof CSL.Output.DefaultFormatter && !blob.strings["text-case"];
    if (!isPlain || slot < 0 || blob.num !== this.#numbers[slot]) {
      this.areComplete = false;
      return;
    }
    const hole = String.fromCharCode(firstHole + slot);
    blob.formatter = { format: (number) => hole.repeat(String(number).length) };
  }

  takeOther(blob) {
    if (typeof blob.num === "number") {
      this.#others.push(blob.num);
    }
  }

  // What fit() has to know about later; undefined: nothing.
  kept() {
    return this.#others.length > 0 ? this : undefined;
  }

  // Whether the text would be the same with these numbers, of the same shape, in the holes.
  fit(numbers) {
    return this.#others.every((other) =>
      numbers.every((number, slot) => step(number, other) === step(this.#numbers[slot], other)),
    );
  }
}

// Which holes are being made, by engine.
const underWay = new WeakMap();

export function printWithHoles(engine, holes, print) {
  underWay.set(engine, holes);
  try {
    return print();
  } finally {
    underWay.delete(engine);
  }
}

// Those that whoever prints a number has to tell about it (see Patches/numbers.js); undefined:
// none.
export const holesUnderWay = (engine) => underWay.get(engine);

const holesInText = /([\u0080-\u009f])\1*/g;

export function fillHoles(text, numbers) {
  return text.replace(holesInText, (run) => {
    const number = String(numbers[run.charCodeAt(0) - firstHole]);
    return number.repeat(run.length / number.length);
  });
}
