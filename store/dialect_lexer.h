// Tokens of the query dialect: keywords and bare names, [bracketed names], numbers, "text" and
// 'text' literals, #date# literals and operators. Literal values are decoded here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/sql_value.h"

namespace brindlewayProj::store::dialect {

enum class TokenKind {
  kWord,     // a keyword or a bare name; `text` holds it as written
  kName,     // a [bracketed] name; `text` holds the name without brackets
  kLiteral,  // a number, text or date; `value` holds it as the backend stores it
  kSymbol,   // = <> < > <= >= ( ) , * ;  `text` holds it
  kEnd,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;
  SqlValue value;
  std::size_t offset = 0;  // where the token starts in the query text
};

// Splits a query text into tokens, ending with one kEnd token. A character that starts no
// token, an unclosed literal or bracket and an impossible date raise the dialect's syntax
// error quoting the text from that point.
std::vector<Token> Tokenize(std::string_view text);

// Whether a bare word is the keyword `keyword` (given in upper case), in any case.
bool IsKeyword(const Token& token, std::string_view keyword);

}  // namespace brindlewayProj::store::dialect
