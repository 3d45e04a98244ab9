// The rules of a style, read and carried out.
import CSL from "citeproc";

import { replace } from "./replace.js";

// The rules are carried out by this function, one by one.
replace(
  CSL,
  "tokenExec",
  () =>
    function (token, item, cite) {
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
    },
);

// citeproc-js copies the whole stack to see its end.
replace(
  CSL.Stack.prototype,
  "value",
  () =>
    function () {
      return this.mystack[this.mystack.length - 1];
    },
);

// Each use of a macro looks for it in the whole style.
const macros = new WeakMap();

function macrosOf(xml, find) {
  let byName = macros.get(xml.dataObj);
  if (!byName) {
    byName = new Map();
    for (const macro of find.call(xml, xml.dataObj, "macro")) {
      byName.set(macro.attrs.name, [...(byName.get(macro.attrs.name) ?? []), macro]);
    }
    macros.set(xml.dataObj, byName);
  }
  return byName;
}

replace(
  CSL.XmlJSON.prototype,
  "getNodesByName",
  (find) =>
    function (node, name, nameAttribute, found) {
      return name === "macro" && nameAttribute && !found && node === this.dataObj
        ? (macrosOf(this, find).get(nameAttribute) ?? []).slice()
        : find.call(this, node, name, nameAttribute, found);
    },
);

replace(
  CSL,
  "setDecorations",
  () =>
    function (engine, attributes) {
      const decorations = [];
      for (const key of CSL.FORMAT_KEY_SEQUENCE) {
        if (attributes[key]) {
          decorations.push([key, attributes[key]]);
          delete attributes[key];
        }
      }
      return decorations;
    },
);
