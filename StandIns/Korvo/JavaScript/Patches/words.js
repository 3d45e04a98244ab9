// What a word is in small or in capital letters, by the languages that decide about it: citeproc-js
// looks up the rules of a language by its name for each word.
import CSL from "citeproc";

import { replace } from "./replace.js";

const languageCapacity = 50;
const wordCapacity = 20000;

function rememberingWords(convert) {
  const languages = new Map();
  let asked;
  let words;
  const wordsOf = (list) => {
    const name = String(list);
    if (!languages.has(name)) {
      if (languages.size >= languageCapacity) {
        languages.clear();
      }
      languages.set(name, new Map());
    }
    return languages.get(name);
  };
  return function (text) {
    // The list is made anew for each cite and stays as it is.
    if (!words || this.tmp.lang_array !== asked) {
      asked = this.tmp.lang_array;
      words = wordsOf(asked);
    }
    let converted = words.get(text);
    if (converted === undefined) {
      if (words.size >= wordCapacity) {
        words.clear();
      }
      converted = convert.call(this, text);
      words.set(text, converted);
    }
    return converted;
  };
}

replace(CSL, "toLocaleLowerCase", rememberingWords);
replace(CSL, "toLocaleUpperCase", rememberingWords);
