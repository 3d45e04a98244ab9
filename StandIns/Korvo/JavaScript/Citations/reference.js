// The same document formatted as citeproc-js itself does it, citation by citation and with nothing
// of it replaced: slow, and what the fast way is compared with in the tests.
import { isNoteStyle, makeEngine } from "./engine.js";
import { endOfId, outputFormat } from "./markers.js";
import { itemIndex, readCitations, readItems } from "./request.js";
import { GroupTexts } from "./texts.js";

export function formatDocument(request, readLocale) {
  const items = readItems(request);
  const engine = makeEngine(request, readLocale, items);
  engine.updateItems([...items.keys()]);
  const citations = [...readCitations(request, isNoteStyle(engine))];
  const texts = new GroupTexts(request.groupSizes.length);
  engine.rebuildProcessorState(citations, outputFormat).forEach(([, , text], index) => {
    texts.set(citations[index].group, text);
  });
  const made = request.wantsBibliography && engine.makeBibliography();
  const entries = made ? made[1].map((entry) => entry.split(endOfId)) : [];
  return {
    ...texts.answer(),
    entries: entries.map(([, text]) => text),
    entryItems: entries.map(([id]) => itemIndex(id)),
  };
}
