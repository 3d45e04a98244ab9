// The positions of all citations ("ibid.", "see note 3"), evaluated once.
//
// processCitationCluster takes one citation to print and evaluates the positions of all. Then it
// prints again what has changed: that is switched off. It also looks for each citation among those
// of the same work, one after the other, before it adds it to them: a document that cites one work
// all the time would take quadratic time. So it finds the lists complete.
import CSL from "citeproc";

class CompleteList extends Array {
  // Asked about citations that are in it.
  indexOf() {
    return 0;
  }
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

export function evaluatePositions(engine, citations) {
  const { citationreg } = engine.registry;
  const orders = citations.map((citation) => [...citation.sortedItems]);
  const [first, ...rest] = citations;
  const lists = citationsByItem(citations);
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
  // It has sorted the others anew, without grouping.
  citations.slice(1).forEach((citation, index) => {
    citation.sortedItems = orders[index + 1];
  });
}
