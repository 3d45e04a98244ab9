// Bundles each entry point into one script for a JavaScript machine that knows neither
// modules nor the web: node build.mjs DIRECTORY
import { build } from "esbuild";

const directory = process.argv[2];
if (!directory) {
  console.error("usage: node build.mjs DIRECTORY");
  process.exit(2);
}

await build({
  entryPoints: {
    citations: "Citations/document.js",
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
});
