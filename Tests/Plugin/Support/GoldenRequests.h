// Every request that Mellel sends, in all its shapes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plugin_test {

struct GoldenRequest {
  std::string name;
  std::string eventID;  // "SCNQ"
  std::optional<std::string> payload;
};

// All eight requests; several where one has shapes.
const std::vector<GoldenRequest> &goldenRequests();
const GoldenRequest &goldenRequestNamed(std::string_view name);

}  // namespace plugin_test
