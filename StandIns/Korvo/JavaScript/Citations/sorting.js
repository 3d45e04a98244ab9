// The order of the cites within a citation.
import CSL from "citeproc";

// What a group is sorted by, found once for each item. The style's sort keys do not depend
// on the citation; the author's names do on how they are told apart from others, which
// printing can change.
export class SortKeys {
  #keys = new Map();
  #authors = new Map();
  #engine;

  constructor(engine) {
    this.#engine = engine;
  }

  of(item) {
    let keys = this.#keys.get(item.id);
    if (!keys) {
      keys = CSL.getSortKeys.call(this.#engine, item, "citation_sort");
      this.#keys.set(item.id, keys);
    }
    return [...keys];
  }

  author(item) {
    const engine = this.#engine;
    const { disambig } = engine.registry.registry[item.id];
    const name = `${item.id} ${JSON.stringify(disambig)}`;
    let author = this.#authors.get(name);
    if (author === undefined) {
      engine.tmp.authorstring_request = true;
      CSL.getAmbiguousCite.call(engine, item, disambig);
      engine.tmp.authorstring_request = false;
      author = engine.registry.authorstrings[item.id];
      this.#authors.set(name, author);
    }
    return author;
  }
}

// As processCitationCluster does it: the cites of one author stay together.
function sortGrouped(engine, sortKeys, sorted) {
  for (const [item, cite] of sorted) {
    cite.sortkeys = [sortKeys.author(item), ...cite.sortkeys];
  }
  sorted.sort(engine.citation.srt.compareCompositeKeys);
  let author = false;
  let key = false;
  sorted.forEach(([, cite], index) => {
    if (cite.sortkeys[0] !== author) {
      [author, key] = cite.sortkeys;
    }
    cite.sortkeys[0] = `${key}${index}`;
  });
}

// Positions depend on the order of cites, so that it must be known before them. In styles
// without positions it must be found as late as possible: what has been printed before
// decides which names are spelt out, and by these the cites are grouped.
export const needsPositions = (engine) => engine.opt.update_mode === CSL.POSITION;

export function sortCites(engine, sortKeys, sorted) {
  if (sorted.length < 2 || engine.citation_sort.tokens.length === 0) {
    return;
  }
  for (const [item, cite] of sorted) {
    cite.sortkeys = sortKeys.of(item);
  }
  if (engine.opt.grouped_sort && !engine.opt.citation_number_sort) {
    sortGrouped(engine, sortKeys, sorted);
  }
  sorted.sort(engine.citation.srt.compareCompositeKeys);
}
