/// @file
/// The types of arguments: what a word of each may be, and the words to choose from. Types whose words
/// another room knows are defined there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "language/words.h"

namespace onu {

/// One word to choose, for help and completion.
struct Choice {
  std::string word;
  std::string argument;  ///< what stands behind the word; empty when it stands alone
  std::string text;
};

/// A type is one object, which is told from others by its address: whoever knows the words of a
/// type defines it, and rows of arguments refer to it.
struct ArgumentType {
  std::string_view expected;  ///< in words: "a number"
  bool (*accepts)(const std::string& word);
  /// The words to choose from where they do not depend on the session; none for a free text.
  std::vector<Choice> (*choices)();
  /// What these words are called together; nothing where they need no list of their own.
  std::string_view title = {};

  friend bool operator==(const ArgumentType& left, const ArgumentType& right) {
    return &left == &right;
  }

  static const ArgumentType CommandCode;  ///< a command of the device, by code or name
  static const ArgumentType Directory;
  static const ArgumentType Duplex;     ///< full or half
  static const ArgumentType EntryName;  ///< words of the name of a command or an operation
  static const ArgumentType FieldWord;  ///< FIELD=VALUE of a record
  static const ArgumentType File;
  static const ArgumentType Flag;  ///< a keyword without a value
  static const ArgumentType Fraction;
  static const ArgumentType Frame;
  static const ArgumentType Hex;
  static const ArgumentType Ip;         ///< IPv4 or IPv6
  static const ArgumentType LinkState;  ///< up or down
  static const ArgumentType Mac;
  static const ArgumentType Number;
  static const ArgumentType Port;
  static const ArgumentType Speed;           ///< 10, 100 or 1000
  static const ArgumentType StackedVlan;     ///< CVID:SVID
  static const ArgumentType Switch;          ///< on or off
  static const ArgumentType TranslatedVlan;  ///< LOCAL:NET
  static const ArgumentType UniPort;
  static const ArgumentType Word;
};

/// What is expected, in words: "a number".
std::string Expected(const ArgumentType& type);

/// For types without words to choose from, and for those that take any word.
std::vector<Choice> NoChoices();
bool AcceptsAll(const std::string& word);

/// The words to choose from, alone.
Words ChoiceWords(const ArgumentType& type);

/// The number of a fraction's word.
double ParseFraction(const std::string& word);

/// The numbers of a word that joins them with colons.
std::vector<std::uint32_t> ParseNumbers(const std::string& word);

/// The code of a command's word.
std::uint32_t ParseCommandCode(const std::string& word);

}  // namespace onu
