// Imports texts as library files.
#pragma once

#include <StandIns/Korvo/Engine/LibraryImporter.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

using Messages = std::vector<std::string>;

class ImportFixture : public testing::Test {
 protected:
  using ImportResult = korvo::engine::ImportResult;
  using Json = nlohmann::json;

  std::filesystem::path write(const std::string &name, std::string_view bytes) {
    return directory_.write(name, std::string(bytes));
  }

  ImportResult import(const std::string &name, std::string_view bytes) {
    auto result = importer().importFile(write(name, bytes));
    EXPECT_TRUE(result) << result.error();
    return result ? *std::move(result) : ImportResult();
  }

  // One line, with the directory's name taken off.
  std::string errorOf(const std::string &name, std::string_view bytes) {
    const auto result = importer().importFile(write(name, bytes));
    EXPECT_FALSE(result);
    return result ? "" : withoutDirectory(result.error());
  }

  Messages problemsOf(const ImportResult &result) {
    Messages messages;
    for (const korvo::engine::ImportProblem &problem : result.problems) {
      messages.push_back(withoutDirectory(problem.message()));
    }
    return messages;
  }

  // The first reference of a .bib file.
  Json itemOf(std::string_view bib) {
    const ImportResult result = import("a.bib", bib);
    EXPECT_FALSE(result.references.empty());
    return result.references.empty() ? Json::object()
                                     : Json::parse(result.references.front().cslJson);
  }

  std::string withoutDirectory(const std::string &message) {
    const std::string prefix = (directory_ / "").string();
    EXPECT_TRUE(message.starts_with(prefix)) << message;
    return message.starts_with(prefix) ? message.substr(prefix.size()) : message;
  }

  static korvo::engine::LibraryImporter &importer() {
    static korvo::engine::LibraryImporter shared;
    return shared;
  }

  test_support::TemporaryDirectory directory_;
};
