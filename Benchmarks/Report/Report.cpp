#include "Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string_view>

namespace benchmarks {

namespace {

// Between two values of a sorted list where the fraction falls between them.
double quantile(const std::vector<double> &sorted, double fraction) {
  const double position = fraction * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(position);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return std::lerp(sorted[below], sorted[above], position - static_cast<double>(below));
}

bool missed(const Row &row, double value) {
  return row.aimIs == AimIs::most ? value > *row.aim : value < *row.aim;
}

}  // namespace

Sample sampleOf(std::vector<double> values) {
  std::ranges::sort(values);
  return {quantile(values, 0.5), quantile(values, 0.75) - quantile(values, 0.25),
          static_cast<int>(values.size())};
}

std::optional<double> Report::ratio(const Row &row) const {
  if (row.beside.empty()) {
    return std::nullopt;
  }
  const auto other = std::ranges::find_if(rows_, [&](const Row &candidate) {
    return candidate.name == row.beside && candidate.size == row.size && candidate.unit == row.unit;
  });
  if (other == rows_.end() || other->sample.median == 0) {
    return std::nullopt;
  }
  return row.sample.median / other->sample.median;
}

void Report::printJSON() const {
  using Json = nlohmann::ordered_json;
  Json rows = Json::array();
  for (const Row &row : rows_) {
    Json object;
    if (!row.plot.empty()) {
      object["plot"] = row.plot;
    }
    object["name"] = row.name;
    if (row.size) {
      object["size"] = *row.size;
      object["sizeUnit"] = row.sizeUnit;
    }
    object["median"] = row.sample.median;
    object["unit"] = row.unit;
    if (row.sample.repetitions > 0) {
      object["spread"] = row.sample.spread;
      object["repetitions"] = row.sample.repetitions;
    }
    if (const auto found = ratio(row)) {
      object["beside"] = row.beside;
      object["ratio"] = *found;
    }
    if (row.aim) {
      object["aim"] = *row.aim;
      object["aimIs"] = row.aimIs == AimIs::most ? "most" : "least";
    }
    rows.push_back(std::move(object));
  }
  const Json report = {{"group", group_}, {"title", title_}, {"rows", std::move(rows)}};
  std::printf("%s\n", report.dump(1).c_str());
}

void Report::printTable() const {
  std::printf("%-46s %12s %12s %-12s %-30s %7s %7s\n", "measured", "size", "median", "unit",
              "beside", "ratio", "aim");
  for (const Row &row : rows_) {
    std::printf("%-46s %12.0f %12.4g %-12s", row.name.c_str(), row.size.value_or(0),
                row.sample.median, row.unit.c_str());
    const auto found = ratio(row);
    if (found) {
      std::printf(" %-30s %7.2f", row.beside.c_str(), *found);
    }
    if (row.aim) {
      std::printf(" %7g%s", *row.aim,
                  missed(row, found.value_or(row.sample.median)) ? " missed" : "");
    }
    std::printf("\n");
  }
}

Options takeOptions(int &count, char **arguments) {
  const auto take = [&](std::string_view option) {
    const auto end = std::remove(arguments + 1, arguments + count, option);
    const bool found = end != arguments + count;
    count = static_cast<int>(end - arguments);
    return found;
  };
  return {.asJSON = take("--json"), .quick = take("--quick")};
}

}  // namespace benchmarks
