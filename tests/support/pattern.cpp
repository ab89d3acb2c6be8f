/// @file
/// Regular expressions by the C library.
#include "support/pattern.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace hal_test {

namespace {

std::size_t Begin(const regmatch_t& match) {
  return static_cast<std::size_t>(match.rm_so);
}

std::size_t End(const regmatch_t& match) {
  return static_cast<std::size_t>(match.rm_eo);
}

Pattern::Groups GroupsOf(const std::string& text, const std::vector<regmatch_t>& matches) {
  Pattern::Groups groups;
  std::ranges::transform(matches, std::back_inserter(groups), [&text](const regmatch_t& match) {
    return match.rm_so < 0 ? "" : text.substr(Begin(match), End(match) - Begin(match));
  });
  return groups;
}

}  // namespace

void Pattern::Release::operator()(regex_t* expression) const {
  regfree(expression);
  delete expression;
}

Pattern::Pattern(const std::string& expression) {
  auto compiled = std::make_unique<regex_t>();
  if (regcomp(compiled.get(), expression.c_str(), REG_EXTENDED) != 0) {
    throw std::invalid_argument("no regular expression: " + expression);
  }
  expression_.reset(compiled.release());
}

std::optional<std::vector<regmatch_t>> Pattern::find(const std::string& text,
                                                     std::size_t from) const {
  std::vector<regmatch_t> matches(expression_->re_nsub + 1);
  matches[0] = {.rm_so = static_cast<regoff_t>(from), .rm_eo = static_cast<regoff_t>(text.size())};
  return regexec(expression_.get(), text.c_str(), matches.size(), matches.data(), REG_STARTEND) == 0
             ? std::optional(matches)
             : std::nullopt;
}

// The leftmost match is the longest, so a text that matches as a whole is found as a whole.
std::optional<Pattern::Groups> Pattern::match(const std::string& text) const {
  const auto found = find(text, 0);
  return found && Begin(found->front()) == 0 && End(found->front()) == text.size()
             ? std::optional(GroupsOf(text, *found))
             : std::nullopt;
}

std::vector<Pattern::Groups> Pattern::findAll(const std::string& text) const {
  std::vector<Groups> all;
  for (auto found = find(text, 0); found; found = find(text, End(found->front()))) {
    all.push_back(GroupsOf(text, *found));
  }
  return all;
}

std::string Pattern::replaceAll(const std::string& text, const std::string& replacement) const {
  std::string result;
  std::size_t rest = 0;
  for (auto found = find(text, 0); found; found = find(text, rest)) {
    result += text.substr(rest, Begin(found->front()) - rest) +
              Expanded(replacement, GroupsOf(text, *found));
    rest = End(found->front());
  }
  return result + text.substr(rest);
}

std::string Expanded(const std::string& text, const Pattern::Groups& groups) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool group = text[i] == '$' && i + 1 < text.size();
    result += group ? groups.at(static_cast<std::size_t>(text[i + 1] - '0')) : text.substr(i, 1);
    i += group ? 1 : 0;
  }
  return result;
}

}  // namespace hal_test
