// The assembler copies the files in as they are, which costs no compile time, unlike a
// source file with a million numbers. The build names the files.
#include "EmbeddedScripts.h"

#define EMBED_FILE(symbol, path)                                               \
  __asm__(                                                                     \
      ".pushsection .rodata\n"                                                 \
      ".global " #symbol                                                       \
      "Begin\n"                                                                \
      ".hidden " #symbol "Begin\n" #symbol                                     \
      "Begin:\n"                                                               \
      ".incbin \"" path                                                        \
      "\"\n"                                                                   \
      ".global " #symbol                                                       \
      "End\n"                                                                  \
      ".hidden " #symbol "End\n" #symbol                                       \
      "End:\n"                                                                 \
      ".popsection\n");                                                        \
  extern "C" __attribute__((visibility("hidden"))) const char symbol##Begin[]; \
  extern "C" __attribute__((visibility("hidden"))) const char symbol##End[]

EMBED_FILE(korvoCitationScript, CITATION_SCRIPT);
EMBED_FILE(korvoImportScript, IMPORT_SCRIPT);

namespace korvo::engine {

std::string_view citationScript() { return {korvoCitationScriptBegin, korvoCitationScriptEnd}; }

std::string_view importScript() { return {korvoImportScriptBegin, korvoImportScriptEnd}; }

}  // namespace korvo::engine
