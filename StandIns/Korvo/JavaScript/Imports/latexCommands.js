// LaTeX commands that names and titles use and citation-js does not know: it would print
// their names.
import { plugins } from "@citation-js/core";
import "@citation-js/plugin-bibtex";

const { commands, argumentCommands } = plugins.config.get("@bibtex").constants;

Object.assign(commands, {
  aa: "\u00e5",
  AA: "\u00c5",
  S: "\u00a7",
  P: "\u00b6",
  dots: "\u2026",
  ldots: "\u2026",
  pounds: "\u00a3",
  euro: "\u20ac",
  slash: "/",
  TeX: "TeX",
  LaTeX: "LaTeX",
  // Places where a word may be broken, or two letters not be joined.
  "-": "",
  "/": "",
});

Object.assign(argumentCommands, {
  mbox: (text) => text,
  hbox: (text) => text,
  // Only sorts.
  noopsort: (ignored) => "",
});
