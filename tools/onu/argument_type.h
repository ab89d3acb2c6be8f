/// @file
/// The types of arguments: what a word of each may be, and the words to choose from.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "words.h"

namespace onu {

enum class ArgumentType : std::uint8_t {
  CommandCode,  ///< a command of the device, by code or name
  ConfigKey,
  ConfigValue,
  Directory,
  Duplex,     ///< full or half
  EntryName,  ///< words of the name of a command or an operation
  FieldWord,  ///< FIELD=VALUE of a record
  File,
  Flag,  ///< a keyword without a value
  Fraction,
  Frame,
  Hex,
  Ip,         ///< IPv4 or IPv6
  LinkState,  ///< up or down
  Mac,
  Number,
  Port,
  Speed,           ///< 10, 100 or 1000
  StackedVlan,     ///< CVID:SVID
  Switch,          ///< on or off
  TranslatedVlan,  ///< LOCAL:NET
  UniPort,
  Word
};

/// What is expected, in words: "a number".
std::string Expected(ArgumentType type);

bool Accepts(ArgumentType type, const std::string& word);

/// One word to choose, for help and completion.
struct Choice {
  std::string word;
  std::string argument;  ///< what stands behind the word; empty when it stands alone
  std::string text;
};

/// The words to choose from where they do not depend on the session; none for a free text.
std::vector<Choice> Choices(ArgumentType type);

/// What the words of Choices() are called together; nothing where they need no list of their own.
std::string_view ChoiceTitle(ArgumentType type);

/// All types.
std::vector<ArgumentType> AllArgumentTypes();

/// The words of Choices().
Words ChoiceWords(ArgumentType type);

/// The number of a fraction's word.
double ParseFraction(const std::string& word);

/// The numbers of a word that joins them with colons.
std::vector<std::uint32_t> ParseNumbers(const std::string& word);

/// The code of a command's word.
std::uint32_t ParseCommandCode(const std::string& word);

}  // namespace onu
