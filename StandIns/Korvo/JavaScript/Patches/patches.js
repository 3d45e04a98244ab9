// All that takes the place of functions of citeproc-js, each of them once (see replace.js). The
// reference that tests compare with has none of it. Times are of the processor.
//
// What has to be otherwise:
//   cites.js         getCite: a year in place of nothing, and the names before an entry
//   others.js        truncatePersonalNameLists, setEtAlParameters: "and others"
//   entries.js       some entries of the bibliography, where makeBibliography prints all
//   mentions.js      processCitationCluster for a few citations of a document, which tell its
//                    registry all that it has to know; 200,000 citations of one work in apa take
//                    2.1 s, with citeproc-js's own loop over all before each of them 6.7 s
//   nameRegister.js  the register of names, which keeps a record for recalled.js
//   recalled.js      getSortKeys, getAmbiguousCite: from memory. After one change a document of
//                    1,000 citations in apa takes 0.4 s, where nothing is remembered 5.4 s
//   numbers.js       NumericBlob: texts with holes for numbers that move
//
// What is only quicker. Small functions do something dear for every piece of text or every rule of
// a style: a third of the time of long documents. Without rules.js, texts.js and words.js a first
// document of 1,000 citations takes 1.37 to 1.56 times as long in apa and 1.4 times in nature. What
// each of them saves alone (1.0 to 1.3 times) could not be told apart well: in single runs the
// most were FlipFlopper, setDecorations and tokenExec, the least Blob.
//   rules.js         tokenExec, Stack.value, getNodesByName, setDecorations
//   texts.js         Blob, getSafeEscape, FlipFlopper
//   words.js         toLocaleLowerCase, toLocaleUpperCase
//   comparing.js     getSortCompare: one collator a language; 1.0 to 1.2 times
//   macros.js        expandMacro, getMacroTarget: macros of sort keys are built once each. To make
//                    apa's engine, which every document has anew, takes half of the time; to
//                    rehearse with 3,305 references takes two thirds
import "./cites.js";
import "./comparing.js";
import "./macros.js";
import "./numbers.js";
import "./others.js";
import "./recalled.js";
import "./rules.js";
import "./texts.js";
import "./words.js";
