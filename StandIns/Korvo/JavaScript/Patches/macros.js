// Macros of sort keys, built once each.
//
// citeproc-js builds a macro once for the citations and the bibliography of a style, but for sort
// keys anew at every place that calls it, and so on for the macros that this one calls. apa's two
// sorts by author came to 17,000 rules, which was most of what an engine took to make; so
// they are called here as the others are.
import CSL from "citeproc";

import { replace } from "./replace.js";

// Of the sort keys that are built in an engine: where the rules of the macro go that is built now,
// and the macros that are there.
const sorts = new WeakMap();

function sortOf(engine) {
  let sort = sorts.get(engine);
  if (!sort) {
    sort = { rules: undefined, macros: new Map() };
    sorts.set(engine, sort);
  }
  return sort;
}

// All that decides what becomes of a macro, apart from its name: where it is called.
function placeOf({ build }, call) {
  return JSON.stringify([
    call.postponed_macro,
    build.root,
    build.substitute_level.value(),
    call.strings.sort_direction,
  ]);
}

function makeRules(engine, call, expand) {
  const sort = sortOf(engine);
  const outer = sort.rules;
  const rules = [];
  sort.rules = rules;
  try {
    expand.call(engine, call, rules);
  } finally {
    sort.rules = outer;
  }
  engine.configureTokenList(rules);
  return rules;
}

replace(
  CSL,
  "getMacroTarget",
  (find) =>
    function (name) {
      return this.build.extension ? sortOf(this).rules : find.call(this, name);
    },
);

replace(
  CSL,
  "expandMacro",
  (expand) =>
    function (call, target) {
      if (!this.build.extension) {
        expand.call(this, call, target);
        return;
      }
      const { macros } = sortOf(this);
      const place = placeOf(this, call);
      if (!macros.has(place)) {
        macros.set(place, makeRules(this, call, expand));
      }
      const rules = macros.get(place);
      const rule = new CSL.Token("text", CSL.SINGLETON);
      rule.execs.push((engine, item, cite) => {
        let next = 0;
        while (next < rules.length) {
          next = CSL.tokenExec.call(engine, rules[next], item, cite);
        }
      });
      target.push(rule);
    },
);
