// Sort keys and short forms that were made before are taken from memory (see recalling.js).
//
// A sort key is its item's own: where a style puts a part of a date into it, citeproc-js would put
// in the date of whatever it has printed before.
import CSL from "citeproc";

import { recallOf } from "../Citations/recalling.js";
import { replace } from "./replace.js";

replace(
  CSL,
  "getSortKeys",
  (printSortKeys) =>
    function (item, area) {
      return recallOf(this).sortKeys(item, area, () => {
        const { date_object } = this.tmp;
        this.tmp.date_object = false;
        try {
          return printSortKeys.call(this, item, area);
        } finally {
          this.tmp.date_object = date_object;
        }
      });
    },
);

replace(
  CSL,
  "getAmbiguousCite",
  (printShortForm) =>
    function (item, config, visualForm, cite) {
      return recallOf(this).shortForm(item, config, visualForm, cite, () =>
        printShortForm.call(this, item, config, visualForm, cite),
      );
    },
);
