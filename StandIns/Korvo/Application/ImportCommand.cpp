#include "ImportCommand.h"

#include "Effects.h"
#include "WaitingNews.h"

#include <StandIns/Korvo/Library/LibraryFile.h>

#include <cstdlib>
#include <iostream>

namespace korvo::application {

int runImport(const ImportFiles &import) {
  engine::LibraryImporter importer;
  WaitingNews news;
  const auto report =
      library::importIntoLibraryFile(import.files, import.database, importer, news.ofImport());
  if (!report) {
    complain(report.error());
    return EXIT_FAILURE;
  }
  for (const engine::ImportProblem &problem : report->problems) {
    complain(problem.message());
  }
  std::cout << "imported " << report->addition.added << " references into "
            << import.database.string();
  if (report->addition.alreadyThere > 0) {
    std::cout << " (" << report->addition.alreadyThere << " were there already)";
  }
  std::cout << std::endl;
  return EXIT_SUCCESS;
}

}  // namespace korvo::application
