// Names in CSL-JSON, to and from PersonName. Inside the library only: whoever includes this
// compiles the JSON library.
#pragma once

#include "BibliographicRecord.h"

#include <nlohmann/json.hpp>

namespace korvo::library {

// The order of members is kept: an edited record differs only where it was edited.
using Json = nlohmann::ordered_json;

// The text of a member, a number's digits included; empty when there is none.
std::string textMember(const Json &object, const char *key);
PersonName personName(const Json &cslName);
// The names under a member; empty when there are none.
std::vector<PersonName> personNames(const Json &item, const char *key);
// Lower-case words in front of a family name: "van der" of "van der Waerden"; empty when
// there are none, or nothing but them.
std::string leadingParticle(std::string_view family);

}  // namespace korvo::library
