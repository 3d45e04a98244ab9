// Numbers that are printed tell whoever is making a text with holes of it (see numbering.js).
import CSL from "citeproc";

import { holesUnderWay } from "../Citations/numbering.js";
import { replace } from "./replace.js";

replace(
  CSL,
  "NumericBlob",
  (NumericBlob) =>
    function (engine, particle, number, token, id) {
      NumericBlob.call(this, engine, particle, number, token, id);
      const holes = holesUnderWay(engine);
      if (token?.variables_real?.[0] === "citation-number") {
        holes?.take(this, id);
      } else {
        holes?.takeOther(this);
      }
    },
);
