// Bundles each entry point into one script for a JavaScript machine that knows neither
// modules nor the web: node build.mjs DIRECTORY
import { readFileSync } from "node:fs";

import { build } from "esbuild";

const directory = process.argv[2];
if (!directory) {
  console.error("usage: node build.mjs DIRECTORY");
  process.exit(2);
}

// What stands in Patches takes the place of parts of citeproc-js; recalling.js and numbering.js
// list what its printing reads. Another version has to be compared with all of them before it is
// named here; then EngineTest's long run of edits shows whether they still agree (see
// EngineEditsTest.cpp).
const citeprocKnown = "2.4.63";
const citeproc = new URL("node_modules/citeproc/package.json", import.meta.url);
const { version } = JSON.parse(readFileSync(citeproc, "utf8"));
if (version !== citeprocKnown) {
  console.error(`citeproc ${version} is not the version that was examined (${citeprocKnown})`);
  process.exit(1);
}

const { metafile } = await build({
  entryPoints: {
    citations: "Citations/citations.js",
    "citations-reference": "Citations/reference.js",
    imports: "Imports/library.js",
  },
  absWorkingDir: import.meta.dirname ?? new URL(".", import.meta.url).pathname,
  outdir: directory,
  bundle: true,
  format: "iife",
  globalName: "korvo",
  platform: "browser",
  target: "safari16",
  minify: true,
  // The texts of a bundle are read as ASCII, whatever the machine's encoding.
  charset: "ascii",
  legalComments: "none",
  logLevel: "warning",
  metafile: true,
});

// The tests compare with citeproc-js as it is.
const isReference = ([file]) => file.endsWith("citations-reference.js");
const [[, reference]] = Object.entries(metafile.outputs).filter(isReference);
const patches = Object.keys(reference.inputs).filter((file) => file.startsWith("Patches/"));
if (patches.length > 0) {
  console.error(`the reference contains ${patches.join(", ")}`);
  process.exit(1);
}
