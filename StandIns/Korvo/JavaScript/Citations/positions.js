// Where a cite stands to those before it: the first of its work, the same as the one before
// ("ibid."), or a later one, and in which note the first was. As processCitationCluster finds it,
// which wants all citations at once; here they come one after the other, in the order of the
// document, each with its cites in the order in which they are printed.
//
// Two extensions of the style language are left out, which no style of CSL 1.0 can ask for: laws
// that are cited as parts of one, and parallel citations.
import CSL from "citeproc";

const locatorOf = ({ locator, label }) => (locator ? `${locator}${label || ""}` : locator);

// Within a container that a style tracks, such as an edited book, cites of its chapters are near
// each other.
const containerOf = (item) => item.container_id || item.id;

// That of a cite of the same work as the one before.
function repetition(before, cite) {
  const was = locatorOf(before);
  const is = locatorOf(cite);
  if (was && !is) {
    return CSL.POSITION_SUBSEQUENT;
  }
  return was === is || (!was && !is) ? CSL.POSITION_IBID : CSL.POSITION_IBID_WITH_LOCATOR;
}

export class Positions {
  #nearDistance;
  // The number of the note that cites a work first, by the work's id.
  #firstNotes = new Map();
  // The same of containers, and the note that cites one last.
  #firstNotesOfContainers = new Map();
  #lastNotesOfContainers = new Map();
  // Of the citation before: its note, its first cite and its last one.
  #before;

  constructor(engine) {
    this.#nearDistance = engine.citation.opt["near-note-distance"];
  }

  // Writes into the citation's cites. `noteIndex` is 0 for all citations that stand in the text,
  // and another one for each that stands in a note.
  place({ sortedItems, properties: { noteIndex } }) {
    sortedItems.forEach(([item, cite], index) => {
      this.#placeCite(item, cite, this.#citeBefore(sortedItems, index, noteIndex), noteIndex);
    });
    this.#before = {
      noteIndex,
      isAlone: sortedItems.length === 1,
      first: { ...sortedItems[0][1] },
      last: { ...sortedItems.at(-1)[1] },
    };
  }

  // The cite that a cite may repeat; undefined where there is none.
  #citeBefore(sortedItems, index, noteIndex) {
    const [, cite] = sortedItems[index];
    const repeats = (other) =>
      other.id === cite.id && other["locator-extra"] === cite["locator-extra"];
    if (index > 0) {
      const [, other] = sortedItems[index - 1];
      return repeats(other) ? other : undefined;
    }
    const before = this.#before;
    if (!before) {
      return undefined;
    }
    if (before.noteIndex === noteIndex) {
      // Its locator is compared with the first one's all the same.
      return repeats(before.last) ? before.first : undefined;
    }
    const isNext = before.noteIndex >= noteIndex - 1 && before.isAlone;
    return isNext && repeats(before.first) ? before.first : undefined;
  }

  #placeCite(item, cite, before, noteIndex) {
    const container = containerOf(item);
    cite["first-reference-note-number"] = 0;
    cite["first-container-reference-note-number"] = 0;
    if (this.#lastNotesOfContainers.has(container)) {
      this.#placeLater(item, cite, before, noteIndex);
    } else {
      cite.position = CSL.POSITION_FIRST;
      this.#firstNotes.set(item.id, noteIndex);
      this.#firstNotesOfContainers.set(container, noteIndex);
      this.#lastNotesOfContainers.set(container, noteIndex);
    }
    const distance = noteIndex - this.#lastNotesOfContainers.get(container);
    cite["near-note"] =
      cite.position !== CSL.POSITION_FIRST && (noteIndex === 0 || distance <= this.#nearDistance);
    this.#lastNotesOfContainers.set(container, noteIndex);
  }

  #placeLater(item, cite, before, noteIndex) {
    cite.position = before ? repetition(before, cite) : CSL.POSITION_SUBSEQUENT;
    if (!this.#firstNotes.has(item.id)) {
      this.#firstNotes.set(item.id, noteIndex);
      cite.position = CSL.POSITION_CONTAINER_SUBSEQUENT;
    }
    const firstNote = this.#firstNotes.get(item.id);
    if (firstNote !== noteIndex) {
      cite["first-reference-note-number"] = firstNote;
    }
    const firstNoteOfContainer = this.#firstNotesOfContainers.get(containerOf(item));
    if (firstNoteOfContainer !== noteIndex) {
      cite["first-container-reference-note-number"] = firstNoteOfContainer;
    }
  }
}
