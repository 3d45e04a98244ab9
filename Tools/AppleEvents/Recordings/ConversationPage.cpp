#include "ConversationPage.h"

#include "Conversation.h"
#include "ConversationText.h"

#include <Formats/EventTable.h>
#include <Tools/AppleEvents/Payloads/ExplanationText.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace appleevents {

using terminal::TerminalText;
using Kind = RecordedMessage::Kind;

namespace {

constexpr terminal::Words beginning = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width"/>
<title>A recorded conversation</title>
<style>
:root { color-scheme: light dark; --line: #c8ccd2; --soft: #5b6470; --ask: #1a5fb4; --tell: #26764a;
  --bad: #b3261e; --back: #ffffff; --text: #1b1f24; }
@media (prefers-color-scheme: dark) { :root { --line: #3d444d; --soft: #9aa4b0; --ask: #78aeed;
  --tell: #6fcf97; --bad: #ff8a80; --back: #15181c; --text: #e6e9ed; } }
body { font: 15px/1.45 system-ui, sans-serif; margin: 2rem auto; max-width: 62rem; padding: 0 1rem;
  background: var(--back); color: var(--text); }
header, .message > summary { display: grid; grid-template-columns: 9rem 1fr 9rem; gap: 0 1rem; }
header { position: sticky; top: 0; background: var(--back); border-bottom: 1px solid var(--line);
  padding: .6rem 0; font-weight: 600; }
header span:last-child { text-align: right; }
.message { border-bottom: 1px solid var(--line); }
.message > summary { padding: .5rem 0; cursor: pointer; list-style: none; align-items: center; }
.message > summary::-webkit-details-marker { display: none; }
.time { color: var(--soft); font-variant-numeric: tabular-nums; }
.size { color: var(--soft); text-align: right; font-variant-numeric: tabular-nums; }
.name { display: flex; align-items: center; gap: .6rem; font-weight: 600; color: var(--ask); }
.left .name { color: var(--tell); flex-direction: row-reverse; }
.name::after { content: ""; flex: 1; border-top: 2px solid currentcolor; }
.quiet .name { font-weight: 400; }
.quiet .name::after { border-top-style: dashed; }
.head { font-style: normal; order: 1; }
.meaning { grid-column: 2; color: var(--soft); }
.broken { color: var(--bad); }
table { border-collapse: collapse; margin: .2rem 0 1rem; width: 100%; font-size: 13px; }
th, td { text-align: left; vertical-align: top; padding: .15rem .6rem; overflow-wrap: anywhere; }
th { color: var(--soft); font-weight: 400; }
td:nth-child(-n+2) { text-align: right; font-variant-numeric: tabular-nums; width: 4rem; }
td:nth-child(3) { white-space: nowrap; }
td:nth-child(4) { font-family: ui-monospace, monospace; }
</style>
</head>
<body>
)";

// Text of others: no tag of theirs is one of the page's.
TerminalText inHTML(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += character;
    }
  }
  return TerminalText::inOneLine(escaped);
}

TerminalText fieldsOf(const Explanation &explanation) {
  TerminalText table(
      "<table><tr><th>offset</th><th>bytes</th><th>field</th><th>value</th><th>meaning</th></"
      "tr>\n");
  for (const Field &field : explanation.fields) {
    table += "<tr><td>" + TerminalText::number(field.offset) + "</td><td>" +
             TerminalText::number(field.size) + "</td><td>" + inHTML(field.name) + "</td><td>" +
             inHTML(valueInWords(field)) + "</td><td>" + inHTML(field.meaning) + "</td></tr>\n";
  }
  table += TerminalText("</table>\n");
  for (const Finding &finding : explanation.findings) {
    table += "<p class=\"broken\">At byte " + TerminalText::number(finding.offset) + ": " +
             inHTML(finding.line) + "</p>\n";
  }
  return table;
}

TerminalText messageOf(const Turn &turn) {
  const RecordedMessage &message = *turn.message;
  const bool isLeft = turn.to == formats::mellelSignature;
  const bool isQuiet = message.kind != Kind::event && message.parameters.empty();
  TerminalText html("<details class=\"message");
  html += isLeft ? TerminalText(" left") : TerminalText();
  html += isQuiet ? TerminalText(" quiet\"><summary>") : TerminalText("\"><summary>");
  html += "<span class=\"time\">" +
          (message.time ? inHTML(timeInWords(*message.time)) : TerminalText()) + "</span>";
  html += "<span class=\"name\">" + inHTML(nameOf(turn)) + "<i class=\"head\">" +
          (isLeft ? TerminalText("◀") : TerminalText("▶")) + "</i></span>";
  html += TerminalText("<span class=\"size\">");
  if (message.kind != Kind::activation) {
    html += TerminalText::number(sizeOf(turn)) + " bytes";
  }
  html += TerminalText("</span>");
  const std::string meaning =
      meaningOf(turn) + (turn.delay ? " (after " + timeInWords(*turn.delay) + ")" : "");
  if (!meaning.empty()) {
    html += turn.isBroken() ? TerminalText("<span class=\"meaning broken\">")
                            : TerminalText("<span class=\"meaning\">");
    html += inHTML(meaning) + "</span>";
  }
  html += TerminalText("</summary>\n");
  if (turn.explanation && !turn.explanation->fields.empty()) {
    html += fieldsOf(*turn.explanation);
  }
  return html + "</details>\n";
}

}  // namespace

TerminalText conversationPage(const Recording &recording) {
  TerminalText page(beginning);
  const auto turns = turnsOf(recording);
  const auto events = std::ranges::count(recording.messages, Kind::event, &RecordedMessage::kind);
  page += "<h1>A recorded conversation</h1>\n<p>" + TerminalText::number(events) + " events, " +
          TerminalText::number(turns.size()) + " messages.";
  page += recording.isAnonymous ? TerminalText(" What its authors wrote was replaced.")
                                : TerminalText();
  page += TerminalText(" A message opens with a click.</p>\n");
  page +=
      TerminalText("<header><span>word processor</span><span></span><span>host</span></header>\n");
  for (const Turn &turn : turns) {
    page += messageOf(turn);
  }
  return page + "</body>\n</html>\n";
}

}  // namespace appleevents
