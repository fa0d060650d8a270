#include "merge/Conditions.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace qm::merge {

namespace {

/// An operand or a comparison, such as VersionNT or VersionNT>=600.
struct Literal {
  std::string text;
  bool isNegated = false;
};

bool IsSpace(char character) noexcept {
  return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

/// Returns an operator in upper case, and any other token unchanged.
std::string NormalizeToken(const std::string& token) {
  std::string upper = token;
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
  });
  static constexpr std::string_view kOperators[] = {"AND", "EQV", "IMP", "NOT", "OR", "XOR"};
  return std::binary_search(std::begin(kOperators), std::end(kOperators), upper) ? upper : token;
}

/// Splits a condition at white space. Parentheses are tokens of their own; quoted text is kept.
std::vector<std::string> SplitTokens(std::string_view condition) {
  std::vector<std::string> tokens;
  bool isQuoted = false;
  bool isInside = false;
  for (const char character : condition) {
    isQuoted = isQuoted != (character == '"');
    if (!isQuoted && IsSpace(character)) {
      isInside = false;
    } else if (!isQuoted && (character == '(' || character == ')')) {
      tokens.emplace_back(1, character);
      isInside = false;
    } else if (isInside) {
      tokens.back() += character;
    } else {
      tokens.emplace_back(1, character);
      isInside = true;
    }
  }
  std::transform(tokens.begin(), tokens.end(), tokens.begin(), NormalizeToken);
  return tokens;
}

using Token = std::vector<std::string>::const_iterator;

std::string JoinTokens(Token begin, Token end) {
  std::string text;
  for (; begin != end; ++begin) {
    text += *begin;
    text += ' ';
  }
  return text;
}

/// Removes parentheses around the whole.
void StripParentheses(Token& begin, Token& end) {
  while (end - begin > 1 && *begin == "(") {
    int depth = 0;
    const Token close = std::find_if(begin, end, [&](const std::string& token) {
      depth += token == "(" ? 1 : token == ")" ? -1 : 0;
      return depth == 0;
    });
    if (close == end || close + 1 != end) {
      return;
    }
    ++begin;
    --end;
  }
}

Literal ParseLiteral(Token begin, Token end) {
  Literal literal;
  StripParentheses(begin, end);
  while (begin != end && *begin == "NOT") {
    literal.isNegated = !literal.isNegated;
    ++begin;
    StripParentheses(begin, end);
  }
  literal.text = JoinTokens(begin, end);
  return literal;
}

/// Parses a whole condition as one literal, which is negated if the condition is NOT (...).
Literal ParseWhole(Token begin, Token end) {
  if (end - begin > 1 && *begin == "NOT") {
    Token innerBegin = begin + 1;
    Token innerEnd = end;
    StripParentheses(innerBegin, innerEnd);
    if (innerEnd != end) {
      return {JoinTokens(innerBegin, innerEnd), true};
    }
  }
  return {JoinTokens(begin, end), false};
}

/// Returns literals that must all hold for a condition to hold. The first one is the whole
/// condition.
std::vector<Literal> ParseParts(std::string_view condition) {
  const std::vector<std::string> tokens = SplitTokens(condition);
  Token begin = tokens.begin();
  Token end = tokens.end();
  StripParentheses(begin, end);
  std::vector<Literal> parts;
  if (begin == end) {
    return parts;
  }
  parts.push_back(ParseWhole(begin, end));
  const bool isPlain = std::none_of(begin, end, [](const std::string& token) {
    return token == "(" || token == "OR" || token == "XOR" || token == "EQV" || token == "IMP";
  });
  const auto isAnd = [](const std::string& token) { return token == "AND"; };
  while (isPlain && begin != end) {
    const Token next = std::find_if(begin, end, isAnd);
    parts.push_back(ParseLiteral(begin, next));
    begin = next == end ? end : next + 1;
  }
  return parts;
}

bool Is(const Literal& literal, std::string_view operand, bool isNegated) noexcept {
  return literal.isNegated == isNegated && literal.text.size() == operand.size() + 1 &&
         literal.text.compare(0, operand.size(), operand) == 0;
}

/// Returns whether two literals never hold together. VersionNT64 is set only where VersionNT is,
/// and Version9X only where neither is.
bool AreExclusive(const Literal& a, const Literal& b) {
  if (a.text == b.text) {
    return a.isNegated != b.isNegated && !a.text.empty();
  }
  const auto areNamed = [&](std::string_view first, std::string_view second, bool isNegated) {
    return (Is(a, first, false) && Is(b, second, isNegated)) ||
           (Is(b, first, false) && Is(a, second, isNegated));
  };
  return areNamed("Version9X", "VersionNT", false) || areNamed("Version9X", "VersionNT64", false) ||
         areNamed("VersionNT64", "VersionNT", true);
}

}  // namespace

ConditionRelation CompareConditions(std::string_view a, std::string_view b) {
  const std::vector<Literal> partsOfA = ParseParts(a);
  const std::vector<Literal> partsOfB = ParseParts(b);
  if (partsOfA.empty() || partsOfB.empty() || a == b) {
    return ConditionRelation::Overlapping;
  }
  for (const Literal& partOfA : partsOfA) {
    for (const Literal& partOfB : partsOfB) {
      if (AreExclusive(partOfA, partOfB)) {
        return ConditionRelation::Exclusive;
      }
    }
  }
  const auto isSame = [](const Literal& left, const Literal& right) {
    return left.text == right.text && left.isNegated == right.isNegated;
  };
  return std::equal(partsOfA.begin(), partsOfA.end(), partsOfB.begin(), partsOfB.end(), isSame)
             ? ConditionRelation::Overlapping
             : ConditionRelation::Unknown;
}

}  // namespace qm::merge
