// Puts a function of the same name in place of one of citeproc-js, once: two that replace the same
// one would hang on the order in which they do.
const replacements = new Set();

// `make` is given the function that was there and returns the one that takes its place; where it
// makes objects, they stay of the same kind.
export function replace(owner, name, make) {
  const original = owner[name];
  if (typeof original !== "function" || replacements.has(original)) {
    throw new Error(`citeproc-js has no ${name} of its own`);
  }
  const replacement = make(original);
  replacement.prototype = original.prototype;
  replacements.add(replacement);
  owner[name] = replacement;
}
