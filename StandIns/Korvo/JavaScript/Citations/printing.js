// Prints one citation, with what its author asks for.
import { hasBracket, withoutBrackets, withoutOuterBrackets } from "./enclosure.js";
import { isNoteStyle } from "./engine.js";
import { option } from "./request.js";

// What an author asks of a whole group changes the citation layout while it is printed.
function withLayout(engine, changes, step) {
  const layout = engine.citation.opt;
  const { layout_prefix, layout_suffix, layout_decorations } = layout;
  Object.assign(layout, changes);
  try {
    return step();
  } finally {
    Object.assign(layout, { layout_prefix, layout_suffix, layout_decorations });
  }
}

function printAsStyled(engine, citation) {
  engine.tmp.citation_pos = citation.properties.index;
  engine.tmp.citation_note_index = citation.properties.noteIndex;
  engine.tmp.citation_id = citation.citationID;
  return engine.process_CitationCluster(citation.sortedItems, citation);
}

function printWithoutEnclosure(engine, citation) {
  const { layout_prefix, layout_suffix } = engine.citation.opt;
  if (hasBracket(layout_prefix) || hasBracket(layout_suffix)) {
    const changes = {
      layout_prefix: withoutBrackets(layout_prefix),
      layout_suffix: withoutBrackets(layout_suffix),
    };
    return withLayout(engine, changes, () => printAsStyled(engine, citation));
  }
  const text = printAsStyled(engine, citation);
  const authorsOwn = citation.citationItems.some(({ prefix = "", suffix = "" }) =>
    hasBracket(prefix + suffix),
  );
  return isNoteStyle(engine) || authorsOwn ? text : withoutOuterBrackets(text);
}

export function print(engine, citation) {
  const { layout_decorations } = engine.citation.opt;
  const changes =
    citation.options & option.suppressSuperscript
      ? { layout_decorations: layout_decorations.filter(([name]) => name !== "@vertical-align") }
      : {};
  return withLayout(engine, changes, () =>
    citation.options & option.stripEnclosure
      ? printWithoutEnclosure(engine, citation)
      : printAsStyled(engine, citation),
  );
}
