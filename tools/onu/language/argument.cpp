/// @file
/// Binding of words to argument rows.
#include "language/argument.h"

#include <algorithm>

#include "language/failure.h"

namespace onu {

namespace {

bool IsRest(const Argument& row) {
  return row.presence == Presence::Rest || row.presence == Presence::OptionalRest;
}

bool IsOptional(const Argument& row) {
  return row.presence == Presence::Optional || row.presence == Presence::OptionalRest;
}

/// Walks over the words and knows which row each belongs to.
class Binder {
 public:
  explicit Binder(std::span<const Argument> rows) : rows_(rows) {}

  /// The row that takes a word which is no keyword, or null.
  [[nodiscard]] const Argument* next() const {
    if (pending_ != nullptr) {
      return pending_;
    }
    const auto free = std::ranges::find_if(rows_, [this](const Argument& row) {
      return row.keyword.empty() && (IsRest(row) || !bound_.has(row.name));
    });
    return free == rows_.end() ? nullptr : &*free;
  }

  void take(const std::string& word) {
    const Argument* keyword = pending_ == nullptr ? findKeyword(word) : nullptr;
    if (keyword == nullptr) {
      bind(word);
      return;
    }
    if (bound_.has(keyword->name)) {
      throw WrongUse(Quote(word) + " is given twice");
    }
    if (keyword->type == ArgumentType::Flag) {
      bound_.add(keyword->name, word);
    } else {
      pending_ = keyword;
    }
  }

  Arguments finish() {
    if (pending_ != nullptr) {
      throw WrongUse(Quote(pending_->keyword) + " wants " + Expected(pending_->type) +
                     " behind it");
    }
    for (const Argument& row : rows_) {
      if (!IsOptional(row) && !bound_.has(row.name)) {
        throw WrongUse("argument " + std::string(row.name) + " is missing: expected " +
                       Expected(row.type));
      }
    }
    return std::move(bound_);
  }

 private:
  [[nodiscard]] const Argument* findKeyword(const std::string& word) const {
    const auto found = std::ranges::find_if(rows_, [&word](const Argument& row) {
      return !row.keyword.empty() && row.keyword == word;
    });
    return found == rows_.end() ? nullptr : &*found;
  }

  void bind(const std::string& word) {
    const Argument* row = next();
    if (row == nullptr) {
      throw WrongUse("unexpected argument " + Quote(word));
    }
    if (!row->type.get().accepts(word)) {
      throw WrongUse(std::string(row->name) + ": expected " + Expected(row->type) + ", got " +
                     Quote(word) + Suggestion(word, ChoiceWords(row->type)));
    }
    bound_.add(row->name, word);
    pending_ = nullptr;
  }

  std::span<const Argument> rows_;
  Arguments bound_;
  const Argument* pending_ = nullptr;  ///< a keyword was read, its value comes next
};

std::string UsageOf(const Argument& row) {
  std::string usage(row.keyword);
  if (row.type != ArgumentType::Flag) {
    usage += (usage.empty() ? "" : " ") + std::string(row.name);
  }
  if (IsRest(row)) {
    usage += "...";
  }
  return IsOptional(row) ? "[" + usage + "]" : usage;
}

}  // namespace

Words Arguments::words(std::string_view name) const {
  const auto found = words_.find(name);
  return found == words_.end() ? Words() : found->second;
}

const std::string& Arguments::word(std::string_view name) const {
  return words_.at(name).front();
}

std::uint32_t Arguments::number(std::string_view name) const {
  return ParseNumber(word(name)).value();
}

std::optional<std::uint32_t> Arguments::optionalNumber(std::string_view name) const {
  return has(name) ? ParseNumber(word(name)) : std::nullopt;
}

Arguments BindArguments(std::string_view command, std::span<const Argument> rows,
                        std::span<const std::string> words) {
  Binder binder(rows);
  try {
    for (const std::string& word : words) {
      binder.take(word);
    }
    return binder.finish();
  } catch (const Failure& failure) {
    throw WrongUse(std::string(failure.what()) + "; usage: " + Usage(command, rows));
  }
}

const Argument* NextArgument(std::span<const Argument> rows, std::span<const std::string> words) {
  Binder binder(rows);
  try {
    for (const std::string& word : words) {
      binder.take(word);
    }
  } catch (const Failure&) {
    return nullptr;
  }
  return binder.next();
}

std::string Usage(std::string_view command, std::span<const Argument> rows) {
  std::string usage(command);
  for (const Argument& row : rows) {
    usage += " " + UsageOf(row);
  }
  return usage;
}

}  // namespace onu
