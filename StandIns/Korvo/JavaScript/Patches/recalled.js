// Sort keys and short forms that were made before are taken from memory (see recalling.js).
import CSL from "citeproc";

import { recallOf } from "../Citations/recalling.js";
import { replace } from "./replace.js";

replace(
  CSL,
  "getSortKeys",
  (printSortKeys) =>
    function (item, area) {
      return recallOf(this).sortKeys(item, area, () => printSortKeys.call(this, item, area));
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
