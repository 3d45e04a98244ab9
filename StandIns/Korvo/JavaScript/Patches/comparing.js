// The order of citeproc-js, with its collator kept, and each text's small letters too: it would
// make a new collator for every comparison.
//
// The small letters are those of the style's language. citeproc-js takes the language of the work
// that was printed last, whatever that has to do with those that are compared.
import CSL from "citeproc";

import { replace } from "./replace.js";

const collators = new Map();

function collatorOf(locale) {
  let collator = collators.get(locale);
  if (!collator) {
    collator = new Intl.Collator(locale, {
      sensitivity: "base",
      ignorePunctuation: true,
      numeric: true,
    });
    collators.set(locale, collator);
  }
  return collator;
}

replace(
  CSL,
  "getSortCompare",
  () =>
    function (locale = "en-US") {
      const collator = collatorOf(locale);
      const smallLetters = new Map();
      const inSmallLetters = (text) => {
        let small = smallLetters.get(text);
        if (small === undefined) {
          small = text.toLocaleLowerCase(locale);
          smallLetters.set(text, small);
        }
        return small;
      };
      return (left, right) => collator.compare(inSmallLetters(left), inSmallLetters(right));
    },
);
