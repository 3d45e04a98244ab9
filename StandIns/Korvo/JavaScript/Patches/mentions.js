// Tells the engine's registry which citations mention a work.
//
// processCitationCluster does so before it prints a citation. Then it prints again what has
// changed: that is switched off. It also looks for each citation among those of the same work, one
// after the other, before it adds it to them: a document that cites one work all the time would
// take quadratic time. So it finds the lists complete.
import CSL from "citeproc";

class CompleteList extends Array {
  // Asked about citations that are in it.
  indexOf() {
    return 0;
  }
}

function evaluate(engine, first, rest, lists) {
  const { citationreg } = engine.registry;
  // It begins with an assignment of none.
  Object.defineProperty(citationreg, "citationsByItemId", {
    get: () => lists,
    set: () => {},
    configurable: true,
  });
  engine.process_CitationCluster = () => "";
  engine.tmp.taintedItemIDs = {};
  engine.processCitationCluster(
    first,
    [],
    rest.map((citation) => [citation.citationID, citation.properties.noteIndex]),
    CSL.ASSUME_ALL_ITEMS_REGISTERED,
  );
  delete engine.process_CitationCluster;
  Object.defineProperty(citationreg, "citationsByItemId", { value: lists, writable: true });
}

function citationsByItem(citations) {
  const lists = {};
  for (const citation of citations) {
    for (const [{ id }] of citation.sortedItems) {
      lists[id] ??= new CompleteList();
      if (lists[id].at(-1) !== citation) {
        lists[id].push(citation);
      }
    }
  }
  return lists;
}

// For a style with positions, from those citations that mention a work for the first time or the
// second: no more is told apart of how often it is cited. Each has its cites in their order; the
// first one's is found anew.
export function evaluateMentions(engine, [first, ...rest]) {
  evaluate(engine, first, rest, citationsByItem([first, ...rest]));
}

// The same for a style that has no positions. It reads of the other citations no more than which
// works they cite, so that they need not be there together.
export function evaluateFirst(engine, first, citedIds) {
  const lists = {};
  for (const id of citedIds) {
    lists[id] = CompleteList.of(first);
  }
  evaluate(engine, first, [], lists);
}
