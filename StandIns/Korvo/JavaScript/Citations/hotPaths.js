// Those functions of citeproc-js in which most of its time went, with the same results at less
// cost.
//
// A profile of long documents showed a third of all time in a dozen small functions that do
// something dear for every piece of text or every rule of a style: an expression of three hundred
// characters is compiled anew, a list is copied to see its last element, a word is put into small
// letters by rules that are looked up by the name of a language each time. Each function here
// replaces the one of its name; tests compare engines with and without this file.
import CSL from "citeproc";

// The rules of a style are carried out by this function, one by one.
CSL.tokenExec = function (token, item, cite) {
  let { next } = token;
  if (token.test) {
    const passes = token.test(item, cite);
    this.tmp.jump.replace(passes ? "succeed" : "fail");
    next = passes ? token.succeed : token.fail;
  }
  for (let index = 0, count = token.execs.length; index < count; index += 1) {
    next = token.execs[index].call(token, this, item, cite) || next;
  }
  return next;
};

CSL.Stack.prototype.value = function () {
  return this.mystack[this.mystack.length - 1];
};

const contentOf = (text) => (typeof text === "string" ? text : text ? [text] : []);

const { prototype: blobPrototype } = CSL.Blob;
CSL.Blob = function (text, token, levelname) {
  this.levelname = levelname;
  if (token) {
    const strings = { ...token.strings };
    if (!("prefix" in strings)) {
      strings.prefix = "";
    }
    if (!("suffix" in strings)) {
      strings.suffix = "";
    }
    this.strings = strings;
    this.decorations = token.decorations?.length
      ? token.decorations.map((decoration) => decoration.slice())
      : [];
  } else {
    this.strings = { prefix: "", suffix: "", delimiter: "" };
    this.decorations = [];
  }
  this.blobs = contentOf(text);
  this.alldecor = [this.decorations];
};
CSL.Blob.prototype = blobPrototype;

const asItIs = (text) => text;
const getSafeEscape = CSL.getSafeEscape;
CSL.getSafeEscape = function (state) {
  if (state.opt.development_extensions.thin_non_breaking_space_html_hack) {
    return getSafeEscape.call(this, state);
  }
  const { area } = state.tmp;
  return area === "bibliography" || area === "citation"
    ? CSL.Output.Formats[state.opt.mode].text_escape
    : asItIs;
};

// It looks for quotation marks and markup within a text, and most texts have none. It knows tags,
// straight and typographic apostrophes, and the marks of the style's language.
function expressionForTags(state) {
  const marks = ["open-quote", "close-quote", "open-inner-quote", "close-inner-quote"]
    .map((name) => state.getTerm(name))
    .filter(Boolean);
  if (marks.some((mark) => mark.trim() === "")) {
    return /(?:)/;
  }
  const characters = [...`<'"\u2019${marks.join("")}`].filter((character) => character.trim());
  const codes = characters.map((character) => `\\u{${character.codePointAt(0).toString(16)}}`);
  return new RegExp(`[${codes.join("")}]`, "u");
}

const FlipFlopper = CSL.Util.FlipFlopper;
CSL.Util.FlipFlopper = function (state) {
  FlipFlopper.call(this, state);
  const { processTags } = this;
  const expression = expressionForTags(state);
  this.processTags = (blob) => {
    if (expression.test(blob.blobs)) {
      processTags.call(this, blob);
    }
  };
};

// What a word is in small or in capital letters, by the languages that decide about it.
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

CSL.toLocaleLowerCase = rememberingWords(CSL.toLocaleLowerCase);
CSL.toLocaleUpperCase = rememberingWords(CSL.toLocaleUpperCase);

// The macros of a style by their names; each use of one asks.
const macros = new WeakMap();

function macrosOf(xml) {
  let byName = macros.get(xml.dataObj);
  if (!byName) {
    byName = new Map();
    for (const macro of findNodes.call(xml, xml.dataObj, "macro")) {
      byName.set(macro.attrs.name, [...(byName.get(macro.attrs.name) ?? []), macro]);
    }
    macros.set(xml.dataObj, byName);
  }
  return byName;
}

const { getNodesByName: findNodes } = CSL.XmlJSON.prototype;
CSL.XmlJSON.prototype.getNodesByName = function (node, name, nameAttribute, found) {
  return name === "macro" && nameAttribute && !found && node === this.dataObj
    ? (macrosOf(this).get(nameAttribute) ?? []).slice()
    : findNodes.call(this, node, name, nameAttribute, found);
};

CSL.setDecorations = function (engine, attributes) {
  const decorations = [];
  for (const key of CSL.FORMAT_KEY_SEQUENCE) {
    if (attributes[key]) {
      decorations.push([key, attributes[key]]);
      delete attributes[key];
    }
  }
  return decorations;
};
