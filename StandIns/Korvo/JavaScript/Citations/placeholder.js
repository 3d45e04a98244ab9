// What citeproc-js says in place of nothing.
export const placeholder =
  /\[NO_PRINTED_FORM\]|(?:\d+\. )?\[CSL STYLE ERROR: reference with no printed form\.\]/g;
