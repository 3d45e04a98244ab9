#include "ImportCommand.h"

#include "Effects.h"
#include "ImportApart.h"
#include "WaitingNews.h"

#include <StandIns/Korvo/Library/LibraryFile.h>
#include <StandIns/Terminal/Output.h>

#include <cstdlib>
#include <utility>

namespace korvo::application {

using terminal::TerminalText;

int runImport(const ImportFiles &import) {
  WaitingNews news;
  const auto report =
      library::importIntoLibraryFile(import.files, import.database, importApart, news.ofImport());
  if (!report) {
    complain(report.error());
    return EXIT_FAILURE;
  }
  for (const engine::ImportProblem &problem : report->problems) {
    complain(problem.message());
  }
  TerminalText line = "imported " + TerminalText::number(report->addition.added) +
                      " references into " + TerminalText::inOneLine(import.database.string());
  if (report->addition.alreadyThere > 0) {
    line += " (" + TerminalText::number(report->addition.alreadyThere) + " were there already)";
  }
  terminal::print(std::move(line) + "\n");
  return EXIT_SUCCESS;
}

}  // namespace korvo::application
