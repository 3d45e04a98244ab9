// "and others": a list of names of which the file names only the first. It counts as longer by
// one, so that it ends in the style's "et al.". The last of its names says so (see items.js); CSL
// has no word for it.
import CSL from "citeproc";

import { replace } from "./replace.js";

const namesOutput = CSL.NameOutput.prototype;

const hasOthers = (names) => Array.isArray(names) && names.at(-1)?.hasOthers === true;

replace(
  namesOutput,
  "truncatePersonalNameLists",
  (original) =>
    function truncatePersonalNameLists() {
      original.call(this);
      for (const variable of this.variables) {
        if (hasOthers(this.Item[variable])) {
          this.freeters_count[variable] += 1;
        }
      }
    },
);

replace(
  namesOutput,
  "setEtAlParameters",
  (original) =>
    function setEtAlParameters() {
      original.call(this);
      for (const variable of this.variables) {
        const specification = this.etal_spec[variable];
        // An ellipsis before the last name would say that it is the last of all.
        if (hasOthers(this.Item[variable]) && specification.freeters === 2) {
          specification.freeters = 1;
        }
      }
    },
);
